// exportPath over the real parts: the files are those of the window, and whatever the window passes in
// silence or leaves behind is told.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "bundled_path.h"
#include "real_component.h"
#include "support/offscreen.h"
#include "support/says.h"
#include "ui/profile_window/frm_profile.h"
#include "zel/path_export.h"

namespace zel {
namespace {

using test::says;

std::vector<std::string> linesOf(const std::string& bytes) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < bytes.size();) {
    const std::size_t end = std::min(bytes.find("\r\n", begin), bytes.size());
    lines.push_back(bytes.substr(begin, end - begin));
    begin = end + 2;
  }
  return lines;
}

using test::kEnd;
using test::kStart;

class PathExportTest : public test::RealComponentOver<test::OffscreenTest<QApplication>> {
 protected:
  std::string file(const std::string& name) const { return (folder_ / name).string(); }
  std::string bytes(const std::string& name) const { return test::fileBytes(folder_ / name); }

  PathExportRequest request(PathExportKind kind, const std::string& name) const {
    PathExportRequest request;
    request.from = {kStart.Lat, kStart.Lon};
    request.to = {kEnd.Lat, kEnd.Lon};
    request.fromHeight = 30;
    request.toHeight = 12;
    request.kind = kind;
    request.file = file(name);
    return request;
  }
  static PathExport exported(const PathExportRequest& request) {
    PathExport result = exportPath(request);
    EXPECT_EQ(result.status, 0) << result.error;
    return result;
  }
  FrmProfile& window() {
    control_.ShowMainForm(kStart, kEnd);
    EXPECT_NE(windows_->profileWindow(), nullptr);
    return *windows_->profileWindow();
  }
  // Nothing of an export is seen at the host.
  void expectNoTrace() {
    EXPECT_TRUE(dialogs_->messages.empty());
    EXPECT_EQ(logged(), "");
    EXPECT_FALSE(component_.state().bProfileFailed);
    EXPECT_FALSE(control_.get_PFrmLoaded());
  }
};

// ---- The same bytes as from the window ----

TEST_F(PathExportTest, TheHeightProfileIsTheFileOfTheWindow) {
  window().lExportDataToCSV(file("window.csv"));
  const PathExport result = exported(request(PathExportKind::kHeightProfile, "own.csv"));
  EXPECT_EQ(result.files, std::vector<std::string>{file("own.csv")});
  EXPECT_GT(bytes("own.csv").size(), 100000U);
  EXPECT_EQ(bytes("own.csv"), bytes("window.csv"));
}

TEST_F(PathExportTest, SoItIsWithMarkersInImperialUnitsAndWithADecimalComma) {
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  set("Settings", "DispUnits", "1");
  FrmProfile& shown = window();
  const PlotIndex index = shown.state().plotIndex();
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(4.5)), 0);
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(12)), 0);
  shown.lExportDataToCSV(file("window.csv"));

  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.markersKm = {12, 4.5};
  const PathExport result = exported(own);
  EXPECT_EQ(bytes("own.csv"), bytes("window.csv"));
  const std::vector<std::string> lines = linesOf(bytes("own.csv"));
  EXPECT_NE(lines.at(0).find("'Range (mi)'"), std::string::npos) << lines.at(0);
  EXPECT_EQ(lines.at(1).substr(0, 30), ", 36,4, -84,35, 36,22, -84,12,");
  EXPECT_EQ(lines.at(3).substr(0, 15), "'Left Marker', ");
  EXPECT_EQ(lines.at(4).substr(0, 16), "'Right Marker', ");
  EXPECT_EQ(result.decimalPoint, ",");
  EXPECT_EQ(result.units, PlotUnits::kImperial);
  ASSERT_EQ(result.markers.size(), 2U);
  // The plot holds its x in single precision.
  EXPECT_NEAR(result.markers[0].distanceKm, 4.5, 1e-5);
  EXPECT_NEAR(result.markers[1].distanceKm, 12, 1e-5);
}

TEST_F(PathExportTest, TheExpandedStretchIsTheOneOfTheWindow) {
  FrmProfile& shown = window();
  const PlotIndex index = shown.state().plotIndex();
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(4.5)), 0);
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(12)), 0);
  shown.mnuProfileExpand_Click();
  shown.lExportDataToCSV(file("window.csv"));

  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.expanded = PlotStretch{4.5, 12};
  const PathExport result = exported(own);
  EXPECT_EQ(bytes("own.csv"), bytes("window.csv"));
  EXPECT_TRUE(result.expanded);
  EXPECT_EQ(linesOf(bytes("own.csv")).size(), static_cast<std::size_t>(result.samples) + 6);
  EXPECT_LT(result.samples, 300);
}

