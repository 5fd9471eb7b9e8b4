// A terrain sampler that records its calls and gives the heights it was told, and geodesies with plain
// numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "platform/geodesy.h"
#include "platform/terrain.h"

namespace zel::test {

class ScriptedTerrainSampler final : public TerrainSampler {
 public:
  void AttachTerrainData(std::shared_ptr<TerrainData> data) override {
    attached = std::move(data);
    note("AttachTerrainData");
  }
  void SetEndPoints(GeoPoint forward, GeoPoint back) override {
    note("SetEndPoints", forward.latitude, forward.longitude, back.latitude, back.longitude);
  }
  void SetBoundingBox(double largerLongitude, double smallerLongitude, double largerLatitude,
                      double smallerLatitude) override {
    note("SetBoundingBox", largerLongitude, smallerLongitude, largerLatitude, smallerLatitude);
  }
  void SetMethod(std::int32_t calcMethod) override { note("SetMethod", calcMethod); }
  void SetSampleCount(std::int32_t count) override { note("SetSampleCount", count); }
  void SetSource(std::int16_t code) override { note("SetSource", code); }
  void SetOptions(std::int32_t first, std::int32_t second) override { note("SetOptions", first, second); }
  int Sample(std::span<float> heights, std::int32_t& firstValue, std::int32_t& secondValue) override {
    note("Sample", heights.size());
    for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = height(i + 1);
    firstValue = 77;
    secondValue = 88;
    ++samplings;
    report_.status = status;
    return status;
  }
  const SamplingReport& report() const override { return report_; }
  std::vector<GeoPoint> positions() const override { return places; }

  std::function<float(std::size_t)> height = [](std::size_t) {
    return 100.0F;
  };  // of sample 1, 2, ...; metres
  int status = kSamplerOk;
  std::vector<GeoPoint> places;
  SamplingReport report_;

  std::vector<std::string> calls;  // "SetOptions 2 3"
  std::shared_ptr<TerrainData> attached;
  int samplings = 0;

 private:
  template <typename... Arguments>
  void note(const char* call, Arguments... arguments) {
    std::ostringstream text;
    text << call;
    ((text << ' ' << arguments), ...);
    calls.push_back(text.str());
  }
};

// A plane of 100 km a degree in both directions: distances and points in round numbers.
class PlaneGeodesy final : public Geodesy {
 public:
  static constexpr double kKmPerDegree = 100.0;
  static constexpr double kPi = 3.14159265358979323846;

  DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const override {
    const double north = (to.latitude - from.latitude) * kKmPerDegree;
    const double east = (to.longitude - from.longitude) * kKmPerDegree;
    const double azimuth = std::atan2(east, north) * 180.0 / kPi;
    return {std::hypot(north, east), azimuth < 0 ? azimuth + 360.0 : azimuth};
  }
  GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const override {
    const double angle = azimuth * kPi / 180.0;
    return {from.latitude + distance * std::cos(angle) / kKmPerDegree,
            from.longitude + distance * std::sin(angle) / kKmPerDegree};
  }
  GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const override {
    const DistanceAzimuth line = DistanceAndBearing(start, end);
    return PointAtDistance(start, distance, line.azimuth);
  }
};

// Gives the distance and the azimuth that it was told, and notes where points are asked for.
class ScriptedGeodesy final : public Geodesy {
 public:
  struct PointRequest {
    GeoPoint from;
    double distance = 0;
    double azimuth = 0;
  };

  DistanceAzimuth DistanceAndBearing(GeoPoint, GeoPoint) const override { return {distance, azimuth}; }
  GeoPoint PointAtDistance(GeoPoint from, double km, double degrees) const override {
    requests.push_back({from, km, degrees});
    return {from.latitude + 1, from.longitude + 1};
  }
  GeoPoint PointOnPath(GeoPoint start, GeoPoint, double) const override { return start; }

  double distance = 10;  // km
  double azimuth = 90;   // degrees
  mutable std::vector<PointRequest> requests;
};

}  // namespace zel::test
