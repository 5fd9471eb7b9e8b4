// The gnuplot that signal graphs are drawn with.
#pragma once

#include <optional>
#include <string>

namespace zel::host {

// Where the setting Settings/gnuPlotEXE is not set, the gnuplot found along PATH is set for this run. What
// was done, or that there is none, in words; nothing where the setting is set, though it be to nothing: no
// picture is wanted then.
std::optional<std::string> provideGnuplot();

}  // namespace zel::host