TEST_F(PathExportTest, TheLossTableIsTheFileOfTheWindow) {
  window().lExportITMToCSV(file("window.csv"));
  const PathExport result = exported(request(PathExportKind::kLossTable, "own.csv"));
  EXPECT_EQ(linesOf(bytes("own.csv")).size(), 103U);
  EXPECT_EQ(bytes("own.csv"), bytes("window.csv"));
  ASSERT_TRUE(result.model);
  EXPECT_EQ(result.model->climate, 5);
  EXPECT_FALSE(result.pointToPoint);
}

TEST_F(PathExportTest, TheSignalProfileAndItsHeightsAreTheFilesOfTheWindow) {
  dialogs_->inputAnswer = "5";
  window().lExportSignalProfileToCSV(file("window.csv"));

  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  own.erpKw = 5;
  own.longleyRiceClutterDb = 5;
  own.pointToPointClutterDb = 5;
  const PathExport result = exported(own);
  EXPECT_EQ(result.files, (std::vector<std::string>{file("own.csv"), file("own.csv.terrain.txt")}));
  EXPECT_GT(bytes("own.csv").size(), 150000U);
  EXPECT_EQ(bytes("own.csv"), bytes("window.csv"));
  EXPECT_GT(bytes("own.csv.terrain.txt").size(), 4000U);
  EXPECT_EQ(bytes("own.csv.terrain.txt"), bytes("window.csv.terrain.txt"));
  EXPECT_TRUE(result.model);
  EXPECT_TRUE(result.pointToPoint);
}

TEST_F(PathExportTest, TheSignalGraphIsTheFilesOfTheWindow) {
  dialogs_->onInput = [this](const InputBoxRequest& box) {
    if (box.prompt.find("transmit power") != std::string::npos)
      dialogs_->inputAnswer = "5";
    else if (box.prompt.find("Clutter") != std::string::npos)
      dialogs_->inputAnswer = "2";
    else if (box.prompt.find("Title") != std::string::npos)
      dialogs_->inputAnswer = "North ridge";
    else
      dialogs_->inputAnswer.reset();
  };
  window().lMakeGNUSignalPlot(file("graph.png"));
  ASSERT_EQ(logged(), "");
  const std::string data = bytes("graph.dat"), script = bytes("graph.plt"), results = bytes("graph_PTP.txt");
  ASSERT_GT(data.size(), 10000U);
  for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"})
    std::filesystem::remove(folder_ / name);

  PathExportRequest own = request(PathExportKind::kSignalGraph, "graph.png");
  own.erpKw = 5;
  own.longleyRiceClutterDb = 2;
  own.pointToPointClutterDb = 2;
  own.title = "North ridge";
  const PathExport result = exported(own);
  EXPECT_EQ(bytes("graph.dat"), data);
  EXPECT_EQ(bytes("graph.plt"), script);
  EXPECT_EQ(bytes("graph_PTP.txt"), results);
  // No gnuplot is named, so there is no picture.
  EXPECT_EQ(result.files,
            (std::vector<std::string>{file("graph.dat"), file("graph.plt"), file("graph_PTP.txt")}));
  EXPECT_TRUE(says(result.notes, "Settings/gnuPlotEXE names no gnuplot"));
}

TEST_F(PathExportTest, TheBitmapIsTheOneOfTheWindowAtTheSizeThatItOpensWith) {
  FrmProfile& shown = window();
  dialogs_->savePath = file("window.bmp");
  shown.mnuExportBMP_Click();
  const PathExport result = exported(request(PathExportKind::kBitmap, "own.bmp"));
  EXPECT_GT(bytes("own.bmp").size(), 100000U);
  EXPECT_EQ(bytes("own.bmp"), bytes("window.bmp"));
  EXPECT_EQ(result.width, 621);
  EXPECT_EQ(result.height, 164);
}

TEST_F(PathExportTest, TheBitmapHasTheSizeThatIsAskedFor) {
  PathExportRequest own = request(PathExportKind::kBitmap, "own.bmp");
  own.width = 300;
  own.height = 200;
  exported(own);
  const QImage picture(QString::fromStdString(file("own.bmp")));
  EXPECT_EQ(picture.size(), QSize(300, 200));
}

