// The preferences under a person's keys and clicks, over the component's own settings.
#include "preferences/preferences_dialog.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "preferences/preference_fields.h"
#include "support/controls.h"
#include "support/environment_variable.h"
#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "zel/path_loss.h"
#include "zel/profile_control.h"
#include "zel/settings.h"
#include "zel/terrain.h"
#include "zel/terrain_map.h"

namespace zel::host {
namespace {

using Texts = std::vector<std::string>;

class PreferencesTest : public test::OffscreenTest<QApplication> {
 public:
  static void SetUpTestSuite() {
    OffscreenTest::SetUpTestSuite();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // The component finds its folder once.
    static const test::TemporaryFolder folder;
    ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    component_ = std::make_unique<ProfileControl>();
  }
  static void TearDownTestSuite() {
    component_.reset();
    OffscreenTest::TearDownTestSuite();
  }

 protected:
  void SetUp() override {
    OffscreenTest::SetUp();
    // Settings of its own for each test.
    static int tests = 0;
    component_->SetClientApp(makePropertyBag({{"Title", "Planner " + std::to_string(++tests)},
                                              {"Path", folder_.path().string()},
                                              {"ProductName", "Planner"},
                                              {"HelpFile", ""},
                                              {"Major", std::int32_t{1}},
                                              {"Minor", std::int32_t{0}},
                                              {"Revision", std::int32_t{0}}}));
  }
  void TearDown() override {
    dialog_.reset();
    OffscreenTest::TearDown();
  }

  PreferencesDialog& open(PreferencesPage page = PreferencesPage::kTerrain) {
    dialog_ = std::make_unique<PreferencesDialog>(nullptr, page);
    stored.clear();
    dialog_->onStored = [this](const Texts& changed) {
      stored.insert(stored.end(), changed.begin(), changed.end());
    };
    dialog_->show();
    activate();
    return *dialog_;
  }
  void destroy() { dialog_.reset(); }
  void activate() {
    dialog_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }
  PreferencesDialog& dialog() { return *dialog_; }

  template <typename Control>
  Control& control(const char* name) {
    return test::controlOf<Control>(*dialog_, name);
  }
  QLineEdit& box(const char* name) { return control<QLineEdit>(name); }
  QComboBox& list(const char* name) { return control<QComboBox>(name); }
  QPushButton& button(const char* name) { return control<QPushButton>(name); }
  std::string label(const char* name) { return control<QLabel>(name).text().toStdString(); }
  std::string shown(const char* name) { return box(name).text().toStdString(); }
  QListWidget& paths() { return control<QListWidget>("lstPaths"); }
  Texts listedPaths() {
    Texts texts;
    for (int i = 0; i < paths().count(); ++i) texts.push_back(paths().item(i)->text().toStdString());
    return texts;
  }

  void click(const char* name) { QTest::mouseClick(&control<QAbstractButton>(name), Qt::LeftButton); }
  // Keys go to whatever has the focus, as a desktop sends them.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    if (!dialog_->isActiveWindow()) activate();  // a box was open
    QWidget* target = QApplication::focusWidget();
    QTest::keyClick(target != nullptr ? target : dialog_.get(), key, modifiers);
    QCoreApplication::processEvents();
  }
  void type(const char* name, const char* keys) {
    QLineEdit& target = box(name);
    target.setFocus();
    target.selectAll();
    QTest::keyClick(&target, Qt::Key_Delete);
    QTest::keyClicks(&target, QLatin1String(keys));
  }
  // Types over the path in that row, and takes it with Enter.
  void typePath(int row, const QString& text) {
    paths().setCurrentRow(row);
    click("cmdEditPath");
    auto* editor = paths().findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    editor->insert(text);  // as pasted
    QTest::keyClick(editor, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return paths().item(row)->text() == text; }));
  }
  // Answers the box or dialog that the next action opens.
  template <typename Box>
  void answer(std::function<void(Box&)> with) {
    QTimer::singleShot(0, dialog_.get(), [with = std::move(with)] {
      auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      with(*box);
    });
  }
  std::string coverage() { return label("lblCoverage"); }
  bool waitForCoverage(const char* words) {
    return QTest::qWaitFor([&] { return coverage().find(words) != std::string::npos; }, 20000);
  }
  static std::optional<std::string> inStore(const char* section, const char* key) {
    return storedSetting(section, key);
  }

  Texts stored;
  test::TemporaryFolder folder_;
  inline static std::unique_ptr<ProfileControl> component_;

 private:
  std::unique_ptr<PreferencesDialog> dialog_;
};

const std::vector<PreferencesPage> kAllPages{PreferencesPage::kTerrain, PreferencesPage::kModel,
                                             PreferencesPage::kPointToPoint, PreferencesPage::kColours,
                                             PreferencesPage::kPrograms};

std::string objectNameOf(const PreferenceField& field) {
  return std::string(field.section) + "_" + field.key;
}

// ---- What is there ----

TEST_F(PreferencesTest, EveryFieldIsASettingThatTheComponentKnows) {
  open();
  for (const PreferenceField& field : preferenceFields()) {
    const std::string name = objectNameOf(field);
    EXPECT_TRUE(knownSetting(field.section, field.key)) << name;
    auto* editor = dialog().findChild<QWidget*>(QString::fromStdString(name));
    ASSERT_NE(editor, nullptr) << name;
    EXPECT_FALSE(editor->toolTip().isEmpty()) << name;
    EXPECT_FALSE(editor->accessibleName().isEmpty()) << name;
    EXPECT_EQ(control<QLabel>((name + "_label").c_str()).buddy(), editor) << name;
    EXPECT_NE(label((name + "_hint").c_str()), "") << name;
  }
}

TEST_F(PreferencesTest, NoSettingOfItsSectionsIsForgotten) {
  std::set<std::string> edited;
  for (const PreferenceField& field : preferenceFields()) edited.insert(objectNameOf(field));
  for (const TerrainSource& source : terrainSources())
    edited.insert("Terrain_Source" + std::to_string(source.code));
  for (const SettingDescription& known : knownSettings()) {
    if (std::set<std::string>{"ITM", "PTP", "Colors", "Terrain"}.count(known.section) == 0) continue;
    EXPECT_EQ(edited.count(known.section + "_" + known.key), 1U) << known.section << "/" << known.key;
  }
}

