#include "report/link_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

#include "analysis/link_computation.h"
#include "planning/short_number.h"
#include "zel/coordinates.h"
#include "zel/longley_rice.h"

namespace zel::host {
namespace {

constexpr double kMetresAFoot = 0.3048, kKilometresAMile = 1.609344;
constexpr std::size_t kMostFiles = 4;  // named on a page

// At most so many decimals, none that are not needed.
std::string shortText(double value, int mostDecimals) {
  std::string text = fixedNumber(value, mostDecimals);
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string height(double metres, const ReportUnits& units, int decimals = 0) {
  if (!std::isfinite(metres)) return "no height";
  return units.imperial ? fixedNumber(metres / kMetresAFoot, decimals) + " ft"
                        : fixedNumber(metres, decimals) + " m";
}

std::string distanceNumber(double km, const ReportUnits& units, int decimals) {
  return fixedNumber(units.imperial ? km / kKilometresAMile : km, decimals);
}

std::string distance(double km, const ReportUnits& units) {
  return distanceNumber(km, units, 2) + (units.imperial ? " mi" : " km");
}

std::string decibels(double value) { return fixedNumber(value, 1) + " dB"; }

std::string positionText(const Position& position) {
  return latitudeText(position.latitude) + ", " + longitudeText(position.longitude);
}

std::string antennaText(double wishedM, std::optional<double> usedM, const ReportUnits& units) {
  const std::string unit = units.imperial ? " ft" : " m";
  const auto text = [&](double metres) {
    return shortText(units.imperial ? metres / kMetresAFoot : metres, 2) + unit;
  };
  std::string antenna = text(wishedM) + " above ground";
  if (usedM && *usedM != wishedM) antenna += "; computed with " + text(*usedM);
  return antenna;
}

StationTexts stationTexts(const Station& station, std::optional<double> usedM, std::optional<double> groundM,
                          const ReportUnits& units) {
  return {station.name, positionText(station.position), antennaText(station.antennaM, usedM, units),
          !groundM                  ? std::string()
          : std::isfinite(*groundM) ? height(*groundM, units) + " above sea level"
                                    : "no height in the terrain"};
}

std::string filesText(const TerrainProvenance& terrain) {
  std::string text;
  const std::size_t shown =
      terrain.files.size() > kMostFiles + 1 ? kMostFiles : terrain.files.size();  // not "and 1 more"
  for (std::size_t i = 0; i < shown; ++i)
    text += (i == 0 ? "" : ", ") + std::filesystem::path(terrain.files[i]).filename().string();
  if (shown < terrain.files.size()) text += " and " + std::to_string(terrain.files.size() - shown) + " more";
  return text.empty() ? "no raster had a height" : text;
}

std::string bearings(const PageFigures& figures) {
  return fixedNumber(figures.bearingDeg, 1) + "\xC2\xB0, back " + fixedNumber(figures.reverseBearingDeg, 1) +
         "\xC2\xB0";
}

std::string verdictSentence(const LinkResult& result) {
  switch (result.verdict) {
    case PathVerdict::kClear:
      return "clear: 60 % of the first Fresnel zone or more is free";
    case PathVerdict::kMarginal:
      return "marginal: the line of sight is free, but less than 60 % of the first Fresnel zone";
    case PathVerdict::kBlocked:
      return "blocked: the ground reaches above the line of sight";
    case PathVerdict::kUnknown:
      break;
  }
  return "unknown: ground on the way has no height";
}

std::string obstacleText(const PathObstacle& obstacle, const ReportUnits& units) {
  return distance(obstacle.distanceKm, units) + " from the start, ground " + height(obstacle.groundM, units);
}

std::string clearanceText(const PathObstacle& obstacle, const ReportUnits& units) {
  return height(obstacle.clearanceM, units, 1) + " there, " + fixedNumber(obstacle.clearancePercent, 0) +
         " % of the first Fresnel zone";
}

std::string percentText(double fraction) { return fixedNumber(fraction * 100, 0) + " %"; }

std::string datumText(const Plan& plan, const PathProfile& profile) {
  if (plan.datum == PlanDatum::kNad83) return "NAD-83 (as WGS 84)";
  if (profile.terrain.datumOperation.empty()) return "NAD-27";
  return "NAD-27, converted by " + profile.terrain.datumOperation;
}

void addValue(std::vector<LabelledValue>& values, const char* label, std::string text) {
  if (!text.empty()) values.push_back({label, std::move(text)});
}

void addPath(LinkPage& page, const PageFigures& figures, const ReportUnits& units) {
  const LinkResult& result = figures.result;
  addValue(page.left, "Distance", distance(figures.distanceKm, units));
  addValue(page.left, "Bearing", bearings(figures));
  if (!result.error.empty()) return;
  addValue(page.left, "Free-space loss", decibels(result.freeSpaceDb));
  std::string modeled = "none";
  if (result.modeledDb) modeled = decibels(*result.modeledDb);
  if (result.modeledDb && figures.loss.reverseModeledDb)
    modeled += ", back " + decibels(*figures.loss.reverseModeledDb);
  addValue(page.left, "Modeled loss", modeled);
  if (result.modeledDb) addValue(page.left, "Mode", pathModeText(figures.loss.mode, figures.loss.method));
  addValue(page.left, "Verdict", verdictSentence(result));
  if (result.worst) {
    addValue(page.left, "Worst obstacle", obstacleText(*result.worst, units));
    addValue(page.left, "Obstacle at", positionText(result.worst->position));
    addValue(page.left, "Clearance", clearanceText(*result.worst, units));
  }
  addValue(page.left, "Ground",
           "lowest " + height(figures.profile.minimumM, units) + ", highest " +
               height(figures.profile.maximumM, units) + ", average " +
               height(figures.profile.averageM, units) + " above sea level");
}

void addModel(std::vector<LabelledValue>& values, const PathLossModelInputs& model) {
  const char* climate = radioClimateName(model.climate);
  addValue(values, "Model",
           std::string("Longley-Rice, ") +
               (model.polarization == Polarization::kVertical ? "vertical" : "horizontal") +
               " polarization, climate " + std::to_string(model.climate) +
               (climate != nullptr ? " (" + std::string(climate) + ")" : std::string()));
  addValue(values, "Ground constants",
           "permittivity " + shortText(model.permittivity, 3) + ", conductivity " +
               shortText(model.conductivity, 6) + " S/m");
  addValue(values, "Refractivity", shortText(model.surfaceRefractivity, 1) + " N-units at the surface");
  addValue(values, "Statistics",
           "confidence " + percentText(model.confidence) + ", reliability " + percentText(model.reliability));
}

void addInputs(LinkPage& page, const Plan& plan, const Link& link, const PageFigures& figures,
               const ReportUnits& units) {
  const LinkResult& result = figures.result;
  const char* owner = link.frequencyMhz ? " (of this link)" : " (of the settings)";
  if (result.error.empty()) {
    addValue(page.right, "Frequency", shortText(result.frequencyMhz, 6) + " MHz" + owner);
    addValue(page.right, "Earth factor k", shortText(result.k, 4));
    addValue(page.right, "Terrain", result.terrain + ", " + figures.profile.terrain.method);
    addValue(page.right, "Files", filesText(figures.profile.terrain));
    addValue(page.right, "Samples",
             std::to_string(figures.profile.points) + ", " + height(figures.profile.spacingM, units, 2) +
                 " apart");
    if (result.modeledDb) addModel(page.right, figures.loss.model);
  } else if (link.frequencyMhz) {
    addValue(page.right, "Frequency", shortText(*link.frequencyMhz, 6) + " MHz" + owner);
  }
  addValue(page.right, "Datum", datumText(plan, figures.profile));
}

void addNotes(std::vector<std::string>& notes, const std::vector<std::string>& more) {
  for (const std::string& note : more)
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
}

// Those of the map's table, but for the model's parameters, which stand among the values.
std::vector<std::string> notesOf(const PageFigures& figures) {
  std::vector<std::string> notes;
  if (!figures.result.error.empty()) return notes;
  addNotes(notes, figures.loss.warnings);
  if (!figures.result.modeledDb && figures.loss.status != 0)
    addNotes(notes, {"no modeled loss: " + figures.loss.error});
  addNotes(notes, {"figures are in exact geometry, from station to station; the plot follows samples of its "
                   "own, which begin a little before the start and end a little behind the end"});
  addNotes(notes, figures.profile.terrain.warnings);
  addNotes(notes, figures.profile.notes);
  addNotes(notes, figures.loss.notes);
  return notes;
}

// The plot needs more ground than the figures, which nobody would guess from the place of a missing sample.
std::string plotProblemOf(const Plan& plan, const Link& link, const LinkResult& result) {
  const std::string& problem = result.profileProblem;
  const bool ofGround =
      antennaProblem(plan.stations.at(link.from), plan.stations.at(link.to)).empty() && !problem.empty();
  return (ofGround ? "the plot reaches a twentieth of the path beyond both stations; " : "") + problem;
}

}  // namespace

std::string reportName(const Plan& plan, const Link& link) {
  const auto name = [&plan](StationId id) {
    const auto found = plan.stations.find(id);
    return found == plan.stations.end() ? std::string() : found->second.name;
  };
  return name(link.from) + " - " + name(link.to);
}

std::string shownLinkName(const std::string& from, const std::string& to) {
  constexpr const char* kIsolate = "\xE2\x81\xA8";  // U+2068, first strong isolate
  constexpr const char* kEnd = "\xE2\x81\xA9";      // U+2069
  // Latin names need none, and whoever searches the document finds the plain text.
  const auto plain = [](const std::string& name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0xD6; });
  };
  if (plain(from) && plain(to)) return from + " - " + to;
  return kIsolate + from + kEnd + " - " + kIsolate + to + kEnd;
}

