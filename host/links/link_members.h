// What JSON and GeoJSON say alike about a list and its links, as members of an object: "\"name\":value" with
// commas between.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "links/link_writer.h"

namespace zel::host {

// A comma unless the object has just been opened.
void appendMemberName(std::string& out, std::string_view name);
void appendTexts(std::string& out, const std::vector<std::string>& texts);

// "program" to "model": what is known before the first link.
std::string computedFromMembers(const WriterOptions& options);
// "terrain_files" to "counts": what is known behind the last.
std::string totalsMembers(const WriterOptions& options, const LinkTotals& totals);
// The figures of a link by their names, null where there is none.
void appendFigures(std::string& out, const std::vector<std::string>& names, const LinkFigures& figures);
// Of an antenna or a frequency as used, null where it is not known.
void appendNumberMember(std::string& out, std::string_view name, std::optional<double> value);

}  // namespace zel::host
