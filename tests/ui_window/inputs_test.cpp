// The boxes of the control panel, as they are typed into.
#include <QElapsedTimer>

#include "window_fixture.h"

namespace zel {
namespace {

class InputsTest : public test::WindowTest {
 protected:
  const ProfileInputs& inputs() const { return window()->state().inputs; }
  const QTimer& timer1() const { return *window()->findChild<QTimer*>(QStringLiteral("Timer1")); }
  bool redrawPending() const { return timer1().isActive(); }
  // Takes the text away and leaves the box empty.
  void empty(const char* name) const {
    QLineEdit& line = box(name);
    line.setFocus();
    line.selectAll();
    QTest::keyClick(&line, Qt::Key_Delete);
  }
  void leave(const char* name) const { QTest::keyClick(&box(name), Qt::Key_Tab); }
};

TEST_F(InputsTest, AnAntennaHeightAboveItsMaximumIsClampedWhileItIsTyped) {
  open();
  for (const char* name : {"tbxAnt1AGL", "tbxAnt2AGL"}) {
    SCOPED_TRACE(name);
    const auto station = name[6] == '1' ? 0U : 1U;
    type(name, "90");
    EXPECT_EQ(boxText(name), "90");
    EXPECT_EQ(inputs().antennaHeights[station], 90);
    QTest::keyClicks(&box(name), QStringLiteral("0"));
    EXPECT_EQ(boxText(name), "750");
    EXPECT_EQ(inputs().antennaHeights[station], 750);
  }
}

TEST_F(InputsTest, ZeroAndTextThatIsNoNumberAreClampedAtOnce) {
  open();
  for (const char* keys : {"0", "-", "x"}) {
    type("tbxAnt1AGL", keys);
    EXPECT_EQ(boxText("tbxAnt1AGL"), "1") << keys;
    EXPECT_EQ(inputs().antennaHeights[0], 1);
    type("tbxFreq", keys);
    EXPECT_EQ(boxText("tbxFreq"), "20") << keys;
    type("tbxpctFresnel", keys);
    EXPECT_EQ(boxText("tbxpctFresnel"), "1") << keys;
  }
}

TEST_F(InputsTest, TextIsOnlyRewrittenWhenTheClampChangedTheValue) {
  open();
  type("tbxAnt1AGL", "31.0 m");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "31.0 m");
  EXPECT_EQ(inputs().antennaHeights[0], 31);
  leave("tbxAnt1AGL");
  window()->Timer1_Timer();
  EXPECT_EQ(boxText("tbxAnt1AGL"), "31.0 m");
  type("tbxFreq", "446.00625");
  leave("tbxFreq");
  EXPECT_EQ(boxText("tbxFreq"), "446.00625");
  EXPECT_EQ(inputs().frequency, 446.00625F);
}

TEST_F(InputsTest, AFrequencyInTheMakingIsClampedWhenItsBoxIsLeft) {
  open();
  type("tbxFreq", "2");
  EXPECT_EQ(boxText("tbxFreq"), "2");
  EXPECT_EQ(inputs().frequency, 950) << "not a value yet";
  EXPECT_EQ(text("lblLambda"), ".316");
  leave("tbxFreq");
  EXPECT_EQ(boxText("tbxFreq"), "20");
  EXPECT_EQ(inputs().frequency, 20);
  EXPECT_EQ(text("lblLambda"), "15");
}

TEST_F(InputsTest, ATypedFrequencyShowsItsWavelengthAtOnceAndItsLossesWithTheRedraw) {
  open();
  const std::string freeSpace = text("lblFSLoss");
  const std::string modeled = text("lblMLoss");
  type("tbxFreq", "150");
  EXPECT_EQ(text("lblLambda"), "2");
  EXPECT_EQ(text("lblFSLoss"), freeSpace);
  EXPECT_TRUE(redrawPending());
  window()->Timer1_Timer();
  EXPECT_FALSE(redrawPending());
  // 20 log10(950 / 150) dB less.
  EXPECT_NEAR(std::stod(freeSpace) - std::stod(text("lblFSLoss")), 16.03, 0.011);
  EXPECT_NE(text("lblMLoss"), modeled);
  type("tbxFreq", "999999");
  EXPECT_EQ(boxText("tbxFreq"), "20000");
  EXPECT_EQ(text("lblLambda"), ".015");
}

// Times are compared one way only: a busy machine may be late, never early.
TEST_F(InputsTest, APauseOf750MillisecondsClampsAndRedraws) {
  set("Settings", "DispUnits", "1");
  open();
  const std::string freeSpace = text("lblFSLoss");
  type("tbxAnt1AGL", "1");
  QElapsedTimer sinceTheLastKey;
  sinceTheLastKey.start();
  type("tbxFreq", "5");
  EXPECT_EQ(boxText("tbxFreq"), "5");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "3") << "its box was left";
  EXPECT_TRUE(QTest::qWaitFor([this] { return boxText("tbxFreq") == "20"; }));
  EXPECT_GE(sinceTheLastKey.elapsed(), 750);
  EXPECT_LT(timer1().remainingTime(), 100) << "the clamp does not put the redraw off";
  EXPECT_TRUE(QTest::qWaitFor([&] { return text("lblFSLoss") != freeSpace; }))
      << "drawn with what is complete";
  EXPECT_FALSE(redrawPending());
}

