#include "component/services/normal_table.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

// Upper-tail probability of z = hundredths / 100 as a four-decimal table prints it, in units of 0.0001.
std::int64_t printedTail(int hundredths) {
  const double z = hundredths / 100.0;
  return std::llround(10000.0 * 0.5 * std::erfc(z / std::sqrt(2.0)));
}

// The deviate for a probability of 1 % to 50 %. The larger z on a tie: the scan goes upward and takes equals.
double deviateFor(int percent) {
  const std::int64_t wanted = std::int64_t{100} * percent;
  int best = 0;
  for (int hundredths = 0; hundredths <= 300; ++hundredths)
    if (std::llabs(printedTail(hundredths) - wanted) <= std::llabs(printedTail(best) - wanted))
      best = hundredths;
  return best / 100.0;
}

}  // namespace

NormalTable InitNormalDist() {
  NormalTable table;
  for (int percent = 1; percent <= 50; ++percent) {
    const double z = deviateFor(percent);
    table.deviates_[static_cast<std::size_t>(percent)] = z;
    if (percent < 50) table.deviates_[static_cast<std::size_t>(100 - percent)] = -z;
  }
  table.deviates_[0] = table.deviates_[1];
  return table;
}

// Index 100 (a confidence of exactly 100 %) is one past the table, and meant to fail.
double NormalTable::operator[](std::int64_t index) const {
  if (index < 0 || index >= static_cast<std::int64_t>(deviates_.size()))
    throw RuntimeError::subscriptOutOfRange();
  return deviates_[static_cast<std::size_t>(index)];
}

}  // namespace zel
