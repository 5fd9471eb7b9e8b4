#include "profile/calculation/line_of_sight.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

PathGeometry smallPath() {
  PathGeometry path;
  path.distance = 8;
  path.intervals = 2;
  path.firstIndex = 2;
  path.lastIndex = 4;
  path.samples = 6;
  path.spacing = 4;
  return path;
}

SampleArray<float> samples(std::vector<float> values) { return SampleArray<float>(std::move(values)); }

TEST(LineOfSight, RunsBetweenTheAntennaTopsWithTheirRise) {
  const LineOfSight line =
      lineOfSight(smallPath(), samples({0, 100, 0, 200, 0, 0}), samples({0, 1.5F, 0, 2.5F, 0, 0}), {30, 12});
  EXPECT_EQ(line.startTop, 131.5F);
  EXPECT_EQ(line.endTop, 214.5F);
  EXPECT_EQ(line.slope, 10.375F);  // 83 m over 8 km
  EXPECT_DOUBLE_EQ(line.heightAt(0), 131.5);
  EXPECT_DOUBLE_EQ(line.heightAt(8), 214.5);
  EXPECT_DOUBLE_EQ(line.heightAt(-4), 131.5 - 41.5) << "it goes on beyond the stations";
}

TEST(LineOfSight, FallsTowardsALowerEnd) {
  const LineOfSight line =
      lineOfSight(smallPath(), samples({0, 100, 0, 20, 0, 0}), SampleArray<float>(6), {0, 0});
  EXPECT_EQ(line.slope, -10.0F);
}

TEST(LineOfSight, NeedsBothAntennasSamplesAndADistance) {
  const auto errorOf = [](const PathGeometry& path, std::size_t size) {
    try {
      lineOfSight(path, SampleArray<float>(size), SampleArray<float>(6), {1, 1});
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  EXPECT_EQ(errorOf(smallPath(), 3), 9);
  PathGeometry path = smallPath();
  path.distance = 0;
  EXPECT_EQ(errorOf(path, 6), 11);
}

}  // namespace
}  // namespace zel
