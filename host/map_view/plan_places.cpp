#include "map_view/plan_places.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <exception>
#include <utility>

#include "map/relief.h"

namespace zel::host {

namespace {

constexpr double kBendKm = 20;  // between positions of a line that is drawn along the geodesic
constexpr std::int32_t kMostBends = 128;

std::uint64_t mixed(std::uint64_t mark, std::uint64_t value) {
  return (mark ^ value) * 0x9e3779b97f4a7c15U + (mark >> 29U);
}
std::uint64_t mixed(std::uint64_t mark, double value) {
  return mixed(mark, std::bit_cast<std::uint64_t>(value));
}
std::uint64_t mixed(std::uint64_t mark, Position position) {
  return mixed(mixed(mark, position.latitude), position.longitude);
}

// A number that differs when the link has to be placed anew.
std::uint64_t markOf(const StationPlace& from, const StationPlace& to, const LinkResult* result) {
  std::uint64_t mark = mixed(mixed(1, from.map), to.map);
  if (result == nullptr || !result->done) return mark;
  mark = mixed(mixed(mark, std::uint64_t{result->error.size() + 2}), result->distanceKm);
  mark = mixed(mark, static_cast<std::uint64_t>(result->verdict));
  if (result->worst) mark = mixed(mark, result->worst->position);
  for (const LinkStretch& stretch : result->stretches) {
    mark = mixed(mixed(mark, static_cast<std::uint64_t>(stretch.kind)), stretch.toKm);
  }
  return mark;
}

WorldBox boxOf(const std::vector<LinkStrand>& strands) {
  WorldBox box;
  double lastX = 0;
  bool any = false;
  for (const LinkStrand& strand : strands) {
    for (const Position& position : strand.positions) {
      MapPoint at = worldOf(position);
      if (!std::isfinite(at.x) || !std::isfinite(at.y)) continue;
      if (any) at.x -= std::round(at.x - lastX);  // the short way round
      lastX = at.x;
      box.left = any ? std::min(box.left, at.x) : at.x;
      box.right = any ? std::max(box.right, at.x) : at.x;
      box.top = any ? std::min(box.top, at.y) : at.y;
      box.bottom = any ? std::max(box.bottom, at.y) : at.y;
      any = true;
    }
  }
  return box;
}

}  // namespace

bool WorldBox::meets(const WorldBox& other) const {
  if (other.top > bottom || other.bottom < top) return false;
  const double apart = (left + right - other.left - other.right) / 2;
  return std::abs(apart - std::round(apart)) <= (right - left + other.right - other.left) / 2;
}

WorldBox seenBox(const MapFrame& frame, double pixels) {
  const MapPoint centre = worldOf(frame.centre());
  const double perPixel = std::exp2(-frame.level()) / kTileSide;
  const double halfWidth = (frame.width() / 2 + pixels) * perPixel,
               halfHeight = (frame.height() / 2 + pixels) * perPixel;
  return {centre.x - halfWidth, centre.y - halfHeight, centre.x + halfWidth, centre.y + halfHeight};
}

GeodesicLine bentLine(Position from, Position to) {
  GeodesicLine line = geodesicLine(from, to, 2);
  if (std::isfinite(line.distanceKm) && line.distanceKm > kBendKm) {
    const double bends = std::min(line.distanceKm / kBendKm, double{kMostBends});
    line = geodesicLine(from, to, static_cast<std::int32_t>(bends) + 2);
  }
  return line;
}

void PlanPlaces::set(const Plan* plan, const LinkAnalysis* analysis) {
  set(
      plan, analysis == nullptr ? ResultOf() : [analysis](LinkId link) { return analysis->find(link); });
}

void PlanPlaces::set(const Plan* plan, ResultOf resultOf) {
  plan_ = plan;
  resultOf_ = std::move(resultOf);
  stations_.clear();
  links_.clear();
  stale_ = true;
}

const std::vector<StationPlace>& PlanPlaces::stations() {
  refresh();
  return stations_;
}

const std::vector<LinkPlace>& PlanPlaces::links() {
  refresh();
  return links_;
}

const StationPlace* PlanPlaces::station(StationId id) {
  refresh();
  const auto found =
      std::lower_bound(stations_.begin(), stations_.end(), id,
                       [](const StationPlace& place, StationId key) { return place.id < key; });
  return found != stations_.end() && found->id == id ? &*found : nullptr;
}

const LinkPlace* PlanPlaces::link(LinkId id) {
  refresh();
  const auto found = std::lower_bound(links_.begin(), links_.end(), id,
                                      [](const LinkPlace& place, LinkId key) { return place.id < key; });
  return found != links_.end() && found->id == id ? &*found : nullptr;
}

Position PlanPlaces::onMap(Position given) const {
  if (plan_ == nullptr || plan_->datum != PlanDatum::kNad27) return given;
  try {
    return mapPosition(given).position;
  } catch (const std::exception&) {  // settings that cannot be read are told where they are set
    return given;
  }
}

Position PlanPlaces::inPlan(Position map) const {
  if (plan_ == nullptr || plan_->datum != PlanDatum::kNad27) return map;
  try {
    return stationPosition(map).position;
  } catch (const std::exception&) {
    return map;
  }
}

void PlanPlaces::refresh() {
  if (!stale_) return;
  stale_ = false;
  if (plan_ == nullptr) {
    stations_.clear();
    links_.clear();
    return;
  }
  if (plan_->datum != datum_) {
    datum_ = plan_->datum;
    stations_.clear();
    links_.clear();
  }
  refreshStations();
  refreshLinks();
}

// Both the plan and what was kept of it are in the order of the ids, so one walk finds what stayed.
void PlanPlaces::refreshStations() {
  std::vector<StationPlace> before = std::exchange(stations_, {});
  stations_.reserve(plan_->stations.size());
  auto old = before.begin();
  for (const auto& [id, station] : plan_->stations) {
    while (old != before.end() && old->id < id) ++old;
    const bool known = old != before.end() && old->id == id;
    if (known && old->given == station.position) {
      stations_.push_back(std::move(*old));
    } else {
      StationPlace place;
      place.id = id;
      place.given = station.position;
      place.map = onMap(station.position);
      place.world = worldOf(place.map);
      stations_.push_back(std::move(place));
    }
    if (stations_.back().name != station.name) stations_.back().name = station.name;
  }
}

void PlanPlaces::refreshLinks() {
  std::vector<LinkPlace> before = std::exchange(links_, {});
  links_.reserve(plan_->links.size());
  auto old = before.begin();
  for (const auto& [id, link] : plan_->links) {
    const StationPlace* from = station(link.from);
    const StationPlace* to = station(link.to);
    if (from == nullptr || to == nullptr) continue;
    const LinkResult* result = resultOf_ ? resultOf_(id) : nullptr;
    const std::uint64_t mark = markOf(*from, *to, result);
    while (old != before.end() && old->id < id) ++old;
    const bool same = old != before.end() && old->id == id && old->mark == mark;
    links_.push_back(same ? std::move(*old) : placeOf(id, link, *from, *to, result, mark));
    links_.back().from = link.from;
    links_.back().to = link.to;
  }
}

LinkPlace PlanPlaces::placeOf(LinkId id, const Link& link, const StationPlace& from, const StationPlace& to,
                              const LinkResult* result, std::uint64_t mark) const {
  LinkPlace place;
  place.id = id;
  place.from = link.from;
  place.to = link.to;
  place.mark = mark;
  place.computed = result != nullptr && result->done;
  GeodesicLine line = bentLine(from.map, to.map);
  place.line = line.positions;
  if (place.computed && result->error.empty() && !result->stretches.empty()) {
    place.distanceKm = result->distanceKm;
    place.bearingDeg = result->bearingDeg;
    place.verdict = result->verdict;
    if (result->worst) place.worst = onMap(result->worst->position);
    for (const LinkStretch& stretch : result->stretches) {
      LinkStrand strand{stretch.kind, {}};
      strand.positions.reserve(stretch.positions.size());
      for (const Position& position : stretch.positions) strand.positions.push_back(onMap(position));
      place.strands.push_back(std::move(strand));
    }
  } else {
    place.distanceKm = line.distanceKm;
    place.bearingDeg = line.bearingDeg;
    place.strands.push_back({LinkStretch::Kind::kUnknown, std::move(line.positions)});
  }
  place.box = boxOf(place.strands);
  return place;
}

}  // namespace zel::host
