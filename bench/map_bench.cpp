// Squares of the map from their heights, and the places of stations' names.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <span>
#include <vector>

#include "map/graticule.h"
#include "map/label_places.h"
#include "map/link_lines.h"
#include "map/relief.h"
#include "zel/terrain_map.h"

namespace zel::host {
namespace {

std::vector<float> hills(double voids) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> chance(0, 1);
  std::vector<float> heights;
  for (int row = 0; row < kTileGrid; ++row)
    for (int column = 0; column < kTileGrid; ++column) {
      const double height = 500 + 300 * std::sin(row * 0.07) * std::cos(column * 0.05) + 20 * chance(random);
      heights.push_back(chance(random) < voids ? kTerrainVoid : static_cast<float>(height));
    }
  return heights;
}

void shade(benchmark::State& state, double voids, bool relief) {
  const std::vector<float> heights = hills(voids);
  for (auto _ : state) benchmark::DoNotOptimize(shadeTile(heights, 30, {200, 800}, relief));
}
void BM_ShadeTile(benchmark::State& state) { shade(state, 0, true); }
void BM_ShadeTileWithoutRelief(benchmark::State& state) { shade(state, 0, false); }
void BM_ShadeTileWithVoids(benchmark::State& state) { shade(state, 0.05, true); }
BENCHMARK(BM_ShadeTile)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ShadeTileWithoutRelief)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ShadeTileWithVoids)->Unit(benchmark::kMicrosecond);

void BM_HeightRange(benchmark::State& state) {
  const std::vector<float> heights = hills(0.05);
  for (auto _ : state) benchmark::DoNotOptimize(heightRange(heights));
}
BENCHMARK(BM_HeightRange)->Unit(benchmark::kMicrosecond);

void BM_PlaceLabels(benchmark::State& state) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> x(0, 1280), y(0, 800), width(30, 120);
  std::vector<LabelWish> wishes(static_cast<std::size_t>(state.range(0)));
  for (LabelWish& wish : wishes) wish = {{x(random), y(random)}, width(random), 15, 7, 0, false};
  for (auto _ : state) benchmark::DoNotOptimize(placeLabels(wishes, {0, 0, 1280, 800}));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PlaceLabels)->RangeMultiplier(10)->Range(10, 100'000)->Unit(benchmark::kMicrosecond);

void BM_PixelLines(benchmark::State& state) {
  MapFrame frame(1280, 800);
  frame.setCentre({45, 5});
  frame.setLevel(18);
  std::vector<Position> line;
  for (int i = 0; i < state.range(0); ++i)
    line.push_back({44 + 2.0 * i / static_cast<double>(state.range(0)),
                    4 + 2.0 * i / static_cast<double>(state.range(0))});
  for (auto _ : state) benchmark::DoNotOptimize(pixelLines(frame, line, 20));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PixelLines)->RangeMultiplier(10)->Range(10, 10'000)->Unit(benchmark::kMicrosecond);

void BM_Graticule(benchmark::State& state) {
  MapFrame frame(1280, 800);
  frame.setLevel(static_cast<double>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(graticule(frame, AngleFormat::kDegreesMinutesSeconds));
}
BENCHMARK(BM_Graticule)->DenseRange(0, 18, 6)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zel::host