TEST_F(InputsTest, AnAntennaHeightInTheMakingIsCompleteAfterThePause) {
  set("Settings", "DispUnits", "1");
  open();
  type("tbxAnt2AGL", "1");
  EXPECT_EQ(inputs().antennaHeights[1], 30);
  window()->Timer1_Timer();
  EXPECT_EQ(boxText("tbxAnt2AGL"), "3");
  EXPECT_EQ(inputs().antennaHeights[1], 1);
}

TEST_F(InputsTest, EachKeyPutsTheRedrawOff) {
  open();
  const std::string freeSpace = text("lblFSLoss");
  type("tbxFreq", "1");
  for (const char* key : {"5", "0"}) {
    QTest::qWait(60);
    const int left = timer1().remainingTime();
    QTest::keyClicks(&box("tbxFreq"), QLatin1String(key));
    EXPECT_GT(timer1().remainingTime(), left) << key;
  }
  EXPECT_EQ(boxText("tbxFreq"), "150") << "1 and 15 were in the making";
  EXPECT_EQ(text("lblFSLoss"), freeSpace);
}

TEST_F(InputsTest, Timer2ChecksTheFrequencyAndStops) {
  open();
  type("tbxFreq", "7");
  const auto* timer2 = window()->findChild<QTimer*>(QStringLiteral("Timer2"));
  EXPECT_TRUE(timer2->isActive());
  EXPECT_EQ(timer2->interval(), 750);
  EXPECT_TRUE(timer2->isSingleShot());
  window()->Timer2_Timer();
  EXPECT_FALSE(timer2->isActive());
  EXPECT_EQ(boxText("tbxFreq"), "20");
}

TEST_F(InputsTest, BothTimersAreStillAfterTheLoad) {
  open();
  for (const char* name : {"Timer1", "Timer2"}) {
    const auto* timer = window()->findChild<QTimer*>(QLatin1String(name));
    EXPECT_FALSE(timer->isActive()) << name;
    EXPECT_TRUE(timer->isSingleShot()) << name;
    EXPECT_EQ(timer->interval(), 750) << name;
  }
}

TEST_F(InputsTest, HeightsAreTypedInFeetAndHeldInWholeMetres) {
  set("Settings", "DispUnits", "1");
  open();
  type("tbxAnt1AGL", "100");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "100");
  EXPECT_EQ(inputs().antennaHeights[0], 30) << "30.48 m";
  type("tbxAnt1AGL", "2461");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "2461");
  EXPECT_EQ(inputs().antennaHeights[0], 750);
  type("tbxAnt1AGL", "9999");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "2461");
  type("tbxAnt1AGL", "1");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "1") << "0.3 m may become 100 ft";
  EXPECT_EQ(inputs().antennaHeights[0], 750);
  leave("tbxAnt1AGL");
  EXPECT_EQ(boxText("tbxAnt1AGL"), "3");
  EXPECT_EQ(inputs().antennaHeights[0], 1);
}

