// The small print of a page: what the profile was computed from, and how to read it. The first notes are
// those that a page without room for all of them keeps.
#pragma once

#include <string>
#include <vector>

#include "profile/view_state/profile_view_state.h"

namespace zel {

// One paragraph each. `modeledLoss` is the text that the page has for it, `datum` that of the stations;
// empty: not told.
std::vector<std::string> pageNotes(const ProfileViewState& state, const std::string& modeledLoss,
                                   const std::string& datum);

}  // namespace zel
