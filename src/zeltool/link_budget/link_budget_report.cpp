#include "zeltool/link_budget/link_budget_report.h"

#include <algorithm>
#include <cstddef>

#include "foundation/number_text.h"

namespace zel {
namespace {

constexpr std::size_t kNameColumn = 26;  // characters

std::string line(std::string name, const std::string& value) {
  name.resize(std::max(kNameColumn, name.size() + 1), ' ');
  return name + value + "\n";
}

std::string inputLine(const LinkBudgetEntry& entry, double value) {
  std::string text = generalNumber(value) + " " + std::string(entry.unit);
  if (entry.term == LinkBudgetTerm::kTransmitterPower) text += " (" + wattText(value) + ")";
  return line(std::string(entry.name), text);
}

}  // namespace

std::string pathLossSource(std::optional<double> pathLossDb, std::optional<double> modeledLossDb) {
  if (!modeledLossDb)
    return pathLossDb ? "Typed in; there is no modeled loss."
                      : "There is no modeled loss: type a path loss in.";
  const std::string modeled = generalNumber(*modeledLossDb) + " dB";
  if (pathLossDb == modeledLossDb) return "Modeled loss of the profile, " + modeled + ".";
  return (pathLossDb ? "Typed in; the modeled loss of the profile is "
                     : "None; the modeled loss of the profile is ") +
         modeled + ".";
}

std::string linkBudgetReport(const LinkBudgetInputs& inputs, std::optional<double> modeledLossDb) {
  std::string text = "Link budget\n";
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) text += inputLine(entry, inputs[entry.term]);
  const LinkBudgetResult result = computeLinkBudget(inputs);
  text += line("Radiated power (EIRP)", decibelText(result.radiatedPowerDbm) + " dBm");
  text += line("Received power", decibelText(result.receivedPowerDbm) + " dBm");
  text += line("Margin", decibelText(result.marginDb) + " dB");
  text += line("Verdict", verdictText(result.marginDb));
  text += line("Source of the path loss", pathLossSource(inputs[LinkBudgetTerm::kPathLoss], modeledLossDb));
  return text;
}

}  // namespace zel
