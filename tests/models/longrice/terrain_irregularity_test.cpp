#include "models/longrice/terrain_irregularity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>

#include "grounds.h"

namespace zel::longrice {
namespace {

double heightAt(const Ground& ground, double position) {
  const auto left = std::min(static_cast<std::size_t>(position), ground.size() - 2);
  const double fraction = position - static_cast<double>(left);
  return ground[left] * (1 - fraction) + ground[left + 1] * fraction;
}

// The plain way: read, fit with half weights at the ends, take the line off, sort, count the tenths off.
double plainIrregularity(const Ground& ground, double spacing, double from, double to) {
  const double intervals = (to - from) / spacing;
  if (intervals < 2) return 0;
  const int tenths = std::clamp(static_cast<int>(0.1 * (intervals + 8)), 4, 25);
  const int count = 10 * tenths - 5;
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    values.push_back(heightAt(ground, std::min(from / spacing + intervals * i / (count - 1),
                                               static_cast<double>(ground.size() - 1))));
  const double middle = (count - 1) / 2.0;
  double weights = 0, mean = 0, squares = 0, slope = 0;
  for (int i = 0; i < count; ++i) {
    const double weight = i == 0 || i == count - 1 ? 0.5 : 1;
    const double height = values[static_cast<std::size_t>(i)];
    weights += weight;
    mean += weight * height;
    squares += weight * (i - middle) * (i - middle);
    slope += weight * (i - middle) * height;
  }
  mean /= weights;
  slope /= squares;
  for (int i = 0; i < count; ++i) values[static_cast<std::size_t>(i)] -= mean + slope * (i - middle);
  std::sort(values.begin(), values.end(), std::greater<>());
  const double spread =
      values[static_cast<std::size_t>(tenths - 1)] - values[static_cast<std::size_t>(count - tenths)];
  return spread / (1 - 0.8 * std::exp(-(to - from) / 50e3));
}

TEST(TerrainIrregularity, IsThatOfAPlainSortForAnyStretchOfAnyGround) {
  Random random(31);
  for (int run = 0; run < 1000; ++run) {
    const std::size_t samples = 3 + random.below(run % 10 == 0 ? 5000 : 200);
    const Ground ground = anyGround(random, samples);
    const double spacing = random.decades(1, 5000);
    const double length = static_cast<double>(samples - 1) * spacing;
    const double from = random.uniform(0, 0.3) * length;
    const double to = run % 7 == 0 ? length : random.uniform(0.5, 1) * length;
    // Rounding of heights of some thousand metres, divided by at least 0.2.
    EXPECT_NEAR(terrainIrregularity(ground, spacing, from, to), plainIrregularity(ground, spacing, from, to),
                1e-9)
        << run;
  }
}

// A tower, a pit or both put nearly all heights next to each other on the scale from the lowest to the
// highest.
TEST(TerrainIrregularity, TellsHeightsApartThatLieCloseBesideAGreatOutlier) {
  Random random(33);
  for (int run = 0; run < 300; ++run) {
    Ground ground = randomWalk(random, 200 + random.below(800), run % 3 == 0 ? 1e-3 : 1);
    if (run % 2 == 0) ground[random.below(ground.size())] += 8000;
    if (run % 5 == 0) ground[random.below(ground.size())] -= 8000;
    const double length = static_cast<double>(ground.size() - 1) * 50;
    EXPECT_NEAR(terrainIrregularity(ground, 50, 200, length - 170),
                plainIrregularity(ground, 50, 200, length - 170), 1e-9)
        << run;
  }
}

TEST(TerrainIrregularity, IsNothingOnAPlaneHoweverSteep) {
  Ground ground;
  for (int i = 0; i < 400; ++i) ground.push_back(100 + 3.25 * i);
  EXPECT_NEAR(terrainIrregularity(ground, 100, 0, 39900), 0, 1e-9);
  EXPECT_EQ(terrainIrregularity(Ground(400, 17.0), 100, 130, 30000), 0);
}

// A wave is above cos(0.1 pi) of its amplitude for a tenth of its length: 2 x 0.9511 between the tenths.
// Tolerance: the readings are few to a wave, 3 %.
TEST(TerrainIrregularity, OfAWaveIsTheSpreadBetweenItsTenths) {
  constexpr double kAmplitude = 80;
  Ground ground;
  for (int i = 0; i <= 2000; ++i)
    ground.push_back(kAmplitude * std::cos(2 * std::numbers::pi * 12 * i / 2000));
  const double expected =
      2 * kAmplitude * std::cos(0.1 * std::numbers::pi) / (1 - 0.8 * std::exp(-200e3 / 50e3));
  EXPECT_NEAR(terrainIrregularity(ground, 100, 0, 200e3), expected, 0.03 * expected);
}

TEST(TerrainIrregularity, DoesNotSeeATrendAndGrowsWithTheHeights) {
  Random random(32);
  for (int run = 0; run < 50; ++run) {
    const Ground ground = randomWalk(random, 300, 20);
    Ground tilted = ground, doubled = ground;
    for (std::size_t i = 0; i < ground.size(); ++i) {
      tilted[i] += 55 - 1.5 * static_cast<double>(i);
      doubled[i] *= 2;
    }
    const double plain = terrainIrregularity(ground, 90, 450, 26000);
    EXPECT_NEAR(terrainIrregularity(tilted, 90, 450, 26000), plain, 1e-9);
    EXPECT_NEAR(terrainIrregularity(doubled, 90, 450, 26000), 2 * plain, 1e-9);
  }
}

TEST(TerrainIrregularity, NeedsTwoIntervals) {
  const Ground ground{0, 100, 0, 100, 0};
  EXPECT_EQ(terrainIrregularity(ground, 100, 100, 299.9), 0);
  EXPECT_GT(terrainIrregularity(ground, 100, 100, 300), 0);
  EXPECT_EQ(terrainIrregularity(ground, 100, 300, 100), 0);
}

TEST(TerrainIrregularity, IsReadUpToTheLastSample) {
  Ground ground(100, 0.0);
  for (std::size_t i = 60; i < 100; ++i) ground[i] = 50;
  EXPECT_GT(terrainIrregularity(ground, 10, 0, 990), 0);
}

// Delta h (1 - 0.8 exp(-d / 50 km)): a fifth at no distance, all of it far away.
TEST(TerrainIrregularityOver, GrowsFromAFifthToAllOfIt) {
  EXPECT_NEAR(terrainIrregularityOver(0, 90), 18, 1e-12);
  EXPECT_NEAR(terrainIrregularityOver(50e3, 90), 90 * (1 - 0.8 / std::numbers::e), 1e-12);
  EXPECT_NEAR(terrainIrregularityOver(2000e3, 90), 90, 1e-12);
  EXPECT_EQ(terrainIrregularityOver(1e3, 0), 0);
}

// 0.78 Delta h exp(-0.5 Delta h^(1/4)), the form of the area prediction guide, where 0.5 stands for
// 16^(-1/4).
TEST(TerrainRoughnessOver, IsThePublishedSpreadOfHeights) {
  for (const double deltaH : {1.0, 16.0, 90.0, 500.0}) {
    const double seen = terrainIrregularityOver(20e3, deltaH);
    EXPECT_NEAR(terrainRoughnessOver(20e3, deltaH), 0.78 * seen * std::exp(-0.5 * std::pow(seen, 0.25)),
                1e-9);
  }
  EXPECT_EQ(terrainRoughnessOver(20e3, 0), 0);
}

}  // namespace
}  // namespace zel::longrice