TEST_F(PreferencesTest, ClimatesHaveTheirSevenLabels) {
  open(PreferencesPage::kModel);
  QStringList labels;
  for (int i = 0; i < list("ITM_iRadioClimate").count(); ++i)
    labels.append(list("ITM_iRadioClimate").itemText(i));
  EXPECT_EQ(labels.join(u'|').toStdString(),
            "Equatorial|Continental Subtropical|Maritime Tropical|Desert|Continental Temperate|Maritime "
            "Temperate, Over Land|Maritime Temperate, Over Sea");
}

TEST_F(PreferencesTest, OpensOnThePageThatIsAskedFor) {
  for (const PreferencesPage page : kAllPages) {
    open(page);
    EXPECT_EQ(dialog().page(), page);
    EXPECT_TRUE(QApplication::focusWidget() == &control<QWidget>("lstPages"));
  }
}

// ---- Keeping what is stored ----

TEST_F(PreferencesTest, WhatIsNotSetIsShownAsItsDefaultAndNotStored) {
  open();
  EXPECT_EQ(shown("ITM_dSurfRef"), "301");
  EXPECT_EQ(shown("ITM_dConfidence"), "50");
  EXPECT_EQ(shown("Colors_cLOS"), "#0000ff");
  EXPECT_EQ(list("ITM_iRadioClimate").currentData().toString().toStdString(), "5");
  EXPECT_EQ(list("Settings_CoordFormat").currentData().toString().toStdString(), "DMS");
  EXPECT_FALSE(button("cmdApply").isEnabled());
  click("cmdOK");
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_TRUE(stored.empty());
  EXPECT_TRUE(storedSettings().empty());
  EXPECT_FALSE(std::filesystem::exists(settingsFile()));
}

TEST_F(PreferencesTest, WhatIsStoredStaysAsItWasWrittenUntilItIsChanged) {
  storeSetting("ITM", "iHor", "7");
  storeSetting("ITM", "dConfidence", "90");
  storeSetting("ITM", "dCond", "0.0050");
  storeSetting("ITM", "iRadioClimate", "12");
  storeSetting("Colors", "cRange", "nothing");
  open(PreferencesPage::kModel);
  EXPECT_EQ(list("ITM_iHor").currentText().toStdString(), "Vertical");  // as anything but 0
  EXPECT_EQ(shown("ITM_dConfidence"), "90");
  EXPECT_EQ(list("ITM_iRadioClimate").currentText().toStdString(), "\"12\" (not a choice)");
  EXPECT_EQ(label("ITM_iRadioClimate_hint"), "This is not one of the choices.");
  type("ITM_dSurfRef", "320");
  click("cmdOK");
  EXPECT_EQ(stored, Texts{"ITM/dSurfRef"});
  EXPECT_EQ(inStore("ITM", "iHor"), "7");
  EXPECT_EQ(inStore("ITM", "dConfidence"), "90");
  EXPECT_EQ(inStore("ITM", "dCond"), "0.0050");
  EXPECT_EQ(inStore("ITM", "iRadioClimate"), "12");
  EXPECT_EQ(inStore("Colors", "cRange"), "nothing");
}

TEST_F(PreferencesTest, WhatIsTypedAndTakenBackIsNoChange) {
  open(PreferencesPage::kModel);
  type("ITM_dSurfRef", "320");
  EXPECT_TRUE(button("cmdApply").isEnabled());
  type("ITM_dSurfRef", "301");
  EXPECT_FALSE(button("cmdApply").isEnabled());
}

TEST_F(PreferencesTest, CancelAndEscapeStoreNothing) {
  for (const bool byKey : {false, true}) {
    open(PreferencesPage::kModel);
    type("ITM_dSurfRef", "320");
    if (byKey)
      press(Qt::Key_Escape);
    else
      click("cmdCancel");
    EXPECT_FALSE(dialog().isVisible());
    EXPECT_TRUE(stored.empty());
    EXPECT_FALSE(inStore("ITM", "dSurfRef"));
  }
}

// ---- Fields ----

TEST_F(PreferencesTest, ANumberBeyondItsRangeIsSaidToBeSoAndNotStored) {
  open(PreferencesPage::kModel);
  EXPECT_EQ(label("ITM_dSurfRef_hint"), "A number from 0 to 540 N-units; default 301.");
  for (const char* wrong : {"541", "-1", "", "abc", "3o1", "1e999"}) {
    type("ITM_dSurfRef", wrong);
    EXPECT_EQ(label("ITM_dSurfRef_hint"), "This takes a number from 0 to 540 N-units.") << wrong;
    EXPECT_TRUE(control<QLabel>("ITM_dSurfRef_hint").font().bold());
  }
  type("PTP_ClutterHeight", "12");
  dialog().showPage(PreferencesPage::kColours);
  click("cmdOK");
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_EQ(dialog().page(), PreferencesPage::kModel);
  EXPECT_TRUE(box("ITM_dSurfRef").hasFocus());
  EXPECT_EQ(label("lblNotice"),
            "Nothing was stored yet. Refractivity: this takes a number from 0 to 540 N-units.");
  EXPECT_TRUE(stored.empty());
  EXPECT_FALSE(inStore("PTP", "ClutterHeight"));

  type("ITM_dSurfRef", "540");
  EXPECT_FALSE(control<QLabel>("ITM_dSurfRef_hint").font().bold());
  press(Qt::Key_Return);
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(inStore("ITM", "dSurfRef"), "540");
  EXPECT_EQ(inStore("PTP", "ClutterHeight"), "12");
}

TEST_F(PreferencesTest, ANumberThatTheModelIsNotMeantForIsToldAndStored) {
  open(PreferencesPage::kModel);
  for (const char* doubtful : {"249", "401"}) {
    type("ITM_dSurfRef", doubtful);
    EXPECT_EQ(label("ITM_dSurfRef_hint"), "Beyond what the model is meant for: 250 to 400 N-units.");
  }
  click("cmdApply");
  EXPECT_EQ(inStore("ITM", "dSurfRef"), "401");
}

TEST_F(PreferencesTest, WholeNumbersTakeNoFraction) {
  open();
  type("Terrain_CacheMB", "64.5");
  EXPECT_EQ(label("Terrain_CacheMB_hint"), "This takes a whole number from 8 to 65,536 MiB.");
  type("Terrain_CacheMB", "64");
  click("cmdApply");
  EXPECT_EQ(inStore("Terrain", "CacheMB"), "64");
}

