// What is wrong with an input of the point-to-point model.
#pragma once

#include <string>

#include "foundation/runtime_error.h"

namespace zel::ptp {

// An input that no loss can be computed from. The description is a sentence without its full stop that names
// the input, its value with unit, and what would do. Carries the classic number of a bad argument.
class ParameterError : public RuntimeError {
 public:
  static constexpr int kNumber = 5;
  explicit ParameterError(const std::string& description) : RuntimeError(kNumber, description) {}
};

}  // namespace zel::ptp
