#include "export/signal_profile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "export/height_profile.h"
#include "export/path_models.h"
#include "export_state.h"

namespace zel {
namespace {

using test::exportableState;
using test::fieldsOf;
using Lines = std::vector<std::string>;

constexpr SignalRequest kRequest{2.5, 3, 4};
const EachSample kNoEvents = [](std::int32_t, std::int32_t) {};

Lines signalLines(const ProfileViewState& state, const SignalRequest& request = kRequest,
                  const ptp::PtpParameters& pointToPoint = {}, const NumberStyle& numbers = {}) {
  test::KeptLines kept;
  writeSignalProfile(test::exportOf(state, numbers), request, pointToPoint, kept.sink(), kNoEvents);
  return kept.lines;
}

std::string terrainOf(const ProfileViewState& state) {
  std::string text;
  writeTerrainBlock(test::exportOf(state), [&text](std::string_view piece) { text += piece; });
  return text;
}

// With more ground beyond the end, so that the terrain block finds its heights.
ProfileViewState stateWithLongGround(std::int32_t samples) {
  ProfileViewState state = exportableState();
  state.elevation = SampleArray<float>(static_cast<std::size_t>(samples));
  for (std::int32_t i = 1; i <= samples; ++i) state.elevation[i] = 100.0F + static_cast<float>(i);
  return state;
}

TEST(SignalProfile, BeginsWithTheSummaryOfTheHeightProfileAndTheTransmitter) {
  const Lines lines = signalLines(exportableState());
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(
      lines[0],
      ", 'Start Latitude', 'Start Longitude', 'End Latitude', 'End Longitude', 'Range (km)', 'Bearing', "
      "'Max Ht (m)', 'Min Ht (m)', 'Average Ht (m)', 'Earth Curve', '% Fresnel', 'Freq', 'Datum', 'Xmit "
      "Ant Ht AGL (m)',  'Rec Ant Ht AGL (m)',  'ERP (kW)'");
  EXPECT_EQ(lines[1],
            ", 36.5, -84.25, 36.6, -84.25, 10, 0, 111, 101, 116, 1.33, 100, 950, NAD-83, 30, 30, 2.5");
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[3],
            "'Point', 'Distance (km)', 'Latitude', 'Longitude', 'Ground AMSL (m)', 'Fresnel AMSL (m)', 'LOS "
            "AMSL (m)', 'Earth Rise (m)', 'LR Path Loss (dB)', 'LR Signal Level (dBuV/m)', 'PTP Diffraction "
            "Loss (dB)', 'PTP Clutter Loss (dB)', 'PTP Signal Level (dBuV/m)', 'Free Space Loss (dB)', 'Free "
            "Space Signal Level (dBuV/m)'");
}

TEST(SignalProfile, TheFirstSampleHasNoModelColumns) {
  EXPECT_EQ(signalLines(exportableState())[4], "1, 0, 36.49000, -84.25000, 101, 121, 130, 0, ");
}

TEST(SignalProfile, EverySampleAfterItHasBothModelsAndFreeSpace) {
  ProfileViewState state = exportableState();
  state.elevation[4] = 400;  // a ridge, so that both models have a loss beyond free space
  const Lines lines = signalLines(state);
  const PathStretch stretch = pathStretch(state, {1, 11});
  LongleyRiceAlongPath longleyRice(stretch, *state.model);
  PointToPointAlongPath pointToPoint(stretch, {});
  const SignalLevels levels(kRequest, state.inputs.frequency);
  for (std::size_t n = 2; n <= 11; ++n) {
    const auto fields = fieldsOf(lines[3 + n]);
    ASSERT_EQ(fields.size(), 15U) << lines[3 + n];
    const double distance = static_cast<double>(n - 1);
    const double loss = longleyRice.lossOver(n);
    const auto losses = pointToPoint.lossesOver(n);
    ASSERT_TRUE(losses.has_value());
    const float freeSpace = levels.freeSpaceLoss(distance);
    EXPECT_EQ(fields[8], generalNumber(loss));
    EXPECT_EQ(fields[9], formatNumber(levels.reference() - loss - 3, "##0.0##"));
    EXPECT_EQ(fields[10], generalNumber(losses->diffraction));
    EXPECT_EQ(fields[11], "0");
    EXPECT_EQ(fields[12], formatNumber(levels.pointToPoint(distance, losses->diffraction, 0), "##0.0##"));
    EXPECT_EQ(fields[13], generalNumber(freeSpace));
    EXPECT_EQ(fields[14], formatNumber(levels.reference() - double{freeSpace}, "##0.0##"));
  }
  EXPECT_GT(pointToPoint.lossesOver(11)->diffraction, 6) << "the ridge must stand in the way";
}

// 1 kW, 950 MHz over 1 km: 106.92 dBuV/m, and 32.4 + 20 log 950 = 91.954 dB of loss.
TEST(SignalProfile, FreeSpaceAtOneKilometreIsTheDipoleField) {
  const auto fields = fieldsOf(signalLines(exportableState(), {1, 0, 0})[5]);
  EXPECT_NEAR(std::stod(fields[13]), 91.954472, 1e-5) << "held in single precision";
  EXPECT_EQ(fields[14], "106.92");
}

TEST(SignalProfile, LevelsHaveOneToThreeDecimals) {
  const auto fields = fieldsOf(signalLines(exportableState(), {1, 0, 0})[5]);
  for (const std::size_t level : {9U, 12U, 14U}) {
    const std::size_t decimals = fields[level].size() - fields[level].find('.') - 1;
    EXPECT_GE(decimals, 1U) << fields[level];
    EXPECT_LE(decimals, 3U) << fields[level];
  }
}

TEST(SignalProfile, EachClutterIsTakenOffItsOwnModel) {
  const auto clear = fieldsOf(signalLines(exportableState(), {1, 0, 0})[8]);
  const auto cluttered = fieldsOf(signalLines(exportableState(), {1, 10, -20})[8]);
  EXPECT_NEAR(std::stod(clear[9]) - std::stod(cluttered[9]), 10, 0.0011);
  EXPECT_NEAR(std::stod(cluttered[12]) - std::stod(clear[12]), 20, 0.0011);
  EXPECT_EQ(clear[14], cluttered[14]);
}

TEST(SignalProfile, WithoutAPointToPointLossTheLineEndsAfterTheLongleyRiceLevel) {
  ptp::PtpParameters pointToPoint;
  pointToPoint.clutter.category = ptp::ClutterCategory::kSuburban;
  ProfileViewState state = exportableState();
  state.inputs.frequency = 5000;  // where the clutter loss is -999
  const auto fields = fieldsOf(signalLines(state, kRequest, pointToPoint)[5]);
  ASSERT_EQ(fields.size(), 11U);
  EXPECT_FALSE(fields[8].empty());
  EXPECT_FALSE(fields[9].empty());
  EXPECT_TRUE(fields[10].empty()) << "the line ends with its last separator";
}

TEST(SignalProfile, DegreesHaveFiveDecimalsAndNoZeroBeforeThePoint) {
  ExportProfile profile = test::exportOf(exportableState());
  profile.positions[1] = {0.123454, -0.123454};
  profile.positions[2] = {-0.5, 0.5};
  profile.positions[3] = {7, -122.41943};  // a single has no fifth decimal of its own here
  profile.positions[4] = {0, 180};
  profile.positions[5] = {84.1200224, -84.1200224};  // as a single 84.1200256
  test::KeptLines kept;
  writeSignalProfile(profile, kRequest, {}, kept.sink(), kNoEvents);
  const auto position = [&kept](std::size_t point) {
    const auto fields = fieldsOf(kept.lines[3 + point]);
    return fields[2] + " " + fields[3];
  };
  EXPECT_EQ(position(1), ".12345 -.12345");
  EXPECT_EQ(position(2), "-.50000 .50000");
  EXPECT_EQ(position(3), "7.00000 -122.41943");
  EXPECT_EQ(position(4), ".00000 180.00000");
  EXPECT_EQ(position(5), "84.12003 -84.12003");
}

TEST(SignalProfile, SharesItsHeightsWithTheHeightProfile) {
  ProfileViewState state = exportableState();
  test::useFeetAndMiles(state);
  test::expandBetween(state, 3.5F, 6.25F);
  state.leftMarker.keptX = state.rightMarker.keptX = 0;
  const Lines signal = signalLines(state);
  test::KeptLines height;
  writeHeightProfile(test::exportOf(state), height.sink());
  ASSERT_EQ(signal.size(), height.lines.size() - 2);
  for (std::size_t point = 1; point <= 6; ++point) {
    const auto inSignal = fieldsOf(signal[3 + point]);
    const auto inHeight = fieldsOf(height.lines[5 + point]);
    for (const std::size_t column : {0U, 1U, 4U, 5U, 6U, 7U})
      EXPECT_EQ(inSignal[column], inHeight[column]) << "point " << point << ", column " << column;
  }
}

TEST(SignalProfile, InAnExpandedViewTheTransmitterStandsOnItsFirstSample) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  const Lines lines = signalLines(state, {1, 0, 0});
  ASSERT_EQ(lines.size(), 10U);
  EXPECT_EQ(lines[4], "1, 0, 36.50091, -84.25000, 102, 122, 132, 0, ");
  const auto second = fieldsOf(lines[5]);
  EXPECT_EQ(second[1], "1");
  EXPECT_EQ(second[14], "106.92");
  LongleyRiceAlongPath model(pathStretch(state, {2, 7}), *state.model);
  EXPECT_EQ(second[8], generalNumber(model.lossOver(2)));
}