LinkPage linkPage(const Plan& plan, const Link& link, const PageFigures& figures, const ReportUnits& units) {
  const Station& from = plan.stations.at(link.from);
  const Station& to = plan.stations.at(link.to);
  const bool computed = figures.result.error.empty();
  const auto used = [&](std::int16_t metres) {
    return computed ? std::optional<double>(metres) : std::nullopt;
  };
  const auto ground = [&](double metres) { return computed ? std::optional<double>(metres) : std::nullopt; };
  LinkPage page;
  page.title = shownLinkName(from.name, to.name);
  page.stations = {
      stationTexts(from, used(figures.profile.startHeightM), ground(figures.profile.startGroundM), units),
      stationTexts(to, used(figures.profile.endHeightM), ground(figures.profile.endGroundM), units)};
  page.failure = figures.result.error;
  page.plotProblem = computed ? plotProblemOf(plan, link, figures.result) : figures.result.error;
  addPath(page, figures, units);
  addInputs(page, plan, link, figures, units);
  page.notes = notesOf(figures);
  return page;
}

LinkRow linkRow(const Plan& plan, LinkId id, const PageFigures& figures) {
  const Link& link = plan.links.at(id);
  LinkRow row;
  row.id = id;
  row.from = plan.stations.at(link.from).name;
  row.to = plan.stations.at(link.to).name;
  row.distanceKm = figures.distanceKm;
  row.bearingDeg = figures.bearingDeg;
  row.error = figures.result.error;
  row.noTerrain = figures.result.noTerrain;
  row.plotProblem = plotProblemOf(plan, link, figures.result);
  row.frequencyMhz = link.frequencyMhz;
  if (!row.error.empty()) return row;
  row.frequencyMhz = figures.result.frequencyMhz;
  row.freeSpaceDb = figures.result.freeSpaceDb;
  row.modeledDb = figures.result.modeledDb;
  row.verdict = figures.result.verdict;
  if (figures.result.worst) row.clearancePercent = figures.result.worst->clearancePercent;
  return row;
}

