// What an open window does with the settings that its dialog has written.
#include <QDialog>

#include "window_fixture.h"

namespace zel {
namespace {

class SettingsTakenTest : public test::WindowTest {
 protected:
  const ProfileViewState& state() const { return window()->state(); }
  // The dialog reads the settings as they are now and is left by OK.
  void confirmSettings() {
    onModal<QDialog>([](QDialog& dialog) {
      auto* ok = dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"));
      ASSERT_NE(ok, nullptr);
      ok->click();
    });
    item("mnuProfileOptions").trigger();
    EXPECT_EQ(windows_->settingsDialog(), nullptr);
    settle();
  }
  // The dialog's own defaults, so that only what a test changes is a change.
  void settingsOfTheDialog() {
    set("Profile", "Prf_Per", "50");
    set("Profile", "Prf_Max", "1000");
  }
};

TEST_F(SettingsTakenTest, UnitsFactorFrequencyAndPercentageAreTakenOver) {
  settingsOfTheDialog();
  FrmProfile& before = open();
  clickPlot(5);
  const std::string modeled = text("lblMLoss");
  set("Settings", "DispUnits", "1");
  set("Profile", "Prf_Crv", "1.2");
  set("Profile", "Prf_Freq", "450");
  set("Profile", "Prf_Frez", "60");
  set("Profile", "Prf_Ele", "7");
  confirmSettings();
  EXPECT_EQ(window(), &before) << "the same window";
  EXPECT_EQ(text("lblRange"), "Range mi");
  EXPECT_EQ(text("lblDist"), "17.9");
  EXPECT_EQ(state().inputs.k, 1.2F);
  EXPECT_EQ(state().riseK, 1.2F) << "the rise is computed anew";
  EXPECT_EQ(boxText("tbxCurve"), "1.200");
  EXPECT_TRUE(control<QRadioButton>("optCurve(2)").isChecked());
  EXPECT_TRUE(box("tbxCurve").isEnabled());
  EXPECT_EQ(boxText("tbxFreq"), "450");
  EXPECT_EQ(text("lblLambda"), ".667");
  EXPECT_NE(text("lblMLoss"), modeled);
  EXPECT_EQ(boxText("tbxpctFresnel"), "60");
  EXPECT_TRUE(control<QRadioButton>("optFresnel(1)").isChecked());
  EXPECT_EQ(control_.get_ElevLines(), 7);
  EXPECT_TRUE(state().leftMarker.shown);
  // 1 m is 3.28084 ft.
  EXPECT_NEAR(QString::fromStdString(text("lblMk1Ht")).remove(u',').toDouble(),
              double{state().leftMarker.groundHeight} * 3.28084, 0.06);
}

TEST_F(SettingsTakenTest, TypedAntennaHeightsStay) {
  settingsOfTheDialog();
  open();
  type("tbxAnt1AGL", "100");
  set("Settings", "DispUnits", "1");
  set("Profile", "Prf_HtL", "44");
  set("Profile", "Prf_HtR", "44");
  confirmSettings();
  EXPECT_EQ(state().inputs.antennaHeights[0], 100);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "328") << "ft";
  EXPECT_EQ(boxText("tbxAnt2AGL"), "98") << "ft";
}

TEST_F(SettingsTakenTest, APendingRedrawIsDoneWithIt) {
  settingsOfTheDialog();
  open();
  type("tbxFreq", "3");
  confirmSettings();
  EXPECT_EQ(boxText("tbxFreq"), "950");
  for (const char* name : {"Timer1", "Timer2"})
    EXPECT_FALSE(window()->findChild<QTimer*>(QLatin1String(name))->isActive()) << name;
}

TEST_F(SettingsTakenTest, AnotherDensityShowsThePathAnewInANewWindowAtTheSamePlace) {
  settingsOfTheDialog();
  set("Profile", "Prf_Max", "5000");
  FrmProfile* before = &open();
  before->setGeometry(21, 33, 700, 500);
  settle();
  const QRect place = before->geometry();
  type("tbxAnt1AGL", "100");
  ASSERT_EQ(state().path.intervals, 1438) << "round(28.733 km x 50 / km + 1)";
  const QPointer<FrmProfile> watched(before);
  set("Profile", "Prf_Per", "20");
  confirmSettings();
  EXPECT_TRUE(watched.isNull());
  ASSERT_NE(window(), nullptr);
  EXPECT_EQ(window()->geometry(), place);
  EXPECT_EQ(state().path.intervals, 576) << "round(28.733 km x 20 / km + 1)";
  EXPECT_EQ(boxText("tbxAnt1AGL"), "30") << "heights live as long as their window";
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_EQ(text("lblDist"), "28.7");
}

TEST_F(SettingsTakenTest, AnotherSourceOrMethodShowsThePathAnewToo) {
  settingsOfTheDialog();
  open();
  QPointer<FrmProfile> watched(window());
  set("Settings", "CalcMethod", "1");
  confirmSettings();
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(state().inputs.calcMethod, 1);
  watched = window();
  set("Profile", "Prf_TRes", "7");
  confirmSettings();
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(state().inputs.source, 7);
}

TEST_F(SettingsTakenTest, CancelChangesNothing) {
  settingsOfTheDialog();
  open();
  const QPointer<FrmProfile> watched(window());
  const QImage before = picture();
  set("Profile", "Prf_Freq", "450");
  onModal<QDialog>([](QDialog& dialog) { dialog.reject(); });
  item("mnuProfileOptions").trigger();
  settle();
  EXPECT_EQ(window(), watched.data());
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_EQ(picture(), before);
}

}  // namespace
}  // namespace zel
