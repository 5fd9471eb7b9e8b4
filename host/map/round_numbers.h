// Round numbers for scales, and numbers as texts in no locale but the program's own.
#pragma once

#include <string>

namespace zel::host {

inline constexpr double kMetresPerFoot = 0.3048, kMetresPerMile = 1609.344;  // international

// 1, 2 or 5 times a power of ten.
struct RoundNumber {
  double value = 1;
  int decimals = 0;  // that its multiples have
};
RoundNumber roundUp(double least);   // the smallest that is not less; 1 for what is not positive and finite
RoundNumber roundDown(double most);  // the largest that is not more; likewise

// "1300.5"; grouped "1,300.5".
std::string plainNumber(double value, int decimals);
std::string groupedNumber(double value, int decimals);

}  // namespace zel::host
