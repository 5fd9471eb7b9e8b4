#include "ui/plot/plot_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "canvas/recording_canvas.h"
#include "support/plot_state.h"
#include "support/recording_settings_store.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;
constexpr Colour kElevationGreen = 0x00FF00;
constexpr Colour kRangeMagenta = 0xFF00FF;
constexpr Colour kFresnelRed = 0x0000FF;
constexpr Colour kSightBlue = 0xFF0000;
constexpr Colour kMarkerPen = 0x0000FF;  // the configured 0xFFFF00 XOR 0xFFFFFF
constexpr float kNoHeight = std::numeric_limits<float>::quiet_NaN();

struct PlotDrawingTest : testing::Test {
  test::RecordingSettingsStore store;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  RecordingCanvas canvas;
  ProfileViewState state = test::flatProfile();
  PlotView view;
  PlotStyle style;

  PlotDrawing drawing() { return {canvas, state, reader, style, view}; }
  // The scale that the parts after begin need.
  PlotDrawing begun(double exaggeration = 100) {
    PlotDrawing result = drawing();
    EXPECT_TRUE(result.begin(exaggeration));
    canvas.forgetOperations();
    store.reads.clear();
    return result;
  }
  PlotDrawing elevationLines(std::int16_t count) {
    PlotDrawing result = begun();
    result.elevationLines(count, static_cast<std::int16_t>(view.drawn.first),
                          static_cast<std::int16_t>(view.drawn.last));
    return result;
  }
  Texts labelTexts() const {
    Texts texts;
    for (const PlotLabel& label : view.labels) texts.push_back(label.text);
    return texts;
  }
  std::vector<double> labelPlaces(bool horizontal) const {
    std::vector<double> places;
    for (const PlotLabel& label : view.labels) places.push_back(horizontal ? label.x : label.y);
    return places;
  }
  int failureOf(const std::function<void()>& body) {
    try {
      body();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }
};

void expectLine(const RecordedLine& line, double x1, double y1, double x2, double y2) {
  constexpr double kTolerance = 1e-9;  // km and metres
  EXPECT_NEAR(line.from.x, x1, kTolerance);
  EXPECT_NEAR(line.from.y, y1, kTolerance);
  EXPECT_NEAR(line.to.x, x2, kTolerance);
  EXPECT_NEAR(line.to.y, y2, kTolerance);
}

void expectNear(const std::vector<double>& values, const std::vector<double>& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], 1e-9) << i;
}

// --- begin ---

TEST_F(PlotDrawingTest, BeginsWithTheScaleACleanPictureAndAWhiteXorPen) {
  EXPECT_TRUE(drawing().begin(100));
  const std::vector<RecordedOperation> expected = {
      RecordedScale{{0, 260, 12, 90}}, RecordedClear{}, RecordedDrawMode{DrawMode::kXorPen},
      RecordedFillStyle{FillStyle::kSolid}, RecordedFillColour{kWhite}};
  EXPECT_EQ(canvas.operations(), expected);
  EXPECT_EQ(view.scale, (PlotScale{0, 260, 12, 90}));
  EXPECT_EQ(view.drawn, (SampleRange{1, 12}));
}

TEST_F(PlotDrawingTest, ShownMarkersAreVerticalXorLinesInTheInverseOfTheirColour) {
  test::showMarkersAt(state, 3, 7.5F);
  drawing().begin(100);
  const auto lines = canvas.lines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], (RecordedLine{{3, 90}, {3, 260}, kMarkerPen, DrawMode::kXorPen, 1}));
  EXPECT_EQ(lines[1], (RecordedLine{{7.5, 90}, {7.5, 260}, kMarkerPen, DrawMode::kXorPen, 1}));
  EXPECT_EQ(view.markerColour, kMarkerPen);
  EXPECT_TRUE(view.leftStroke.drawn && view.leftStroke.covered);
}

TEST_F(PlotDrawingTest, AHiddenMarkerIsNotDrawn) {
  test::showMarkersAt(state, 3, 7.5F);
  state.leftMarker.shown = false;
  drawing().begin(100);
  ASSERT_EQ(canvas.lines().size(), 1U);
  EXPECT_EQ(canvas.lines()[0].from.x, 7.5);
  EXPECT_FALSE(view.leftStroke.drawn);
  EXPECT_TRUE(view.rightStroke.drawn);
}

