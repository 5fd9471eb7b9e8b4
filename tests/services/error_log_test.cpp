#include "component/services/error_log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "support/scripted_platform.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

using test::fileBytes;

class ErrorLogTest : public testing::Test {
 protected:
  ErrorLog logIn(const std::string& folder) {
    return ErrorLog([folder] { return folder; }, clock_, dialogs_);
  }
  void expectOnlyTheUnableBox() {
    ASSERT_EQ(dialogs_.messages.size(), 1U);
    const MessageBoxRequest& box = dialogs_.messages.front();
    EXPECT_EQ(box.text, "Unable to write to Error Log!");
    EXPECT_EQ(box.title, "");
    EXPECT_EQ(box.icon, MessageIcon::kCritical);
    EXPECT_EQ(box.buttons, MessageButtons::kOk);
  }

  test::TemporaryFolder folder_;
  test::FixedClock clock_;
  test::ScriptedDialogs dialogs_;
};

TEST_F(ErrorLogTest, AppendsATimeStampedEntryEndedByCrLf) {
  logIn(folder_.path().string()).write("Subscript out of range\r\nIn Host Planner::zelProfiler01");
  EXPECT_EQ(fileBytes(folder_ / "zelErrorLog.txt"),
            "11/15/26 19:05:03 Subscript out of range\r\nIn Host Planner::zelProfiler01\r\n");
  EXPECT_TRUE(dialogs_.messages.empty());
}

TEST_F(ErrorLogTest, WritesTwoDigitsForEveryPartOfTheTimeStamp) {
  clock_.time = {2107, 1, 2, 3, 4, 5};
  logIn(folder_.path().string()).write("x");
  EXPECT_EQ(fileBytes(folder_ / "zelErrorLog.txt"), "01/02/07 03:04:05 x\r\n");
}

TEST_F(ErrorLogTest, KeepsWhatTheFileHeld) {
  test::writeBytes(folder_ / "zelErrorLog.txt", "before\r\n");
  ErrorLog log = logIn(folder_.path().string() + "/");
  log.write("one");
  log.write("two");
  EXPECT_EQ(fileBytes(folder_ / "zelErrorLog.txt"),
            "before\r\n11/15/26 19:05:03 one\r\n11/15/26 19:05:03 two\r\n");
}

TEST_F(ErrorLogTest, KeepsTheBytesOfATextBeyondAscii) {
  logIn(folder_.path().string()).write("H\u00f6he");
  EXPECT_EQ(fileBytes(folder_ / "zelErrorLog.txt"), "11/15/26 19:05:03 H\u00f6he\r\n");
}

TEST_F(ErrorLogTest, AsksForTheFolderAtEachEntry) {
  std::string current = (folder_ / "a").string();
  std::filesystem::create_directory(folder_ / "a");
  std::filesystem::create_directory(folder_ / "b");
  ErrorLog log([&] { return current; }, clock_, dialogs_);
  log.write("one");
  current = (folder_ / "b").string();
  log.write("two");
  EXPECT_EQ(fileBytes(folder_ / "a/zelErrorLog.txt"), "11/15/26 19:05:03 one\r\n");
  EXPECT_EQ(fileBytes(folder_ / "b/zelErrorLog.txt"), "11/15/26 19:05:03 two\r\n");
}

TEST_F(ErrorLogTest, ShowsABoxWhenTheFolderIsMissing) {
  logIn((folder_ / "missing").string()).write("x");
  expectOnlyTheUnableBox();
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

TEST_F(ErrorLogTest, ShowsABoxWhenThereIsNoFolder) {
  logIn("").write("x");
  expectOnlyTheUnableBox();
  EXPECT_FALSE(std::filesystem::exists("zelErrorLog.txt"));
}

TEST_F(ErrorLogTest, ShowsABoxWhenTheFolderCannotBeAsked) {
  ErrorLog([]() -> std::string { throw std::runtime_error("gone"); }, clock_, dialogs_).write("x");
  expectOnlyTheUnableBox();
}

TEST_F(ErrorLogTest, ShowsABoxWhenTheDiskIsFull) {
  std::filesystem::create_symlink("/dev/full", folder_ / "zelErrorLog.txt");
  logIn(folder_.path().string()).write("x");
  expectOnlyTheUnableBox();
}

TEST_F(ErrorLogTest, ShowsABoxWhenAFolderHasItsName) {
  std::filesystem::create_directory(folder_ / "zelErrorLog.txt");
  logIn(folder_.path().string()).write("x");
  expectOnlyTheUnableBox();
}

TEST_F(ErrorLogTest, ShowsABoxAndDoesNotHangOnAPipeThatNobodyReads) {
  ASSERT_EQ(::mkfifo((folder_ / "zelErrorLog.txt").c_str(), 0600), 0);
  logIn(folder_.path().string()).write("x");
  expectOnlyTheUnableBox();
}

TEST_F(ErrorLogTest, SurvivesADialogThatFails) {
  dialogs_.onMessage = [](const MessageBoxRequest&) { throw std::runtime_error("no screen"); };
  logIn("").write("x");
  EXPECT_EQ(dialogs_.messages.size(), 1U);
}

TEST_F(ErrorLogTest, DoesNotMixTheEntriesOfProcessesThatWriteAtOnce) {
  constexpr int kProcesses = 4;
  constexpr int kEntries = 200;
  const std::string body(3000, 'x');
  for (int process = 0; process < kProcesses; ++process) {
    if (::fork() == 0) {
      ErrorLog log = logIn(folder_.path().string());
      for (int entry = 0; entry < kEntries; ++entry) log.write(std::to_string(process) + body);
      ::_exit(dialogs_.messages.empty() ? 0 : 1);
    }
  }
  for (int process = 0; process < kProcesses; ++process) {
    int status = 0;
    ASSERT_GT(::wait(&status), 0);
    EXPECT_EQ(status, 0);
  }
  std::map<std::string, int> lines;
  std::istringstream text(fileBytes(folder_ / "zelErrorLog.txt"));
  for (std::string line; std::getline(text, line);) ++lines[line];
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(kProcesses));
  for (int process = 0; process < kProcesses; ++process)
    EXPECT_EQ(lines["11/15/26 19:05:03 " + std::to_string(process) + body + "\r"], kEntries);
}

TEST_F(ErrorLogTest, WritesNothingToATraceLog) {
  logIn(folder_.path().string()).write("x");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "zelTraceLog.txt"));
}

}  // namespace
}  // namespace zel
