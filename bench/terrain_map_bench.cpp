// What grids of a map cost: 258 x 258 heights, with everything in memory; the first overview of a tile of
// 3601 x 3601 posts; and the same out of the user's cache.
//
// The measures to hold, one core: 3 ms a fine grid, 2 ms a coarse one, some 100 ms an overview.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "support/terrain_tile.h"
#include "zeltool/terrain/terrain_area.h"

namespace {

constexpr std::size_t kCount = 258;
constexpr double kSecond = 1 / 3600.0;  // degrees

const zel::test::TerrainTile& tile() {
  static const zel::test::TerrainTile written(3601);
  return written;
}

std::unique_ptr<zel::TerrainArea> areaOf(const std::string& cache) {
  const zel::SourceDefinition definition{3, "1 second", {tile().path()}, false};
  return std::make_unique<zel::TerrainArea>(
      definition,
      [definition](const std::atomic<bool>*) {
        return std::make_shared<const zel::SourceIndex>(definition, std::make_shared<zel::OpenFiles>(8));
      },
      std::make_shared<zel::TerrainCaches>(std::size_t{256} << 20, cache));
}

std::vector<float> grid(const zel::TerrainArea& area, double posts) {
  std::vector<double> latitudes(kCount), longitudes(kCount);
  for (std::size_t i = 0; i < kCount; ++i) {
    latitudes[i] = 36.97 - posts * kSecond * static_cast<double>(i);
    longitudes[i] = -84.97 + posts * kSecond * static_cast<double>(i);
  }
  return area.grid(latitudes, longitudes, nullptr);
}

// The argument is posts in a cell of the grid, in tenths.
void BM_GridWarm(benchmark::State& state) {
  const auto area = areaOf("");
  const double posts = 0.1 * static_cast<double>(state.range(0));
  grid(*area, posts);
  while (state.KeepRunning()) benchmark::DoNotOptimize(grid(*area, posts).data());
}

void BM_FirstOverview(benchmark::State& state) {
  while (state.KeepRunning()) benchmark::DoNotOptimize(grid(*areaOf(""), 13).data());
}

void BM_OverviewFromDisk(benchmark::State& state) {
  grid(*areaOf(tile().beside("cache")), 13);
  while (state.KeepRunning()) benchmark::DoNotOptimize(grid(*areaOf(tile().beside("cache")), 13).data());
}

BENCHMARK(BM_GridWarm)
    ->Arg(3)
    ->Arg(10)
    ->Arg(19)
    ->Arg(20)
    ->Arg(39)
    ->Arg(79)
    ->Arg(130)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FirstOverview)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OverviewFromDisk)->Unit(benchmark::kMillisecond);

}  // namespace
