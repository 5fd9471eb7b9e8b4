// The main window: map, tables, menus, profile.
#include <QClipboard>
#include <QDialog>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QIcon>
#include <QMenu>
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "desktop/shown_values.h"
#include "desktop_fixture.h"
#include "planning/plan_file.h"
#include "support/legible.h"
#include "zel/geodesic.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"

namespace zel::host {
namespace {

using MainWindowTest = DesktopTest;

TEST_F(MainWindowTest, AFirstStartShowsTheSamplePlanComputed) {
  started();
  EXPECT_EQ(window().document().plan(), samplePlan());
  EXPECT_FALSE(window().document().modified());
  EXPECT_TRUE(waitFor([&] { return summary().contains(QLatin1String("modeled")); }))
      << summary().toStdString();
  // The figures of the same path on the command line.
  EXPECT_TRUE(summary().startsWith(QStringLiteral("North ridge - South hill: 28.73 km, 134.0°, free space ")))
      << summary().toStdString();
  EXPECT_TRUE(summary().endsWith(QLatin1String("(950 MHz, k 1.333; 1 second, bundled sample terrain)")))
      << summary().toStdString();
}

TEST_F(MainWindowTest, TheSampleTerrainIsToldOfUntilDismissed) {
  started();
  auto* notice = window().findChild<QWidget*>(QStringLiteral("sampleNotice"));
  EXPECT_TRUE(notice->isVisible());
  QTest::mouseClick(window().findChild<QWidget*>(QStringLiteral("sampleNoticeDismiss")), Qt::LeftButton);
  EXPECT_FALSE(notice->isVisible());
  action("mnuViewUnits1")->trigger();
  EXPECT_FALSE(notice->isVisible());
}

TEST_F(MainWindowTest, TheLineAboutSampleTerrainLeadsToThePreferences) {
  started();
  bool opened = false;
  whenAsked<QDialog>(QStringLiteral("dlgPreferences"), [&opened](QDialog& dialog) {
    opened = true;
    dialog.reject();
  });
  window().findChild<QPushButton*>(QStringLiteral("sampleNoticePreferences"))->click();
  EXPECT_TRUE(opened);
  window().findChild<QPushButton*>(QStringLiteral("sampleNoticeGuide"))->click();
  EXPECT_EQ(said(), QStringLiteral("The guide is not there; install it with the program"));
}

TEST_F(MainWindowTest, UndoAndRedoNameTheChange) {
  started();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  EXPECT_TRUE(action("mnuEditUndo")->text().startsWith(QLatin1String("&Undo ")));
  EXPECT_TRUE(window().isWindowModified());
  action("mnuEditUndo")->trigger();
  EXPECT_EQ(document.plan(), samplePlan());
  EXPECT_FALSE(window().isWindowModified());
  action("mnuEditRedo")->trigger();
  EXPECT_EQ(document.plan().stations.at(1).position, (Position{36.39, -84.34}));
}

TEST_F(MainWindowTest, ACellTakesDegreesMinutesSecondsAndRefusesWhatIsNone) {
  started();
  auto* model = table("stationsTable")->model();
  EXPECT_TRUE(model->setData(model->index(0, 1), QStringLiteral("36-18-00 N")));
  EXPECT_DOUBLE_EQ(window().document().plan().stations.at(1).position.latitude, 36.3);
  EXPECT_FALSE(model->setData(model->index(0, 1), QStringLiteral("96")));
  EXPECT_FALSE(said().isEmpty());
  EXPECT_FALSE(model->setData(model->index(0, 3), QStringLiteral("751")));
  EXPECT_EQ(said(), QStringLiteral("The antenna height 751 m is not from 0 to 750 m"));
  EXPECT_DOUBLE_EQ(window().document().plan().stations.at(1).position.latitude, 36.3);
  EXPECT_TRUE(model->setData(model->index(0, 3), QStringLiteral("100 ft")));
  EXPECT_DOUBLE_EQ(window().document().plan().stations.at(1).antennaM, 30.48);

  // Enter in a cell that is edited takes the value, and opens nothing.
  QTableView* view = table("stationsTable");
  view->setCurrentIndex(model->index(0, 0));
  view->edit(view->currentIndex());
  auto* editor = view->viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  editor->selectAll();
  QTest::keyClicks(editor, QStringLiteral("Typed"));
  QTimer::singleShot(0, qApp, [] {
    if (QWidget* opened = QApplication::activeModalWidget()) {
      ADD_FAILURE() << opened->objectName().toStdString();
      opened->close();
    }
  });
  QTest::keyClick(editor, Qt::Key_Return);
  EXPECT_TRUE(waitFor([&] { return window().document().plan().stations.at(1).name == "Typed"; }));
}

TEST_F(MainWindowTest, AFrequencyOfItsOwnChangesTheLinksLoss) {
  started();
  auto* model = table("linksTable")->model();
  const double before = window().analysis().find(1)->freeSpaceDb;
  EXPECT_TRUE(model->setData(model->index(0, 4), QStringLiteral("1900")));
  EXPECT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  // Twice the frequency is 20 log10 2 = 6.02 dB more.
  EXPECT_NEAR(window().analysis().find(1)->freeSpaceDb - before, 6.0206, 0.001);
  EXPECT_FALSE(model->setData(model->index(0, 4), QStringLiteral("19")));
  EXPECT_EQ(said(), QStringLiteral("The frequency 19 MHz is not from 20 to 20000 MHz"));
  EXPECT_TRUE(model->setData(model->index(0, 4), QString()));
  EXPECT_FALSE(window().document().plan().links.at(1).frequencyMhz);
}

TEST_F(MainWindowTest, DeletingAStationTakesItsLinksAlongAndUndoBringsThemBack) {
  started();
  table("stationsTable")->selectRow(0);
  action("mnuEditDelete")->trigger();
  EXPECT_EQ(window().document().plan().stations.size(), 1U);
  EXPECT_TRUE(window().document().plan().links.empty());
  EXPECT_EQ(table("linksTable")->model()->rowCount(), 0);
  action("mnuEditUndo")->trigger();
  EXPECT_EQ(window().document().plan(), samplePlan());
}

TEST_F(MainWindowTest, TablesAndMapHaveOneSelection) {
  started();
  table("stationsTable")->selectRow(1);
  EXPECT_EQ(window().map().selection(), (MapSelection{{2}, {}}));
  EXPECT_FALSE(table("linksTable")->selectionModel()->hasSelection());
  table("linksTable")->selectRow(0);
  EXPECT_EQ(window().map().selection(), (MapSelection{{}, {1}}));
  window().map().onSelectionChanged({{1}, {}});
  EXPECT_EQ(table("stationsTable")->selectionModel()->selectedRows().front().row(), 0);
}

TEST_F(MainWindowTest, StationsAreCopiedAndPastedAsText) {
  started();
  table("stationsTable")->selectRow(0);
  action("mnuEditCopy")->trigger();
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("36.400000,-84.350000,30,North ridge\n"));
  QApplication::clipboard()->setText(
      QStringLiteral("36.3,-84.2\n\nnonsense\n36-15-00 N,84-15-00 W,100 ft,A, B\n"));
  action("mnuEditPaste")->trigger();
  const auto& stations = window().document().plan().stations;
  ASSERT_EQ(stations.size(), 4U);
  EXPECT_EQ(stations.at(4).name, "A, B");
  EXPECT_DOUBLE_EQ(stations.at(4).antennaM, 30.48);
  EXPECT_TRUE(said().startsWith(QLatin1String("Pasted 2 stations; left out 1 line, line 3: ")))
      << said().toStdString();
  action("mnuEditUndo")->trigger();
  EXPECT_EQ(stations.size(), 2U);