TEST_F(PreferencesTest, ADecimalCommaIsReadWhereTheLanguageWritesOne) {
  QLocale::setDefault(QLocale(QLocale::German));
  open(PreferencesPage::kModel);
  type("ITM_dCond", "0,02");
  click("cmdApply");
  EXPECT_EQ(inStore("ITM", "dCond"), "0.02");
}

TEST_F(PreferencesTest, ConfidenceIsTypedInPercentAndStoredAsAFraction) {
  open(PreferencesPage::kModel);
  type("ITM_dConfidence", "100");  // the model has none for all situations
  EXPECT_EQ(label("ITM_dConfidence_hint"), "This takes a whole number from 1 to 99 %.");
  type("ITM_dConfidence", "95");
  type("ITM_dReliability", "99");
  click("cmdApply");
  EXPECT_EQ(inStore("ITM", "dConfidence"), "0.95");
  EXPECT_EQ(inStore("ITM", "dReliability"), "0.99");
}

TEST_F(PreferencesTest, AChoiceIsMadeByKeys) {
  open(PreferencesPage::kModel);
  list("ITM_iRadioClimate").setFocus();
  press(Qt::Key_End);
  click("cmdApply");
  EXPECT_EQ(inStore("ITM", "iRadioClimate"), "7");
}

TEST_F(PreferencesTest, TheWheelTurnsNoListThatItPasses) {
  open(PreferencesPage::kModel);
  QComboBox& climates = list("ITM_iRadioClimate");
  const QPointF place = climates.rect().center();
  QWheelEvent wheel(place, climates.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&climates, &wheel);
  EXPECT_EQ(climates.currentData().toString().toStdString(), "5");
}

TEST_F(PreferencesTest, AKindOfGroundSetsBothItsConstants) {
  open(PreferencesPage::kModel);
  QComboBox& ground = list("cboGround_pageModel");
  EXPECT_EQ(ground.currentText().toStdString(), "Average ground");
  const std::vector<std::tuple<const char*, std::string, std::string>> kinds{{"Poor ground", "4", "0.001"},
                                                                             {"Good ground", "25", "0.02"},
                                                                             {"Fresh water", "81", "0.01"},
                                                                             {"Sea water", "81", "5"}};
  ground.setFocus();
  for (const auto& [name, permittivity, conductivity] : kinds) {
    press(Qt::Key_Down);
    EXPECT_EQ(ground.currentText().toStdString(), name);
    EXPECT_EQ(shown("ITM_dDielectric"), permittivity);
    EXPECT_EQ(shown("ITM_dCond"), conductivity);
  }
  type("ITM_dCond", "4");
  EXPECT_EQ(ground.currentText().toStdString(), "Own values");
  type("ITM_dCond", "5.0");
  EXPECT_EQ(ground.currentText().toStdString(), "Sea water");
  EXPECT_EQ(list("cboGround_pagePointToPoint").currentText().toStdString(), "Average ground");
}

TEST_F(PreferencesTest, AColourIsTypedOrChosenAndStoredWithBlueFirst) {
  open(PreferencesPage::kColours);
  type("Colors_cFresnel", "#112233");
  answer<QColorDialog>([](QColorDialog& colours) {
    colours.setCurrentColor(QColor(0x80, 0x40, 0x20));
    colours.accept();
  });
  click("Colors_cLOS_choose");
  EXPECT_EQ(shown("Colors_cLOS"), "#804020");
  type("Colors_cStrobe", "#12");
  EXPECT_EQ(label("Colors_cStrobe_hint"), "This takes red, green and blue as in #ff8000.");
  type("Colors_cStrobe", "#ffffc0");
  EXPECT_EQ(label("Colors_cStrobe_hint"), "Hard to see on the white plot.");
  click("cmdApply");
  EXPECT_EQ(inStore("Colors", "cFresnel"), std::to_string(0x332211));
  EXPECT_EQ(inStore("Colors", "cLOS"), std::to_string(0x204080));
  EXPECT_EQ(inStore("Colors", "cStrobe"), std::to_string(0xC0FFFF));
}

TEST_F(PreferencesTest, ASampleShowsTheLineOnWhite) {
  open(PreferencesPage::kColours);
  type("Colors_cFresnel", "#123456");
  const QImage sample = control<QWidget>("Colors_cFresnel_sample").grab().toImage();
  EXPECT_EQ(sample.pixelColor(2, 2), QColor(Qt::white));
  int drawn = 0;
  for (int x = 0; x < sample.width(); ++x)
    for (int y = 0; y < sample.height(); ++y) drawn += sample.pixelColor(x, y) == QColor(0x12, 0x34, 0x56);
  EXPECT_GE(drawn, sample.width() - 10);
}

TEST_F(PreferencesTest, TheDefaultIsAClickAwayWhereSomethingElseIsStored) {
  storeSetting("ITM", "dSurfRef", "320");
  storeSetting("ITM", "dConfidence", "90");
  storeSetting("ITM", "iRadioClimate", "2");
  open(PreferencesPage::kModel);
  EXPECT_FALSE(button("ITM_dCond_default").isEnabled());
  for (const char* name : {"ITM_dSurfRef_default", "ITM_dConfidence_default", "ITM_iRadioClimate_default"}) {
    EXPECT_TRUE(button(name).isEnabled()) << name;
    click(name);
    EXPECT_FALSE(button(name).isEnabled()) << name;
  }
  click("cmdApply");
  EXPECT_EQ(inStore("ITM", "dSurfRef"), "301");
  EXPECT_EQ(inStore("ITM", "dConfidence"), "0.5");
  EXPECT_EQ(inStore("ITM", "iRadioClimate"), "5");
}

TEST_F(PreferencesTest, AllColoursGoBackAtOnce) {
  open(PreferencesPage::kColours);
  EXPECT_FALSE(button("cmdAllDefaults").isEnabled());
  type("Colors_cFresnel", "#112233");
  type("Colors_cStrobe", "#112233");
  click("cmdAllDefaults");
  EXPECT_EQ(shown("Colors_cFresnel"), "#ff0000");
  EXPECT_EQ(shown("Colors_cStrobe"), "#00ffff");
  EXPECT_FALSE(button("cmdAllDefaults").isEnabled());
}

