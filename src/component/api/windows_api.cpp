#include "component/component.h"
#include "component/desktop/window_application.h"
#include "foundation/runtime_error.h"
#include "zel/windows.h"

namespace zel {

std::string windowsProblem() {
  try {
    // Before an application is made: one of another thread would keep the component's own from its windows.
    Component::instance().thread().checkIfOwned();
    ensureWindowApplication();
  } catch (const AutomationError& error) {
    return error.what();
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return {};
}

}  // namespace zel
