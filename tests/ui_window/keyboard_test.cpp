// The plot under the keyboard alone: the pointer from sample to sample, markers, the expanded view.
#include <cmath>

#include "plot_probe.h"

namespace zel {
namespace {

class KeyboardTest : public test::PlotWindowTest {
 protected:
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&window()->picture(), key, modifiers);
  }
  double pointer() const { return double{window()->plotView()->strobe.x}; }
  double spacing() const { return state().path.spacing; }
  double samplesFrom(double x) const { return (pointer() - x) / spacing(); }
};

TEST_F(KeyboardTest, ThePlotHasTheKeyboardWhenTheWindowOpensAndShowsIt) {
  open();
  EXPECT_TRUE(window()->picture().hasFocus());
  const QImage focused = window()->picture().grab().toImage();
  EXPECT_EQ(focused.pixelColor(0, 0), window()->palette().color(QPalette::Highlight));
  box("tbxFreq").setFocus();
  EXPECT_NE(window()->picture().grab().toImage(), focused);
}

TEST_F(KeyboardTest, TheFirstArrowShowsThePointerAtTheStart) {
  open();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left}) {
    window()->drawLine();
    press(key);
    EXPECT_TRUE(window()->plotView()->strobe.shown);
    EXPECT_EQ(text("lblCurPosn"), "0.00");
  }
}

