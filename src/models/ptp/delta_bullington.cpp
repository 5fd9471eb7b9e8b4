#include "models/ptp/delta_bullington.h"

#include <algorithm>
#include <string>

#include "models/ptp/bullington.h"
#include "models/ptp/input_limits.h"
#include "models/ptp/spherical_earth.h"

namespace zel::ptp {

DiffractionLoss deltaBullingtonLoss(const GrowingPtpPath& path, const Ground& ground, double receiverHeight,
                                    double frequency) {
  if (path.samples() < 2)
    throw ParameterError("there are " + std::to_string(path.samples()) +
                         " elevations; a path has at least 2");
  requireWithin(limits::kAntennaHeight, receiverHeight, "receiver's antenna height above ground");
  requireWithin(limits::kFrequency, frequency);
  requireWithin(limits::kPermittivity, ground.permittivity);
  requireWithin(limits::kConductivity, ground.conductivity);

  const std::size_t last = path.samples() - 1;
  const double distance = path.distance();
  const double wavelength = wavelengthOf(frequency);
  const double receiverTop = path.elevation(last) + receiverHeight;
  const EffectiveHeights heights = path.effectiveHeights(receiverTop);

  DiffractionLoss loss;
  loss.bullington = bullingtonLoss(path.bullingtonNu(receiverTop, wavelength), distance);
  loss.spherical = SphericalEarth(ground, frequency, path.effectiveRadius())
                       .loss(distance, heights.transmitter, heights.receiver);
  if (loss.spherical > 0) {
    const SmoothPath smooth{last, path.spacing(), path.effectiveRadius(), heights.transmitter,
                            heights.receiver};
    loss.smoothBullington = bullingtonLoss(smoothBullingtonNu(smooth, wavelength), distance);
  }
  loss.total = loss.bullington + std::max(loss.spherical - loss.smoothBullington, 0.0);
  return loss;
}

}  // namespace zel::ptp