// ---- Programs and format ----

struct PreferencesProgramsTest : PreferencesTest {
  void SetUp() override {
    PreferencesTest::SetUp();
    program = (folder_ / "gnuplot").string();
    test::writeBytes(program, "");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    search = std::make_unique<test::EnvironmentVariable>("PATH", folder_.path().string());
  }
  std::string program;
  std::unique_ptr<test::EnvironmentVariable> search;
};

TEST_F(PreferencesProgramsTest, GnuplotIsTheOneFoundWhileNoneIsStored) {
  open(PreferencesPage::kPrograms);
  EXPECT_EQ(shown("Settings_gnuPlotEXE"), program);
  EXPECT_EQ(label("Settings_gnuPlotEXE_hint"), "Found along PATH; draws the signal graphs.");
  click("cmdOK");
  EXPECT_FALSE(inStore("Settings", "gnuPlotEXE"));
}

TEST_F(PreferencesProgramsTest, AnEmptyBoxMeansThatNoGraphIsWanted) {
  open(PreferencesPage::kPrograms);
  type("Settings_gnuPlotEXE", "");
  EXPECT_EQ(label("Settings_gnuPlotEXE_hint"), "None wanted: signal graphs are not drawn.");
  click("cmdOK");
  EXPECT_EQ(inStore("Settings", "gnuPlotEXE"), "");
  open(PreferencesPage::kPrograms);
  EXPECT_EQ(shown("Settings_gnuPlotEXE"), "");
  EXPECT_EQ(label("Settings_gnuPlotEXE_hint"), "None wanted: signal graphs are not drawn.");
  click("Settings_gnuPlotEXE_find");
  EXPECT_EQ(shown("Settings_gnuPlotEXE"), program);
  click("cmdOK");
  EXPECT_EQ(inStore("Settings", "gnuPlotEXE"), program);
}

TEST_F(PreferencesProgramsTest, WhatCannotBeRunIsNotStored) {
  test::writeBytes(folder_ / "notes.txt", "");
  open(PreferencesPage::kPrograms);
  type("Settings_gnuPlotEXE", (folder_ / "notes.txt").c_str());
  EXPECT_EQ(label("Settings_gnuPlotEXE_hint"), "This is not a program that you may run.");
  click("cmdOK");
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_FALSE(inStore("Settings", "gnuPlotEXE"));
}

TEST_F(PreferencesProgramsTest, ASearchInVainIsToldAndLeavesTheBox) {
  storeSetting("Settings", "gnuPlotEXE", program);
  const test::EnvironmentVariable nowhere("PATH", "/nowhere");
  open(PreferencesPage::kPrograms);
  click("Settings_gnuPlotEXE_find");
  EXPECT_EQ(label("Settings_gnuPlotEXE_hint"),
            "No gnuplot was found along PATH; install it, or browse for it.");
  EXPECT_EQ(shown("Settings_gnuPlotEXE"), program);
}

TEST_F(PreferencesProgramsTest, TheProgramsFileCanBeChosen) {
  const std::string other = (folder_ / "plotter").string();
  test::writeBytes(other, "");
  std::filesystem::permissions(other, std::filesystem::perms::owner_all);
  open(PreferencesPage::kPrograms);
  answer<QFileDialog>([&](QFileDialog& files) {
    files.selectFile(QString::fromStdString(other));
    static_cast<QDialog&>(files).accept();
  });
  click("Settings_gnuPlotEXE_browse");
  EXPECT_EQ(shown("Settings_gnuPlotEXE"), other);
}

TEST_F(PreferencesProgramsTest, TheCoordinateFormatIsStoredByItsLetters) {
  storeSetting("Settings", "CoordFormat", "dd");
  open(PreferencesPage::kPrograms);
  EXPECT_EQ(list("Settings_CoordFormat").currentText().toStdString(), "DD: 36.536500");
  list("Settings_CoordFormat").setFocus();
  press(Qt::Key_Up);
  click("cmdOK");
  EXPECT_EQ(inStore("Settings", "CoordFormat"), "DMS");
}

TEST_F(PreferencesProgramsTest, TheSettingsFileIsShownAndCopied) {
  open(PreferencesPage::kPrograms);
  EXPECT_EQ(shown("txtSettingsFile"), settingsFile());
  click("cmdCopyFile");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), settingsFile());
}

// ---- Terrain ----

