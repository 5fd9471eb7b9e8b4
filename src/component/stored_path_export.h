// Exports of the stored stations without a window: the view's state is made as the window makes it when it is
// loaded, sampled without widgets, and written.
//
// Failures go where the window's go: to the component's trap, log and boxes. The module state is left as it
// is, so nothing shows afterwards that there was a view.
#pragma once

#include <string>

#include "component/component.h"

namespace zel {

// One of the exports that need nothing but a file. A path that cannot be profiled is told as the window tells
// it, and writes nothing.
enum class StoredPathExport { kHeightProfile, kLossTable };
void exportStoredPath(Component& component, StoredPathExport kind, const std::string& outfile);

}  // namespace zel
