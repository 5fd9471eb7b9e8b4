// The signal profile: for every sample of the view the field strength that a transmitter on the view's first
// sample would give there, by the irregular terrain model, by the point-to-point model and in free space; and
// the ground heights of the view in a block of fixed columns.
#pragma once

#include <cstdint>
#include <functional>

#include "export/export_profile.h"
#include "export/export_texts.h"
#include "export/signal_levels.h"
#include "models/ptp/parameters.h"

namespace zel {

// Called for each sample before its line is handed over: the sample's number in the view, from 1, and how
// many there are. What it throws ends the export.
using EachSample = std::function<void(std::int32_t sample, std::int32_t samples)>;

// Hands over the lines in their order; those before a failure have been handed over. Throws RuntimeError 9
// for an index outside an array, 6 for a level that is no number and 1101 without model parameters. A failure
// of the irregular terrain model stops the export with the model's error, the sample named.
void writeSignalProfile(const ExportProfile& profile, const SignalRequest& request,
                        const ptp::PtpParameters& pointToPoint, const LineSink& write,
                        const EachSample& eachSample);

// Twelve heights a line in whole metres, from the sample after the view's first up to eleven past its last,
// as they fill the lines. Throws RuntimeError 9 where these lie past the last sample of all; the pieces
// before have been handed over.
void writeTerrainBlock(const ExportProfile& profile, const PieceSink& write);

}  // namespace zel
