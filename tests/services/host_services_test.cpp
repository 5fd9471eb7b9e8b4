#include "component/services/host_services.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "component/services/error_log.h"
#include "foundation/runtime_error.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

using test::fileBytes;

class HostServicesTest : public testing::Test {
 protected:
  HostServicesTest() {
    script_->journal = &journal_;
    services_.bind(client_);
  }

  ToolFactory factory() {
    return {[this] { return std::make_unique<test::ScriptedToolApplication>(script_); },
            [this] { return std::make_unique<test::ScriptedWindowPlacement>(script_); },
            [this] { return std::make_unique<test::ScriptedLinkBudgetTool>(script_); },
            [this] { return std::make_unique<test::ScriptedSourceLists>(script_); },
            [this] { return std::make_unique<test::ScriptedVersionInfo>(script_); }};
  }
  std::string logged() const { return fileBytes(folder_ / "zelErrorLog.txt"); }
  static int numberOf(const std::function<void()>& body) {
    try {
      body();
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }

  test::TemporaryFolder folder_;
  test::Journal journal_;
  std::shared_ptr<test::ToolScript> script_ = std::make_shared<test::ToolScript>();
  test::FixedClock clock_;
  test::ScriptedDialogs dialogs_;
  test::ScriptedPointer pointer_;
  test::ScriptedEventLoop eventLoop_;
  test::ScriptedProcess process_;
  test::MemorySettingsStore store_;
  ErrorLog log_{[this] { return folder_.path().string(); }, clock_, dialogs_};
  ErrorTrap trap_{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer_, &dialogs_,
                   &eventLoop_, &process_, &log_}};
  ModuleState state_;
  DispatchPtr client_ = makePropertyBag({{"Title", "Host Planner"}, {"Path", "/opt/planner"}, {"Major", 4}});
  HostServices services_{state_, trap_, dialogs_, store_, factory()};
};

TEST_F(HostServicesTest, ReadsTheClientsPropertiesByNameEachTime) {
  EXPECT_EQ(services_.clientTitle(), "Host Planner");
  EXPECT_EQ(services_.clientPath(), "/opt/planner");
  EXPECT_EQ(services_.clientText("major"), "4");
  client_->let("Title", "Renamed");
  EXPECT_EQ(services_.clientTitle(), "Renamed");
}

TEST_F(HostServicesTest, FailsClearlyWithoutAClientOrProperty) {
  EXPECT_EQ(numberOf([&] { services_.clientText("HelpFile"); }), 438);
  client_->let("Title", client_);
  EXPECT_EQ(numberOf([&] { services_.clientTitle(); }), 13);
  client_->let("Title", AutomationValue());
  services_.bind(nullptr);
  EXPECT_EQ(numberOf([&] { services_.clientTitle(); }), 91);
}

TEST_F(HostServicesTest, SetsUpEachToolInOrderAndHandsItTheClient) {
  services_.Init();
  EXPECT_EQ(journal_, (test::Journal{"ToolApplication", "WindowPlacement", "LinkBudgetTool", "SourceLists",
                                     "VersionInfo", "VersionInfo released"}));
  EXPECT_EQ(script_->lastClient, client_);
  EXPECT_TRUE(services_.setUp());
  EXPECT_NE(services_.toolApplication(), nullptr);
  EXPECT_NE(services_.windowPlacement(), nullptr);
  EXPECT_NE(services_.linkBudgetTool(), nullptr);
  EXPECT_NE(services_.sourceLists(), nullptr);
}

TEST_F(HostServicesTest, SetsUpOnlyOnceAndKeepsTheFirstClientsTools) {
  services_.Init();
  const ToolApplication* first = services_.toolApplication();
  journal_.clear();
  services_.bind(makePropertyBag({{"Title", "Other"}}));
  services_.Init();
  EXPECT_TRUE(journal_.empty());
  EXPECT_EQ(services_.toolApplication(), first);
  EXPECT_EQ(script_->lastClient, client_);
  EXPECT_EQ(services_.clientTitle(), "Other");
}

