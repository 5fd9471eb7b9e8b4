#include "profile/path_loss/free_space_loss.h"

#include <cmath>

namespace zel {

double LOG10(double x) { return x > 0 ? std::log(x) / std::log(10.0) : -999.0; }

float FreeSpaceLoss(float frequency, float distance) {
  if (!(frequency > 0 && distance > 0)) return 0;
  constexpr float kConstant = 32.4F;  // dB, for MHz and km
  return static_cast<float>(20 * LOG10(frequency) + static_cast<double>(kConstant) + 20 * LOG10(distance));
}

}  // namespace zel