  // What is cut is pasted unchanged, to the last digit and with whatever is in its name.
  Station exact{"Ridge, \"old\"; 2", {36.123456789012345, -84.00000000000123}, 12.345678};
  PlanDocument& document = window().document();
  document.apply(changeStation(document.plan(), 1, exact));
  table("stationsTable")->selectRow(0);
  action("mnuEditCut")->trigger();
  ASSERT_EQ(stations.size(), 1U);
  action("mnuEditPaste")->trigger();
  ASSERT_EQ(stations.size(), 2U);
  EXPECT_EQ(stations.rbegin()->second, exact);
}

TEST_F(MainWindowTest, ATypedStationIsRefusedWithTheReasonUntilItIsRight) {
  started();
  QString problem;
  whenAsked<QDialog>(QStringLiteral("stationDialog"), [&](QDialog& dialog) {
    auto* position = dialog.findChild<QLineEdit*>(QStringLiteral("stationPosition"));
    QTest::keyClicks(position, QStringLiteral("96.3, -84"));
    QTest::keyClick(position, Qt::Key_Return);
    problem = dialog.findChild<QLabel*>(QStringLiteral("stationProblem"))->text();
    EXPECT_TRUE(dialog.isVisible());
    position->clear();
    QTest::keyClicks(position, QStringLiteral("36-18-00 N, 84-12-00 W"));
    QTest::keyClick(position, Qt::Key_Return);
  });
  action("mnuStationAdd")->trigger();
  EXPECT_FALSE(problem.isEmpty());
  ASSERT_EQ(window().document().plan().stations.size(), 3U);
  EXPECT_NEAR(window().document().plan().stations.at(3).position.longitude, -84.2, 1e-12);
}

TEST_F(MainWindowTest, AnOpenProfileFollowsThePlanAndClosesWithItsLink) {
  started();
  ASSERT_TRUE(window().showProfile(1)) << said().toStdString();
  EXPECT_TRUE(component_->get_PFrmLoaded());
  const auto handle = component_->get_hWnd();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  EXPECT_TRUE(waitFor([&] { return component_->get_PFrmLoaded() && component_->get_hWnd() != handle; }));
  document.apply(removeLinks(document.plan(), {1}));
  EXPECT_FALSE(component_->get_PFrmLoaded());
}

TEST_F(MainWindowTest, AProfileShowsTheLinksOwnFrequency) {
  started();
  PlanDocument& document = window().document();
  Link link = document.plan().links.at(1);
  link.frequencyMhz = 450;
  document.apply(changeLink(document.plan(), 1, link));
  ASSERT_TRUE(window().showProfile(1));
  QString shown;
  for (QWidget* each : QApplication::topLevelWidgets())
    if (auto* box = each->findChild<QLineEdit*>(QStringLiteral("tbxFreq"))) shown = box->text();
  EXPECT_EQ(shown, QStringLiteral("450"));
  EXPECT_FALSE(storedSetting("Profile", "Prf_Freq"));
}

TEST_F(MainWindowTest, APathOutsideTheTerrainIsRefusedInWords) {
  started();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.9, -84.35}));
  EXPECT_FALSE(window().showProfile(1));
  EXPECT_FALSE(component_->get_PFrmLoaded());
  EXPECT_TRUE(said().startsWith(QLatin1String("The profile cannot be shown: "))) << said().toStdString();
  // The line over the map has the place in the program's words; the tip has all that is known.
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_TRUE(waitFor([&] {
    return summary().endsWith(
        QLatin1String("no terrain at 36-54-00.0 N, 84-21-00.0 W; add some in Preferences, "
                      "Terrain"));
  })) << summary().toStdString();
  auto* model = table("linksTable")->model();
  EXPECT_EQ(model->index(0, 10).data().toString(), QStringLiteral("no terrain"));
  EXPECT_TRUE(model->index(0, 10).data(Qt::ToolTipRole).toString().contains(QLatin1String("N36W085")));
}

