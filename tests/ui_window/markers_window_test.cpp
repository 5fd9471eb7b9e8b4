// Markers, pointer and expanded view as a person works them with the mouse: clicks, moves, buttons, menu.
#include <cmath>

#include "plot_probe.h"

namespace zel {
namespace {

using test::kRidgeEnd;
using test::kRidgeStart;

class MarkersWindowTest : public test::PlotWindowTest {
 protected:
  struct Labels {
    std::string latitude, longitude, height, toCursor;
    friend bool operator==(const Labels&, const Labels&) = default;
  };
  Labels labels(int marker) const {
    const std::string name = "lblMk" + std::to_string(marker);
    return {text((name + "Lat").c_str()), text((name + "Lon").c_str()), text((name + "Ht").c_str()),
            text((name + "Posn").c_str())};
  }
  bool leftShown() const { return state().leftMarker.shown; }
  bool rightShown() const { return state().rightMarker.shown; }
  // Distances from the start, km.
  double left() const { return state().plotIndex().distanceFromStart(double{state().leftMarker.x}); }
  double right() const { return state().plotIndex().distanceFromStart(double{state().rightMarker.x}); }
  // A pixel's worth of kilometres: a click lands on one.
  double pixelWidth() const {
    return (window()->plotView()->scale.right - window()->plotView()->scale.left) /
           window()->picture().width();
  }
};

#define EXPECT_AT(km, wanted) EXPECT_NEAR(km, wanted, pixelWidth())

// ---- The table of the markers ----

TEST_F(MarkersWindowTest, TheFirstClickPlacesTheLeftMarker) {
  open();
  clickPlot(8);
  EXPECT_TRUE(leftShown());
  EXPECT_FALSE(rightShown());
  EXPECT_AT(left(), 8);
  EXPECT_NE(labels(1).latitude, "");
  EXPECT_EQ(labels(2), Labels());
}

TEST_F(MarkersWindowTest, EveryButtonPlacesMarkers) {
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
    open();
    clickPlot(8, button);
    EXPECT_TRUE(leftShown()) << button;
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << button;
  }
}

TEST_F(MarkersWindowTest, AClickWithTheKeysOfTheKeyboardHeldPlacesThemToo) {
  open();
  QTest::mouseClick(&window()->picture(), Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier,
                    plotPixel(8));
  EXPECT_TRUE(leftShown());
}

TEST_F(MarkersWindowTest, AClickBeyondTheLeftMarkerPlacesTheRightOne) {
  open();
  clickPlot(8);
  const Labels first = labels(1);
  clickPlot(15);
  EXPECT_TRUE(leftShown() && rightShown());
  EXPECT_AT(left(), 8);
  EXPECT_AT(right(), 15);
  EXPECT_EQ(labels(1), first);
  EXPECT_NE(labels(2).latitude, first.latitude);
}

TEST_F(MarkersWindowTest, AClickAtTheLeftMarkerPlacesTheRightOneThere) {
  open();
  clickPlot(8);
  clickPlot(8);
  EXPECT_TRUE(rightShown());
  EXPECT_EQ(state().leftMarker.x, state().rightMarker.x);
}

TEST_F(MarkersWindowTest, AClickBeforeTheLeftMarkerMakesItTheRightOneWithItsLabels) {
  open();
  clickPlot(15);
  pointAt(20);
  const Labels first = labels(1);
  const float x = state().leftMarker.x;
  clickPlot(8);
  EXPECT_AT(left(), 8);
  EXPECT_EQ(state().rightMarker.x, x);
  EXPECT_EQ(labels(2), first);
  EXPECT_NE(labels(1).latitude, first.latitude);
}

TEST_F(MarkersWindowTest, AClickBeforeTheRightMarkerPlacesTheLeftOne) {
  open();
  clickPlot(8);
  clickPlot(15);
  click("cmdClear1");
  EXPECT_FALSE(leftShown());
  const Labels stays = labels(2);
  clickPlot(3);
  EXPECT_AT(left(), 3);
  EXPECT_AT(right(), 15);
  EXPECT_EQ(labels(2), stays);
}

TEST_F(MarkersWindowTest, AClickBeyondTheRightMarkerMakesItTheLeftOneWithItsLabels) {
  open();
  clickPlot(8);
  clickPlot(15);
  click("cmdClear1");
  const Labels first = labels(2);
  clickPlot(22);
  EXPECT_AT(left(), 15);
  EXPECT_AT(right(), 22);
  EXPECT_EQ(labels(1), first);
}

TEST_F(MarkersWindowTest, WithBothMarkersShownAClickChangesNothing) {
  open();
  clickPlot(8);
  clickPlot(15);
  const QImage before = picture();
  const Labels first = labels(1);
  const Labels second = labels(2);
  clickPlot(11);
  clickPlot(2, Qt::RightButton);
  EXPECT_EQ(picture(), before);
  EXPECT_EQ(labels(1), first);
  EXPECT_EQ(labels(2), second);
}

TEST_F(MarkersWindowTest, ADoubleClickPlacesOneMarkerOnlyAndAsksForNoPrint) {
  open();
  // As a desktop sends it.
  const QPointF at = plotPixel(8);
  PictureBox& box = window()->picture();
  for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                  QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, at, box.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&box, &event);
  }
  EXPECT_TRUE(leftShown());
  EXPECT_FALSE(rightShown());
  EXPECT_TRUE(dialogs_->messages.empty());
}