TEST(SignalProfile, TakesTheUsersDecimalSeparator) {
  const Lines lines = signalLines(exportableState(), kRequest, {}, test::commaStyle());
  EXPECT_EQ(lines[1],
            ", 36,5, -84,25, 36,6, -84,25, 10, 0, 111, 101, 116, 1,33, 100, 950, NAD-83, 30, 30, 2,5");
  EXPECT_TRUE(lines[5].starts_with("2, 1, 36,50091, -84,25000, 102, 122, 132, 0,5, ")) << lines[5];
  EXPECT_EQ(fieldsOf(lines[5]).size(), 15U);
}

TEST(SignalProfile, AntennaHeightsAreInDisplayUnits) {
  ProfileViewState state = exportableState();
  test::useFeetAndMiles(state);
  EXPECT_TRUE(signalLines(state)[1].ends_with(", NAD-83, 98.4251968503937, 98.4251968503937, 2.5"));
}

TEST(SignalProfile, EventsComeBeforeEachLine) {
  std::vector<std::string> order;
  writeSignalProfile(
      test::exportOf(exportableState()), kRequest, {},
      [&order](std::string_view line) { order.push_back("line " + fieldsOf(std::string(line))[0]); },
      [&order](std::int32_t sample, std::int32_t samples) {
        order.push_back("events " + std::to_string(sample) + "/" + std::to_string(samples));
      });
  ASSERT_EQ(order.size(), 4U + 22U);
  EXPECT_EQ(order[4], "events 1/11");
  EXPECT_EQ(order[5], "line 1");
  EXPECT_EQ(order[24], "events 11/11");
  EXPECT_EQ(order[25], "line 11");
}