TEST_F(MainWindowTest, AnAntennaOnTheGroundIsRefusedBeforeTheComponentIsCalled) {
  started();
  PlanDocument& document = window().document();
  Station station = document.plan().stations.at(2);
  station.antennaM = 0.5;  // half a metre is rounded to even
  document.apply(changeStation(document.plan(), 2, station));
  const QString reason = QStringLiteral(
      "the antenna of South hill stands on the ground (whole metres are used); give it a height of 1 m at "
      "least");
  EXPECT_FALSE(window().showProfile(1));
  EXPECT_FALSE(component_->get_PFrmLoaded());
  EXPECT_EQ(said(), QStringLiteral("The profile cannot be shown: ") + reason);
  auto* told = window().findChild<QMessageBox*>(QStringLiteral("profileRefused"));
  ASSERT_NE(told, nullptr);
  EXPECT_EQ(told->text(), QStringLiteral("The profile cannot be shown: ") + reason);
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_TRUE(table("linksTable")->model()->index(0, 6).data(Qt::ToolTipRole).toString().contains(reason));
  EXPECT_TRUE(waitFor([&] { return summary().endsWith(QStringLiteral("; no profile: ") + reason); }))
      << summary().toStdString();
  station.antennaM = 0.6;
  document.apply(changeStation(document.plan(), 2, station));
  EXPECT_TRUE(window().showProfile(1)) << said().toStdString();
}

TEST_F(MainWindowTest, TheLineOverTheMapKnowsTheGroundUnderAStation) {
  started();
  PlanDocument& document = window().document();
  table("stationsTable")->selectRow(0);
  // 546 m is the ground at the start of `profile` on the command line.
  EXPECT_TRUE(waitFor([&] {
    return summary() ==
           QStringLiteral("North ridge: 36-24-00.0 N, 84-21-00.0 W, antenna 30 m, ground: 546 m");
  })) << summary().toStdString();
  // While it is dragged, what is under the pointer and no figure of before.
  window().map().onDragStation(1, {10, 10});
  EXPECT_EQ(summary(), QStringLiteral("North ridge: 10-00-00.0 N, 10-00-00.0 E, antenna 30 m"));
  EXPECT_TRUE(waitFor([&] { return summary().endsWith(QLatin1String(", ground: no terrain")); }));
  window().map().onDragEnded();
  EXPECT_TRUE(summary().startsWith(QLatin1String("North ridge: 36-24-00.0 N"))) << summary().toStdString();
  window().map().onPlaceStation({10, 10});
  EXPECT_TRUE(waitFor([&] { return summary().endsWith(QLatin1String(", ground: no terrain")); }))
      << summary().toStdString();
  action("mnuEditUndo")->trigger();
  window().map().onSelectionChanged({{1, 2}, {}});
  EXPECT_EQ(summary(), QStringLiteral("North ridge - South hill: 28.73 km, 134.0°; Ctrl+L links them"));
  window().map().onSelectionChanged({});
  EXPECT_EQ(summary(), QStringLiteral("2 stations, 1 link; choose a link to see its loss and clearance"));
  document.apply(removeStations(document.plan(), {2}));
  EXPECT_TRUE(summary().startsWith(QLatin1String("1 station, no links; "))) << summary().toStdString();
}

TEST_F(MainWindowTest, TheKeysThatGoToATableChooseARowOfIt) {
  started();
  action("mnuViewGoStations")->trigger();
  EXPECT_EQ(window().map().selection().stations, std::vector<StationId>{1});
  table("stationsTable")->selectRow(1);
  action("mnuViewGoStations")->trigger();
  EXPECT_EQ(window().map().selection().stations, std::vector<StationId>{2}) << "the chosen one stays";
  action("mnuViewGoLinks")->trigger();
  EXPECT_EQ(window().map().selection().links, std::vector<LinkId>{1});
}

TEST_F(MainWindowTest, TheDatumIsPartOfThePlanAndOfItsHistory) {
  started();
  action("mnuViewDatum27")->trigger();
  EXPECT_EQ(component_->get_StaDatum(), 0);
  EXPECT_EQ(window().document().plan().datum, PlanDatum::kNad27);
  action("mnuEditUndo")->trigger();
  EXPECT_EQ(component_->get_StaDatum(), 1);
  EXPECT_TRUE(action("mnuViewDatum83")->isChecked());
}

TEST_F(MainWindowTest, UnitsAndCoordinatesAreStoredAndShownAtOnce) {
  started();
  action("mnuViewUnits1")->trigger();
  action("mnuViewCoordinatesDD")->trigger();
  EXPECT_EQ(storedSetting("Settings", "DispUnits"), "1");
  EXPECT_EQ(storedSetting("Settings", "CoordFormat"), "DD");
  EXPECT_EQ(table("stationsTable")->model()->index(0, 1).data().toString(), QStringLiteral("36.400000"));
  EXPECT_EQ(table("stationsTable")->model()->index(0, 3).data().toString(), QStringLiteral("98.43"));
  EXPECT_TRUE(window().map().options().imperial);
}

TEST_F(MainWindowTest, EveryActionHasItsNameTipAndNoKeyTwice) {
  started();
  std::map<QString, QString> keys;
  for (const QAction* each : window().findChildren<QAction*>()) {
    if (each->text().isEmpty() || each->isSeparator() || each->menu() != nullptr) continue;
    if (each->objectName().startsWith(QLatin1String("qt_")) ||
        each->objectName().startsWith(QLatin1String("_q_")))
      continue;
    EXPECT_FALSE(each->objectName().isEmpty()) << each->text().toStdString();
    for (const QKeySequence& key : each->shortcuts()) {
      const auto [place, fresh] = keys.emplace(key.toString(), each->objectName());
      EXPECT_TRUE(fresh) << key.toString().toStdString() << " is " << place->second.toStdString() << " and "
                         << each->objectName().toStdString();
    }
  }
  EXPECT_GT(keys.size(), 20U);
}

