// The height-profile file: the path's summary, the two markers, and one line for each sample of the view.
#pragma once

#include <cstdint>
#include <string>

#include "export/export_profile.h"
#include "export/export_texts.h"
#include "export/profile_columns.h"

namespace zel {

// Hands over the lines in their order; those before a failure have been handed over. Throws RuntimeError 9
// where an index lies outside an array: also for a marker so near the end that its Fresnel value would need a
// sample beyond the last.
void writeHeightProfile(const ExportProfile& profile, const LineSink& write);

// The line of one sample, its columns as pointTitles says. Throws RuntimeError 9 as above.
std::string pointLine(const ExportProfile& profile, const ProfileColumns& columns, std::int32_t sample);

}  // namespace zel