TEST_F(PlotDrawingTest, TheMarkersColourIsReadAnewForEachOfTheTwo) {
  test::showMarkersAt(state, 3, 7.5F);
  store.reads.clear();
  drawing().begin(100);
  EXPECT_EQ(store.reads, (Texts{"Colors/cLRMarker=16776960", "Colors/cLRMarker=16776960"}));
}

TEST_F(PlotDrawingTest, AnotherMarkerColourIsInvertedToo) {
  store.set("Colors", "cLRMarker", "255");
  test::showMarkersAt(state, 3, 7.5F);
  drawing().begin(100);
  EXPECT_EQ(canvas.lines()[0].colour, 0xFFFF00);
}

TEST_F(PlotDrawingTest, ACanvasThatIsWrittenOnceGetsMarkersInTheirFinalColour) {
  style.erasableMarkers = false;
  test::showMarkersAt(state, 3, 7.5F);
  drawing().begin(100);
  EXPECT_EQ(canvas.lines()[0], (RecordedLine{{3, 90}, {3, 260}, 0xFFFF00, DrawMode::kCopyPen, 1}));
  EXPECT_EQ(view.markerColour, kMarkerPen);
}

TEST_F(PlotDrawingTest, TheCircleRadiusIsATwoHundredthOfTheVisibleWidth) {
  drawing().begin(100);
  EXPECT_DOUBLE_EQ(view.circleRadius, 0.06);  // 12 / 200
  test::expandBetween(state, 3, 7);
  drawing().begin(100);
  EXPECT_DOUBLE_EQ(view.circleRadius, 0.02);
  test::expandBetween(state, 7, 3);
  drawing().begin(100);
  EXPECT_DOUBLE_EQ(view.circleRadius, 0.02) << "without a sign";
}

TEST_F(PlotDrawingTest, TheExpandedViewDrawsOneSampleMoreOnBothSidesOfItsMarkers) {
  test::expandBetween(state, 3.4F, 7.5F);
  drawing().begin(100);
  EXPECT_EQ(view.drawn, (SampleRange{2, 8}));  // Int(3.4) - 1 and Int(7.5) + 1
  test::expandBetween(state, 0.5F, 11.9F);
  drawing().begin(100);
  EXPECT_EQ(view.drawn, (SampleRange{1, 12})) << "within the samples";
}

TEST_F(PlotDrawingTest, AnExpandedViewWithoutRoomBetweenItsMarkersTouchesNothing) {
  test::expandBetween(state, 5, 5.05F);
  view.strobe.shown = true;
  EXPECT_FALSE(drawing().begin(100));
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_TRUE(view.strobe.shown);
}

TEST_F(PlotDrawingTest, ADrawingForgetsTheStrobeAndTheLabelsOfTheOneBefore) {
  view.strobe.shown = view.leftStroke.drawn = true;
  view.labels.push_back({PlotLabelKind::kRange, "0", 1, 260});
  drawing().begin(100);
  EXPECT_FALSE(view.strobe.shown);
  EXPECT_FALSE(view.leftStroke.drawn);
  EXPECT_TRUE(view.labels.empty());
}

TEST_F(PlotDrawingTest, AScaleWithoutNumbersLeavesThePictureAsItIs) {
  state.statistics.plotMaximum = kNoHeight;
  EXPECT_EQ(failureOf([&] { drawing().begin(100); }), 6);
  EXPECT_TRUE(canvas.operations().empty());
}

// --- elevation lines ---

// Levels: 90, then 90 + 57 k raised to the next 10, where 57 is (260 - 90) / 3 rounded: 147 -> 150, 207 (the
// 3 metres stay) -> 210, 267 -> 270.
TEST_F(PlotDrawingTest, ElevationLinesStandOnMultiplesOfTenAndShareTheirOffset) {
  elevationLines(3);
  EXPECT_EQ(labelTexts(), (Texts{"90", "150", "210", "270"}));
  expectNear(labelPlaces(false), {90, 150, 210, 270});
  expectNear(labelPlaces(true), {2.5, 2.5, 2.5, 2.5});  // 1 + 0.5 + 1
}

TEST_F(PlotDrawingTest, TheStepBetweenElevationLinesIsRoundedHalfToEven) {
  elevationLines(4);  // 170 / 4 = 42.5 -> 42; with 43 the last would be 90 + 27 + 172 -> 290, the third 200
  EXPECT_EQ(labelTexts(), (Texts{"90", "140", "190", "240", "290"}));
}

