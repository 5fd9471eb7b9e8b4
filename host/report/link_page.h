// The texts of one link's page, and of the table of links. Plain C++.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "planning/plan.h"
#include "report/page_figures.h"

namespace zel::host {

struct StationTexts {
  std::string name, position, antenna, ground;  // UTF-8
};

struct LabelledValue {
  std::string label, text;
};

struct LinkPage {
  std::string title;  // the link's name
  std::array<StationTexts, 2> stations;
  std::string failure;      // why there are no figures; empty when there are
  std::string plotProblem;  // why there is no plot; empty when there is one
  std::vector<LabelledValue> left, right;
  std::vector<std::string> notes;
};

// What the figures of the whole report need of the settings.
struct ReportUnits {
  bool imperial = false;
};

// "North ridge - South hill", as the map's window has it.
std::string reportName(const Plan& plan, const Link& link);
// The same for drawing: with marks that keep the order of the two where names run from right to left.
std::string shownLinkName(const std::string& from, const std::string& to);

// Positions are written as the setting Settings/CoordFormat says, so on the component's thread.
LinkPage linkPage(const Plan& plan, const Link& link, const PageFigures& figures, const ReportUnits& units);

// A link's line in the table.
struct LinkRow {
  LinkId id = 0;
  std::string from, to;
  double distanceKm = 0, bearingDeg = 0;
  std::optional<double> frequencyMhz;  // without figures only where the link has its own
  std::optional<double> freeSpaceDb, modeledDb, clearancePercent;
  PathVerdict verdict = PathVerdict::kUnknown;
  bool noTerrain = false;
  std::string error;        // why there are no figures
  std::string plotProblem;  // why there is no plot
  int page = 0;             // of the report, counted from 1
};
LinkRow linkRow(const Plan& plan, LinkId id, const PageFigures& figures);

// "clear", ... ; "no terrain" or "refused" when there are no figures: the words of the map's table.
std::string verdictWordOf(const LinkRow& row);

inline constexpr std::size_t kRowColumns = 10;
// From, to, frequency, distance, bearing, free space, modeled, clearance, verdict, page.
std::array<std::string, kRowColumns> rowHeads(const ReportUnits& units);
std::array<std::string, kRowColumns> rowTexts(const LinkRow& row, const ReportUnits& units);
// "12 links: 3 clear, 4 marginal, 4 blocked, 1 without figures"
std::string rowsSentence(const std::vector<LinkRow>& rows);

}  // namespace zel::host
