#include "automation/client_text.h"

#include "foundation/runtime_error.h"

namespace zel {

std::string clientText(const DispatchPtr& client, std::string_view property) {
  if (client == nullptr) throw RuntimeError::objectVariableNotSet();
  AutomationValue value;
  try {
    value = client->get(property);
  } catch (const AutomationError& error) {
    if (error.code() == AutomationErrorCode::kMemberNotFound) throw RuntimeError::propertyNotFound();
    throw;
  }
  if (value.kind() == AutomationValue::Kind::kObject) throw RuntimeError::typeMismatch();
  return value.display();
}

}  // namespace zel
