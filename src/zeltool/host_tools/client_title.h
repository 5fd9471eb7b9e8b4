// The name under which a host's settings are kept.
#pragma once

#include <string>

#include "zel/automation.h"

namespace zel {

// The client's Title, read anew at each call; throws as clientText does.
std::string clientTitle(const DispatchPtr& client);

}  // namespace zel
