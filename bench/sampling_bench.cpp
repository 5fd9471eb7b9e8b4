// What the terrain sampler costs: positions along a geodesic, heights between posts, whole samplings, beside
// the plain way of one read of the raster library a sample.
//
// One core, tiles in the cache. The measures to hold: heights at given positions at least 20 times as fast as
// the plain way, a sampling of 1,000 points with positions below 40 us.
#include <benchmark/benchmark.h>
#include <gdal_priv.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "support/terrain_tile.h"
#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/path_positions.h"
#include "zeltool/terrain/terrain_library.h"

namespace {

constexpr zel::GeoPoint kFrom{36.05, -84.95}, kTo{36.95, -84.15};  // 123 km

const zel::test::TerrainTile& tile() {
  static const zel::test::TerrainTile written(1201);
  return written;
}

const zel::TerrainLibrary& library() {
  static const zel::SourceDefinition definition{2, "3 second", {tile().path()}, false};
  static const zel::TerrainLibrary made([](int) { return definition; }, std::size_t{64} << 20);
  return made;
}

std::vector<zel::GeoPoint> positionsOf(benchmark::State& state) {
  std::vector<zel::GeoPoint> positions(static_cast<std::size_t>(state.range(0)));
  zel::GeodesicPath(kFrom, kTo).fill(positions);
  return positions;
}

void countSamples(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

void BM_Positions(benchmark::State& state) {
  std::vector<zel::GeoPoint> positions(static_cast<std::size_t>(state.range(0)));
  while (state.KeepRunning()) {
    zel::GeodesicPath(kFrom, kTo).fill(positions);
    benchmark::DoNotOptimize(positions.data());
  }
  countSamples(state);
}

void BM_PositionsExact(benchmark::State& state) {
  const zel::GeodesicPath path(kFrom, kTo);
  std::vector<zel::GeoPoint> positions(static_cast<std::size_t>(state.range(0)));
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < positions.size(); ++i)
      positions[i] = path.at(static_cast<double>(i) / static_cast<double>(positions.size() - 1));
    benchmark::DoNotOptimize(positions.data());
  }
  countSamples(state);
}

void heightsAt(benchmark::State& state, std::int32_t method) {
  const auto positions = positionsOf(state);
  std::vector<float> heights(positions.size());
  while (state.KeepRunning()) {
    const auto report = library().heightsAt(positions, method, 2, heights);
    if (report.status != 0) state.SkipWithError(report.reason.c_str());
    benchmark::DoNotOptimize(heights.data());
  }
  countSamples(state);
}
void BM_HeightsFourPoint(benchmark::State& state) { heightsAt(state, 0); }
void BM_HeightsBivariate(benchmark::State& state) { heightsAt(state, 1); }

// The plain way: the raster library reads the four cells of each position.
void BM_HeightsOneReadEach(benchmark::State& state) {
  const auto positions = positionsOf(state);
  std::vector<float> heights(positions.size());
  const zel::GdalSession session;
  GDALDataset* file = GDALDataset::Open(tile().path().c_str(), GDAL_OF_RASTER);
  std::array<double, 6> t{};
  if (!file || file->GetGeoTransform(t.data()) != CE_None)
    return state.SkipWithError("the tile cannot be opened");
  GDALRasterBand* band = file->GetRasterBand(1);
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < positions.size(); ++i) {
      const double column = (positions[i].longitude - t[0]) / t[1] - 0.5,
                   row = (positions[i].latitude - t[3]) / t[5] - 0.5;
      const int c = static_cast<int>(column), r = static_cast<int>(row);
      std::array<float, 4> z{};
      if (band->RasterIO(GF_Read, c, r, 2, 2, z.data(), 2, 2, GDT_Float32, 0, 0, nullptr) != CE_None)
        continue;
      const auto x = static_cast<float>(column - c), y = static_cast<float>(row - r);
      heights[i] = (1 - y) * ((1 - x) * z[0] + x * z[1]) + y * ((1 - x) * z[2] + x * z[3]);
    }
    benchmark::DoNotOptimize(heights.data());
  }
  countSamples(state);
  GDALClose(file);
}

void BM_Sample(benchmark::State& state) {
  const zel::SampleRequest request{kFrom, kTo, static_cast<std::int32_t>(state.range(0)), 0, 2, true};
  while (state.KeepRunning()) {
    const zel::SampleResult result = library().sample(request);
    if (result.report.status != 0) state.SkipWithError(result.report.reason.c_str());
    benchmark::DoNotOptimize(result.heights.data());
  }
  countSamples(state);
}

// With nothing in the cache: opening the tile and decoding the blocks under the path.
void BM_SampleCold(benchmark::State& state) {
  const zel::SampleRequest request{kFrom, kTo, static_cast<std::int32_t>(state.range(0)), 0, 2, true};
  zel::SourceDefinition definition{2, "3 second", {tile().path()}, false};
  while (state.KeepRunning()) {
    const zel::TerrainLibrary fresh([&](int) { return zel::SourceDefinition(definition); },
                                    std::size_t{64} << 20);
    benchmark::DoNotOptimize(fresh.sample(request).heights.data());
  }
  countSamples(state);
}

BENCHMARK(BM_Positions)->RangeMultiplier(10)->Range(10, 10000)->Arg(32767);
BENCHMARK(BM_PositionsExact)->Arg(1000)->Arg(5500);
BENCHMARK(BM_HeightsFourPoint)->Arg(100)->Arg(1000)->Arg(5500)->Arg(32767);
BENCHMARK(BM_HeightsBivariate)->Arg(1000)->Arg(5500);
BENCHMARK(BM_HeightsOneReadEach)->Arg(1000)->Arg(5500);
BENCHMARK(BM_Sample)->Arg(10)->Arg(100)->Arg(1000)->Arg(5500)->Arg(32767);
BENCHMARK(BM_SampleCold)->Arg(1000);

}  // namespace
