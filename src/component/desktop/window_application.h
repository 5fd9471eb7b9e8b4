// The graphical application that windows need: the host's own, or one that is made for a host that has none.
#pragma once

namespace zel {

// Makes sure that windows can be shown from this thread. Throws RuntimeError 1001 with the reason when they
// cannot: no display, an application without widgets, a foreign thread, another version of the toolkit in the
// process. The host is never ended by it. An application that is made here is kept until the process ends.
void ensureWindowApplication();

// The name of a toolkit library in the process that is not the one this library uses; empty when there is
// none.
const char* foreignToolkit();

}  // namespace zel
