#include "models/longrice/path_terrain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>

#include "grounds.h"
#include "models/longrice/parameter_error.h"
#include "models/longrice/terrain_irregularity.h"

namespace zel::longrice {
namespace {

constexpr double kCurvature = 1 / 8495e3;  // 1/m

struct Case {
  Ground ground;
  double spacing = 0;
  double transmitter = 0;
  double receiver = 0;
};

GrowingPath grown(const Case& given) {
  GrowingPath path(given.spacing, kCurvature, given.transmitter);
  for (const double elevation : given.ground) path.append(elevation);
  return path;
}

PathTerrain described(const Case& given) { return grown(given).describe(given.receiver); }

// The analysis once more in its plain form: everything is summed anew, nothing is kept.
class PlainAnalysis {
 public:
  explicit PlainAnalysis(const Case& given) : given_(given), last_(given.ground.size() - 1) {
    path_.distance = static_cast<double>(last_) * given.spacing;
    path_.structuralHeights = {given.transmitter, given.receiver};
    findHorizons();
    const double near = std::min(15 * given.transmitter, 0.1 * path_.horizonDistances[0]);
    const double far = path_.distance - std::min(15 * given.receiver, 0.1 * path_.horizonDistances[1]);
    path_.deltaH = terrainIrregularity(given.ground, given.spacing, near, far);
    if (path_.mode == PathMode::kLineOfSight) {
      raise(0, near, far);
      raise(1, near, far);
      withinSight();
    } else {
      raise(0, near, 0.9 * path_.horizonDistances[0]);
      raise(1, path_.distance - 0.9 * path_.horizonDistances[1], far);
    }
  }

  const PathTerrain& path() const { return path_; }
  bool reestimated() const { return reestimated_; }

 private:
  void findHorizons() {
    const Ground& ground = given_.ground;
    const double tops[2] = {ground[0] + given_.transmitter, ground[last_] + given_.receiver};
    std::size_t seen[2] = {last_, 0};
    for (std::size_t j = 0; j < 2; ++j) {
      path_.horizonDistances[j] = path_.distance;
      path_.horizonAngles[j] = (tops[1 - j] - tops[j]) / path_.distance - kCurvature * path_.distance / 2;
      // Running sums, whose last bit decides where a tenth of the distance is a sample.
      double away = j == 0 ? 0 : path_.distance;
      for (std::size_t i = 1; i < last_; ++i) {
        away += j == 0 ? given_.spacing : -given_.spacing;
        const double angle = (ground[i] - tops[j]) / away - kCurvature * away / 2;
        if (angle <= path_.horizonAngles[j]) continue;
        path_.horizonAngles[j] = angle;
        path_.horizonDistances[j] = away;
        seen[j] = i;
      }
    }
    path_.mode = seen[0] == last_     ? PathMode::kLineOfSight
                 : seen[0] == seen[1] ? PathMode::kSingleHorizon
                                      : PathMode::kDoubleHorizon;
  }

  // The antenna's height above the line through a stretch, where the ground stands above that line.
  void raise(std::size_t j, double from, double to) {
    const auto intervals = static_cast<long>(last_);
    const long first = static_cast<long>(std::max(from / given_.spacing, 0.0));
    const long last =
        intervals - static_cast<long>(std::max(static_cast<double>(intervals) - to / given_.spacing, 0.0));
    double weights = 0, mean = 0, squares = 0, slope = 0;
    const double middle = 0.5 * static_cast<double>(first + last);
    for (long i = first; i <= last; ++i) {
      const double weight = i == first || i == last ? 0.5 : 1;
      const double offset = static_cast<double>(i) - middle;
      const double height = given_.ground[static_cast<std::size_t>(i)];
      weights += weight;
      mean += weight * height;
      squares += weight * offset * offset;
      slope += weight * offset * height;
    }
    const std::size_t end = j == 0 ? 0 : last_;
    const double line = mean / weights + slope / squares * (static_cast<double>(end) - middle);
    path_.effectiveHeights[j] = path_.structuralHeights[j] + std::max(given_.ground[end] - line, 0.0);
  }