struct PreferencesTerrainTest : PreferencesTest {
  std::string raster(const char* name) {
    const std::string path = (folder_ / name).string();
    std::filesystem::copy_file(std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif", path);
    return path;
  }
  static Texts sourcePaths(int code) {
    for (const TerrainSource& source : terrainSources())
      if (source.code == code) return source.bundledSample ? Texts{} : source.paths;
    return {"no such source"};
  }
};

TEST_F(PreferencesTerrainTest, BeginsWithTheSourceThatIsInUse) {
  storeSetting("Profile", "Prf_TRes", "7");
  setTerrainSource(7, {"/srv/one", "/srv/two"});
  open();
  EXPECT_EQ(list("cboSource").currentText().toStdString(), "1/3 second (source 7)");
  EXPECT_EQ(listedPaths(), (Texts{"/srv/one", "/srv/two"}));
  EXPECT_EQ(label("lblPathsNote"), "Not there at present: /srv/one");
}

TEST_F(PreferencesTerrainTest, EverySourceHasAListOfItsOwn) {
  setTerrainSource(1, {"/srv/one"});
  open();
  EXPECT_TRUE(listedPaths().empty());
  EXPECT_EQ(label("lblPathsNote"), "Nothing is set: the bundled sample terrain stands in (the default).");
  list("cboSource").setFocus();
  press(Qt::Key_Home);
  EXPECT_EQ(listedPaths(), Texts{"/srv/one"});
  typePath(0, QStringLiteral("/srv/other"));
  EXPECT_TRUE(dialog().isVisible());  // Enter ended the typing, not the dialog
  click("cmdOK");
  EXPECT_EQ(stored, Texts{"Terrain/Source1"});
  EXPECT_EQ(sourcePaths(1), Texts{"/srv/other"});
  EXPECT_EQ(sourcePaths(3), Texts{});
}

TEST_F(PreferencesTerrainTest, FilesAndFoldersAreAddedOrderedAndRemoved) {
  const std::string one = raster("one.tif"), two = raster("two.tif");
  open();
  answer<QFileDialog>([&](QFileDialog& files) {
    files.setDirectory(QString::fromStdString(folder_.path().string()));
    files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QStringLiteral("\"one.tif\" \"two.tif\""));
    static_cast<QDialog&>(files).accept();
  });
  click("cmdAddFiles");
  EXPECT_EQ(listedPaths(), (Texts{one, two}));
  answer<QFileDialog>([&](QFileDialog& files) {
    files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(folder_.path().string()));
    static_cast<QDialog&>(files).accept();
  });
  click("cmdAddFolder");
  const std::string folder = folder_.path().string();
  EXPECT_EQ(listedPaths(), (Texts{one, two, folder}));
  EXPECT_FALSE(button("cmdDown").isEnabled());
  click("cmdUp");
  click("cmdUp");
  EXPECT_EQ(listedPaths(), (Texts{folder, one, two}));
  EXPECT_FALSE(button("cmdUp").isEnabled());
  click("cmdDown");
  EXPECT_EQ(listedPaths(), (Texts{one, folder, two}));
  paths().setCurrentRow(0);
  paths().setFocus();
  press(Qt::Key_Delete);
  paths().setCurrentRow(1);
  click("cmdRemove");
  click("cmdApply");
  EXPECT_EQ(sourcePaths(3), Texts{folder});
  EXPECT_TRUE(std::filesystem::exists(one));  // off the list, not off the disk
  EXPECT_TRUE(button("cmdSample").isEnabled());
  click("cmdSample");
  EXPECT_FALSE(button("cmdSample").isEnabled());
  click("cmdOK");
  EXPECT_EQ(sourcePaths(3), Texts{});
  EXPECT_EQ(inStore("Terrain", "Source3"), "");
}

TEST_F(PreferencesTerrainTest, APathIsListedOnce) {
  const std::string one = raster("one.tif");
  setTerrainSource(3, {one});
  open();
  answer<QFileDialog>([&](QFileDialog& files) {
    files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(one));
    static_cast<QDialog&>(files).accept();
  });
  click("cmdAddFiles");
  EXPECT_EQ(listedPaths(), Texts{one});
  EXPECT_FALSE(button("cmdApply").isEnabled());
}

TEST_F(PreferencesTerrainTest, APathWithASemicolonIsRefusedInWords) {
  setTerrainSource(3, {"/srv/terrain"});
  open();
  typePath(0, QStringLiteral("/srv/a;b"));
  EXPECT_EQ(label("lblPathsNote"),
            "Cannot be stored: \"/srv/a;b\" has a \";\" in it, which separates paths where they are stored.");
  list("cboSource").setCurrentIndex(0);
  click("cmdOK");
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_EQ(list("cboSource").currentText().toStdString(), "1 second (source 3)");
  EXPECT_EQ(sourcePaths(3), Texts{"/srv/terrain"});
}

TEST_F(PreferencesTerrainTest, ANameThatIsNoUtf8IsKeptByteForByte) {
  setTerrainSource(3, {"/srv/a\xFF", "/srv/b"});
  open();
  paths().setCurrentRow(0);
  click("cmdDown");
  click("cmdOK");
  EXPECT_EQ(sourcePaths(3), (Texts{"/srv/b", "/srv/a\xFF"}));
}

TEST_F(PreferencesTerrainTest, CoverageOfTheChosenSourceIsDrawnAndSaid) {
  open();
  ASSERT_TRUE(waitForCoverage("1 raster"));
  // The extent that data/terrain/README.md gives.
  EXPECT_EQ(coverage(), "1 raster, 36.16 N to 36.45 N, 84.41 W to 84.08 W.");
  auto& map = control<QWidget>("mapCoverage");
  EXPECT_EQ(map.accessibleDescription().toStdString(), coverage());
  const QColor middle = map.grab().toImage().pixelColor(map.width() / 2, map.height() / 2);
  EXPECT_NE(middle, map.palette().color(QPalette::Base));
  map.setFocus();
  press(Qt::Key_Right);
  EXPECT_NE(coverage().find("jacksboro_3s.tif"), std::string::npos);
  // On the whole world the raster is a speck, and not in the middle.
  click("chkWorld");
  EXPECT_EQ(map.grab().toImage().pixelColor(map.width() / 2 + 4, map.height() / 2 + 4),
            map.palette().color(QPalette::Base));
}

TEST_F(PreferencesTerrainTest, CoverageAcrossTheDateLineAndAroundTheWorldIsSaidAndDrawn) {
  const auto show = [&](const char* west, const char* cell, int columns) {
    std::string text = "ncols " + std::to_string(columns) + "\nnrows 2\nxllcorner " + west +
                       "\nyllcorner 10\ncellsize " + cell + "\n";
    for (int i = 0; i < 2 * columns; ++i) text += "5 ";
    test::writeBytes(folder_ / "raster.asc", text + "\n");
    setTerrainSource(3, {(folder_ / "raster.asc").string()});
    open();
    ASSERT_TRUE(waitForCoverage("1 raster"));
    auto& map = control<QWidget>("mapCoverage");
    EXPECT_NE(map.grab().toImage().pixelColor(map.width() / 2 + 3, map.height() / 2 + 3),
              map.palette().color(QPalette::Base));
  };
  show("179.5", "0.25", 4);
  EXPECT_EQ(coverage(), "1 raster, 10.00 N to 10.50 N, 179.50 E to 179.50 W.");
  show("-180", "5", 72);
  EXPECT_EQ(coverage(), "1 raster, 10.00 N to 20.00 N, 180.00 W to 180.00 E.");
}

TEST_F(PreferencesTerrainTest, RastersThatCannotBeUsedAreListedWithWhy) {
  raster("good.tif");
  test::writeBytes(folder_ / "bad.tif", "no picture");
  setTerrainSource(3, {folder_.path().string(), "/nowhere/at/all"});
  open();
  ASSERT_TRUE(waitForCoverage("1 raster"));
  auto& problems = control<QListWidget>("lstProblems");
  std::string all;
  for (int i = 0; i < problems.count(); ++i) all += problems.item(i)->text().toStdString() + "\n";
  EXPECT_TRUE(problems.isVisible());
  EXPECT_NE(all.find("bad.tif"), std::string::npos) << all;
  EXPECT_NE(all.find("/nowhere/at/all"), std::string::npos) << all;
}

