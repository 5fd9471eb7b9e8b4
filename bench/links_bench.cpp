// A list of links from its rows to its figures, over the bundled terrain and over a tile of 3601 x 3601
// posts, in one thread with the terrain in the cache; and its parts. The tile is made by this program, in a
// folder of its own.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "links/link_figures.h"
#include "links/link_input.h"
#include "links/link_layout.h"
#include "links/link_totals.h"
#include "links/link_writer.h"
#include "links/row_reader.h"
#include "support/terrain_tile.h"
#include "zel/path_calculator.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

struct Box {
  double south, west, north, east;
};
constexpr Box kSample{36.17, -84.40, 36.44, -84.09};
constexpr Box kTile{36.05, -84.95, 36.95, -84.05};

// Rows of links of 10 to 50 km, or as long as the box has room for.
std::string rowsIn(const Box& box, std::size_t count) {
  std::mt19937 engine(7);
  const auto between = [&engine](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine);
  };
  constexpr double kKmPerDegree = 111.2;
  std::string text;
  while (count > 0) {
    const double latitude = between(box.south, box.north), longitude = between(box.west, box.east);
    const double north = between(-50, 50) / kKmPerDegree,
                 east = between(-50, 50) / kKmPerDegree / std::cos(latitude / 57.3);
    const double length = kKmPerDegree * std::hypot(north, east * std::cos(latitude / 57.3));
    const double latitude2 = latitude + north, longitude2 = longitude + east;
    if (length < 10 || length > 50 || latitude2 < box.south || latitude2 > box.north ||
        longitude2 < box.west || longitude2 > box.east)
      continue;
    text += "L" + std::to_string(count) + "," + std::to_string(latitude) + "," + std::to_string(longitude) +
            ",30," + std::to_string(latitude2) + "," + std::to_string(longitude2) + ",20,450,owner\n";
    --count;
  }
  return text;
}

const std::string kHeader = "name,lat1,lon1,h1,lat2,lon2,h2,frequency,owner\n";

// A list as it is read.
struct List {
  explicit List(const Box& box, std::size_t count) : text(kHeader + rowsIn(box, count)) {
    bool given = false;
    RowReader reader([&](std::string& buffer) {
      if (std::exchange(given, true)) return false;
      buffer = text;
      return true;
    });
    std::deque<Row> ahead;
    layout = *readLayout(reader, {}, ahead).layout;
    rows.assign(ahead.begin(), ahead.end());
    for (Row row; reader.next(row);) rows.push_back(row);
    for (const Row& row : rows) inputs.push_back(linkInput(row, layout));
  }

  std::string text;
  LinkLayout layout;
  std::vector<Row> rows;
  std::vector<LinkInput> inputs;
};

constexpr std::size_t kLinks = 256;

// Once for the process: the settings and the terrain of each run are set before it.
std::shared_ptr<const PathCalculator> calculatorOf(const Box& box) {
  static const test::TerrainTile tile(3601);
  useTerrainForThisRun({&box == &kTile ? tile.path() : std::string(ZEL_SOURCE_DIR) + "/data/terrain"});
  return PathCalculator::open();
}

PathSource sourceOf(const std::shared_ptr<const PathCalculator>& calculator) {
  return {[calculator](const PathProfileRequest& request, const std::vector<std::optional<double>>& factors) {
            return calculator->profiles(request, factors);
          },
          [calculator](const PathLossRequest& request) { return calculator->loss(request); }};
}

template <typename Work>
void eachLink(benchmark::State& state, const Box& box, Work&& work) {
  const List list(box, kLinks);
  const auto calculator = calculatorOf(box);
  const PathSource source = sourceOf(calculator);
  const FigureOptions usual;
  for (const LinkInput& input : list.inputs) {
    const LinkFigures figures = linkFigures(input, source, usual);
    if (!figures.error.empty()) return state.SkipWithError(figures.error.c_str());
  }
  std::size_t next = 0;
  for (auto _ : state) {
    work(list, source, next);
    next = (next + 1) % list.rows.size();
  }
  state.SetItemsProcessed(state.iterations());
}

void link(benchmark::State& state, const Box& box, std::size_t factors) {
  FigureOptions options;
  options.factors = {{4.0 / 3, 4.0 / 3, ""}};
  if (factors > 1) options.factors.push_back({2.0 / 3, 2.0 / 3, "_k0.667"});
  std::unique_ptr<LinkWriter> writer;
  LinkTotals totals;
  eachLink(state, box, [&](const List& list, const PathSource& source, std::size_t index) {
    if (!writer) {
      WriterOptions writing;
      writing.layout = list.layout;
      writing.figures = options;
      writer = makeCsvWriter(std::move(writing));
    }
    const LinkInput input = linkInput(list.rows[index], list.layout);
    const LinkFigures figures = linkFigures(input, source, options);
    std::string out;
    writer->row(out, list.rows[index], input, figures);
    totals.add(input, figures);
    benchmark::DoNotOptimize(out.data());
  });
}
void BM_LinkOverTheSample(benchmark::State& state) { link(state, kSample, 1); }
void BM_LinkOverATile(benchmark::State& state) { link(state, kTile, 1); }
void BM_LinkWithTwoFactorsOverATile(benchmark::State& state) { link(state, kTile, 2); }

void BM_ProfileOfALink(benchmark::State& state) {
  eachLink(state, kTile, [](const List& list, const PathSource& source, std::size_t index) {
    const LinkInput& input = list.inputs[index];
    benchmark::DoNotOptimize(source.profiles(
        {input.from, input.to, input.fromHeight, input.toHeight, {}, input.frequencyMhz}, {4.0 / 3}));
  });
}

void BM_LossOfALink(benchmark::State& state) {
  eachLink(state, kTile, [](const List& list, const PathSource& source, std::size_t index) {
    const LinkInput& input = list.inputs[index];
    benchmark::DoNotOptimize(
        source.loss({input.from, input.to, input.fromHeight, input.toHeight, input.frequencyMhz, false}));
  });
}

// A row without its figures: reading, parsing, writing, counting.
void BM_RowOfALink(benchmark::State& state) {
  const List list(kTile, kLinks);
  WriterOptions writing;
  writing.layout = list.layout;
  const auto writer = makeCsvWriter(writing);
  LinkFigures figures;
  figures.distanceKm = figures.bearingDeg = figures.freeSpaceDb = figures.modeledDb = 123.456789;
  figures.clearances = {{1.333, PathObstacle{12.3456, {}, 345.6, -12.3, -45.6}, "blocked"}};
  LinkTotals totals;
  for (auto _ : state) {
    bool given = false;
    RowReader reader([&](std::string& buffer) {
      if (std::exchange(given, true)) return false;
      buffer = list.text;
      return true;
    });
    for (Row row; reader.next(row);) {
      const LinkInput input = linkInput(row, list.layout);
      std::string out;
      writer->row(out, row, input, figures);
      totals.add(input, figures);
      benchmark::DoNotOptimize(out.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLinks));
}

BENCHMARK(BM_LinkOverTheSample)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LinkOverATile)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LinkWithTwoFactorsOverATile)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ProfileOfALink)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LossOfALink)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RowOfALink)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zel::host
