// The irregular terrain model: a whole run from the elevations, one more sample of a growing path, the
// levels, and where the time goes. The argument is the number of samples.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "models/longrice/calc_itm.h"
#include "models/longrice/longley_rice.h"
#include "models/longrice/normal_deviate.h"

namespace zel::longrice {
namespace {

constexpr double kSpacing = 60;      // metres
constexpr double kTransmitter = 40;  // metres above ground
constexpr double kReceiver = 10;     // metres above ground
constexpr std::size_t kCycle = 64;   // receivers that the cases of one prediction go through

Parameters parameters() {
  Parameters result;
  result.frequency = 450;
  return result;
}

// Hills on hills, without a period that suits the code.
std::vector<double> hills(std::int64_t samples) {
  std::vector<double> elevations;
  for (std::int64_t i = 0; i < samples; ++i) {
    const auto x = static_cast<double>(i);
    elevations.push_back(300 + 120 * std::sin(x * 0.0131) + 45 * std::sin(x * 0.097 + 1) +
                         12 * std::sin(x * 0.71 + 2) + 3 * std::sin(x * 2.9));
  }
  return elevations;
}

GrowingPath pathOf(const Model& model, const std::vector<double>& elevations) {
  GrowingPath path = model.path(kSpacing, kTransmitter);
  path.reserve(elevations.size());
  path.append(elevations);
  return path;
}

// One call after another sees other numbers, as in use: a repeated call would be predicted by the processor.
double receiver(std::size_t call) { return kReceiver + static_cast<double>(call % kCycle) * 0.5; }

void countSamples(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

void BM_ModelRun(benchmark::State& state) {
  const std::vector<double> elevations = hills(state.range(0));
  std::size_t call = 0;
  for ([[maybe_unused]] auto _ : state) {
    const Model model(parameters());
    benchmark::DoNotOptimize(model.predict(pathOf(model, elevations), receiver(call++)).loss(0, 0));
  }
  countSamples(state);
}

void BM_CalcITM(benchmark::State& state) {
  const std::vector<double> heights = hills(state.range(0));
  const std::vector<float> elevations(heights.begin(), heights.end());
  const double median = 0;
  double loss = 0;
  std::size_t call = 0;
  for ([[maybe_unused]] auto _ : state) {
    CalcITM(static_cast<std::int16_t>(elevations.size()), kSpacing, elevations.data(), kTransmitter,
            receiver(call++), 0, 5, 15, 0.005, 450, 301, &median, 1, &median, 1, &loss);
    benchmark::DoNotOptimize(loss);
  }
  countSamples(state);
}

// A path of so many samples grows by one and is predicted. It starts over after 64 steps, outside the time.
void BM_PrefixStep(benchmark::State& state) {
  const std::vector<double> elevations = hills(state.range(0) + static_cast<std::int64_t>(kCycle));
  const Model model(parameters());
  const std::vector<double> start(elevations.begin(), elevations.begin() + state.range(0));
  GrowingPath path = model.path(kSpacing, kTransmitter);
  while (state.KeepRunningBatch(static_cast<std::int64_t>(kCycle))) {
    state.PauseTiming();
    path = model.path(kSpacing, kTransmitter);
    path.reserve(elevations.size());
    path.append(start);
    state.ResumeTiming();
    for (std::size_t i = start.size(); i < elevations.size(); ++i) {
      path.append(elevations[i]);
      benchmark::DoNotOptimize(model.predict(path, kReceiver).loss(0, 0));
    }
  }
}

// Every prefix of a path, as a signal profile has them.
void BM_AllPrefixes(benchmark::State& state) {
  const std::vector<double> elevations = hills(state.range(0));
  const Model model(parameters());
  for ([[maybe_unused]] auto _ : state) {
    GrowingPath path = model.path(kSpacing, kTransmitter);
    path.reserve(elevations.size());
    for (const double elevation : elevations) {
      path.append(elevation);
      if (path.samples() > 1) benchmark::DoNotOptimize(model.predict(path, kReceiver).loss(0, 0));
    }
  }
  countSamples(state);
}

void BM_Levels99x99(benchmark::State& state) {
  const Model model(parameters());
  const Prediction prediction = model.predict(pathOf(model, hills(1000)), kReceiver);
  std::vector<double> deviates;
  for (int percent = 1; percent <= 99; ++percent) deviates.push_back(normalDeviate(percent / 100.0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(prediction.losses(deviates, deviates).data());
  state.SetItemsProcessed(state.iterations() * 99 * 99);
}

void BM_TerrainAnalysis(benchmark::State& state) {
  const std::vector<double> elevations = hills(state.range(0));
  const Model model(parameters());
  std::size_t call = 0;
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(pathOf(model, elevations).describe(receiver(call++)));
  countSamples(state);
}

// Of terrain that has been appended: the part of the analysis that each prefix pays.
void BM_Describe(benchmark::State& state) {
  const Model model(parameters());
  const GrowingPath path = pathOf(model, hills(state.range(0)));
  std::size_t call = 0;
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(path.describe(receiver(call++)));
}

// From the terrain on; the argument is the path's samples.
void BM_Prediction(benchmark::State& state) {
  const Model model(parameters());
  const GrowingPath path = pathOf(model, hills(state.range(0)));
  std::vector<PathTerrain> terrains;
  for (std::size_t call = 0; call < kCycle; ++call) terrains.push_back(path.describe(receiver(call)));
  std::size_t call = 0;
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(
        Prediction(parameters(), model.environment(), terrains[call++ % kCycle]).loss(0, 0));
}

BENCHMARK(BM_ModelRun)->Arg(100)->Arg(300)->Arg(1000)->Arg(5000);
BENCHMARK(BM_CalcITM)->Arg(100)->Arg(300)->Arg(1000)->Arg(5000);
BENCHMARK(BM_PrefixStep)->Arg(1000)->Arg(5000);
BENCHMARK(BM_AllPrefixes)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Levels99x99)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TerrainAnalysis)->Arg(100)->Arg(300)->Arg(1000)->Arg(5000);
BENCHMARK(BM_Describe)->Arg(100)->Arg(300)->Arg(1000)->Arg(5000);
BENCHMARK(BM_Prediction)->Arg(30)->Arg(1000)->Arg(5000);

}  // namespace
}  // namespace zel::longrice