  double horizon(std::size_t j) const {
    const double height = path_.effectiveHeights[j];
    return std::sqrt(2 * height / kCurvature) *
           std::exp(-0.07 * std::sqrt(path_.deltaH / std::max(height, 5.0)));
  }

  void withinSight() {
    const double reach = horizon(0) + horizon(1);
    if (reach <= path_.distance) {
      reestimated_ = true;
      for (double& height : path_.effectiveHeights) height *= std::pow(path_.distance / reach, 2);
    }
    for (std::size_t j = 0; j < 2; ++j) {
      const double height = path_.effectiveHeights[j];
      const double smooth = std::sqrt(2 * height / kCurvature);
      path_.horizonDistances[j] = horizon(j);
      path_.horizonAngles[j] = (0.65 * path_.deltaH * (smooth / horizon(j) - 1) - 2 * height) / smooth;
    }
  }

  Case given_;
  std::size_t last_;
  PathTerrain path_;
  bool reestimated_ = false;
};

// A wide bowl between ends that lie on its trend, which 300 m antennas see across.
Case acrossABowl(double depth, double length) {
  constexpr int kIntervals = 400;
  constexpr double kNear = 4500;  // what does not count before each antenna, metres
  Case made{{}, length / kIntervals, 300, 300};
  for (int i = 0; i <= kIntervals; ++i) {
    const double along = (i * made.spacing - kNear) / (length - 2 * kNear);
    made.ground.push_back(along < 0 || along > 1 ? depth / 3 : depth * (2 * along - 1) * (2 * along - 1));
  }
  return made;
}

// Rounding only: heights to 1e-6 m, relative 1e-9 for what is divided by a small number.
TEST(PathTerrain, IsThatOfThePlainAnalysisOverAnyGround) {
  Random random(41);
  std::array<int, 3> modes{};
  int reestimated = 0;
  for (int run = 0; run < 3000; ++run) {
    const Case given = run % 6 == 0 ? acrossABowl(random.uniform(100, 380), random.uniform(120e3, 145e3))
                                    : Case{anyGround(random, 2 + random.below(200)), random.decades(5, 3000),
                                           random.decades(0.5, 1000), random.decades(0.5, 1000)};
    const PlainAnalysis plain(given);
    const PathTerrain fast = described(given);
    ++modes[static_cast<std::size_t>(fast.mode)];
    reestimated += plain.reestimated();
    ASSERT_EQ(fast.mode, plain.path().mode) << run;
    EXPECT_DOUBLE_EQ(fast.distance, plain.path().distance);
    EXPECT_EQ(fast.structuralHeights, plain.path().structuralHeights);
    EXPECT_NEAR(fast.deltaH, plain.path().deltaH, 1e-9);
    for (std::size_t j = 0; j < 2; ++j) {
      const double height = plain.path().effectiveHeights[j];
      const double horizon = plain.path().horizonDistances[j];
      EXPECT_NEAR(fast.effectiveHeights[j], height, 1e-6 + 1e-9 * height) << run << " " << j;
      EXPECT_NEAR(fast.horizonDistances[j], horizon, 1e-6 + 1e-8 * horizon) << run << " " << j;
      EXPECT_NEAR(fast.horizonAngles[j], plain.path().horizonAngles[j], 1e-8) << run << " " << j;
    }
    if (HasFailure()) break;
  }
  EXPECT_GT(*std::min_element(modes.begin(), modes.end()), 100);
  EXPECT_GT(reestimated, 30);
}

TEST(PathTerrain, OverFlatGroundHasTheAntennasOwnHeightsAndSmoothHorizons) {
  const PathTerrain path = described({Ground(101, 250.0), 50, 30, 10});
  EXPECT_EQ(path.mode, PathMode::kLineOfSight);
  EXPECT_DOUBLE_EQ(path.distance, 5000);
  EXPECT_EQ(path.deltaH, 0);
  EXPECT_NEAR(path.effectiveHeights[0], 30, 1e-9);
  EXPECT_NEAR(path.effectiveHeights[1], 10, 1e-9);
  // sqrt(2 h a): 22.58 and 13.03 km, though the other antenna stands at 5 km.
  EXPECT_NEAR(path.horizonDistances[0], std::sqrt(2 * 30 * 8495e3), 1e-3);
  EXPECT_NEAR(path.horizonDistances[1], std::sqrt(2 * 10 * 8495e3), 1e-3);
  EXPECT_NEAR(path.horizonAngles[0], -std::sqrt(2 * 30 / 8495e3), 1e-9);
}

TEST(PathTerrain, OverOneSharpRidgeHasASingleHorizon) {
  Ground ground(101, 100.0);
  ground[40] = 300;
  const PathTerrain path = described({ground, 200, 20, 10});
  EXPECT_EQ(path.mode, PathMode::kSingleHorizon);
  EXPECT_DOUBLE_EQ(path.horizonDistances[0], 8000);
  EXPECT_DOUBLE_EQ(path.horizonDistances[1], 12000);
  EXPECT_NEAR(path.horizonAngles[0], 180.0 / 8000 - 4000 * kCurvature, 1e-12);
  EXPECT_NEAR(path.horizonAngles[1], 190.0 / 12000 - 6000 * kCurvature, 1e-12);
  // The ridge itself lies beyond nine tenths of the way to the horizon and does not count.
  EXPECT_NEAR(path.effectiveHeights[0], 20, 1e-9);
  EXPECT_NEAR(path.effectiveHeights[1], 10, 1e-9);
}

TEST(PathTerrain, OverTwoRidgesHasADoubleHorizon) {
  Ground ground(101, 100.0);
  ground[30] = ground[60] = 250;
  const PathTerrain path = described({ground, 200, 20, 10});
  EXPECT_EQ(path.mode, PathMode::kDoubleHorizon);
  EXPECT_DOUBLE_EQ(path.horizonDistances[0], 6000);
  EXPECT_DOUBLE_EQ(path.horizonDistances[1], 8000);
}

TEST(PathTerrain, RaisesAnAntennaByTheHillThatItStandsOnAndNeverLowersIt) {
  Ground hill(101, 0.0);
  hill[0] = 120;
  Ground hollow(101, 120.0);
  hollow[0] = 100;
  EXPECT_NEAR(described({hill, 100, 20, 40}).effectiveHeights[0], 140, 3);
  EXPECT_NEAR(described({hollow, 100, 60, 40}).effectiveHeights[0], 60, 1e-9);
}

// In sight over rough ground, where horizons of that roughness would not meet: the heights grow by the square
// of what is missing, so that the horizons then reach at least as far as the path.
TEST(PathTerrain, OfAPathInSightHasHorizonsThatReachAcrossIt) {
  const Case given = acrossABowl(290, 140e3);
  ASSERT_TRUE(PlainAnalysis(given).reestimated());
  const PathTerrain path = described(given);
  EXPECT_EQ(path.mode, PathMode::kLineOfSight);
  EXPECT_GT(path.effectiveHeights[0], 310);
  EXPECT_GE(path.horizonDistances[0] + path.horizonDistances[1], path.distance);
}

TEST(PathTerrain, OfTwoSamplesIsAFreePathWithoutIrregularity) {
  const PathTerrain path = described({{10, 20}, 5000, 30, 30});
  EXPECT_EQ(path.mode, PathMode::kLineOfSight);
  EXPECT_EQ(path.deltaH, 0);
  EXPECT_EQ(path.distance, 5000);
}

template <typename Action>
Parameter parameterOf(const Action& action) {
  try {
    action();
  } catch (const ParameterError& error) {
    return error.parameter();
  }
  ADD_FAILURE() << "no error";
  return Parameter::kReliability;
}

// The fit's rounding lifts such an antenna by some 1e-13 m or not at all, depending on the height of the
// ground.
TEST(GrowingPath, RefusesAnAntennaOnFlatOrEvenlyRisingGroundAtAnyHeight) {
  for (const double height : {0.0, 57.3, 100.0, 123.4, 250.1, 4321.7})
    for (const double rise : {0.0, 0.1, 1.3}) {
      Ground ground;
      for (int i = 0; i < 60; ++i) ground.push_back(height + rise * i);
      EXPECT_EQ(parameterOf([&] {
                  described({ground, 90, 0, 30});
                }),
                Parameter::kTransmitterHeight)
          << height;
      EXPECT_EQ(parameterOf([&] { described({ground, 90, 30, 0}); }), Parameter::kReceiverHeight) << height;
    }
}

TEST(MeanElevation, IsThatOfTheMiddleEightTenths) {
  // 20 intervals: samples 2 to 18.
  Ground ground(21, 50.0);
  ground[0] = ground[1] = ground[19] = ground[20] = 9000;
  EXPECT_DOUBLE_EQ(meanElevation(ground), 50);
  ground[2] = 67;
  EXPECT_DOUBLE_EQ(meanElevation(ground), 51);
}

TEST(MeanElevation, IsThatOfAllOfLessThanTenIntervals) {
  EXPECT_DOUBLE_EQ(meanElevation(Ground{1, 2, 3, 10}), 4);
  EXPECT_DOUBLE_EQ(meanElevation(Ground{7}), 7);
}

TEST(GrowingPath, NeedsTwoSamples) {
  for (const Ground& ground : {Ground{}, Ground{5}}) {
    const GrowingPath path = grown({ground, 100, 10, 10});
    try {
      path.describe(10);
      ADD_FAILURE();
    } catch (const ParameterError& error) {
      EXPECT_EQ(error.parameter(), Parameter::kElevations);
      EXPECT_EQ(error.description(),
                "there are " + std::to_string(ground.size()) + " elevations; a path has at least 2");
    }
  }
}

TEST(GrowingPath, RefusesAnElevationWithItsNumberAndStaysAsItWas) {
  GrowingPath path(100, kCurvature, 10);
  path.append(5);
  path.append(6);
  for (const double bad : {std::nan(""), std::numeric_limits<double>::infinity(), -9000.1, 30000.1}) {
    try {
      path.append(bad);
      ADD_FAILURE();
    } catch (const ParameterError& error) {
      EXPECT_EQ(error.parameter(), Parameter::kElevations);
      EXPECT_NE(error.description().find("elevation of sample 3"), std::string::npos) << error.description();
    }
  }
  EXPECT_EQ(path.samples(), 2U);
  EXPECT_EQ(path.describe(10).distance, 100);
  path.append(-9000);
  path.append(30000);
  EXPECT_EQ(path.samples(), 4U);
}

TEST(GrowingPath, RefusesToGrowBeyondHalfTheWayAroundTheEarth) {
  GrowingPath path(1e7, kCurvature, 10);
  path.append(0);
  path.append(0);
  path.append(0);
  EXPECT_EQ(parameterOf([&] { path.append(0); }), Parameter::kSpacing);
  EXPECT_EQ(path.samples(), 3U);
}

TEST(GrowingPath, RefusesASpacingAndAntennasThatNoPathHas) {
  const double nan = std::nan("");
  for (const double bad : {0.0, -1.0, 2.2e7, nan})
    EXPECT_EQ(parameterOf([&] { GrowingPath(bad, kCurvature, 10); }), Parameter::kSpacing);
  for (const double bad : {-0.1, 100001.0, nan}) {
    EXPECT_EQ(parameterOf([&] { GrowingPath(100, kCurvature, bad); }), Parameter::kTransmitterHeight);
    EXPECT_EQ(parameterOf([&] { described({{0, 0}, 100, 10, bad}); }), Parameter::kReceiverHeight);
  }
}

// Zero above ground is allowed where the ground itself lifts the antenna.
TEST(GrowingPath, RefusesAnAntennaWithoutEffectiveHeight) {
  const Ground flat(30, 100.0);
  EXPECT_EQ(parameterOf([&] { described({flat, 100, 0, 10}); }), Parameter::kTransmitterHeight);
  EXPECT_EQ(parameterOf([&] { described({flat, 100, 10, 0}); }), Parameter::kReceiverHeight);
  Ground hills = flat;
  hills.front() = hills.back() = 200;
  const PathTerrain path = described({hills, 100, 0, 0});
  EXPECT_GT(path.effectiveHeights[0], 90);
  EXPECT_GT(path.effectiveHeights[1], 90);
}

}  // namespace
}  // namespace zel::longrice
