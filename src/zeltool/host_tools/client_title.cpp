#include "zeltool/host_tools/client_title.h"

#include "automation/client_text.h"

namespace zel {

std::string clientTitle(const DispatchPtr& client) { return clientText(client, "Title"); }

}  // namespace zel