// ---- Clear buttons ----

TEST_F(MarkersWindowTest, ClearingLeavesThePictureOfAFreshDrawing) {
  open();
  const QImage fresh = picture();
  clickPlot(8);
  clickPlot(15);
  EXPECT_NE(picture(), fresh);
  click("cmdClear1");
  EXPECT_NE(picture(), fresh);
  click("cmdClear2");
  EXPECT_EQ(picture(), fresh);
  EXPECT_EQ(labels(1), Labels());
  EXPECT_EQ(labels(2), Labels());
}

TEST_F(MarkersWindowTest, ClearingLeavesNoTraceAfterDrawingsAndColourChangesInBetween) {
  open();
  const QImage fresh = picture();
  clickPlot(8);
  window()->drawLine();  // lines lie over the marker's now
  clickPlot(15);
  set("Colors", "cLRMarker", "32896");
  click("cmdClear2");
  click("cmdClear1");
  EXPECT_EQ(picture(), fresh);
}

TEST_F(MarkersWindowTest, ClearingTwiceIsHarmless) {
  open();
  clickPlot(8);
  clickPlot(15);
  click("cmdClear2");
  const QImage once = picture();
  click("cmdClear2");
  EXPECT_EQ(picture(), once);
  EXPECT_TRUE(leftShown());
  EXPECT_EQ(logged(), "");
}

TEST_F(MarkersWindowTest, AClearedMarkerKeepsItsPositionButNotTheOneForExports) {
  open();
  clickPlot(8);
  const float x = state().leftMarker.x;
  click("cmdClear1");
  EXPECT_EQ(state().leftMarker.x, x);
  EXPECT_EQ(state().leftMarker.keptX, 0.0F);
}

// ---- Read-outs ----

