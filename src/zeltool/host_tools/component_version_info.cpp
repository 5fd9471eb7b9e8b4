#include "zeltool/host_tools/component_version_info.h"

namespace zel {

std::string ComponentVersionInfo::Query(std::string_view productName) const {
  std::string text = version_;
  if (!productName.empty()) text.append(" (").append(productName).append(")");
  return text;
}

}  // namespace zel
