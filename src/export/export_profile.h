// A profile as an export writes it: everything it reads, taken when it begins, so that what the user or the
// host does meanwhile reaches no line of the file.
//
// Distances are kilometres, heights metres, positions degrees.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/number_text.h"
#include "foundation/sample_array.h"
#include "platform/geodesy.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

struct ExportProfile {
  ProfileViewState state;
  SampleArray<GeoPoint> positions;  // 1 to T: where the sampler took each sample, in the stations' datum
  std::string datum;                // "NAD-27" or "NAD-83"; empty until the host has set it
  NumberStyle numbers;              // the user's
};

// Whether there is a profile: sampled, and not refused. Exports write nothing of any other.
bool isExportable(const ProfileViewState& state);

ExportProfile exportProfile(const ProfileViewState& state, const Geodesy& geodesy, const std::string& datum,
                            const NumberStyle& numbers);

// The positions of the sampler: evenly along the geodesic from the back point to the forward point, the ends
// included. That is up to some metres off the distance that the plot's x counts, since the path bends a
// little at its end antenna.
SampleArray<GeoPoint> samplePositions(const Geodesy& geodesy, const PathGeometry& path);

// From station to station; in the expanded view the stretch of it that is drawn, which is empty between
// markers that stand both before the start or both beyond the end.
SampleRange exportedSamples(const ProfileViewState& state);

// The samples of the whole path, N + 1, whatever stretch is drawn.
std::int32_t wholePathSamples(const ProfileViewState& state);

// The model's parameters. Throws RuntimeError 1101 where the settings had none that could be read.
const ModelParameters& modelParametersOf(const ProfileViewState& state);

}  // namespace zel
