#include "zeltool/terrain/height_encoding.h"

#include <cmath>
#include <limits>

#include "platform/terrain.h"

namespace zel {
namespace {

constexpr double kHighest = 12'000;  // metres, either way
constexpr double kUndeclaredVoid = -32768;

}  // namespace

float HeightEncoding::decode(double raw) const {
  constexpr float kVoid = std::numeric_limits<float>::quiet_NaN();
  if (noData && raw == *noData) return kVoid;
  if (raw == kUndeclaredVoid && scale == 1 && offset == 0) return kVoid;
  const double height = (raw * scale + offset) * metresPerUnit;
  if (!(std::abs(height) <= kHighest)) return kVoid;
  const float metres = static_cast<float>(height);
  return metres == kVoidHeight ? kVoid : metres;
}

}  // namespace zel
