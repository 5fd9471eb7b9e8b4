// From two stations to a profile, without terrain: curvature rise, Fresnel line, exact geometry and the
// pre-calculation. The argument is the number of samples; the growth with it is the point.

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "profile/calculation/earth_curvature.h"
#include "profile/calculation/exact_profile.h"
#include "profile/calculation/fresnel_line.h"
#include "profile/view_state/profile_procedures.h"

namespace zel {
namespace {

// A plane of 100 km a degree: the cost of the geodesy itself is measured with the sampling.
class PlaneGeodesy final : public Geodesy {
 public:
  DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const override {
    const double north = (to.latitude - from.latitude) * 100;
    const double east = (to.longitude - from.longitude) * 100;
    const double azimuth = std::atan2(east, north) * kDegreesPerRadian;
    return {std::hypot(north, east), azimuth < 0 ? azimuth + 360 : azimuth};
  }
  GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const override {
    const double angle = azimuth / kDegreesPerRadian;
    return {from.latitude + distance * std::cos(angle) / 100,
            from.longitude + distance * std::sin(angle) / 100};
  }
  GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const override {
    return PointAtDistance(start, distance, DistanceAndBearing(start, end).azimuth);
  }

 private:
  static constexpr double kDegreesPerRadian = 57.29577951308232;
};

constexpr GeoPoint kStart{36.5, -84.5};
constexpr GeoPoint kEnd{36.9, -84.2};  // 50 km

// A path whose extended layout has about as many samples as asked for.
PathGeometry pathWith(std::int64_t samples) {
  const auto intervals = static_cast<std::int16_t>(static_cast<double>(samples) / 1.1);
  return computePathGeometry(PlaneGeodesy(), kStart, kEnd, 1000, intervals);
}

std::vector<float> hills(std::size_t count) {
  std::vector<float> heights(count);
  for (std::size_t i = 0; i < count; ++i)
    heights[i] = 400.0F + 150.0F * std::sin(static_cast<float>(i) * 0.05F);
  return heights;
}

void countSamples(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

void BM_CurvatureRise(benchmark::State& state) {
  const PathGeometry path = pathWith(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(curvatureRise(1.33333F, path.samples, path.extendedLength));
  countSamples(state);
}

void BM_FresnelLine(benchmark::State& state) {
  const PathGeometry path = pathWith(state.range(0));
  const LineOfSight line{430, 480, 1};
  SampleArray<float> heights;
  for ([[maybe_unused]] auto _ : state) {
    heights = fresnelLine(path, line, wavelengthOf(950), 0.6F, std::move(heights));
    benchmark::DoNotOptimize(heights.span().data());
  }
  countSamples(state);
}

void BM_ExactProfile(benchmark::State& state) {
  const std::vector<float> heights = hills(static_cast<std::size_t>(state.range(0)));
  ExactProfileRequest request;
  request.distance = 50;
  request.heights = heights;
  request.startAntenna = request.endAntenna = 30;
  request.frequency = 950;
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(exactProfile(request));
  countSamples(state);
}

// The settings of one run: points per kilometre and maximum as the benchmark wants them.
class FixedStore final : public SettingsStore {
 public:
  std::string ReadSetting(std::string_view, std::string_view, std::string_view key,
                          std::string_view defaultText) const override {
    if (key == "Prf_Max") return maximum;
    if (key == "Prf_Per") return "1000";
    return std::string(defaultText);
  }
  void WriteSetting(std::string_view, std::string_view, std::string_view, std::string_view) override {}
  std::vector<StoredSetting> AllSettings(std::string_view) const override { return {}; }

  std::string maximum;
};

class QuietDialogs final : public Dialogs {
 public:
  MessageAnswer message(const MessageBoxRequest&) override { return MessageAnswer::kYes; }
  std::string input(const InputBoxRequest&) override { return {}; }
  std::string save(const SaveDialogRequest&) override { return {}; }
};

void BM_DoPreCalc(benchmark::State& state) {
  const PlaneGeodesy geodesy;
  FixedStore store;
  store.maximum = std::to_string(static_cast<int>(static_cast<double>(state.range(0)) / 1.1));
  QuietDialogs dialogs;
  KeptReadouts readouts;
  ModuleState module;
  module.station1 = kStart;
  module.station2 = kEnd;
  ErrorTrap trap{{}};
  TrappedModule window("frmProfile", trap);
  const SettingsReader reader(store, [] { return std::string("Bench"); });
  ProfileProcedures::Services services;
  services.geodesy = &geodesy;
  services.dialogs = &dialogs;
  services.readouts = &readouts;
  services.module = &module;
  services.trapped = &window;
  ProfileProcedures procedures(services, reader);
  ProfileViewState view = loadedViewState(module, reader, Init_GUC(), false);
  for ([[maybe_unused]] auto _ : state) {
    procedures.DoPreCalc(view);
    benchmark::DoNotOptimize(view.path);
  }
  if (module.bProfileFailed) state.SkipWithError("the pre-calculation failed");
  countSamples(state);
}

constexpr std::int64_t kSmallest = 100;
constexpr std::int64_t kLargest = 5500;

BENCHMARK(BM_CurvatureRise)->Arg(kSmallest)->Arg(550)->Arg(1100)->Arg(2750)->Arg(kLargest);
BENCHMARK(BM_FresnelLine)->Arg(kSmallest)->Arg(550)->Arg(1100)->Arg(2750)->Arg(kLargest);
BENCHMARK(BM_ExactProfile)->Arg(kSmallest)->Arg(550)->Arg(1100)->Arg(2750)->Arg(kLargest);
BENCHMARK(BM_DoPreCalc)->Arg(kSmallest)->Arg(550)->Arg(1100)->Arg(2750)->Arg(kLargest);

}  // namespace
}  // namespace zel
