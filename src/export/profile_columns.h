// The columns that the height profile and the signal profile share.
//
// Values are taken in metres and kilometres and written times the factors of the display units. The line of
// sight goes by absolute sample numbers: its step from sample to sample and its height at x = 0 are held in
// single precision, so that an expanded view shows the same line as the whole path.
#pragma once

#include <cstdint>

#include "export/export_profile.h"
#include "export/export_texts.h"

namespace zel {

class ProfileColumns {
 public:
  // The profile outlives the columns.
  explicit ProfileColumns(const ExportProfile& profile);

  SampleRange samples() const { return samples_; }

  // Of a sample, from 1 to T. Throw RuntimeError 9 outside the arrays.
  std::int32_t point(std::int32_t sample) const { return sample - samples_.first + 1; }
  double distance(std::int32_t sample) const;  // km from the view's first sample
  double ground(std::int32_t sample) const;    // metres above sea level
  // The line of sight where no Fresnel line is chosen. An index failure at the same samples, from N + E + 1
  // on, in either case.
  double fresnel(std::int32_t sample) const;
  double lineOfSight(std::int32_t sample) const;
  double relativeRise(std::int32_t sample) const;  // above the rise of the view's first sample

  // At a plot x, km.
  double lineOfSightAt(double x) const;

  // In display units.
  double shownDistance(double km) const { return km * state_.inputs.units.distance.factor; }
  double shownHeight(double metres) const { return metres * state_.inputs.units.height.factor; }

  // ", " and the path's summary up to the datum, with nothing after it.
  void appendSummary(ExportLine& line) const;
  // Ground, Fresnel line, line of sight, each followed by ", ".
  void appendHeights(ExportLine& line, std::int32_t sample) const;

 private:
  const ExportProfile& profile_;
  const ProfileViewState& state_;
  SampleRange samples_;
  float sightStep_;     // metres a sample
  float sightAtStart_;  // metres at x = 0
};

}  // namespace zel