TEST_F(PathExportTest, AHostsExportIsTheOneOfTheWindowWhereThereIsOne) {
  FrmProfile& shown = window();
  const PlotIndex index = shown.state().plotIndex();
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(4.5)), 0);
  shown.Picture1_MouseDown(static_cast<float>(index.xAtDistance(12)), 0);
  shown.mnuProfileExpand_Click();
  control_.ExportDataToCSV(file("host.csv"));
  control_.ExportITMToCSV(file("host losses.csv"));
  shown.lExportDataToCSV(file("window.csv"));
  shown.lExportITMToCSV(file("window losses.csv"));
  const std::string expanded = bytes("host.csv");
  EXPECT_GT(expanded.size(), 10000U);
  EXPECT_EQ(expanded, bytes("window.csv"));
  EXPECT_EQ(bytes("host losses.csv"), bytes("window losses.csv"));

  // Without it: the whole path again.
  control_.UnloadMainForm();
  control_.ExportDataToCSV(file("host.csv"));
  EXPECT_GT(bytes("host.csv").size(), 3 * expanded.size());
}

// ---- What is told ----

TEST_F(PathExportTest, TellsWhatItWasComputedFrom) {
  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  own.fromHeight.reset();
  const PathExport result = exported(own);
  EXPECT_NEAR(result.distanceKm, 28.733669, 1e-5);
  EXPECT_EQ(result.startHeightM, 30);
  EXPECT_EQ(result.endHeightM, 12);
  EXPECT_EQ(result.samples, 1001);
  EXPECT_EQ(result.frequencyMhz, 950);
  EXPECT_EQ(result.k, 1.33);
  EXPECT_EQ(result.fresnelPercent, 100);
  EXPECT_EQ(result.erpKw, 1);
  EXPECT_EQ(result.decimalPoint, ".");
  EXPECT_EQ(result.model->reliability, 0.5);
  EXPECT_EQ(result.pointToPoint->permittivity, 15);
  EXPECT_TRUE(result.terrain.bundledSample);
  EXPECT_TRUE(says(result.notes, "no antenna height is given for the start"));
  EXPECT_TRUE(says(result.notes, "the effective-earth factor k is not given: 1.33"));
  EXPECT_TRUE(says(result.notes, "the frequency is not given: 950 MHz"));
  EXPECT_TRUE(says(result.notes, "the effective radiated power is not given: 1 kW"));
  EXPECT_TRUE(says(result.notes, "the Longley-Rice clutter is not given: 0 dB"));
  EXPECT_TRUE(says(result.notes, "the point-to-point clutter is not given: 0 dB"));
  EXPECT_TRUE(says(result.notes, "the model's defaults are used where nothing is stored: ITM/iHor"));
  expectNoTrace();
}

TEST_F(PathExportTest, NotesTheEarthFactorOnlyOfFilesThatDependOnIt) {
  EXPECT_TRUE(says(exported(request(PathExportKind::kHeightProfile, "a.csv")).notes, "effective-earth"));
  EXPECT_FALSE(says(exported(request(PathExportKind::kLossTable, "b.csv")).notes, "effective-earth"));
}

TEST_F(PathExportTest, NotesAMarkerAtTheStartWhichHasNoRow) {
  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.markersKm = {0, 9};
  const PathExport result = exported(own);
  EXPECT_EQ(linesOf(bytes("own.csv")).at(3), "");
  EXPECT_EQ(linesOf(bytes("own.csv")).at(4).substr(0, 16), "'Right Marker', ");
  EXPECT_TRUE(says(result.notes, "the marker at the start has an empty row"));
}

TEST_F(PathExportTest, NotesSamplesWithoutAHeight) {
  useTile([](int row, int column) { return row > 700 && row < 720 && column < 1000 ? -32768 : 200; });
  const PathExport result = exported(request(PathExportKind::kHeightProfile, "own.csv"));
  EXPECT_TRUE(says(result.notes, "samples have no height; they are exported as 0 m above sea level"));
}

TEST_F(PathExportTest, WritesUnderAShortNameToo) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  PathExportRequest own = request(PathExportKind::kHeightProfile, "");
  own.file = "a";
  const PathExport result = exportPath(own);
  std::filesystem::current_path(before);
  EXPECT_EQ(result.status, 0) << result.error;
  EXPECT_EQ(result.files, std::vector<std::string>{"a"});
  EXPECT_GT(bytes("a").size(), 1000U);
}

