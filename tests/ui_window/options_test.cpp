// E-Curve and % Fresnel options, the box of the custom factor, and the slider.
#include "window_fixture.h"

namespace zel {
namespace {

class OptionsTest : public test::WindowTest {
 protected:
  const ProfileViewState& state() const { return window()->state(); }
  bool isChosen(const char* option) const { return control<QRadioButton>(option).isChecked(); }
  bool redrawPending() const { return window()->findChild<QTimer*>(QStringLiteral("Timer1"))->isActive(); }
  void placeBothMarkers() const {
    clickPlot(5, Qt::LeftButton);
    clickPlot(20, Qt::RightButton);
    if (!state().rightMarker.shown) clickPlot(20, Qt::LeftButton);
    ASSERT_TRUE(state().leftMarker.shown && state().rightMarker.shown);
  }
  float middleRise() const { return state().curve[state().path.samples / 2]; }
};

TEST_F(OptionsTest, ThePresetsOfTheECurveSetTheirFactorAndRedraw) {
  open();
  const QImage before = picture();
  click("optCurve(1)");
  EXPECT_EQ(state().inputs.k, 1.0F);
  EXPECT_EQ(state().riseK, 1.0F);
  EXPECT_EQ(boxText("tbxCurve"), "1.000");
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_NE(picture(), before) << "at once";
  EXPECT_FALSE(redrawPending());
  click("optCurve(0)");
  EXPECT_EQ(state().inputs.k, 1.33333F) << "not 1.333";
  EXPECT_EQ(boxText("tbxCurve"), "1.333");
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_TRUE(dialogs_->messages.empty()) << "no marker, no question";
}

TEST_F(OptionsTest, WithBothMarkersAnotherECurveIsAskedFor) {
  open();
  placeBothMarkers();
  dialogs_->answer = MessageAnswer::kYes;
  click("optCurve(1)");
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(dialogs_->messages[0].text, "Warning, Changing E-Curve will clear your markers.\r\nContinue?");
  EXPECT_EQ(dialogs_->messages[0].buttons, MessageButtons::kYesNo);
  EXPECT_EQ(state().inputs.k, 1.0F);
  EXPECT_EQ(state().riseK, 1.0F);
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_FALSE(state().rightMarker.shown);
  EXPECT_EQ(text("lblMk1Lat"), "");
}

TEST_F(OptionsTest, NoKeepsFactorMarkersAndPicture) {
  open();
  click("optCurve(0)");
  placeBothMarkers();
  const QImage before = picture();
  dialogs_->answer = MessageAnswer::kNo;
  click("optCurve(1)");
  EXPECT_EQ(state().inputs.k, 1.33333F);
  EXPECT_TRUE(isChosen("optCurve(0)"));
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_EQ(boxText("tbxCurve"), "1.333");
  EXPECT_TRUE(state().leftMarker.shown && state().rightMarker.shown);
  EXPECT_EQ(picture(), before);
  EXPECT_EQ(dialogs_->messages.size(), 1U) << "selecting the option again asks nothing";
}

// 1.330 is neither 1.333 nor 1.000.
TEST_F(OptionsTest, NoWithTheStoredFactorOf133SelectsTheCustomOption) {
  open();
  ASSERT_EQ(state().inputs.k, 1.33F);
  placeBothMarkers();
  dialogs_->answer = MessageAnswer::kNo;
  click("optCurve(1)");
  EXPECT_TRUE(isChosen("optCurve(2)"));
  EXPECT_TRUE(box("tbxCurve").isEnabled());
  EXPECT_EQ(boxText("tbxCurve"), "1.33");
  EXPECT_EQ(state().inputs.k, 1.33F);
  EXPECT_EQ(state().riseK, 1.33F);
}

TEST_F(OptionsTest, OneMarkerIsClearedWithoutAQuestion) {
  open();
  clickPlot(5);
  ASSERT_TRUE(state().leftMarker.shown);
  click("optCurve(1)");
  EXPECT_TRUE(dialogs_->messages.empty());
  EXPECT_FALSE(state().leftMarker.shown);
}

TEST_F(OptionsTest, TheCustomOptionTakesTheBoxEachTimeItIsClicked) {
  open();
  click("optCurve(2)");
  EXPECT_TRUE(box("tbxCurve").isEnabled());
  EXPECT_EQ(state().inputs.k, 1.33F) << "what the box shows";
  EXPECT_EQ(boxText("tbxCurve"), "1.330");
  type("tbxCurve", "1.5");
  EXPECT_EQ(state().inputs.k, 1.33F) << "while it is typed";
  click("optCurve(2)");
  EXPECT_EQ(state().inputs.k, 1.5F);
  EXPECT_EQ(state().riseK, 1.5F);
  EXPECT_EQ(boxText("tbxCurve"), "1.500");
}

TEST_F(OptionsTest, ATypedFactorWaitsForTheNextClickWithItsRise) {
  open();
  click("optCurve(2)");
  const float rise = middleRise();
  const QImage before = picture();
  type("tbxCurve", "0.6");
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Tab);
  EXPECT_EQ(state().inputs.k, 0.6F);
  EXPECT_EQ(boxText("tbxCurve"), ".600");
  EXPECT_FALSE(redrawPending());
  EXPECT_EQ(picture(), before);
  EXPECT_NE(text("lblClearance").find("(k 1.33, not yet 0.6)"), std::string::npos) << text("lblClearance");
  window()->Timer1_Timer();
  EXPECT_EQ(middleRise(), rise) << "a redraw keeps the rise: it is meant";
  EXPECT_EQ(state().riseK, 1.33F);
  click("optCurve(2)");
  EXPECT_GT(middleRise(), 2 * rise);
  EXPECT_EQ(text("lblClearance").find("not yet"), std::string::npos) << text("lblClearance");
}

TEST_F(OptionsTest, TheBoxOfTheCustomFactorHasItsOwnNarrowerRange) {
  struct Case {
    const char* keys;
    const char* shown;
    float k;
  };
  open();
  click("optCurve(2)");
  for (const Case& c : {Case{"1.76", "1.750", 1.75F},
                        {"50", "1.750", 1.75F},
                        {"0.2", ".500", 0.5F},
                        {"x", ".500", 0.5F},
                        {"1.2344", "1.234", 1.2344F}}) {
    type("tbxCurve", c.keys);
    EXPECT_EQ(boxText("tbxCurve"), c.keys) << "left alone while it is typed";
    QTest::keyClick(&box("tbxCurve"), Qt::Key_Tab);
    EXPECT_EQ(boxText("tbxCurve"), c.shown);
    EXPECT_EQ(state().inputs.k, c.k);
  }
}

TEST_F(OptionsTest, LeavingTheBoxUntouchedKeepsTheStoredFactor) {
  set("Profile", "Prf_Crv", "1.2345");
  open();
  ASSERT_EQ(boxText("tbxCurve"), "1.23");
  box("tbxCurve").setFocus();
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Tab);
  EXPECT_EQ(state().inputs.k, 1.2345F);
  EXPECT_EQ(boxText("tbxCurve"), "1.23");
}