TEST_F(MainWindowTest, NoMenuHasOneLetterTwice) {
  started();
  for (const QMenu* menu : window().findChildren<QMenu*>()) {
    std::map<QChar, QString> letters;
    for (const QAction* item : menu->actions()) {
      const QKeySequence letter = QKeySequence::mnemonic(item->text());
      if (letter.isEmpty()) continue;
      const QChar key = letter.toString().back();
      const auto [place, fresh] = letters.emplace(key, item->text());
      EXPECT_TRUE(fresh) << menu->objectName().toStdString() << ": " << place->second.toStdString() << " and "
                         << item->text().toStdString();
    }
  }
}

// ---- Ground that the component refuses ----

// 200 m high, with a trench of 300 m under the sea across it.
std::string trenchRaster(const std::filesystem::path& path) {
  constexpr int kPosts = 121;
  std::string text = "ncols 121\nnrows 121\nxllcorner 10\nyllcorner 50\ncellsize 0.005\n";
  for (int row = 0; row < kPosts; ++row)
    for (int column = 0; column < kPosts; ++column) {
      text += column >= 50 && column <= 52 ? "-300" : "200";
      text += column + 1 < kPosts ? ' ' : '\n';
    }
  test::writeBytes(path, text);
  return path.string();
}

Plan overTheTrench() {
  Plan plan;
  plan.stations[1] = {"West", {50.3, 10.1}, 30};
  plan.stations[2] = {"East", {50.3, 10.5}, 30};
  plan.links[1] = {1, 2, std::nullopt};
  return plan;
}

TEST_F(MainWindowTest, ImpossibleHeightsAreRefusedWithPlaceAndHeight) {
  setTerrainSource(3, {trenchRaster(folder_ / "trench.asc")});
  window().document().open(overTheTrench(), {});
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  const LinkResult& result = *window().analysis().find(1);
  EXPECT_NE(result.error.find("at 50.3"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find(", 10.25"), std::string::npos) << result.error;
  EXPECT_NE(result.error.find("are not carried"), std::string::npos) << result.error;
  EXPECT_FALSE(result.modeledDb);
  auto* model = table("linksTable")->model();
  EXPECT_EQ(model->index(0, 10).data().toString(), QStringLiteral("refused"));
  EXPECT_EQ(model->index(0, 6).data().toString(), QString());
  EXPECT_TRUE(model->index(0, 10).data(Qt::ToolTipRole).toString().contains(QLatin1String("not carried")));
  EXPECT_FALSE(window().showProfile(1));
  EXPECT_FALSE(component_->get_PFrmLoaded());
  EXPECT_TRUE(said().startsWith(QLatin1String("The profile cannot be shown: "))) << said().toStdString();
  EXPECT_TRUE(said().contains(QLatin1String("at 50.3"))) << said().toStdString();
}

TEST_F(MainWindowTest, AnOpenProfileIsClosedWhenItsGroundBecomesImpossible) {
  const std::string raster = trenchRaster(folder_ / "trench.asc");
  setTerrainSource(3, {raster});
  Plan plan = overTheTrench();
  plan.stations[2].position.longitude = 10.2;  // before the trench
  window().document().open(plan, {});
  ASSERT_TRUE(window().showProfile(1)) << said().toStdString();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 2, {50.3, 10.5}));
  EXPECT_TRUE(waitFor([&] { return !component_->get_PFrmLoaded(); }));
  EXPECT_TRUE(said().startsWith(QLatin1String("The profile was closed: "))) << said().toStdString();
  action("mnuEditUndo")->trigger();
  EXPECT_TRUE(window().showProfile(1)) << said().toStdString();
}

// ---- Terrain that comes and goes ----

// A fifth of a degree of level ground.
std::string levelRaster(const std::filesystem::path& path, double west, int height) {
  constexpr int kPosts = 21;
  std::string text =
      "ncols 21\nnrows 21\nxllcorner " + std::to_string(west) + "\nyllcorner 50\ncellsize 0.01\n";
  for (int i = 0; i < kPosts * kPosts; ++i)
    text += std::to_string(height) + (i % kPosts == kPosts - 1 ? '\n' : ' ');
  test::writeBytes(path, text);
  return path.string();
}

TEST_F(MainWindowTest, FilesThatComeAreSeenWhenTheWindowComesBackAndAnEmptyViewIsSaidToBeOne) {
  std::filesystem::create_directories(folder_ / "tiles");
  levelRaster(folder_ / "tiles" / "west.asc", 10, 200);
  setTerrainSource(3, {(folder_ / "tiles").string()});
  Plan plan;
  plan.stations[1] = {"West", {50.1, 10.1}, 30};
  plan.stations[2] = {"East", {50.1, 10.3}, 30};
  plan.links[1] = {1, 2, std::nullopt};
  writePlanFile((folder_ / "plan.json").string(), {plan, PlanView{{36.3, -84.2}, 50}});
  window().start((folder_ / "plan.json").string());
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_TRUE(window().analysis().find(1)->noTerrain);

  // The plan's file says that the map shows another part of the world.
  auto* notice = window().findChild<QWidget*>(QStringLiteral("emptyViewNotice"));
  ASSERT_TRUE(waitFor([&] { return notice->isVisible(); }));
  window().findChild<QPushButton*>(QStringLiteral("emptyViewNoticeFit"))->click();
  ASSERT_TRUE(waitFor([&] { return !notice->isVisible(); }));
  EXPECT_NEAR(window().map().frame().centre().latitude, 50.1, 0.1);

  levelRaster(folder_ / "tiles" / "east.asc", 10.2, 200);
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
  QEvent back(QEvent::ActivationChange);
  QApplication::sendEvent(&window(), &back);
  ASSERT_TRUE(waitFor([&] { return !window().analysis().find(1)->noTerrain; }));
  EXPECT_EQ(window().analysis().find(1)->error, "");
  EXPECT_TRUE(window().showProfile(1)) << said().toStdString();
}

