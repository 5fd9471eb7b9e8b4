#include "component/services/error_trap.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

#include "component/services/error_log.h"
#include "foundation/runtime_error.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"
#include "zel/automation.h"

namespace zel {
namespace {

using test::fileBytes;

constexpr const char* kStamp = "11/15/26 19:05:03 ";

class ErrorTrapTest : public testing::Test {
 protected:
  ErrorTrapTest() {
    dialogs_.journal = &journal_;
    pointer_.journal = &journal_;
  }

  ErrorTrap trap() {
    return ErrorTrap({[this]() -> std::string {
                        if (titleFails_) throw RuntimeError::propertyNotFound();
                        return "Host Planner";
                      },
                      "zelProfiler01", &pointer_, &dialogs_, &eventLoop_, &process_, &log_});
  }
  std::string logged() const { return fileBytes(folder_ / "zelErrorLog.txt"); }

  test::TemporaryFolder folder_;
  test::Journal journal_;
  test::FixedClock clock_;
  test::ScriptedDialogs dialogs_;
  test::ScriptedPointer pointer_;
  test::ScriptedEventLoop eventLoop_;
  test::ScriptedProcess process_;
  bool titleFails_ = false;
  std::string logFolder_ = folder_.path().string();
  ErrorLog log_{[this] { return logFolder_; }, clock_, dialogs_};
  const ErrorInformation error_{9, "Subscript out of range"};
};

TEST_F(ErrorTrapTest, NamesHostComponentProcedureStepAndNumber) {
  trap().ErrTrap("frmProfile:drawLine:3", false, &error_);
  EXPECT_EQ(logged(),
            "11/15/26 19:05:03 Subscript out of range\r\n"
            "In Host Planner::zelProfiler01\r\n"
            "frmProfile:drawLine:3\r\n"
            "Error Number: 9\r\n");
}

TEST_F(ErrorTrapTest, WritesTwoLinesForAnErrorOfNothing) {
  trap().ErrTrap("frmProfile:drawLine:3", false, nullptr);
  EXPECT_EQ(logged(), "11/15/26 19:05:03 Error In Host Planner::zelProfiler01\r\nfrmProfile:drawLine:3\r\n");
}

TEST_F(ErrorTrapTest, ShowsNoBoxWithoutPrompt) {
  trap().ErrTrap("a:b:0", false, &error_);
  EXPECT_TRUE(dialogs_.messages.empty());
  EXPECT_TRUE(eventLoop_.quits.empty());
}

TEST_F(ErrorTrapTest, AsksWithTheMessageWhetherToContinue) {
  trap().ErrTrap("a:b:0", true, &error_);
  ASSERT_EQ(dialogs_.messages.size(), 1U);
  const MessageBoxRequest& box = dialogs_.messages.front();
  EXPECT_EQ(box.text,
            "Subscript out of range\r\nIn Host Planner::zelProfiler01\r\na:b:0\r\nError Number: 9\r\n"
            "Attempt to Continue?");
  EXPECT_EQ(box.title, "");
  EXPECT_EQ(box.icon, MessageIcon::kNone);
  EXPECT_EQ(box.buttons, MessageButtons::kYesNo);
}

TEST_F(ErrorTrapTest, ResetsThePointerThenLogsThenAsks) {
  std::string loggedAtTheBox;
  dialogs_.onMessage = [&](const MessageBoxRequest&) { loggedAtTheBox = logged(); };
  trap().ErrTrap("a:b:0", true, &error_);
  ASSERT_EQ(journal_.size(), 2U);
  EXPECT_EQ(journal_[0], "pointer default");
  EXPECT_EQ(journal_[1].substr(0, 8), "message:");
  EXPECT_NE(loggedAtTheBox, "");
}

TEST_F(ErrorTrapTest, ReturnsToTheCallerOnYes) {
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_TRUE(eventLoop_.quits.empty());
  EXPECT_EQ(process_.ends, 0);
}

TEST_F(ErrorTrapTest, PostsAQuitWithTheErrorNumberOnNo) {
  dialogs_.answer = MessageAnswer::kNo;
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_EQ(eventLoop_.quits, std::vector<int>{9});
  EXPECT_EQ(process_.ends, 0);
}

TEST_F(ErrorTrapTest, PostsAQuitWithZeroForAnErrorOfNothingOnNo) {
  dialogs_.answer = MessageAnswer::kNo;
  trap().ErrTrap("a:b:0", true, nullptr);
  EXPECT_EQ(eventLoop_.quits, std::vector<int>{0});
}

TEST_F(ErrorTrapTest, StopsTheRunOnNoInTheDesignEnvironment) {
  dialogs_.answer = MessageAnswer::kNo;
  process_.fileName = "/opt/tools/Designer";
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_EQ(process_.ends, 1);
  EXPECT_TRUE(eventLoop_.quits.empty());
}

TEST_F(ErrorTrapTest, KnowsTheDesignEnvironmentByTheUpperCasedFileNameAlone) {
  const std::pair<const char*, bool> cases[] = {
      {"/usr/bin/designer", true},   {"DESIGNER", true},
      {"/x/DeSiGnEr", true},         {"/designer/planner", false},
      {"/usr/bin/designer6", false}, {"/usr/bin/designer.exe", false},
      {"/usr/bin/xdesigner", false}, {"", false},
      {"/usr/bin/designer/", false},
  };
  for (const auto& [file, expected] : cases) {
    process_.fileName = file;
    EXPECT_EQ(trap().InDesignEnvironment(), expected) << file;
  }
}

TEST_F(ErrorTrapTest, LooksAtTheFirst255CharactersOfTheModulePath) {
  const std::string name = "/designer";
  process_.fileName = std::string(255 - name.size(), 'd') + name;
  EXPECT_TRUE(trap().InDesignEnvironment());
  process_.fileName.insert(0, "/");
  EXPECT_FALSE(trap().InDesignEnvironment());
}

class NamelessProcess final : public ProcessControl {
 public:
  std::string moduleFileName() const override { throw std::runtime_error("no name"); }
  void endRun() override { ADD_FAILURE() << "the run was ended"; }
};

TEST_F(ErrorTrapTest, PostsTheQuitWhenTheProgramsNameCannotBeTold) {
  NamelessProcess nameless;
  dialogs_.answer = MessageAnswer::kNo;
  ErrorTrap errorTrap({[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer_, &dialogs_,
                       &eventLoop_, &nameless, &log_});
  EXPECT_FALSE(errorTrap.InDesignEnvironment());
  errorTrap.ErrTrap("a:b:0", true, &error_);
  EXPECT_EQ(eventLoop_.quits, std::vector<int>{9});
}

TEST_F(ErrorTrapTest, ReportsItselfWhenTheTitleCannotBeRead) {
  titleFails_ = true;
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_EQ(logged(), std::string(kStamp) + ":modErrorTrap:ErrTrap:0\r\n");
  ASSERT_EQ(dialogs_.messages.size(), 1U);
  EXPECT_EQ(dialogs_.messages.front().text, ":modErrorTrap:ErrTrap:0\r\nAttempt to Continue?");
}

TEST_F(ErrorTrapTest, ReportsItselfWithTheTitleWhenThePointerFails) {
  pointer_.failing = true;
  trap().ErrTrap("a:b:0", false, &error_);
  EXPECT_EQ(logged(), std::string(kStamp) + "Host Planner:modErrorTrap:ErrTrap:0\r\n");
}

TEST_F(ErrorTrapTest, ShowsTheUnableBoxAndThenAsksWhenTheLogCannotBeWritten) {
  logFolder_ = (folder_ / "missing").string();
  trap().ErrTrap("a:b:0", true, &error_);
  ASSERT_EQ(dialogs_.messages.size(), 2U);
  EXPECT_EQ(dialogs_.messages[0].text, "Unable to write to Error Log!");
  EXPECT_EQ(dialogs_.messages[1].buttons, MessageButtons::kYesNo);
}

TEST_F(ErrorTrapTest, SkipsItsOwnFailureAtTheBox) {
  dialogs_.onMessage = [](const MessageBoxRequest&) { throw std::runtime_error("no screen"); };
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_NE(logged(), "");
}

TEST_F(ErrorTrapTest, NeverWritesATraceLog) {
  trap().ErrTrap("a:b:0", true, &error_);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "zelTraceLog.txt"));
}

TEST_F(ErrorTrapTest, GivesTheResultOfAProcedureThatDoesNotFail) {
  ErrorTrap errorTrap = trap();
  TrappedModule module("ProfileControl", errorTrap);
  EXPECT_EQ(module.run(":Get hWnd:", [] { return 7; }), 7);
  EXPECT_EQ(logged(), "");
}

TEST_F(ErrorTrapTest, LeavesAFailedProcedureWithItsStepLoggedAndAnEmptyResult) {
  ErrorTrap errorTrap = trap();
  TrappedModule module("ProfileControl", errorTrap);
  EXPECT_EQ(module.run(":Get PForm:", []() -> int { throw RuntimeError::overflow(); }), 0);
  EXPECT_NE(logged().find("ProfileControl:Get PForm:0\r\nError Number: 6\r\n"), std::string::npos);
  module.run(":ShowMainForm:", [&] {
    module.step(1);
    module.step(2);
    throw RuntimeError::overflow();
  });
  EXPECT_NE(logged().find("ProfileControl:ShowMainForm:2\r\n"), std::string::npos);
  EXPECT_EQ(dialogs_.messages.size(), 2U);
}

TEST_F(ErrorTrapTest, StartsEveryProcedureAtStepZero) {
  ErrorTrap errorTrap = trap();
  TrappedModule module("modTerPro", errorTrap);
  module.run(":First:", [&] { module.step(4); });
  module.run(":Second:", []() { throw RuntimeError::overflow(); });
  EXPECT_NE(logged().find("modTerPro:Second:0\r\n"), std::string::npos);
}

template <typename Thrown>
ErrorInformation informationOf(Thrown&& thrown) {
  try {
    throw std::forward<Thrown>(thrown);
  } catch (...) {
    return currentError();
  }
}

void expectError(const ErrorInformation& error, int number, const std::string& description) {
  EXPECT_EQ(error.number, number);
  EXPECT_EQ(error.description, description);
}

TEST(CurrentError, KeepsTheNumberAndTextOfARuntimeError) {
  expectError(informationOf(RuntimeError(1234, "The component's own")), 1234, "The component's own");
}

TEST(CurrentError, GivesLateBindingFailuresTheirClassicNumbers) {
  using Code = AutomationErrorCode;
  expectError(informationOf(AutomationError(Code::kMemberNotFound, "x")), 438,
              "Object doesn't support this property or method");
  expectError(informationOf(AutomationError(Code::kTypeMismatch, "x")), 13, "Type mismatch");
  expectError(informationOf(AutomationError(Code::kOverflow, "x")), 6, "Overflow");
  for (const Code code : {Code::kWrongAccess, Code::kWrongArgumentCount, Code::kWrongThread, Code::kFailed})
    expectError(informationOf(AutomationError(code, "why")), 440, "Automation error: why");
}

TEST(CurrentError, KnowsALackOfMemory) { expectError(informationOf(std::bad_alloc()), 7, "Out of memory"); }

TEST(CurrentError, GivesFileFailuresTheirClassicNumbers) {
  const auto fileError = [](std::errc code) {
    return informationOf(std::filesystem::filesystem_error("open", "/name", std::make_error_code(code)));
  };
  expectError(fileError(std::errc::no_such_file_or_directory), 53, "File not found");
  expectError(fileError(std::errc::permission_denied), 70, "Permission denied");
  expectError(fileError(std::errc::operation_not_permitted), 70, "Permission denied");
  expectError(fileError(std::errc::no_space_on_device), 61, "Disk full");
  expectError(fileError(std::errc::not_a_directory), 76, "Path not found");
  expectError(fileError(std::errc::is_a_directory), 75, "Path/File access error");
  expectError(fileError(std::errc::read_only_file_system), 75, "Path/File access error");
}

TEST(CurrentError, TellsAMissingFolderFromAMissingFile) {
  test::TemporaryFolder folder;
  const auto missing = std::make_error_code(std::errc::no_such_file_or_directory);
  expectError(informationOf(std::filesystem::filesystem_error("open", folder / "file", missing)), 53,
              "File not found");
  expectError(informationOf(std::filesystem::filesystem_error("open", folder / "none/file", missing)), 76,
              "Path not found");
}

TEST(CurrentError, TakesAnyOtherFailureForAnInternalError) {
  expectError(informationOf(std::logic_error("why")), 51, "Internal error: why");
  expectError(informationOf(42), 51, "Internal error: unknown");
}

}  // namespace
}  // namespace zel