TEST_F(PlotDrawingTest, AnElevationLineIsOneStrokeASampleEachReachingOneSampleTooFar) {
  elevationLines(1);
  const auto lines = canvas.linesIn(kElevationGreen);
  ASSERT_EQ(lines.size(), 24U);  // 2 lines of 12 samples
  expectLine(lines[0], 0, 90, 2, 90);
  expectLine(lines[1], 1, 90, 3, 90);
  expectLine(lines[11], 11, 90, 13, 90);
  expectLine(lines[12], 0, 260, 2, 260);
  for (const RecordedLine& line : lines) EXPECT_EQ(line.mode, DrawMode::kCopyPen);
}

TEST_F(PlotDrawingTest, AnElevationLineFollowsTheCurvedDatum) {
  for (std::int32_t i = 1; i <= 12; ++i) state.curve[i] = static_cast<float>(i * i);
  elevationLines(1);
  // Level of the first sample: 1 + 90 = 91, raised to 100; sample i stands i x i - 1 above it.
  EXPECT_EQ(labelTexts()[0], "100");
  const auto lines = canvas.linesIn(kElevationGreen);
  expectLine(lines[0], 0, 100, 2, 100);
  expectLine(lines[1], 1, 100, 3, 103);
  expectLine(lines[2], 2, 103, 4, 108);
}

TEST_F(PlotDrawingTest, LabelsAreBlackAndLinesAreColouredOneAfterTheOther) {
  elevationLines(1);
  std::vector<RecordedOperation> head(canvas.operations().begin(), canvas.operations().begin() + 5);
  const std::vector<RecordedOperation> expected = {
      RecordedDrawMode{DrawMode::kBlackness}, RecordedTextPosition{{2.5, 90}},
      RecordedText{{2.5, 90}, "90", DrawMode::kBlackness}, RecordedDrawMode{DrawMode::kCopyPen},
      RecordedLine{{0, 90}, {2, 90}, kElevationGreen, DrawMode::kCopyPen, 1}};
  EXPECT_EQ(head, expected);
  EXPECT_EQ(store.reads, (Texts{"Colors/cElevation=65280", "Colors/cElevation=65280"})) << "once a line";
}

TEST_F(PlotDrawingTest, ElevationLinesAreMultiplesOfTenFeetInFeet) {
  test::useFeetAndMiles(state);
  elevationLines(3);
  // 90 m = 295.28 ft: 295 is raised by 5 to 300 (300.28). Step 170 m = 557.74 ft / 3 = 185.9 -> 186: 486.28
  // -> 490.28, 676.28 -> 680.28, 866.28 -> 870.28, with 0.3048 m a foot.
  EXPECT_EQ(labelTexts(), (Texts{"300", "490", "680", "870"}));
  EXPECT_NEAR(view.labels[0].y, 90 + 5 * 0.3048, 1e-3);
}

TEST_F(PlotDrawingTest, ALevelCountsAsAMultipleOfTenWhenItRoundsToOne) {
  struct {
    float lowest;  // metres; the bottom lies 10 below it
    const char* label;
    double y;
  } const rows[] = {{99.5F, "90", 89.5},     // halves to even
                    {100.5F, "90", 90.5},    // halves to even
                    {101.5F, "100", 99.5},   // 91.5 -> 99.5 rounds to 100
                    {100.25F, "90", 90.25},  //
                    {0, "-10", -10}};
  for (const auto& row : rows) {
    state.statistics.plotMinimum = row.lowest;
    elevationLines(1);
    EXPECT_EQ(labelTexts()[0], row.label) << row.lowest;
    EXPECT_NEAR(view.labels[0].y, row.y, 1e-5) << row.lowest;
    view.labels.clear();
  }
}

TEST_F(PlotDrawingTest, ANegativeLevelIsRaisedTowardsZero) {
  state.statistics.plotMinimum = -3;
  elevationLines(1);  // bottom -13
  EXPECT_EQ(labelTexts()[0], "-10");
}

TEST_F(PlotDrawingTest, ElevationLinesOfTheExpandedViewBeginAtItsFirstSample) {
  test::expandBetween(state, 4.5F, 7.5F);  // samples 3 to 8
  elevationLines(1);
  EXPECT_NEAR(view.labels[0].x, 4.5, 1e-9);  // 3 + 0.5 + 1
  const auto lines = canvas.linesIn(kElevationGreen);
  ASSERT_EQ(lines.size(), 12U);
  expectLine(lines[0], 2, 90, 4, 90);
  expectLine(lines[5], 7, 90, 9, 90);
}

