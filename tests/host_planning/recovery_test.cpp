// Copies of unsaved work: kept by running programs, offered when one is gone.
#include "planning/recovery.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::TemporaryFolder;
using test::writeBytes;

PlanFile fileWith(const std::string& name) {
  PlanFile file;
  file.plan.stations[1] = {name, {36.4, -84.35}, 30};
  file.view = PlanView{{36.3, -84.2}, 40};
  return file;
}

std::size_t filesIn(const fs::path& folder) {
  std::error_code none;
  const fs::directory_iterator files(folder, none);
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

fs::path copyIn(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".json") return entry.path();
  return {};
}

std::vector<LeftPlan> leftIn(Recovery& recovery) {
  std::vector<std::string> problems;
  auto left = recovery.left(problems);
  EXPECT_TRUE(problems.empty()) << problems.front();
  return left;
}

// A program that does this and is killed.
void inAKilledProgram(const std::function<void()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    body();
    ::kill(::getpid(), SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
}

void leave(const fs::path& folder, const std::string& name, const std::string& original = "") {
  inAKilledProgram([&] {
    Recovery recovery(folder);
    recovery.keep(fileWith(name), original);
  });
}

std::string errorOfKeeping(Recovery& recovery) {
  try {
    return recovery.keep(fileWith("A"), "") ? "kept" : "not kept";
  } catch (const PlanFileError& error) {
    return error.what();
  }
}

TEST(Recovery, OffersWhatAKilledProgramLeft) {
  const TemporaryFolder folder;
  const std::string original = folder / "my plan %41 é\n\xFF.json";
  writeBytes(original, "{}");
  const fs::path copies = folder / "a/copies";
  leave(copies, "North", original);
  Recovery recovery(copies);
  const auto left = leftIn(recovery);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].file.plan, fileWith("North").plan);
  EXPECT_EQ(left[0].file.view, fileWith("North").view);
  EXPECT_EQ(left[0].originalPath, original);
  EXPECT_NEAR(static_cast<double>(left[0].savedAt), static_cast<double>(std::time(nullptr)), 60);
  EXPECT_FALSE(left[0].originalChanged);
  EXPECT_FALSE(left[0].originalMissing);
}

TEST(Recovery, OffersItAgainUntilItIsTakenAway) {
  const TemporaryFolder folder;
  leave(folder.path(), "North");
  {
    Recovery recovery(folder.path());
    EXPECT_EQ(leftIn(recovery).size(), 1U);
    EXPECT_EQ(leftIn(recovery).size(), 1U);
  }
  Recovery recovery(folder.path());
  const auto left = leftIn(recovery);
  ASSERT_EQ(left.size(), 1U);
  recovery.remove(left[0]);
  EXPECT_TRUE(leftIn(recovery).empty());
  EXPECT_EQ(filesIn(folder.path()), 0U);
  recovery.remove(left[0]);  // again: nothing
}

TEST(Recovery, OffersTheLastCopyOnly) {
  const TemporaryFolder folder;
  inAKilledProgram([&] {
    Recovery recovery(folder.path());
    recovery.keep(fileWith("first"), "");
    recovery.keep(fileWith("second"), "");
  });
  Recovery recovery(folder.path());
  const auto left = leftIn(recovery);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].file.plan.stations.at(1).name, "second");
  EXPECT_EQ(left[0].originalPath, "");
  EXPECT_FALSE(left[0].originalChanged || left[0].originalMissing);
}

TEST(Recovery, LeavesNothingAfterAnOrderlyEnd) {
  const TemporaryFolder folder;
  {
    Recovery recovery(folder.path());
    recovery.keep(fileWith("A"), "");
    EXPECT_EQ(filesIn(folder.path()), 2U);  // the copy and its lock
    recovery.discard();
    EXPECT_EQ(filesIn(folder.path()), 0U);
    recovery.keep(fileWith("B"), "");
    recovery.discard();
    recovery.discard();
  }
  EXPECT_EQ(filesIn(folder.path()), 0U);
}

TEST(Recovery, MakesNoFolderBeforeThereIsSomethingToKeep) {
  const TemporaryFolder folder;
  {
    Recovery recovery(folder / "copies");
    EXPECT_TRUE(leftIn(recovery).empty());
    recovery.discard();
  }
  EXPECT_FALSE(fs::exists(folder / "copies"));
}

TEST(Recovery, KeepsTheCopyWhenItEndsWithoutADecision) {
  const TemporaryFolder folder;
  {
    Recovery recovery(folder.path());
    recovery.keep(fileWith("A"), "");
  }
  Recovery next(folder.path());
  EXPECT_EQ(leftIn(next).size(), 1U);
}

TEST(Recovery, DoesNotOfferWhatARunningProgramHolds) {
  const TemporaryFolder folder;
  Recovery first(folder.path()), second(folder.path());
  first.keep(fileWith("first"), "");
  second.keep(fileWith("second"), "");
  EXPECT_TRUE(leftIn(first).empty());
  EXPECT_TRUE(leftIn(second).empty());
  Recovery third(folder.path());
  EXPECT_TRUE(leftIn(third).empty());
  EXPECT_EQ(filesIn(folder.path()), 4U);
}

