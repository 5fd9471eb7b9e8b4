// The end-of-path loss: the irregular terrain model over the whole path, for every percentage of confidence
// and of reliability.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "component/services/normal_table.h"
#include "export/export_profile.h"
#include "export/export_texts.h"

namespace zel {

// The percentages 1 to 99 of both axes.
inline constexpr std::int32_t kLossTablePercentages = 99;

// Basic transmission losses, dB.
class LossTable {
 public:
  LossTable() = default;
  // 99 x 99 losses, dB, the confidence running fastest; RuntimeError 9 for another number of them.
  explicit LossTable(const std::vector<double>& losses) {
    if (losses.size() != losses_.size()) throw RuntimeError::subscriptOutOfRange();
    std::copy_n(losses.begin(), losses_.size(), losses_.begin());
  }

  // Both percent, 1 to 99; RuntimeError 9 outside.
  double& at(std::int32_t confidence, std::int32_t reliability) {
    return losses_[cell(confidence, reliability)];
  }
  double at(std::int32_t confidence, std::int32_t reliability) const {
    return losses_[cell(confidence, reliability)];
  }

 private:
  static std::size_t cell(std::int32_t confidence, std::int32_t reliability) {
    if (confidence < 1 || confidence > kLossTablePercentages || reliability < 1 ||
        reliability > kLossTablePercentages)
      throw RuntimeError::subscriptOutOfRange();
    return static_cast<std::size_t>(reliability - 1) * kLossTablePercentages +
           static_cast<std::size_t>(confidence - 1);
  }

  std::array<double, static_cast<std::size_t>(kLossTablePercentages) * kLossTablePercentages> losses_{};
};

// One run of the model and 99 x 99 evaluations. Throws RuntimeError 1101 without model parameters, and the
// model's ParameterError (number 5) when it has no loss.
LossTable lossTable(const ProfileViewState& state, const NormalTable& deviates);

// Hands over the lines in their order: four lines of titles and parameters, then the table. The model runs
// between them, so that its failure leaves the first four.
void writeLossTable(const ExportProfile& profile, const NormalTable& deviates, const LineSink& write);

}  // namespace zel