TEST_F(PlotDrawingTest, WithNoElevationIntervalsThereAreNoLinesAndNoLabels) {
  for (const std::int16_t count : std::initializer_list<std::int16_t>{0, -1, -32768}) {
    elevationLines(count);
    EXPECT_TRUE(canvas.operations().empty());
    EXPECT_TRUE(store.reads.empty());
  }
}

// 32,767 ft are 9,987 m, and the picture reaches up to six times the highest ground.
TEST_F(PlotDrawingTest, HighGroundInFeetHasLevelsBeyondSixteenBits) {
  test::useFeetAndMiles(state);
  state.statistics.plotMaximum = 8800;  // the top at 100 % is 17,600 m, 57,743 ft
  state.statistics.plotMinimum = 4000;  // the bottom is 3,120 m, 10,236 ft
  elevationLines(3);                    // 14,480 m / 3 = 15,836 ft apart
  EXPECT_EQ(labelTexts(), (Texts{"10240", "26080", "41920", "57760"}));
  view.labels.clear();
  elevationLines(1);  // a step of 47,507 ft
  EXPECT_EQ(labelTexts(), (Texts{"10240", "57750"}));
  EXPECT_NEAR(view.labels[1].y, 57750 * 0.3048, 0.2);
}

TEST_F(PlotDrawingTest, GroundOfTwelveThousandMetresIsDrawnAtEveryExaggeration) {
  state.statistics.plotMaximum = 12000;
  for (const bool feet : {false, true})
    for (const double exaggeration : {0.0, 100.0, 500.0}) {
      if (feet) test::useFeetAndMiles(state);
      PlotDrawing plot = begun(exaggeration);
      EXPECT_EQ(failureOf([&] { plot.elevationLines(3, 1, 12); }), 0) << feet << ' ' << exaggeration;
      EXPECT_EQ(view.labels.size(), 4U);
    }
  // From -1,100 m = -3,608.9 ft, raised by 9, in steps of 239,829 / 3 = 79,943 ft, each raised by 7.
  EXPECT_EQ(view.labels.back().text, "236250");
}

TEST_F(PlotDrawingTest, LevelsBeyondThirtyTwoBitsOverflow) {
  state.statistics.plotMaximum = 2e9F;
  EXPECT_EQ(failureOf([&] { elevationLines(1); }), 6) << "a step";
  EXPECT_TRUE(canvas.operations().empty());
  state.statistics.plotMaximum = 1e9F;  // the top is 2e9, the bottom -1e8: two steps of 1.05e9 above it
  state.statistics.plotMinimum = 1e9F;
  EXPECT_EQ(failureOf([&] { elevationLines(1); }), 0);
}

TEST_F(PlotDrawingTest, ARiseThatIsNoNumberOverflowsAtOnce) {
  for (const float bad : {kNoHeight, std::numeric_limits<float>::infinity(), 1e30F}) {
    state.curve[1] = bad;
    EXPECT_EQ(failureOf([&] { elevationLines(3); }), 6) << bad;
  }
}

// Every finite bottom either gets its lines or the overflow of its labels.
TEST_F(PlotDrawingTest, RaisingToMultiplesOfTenEndsForEveryFiniteBottom) {
  std::mt19937 random(20260101);
  std::uniform_real_distribution<double> exponent(-8, 11);
  for (int run = 0; run < 2000; ++run) {
    state = test::flatProfile();
    if (run % 2 == 1) test::useFeetAndMiles(state);
    const double magnitude = std::pow(10, exponent(random));
    state.statistics.plotMinimum = static_cast<float>(run % 3 == 0 ? -magnitude : magnitude);
    view.labels.clear();
    const int failure = failureOf([&] { elevationLines(3); });
    const double level = std::abs(view.scale.bottom) * state.inputs.units.height.factor;
    EXPECT_TRUE(failure == 0 || level > 1e8) << state.statistics.plotMinimum;
    for (const PlotLabel& label : view.labels) EXPECT_EQ(label.text.back(), '0') << label.text;
  }
}

// --- more lines than a picture has room for ---

TEST_F(PlotDrawingTest, AsManyElevationLinesAsTheDialogOffersAreAllDrawn) {
  elevationLines(20);  // 170 m / 20 = 8.5 -> 8 m apart, raised to tens: those above 260 m leave the picture
  EXPECT_EQ(view.labels.size(), 21U);
  EXPECT_EQ(view.labels.back().text, "290");
  EXPECT_EQ(canvas.linesIn(kElevationGreen).size(), 21U * 12);
}