// The procedures count characters, of which these names have fewer than five.
TEST_F(PathExportTest, WritesUnderAShortNameOfLettersBeyondAscii) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  for (const std::string name : {"äöü", "é"}) {
    PathExportRequest own = request(PathExportKind::kHeightProfile, "");
    own.file = name;
    const PathExport result = exportPath(own);
    EXPECT_EQ(result.status, 0) << name << ": " << result.error;
    EXPECT_EQ(result.files, std::vector<std::string>{name});
    EXPECT_GT(bytes(name).size(), 1000U);
  }
  std::filesystem::current_path(before);
}

TEST_F(PathExportTest, TellsOfADeviceThatItHasWrittenTo) {
  PathExportRequest own = request(PathExportKind::kHeightProfile, "");
  own.file = "/dev/null";
  EXPECT_EQ(exported(own).files, std::vector<std::string>{"/dev/null"});
}

TEST_F(PathExportTest, TellsOfFilesThatItHasWrittenAsTheyWere) {
  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  const std::vector<std::string> names{file("own.csv"), file("own.csv.terrain.txt")};
  for (int time = 0; time < 2; ++time) EXPECT_EQ(exported(own).files, names);
}

TEST_F(PathExportTest, WritesABitmapUnderANameThatIsNoText) {
  const PathExport result = exported(request(PathExportKind::kBitmap, "lat\xE9.bmp"));
  EXPECT_EQ(result.files, std::vector<std::string>{file("lat\xE9.bmp")});
  EXPECT_EQ(bytes("lat\xE9.bmp").substr(0, 2), "BM");
}

// ---- What the window passes in silence ----

TEST_F(PathExportTest, RefusesAPowerThatIsNone) {
  for (const double power : {0.0, -1.0, 1.1e6, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()}) {
    PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
    own.erpKw = power;
    const PathExport result = exportPath(own);
    EXPECT_EQ(result.status, 5) << power;
    EXPECT_NE(result.error.find("the effective radiated power is "), std::string::npos) << result.error;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv"));
  }
}

TEST_F(PathExportTest, RefusesAFrequencyWithoutLevelsAndTakesThoseAtTheEdges) {
  for (const auto kind : {PathExportKind::kSignalProfile, PathExportKind::kSignalGraph}) {
    PathExportRequest own = request(kind, "own.csv");
    for (const double frequency : {19.9, 20001.0}) {
      own.frequencyMhz = frequency;
      const PathExport result = exportPath(own);
      EXPECT_EQ(result.status, 5);
      EXPECT_NE(result.error.find("outside 20 to 20000 MHz"), std::string::npos) << result.error;
      EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv"));
      EXPECT_FALSE(std::filesystem::exists(folder_ / "own.dat"));
    }
  }
  for (const double frequency : {20.0, 20000.0}) {
    PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
    own.frequencyMhz = frequency;
    exported(own);
  }
}

TEST_F(PathExportTest, RefusesTooFewSamples) {
  set("Profile", "Prf_Per", "10");
  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  own.to = {36.403, -84.35};  // 0.333 km
  const PathExport result = exportPath(own);
  EXPECT_EQ(result.status, 5);
  EXPECT_NE(result.error.find("samples from station to station, and 10 are needed"), std::string::npos)
      << result.error;
  own.kind = PathExportKind::kHeightProfile;
  EXPECT_EQ(exportPath(own).status, 0);
}

TEST_F(PathExportTest, RefusesAPathThatIsTooShort) {
  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.to = {36.401, -84.35};
  const PathExport result = exportPath(own);
  EXPECT_EQ(result.status, 5);
  EXPECT_NE(result.error.find("only 0.111 km apart"), std::string::npos) << result.error;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv"));
  expectNoTrace();
}

