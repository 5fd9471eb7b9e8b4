#include "zeltool/link_budget/link_budget_calculation.h"

#include <algorithm>
#include <cmath>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

using Term = LinkBudgetTerm;

// In the order of the terms. Without gains and losses nothing is assumed about antennas and cables.
constexpr std::array<LinkBudgetEntry, kLinkBudgetTerms> kEntries{{
    {Term::kTransmitterPower, "Transmitter power", "dBm", -60, 100, 40, "TxPower"},
    {Term::kTransmitterGain, "Transmitter antenna gain", "dBi", -50, 100, 0, "TxGain"},
    {Term::kTransmitterLosses, "Transmitter losses", "dB", 0, 200, 0, "TxLosses"},
    {Term::kPathLoss, "Path loss", "dB", -100, 1000, 0, ""},
    {Term::kReceiverGain, "Receiver antenna gain", "dBi", -50, 100, 0, "RxGain"},
    {Term::kReceiverLosses, "Receiver losses", "dB", 0, 200, 0, "RxLosses"},
    {Term::kThreshold, "Receiver threshold", "dBm", -200, 100, -100, "Threshold"},
}};

struct WattPrefix {
  std::string_view unit;
  double watts;
};
constexpr std::array<WattPrefix, 7> kWattPrefixes{
    {{"MW", 1e6}, {"kW", 1e3}, {"W", 1}, {"mW", 1e-3}, {"\xC2\xB5W", 1e-6}, {"nW", 1e-9}, {"pW", 1e-12}}};

double threeDigits(double value) {
  if (value == 0) return 0;
  const double scale = std::pow(10.0, 2 - std::floor(std::log10(std::abs(value))));
  return std::round(value * scale) / scale;
}

}  // namespace

std::span<const LinkBudgetEntry, kLinkBudgetTerms> linkBudgetEntries() { return kEntries; }

const LinkBudgetEntry& linkBudgetEntry(LinkBudgetTerm term) {
  return kEntries[static_cast<std::size_t>(term)];
}

LinkBudgetResult computeLinkBudget(const LinkBudgetInputs& inputs) {
  LinkBudgetResult result;
  result.radiatedPowerDbm =
      inputs[Term::kTransmitterPower] + inputs[Term::kTransmitterGain] - inputs[Term::kTransmitterLosses];
  result.receivedPowerDbm = result.radiatedPowerDbm - inputs[Term::kPathLoss] + inputs[Term::kReceiverGain] -
                            inputs[Term::kReceiverLosses];
  result.marginDb = result.receivedPowerDbm - inputs[Term::kThreshold];
  return result;
}

std::optional<double> linkBudgetNumber(std::string_view text) {
  std::string withPoint(text);
  // A comma stands for the point only where there is no other, so that "1,000.5" is refused, not misread.
  if (std::count(withPoint.begin(), withPoint.end(), ',') == 1 && withPoint.find('.') == std::string::npos)
    std::replace(withPoint.begin(), withPoint.end(), ',', '.');
  try {
    return wholeNumberText(withPoint);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

std::optional<double> acceptedValue(const LinkBudgetEntry& entry, std::string_view text) {
  const std::optional<double> value = linkBudgetNumber(text);
  return value && *value >= entry.low && *value <= entry.high ? value : std::nullopt;
}

std::string requirement(const LinkBudgetEntry& entry) {
  return std::string(entry.name) + ": enter a number from " + generalNumber(entry.low) + " to " +
         generalNumber(entry.high) + " " + std::string(entry.unit) + ".";
}

std::string decibelText(double value) { return formatNumber(value, "0.00"); }

std::string wattText(double powerDbm) {
  const double watts = threeDigits(std::pow(10.0, (powerDbm - 30) / 10));
  const auto fits = [watts](const WattPrefix& prefix) { return watts >= prefix.watts; };
  const auto found = std::find_if(kWattPrefixes.begin(), kWattPrefixes.end(), fits);
  const WattPrefix& prefix = found == kWattPrefixes.end() ? kWattPrefixes.back() : *found;
  // Rounded again, because the division leaves a trace in the last digits.
  return generalNumber(threeDigits(watts / prefix.watts)) + " " + std::string(prefix.unit);
}

std::string verdictText(double marginDb) {
  const std::string shown = decibelText(marginDb);
  if (shown == decibelText(0)) return "The link is on the edge: exactly at the threshold.";
  if (shown.front() == '-') return "The link fails: " + shown.substr(1) + " dB below the threshold.";
  return "The link holds: " + shown + " dB above the threshold.";
}

}  // namespace zel
