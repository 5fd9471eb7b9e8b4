// What a planner should know of a prediction that left the range which the model was made and tested for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "models/longrice/link.h"

namespace zel::longrice {

enum class Warning : std::uint32_t {
  kFrequencyUnusual,
  kFrequencyOutOfRange,
  kTransmitterHeightUnusual,
  kTransmitterHeightOutOfRange,
  kReceiverHeightUnusual,
  kReceiverHeightOutOfRange,
  kRefractivityOutOfRange,
  kGroundOutOfRange,
  kClimateUnknown,
  kDistanceLong,
  kDistanceTooLong,
  kDistanceTooShort,
  kDistanceTooShortForHeights,
  kTransmitterHorizonSteep,
  kReceiverHorizonSteep,
  kTransmitterHorizonNear,
  kReceiverHorizonNear,
  kTransmitterHorizonFar,
  kReceiverHorizonFar,
  kDeviateUnusual,
  kCount,
};

// A set of warnings in one number, so that a prediction costs no memory for them.
class WarningSet {
 public:
  void add(Warning warning) { bits_ |= bit(warning); }
  void addIf(bool condition, Warning warning) {
    if (condition) add(warning);
  }
  bool has(Warning warning) const { return (bits_ & bit(warning)) != 0; }
  bool empty() const { return bits_ == 0; }
  friend bool operator==(WarningSet, WarningSet) = default;

 private:
  static std::uint32_t bit(Warning warning) {
    return std::uint32_t{1} << static_cast<std::uint32_t>(warning);
  }
  std::uint32_t bits_ = 0;
};

// Those of a link and its climate code.
WarningSet warningsOf(const Link& link, int climate);

// Whether a confidence or reliability is so near to 0 or 1 that the model does not know its tail.
bool isUnusualDeviate(double deviate);

// A sentence for each, without its full stop, with the values that it is about.
std::vector<std::string> describe(const WarningSet& warnings, const Link& link, int climate);

}  // namespace zel::longrice
