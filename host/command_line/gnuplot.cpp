#include "command_line/gnuplot.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr const char* kGnuplotSection = "Settings";
constexpr const char* kGnuplotKey = "gnuPlotEXE";

std::optional<std::string> programAlongPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view rest = path == nullptr ? std::string_view() : std::string_view(path);
  while (!rest.empty()) {
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::filesystem::path program = std::filesystem::path(rest.substr(0, colon)) / name;
    std::error_code none;
    if (program.is_absolute() && std::filesystem::is_regular_file(program, none) &&
        access(program.c_str(), X_OK) == 0)
      return program.string();
    rest.remove_prefix(std::min(colon + 1, rest.size()));
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> provideGnuplot() {
  const auto set = storedSetting(kGnuplotSection, kGnuplotKey);
  if (set) return std::nullopt;  // also an empty one, which says that none is wanted
  const auto found = programAlongPath("gnuplot");
  if (!found) return "there is no gnuplot along PATH; install it, or name it in Settings/gnuPlotEXE";
  overrideSetting(kGnuplotSection, kGnuplotKey, *found);
  return "gnuplot is the one found along PATH, " + *found +
         ", because the setting Settings/gnuPlotEXE is not set";
}

}  // namespace zel::host
