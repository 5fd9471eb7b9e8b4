// Programs in a process without a graphical application.
#include "component/desktop/desktop_programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "foundation/runtime_error.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeBytes;
using Clock = std::chrono::steady_clock;

constexpr std::int32_t kLong = 20000;  // milliseconds

struct DesktopProgramsTest : testing::Test {
  test::TemporaryFolder folder;
  DesktopPrograms programs;

  static ProgramCall shell(const std::string& text, std::vector<std::string> arguments = {}) {
    ProgramCall call{"sh", {"-c", text, "sh"}};
    call.arguments.insert(call.arguments.end(), arguments.begin(), arguments.end());
    return call;
  }
  std::string path(const std::string& name) const { return (folder / name).string(); }
  // What a program that is left to itself writes when it is done.
  static bool appears(const fs::path& file) {
    for (int i = 0; i < 1000 && !fs::exists(file); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return fs::exists(file);
  }
  static bool noChildIsLeft() { return ::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD; }
};

int errorOf(const std::function<void()>& body, std::string& text) {
  try {
    body();
  } catch (const RuntimeError& error) {
    text = error.description();
    return error.number();
  }
  return 0;
}

TEST_F(DesktopProgramsTest, WaitsForTheEndAndTellsTheExitCode) {
  const ProgramOutcome outcome = programs.run(shell("sleep 0.05; exit 3"), kLong, {});
  EXPECT_TRUE(outcome.finished);
  EXPECT_FALSE(outcome.crashed);
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_TRUE(noChildIsLeft());
}

TEST_F(DesktopProgramsTest, ArgumentsArriveAsTheyAre) {
  const std::vector<std::string> items{"a b", "\"q\"", "", "$HOME", "`x`", "\xC3\xA9", "-n"};
  programs.run(shell("out=$1; shift; for item in \"$@\"; do printf '%s\\n' \"$item\"; done > \"$out\"",
                     {path("out"), items[0], items[1], items[2], items[3], items[4], items[5], items[6]}),
               kLong, {});
  EXPECT_EQ(fileBytes(folder / "out"), "a b\n\"q\"\n\n$HOME\n`x`\n\xC3\xA9\n-n\n");
}

TEST_F(DesktopProgramsTest, KeepsWhatItSaysOnStandardErrorAndDropsTheRest) {
  testing::internal::CaptureStdout();
  const ProgramOutcome outcome = programs.run(shell("echo out; echo wrong >&2"), kLong, {});
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(outcome.messages, "wrong\n");
}

TEST_F(DesktopProgramsTest, AProgramThatSaysVeryMuchIsNotHeldUp) {
  const ProgramOutcome outcome = programs.run(shell("head -c 1000000 /dev/zero >&2; exit 4"), kLong, {});
  EXPECT_EQ(outcome.exitCode, 4);
  EXPECT_EQ(outcome.messages.size(), 4096U);
}

TEST_F(DesktopProgramsTest, AProgramThatClosesItsStandardErrorIsWaitedFor) {
  EXPECT_EQ(programs.run(shell("exec 2>&-; sleep 0.1; exit 5"), kLong, {}).exitCode, 5);
}

TEST_F(DesktopProgramsTest, ReadsNothingFromTheTerminal) {
  EXPECT_EQ(programs.run(shell("if read line; then exit 1; else exit 6; fi"), kLong, {}).exitCode, 6);
}

TEST_F(DesktopProgramsTest, AKilledProgramHasCrashed) {
  const ProgramOutcome outcome = programs.run(shell("kill -9 $$"), kLong, {});
  EXPECT_TRUE(outcome.finished);
  EXPECT_TRUE(outcome.crashed);
}

TEST_F(DesktopProgramsTest, AProgramIsEndedWhenItIsNoLongerWaitedFor) {
  const auto begin = Clock::now();
  int asked = 0;
  const ProgramOutcome outcome = programs.run(shell("sleep 30"), kLong, [&] { return ++asked < 4; });
  EXPECT_FALSE(outcome.finished);
  EXPECT_EQ(asked, 4);
  EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(10000));
  EXPECT_TRUE(noChildIsLeft());
}

TEST_F(DesktopProgramsTest, AProgramThatHangsIsEndedWithAllThatItStarted) {
  const auto begin = Clock::now();
  const ProgramOutcome outcome =
      programs.run(shell("echo begun >&2; (sleep 3; echo > \"$1\") & sleep 30", {path("late")}), 200, {});
  const auto took = Clock::now() - begin;
  EXPECT_FALSE(outcome.finished);
  EXPECT_EQ(outcome.messages, "begun\n");
  EXPECT_GE(took, std::chrono::milliseconds(200));
  EXPECT_LT(took, std::chrono::milliseconds(2500)) << "well before it would have ended by itself";
  EXPECT_TRUE(noChildIsLeft());
  std::this_thread::sleep_for(std::chrono::milliseconds(3200) - took);
  EXPECT_FALSE(fs::exists(folder / "late"));
}

