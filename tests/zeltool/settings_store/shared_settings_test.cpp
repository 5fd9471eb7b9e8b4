#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temporary_folder.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel {
namespace {

using test::TemporaryFolder;

IniSettingsStore strictStore(const std::filesystem::path& folder) {
  return IniSettingsStore(folder, [](const std::string& message) { ADD_FAILURE() << message; });
}

std::string numbered(std::string prefix, int number) { return prefix.append(std::to_string(number)); }

pid_t startProcess(const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child != 0) return child;
  int code = 0;
  try {
    work();
  } catch (...) {
    code = 1;
  }
  ::_exit(code);
}

bool endedWell(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(SharedSettings, LoseNothingUnderFourProcessesThatWriteDifferentKeys) {
  constexpr int kProcesses = 4;
  constexpr int kWrites = 60;
  const TemporaryFolder folder;
  std::vector<pid_t> children;
  children.reserve(kProcesses);
  for (int process = 0; process < kProcesses; ++process)
    children.push_back(startProcess([&] {
      IniSettingsStore store(folder.path(), {});
      for (int i = 0; i < kWrites; ++i)
        store.WriteSetting("Planner", numbered("S", i % 3), numbered("k", process * 1000 + i),
                           std::to_string(process * 1000 + i));
    }));
  for (const pid_t child : children) EXPECT_TRUE(endedWell(child));
  const IniSettingsStore store = strictStore(folder.path());
  EXPECT_EQ(store.AllSettings("Planner").size(), static_cast<std::size_t>(kProcesses * kWrites));
  for (int process = 0; process < kProcesses; ++process)
    for (int i = 0; i < kWrites; ++i) {
      const int number = process * 1000 + i;
      EXPECT_EQ(store.ReadSetting("Planner", numbered("S", i % 3), numbered("k", number), "lost"),
                std::to_string(number));
    }
}

TEST(SharedSettings, LoseNothingUnderFourProcessesThatWriteTheSameKeysAndEachItsOwn) {
  constexpr int kProcesses = 4;
  constexpr int kWrites = 40;
  const TemporaryFolder folder;
  std::vector<pid_t> children;
  children.reserve(kProcesses);
  for (int process = 0; process < kProcesses; ++process)
    children.push_back(startProcess([&] {
      IniSettingsStore store(folder.path(), {});
      const std::string own = std::to_string(process);
      for (int i = 100; i < 100 + kWrites; ++i) {
        store.WriteSetting("Planner", "Shared", "k", own);
        store.WriteSetting("Planner", "Own", own, std::to_string(i));
        if (store.ReadSetting("Planner", "Own", own, "lost") != std::to_string(i)) ::_exit(2);
      }
    }));
  for (const pid_t child : children) EXPECT_TRUE(endedWell(child));
  const IniSettingsStore store = strictStore(folder.path());
  for (int process = 0; process < kProcesses; ++process)
    EXPECT_EQ(store.ReadSetting("Planner", "Own", std::to_string(process), "lost"),
              std::to_string(99 + kWrites));
  EXPECT_EQ(store.ReadSetting("Planner", "Shared", "k", "lost").size(), 1U);
}

TEST(SharedSettings, LoseNothingUnderThreadsOfOneStoreAndOfTwo) {
  constexpr int kWrites = 40;
  const TemporaryFolder folder;
  IniSettingsStore one = strictStore(folder.path());
  IniSettingsStore two = strictStore(folder.path());
  const auto write = [](IniSettingsStore& store, const std::string& prefix) {
    for (int i = 0; i < kWrites; ++i) {
      store.WriteSetting("Planner", "S", numbered(prefix, i), std::to_string(i));
      EXPECT_EQ(store.ReadSetting("Planner", "S", numbered(prefix, i), "lost"), std::to_string(i));
    }
  };
  std::vector<std::thread> threads;
  threads.emplace_back([&] { write(one, "a"); });
  threads.emplace_back([&] { write(one, "b"); });
  threads.emplace_back([&] { write(two, "c"); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(strictStore(folder.path()).AllSettings("Planner").size(), static_cast<std::size_t>(3 * kWrites));
}

TEST(SharedSettings, AreWholeWhereverAWriterIsKilled) {
  const TemporaryFolder folder;
  strictStore(folder.path()).WriteSetting("Planner", "S", "kept", "always");
  for (int round = 0; round < 40; ++round) {
    const pid_t child = startProcess([&] {
      IniSettingsStore store(folder.path(), {});
      for (int i = 0;; ++i)
        store.WriteSetting("Planner", "S", "long", std::string(20000, static_cast<char>('a' + i % 26)));
    });
    std::this_thread::sleep_for(std::chrono::microseconds(500 + round * 397));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const IniSettingsStore store = strictStore(folder.path());
    EXPECT_EQ(store.ReadSetting("Planner", "S", "kept", "lost"), "always");
    const std::string value = store.ReadSetting("Planner", "S", "long", "");
    EXPECT_TRUE(value.empty() || value == std::string(20000, value[0])) << "round " << round;
  }
  IniSettingsStore store = strictStore(folder.path());
  store.WriteSetting("Planner", "S", "after", "1");
  EXPECT_EQ(store.ReadSetting("Planner", "S", "after", ""), "1") << "no lock is left behind";
}

TEST(SharedSettings, WaitForAnotherProcessThatHoldsTheLock) {
  const TemporaryFolder folder;
  IniSettingsStore store = strictStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  const int lock = ::open((folder / ".lock").c_str(), O_RDWR);
  ASSERT_GE(lock, 0);
  ASSERT_EQ(::flock(lock, LOCK_EX), 0);
  std::thread releasing([lock] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    ::close(lock);
  });
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", ""), "1") << "reading never waits";
  store.WriteSetting("Planner", "S", "k", "2");
  releasing.join();
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", ""), "2");
}

// The shortest of some rounds, so that a busy machine does not count.
double secondsToRead(const IniSettingsStore& store, const char* application) {
  constexpr int kRounds = 5, kReads = 2000;
  double best = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < kReads; ++i) EXPECT_EQ(store.ReadSetting(application, "Profile", "k7", ""), "7");
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  return best;
}

TEST(SharedSettings, CostNoMoreToReadFromALargeFile) {
  const TemporaryFolder folder;
  const IniSettingsStore store = strictStore(folder.path());
  for (const auto& [application, settings] : {std::pair{"Small", 40}, {"Large", 8000}}) {
    std::string text = "[Profile]\n";
    for (int i = 0; i < settings; ++i) text += numbered("k", i) + "=" + std::to_string(i) + "\n";
    test::writeBytes(store.fileOf(application), text);
  }
  // Looked up in what was parsed once, at a stat call a read; parsing each time would take 200 times as long.
  EXPECT_LT(secondsToRead(store, "Large"), 10 * secondsToRead(store, "Small"));
}

}  // namespace
}  // namespace zel