TEST_F(PathExportTest, RefusesWhatIsNoRequest) {
  struct Wrong {
    PathExportKind kind;
    std::function<void(PathExportRequest&)> spoil;
    const char* said;
  };
  const std::vector<Wrong> all{
      {PathExportKind::kHeightProfile, [](PathExportRequest& r) { r.file.clear(); }, "no file is named"},
      {PathExportKind::kHeightProfile,
       [](PathExportRequest& r) {
         r.markersKm = {1, 2, 3};
       },
       "3 markers"},
      {PathExportKind::kHeightProfile, [](PathExportRequest& r) { r.markersKm = {40}; }, "not on the path"},
      {PathExportKind::kSignalProfile, [](PathExportRequest& r) { r.longleyRiceClutterDb = 1001; },
       "the Longley-Rice clutter is 1001 dB"},
      {PathExportKind::kSignalProfile,
       [](PathExportRequest& r) { r.pointToPointClutterDb = std::numeric_limits<double>::quiet_NaN(); },
       "the point-to-point clutter is not a number"},
      {PathExportKind::kSignalGraph, [](PathExportRequest& r) { r.startM = 29000; },
       "the graph starts at 29000 m, which is not on the path; give 0 to 28734"},
      {PathExportKind::kSignalGraph, [](PathExportRequest& r) { r.endM = -2; }, "the graph ends at -2 m"},
      {PathExportKind::kSignalGraph, [](PathExportRequest& r) { r.startM = r.endM = 5000; },
       "not beyond its start"},
      {PathExportKind::kBitmap, [](PathExportRequest& r) { r.width = 99; }, "99 x 164 pixels"},
      {PathExportKind::kBitmap, [](PathExportRequest& r) { r.height = 8001; }, "621 x 8001 pixels"}};
  for (const Wrong& wrong : all) {
    PathExportRequest own = request(wrong.kind, "own.csv");
    wrong.spoil(own);
    const PathExport result = exportPath(own);
    EXPECT_EQ(result.status, 5) << wrong.said;
    EXPECT_NE(result.error.find(wrong.said), std::string::npos) << result.error;
    EXPECT_TRUE(result.files.empty());
  }
  expectNoTrace();
}

TEST_F(PathExportTest, RefusesTerrainThatIsMissing) {
  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.from = {50, 10};
  own.to = {50.1, 10};
  const PathExport outside = exportPath(own);
  EXPECT_EQ(outside.status, 2);
  EXPECT_NE(outside.error.find("lies outside"), std::string::npos) << outside.error;

  set("Terrain", "Source3", file("no such folder"));
  control_.SetClientApp(makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
  const PathExport none = exportPath(request(PathExportKind::kHeightProfile, "own.csv"));
  EXPECT_EQ(none.status, 1) << none.error;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv"));
  expectNoTrace();
}

TEST_F(PathExportTest, RefusesGroundThatWouldEndTheProcessInTheWindow) {
  useTile([](int row, int) { return row == 800 ? -300 : 100; });
  const PathExport result = exportPath(request(PathExportKind::kHeightProfile, "own.csv"));
  EXPECT_EQ(result.status, 5);
  EXPECT_NE(result.error.find("heights from -500 m up to -100 m are not carried"), std::string::npos)
      << result.error;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv"));
}

// ---- Failures on the way ----

TEST_F(PathExportTest, TellsOfAFileThatCannotBeWritten) {
  std::filesystem::create_directory(folder_ / "folder.csv");
  test::writeBytes(folder_ / "text", "text");
  const std::vector<std::pair<std::string, std::string>> cases{
      {"/dev/full", "Disk full"},
      {file("vanished/own.csv"), "Path not found"},
      {file("text/own.csv"), "Path not found"},
      {file("folder.csv"), "Path/File access error"}};
  for (const auto kind : {PathExportKind::kHeightProfile, PathExportKind::kLossTable,
                          PathExportKind::kSignalProfile, PathExportKind::kBitmap})
    for (const auto& [name, said] : cases) {
      // The heights of a signal profile would come to lie beside the device.
      if (kind == PathExportKind::kSignalProfile && name == "/dev/full") continue;
      PathExportRequest own = request(kind, "");
      own.file = name;
      const PathExport result = exportPath(own);
      EXPECT_EQ(result.status, kPathExportFailed) << name;
      EXPECT_NE(result.error.find(said), std::string::npos) << result.error;
      EXPECT_NE(result.error.find(name), std::string::npos) << result.error;
      EXPECT_TRUE(result.files.empty());
    }
  EXPECT_EQ(test::fileBytes(folder_ / "text"), "text");
  expectNoTrace();
}

TEST_F(PathExportTest, TellsWhatAFailureMidwayHasLeft) {
  PathExportRequest own = request(PathExportKind::kHeightProfile, "own.csv");
  own.markersKm = {28.73};
  const PathExport result = exportPath(own);
  EXPECT_EQ(result.status, kPathExportFailed);
  EXPECT_EQ(result.files, std::vector<std::string>{file("own.csv")});
  EXPECT_NE(result.error.find("a marker as near to the end as one sample has no row"), std::string::npos)
      << result.error;
  EXPECT_EQ(linesOf(bytes("own.csv")).size(), 3U);
}

TEST_F(PathExportTest, TellsOfABlockOfHeightsThatRunsPastTheSamples) {
  set("Profile", "Prf_Per", "10");
  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  own.to = {36.41, -84.35};  // 1.11 km: two samples beyond the end
  const PathExport result = exportPath(own);
  EXPECT_EQ(result.status, kPathExportFailed);
  EXPECT_EQ(result.files, (std::vector<std::string>{file("own.csv"), file("own.csv.terrain.txt")}));
  EXPECT_NE(result.error.find("the block of heights has twelve to a line"), std::string::npos)
      << result.error;
}

TEST_F(PathExportTest, ACancelledExportLeavesWhatWasThere) {
  for (const auto kind : {PathExportKind::kSignalProfile, PathExportKind::kSignalGraph}) {
    test::writeBytes(folder_ / "own.csv", "before");
    test::writeBytes(folder_ / "own.dat", "before");
    PathExportRequest own = request(kind, "own.csv");
    int calls = 0;
    own.progress = [&calls](std::int32_t, std::int32_t) { return ++calls < 500; };
    const PathExport result = exportPath(own);
    EXPECT_EQ(calls, 500);
    EXPECT_EQ(result.status, kPathExportCancelled);
    EXPECT_EQ(result.error, "the export was cancelled; nothing was written");
    EXPECT_TRUE(result.files.empty());
    EXPECT_EQ(bytes("own.csv"), "before");
    EXPECT_EQ(bytes("own.dat"), "before");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own.csv.terrain.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own.plt"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own_PTP.txt"));
  }
  expectNoTrace();
}

