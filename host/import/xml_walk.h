// XML of strangers, read in one pass.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace zel::host {

class StationCollector;

// What a reader hears. Names are without prefix: programs write prefixes that they never declare.
class XmlListener {
 public:
  using Attribute = std::function<std::string(const char* name)>;  // empty when there is none

  virtual ~XmlListener() = default;
  virtual void start(const std::string& name, const std::string& parent, const Attribute& attribute,
                     std::size_t line) = 0;
  // `text` is what stands between the last start tag and this end tag.
  virtual void end(const std::string& name, const std::string& parent, const std::string& text) = 0;
};

inline constexpr std::size_t kLongestTag = 16U << 10;  // bytes
inline constexpr int kDeepestElement = 100;

// The name of the first element without prefix; empty when there is none.
std::string rootElement(std::string_view text);

// Gives why the text cannot be read, with the line; empty when all of it was, or the collector is cancelled.
// UTF-8 whatever the declaration says. Refused are document types (with them entities of one's own and
// outside files), tags longer than kLongestTag and elements deeper than kDeepestElement.
std::string walkXml(std::string_view text, XmlListener& listener, StationCollector& collector);

}  // namespace zel::host
