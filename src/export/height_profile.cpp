#include "export/height_profile.h"

#include "profile/real32.h"

namespace zel {
namespace {

// F[k] + d (F[k] + F[k + 1] / spacing): no interpolation, but the rule of this column, and meant.
double fresnelAtMarker(const ProfileColumns& columns, std::int32_t sample, double distance, double spacing) {
  const double here = columns.fresnel(sample);
  return here + distance * (here + columns.fresnel(sample + 1) / spacing);
}

// Empty for a marker that is not placed, and so for one that stands on or before the start.
std::string markerLine(const ExportProfile& profile, const ProfileColumns& columns,
                       const ProfileMarker& marker, std::string_view title) {
  const PlotIndex index = profile.state.plotIndex();
  const double x = double{marker.keptX};
  const double distance = double{toReal32(index.distanceFromStart(x))};
  if (distance <= 0) return {};
  ExportLine line(profile.numbers);
  line.text(title)
      .field(marker.position.latitude)
      .field(marker.position.longitude)
      .field(columns.shownDistance(distance))
      .field(columns.shownHeight(double{marker.groundHeight}))
      .field(columns.shownHeight(
          fresnelAtMarker(columns, index.markerSample(x), distance, profile.state.path.spacing)))
      .number(columns.shownHeight(columns.lineOfSightAt(x)));
  return line.str();
}

}  // namespace

std::string pointLine(const ExportProfile& profile, const ProfileColumns& columns, std::int32_t sample) {
  const GeoPoint& position = profile.positions[sample];
  ExportLine line(profile.numbers);
  line.field(columns.point(sample))
      .field(columns.shownDistance(columns.distance(sample)))
      .field(toReal32(position.latitude))
      .field(toReal32(position.longitude));
  columns.appendHeights(line, sample);
  line.number(columns.shownHeight(columns.relativeRise(sample)));
  return line.str();
}

void writeHeightProfile(const ExportProfile& profile, const LineSink& write) {
  const ProfileViewState& state = profile.state;
  const DisplayUnits& units = state.inputs.units;
  const ProfileColumns columns(profile);
  write(summaryTitles(units));
  ExportLine summary(profile.numbers);
  columns.appendSummary(summary);
  write(summary.str());
  write(markerTitles(units));
  write(markerLine(profile, columns, state.leftMarker, "'Left Marker', "));
  write(markerLine(profile, columns, state.rightMarker, "'Right Marker', "));
  write(pointTitles(units));
  for (std::int32_t i = columns.samples().first; i <= columns.samples().last; ++i)
    write(pointLine(profile, columns, i));
}

}  // namespace zel
