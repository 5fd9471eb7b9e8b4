#include "zeltool/link_budget/link_budget_settings.h"

#include "foundation/number_text.h"

namespace zel {
namespace {

constexpr std::string_view kSection = "LinkBudget";

}  // namespace

LinkBudgetInputs readLinkBudget(const SettingsStore& settings, std::string_view title) {
  LinkBudgetInputs inputs = defaultLinkBudget();
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    if (entry.key.empty()) continue;
    const std::string text = settings.ReadSetting(title, kSection, entry.key, "");
    inputs[entry.term] = acceptedValue(entry, text).value_or(entry.defaultValue);
  }
  return inputs;
}

void writeLinkBudgetTerm(SettingsStore& settings, std::string_view title, LinkBudgetTerm term, double value) {
  const std::string_view key = linkBudgetEntry(term).key;
  if (!key.empty()) settings.WriteSetting(title, kSection, key, generalNumber(value));
}

LinkBudgetInputs defaultLinkBudget() {
  LinkBudgetInputs inputs;
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) inputs[entry.term] = entry.defaultValue;
  return inputs;
}

}  // namespace zel
