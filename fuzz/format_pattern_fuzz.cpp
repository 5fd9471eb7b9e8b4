// Number formats: any pattern and any value. The first eight bytes are the value, the rest the pattern.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "foundation/leading_number.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

std::size_t decimalsOf(std::string_view pattern) {
  const std::size_t point = pattern.find('.');
  return point == std::string_view::npos ? 0 : pattern.size() - point - 1;
}

// A pattern of digit places alone: the text reads back as the value, to the last place that it shows.
void checkPlainPattern(double value, const std::string& pattern, const std::string& text) {
  if (std::abs(value) > 1e14 || decimalsOf(pattern) > 15) return;
  const double shown = zel::leadingNumber(text);
  const double half = 0.5 * std::pow(10.0, -static_cast<double>(decimalsOf(pattern)));
  // The decimal value has 15 digits; its last one and the powers' last bits come on top.
  require(std::abs(shown - value) <= half * (1 + 1e-9) + std::abs(value) * 1e-14);
  require(text.empty() || text.back() != '.');
  require(shown != 0 || text.empty() || text.front() != '-');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double value = 0;
  if (size < sizeof(value)) return 0;
  std::memcpy(&value, data, sizeof(value));
  const std::string pattern(reinterpret_cast<const char*>(data) + sizeof(value), size - sizeof(value));
  const bool hasPlace = pattern.find_first_of("#0") != std::string::npos;
  try {
    const std::string text = zel::formatNumber(value, pattern);
    require(std::isfinite(value) && hasPlace);
    const bool plain =
        pattern.find_first_not_of("#0.") == std::string::npos && pattern.find('.') == pattern.rfind('.');
    if (plain) checkPlainPattern(value, pattern, text);
  } catch (const zel::RuntimeError& error) {
    require(error.number() == 6 || error.number() == 51);
    require(error.number() != 6 || !std::isfinite(value));
  }

  // The very largest values round up to more than a 64-bit float holds.
  if (std::abs(value) < 1.79769313486231e308) {
    const double general = zel::leadingNumber(zel::generalNumber(value));
    require(std::abs(general - value) <= std::abs(value) * 1e-14 + 1e-323);
    const float narrow = static_cast<float>(value);
    if (std::isfinite(narrow))
      require(static_cast<float>(zel::leadingNumber(zel::shortestNumber(narrow))) == narrow);
  }
  return 0;
}
