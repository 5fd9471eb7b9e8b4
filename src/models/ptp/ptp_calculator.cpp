#include "models/ptp/ptp_calculator.h"

#include <cmath>
#include <string>

#include "foundation/number_text.h"
#include "models/ptp/clutter_loss.h"
#include "models/ptp/input_limits.h"

namespace zel::ptp {
namespace {

template <class Value>
Value given(const std::optional<Value>& value, const char* name) {
  if (!value) throw ParameterError(std::string("the ") + name + " has not been set");
  return *value;
}

}  // namespace

void PtpCalculator::setElevations(std::span<const float> elevations) { elevations_ = elevations; }

void PtpCalculator::setSpacing(double kilometres) {
  requireWithin(limits::kSpacing, kilometres);
  spacing_ = kilometres;
}

void PtpCalculator::setReceiverHeight(double metres) {
  requireWithin(limits::kAntennaHeight, metres, "receiver's antenna height above ground");
  receiverHeight_ = metres;
}

void PtpCalculator::setSampleCount(double count) {
  constexpr double kMost = 1e9;
  if (!(count >= 2 && count <= kMost && count == std::floor(count)))
    throw ParameterError("the number of samples is " +
                         (std::isfinite(count) ? generalNumber(count) : "not a number") +
                         "; it must be a whole number, 2 or more");
  count_ = static_cast<std::size_t>(count);
}

void PtpCalculator::setFrequency(double megahertz) {
  requireWithin(limits::kFrequency, megahertz);
  frequency_ = megahertz;
}

void PtpCalculator::setTransmitterHeight(double metres) {
  requireWithin(limits::kTransmitterTop, metres);
  transmitterHeight_ = metres;
}

std::span<const float> PtpCalculator::path() const {
  const std::size_t count = given(count_, "number of samples");
  if (elevations_.size() < count)
    throw ParameterError("there are " + std::to_string(elevations_.size()) +
                         " elevations, and the path has " + std::to_string(count) + " samples");
  return elevations_.first(count);
}

// Metres. A transmitter below its ground, and a ground that is no height, are refused.
double PtpCalculator::transmitterAboveGround() const {
  const double ground = path().front();
  requireWithin(limits::kElevation, ground, "elevation of sample 1");
  const double above = given(transmitterHeight_, "transmitter's antenna height above sea level") - ground;
  if (above < 0)
    throw ParameterError("the transmitter's antenna stands " + generalNumber(*transmitterHeight_) +
                         " m above sea level, below its ground at " + generalNumber(ground) + " m");
  return above;
}

DiffractionLoss PtpCalculator::diffraction() {
  const double spacing = given(spacing_, "spacing");
  const double frequency = given(frequency_, "frequency");
  const double receiver = given(receiverHeight_, "receiver's antenna height above ground");
  const double transmitter = transmitterAboveGround();
  const double lifted = terminalHeight(parameters_.clutter, transmitter, frequency) - transmitter;
  SharedPtpPath& ground = shared_ != nullptr ? *shared_ : own_;
  return deltaBullingtonLoss(
      ground.over(path(), spacing, parameters_.effectiveRadius, *transmitterHeight_ + lifted),
      parameters_.ground, terminalHeight(parameters_.clutter, receiver, frequency), frequency);
}

double PtpCalculator::diffractionLoss() { return diffraction().total; }

double PtpCalculator::clutterLoss() const {
  if (parameters_.clutter.category == ClutterCategory::kNone) return 0;
  const double frequency = given(frequency_, "frequency");
  const double receiver = given(receiverHeight_, "receiver's antenna height above ground");
  const auto first = ptp::clutterLoss(parameters_.clutter, transmitterAboveGround(), frequency);
  const auto second = ptp::clutterLoss(parameters_.clutter, receiver, frequency);
  return first && second ? *first + *second : kNoLoss;
}

}  // namespace zel::ptp
