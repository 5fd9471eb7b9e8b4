#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/terrain.h"
#include "rasters.h"

namespace zel {
namespace {

using test::RasterSpec;
using test::TemporaryFolder;
using test::writeRaster;

// Rasters in degrees and in a projection, more than may be open, a cache that holds few of their blocks, and
// a definition and a shift that change meanwhile: every thread must see the heights that one thread alone
// sees.
TEST(Threads, SeveralSampleAtOnce) {
  const TemporaryFolder folder;
  for (int i = 0; i < 6; ++i) {
    RasterSpec spec;
    spec.columns = spec.rows = 600;
    spec.corners = {10.0 + i, 1.0 / 600, 0, 51, 0, -1.0 / 600};
    spec.type = GDT_Int16;
    writeRaster(folder / ("d" + std::to_string(i) + ".tif"), spec,
                [i](int column, int row) { return 100 * i + column + row / 2; });
  }
  RasterSpec utm;
  utm.crs = "EPSG:32632";
  utm.columns = utm.rows = 300;
  utm.corners = {500000, 300, 0, 5400000, 0, -300};
  writeRaster(folder / "utm.tif", utm, [](int column, int row) { return column + row; });

  const std::string path = folder.path().string();
  std::atomic<int> name{0};
  TerrainLibrary library(
      [&](int code) {
        return SourceDefinition{code, std::to_string(name.load()), {path}, false};
      },
      std::size_t{3} << 20);
  std::vector<SampleRequest> requests;
  requests.reserve(6);
  for (int i = 0; i < 5; ++i)
    requests.push_back({{50.1 + 0.1 * i, 10.1 + i}, {50.9, 11.7 + 0.1 * i}, 800, i % 2, 3, true});
  requests.push_back({{48.0, 9.2}, {48.5, 9.9}, 300, 0, 9, true});
  std::vector<SampleResult> expected;
  for (const SampleRequest& request : requests) {
    expected.push_back(library.sample(request));
    ASSERT_EQ(expected.back().report.status, 0) << expected.back().report.reason;
  }

  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (unsigned round = 0; round < 30; ++round) {
        const std::size_t i = (t + round) % requests.size();
        const SampleResult result = library.sample(requests[i]);
        if (result.heights != expected[i].heights || result.positions != expected[i].positions) ++wrong;
        if (t == 0 && round % 10 == 9) ++name;
        if (t == 1) library.setStationShift(nullptr);
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace zel