TEST(SignalProfile, AFailureOfTheLongleyRiceModelStopsItAtThatPoint) {
  ProfileViewState state = exportableState();
  state.elevation[6] = 1e6F;
  test::KeptLines kept;
  try {
    writeSignalProfile(test::exportOf(state), kRequest, {}, kept.sink(), kNoEvents);
    FAIL() << "no ground is so high";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 5);
    EXPECT_NE(error.description().find("point 6"), std::string::npos) << error.description();
  }
  EXPECT_EQ(kept.lines.size(), 4U + 5U);
}

TEST(SignalProfile, AnExpandedViewBeyondTheStationsHasTitlesOnly) {
  ProfileViewState state = exportableState();
  state.path.lastIndex = 6;
  test::expandBetween(state, 9.5F, 11.5F);
  EXPECT_EQ(signalLines(state).size(), 4U);
  EXPECT_EQ(terrainOf(state), "");
}

// --- terrain block ---

TEST(TerrainBlock, HasTwelveHeightsALineFromTheSampleAfterTheFirst) {
  EXPECT_EQ(terrainOf(stateWithLongGround(13)), "     &102,103,104,105,106,107,108,109,110,111,112,113,\r\n");
}

TEST(TerrainBlock, RunsUpToElevenSamplesPastTheLast) {
  ProfileViewState state = stateWithLongGround(25);
  state.path.lastIndex = 13;
  EXPECT_EQ(terrainOf(state),
            "     &102,103,104,105,106,107,108,109,110,111,112,113,\r\n"
            "     &114,115,116,117,118,119,120,121,122,123,124,125,\r\n");
  state.path.lastIndex = 12;
  EXPECT_EQ(terrainOf(state), "     &102,103,104,105,106,107,108,109,110,111,112,113,\r\n");
}

TEST(TerrainBlock, RoundsHalvesAwayFromZeroAndShowsNothingForZero) {
  ProfileViewState state = stateWithLongGround(13);
  state.elevation[2] = 0;
  state.elevation[3] = 0.4F;
  state.elevation[4] = 0.5F;
  state.elevation[5] = -2.5F;
  state.elevation[6] = 1234.5F;
  EXPECT_EQ(terrainOf(state), "     &,,1,-3,1235,107,108,109,110,111,112,113,\r\n");
}

TEST(TerrainBlock, IsInMetresWhateverTheUnits) {
  ProfileViewState state = stateWithLongGround(13);
  const std::string metric = terrainOf(state);
  test::useFeetAndMiles(state);
  EXPECT_EQ(terrainOf(state), metric);
}

TEST(TerrainBlock, BeginsAfterTheFirstSampleOfAnExpandedView) {
  ProfileViewState state = stateWithLongGround(14);
  test::expandBetween(state, 3.5F, 6.25F);
  EXPECT_EQ(terrainOf(state), "     &103,104,105,106,107,108,109,110,111,112,113,114,\r\n");
}

TEST(TerrainBlock, HeightsPastTheLastSampleOfAllAreAnIndexFailureAfterThoseThatAreThere) {
  std::string text;
  try {
    writeTerrainBlock(test::exportOf(exportableState()), [&text](std::string_view piece) { text += piece; });
    FAIL() << "sample 13 is not there";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 9);
  }
  EXPECT_EQ(text, "     &102,103,104,105,106,107,108,109,110,111,112,");
}

}  // namespace
}  // namespace zel