TEST_F(HostServicesTest, MakesTheToolsAnewForTheNextClientAfterASetUpWasDiscarded) {
  services_.Init();
  services_.discardSetUp();
  EXPECT_FALSE(services_.setUp());
  EXPECT_EQ(services_.toolApplication(), nullptr);
  EXPECT_EQ(services_.windowPlacement(), nullptr);
  EXPECT_EQ(services_.linkBudgetTool(), nullptr);
  EXPECT_EQ(services_.sourceLists(), nullptr);
  const DispatchPtr other = makePropertyBag({{"Title", "Other"}});
  services_.bind(other);
  services_.Init();
  EXPECT_TRUE(services_.setUp());
  EXPECT_EQ(script_->lastClient, other);
  EXPECT_NE(services_.sourceLists(), nullptr);
}

TEST_F(HostServicesTest, LeavesTheLaterToolsUnmadeWhenAStepFails) {
  const char* tools[] = {"ToolApplication", "WindowPlacement", "LinkBudgetTool", "SourceLists",
                         "VersionInfo"};
  for (int step = 0; step < 5; ++step) {
    HostServices services(state_, trap_, dialogs_, store_, factory());
    services.bind(client_);
    journal_.clear();
    dialogs_.messages.clear();
    script_->failAt = tools[step];
    services.Init();
    EXPECT_FALSE(services.setUp());
    EXPECT_EQ(journal_.size(), static_cast<std::size_t>(step == 4 ? 6 : step + 1)) << step;
    EXPECT_EQ(services.toolApplication() != nullptr, step >= 0);
    EXPECT_EQ(services.windowPlacement() != nullptr, step >= 1);
    EXPECT_EQ(services.linkBudgetTool() != nullptr, step >= 2);
    EXPECT_EQ(services.sourceLists() != nullptr, step >= 3);
    ASSERT_EQ(dialogs_.messages.size(), 1U);
    EXPECT_NE(dialogs_.messages.front().text.find("\r\nmodTerPro:Init:" + std::to_string(step) + "\r\n"),
              std::string::npos);

    script_->failAt.clear();
    services.Init();
    EXPECT_TRUE(services.setUp()) << step;
    EXPECT_NE(services.sourceLists(), nullptr);
  }
}

TEST_F(HostServicesTest, TrapsAToolThatCannotBeMade) {
  ToolFactory incomplete = factory();
  incomplete.linkBudgetTool = [] { return std::unique_ptr<LinkBudgetTool>(); };
  HostServices services(state_, trap_, dialogs_, store_, incomplete);
  services.bind(client_);
  services.Init();
  EXPECT_FALSE(services.setUp());
  EXPECT_NE(logged().find("modTerPro:Init:2\r\nError Number: 91\r\n"), std::string::npos);
}

TEST_F(HostServicesTest, RefreshesTheOptionButtonAndTheTwoStringsEachTime) {
  services_.Init();
  services_.Refresh();
  EXPECT_TRUE(state_.optionButtonVisible);
  EXPECT_EQ(state_.helperProgramFolder, "/opt/helpers");
  EXPECT_EQ(state_.coordinateFormat, "DMS");
  state_.optionButtonVisible = false;
  script_->firstText = "/usr/lib/helpers";
  script_->secondText = "DD";
  services_.Refresh();
  EXPECT_TRUE(state_.optionButtonVisible);
  EXPECT_EQ(state_.helperProgramFolder, "/usr/lib/helpers");
  EXPECT_EQ(state_.coordinateFormat, "DD");
}

TEST_F(HostServicesTest, RefreshesWithoutAToolApplicationInSilence) {
  services_.Refresh();
  EXPECT_TRUE(state_.optionButtonVisible);
  EXPECT_TRUE(dialogs_.messages.empty());
}

TEST_F(HostServicesTest, KeepsSettingsUnderTheClientsCurrentTitle) {
  services_.WriteSetting("Profile", "Prf_Per", "20");
  EXPECT_EQ(store_.values.at({"Host Planner", "Profile", "Prf_Per"}), "20");
  EXPECT_EQ(services_.ReadSetting("Profile", "Prf_Per", "50"), "20");
  client_->let("Title", "Other");
  EXPECT_EQ(services_.ReadSetting("Profile", "Prf_Per", "50"), "50");
}

TEST_F(HostServicesTest, PassesAFailingStoreOnToTheProcedureThatReads) {
  store_.failing = true;
  EXPECT_EQ(numberOf([&] { services_.ReadSetting("a", "b", "c"); }), 70);
}

