// The text of a settings file: sections in brackets, lines of key=value, comments after ";" or "#".
//
// Section, key and value are percent-escaped (see escaped_text.h), so that any bytes survive; the file itself
// is UTF-8. Comments, blank lines and the order of what a person wrote stay as they are when a value changes.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zel {

// What of a text could not be read.
struct IniDamage {
  std::size_t lines = 0;      // that could not be read; 0 for a sound text
  std::size_t firstLine = 0;  // counted from 1
  std::string firstReason;    // why, in words
};

class IniDocument {
 public:
  using Section = std::map<std::string, std::string, std::less<>>;
  using Sections = std::map<std::string, Section, std::less<>>;

  IniDocument() = default;
  // Reads whatever can be read. Unreadable: a line that is not UTF-8, holds control characters, or is neither
  // a section, a comment nor key=value; a last line without its end, whose value may be cut; and the lines
  // under a section name that cannot be read.
  explicit IniDocument(std::string_view text);

  const IniDamage& damage() const { return damage_; }

  // Null when there is none. Of a key that stands twice, the later one counts.
  const std::string* find(std::string_view section, std::string_view key) const;
  const Sections& sections() const { return sections_; }

  void set(std::string_view section, std::string_view key, std::string_view value);

  // The lines that could be read, each with its end.
  std::string text() const;

 private:
  enum class LineKind { kSection, kSetting, kOther };
  struct Line {
    LineKind kind;
    std::string section;  // that it belongs to
    std::string key;      // of a setting
    std::string text;     // as it stands in the file, without its end
  };

  void readLine(std::string_view line, std::size_t number, std::string& section, bool& sectionKnown);
  void addDamage(std::size_t number, std::string_view reason);

  std::vector<Line> lines_;
  Sections sections_;
  IniDamage damage_;
};

}  // namespace zel
