// GPX: waypoints are stations, the points of a route stations that are linked in order. A track is where
// somebody went, and no plan.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import/formats.h"
#include "import/station_collector.h"
#include "import/xml_walk.h"

namespace zel::host {
namespace {

class GpxReader : public XmlListener {
 public:
  explicit GpxReader(StationCollector& collector) : collector_(collector) {}

  void start(const std::string& name, const std::string&, const Attribute& attribute,
             std::size_t line) override {
    if (name == "wpt" || name == "rtept") {
      point_ = readPoint(attribute, line);
      pointLine_ = line;
    } else if (name == "rte") {
      route_ = Route{};
      route_.line = line;
    } else if (name == "trk") {
      trackLine_ = line;
      trackPoints_ = 0;
    } else if (name == "trkpt") {
      ++trackPoints_;
    }
  }

  void end(const std::string& name, const std::string& parent, const std::string& text) override {
    const bool ofPoint = parent == "wpt" || parent == "rtept";
    if (ofPoint && point_) {
      if (name == "name") point_->name = text;
      if (name == "ele" && decimalNumber(text).value_or(0) != 0) collector_.seaLevelHeight();
    }
    if (name == "name" && parent == "rte") route_.name = text;
    if (name == "wpt") finishWaypoint();
    if (name == "rtept") finishRoutePoint();
    if (name == "rte") finishRoute();
    if (name == "trk")
      collector_.leaveOut(trackLine_, "a track of " + counted(trackPoints_, "point", "points") +
                                          " is neither stations nor links");
  }

 private:
  struct Route {
    std::size_t line = 0;
    std::string name;
    std::vector<FoundStation> points;
  };

  std::optional<FoundStation> readPoint(const Attribute& attribute, std::size_t line) {
    const std::string north = attribute("lat"), east = attribute("lon");
    const auto latitude = decimalNumber(north), longitude = decimalNumber(east);
    if (latitude && longitude) return FoundStation{{}, *latitude, *longitude, std::nullopt};
    collector_.leaveOut(line, "lat " + shownText(north) + " and lon " + shownText(east) + " are no position");
    return std::nullopt;
  }

  void finishWaypoint() {
    if (!point_) return;
    if (collector_.full())
      collector_.leaveOutBeyond(pointLine_);
    else
      collector_.addStation(*point_, pointLine_);
    point_.reset();
  }

  void finishRoutePoint() {
    if (!point_) return;
    if (route_.points.size() < kMostStations)
      route_.points.push_back(std::move(*point_));
    else
      collector_.leaveOutBeyond(pointLine_);
    point_.reset();
  }

  void finishRoute() {
    for (std::size_t i = 0; i < route_.points.size(); ++i) {
      FoundStation& point = route_.points[i];
      if (!withoutBlanks(point.name).empty() || withoutBlanks(route_.name).empty()) continue;
      point.name = route_.name + " " + std::to_string(i + 1);
      point.ownName = false;
    }
    collector_.addRoute(route_.points, route_.line);
    route_ = Route{};
  }

  StationCollector& collector_;
  std::optional<FoundStation> point_;
  std::size_t pointLine_ = 0;
  Route route_;
  std::size_t trackLine_ = 0, trackPoints_ = 0;
};

}  // namespace

ImportedStations gpxStations(std::string_view text, const std::string& name, const ImportOptions& options) {
  StationCollector collector(options, "GPX", name);
  GpxReader reader(collector);
  if (std::string problem = walkXml(text, reader, collector); !problem.empty())
    return std::move(collector).refuse(std::move(problem));
  return std::move(collector).finish();
}

}  // namespace zel::host
