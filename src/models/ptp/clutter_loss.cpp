#include "models/ptp/clutter_loss.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "models/ptp/input_limits.h"
#include "models/ptp/knife_edge.h"

namespace zel::ptp {
namespace {

bool withinFrequencies(double frequency) { return frequency >= 30 && frequency <= 3000; }

// Antennas among buildings and trees: a knife edge of the cover's height across the street (2a).
double edgeLoss(double below, double streetWidth, double gigahertz) {
  const double angle = std::atan(below / streetWidth) * 180 / std::numbers::pi;  // theta_clut, degrees (2f)
  const double scale = 0.342 * std::sqrt(gigahertz);                             // K_nu (2h)
  const double nu = scale * std::sqrt(below * angle);                            // (2d)
  return knifeEdgeLoss(nu) - 6.03;
}

// Antennas near open ground: height gain (2b).
double heightGainLoss(double antennaHeight, double height, double gigahertz) {
  const double slope = 21.8 + 6.2 * std::log10(gigahertz);  // K_h2 (2g)
  return -slope * std::log10(antennaHeight / height);
}

bool isOpen(ClutterCategory category) {
  return category == ClutterCategory::kWaterOrSea || category == ClutterCategory::kOpenOrRural;
}

// Of the cover's kind, metres; the section's table.
double representativeHeight(ClutterCategory category) {
  switch (category) {
    case ClutterCategory::kNone:
      return 0;
    case ClutterCategory::kWaterOrSea:
    case ClutterCategory::kOpenOrRural:
    case ClutterCategory::kSuburban:
      return 10;
    case ClutterCategory::kUrbanOrForest:
      return 15;
    case ClutterCategory::kDenseUrban:
      return 20;
  }
  throw ParameterError("the clutter category is " + std::to_string(static_cast<int>(category)) +
                       "; it must be 0 (none), 1 (water or sea), 2 (open or rural), 3 (suburban), 4 (urban "
                       "or forest) or 5 (dense urban)");
}

}  // namespace

double clutterHeight(const Clutter& clutter) {
  const double usual = representativeHeight(clutter.category);
  if (clutter.category == ClutterCategory::kNone) return 0;
  requireWithin(limits::kClutterHeight, clutter.height);
  requireWithin(limits::kStreetWidth, clutter.streetWidth);
  return clutter.height > 0 ? clutter.height : usual;
}

std::optional<double> clutterLoss(const Clutter& clutter, double antennaHeight, double frequency) {
  const double height = clutterHeight(clutter);
  if (clutter.category == ClutterCategory::kNone) return 0.0;
  if (!withinFrequencies(frequency)) return std::nullopt;
  if (antennaHeight >= height) return 0.0;
  const double gigahertz = frequency / 1000;
  if (!isOpen(clutter.category))
    return std::max(edgeLoss(height - antennaHeight, clutter.streetWidth, gigahertz), 0.0);
  if (!(antennaHeight > 0)) return std::nullopt;
  return heightGainLoss(antennaHeight, height, gigahertz);
}

double terminalHeight(const Clutter& clutter, double antennaHeight, double frequency) {
  const double height = clutterHeight(clutter);
  return withinFrequencies(frequency) ? std::max(antennaHeight, height) : antennaHeight;
}

}  // namespace zel::ptp
