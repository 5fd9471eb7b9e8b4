// What the point-to-point model is told once for any number of paths.
#pragma once

namespace zel::ptp {

enum class Polarization { kHorizontal, kVertical };

struct Ground {
  Polarization polarization = Polarization::kHorizontal;
  double permittivity = 15;     // relative, dimensionless
  double conductivity = 0.005;  // S/m
};

// Kinds of ground cover, by the codes of the settings (ITU-R P.2108, section 3.1, table of representative
// clutter heights).
enum class ClutterCategory : int {
  kNone = 0,
  kWaterOrSea = 1,
  kOpenOrRural = 2,
  kSuburban = 3,
  kUrbanOrForest = 4,
  kDenseUrban = 5,
};

// The cover around both antennas.
struct Clutter {
  ClutterCategory category = ClutterCategory::kNone;
  double height = 0;        // R, metres above ground; 0 takes the category's representative height
  double streetWidth = 27;  // w_s, metres
};

struct PtpParameters {
  Ground ground;
  Clutter clutter;
  double effectiveRadius = 8500;  // a_e, of the earth, km
};

// Metres per second.
inline constexpr double kSpeedOfLight = 299792458;

// Metres, of a frequency in MHz.
inline double wavelengthOf(double frequency) { return kSpeedOfLight / (frequency * 1e6); }

}  // namespace zel::ptp
