// From the ground between two antennas to the few numbers that the irregular terrain model knows a path by
// (Algorithm section 7, "the point-to-point mode").
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "models/longrice/horizons.h"
#include "models/longrice/straight_line_fit.h"

namespace zel::longrice {

// What the antennas see of each other.
enum class PathMode { kLineOfSight, kSingleHorizon, kDoubleHorizon };

// Index 0 is the transmitter, 1 the receiver.
struct PathTerrain {
  double distance = 0;                        // d, metres
  std::array<double, 2> structuralHeights{};  // h_g, of the antennas above ground, metres
  std::array<double, 2> effectiveHeights{};   // h_e, above what the ground is to the path, metres
  std::array<double, 2> horizonDistances{};   // d_L, metres
  std::array<double, 2> horizonAngles{};      // theta_e, elevation angles, radians
  double deltaH = 0;                          // terrain irregularity, metres
  PathMode mode = PathMode::kLineOfSight;
};

// Ground that grows at its end, sample by sample: after each sample the path up to it can be described, at a
// cost that hardly grows with its length. Whoever has a whole path appends it all; that is the same work in
// the same order, so both give the same numbers to the last bit.
class GrowingPath {
 public:
  // Metres between samples, 1/m, metres above ground. Throws ParameterError for a spacing or a height that no
  // path has.
  GrowingPath(double spacing, double effectiveCurvature, double transmitterHeight);

  void reserve(std::size_t samples);
  // Metres above sea level. Throws ParameterError with the sample's number (from 1) for what is no height,
  // and for a path that becomes longer than any on the earth; the path is then as it was.
  void append(std::span<const double> elevations);
  void append(double elevation) { append({&elevation, 1}); }
  std::size_t samples() const { return ground_.size(); }

  // The path from the first sample to the last, where the receiver stands so many metres above ground. Throws
  // ParameterError when there are less than two samples, and for a height that no antenna has.
  PathTerrain describe(double receiverHeight) const;

 private:
  void describeFreePath(PathTerrain& path) const;
  void describeObstructedPath(PathTerrain& path) const;

  double spacing_;
  double effectiveCurvature_;
  double transmitterHeight_;
  SummedHeights ground_;
  HorizonSearch search_;
};

// The mean of a path's middle, from a tenth of its intervals to nine tenths, metres. At least one height is
// needed.
double meanElevation(std::span<const double> elevations);

}  // namespace zel::longrice