TEST_F(PlotDrawingTest, ElevationLinesBeyondThoseEndWithThePicture) {
  state.statistics.plotMaximum = 1000;
  state.statistics.plotMinimum = 100;  // 0 to 2000 m
  elevationLines(1000);                // 2 m apart, raised to tens
  ASSERT_EQ(view.labels.size(), 201U);
  EXPECT_EQ(view.labels[1].text, "10");
  EXPECT_EQ(view.labels.back().text, "2000");
  EXPECT_EQ(canvas.linesIn(kElevationGreen).size(), 201U * 12);
}

// A picture of 2000 rows is full of lines then.
TEST_F(PlotDrawingTest, ThousandsOfElevationLinesAreDrawnWhereTheyCanBeToldApart) {
  state.statistics.plotMaximum = 100000;
  state.statistics.plotMinimum = 10000;  // 0 to 200,000 m
  elevationLines(32767);                 // 6 m apart, raised to tens
  EXPECT_EQ(view.labels.size(), 21U + 199) << "the first ones, then one in 1000 m";
  const auto lines = canvas.linesIn(kElevationGreen);
  EXPECT_EQ(lines.size(), (21U + 1998) * 12) << "the first ones, then one in 100 m";
  EXPECT_NEAR(lines.back().from.y, 200000, 100);
  double gap = 0;  // the widest, metres
  for (std::size_t i = 12; i < lines.size(); i += 12)
    gap = std::max(gap, lines[i].from.y - lines[i - 12].from.y);
  EXPECT_NEAR(gap, 100, 1e-6);
}

TEST_F(PlotDrawingTest, ElevationLinesThatCoincideAreNotRepeatedByTheThousand) {
  elevationLines(32767);  // 170 m / 32767 rounds to no step
  EXPECT_EQ(labelTexts(), Texts(21, "90"));
}

TEST_F(PlotDrawingTest, ThousandsOfRangeLinesHaveLabelsWhereTheyCanBeToldApart) {
  state.path.distance = 2000;
  state.path.intervals = 1000;
  state.path.spacing = 2;
  state.path.extendedLength = 2004;
  begun().rangeLines(32767);
  EXPECT_EQ(canvas.linesIn(kRangeMagenta).size(), 1U + 999) << "lines under 2 km apart are none";
  EXPECT_EQ(view.labels.size(), 1U + 20 + 163) << "the first ones, then one in six: 10.02 km";
}

TEST_F(PlotDrawingTest, AsManyRangeLinesAsTheDialogOffersAllHaveLabels) {
  state.path.distance = 50;
  begun().rangeLines(20);
  EXPECT_EQ(view.labels.size(), 21U);
}

// --- range lines ---

// Span 10 km, 3 lines 10 / 3 -> 3 km apart, the first at half of that, all counted from x = 1.
TEST_F(PlotDrawingTest, RangeLinesCountFromTheStartAntenna) {
  begun().rangeLines(3);
  EXPECT_EQ(labelTexts(), (Texts{"0", "1.5", "4.5", "7.5"}));
  expectNear(labelPlaces(true), {1, 2.5, 5.5, 8.5});
  expectNear(labelPlaces(false), {260, 260, 260, 260});
  const auto lines = canvas.linesIn(kRangeMagenta);
  ASSERT_EQ(lines.size(), 4U);
  expectLine(lines[0], 1, 90, 1, 260);
  expectLine(lines[1], 2.5, 90, 2.5, 260);
  expectLine(lines[3], 8.5, 90, 8.5, 260);
  EXPECT_EQ(store.reads, (Texts{"Colors/cRange=16711935"}));
}

TEST_F(PlotDrawingTest, EachRangeLabelIsBlackAndComesBeforeItsLine) {
  begun().rangeLines(1);
  const std::vector<RecordedOperation> expected = {
      RecordedDrawMode{DrawMode::kBlackness},
      RecordedTextPosition{{1, 260}},
      RecordedText{{1, 260}, "0", DrawMode::kBlackness},
      RecordedDrawMode{DrawMode::kCopyPen},
      RecordedLine{{1, 90}, {1, 260}, kRangeMagenta, DrawMode::kCopyPen, 1},
      RecordedDrawMode{DrawMode::kBlackness},
      RecordedTextPosition{{6, 260}},
      RecordedText{{6, 260}, "5.0", DrawMode::kBlackness},
      RecordedDrawMode{DrawMode::kCopyPen},
      RecordedLine{{6, 90}, {6, 260}, kRangeMagenta, DrawMode::kCopyPen, 1}};
  EXPECT_EQ(canvas.operations(), expected);
}

