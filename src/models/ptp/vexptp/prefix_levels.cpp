#include "models/ptp/vexptp/prefix_levels.h"

#include "export/signal_levels.h"
#include "models/ptp/ptp_calculator.h"

namespace zel::ptp {
namespace {

constexpr double kNoLoss = PtpCalculator::kNoLoss;
constexpr double kUsualTransmitter = 30;  // metres above the first height
constexpr double kRounding = 0.01;        // metres

double transmitterOf(const Companion& companion, double ground) {
  const double top = companion.transmitter.value_or(ground + kUsualTransmitter);
  return top < ground && ground - top <= kRounding ? ground : top;
}

}  // namespace

std::vector<PrefixLevel> prefixLevels(std::span<const float> heights, const Companion& companion,
                                      const Arguments& arguments) {
  const double transmitter = transmitterOf(companion, double{heights.front()});
  const SignalLevels levels({arguments.erp, 0, arguments.clutter}, arguments.frequency);
  SharedPtpPath ground;
  std::vector<PrefixLevel> rows{{0, kNoLoss, kNoLoss, kNoLoss}};
  rows.reserve(heights.size());
  for (std::size_t samples = 2; samples <= heights.size(); ++samples) {
    PtpCalculator calculator(companion.model, ground);
    calculator.setElevations(heights);
    calculator.setSpacing(companion.spacing);
    calculator.setReceiverHeight(arguments.receiverHeight);
    calculator.setSampleCount(static_cast<double>(samples));
    calculator.setFrequency(double{arguments.frequency});
    calculator.setTransmitterHeight(transmitter);
    PrefixLevel row{static_cast<double>(samples - 1) * companion.spacing, calculator.diffractionLoss(),
                    calculator.clutterLoss(), kNoLoss};
    if (row.clutter > kNoLoss)
      row.level = levels.pointToPoint(row.distance, row.diffraction, row.clutter);
    else
      row.diffraction = kNoLoss;
    rows.push_back(row);
  }
  return rows;
}

}  // namespace zel::ptp
