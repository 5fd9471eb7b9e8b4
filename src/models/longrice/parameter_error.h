// What is wrong with an input of the irregular terrain model.
#pragma once

#include <string>

#include "foundation/runtime_error.h"

namespace zel::longrice {

// The inputs of the model, as errors and messages tell them apart.
enum class Parameter {
  kElevations,
  kSpacing,
  kTransmitterHeight,
  kReceiverHeight,
  kFrequency,
  kPermittivity,
  kConductivity,
  kSurfaceRefractivity,
  kSeaLevelRefractivity,
  kConfidence,
  kReliability,
};

// An input that no loss can be computed from. The description is a sentence without its full stop that names
// the parameter, its value with unit, and what would do. Carries the classic number of a bad argument.
class ParameterError : public RuntimeError {
 public:
  static constexpr int kNumber = 5;
  ParameterError(Parameter parameter, const std::string& description)
      : RuntimeError(kNumber, description), parameter_(parameter) {}
  Parameter parameter() const noexcept { return parameter_; }

 private:
  Parameter parameter_;
};

}  // namespace zel::longrice
