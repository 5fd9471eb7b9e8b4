// What the window shows when it is opened, from the stations and each of the settings.
#include <QGroupBox>

#include "profile/calculation/earth_curvature.h"
#include "window_fixture.h"

namespace zel {
namespace {

constexpr StationProfile_Type kStartWithoutHeight{36.40, -84.35, -1.0F};
constexpr StationProfile_Type kEndWithoutHeight{36.22, -84.12, -1.0F};
// 0.15 km, under the least length of 0.2 km.
constexpr StationProfile_Type kNearEnd{36.40, -84.3483, 30.0F};

class LoadTest : public test::WindowTest {
 protected:
  void openAnew(const StationProfile_Type& start = test::kRidgeStart,
                const StationProfile_Type& end = test::kRidgeEnd) {
    control_.UnloadMainForm();
    settle();
    open(start, end);
  }
  int chosen(const char* array, int members) const {
    for (int i = 0; i < members; ++i) {
      const std::string name = std::string(array) + "(" + std::to_string(i) + ")";
      if (control<QRadioButton>(name.c_str()).isChecked()) return i;
    }
    return -1;
  }
  int curve() const { return chosen("optCurve", 3); }
  int fresnel() const { return chosen("optFresnel", 4); }
  std::string frameTitle(const char* name) const {
    return control<QGroupBox>(name).title().remove(u'&').toStdString();
  }
  const ProfileInputs& inputs() const { return window()->state().inputs; }
};

TEST_F(LoadTest, WithoutSettingsEveryInputShowsItsDefault) {
  open(kStartWithoutHeight, kEndWithoutHeight);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "30");
  EXPECT_EQ(boxText("tbxAnt2AGL"), "30");
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_EQ(text("lblLambda"), ".316");
  EXPECT_EQ(boxText("tbxCurve"), "1.33");
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_EQ(curve(), 0);
  EXPECT_EQ(boxText("tbxpctFresnel"), "100");
  EXPECT_EQ(fresnel(), 0);
  EXPECT_EQ(control<QSlider>("Slider1").value(), 100);
  EXPECT_EQ(inputs().source, 3);
  EXPECT_EQ(inputs().calcMethod, 0);
  EXPECT_EQ(inputs().dispUnits, 0);
  EXPECT_EQ(inputs().k, 1.33F);
  EXPECT_EQ(inputs().fresnelFraction, 1.0F);
  // 100 points a kilometre would be 2870: the maximum of 1000 holds.
  EXPECT_EQ(window()->state().path.intervals, 1000);
}

TEST_F(LoadTest, TheFirstDrawingIsDoneWhenTheCallReturns) {
  control_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
  ASSERT_NE(window(), nullptr);
  EXPECT_FALSE(window()->state().flags.resample);
  EXPECT_FALSE(window()->state().flags.loading);
  EXPECT_FALSE(window()->state().flags.modeledLossPending);
  EXPECT_TRUE(window()->picture().canvasFits());
}

TEST_F(LoadTest, AnAntennaHeightBelowZeroComesFromTheSettings) {
  set("Profile", "Prf_HtL", "45");
  set("Profile", "Prf_HtR", "55");
  open(kStartWithoutHeight, test::kRidgeEnd);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "45");
  EXPECT_EQ(boxText("tbxAnt2AGL"), "30");
  openAnew(test::kRidgeStart, kEndWithoutHeight);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "30");
  EXPECT_EQ(boxText("tbxAnt2AGL"), "55");
  StationProfile_Type ground = test::kRidgeStart;
  ground.AntHt = 0;
  openAnew(ground, test::kRidgeEnd);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "0") << "a height of 0 is given, it is not missing";
}

TEST_F(LoadTest, HeightsOfTheSettingsAreMetresAndShownInFeet) {
  set("Settings", "DispUnits", "1");
  set("Profile", "Prf_HtL", "100");
  open(kStartWithoutHeight, test::kRidgeEnd);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "328") << "100 m are 328.08 ft";
  EXPECT_EQ(boxText("tbxAnt2AGL"), "98") << "30 m are 98.43 ft";
  EXPECT_EQ(inputs().antennaHeights[0], 100);
  EXPECT_EQ(text("lblAGLStart"), "Ant AGL (ft)");
  EXPECT_EQ(text("lblRange"), "Range mi");
  EXPECT_EQ(text("lblDist"), "17.9") << "28.7 km";
}

