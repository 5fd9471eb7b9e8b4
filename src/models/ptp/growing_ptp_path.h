// Ground between two antennas that grows at its end, sample by sample, and what the delta-Bullington method
// asks of it: the parameter of the equivalent knife edge, and the antennas' heights above a smooth earth
// fitted to the ground (ITU-R P.526, section 4.5; the fitted surface, its attachment on effective antenna
// heights).
//
// Sample 0 is the transmitter's, the last the receiver's; obstacles are the samples between them. Sample i
// lies i spacings from the transmitter.
//
// A sample that is added costs some nanoseconds, whatever the length of the path: the transmitter's horizons
// and the sums of the fit are kept up. A question goes over the blocks of blocked_heights.h. Whoever has a
// whole path appends it all; that is the same work in the same order, so that both give the same numbers to
// the last bit. It keeps 16 bytes a sample.
//
// On the plane, heights are lowered by the fall of the effective earth since the transmitter, 500 d^2 / a_e m
// (km), so that the earth is flat. A slope of the method between two points of the path is the slope on the
// plane plus a number that depends on the path's length only; where slopes are compared, added in pairs or
// subtracted, it falls out.
#pragma once

#include <cstddef>
#include <span>

#include "models/ptp/blocked_heights.h"

namespace zel::ptp {

// Metres above the smooth earth, 0 or more.
struct EffectiveHeights {
  double transmitter = 0;  // h'_ts
  double receiver = 0;     // h'_rs
};

class GrowingPtpPath {
 public:
  // Kilometres between samples; a_e, km; metres above sea level. Throws ParameterError for what no path has.
  GrowingPtpPath(double spacing, double effectiveRadius, double transmitterTop);

  void reserve(std::size_t samples);
  // Metres above sea level. Throws ParameterError with the sample's number (from 1) for what is no height,
  // for a path that becomes longer than any on the earth, and for a first sample above the transmitter; the
  // path is then as it was.
  void append(std::span<const float> elevations);
  void append(float elevation) { append({&elevation, 1}); }

  std::size_t samples() const { return ground_.size(); }
  double distance() const;  // d, km
  double spacing() const { return spacing_; }
  double effectiveRadius() const { return effectiveRadius_; }
  double transmitterTop() const { return transmitterTop_; }
  double elevation(std::size_t sample) const { return ground_[sample]; }  // metres above sea level

  // For at least two samples, and a receiver's top on or above the last sample, metres above sea level.

  // nu of the Bullington part, dimensionless, for a wavelength in metres: of the obstacle with the greatest
  // nu when the antennas see each other, else of an edge where the rays to both horizons cross. kLeastNu when
  // it is not above that.
  double bullingtonNu(double receiverTop, double wavelength) const;

  EffectiveHeights effectiveHeights(double receiverTop) const;

 private:
  void append(double elevation);
  void addObstacle(std::size_t sample);
  void addToFit(std::size_t sample);
  void checkElevations(std::span<const float> elevations) const;

  double spacing_;
  double effectiveRadius_;
  double transmitterTop_;
  BlockedHeights ground_;  // h_i, metres above sea level
  BlockedHeights plane_;   // h_i on the plane, metres
  // Slopes from the transmitter's top to the obstacle that it sees highest, metres a sample.
  double steepestOnPlane_;
  double steepestOnGround_;
  // The sums v1 and v2 of the fit, in metres x samples and metres x samples^2.
  double fitSum_ = 0;
  double fitMoment_ = 0;
};

}  // namespace zel::ptp
