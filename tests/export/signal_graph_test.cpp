#include "export/signal_graph.h"

#include <gtest/gtest.h>

#include <cmath>

#include "export_state.h"

namespace zel {
namespace {

using test::fieldsOf;
using test::KeptLines;

constexpr SignalRequest kSignal{2.5, 3, 4.5};
constexpr std::size_t kHeadLines = 10;

// So many samples of 250 m from the transmitter on, sample E being the third; heights rise by 1 m from 101 m.
ProfileViewState longState(std::int32_t intervals) {
  ProfileViewState state = test::exportableState();
  state.path.intervals = intervals;
  state.path.extension = 3;
  state.path.firstIndex = 3;
  state.path.lastIndex = static_cast<std::int16_t>(intervals + 3);
  state.path.samples = intervals + 6;
  state.elevation = SampleArray<float>(static_cast<std::size_t>(intervals + 6), 0.0F);
  for (std::int32_t i = 0; i <= intervals; ++i) state.elevation[3 + i] = 101.0F + static_cast<float>(i);
  return state;
}

struct Written {
  std::vector<std::string> lines;
  std::vector<PlottedSample> plotted;
  std::vector<std::pair<std::int32_t, std::int32_t>> samples;
  std::vector<std::string> row(std::size_t sample) const { return fieldsOf(lines[kHeadLines + sample]); }
};

Written written(const ProfileViewState& state, const SignalGraphPlan& plan, PointToPointLevels levels,
                const NumberStyle& numbers = {}) {
  Written result;
  KeptLines lines;
  writeGraphData(
      test::exportOf(state, numbers), plan, levels, lines.sink(),
      [&](std::int32_t sample, std::int32_t samples) { result.samples.emplace_back(sample, samples); },
      [&](const PlottedSample& sample) { result.plotted.push_back(sample); });
  result.lines = lines.lines;
  return result;
}

PointToPointLevels noLevels() { return PointToPointLevels(11, kNoLevel); }
SignalGraphPlan wholePlan() { return {kSignal, 0, 10, "Ridge"}; }

// --- names ---

TEST(SignalGraphFiles, StandBesideThePictureWithItsBaseName) {
  const SignalGraphFiles files = signalGraphFiles("/graphs/north.png");
  EXPECT_EQ(files.picture, "/graphs/north.png");
  EXPECT_EQ(files.data, "/graphs/north.dat");
  EXPECT_EQ(files.results, "/graphs/north_PTP.txt");
  EXPECT_EQ(files.script, "/graphs/north.plt");
}

TEST(SignalGraphFiles, ThePictureIsAPngWhateverWasChosen) {
  EXPECT_EQ(signalGraphFiles("/graphs/north").picture, "/graphs/north.png");
  EXPECT_EQ(signalGraphFiles("/graphs/north.gif").picture, "/graphs/north.png");
  EXPECT_EQ(signalGraphFiles("/graphs.d/a.b.png").data, "/graphs.d/a.b.dat");
  EXPECT_EQ(signalGraphFiles("north.png").script, "north.plt");
}

TEST(SignalGraphFiles, ARelativeNameIsNotTakenForACommandOrAnOption) {
  EXPECT_EQ(signalGraphFiles("|mail.png").picture, "./|mail.png");
  EXPECT_EQ(signalGraphFiles("<ls.png").data, "./<ls.dat");
  EXPECT_EQ(signalGraphFiles("-ls.png").script, "./-ls.plt");
  EXPECT_EQ(signalGraphFiles("~x/y.png").results, "./~x/y_PTP.txt");
  EXPECT_EQ(signalGraphFiles("/|mail.png").picture, "/|mail.png");
}

TEST(SignalGraphFiles, ANameThatBeginsWithAPointIsABaseName) {
  EXPECT_EQ(signalGraphFiles("/graphs/.north").picture, "/graphs/.north.png");
  EXPECT_EQ(signalGraphFiles("/graphs/.north.png").data, "/graphs/.north.dat");
}

TEST(SignalGraphFiles, ANameWithoutABaseNameIsAnError) {
  for (const std::string name : {"/graphs/", "/graphs/..", "/graphs/.", "/graphs/.png"}) try {
      signalGraphFiles(name);
      ADD_FAILURE() << name;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 75);
    }
}

// --- the stretch ---

TEST(SignalGraphStretch, ASampleIsTheNearestAndHalvesGoToTheEvenOne) {
  const ProfileViewState state = test::exportableState();  // 1 km a sample
  EXPECT_EQ(graphSample(state, 0), 0);
  EXPECT_EQ(graphSample(state, 499), 0);
  EXPECT_EQ(graphSample(state, 500), 0);
  EXPECT_EQ(graphSample(state, 1500), 2);
  EXPECT_EQ(graphSample(state, 2500), 2);
  EXPECT_EQ(graphSample(state, 2501), 3);
}

TEST(SignalGraphStretch, APlaceOffThePathCountsOnBeyondIt) {
  const ProfileViewState state = test::exportableState();
  EXPECT_EQ(graphSample(state, -5000), -5);
  EXPECT_EQ(graphSample(state, 10000), 10);
  EXPECT_EQ(graphSample(state, 25000), 25);
  EXPECT_THROW(graphSample(state, 1e300), RuntimeError);
  EXPECT_THROW(graphSample(state, std::nan("")), RuntimeError);
}

// --- height above average terrain ---

TEST(HeightAboveAverageTerrain, Is30MetresUpTo161SamplesAfterTheFirst) {
  EXPECT_EQ(heightAboveAverageTerrain(longState(10)), 30);
  EXPECT_EQ(heightAboveAverageTerrain(longState(161)), 30);
}

// Heights 131 to 262 m: 132 of them, a sum of 132 x 196.5 = 25938, over 131 = 198 m exactly; antenna 131 m.
TEST(HeightAboveAverageTerrain, DividesThe132HeightsBy131) {
  EXPECT_DOUBLE_EQ(heightAboveAverageTerrain(longState(162)), 131 - 198.0);
}

TEST(HeightAboveAverageTerrain, TakesNothingBefore30OrAfter161) {
  ProfileViewState state = longState(200);
  const double before = heightAboveAverageTerrain(state);
  state.elevation[3 + 29] = state.elevation[3 + 162] = 9000;
  EXPECT_EQ(heightAboveAverageTerrain(state), before);
  state.elevation[3 + 30] += 131;
  EXPECT_DOUBLE_EQ(heightAboveAverageTerrain(state), before - 1);
  state.elevation[3 + 161] += 131;
  EXPECT_DOUBLE_EQ(heightAboveAverageTerrain(state), before - 2);
}

TEST(GraphTransmitterHeight, IsTheGroundOfTheFirstSampleAndTheAntennaAboveIt) {
  EXPECT_EQ(graphTransmitterHeight(test::exportableState()), 131);
  EXPECT_EQ(graphTransmitterHeight(longState(20)), 131);
}

// --- what the point-to-point program is given ---

TEST(TerrainInput, IsStartAndTheGroundFromStationToStation) {
  ProfileViewState state = test::exportableState();
  state.elevation[1] = -3.456F;
  state.elevation[2] = 0;
  KeptLines input;
  writeTerrainInput(state, input.sink());
  ASSERT_EQ(input.lines.size(), 12U);
  EXPECT_EQ(input.lines[0], "START");
  EXPECT_EQ(input.lines[1], "-3.46");
  EXPECT_EQ(input.lines[2], "0.00");
  EXPECT_EQ(input.lines[3], "103.00");
  EXPECT_EQ(input.lines[11], "111.00");
}

TEST(TerrainInput, IsTheWholePathInAnExpandedView) {
  ProfileViewState state = test::exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  KeptLines input;
  writeTerrainInput(state, input.sink());
  EXPECT_EQ(input.lines.size(), 12U);
}

TEST(TerrainCompanion, SaysWhatTheHeightsDoNot) {
  ProfileViewState state = test::exportableState();
  state.path.spacing = 0.25;
  ptp::PtpParameters parameters;
  parameters.ground = {ptp::Polarization::kVertical, 80, 5};
  parameters.clutter.category = ptp::ClutterCategory::kSuburban;
  parameters.clutter.height = 12.5;
  KeptLines companion;
  writeTerrainCompanion(state, parameters, companion.sink());
  EXPECT_EQ(companion.lines, (std::vector<std::string>{"spacing_km=0.25", "tx_amsl_m=131", "samples=11",
                                                       "polarization=1", "permittivity=80", "conductivity=5",
                                                       "clutter_category=3", "clutter_height_m=12.5"}));
}

// --- what it gives back ---

constexpr std::string_view kTitles = "sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm\r\n";

TEST(PointToPointResults, AreTheLevelsBySample) {
  const auto levels = readPointToPointLevels(
      std::string(kTitles) + "1,0,-999,-999,-999\r\n2,0.1,0,0,126.92\r\n3,0.2,6.5,2,112.25\r\n", 3);
  ASSERT_EQ(levels.size(), 3U);
  EXPECT_TRUE(std::isnan(levels[0]));
  EXPECT_EQ(levels[1], 126.92);
  EXPECT_EQ(levels[2], 112.25);
}

TEST(PointToPointResults, MayEndTheirLinesEitherWay) {
  EXPECT_EQ(readPointToPointLevels("2,0.1,0,0,126.92\n", 2)[1], 126.92);
}

TEST(PointToPointResults, ALossWithoutAValueMeansNoLevel) {
  for (const std::string row : {"2,0.1,-999,0,50\n", "2,0.1,0,-999,50\n", "2,0.1,-1200,-999,-999\n"})
    EXPECT_TRUE(std::isnan(readPointToPointLevels(row, 2)[1])) << row;
}

TEST(PointToPointResults, ALevelMayBeAsLowAsThatMark) {
  EXPECT_EQ(readPointToPointLevels("2,0.1,800,300,-999.5\n", 2)[1], -999.5);
}

TEST(PointToPointResults, SamplesThatAreMissingHaveNoLevel) {
  const auto levels = readPointToPointLevels("3,0.2,0,0,50\n", 4);
  EXPECT_TRUE(std::isnan(levels[1]));
  EXPECT_EQ(levels[2], 50);
  EXPECT_TRUE(std::isnan(levels[3]));
  EXPECT_TRUE(std::isnan(readPointToPointLevels("", 2)[1]));
}

// Its writer was ended in the middle of "112.25".
TEST(PointToPointResults, ALineThatIsNotFinishedIsNotTaken) {
  EXPECT_TRUE(std::isnan(readPointToPointLevels("2,0.1,0,0,11", 2)[1]));
}

TEST(PointToPointResults, ALineThatIsNoRowOfThePathIsPassedOver) {
  const std::string text =
      "0,0,0,0,1\n-1,0,0,0,1\n5,0,0,0,1\n1e9,0,0,0,1\n2.5,0,0,0,1\n2,0,0,0\n2,0,0,0,1,1\n2,0,0,0,x\n2,0,0,0,"
      "\n\n"
      "2,0,0,0,1e999\nnan,0,0,0,1\n2,0,0,0,nan\n";
  for (const double level : readPointToPointLevels(text, 4)) EXPECT_TRUE(std::isnan(level));
}

// --- the plot data ---

TEST(GraphData, BeginsWithItsHead) {
  const Written data = written(test::exportableState(), wholePlan(), noLevels());
  const std::vector<std::string> head(data.lines.begin(), data.lines.begin() + kHeadLines);
  EXPECT_EQ(head, (std::vector<std::string>{
                      "OUTFILE, ' '", "FREQ, 950", "POWER, 2.5", "TX_AMSL, 131", "RX_AGL, 30",
                      "CLU_LOSS, LR:3 PTP:4.5", "TITLE, Ridge", "",
                      "'Terrain Height', 'Distance from Transmitter', 'Longley Rice', 'PTP', Std Contour', "
                      "'Freespace', 'Reference'",
                      "START DATA"}));
}

TEST(GraphData, ItsNumbersHaveAPointInEveryLocale) {
  ProfileViewState state = test::exportableState();
  state.inputs.frequency = 98.7F;
  state.elevation[1] = 299.3F;
  const Written data = written(state, wholePlan(), noLevels(), test::commaStyle());
  EXPECT_EQ(data.lines[1], "FREQ, 98.7");
  EXPECT_EQ(data.lines[3], "TX_AMSL, 329.3");
  EXPECT_EQ(data.lines, written(state, wholePlan(), noLevels()).lines);
}

TEST(GraphData, HasALineForEverySampleOfThePathInAnExpandedViewToo) {
  ProfileViewState state = test::exportableState();
  EXPECT_EQ(written(state, wholePlan(), noLevels()).lines.size(), kHeadLines + 11);
  test::expandBetween(state, 3.5F, 6.25F);
  EXPECT_EQ(written(state, wholePlan(), noLevels()).lines.size(), kHeadLines + 11);
}

TEST(GraphData, TheFirstSampleIsACommentWithoutLevels) {
  const Written data = written(test::exportableState(), wholePlan(), noLevels());
  EXPECT_EQ(data.lines[kHeadLines], "#101.0, 0.000, NaN, NaN, 70, NaN, 60");
}

// 10 log10(2.5) + 106.92 - 20 log10(d): 110.8994 dBuV/m at 1 km, 104.8788 at 2 km, 90.8994 at 10 km.
TEST(GraphData, TheFreeSpaceLevelIsColumnSix) {
  const Written data = written(test::exportableState(), wholePlan(), noLevels());
  EXPECT_EQ(data.row(1)[5], "110.899");
  EXPECT_EQ(data.row(2)[5], "104.879");
  EXPECT_EQ(data.row(10)[5], "90.899");
}

TEST(GraphData, HeightDistanceContourAndReferenceAreTheOtherColumns) {
  ProfileViewState state = test::exportableState();
  state.path.spacing = 0.2505;
  state.elevation[2] = 0.04F;
  test::useFeetAndMiles(state);
  const Written data = written(state, wholePlan(), noLevels());
  const auto fields = data.row(2);
  ASSERT_EQ(fields.size(), 7U);
  EXPECT_EQ(fields[0], "103.0") << "metres, whatever is shown";
  EXPECT_EQ(fields[1], "0.501") << "kilometres";
  EXPECT_EQ(fields[4], "70");
  EXPECT_EQ(fields[6], "60");
  EXPECT_EQ(data.row(1)[0], "0.0");
}

TEST(GraphData, ThePointToPointLevelIsColumnFourAndNaNWhereThereIsNone) {
  PointToPointLevels levels = noLevels();
  levels[1] = 88.25;
  levels[3] = -7.5;
  const Written data = written(test::exportableState(), wholePlan(), levels);
  EXPECT_EQ(data.row(1)[3], "88.25");
  EXPECT_EQ(data.row(2)[3], "NaN");
  EXPECT_EQ(data.row(3)[3], "-7.5");
}

TEST(GraphData, TheLongleyRiceAndFreeSpaceLevelsAreThoseOfTheSignalProfile) {
  const ProfileViewState state = test::exportableState();
  const Written data = written(state, wholePlan(), noLevels());
  KeptLines profile;
  writeSignalProfile(test::exportOf(state), kSignal, {}, profile.sink(), [](std::int32_t, std::int32_t) {});
  for (std::size_t sample = 1; sample <= 10; ++sample) {
    const auto fields = fieldsOf(profile.lines[4 + sample]);
    EXPECT_EQ(data.row(sample)[2], fields[9]) << sample;
    EXPECT_EQ(data.row(sample)[5], fields[14]) << sample;
  }
}

TEST(GraphData, OutsideTheStretchALineIsAComment) {
  SignalGraphPlan plan = wholePlan();
  plan.start = 3;
  plan.end = 7;
  const Written data = written(test::exportableState(), plan, noLevels());
  const Written all = written(test::exportableState(), wholePlan(), noLevels());
  for (std::size_t sample = 0; sample <= 10; ++sample) {
    const std::string& line = data.lines[kHeadLines + sample];
    EXPECT_EQ(line.starts_with('#'), sample < 3 || sample > 7) << line;
    if (sample > 7) {
      EXPECT_EQ(line, "#" + all.lines[kHeadLines + sample]);
    }
  }
}

TEST(GraphData, HandsOutTheSamplesThatArePlotted) {
  SignalGraphPlan plan = wholePlan();
  plan.start = 9;
  PointToPointLevels levels = noLevels();
  levels[8] = 1;
  levels[9] = 2;
  const Written data = written(test::exportableState(), plan, levels);
  ASSERT_EQ(data.plotted.size(), 2U);
  EXPECT_EQ(data.plotted[0].distance, 9);
  EXPECT_EQ(data.plotted[0].levels[1], 2);
  EXPECT_NEAR(data.plotted[0].levels[2], 91.8145, 1e-4);  // 10 log10(2.5) + 106.92 - 20 log10(9)
  EXPECT_TRUE(std::isnan(data.plotted[1].levels[1]));
  plan.start = 0;
  EXPECT_EQ(written(test::exportableState(), plan, levels).plotted.size(), 10U) << "not the first";
}

TEST(GraphData, TellsEachSample) {
  const auto samples = written(test::exportableState(), wholePlan(), noLevels()).samples;
  ASSERT_EQ(samples.size(), 11U);
  EXPECT_EQ(samples.front(), std::pair(1, 11));
  EXPECT_EQ(samples.back(), std::pair(11, 11));
}

TEST(GraphData, AFailureOfTheModelStopsItAndNamesThePoint) {
  ProfileViewState state = test::exportableState();
  state.elevation[6] = 1e6F;
  try {
    written(state, wholePlan(), noLevels());
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 5);
    EXPECT_TRUE(error.description().starts_with(
        "The irregular terrain model stopped at point 6 of the signal graph: "))
        << error.description();
  }
}

TEST(GraphData, ATitleStaysOnItsLine) {
  EXPECT_EQ(onOneLine("a\r\nb\tc\x7F"
                      "d \xC3\xA9"),
            "a  b c d \xC3\xA9");
  SignalGraphPlan plan = wholePlan();
  plan.title = "one\ntwo";
  EXPECT_EQ(written(test::exportableState(), plan, noLevels()).lines[6], "TITLE, one two");
}

}  // namespace
}  // namespace zel