TEST_F(LoadTest, UnitsAndMethodOtherThan0Or1ReadAs0) {
  for (const char* stored : {"2", "-1", "7", "x"}) {
    SCOPED_TRACE(stored);
    set("Settings", "DispUnits", stored);
    set("Settings", "CalcMethod", stored);
    openAnew();
    EXPECT_EQ(inputs().dispUnits, 0);
    EXPECT_EQ(inputs().calcMethod, 0);
    EXPECT_EQ(text("lblRange"), "Range km");
    EXPECT_EQ(boxText("tbxFreq"), "950");
  }
  set("Settings", "CalcMethod", "1");
  openAnew();
  EXPECT_EQ(inputs().calcMethod, 1);
}

TEST_F(LoadTest, AnUnknownTerrainSourceBecomes3AndIsNotWrittenBack) {
  for (const char* stored : {"5", "0", "-1", "4", "100", "abc"}) {
    SCOPED_TRACE(stored);
    set("Profile", "Prf_TRes", stored);
    openAnew();
    EXPECT_EQ(inputs().source, 3);
    EXPECT_EQ(store_->ReadSetting("Host Planner", "Profile", "Prf_TRes", "?"), stored);
  }
  for (const int code : {1, 2, 3, 7, 9}) {
    set("Profile", "Prf_TRes", std::to_string(code));
    openAnew();
    EXPECT_EQ(inputs().source, code);
  }
}

TEST_F(LoadTest, TheContourFlagTakesTheSourceOfTheContours) {
  set("Profile", "Prf_TRes", "7");
  FrmProfile& window = open();
  EXPECT_EQ(inputs().source, 7);
  window.contour = true;
  window.InitFromRegistry();
  EXPECT_EQ(inputs().source, 3) << "the default";
  set("Contour", "Con_TRes", "9");
  window.InitFromRegistry();
  EXPECT_EQ(inputs().source, 9);
  set("Contour", "Con_TRes", "6");
  window.InitFromRegistry();
  EXPECT_EQ(inputs().source, 3);
}

TEST_F(LoadTest, TheECurveOptionFollowsTwoDecimalsAndTheFactorKeepsItsOwnValue) {
  struct Case {
    const char* stored;
    int option;
    const char* shown;
    float k;
  };
  const Case cases[] = {{"1.33", 0, "1.33", 1.33F},    {"1.3333", 0, "1.33", 1.3333F},
                        {"1.333", 0, "1.33", 1.333F},  {"1", 1, "1", 1.0F},
                        {"1.004", 1, "1", 1.004F},     {"1.2", 2, "1.2", 1.2F},
                        {"0.6667", 2, ".67", 0.6667F}, {"5", 2, "5", 5.0F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.stored);
    set("Profile", "Prf_Crv", c.stored);
    openAnew();
    EXPECT_EQ(curve(), c.option);
    EXPECT_EQ(boxText("tbxCurve"), c.shown);
    EXPECT_EQ(box("tbxCurve").isEnabled(), c.option == 2);
    EXPECT_EQ(inputs().k, c.k);
    EXPECT_EQ(window()->state().riseK, c.k);
  }
}

// 1.33 x 6378.388 km are 8483 km, 1.33333 x 6378.388 km are 8504 km.
TEST_F(LoadTest, TheStoredFactorGivesTheRiseUntilTheOptionIsClicked) {
  set("Profile", "Prf_Crv", "1.33");
  open();
  ASSERT_EQ(curve(), 0);
  ASSERT_EQ(effectiveRadius(1.33F), 8483);
  const ProfileViewState& state = window()->state();
  const std::int32_t middle = state.path.samples / 2;
  const double halfLength = state.path.extendedLength / 2;
  EXPECT_NEAR(state.curve[middle], 1000 * halfLength * halfLength / (2 * 8483.0), 0.001)
      << "metres, as a parabola";
  click("optCurve(0)");
  EXPECT_EQ(inputs().k, 1.33333F);
  EXPECT_EQ(boxText("tbxCurve"), "1.333");
  EXPECT_NEAR(state.curve[middle], 1000 * halfLength * halfLength / (2 * 8504.0), 0.001)
      << "metres, as a parabola";
}

