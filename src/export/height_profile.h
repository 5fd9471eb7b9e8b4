// The height-profile file: the path's summary, the two markers, and one line for each sample of the view.
#pragma once

#include "export/export_profile.h"
#include "export/export_texts.h"

namespace zel {

// Hands over the lines in their order; those before a failure have been handed over. Throws RuntimeError 9
// where an index lies outside an array: also for a marker so near the end that its Fresnel value would need a
// sample beyond the last.
void writeHeightProfile(const ExportProfile& profile, const LineSink& write);

}  // namespace zel
