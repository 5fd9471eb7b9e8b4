// Programs in a process without a graphical application.
#include "component/desktop/desktop_programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <sstream>
#include <thread>

#include "foundation/runtime_error.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeBytes;
using SteadyClock = std::chrono::steady_clock;

constexpr std::int32_t kLong = 20000;  // milliseconds; programs that hang do so for 30 s
constexpr std::chrono::milliseconds kBeforeItsEnd{25000};

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
    for (int i = 0; i < 2000 && !fs::exists(file); ++i)
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
  const auto begin = SteadyClock::now();
  int asked = 0;
  const ProgramOutcome outcome = programs.run(shell("sleep 30"), kLong, [&] { return ++asked < 4; });
  EXPECT_FALSE(outcome.finished);
  EXPECT_EQ(asked, 4);
  EXPECT_LT(SteadyClock::now() - begin, kBeforeItsEnd);
  EXPECT_TRUE(noChildIsLeft());
}

TEST_F(DesktopProgramsTest, AProgramThatHangsIsEndedAfterItsTime) {
  const auto begin = SteadyClock::now();
  const ProgramOutcome outcome = programs.run(shell("sleep 30"), 200, {});
  const auto took = SteadyClock::now() - begin;
  EXPECT_FALSE(outcome.finished);
  EXPECT_GE(took, std::chrono::milliseconds(200));
  EXPECT_LT(took, kBeforeItsEnd);
  EXPECT_TRUE(noChildIsLeft());
}

// The read end of a named pipe, to see whether a program that holds it open for writing is alive.
class Lifeline {
 public:
  explicit Lifeline(const std::string& path) {
    ::mkfifo(path.c_str(), 0600);
    end_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  }
  Lifeline(const Lifeline&) = delete;
  Lifeline& operator=(const Lifeline&) = delete;
  ~Lifeline() { ::close(end_); }
  // Once it has been held, it is let go by the end of who held it.
  bool isLetGoWithin(int milliseconds) const {
    pollfd waited{end_, POLLIN, 0};
    return ::poll(&waited, 1, milliseconds) == 1 && (waited.revents & POLLHUP) != 0;
  }

 private:
  int end_ = -1;
};

// Starts another that holds $1 open, and makes $2 when it has done so.
const std::string kStartsAnother = "exec 3> \"$1\"; sleep 30 & exec 3>&-; echo begun >&2; : > \"$2\"; ";

TEST_F(DesktopProgramsTest, AProgramThatIsEndedIsEndedWithAllThatItStarted) {
  const Lifeline another(path("line"));
  bool ready = false, lived = false;
  const ProgramOutcome outcome =
      programs.run(shell(kStartsAnother + "sleep 30", {path("line"), path("ready")}), kLong, [&] {
        ready = fs::exists(folder / "ready");
        if (ready) lived = !another.isLetGoWithin(0);
        return !ready;
      });
  ASSERT_TRUE(ready);
  EXPECT_TRUE(lived);
  EXPECT_FALSE(outcome.finished);
  EXPECT_EQ(outcome.messages, "begun\n");
  EXPECT_TRUE(another.isLetGoWithin(15000)) << "well before it would have ended by itself";
  EXPECT_TRUE(noChildIsLeft());
}

// Meant: a program may leave another to itself.
TEST_F(DesktopProgramsTest, WhatAProgramThatEndsByItselfHasStartedLivesOn) {
  const Lifeline another(path("line"));
  const ProgramOutcome outcome = programs.run(
      shell(kStartsAnother + "echo $! > \"$2\"; exit 8", {path("line"), path("ready")}), kLong, {});
  EXPECT_EQ(outcome.exitCode, 8);
  EXPECT_FALSE(another.isLetGoWithin(50));
  const int left = std::atoi(fileBytes(folder / "ready").c_str());
  ASSERT_GT(left, 1);
  EXPECT_EQ(::kill(left, SIGKILL), 0);
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
  // It goes on when it sees "go", or gives up waiting for that.
  programs.start(
      shell("i=0; while [ ! -e \"$3\" ] && [ $i -lt 1500 ]; do sleep 0.01; i=$((i + 1)); done; echo \"$1\" > "
            "\"$2\"",
            {"a b", path("done"), path("go")}));
  EXPECT_FALSE(fs::exists(folder / "done"));
  EXPECT_TRUE(noChildIsLeft());
  writeBytes(folder / "go", "");
  ASSERT_TRUE(appears(folder / "done"));
}

// Its process, and the process group and session of that: fields 5 and 6.
const std::string kTellsItsGroup =
    "{ echo $$; cut -d ' ' -f 5 /proc/$$/stat; cut -d ' ' -f 6 /proc/$$/stat; } > \"$1.part\"; "
    "mv \"$1.part\" \"$1\"";

TEST_F(DesktopProgramsTest, AStartedProgramIsInASessionOfItsOwn) {
  programs.start(shell(kTellsItsGroup, {path("done")}));
  ASSERT_TRUE(appears(folder / "done"));
  pid_t process = 0, group = 0, session = 0;
  std::istringstream(fileBytes(folder / "done")) >> process >> group >> session;
  ASSERT_GT(process, 1);
  EXPECT_EQ(group, process);
  EXPECT_EQ(session, process);
  EXPECT_NE(session, ::getsid(0));
}

TEST_F(DesktopProgramsTest, AProgramThatIsWaitedForIsInAGroupOfItsOwn) {
  programs.run(shell(kTellsItsGroup, {path("done")}), kLong, {});
  pid_t process = 0, group = 0, session = 0;
  std::istringstream(fileBytes(folder / "done")) >> process >> group >> session;
  ASSERT_GT(process, 1);
  EXPECT_EQ(group, process);
  EXPECT_EQ(session, ::getsid(0));
}

