// A QObject's properties, declared and dynamic, as late-bound ones: for hosts that are Qt programs.
//
// Names are found without regard to ASCII case. The object may go at any time: from then on every access
// fails with AutomationError kFailed. A value that the property's own type cannot hold is kOverflow, never
// cut down to it.
#pragma once

#include "zel/automation.h"

class QObject;

namespace zel {

// Null for null. The object stays its owner's.
DispatchPtr dispatchFromQObject(QObject* object);

}  // namespace zel