TEST_F(PlotDrawingTest, ShortSpansGetFewerRangeLinesAndMoreDecimals) {
  struct {
    double distance;  // km
    Texts labels;
  } const rows[] = {{5, {"0", "1.00", "3.00"}},  // 5 <= 6, then 5 > 4: 2 lines, Int16(2.5) = 2 apart
                    {6, {"0", "1.50", "4.50"}},  // 6 <= 6: 2 lines, 3 apart
                    {6.01, {"0", "1.00", "3.00", "5.00"}},  // 3 lines, 2 apart
                    {9, {"0", "1.50", "4.50", "7.50"}},     // 9 <= 3 x 3
                    {9.01, {"0", "1.5", "4.5", "7.5"}},     // above it
                    {30, {"0", "5.0", "15.0", "25.0"}},     // 30 <= 10 x 3
                    {30.1, {"0", "5", "15", "25"}},         // above it
                    {40, {"0", "7", "20", "33"}},           // 13 apart from 6.5; halves away from zero
                    {3, {"0", "1.50"}},                     // 1 line, 3 "apart"
                    {2, {"0"}},                             // 2 <= 2 x 1: no line but the one at the start
                    {0.2, {"0"}},
                    {4000, {"0", "667", "2,000", "3,333"}}};  // 1333 apart from 666.5
  for (const auto& row : rows) {
    state.path.distance = row.distance;
    begun().rangeLines(3);
    EXPECT_EQ(labelTexts(), row.labels) << row.distance;
    EXPECT_EQ(canvas.lines().size(), row.labels.size()) << row.distance;
  }
}

TEST_F(PlotDrawingTest, RangeLinesStandAtWholeIntervalsOfMilesInMiles) {
  test::useFeetAndMiles(state);
  begun().rangeLines(3);
  // 6.21371 mi: 3 lines 2 miles apart from 1 mile on; 1 mile = 1.609344 km.
  EXPECT_EQ(labelTexts(), (Texts{"0", "1.00", "3.00", "5.00"}));
  EXPECT_NEAR(view.labels[1].x, 1 + 1.609344, 1e-4);
  EXPECT_NEAR(view.labels[3].x, 1 + 5 * 1.609344, 1e-4);
}

// The line at the start and all others count from the start antenna here too, so that the first of them
// stands one extension beyond the left marker and half an interval.
TEST_F(PlotDrawingTest, RangeLinesOfTheExpandedViewSpanTheMarkersAndCountFromTheStart) {
  test::expandBetween(state, 3, 7.5F);
  begun().rangeLines(3);
  // 4.5 km: 2 lines Int16(2.25) = 2 apart from 3 + 1 on, drawn at x = 1 + 4 and 1 + 6.
  EXPECT_EQ(labelTexts(), (Texts{"0", "4.00", "6.00"}));
  expectNear(labelPlaces(true), {1, 5, 7});
}

TEST_F(PlotDrawingTest, RangeLabelsUseTheUsersSeparators) {
  style.numbers = {",", "."};
  state.path.distance = 4000;
  begun().rangeLines(1);
  EXPECT_EQ(labelTexts()[1], "2.000");
  state.path.distance = 10;
  begun().rangeLines(3);
  EXPECT_EQ(labelTexts()[1], "1,5");
}

TEST_F(PlotDrawingTest, ACanvasMayHavePatternsOfItsOwn) {
  style.elevationPattern = style.rangePattern = "##,##0";
  state.statistics.plotMinimum = 2000;
  state.statistics.plotMaximum = 2000;
  elevationLines(1);
  EXPECT_EQ(labelTexts()[0], "1,800");
  begun().rangeLines(3);
  EXPECT_EQ(labelTexts()[1], "1.5");
}

