// When and for which host a page is made, and what its document says of that.
#pragma once

#include <string>

#include "component/services/host_services.h"
#include "platform/print_service.h"
#include "platform/process_services.h"
#include "ui/page/page_content.h"

namespace zel {

// Product and version as the host's application object has them at this moment; empty where it has none.
// The datum is that of the stations.
PageOrigin pageOrigin(const HostServices& host, const Clock& clock, const std::string& datum);

// What the document of a page says of itself: the path, and the host that made it.
PrintedDocument pageDocument(const PageContent& content);

}  // namespace zel
