#include "export/copied_values.h"

#include <cstdint>
#include <string_view>

#include "export/export_texts.h"
#include "export/height_profile.h"
#include "export/profile_columns.h"

namespace zel {
namespace {

// A line of the height profile's, in which no value holds the separator.
std::string tabSeparated(std::string_view line) {
  std::string text;
  while (!line.empty()) {
    if (line.substr(0, kFieldEnd.size()) == kFieldEnd) {
      text += '\t';
      line.remove_prefix(kFieldEnd.size());
    } else {
      if (line.front() != '\'') text += line.front();
      line.remove_prefix(1);
    }
  }
  return text + '\n';
}

}  // namespace

std::string copiedValues(const ExportProfile& profile) {
  const ProfileColumns columns(profile);
  std::string text = tabSeparated(pointTitles(profile.state.inputs.units));
  for (std::int32_t i = columns.samples().first; i <= columns.samples().last; ++i)
    text += tabSeparated(pointLine(profile, columns, i));
  return text;
}

}  // namespace zel
