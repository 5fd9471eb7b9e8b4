// A text property of a host's application object.
#pragma once

#include <string>
#include <string_view>

#include "zel/automation.h"

namespace zel {

// Read anew at each call, since a host may change it; a value of another kind is its display text. Throws
// RuntimeError 91 without a client, 438 when it has no such property, 13 when the property is an object; any
// other failure of the client is passed on as the AutomationError that it is.
std::string clientText(const DispatchPtr& client, std::string_view property);

}  // namespace zel
