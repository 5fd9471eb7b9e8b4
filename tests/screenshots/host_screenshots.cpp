// Draws the pictures of the desktop program: its window at a first start, a plan with links of every verdict,
// the pages of the preferences, the questions that it asks, and a page of its report, without a display, each
// in a file of its own.
//
//     host_screenshots FOLDER
//
// A program of its own, because the desktop program uses the component as a library, and the windows'
// pictures are drawn with the component's parts. The same files come out each time: the terrain is the
// bundled sample, and a picture is taken once nothing more is on its way to be shown.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QEventLoop>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <string>

#include "analysis/link_analysis.h"
#include "desktop/main_window.h"
#include "map_view/map_view.h"
#include "preferences/preferences_dialog.h"
#include "report/link_map.h"
#include "report/link_plot.h"
#include "report/page_drawing.h"
#include "report/report_job.h"
#include "screenshots/shooting.h"
#include "support/temporary_folder.h"
#include "zel/automation.h"
#include "zel/profile_control.h"
#include "zel/terrain_map.h"

namespace zel::host {
namespace {

using namespace zel::shots;

constexpr int kWidth = 1040, kHeight = 780;
constexpr int kTablesHeight = 220;  // shows five links

void wait(const char* what, const std::function<bool()>& done) {
  if (!QTest::qWaitFor(done, kPatience)) throw ScreenshotError(std::string(what) + " does not come");
}

// Terrain and results are all there, and the line above the map says those of the chosen link.
void waitForMap(MainWindow& window, const QString& line) {
  wait("the map", [&window] { return window.map().settled() && window.analysis().waiting() == 0; });
  auto& summary = part<QLabel>(window, "linkSummary");
  wait("the line above the map", [&] { return summary.text().contains(line); });
}

// Without the marks of the keyboard's focus, which depend on whether a window system makes windows active.
void saveWithoutFocus(QWidget& window, const QDir& folder, const char* name) {
  handleEvents();
  if (QWidget* focus = window.focusWidget()) focus->clearFocus();
  save(window, folder, name);
}

void shootFirstStart(MainWindow& window, const QDir& folder) {
  window.start({});
  waitForMap(window, QStringLiteral("blocked"));
  saveWithoutFocus(window, folder, "map-window.png");
}

// Links that are clear, marginal, blocked, and without terrain under one end.
constexpr const char* kPlanOfEveryVerdict = R"({
  "format": "terrain-profiler plan", "version": 1,
  "stations": [
    {"id": 1, "name": "North ridge", "latitude": 36.4, "longitude": -84.35},
    {"id": 2, "name": "Knob", "latitude": 36.3392, "longitude": -84.2725},
    {"id": 3, "name": "Summit", "latitude": 36.1983, "longitude": -84.2308},
    {"id": 4, "name": "Depot", "latitude": 36.22, "longitude": -84.12},
    {"id": 5, "name": "Far post", "latitude": 36.3, "longitude": -84.04}
  ],
  "links": [{"from": 1, "to": 2}, {"from": 2, "to": 4}, {"from": 3, "to": 4}, {"from": 1, "to": 3}, {"from": 4, "to": 5}]
})";

void shootStations(MainWindow& window, const QDir& folder) {
  const test::TemporaryFolder plans;
  test::writeBytes(plans / "plan.json", kPlanOfEveryVerdict);
  if (!window.openFile((plans / "plan.json").string())) throw ScreenshotError("the plan is not opened");
  part<QAbstractButton>(window, "sampleNoticeDismiss").click();
  waitForMap(window, QStringLiteral("5 stations"));
  part<QTableView>(window, "linksTable").selectRow(1);
  waitForMap(window, QStringLiteral("Knob - Depot"));
  saveWithoutFocus(window, folder, "map-stations.png");
}

void shootAddStation(MainWindow& window, const QDir& folder) {
  shootDialog(
      "stationDialog", folder, "add-station.png",
      [&window] { part<QAction>(window, "mnuStationAdd").trigger(); },
      [](QWidget& dialog) {
        part<QLineEdit>(dialog, "stationName").setText(QStringLiteral("East tower"));
        part<QLineEdit>(dialog, "stationPosition").setText(QStringLiteral("36-16-30 N, 84-09-00 W"));
      });
}

void shootImport(MainWindow& window, const QDir& folder) {
  const test::TemporaryFolder lists;
  test::writeBytes(lists / "stations.csv",
                   "Name;Latitude;Longitude;Height\n"
                   "Cross;36,31;-84,20;25\n"
                   "Mill;36,25;-84,15;\n"
                   "Gap;;-84,30;40\n"
                   "Tower;96,28;-84,12;60\n");
  shootDialog(
      "importSummary", folder, "import-summary.png",
      [&] { window.takeFiles({(lists / "stations.csv").string()}); }, [](QWidget&) {});
}

