#include "profile/path_loss/level_deviate.h"

#include <cmath>

#include "foundation/rounding.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kLowestLevel = 0.01;  // fraction
constexpr double kHighestLevel = 1.0;  // fraction

}  // namespace

double normalisedLevel(double stored) {
  if (!std::isfinite(stored)) throw RuntimeError::overflow();
  double level = stored;
  while (!(level >= kLowestLevel && level <= kHighestLevel)) {
    if (level > kHighestLevel) level /= 100;
    if (level < kLowestLevel) level = kLowestLevel;
  }
  return level;
}

std::int64_t levelIndex(double normalised) { return toInt32(normalised * 100); }

double levelDeviate(double stored, const NormalTable& table) {
  return table[levelIndex(normalisedLevel(stored))];
}

}  // namespace zel