// ---- Figures ----

TEST_F(MainWindowTest, FiguresFollowTheDatum) {
  started();
  const std::optional<double> before = window().analysis().find(1)->modeledDb;
  action("mnuViewDatum27")->trigger();
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  // What the command line prints for the same positions with --datum nad27.
  PathLossRequest request;
  request.from = {36.40, -84.35};
  request.to = {36.22, -84.12};
  request.fromHeight = request.toHeight = 30;
  const PathLoss loss = computePathLoss(request);
  const LinkResult& result = *window().analysis().find(1);
  EXPECT_EQ(result.distanceKm, loss.distanceKm);
  EXPECT_EQ(result.modeledDb, loss.modeledDb);
  EXPECT_NE(result.modeledDb, before);
}

// The worst obstacle of a path, found anew from the samples of the ground: clearance = line of sight - ground
// - bulge of 1000 d1 d2 / (2 k 6371) m, in percent of the first zone's radius sqrt(wavelength d1 d2 / D).
struct FoundObstacle {
  double distanceKm = 0, groundM = 0, percent = std::numeric_limits<double>::infinity();
};

FoundObstacle worstOf(const SampledTerrain& path, double fromM, double toM, double k, double frequencyMhz) {
  FoundObstacle worst;
  const double whole = path.distanceKm, wavelengthM = 300 / frequencyMhz;
  const auto count = path.elevations.size();
  const double start = static_cast<double>(path.elevations.front()) + fromM;
  const double end = static_cast<double>(path.elevations.back()) + toM;
  for (std::size_t i = 1; i + 1 < count; ++i) {
    const double d1 = path.distancesKm[i], d2 = whole - d1;
    const double ground = static_cast<double>(path.elevations[i]);
    const double clearance = start + (end - start) * d1 / whole - ground - 1000 * d1 * d2 / (2 * k * 6371);
    const double percent = 100 * clearance / std::sqrt(wavelengthM * 1000 * d1 * d2 / whole);
    if (percent < worst.percent) worst = {d1, ground, percent};
  }
  return worst;
}

TEST_F(MainWindowTest, TheTablesFiguresAreThoseOfTheComponentAndOfACalculationOfItsOwn) {
  constexpr int kLinks = 20;
  constexpr unsigned kSeed = 20261121;
  constexpr double kK = 1.333, kFrequency = 950, kFeet = 0.3048, kMile = 1.609344;
  std::mt19937 random(kSeed);
  RecordProperty("seed", static_cast<int>(kSeed));
  const auto between = [&random](double low, double high) {
    return low + (high - low) * static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
  };
  Plan plan;
  for (LinkId i = 1; i <= kLinks; ++i) {
    plan.stations[2 * i - 1] = {
        "A" + std::to_string(i), {between(36.17, 36.43), between(-84.4, -84.09)}, std::round(between(5, 80))};
    plan.stations[2 * i] = {
        "B" + std::to_string(i), {between(36.17, 36.43), between(-84.4, -84.09)}, std::round(between(5, 80))};
    plan.links[i] = {2 * i - 1, 2 * i, std::nullopt};
  }
  storeSetting("Profile", "Prf_Freq",
               "950");  // without it GetPathLoss takes another frequency than the window
  started();
  struct Variant {
    const char* units;
    PlanDatum datum;
  };
  for (const Variant variant :
       {Variant{"0", PlanDatum::kNad83}, Variant{"1", PlanDatum::kNad83}, Variant{"0", PlanDatum::kNad27}}) {
    SCOPED_TRACE(variant.units + std::string(variant.datum == PlanDatum::kNad27 ? " NAD-27" : " NAD-83"));
    storeSetting("Settings", "DispUnits", variant.units);
    plan.datum = variant.datum;
    action(variant.units[0] == '1' ? "mnuViewUnits1" : "mnuViewUnits0")->trigger();
    window().document().open(plan, {});
    ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
    const auto* model = table("linksTable")->model();
    const double lengthUnit = variant.units[0] == '1' ? kMile : 1,
                 heightUnit = variant.units[0] == '1' ? kFeet : 1;
    for (int row = 0; row < kLinks; ++row) {
      SCOPED_TRACE("link " + std::to_string(row + 1));
      const auto figure = [&](int column) { return model->index(row, column).data().toString().toDouble(); };
      const auto link = plan.links.at(static_cast<LinkId>(row + 1));
      const Station &from = plan.stations.at(link.from), &to = plan.stations.at(link.to);
      const Position start = mapPosition(from.position).position, end = mapPosition(to.position).position;
      const GeodesicLine line = geodesicLine(start, end, 2);
      EXPECT_NEAR(figure(2), line.distanceKm / lengthUnit, 0.005001);
      EXPECT_NEAR(figure(3), line.bearingDeg, 0.05001);
      EXPECT_NEAR(figure(5), 32.4 + 20 * std::log10(kFrequency) + 20 * std::log10(line.distanceKm), 0.05001);
      const float loss = component_->GetPathLoss(
          {from.position.latitude, from.position.longitude, static_cast<float>(from.antennaM)},
          {to.position.latitude, to.position.longitude, static_cast<float>(to.antennaM)});
      EXPECT_NEAR(figure(6), static_cast<double>(loss), 0.05001);
      // 100 points a kilometre and at most 1000: one more sample than intervals.
      const auto points =
          static_cast<std::int32_t>(std::min(1000.0, std::round(line.distanceKm * 100 + 1))) + 1;
      const FoundObstacle worst = worstOf(sampleTerrain(from.position, to.position, points, 0, 3),
                                          from.antennaM, to.antennaM, kK, kFrequency);
      EXPECT_NEAR(figure(7), worst.percent, 0.5 + 0.001 * std::abs(worst.percent));
      EXPECT_NEAR(figure(8), worst.distanceKm / lengthUnit, 0.05001);
      EXPECT_NEAR(figure(9), worst.groundM / heightUnit, 0.5001);
      const char* verdict = worst.percent >= 60 ? "clear" : worst.percent >= 0 ? "marginal" : "blocked";
      EXPECT_EQ(model->index(row, 10).data().toString(), QLatin1String(verdict));
    }
  }
}