void shootPreferences(const QDir& folder) {
  const auto shoot = [&folder](PreferencesPage page, const char* name) {
    PreferencesDialog dialog(nullptr, page);
    dialog.show();
    auto& coverage = part<QLabel>(dialog, "lblCoverage");
    if (page == PreferencesPage::kTerrain)
      wait("the coverage", [&] { return coverage.text().contains(QLatin1String("1 raster")); });
    if (page == PreferencesPage::kPrograms) {
      auto& file = part<QLineEdit>(dialog, "txtSettingsFile");
      file.setText(QStringLiteral("/home/planner/.config/zelprofiler/Terrain Profiler.ini"));
      file.setCursorPosition(0);
    }
    saveWithoutFocus(dialog, folder, name);
  };
  shoot(PreferencesPage::kTerrain, "preferences-terrain.png");
  shoot(PreferencesPage::kModel, "preferences-model.png");
  shoot(PreferencesPage::kPointToPoint, "preferences-point-to-point.png");
  shoot(PreferencesPage::kColours, "preferences-colors.png");
  shoot(PreferencesPage::kPrograms, "preferences-programs.png");
}

void shootFrequency(MainWindow& window, const QDir& folder) {
  part<QTableView>(window, "linksTable").selectRow(1);
  shootDialog(
      "frequencyDialog", folder, "frequency-dialog.png",
      [&window] { part<QAction>(window, "mnuLinkFrequency").trigger(); },
      [](QWidget& dialog) { dynamic_cast<QInputDialog&>(dialog).setTextValue(QStringLiteral("2400")); });
}

void shootHeightScale(MainWindow& window, const QDir& folder) {
  shootDialog(
      "heightScaleDialog", folder, "height-scale.png",
      [&window] { part<QAction>(window, "mnuViewScaleFixed").trigger(); }, [](QWidget&) {});
}

void shootReportDialog(MainWindow& window, const QDir& folder) {
  shootDialog(
      "reportDialog", folder, "report-dialog.png",
      [&window] { part<QAction>(window, "mnuFileReport").trigger(); }, [](QWidget&) {});
}

// As on paper, at a size for a screen.
void drawReportPage(const QDir& folder) {
  constexpr double kDotsPerMm = 84 / 25.4;
  const Plan plan = samplePlan();
  const LinkId id = plan.links.begin()->first;
  const Link& link = plan.links.at(id);
  const PageFigures figures = pageFigures(plan, link);
  QImage paper(static_cast<int>(kSheetA4.width * kDotsPerMm), static_cast<int>(kSheetA4.height * kDotsPerMm),
               QImage::Format_RGB32);
  paper.fill(Qt::white);
  QPainter painter(&paper);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  PageText text(painter, kDotsPerMm);
  const LinkPage page = linkPage(plan, link, figures, {});
  const LinkPageLayout layout = measureLinkPage(text, kSheetA4, page);
  LinkMap map(TerrainMap::open(3));
  map.begin(plan, id, figures, lookOnPaper(layout.map, false, AngleFormat::kDegreesMinutesSeconds));
  wait("the report's map", [&map] { return map.ready(); });
  const LinkPictures pictures{map.picture(), linkPlot(plan, link, figures.result, layout.plot, false)};
  drawLinkPage(text, {"plan", "2026-11-15 19:05", "Terrain Profiler 0.1.0", kSheetA4, 2, 2}, layout, page,
               pictures);
  painter.end();
  if (!paper.save(folder.filePath(QStringLiteral("report-page.png")), "PNG", 0))
    throw ScreenshotError("cannot write report-page.png");
}

void shootAll(const QDir& folder) {
  const test::TemporaryFolder state;
  ProfileControl component;
  component.SetClientApp(makePropertyBag(
      {{"Title", "Terrain Profiler"}, {"Path", state.path().string()}, {"ProductName", "Terrain Profiler"}}));
  component.let_StaDatum(1);
  MainWindowServices services;
  services.recoveryFolder = (state / "recovery").string();
  MainWindow window(component, services);
  window.resize(kWidth, kHeight);
  window.show();
  if (!QTest::qWaitForWindowExposed(&window, kPatience)) throw ScreenshotError("the window is not shown");
  window.resizeDocks({&part<QDockWidget>(window, "tablesDock")}, {kTablesHeight}, Qt::Vertical);
  shootFirstStart(window, folder);
  shootStations(window, folder);
  shootAddStation(window, folder);
  shootImport(window, folder);
  shootFrequency(window, folder);
  shootHeightScale(window, folder);
  shootReportDialog(window, folder);
  drawReportPage(folder);
  shootPreferences(folder);
}

}  // namespace
}  // namespace zel::host

int main(int argc, char** argv) {
  return zel::shots::drawInto(argc, argv, "host_screenshots", zel::host::shootAll);
}
