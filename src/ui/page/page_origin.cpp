#include "ui/page/page_origin.h"

#include <cstddef>

#include "foundation/utf8.h"

namespace zel {

namespace {

// A host's name and numbers are short; what is not would push the page off its sheet.
std::string shortText(std::string text) {
  constexpr std::size_t kLongest = 200;  // bytes
  if (text.size() <= kLongest) return text;
  std::size_t end = kLongest;
  while (end > 0 && !beginsCharacter(text[end])) --end;
  return text.substr(0, end);
}

}  // namespace

PageOrigin pageOrigin(const HostServices& host, const Clock& clock, const std::string& datum) {
  PageOrigin origin{clock.now(), shortText(host.optionalClientText("ProductName")), {}, datum};
  // What a host does not number is left out.
  for (const char* part : {"Major", "Minor", "Revision"}) {
    const std::string number = shortText(host.optionalClientText(part));
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