TEST_F(MarkersWindowTest, AMarkerShowsItsPlaceAndItsGround) {
  set("Settings", "CoordFormat", "DD");
  control_.SetClientApp(makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
  open();
  clickPlot(14.35);
  // Half way of the 28.7 km the middle of the stations, to some tens of metres.
  EXPECT_NEAR(std::stod(labels(1).latitude), 36.31, 0.002);
  EXPECT_NEAR(std::abs(std::stod(labels(1).longitude)), 84.235, 0.002);
  pointAt(14.35);
  EXPECT_EQ(labels(1).height, text("lblCurHt"));
}

TEST_F(MarkersWindowTest, ThePointerTellsDistanceGroundAndItsHeightAboveIt) {
  open();
  clickPlot(8);
  clickPlot(20);
  pointAt(12);
  EXPECT_AT(std::stod(text("lblCurPosn")), 12);
  EXPECT_AT(std::stod(labels(1).toCursor), 4);
  EXPECT_AT(std::stod(labels(2).toCursor), 8);
  // The pointer stands in the middle of the picture; the ground is drawn with the rise.
  const float x = window()->plotView()->strobe.x;
  const auto at = state().plotIndex().pointerAt(double{x});
  ASSERT_TRUE(at);
  const PointerHeights heights = PlotIndex::heightsAt(*at, state().elevation, state().curve);
  EXPECT_NEAR(std::stod(text("lblCurHt")), heights.ground - heights.rise, 0.051);
  const PlotScale& scale = window()->plotView()->scale;
  const double pixelHeight = std::abs(scale.top - scale.bottom) / window()->picture().height();
  EXPECT_NEAR(std::stod(text("lblmbelowmouse")), (scale.top + scale.bottom) / 2 - heights.ground,
              pixelHeight);
}

TEST_F(MarkersWindowTest, BelowTheGroundThePointersHeightIsNegative) {
  open();
  const double x = xOf(12);
  moveOver(window()->picture().pixelAt({x, window()->plotView()->scale.bottom}));
  EXPECT_LT(std::stod(text("lblmbelowmouse")), 0);
}

TEST_F(MarkersWindowTest, InMilesAndFeetTheReadOutsAre) {
  open();
  pointAt(16.09344);  // ten miles
  const double metres = std::stod(text("lblCurHt"));
  set("Settings", "DispUnits", "1");
  window()->reload();
  pointAt(16.09344);
  EXPECT_NEAR(std::stod(text("lblCurPosn")), 10, pixelWidth());
  EXPECT_NEAR(std::stod(text("lblCurHt")), metres / 0.3048, 0.3);
}

// ---- Strobe ----

TEST_F(MarkersWindowTest, TheStrobeLeavesNoTrace) {
  open();
  clickPlot(8);
  pointAt(3);
  const QImage here = picture();
  for (const double km : {8.0, 9.7, -0.4, 28.6, 0.0, 15.0, 25.0, 8.01}) pointAt(km);
  pointAt(3);
  EXPECT_EQ(picture(), here);
}

TEST_F(MarkersWindowTest, TheStrobeIsErasedInItsOwnColourWhenTheSettingChanges) {
  open();
  const QImage clean = picture();
  pointAt(3);
  set("Colors", "cStrobe", "255");
  pointAt(20);
  const QImage there = picture();
  window()->drawLine();
  EXPECT_EQ(picture(), clean);
  pointAt(20);
  EXPECT_EQ(picture(), there) << "the first strobe had left a trace";
}

TEST_F(MarkersWindowTest, ADrawingForgetsTheStrobe) {
  open();
  const QImage clean = picture();
  pointAt(3);
  EXPECT_NE(picture(), clean);
  window()->drawLine();
  EXPECT_FALSE(window()->plotView()->strobe.shown);
  EXPECT_EQ(picture(), clean);
}

// ---- Where nothing is read ----

TEST_F(MarkersWindowTest, APointerOutsideOfThePathIsIgnored) {
  open();
  pointAt(3);
  const QImage before = picture();
  const std::string position = text("lblCurPosn");
  PictureBox& box = window()->picture();
  for (const QPointF at :
       {QPointF(-1, 20), QPointF(-500, 20), QPointF(box.width() + 1, 20), QPointF(9000, -9000)}) {
    moveOver(at);
    QMouseEvent press(QEvent::MouseButtonPress, at, box.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&box, &press);
  }
  EXPECT_EQ(picture(), before);
  EXPECT_EQ(text("lblCurPosn"), position);
  EXPECT_FALSE(leftShown());
  EXPECT_EQ(logged(), "");
}

TEST_F(MarkersWindowTest, PositionsWithoutNumbersAreIgnored) {
  open();
  const QImage before = picture();
  for (const float x : {NAN, INFINITY, -INFINITY, 3e38F, -1e-6F}) {
    window()->Picture1_MouseMove(x, 0);
    window()->Picture1_MouseDown(x, 0);
  }
  EXPECT_EQ(picture(), before);
  EXPECT_FALSE(leftShown());
  EXPECT_EQ(logged(), "");
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(MarkersWindowTest, BehindTheStartThePointerReadsNegativeDistances) {
  open();
  pointAt(-0.8);
  EXPECT_AT(std::stod(text("lblCurPosn")), -0.8);
}

TEST_F(MarkersWindowTest, DuringADrawingTheMouseIsIgnored) {
  const auto host = callingHost();
  open();
  const QImage before = picture();
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    clickPlot(8);
    pointAt(9);
  });
  window()->drawLine();
  EXPECT_TRUE(asked);
  EXPECT_FALSE(leftShown());
  EXPECT_EQ(text("lblCurPosn"), "");
  EXPECT_EQ(picture(), before);
}

