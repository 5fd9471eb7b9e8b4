#include "zeltool/settings_store/ini_document.h"

#include <algorithm>
#include <iterator>

#include "foundation/text.h"
#include "foundation/utf8.h"
#include "zeltool/settings_store/escaped_text.h"

namespace zel {

namespace {

// What would be read as something else inside a name.
constexpr std::string_view kSpecialInNames = "=[];#";

bool isTextLine(std::string_view line) {
  while (!line.empty()) {
    const std::size_t length = utf8SequenceLength(line);
    const auto byte = static_cast<unsigned char>(line.front());
    if (length == 0 || (byte < 0x20 && byte != '\t') || byte == 0x7F) return false;
    line.remove_prefix(length);
  }
  return true;
}

std::string settingLine(std::string_view key, std::string_view value) {
  return escapedText(key, kSpecialInNames) + "=" + escapedText(value, "");
}

std::string sectionLine(std::string_view section) {
  std::string line("[");
  return line.append(escapedText(section, kSpecialInNames)).append("]");
}

}  // namespace

IniDocument::IniDocument(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  // All of them: one that is left would be taken for the file's own once the file is written anew.
  while (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());
  std::string section;
  bool sectionKnown = true;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
      addDamage(number, "the last line has no line end, so that it may be cut off");
      break;
    }
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    readLine(line, number, section, sectionKnown);
  }
}

void IniDocument::readLine(std::string_view line, std::size_t number, std::string& section,
                           bool& sectionKnown) {
  const std::string_view content = trimmed(line);
  const bool opensSection = !content.empty() && content.front() == '[';
  if (!isTextLine(line)) {
    if (opensSection) sectionKnown = false;
    return addDamage(number, "it is not text in UTF-8");
  }
  if (content.empty() || content.front() == ';' || content.front() == '#') {
    lines_.push_back({LineKind::kOther, section, {}, std::string(line)});
    return;
  }
  if (opensSection) {
    sectionKnown = content.size() > 1 && content.back() == ']';
    if (!sectionKnown) return addDamage(number, "its section name has no closing bracket");
    section = unescapedText(trimmed(content.substr(1, content.size() - 2)));
    lines_.push_back({LineKind::kSection, section, {}, std::string(line)});
    return;
  }
  const std::size_t equals = content.find('=');
  if (equals == std::string_view::npos) return addDamage(number, "it is no key=value");
  if (!sectionKnown) return addDamage(number, "the name of its section cannot be read");
  std::string key = unescapedText(trimmed(content.substr(0, equals)));
  sections_[section][key] = unescapedText(trimmed(content.substr(equals + 1)));
  lines_.push_back({LineKind::kSetting, section, std::move(key), std::string(line)});
}

void IniDocument::addDamage(std::size_t number, std::string_view reason) {
  if (damage_.lines++ > 0) return;
  damage_.firstLine = number;
  damage_.firstReason = reason;
}

const std::string* IniDocument::find(std::string_view section, std::string_view key) const {
  const auto sectionFound = sections_.find(section);
  if (sectionFound == sections_.end()) return nullptr;
  const auto found = sectionFound->second.find(key);
  return found == sectionFound->second.end() ? nullptr : &found->second;
}

void IniDocument::set(std::string_view section, std::string_view key, std::string_view value) {
  sections_[std::string(section)][std::string(key)] = value;
  const auto sameSetting = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
    return line.kind == LineKind::kSetting && line.section == section && line.key == key;
  });
  if (sameSetting != lines_.rend()) {
    sameSetting->text = settingLine(key, value);
    return;
  }
  const Line added{LineKind::kSetting, std::string(section), std::string(key), settingLine(key, value)};
  // Behind the section's last name or setting, so that blank lines and comments before the next section stay
  // there.
  const auto sameSection = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
    return line.kind != LineKind::kOther && line.section == section;
  });
  if (sameSection != lines_.rend()) {
    lines_.insert(sameSection.base(), added);
    return;
  }
  if (!lines_.empty()) lines_.push_back({LineKind::kOther, std::string(section), {}, {}});
  lines_.push_back({LineKind::kSection, std::string(section), {}, sectionLine(section)});
  lines_.push_back(added);
}

std::string IniDocument::text() const {
  std::string result;
  for (const Line& line : lines_) result.append(line.text).append("\n");
  return result;
}

}  // namespace zel
