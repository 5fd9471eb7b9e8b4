#include "ui/page/page_notes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "foundation/number_text.h"
#include "models/longrice/radio_climate.h"
#include "profile/path_loss/modeled_loss.h"
#include "profile/view_state/clearance_readout.h"

namespace zel {
namespace {

constexpr std::size_t kMostFiles = 6;
constexpr std::size_t kMostWarnings = 3;
constexpr std::size_t kAnyWidth =
    std::numeric_limits<std::size_t>::max();  // a note has as many lines as it takes

class Notes {
 public:
  explicit Notes(const ProfileViewState& state) : state_(state) {}

  std::string units(const std::string& datum) const {
    const DisplayUnits& units = state_.inputs.units;
    std::string text = "Heights, also those without a unit, in " + units.height.abbreviation +
                       " above mean sea level (AMSL) or above ground (AGL), distances in " +
                       units.distance.abbreviation + ".";
    if (!datum.empty()) text += " Positions in " + datum + ".";
    return text;
  }

  std::string terrain() const {
    const SamplingReport& report = state_.samplingReport;
    const std::string source =
        "source " + std::to_string(report.sourceCode) + " \"" + report.sourceName + '"';
    std::string text = "Terrain: ";
    text += report.bundledSample ? "bundled sample terrain, as " + source + " is not set" : source;
    if (!report.method.empty()) text += ", " + report.method;
    text += ", " + std::to_string(state_.path.samples) + " samples " + distance(state_.path.spacing) +
            " apart; " + files() + "." + voids();
    if (report.datumShifted)
      text += " The terrain was read at positions shifted to NAD-83 by " + operation(report.datumOperation);
    return text;
  }

  std::vector<std::string> warnings() const {
    const std::vector<std::string>& all = state_.samplingReport.warnings;
    std::vector<std::string> notes;
    for (std::size_t i = 0; i < std::min(all.size(), kMostWarnings); ++i)
      notes.push_back("Warning: " + all[i]);
    if (all.size() > kMostWarnings)
      notes.back() += " (and " + counted(all.size() - kMostWarnings, "more warning") + ")";
    return notes;
  }

  std::string model(const std::string& modeledLoss) const {
    const std::string none = "No modeled path loss: ";
    if (!state_.model) return none + "the settings of the radio model cannot be used.";
    if (!isModelFrequency(state_.inputs.frequency)) return none + "the radio model takes 20 to 20000 MHz.";
    if (modeledLoss.empty()) return none + "the radio model has none for this path.";
    const ModelParameters& parameters = *state_.model;
    return "Modeled path loss: Longley-Rice irregular terrain model 1.2.2, point-to-point; " +
           std::string(parameters.polarization == 0 ? "horizontal" : "vertical") + " polarization, climate " +
           climate(parameters.climate) + ", ground permittivity " + number(parameters.permittivity) +
           ", conductivity " + number(parameters.conductivity) + " S/m, surface refractivity " +
           number(parameters.refractivity) + " N-units, confidence " + percent(parameters.confidence) +
           ", reliability " + percent(parameters.reliability) + ".";
  }

  std::string clearance() const {
    const std::string text = pathClearanceText(state_, pathClearance(state_), {}, kAnyWidth);
    return text.empty() ? text : "Clearance of the first Fresnel zone in exact geometry: " + text + ".";
  }

  std::string plot() const {
    if (state_.expanded)
      return "The plot shows the stretch between the markers, its distances count from the start; all values "
             "are "
             "of the whole path.";
    return "The plot reaches " + distance(state_.path.extension * state_.path.spacing) +
           " beyond each station; its distances count from the start.";
  }

 private:
  static std::string number(double value) { return generalNumber(value); }

  std::string distance(double km) const {
    const DisplayUnit& unit = state_.inputs.units.distance;
    return formatNumber(km * unit.factor, "0.0###") + " " + unit.abbreviation;
  }

  static std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
  }

  std::string files() const {
    const std::vector<std::string>& all = state_.samplingReport.files;
    if (all.empty()) return "no raster had a height";
    std::string text = "heights from ";
    for (std::size_t i = 0; i < std::min(all.size(), kMostFiles); ++i)
      text += (i == 0 ? "" : ", ") + all[i].substr(all[i].rfind('/') + 1);
    if (all.size() > kMostFiles) text += " and " + counted(all.size() - kMostFiles, "more raster");
    return text;
  }

  std::string voids() const {
    const std::int32_t count = state_.samplingReport.voids;
    if (count <= 0) return {};
    return " " + counted(static_cast<std::size_t>(count), "sample") +
           " without a height, drawn in red at sea level and counted as 0 in the statistics.";
  }

  std::string operation(const DatumOperation& operation) const {
    return operation.name + (operation.accuracy < 0 ? " (accuracy unknown)."
                                                    : " (accuracy " + number(operation.accuracy) + " m).");
  }

  static std::string climate(int code) {
    const std::string_view name = longrice::radioClimateName(code);
    return std::to_string(code) + (name.empty() ? "" : " (" + std::string(name) + ")");
  }

  // Of a normal deviate: its upper tail, which is what the deviates are looked up by.
  static std::string percent(double deviate) {
    return std::to_string(std::lround(50 * std::erfc(deviate / std::sqrt(2.0)))) + " %";
  }

  const ProfileViewState& state_;
};

}  // namespace

std::vector<std::string> pageNotes(const ProfileViewState& state, const std::string& modeledLoss,
                                   const std::string& datum) {
  const Notes notes(state);
  std::vector<std::string> all{notes.units(datum), notes.terrain()};
  for (std::string& warning : notes.warnings()) all.push_back(std::move(warning));
  for (const std::string& note : {notes.clearance(), notes.model(modeledLoss), notes.plot()})
    if (!note.empty()) all.push_back(note);
  return all;
}

}  // namespace zel
