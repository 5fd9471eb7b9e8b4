#include "component/desktop/window_application.h"
#include "foundation/runtime_error.h"
#include "zel/windows.h"

namespace zel {

std::string windowsProblem() {
  try {
    ensureWindowApplication();
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return {};
}

}  // namespace zel