TEST_F(InputsTest, AnEmptyBoxStaysEmptyAndNothingIsDrawnUntilItHasAValue) {
  for (const char* name : {"tbxAnt1AGL", "tbxAnt2AGL", "tbxFreq"}) {
    SCOPED_TRACE(name);
    open();
    const QImage before = picture();
    empty(name);
    leave(name);
    window()->Timer1_Timer();
    control<QSlider>("Slider1").setValue(300);
    click("optFresnel(3)");
    EXPECT_EQ(boxText(name), "");
    EXPECT_EQ(picture(), before);
    EXPECT_FALSE(component_.state().bProfileFailed);
    type(name, "40");
    window()->Timer1_Timer();
    EXPECT_NE(picture(), before);
  }
  EXPECT_TRUE(dialogs_->messages.empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(InputsTest, AnEmptyPercentageKeepsTheLineThatIsDrawn) {
  open();
  const QImage before = picture();
  empty("tbxpctFresnel");
  leave("tbxpctFresnel");
  window()->Timer1_Timer();
  EXPECT_EQ(boxText("tbxpctFresnel"), "");
  EXPECT_EQ(picture(), before);
}

TEST_F(InputsTest, ACommaIsReadAsThePointWhereTheLanguageWritesOne) {
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  open();
  type("tbxFreq", "446,5");
  EXPECT_EQ(inputs().frequency, 446.5F);
  EXPECT_EQ(boxText("tbxFreq"), "446,5");
  click("optCurve(2)");
  type("tbxCurve", "1,5");
  leave("tbxCurve");
  EXPECT_EQ(inputs().k, 1.5F);
  type("tbxpctFresnel", "62,5");
  EXPECT_FLOAT_EQ(inputs().fresnelFraction, 0.625F);
  QLocale::setDefault(QLocale::c());
  type("tbxFreq", "446,5");
  EXPECT_EQ(inputs().frequency, 446) << "elsewhere a comma ends the number";
}

TEST_F(InputsTest, ATypedPercentageIsTheCustomOne) {
  open();
  type("tbxpctFresnel", "45");
  EXPECT_TRUE(control<QRadioButton>("optFresnel(2)").isChecked());
  EXPECT_FLOAT_EQ(inputs().fresnelFraction, 0.45F);
  EXPECT_TRUE(redrawPending());
  type("tbxpctFresnel", "150");
  EXPECT_EQ(boxText("tbxpctFresnel"), "100");
  EXPECT_EQ(inputs().fresnelFraction, 1);
  type("tbxpctFresnel", "0.5");
  EXPECT_EQ(boxText("tbxpctFresnel"), "1.5") << "the 0 is clamped before the rest is typed";
}

TEST_F(InputsTest, ATextWrittenByCodeStartsNothing) {
  open();
  box("tbxAnt1AGL").setText(QStringLiteral("900"));
  box("tbxFreq").setText(QStringLiteral("7"));
  box("tbxpctFresnel").setText(QStringLiteral("400"));
  EXPECT_FALSE(redrawPending());
  EXPECT_EQ(boxText("tbxAnt1AGL"), "900");
  EXPECT_EQ(inputs().antennaHeights[0], 30);
  EXPECT_EQ(inputs().frequency, 950);
  EXPECT_EQ(inputs().fresnelFraction, 1);
}

TEST_F(InputsTest, OnlyHeightsAndFrequencyRunTheModelAnew) {
  open();
  auto& loss = control<QLabel>("lblMLoss");
  loss.setText(QStringLiteral("kept"));
  click("optCurve(1)");
  click("optFresnel(1)");
  control<QSlider>("Slider1").setValue(50);
  EXPECT_EQ(text("lblMLoss"), "kept");
  type("tbxAnt2AGL", "750");
  EXPECT_EQ(text("lblMLoss"), "kept") << "with the redraw";
  window()->Timer1_Timer();
  const std::string at750 = text("lblMLoss");
  EXPECT_NE(at750, "kept");
  type("tbxAnt2AGL", "300");
  window()->Timer1_Timer();
  EXPECT_GT(std::stod(text("lblMLoss")), std::stod(at750)) << "a lower antenna loses more over the ridges";
}

TEST_F(InputsTest, TheDeferredRedrawBringsStoredValuesIntoTheWindowsRanges) {
  set("Profile", "Prf_HtL", "2000");
  set("Profile", "Prf_Freq", "30000");
  set("Profile", "Prf_Crv", "6");
  set("Profile", "Prf_Frez", "400");
  StationProfile_Type start = test::kRidgeStart;
  start.AntHt = -1;
  open(start);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "2000") << "shown as it is stored";
  window()->Timer1_Timer();
  EXPECT_EQ(boxText("tbxAnt1AGL"), "750");
  EXPECT_EQ(boxText("tbxFreq"), "20000");
  EXPECT_EQ(text("lblLambda"), ".015");
  EXPECT_EQ(boxText("tbxCurve"), "5.000");
  EXPECT_EQ(inputs().k, 5);
  EXPECT_EQ(boxText("tbxpctFresnel"), "100");
  EXPECT_EQ(inputs().fresnelFraction, 1);
}

TEST_F(InputsTest, AnAntennaOnTheGroundIsKeptByTheDeferredRedraw) {
  StationProfile_Type start = test::kRidgeStart;
  start.AntHt = 0;
  open(start);
  window()->Timer1_Timer();
  EXPECT_EQ(boxText("tbxAnt1AGL"), "0") << "only typing asks for a metre";
}

}  // namespace
}  // namespace zel
