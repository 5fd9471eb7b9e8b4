#include "desktop/gnuplot.h"

#include "preferences/field_values.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr const char* kGnuplotSection = "Settings";
constexpr const char* kGnuplotKey = "gnuPlotEXE";

}  // namespace

std::optional<std::string> provideGnuplot() {
  const auto set = storedSetting(kGnuplotSection, kGnuplotKey);
  if (set) return std::nullopt;  // also an empty one, which says that none is wanted
  const auto found = programFound("gnuplot");
  if (!found) return "there is no gnuplot along PATH; install it, or name it in Settings/gnuPlotEXE";
  overrideSetting(kGnuplotSection, kGnuplotKey, *found);
  return "gnuplot is the one found along PATH, " + *found +
         ", because the setting Settings/gnuPlotEXE is not set";
}

}  // namespace zel::host
