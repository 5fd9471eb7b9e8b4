#include "profile/calculation/height_statistics.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

PathGeometry smallPath() {
  PathGeometry path;
  path.distance = 3;
  path.intervals = 3;
  path.firstIndex = 2;
  path.lastIndex = 5;
  path.samples = 6;
  return path;
}

SampleArray<float> samples(std::vector<float> values) { return SampleArray<float>(std::move(values)); }

TEST(HeightStatistics, CoverTheSamplesFromStationToStation) {
  const HeightStatistics result =
      heightStatistics(smallPath(), samples({9999, 10, 40, -20, 30, -9999}), SampleArray<float>(6));
  EXPECT_EQ(result.startGround, 10);
  EXPECT_EQ(result.endGround, 30);
  EXPECT_EQ(result.maximum, 40);
  EXPECT_EQ(result.minimum, -20);
}

TEST(HeightStatistics, AverageDividesTheSumOfNPlusOneSamplesByN) {
  const HeightStatistics result =
      heightStatistics(smallPath(), samples({0, 10, 10, 10, 10, 0}), SampleArray<float>(6));
  EXPECT_FLOAT_EQ(result.average, 40.0F / 3.0F);
}

TEST(HeightStatistics, PlotExtremesTakeTheRiseExceptAtTheStart) {
  const SampleArray<float> rise = samples({0, 100, 3, 5, 4, 0});
  const HeightStatistics result = heightStatistics(smallPath(), samples({0, 10, 40, 20, 38, 0}), rise);
  EXPECT_EQ(result.plotMaximum, 43);
  EXPECT_EQ(result.plotMinimum, 10) << "the start counts without its rise";
  EXPECT_EQ(result.maximum, 40);
  EXPECT_EQ(result.minimum, 10);
}

TEST(HeightStatistics, PlotMaximumCanComeFromTheRiseAlone) {
  const HeightStatistics result =
      heightStatistics(smallPath(), samples({0, 5, 5, 5, 5, 0}), samples({0, 1, 2, 3, 1, 0}));
  EXPECT_EQ(result.plotMaximum, 8);
  EXPECT_EQ(result.plotMinimum, 5);
}

TEST(HeightStatistics, FailWithoutTheStationsSamplesOrIntervals) {
  const auto errorOf = [](const PathGeometry& path, std::size_t size) {
    try {
      heightStatistics(path, SampleArray<float>(size), SampleArray<float>(size));
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(errorOf(smallPath(), 4), 9);
  EXPECT_EQ(errorOf(PathGeometry{}, 6), 9);
  PathGeometry path = smallPath();
  path.intervals = 0;
  EXPECT_EQ(errorOf(path, 6), 11);
}

}  // namespace
}  // namespace zel