TEST_F(MainWindowTest, FiguresOfAnotherPlanAreNotSeenUnderThisOne) {
  started();
  Plan plan = samplePlan();
  plan.stations[1].position = {36.30, -84.20};
  window().map().setPlan(&window().document().plan(), &window().analysis());
  window().analysis().pause(true);
  window().document().open(plan, {});
  auto* model = table("linksTable")->model();
  EXPECT_EQ(model->index(0, 2).data().toString(), QString());
  EXPECT_EQ(model->index(0, 10).data().toString(), QStringLiteral("computing"));
  window().analysis().pause(false);
  EXPECT_TRUE(waitFor([&] { return model->index(0, 2).data().toString() != QString(); }));
}

TEST_F(MainWindowTest, FiguresOfBeforeAChangeAreSaidToBeBeingComputed) {
  started();
  auto* model = table("linksTable")->model();
  window().analysis().pause(true);
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  EXPECT_EQ(model->index(0, 10).data().toString(), QStringLiteral("computing"));
  EXPECT_TRUE(model->index(0, 2).data(Qt::ForegroundRole).isValid());
  window().analysis().pause(false);
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_FALSE(model->index(0, 2).data(Qt::ForegroundRole).isValid());
}

TEST_F(MainWindowTest, ADragThatIsGivenUpDoesNotStopTheComputing) {
  started();
  window().map().onDragStation(1, {36.39, -84.34});
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 2, {36.23, -84.13}));
  EXPECT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
}

TEST_F(MainWindowTest, ARowTellsWhatItsFiguresWereComputedFrom) {
  started();
  const QString tip = table("linksTable")->model()->index(0, 6).data(Qt::ToolTipRole).toString();
  for (const char* part :
       {"950 MHz", "k 1.333", "bundled sample terrain", "horizontal polarization", "permittivity 15",
        "conductivity 0.005 S/m", "refractivity 301 N-units", "confidence 50 %", "reliability 50 %"})
    EXPECT_TRUE(tip.contains(QLatin1String(part))) << part << " is not in " << tip.toStdString();
}

TEST_F(MainWindowTest, AVerdictsColourIsTheSameInAChosenRow) {
  started();
  const QVariant sample = table("linksTable")->model()->index(0, 10).data(Qt::DecorationRole);
  ASSERT_TRUE(sample.canConvert<QIcon>());
  constexpr QSize kSize(16, 16);
  const QImage usual = sample.value<QIcon>().pixmap(kSize, QIcon::Normal).toImage();
  EXPECT_EQ(usual.pixelColor(8, 8), QColor(0xd7, 0x30, 0x27)) << "blocked";
  EXPECT_EQ(sample.value<QIcon>().pixmap(kSize, QIcon::Selected).toImage().pixelColor(8, 8),
            usual.pixelColor(8, 8));
}

TEST_F(MainWindowTest, NamesAndPathsInTipsAreNoMarkup) {
  EXPECT_EQ(plainTip(QStringLiteral("<b>x</b>")),
            QStringLiteral("<span style='white-space:pre-wrap'>&lt;b&gt;x&lt;/b&gt;</span>"));
  EXPECT_EQ(plainTip(QString()), QString());
}

TEST_F(MainWindowTest, ColumnsAreAsWideAsTheirFigures) {
  started();
  auto* links = table("linksTable");
  for (int column = 0; column < links->model()->columnCount(); ++column)
    EXPECT_GE(links->columnWidth(column), links->sizeHintForIndex(links->model()->index(0, column)).width())
        << column;
  // One long name leaves the figures in sight, and is told whole by its tip.
  PlanDocument& document = window().document();
  Plan plan = document.plan();
  plan.stations[1].name = std::string(kLongestName, 'W');
  document.open(plan, {});
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  constexpr int kCharacters = 24;
  EXPECT_LE(links->columnWidth(0), kCharacters * links->fontMetrics().averageCharWidth());
  EXPECT_TRUE(
      links->model()->index(0, 0).data(Qt::ToolTipRole).toString().contains(QString(kLongestName, u'W')));
  auto* names = table("stationsTable")->model();
  EXPECT_TRUE(names->index(0, 0).data(Qt::ToolTipRole).toString().contains(QString(kLongestName, u'W')));
  window().map().onSelectionChanged({{}, {1}});
  EXPECT_TRUE(
      summary().startsWith(QString(39, u'W') + QChar(0x2026) + QStringLiteral(" - South hill: 28.73 km")))
      << summary().toStdString();
}

// ---- Settings ----

TEST_F(MainWindowTest, PreferencesThatAreStoredReachTheFigures) {
  started();
  const double before = *window().analysis().find(1)->modeledDb;
  whenAsked<QDialog>(QStringLiteral("dlgPreferences"), [](QDialog& dialog) {
    auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("ITM_dSurfRef"));
    box->setText(QStringLiteral("380"));
    Q_EMIT box->textEdited(box->text());
    Q_EMIT box->editingFinished();
    dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
  });
  action("mnuToolsPreferences")->trigger();
  EXPECT_EQ(storedSetting("ITM", "dSurfRef"), "380");
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_NE(*window().analysis().find(1)->modeledDb, before);
}

TEST_F(MainWindowTest, SettingsThatAreChangedElsewhereAreFollowedWhenTheWindowComesBack) {
  started();
  storeSetting("Settings", "DispUnits", "1");
  storeSetting("Profile", "Prf_Freq", "450");
  QEvent back(QEvent::ActivationChange);
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
  QApplication::sendEvent(&window(), &back);
  EXPECT_TRUE(window().map().options().imperial);
  ASSERT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
  EXPECT_EQ(window().analysis().find(1)->frequencyMhz, 450);
}