TEST_F(OptionsTest, AnEmptyFactorKeepsTheOneBefore) {
  open();
  click("optCurve(2)");
  box("tbxCurve").setFocus();
  box("tbxCurve").selectAll();
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Delete);
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Tab);
  EXPECT_EQ(boxText("tbxCurve"), "");
  EXPECT_EQ(state().inputs.k, 1.33F);
  click("optCurve(2)");
  EXPECT_EQ(boxText("tbxCurve"), "1.330");
  EXPECT_EQ(state().inputs.k, 1.33F);
}

TEST_F(OptionsTest, EnterInTheBoxTakesTheFactorWithItsRise) {
  open();
  click("optCurve(2)");
  type("tbxCurve", "1.1");
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Return);
  EXPECT_EQ(state().inputs.k, 1.1F);
  EXPECT_EQ(state().riseK, 1.1F);
  EXPECT_EQ(boxText("tbxCurve"), "1.100");
}

TEST_F(OptionsTest, NoAfterEnterLeavesTheFactorUnchanged) {
  open();
  click("optCurve(2)");
  placeBothMarkers();
  dialogs_->answer = MessageAnswer::kNo;
  type("tbxCurve", "1.1");
  QTest::keyClick(&box("tbxCurve"), Qt::Key_Return);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(state().inputs.k, 1.33F);
  EXPECT_EQ(state().riseK, 1.33F);
  EXPECT_TRUE(state().leftMarker.shown && state().rightMarker.shown);
}

TEST_F(OptionsTest, ThePresetsOfTheFresnelZoneRedrawAtOnce) {
  open();
  QImage before = picture();
  const auto changes = [&](const char* option, float fraction, const char* shown) {
    SCOPED_TRACE(option);
    click(option);
    EXPECT_EQ(state().inputs.fresnelFraction, fraction);
    EXPECT_EQ(boxText("tbxpctFresnel"), shown);
    EXPECT_FALSE(redrawPending());
    EXPECT_NE(picture(), before);
    before = picture();
  };
  changes("optFresnel(1)", 0.6F, "60");
  changes("optFresnel(3)", 0.0F, "");
  changes("optFresnel(0)", 1.0F, "100");
}

TEST_F(OptionsTest, TheCustomOptionOfTheFresnelZoneTakesItsBox) {
  open();
  click("optFresnel(1)");
  click("optFresnel(2)");
  EXPECT_TRUE(isChosen("optFresnel(2)"));
  EXPECT_EQ(state().inputs.fresnelFraction, 0.6F);
  EXPECT_EQ(boxText("tbxpctFresnel"), "60");
}

TEST_F(OptionsTest, NoneDrawsNoFresnelLineUntilADeferredRedrawMakesItOnePercent) {
  open();
  click("optFresnel(3)");
  EXPECT_TRUE(isChosen("optFresnel(3)"));
  EXPECT_EQ(state().fresnel.size(), 0U);
  control<QSlider>("Slider1").setValue(150);
  EXPECT_EQ(state().fresnel.size(), 0U) << "a redraw at once keeps it";
  type("tbxAnt1AGL", "31");
  EXPECT_EQ(state().fresnel.size(), 0U);
  window()->Timer1_Timer();
  EXPECT_FLOAT_EQ(state().inputs.fresnelFraction, 0.01F);
  EXPECT_GT(state().fresnel.size(), 0U) << "it is meant";
  EXPECT_EQ(boxText("tbxpctFresnel"), "1");
}

TEST_F(OptionsTest, TheSliderRedrawsAtOnce) {
  open();
  auto& slider = control<QSlider>("Slider1");
  const QImage before = picture();
  const double top = window()->plotView()->scale.top;
  slider.setFocus();
  QTest::keyClick(&slider, Qt::Key_PageUp);
  EXPECT_EQ(slider.value(), 150);
  EXPECT_NE(picture(), before);
  EXPECT_GT(window()->plotView()->scale.top, top);
  EXPECT_FALSE(redrawPending());
  slider.setValue(9999);
  EXPECT_EQ(slider.value(), 500);
  slider.setValue(-5);
  EXPECT_EQ(slider.value(), 0);
  slider.setValue(100);
  EXPECT_EQ(picture(), before);
}

}  // namespace
}  // namespace zel
