// The link budget: what arrives at the receiver, and how far that is above what the receiver needs.
//
//   radiated power (EIRP) = transmitter power + transmitter antenna gain - transmitter losses   dBm
//   received power = radiated power - path loss + receiver antenna gain - receiver losses       dBm
//   margin = received power - receiver threshold                                                dB
//
// Powers are decibels above one milliwatt (dBm), gains are over an isotropic antenna (dBi), losses are
// positive decibels (dB); the path loss is the basic transmission loss between isotropic antennas.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zel {

enum class LinkBudgetTerm : std::size_t {
  kTransmitterPower,
  kTransmitterGain,
  kTransmitterLosses,
  kPathLoss,
  kReceiverGain,
  kReceiverLosses,
  kThreshold
};
inline constexpr std::size_t kLinkBudgetTerms = 7;

// What one input is: how it is called, its unit, the range that is accepted (both ends included), its default
// and the key under which it is remembered.
struct LinkBudgetEntry {
  LinkBudgetTerm term;
  std::string_view name;
  std::string_view unit;
  double low;
  double high;
  double defaultValue;   // in the unit
  std::string_view key;  // empty: belongs to a path and is not remembered
};

// In the order in which the signal meets them. The ranges are wide: from a nanowatt to ten megawatts, from a
// lossy antenna to a large dish; a loss of the radio model can lie a little below 0 dB on a path of a few
// metres.
std::span<const LinkBudgetEntry, kLinkBudgetTerms> linkBudgetEntries();
const LinkBudgetEntry& linkBudgetEntry(LinkBudgetTerm term);

// One value for each term, in the unit of its entry.
class LinkBudgetInputs {
 public:
  double& operator[](LinkBudgetTerm term) { return values_[static_cast<std::size_t>(term)]; }
  double operator[](LinkBudgetTerm term) const { return values_[static_cast<std::size_t>(term)]; }

 private:
  std::array<double, kLinkBudgetTerms> values_{};
};

struct LinkBudgetResult {
  double radiatedPowerDbm = 0;  // EIRP
  double receivedPowerDbm = 0;
  double marginDb = 0;
};
LinkBudgetResult computeLinkBudget(const LinkBudgetInputs& inputs);

// A typed text as a number, with a point or a comma before the decimals and blanks around it; nothing when it
// is no number, or one that no 64-bit float holds.
std::optional<double> linkBudgetNumber(std::string_view text);
// The number of a typed text when it lies within the entry's range.
std::optional<double> acceptedValue(const LinkBudgetEntry& entry, std::string_view text);
// What is to be done about a text that is not accepted: "Path loss: enter a number from -100 to 1000 dB.".
std::string requirement(const LinkBudgetEntry& entry);

// A result with two decimals: "-97.65".
std::string decibelText(double value);
// A power in watts with the prefix that fits and three significant digits: -30 dBm is "1 µW", 40 dBm "10 W".
std::string wattText(double powerDbm);
// Whether the link holds, in words. The margin as it is shown decides, so that words and number never differ.
std::string verdictText(double marginDb);

}  // namespace zel