TEST_F(MainWindowTest, AddingTerrainKeepsWhatIsStoredAndIsSeenInARunWithTerrainOfItsOwn) {
  const std::string sample = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
  const std::string mine = trenchRaster(folder_ / "trench.asc");
  const std::string stored = trenchRaster(folder_ / "stored.asc");
  setTerrainSource(3, {stored});
  overrideSetting("Terrain", "Source1", sample);  // another source is left alone
  started();
  answerBox(QStringLiteral("useTerrain"), "useTerrainAdd");
  window().takeFiles({mine});
  EXPECT_EQ(storedSetting("Terrain", "Source3"), mine + ";" + stored);
  // In a run with terrain of its own the new is seen, too, and stored beside what is stored: the run's is
  // not.
  useTerrainForThisRun({sample});
  window().activateWindow();
  answerBox(QStringLiteral("useTerrain"), "useTerrainAdd");
  const std::string another = trenchRaster(folder_ / "another.asc");
  window().takeFiles({another});
  std::string source3;
  for (const TerrainSource& source : terrainSources())
    if (source.code == 3)
      for (const std::string& path : source.paths) source3 += path + ";";
  EXPECT_EQ(source3, another + ";" + sample + ";");
  const std::string kept = test::fileBytes(settingsFile());
  EXPECT_NE(kept.find("another.asc"), std::string::npos) << kept;
  EXPECT_NE(kept.find("stored.asc"), std::string::npos) << kept;
  EXPECT_EQ(kept.find("jacksboro"), std::string::npos) << kept;
  useTerrainForThisRun({});
}

// ---- The window ----

TEST_F(MainWindowTest, TheLineAboutSampleTerrainIsSeenWholeInTheSmallestWindow) {
  started();
  window().resize(window().minimumSize());
  auto* notice = window().findChild<QWidget*>(QStringLiteral("sampleNotice"));
  auto* text = notice->findChild<QLabel*>(QStringLiteral("sampleNoticeText"));
  EXPECT_TRUE(waitFor([&] {
    return notice->isVisible() && text->height() > 0 && text->height() >= text->heightForWidth(text->width());
  })) << text->height()
      << " of " << text->heightForWidth(text->width());
}

// Dark, and with letters twice as large as usual, as on a screen of twice the resolution.
TEST_F(MainWindowTest, EveryTextCanBeReadInADarkPaletteAndTwiceAsLarge) {
  started();
  window().map().onSelectionChanged({{}, {1}});
  window().map().hide();  // its texts are its own tests' business, and it takes its time
  const QPalette palette = QApplication::palette();
  const QFont font = QApplication::font();
  const auto look = [this](const char* how) {
    ASSERT_TRUE(waitFor([this] {
      return window().palette() == QApplication::palette() && window().font() == QApplication::font();
    })) << how;
    waitFor([this] { return test::illegibleTexts(window()).isEmpty(); });
    EXPECT_EQ(test::illegibleTexts(window()).join(u'\n').toStdString(), "") << how;
  };
  look("as usual");
  QPalette dark(QColor(53, 53, 53), QColor(45, 45, 48));
  dark.setColor(QPalette::ToolTipBase, QColor(70, 70, 40));
  dark.setColor(QPalette::ToolTipText, Qt::white);
  QApplication::setPalette(dark);
  QApplication::setFont(QFont(pinnedFamily(), 18));
  window().resize(1200, 900);
  look("dark and large");
  // What has no text, too: the crosses.
  for (const char* name : {"sampleNoticeDismiss", "qt_dockwidget_closebutton"}) {
    auto* cross = window().findChild<QAbstractButton*>(QLatin1String(name));
    ASSERT_NE(cross, nullptr) << name;
    const QRect place(cross->mapTo(&window(), QPoint()), cross->size());
    EXPECT_GT(test::bestContrast(window().grab(place).toImage()), 4.5) << name;
  }
  QApplication::setPalette(palette);
  QApplication::setFont(font);
}

TEST_F(MainWindowTest, TheWindowComesBackAsItWasLeft) {
  started();
  window().resize(900, 640);
  auto* dock = window().findChild<QDockWidget*>(QStringLiteral("tablesDock"));
  window().resizeDocks({dock}, {300}, Qt::Vertical);
  ASSERT_TRUE(waitFor([&] { return dock->height() == 300 && window().width() == 900; }));
  ASSERT_TRUE(window().close());
  dropWindow();
  window();
  EXPECT_EQ(window().size(), QSize(900, 640));
  auto* again = window().findChild<QDockWidget*>(QStringLiteral("tablesDock"));
  EXPECT_TRUE(waitFor([&] { return again->height() == 300; })) << again->height();
}

TEST_F(MainWindowTest, TheContextMenuCopiesPositionsAndTheLineOfALink) {
  started();
  const auto choose = [this](const char* name) {
    whenAsked<QMenu>(QStringLiteral("mapMenu"), [name](QMenu& menu) {
      auto* item = menu.findChild<QAction*>(QLatin1String(name));
      ASSERT_NE(item, nullptr) << name;
      item->trigger();
      menu.close();
    });
  };
  choose("mapMenuCopyPosition");
  window().map().onContextMenu({5, 5}, std::nullopt, std::nullopt, {36.3, -84.2});
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("36-18-00.0 N, 84-12-00.0 W"));
  choose("mapMenuCopyPosition");
  window().map().onContextMenu({5, 5}, 1, std::nullopt, {});
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("36-24-00.0 N, 84-21-00.0 W"));
  choose("mapMenuCopySummary");
  window().map().onContextMenu({5, 5}, std::nullopt, 1, {});
  EXPECT_EQ(QApplication::clipboard()->text(), summary());
}

