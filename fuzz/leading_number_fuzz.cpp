// The leading-number parse: whatever the text, a finite number or error 6; the number is that of a prefix
// that holds nothing but a number; agreement with the C library's own reading of that prefix.
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/leading_number.h"
#include "foundation/runtime_error.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

// Nothing: error 6.
std::optional<double> leading(std::string_view text) {
  try {
    const double value = zel::leadingNumber(text);
    require(std::isfinite(value));
    return value;
  } catch (const zel::RuntimeError& error) {
    require(error.number() == 6);
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::optional<double> value = leading(text);

  require(leading("  \t" + text) == value);
  // Nothing that is no part of a number changes what stands before it.
  require(leading(text + " x") == value);

  // The C library reads more (hexadecimal, inf, nan), but never another value where the text has no letter
  // but e.
  const std::size_t begin = text.find_first_not_of(" \t");
  const std::string number = begin == std::string::npos ? "" : text.substr(begin);
  if (number.find_first_not_of("0123456789+-.eE") == std::string::npos) {
    const double other = std::strtod(number.c_str(), nullptr);
    if (!value) {
      require(std::isinf(other));
    } else {
      require(*value == other);
    }
  }

  try {
    const std::optional<double> whole = zel::wholeNumberText(text);
    require(!whole || (value && *whole == *value));
  } catch (const zel::RuntimeError& error) {
    require(error.number() == 6 && !value);
  }
  return 0;
}
