#include "preferences/preference_fields.h"

#include <set>

#include "zel/longley_rice.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

std::vector<FieldChoice> polarizations() { return {{"0", "Horizontal"}, {"1", "Vertical"}}; }

std::vector<FieldChoice> climates() {
  std::vector<FieldChoice> list;
  for (int code = 1; code <= 7; ++code) list.push_back({std::to_string(code), radioClimateName(code)});
  return list;
}

std::vector<FieldChoice> clutterCategories() {
  return {{"0", "None"},     {"1", "Water"},           {"2", "Open"},
          {"3", "Suburban"}, {"4", "Urban or forest"}, {"5", "Dense urban"}};
}

std::vector<FieldChoice> coordinateFormats() {
  return {{"DMS", "DMS: 36-32-11.4 N"}, {"DD", "DD: 36.536500"}};
}

// "1 second" of "rasters and folders of rasters of source 3 (1 second)".
std::string nameInMeaning(int code) {
  const auto known = knownSetting("Terrain", "Source" + std::to_string(code));
  const std::string meaning = known ? known->meaning : std::string();
  const std::size_t open = meaning.rfind('('), close = meaning.rfind(')');
  if (open == std::string::npos || close == std::string::npos || close < open) return "Terrain";
  return meaning.substr(open + 1, close - open - 1);
}

constexpr PreferencesPage kTerrain = PreferencesPage::kTerrain, kModel = PreferencesPage::kModel,
                          kPoint = PreferencesPage::kPointToPoint, kColours = PreferencesPage::kColours,
                          kPrograms = PreferencesPage::kPrograms;

}  // namespace

std::vector<FieldChoice> terrainSourceChoices() {
  const std::vector<TerrainSource> sources = terrainSources();
  std::set<std::string> names;
  for (const TerrainSource& source : sources) names.insert(source.name);
  // Terrain that is given for one run gives every source its own name.
  const bool distinct = names.size() == sources.size();
  std::vector<FieldChoice> list;
  list.reserve(sources.size());
  for (const TerrainSource& source : sources)
    list.push_back({std::to_string(source.code), (distinct ? source.name : nameInMeaning(source.code)) +
                                                     " (source " + std::to_string(source.code) + ")"});
  return list;
}

const std::vector<PreferenceField>& preferenceFields() {
  static const std::vector<PreferenceField> fields{
      {kTerrain, "In Use", "Profile", "Prf_TRes", "&Profile source", FieldKind::kChoice,
       "The terrain source that profiles and the map are drawn from", terrainSourceChoices},
      {kTerrain, "In Use", "Terrain", "CacheMB", "&Memory", FieldKind::kNumber,
       "Memory for terrain: what decoded heights may take; with more of it, less is read twice"},

      {kModel, "Antennas and Air", "ITM", "iHor", "&Polarization", FieldKind::kChoice,
       "Polarization of both antennas", polarizations, "1"},
      {kModel, "Antennas and Air", "ITM", "iRadioClimate", "&Climate", FieldKind::kChoice,
       "Radio climate: how much the loss varies with time", climates},
      {kModel, "Antennas and Air", "ITM", "dSurfRef", "&Refractivity", FieldKind::kNumber,
       "Surface refractivity: that of the air at the ground; 301 is the usual value of temperate land",
       nullptr, nullptr, 250, 400},
      {kModel, "Ground", "ITM", "dDielectric", "P&ermittivity", FieldKind::kNumber,
       "Relative permittivity of the ground"},
      {kModel, "Ground", "ITM", "dCond", "C&onductivity", FieldKind::kNumber, "Conductivity of the ground"},
      {kModel, "Variability", "ITM", "dConfidence", "Con&fidence", FieldKind::kPercent,
       "In how many of 100 like situations the loss is no greater than the one shown"},
      {kModel, "Variability", "ITM", "dReliability", "Re&liability", FieldKind::kPercent,
       "In how much of the time the loss is no greater than the one shown"},

      {kPoint, "Antennas", "PTP", "Polarization", "&Polarization", FieldKind::kChoice,
       "Polarization of both antennas", polarizations},
      {kPoint, "Ground", "PTP", "Permittivity", "P&ermittivity", FieldKind::kNumber,
       "Relative permittivity of the ground"},
      {kPoint, "Ground", "PTP", "Conductivity", "C&onductivity", FieldKind::kNumber,
       "Conductivity of the ground"},
      {kPoint, "Clutter", "PTP", "ClutterCategory", "&Clutter", FieldKind::kChoice,
       "What covers the ground around the antennas", clutterCategories},
      {kPoint, "Clutter", "PTP", "ClutterHeight", "Clutter heigh&t", FieldKind::kNumber,
       "Height of the clutter above ground; 0 takes the category's own"},

      {kColours, "Lines of the Plot", "Colors", "cFresnel", "&Fresnel line", FieldKind::kColour,
       "Color of the Fresnel line and of the antenna masts"},
      {kColours, "Lines of the Plot", "Colors", "cLOS", "&Line of sight", FieldKind::kColour,
       "Color of the line of sight"},
      {kColours, "Lines of the Plot", "Colors", "cLRMarker", "&Markers", FieldKind::kColour,
       "Color of the left and the right marker"},
      {kColours, "Lines of the Plot", "Colors", "cElevation", "&Elevation lines", FieldKind::kColour,
       "Color of the elevation reference lines and their labels"},
      {kColours, "Lines of the Plot", "Colors", "cRange", "&Range lines", FieldKind::kColour,
       "Color of the range reference lines and their labels"},
      {kColours, "Lines of the Plot", "Colors", "cStrobe", "&Strobe", FieldKind::kColour,
       "Color of the line that follows the pointer"},

      {kPrograms, "Helper Program", "Settings", "gnuPlotEXE", "g&nuplot", FieldKind::kProgram,
       "The gnuplot program, which draws signal graphs"},
      {kPrograms, "Positions", "Settings", "CoordFormat", "&Coordinates", FieldKind::kChoice,
       "How positions are written: degrees, minutes, seconds (DMS) or decimal degrees (DD)",
       coordinateFormats},
  };
  return fields;
}

}  // namespace zel::host
