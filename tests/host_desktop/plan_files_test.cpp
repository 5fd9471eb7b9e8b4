// Opening, saving, recovery, import and drops.
#include <sys/resource.h>

#include <QMenu>
#include <QProcess>
#include <QProgressDialog>
#include <csignal>

#include "desktop/dropped_file.h"
#include "desktop_fixture.h"
#include "planning/plan_file.h"
#include "zel/geodesic.h"

namespace zel::host {
namespace {

using PlanFilesTest = DesktopTest;

TEST_F(PlanFilesTest, APlanIsSavedAndOpenedAgainWithWhatTheMapShowed) {
  const std::string path = (folder_ / "plan.json").string();
  writePlanFile(path, {samplePlan(), PlanView{{36.3, -84.2}, 50}});
  ASSERT_TRUE(window().openFile(path));
  EXPECT_EQ(window().windowTitle(), QStringLiteral("plan.json[*] - Terrain Profiler"));
  EXPECT_NEAR(window().map().frame().metresPerPixel(), 50, 0.01);
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  action("mnuFileSave")->trigger();
  EXPECT_FALSE(document.modified());
  EXPECT_EQ(readPlanFile(path).plan, document.plan());
  EXPECT_EQ(recentFiles(), std::vector<std::string>{path});
}

TEST_F(PlanFilesTest, AFileThatIsNoPlanIsToldAndLeavesTheOpenOne) {
  started();
  test::writeBytes(folder_ / "bad.json", "{\"format\": 7");
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  EXPECT_FALSE(window().openFile((folder_ / "bad.json").string()));
  EXPECT_TRUE(text.startsWith(QLatin1String("bad.json cannot be opened."))) << text.toStdString();
  EXPECT_EQ(window().document().plan(), samplePlan());
}

TEST_F(PlanFilesTest, ASaveThatFailsIsToldAndTheWorkStaysUnsaved) {
  const std::string path = (folder_ / "gone" / "plan.json").string();
  std::filesystem::create_directories(folder_ / "gone");
  writePlanFile(path, {samplePlan(), std::nullopt});
  ASSERT_TRUE(window().openFile(path));
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  std::filesystem::remove_all(folder_ / "gone");
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  action("mnuFileSave")->trigger();
  EXPECT_TRUE(text.startsWith(QLatin1String("The plan was not saved"))) << text.toStdString();
  EXPECT_TRUE(document.modified());
}

TEST_F(PlanFilesTest, ClosingWithUnsavedWorkAsks) {
  started();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  answerBox(QStringLiteral("unsavedWork"), QMessageBox::Cancel);
  EXPECT_FALSE(window().close());
  EXPECT_TRUE(window().isVisible());
  answerBox(QStringLiteral("unsavedWork"), QMessageBox::Discard);
  EXPECT_TRUE(window().close());
  std::vector<std::string> problems;
  dropWindow();
  EXPECT_TRUE(Recovery((folder_ / "recovery").string()).left(problems).empty());
}

TEST_F(PlanFilesTest, AnEndOfTheProgramThatAsksNobodyKeepsTheWork) {
  keepSeconds_ = 3600;
  started();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  const Plan changed = document.plan();
  dropWindow();  // long before the timer makes a copy
  std::vector<std::string> problems;
  const std::vector<LeftPlan> left = Recovery((folder_ / "recovery").string()).left(problems);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left.front().file.plan, changed);
}

TEST_F(PlanFilesTest, WithoutAFolderForItNoCopiesAreMadeAndThatIsSaid) {
  const MainWindowServices homeless{{}, {}, 0};
  window_ = std::make_unique<MainWindow>(*component_, homeless);
  window().start({});
  EXPECT_EQ(said(), QStringLiteral("There is no home folder; unsaved work is not kept for a crash"));
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  dropWindow();
  EXPECT_FALSE(std::filesystem::exists("/recovery"));
  EXPECT_FALSE(std::filesystem::exists("recovery"));
}

TEST_F(PlanFilesTest, WorkOfTheLastSecondsOutlivesACrash) {
  keepSeconds_ = 0;
  started();
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  const Plan changed = document.plan();
  const auto copies = [this] {
    std::error_code none;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "recovery", none))
      if (entry.path().extension() == ".json") ++count;
    return count;
  };
  ASSERT_TRUE(waitFor([&] { return copies() == 1; }));
  dropWindow();
  QString text;
  answerBox(QStringLiteral("leftPlan"), "leftPlanRestore", &text);
  window().start({});
  EXPECT_EQ(window().document().plan(), changed);
  EXPECT_TRUE(window().document().modified());
  // All of it is seen, as after opening a file.
  const MapFrame shown = window().map().frame();
  window().map().fitPlan();
  EXPECT_EQ(window().map().frame().extent(), shown.extent());
  EXPECT_TRUE(text.startsWith(QLatin1String("Unsaved work on an untitled plan was left on ")))
      << text.toStdString();
  EXPECT_EQ(copies(), 1U);
}