TEST_F(PathExportTest, WhatTheProgressThrowsCancelsTheExportAndIsPassedOn) {
  for (const auto kind : {PathExportKind::kSignalProfile, PathExportKind::kSignalGraph}) {
    test::writeBytes(folder_ / "own.csv", "before");
    test::writeBytes(folder_ / "own.dat", "before");
    PathExportRequest own = request(kind, "own.csv");
    own.progress = [](std::int32_t done, std::int32_t) {
      if (done > 500) throw std::out_of_range("the caller's");
      return true;
    };
    EXPECT_THROW(exportPath(own), std::out_of_range);
    EXPECT_EQ(bytes("own.csv"), "before");
    EXPECT_EQ(bytes("own.dat"), "before");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "own_PTP.txt"));
  }
  expectNoTrace();
}

TEST_F(PathExportTest, TheProgressCountsTheSamples) {
  PathExportRequest own = request(PathExportKind::kSignalProfile, "own.csv");
  std::vector<std::int32_t> steps;
  own.progress = [&steps](std::int32_t done, std::int32_t all) {
    EXPECT_EQ(all, 1001);
    steps.push_back(done);
    return true;
  };
  exported(own);
  ASSERT_EQ(steps.size(), 1001U);
  for (std::size_t i = 0; i < steps.size(); ++i) EXPECT_EQ(steps[i], static_cast<std::int32_t>(i) + 1);
}

TEST_F(PathExportTest, TellsOfAGnuplotThatMakesNoPicture) {
  for (const std::string program : {"/bin/false", "/no/such/gnuplot"}) {
    set("Settings", "gnuPlotEXE", program);
    const PathExport result = exportPath(request(PathExportKind::kSignalGraph, "graph.png"));
    EXPECT_EQ(result.status, kPathExportFailed);
    EXPECT_NE(result.error.find(program), std::string::npos) << result.error;
    // The data and the script are there, and can be tried by hand.
    EXPECT_TRUE(says(result.files, "graph.dat"));
    EXPECT_TRUE(says(result.files, "graph.plt"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "graph.png"));
    for (const char* name : {"graph.dat", "graph.plt", "graph_PTP.txt"})
      std::filesystem::remove(folder_ / name);
  }
  expectNoTrace();
}

TEST_F(PathExportTest, GnuplotDrawsTheGraph) {
  set("Settings", "gnuPlotEXE", "/usr/bin/gnuplot");
  const PathExport result = exported(request(PathExportKind::kSignalGraph, "graph.png"));
  EXPECT_TRUE(says(result.files, "graph.png"));
  EXPECT_EQ(QImage(QString::fromStdString(file("graph.png"))).size(), QSize(1280, 1024));
}

}  // namespace
}  // namespace zel