TEST_F(HostServicesTest, GivesTheSmallerAndTheLargerOfTwoNumbers) {
  EXPECT_EQ(services_.Min(2, 3), 2);
  EXPECT_EQ(services_.Min(3, -2), -2);
  EXPECT_EQ(services_.Max(2, 3), 3);
  EXPECT_EQ(services_.Max(-3, -2), -2);
  EXPECT_EQ(services_.Max(5, 5), 5);
}

TEST_F(HostServicesTest, AsksForACsvFileWithItsOwnTexts) {
  dialogs_.savePath = "/home/me/a.csv";
  EXPECT_EQ(services_.GetCSVDialog(), "/home/me/a.csv");
  ASSERT_EQ(dialogs_.saves.size(), 1U);
  const SaveDialogRequest& request = dialogs_.saves.front();
  EXPECT_EQ(request.title, "Save to 'Comma Separated Value' File");
  EXPECT_EQ(request.defaultExtension, ".csv");
  EXPECT_EQ(request.filter, "Comma Separated Value (*.csv)|*.csv");
  EXPECT_TRUE(request.overwritePrompt);
  EXPECT_TRUE(request.pathMustExist);
}

// The title says bitmap although the extension is .png: meant.
TEST_F(HostServicesTest, AsksForAPngFileWithItsOwnTexts) {
  dialogs_.savePath = "/home/me/a.png";
  EXPECT_EQ(services_.GetPNGDialog(), "/home/me/a.png");
  ASSERT_EQ(dialogs_.saves.size(), 1U);
  const SaveDialogRequest& request = dialogs_.saves.front();
  EXPECT_EQ(request.title, "Save to Bitmap File");
  EXPECT_EQ(request.defaultExtension, ".png");
  EXPECT_EQ(request.filter, "Bitmap (*.png)|*.png");
  EXPECT_TRUE(request.overwritePrompt);
  EXPECT_TRUE(request.pathMustExist);
}

TEST_F(HostServicesTest, GivesAnEmptyNameWithoutAnyBoxWhenASaveDialogIsCancelled) {
  EXPECT_EQ(services_.GetCSVDialog(), "");
  EXPECT_EQ(services_.GetPNGDialog(), "");
  EXPECT_TRUE(dialogs_.messages.empty());
}

TEST_F(HostServicesTest, CutsANameOver200CharactersAndAppendsTheExtension) {
  const std::string name200(200, 'n');
  dialogs_.savePath = name200;
  EXPECT_EQ(services_.GetCSVDialog(), name200);
  dialogs_.savePath = name200 + ".csv";
  EXPECT_EQ(services_.GetCSVDialog(), name200 + ".csv");
  dialogs_.savePath = name200 + "mmmmm.dat";
  EXPECT_EQ(services_.GetCSVDialog(), name200 + ".csv");
  EXPECT_EQ(services_.GetPNGDialog(), name200 + ".png");
}

TEST_F(HostServicesTest, CutsBetweenCharactersNotWithinOne) {
  std::string name;
  for (int i = 0; i < 201; ++i) name += "\u00e9";
  dialogs_.savePath = name;
  EXPECT_EQ(services_.GetCSVDialog(), name.substr(0, 400) + ".csv");
  dialogs_.savePath = name.substr(0, 400);
  EXPECT_EQ(services_.GetCSVDialog(), name.substr(0, 400));
}

class FailingSave final : public Dialogs {
 public:
  explicit FailingSave(test::ScriptedDialogs& boxes) : boxes_(boxes) {}
  MessageAnswer message(const MessageBoxRequest& request) override { return boxes_.message(request); }
  std::string input(const InputBoxRequest&) override { return {}; }
  std::string save(const SaveDialogRequest&) override { throw RuntimeError::permissionDenied(); }

 private:
  test::ScriptedDialogs& boxes_;
};

TEST_F(HostServicesTest, TrapsASaveDialogThatFails) {
  FailingSave dialogs(dialogs_);
  HostServices services(state_, trap_, dialogs, store_, factory());
  EXPECT_EQ(services.GetCSVDialog(), "");
  EXPECT_EQ(services.GetPNGDialog(), "");
  EXPECT_NE(logged().find("modTerPro:GetCSVDialog:0\r\nError Number: 70"), std::string::npos);
  EXPECT_NE(logged().find("modTerPro:GetPNGDialog:0\r\nError Number: 70"), std::string::npos);
}

}  // namespace
}  // namespace zel
