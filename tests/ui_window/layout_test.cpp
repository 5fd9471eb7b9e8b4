// Sizes and places of the window's parts, and which resizing redraws at once. Fifteen twips are one logical
// pixel: 9315 x 6480 twips are 621 x 432 pixels.
#include <QMenuBar>
#include <QStyle>

#include "window_fixture.h"

namespace zel {
namespace {

class LayoutTest : public test::WindowTest {
 protected:
  const QTimer& timer1() const { return *window()->findChild<QTimer*>(QStringLiteral("Timer1")); }
  const QWidget& room() const { return *window()->centralWidget(); }
  // The picture's height is what the slider row (540 twips) and the panel (3190 twips) leave.
  void expectRules() const {
    const QRect plot = window()->picture().geometry();
    EXPECT_EQ(plot, QRect(0, 0, room().width(), room().height() - 36 - 213));
    const QRect slider = control<QSlider>("Slider1").geometry();
    EXPECT_EQ(slider.top(), plot.bottom() + 1);
    EXPECT_EQ(slider.height(), 36);
    const QRect panel = window()->panel().geometry();
    EXPECT_EQ(panel.top(), slider.bottom() + 1);
    EXPECT_EQ(panel.width(), room().width() - 3) << "40 twips narrower";
    EXPECT_GE(panel.height(), 198) << "2970 twips";
    EXPECT_LE(panel.bottom(), room().height() - 1);
    EXPECT_LT(slider.right(), control("clearanceRow").geometry().left());
    EXPECT_LT(control("clearanceRow").geometry().right(), room().width());
  }
};

TEST_F(LayoutTest, ItComesUpWith6200TwipsUnderItsMenuBar) {
  open();
  EXPECT_EQ(window()->width(), 621) << "9315 twips";
  EXPECT_EQ(room().height(), 413) << "6200 twips; the caption is the desktop's own";
  EXPECT_EQ(window()->height(), 413 + window()->MenuHeight());
  expectRules();
}

TEST_F(LayoutTest, MenuAndCaptionHeightsAreThoseOfTheSystem) {
  open();
  EXPECT_EQ(window()->MenuHeight(), window()->menuBar()->height());
  EXPECT_GT(window()->MenuHeight(), 10);
  EXPECT_EQ(window()->WindowTitleHeight(), window()->style()->pixelMetric(QStyle::PM_TitleBarHeight));
  EXPECT_GT(window()->WindowTitleHeight(), 10);
}

TEST_F(LayoutTest, ASmallerSizeSnapsBackTo9315By6480Twips) {
  open();
  window()->resize(5000 / 15, 3000 / 15);
  settle();
  EXPECT_EQ(window()->size(), QSize(621, 432));
  expectRules();
  window()->resize(5000 / 15, 900);
  settle();
  EXPECT_EQ(window()->size(), QSize(621, 900));
  window()->resize(900, 3000 / 15);
  settle();
  EXPECT_EQ(window()->size(), QSize(900, 432));
  expectRules();
}

TEST_F(LayoutTest, ANormalWindowIsRedrawnWhenTheResizingHasStopped) {
  open();
  const QImage before = picture();
  window()->resize(900, 700);
  settle();
  expectRules();
  EXPECT_EQ(picture(), before) << "stretched until then";
  EXPECT_TRUE(timer1().isActive());
  window()->Timer1_Timer();
  EXPECT_EQ(picture().size(), QSize(900, window()->picture().height()));
  EXPECT_FALSE(timer1().isActive());
}

TEST_F(LayoutTest, AMaximisedWindowIsRedrawnAtOnce) {
  open();
  window()->showMaximized();
  settle();
  ASSERT_TRUE(window()->isMaximized());
  expectRules();
  EXPECT_TRUE(window()->picture().canvasFits());
  EXPECT_FALSE(timer1().isActive());
  window()->showNormal();
  settle();
  EXPECT_EQ(window()->width(), 621);
  EXPECT_TRUE(timer1().isActive());
}

TEST_F(LayoutTest, AMinimisedWindowIsLeftAlone) {
  open();
  const QImage before = picture();
  window()->showMinimized();
  settle();
  window()->Form_Resize();
  EXPECT_FALSE(timer1().isActive());
  EXPECT_EQ(picture(), before);
}

TEST_F(LayoutTest, ShowingItStartsNoTimer) {
  open();
  EXPECT_FALSE(timer1().isActive());
  EXPECT_TRUE(window()->picture().canvasFits());
}

TEST_F(LayoutTest, AResizeBeforeTheFirstDrawingRefreshesTheFrequencyAndDraws) {
  FrmProfile& window = open();
  box("tbxFreq").setText(QStringLiteral("?"));
  window.Form_Load();  // sets the resample flag
  box("tbxFreq").setText(QStringLiteral("?"));
  window.resize(700, 600);
  settle();
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_FALSE(window.state().flags.resample);
  EXPECT_TRUE(window.picture().canvasFits());
}

TEST_F(LayoutTest, TypedValuesStayWhenTheWindowIsResized) {
  open();
  type("tbxFreq", "2");  // in the making
  window()->resize(900, 700);
  settle();
  EXPECT_EQ(boxText("tbxFreq"), "2");
}

TEST_F(LayoutTest, ALargerFontLeavesThePlotItsRoom) {
  open();
  QFont large = QApplication::font();
  large.setPointSize(14);
  QApplication::setFont(large);
  settle();
  expectRules();
  EXPECT_LE(window()->minimumSizeHint().width(), 621);
  EXPECT_TRUE(timer1().isActive()) << "the picture is lower than before";
}

TEST_F(LayoutTest, AWideWindowGivesItsWidthToPictureAndPanel) {
  open();
  window()->resize(1600, 900);
  settle();
  expectRules();
  EXPECT_LE(control<QSlider>("Slider1").width(), 320) << "the read-out beside has the rest";
}

}  // namespace
}  // namespace zel
