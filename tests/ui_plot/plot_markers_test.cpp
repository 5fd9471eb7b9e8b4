#include "ui/plot/plot_markers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "canvas/recording_canvas.h"
#include "plot_platform.h"
#include "support/plot_state.h"
#include "support/recording_settings_store.h"
#include "support/scripted_terrain.h"
#include "ui/plot/plot_drawing.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;
constexpr Colour kStripPen = 0x0000FF;  // the configured 0xFFFF00 XOR 0xFFFFFF
constexpr Colour kStrobePen = 0x0000FF;

// The plane's path runs due north from (0, 0) to (0.1, 0): a marker at plot x lies (x - 1) / 100 degrees
// north.
struct PlotMarkersTest : testing::Test {
  test::RecordingSettingsStore store;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};
  RecordingCanvas canvas;
  KeptReadouts readouts;
  test::PlaneGeodesy geodesy;
  test::ScriptedDatumShift datumShift;
  test::PlainFormatter formatter;
  ModuleState module;
  ProfileViewState state = test::flatProfile();
  PlotView view;
  PlotMarkers markers{
      {&canvas, &readouts, &geodesy, &datumShift, &formatter, &module, {}}, reader, state, view};

  void SetUp() override { draw(); }
  void draw() {
    PlotDrawing(canvas, state, reader, {}, view).begin(100);
    canvas.forgetOperations();
    store.reads.clear();
  }
  std::string text(std::string_view control) const { return readouts.text(control); }
  Texts labels(const readout::MarkerLabels& names) const {
    return {text(names.latitude), text(names.longitude), text(names.height), text(names.distanceToCursor)};
  }
  Texts leftLabels() const { return labels(readout::kLeftMarker); }
  Texts rightLabels() const { return labels(readout::kRightMarker); }
  std::vector<double> lineXs() const {
    std::vector<double> xs;
    for (const RecordedLine& line : canvas.lines()) xs.push_back(line.from.x);
    return xs;
  }
};

// --- placing ---

TEST_F(PlotMarkersTest, TheFirstClickPlacesTheLeftMarkerExactlyThere) {
  markers.place(5.25F);
  EXPECT_TRUE(state.leftMarker.shown);
  EXPECT_FALSE(state.rightMarker.shown);
  EXPECT_EQ(state.leftMarker.x, 5.25F);
  EXPECT_EQ(state.leftMarker.keptX, 5.25F);
  ASSERT_EQ(canvas.lines().size(), 1U);
  EXPECT_EQ(canvas.lines()[0], (RecordedLine{{5.25, 90}, {5.25, 260}, kStripPen, DrawMode::kXorPen, 1}));
  EXPECT_EQ(store.reads, (Texts{"Colors/cLRMarker=16776960"}));
  EXPECT_EQ(leftLabels(), (Texts{"lat 0.0425", "lon 0", "100.0", ""}));
  EXPECT_EQ(rightLabels(), (Texts{"", "", "", ""}));
}

TEST_F(PlotMarkersTest, ASecondClickAtOrBeyondTheLeftMarkerPlacesTheRightOne) {
  for (const float x : {5.0F, 8.0F}) {
    state = test::flatProfile();
    view.rightTexts = {};
    markers.place(5);
    markers.point(7, 100);
    markers.place(x);
    EXPECT_EQ(view.leftTexts.distanceToCursor, "2.00");
    EXPECT_EQ(view.rightTexts.distanceToCursor, "") << "the shown marker keeps its side";
    EXPECT_EQ(state.leftMarker.x, 5);
    EXPECT_EQ(state.rightMarker.x, x);
    EXPECT_TRUE(state.rightMarker.shown);
  }
}

TEST_F(PlotMarkersTest, AClickBeforeTheLeftMarkerMakesItTheRightOne) {
  markers.place(5);
  markers.point(7, 120);
  EXPECT_EQ(leftLabels(), (Texts{"lat 0.04", "lon 0", "100.0", "2.00"}));
  canvas.forgetOperations();
  markers.place(2);
  EXPECT_EQ(state.leftMarker.x, 2);
  EXPECT_EQ(state.rightMarker.x, 5);
  EXPECT_EQ(rightLabels(), (Texts{"lat 0.04", "lon 0", "100.0", "2.00"})) << "unchanged";
  EXPECT_EQ(leftLabels()[0], "lat 0.01");
  EXPECT_EQ(state.rightMarker.position.latitude, 0.04);
  EXPECT_EQ(state.rightMarker.keptX, 5);
  EXPECT_TRUE(state.leftMarker.shown && state.rightMarker.shown);
  EXPECT_EQ(lineXs(), (std::vector<double>{2})) << "the other line stays where it is";
}

