#include "zel/profile_control.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>
#include <thread>

#include "component/procedure_names.h"
#include "component_fixture.h"
#include "unavailable_windows.h"

namespace zel {
namespace {

using test::Journal;
using test::kStation1;
using test::kStation2;

class ProfileControlTest : public test::ComponentFixture {
 protected:
  ModuleState& state() { return component_.state(); }
};

// ---- Properties ----

TEST_F(ProfileControlTest, StartsWithEverythingZeroEmptyOrFalse) {
  ProfileControl control;
  EXPECT_EQ(control.get_ElevLines(), 0);
  EXPECT_EQ(control.get_RangeLines(), 0);
  EXPECT_EQ(control.get_StaDatum(), 0);
  EXPECT_EQ(control.get_hWnd(), 0);
  EXPECT_FALSE(control.get_OFrmLoaded());
  EXPECT_FALSE(control.get_PFrmLoaded());
  EXPECT_FALSE(control.get_OptionButtonVisible());
  EXPECT_EQ(state().datumText, "");
  EXPECT_EQ(state().station1, GeoPoint());
  EXPECT_EQ(state().antennaHeights, (std::array<std::int16_t, 2>{0, 0}));
  EXPECT_EQ(state().printDescription, "");
  EXPECT_FALSE(state().bProfileFailed);
}

TEST_F(ProfileControlTest, KeepsWhatTheHostSets) {
  ProfileControl control;
  control.let_ElevLines(-32768);
  control.let_RangeLines(32767);
  control.let_OptionButtonVisible(true);
  control.let_OwnerName("the owner");
  control.let_ProgName("the program");
  control.let_PrintDescription("Site A to B");
  control.let_PrintLandscape(true);
  EXPECT_EQ(control.get_ElevLines(), -32768);
  EXPECT_EQ(control.get_RangeLines(), 32767);
  EXPECT_TRUE(control.get_OptionButtonVisible());
  EXPECT_EQ(state().ownerName, "the owner");
  EXPECT_EQ(state().progName, "the program");
  EXPECT_EQ(state().printDescription, "Site A to B");
  EXPECT_TRUE(state().printDescriptionSet);
  EXPECT_TRUE(state().printLandscape);
}

TEST_F(ProfileControlTest, NamesTheDatumByZeroAndAnythingElse) {
  ProfileControl control;
  for (const auto& [code, text] : {std::pair{2, "NAD-83"},
                                   {0, "NAD-27"},
                                   {1, "NAD-83"},
                                   {-1, "NAD-83"},
                                   {2147483647, "NAD-83"},
                                   {-2147483647 - 1, "NAD-83"}}) {
    control.let_StaDatum(code);
    EXPECT_EQ(control.get_StaDatum(), code);
    EXPECT_EQ(state().datumText, text) << code;
  }
}

TEST_F(ProfileControlTest, SharesAllValuesBetweenTwoObjects) {
  ProfileControl first;
  ProfileControl second;
  first.let_ElevLines(7);
  first.let_RangeLines(8);
  first.let_StaDatum(5);
  first.let_OptionButtonVisible(true);
  first.ShowMainForm(kStation1, kStation2);
  EXPECT_EQ(second.get_ElevLines(), 7);
  EXPECT_EQ(second.get_RangeLines(), 8);
  EXPECT_EQ(second.get_StaDatum(), 5);
  EXPECT_TRUE(second.get_OptionButtonVisible());
  EXPECT_TRUE(second.get_PFrmLoaded());
  EXPECT_EQ(second.get_hWnd(), 77);
  second.UnloadMainForm();
  EXPECT_FALSE(first.get_PFrmLoaded());
}

TEST_F(ProfileControlTest, SharesWhatOnlyTheWindowsReadBetweenTwoObjects) {
  ProfileControl first;
  ProfileControl second;
  first.let_PrintDescription("Site A to B");
  first.let_PrintLandscape(true);
  first.let_OwnerName("the owner");
  first.let_ProgName("the program");
  first.GetPathLoss(kStation1, kStation2);
  int exports = 0;
  windows_->onExport = [&] {
    ++exports;
    EXPECT_EQ(state().station1, (GeoPoint{36.30, -84.20}));
    EXPECT_EQ(state().station2, (GeoPoint{36.40, -84.10}));
    EXPECT_EQ(state().antennaHeights, (std::array<std::int16_t, 2>{30, 20}));
    EXPECT_EQ(state().printDescription, "Site A to B");
    EXPECT_TRUE(state().printLandscape);
    EXPECT_EQ(state().ownerName, "the owner");
    EXPECT_EQ(state().progName, "the program");
  };
  second.ExportDataToCSV("a.csv");
  EXPECT_EQ(exports, 1);
  second.let_PrintLandscape(false);
  second.let_PrintDescription("");
  second.GetPathLoss(kStation2, kStation1);
  windows_->onExport = [&] {
    ++exports;
    EXPECT_EQ(state().station1, (GeoPoint{36.40, -84.10}));
    EXPECT_EQ(state().antennaHeights, (std::array<std::int16_t, 2>{20, 30}));
    EXPECT_EQ(state().printDescription, "");
    EXPECT_FALSE(state().printLandscape);
  };
  first.ExportDataToCSV("a.csv");
  EXPECT_EQ(exports, 2);
}

// The names stand in the logs of hosts; support staff search for them.
TEST(ProcedureNames, AreThoseThatErrorMessagesHaveAlwaysHad) {
  namespace names = procedures;
  EXPECT_EQ(names::kClassInitialize, ":Class_Initialize:");
  EXPECT_EQ(names::kClassTerminate, ":Class_Terminate:");
  EXPECT_EQ(names::kGetElevLines, ":Get ElevLines:");
  EXPECT_EQ(names::kLetElevLines, ":Let ElevLines:");
  EXPECT_EQ(names::kExportDataToCSV, ":ExportDataToCSV:");
  EXPECT_EQ(names::kExportITMToCSV, ":ExportITMToCSV:");
  EXPECT_EQ(names::kGetOFrmLoaded, ":Get OFrmLoaded:");
  EXPECT_EQ(names::kGetOptionButtonVisible, ":Get OptionButtonVisible:");
  EXPECT_EQ(names::kLetOptionButtonVisible, ":Let OptionButtonVisible:");
  EXPECT_EQ(names::kLetOwnerName, ":Let OwnerName:");
  EXPECT_EQ(names::kGetPForm, ":Get PForm:");
  EXPECT_EQ(names::kGetPFrmLoaded, ":Get PFrmLoaded:");
  EXPECT_EQ(names::kLetPrintDescription, ":Let PrintDescription:");
  EXPECT_EQ(names::kLetPrintLandscape, ":Let PrintLandscape:");
  EXPECT_EQ(names::kPrintProfile, ":PrintProfile:");
  EXPECT_EQ(names::kLetProgName, ":Let ProgName:");
  EXPECT_EQ(names::kGetRangeLines, ":Get RangeLines:");
  EXPECT_EQ(names::kLetRangeLines, ":Let RangeLines:");
  EXPECT_EQ(names::kSetClientApp, ":SetClientApp:");
  EXPECT_EQ(names::kGetPathLoss, ":GetPathLoss:");
  EXPECT_EQ(names::kShowMainForm, ":ShowMainForm:");
  EXPECT_EQ(names::kShowOptionsForm, ":ShowOptionsForm:");
  EXPECT_EQ(names::kGetStaDatum, ":Get StaDatum:");
  EXPECT_EQ(names::kLetStaDatum, ":Let StaDatum:");
  EXPECT_EQ(names::kUnloadMainForm, ":UnloadMainForm:");
  // The blanks around this one are meant.
  EXPECT_EQ(names::kGetHWnd, " :Get hWnd: ");
}

TEST_F(ProfileControlTest, ReadsTheLoadedFlagsAndTheHandleOfTheWindows) {
  ProfileControl control;
  state().settingsDialogLoaded = true;
  state().profileWindowLoaded = true;
  state().profileWindowHandle = -5;
  EXPECT_TRUE(control.get_OFrmLoaded());
  EXPECT_TRUE(control.get_PFrmLoaded());
  EXPECT_EQ(control.get_hWnd(), -5);
}

// Printing starts from the window's menu; the member is meant to do nothing.
TEST_F(ProfileControlTest, PrintsNothingAndReturnsFalse) {
  ProfileControl control;
  EXPECT_FALSE(control.PrintProfile());
  EXPECT_TRUE(windows_->calls.empty());
  EXPECT_TRUE(dialogs_->messages.empty());
}

// ---- Binding ----

TEST_F(ProfileControlTest, BindsTheComponentsOwnApplicationUntilAHostComes) {
  ProfileControl control;
  EXPECT_EQ(component_.host().client(), ownApplication_);
  EXPECT_EQ(component_.host().clientTitle(), "zelProfiler01");
  control.SetClientApp(host_);
  EXPECT_EQ(component_.host().clientTitle(), "Host Planner");
  ProfileControl second;
  EXPECT_EQ(component_.host().client(), host_) << "a bound host stays";
}

TEST_F(ProfileControlTest, SetsUpTheServicesOnceAtTheFirstBinding) {
  ProfileControl control;
  EXPECT_TRUE(journal_.empty());
  control.SetClientApp(host_);
  EXPECT_EQ(journal_, (Journal{"ToolApplication", "WindowPlacement", "LinkBudgetTool", "SourceLists",
                               "VersionInfo", "VersionInfo released"}));
  journal_.clear();
  control.SetClientApp(host_);
  const DispatchPtr other = makePropertyBag({{"Title", "Other"}, {"Path", folder_.path().string()}});
  control.SetClientApp(other);
  EXPECT_TRUE(journal_.empty());
  EXPECT_EQ(component_.host().clientTitle(), "Other");
  EXPECT_EQ(tools_->lastClient, host_);
}

TEST_F(ProfileControlTest, UndoesAHiddenOptionButtonAtEveryBinding) {
  ProfileControl control;
  control.SetClientApp(host_);
  EXPECT_TRUE(control.get_OptionButtonVisible());
  control.let_OptionButtonVisible(false);
  EXPECT_FALSE(control.get_OptionButtonVisible());
  control.SetClientApp(host_);
  EXPECT_TRUE(control.get_OptionButtonVisible());
}

TEST_F(ProfileControlTest, RefreshesTheStringsAtEveryBinding) {
  ProfileControl control;
  control.SetClientApp(host_);
  EXPECT_EQ(state().helperProgramFolder, "/opt/helpers");
  EXPECT_EQ(state().coordinateFormat, "DMS");
  tools_->secondText = "DD";
  control.SetClientApp(host_);
  EXPECT_EQ(state().coordinateFormat, "DD");
}

TEST_F(ProfileControlTest, BindsNothingNewForNothingButShowsTheButtonAndBuildsTheTables) {
  ProfileControl control;
  EXPECT_EQ(component_.units()[2].name, "");
  control.SetClientApp(nullptr);
  EXPECT_EQ(component_.host().client(), ownApplication_);
  EXPECT_TRUE(control.get_OptionButtonVisible());
  EXPECT_EQ(component_.units()[2].name, "feet");
  EXPECT_EQ(component_.normalTable()[10], 1.28);
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(ProfileControlTest, KeepsTheHostWhenNothingIsBound) {
  ProfileControl control;
  control.SetClientApp(host_);
  control.let_OptionButtonVisible(false);
  control.SetClientApp(nullptr);
  EXPECT_EQ(component_.host().client(), host_);
  EXPECT_TRUE(control.get_OptionButtonVisible());
}

TEST_F(ProfileControlTest, TriesAFailedSetUpAgainAtEachBinding) {
  ProfileControl control;
  tools_->failAt = "LinkBudgetTool";
  control.SetClientApp(host_);
  EXPECT_FALSE(component_.host().setUp());
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_TRUE(loggedLocation("modTerPro:Init:2"));
  EXPECT_TRUE(control.get_OptionButtonVisible()) << "the binding went on";
  EXPECT_EQ(component_.units()[3].name, "miles");
  control.SetClientApp(nullptr);
  EXPECT_EQ(dialogs_->messages.size(), 2U);
  tools_->failAt.clear();
  control.SetClientApp(host_);
  EXPECT_TRUE(component_.host().setUp());
  EXPECT_EQ(dialogs_->messages.size(), 2U);
}

TEST_F(ProfileControlTest, SetsItselfUpOnFirstNeedWhenUsedWithoutAHost) {
  ProfileControl control;
  control.let_OptionButtonVisible(false);
  control.GetPathLoss(kStation1, kStation2);
  EXPECT_TRUE(component_.host().setUp());
  EXPECT_EQ(tools_->lastClient, ownApplication_);
  EXPECT_EQ(component_.units()[2].name, "feet");
  EXPECT_EQ(state().coordinateFormat, "DMS");
  EXPECT_FALSE(control.get_OptionButtonVisible()) << "only SetClientApp shows the button";
}

TEST_F(ProfileControlTest, SetsItselfUpAnewForTheFirstHostAfterUseWithoutOne) {
  ProfileControl control;
  control.GetPathLoss(kStation1, kStation2);
  journal_.clear();
  control.SetClientApp(host_);
  EXPECT_TRUE(component_.host().setUp());
  EXPECT_EQ(tools_->lastClient, host_);
  EXPECT_EQ(journal_.front(), "ToolApplication") << "the tools were made anew";
  journal_.clear();
  control.SetClientApp(makePropertyBag({{"Title", "Other"}, {"Path", folder_.path().string()}}));
  EXPECT_TRUE(journal_.empty()) << "between two hosts the first one's tools stay";
  EXPECT_EQ(tools_->lastClient, host_);
}

TEST_F(ProfileControlTest, KeepsNoToolOfTheOwnApplicationWhenTheHostsSetUpFails) {
  ProfileControl control;
  control.GetPathLoss(kStation1, kStation2);
  tools_->failAt = "ToolApplication";
  control.SetClientApp(host_);
  EXPECT_FALSE(component_.host().setUp());
  EXPECT_EQ(component_.host().sourceLists(), nullptr);
  tools_->failAt.clear();
  control.SetClientApp(nullptr);
  EXPECT_TRUE(component_.host().setUp());
  EXPECT_EQ(tools_->lastClient, host_);
}

TEST_F(ProfileControlTest, BindsCompletelyThoughTheTerrainSourcesCannotBeRead) {
  ComponentServices services = this->services();
  services.makeTerrain = [](TerrainLibrary::Definitions definitions, std::size_t cacheBytes) {
    return std::make_shared<TerrainLibrary>(std::move(definitions), cacheBytes);
  };
  Component component(services);
  ComponentSubstitute substitute(component);
  ProfileControl control;
  component.terrain();
  store_->failing = true;
  tools_->secondText = "DD";
  control.SetClientApp(host_);
  EXPECT_TRUE(loggedLocation("ProfileControl:SetClientApp:3")) << logged();
  EXPECT_TRUE(control.get_OptionButtonVisible());
  EXPECT_EQ(component.state().coordinateFormat, "DD");
  EXPECT_EQ(component.units()[2].name, "feet");
  EXPECT_EQ(component.normalTable()[10], 1.28);
}

TEST_F(ProfileControlTest, ReadsTheTitleAnewForEachFailure) {
  ProfileControl control;
  control.SetClientApp(host_);
  windows_->failAt = "show settings";
  control.ShowOptionsForm();
  host_->let("Title", "Renamed Planner");
  control.ShowOptionsForm();
  EXPECT_NE(logged().find("In Host Planner::zelProfiler01\r\n"), std::string::npos);
  EXPECT_NE(logged().find("In Renamed Planner::zelProfiler01\r\n"), std::string::npos);
}

TEST_F(ProfileControlTest, LogsUnderTheOwnFolderThatItMakesWhenUsedWithoutAHost) {
  ProfileControl control;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "own"));
  windows_->failAt = "show settings";
  control.ShowOptionsForm();
  EXPECT_NE(test::fileBytes(folder_ / "own/zelErrorLog.txt").find("In zelProfiler01::zelProfiler01\r\n"),
            std::string::npos);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
}

TEST_F(ProfileControlTest, NeverMakesAHostsFolder) {
  ProfileControl control;
  host_->let("Path", (folder_ / "missing").string());
  control.SetClientApp(host_);
  windows_->failAt = "show settings";
  control.ShowOptionsForm();
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
  ASSERT_EQ(dialogs_->messages.size(), 2U);
  EXPECT_EQ(dialogs_->messages[0].text, "Unable to write to Error Log!");
  EXPECT_EQ(dialogs_->messages[1].buttons, MessageButtons::kYesNo);
}

TEST_F(ProfileControlTest, ReportsTheTrapItselfForAHostWithoutATitle) {
  ProfileControl control;
  control.SetClientApp(makePropertyBag({{"Path", folder_.path().string()}}));
  windows_->failAt = "show settings";
  control.ShowOptionsForm();
  EXPECT_EQ(logged(), "11/15/26 19:05:03 :modErrorTrap:ErrTrap:0\r\n");
}

// ---- Showing a path ----

TEST_F(ProfileControlTest, ShowsAPathAndKeepsItsStations) {
  ProfileControl control;
  control.ShowMainForm(kStation1, kStation2);
  EXPECT_EQ(state().station1, (GeoPoint{36.30, -84.20}));
  EXPECT_EQ(state().station2, (GeoPoint{36.40, -84.10}));
  EXPECT_EQ(state().antennaHeights, (std::array<std::int16_t, 2>{30, 20}));
  EXPECT_EQ(windows_->calls, Journal{"show profile"});
  EXPECT_TRUE(control.get_PFrmLoaded());
  EXPECT_EQ(control.get_hWnd(), 77);
}

TEST_F(ProfileControlTest, RoundsAntennaHeightsHalfToEven) {
  ProfileControl control;
  for (const auto& [given, kept] : {std::pair{10.5F, 10},
                                    {11.5F, 12},
                                    {12.5F, 12},
                                    {13.5F, 14},
                                    {-0.5F, 0},
                                    {-1.5F, -2},
                                    {0.49F, 0},
                                    {32767.4F, 32767},
                                    {-32768.0F, -32768}}) {
    control.GetPathLoss({0, 0, given}, {0, 0, 0});
    EXPECT_EQ(state().antennaHeights[0], kept) << given;
    control.ShowMainForm({0, 0, 0}, {0, 0, given});
    EXPECT_EQ(state().antennaHeights[1], kept) << given;
  }
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(ProfileControlTest, TrapsAnAntennaHeightBeyond16Bits) {
  ProfileControl control;
  control.SetClientApp(host_);
  for (const float height : {32768.0F, -32769.0F, 1e30F, std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()}) {
    const std::string before = logged();
    windows_->calls.clear();
    control.ShowMainForm({1, 2, height}, {3, 4, 5});
    EXPECT_NE(logged()
                  .substr(before.size())
                  .find("Overflow\r\nIn Host Planner::zelProfiler01\r\n"
                        "ProfileControl:ShowMainForm:1\r\nError Number: 6\r\n"),
              std::string::npos)
        << height;
    EXPECT_TRUE(windows_->calls.empty()) << "nothing is unloaded or shown";
  }
  EXPECT_EQ(state().station1, (GeoPoint{1, 2})) << "the positions were stored before";
  EXPECT_EQ(control.GetPathLoss({1, 2, 3}, {3, 4, 40000}), 0.0F);
  EXPECT_TRUE(loggedLocation("ProfileControl:GetPathLoss:1"));
}

TEST_F(ProfileControlTest, UnloadsWhatIsLoadedBeforeItShowsAPath) {
  ProfileControl control;
  control.ShowMainForm(kStation1, kStation2);
  state().settingsDialogLoaded = true;
  windows_->calls.clear();
  control.ShowMainForm(kStation2, kStation1);
  EXPECT_EQ(windows_->calls, (Journal{"unload profile", "unload settings", "show profile"}));
  EXPECT_EQ(state().station1, (GeoPoint{36.40, -84.10}));
}

TEST_F(ProfileControlTest, HasStoredTheStationsAndClearedTheFailureWhenTheWindowLoads) {
  ProfileControl control;
  state().bProfileFailed = true;
  windows_->onShow = [&] {
    EXPECT_FALSE(state().bProfileFailed);
    EXPECT_EQ(state().station2, (GeoPoint{36.40, -84.10}));
    EXPECT_EQ(state().antennaHeights[1], 20);
    EXPECT_TRUE(component_.host().setUp());
  };
  control.ShowMainForm(kStation1, kStation2);
}

TEST_F(ProfileControlTest, LeavesNoWindowLoadedForAPathThatIsRejected) {
  ProfileControl control;
  windows_->rejectProfile = true;
  control.ShowMainForm(kStation1, kStation2);
  EXPECT_EQ(windows_->calls, (Journal{"show profile", "unload profile"}));
  EXPECT_FALSE(control.get_PFrmLoaded());
  EXPECT_EQ(control.get_hWnd(), 0);
}

TEST_F(ProfileControlTest, UnloadsTheWindowThenTheDialogEachOnlyWhenLoaded) {
  ProfileControl control;
  control.UnloadMainForm();
  EXPECT_TRUE(windows_->calls.empty());
  state().profileWindowLoaded = true;
  control.UnloadMainForm();
  EXPECT_EQ(windows_->calls, Journal{"unload profile"});
  state().settingsDialogLoaded = true;
  control.UnloadMainForm();
  EXPECT_EQ(windows_->calls, (Journal{"unload profile", "unload settings"}));
}

TEST_F(ProfileControlTest, ShowsTheSettingsDialog) {
  ProfileControl control;
  control.ShowOptionsForm();
  EXPECT_EQ(windows_->calls, Journal{"show settings"});
}

TEST_F(ProfileControlTest, GivesANewWindowOfItsOwnEachTime) {
  ProfileControl control;
  const DispatchPtr first = control.get_PForm();
  const DispatchPtr second = control.get_PForm();
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_FALSE(control.get_PFrmLoaded());
  EXPECT_EQ(control.get_hWnd(), 0);
}

// ---- Path loss and exports ----

TEST_F(ProfileControlTest, GivesThePathLossWithoutTouchingAWindow) {
  ProfileControl control;
  state().profileWindowLoaded = true;
  state().bProfileFailed = true;
  EXPECT_EQ(control.GetPathLoss(kStation1, kStation2), 123.5F);
  EXPECT_EQ(state().station1, (GeoPoint{36.30, -84.20}));
  EXPECT_EQ(state().antennaHeights, (std::array<std::int16_t, 2>{30, 20}));
  EXPECT_TRUE(windows_->calls.empty());
  EXPECT_TRUE(state().bProfileFailed) << "the failure flag is the windows'";
}

TEST_F(ProfileControlTest, GivesZeroForAPathLossThatFails) {
  ProfileControl control;
  control.SetClientApp(host_);
  pathLoss_ = []() -> float { throw RuntimeError::actionNotSupported(); };
  EXPECT_EQ(control.GetPathLoss(kStation1, kStation2), 0.0F);
  EXPECT_TRUE(loggedLocation("ProfileControl:GetPathLoss:2"));
}

TEST_F(ProfileControlTest, HandsTheFileNameToTheExports) {
  ProfileControl control;
  control.ExportDataToCSV("a.csv");
  control.ExportITMToCSV("/my path/b.csv");
  EXPECT_EQ(windows_->calls, (Journal{"export data a.csv", "export loss /my path/b.csv"}));
}

TEST_F(ProfileControlTest, ExportsNothingForANameUnder5Characters) {
  ProfileControl control;
  for (const char* name : {"", "a", ".csv", "\u00e9.cs"}) {
    control.ExportDataToCSV(name);
    control.ExportITMToCSV(name);
  }
  EXPECT_TRUE(windows_->calls.empty());
  EXPECT_TRUE(dialogs_->messages.empty());
  control.ExportDataToCSV("\u00e9.csv");
  EXPECT_EQ(windows_->calls.size(), 1U);
}

// ---- Without windows ----

TEST_F(ProfileControlTest, RefusesWhatNeedsAWindowWithError445) {
  ComponentServices services = this->services();
  services.windows = std::make_shared<UnavailableWindows>();
  services.pathLoss = nullptr;
  Component component(services);
  ComponentSubstitute substitute(component);
  ProfileControl control;
  control.SetClientApp(host_);
  component.state().bProfileFailed = true;
  control.ShowMainForm(kStation1, kStation2);
  EXPECT_EQ(component.state().station1, (GeoPoint{36.30, -84.20}));
  EXPECT_FALSE(component.state().bProfileFailed);
  EXPECT_FALSE(control.get_PFrmLoaded());
  control.ShowOptionsForm();
  EXPECT_EQ(control.get_PForm(), nullptr);
  control.ExportDataToCSV("a.csv");
  control.ExportITMToCSV("a.csv");
  EXPECT_EQ(dialogs_->messages.size(), 5U);
  for (const char* location :
       {"ShowMainForm:4", "ShowOptionsForm:0", "Get PForm:0", "ExportDataToCSV:1", "ExportITMToCSV:1"})
    EXPECT_NE(logged().find(
                  "Object doesn't support this action\r\nIn Host Planner::zelProfiler01\r\nProfileControl:" +
                  std::string(location) + "\r\nError Number: 445\r\n"),
              std::string::npos)
        << location;
  control.ExportDataToCSV(".csv");
  control.UnloadMainForm();
  EXPECT_EQ(dialogs_->messages.size(), 5U);
}

// ---- Failures ----

TEST_F(ProfileControlTest, AlwaysAsksForAFailureAndQuitsWithItsNumberOnNo) {
  ProfileControl control;
  control.SetClientApp(host_);
  windows_->failAt = "show profile";
  dialogs_->answer = MessageAnswer::kNo;
  control.ShowMainForm(kStation1, kStation2);
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(dialogs_->messages.front().text,
            "Object doesn't support this action\r\nIn Host "
            "Planner::zelProfiler01\r\nProfileControl:ShowMainForm:4\r\n"
            "Error Number: 445\r\nAttempt to Continue?");
  EXPECT_EQ(eventLoop_->quits, std::vector<int>{445});
}

TEST_F(ProfileControlTest, NamesEachProcedureWithItsStep) {
  ProfileControl control;
  control.SetClientApp(host_);
  state().profileWindowLoaded = true;
  windows_->failAt = "unload profile";
  control.UnloadMainForm();
  EXPECT_TRUE(loggedLocation("ProfileControl:UnloadMainForm:0"));
  state().profileWindowLoaded = false;
  state().settingsDialogLoaded = true;
  windows_->failAt = "unload settings";
  control.UnloadMainForm();
  EXPECT_TRUE(loggedLocation("ProfileControl:UnloadMainForm:1"));
  windows_->failAt = "unload profile";
  windows_->rejectProfile = true;
  state().settingsDialogLoaded = false;
  control.ShowMainForm(kStation1, kStation2);
  EXPECT_TRUE(loggedLocation("ProfileControl:ShowMainForm:5"));
}

TEST_F(ProfileControlTest, GoesOnShowingAfterAnUnloadThatFailed) {
  ProfileControl control;
  control.SetClientApp(host_);
  state().profileWindowLoaded = true;
  windows_->failAt = "unload profile";
  control.ShowMainForm(kStation1, kStation2);
  EXPECT_EQ(windows_->calls, (Journal{"unload profile", "show profile"}));
}

// ---- Release ----

TEST_F(ProfileControlTest, UnloadsBothWindowsAtReleaseWhateverTheFlagsSay) {
  { ProfileControl control; }
  EXPECT_EQ(windows_->calls, (Journal{"unload settings", "unload profile"}));
}

TEST_F(ProfileControlTest, UnloadsBothWindowsAtTheReleaseOfAnyObject) {
  ProfileControl first;
  first.ShowMainForm(kStation1, kStation2);
  {
    ProfileControl second;
    windows_->calls.clear();
  }
  EXPECT_EQ(windows_->calls, (Journal{"unload settings", "unload profile"}));
  EXPECT_FALSE(first.get_PFrmLoaded());
}

TEST_F(ProfileControlTest, MakesTheFallbackBindingAtRelease) {
  {
    ProfileControl control;
    component_.host().bind(nullptr);
  }
  EXPECT_EQ(component_.host().client(), ownApplication_);
}

TEST_F(ProfileControlTest, TrapsAFailureAtReleaseByItsStep) {
  {
    ProfileControl control;
    control.SetClientApp(host_);
    windows_->failAt = "unload settings";
  }
  EXPECT_TRUE(loggedLocation("ProfileControl:Class_Terminate:1"));
}

TEST_F(ProfileControlTest, KeepsItsStateAfterTheLastRelease) {
  { ProfileControl().let_ElevLines(9); }
  EXPECT_EQ(ProfileControl().get_ElevLines(), 9);
}

// ---- Threads ----

template <typename Body>
std::optional<AutomationErrorCode> errorOnAnotherThread(Body&& body) {
  std::optional<AutomationErrorCode> code;
  std::thread([&] {
    try {
      body();
    } catch (const AutomationError& error) {
      code = error.code();
    }
  }).join();
  return code;
}

TEST_F(ProfileControlTest, BelongsToTheThreadOfTheFirstObjectThatIsAlive) {
  std::optional<ProfileControl> control(std::in_place);
  EXPECT_EQ(errorOnAnotherThread([&] { control->let_ElevLines(3); }), AutomationErrorCode::kWrongThread);
  EXPECT_EQ(errorOnAnotherThread([&] { control->get("ElevLines"); }), AutomationErrorCode::kWrongThread);
  EXPECT_EQ(errorOnAnotherThread([&] { control->invoke(1, Access::kGet, {}); }),
            AutomationErrorCode::kWrongThread);
  EXPECT_EQ(errorOnAnotherThread([] { ProfileControl second; }), AutomationErrorCode::kWrongThread);
  EXPECT_EQ(control->get_ElevLines(), 0);
  EXPECT_TRUE(dialogs_->messages.empty());
  control.reset();
  EXPECT_EQ(errorOnAnotherThread([] { ProfileControl().let_ElevLines(4); }), std::nullopt);
  EXPECT_EQ(ProfileControl().get_ElevLines(), 4);
}

TEST_F(ProfileControlTest, LeavesTheWindowsWhenReleasedOnAForeignThread) {
  auto control = std::make_unique<ProfileControl>();
  std::thread([&] { control.reset(); }).join();
  EXPECT_TRUE(windows_->calls.empty());
  ProfileControl next;
  EXPECT_EQ(next.get_ElevLines(), 0);
}

}  // namespace
}  // namespace zel
