// Where the plan's stations and links are on the map: positions on WGS 84, kept from one drawing to the next,
// because shifting a datum and following a geodesic cost more than drawing does.
//
// Belongs to the user-interface thread. Plain C++.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/link_analysis.h"
#include "map/map_frame.h"
#include "planning/plan.h"
#include "zel/geodesic.h"

namespace zel::host {

struct StationPlace {
  StationId id = 0;
  Position given;  // in the plan's datum
  Position map;    // WGS 84
  MapPoint world;
  std::string name;
};

struct LinkStrand {
  LinkStretch::Kind kind = LinkStretch::Kind::kUnknown;
  std::vector<Position> positions;  // WGS 84
};

// In the world square. Beyond 1 to the right where a line crosses the meridian at its edge.
struct WorldBox {
  double left = 0, top = 0, right = 0, bottom = 0;

  bool meets(const WorldBox& other) const;  // at any turn of longitude
};

struct LinkPlace {
  LinkId id = 0;
  StationId from = 0, to = 0;
  bool computed = false;       // the strands' kinds are known
  std::vector<Position> line;  // WGS 84: all of it, with no more positions than its bend needs
  std::vector<LinkStrand> strands;
  WorldBox box;
  double distanceKm = 0, bearingDeg = 0;
  std::optional<Position> worst;  // WGS 84, of the obstacle
  PathVerdict verdict = PathVerdict::kUnknown;
  std::uint64_t mark = 0;  // of what it was made from
};

// What is seen of the world square, and `pixels` around it.
WorldBox seenBox(const MapFrame& frame, double pixels);
// Enough positions that the line on the map bends as the geodesic does.
GeodesicLine bentLine(Position from, Position to);

class PlanPlaces {
 public:
  // Both must outlive this, or be taken away by null.
  void set(const Plan* plan, const LinkAnalysis* analysis);
  // The same with results from elsewhere; null for a link that has none.
  using ResultOf = std::function<const LinkResult*(LinkId)>;
  void set(const Plan* plan, ResultOf resultOf);
  void changed() { stale_ = true; }

  // In the order of their ids. Looking at them after a change works through the plan: some 0.1 us a station
  // or link that is as it was, some 5 us for another.
  const std::vector<StationPlace>& stations();
  const std::vector<LinkPlace>& links();
  const StationPlace* station(StationId id);
  const LinkPlace* link(LinkId id);

  // From the plan's datum to the map and back. What cannot be converted stays as it is.
  Position onMap(Position given) const;
  Position inPlan(Position map) const;

 private:
  void refresh();
  void refreshStations();
  void refreshLinks();
  LinkPlace placeOf(LinkId id, const Link& link, const StationPlace& from, const StationPlace& to,
                    const LinkResult* result, std::uint64_t mark) const;

  const Plan* plan_ = nullptr;
  ResultOf resultOf_;
  bool stale_ = true;
  PlanDatum datum_ = PlanDatum::kNad83;
  std::vector<StationPlace> stations_;
  std::vector<LinkPlace> links_;
};

}  // namespace zel::host
