#include "ui/page/page_origin.h"

namespace zel {

PageOrigin pageOrigin(const HostServices& host, const Clock& clock, const std::string& datum) {
  PageOrigin origin{clock.now(), host.optionalClientText("ProductName"), {}, datum};
  // What a host does not number is left out.
  for (const char* part : {"Major", "Minor", "Revision"}) {
    const std::string number = host.optionalClientText(part);
    if (number.empty()) continue;
    if (!origin.version.empty()) origin.version += '.';
    origin.version += number;
  }
  return origin;
}

PrintedDocument pageDocument(const PageContent& content) {
  const auto position = [](const PageStation& station) {
    return station.latitude + " / " + station.longitude;
  };
  const std::string blank = content.product.empty() || content.version.empty() ? "" : " ";
  return {"Terrain Profile from " + position(content.start) + " to " + position(content.end),
          content.product + blank + content.version};
}

}  // namespace zel
