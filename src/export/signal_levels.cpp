#include "export/signal_levels.h"

#include "profile/path_loss/free_space_loss.h"
#include "profile/real32.h"

namespace zel {
namespace {

constexpr double kDipoleField = 106.92;  // dBuV/m at 1 km, of 1 kW
constexpr double kFreeSpaceLoss = 32.4;  // dB at 1 MHz and 1 km

}  // namespace

SignalLevels::SignalLevels(const SignalRequest& request, float frequency)
    : request_(request),
      powerTerm_(toReal32(10 * LOG10(request.erp) + kDipoleField)),
      frequencyTerm_(toReal32(20 * LOG10(double{frequency}) + kFreeSpaceLoss)),
      reference_(double{powerTerm_} + double{frequencyTerm_}) {}

float SignalLevels::freeSpaceLoss(double distance) const {
  return toReal32(double{frequencyTerm_} + 20 * LOG10(distance));
}

double SignalLevels::pointToPoint(double distance, double diffractionLoss, double clutterLoss) const {
  const double freeSpaceField = double{powerTerm_} - 20 * LOG10(distance);
  return freeSpaceField - diffractionLoss - clutterLoss - request_.pointToPointClutter;
}

}  // namespace zel
