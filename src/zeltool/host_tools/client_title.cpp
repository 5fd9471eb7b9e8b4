#include "zeltool/host_tools/client_title.h"

#include "foundation/runtime_error.h"

namespace zel {

std::string clientTitle(const DispatchPtr& client) {
  if (client == nullptr) throw RuntimeError::objectVariableNotSet();
  try {
    return client->get("Title").toText();
  } catch (const AutomationError& error) {
    if (error.code() == AutomationErrorCode::kTypeMismatch) throw RuntimeError::typeMismatch();
    throw RuntimeError::propertyNotFound();
  }
}

}  // namespace zel
