// For hosts that are Qt programs: a QObject as the application object, or as any other late-bound one.
//
//   auto* application = new HostApplication;  // a QObject with the properties Title, Path ...
//   profiler.SetClientApp(zel::dispatchFromQObject(application));
//
// Its properties, declared and dynamic, are read and written by name without regard to ASCII case. A value
// that the property's own type cannot hold is kOverflow, never cut down to it.
//
// Lifetime: the object stays its owner's, who may delete it at any time. From then on every access fails with
// AutomationError kFailed. It is used on the thread that calls, so that must be the object's own.
#ifndef ZEL_QOBJECT_H_
#define ZEL_QOBJECT_H_

#include "zel/automation.h"
#include "zel/export.h"

class QObject;

namespace zel {

// Null for null.
ZEL_API DispatchPtr dispatchFromQObject(QObject* object);

}  // namespace zel

#endif  // ZEL_QOBJECT_H_
