// The standard normal deviate of a probability, to the precision of a double.
#pragma once

namespace zel::longrice {

// z whose upper tail holds the fraction: 0 for one half, 1.2816 for 0.1, -1.2816 for 0.9. The fraction is
// above 0 and below 1; dimensionless. Accurate to 1e-13 for fractions from 1e-300 on.
double normalDeviate(double fraction);

}  // namespace zel::longrice
