// The values along a path as text for the clipboard: what the height profile says of each sample, for a
// spreadsheet to take in.
#pragma once

#include <string>

#include "export/export_profile.h"

namespace zel {

// A line of titles and one for each sample of the view, fields with a tab between them, every line ended by a
// line feed. The columns are the height profile's (height_profile.h), numbers as there in the user's decimal
// separator; titles stand without quotes. Throws RuntimeError 9 for an index outside an array, 6 for a number
// that is not finite.
std::string copiedValues(const ExportProfile& profile);

}  // namespace zel
