#include "export/profile_columns.h"

#include "profile/real32.h"

namespace zel {

ProfileColumns::ProfileColumns(const ExportProfile& profile)
    : profile_(profile),
      state_(profile.state),
      samples_(exportedSamples(profile.state)),
      sightStep_(toReal32(double{state_.lineOfSight.slope} * state_.path.spacing)),
      sightAtStart_(toReal32(state_.plotIndex().lineOfSightAt(state_.lineOfSight, 0))) {}

double ProfileColumns::distance(std::int32_t sample) const {
  return (sample - samples_.first) * state_.path.spacing;
}

double ProfileColumns::ground(std::int32_t sample) const { return double{state_.elevation[sample]}; }

double ProfileColumns::fresnel(std::int32_t sample) const {
  if (sample > state_.path.lastIndex) throw RuntimeError::subscriptOutOfRange();
  return double{state_.fresnelHeight(sample)};
}

double ProfileColumns::lineOfSight(std::int32_t sample) const {
  return sample * double{sightStep_} + double{sightAtStart_};
}

double ProfileColumns::relativeRise(std::int32_t sample) const {
  return double{state_.curve[sample]} - double{state_.curve[samples_.first]};
}

double ProfileColumns::lineOfSightAt(double x) const {
  return double{state_.lineOfSight.slope} * x + double{sightAtStart_};
}

void ProfileColumns::appendSummary(ExportLine& line) const {
  const ProfileInputs& inputs = state_.inputs;
  constexpr double kPercent = 100;
  line.text(kFieldEnd)
      .field(inputs.start.latitude)
      .field(inputs.start.longitude)
      .field(inputs.end.latitude)
      .field(inputs.end.longitude)
      .field(shownDistance(state_.path.distance))
      .field(state_.path.azimuth)
      .field(shownHeight(double{state_.statistics.maximum}))
      .field(shownHeight(double{state_.statistics.minimum}))
      .field(shownHeight(double{state_.statistics.average}))
      .field(inputs.k)
      .field(toReal32(double{inputs.fresnelFraction} * kPercent))
      .field(inputs.frequency)
      .text(profile_.datum);
}

void ProfileColumns::appendHeights(ExportLine& line, std::int32_t sample) const {
  line.field(shownHeight(ground(sample)))
      .field(shownHeight(fresnel(sample)))
      .field(shownHeight(lineOfSight(sample)));
}

}  // namespace zel
