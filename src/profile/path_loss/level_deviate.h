// From a stored confidence or reliability, a fraction or a percentage, to the normal deviate that the
// irregular terrain model is given.
#pragma once

#include <cstdint>

#include "component/services/normal_table.h"

namespace zel {

// The level as a fraction from 0.01 to 1: a value above 1 is a percentage and is divided by 100 until it is
// none; what is below 0.01 (0 and negative values included) becomes 0.01. Dimensionless. Throws RuntimeError
// 6 for a value that is not finite, which would never come into the range.
double normalisedLevel(double stored);

// The table's index for a normalised level: hundredths, half to even; 1 to 100.
std::int64_t levelIndex(double normalised);

// The deviate of a stored level. Throws RuntimeError 9 for a level of 100 %, which the table does not have.
double levelDeviate(double stored, const NormalTable& table);

}  // namespace zel