TEST_F(LoadTest, TheFresnelOptionFollowsThePercentage) {
  struct Case {
    const char* stored;
    int option;
    const char* shown;
    float fraction;
  };
  const Case cases[] = {{"100", 0, "100", 1.0F},
                        {"60", 1, "60", 0.6F},
                        {"0", 3, "", 0.0F},
                        {"45", 2, "45", 0.45F},
                        {"none", 3, "", 0.0F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.stored);
    set("Profile", "Prf_Frez", c.stored);
    openAnew();
    EXPECT_EQ(fresnel(), c.option);
    EXPECT_EQ(boxText("tbxpctFresnel"), c.shown);
    EXPECT_EQ(inputs().fresnelFraction, c.fraction);
    EXPECT_EQ(window()->state().fresnel.size() == 0, c.fraction == 0.0F);
  }
}

TEST_F(LoadTest, TheFrequencyIsShownWithItsWavelength) {
  set("Profile", "Prf_Freq", "446.5");
  open();
  EXPECT_EQ(boxText("tbxFreq"), "446.5");
  EXPECT_EQ(text("lblLambda"), ".672");
  set("Profile", "Prf_Freq", "60");
  openAnew();
  EXPECT_EQ(text("lblLambda"), "5");
}

TEST_F(LoadTest, StationsAreShownInTheHostsFormatWithTheirDatumOnceItIsSet) {
  open();
  EXPECT_EQ(text("lblSLat"), "36-24-00.0 N");
  EXPECT_EQ(text("lblSLon"), "84-21-00.0 W");
  EXPECT_EQ(text("lblELat"), "36-13-12.0 N");
  EXPECT_EQ(text("lblELon"), "84-07-12.0 W");
  EXPECT_EQ(frameTitle("fraStart"), "Start Point") << "no datum was ever set";
  control_.let_StaDatum(1);
  openAnew();
  EXPECT_EQ(frameTitle("fraStart"), "Start Point (NAD-83)");
  EXPECT_EQ(frameTitle("fraEnd"), "End Point (NAD-83)");
  control_.let_StaDatum(0);
  EXPECT_EQ(frameTitle("fraStart"), "Start Point (NAD-83)") << "that of the window's load";
  openAnew();
  EXPECT_EQ(frameTitle("fraEnd"), "End Point (NAD-27)");
}

