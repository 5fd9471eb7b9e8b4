// What all links of a run have together: counts, and what they were computed from.
//
// It can be written down and read again, so that a run that goes on ends as if it had never been cut off.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "links/link_figures.h"

namespace zel::host {

// Texts that differ in their numbers only.
struct TextKind {
  std::size_t links = 0;  // that have one
  std::size_t line = 0;   // of the first of them
  std::string example;    // the first one's

  friend bool operator==(const TextKind&, const TextKind&) = default;
};

struct LinkTotals {
  static constexpr std::size_t kMostKinds = 40;    // of notes, and of warnings
  static constexpr std::size_t kMostFiles = 2000;  // told by name

  std::size_t links = 0, errors = 0;
  // For each factor: clear, marginal, blocked, unknown.
  std::vector<std::array<std::size_t, 4>> verdicts;
  std::set<std::string> files;  // rasters that gave heights
  std::string interpolation, datumOperation;
  std::vector<std::pair<std::string, std::string>> model;  // parameters by name, as JSON values
  std::map<std::string, TextKind> notes, warnings;         // by the text with "#" for each number
  std::size_t otherTexts = 0;                              // notes and warnings of kinds beyond kMostKinds

  void add(const LinkInput& input, const LinkFigures& figures);
  std::string text() const;
  // False for what is no such text.
  bool read(std::string_view text);

  friend bool operator==(const LinkTotals&, const LinkTotals&) = default;
};

// "clear", "marginal", "blocked", "unknown", as counted.
extern const std::array<const char*, 4> kVerdictNames;

// "12.5 of 1000" as "# of #".
std::string textKind(std::string_view text);

// Values in one line: line breaks, tabs and backslashes are escaped.
std::string escapedLine(std::string_view text);
std::string unescapedLine(std::string_view text);

}  // namespace zel::host
