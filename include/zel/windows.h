// Whether the component's windows can be shown, for hosts that have a way to go on without them.
#ifndef ZEL_WINDOWS_H_
#define ZEL_WINDOWS_H_

#include <string>

#include "zel/export.h"

namespace zel {

// Why ProfileControl::ShowMainForm, ShowOptionsForm and PForm could not show a window from the calling
// thread, as a sentence without its full stop; empty when they can. A process without a graphical application
// gets one by this, as by those members, and keeps it.
ZEL_API std::string windowsProblem();

}  // namespace zel

#endif  // ZEL_WINDOWS_H_