TEST_F(MainWindowTest, TheLineOverTheMapCanBeCopied) {
  started();
  auto* line = window().findChild<QLabel*>(QStringLiteral("linkSummary"));
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
  line->setFocus();
  line->setSelection(0, 11);
  QTest::keyClick(line, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("North ridge"));
}

// A plan from nothing to its file without a pointer.
TEST_F(MainWindowTest, TheKeyboardAloneDoesTheWork) {
  started();
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    window().activateWindow();  // as a desktop does when a dialog closes
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &window(), key, modifiers);
  };
  const auto typeStation = [&](const char* position) {
    whenAsked<QDialog>(QStringLiteral("stationDialog"), [position](QDialog& dialog) {
      QTest::keyClicks(dialog.focusWidget(), QLatin1String(position));
      QTest::keyClick(&dialog, Qt::Key_Return);
    });
    press(Qt::Key_T, Qt::ControlModifier);
  };
  press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(window().document().plan().stations.empty());
  typeStation("36.40, -84.35");
  typeStation("36.22, -84.12");
  ASSERT_EQ(window().document().plan().stations.size(), 2U);
  press(Qt::Key_F7);
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_L, Qt::ControlModifier);
  ASSERT_EQ(window().document().plan().links.size(), 1U);
  const LinkId link = window().document().plan().links.begin()->first;
  press(Qt::Key_F5);
  EXPECT_TRUE(component_->get_PFrmLoaded()) << said().toStdString();
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), kPatience));
  // On the map: a station at the cross in its middle, moved by a pixel, deleted.
  press(Qt::Key_F3, Qt::ControlModifier);
  press(Qt::Key_Space);
  ASSERT_EQ(window().document().plan().stations.size(), 3U);
  const Position placed = window().document().plan().stations.rbegin()->second.position;
  EXPECT_NEAR(placed.latitude, window().map().frame().centre().latitude, 1e-3);
  press(Qt::Key_Escape);
  press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_GT(window().document().plan().stations.rbegin()->second.position.latitude, placed.latitude);
  press(Qt::Key_Delete);
  ASSERT_EQ(window().document().plan().stations.size(), 2U);
  const double centre = window().map().frame().centre().longitude;
  press(Qt::Key_Right);
  EXPECT_GT(window().map().frame().centre().longitude, centre);
  press(Qt::Key_F8);
  EXPECT_EQ(window().map().selection().links, std::vector<LinkId>{link});
  press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(window().document().plan().links.at(link).from, 2U);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(window().document().plan().links.at(link).from, 1U);
  chooseFile("saveDialog", (folder_ / "keys.json").string());
  press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "keys.json"));
  EXPECT_FALSE(window().document().modified());
}

// ---- Many links ----

// The longest time in which no event was handled.
class StallWatch {
 public:
  StallWatch() {
    clock_.start();
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(1);
  }
  void look() { longest_ = std::max(longest_, clock_.restart()); }
  qint64 longestMs() const { return longest_; }

 private:
  QTimer timer_;
  QElapsedTimer clock_;
  qint64 longest_ = 0;
};

Plan meshOver(int sites, std::size_t links) {
  Plan plan;
  for (int i = 0; i < sites; ++i)
    plan.stations[static_cast<StationId>(i + 1)] = {
        "Site " + std::to_string(i + 1), {36.1 + 0.003 * (i % 100), -84.4 + 0.03 * (i / 100)}, 30};
  LinkId id = 1;
  for (StationId from = 1; id <= links; ++from)
    for (StationId to = from + 1; to <= static_cast<StationId>(sites) && id <= links; ++to)
      plan.links[id++] = {from, to, std::nullopt};
  return plan;
}

TEST_F(MainWindowTest, TenThousandLinksFillTheTableWhileTheWindowAnswers) {
  // All of them on demand; the usual run looks at the first ones.
  const bool all = qEnvironmentVariableIsSet("ZEL_ALL_LINKS");
  constexpr std::size_t kLinks = 10'000, kEnough = 300;
  started();
  window().document().open(meshOver(200, kLinks), {});
  QElapsedTimer clock;
  clock.start();
  StallWatch watch;
  qint64 click = 0;
  QEventLoop loop;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    const std::size_t done = kLinks - window().analysis().waiting();
    if (click == 0 && done > 50) {
      QElapsedTimer one;
      one.start();
      table("linksTable")->clearSelection();
      table("linksTable")->selectRow(5000);
      click = std::max<qint64>(one.elapsed(), 1);
    }
    if (done >= (all ? kLinks : kEnough) || (!all && clock.elapsed() > 10 * kPatience)) loop.quit();
  });
  look.start(5);
  loop.exec();
  RecordProperty("longest_stall_ms", static_cast<int>(watch.longestMs()));
  RecordProperty("total_ms", static_cast<int>(clock.elapsed()));
  RecordProperty("click_ms", static_cast<int>(click));
  EXPECT_EQ(window().map().selection().links, std::vector<LinkId>{5001});
  EXPECT_TRUE(window().analysis().find(5001)->done) << "the chosen one comes first";
  // Far above what a quiet machine takes, and far below what a computation of all would.
  EXPECT_LT(watch.longestMs(), 3000);
  QElapsedTimer sorting;
  sorting.start();
  table("linksTable")->sortByColumn(2, Qt::AscendingOrder);
  RecordProperty("sort_ms", static_cast<int>(sorting.restart()));
  window().findChild<QLineEdit*>(QStringLiteral("linksFilter"))->setText(QStringLiteral("Site 77"));
  RecordProperty("filter_ms", static_cast<int>(sorting.elapsed()));
  EXPECT_LT(table("linksTable")->model()->rowCount(), 1000);
  EXPECT_GT(table("linksTable")->model()->rowCount(), 0);
}

}  // namespace
}  // namespace zel::host
