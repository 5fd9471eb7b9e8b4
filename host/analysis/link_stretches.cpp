#include "analysis/link_stretches.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zel::host {
namespace {

using Kind = LinkStretch::Kind;

// A line on the map needs no more points than this to look like the geodesic.
constexpr std::size_t kPointsOfPath = 64;

Kind kindAt(const PathProfile& profile, std::size_t i) {
  if (std::isnan(profile.clearanceM[i])) return Kind::kUnknown;
  if (profile.clearanceM[i] < 0) return Kind::kBlocked;
  return profile.clearanceM[i] < kFreePartOfZone * profile.fresnel1M[i] ? Kind::kMarginal : Kind::kClear;
}

// The zone has no width at the antennas, and the verdict leaves them out: an end is as its neighbour.
std::vector<Kind> kindsOf(const PathProfile& profile) {
  const std::size_t count = profile.clearanceM.size();
  std::vector<Kind> kinds(count);
  for (std::size_t i = 0; i < count; ++i) kinds[i] = kindAt(profile, i);
  if (count > 2) {
    kinds.front() = kinds[1];
    kinds.back() = kinds[count - 2];
  }
  return kinds;
}

double turned(double longitude) {
  if (longitude >= 180) return longitude - 360;
  return longitude < -180 ? longitude + 360 : longitude;
}

// Half way between neighbours, also across the meridian where longitudes jump.
Position between(const Position& a, const Position& b) {
  const double step = turned(b.longitude - a.longitude);
  return {(a.latitude + b.latitude) / 2, turned(a.longitude + step / 2)};
}

class Stretches {
 public:
  explicit Stretches(const PathProfile& profile)
      : profile_(profile),
        kinds_(kindsOf(profile)),
        step_(std::max<std::size_t>(1, kinds_.size() / kPointsOfPath)) {}

  std::vector<LinkStretch> run() {
    if (kinds_.size() < 2) return {};
    begin(0, profile_.distancesKm.front(), profile_.positions.front());
    for (std::size_t i = 1; i < kinds_.size(); ++i) {
      if (kinds_[i] != kinds_[i - 1]) {
        const double km = (profile_.distancesKm[i - 1] + profile_.distancesKm[i]) / 2;
        const Position place = between(profile_.positions[i - 1], profile_.positions[i]);
        finish(km, place);
        begin(i, km, place);
      }
      if (i % step_ == 0) add(profile_.positions[i]);
    }
    finish(profile_.distancesKm.back(), profile_.positions.back());
    return std::move(stretches_);
  }

 private:
  void begin(std::size_t i, double km, const Position& place) {
    stretches_.push_back({kinds_[i], km, km, {place}});
  }
  void add(const Position& place) {
    if (stretches_.back().positions.back() != place) stretches_.back().positions.push_back(place);
  }
  void finish(double km, const Position& place) {
    stretches_.back().toKm = km;
    add(place);
  }

  const PathProfile& profile_;
  std::vector<Kind> kinds_;
  std::size_t step_;
  std::vector<LinkStretch> stretches_;
};

}  // namespace

std::vector<LinkStretch> linkStretches(const PathProfile& profile) { return Stretches(profile).run(); }

}  // namespace zel::host
