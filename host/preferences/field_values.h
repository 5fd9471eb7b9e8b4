// What the boxes of the preferences show, and what is stored for it: numbers, percentages, colours, lists of
// paths, programs. Texts in, texts out; no widgets.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

// The number with which the text begins, as the component reads a stored text; 0 without one.
double leadingValue(std::string_view text);
// The same text, or the same number written in another way.
bool sameValue(std::string_view a, std::string_view b);

// A stored confidence or reliability is a fraction from 0.01 to 1 or a percentage above 1; shown is the
// percentage that the component makes of it.
std::string shownPercent(std::string_view stored);
// "0.9" for "90". Nothing for anything but a whole percentage from 1 to 99: the model has no deviate for
// 100 %, and rounds to whole percentages.
std::optional<std::string> storedPercent(std::string_view shown);

// A stored colour is 0x00BBGGRR as a decimal number; shown it is "#rrggbb".
std::string shownColour(std::string_view stored);
// Nothing for anything but "#" and six hexadecimal digits; the "#" may be missing.
std::optional<std::string> storedColour(std::string_view shown);
// Of "#rrggbb" against white, 1 to 21 (relative luminances, WCAG 2.1).
double contrastWithWhite(std::string_view shown);
// Below it a thin line is hard to see on the white plot. The default colours, down to cyan at 1.25, pass.
inline constexpr double kLeastContrast = 1.2;

// Stored terrain paths have ";" between them.
std::vector<std::string> pathsOf(std::string_view stored);
std::string joinedPaths(const std::vector<std::string>& paths);
// Why it cannot stand in the list; empty when it can. Whether there is such a file is another question.
std::string pathProblem(std::string_view path);

// The executable file of that name along PATH.
std::optional<std::string> programFound(const std::string& name);
// Why the file cannot be run; empty when it can.
std::string programProblem(const std::string& path);

struct GroundKind {
  const char* name;
  const char* permittivity;  // relative
  const char* conductivity;  // S/m
};
// The kinds of ground that the published tables of the irregular terrain model list.
const std::vector<GroundKind>& groundKinds();

}  // namespace zel::host