// ---- Expanded view ----

TEST_F(MarkersWindowTest, TheMenuExpandsBetweenTheMarkersAndBack) {
  open();
  clickPlot(8);
  clickPlot(15);
  window()->drawLine();
  const QImage whole = picture();
  QAction& expand = item("mnuProfileExpand");
  EXPECT_EQ(expand.text().remove(u'&').toStdString(), "Expand");
  expand.trigger();
  EXPECT_TRUE(state().expanded);
  EXPECT_EQ(expand.text().remove(u'&').toStdString(), "Normal");
  EXPECT_EQ(window()->plotView()->scale.left, double{state().leftMarker.x});
  expand.trigger();
  EXPECT_FALSE(state().expanded);
  EXPECT_EQ(expand.text().remove(u'&').toStdString(), "Expand");
  EXPECT_EQ(picture(), whole);
}

TEST_F(MarkersWindowTest, WithoutTwoMarkersNothingIsExpanded) {
  open();
  const QImage fresh = picture();
  item("mnuProfileExpand").trigger();
  EXPECT_FALSE(state().expanded);
  EXPECT_EQ(picture(), fresh);
  clickPlot(8);
  item("mnuProfileExpand").trigger();
  EXPECT_FALSE(state().expanded);
}

TEST_F(MarkersWindowTest, MarkersTooNearToEachOtherAreNotExpandedBetween) {
  open();
  window()->Picture1_MouseDown(8.0F, 0);
  window()->Picture1_MouseDown(8.05F, 0);
  item("mnuProfileExpand").trigger();
  EXPECT_FALSE(state().expanded);
  EXPECT_EQ(item("mnuProfileExpand").text().remove(u'&').toStdString(), "Expand");
}

TEST_F(MarkersWindowTest, ClearingAMarkerKeepsTheExpandedView) {
  open();
  clickPlot(8);
  clickPlot(15);
  item("mnuProfileExpand").trigger();
  const PlotScale scale = window()->plotView()->scale;
  click("cmdClear2");
  EXPECT_TRUE(state().expanded);
  EXPECT_EQ(window()->plotView()->scale, scale);
}

TEST_F(MarkersWindowTest, AMarkerPlacedTooNearInTheExpandedViewLeadsBackToTheWholePath) {
  open();
  clickPlot(8);
  clickPlot(15);
  item("mnuProfileExpand").trigger();
  click("cmdClear2");
  const float near = state().leftMarker.x + 0.05F;
  window()->Picture1_MouseDown(near, 0);
  ASSERT_TRUE(rightShown());
  window()->drawLine();
  EXPECT_FALSE(state().expanded);
  EXPECT_EQ(item("mnuProfileExpand").text().remove(u'&').toStdString(), "Expand");
  EXPECT_FALSE(state().flags.drawing);
}

TEST_F(MarkersWindowTest, MarkersAreWhereTheyAreSeenInTheExpandedView) {
  open();
  clickPlot(8);
  clickPlot(15);
  item("mnuProfileExpand").trigger();
  pointAt(11);
  EXPECT_AT(std::stod(text("lblCurPosn")), 11);
  EXPECT_NEAR(std::stod(labels(1).toCursor), 3, 0.1);
}

// ---- Datum ----

TEST_F(MarkersWindowTest, MarkersOfTheOlderDatumHaveTheirConvertedPositionToo) {
  control_.let_StaDatum(0);
  open();
  clickPlot(8);
  const ProfileMarker& marker = state().leftMarker;
  EXPECT_NE(marker.position.longitude, marker.converted.longitude);
  // The shift of the conterminous United States is tens of metres.
  EXPECT_NEAR(marker.position.latitude, marker.converted.latitude, 0.002);
  EXPECT_NEAR(marker.position.longitude, marker.converted.longitude, 0.002);
}

TEST_F(MarkersWindowTest, MarkersOfTheNewerDatumAreTheirOwnConvertedPosition) {
  control_.let_StaDatum(2);
  open();
  clickPlot(8);
  const ProfileMarker& marker = state().leftMarker;
  EXPECT_EQ(marker.position.latitude, marker.converted.latitude);
  EXPECT_EQ(marker.position.longitude, marker.converted.longitude);
}

}  // namespace
}  // namespace zel
