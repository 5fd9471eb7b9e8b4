// Gathers what the readers of the single formats find: checks positions and heights once for all of them,
// counts what is left out, and joins the ends of lines with the stations that stand there.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/station_list.h"

namespace zel::host {

struct FoundStation {
  std::string name;                    // may be empty, long, or of several lines
  double latitude = 0, longitude = 0;  // degrees, unchecked
  std::optional<double> antennaM;      // above ground, unchecked
  bool ownName = true;                 // false for the end of a line that is named after the line
};

class StationCollector {
 public:
  // `fileName` gives stations without a name theirs: "masts 3" in masts.csv.
  StationCollector(const ImportOptions& options, std::string kind, const std::string& fileName);

  void addStation(const FoundStation& station, std::size_t line);
  // Two stations and a link. An end that stands where a station of the file stands is that station; when both
  // have names or heights of their own, these must agree, too.
  void addLine(const FoundStation& from, const FoundStation& to, std::size_t line,
               std::optional<double> frequencyMhz = std::nullopt);
  // Stations linked in order.
  void addRoute(const std::vector<FoundStation>& points, std::size_t line);
  void leaveOut(std::size_t line, std::string why);
  void note(std::string text) { result_.notes.push_back(std::move(text)); }
  void seaLevelHeight() { ++seaLevelHeights_; }  // told, not taken
  void heightOverGround() { ++heightsOverGround_; }

  // Whether there is room for another station. What comes beyond it need not be looked at: leaveOut() it.
  bool full() const { return result_.stations.size() >= kMostStations; }
  void leaveOutBeyond(std::size_t line);

  // False when the work is to end. Cheap enough for each row.
  bool advance(double fraction);
  bool cancelled() const { return cancelled_; }

  ImportedStations finish() &&;
  ImportedStations refuse(std::string error) &&;

 private:
  struct Line {
    FoundStation from, to;
    std::size_t line;
    std::optional<double> frequencyMhz;
  };
  using Place = std::pair<double, double>;

  bool checkPosition(FoundStation& station, std::size_t line);
  std::optional<std::size_t> place(const FoundStation& station, std::size_t line);
  std::optional<std::size_t> placeEnd(const FoundStation& end, std::size_t line);
  bool sameStation(std::size_t index, const FoundStation& end) const;
  void joinLines();
  void link(std::size_t from, std::size_t to, std::size_t line, std::optional<double> frequencyMhz);
  double antennaOf(const FoundStation& station);
  bool seemExchanged() const;
  void tellCounts();
  std::string nothingTaken() const;

  const ImportOptions& options_;
  std::string stem_;
  ImportedStations result_;
  std::vector<Line> lines_;
  std::multimap<Place, std::size_t> places_;  // filled when the first line is joined
  std::set<std::pair<std::size_t, std::size_t>> linked_;
  std::vector<bool> ownNames_, ownHeights_;  // of the stations
  std::size_t seaLevelHeights_ = 0, heightsOverGround_ = 0, missingHeights_ = 0, badHeights_ = 0;
  std::size_t badFrequencies_ = 0, unnamed_ = 0, exchanged_ = 0, projected_ = 0;
  double toldFraction_ = -1;
  bool toldBeyond_ = false;
  bool cancelled_ = false;
};

// A piece of the file for a message: in quotes, on one line, cut when long.
std::string shownText(std::string_view text);
// Names of columns, one behind the other; of many the first dozen and how many more there are.
std::string shownNames(const std::vector<std::string>& names);
// "1 row", "12 rows".
std::string counted(std::size_t count, const std::string& one, const std::string& several);
// A number as short as it goes: "95", "-84.25".
std::string shownNumber(double value);
// A decimal number that is the whole text, blanks around it aside, with point or comma; nothing for what is
// not finite.
std::optional<double> decimalNumber(std::string_view text);
// A length in metres: "30", "30 m", "98.4 ft"; `unit` in metres where the text names none.
std::optional<double> lengthText(std::string_view text, double unit);
// A frequency in MHz: "450", "6.2 GHz"; `unit` in MHz where the text names none. What is no frequency is no
// number (NaN), so that it counts as one that cannot be taken; an empty text is none at all.
std::optional<double> frequencyText(std::string_view text, double unit);
std::string_view withoutBlanks(std::string_view text);

}  // namespace zel::host