TEST_F(PreferencesTerrainTest, CoverageIsThatOfTheStoredListUntilApply) {
  const std::string one = raster("one.tif");
  open();
  ASSERT_TRUE(waitForCoverage("1 raster"));
  answer<QFileDialog>([&](QFileDialog& files) {
    files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(one));
    static_cast<QDialog&>(files).accept();
  });
  click("cmdAddFiles");
  EXPECT_NE(coverage().find("as stored"), std::string::npos);
  click("cmdApply");
  EXPECT_EQ(coverage(), "Looking ...");
  ASSERT_TRUE(waitForCoverage("1 raster"));
  EXPECT_EQ(coverage().find("as stored"), std::string::npos);
  control<QWidget>("mapCoverage").setFocus();
  press(Qt::Key_Left);
  EXPECT_NE(coverage().find("one.tif"), std::string::npos);
}

TEST_F(PreferencesTerrainTest, ClosingWhileItLooksIsHarmless) {
  for (int i = 0; i < 5; ++i) {
    raster("one.tif");
    setTerrainSource(3, {folder_.path().string()});
    open();
    QCoreApplication::processEvents();
    open();
    std::filesystem::remove(folder_ / "one.tif");
  }
}

TEST_F(PreferencesTerrainTest, ClosingGivesALookThroughAFolderUp) {
  const std::string one = raster("one.tif");
  for (int i = 0; i < 300; ++i)
    std::filesystem::create_hard_link(one, folder_ / ("copy" + std::to_string(i) + ".tif"));
  setTerrainSource(3, {folder_.path().string()});
  open();
  destroy();
  const std::atomic<bool> atOnce{true};
  EXPECT_FALSE(TerrainMap::open(3)->prepare(&atOnce));
}

// ---- The settings are those that the model reads ----

TEST_F(PreferencesTest, TheModeledLossFollowsEveryParameter) {
  PathLossRequest request;
  request.from = {36.40, -84.35};
  request.to = {36.22, -84.12};
  request.frequencyMhz = 40;  // where the ground counts
  const PathLoss before = computePathLoss(request);
  ASSERT_EQ(before.status, 0) << before.error;
  std::set<double> losses{before.modeledDb.value()};
  const auto loss = [&](const std::function<void()>& change) {
    open(PreferencesPage::kModel);
    change();
    click("cmdOK");
    const PathLoss after = computePathLoss(request);
    EXPECT_TRUE(losses.insert(after.modeledDb.value()).second) << "the loss is one of before";
    return after.model;
  };
  const auto choose = [&](const char* name, const char* code) {
    list(name).setCurrentIndex(list(name).findData(QLatin1String(code)));
  };
  EXPECT_EQ(before.model.polarization, Polarization::kHorizontal);
  EXPECT_EQ(loss([&] { choose("ITM_iHor", "1"); }).polarization, Polarization::kVertical);
  EXPECT_EQ(loss([&] { choose("ITM_iRadioClimate", "1"); }).climate, 1);
  EXPECT_EQ(loss([&] { type("ITM_dSurfRef", "360"); }).surfaceRefractivity, 360);
  EXPECT_EQ(loss([&] { type("ITM_dDielectric", "40"); }).permittivity, 40);
  EXPECT_EQ(loss([&] { type("ITM_dCond", "0.5"); }).conductivity, 0.5);
  EXPECT_EQ(loss([&] { type("ITM_dConfidence", "90"); }).confidence, 0.9);
  EXPECT_EQ(loss([&] { type("ITM_dReliability", "95"); }).reliability, 0.95);
  open(PreferencesPage::kModel);
  for (const PreferenceField& field : preferenceFields()) {
    if (field.page == PreferencesPage::kModel) click((objectNameOf(field) + "_default").c_str());
  }
  click("cmdOK");
  EXPECT_EQ(computePathLoss(request).modeledDb, before.modeledDb);
}

// ---- Stores that fail ----

// No file may grow beyond this while it lives, as on a full disk.
class LargestFile {
 public:
  explicit LargestFile(rlim_t bytes) {
    signal_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  LargestFile(const LargestFile&) = delete;
  LargestFile& operator=(const LargestFile&) = delete;
  ~LargestFile() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }

 private:
  rlimit before_{};
  void (*signal_)(int) = nullptr;
};

TEST_F(PreferencesTest, AStoreThatCannotBeWrittenIsToldAndNothingIsLost) {
  open(PreferencesPage::kModel);
  type("ITM_dSurfRef", "320");
  std::string told;
  answer<QMessageBox>([&](QMessageBox& box) {
    told = box.informativeText().toStdString();
    box.accept();
  });
  {
    const LargestFile limit(0);
    click("cmdOK");
  }
  EXPECT_NE(told.find("Stored: nothing."), std::string::npos) << told;
  EXPECT_NE(told.find("Not stored: Refractivity."), std::string::npos) << told;
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_EQ(shown("ITM_dSurfRef"), "320");
  EXPECT_TRUE(stored.empty());
  click("cmdOK");
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(inStore("ITM", "dSurfRef"), "320");
}

TEST_F(PreferencesTest, WhatWasStoredBeforeAFailureIsSaidAndKnown) {
  setTerrainSource(3, {"/srv/terrain"});
  open();
  typePath(0, QString(4000, u'x'));
  type("Terrain_CacheMB", "64");
  std::string told;
  answer<QMessageBox>([&](QMessageBox& box) {
    told = box.informativeText().toStdString();
    box.accept();
  });
  {
    const LargestFile limit(2000);
    click("cmdApply");
  }
  EXPECT_NE(told.find("Stored: Memory."), std::string::npos) << told;
  EXPECT_NE(told.find("Not stored: terrain of source 3."), std::string::npos) << told;
  EXPECT_EQ(stored, Texts{"Terrain/CacheMB"});
  EXPECT_EQ(inStore("Terrain", "CacheMB"), "64");
  EXPECT_EQ(inStore("Terrain", "Source3"), "/srv/terrain");
  EXPECT_TRUE(button("cmdApply").isEnabled());
  click("cmdApply");
  EXPECT_EQ(stored, (Texts{"Terrain/CacheMB", "Terrain/Source3"}));
}

