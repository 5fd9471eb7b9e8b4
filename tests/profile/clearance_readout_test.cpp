#include "profile/view_state/clearance_readout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "platform/terrain.h"
#include "support/plot_state.h"

namespace zel {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// 10 km in 10 intervals, flat ground at 100 m, masts of 30 m, at a wavelength of 1 m: the first zone is
// sqrt(1000 d1 d2 / 10) m, 50 m in the middle. At k 4/3 the middle bulges by 1000 x 25 / (2 k 6371) = 1.4714
// m. The start antenna stands on sample 1 at x = 1 km, the end antenna on sample 11 at x = 11 km.
struct ClearanceReadoutTest : testing::Test {
  ProfileViewState state = test::flatProfile();

  void SetUp() override {
    state.inputs.frequency = 300;
    state.inputs.k = state.riseK = 4.0F / 3.0F;
  }
  static double riseAt(double d1, double length, double k) {
    return 1000 * d1 * (length - d1) / (2 * k * 6371);
  }
  // So many intervals of 10 / intervals km, each sample at the ground given, `extension` more beyond the
  // ends.
  void layOut(std::int32_t intervals, std::int16_t extension, float ground) {
    PathGeometry& path = state.path;
    path.intervals = intervals;
    path.extension = path.firstIndex = extension;
    path.lastIndex = static_cast<std::int16_t>(intervals + extension);
    path.samples = intervals + 2 * extension;
    path.spacing = path.distance / intervals;
    path.extendedLength = path.distance + 2 * extension * path.spacing;
    state.rawElevation = SampleArray<float>(static_cast<std::size_t>(path.samples), ground);
  }
  std::string pathText() const { return pathClearanceText(state, pathClearance(state)); }
  std::string pointerText(double x) const { return pointerClearanceText(state, x); }
};

// --- the whole path ---

// Over flat ground the least clearance in first zones is in the middle: (30 - rise) / radius falls towards
// it.
TEST_F(ClearanceReadoutTest, FlatGroundIsNearestInTheMiddle) {
  const PathClearance clearance = pathClearance(state);
  ASSERT_TRUE(clearance.worst);
  EXPECT_EQ(clearance.status, ExactProfileStatus::kOk);
  EXPECT_EQ(clearance.worst->sample, 5U);
  EXPECT_DOUBLE_EQ(clearance.worst->distance, 5);
  const double expected = 30 - riseAt(5, 10, double{state.riseK});
  EXPECT_NEAR(clearance.worst->clearance, expected, 1e-12);
  EXPECT_NEAR(clearance.worst->fraction, expected / 50, 1e-12);
  EXPECT_NEAR(expected, 28.5285, 1e-4);
  EXPECT_EQ(clearance.verdict, ClearanceVerdict::kMarginal);
  EXPECT_EQ(clearance.voids, 0);
  EXPECT_EQ(clearance.frequency, 300);
  EXPECT_EQ(clearance.k, double{state.riseK});
  EXPECT_EQ(pathText(), "Worst 5.00 km: clearance 28.5 m, 57 % of zone 1: marginal (k 1.333333)");
}

TEST_F(ClearanceReadoutTest, AKnifeEdgeIsTheWorstObstacleWhereThePlotDrawsIt) {
  state.rawElevation[8] = 135;  // 7 km from the start, drawn at x = 8 km
  const PathClearance clearance = pathClearance(state);
  const double expected = -5 - riseAt(7, 10, double{state.riseK});
  ASSERT_TRUE(clearance.worst);
  EXPECT_DOUBLE_EQ(clearance.worst->distance, 7);
  EXPECT_NEAR(clearance.worst->clearance, expected, 1e-12);
  EXPECT_NEAR(clearance.worst->fraction, expected / std::sqrt(1000 * 21.0 / 10), 1e-12);
  EXPECT_EQ(clearance.verdict, ClearanceVerdict::kBlocked);
}

TEST_F(ClearanceReadoutTest, TheLineOfSightRunsBetweenTheAntennaTops) {
  layOut(2, 1, 0);
  state.riseK = 1e9F;  // a flat earth
  state.rawElevation[1] = 100;
  state.rawElevation[3] = 200;
  state.inputs.antennaHeights = {10, 50};
  const PathClearance clearance = pathClearance(state);
  ASSERT_TRUE(clearance.worst);
  EXPECT_NEAR(clearance.worst->clearance, (110 + 250) / 2.0, 1e-5);  // the 1e9 leaves a micrometre
}

// 60 % of 50 m at the middle sample, on a flat earth with samples at the ends and in the middle only.
TEST_F(ClearanceReadoutTest, TheVerdictIsThatOfTheFractionOfTheFirstZone) {
  layOut(2, 1, 0);
  state.riseK = 1e9F;
  struct {
    std::int16_t antenna;  // metres
    float ground;          // metres, in the middle
    ClearanceVerdict verdict;
    const char* word;
  } const rows[] = {{31, 0, ClearanceVerdict::kClear, "clear"},
                    {29, 0, ClearanceVerdict::kMarginal, "marginal"},
                    {29, 28.9F, ClearanceVerdict::kMarginal, "marginal"},
                    {29, 29.1F, ClearanceVerdict::kBlocked, "blocked"}};
  for (const auto& row : rows) {
    state.inputs.antennaHeights = {row.antenna, row.antenna};
    state.rawElevation[2] = row.ground;
    EXPECT_EQ(pathClearance(state).verdict, row.verdict) << row.antenna << ' ' << row.ground;
    EXPECT_NE(pathText().find(std::string(": ") + row.word + " ("), std::string::npos) << pathText();
  }
}

// The ground beyond the stations is drawn, and stands in nobody's way.
TEST_F(ClearanceReadoutTest, GroundBeyondTheStationsIsNoObstacle) {
  layOut(20, 3, 100);
  for (const std::int32_t beyond : {1, 2, 24, 25, 26}) state.rawElevation[beyond] = 5000;
  const PathClearance clearance = pathClearance(state);
  ASSERT_TRUE(clearance.worst);
  EXPECT_NEAR(clearance.worst->clearance, 30 - riseAt(5, 10, double{state.riseK}), 1e-12);
  for (const std::int32_t beyond : {1, 26}) state.rawElevation[beyond] = kVoidHeight;
  EXPECT_EQ(pathClearance(state).voids, 0);
}

TEST_F(ClearanceReadoutTest, WithAVoidOnTheWayOnlyBlockedIsCertain) {
  state.rawElevation[4] = kVoidHeight;
  PathClearance clearance = pathClearance(state);
  EXPECT_EQ(clearance.verdict, ClearanceVerdict::kUnknown);
  EXPECT_EQ(clearance.voids, 1);
  EXPECT_EQ(pathText(), "Worst 5.00 km: 28.5 m, 57 % of zone 1: unknown, 1 void (k 1.333333)");
  state.rawElevation[5] = kNan;
  state.rawElevation[8] = 180;
  clearance = pathClearance(state);
  EXPECT_EQ(clearance.verdict, ClearanceVerdict::kBlocked);
  EXPECT_EQ(clearance.voids, 2);
  EXPECT_NE(pathText().find("blocked, 2 voids"), std::string::npos) << pathText();
}

// The cleaned heights have the sea there; a reading from them would be wrong.
TEST_F(ClearanceReadoutTest, AVoidIsSeenInTheRawHeights) {
  state.rawElevation[6] = kVoidHeight;
  state.elevation[6] = 0;
  EXPECT_NE(pathClearance(state).worst->sample, 5U);
  EXPECT_FALSE(clearanceUnder(state, 6).has_value());
}

TEST_F(ClearanceReadoutTest, WithoutGroundUnderAnAntennaThereIsNoLineOfSight) {
  state.rawElevation[1] = kVoidHeight;
  EXPECT_EQ(pathText(), "Clearance unknown: no ground under the start, 1 void");
  state.rawElevation[1] = 100;
  state.rawElevation[11] = state.rawElevation[4] = kVoidHeight;
  EXPECT_EQ(pathClearance(state).status, ExactProfileStatus::kVoidEnd);
  EXPECT_EQ(pathText(), "Clearance unknown: no ground under the end, 2 voids");
  EXPECT_EQ(pointerText(6), "Pointer 5.00 km: no ground");
  state.rawElevation = SampleArray<float>(12, kVoidHeight);
  EXPECT_EQ(pathText(), "Clearance unknown: no ground at all, 11 voids");
  EXPECT_EQ(pathClearance(state).verdict, ClearanceVerdict::kUnknown);
}

TEST_F(ClearanceReadoutTest, AShortPathHasNothingBetweenItsStations) {
  layOut(1, 1, 100);
  EXPECT_EQ(pathText(), "Clearance unknown: no sample between the stations");
  layOut(2, 1, 100);
  EXPECT_TRUE(pathClearance(state).worst.has_value());
  state.rawElevation[2] = kVoidHeight;
  EXPECT_EQ(pathText(), "Clearance unknown: no ground between the stations, 1 void");
}

TEST_F(ClearanceReadoutTest, InputsThatMakeNoProfileAreSaid) {
  state.inputs.frequency = 0;
  EXPECT_EQ(pathClearance(state).status, ExactProfileStatus::kBadFrequency);
  EXPECT_EQ(pathText(), "Clearance unknown: no Fresnel zone at 0 MHz");
  state.inputs.frequency = 300;
  state.inputs.antennaHeights = {-1, 30};
  EXPECT_EQ(pathText(), "Clearance unknown: an antenna is below ground");
  state.inputs.antennaHeights = {30, 30};
  state.riseK = 0;
  EXPECT_EQ(pathText(), "Clearance unknown: k is not above 0");
  EXPECT_FALSE(clearanceUnder(state, 6).has_value());
  state.riseK = 1;
  state.path.distance = 0;
  EXPECT_EQ(pathText(), "Clearance unknown: the path has no length");
}

TEST_F(ClearanceReadoutTest, WithoutTerrainThereIsNothingToTell) {
  state.flags.resample = true;
  EXPECT_FALSE(pathClearance(state).status.has_value());
  EXPECT_EQ(pathText(), "");
  EXPECT_EQ(pointerText(6), "");
  EXPECT_FALSE(clearanceUnder(state, 6).has_value());
  state.flags.resample = false;
  state.rawElevation = SampleArray<float>(10, 100.0F);
  EXPECT_EQ(pathText(), "") << "arrays that do not reach the end";
  EXPECT_EQ(pathClearanceText(ProfileViewState{}, pathClearance(ProfileViewState{})), "");
  EXPECT_EQ(pointerClearanceText(ProfileViewState{}, 0), "");
}

// --- which k ---

TEST_F(ClearanceReadoutTest, TheDrawnRisesFactorCountsAndAPendingOneIsSaid) {
  state.riseK = 1.33F;
  state.inputs.k = 0.5F;
  const PathClearance clearance = pathClearance(state);
  EXPECT_EQ(clearance.k, double{1.33F});
  EXPECT_NEAR(clearance.worst->clearance, 30 - riseAt(5, 10, double{1.33F}), 1e-12);
  EXPECT_NEAR(clearanceUnder(state, 6)->clearance, 30 - riseAt(5, 10, double{1.33F}), 1e-12);
  EXPECT_EQ(pathText(), "Worst 5.00 km: 28.5 m, 57 % of zone 1: marginal (k 1.33, not yet 0.5)");
  state.inputs.k = 1.33F;
  EXPECT_EQ(pathText(), "Worst 5.00 km: clearance 28.5 m, 57 % of zone 1: marginal (k 1.33)");
}

// --- texts ---

TEST_F(ClearanceReadoutTest, TheTextsAreInDisplayUnits) {
  test::useFeetAndMiles(state);
  state.riseK = state.inputs.k = 1.33F;
  // 5 km = 3.107 mi; 30 m - 1.4750 m = 28.525 m = 93.6 ft
  EXPECT_EQ(pathText(), "Worst 3.11 mi: clearance 93.6 ft, 57 % of zone 1: marginal (k 1.33)");
  EXPECT_EQ(pointerText(6), "Pointer 3.11 mi: clearance 93.6 ft, 57 % of zone 1");
}

TEST_F(ClearanceReadoutTest, TheTextsWriteNumbersAsTheLocaleDoes) {
  const NumberStyle style{",", "."};
  state.riseK = state.inputs.k = 1.33F;
  state.rawElevation[6] = 3000;
  EXPECT_EQ(pathClearanceText(state, pathClearance(state), style),
            "Worst 5,00 km: -2.871,5 m, -5.743 % of zone 1: blocked (k 1,33)");
  EXPECT_EQ(pointerClearanceText(state, 6, style),
            "Pointer 5,00 km: clearance -2.871,5 m, -5.743 % of zone 1");
}

// About 400 pixels at 8 pt. What is left out first is a word, then the metres; never the verdict or the k.
TEST_F(ClearanceReadoutTest, LongLinesLeaveOutTheWordAndThenTheMetres) {
  state.riseK = 1.33F;
  state.inputs.k = 1.2F;
  state.rawElevation[3] = kVoidHeight;
  EXPECT_EQ(pathText(), "Worst 5.00 km: 57 % of zone 1: unknown, 1 void (k 1.33, not yet 1.2)");
  test::useFeetAndMiles(state);
  for (const float ground : {100.0F, 3000.0F, -90.0F}) {
    state.rawElevation[6] = ground;
    EXPECT_LE(pathText().size(), 75U) << pathText();
    EXPECT_LE(pointerText(6).size(), 68U) << pointerText(6);
  }
}

// For paper, and whatever else has room for all of it.
TEST_F(ClearanceReadoutTest, ALineWithoutALimitOrWithinItKeepsAllWords) {
  state.riseK = 1.33F;
  state.inputs.k = 1.2F;
  state.rawElevation[3] = kVoidHeight;
  const auto within = [this](std::size_t widest) {
    return pathClearanceText(state, pathClearance(state), {}, widest);
  };
  const std::string all =
      "Worst 5.00 km: clearance 28.5 m, 57 % of zone 1: unknown, 1 void (k 1.33, not yet 1.2)";
  EXPECT_EQ(within(std::numeric_limits<std::size_t>::max()), all);
  EXPECT_EQ(within(all.size()), all);
  EXPECT_EQ(within(all.size() - 1),
            "Worst 5.00 km: 28.5 m, 57 % of zone 1: unknown, 1 void (k 1.33, not yet 1.2)");
  EXPECT_EQ(within(0), "Worst 5.00 km: 57 % of zone 1: unknown, 1 void (k 1.33, not yet 1.2)");
}

// --- under the pointer ---

TEST_F(ClearanceReadoutTest, ThePointerOnTheWorstObstacleReadsItsClearance) {
  std::mt19937 random(20260102);
  std::uniform_real_distribution<float> ground(0, 300);
  for (const auto& [intervals, extension] :
       {std::pair<std::int32_t, std::int16_t>{10, 1}, {97, 5}, {5000, 250}}) {
    layOut(intervals, extension, 0);
    for (std::int32_t i = 1; i <= state.path.samples; ++i) state.rawElevation[i] = ground(random);
    const PathClearance clearance = pathClearance(state);
    ASSERT_TRUE(clearance.worst);
    const PlotIndex index = state.plotIndex();
    const auto sample = static_cast<std::int32_t>(clearance.worst->sample) + state.path.firstIndex;
    EXPECT_NEAR(index.xAtDistance(clearance.worst->distance), index.sampleX(sample), 1e-9)
        << "the plot draws it there";
    const auto pointer = clearanceUnder(state, index.sampleX(sample));
    ASSERT_TRUE(pointer);
    EXPECT_NEAR(pointer->distance, clearance.worst->distance, 1e-9);    // km
    EXPECT_NEAR(pointer->clearance, clearance.worst->clearance, 1e-6);  // metres: rounding of x over a slope
    EXPECT_NEAR(*pointer->fraction, clearance.worst->fraction, 1e-6);
  }
}

TEST_F(ClearanceReadoutTest, BetweenTwoSamplesTheGroundIsInterpolated) {
  state.rawElevation[6] = 110;  // drawn at x = 6 km
  state.rawElevation[7] = 130;
  const auto pointer = clearanceUnder(state, 6.25);
  ASSERT_TRUE(pointer);
  EXPECT_NEAR(pointer->distance, 5.25, 1e-12);
  const double expected = 130 - 115 - riseAt(5.25, 10, double{state.riseK});
  EXPECT_NEAR(pointer->clearance, expected, 1e-9);
  EXPECT_NEAR(*pointer->fraction, expected / std::sqrt(1000 * 5.25 * 4.75 / 10), 1e-9);
  EXPECT_EQ(pointerText(6.25), "Pointer 5.25 km: clearance 13.5 m, 27 % of zone 1");
}

TEST_F(ClearanceReadoutTest, OutsideTheStationsThereIsNothingToTell) {
  layOut(20, 2, 100);  // x0 = 1 km, L = 12 km
  for (const double x : {0.0, 0.999, 11.001, 12.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(clearanceUnder(state, x).has_value()) << x;
    EXPECT_EQ(pointerText(x), "") << x;
  }
  EXPECT_TRUE(clearanceUnder(state, 1.001).has_value());
  EXPECT_TRUE(clearanceUnder(state, 10.999).has_value());
}

// The first zone has no width there.
TEST_F(ClearanceReadoutTest, AtAStationTheClearanceIsTheMastsHeight) {
  layOut(20, 2, 100);
  for (const double x : {1.0, 11.0}) {
    const auto pointer = clearanceUnder(state, x);
    ASSERT_TRUE(pointer) << x;
    EXPECT_NEAR(pointer->clearance, 30, 1e-9);
    EXPECT_FALSE(pointer->fraction.has_value());
  }
  EXPECT_EQ(pointerText(1), "Pointer 0.00 km: clearance 30.0 m");
}

// With one sample beyond the end, the pointer's reading ends short of the end station.
TEST_F(ClearanceReadoutTest, WhereThePointerReadsNoGroundThereIsNoClearance) {
  EXPECT_TRUE(clearanceUnder(state, 10.99).has_value());
  EXPECT_FALSE(clearanceUnder(state, 11).has_value());
  EXPECT_EQ(pointerText(11), "");
}

TEST_F(ClearanceReadoutTest, BesideAVoidThereIsNoClearance) {
  state.rawElevation[6] = kVoidHeight;  // drawn at x = 6 km
  for (const double x : {5.01, 5.99, 6.0, 6.5, 6.99}) {
    EXPECT_FALSE(clearanceUnder(state, x).has_value()) << x;
    EXPECT_EQ(pointerText(x).substr(pointerText(x).find(": ")), ": no ground") << x;
  }
  EXPECT_TRUE(clearanceUnder(state, 4.99).has_value());
  EXPECT_TRUE(clearanceUnder(state, 7.01).has_value());
}

TEST_F(ClearanceReadoutTest, WithoutAFrequencyThePointerStillHasMetres) {
  state.inputs.frequency = 0;
  EXPECT_EQ(pointerText(6), "Pointer 5.00 km: clearance 28.5 m");
}

// --- agreement ---

// What `terrain-profiler profile` judges: N + 1 samples from station to station with the same inputs.
TEST_F(ClearanceReadoutTest, JudgesAsTheCommandLinesProfileDoes) {
  std::mt19937 random(20260103);
  std::uniform_real_distribution<float> ground(0, 60);
  std::uniform_int_distribution<std::int16_t> mast(0, 120);
  int verdicts[4] = {};
  for (int run = 0; run < 500; ++run) {
    layOut(40, 2, 0);
    for (std::int32_t i = 1; i <= state.path.samples; ++i)
      state.rawElevation[i] = run % 5 == 0 && i % 17 == 3 ? kVoidHeight : ground(random);
    state.inputs.antennaHeights = {mast(random), mast(random)};
    ExactProfileRequest request;
    std::vector<float> heights;
    for (std::int32_t i = 2; i <= 42; ++i) heights.push_back(state.rawElevation[i]);
    request.distance = 10;
    request.heights = heights;
    request.startAntenna = state.inputs.antennaHeights[0];
    request.endAntenna = state.inputs.antennaHeights[1];
    request.k = double{state.riseK};
    request.frequency = 300;
    const ExactProfile expected = exactProfile(request);
    const PathClearance clearance = pathClearance(state);
    ASSERT_EQ(clearance.verdict, expected.verdict) << run;
    ASSERT_EQ(clearance.voids, expected.voids) << run;
    ASSERT_EQ(clearance.status, expected.status) << run;
    ASSERT_EQ(clearance.worst.has_value(), expected.worst.has_value()) << run;
    if (expected.worst) {
      ASSERT_EQ(clearance.worst->fraction, expected.worst->fraction) << run;
    }
    ++verdicts[static_cast<int>(clearance.verdict)];
  }
  for (const int seen : verdicts) EXPECT_GT(seen, 5) << "each verdict occurs";
}

}  // namespace
}  // namespace zel
