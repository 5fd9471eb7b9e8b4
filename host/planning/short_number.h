// Numbers as short as they can be written so that reading gives the same value: "36.4", "30", "1e+22".
#pragma once

#include <string>

namespace zel::host {

// A zero has no sign; what is not finite is "nan", "inf", "-inf".
std::string shortNumber(double value);
// With so many digits behind the point, 0 to 12; without a sign where nothing but zeros is left.
std::string fixedNumber(double value, int digits);

}  // namespace zel::host