TEST_F(PreferencesTest, SettingsThatCannotBeReadAreToldAndTheirDefaultsShown) {
  storeSetting("ITM", "dSurfRef", "320");
  // Their folder is a file all at once.
  const std::filesystem::path folder = std::filesystem::path(settingsFile()).parent_path();
  std::filesystem::rename(folder, folder.string() + ".away");
  test::writeBytes(folder, "");
  open();
  EXPECT_NE(label("lblNotice").find("The settings cannot be read"), std::string::npos) << label("lblNotice");
  EXPECT_EQ(shown("ITM_dSurfRef"), "301");
  std::filesystem::remove(folder);
  std::filesystem::rename(folder.string() + ".away", folder);
}

// ---- Keyboard ----

TEST_F(PreferencesTest, ControlWithTabOrPageTurnsThePages) {
  open(PreferencesPage::kPrograms);
  press(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(dialog().page(), PreferencesPage::kTerrain);
  press(Qt::Key_PageDown, Qt::ControlModifier);
  EXPECT_EQ(dialog().page(), PreferencesPage::kModel);
  press(Qt::Key_PageUp, Qt::ControlModifier);
  press(Qt::Key_PageUp, Qt::ControlModifier);
  EXPECT_EQ(dialog().page(), PreferencesPage::kPrograms);
  press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(dialog().page(), PreferencesPage::kColours);
}

TEST_F(PreferencesTest, APageThatIsTurnedTakesTheFocusBackToTheList) {
  open(PreferencesPage::kModel);
  box("ITM_dCond").setFocus();
  press(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(QApplication::focusWidget(), &control<QWidget>("lstPages"));
}

TEST_F(PreferencesTest, TabReachesEverythingThatTakesTheKeyboard) {
  for (const PreferencesPage page : kAllPages) {
    open(page);
    std::set<QWidget*> reached;
    for (int i = 0; i < 100 && reached.insert(QApplication::focusWidget()).second; ++i) press(Qt::Key_Tab);
    for (QWidget* widget : dialog().findChildren<QWidget*>()) {
      if (!widget->isVisible() || !widget->isEnabled() || (widget->focusPolicy() & Qt::TabFocus) == 0)
        continue;
      EXPECT_EQ(reached.count(widget), 1U) << widget->objectName().toStdString();
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
      EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
    }
  }
}

TEST_F(PreferencesTest, TabGoesDownThePage) {
  open(PreferencesPage::kModel);
  Texts order;
  for (int i = 0; i < 9; ++i) {
    press(Qt::Key_Tab);
    order.push_back(QApplication::focusWidget()->objectName().toStdString());
  }
  EXPECT_EQ(order, (Texts{"ITM_iHor", "ITM_iRadioClimate", "ITM_dSurfRef", "cboGround_pageModel",
                          "ITM_dDielectric", "ITM_dCond", "ITM_dConfidence", "ITM_dReliability", "cmdOK"}));
}

TEST_F(PreferencesTest, MnemonicsAreUniqueOnEachPage) {
  for (const PreferencesPage page : kAllPages) {
    open(page);
    std::map<QString, QString> taken;
    const auto take = [&](const QString& text) {
      const QString key = QKeySequence::mnemonic(text).toString();
      if (key.isEmpty()) return;
      EXPECT_EQ(taken.count(key), 0U) << text.toStdString() << " and " << taken[key].toStdString();
      taken[key] = text;
    };
    for (const QLabel* each : dialog().findChildren<QLabel*>())
      if (each->isVisible() && each->buddy() != nullptr) take(each->text());
    for (const QAbstractButton* each : dialog().findChildren<QAbstractButton*>())
      if (each->isVisible()) take(each->text());
    EXPECT_GE(taken.size(), 5U);
  }
}

TEST_F(PreferencesTest, HelpIsTheHostsOrAWordAboutThePage) {
  open(PreferencesPage::kModel);
  std::string words;
  answer<QMessageBox>([&](QMessageBox& box) {
    words = box.text().toStdString();
    box.accept();
  });
  press(Qt::Key_F1);
  EXPECT_NE(words.find("irregular terrain model"), std::string::npos);
  std::optional<PreferencesPage> asked;
  dialog().onHelp = [&](PreferencesPage page) { asked = page; };
  click("cmdHelp");
  EXPECT_EQ(asked, PreferencesPage::kModel);
}

// ---- Looks ----

// What of the page does not fit where it is: empty when nothing is clipped.
std::string clipped(PreferencesDialog& dialog) {
  for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->objectName().startsWith(QLatin1String("qt_"))) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (label == nullptr && button == nullptr && qobject_cast<const QLineEdit*>(widget) == nullptr) continue;
    const int height = label != nullptr && label->wordWrap() ? label->heightForWidth(label->width())
                                                             : widget->minimumSizeHint().height();
    const bool narrow =
        (label == nullptr || !label->wordWrap()) && widget->width() < widget->minimumSizeHint().width();
    const bool outside =
        widget->parentWidget() != nullptr && !widget->parentWidget()->rect().contains(widget->geometry());
    if (narrow || widget->height() < height || outside)
      return widget->objectName().toStdString() + (outside  ? " lies outside"
                                                   : narrow ? " is narrow"
                                                            : " is low");
  }
  return {};
}

TEST_F(PreferencesTest, NothingIsClippedInAnySizeOrFont) {
  for (const int points : {9, 14})
    for (const bool smallest : {false, true})
      for (const PreferencesPage page : kAllPages) {
        QApplication::setFont(QFont(pinnedFamily(), points));
        open(page);
        if (smallest) dialog().resize(1, 1);
        QCoreApplication::processEvents();
        EXPECT_EQ(clipped(dialog()), "")
            << points << " pt, page " << static_cast<int>(page) << (smallest ? ", smallest" : "");
        EXPECT_LE(dialog().width(), 800);  // of the smallest screen in use
        for (const QScrollArea* area : dialog().findChildren<QScrollArea*>())
          EXPECT_FALSE(area->isVisible() && area->horizontalScrollBar()->isVisible())
              << points << " pt, page " << static_cast<int>(page) << ", "
              << area->widget()->minimumSizeHint().width() << " in " << area->viewport()->width();
      }
}