TEST_F(PlotDrawingTest, LabelsMayWaitUntilAllReferenceLinesAreDrawnThoseOfTheRangeFirst) {
  style.labelsUnderLines = false;
  PlotDrawing plot = elevationLines(2);
  plot.rangeLines(2);
  EXPECT_TRUE(view.labels.empty());
  canvas.forgetOperations();
  plot.labels();
  // Three of the range with the one at the start, three of the heights.
  ASSERT_EQ(view.labels.size(), 6U);
  for (std::size_t i = 0; i < view.labels.size(); ++i)
    EXPECT_EQ(view.labels[i].kind, i < 3 ? PlotLabelKind::kRange : PlotLabelKind::kElevation) << i;
  EXPECT_EQ(view.labels[0].text, "0");
  plot.labels();
  EXPECT_EQ(view.labels.size(), 6U);
}

TEST_F(PlotDrawingTest, WithNoRangeLinesEvenTheOneAtTheStartIsLeftOut) {
  for (const std::int16_t count : std::initializer_list<std::int16_t>{0, -1, -32768}) {
    begun().rangeLines(count);
    EXPECT_TRUE(canvas.operations().empty());
  }
}

TEST_F(PlotDrawingTest, ASpanThatIsNoNumberOrBeyondSixteenBitsOverflows) {
  for (const double bad : {double{kNoHeight}, std::numeric_limits<double>::infinity(), 1e6}) {
    state.path.distance = bad;
    EXPECT_EQ(failureOf([&] { begun().rangeLines(3); }), 6) << bad;
    EXPECT_TRUE(canvas.operations().empty());
  }
}

TEST_F(PlotDrawingTest, ManyRangeLinesFallToWhatTheSpanAllows) {
  begun().rangeLines(32767);
  EXPECT_EQ(labelTexts(), (Texts{"0", "1.00", "3.00", "5.00", "7.00"}));  // 10 > 2 x 4; Int16(2.5) = 2
}

// --- Fresnel line, masts, line of sight ---

TEST_F(PlotDrawingTest, TheWholeViewHasFresnelLineMastsAndLineOfSightInThisOrder) {
  state.lineOfSight = {130, 140, 1};
  state.inputs.antennaHeights = {30, 40};
  begun().fresnelAndSight();
  const auto lines = canvas.lines();
  ASSERT_EQ(lines.size(), 13U);
  expectLine(lines[0], 1, 120, 2, 120);
  expectLine(lines[9], 10, 120, 11, 120);
  for (int i = 0; i < 12; ++i) EXPECT_EQ(lines[static_cast<std::size_t>(i)].colour, kFresnelRed) << i;
  EXPECT_EQ(lines[10], (RecordedLine{{1, 130}, {1, 100}, kFresnelRed, DrawMode::kCopyPen, 3}));
  EXPECT_EQ(lines[11], (RecordedLine{{11, 140}, {11, 100}, kFresnelRed, DrawMode::kCopyPen, 3}));
  EXPECT_EQ(lines[12], (RecordedLine{{1, 130}, {11, 140}, kSightBlue, DrawMode::kCopyPen, 1}));
  const auto circles = canvas.circles();
  ASSERT_EQ(circles.size(), 2U);
  EXPECT_EQ(circles[0], (RecordedCircle{{1, 130}, 0.06, kWhite, DrawMode::kCopyPen, 3}));
  EXPECT_EQ(circles[1], (RecordedCircle{{11, 140}, 0.06, kWhite, DrawMode::kCopyPen, 3}));
  EXPECT_EQ(store.reads, (Texts{"Colors/cFresnel=255", "Colors/cLOS=16711680"}));
}

TEST_F(PlotDrawingTest, TheDrawWidthIsWhatItWasAfterTheMasts) {
  canvas.setDrawWidth(2);
  begun().fresnelAndSight();
  EXPECT_EQ(canvas.drawWidth(), 2);
  EXPECT_EQ(canvas.lines().back().width, 2);
}

TEST_F(PlotDrawingTest, WithoutAFresnelLineThereAreStillMastsAndLineOfSight) {
  state.fresnel = {};
  begun().fresnelAndSight();
  EXPECT_EQ(canvas.linesIn(kFresnelRed).size(), 2U);
  EXPECT_EQ(canvas.linesIn(kSightBlue).size(), 1U);
}

