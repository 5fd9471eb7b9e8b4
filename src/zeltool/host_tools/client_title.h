// The name under which a host's settings are kept.
#pragma once

#include <string>

#include "zel/automation.h"

namespace zel {

// The client's Title, read anew at each call, since a host may change it. Throws RuntimeError 91 without a
// client, 438 when it has no Title, 13 when its Title is no text.
std::string clientTitle(const DispatchPtr& client);

}  // namespace zel