TEST_F(PlotMarkersTest, AClickAtOrBeforeTheRightMarkerPlacesTheLeftOne) {
  for (const float x : {2.0F, 5.0F}) {
    state = test::flatProfile();
    state.rightMarker.shown = true;
    state.rightMarker.x = 5;
    view.leftTexts = {};
    markers.point(7, 100);
    markers.place(x);
    EXPECT_EQ(view.leftTexts.distanceToCursor, "") << "the shown marker keeps its side";
    EXPECT_EQ(view.rightTexts.distanceToCursor, "2.00");
    EXPECT_EQ(state.leftMarker.x, x);
    EXPECT_EQ(state.rightMarker.x, 5);
    EXPECT_TRUE(state.leftMarker.shown && state.rightMarker.shown);
  }
}

TEST_F(PlotMarkersTest, AClickBeyondTheRightMarkerMakesItTheLeftOne) {
  markers.place(3);
  markers.place(5);
  markers.clear(MarkerSide::kLeft);
  const Texts former = rightLabels();
  markers.place(8);
  EXPECT_EQ(state.leftMarker.x, 5);
  EXPECT_EQ(state.rightMarker.x, 8);
  EXPECT_EQ(leftLabels(), former);
  EXPECT_EQ(rightLabels()[0], "lat 0.07");
}

TEST_F(PlotMarkersTest, WithBothMarkersShownAClickChangesNothing) {
  markers.place(3);
  markers.place(5);
  const Texts left = leftLabels();
  canvas.forgetOperations();
  store.reads.clear();
  markers.place(4);
  EXPECT_EQ(state.leftMarker.x, 3);
  EXPECT_EQ(state.rightMarker.x, 5);
  EXPECT_EQ(leftLabels(), left);
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_TRUE(store.reads.empty());
}

TEST_F(PlotMarkersTest, AMarkerShowsTheGroundAboveSeaLevelBetweenTheSamplesAsThePointerReadsIt) {
  state.elevation[5] = 100;
  state.elevation[6] = 200;
  state.curve = SampleArray<float>(12, 7.0F);
  markers.place(4.25F);  // Int(4.25 / 12 x 12) + 1 = sample 5, a quarter towards sample 6
  EXPECT_EQ(leftLabels()[2], "125.0") << "without the rise";
  EXPECT_EQ(state.leftMarker.groundHeight, 125);
}

TEST_F(PlotMarkersTest, AMarkersHeightIsShownInDisplayUnits) {
  test::useFeetAndMiles(state);
  markers.place(5);
  EXPECT_EQ(leftLabels()[2], "328.1");  // 100 m of 0.3048 m a foot
}

TEST_F(PlotMarkersTest, AMarkersPositionIsCountedFromTheStartAntenna) {
  markers.place(1);
  EXPECT_EQ(leftLabels()[0], "lat 0");
  markers.place(0.5F);
  EXPECT_EQ(leftLabels()[0], "lat -0.005") << "behind the start";
}

TEST_F(PlotMarkersTest, OnlyTheOldDatumConvertsAPosition) {
  for (const char* datum : {"", "NAD-83", "nad-27"}) {
    module.datumText = datum;
    state = test::flatProfile();
    markers.place(2);
    EXPECT_EQ(state.leftMarker.converted, state.leftMarker.position) << datum;
  }
  module.datumText = "NAD-27";
  markers.place(3);
  EXPECT_EQ(state.rightMarker.position, (GeoPoint{0.02, 0}));
  EXPECT_EQ(state.rightMarker.converted, (GeoPoint{1.02, 2}));
  EXPECT_EQ(rightLabels()[0], "lat 0.02") << "the labels show the station's own datum";
}

TEST_F(PlotMarkersTest, ADatumShiftThatFailsLeavesTheMarkerWhereItIs) {
  module.datumText = "NAD-27";
  datumShift.failing = true;
  EXPECT_THROW(markers.place(5), RuntimeError);
  EXPECT_TRUE(state.leftMarker.shown);
  EXPECT_EQ(state.leftMarker.position, state.leftMarker.converted);
  EXPECT_TRUE(view.leftStroke.drawn) << "its line can be erased";
}