std::string verdictWordOf(const LinkRow& row) {
  if (row.noTerrain) return "no terrain";
  return row.error.empty() ? verdictText(row.verdict) : "refused";
}

std::array<std::string, kRowColumns> rowHeads(const ReportUnits& units) {
  return {"From",
          "To",
          "Frequency (MHz)",
          units.imperial ? "Distance (mi)" : "Distance (km)",
          "Bearing (\xC2\xB0)",
          "Free space (dB)",
          "Modeled (dB)",
          "Clearance (%)",
          "Verdict",
          "Page"};
}

std::array<std::string, kRowColumns> rowTexts(const LinkRow& row, const ReportUnits& units) {
  const auto number = [](const std::optional<double>& value, int decimals) {
    return value ? fixedNumber(*value, decimals) : std::string();
  };
  return {row.from,
          row.to,
          row.frequencyMhz ? shortText(*row.frequencyMhz, 3) : std::string(),
          distanceNumber(row.distanceKm, units, 2),
          fixedNumber(row.bearingDeg, 1),
          number(row.freeSpaceDb, 1),
          number(row.modeledDb, 1),
          number(row.clearancePercent, 0),
          verdictWordOf(row),
          std::to_string(row.page)};
}

std::string rowsSentence(const std::vector<LinkRow>& rows) {
  std::array<std::size_t, 4> verdicts{};
  std::size_t failed = 0;
  for (const LinkRow& row : rows) {
    if (row.error.empty())
      ++verdicts.at(static_cast<std::size_t>(row.verdict));
    else
      ++failed;
  }
  std::string text = std::to_string(rows.size()) + (rows.size() == 1 ? " link" : " links");
  const char* separator = ": ";
  const auto add = [&](std::size_t count, const char* words) {
    if (count == 0) return;
    text += separator + std::to_string(count) + " " + words;
    separator = ", ";
  };
  for (const PathVerdict verdict :
       {PathVerdict::kClear, PathVerdict::kMarginal, PathVerdict::kBlocked, PathVerdict::kUnknown})
    add(verdicts.at(static_cast<std::size_t>(verdict)), verdictText(verdict));
  add(failed, "without figures");
  return text;
}

}  // namespace zel::host