TEST_F(PlanFilesTest, AnImportIsOneStepAndTellsWhatItLeftOut) {
  started();
  test::writeBytes(folder_ / "sites.csv",
                   "name,lat,lon,height\nA,36.3,-84.2,20\nB,96,-84.2,20\nC,36.25,-84.3,10\n");
  QString text;
  answerBox(QStringLiteral("importSummary"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "sites.csv").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_EQ(window().document().plan().stations.size(), 4U);
  EXPECT_TRUE(text.contains(QLatin1String("line 3"))) << text.toStdString();
  // Of the same list again no station can be told from its double on the map.
  text.clear();
  answerBox(QStringLiteral("importSummary"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "sites.csv").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(text.contains(QLatin1String("2 stand exactly where a station of the same name is")))
      << text.toStdString();
  EXPECT_EQ(window().document().plan().stations.size(), 6U);
  action("mnuEditUndo")->trigger();
  action("mnuEditUndo")->trigger();
  EXPECT_EQ(window().document().plan(), samplePlan());
}

TEST_F(PlanFilesTest, AListThatIsNoneIsToldAndLeavesTheOpenWork) {
  started();
  test::writeBytes(folder_ / "sites.csv", std::string("\0\1\2\3", 4));
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "sites.csv").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_EQ(window().document().plan(), samplePlan());
}

TEST_F(PlanFilesTest, ADroppedRasterBecomesTheChosenSourceWhenAskedTo) {
  started();
  const std::string raster = std::string(ZEL_SOURCE_DIR) + "/data/terrain/jacksboro_3s.tif";
  answerBox(QStringLiteral("useTerrain"), "useTerrainAdd");
  drop({raster});
  ASSERT_TRUE(waitFor([] { return storedSetting("Terrain", "Source3").has_value(); }));
  EXPECT_TRUE(
      waitFor([&] { return !window().findChild<QWidget*>(QStringLiteral("sampleNotice"))->isVisible(); }));
}

TEST_F(PlanFilesTest, TheLastPlanIsOpenedAtTheNextStart) {
  const std::string path = (folder_ / "plan.json").string();
  Plan plan = samplePlan();
  plan.stations[1].name = "Other";
  writePlanFile(path, {plan, std::nullopt});
  ASSERT_TRUE(window().openFile(path));
  dropWindow();
  window().start({});
  EXPECT_EQ(window().document().plan(), plan);
}

// ---- Saving ----

// The program, run again by the test below it, which ends it as a crash does.
TEST_F(PlanFilesTest, DISABLED_WorksUntilItIsKilled) {
  const MainWindowServices kept{qEnvironmentVariable("CRASH_FOLDER").toStdString(), {}, 0};
  MainWindow window(*component_, kept);
  window.show();
  window.start({});
  window.document().apply(moveStation(window.document().plan(), 1, {36.39, -84.34}));
  QTest::qWait(300'000);
}

TEST_F(PlanFilesTest, WorkOfAKilledProcessIsOfferedOnlyOnceItIsGone) {
  const std::string recovery = (folder_ / "recovery").string();
  const auto copies = [&] {
    std::vector<std::filesystem::path> found;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(recovery, none))
      if (entry.path().extension() == ".json") found.push_back(entry.path());
    return found;
  };
  QProcess other;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("CRASH_FOLDER"), QString::fromStdString(recovery));
  // The one test that it is to run may be of another part.
  environment.remove(QStringLiteral("GTEST_TOTAL_SHARDS"));
  environment.remove(QStringLiteral("GTEST_SHARD_INDEX"));
  other.setProcessEnvironment(environment);
  other.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("--gtest_also_run_disabled_tests"),
               QStringLiteral("--gtest_filter=PlanFilesTest.DISABLED_WorksUntilItIsKilled")});
  ASSERT_TRUE(other.waitForStarted(kPatience));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !copies().empty(); }, 3 * kPatience));

  // Running still: its work is its own. A box would be seen as a window that nobody answers.
  started();
  EXPECT_EQ(window().document().plan(), samplePlan());
  dropWindow();
  EXPECT_EQ(copies().size(), 1U);

  ::kill(static_cast<pid_t>(other.processId()), SIGKILL);
  ASSERT_TRUE(other.waitForFinished(kPatience));
  answerBox(QStringLiteral("leftPlan"), "leftPlanLater");
  window().start({});
  EXPECT_EQ(window().document().plan(), samplePlan());
  EXPECT_EQ(copies().size(), 1U) << "later keeps it";
  dropWindow();
  answerBox(QStringLiteral("leftPlan"), "leftPlanRestore");
  window().start({});
  EXPECT_EQ(window().document().plan().stations.at(1).position, (Position{36.39, -84.34}));
  EXPECT_TRUE(window().document().modified());
  dropWindow();
  answerBox(QStringLiteral("leftPlan"), "leftPlanDiscard");
  window().start({});
  EXPECT_EQ(window().document().plan(), samplePlan());
  EXPECT_TRUE(copies().empty());
}

