#include "export/export_profile.h"

namespace zel {
namespace {

constexpr int kNoModelParameters = 1101;

}  // namespace

bool isExportable(const ProfileViewState& state) {
  return !state.flags.profileError && !state.flags.resample && !state.elevation.empty();
}

ExportProfile exportProfile(const ProfileViewState& state, const Geodesy& geodesy, const std::string& datum,
                            const NumberStyle& numbers) {
  return {state, samplePositions(geodesy, state.path), datum, numbers};
}

SampleArray<GeoPoint> samplePositions(const Geodesy& geodesy, const PathGeometry& path) {
  const DistanceAzimuth line = geodesy.DistanceAndBearing(path.back, path.forward);
  SampleArray<GeoPoint> positions(static_cast<std::size_t>(path.samples));
  for (std::int32_t i = 1; i <= path.samples; ++i)
    positions[i] =
        geodesy.PointAtDistance(path.back, (i - 1) * line.distance / (path.samples - 1), line.azimuth);
  return positions;
}

// The view is expanded between the positions that the markers keep when they are cleared.
SampleRange exportedSamples(const ProfileViewState& state) {
  const PlotIndex index = state.plotIndex();
  if (!state.expanded) return index.stationToStation();
  return index.expandedStationToStation(double{state.leftMarker.x}, double{state.rightMarker.x});
}

std::int32_t wholePathSamples(const ProfileViewState& state) { return state.path.intervals + 1; }

const ModelParameters& modelParametersOf(const ProfileViewState& state) {
  if (!state.model)
    throw RuntimeError(kNoModelParameters,
                       "The parameters of the irregular terrain model could not be read from the settings "
                       "(section \"ITM\")");
  return *state.model;
}

}  // namespace zel