TEST_F(DesktopProgramsTest, AStartedProgramWritesToNoTerminal) {
  programs.start(shell(
      "for i in 0 1 2; do links=\"$links$(readlink /proc/$$/fd/$i) \"; done; echo \"$links\" > \"$1.part\"; "
      "mv \"$1.part\" \"$1\"",
      {path("done")}));
  ASSERT_TRUE(appears(folder / "done"));
  EXPECT_EQ(fileBytes(folder / "done"), "/dev/null /dev/null /dev/null \n");
}

// What is done with a signal, for as long as the object lives.
class SignalDone {
 public:
  SignalDone(int number, void (*what)(int)) : number_(number), before_(::signal(number, what)) {}
  SignalDone(const SignalDone&) = delete;
  SignalDone& operator=(const SignalDone&) = delete;
  ~SignalDone() { ::signal(number_, before_); }

 private:
  int number_;
  void (*before_)(int);
};

// Holds two signals back for as long as the object lives.
class SignalsHeld {
 public:
  SignalsHeld(int one, int other) {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, one);
    ::sigaddset(&signals, other);
    ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;
  ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

// The signals of a line of /proc/PID/status, but for 32 and 33: these are the C library's own, and nobody
// else's to set.
std::uint64_t signalsOf(const std::string& status, const std::string& line) {
  const std::size_t at = status.find(line + ":\t");
  if (at == std::string::npos) return ~std::uint64_t{0};
  return std::stoull(status.substr(at + line.size() + 2, 16), nullptr, 16) & ~(std::uint64_t{3} << 31);
}

TEST_F(DesktopProgramsTest, NoSignalIsIgnoredOrHeldBackWhenAProgramBegins) {
  const SignalDone hangUp(SIGHUP, SIG_IGN), pipe(SIGPIPE, SIG_IGN), terminalStop(SIGTSTP, SIG_IGN),
      user(SIGUSR1, SIG_IGN), child(SIGCHLD, SIG_IGN), realTime(SIGRTMIN + 3, SIG_IGN),
      last(SIGRTMAX, SIG_IGN);
  const SignalsHeld held(SIGUSR2, SIGRTMAX - 1);
  const std::string look = "grep '^Sig' /proc/self/status > \"$1.part\"; mv \"$1.part\" \"$1\"";
  programs.run(shell(look, {path("run")}), kLong, {});
  programs.start(shell(look, {path("started")}));
  ASSERT_TRUE(appears(folder / "started"));
  for (const char* name : {"run", "started"}) {
    const std::string status = fileBytes(folder / name);
    EXPECT_EQ(signalsOf(status, "SigBlk"), 0U) << name << '\n' << status;
    EXPECT_EQ(signalsOf(status, "SigIgn"), 0U) << name << '\n' << status;
  }
}

TEST_F(DesktopProgramsTest, WhereTheHostIgnoresItsChildrenTheExitCodeIsNotTold) {
  const SignalDone child(SIGCHLD, SIG_IGN);
  const ProgramOutcome outcome = programs.run(shell("exit 3"), kLong, {});
  EXPECT_TRUE(outcome.finished);
  EXPECT_FALSE(outcome.crashed);
  EXPECT_EQ(outcome.exitCode, 0);
  std::string text;
  EXPECT_EQ(errorOf([&] { programs.start({path("none"), {}}); }, text), 53);
}

std::atomic<int> handledForks{0};

TEST_F(DesktopProgramsTest, RunsNoneOfTheHostsHandlersOfForks) {
  static const int noted = ::pthread_atfork([] { ++handledForks; }, nullptr, nullptr);
  ASSERT_EQ(noted, 0);
  handledForks = 0;
  programs.run(shell("exit 0"), kLong, {});
  programs.start(shell(": > \"$1\"", {path("done")}));
  EXPECT_EQ(handledForks, 0);
  ASSERT_TRUE(appears(folder / "done"));
}

TEST_F(DesktopProgramsTest, LeavesTheSignalsThatTheHostHoldsBackAsTheyAre) {
  const SignalsHeld held(SIGUSR2, SIGHUP);
  programs.start(shell(": > \"$1\"", {path("done")}));
  std::string text;
  EXPECT_EQ(errorOf([&] { programs.start({path("none"), {}}); }, text), 53);
  sigset_t after;
  ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &after), 0);
  for (const int signal : {SIGUSR2, SIGHUP}) EXPECT_EQ(::sigismember(&after, signal), 1) << signal;
  for (const int signal : {SIGINT, SIGTERM, SIGCHLD, SIGUSR1})
    EXPECT_EQ(::sigismember(&after, signal), 0) << signal;
  ASSERT_TRUE(appears(folder / "done"));
}

// A process that was forked while the program was started has the report open, and keeps it so.
TEST_F(DesktopProgramsTest, AForkInAnotherThreadDoesNotHoldUpAStartForever) {
  std::atomic<bool> begun{false}, forking{true};
  std::vector<pid_t> forked;
  std::thread other([&] {
    for (int i = 0; forking && i < 400; ++i) {
      const pid_t process = ::_Fork();
      if (process == 0) {
        ::sleep(30);
        ::_exit(0);
      }
      if (process > 0) forked.push_back(process);
      begun = true;
    }
  });
  while (!begun) std::this_thread::yield();
  const auto begin = SteadyClock::now();
  programs.start(shell(": > \"$1\"", {path("done")}));
  const auto took = SteadyClock::now() - begin;
  forking = false;
  other.join();
  for (const pid_t process : forked) {
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
  EXPECT_LT(took, kBeforeItsEnd);
  EXPECT_TRUE(appears(folder / "done"));
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