QPalette darkPalette() {
  const QColor window(49, 54, 59), base(27, 30, 32), text(239, 240, 241), disabled(120, 124, 128);
  QPalette dark(text, QColor(60, 65, 70), QColor(90, 95, 100), QColor(20, 22, 24), QColor(40, 44, 48), text,
                base);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::Button, window);
  dark.setColor(QPalette::Highlight, QColor(29, 99, 140));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, disabled);
  }
  return dark;
}

class Palette {
 public:
  explicit Palette(const QPalette& palette) : before_(QApplication::palette()) {
    QApplication::setPalette(palette);
  }
  Palette(const Palette&) = delete;
  Palette& operator=(const Palette&) = delete;
  ~Palette() { QApplication::setPalette(before_); }

 private:
  QPalette before_;
};

double luminance(QRgb colour) {
  const auto part = [](int byte) {
    const double value = byte / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) + 0.0722 * part(qBlue(colour));
}

// Between what most of the picture is and what differs most from that.
double contrastIn(const QImage& picture) {
  std::map<QRgb, int> pixels;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) ++pixels[picture.pixel(x, y)];
  const auto most = std::max_element(pixels.begin(), pixels.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  const double ground = luminance(most->first) + 0.05;
  double contrast = 1;
  for (const auto& [colour, count] : pixels) {
    const double other = luminance(colour) + 0.05;
    contrast = std::max(contrast, std::max(other, ground) / std::min(other, ground));
  }
  return contrast;
}

// The ratio is that of WCAG 2.1, 1.4.3; what is disabled is excepted there, too.
TEST_F(PreferencesTest, OnADarkDesktopOfTwiceThePixelsEveryTextIsReadable) {
  const Palette dark(darkPalette());
  open();
  ASSERT_TRUE(waitForCoverage("1 raster"));
  EXPECT_EQ(control<QWidget>("mapCoverage").grab().toImage().pixelColor(3, 3), QColor(27, 30, 32));
  for (const PreferencesPage page : kAllPages) {
    dialog().showPage(page);
    QCoreApplication::processEvents();
    EXPECT_EQ(clipped(dialog()), "") << "page " << static_cast<int>(page);
    QImage picture(dialog().size() * 2, QImage::Format_RGB32);
    picture.setDevicePixelRatio(2);
    dialog().render(&picture);
    int texts = 0;
    for (const QWidget* widget : dialog().findChildren<QWidget*>()) {
      const auto* text = qobject_cast<const QLabel*>(widget);
      const bool shows = text != nullptr ? !text->text().isEmpty()
                                         : qobject_cast<const QPushButton*>(widget) != nullptr ||
                                               qobject_cast<const QComboBox*>(widget) != nullptr;
      if (!shows || !widget->isVisible() || !widget->isEnabled()) continue;
      const QRect place(widget->mapTo(&dialog(), QPoint(3, 3)), widget->size() - QSize(6, 6));
      const QRect seen = place.intersected(dialog().rect());
      // Below the fold of a page that is scrolled.
      if (widget->visibleRegion().boundingRect().size() != widget->size()) continue;
      ++texts;
      const double contrast = contrastIn(picture.copy(QRect(seen.topLeft() * 2, seen.size() * 2)));
      EXPECT_GT(contrast, 4.5) << widget->objectName().toStdString();
    }
    EXPECT_GT(texts, 5) << "page " << static_cast<int>(page);
  }
}

// ---- For this run only: last, because the rest of the process keeps it ----

using PreferencesTheRunTest = PreferencesTerrainTest;

TEST_F(PreferencesTheRunTest, TerrainOfThisRunIsToldAndTheStoredListsAreKept) {
  setTerrainSource(3, {"/srv/terrain"});
  useTerrainForThisRun({"/srv/run"});
  open();
  EXPECT_EQ(label("lblRunTerrain"),
            "For this run every source reads what was given at the start: /srv/run. What is set here counts "
            "from the next start.");
  EXPECT_EQ(list("cboSource").currentText().toStdString(), "1 second (source 3)");
  EXPECT_EQ(listedPaths(), Texts{"/srv/terrain"});
  click("cmdOK");
  EXPECT_EQ(inStore("Terrain", "Source3"), "/srv/terrain");
  useTerrainForThisRun({});
  open();
  EXPECT_FALSE(control<QLabel>("lblRunTerrain").isVisible());
}

TEST_F(PreferencesTheRunTest, AValueOfThisRunIsMarkedAndLeftAlone) {
  storeSetting("PTP", "ClutterHeight", "3");
  overrideSetting("PTP", "ClutterHeight", "12");
  overrideSetting("Terrain", "Source9", "/srv/run");
  open(PreferencesPage::kPointToPoint);
  EXPECT_EQ(shown("PTP_ClutterHeight"), "12");
  EXPECT_FALSE(box("PTP_ClutterHeight").isEnabled());
  EXPECT_FALSE(button("PTP_ClutterHeight_default").isEnabled());
  EXPECT_EQ(label("PTP_ClutterHeight_hint"), "Given for this run only; not changed here.");
  dialog().showPage(PreferencesPage::kTerrain);
  list("cboSource").setCurrentIndex(list("cboSource").count() - 1);
  EXPECT_EQ(listedPaths(), Texts{"/srv/run"});
  EXPECT_FALSE(button("cmdAddFiles").isEnabled());
  EXPECT_EQ(label("lblPathsNote"), "Given for this run only; not changed here.");
  click("cmdOK");
  EXPECT_TRUE(stored.empty());
}

using PreferencesProgramsRunTest = PreferencesProgramsTest;

TEST_F(PreferencesProgramsRunTest, AGnuplotThatStandsInForThisRunCanBeReplaced) {
  overrideSetting("Settings", "gnuPlotEXE", program);
  const std::string other = (folder_ / "plotter").string();
  test::writeBytes(other, "");
  std::filesystem::permissions(other, std::filesystem::perms::owner_all);
  open(PreferencesPage::kPrograms);
  EXPECT_TRUE(box("Settings_gnuPlotEXE").isEnabled());
  type("Settings_gnuPlotEXE", other.c_str());
  click("cmdOK");
  EXPECT_EQ(inStore("Settings", "gnuPlotEXE"), other);  // from now on, not from the next start
}

}  // namespace
}  // namespace zel::host