TEST_F(PlotDrawingTest, TheExpandedViewHasNoMastsAndCutsItsLinesAtTheMarkers) {
  state.lineOfSight = {130, 140, 1};
  test::expandBetween(state, 3.4F, 7.5F);
  for (std::int32_t i = 1; i <= 11; ++i) state.fresnel[i] = static_cast<float>(i);
  begun().fresnelAndSight();
  EXPECT_TRUE(canvas.circles().empty());
  const auto fresnel = canvas.linesIn(kFresnelRed);
  ASSERT_EQ(fresnel.size(), 5U);  // Int16(3.4) = 3 to Int16(7.5) = 8
  expectLine(fresnel[0], 3, 3, 4, 4);
  expectLine(fresnel[4], 7, 7, 8, 8);
  const auto sight = canvas.linesIn(kSightBlue);
  ASSERT_EQ(sight.size(), 1U);
  // The line of sight stands at 130 m at the start antenna's x = 1 and rises 1 m a km.
  expectLine(sight[0], double{3.4F}, 130 + (double{3.4F} - 1), 7.5, 136.5);
}

TEST_F(PlotDrawingTest, TheExpandedFresnelLineStaysBetweenTheStations) {
  test::expandBetween(state, 0.2F, 11.8F);
  begun().fresnelAndSight();
  const auto fresnel = canvas.linesIn(kFresnelRed);
  ASSERT_EQ(fresnel.size(), 10U);
  expectLine(fresnel.front(), 1, 120, 2, 120);
  expectLine(fresnel.back(), 10, 120, 11, 120);
}

// --- ground ---

TEST_F(PlotDrawingTest, TheGroundBeginsAtTheBackPointWithoutARise) {
  state.curve = SampleArray<float>(12, 5.0F);
  state.elevation[1] = 77;
  begun().ground();
  const auto lines = canvas.lines();
  ASSERT_EQ(lines.size(), 12U);
  EXPECT_EQ(lines[0], (RecordedLine{{0, 77}, {1, 105}, kBlack, DrawMode::kBlackness, 1}));
  EXPECT_EQ(lines[1], (RecordedLine{{1, 105}, {2, 105}, kBlack, DrawMode::kBlackness, 1}));
  EXPECT_EQ(lines[11], (RecordedLine{{11, 105}, {12, 105}, kBlack, DrawMode::kBlackness, 1}));
}

TEST_F(PlotDrawingTest, TheExpandedGroundLiesOneSpacingFurtherOn) {
  state.curve = SampleArray<float>(12, 5.0F);
  test::expandBetween(state, 3.4F, 7.5F);  // samples 2 to 8
  begun().ground();
  const auto lines = canvas.lines();
  ASSERT_EQ(lines.size(), 7U);
  expectLine(lines[0], 2, 100, 3, 105);
  expectLine(lines[6], 8, 105, 9, 105);
}

TEST_F(PlotDrawingTest, AVoidIsDrawnInRedAtSeaLevelWithItsRise) {
  state.curve = SampleArray<float>(12, 5.0F);
  state.rawElevation[6] = kVoidHeight;
  state.elevation[6] = 0;
  begun().ground();
  const auto lines = canvas.lines();
  EXPECT_EQ(lines[4].colour, kBlack);
  EXPECT_EQ(lines[5], (RecordedLine{{5, 105}, {6, 5}, kRed, DrawMode::kCopyPen, 1}));
  EXPECT_EQ(lines[6], (RecordedLine{{6, 5}, {7, 105}, kBlack, DrawMode::kBlackness, 1}));
  EXPECT_EQ(canvas.linesIn(kRed).size(), 1U);
}

TEST_F(PlotDrawingTest, TheGroundIsMissingBelowMinus499Metres) {
  struct {
    float raw;
    bool missing;
  } const rows[] = {{-499.0F, false}, {-499.01F, true},  {-500, true},
                    {-50, false},     {kNoHeight, true}, {0, false}};
  for (const auto& row : rows) {
    state.rawElevation[6] = row.raw;
    begun().ground();
    EXPECT_EQ(canvas.lines()[5].colour, row.missing ? kRed : kBlack) << row.raw;
    EXPECT_EQ(canvas.lines()[5].to.y, row.missing ? 0 : double{row.raw}) << row.raw;
  }
}

TEST_F(PlotDrawingTest, ANegativeHeightIsDrawnAsItIs) {
  state.rawElevation[6] = state.elevation[6] = -20;
  begun().ground();
  EXPECT_EQ(canvas.lines()[5].to.y, -20);
}

TEST_F(PlotDrawingTest, ArraysThatDoNotReachTheSamplesFailAtTheirEnd) {
  state.rawElevation = SampleArray<float>(7, 100.0F);
  EXPECT_EQ(failureOf([&] { begun().ground(); }), 9);
  EXPECT_EQ(canvas.lines().size(), 7U);
}

}  // namespace
}  // namespace zel
