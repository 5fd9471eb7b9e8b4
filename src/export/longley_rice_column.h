// The loss of the irregular terrain model at one sample after the other, for an export that stops where the
// model fails.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "export/path_models.h"

namespace zel {

class LongleyRiceColumn {
 public:
  // `exported` names the export in its error: "signal profile".
  LongleyRiceColumn(const PathStretch& stretch, const ModelParameters& parameters, std::string exported)
      : model_(stretch, parameters), exported_(std::move(exported)) {}

  // dB over the first `point` samples, 2 or more and not fewer than before. Where the model fails the export
  // stops: nothing of the line is written and nothing goes on after it. Throws RuntimeError with the model's
  // number, the point named.
  double lossAt(std::int32_t point);

 private:
  LongleyRiceAlongPath model_;
  std::string exported_;
};

}  // namespace zel