TEST_F(KeyboardTest, ArrowsStepASampleAndWithShiftTen) {
  open();
  press(Qt::Key_Right);
  const double start = pointer();
  press(Qt::Key_Right);
  EXPECT_NEAR(samplesFrom(start), 1, 1e-3);
  press(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_NEAR(samplesFrom(start), 11, 1e-3);
  press(Qt::Key_Left);
  EXPECT_NEAR(samplesFrom(start), 10, 1e-3);
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_NEAR(samplesFrom(start), 0, 1e-3);
}

TEST_F(KeyboardTest, HomeAndEndLeadToTheAntennas) {
  open();
  press(Qt::Key_End);
  EXPECT_NEAR(pointer(), state().plotIndex().endX(), 1e-5);
  EXPECT_NEAR(std::stod(text("lblCurPosn")), state().path.distance, 0.0051);
  press(Qt::Key_Home);
  EXPECT_NEAR(pointer(), state().plotIndex().startX(), 1e-5);
  EXPECT_EQ(text("lblCurPosn"), "0.00");
}

TEST_F(KeyboardTest, ArrowsStopWhereTheGroundEnds) {
  open();
  press(Qt::Key_Home);
  for (int i = 0; i < 100; ++i) press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(pointer(), 0);
  press(Qt::Key_End);
  for (int i = 0; i < 100; ++i) press(Qt::Key_Right, Qt::ShiftModifier);
  const double end = pointer();
  EXPECT_LE(end, state().path.extendedLength);
  press(Qt::Key_Right);
  EXPECT_EQ(pointer(), end);
  press(Qt::Key_Left);
  EXPECT_LT(pointer(), end) << "and back again";
  EXPECT_EQ(logged(), "");
}

TEST_F(KeyboardTest, ThePointerStandsOnTheGround) {
  open();
  press(Qt::Key_Home);
  press(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_NEAR(std::stod("0" + text("lblmbelowmouse")), 0, 0.05);
}

TEST_F(KeyboardTest, EnterPlacesMarkersWhereThePointerIs) {
  open();
  press(Qt::Key_Home);
  press(Qt::Key_Right, Qt::ShiftModifier);
  const double first = pointer();
  press(Qt::Key_Return);
  EXPECT_TRUE(state().leftMarker.shown);
  EXPECT_NEAR(double{state().leftMarker.x}, first, 1e-5);
  press(Qt::Key_Right, Qt::ShiftModifier);
  press(Qt::Key_Enter);
  EXPECT_TRUE(state().rightMarker.shown);
  EXPECT_NEAR(double{state().rightMarker.x} - first, 10 * spacing(), 1e-4);
  press(Qt::Key_Right);
  press(Qt::Key_Return);
  EXPECT_NEAR(double{state().rightMarker.x} - first, 10 * spacing(), 1e-4) << "both stand already";
}

TEST_F(KeyboardTest, EnterWithoutAPointerShowsOneAtTheStartAndPlacesTheMarkerThere) {
  open();
  press(Qt::Key_Return);
  EXPECT_TRUE(window()->plotView()->strobe.shown);
  EXPECT_NEAR(double{state().leftMarker.x}, state().plotIndex().startX(), 1e-5);
}

TEST_F(KeyboardTest, EnterAtBothEndsOfThePicturePlacesMarkers) {
  open();
  for (int i = 0; i < 100; ++i) press(Qt::Key_Left, Qt::ShiftModifier);
  press(Qt::Key_Return);
  EXPECT_TRUE(state().leftMarker.shown);
  press(Qt::Key_End);
  for (int i = 0; i < 100; ++i) press(Qt::Key_Right, Qt::ShiftModifier);
  press(Qt::Key_Return);
  EXPECT_TRUE(state().rightMarker.shown);
}

TEST_F(KeyboardTest, DeleteTakesTheMarkerThatIsNearerToThePointer) {
  open();
  clickPlot(5);
  clickPlot(20);
  pointAt(6);
  press(Qt::Key_Delete);
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_TRUE(state().rightMarker.shown);
  press(Qt::Key_Delete);
  EXPECT_FALSE(state().rightMarker.shown) << "the only one, however far";
  press(Qt::Key_Delete);
  EXPECT_EQ(logged(), "");

  clickPlot(5);
  clickPlot(20);
  pointAt(19);
  press(Qt::Key_Backspace);
  EXPECT_TRUE(state().leftMarker.shown);
  EXPECT_FALSE(state().rightMarker.shown);
}

TEST_F(KeyboardTest, DeleteWithShiftTakesBothMarkersAndLeavesAFreshPicture) {
  open();
  const QImage fresh = picture();
  clickPlot(5);
  clickPlot(20);
  press(Qt::Key_Delete, Qt::ShiftModifier);
  EXPECT_FALSE(state().leftMarker.shown || state().rightMarker.shown);
  EXPECT_EQ(picture(), fresh);
}

TEST_F(KeyboardTest, EscapeLeavesTheExpandedViewAndNothingElse) {
  open();
  press(Qt::Key_Escape);
  EXPECT_TRUE(window()->isVisible());
  clickPlot(5);
  clickPlot(20);
  item("mnuProfileExpand").trigger();
  ASSERT_TRUE(state().expanded);
  window()->picture().setFocus();
  press(Qt::Key_Escape);
  EXPECT_FALSE(state().expanded);
  EXPECT_TRUE(window()->isVisible());
  EXPECT_TRUE(state().leftMarker.shown && state().rightMarker.shown);
}

TEST_F(KeyboardTest, InTheExpandedViewThePointerStaysBetweenTheMarkers) {
  open();
  clickPlot(5);
  clickPlot(20);
  item("mnuProfileExpand").trigger();
  press(Qt::Key_Home);
  EXPECT_NEAR(pointer(), double{state().leftMarker.x}, 1e-5);
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_NEAR(pointer(), double{state().leftMarker.x}, 1e-5);
  press(Qt::Key_End);
  EXPECT_NEAR(pointer(), double{state().rightMarker.x}, 1e-5);
  press(Qt::Key_Right);
  EXPECT_NEAR(pointer(), double{state().rightMarker.x}, 1e-5);
}

TEST_F(KeyboardTest, ManyStepsLeaveNoTrace) {
  open();
  const QImage fresh = picture();
  press(Qt::Key_Home);
  const QImage home = picture();
  for (int i = 0; i < 150; ++i) press(Qt::Key_Right);
  press(Qt::Key_Home);
  EXPECT_EQ(picture(), home);
  window()->drawLine();
  EXPECT_EQ(picture(), fresh);
}

TEST_F(KeyboardTest, OtherKeysOfThePlotDoNothing) {
  open();
  const QImage fresh = picture();
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Space, Qt::Key_A, Qt::Key_PageUp, Qt::Key_F5})
    press(key);
  EXPECT_EQ(picture(), fresh);
}

TEST_F(KeyboardTest, KeysOfAProfileThatCouldNotBeSampledDoNothing) {
  open();
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  component_.refreshTerrainSources();
  window()->reload();
  const QImage before = picture();
  for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Right, Qt::Key_Return, Qt::Key_Delete, Qt::Key_Escape})
    press(key);
  EXPECT_EQ(picture(), before);
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
}

}  // namespace
}  // namespace zel
