// Texts and numbers as JSON, piece by piece: a list of a million links is never in memory as a whole.
#pragma once

#include <string>
#include <string_view>

namespace zel::host {

// In quotes. What is no UTF-8 is U+FFFD.
std::string jsonText(std::string_view text);
void appendJsonText(std::string& out, std::string_view text);
// The shortest number that reads back as the value; null for what is not finite.
std::string jsonNumber(double value);
// To so many decimals, without zeros behind the last digit that counts.
void appendJsonNumber(std::string& out, double value, int decimals);

}  // namespace zel::host
