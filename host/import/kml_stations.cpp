// KML: a Placemark's Point is a station, its LineString of two points a link.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/column_names.h"
#include "import/formats.h"
#include "import/station_collector.h"
#include "import/xml_walk.h"

namespace zel::host {
namespace {

struct KmlPoint {
  double latitude = 0, longitude = 0, altitude = 0;
};

std::vector<std::string_view> tokensOf(std::string_view text, std::string_view separators, std::size_t most) {
  std::vector<std::string_view> tokens;
  std::size_t begin = text.find_first_not_of(separators);
  while (begin != std::string_view::npos && tokens.size() < most) {
    const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
    tokens.push_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(separators, end);
  }
  return tokens;
}

// "-84.25,36.31,420": longitude first.
std::optional<KmlPoint> pointOf(std::string_view text) {
  // Some programs write a blank behind the comma.
  const auto parts = tokensOf(text, ", \t\r\n", 4);
  if (parts.size() < 2 || parts.size() > 3) return std::nullopt;
  const auto east = decimalNumber(parts[0]), north = decimalNumber(parts[1]);
  const auto altitude = parts.size() == 3 ? decimalNumber(parts[2]) : std::optional(0.0);
  if (!east || !north) return std::nullopt;
  return KmlPoint{*north, *east, altitude.value_or(0)};
}

class KmlReader : public XmlListener {
 public:
  explicit KmlReader(StationCollector& collector) : collector_(collector) {}

  void start(const std::string& name, const std::string&, const Attribute& attribute,
             std::size_t line) override {
    if (name == "Placemark") {
      placemark_ = Placemark{};
      placemark_.line = line;
    } else if (name == "NetworkLink") {
      collector_.leaveOut(line, "a link to another file is not followed");
    } else if (name == "Data" || name == "SimpleData") {
      property_ = attribute("name");
    } else if (isGeometry(name)) {
      geometry_ = name;
      relative_ = false;
    }
  }

  void end(const std::string& name, const std::string& parent, const std::string& text) override {
    if (name == "Placemark") return finish();
    if (name == "name" && parent == "Placemark") placemark_.name = text;
    if (name == "altitudeMode") relative_ = withoutBlanks(text) == "relativeToGround";
    if ((name == "value" && parent == "Data") || name == "SimpleData") takeProperty(text);
    if (name == "coordinates") takeCoordinates(text);
    if (name == geometry_) {
      if (relative_ && name == "Point" && !placemark_.points.empty()) placemark_.relativeToGround = true;
      geometry_.clear();
    }
  }

 private:
  struct Placemark {
    std::size_t line = 0;
    std::string name, otherName;
    std::vector<KmlPoint> points;
    std::vector<std::pair<KmlPoint, KmlPoint>> lines;
    std::vector<std::string> problems;
    std::optional<double> antennaM, frequencyMhz;
    bool relativeToGround = false;
  };

  static bool isGeometry(const std::string& name) {
    return name == "Point" || name == "LineString" || name == "LinearRing" || name == "Polygon" ||
           name == "Model" || name == "Track";
  }

  void takeProperty(const std::string& text) {
    const ColumnMeaning meaning = columnMeaning(property_);
    if (meaning.role == ColumnRole::kAntenna) {
      if (const auto height = lengthText(text, meaning.unit)) placemark_.antennaM = height;
    } else if (meaning.role == ColumnRole::kFrequency) {
      if (const auto frequency = frequencyText(text, meaning.unit)) placemark_.frequencyMhz = frequency;
    } else if (meaning.role == ColumnRole::kName && !withoutBlanks(text).empty()) {
      if (placemark_.otherName.empty()) placemark_.otherName = text;
    }
  }

  void takeCoordinates(const std::string& text) {
    if (geometry_ == "Point") {
      if (const auto point = pointOf(text))
        placemark_.points.push_back(*point);
      else
        placemark_.problems.push_back(shownText(withoutBlanks(text)) + " is no position");
    } else if (geometry_ == "LineString") {
      takeLine(text);
    }
  }

  void takeLine(const std::string& text) {
    const auto points = tokensOf(text, " \t\r\n", 3);
    if (points.size() != 2) {
      placemark_.problems.push_back(points.size() < 2 ? "a line without two points is no link"
                                                      : "a line of more than two points is no link");
      return;
    }
    const auto from = pointOf(points[0]), to = pointOf(points[1]);
    if (from && to)
      placemark_.lines.emplace_back(*from, *to);
    else
      placemark_.problems.push_back(shownText(withoutBlanks(text)) + " are no two positions");
  }

  void finish() {
    const std::string name = withoutBlanks(placemark_.name).empty() ? placemark_.otherName : placemark_.name;
    for (const KmlPoint& point : placemark_.points) {
      if (collector_.full()) {
        collector_.leaveOutBeyond(placemark_.line);
        continue;
      }
      collector_.addStation({name, point.latitude, point.longitude, antennaAt(point)}, placemark_.line);
    }
    for (const auto& [from, to] : placemark_.lines)
      collector_.addLine(
          {name.empty() ? name : name + " A", from.latitude, from.longitude, placemark_.antennaM, false},
          {name.empty() ? name : name + " B", to.latitude, to.longitude, placemark_.antennaM, false},
          placemark_.line, placemark_.frequencyMhz);
    for (std::string& problem : placemark_.problems) collector_.leaveOut(placemark_.line, std::move(problem));
    if (placemark_.points.empty() && placemark_.lines.empty() && placemark_.problems.empty())
      collector_.leaveOut(placemark_.line, (name.empty() ? "a placemark" : shownText(name)) +
                                               " has neither a point nor a line of two points");
    placemark_ = Placemark{};
  }

  std::optional<double> antennaAt(const KmlPoint& point) {
    if (point.altitude == 0 || placemark_.antennaM) {
      if (point.altitude != 0 && !placemark_.relativeToGround) collector_.seaLevelHeight();
      return placemark_.antennaM;
    }
    if (placemark_.relativeToGround) {
      collector_.heightOverGround();
      return point.altitude;
    }
    collector_.seaLevelHeight();
    return std::nullopt;
  }

  StationCollector& collector_;
  Placemark placemark_;
  std::string property_, geometry_;
  bool relative_ = false;
};

}  // namespace

ImportedStations kmlStations(std::string_view text, const std::string& name, const ImportOptions& options) {
  StationCollector collector(options, "KML", name);
  KmlReader reader(collector);
  if (std::string problem = walkXml(text, reader, collector); !problem.empty())
    return std::move(collector).refuse(std::move(problem));
  return std::move(collector).finish();
}

}  // namespace zel::host