TEST_F(PlotMarkersTest, PositionsThatNeedASampleBeyondTheLastAreIgnored) {
  for (const float x : {11.0F, 12.0F, 1e30F, -0.001F, -5.0F, std::numeric_limits<float>::quiet_NaN()}) {
    markers.place(x);
    markers.point(x, 100);
  }
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_FALSE(state.leftMarker.shown);
  EXPECT_EQ(text(readout::kCursorPosition), "");
  markers.place(10.99F);  // between samples 11 and 12
  markers.place(0);
  EXPECT_TRUE(state.leftMarker.shown && state.rightMarker.shown);
}

TEST_F(PlotMarkersTest, NeitherClickNorPointerReadTerrainThatIsNotThere) {
  struct {
    bool resample, loading, drawing;
  } const rows[] = {{true, false, false}, {false, true, false}, {false, false, true}};
  for (const auto& row : rows) {
    state.flags.resample = row.resample;
    state.flags.loading = row.loading;
    state.flags.drawing = row.drawing;
    markers.place(5);
    markers.point(5, 100);
    EXPECT_FALSE(state.leftMarker.shown);
    EXPECT_TRUE(canvas.operations().empty());
    EXPECT_EQ(text(readout::kCursorHeight), "");
  }
}

// --- pointer ---

TEST_F(PlotMarkersTest, ThePointerShowsItsDistanceFromTheStartAndTheGroundUnderIt) {
  for (std::int32_t i = 1; i <= 12; ++i) {
    state.elevation[i] = static_cast<float>(100 * i);
    state.curve[i] = static_cast<float>(i);
  }
  markers.point(4.5F, 600);
  EXPECT_EQ(text(readout::kCursorPosition), "3.50");  // 4.5 - 1
  EXPECT_EQ(text(readout::kCursorHeight), "550.0");   // half way from sample 5 to 6
  EXPECT_EQ(text(readout::kBelowMouse), "44.5");      // 600 - (550 + 5.5)
  ASSERT_EQ(canvas.circles().size(), 1U);
  EXPECT_EQ(canvas.circles()[0], (RecordedCircle{{4.5, 555.5}, 0.06, kStrobePen, DrawMode::kXorPen, 1}));
}

TEST_F(PlotMarkersTest, ReadOutsAreInDisplayUnits) {
  test::useFeetAndMiles(state);
  markers.place(3);
  markers.point(5, 50);
  EXPECT_EQ(text(readout::kCursorPosition), "2.49");  // 4 km of 1.609344 km a mile
  EXPECT_EQ(text(readout::kCursorHeight), "328.1");
  EXPECT_EQ(text(readout::kBelowMouse), "-164") << "50 m are 164.04 ft, and # shows no zero";
  EXPECT_EQ(leftLabels()[3], "1.24");  // 2 km
}

TEST_F(PlotMarkersTest, BehindTheStartTheDistanceIsNegative) {
  markers.point(0.5F, 100);
  EXPECT_EQ(text(readout::kCursorPosition), "-0.50");
  EXPECT_EQ(text(readout::kBelowMouse), "");
}

TEST_F(PlotMarkersTest, TheDistanceToTheCursorIsShownForShownMarkersOnly) {
  markers.place(3);
  markers.point(8, 100);
  EXPECT_EQ(leftLabels()[3], "5.00");
  EXPECT_EQ(rightLabels()[3], "");
  markers.place(10);
  markers.point(4, 100);
  EXPECT_EQ(leftLabels()[3], "1.00");
  EXPECT_EQ(rightLabels()[3], "6.00");
}

TEST_F(PlotMarkersTest, TheStrobeIsErasedBeforeItIsDrawnAgain) {
  state.elevation[6] = 200;
  markers.point(4.1F, 100);
  canvas.forgetOperations();
  markers.point(4.7F, 100);
  const auto circles = canvas.circles();
  ASSERT_EQ(circles.size(), 2U);
  EXPECT_EQ(circles[0].centre.x, double{4.1F});
  EXPECT_EQ(circles[1].centre.x, double{4.7F});
  canvas.forgetOperations();
  markers.point(6, 100);
  EXPECT_EQ(canvas.circles()[0], circles[1]) << "the very same stroke";
}

TEST_F(PlotMarkersTest, TheStrobeIsErasedInTheColourItWasDrawnWith) {
  markers.point(4, 100);
  store.set("Colors", "cStrobe", "255");
  canvas.forgetOperations();
  markers.point(5, 100);
  ASSERT_EQ(canvas.circles().size(), 2U);
  EXPECT_EQ(canvas.circles()[0].fillColour, kStrobePen);
  EXPECT_EQ(canvas.circles()[1].fillColour, 0xFFFF00);
}

