// The exact geometry of a path from station to station: how far the ground stays from the line of sight.
//
// Samples lie evenly from the start to the end, ends included. With d1 and d2 the distances in kilometres of
// a sample from the start and the end:
//   rise       1000 d1 d2 / (2 k 6371) metres, the bulge of an earth of mean radius 6371 km times k over the
//   chord radius     sqrt(lambda d1 d2 / (d1 + d2)) of the first Fresnel zone, all in metres, lambda = 300 /
//   f metres with f in
//              MHz (ITU-R P.526, section 2)
//   clearance  line of sight - ground - rise, metres
// The rise is the parabolic approximation; it differs from the circle's by less than 5 parts in 10,000 up to
// 500 km at k = 4/3.
//
// A sample without a height carries no ground and no clearance; it is counted, never taken as sea level.
// Inputs that make no profile come back as a status, nothing is thrown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zel {

inline constexpr double kMeanEarthRadius = 6371.0;  // km
inline constexpr double kClearFraction = 0.6;  // of the first-zone radius: enough not to disturb the path

struct ExactProfileRequest {
  double distance = 0;             // km from start to end
  std::span<const float> heights;  // metres as sampled, voids included, the first at the start
  double startAntenna = 0;         // metres above ground
  double endAntenna = 0;           // metres above ground
  double k = 4.0 / 3.0;            // effective-earth factor
  double frequency = 0;            // MHz
};

enum class ExactProfileStatus : std::uint8_t {
  kOk,
  kTooFewSamples,     // fewer than 2
  kBadDistance,       // not a number above 0
  kBadEarthFactor,    // not a number above 0
  kBadFrequency,      // not a number above 0
  kBadAntennaHeight,  // negative or not a number
  kVoidEnd,           // no ground at the start or at the end, hence no line of sight: samples without it
  kAllVoid,           // no ground at all: the same
};

struct ExactSample {
  double distance = 0;                // km from the start
  std::optional<double> ground;       // metres; empty in a void
  double rise = 0;                    // metres
  std::optional<double> lineOfSight;  // metres above sea level
  double fresnelRadius = 0;           // metres
  std::optional<double> clearance;    // metres; empty in a void
};

// The sample with the least clearance in first-zone radii, the ends excluded; the first one of equals.
struct WorstObstacle {
  std::size_t sample = 0;  // counted from 0 at the start
  double distance = 0;     // km from the start
  double clearance = 0;    // metres
  double fraction = 0;     // clearance / radius
};

// Clear at 60 % and more of the first zone, marginal from 0 to 60 %, blocked below 0. Unknown when no sample
// between the ends has a ground, and when there are voids, unless known ground already blocks the path.
enum class ClearanceVerdict : std::uint8_t { kUnknown, kClear, kMarginal, kBlocked };

struct ExactProfile {
  ExactProfileStatus status = ExactProfileStatus::kOk;
  std::vector<ExactSample> samples;  // empty for a bad input
  std::int32_t voids = 0;            // samples without a height
  std::optional<WorstObstacle> worst;
  ClearanceVerdict verdict = ClearanceVerdict::kUnknown;
};

ExactProfile exactProfile(const ExactProfileRequest& request);

ClearanceVerdict verdictFor(double fraction);  // of the first-zone radius

}  // namespace zel