TEST(Recovery, OffersALeftPlanInOneOfTwoPrograms) {
  const TemporaryFolder folder;
  leave(folder.path(), "North");
  Recovery second(folder.path());
  {
    Recovery first(folder.path());
    EXPECT_EQ(leftIn(first).size(), 1U);
    EXPECT_TRUE(leftIn(second).empty());
  }
  EXPECT_EQ(leftIn(second).size(), 1U);
}

TEST(Recovery, LosesNothingWhenManyProgramsComeAndGoAtOnce) {
  constexpr int kPrograms = 8, kRounds = 20;
  const TemporaryFolder folder;
  std::vector<pid_t> programs;
  for (int i = 0; i < kPrograms; ++i) {
    programs.push_back(::fork());
    if (programs.back() != 0) continue;
    const auto aliveWith = [&](Recovery& recovery) {
      std::vector<std::string> problems;
      for (const LeftPlan& left : recovery.left(problems)) {
        if (left.file.plan.stations.at(1).name != "last") ::_exit(1);  // a running program's
      }
      if (!problems.empty()) ::_exit(2);
    };
    for (int round = 0; round < kRounds; ++round) {
      Recovery recovery(folder.path());
      recovery.keep(fileWith("passing"), "");
      aliveWith(recovery);
      recovery.discard();
    }
    Recovery recovery(folder.path());
    recovery.keep(fileWith("last"), "");
    ::kill(::getpid(), SIGKILL);
  }
  for (const pid_t program : programs) {
    int status = 0;
    ::waitpid(program, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "exit code " << WEXITSTATUS(status);
  }
  Recovery recovery(folder.path());
  EXPECT_EQ(leftIn(recovery).size(), static_cast<std::size_t>(kPrograms));
  EXPECT_EQ(filesIn(folder.path()), std::size_t{2 * kPrograms});
}

TEST(Recovery, OffersTheLatestFirst) {
  const TemporaryFolder folder;
  leave(folder.path(), "old");
  const fs::path old = copyIn(folder.path());
  std::string text = fileBytes(old);
  const std::size_t at = text.find("\"saved_at\": ") + 12;
  text.replace(at, text.find(',', at) - at, "1000");
  writeBytes(old, text);
  leave(folder.path(), "new");
  Recovery recovery(folder.path());
  const auto left = leftIn(recovery);
  ASSERT_EQ(left.size(), 2U);
  EXPECT_EQ(left[0].file.plan.stations.at(1).name, "new");
  EXPECT_EQ(left[1].savedAt, 1000);
}

TEST(Recovery, TellsThatTheOriginalWasChangedOrTakenAway) {
  const TemporaryFolder folder;
  const std::string original = folder / "plan.json";
  writeBytes(original, "{}");
  leave(folder / "copies", "A", original);
  Recovery recovery(folder / "copies");
  fs::last_write_time(original, fs::last_write_time(original) + std::chrono::seconds(5));
  EXPECT_TRUE(leftIn(recovery).at(0).originalChanged);
  EXPECT_FALSE(leftIn(recovery).at(0).originalMissing);
  fs::remove(original);
  EXPECT_TRUE(leftIn(recovery).at(0).originalMissing);
}

// Whether the original counts as changed when it got other bytes between two copies of a program that was
// then killed.
bool changedBetweenCopies(bool bySaving) {
  const TemporaryFolder folder;
  const std::string original = folder / "plan.json";
  writeBytes(original, "{}");
  inAKilledProgram([&] {
    Recovery recovery(folder / "copies");
    recovery.keep(fileWith("A"), original);
    writeBytes(original, "{ }");
    if (bySaving) recovery.discard();
    recovery.keep(fileWith("B"), original);
  });
  Recovery recovery(folder / "copies");
  return leftIn(recovery).at(0).originalChanged;
}

TEST(Recovery, ComparesTheOriginalWithWhatItWasBeforeTheFirstCopy) {
  EXPECT_TRUE(changedBetweenCopies(false));  // by someone else
}

TEST(Recovery, ComparesAnewAfterTheWorkWasSaved) { EXPECT_FALSE(changedBetweenCopies(true)); }

TEST(Recovery, SetsUnreadableCopiesAsideAndNamesThem) {
  const TemporaryFolder folder;
  writeBytes(folder / "plan-1-1.json", "{\"format\": ");
  writeBytes(folder / "plan-1-1.json.unreadable", "older");
  leave(folder.path(), "North");
  Recovery recovery(folder.path());
  std::vector<std::string> problems;
  EXPECT_EQ(recovery.left(problems).size(), 1U);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0],
            "A copy of unsaved work cannot be read: plan-1-1.json: line 1, column 12: the file ends in the "
            "middle. It is kept as " +
                (folder / "plan-1-1.json.2.unreadable").string() + ".");
  EXPECT_EQ(fileBytes(folder / "plan-1-1.json.2.unreadable"), "{\"format\": ");
  EXPECT_EQ(fileBytes(folder / "plan-1-1.json.unreadable"), "older");
  problems.clear();
  EXPECT_EQ(recovery.left(problems).size(), 1U);
  EXPECT_TRUE(problems.empty());
  EXPECT_FALSE(fs::exists(folder / "plan-1-1.lock"));
}

