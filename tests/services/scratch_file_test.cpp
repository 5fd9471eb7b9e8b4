#include "component/services/scratch_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "foundation/runtime_error.h"
#include "support/environment_variable.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::EnvironmentVariable;
using test::TemporaryFolder;
using test::writeBytes;

struct ScratchFileTest : testing::Test {
  TemporaryFolder folder;
  EnvironmentVariable tmp{"tmp", folder.path().string()};

  bool isEmpty() const { return fs::is_empty(folder.path()); }
};

int errorOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST_F(ScratchFileTest, StandsInTheFolderOfTheProductInTheTemporaryFolder) {
  const ScratchFile scratch("Sky Planner");
  EXPECT_EQ(fs::path(scratch.path()).parent_path(), folder / "Sky Planner");
  EXPECT_TRUE(fs::is_regular_file(scratch.path()));
  EXPECT_EQ(scratch.name(), fs::path(scratch.path()).filename());
  EXPECT_EQ(scratch.companion(), scratch.path() + ".par");
}

TEST_F(ScratchFileTest, TheTemporaryFolderIsTmpThenTMPDIRThenTheSystems) {
  TemporaryFolder other;
  const EnvironmentVariable TMPDIR("TMPDIR", other.path().string());
  EXPECT_TRUE(ScratchFile("P").path().starts_with(folder.path().string() + "/P/"));
  {
    const EnvironmentVariable none("tmp", std::nullopt);
    EXPECT_TRUE(ScratchFile("P").path().starts_with(other.path().string() + "/P/"));
  }
  const EnvironmentVariable empty("tmp", ""), none("TMPDIR", std::nullopt);
  // In a folder that every user shares.
  const std::string product = "zel-test-product-" + std::to_string(::getpid());
  EXPECT_TRUE(ScratchFile(product).path().starts_with("/tmp/" + product + "/"));
  std::error_code ignored;
  fs::remove("/tmp/" + product, ignored);
}

TEST_F(ScratchFileTest, OnlyTheUserMayEnterTheFolder) {
  const ScratchFile scratch("P");
  EXPECT_EQ(fs::status(folder / "P").permissions(), fs::perms::owner_all);
}

TEST_F(ScratchFileTest, IsGoneWithItsCompanionAndLeavesTheFolder) {
  {
    const ScratchFile scratch("P");
    writeBytes(scratch.companion(), "x");
  }
  EXPECT_TRUE(fs::is_empty(folder / "P"));
}

TEST_F(ScratchFileTest, HasANameOfItsOwn) {
  const ScratchFile one("P"), other("P");
  EXPECT_NE(one.path(), other.path());
}

TEST_F(ScratchFileTest, AProductThatIsNoFolderNameGetsOne) {
  EXPECT_TRUE(ScratchFile("a/../b").path().starts_with((folder / "a_.._b").string() + "/"));
  for (const std::string name : {"", ".", ".."})
    EXPECT_TRUE(ScratchFile(name).path().starts_with((folder / "zelProfiler01").string() + "/")) << name;
}

// A folder that others may write into or read, a link to a folder elsewhere, a file: none is taken.
TEST_F(ScratchFileTest, WhatIsNotTheUsersAloneIsLeftAndAFolderBesideItIsTaken) {
  TemporaryFolder elsewhere;
  fs::create_directory(folder / "open");
  ::chmod((folder / "open").c_str(), 0777);
  fs::create_directory(folder / "readable");
  ::chmod((folder / "readable").c_str(), 0750);
  fs::create_directory_symlink(elsewhere.path(), folder / "link");
  writeBytes(folder / "file", "x");
  for (const std::string name : {"open", "readable", "link", "file"}) {
    std::string own;
    {
      const ScratchFile scratch(name);
      own = fs::path(scratch.path()).parent_path();
      EXPECT_TRUE(own.starts_with((folder / (name + "-")).string())) << own;
      EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
    }
    EXPECT_FALSE(fs::exists(own)) << "gone with its file";
  }
  EXPECT_TRUE(fs::is_empty(folder / "open"));
  EXPECT_TRUE(fs::is_empty(folder / "readable"));
  EXPECT_TRUE(fs::is_empty(elsewhere.path()));
}

TEST_F(ScratchFileTest, ATemporaryFolderThatIsNotThereIsAnError) {
  const EnvironmentVariable gone("tmp", (folder / "gone").string());
  EXPECT_EQ(errorOf([] { const ScratchFile scratch("P"); }), 76);
}

}  // namespace
}  // namespace zel