TEST_F(LoadTest, OptionsIsThereWhenTheHostAllowedItAtTheLoad) {
  open();
  EXPECT_TRUE(item("mnuProfileOptions").isVisible()) << "binding a host allows it";
  control_.let_OptionButtonVisible(false);
  EXPECT_TRUE(item("mnuProfileOptions").isVisible()) << "read at the load";
  openAnew();
  EXPECT_FALSE(item("mnuProfileOptions").isVisible());
  bool shown = false;
  QTimer closer;
  closer.callOnTimeout([&] {
    shown = true;
    windows_->settingsDialog()->reject();
  });
  closer.setSingleShot(true);
  closer.start(50);
  QTest::keyClick(window(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_FALSE(shown) << "neither by its keys";
  control_.let_OptionButtonVisible(true);
  EXPECT_FALSE(item("mnuProfileOptions").isVisible());
}

TEST_F(LoadTest, AShortPathIsToldAndLeavesNoWindow) {
  control_.ShowMainForm(test::kRidgeStart, kNearEnd);
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(dialogs_->messages[0].text, "Under Range Error.");
  EXPECT_EQ(dialogs_->messages[0].title, "Profile Error");
  EXPECT_EQ(dialogs_->messages[0].icon, MessageIcon::kCritical);
  EXPECT_EQ(dialogs_->messages[0].buttons, MessageButtons::kOk);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  EXPECT_TRUE(component_.state().bProfileFailed);
  EXPECT_EQ(logged(), "");
  settle();
  EXPECT_EQ(window(), nullptr);

  open();
  EXPECT_FALSE(component_.state().bProfileFailed) << "a good path shows again";
  EXPECT_TRUE(window()->isVisible());
}

TEST_F(LoadTest, AnotherPathTakesTheWindowsPlaceEvenWhenItIsABadOne) {
  open();
  const auto handle = control_.get_hWnd();
  EXPECT_EQ(handle, static_cast<std::int32_t>(static_cast<std::uint32_t>(window()->winId())));
  control_.ShowMainForm(test::kRidgeStart, kNearEnd);
  settle();
  EXPECT_EQ(window(), nullptr);
  EXPECT_EQ(control_.get_hWnd(), 0);
}

TEST_F(LoadTest, AFactorThatNoEarthHasLeavesNoWindow) {
  set("Profile", "Prf_Crv", "abc");  // reads as 0
  control_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
  settle();
  EXPECT_EQ(window(), nullptr);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_NE(logged().find("\r\nfrmProfile:drawLine:1\r\nError Number: 11\r\n"), std::string::npos)
      << logged();
}

TEST_F(LoadTest, LoadingAnewBringsTheSettingsBack) {
  open();
  type("tbxAnt1AGL", "55");
  clickPlot(5);
  set("Profile", "Prf_Freq", "150");
  window()->reload();
  EXPECT_EQ(boxText("tbxAnt1AGL"), "30");
  EXPECT_EQ(boxText("tbxFreq"), "150");
  EXPECT_FALSE(window()->state().leftMarker.shown);
  EXPECT_FALSE(window()->state().flags.resample);
}

TEST_F(LoadTest, LoadFormSettingsPutsTheWorkingValuesIntoThePanel) {
  open();
  clickPlot(5);
  clickPlot(20, Qt::RightButton);
  type("tbxAnt1AGL", "55");
  const std::string markerHeight = text("lblMk1Ht");
  ASSERT_FALSE(markerHeight.empty());
  for (const char* name : {"tbxAnt1AGL", "tbxAnt2AGL", "tbxFreq", "tbxpctFresnel", "tbxCurve"})
    box(name).setText(QStringLiteral("?"));
  for (const char* name : {"lblMk1Ht", "lblMk1Lat", "lblMk2Lon", "lblLambda"})
    control<QLabel>(name).setText(QStringLiteral("?"));
  window()->LoadFormSettings();
  EXPECT_EQ(boxText("tbxAnt1AGL"), "55");
  EXPECT_EQ(boxText("tbxAnt2AGL"), "30");
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_EQ(text("lblLambda"), ".316");
  EXPECT_EQ(boxText("tbxpctFresnel"), "100");
  EXPECT_EQ(boxText("tbxCurve"), "1.330");
  EXPECT_EQ(text("lblMk1Ht"), markerHeight);
  EXPECT_EQ(text("lblMk1Lat").back(), 'N');
  EXPECT_EQ(text("lblMk2Lon").back(), 'W');
}

TEST_F(LoadTest, LoadFormSettingsKeepsDigitsOfTheFrequencyThatTheBoxDoesNotShow) {
  set("Profile", "Prf_Freq", "446.00625");
  open();
  window()->LoadFormSettings();
  EXPECT_EQ(boxText("tbxFreq"), "446.0063");
  EXPECT_EQ(inputs().frequency, 446.00625F);
}

TEST_F(LoadTest, LoadFormSettingsChecksTheFrequency) {
  set("Profile", "Prf_Freq", "5");
  open();
  EXPECT_EQ(boxText("tbxFreq"), "5") << "shown as it is stored";
  EXPECT_EQ(text("lblLambda"), "60");
  EXPECT_EQ(text("lblMLoss"), "") << "no loss outside 20 to 20000 MHz";
  window()->LoadFormSettings();
  EXPECT_EQ(boxText("tbxFreq"), "20");
  EXPECT_EQ(text("lblLambda"), "15");
  window()->Timer1_Timer();
  EXPECT_NE(text("lblMLoss"), "");
}

}  // namespace
}  // namespace zel
