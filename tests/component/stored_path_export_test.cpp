// ProfileControl's exports without a window, in a process that may have no application object: the stored
// stations, with the failures told as the window tells them.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <filesystem>
#include <string>

#include "bundled_path.h"
#include "real_component.h"
#include "support/environment_variable.h"
#include "zel/c_api.h"
#include "zel/path_export.h"

namespace zel {
namespace {

using test::kEnd;
using test::kStart;

class StoredPathExportTest : public test::RealComponent {
 protected:
  std::string file(const std::string& name) const { return (folder_ / name).string(); }
  std::string bytes(const std::string& name) const { return test::fileBytes(folder_ / name); }
  PathExportRequest request(PathExportKind kind) const {
    PathExportRequest request;
    request.from = {kStart.Lat, kStart.Lon};
    request.to = {kEnd.Lat, kEnd.Lon};
    request.fromHeight = 30;
    request.toHeight = 12;
    request.kind = kind;
    request.file = file("public.csv");
    return request;
  }
  void expectNoWindow() {
    EXPECT_FALSE(control_.get_PFrmLoaded());
    EXPECT_EQ(control_.get_hWnd(), 0);
    EXPECT_EQ(windows_->profileWindow(), nullptr);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
  }
};

TEST_F(StoredPathExportTest, WritesTheHeightProfileOfTheStoredStations) {
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportDataToCSV(file("heights.csv"));
  EXPECT_EQ(exportPath(request(PathExportKind::kHeightProfile)).error, "");
  EXPECT_GT(bytes("heights.csv").size(), 100000U);
  EXPECT_EQ(bytes("heights.csv"), bytes("public.csv"));
  EXPECT_TRUE(dialogs_->messages.empty());
  expectNoWindow();
}

TEST_F(StoredPathExportTest, WritesTheLossTableOfTheStoredStations) {
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportITMToCSV(file("losses.csv"));
  EXPECT_EQ(exportPath(request(PathExportKind::kLossTable)).error, "");
  EXPECT_GT(bytes("losses.csv").size(), 100000U);
  EXPECT_EQ(bytes("losses.csv"), bytes("public.csv"));
  EXPECT_TRUE(dialogs_->messages.empty());
  expectNoWindow();
}

TEST_F(StoredPathExportTest, WritesTheDatumOfTheStations) {
  control_.let_StaDatum(0);
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportDataToCSV(file("heights.csv"));
  EXPECT_NE(bytes("heights.csv").find(", NAD-27\r\n"), std::string::npos);
}

TEST_F(StoredPathExportTest, WritesTheSameFromCAndByLateBinding) {
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportDataToCSV(file("direct.csv"));
  control_.call("ExportDataToCSV", {AutomationValue(file("late.csv"))});
  zelProfiler* profiler = nullptr;
  ASSERT_EQ(zelProfilerCreate(&profiler), ZEL_OK);
  EXPECT_EQ(zelProfilerExportDataToCSV(profiler, file("c.csv").c_str()), ZEL_OK);
  zelProfilerRelease(profiler);
  EXPECT_GT(bytes("direct.csv").size(), 100000U);
  EXPECT_EQ(bytes("late.csv"), bytes("direct.csv"));
  EXPECT_EQ(bytes("c.csv"), bytes("direct.csv"));
}

TEST_F(StoredPathExportTest, APathThatCannotBeProfiledIsToldAndWritesNothing) {
  control_.GetPathLoss(kStart, kStart);
  dialogs_->messages.clear();
  const std::string before = logged();
  control_.ExportDataToCSV(file("heights.csv"));
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(dialogs_->messages[0].text, "Under Range Error.");
  control_.ExportITMToCSV(file("losses.csv"));
  EXPECT_EQ(dialogs_->messages.size(), 2U);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "heights.csv"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "losses.csv"));
  // The failure is this export's: the next window starts without it.
  EXPECT_FALSE(component_.state().bProfileFailed);
  EXPECT_EQ(logged(), before);
}

TEST_F(StoredPathExportTest, TerrainThatIsMissingIsToldAndWritesNothing) {
  component_.state().station1 = {50, 10};
  component_.state().station2 = {50.1, 10};
  control_.ExportDataToCSV(file("heights.csv"));
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "heights.csv"));
  EXPECT_FALSE(component_.state().bProfileFailed);
}

TEST_F(StoredPathExportTest, AFileThatCannotBeWrittenGoesToTheTrap) {
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportDataToCSV(file("vanished/heights.csv"));
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_NE(dialogs_->messages[0].text.find("Path not found"), std::string::npos);
  EXPECT_NE(logged().find("frmProfile:lExportDataToCSV:2"), std::string::npos) << logged();
  control_.ExportITMToCSV("/dev/full");
  EXPECT_EQ(dialogs_->messages.size(), 2U);
  EXPECT_NE(logged().find("Disk full"), std::string::npos);
}

TEST_F(StoredPathExportTest, ANameUnderFiveCharactersDoesNothing) {
  control_.GetPathLoss(kStart, kEnd);
  control_.ExportDataToCSV("a.cs");
  control_.ExportITMToCSV("");
  EXPECT_FALSE(std::filesystem::exists("a.cs"));
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(StoredPathExportTest, AnAntennaHeightBelowZeroIsTheSettings) {
  set("Profile", "Prf_HtL", "45");
  component_.state().station1 = {kStart.Lat, kStart.Lon};
  component_.state().station2 = {kEnd.Lat, kEnd.Lon};
  component_.state().antennaHeights = {-1, 12};
  control_.ExportDataToCSV(file("heights.csv"));
  PathExportRequest same = request(PathExportKind::kHeightProfile);
  same.fromHeight = 45;
  EXPECT_EQ(exportPath(same).error, "");
  EXPECT_EQ(bytes("heights.csv"), bytes("public.csv"));
}

TEST_F(StoredPathExportTest, ThePublicExportNeedsNoApplicationForTexts) {
  PathExportRequest own = request(PathExportKind::kSignalProfile);
  own.markersKm = {5};
  EXPECT_EQ(exportPath(own).error, "");
  EXPECT_EQ(QCoreApplication::instance(), nullptr);
}

}  // namespace
}  // namespace zel