TEST_F(PlotMarkersTest, AfterADrawingThereIsNoStrobeToErase) {
  markers.point(4, 100);
  draw();
  markers.point(5, 100);
  EXPECT_EQ(canvas.circles().size(), 1U);
}

TEST_F(PlotMarkersTest, EveryXorStrokeIsPairedAfterItsErasure) {
  markers.place(3);
  for (int i = 0; i < 50; ++i) markers.point(0.2F * static_cast<float>(i), 100);
  markers.clear(MarkerSide::kLeft);
  const auto circles = canvas.circles();
  ASSERT_EQ(circles.size(), 99U);  // the last one is still shown
  for (std::size_t i = 0; i + 1 < circles.size(); i += 2) EXPECT_EQ(circles[i], circles[i + 1]);
  ASSERT_EQ(canvas.lines().size(), 2U);
  EXPECT_EQ(canvas.lines()[0], canvas.lines()[1]);
}

// --- clearing ---

TEST_F(PlotMarkersTest, ClearingErasesTheLineAndEmptiesTheLabels) {
  markers.place(5);
  markers.point(7, 100);
  canvas.forgetOperations();
  EXPECT_FALSE(markers.clear(MarkerSide::kLeft)) << "no trace is left";
  const std::vector<RecordedOperation> expected = {
      RecordedDrawMode{DrawMode::kXorPen}, RecordedFillStyle{FillStyle::kSolid}, RecordedFillColour{kWhite},
      RecordedLine{{5, 90}, {5, 260}, kStripPen, DrawMode::kXorPen, 1}};
  EXPECT_EQ(canvas.operations(), expected);
  EXPECT_FALSE(state.leftMarker.shown);
  EXPECT_EQ(state.leftMarker.x, 5) << "the view's own position stays";
  EXPECT_EQ(state.leftMarker.keptX, 0);
  EXPECT_EQ(leftLabels(), (Texts{"", "", "", ""}));
}

TEST_F(PlotMarkersTest, ClearingTheRightMarkerLeavesTheLeftOneAlone) {
  markers.place(5);
  markers.place(8);
  markers.clear(MarkerSide::kRight);
  EXPECT_TRUE(state.leftMarker.shown);
  EXPECT_FALSE(state.rightMarker.shown);
  EXPECT_EQ(rightLabels(), (Texts{"", "", "", ""}));
  EXPECT_EQ(leftLabels()[0], "lat 0.04");
}

TEST_F(PlotMarkersTest, ClearingAHiddenMarkerDoesNothing) {
  markers.place(5);
  markers.clear(MarkerSide::kLeft);
  canvas.forgetOperations();
  store.reads.clear();
  EXPECT_FALSE(markers.clear(MarkerSide::kLeft));
  EXPECT_FALSE(markers.clear(MarkerSide::kRight));
  EXPECT_TRUE(canvas.operations().empty());
  EXPECT_TRUE(store.reads.empty());
}

TEST_F(PlotMarkersTest, AMarkerThatADrawingWentOverLeavesTracesWhenItIsErased) {
  markers.place(5);
  draw();
  EXPECT_TRUE(markers.clear(MarkerSide::kLeft));
}

TEST_F(PlotMarkersTest, ATraceFollowsTheMarkerThatChangesSides) {
  markers.place(5);
  draw();
  markers.place(2);  // the marker at 5 is the right one now
  EXPECT_FALSE(markers.clear(MarkerSide::kLeft));
  EXPECT_TRUE(markers.clear(MarkerSide::kRight));
}

TEST_F(PlotMarkersTest, AMarkerWhoseColourWasChangedSinceLeavesATrace) {
  markers.place(5);
  store.set("Colors", "cLRMarker", "255");
  EXPECT_TRUE(markers.clear(MarkerSide::kLeft));
}

TEST_F(PlotMarkersTest, OnAPictureMadeAnewThereIsNothingToErase) {
  markers.place(5);
  markers.point(6, 100);
  view.forgetStrokes();
  canvas.forgetOperations();
  EXPECT_FALSE(markers.clear(MarkerSide::kLeft));
  EXPECT_TRUE(canvas.lines().empty());
  markers.point(7, 100);
  EXPECT_EQ(canvas.circles().size(), 1U);
}

TEST_F(PlotMarkersTest, LabelsCanBeShownAgainInOtherUnits) {
  markers.place(5);
  test::useFeetAndMiles(state);
  markers.showLabels();
  EXPECT_EQ(leftLabels()[2], "328.1");
  EXPECT_EQ(rightLabels()[2], "");
}

}  // namespace
}  // namespace zel