TEST_F(DesktopProgramsTest, AProgramThatIsNotThereIsFileNotFoundByItsName) {
  for (const std::string& name :
       {std::string("/nowhere/vexptp.exe"), std::string("no-such-program"), path("none"), std::string()}) {
    std::string text;
    EXPECT_EQ(errorOf([&] { programs.run({name, {}}, kLong, {}); }, text), 53) << name;
    EXPECT_TRUE(text.starts_with("File not found: cannot start \"" + name + "\"")) << text;
    EXPECT_EQ(errorOf([&] { programs.start({name, {}}); }, text), 53) << name;
    EXPECT_TRUE(text.starts_with("File not found: cannot start \"" + name + "\"")) << text;
  }
  EXPECT_TRUE(noChildIsLeft());
}

TEST_F(DesktopProgramsTest, WhatMayNotBeRunIsPermissionDenied) {
  writeBytes(folder / "plain", "text");
  for (const std::string& name : {path("plain"), folder.path().string()}) {
    std::string text;
    EXPECT_EQ(errorOf([&] { programs.run({name, {}}, kLong, {}); }, text), 70) << name;
    EXPECT_EQ(errorOf([&] { programs.start({name, {}}); }, text), 70) << name;
  }
}

TEST_F(DesktopProgramsTest, WhatIsNoProgramCannotBeStarted) {
  writeBytes(folder / "program", "\x01\x02 no program");
  fs::permissions(folder / "program", fs::perms::owner_all);
  std::string text;
  EXPECT_EQ(errorOf([&] { programs.run({path("program"), {}}, kLong, {}); }, text), 75);
  EXPECT_EQ(errorOf([&] { programs.start({path("program"), {}}); }, text), 75);
}

TEST_F(DesktopProgramsTest, ANameIsLookedForAlongThePath) {
  writeBytes(folder / "zel-found", "#!/bin/sh\nexit 7\n");
  fs::permissions(folder / "zel-found", fs::perms::owner_all);
  fs::create_directory(folder / "zel-folder");
  const test::EnvironmentVariable along("PATH", "/nowhere:" + folder.path().string());
  EXPECT_EQ(programs.run({"zel-found", {}}, kLong, {}).exitCode, 7);
  std::string text;
  EXPECT_EQ(errorOf([&] { programs.run({"zel-folder", {}}, kLong, {}); }, text), 53);
}

TEST_F(DesktopProgramsTest, AStartedProgramIsNotWaitedForAndIsNoChild) {
  const auto begin = Clock::now();
  programs.start(shell("sleep 0.5; echo \"$1\" > \"$2\"", {"a b", path("done")}));
  EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(450));
  EXPECT_TRUE(noChildIsLeft());
  ASSERT_TRUE(appears(folder / "done"));
}

TEST_F(DesktopProgramsTest, AStartedProgramWritesToNoTerminalAndIsInASessionOfItsOwn) {
  programs.start(
      shell("{ readlink /proc/self/fd/0 /proc/self/fd/2; ps -o sid= -p $$ 2>/dev/null || true; } > "
            "\"$1.part\"; mv \"$1.part\" \"$1\"",
            {path("done")}));
  ASSERT_TRUE(appears(folder / "done"));
  EXPECT_TRUE(fileBytes(folder / "done").starts_with("/dev/null\n/dev/null\n")) << fileBytes(folder / "done");
}

TEST_F(DesktopProgramsTest, AProgramGetsNoFileThatTheHostHasOpen) {
  const int open = ::open(path("open").c_str(), O_RDWR | O_CREAT, 0600);
  ASSERT_GE(open, 3);
  const std::string look = "ls /proc/self/fd | tr '\\n' ' ' > \"$1.part\"; mv \"$1.part\" \"$1\"";
  programs.run(shell(look, {path("run")}), kLong, {});
  programs.start(shell(look, {path("started")}));
  ASSERT_TRUE(appears(folder / "started"));
  ::close(open);
  // 3 is the folder that ls reads.
  EXPECT_EQ(fileBytes(folder / "run"), "0 1 2 3 ");
  EXPECT_EQ(fileBytes(folder / "started"), "0 1 2 3 ");
}

}  // namespace
}  // namespace zel
