// Standard normal deviates by percentage, for the model's confidence and reliability.
#pragma once

#include <array>
#include <cstdint>

namespace zel {

// Entry i (0 to 99) is the two-decimal deviate z whose upper-tail probability, in a four-decimal normal
// table, is nearest to i / 100; the larger z on a tie. Entry 100 - i is minus entry i, entry 50 is 0, entry 0
// equals entry 1.
class NormalTable {
 public:
  double operator[](std::int64_t index) const;  // RuntimeError 9 outside 0 to 99, so for 100 %
  friend NormalTable InitNormalDist();

 private:
  std::array<double, 100> deviates_{};  // dimensionless
};

NormalTable InitNormalDist();

}  // namespace zel
