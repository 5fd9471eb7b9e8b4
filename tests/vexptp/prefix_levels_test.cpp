#include "models/ptp/vexptp/prefix_levels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "export/path_models.h"
#include "export/signal_levels.h"
#include "models/ptp/parameter_error.h"
#include "vexptp/expect_error.h"

namespace zel::ptp {
namespace {

using Heights = std::vector<float>;

Arguments arguments() {
  Arguments given;
  given.frequency = 950;
  given.erp = 2.5;
  given.receiverHeight = 10;
  given.clutter = 4;
  return given;
}

Heights hills(std::mt19937& random, std::size_t samples) {
  std::uniform_int_distribution<int> step(-800, 800);
  Heights heights;
  int centimetres = 20000;
  for (std::size_t i = 0; i < samples; ++i) {
    heights.push_back(static_cast<float>(centimetres / 100.0));
    centimetres += step(random);
  }
  return heights;
}

TEST(PrefixLevels, EqualTheColumnsOfASignalProfileOverTheSameHeightsToTheLastBit) {
  std::mt19937 random(20261123);
  for (int run = 0; run < 40; ++run) {
    const Heights heights = hills(random, 300);
    Companion companion;
    companion.spacing = 0.0301 + 0.01 * run;
    companion.transmitter = double{heights[0]} + 25;
    companion.model.ground.polarization = run % 2 == 0 ? Polarization::kHorizontal : Polarization::kVertical;
    companion.model.clutter.category = static_cast<ClutterCategory>(run % 6);
    const Arguments given = arguments();
    const auto rows = prefixLevels(heights, companion, given);

    PathStretch stretch;
    stretch.elevations = heights;
    stretch.spacing = companion.spacing;
    stretch.antennaHeights = {25, 10};
    stretch.frequency = given.frequency;
    PointToPointAlongPath profile(stretch, companion.model);
    const SignalLevels levels({given.erp, 0, given.clutter}, given.frequency);
    ASSERT_EQ(rows.size(), heights.size());
    for (std::size_t samples = 2; samples <= heights.size(); ++samples) {
      const auto losses = profile.lossesOver(samples);
      const PrefixLevel& row = rows[samples - 1];
      ASSERT_TRUE(losses.has_value());
      ASSERT_EQ(row.diffraction, losses->diffraction) << "run " << run << ", sample " << samples;
      ASSERT_EQ(row.clutter, losses->clutter) << "run " << run << ", sample " << samples;
      ASSERT_EQ(row.level, levels.pointToPoint(row.distance, losses->diffraction, losses->clutter));
    }
  }
}

TEST(PrefixLevels, TheLevelIsThatOfADipoleLessAllLosses) {
  // 10 log 2.5 + 106.92 - 20 log 0.2 - 4 dB over flat ground in sight; the power's term is held in single
  // precision, hence 1e-5 dB.
  const auto rows = prefixLevels(Heights{100, 100, 100}, {}, arguments());
  EXPECT_EQ(rows[2].distance, 0.2);
  EXPECT_EQ(rows[2].diffraction, 0);
  EXPECT_NEAR(rows[2].level, 10 * std::log10(2.5) + 106.92 - 20 * std::log10(0.2) - 4, 1e-5);
}

TEST(PrefixLevels, TheFirstSampleHasNoLossAndNoLevel) {
  const auto rows = prefixLevels(Heights{100, 100}, {}, arguments());
  EXPECT_EQ(rows[0].distance, 0);
  EXPECT_EQ(rows[0].diffraction, -999);
  EXPECT_EQ(rows[0].clutter, -999);
  EXPECT_EQ(rows[0].level, -999);
}

TEST(PrefixLevels, WithoutACompanionTheTransmitterStands30MetresAboveTheFirstHeight) {
  const Heights heights{100, 120, 140, 100, 90};
  Companion companion;
  const auto usual = prefixLevels(heights, companion, arguments());
  companion.transmitter = 130;
  EXPECT_EQ(usual[4].diffraction, prefixLevels(heights, companion, arguments())[4].diffraction);
  companion.transmitter = 131;
  EXPECT_NE(usual[4].diffraction, prefixLevels(heights, companion, arguments())[4].diffraction);
}

TEST(PrefixLevels, ASampleWithoutItsClutterLossHasNoValueAtAll) {
  Companion companion;
  companion.model.clutter.category = ClutterCategory::kSuburban;
  Arguments given = arguments();
  given.frequency = 3001;  // the correction ends at 3 GHz
  const auto rows = prefixLevels(Heights{100, 300, 100}, companion, given);
  EXPECT_EQ(rows[2].distance, 0.2);
  EXPECT_EQ(rows[2].diffraction, -999);
  EXPECT_EQ(rows[2].clutter, -999);
  EXPECT_EQ(rows[2].level, -999);
}

TEST(PrefixLevels, ATransmitterOnTheGroundIsNotBuriedByTheRoundingOfTheHeights) {
  Companion companion;
  companion.transmitter = 123.4567;  // its ground's height is written as 123.46
  const auto rows = prefixLevels(Heights{123.46F, 100}, companion, arguments());
  EXPECT_GE(rows[1].diffraction, 0);
  companion.transmitter = 123.4;
  EXPECT_NE(errorOf<ParameterError>([&] {
              prefixLevels(Heights{123.46F, 100}, companion, arguments());
            }).find("below its ground"),
            std::string::npos);
}

TEST(PrefixLevels, WhatTheModelDoesNotTakeIsAFailure) {
  Companion companion;
  companion.model.ground = {Polarization::kHorizontal, 1, 0};
  EXPECT_NE(errorOf<ParameterError>([&] { prefixLevels(Heights{1, 2}, companion, arguments()); }), "");
  companion.model.ground = {};
  companion.spacing = 20000;
  EXPECT_NE(errorOf<ParameterError>([&] {
              prefixLevels(Heights{1, 2, 3}, companion, arguments());
            }),
            "")
      << "longer than any path on the earth";
}

}  // namespace
}  // namespace zel::ptp
