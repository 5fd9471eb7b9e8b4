// Whether one of the texts has the part.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace zel::test {

inline bool says(const std::vector<std::string>& texts, const std::string& part) {
  return std::any_of(texts.begin(), texts.end(),
                     [&part](const std::string& text) { return text.find(part) != std::string::npos; });
}

}  // namespace zel::test
