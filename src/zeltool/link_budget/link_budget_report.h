// The link budget in words, for the dialog and for other programs.
#pragma once

#include <optional>
#include <string>

#include "zeltool/link_budget/link_budget_calculation.h"

namespace zel {

// Where the path loss of a budget comes from. Both in dB; nothing: none is typed in, the path has none.
std::string pathLossSource(std::optional<double> pathLossDb, std::optional<double> modeledLossDb);

// The whole budget as lines of text, ended by "\n": each input with its unit, the results, the verdict and
// where the path loss comes from. Numbers have a decimal point, inputs all their digits, results two
// decimals.
std::string linkBudgetReport(const LinkBudgetInputs& inputs, std::optional<double> modeledLossDb);

}  // namespace zel
