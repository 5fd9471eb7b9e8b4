// The life of the settings dialog: loading, what it shows, options and lists, OK, Cancel, unloading.
#include "ui/settings_dialog/frm_options_profile.h"

#include <gtest/gtest.h>

#include <QTimer>
#include <string>
#include <vector>

#include "ui_settings/settings_dialog_fixture.h"

namespace zel {
namespace {

struct FrmOptionsProfileTest : test::SettingsDialogTest {
  bool hasMessageAbout(const std::string& location) const {
    return dialogs.messages.size() == 1 &&
           dialogs.messages.front().text.find("frmOptionsProfile" + location) != std::string::npos;
  }
};

const std::vector<std::string> kReads{
    "Profile/Prf_Per=50",   "Profile/Prf_Max=1000", "Profile/Prf_TRes=3",   "Profile/Prf_HtL=30",
    "Profile/Prf_HtR=30",   "Profile/Prf_Ele=3",    "Profile/Prf_Rng=3",    "Profile/Prf_Crv=1.333",
    "Profile/Prf_Freq=950", "Profile/Prf_Frez=100", "Settings/DispUnits=0", "Settings/CalcMethod=0",
    "AMMap/FlatEarth=True"};

// ---- Loading ----

TEST_F(FrmOptionsProfileTest, IsTheDialogOfProfilerSettings) {
  EXPECT_EQ(make().objectName(), QStringLiteral("frmOptionsProfile"));
  EXPECT_EQ(dialog().windowTitle(), QStringLiteral("Profiler Settings"));
}

TEST_F(FrmOptionsProfileTest, ReadsEverythingOnceInItsOrderAndThenTheNamesOfTheSources) {
  make();
  EXPECT_EQ(store.reads, kReads);
  EXPECT_EQ(askedSources, (std::vector<std::int16_t>{2, 1, 3, 9, 7}));
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(FrmOptionsProfileTest, ShowsTheDefaultsOfAnEmptyStore) {
  make();
  EXPECT_TRUE(option("optEarthModel(0)").isChecked());
  EXPECT_EQ(shown("tbxPer"), "50");
  EXPECT_EQ(shown("tbxMax"), "1000");
  EXPECT_EQ(shown("tbxLeft"), "30");
  EXPECT_EQ(shown("tbxRight"), "30");
  EXPECT_EQ(shown("tbxEle"), "3");
  EXPECT_EQ(shown("tbxRng"), "3");
  EXPECT_EQ(shown("tbxCurve"), "1.33");
  EXPECT_TRUE(option("optCurve(0)").isChecked());
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_EQ(shown("tbxFreq"), "950");
  EXPECT_EQ(label("lblLambda"), ".316");
  EXPECT_EQ(shown("tbxpctFresnel"), "100");
  EXPECT_TRUE(option("optFresnel(0)").isChecked());
  EXPECT_TRUE(box("tbxpctFresnel").isReadOnly());
  EXPECT_EQ(list("cboTRes").currentText(), QStringLiteral("1 second"));
  EXPECT_EQ(list("cboUnits").currentText(), QStringLiteral("meters/kilometers"));
  EXPECT_EQ(list("cboMethod").currentText(), QStringLiteral("FCC 4-Point"));
}

TEST_F(FrmOptionsProfileTest, ListsTheTrimmedNamesOfTheSourcesInTheirOrder) {
  make();
  QStringList names;
  for (int i = 0; i < list("cboTRes").count(); ++i) names << list("cboTRes").itemText(i);
  EXPECT_EQ(names.join(u';').toStdString(), "3 second;30 second;1 second;Local;1/3 second");
}

TEST_F(FrmOptionsProfileTest, ShowsWhatIsStored) {
  store.set("Profile", "Prf_Per", "99");
  store.set("Profile", "Prf_Max", "5000");
  store.set("Profile", "Prf_TRes", "9");
  store.set("Profile", "Prf_HtL", "1");
  store.set("Profile", "Prf_HtR", "750");
  store.set("Profile", "Prf_Ele", "0");
  store.set("Profile", "Prf_Rng", "20");
  store.set("Profile", "Prf_Crv", "0.5");
  store.set("Profile", "Prf_Freq", "145.6125");
  store.set("Profile", "Prf_Frez", "45");
  store.set("Settings", "DispUnits", "1");
  store.set("Settings", "CalcMethod", "1");
  store.set("AMMap", "FlatEarth", "False");
  make();
  EXPECT_EQ(shown("tbxPer"), "99");
  EXPECT_EQ(shown("tbxMax"), "5000");
  EXPECT_EQ(list("cboTRes").currentText(), QStringLiteral("Local"));
  EXPECT_EQ(shown("tbxLeft"), "1");
  EXPECT_EQ(shown("tbxRight"), "750");
  EXPECT_EQ(shown("tbxEle"), "0");
  EXPECT_EQ(shown("tbxRng"), "20");
  EXPECT_EQ(shown("tbxCurve"), "0.50");
  EXPECT_TRUE(option("optCurve(2)").isChecked());
  EXPECT_TRUE(box("tbxCurve").isEnabled());
  EXPECT_EQ(shown("tbxFreq"), "145.6125");
  EXPECT_EQ(label("lblLambda"), "2.06");  // 2.0603 m
  EXPECT_EQ(shown("tbxpctFresnel"), "45");
  EXPECT_TRUE(option("optFresnel(2)").isChecked());
  EXPECT_FALSE(box("tbxpctFresnel").isReadOnly());
  EXPECT_EQ(list("cboUnits").currentText(), QStringLiteral("feet/miles"));
  EXPECT_EQ(list("cboMethod").currentText(), QStringLiteral("Bivariate  Interpolation"));
  EXPECT_TRUE(option("optEarthModel(1)").isChecked());
}

TEST_F(FrmOptionsProfileTest, ChoosesTheCurveOptionByTwoDecimals) {
  for (const auto& [stored, chosen, text] :
       {std::tuple{"1.3333", 0, "1.33"}, std::tuple{"1.335", 2, "1.34"}, std::tuple{"1.33", 0, "1.33"},
        std::tuple{"1", 1, "1.00"}, std::tuple{"1.004", 1, "1.00"}, std::tuple{"1.25", 2, "1.25"}}) {
    store.set("Profile", "Prf_Crv", stored);
    make();
    EXPECT_TRUE(option(("optCurve(" + std::to_string(chosen) + ")").c_str()).isChecked()) << stored;
    EXPECT_EQ(shown("tbxCurve"), text) << stored;
    EXPECT_EQ(box("tbxCurve").isEnabled(), chosen == 2) << stored;
  }
}

TEST_F(FrmOptionsProfileTest, ChoosesTheFresnelOptionByThePercentage) {
  for (const auto& [stored, chosen] : {std::pair{"100", 0}, std::pair{"60", 1}, std::pair{"0", 3},
                                       std::pair{"59", 2}, std::pair{"150", 2}}) {
    store.set("Profile", "Prf_Frez", stored);
    make();
    EXPECT_TRUE(option(("optFresnel(" + std::to_string(chosen) + ")").c_str()).isChecked()) << stored;
    EXPECT_EQ(box("tbxpctFresnel").isReadOnly(), chosen != 2) << stored;
  }
}

TEST_F(FrmOptionsProfileTest, TakesTheMarksOfNoSourceAsTheStandardOne) {
  for (const char* mark : {"0", "-1"}) {
    store.set("Profile", "Prf_TRes", mark);
    make();
    EXPECT_EQ(list("cboTRes").currentText(), QStringLiteral("1 second"));
  }
}

TEST_F(FrmOptionsProfileTest, KeepsASourceThatNoneHasAndChoosesNothing) {
  store.set("Profile", "Prf_TRes", "5");
  open();
  EXPECT_EQ(list("cboTRes").currentIndex(), -1);
  click(button("cmdOK"));
  EXPECT_EQ(store.writes.at(2), "Profile/Prf_TRes=5");
}

TEST_F(FrmOptionsProfileTest, ShowsUnitsAndMethodOtherThanOneAsTheFirst) {
  store.set("Settings", "DispUnits", "2");
  store.set("Settings", "CalcMethod", "-3");
  make();
  EXPECT_EQ(list("cboUnits").currentIndex(), 0);
  EXPECT_EQ(list("cboMethod").currentIndex(), 0);
}

TEST_F(FrmOptionsProfileTest, ShowsNoWavelengthForAStoredFrequencyOfZero) {
  store.set("Profile", "Prf_Freq", "none");
  make();
  EXPECT_EQ(shown("tbxFreq"), "0");
  EXPECT_EQ(label("lblLambda"), "");
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FrmOptionsProfileTest, IsMarkedAsLoadedFromItsMakingToItsClosing) {
  open();
  EXPECT_TRUE(module.settingsDialogLoaded);
  dialog().reject();
  EXPECT_FALSE(module.settingsDialogLoaded);
}

TEST_F(FrmOptionsProfileTest, IsMarkedAsLoadedBeforeItReads) {
  FrmOptionsProfile::Services given = services();
  bool loaded = false;
  given.sourceName = [&](std::int16_t) {
    loaded = module.settingsDialogLoaded;
    return std::string("x");
  };
  make(std::move(given));
  EXPECT_TRUE(loaded);
}

TEST_F(FrmOptionsProfileTest, NamesTheHostsHelpFile) {
  EXPECT_EQ(make().helpFile(), "/usr/share/planner/help.html");
}

TEST_F(FrmOptionsProfileTest, OpensTheHelpByF1FromAnyControl) {
  open();
  for (const char* name : {"tbxPer", "cboUnits", "optCurve(0)", "cmdCancel"}) {
    control<QWidget>(name).setFocus();
    press(Qt::Key_F1);
  }
  EXPECT_EQ(std::count(journal.begin(), journal.end(), "help"), 4);
}

TEST_F(FrmOptionsProfileTest, TrapsAHelpThatCannotBeOpened) {
  FrmOptionsProfile::Services given = services();
  given.openHelp = [] { throw RuntimeError::fileNotFound(); };
  make(std::move(given)).show();
  activate();
  press(Qt::Key_F1);
  EXPECT_TRUE(hasMessageAbout(":Form_KeyDown:0"));
}

TEST_F(FrmOptionsProfileTest, DoesWithoutHelpAndWithoutAPlace) {
  FrmOptionsProfile::Services given = services();
  given.openHelp = nullptr;
  given.helpFile = nullptr;
  given.restorePlace = nullptr;
  given.storePlace = nullptr;
  make(std::move(given)).show();
  activate();
  press(Qt::Key_F1);
  dialog().reject();
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FrmOptionsProfileTest, ComesUpWhereItWasLast) {
  open();
  EXPECT_EQ(journal, (test::Journal{"restore frmOptionsProfile"}));
  EXPECT_EQ(dialog().pos(), QPoint(50, 60));
}

TEST_F(FrmOptionsProfileTest, KeepsItsPlaceWhenItIsUnloaded) {
  open();
  dialog().move(70, 80);
  dialog().reject();
  EXPECT_EQ(journal.back(), "store frmOptionsProfile 70,80");
}

TEST_F(FrmOptionsProfileTest, StaysOpenWithoutItsPlaceWhenThatCannotBeRead) {
  FrmOptionsProfile::Services given = services();
  given.restorePlace = [](QWidget&, std::string_view) { throw RuntimeError::permissionDenied(); };
  make(std::move(given));
  EXPECT_TRUE(hasMessageAbout(":Form_Load:3"));
  EXPECT_FALSE(dialog().isUnloaded());
}

// ---- A load that fails ----

TEST_F(FrmOptionsProfileTest, DoesNotOpenOverSettingsThatCannotBeRead) {
  store.set("Profile", "Prf_Max", "99999999");  // no 16-bit number
  make();
  EXPECT_TRUE(hasMessageAbout(":InitMe:0"));
  EXPECT_EQ(dialogs.messages.front().text.rfind("Overflow", 0), 0U);
  EXPECT_TRUE(dialog().isUnloaded());
  EXPECT_FALSE(module.settingsDialogLoaded);
  dialog().show();
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(dialog().exec(), QDialog::Rejected);
  EXPECT_FALSE(dialog().outcome());
  forgetDialog();
  EXPECT_TRUE(store.writes.empty());
  EXPECT_TRUE(journal.empty());  // neither placed nor its place kept
}

TEST_F(FrmOptionsProfileTest, DoesNotOpenWithoutTheNamesOfTheSources) {
  FrmOptionsProfile::Services given = services();
  given.sourceName = [](std::int16_t) -> std::string { throw RuntimeError::objectVariableNotSet(); };
  make(std::move(given));
  EXPECT_TRUE(hasMessageAbout(":InitMe:1"));
  EXPECT_TRUE(dialog().isUnloaded());
}

TEST_F(FrmOptionsProfileTest, KeepsWhatItShowsWhenALaterReadingFails) {
  open();
  type("tbxPer", "75");
  store.set("Profile", "Prf_Per", "20");
  store.set("Profile", "Prf_Frez", "1e10");
  dialog().InitMe();
  EXPECT_TRUE(hasMessageAbout(":InitMe:0"));
  EXPECT_EQ(shown("tbxPer"), "75");
  EXPECT_EQ(dialog().fields().pointsPerKm, 75);
  EXPECT_TRUE(dialog().isVisible());
}

TEST_F(FrmOptionsProfileTest, ReadsAnewOnInitMe) {
  open();
  type("tbxPer", "75");
  click(option("optFresnel(1)"));
  dialog().InitMe();
  EXPECT_EQ(shown("tbxPer"), "50");
  EXPECT_TRUE(option("optFresnel(0)").isChecked());
  EXPECT_EQ(list("cboTRes").count(), 5);
}

// ---- Options and lists ----

TEST_F(FrmOptionsProfileTest, ACurvePresetIsSetByItsClickAndLocksTheBox) {
  store.set("Profile", "Prf_Crv", "0.75");
  open();
  click(option("optCurve(1)"));
  EXPECT_EQ(shown("tbxCurve"), "1");
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_EQ(dialog().fields().k, 1.0F);
  click(option("optCurve(0)"));
  EXPECT_EQ(shown("tbxCurve"), "1.33");
  EXPECT_FALSE(box("tbxCurve").isEnabled());
  EXPECT_EQ(dialog().fields().k, 1.333F);  // not the window's 1.33333
}

TEST_F(FrmOptionsProfileTest, ACurvePresetChosenAtLoadKeepsTheStoredValueUntilItIsClicked) {
  store.set("Profile", "Prf_Crv", "1.3299");
  open();
  EXPECT_TRUE(option("optCurve(0)").isChecked());
  EXPECT_EQ(dialog().fields().k, 1.3299F);
  click(option("optCurve(0)"));
  EXPECT_EQ(dialog().fields().k, 1.333F);
}

TEST_F(FrmOptionsProfileTest, TheCustomCurveOptionOpensTheBoxForAValue) {
  open();
  click(option("optCurve(2)"));
  EXPECT_TRUE(box("tbxCurve").isEnabled());
  EXPECT_EQ(dialog().fields().k, 1.333F);
  type("tbxCurve", "0.67");
  EXPECT_EQ(dialog().fields().k, 0.67F);
}

TEST_F(FrmOptionsProfileTest, AFresnelPresetSetsThePercentageAndLocksTheBox) {
  store.set("Profile", "Prf_Frez", "45");
  open();
  for (const auto& [name, percent] :
       {std::pair{"optFresnel(0)", 100}, std::pair{"optFresnel(1)", 60}, std::pair{"optFresnel(3)", 0}}) {
    click(option(name));
    EXPECT_EQ(dialog().fields().fresnelPercent, percent);
    EXPECT_TRUE(box("tbxpctFresnel").isReadOnly());
    QTest::keyClicks(&box("tbxpctFresnel"), QStringLiteral("7"));
    EXPECT_EQ(shown("tbxpctFresnel"), "45");
  }
}

TEST_F(FrmOptionsProfileTest, TheCustomFresnelOptionTakesThePercentageFromTheBox) {
  store.set("Profile", "Prf_Frez", "45");
  open();
  click(option("optFresnel(3)"));
  click(option("optFresnel(2)"));
  EXPECT_EQ(dialog().fields().fresnelPercent, 45);
  EXPECT_FALSE(box("tbxpctFresnel").isReadOnly());
}

TEST_F(FrmOptionsProfileTest, TheCustomFresnelOptionTakesATextWithoutANumberAsZero) {
  open();
  box("tbxpctFresnel").setText(QStringLiteral("x"));
  click(option("optFresnel(2)"));
  EXPECT_EQ(dialog().fields().fresnelPercent, 0);
  EXPECT_EQ(shown("tbxpctFresnel"), "0");
}

TEST_F(FrmOptionsProfileTest, TheCustomFresnelOptionBringsThePercentageIntoItsRange) {
  store.set("Profile", "Prf_Frez", "150");
  open();
  click(option("optFresnel(0)"));
  click(option("optFresnel(2)"));
  EXPECT_EQ(dialog().fields().fresnelPercent, 100);
  EXPECT_EQ(shown("tbxpctFresnel"), "100");
}

TEST_F(FrmOptionsProfileTest, NoFresnelLineIsStoredAsZero) {
  open();
  click(option("optFresnel(3)"));
  click(button("cmdOK"));
  EXPECT_EQ(store.writes.at(9), "Profile/Prf_Frez=0");
}

TEST_F(FrmOptionsProfileTest, OptionsAreChosenByTheCursorKeys) {
  open();
  option("optCurve(0)").setFocus();
  press(Qt::Key_Right);
  EXPECT_EQ(dialog().fields().k, 1.0F);
  option("optEarthModel(0)").setFocus();
  press(Qt::Key_Down);
  EXPECT_FALSE(dialog().fields().flatEarth);
}

TEST_F(FrmOptionsProfileTest, UnitsAndMethodAreTheirPlaceInTheList) {
  open();
  list("cboUnits").setFocus();
  press(Qt::Key_Down);
  EXPECT_EQ(dialog().fields().dispUnits, 1);
  list("cboMethod").setFocus();
  press(Qt::Key_Down);
  EXPECT_EQ(dialog().fields().calcMethod, 1);
  press(Qt::Key_Up);
  EXPECT_EQ(dialog().fields().calcMethod, 0);
}

TEST_F(FrmOptionsProfileTest, ChangingTheUnitsLeavesTheHeightsInMetres) {
  open();
  list("cboUnits").setFocus();
  press(Qt::Key_Down);
  EXPECT_EQ(shown("tbxLeft"), "30");
  type("tbxLeft", "0");
  press(Qt::Key_Tab);
  EXPECT_EQ(messages(), (Texts{"Valid Range is 1 to 750 meters."}));
}

TEST_F(FrmOptionsProfileTest, EachSourceIsStoredByItsCode) {
  open();
  QComboBox& sources = list("cboTRes");
  sources.setFocus();
  press(Qt::Key_Home);
  std::vector<int> codes{dialog().fields().source};
  for (int i = 1; i < sources.count(); ++i) {
    press(Qt::Key_Down);
    codes.push_back(dialog().fields().source);
  }
  EXPECT_EQ(codes, (std::vector<int>{2, 1, 3, 9, 7}));
}

TEST_F(FrmOptionsProfileTest, ShowsTheHourglassWhileASourceIsLookedUp) {
  open();
  list("cboTRes").setFocus();
  press(Qt::Key_Down);
  EXPECT_EQ(pointer.shapes, (std::vector<PointerShape>{PointerShape::kHourglass, PointerShape::kDefault}));
  EXPECT_TRUE(button("cmdOK").isEnabled());
  EXPECT_TRUE(button("cmdCancel").isEnabled());
  EXPECT_TRUE(button("cmdOK").isDefault());
}

TEST_F(FrmOptionsProfileTest, KeepsItsButtonsWhenTheLookUpOfASourceFails) {
  open();
  pointer.failing = true;
  list("cboTRes").setFocus();
  press(Qt::Key_Down);
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(button("cmdOK").isEnabled());
  EXPECT_TRUE(button("cmdCancel").isEnabled());
}

TEST_F(FrmOptionsProfileTest, ScrollingPastAListChangesNothing) {
  open();
  QComboBox& units = list("cboUnits");
  const QPoint middle = units.rect().center();
  QWheelEvent wheel(middle, units.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(&units, &wheel);
  EXPECT_EQ(dialog().fields().dispUnits, 0);
  EXPECT_EQ(units.currentIndex(), 0);
}

// ---- OK and Cancel ----

TEST_F(FrmOptionsProfileTest, OkWritesEverythingInItsOrderAndCloses) {
  open();
  type("tbxPer", "75");
  type("tbxMax", "4000");
  list("cboTRes").setFocus();
  press(Qt::Key_End);
  type("tbxLeft", "12");
  type("tbxRight", "120");
  type("tbxEle", "0");
  type("tbxRng", "20");
  click(option("optCurve(1)"));
  type("tbxFreq", "145.6125");
  click(option("optFresnel(1)"));
  list("cboUnits").setFocus();
  press(Qt::Key_Down);
  list("cboMethod").setFocus();
  press(Qt::Key_Down);
  click(option("optEarthModel(1)"));
  EXPECT_TRUE(store.writes.empty());
  click(button("cmdOK"));
  EXPECT_EQ(store.writes,
            (Texts{"Profile/Prf_Per=75", "Profile/Prf_Max=4000", "Profile/Prf_TRes=7", "Profile/Prf_HtL=12",
                   "Profile/Prf_HtR=120", "Profile/Prf_Ele=0", "Profile/Prf_Rng=20", "Profile/Prf_Crv=1",
                   "Profile/Prf_Freq=145.6125", "Profile/Prf_Frez=60", "Settings/DispUnits=1",
                   "Settings/CalcMethod=1", "AMMap/FlatEarth=False"}));
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(dialog().result(), QDialog::Accepted);
  EXPECT_FALSE(module.settingsDialogLoaded);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FrmOptionsProfileTest, OkTellsWhatWasBeforeAndWhatIsNow) {
  open();
  type("tbxPer", "75");
  EXPECT_FALSE(dialog().outcome());
  click(button("cmdOK"));
  ASSERT_TRUE(dialog().outcome());
  EXPECT_EQ(dialog().outcome()->before, DialogSettings{});
  DialogSettings after;
  after.pointsPerKm = 75;
  EXPECT_EQ(dialog().outcome()->after, after);
}

TEST_F(FrmOptionsProfileTest, OkWithoutAChangeWritesWhatWasRead) {
  store.set("Profile", "Prf_Crv", "1.2345678");
  store.set("Profile", "Prf_Freq", "19999.998");
  open();
  for (int i = 0; i < 30; ++i) press(Qt::Key_Tab);
  click(button("cmdOK"));
  ASSERT_EQ(store.writes.size(), 13U);
  EXPECT_EQ(store.writes.at(7), "Profile/Prf_Crv=1.2345678");
  EXPECT_EQ(store.writes.at(8), "Profile/Prf_Freq=19999.998");
  EXPECT_EQ(dialog().outcome()->before, dialog().outcome()->after);
}

TEST_F(FrmOptionsProfileTest, EnterIsOk) {
  open();
  type("tbxPer", "75");
  press(Qt::Key_Return);
  EXPECT_EQ(store.writes.front(), "Profile/Prf_Per=75");
  EXPECT_FALSE(dialog().isVisible());
}

TEST_F(FrmOptionsProfileTest, EnterIsCancelWhileThatHasTheFocus) {
  open();
  button("cmdCancel").setFocus();
  press(Qt::Key_Return);
  EXPECT_TRUE(store.writes.empty());
  EXPECT_FALSE(dialog().isVisible());
}

TEST_F(FrmOptionsProfileTest, UpdateMeWritesAndStaysOpen) {
  open();
  type("tbxPer", "75");
  dialog().UpdateMe();
  EXPECT_EQ(store.writes.size(), 13U);
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_FALSE(dialog().outcome());
}

TEST_F(FrmOptionsProfileTest, CancelAndEscapeAndTheCloseBoxWriteNothing) {
  const std::vector<std::function<void()>> ways{
      [this] { click(button("cmdCancel")); }, [this] { press(Qt::Key_Escape); }, [this] { dialog().close(); },
      [this] { dialog().hide(); }, [this] { dialog().done(QDialog::Rejected); }};
  for (const auto& way : ways) {
    open();
    type("tbxPer", "75");
    click(option("optFresnel(3)"));
    way();
    EXPECT_FALSE(dialog().isVisible());
    EXPECT_FALSE(dialog().outcome());
    EXPECT_FALSE(module.settingsDialogLoaded);
  }
  EXPECT_TRUE(store.writes.empty());
  EXPECT_EQ(std::count_if(journal.begin(), journal.end(), [](const auto& entry) { return entry[0] == 's'; }),
            5)
      << "each kept its place once";
}

TEST_F(FrmOptionsProfileTest, AFailingWriteIsReportedAndLeavesEverythingOpen) {
  open();
  type("tbxPer", "75");
  type("tbxLeft", "12");
  writes.failAt = 3;
  click(button("cmdOK"));
  EXPECT_TRUE(hasMessageAbout(":UpdateMe:0"));
  EXPECT_EQ(dialogs.messages.front().text.rfind("Disk full", 0), 0U);
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_FALSE(dialog().isUnloaded());
  EXPECT_FALSE(dialog().outcome());
  EXPECT_EQ(shown("tbxPer"), "75");
  EXPECT_TRUE(module.settingsDialogLoaded);

  writes.failAt = -1;
  store.writes.clear();
  click(button("cmdOK"));
  EXPECT_EQ(store.writes.size(), 13U);
  ASSERT_TRUE(dialog().outcome());
  EXPECT_EQ(dialog().outcome()->before.pointsPerKm, 50);
  EXPECT_FALSE(dialog().isVisible());
}

// ---- Unloading ----

TEST_F(FrmOptionsProfileTest, IsUnloadedOnceHoweverOftenItCloses) {
  open();
  click(button("cmdOK"));
  module.settingsDialogLoaded = true;  // of another dialog, meanwhile
  dialog().reject();
  dialog().close();
  forgetDialog();
  EXPECT_EQ(journal.size(), 2U);
  EXPECT_TRUE(module.settingsDialogLoaded);
}

TEST_F(FrmOptionsProfileTest, IsUnloadedByItsDeletion) {
  open();
  forgetDialog();
  EXPECT_FALSE(module.settingsDialogLoaded);
  EXPECT_EQ(journal.back(), "store frmOptionsProfile 50,60");
}

TEST_F(FrmOptionsProfileTest, KeepsNoPlaceWhenItNeverCameUp) {
  make();
  forgetDialog();
  EXPECT_FALSE(module.settingsDialogLoaded);
  EXPECT_EQ(journal, (test::Journal{"restore frmOptionsProfile"}));
}

TEST_F(FrmOptionsProfileTest, IsUnloadedByDoneBeforeItCameUp) {
  make().done(QDialog::Rejected);
  EXPECT_TRUE(dialog().isUnloaded());
  EXPECT_FALSE(module.settingsDialogLoaded);
}

TEST_F(FrmOptionsProfileTest, APlaceThatCannotBeKeptIsReportedAndHoldsNothingUp) {
  storePlaceFails = true;
  open();
  click(button("cmdOK"));
  EXPECT_TRUE(hasMessageAbout(":Form_Unload:1"));
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_FALSE(module.settingsDialogLoaded);
  EXPECT_TRUE(dialog().outcome());
}

TEST_F(FrmOptionsProfileTest, DoesNotComeUpAgain) {
  open();
  dialog().reject();
  dialog().show();
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(dialog().exec(), QDialog::Rejected);
}

TEST_F(FrmOptionsProfileTest, RunsModallyUntilItIsClosed) {
  make();
  QTimer::singleShot(0, &dialog(), [this] {
    EXPECT_TRUE(dialog().isModal());
    EXPECT_EQ(QApplication::activeModalWidget(), &dialog());
    click(button("cmdOK"));
  });
  EXPECT_EQ(dialog().exec(), QDialog::Accepted);
  EXPECT_TRUE(dialog().outcome());
}

TEST_F(FrmOptionsProfileTest, MayBeUnloadedWhileItsMessageIsOpen) {
  open();
  dialogs.onMessage = [this](const MessageBoxRequest&) { dialog().reject(); };
  type("tbxPer", "5");
  press(Qt::Key_Return);
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_TRUE(store.writes.empty());
  EXPECT_FALSE(module.settingsDialogLoaded);
}

}  // namespace
}  // namespace zel
