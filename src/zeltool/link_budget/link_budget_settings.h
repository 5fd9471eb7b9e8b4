// What a user last put into the link budget: section "LinkBudget" under the client's Title, one key an input,
// numbers with a decimal point. The path loss belongs to a path and is not kept.
#pragma once

#include <string_view>

#include "platform/settings_store.h"
#include "zeltool/link_budget/link_budget_calculation.h"

namespace zel {

// Defaults stand in for what is not stored, is no number or lies outside its range; the stored text stays as
// it is. The path loss is 0. Throws what the store throws.
LinkBudgetInputs readLinkBudget(const SettingsStore& settings, std::string_view title);

// Stores one input that has a key, and nothing for the path loss. Throws what the store throws.
void writeLinkBudgetTerm(SettingsStore& settings, std::string_view title, LinkBudgetTerm term, double value);

LinkBudgetInputs defaultLinkBudget();

}  // namespace zel
