// GetPathLoss from the host's call to the number, and its parts, over the bundled raster with the settings in
// an INI file.
//
// One core, terrain in the cache. The measure to hold: at least 10,000 calls a second at 1,000 points.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "component/component.h"
#include "component/desktop/desktop_services.h"
#include "profile/path_loss/modeled_loss.h"
#include "profile/sampling/terrain_sampling.h"
#include "profile/settings/readers.h"
#include "support/temporary_folder.h"
#include "zel/path_loss.h"
#include "zel/profile_control.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel {
namespace {

constexpr StationProfile_Type kStart{36.40, -84.35, 30};
constexpr StationProfile_Type kEnd{36.22, -84.12, 30};  // 28.7 km

// A component of the benchmark's own: the desktop's parts over a settings file in a temporary folder.
class BenchComponent {
 public:
  BenchComponent() {
    const SettingsWriter settings(*store_, [] { return std::string("Bench"); });
    settings.write(settings::kCalcMethod, std::int32_t{0});
    settings.write(settings::kPrfTRes, std::int32_t{3});
    settings.write(settings::kPrfFreq, 950.0F);
    settings.write(settings::kPrfPer, std::int32_t{99});
    usePoints(1000);
    settings.write(settings::kItmPolarization, std::int32_t{1});
    settings.write(settings::kItmClimate, std::int32_t{5});
    settings.write(settings::kItmPermittivity, 15.0F);
    settings.write(settings::kItmConductivity, 0.005F);
    settings.write(settings::kItmRefractivity, 301.0F);
    settings.write(settings::kItmConfidence, 0.5F);
    settings.write(settings::kItmReliability, 0.9F);
    control_.SetClientApp(makePropertyBag({{"Title", "Bench"}, {"Path", folder_.path().string()}}));
  }

  ProfileControl& control() { return control_; }
  Component& component() { return component_; }
  // The path is longer than any maximum here at its points per kilometre.
  void usePoints(std::int64_t points) {
    store_->WriteSetting("Bench", "Profile", "Prf_Max", std::to_string(points));
    store_->WriteSetting("Bench", "Profile", "Prf_Per", std::to_string(points / 10));
  }

 private:
  ComponentServices services() {
    ComponentServices services = makeDesktopServices();
    services.settings = store_;
    services.settingsFile = nullptr;
    services.bundledTerrain = ZEL_SOURCE_DIR "/data/terrain";
    return services;
  }

  test::TemporaryFolder folder_;
  std::shared_ptr<IniSettingsStore> store_ =
      std::make_shared<IniSettingsStore>(folder_.path(), [](const std::string&) {});
  Component component_{services()};
  ComponentSubstitute substitute_{component_};
  ProfileControl control_;
};

BenchComponent& bench() {
  static BenchComponent made;
  return made;
}

void BM_GetPathLoss(benchmark::State& state) {
  bench().usePoints(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    const float loss = bench().control().GetPathLoss(kStart, kEnd);
    if (!(loss > 100)) state.SkipWithError("there is no loss");
    benchmark::DoNotOptimize(loss);
  }
  state.SetItemsProcessed(state.iterations());
}

// Both ways, with everything that is said about them.
void BM_ComputePathLoss(benchmark::State& state) {
  bench().usePoints(state.range(0));
  const PathLossRequest request{{kStart.Lat, kStart.Lon}, {kEnd.Lat, kEnd.Lon}, 30.0, 30.0, 950.0};
  for ([[maybe_unused]] auto _ : state) {
    const PathLoss loss = computePathLoss(request);
    if (!loss.modeledDb) state.SkipWithError("there is no loss");
    benchmark::DoNotOptimize(loss.points);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_Settings(benchmark::State& state) {
  const SettingsReader reader = bench().component().settingsReader();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(readWindowlessSettings(reader));
    benchmark::DoNotOptimize(readItmSettings(reader, SettingsUser::kWindowless));
  }
  state.SetItemsProcessed(state.iterations());
}

const SamplingRequest& requestOf(std::int32_t points) {
  static SamplingRequest request;
  request = stationToStationRequest({kStart.Lat, kStart.Lon}, {kEnd.Lat, kEnd.Lon}, points, 0, 3);
  return request;
}

void BM_Sampling(benchmark::State& state) {
  const auto sampler = bench().component().makeSampler();
  const auto terrain = bench().component().terrain();
  for ([[maybe_unused]] auto _ : state) {
    const RawSamples samples =
        sampleTerrain(*sampler, terrain, requestOf(static_cast<std::int32_t>(state.range(0))));
    if (samples.status != kSamplerOk) state.SkipWithError("the sampling failed");
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_ModeledLoss(benchmark::State& state) {
  const auto sampler = bench().component().makeSampler();
  const RawSamples samples = sampleTerrain(*sampler, bench().component().terrain(),
                                           requestOf(static_cast<std::int32_t>(state.range(0))));
  const ModelParameters parameters{1, 5, 15, 0.005, 301, 0, -1.28};
  const ModelPath path{samples.heights.span(), 28.7F, {30, 30}, 950};
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(modeledLoss(path, parameters));
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_GetPathLoss)->Arg(100)->Arg(300)->Arg(1000)->Arg(5000);
BENCHMARK(BM_ComputePathLoss)->Arg(1000);
BENCHMARK(BM_Settings);
BENCHMARK(BM_Sampling)->Arg(100)->Arg(1000)->Arg(5000);
BENCHMARK(BM_ModeledLoss)->Arg(100)->Arg(1000)->Arg(5000);

}  // namespace
}  // namespace zel