TEST_F(PlanFilesTest, SaveAsGivesThePlanAFileAndItsName) {
  started();
  chooseFile("saveDialog", (folder_ / "valley").string());
  action("mnuFileSaveAs")->trigger();
  EXPECT_EQ(window().document().path(), (folder_ / "valley.json").string());
  EXPECT_EQ(readPlanFile((folder_ / "valley.json").string()).plan, samplePlan());
  EXPECT_EQ(window().windowTitle(), QStringLiteral("valley.json[*] - Terrain Profiler"));
}

TEST_F(PlanFilesTest, AFolderThatTakesNoFilesIsToldAndThePlanStaysWithoutOne) {
  started();
  chooseFile("saveDialog", "/proc/self/plan.json");
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  action("mnuFileSaveAs")->trigger();
  EXPECT_TRUE(text.startsWith(QLatin1String("The plan was not saved"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QLatin1String("/proc/self"))) << text.toStdString();
  EXPECT_TRUE(window().document().path().empty());
}

TEST_F(PlanFilesTest, AFullDiskLeavesTheFileOfBeforeAndTheWorkUnsaved) {
  const std::string path = (folder_ / "plan.json").string();
  writePlanFile(path, {samplePlan(), std::nullopt});
  ASSERT_TRUE(window().openFile(path));
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  // No file may grow beyond 64 bytes: a writer meets the same as on a full disk.
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{}, usual{};
  ::getrlimit(RLIMIT_FSIZE, &usual);
  limit = usual;
  limit.rlim_cur = 64;
  ::setrlimit(RLIMIT_FSIZE, &limit);
  action("mnuFileSave")->trigger();
  ::setrlimit(RLIMIT_FSIZE, &usual);
  std::signal(SIGXFSZ, before);
  EXPECT_TRUE(text.startsWith(QLatin1String("The plan was not saved"))) << text.toStdString();
  EXPECT_TRUE(document.modified());
  EXPECT_EQ(readPlanFile(path).plan, samplePlan());
}

TEST_F(PlanFilesTest, AFileThatAnotherProgramChangedIsNotOverwrittenUnasked) {
  const std::string path = (folder_ / "plan.json").string();
  writePlanFile(path, {samplePlan(), std::nullopt});
  ASSERT_TRUE(window().openFile(path));
  PlanDocument& document = window().document();
  document.apply(moveStation(document.plan(), 1, {36.39, -84.34}));
  Plan others = samplePlan();
  others.stations[1].name = "Changed by another program";
  writePlanFile(path, {others, std::nullopt});
  answerBox(QStringLiteral("fileChanged"), QMessageBox::Cancel);
  action("mnuFileSave")->trigger();
  EXPECT_TRUE(document.modified());
  EXPECT_EQ(readPlanFile(path).plan, others);
  answerBox(QStringLiteral("fileChanged"), "fileChangedOverwrite");
  action("mnuFileSave")->trigger();
  EXPECT_FALSE(document.modified());
  EXPECT_EQ(readPlanFile(path).plan, document.plan());
  document.apply(moveStation(document.plan(), 1, {36.38, -84.34}));
  action("mnuFileSave")->trigger();  // its own change is no other program's: nothing is asked
  EXPECT_FALSE(document.modified());
}

TEST_F(PlanFilesTest, TheTableOfLinksIsSavedAsItIsShown) {
  started();
  const std::string path = (folder_ / "links.csv").string();
  chooseFile("linkTableDialog", path);
  action("mnuFileExportLinks")->trigger();
  const std::string text = test::fileBytes(path);
  EXPECT_EQ(
      text.substr(0, text.find("\r\n")),
      "From,To,Distance (km),Bearing (\xC2\xB0),Frequency (MHz),Free Space (dB),Modeled (dB),Clearance (%),"
      "Obstacle at (km),Ground (m),Verdict");
  EXPECT_EQ(text.find("\r\nNorth ridge,South hill,28.73,134.0,,121.1,"), text.find("\r\n")) << text;
}

// Files of this process end after so many bytes, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &usual_);
    const rlimit small{bytes, usual_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &usual_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
  rlimit usual_{};
};

TEST_F(PlanFilesTest, AFullDiskLeavesNoPartOfATableOfLinks) {
  started();
  const std::string path = (folder_ / "links.csv").string();
  chooseFile("linkTableDialog", path);
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  {
    const FullDisk full(100);  // a table of a link has more, and is written in one piece at the end
    action("mnuFileExportLinks")->trigger();
  }
  EXPECT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(text.contains(QLatin1String("links.csv cannot be written: "))) << text.toStdString();
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(PlanFilesTest, ARecentFileThatIsGoneIsToldAndForgotten) {
  const std::string path = (folder_ / "plan.json").string();
  writePlanFile(path, {samplePlan(), std::nullopt});
  ASSERT_TRUE(window().openFile(path));
  std::filesystem::remove(path);
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  action("mnuFileRecent1")->trigger();
  EXPECT_TRUE(waitFor([] { return recentFiles().empty(); }));
  EXPECT_TRUE(text.startsWith(QLatin1String("plan.json cannot be opened."))) << text.toStdString();
  EXPECT_FALSE(window().findChild<QMenu*>(QStringLiteral("mnuFileRecent"))->isEnabled());
  EXPECT_EQ(window().document().plan(), samplePlan());
}

// ---- Report ----

class ReportMenuTest : public PlanFilesTest {
 protected:
  // Asks for a report into that file; the window that shows its progress is there afterwards.
  QDialog* askReport(const std::string& path) {
    whenAsked<QDialog>(QStringLiteral("reportDialog"), [](QDialog& dialog) {
      dialog.findChild<QPushButton*>(QStringLiteral("reportOk"))->click();
    });
    chooseFile("reportFileDialog", path);
    action("mnuFileReport")->trigger();
    return window().findChild<QDialog*>(QStringLiteral("reportProgress"));
  }
};

TEST_F(ReportMenuTest, AReportOfThePlanAsItIsIsSaved) {
  started();
  EXPECT_TRUE(window().document().path().empty());  // it was never saved
  const std::string path = (folder_ / "report.pdf").string();
  ASSERT_NE(askReport(path), nullptr);
  ASSERT_TRUE(waitFor([&] { return said() == QLatin1String("Saved report.pdf: 2 pages"); }))
      << said().toStdString();
  EXPECT_TRUE(test::fileBytes(path).starts_with("%PDF-"));
  EXPECT_EQ(window().findChild<QDialog*>(QStringLiteral("reportProgress")), nullptr);
}

TEST_F(ReportMenuTest, CancelLeavesTheFileThatWasThere) {
  started();
  const std::string path = (folder_ / "report.pdf").string();
  QDialog* progress = askReport(path);
  ASSERT_NE(progress, nullptr);
  test::writeBytes(path, "before");  // not earlier, when it would be asked about
  progress->findChild<QPushButton*>(QStringLiteral("reportProgressCancel"))->click();
  ASSERT_TRUE(waitFor([&] { return said().startsWith(QLatin1String("The report was cancelled")); }));
  EXPECT_EQ(test::fileBytes(path), "before");
}

TEST_F(ReportMenuTest, AWindowThatIsGoneTakesItsReportWithIt) {
  started();
  const std::string path = (folder_ / "report.pdf").string();
  ASSERT_NE(askReport(path), nullptr);
  dropWindow();
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(ReportMenuTest, AFullDiskIsToldAndLeavesTheFileThatWasThere) {
  started();
  const std::string path = (folder_ / "report.pdf").string();
  ASSERT_NE(askReport(path), nullptr);
  test::writeBytes(path, "before");
  QString text;
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  {
    const FullDisk full(1000);
    ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  }
  EXPECT_TRUE(text.startsWith(QLatin1String("report.pdf was not written: "))) << text.toStdString();
  EXPECT_EQ(test::fileBytes(path), "before");
}

TEST_F(ReportMenuTest, ThereIsNoneOfAPlanWithoutLinks) {
  started();
  window().document().apply(removeLinks(window().document().plan(), {1}));
  EXPECT_FALSE(action("mnuFileReport")->isEnabled());
}

// ---- Imports and drops ----

TEST_F(PlanFilesTest, AListOfLinksBringsTheirFrequencies) {
  started();
  test::writeBytes(folder_ / "links.csv",
                   "name,lat1,lon1,h1,lat2,lon2,h2,frequency\nL1,36.4,-84.3,20,36.3,-84.2,30,450\n"
                   "L2,36.4,-84.3,20,36.25,-84.25,35,\n");
  window().takeFiles({(folder_ / "links.csv").string()});
  ASSERT_TRUE(waitFor([&] { return window().document().plan().links.size() == 3; }));
  const auto& links = window().document().plan().links;
  EXPECT_EQ(links.at(2).frequencyMhz, 450);
  EXPECT_FALSE(links.at(3).frequencyMhz);
}

TEST_F(PlanFilesTest, PositionsOfAListAreShiftedIntoThePlansDatum) {
  started();
  action("mnuViewDatum27")->trigger();
  // WGS 84 by its definition. In Europe nothing leads from NAD-27 to NAD-83.
  test::writeBytes(folder_ / "sites.gpx",
                   R"(<?xml version="1.0"?><gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">)"
                   R"(<wpt lat="36.3" lon="-84.2"><name>Quarry</name></wpt>)"
                   R"(<wpt lat="50" lon="10"><name>Abroad</name></wpt>)"
                   R"(<rte><rtept lat="36.25" lon="-84.25"/><rtept lat="36.35" lon="-84.3"/></rte></gpx>)");
  QString text;
  answerBox(QStringLiteral("importSummary"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "sites.gpx").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(text.contains(QLatin1String("positions shifted from WGS 84 to NAD-27"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QLatin1String("Abroad cannot be shifted to NAD-27: "))) << text.toStdString();
  const Plan& plan = window().document().plan();
  ASSERT_EQ(plan.stations.size(), 5U);
  const Station& quarry = plan.stations.at(3);
  EXPECT_EQ(quarry.name, "Quarry");
  EXPECT_NE(quarry.position, (Position{36.3, -84.2}));
  constexpr double kMillimetre = 1e-8;  // degrees, about
  EXPECT_NEAR(mapPosition(quarry.position).position.latitude, 36.3, kMillimetre);
  EXPECT_NEAR(mapPosition(quarry.position).position.longitude, -84.2, kMillimetre);
  ASSERT_EQ(plan.links.size(), 2U)
      << "of the route, whose points have other numbers without what is left out";
  EXPECT_NEAR(mapPosition(plan.stations.at(plan.links.at(2).to).position).position.latitude, 36.35,
              kMillimetre);

  test::writeBytes(folder_ / "abroad.gpx",
                   R"(<?xml version="1.0"?><gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">)"
                   R"(<wpt lat="50" lon="10"><name>Abroad</name></wpt></gpx>)");
  text.clear();
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "abroad.gpx").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(
      text.startsWith(QLatin1String("abroad.gpx cannot be imported; nothing was added.\nAbroad cannot be "
                                    "shifted to NAD-27: ")))
      << text.toStdString();

  test::writeBytes(folder_ / "sites.csv", "name,lat,lon\nMill,36.31,-84.21\n");
  text.clear();
  answerBox(QStringLiteral("importSummary"), QMessageBox::Ok, &text);
  window().takeFiles({(folder_ / "sites.csv").string()});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(text.contains(QLatin1String("positions taken as NAD-27, the plan's datum")))
      << text.toStdString();
  EXPECT_EQ(plan.stations.at(6).position, (Position{36.31, -84.21}));
}

TEST_F(PlanFilesTest, WhatAFileIsIsToldByItsContentAndItsName) {
  const auto kind = [this](const char* name, const char* bytes) {
    test::writeBytes(folder_ / name, bytes);
    return droppedKind((folder_ / name).string());
  };
  for (const char* name : {"a.csv", "a.TSV", "a.txt", "a.kml", "a.kmz", "a.gpx", "a.json", "a.geojson",
                           "a.geojsonl", "a.geojsons", "a.geojsonseq", "a.ndjson", "a.ndgeojson", "a.jsonl"})
    EXPECT_EQ(kind(name, "x"), DroppedKind::kStations) << name;
  EXPECT_EQ(kind("plan.txt", "\n {\"format\": \"terrain-profiler plan\""), DroppedKind::kPlan);
  EXPECT_EQ(kind("a.tif", "II*"), DroppedKind::kTerrain);
  EXPECT_EQ(droppedKind(folder_.path().string()), DroppedKind::kTerrain);
  EXPECT_EQ(droppedKind("/nowhere/a.csv"), DroppedKind::kUnreadable);
}

TEST_F(PlanFilesTest, AnImportThatIsCancelledAddsNothing) {
  started();
  std::string text = "name,lat,lon\n";
  for (int i = 0; i < 20'000; ++i) text += "S" + std::to_string(i) + ",36.3,-84.2\n";
  test::writeBytes(folder_ / "sites.csv", text);
  window().takeFiles({(folder_ / "sites.csv").string()});
  auto* progress = window().findChild<QProgressDialog*>(QStringLiteral("importProgress"));
  progress->findChild<QPushButton*>()->click();
  ASSERT_TRUE(waitFor([&] { return said().startsWith(QLatin1String("The import was cancelled")); }));
  EXPECT_EQ(window().document().plan(), samplePlan());
  EXPECT_FALSE(window().document().modified());
}

TEST_F(PlanFilesTest, APlanAndListsDroppedTogetherAreAllTaken) {
  started();
  Plan plan = samplePlan();
  plan.stations[1].name = "Other";
  writePlanFile((folder_ / "plan.json").string(), {plan, std::nullopt});
  test::writeBytes(folder_ / "a.csv", "name,lat,lon\nA,36.3,-84.2\n");
  test::writeBytes(folder_ / "b.csv", "name,lat,lon\nB,36.31,-84.21\n");
  drop({(folder_ / "a.csv").string(), (folder_ / "plan.json").string(), (folder_ / "b.csv").string()});
  ASSERT_TRUE(waitFor([&] { return window().document().plan().stations.size() == 4; }));
  EXPECT_EQ(window().document().plan().stations.at(1).name, "Other");
}

TEST_F(PlanFilesTest, ADroppedFolderIsTerrainAndCancelLeavesItAsItWas) {
  started();
  QString text;
  answerBox(QStringLiteral("useTerrain"), QMessageBox::Cancel, &text);
  drop({std::string(ZEL_SOURCE_DIR) + "/data/terrain"});
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_EQ(text, QStringLiteral("Use terrain for source 3 (1 second)?"));
  EXPECT_TRUE(waitFor([&] { return said() == QLatin1String("The terrain is as it was"); }));
  EXPECT_FALSE(storedSetting("Terrain", "Source3"));
}

TEST_F(PlanFilesTest, ARasterThatIsNoneIsToldAfterItWasAdded) {
  started();
  test::writeBytes(folder_ / "bad.tif", "no raster");
  QString text;
  answerBox(QStringLiteral("useTerrain"), "useTerrainAdd");
  drop({(folder_ / "bad.tif").string()});
  answerBox(QStringLiteral("message"), QMessageBox::Ok, &text);
  ASSERT_TRUE(waitFor([&] { return !text.isEmpty(); }));
  EXPECT_TRUE(text.startsWith(QLatin1String("Some terrain cannot be used."))) << text.toStdString();
  EXPECT_TRUE(text.contains(QLatin1String("bad.tif"))) << text.toStdString();
}

}  // namespace
}  // namespace zel::host