TEST(Recovery, ClearsAwayLocksAndHalfWrittenCopiesThatAreNobodys) {
  const TemporaryFolder folder;
  writeBytes(folder / "plan-1-1.lock", "");
  writeBytes(folder / "plan-1-2.json.abcdefgh.part", "{");
  writeBytes(folder / "notes.txt", "kept");
  writeBytes(folder / "plan-1-3.json", planText(fileWith("A")));
  writeBytes(folder / "plan-1-3.lock", "");
  Recovery running(folder.path());
  running.keep(fileWith("B"), "");
  Recovery recovery(folder.path());
  EXPECT_EQ(leftIn(recovery).size(), 1U);
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.path())) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  const std::string own = "plan-" + std::to_string(::getpid()) + "-1";
  std::vector<std::string> expected{"notes.txt", "plan-1-3.json", "plan-1-3.lock", own + ".json",
                                    own + ".lock"};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(names, expected);
}

TEST(Recovery, PassesOverACopyThatAProcessOfTheSameNumberLeft) {
  const TemporaryFolder folder;
  const std::string name = "plan-" + std::to_string(::getpid()) + "-1.json";
  writeBytes(folder / name, planText(fileWith("left")));
  Recovery recovery(folder.path());
  recovery.keep(fileWith("own"), "");
  const auto left = leftIn(recovery);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].file.plan.stations.at(1).name, "left");
}

TEST(Recovery, KeepsCopiesFromOthersEyes) {
  const TemporaryFolder folder;
  Recovery recovery(folder / "copies");
  recovery.keep(fileWith("A"), "");
  EXPECT_EQ(fs::status(folder / "copies").permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(copyIn(folder / "copies")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST(Recovery, TellsOnceThatItsFolderCannotBeWritten) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms(0755));
  const fs::path copies = folder / "copies";
  const int code = test::exitCodeAsNobody([&] {
    Recovery recovery(copies);
    if (errorOfKeeping(recovery) != "cannot make the folder " + copies.string() + ": Permission denied")
      return 1;
    if (errorOfKeeping(recovery) != "not kept") return 2;
    recovery.discard();
    std::vector<std::string> problems;
    return recovery.left(problems).empty() && problems.empty() ? 0 : 3;
  });
  EXPECT_EQ(code, 0);
}

TEST(Recovery, TellsAgainOnceItHasWorkedInBetween) {
  const TemporaryFolder folder;
  const fs::path copies = folder / "copies";
  writeBytes(copies, "a file where the folder is to be");
  Recovery recovery(copies);
  const std::string error = errorOfKeeping(recovery);
  EXPECT_EQ(error.substr(0, 23), "cannot make the folder ");
  EXPECT_EQ(errorOfKeeping(recovery), "not kept");
  fs::remove(copies);
  EXPECT_EQ(errorOfKeeping(recovery), "kept");
  recovery.discard();
  fs::remove_all(copies);
  writeBytes(copies, "again");
  EXPECT_EQ(errorOfKeeping(recovery), error);
}

TEST(Recovery, KeepsTheCopyBeforeOnAFullDisk) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms::all);
  const int code = test::exitCodeWithLargestFile(1000, [&] {
    Recovery recovery(folder.path());
    recovery.keep(fileWith("A"), "");
    PlanFile large = fileWith("B");
    for (StationId id = 1; id < 100; ++id) large.plan.stations[id] = large.plan.stations[1];
    try {
      recovery.keep(large, "");
    } catch (const PlanFileError&) {
      return 0;
    }
    return 1;
  });
  EXPECT_EQ(code, 0);
  Recovery recovery(folder.path());
  EXPECT_EQ(leftIn(recovery).at(0).file.plan.stations.at(1).name, "A");
}

TEST(Recovery, TellsThatItsFolderCannotBeRead) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms::owner_all);
  if (::geteuid() != 0) fs::permissions(folder.path(), fs::perms::none);
  const int code = test::exitCodeAsNobody([&] {
    Recovery recovery(folder.path());
    std::vector<std::string> problems;
    recovery.left(problems);
    return problems == std::vector<std::string>{"The folder of unsaved work cannot be read: " +
                                                folder.path().string() + ": Permission denied."}
               ? 0
               : 1;
  });
  fs::permissions(folder.path(), fs::perms::owner_all);
  EXPECT_EQ(code, 0);
}

}  // namespace
}  // namespace zel::host
