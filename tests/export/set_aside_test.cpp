#include "export/set_aside.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "foundation/runtime_error.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::writeBytes;

struct SetAsideTest : testing::Test {
  test::TemporaryFolder folder;
  std::string path = (folder / "r_PTP.txt").string();
  std::size_t files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
  }
};

TEST_F(SetAsideTest, WhatWasThereIsOutOfTheWayAndComesBack) {
  writeBytes(path, "old");
  {
    const SetAside aside(path);
    EXPECT_FALSE(fs::exists(path));
    writeBytes(path, "new");
  }
  EXPECT_EQ(fileBytes(path), "old");
  EXPECT_EQ(files(), 1U);
}

TEST_F(SetAsideTest, ANewOneThatIsKeptReplacesIt) {
  writeBytes(path, "old");
  {
    SetAside aside(path);
    writeBytes(path, "new");
    aside.keepNew();
  }
  EXPECT_EQ(fileBytes(path), "new");
  EXPECT_EQ(files(), 1U);
}

TEST_F(SetAsideTest, WhereNothingWasNothingIsLeft) {
  {
    const SetAside aside(path);
    writeBytes(path, "new");
  }
  EXPECT_EQ(files(), 0U);
}

TEST_F(SetAsideTest, ANameMayBeAsLongAsTheSystemTakesIt) {
  const std::string longest = (folder / std::string(255, 'n')).string();
  writeBytes(longest, "old");
  {
    SetAside aside(longest);
    EXPECT_FALSE(fs::exists(longest));
    EXPECT_EQ(files(), 1U) << "it is beside";
    writeBytes(longest, "new");
    aside.keepNew();
  }
  EXPECT_EQ(fileBytes(longest), "new");
  EXPECT_EQ(files(), 1U);
}

TEST_F(SetAsideTest, ALinkStaysAndTheFileBehindItIsSetAside) {
  fs::create_directory(folder / "data");
  writeBytes(folder / "data" / "real", "old");
  fs::create_symlink("data/real", path);
  {
    const SetAside aside(path);
    EXPECT_EQ(aside.path(), folder / "data" / "real");
    writeBytes(aside.path(), "new");
  }
  EXPECT_EQ(fileBytes(folder / "data" / "real"), "old");
  {
    SetAside aside(path);
    writeBytes(aside.path(), "new");
    aside.keepNew();
  }
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(fileBytes(folder / "data" / "real"), "new");
}

TEST_F(SetAsideTest, WhatIsNoRegularFileIsAnErrorAndStays) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  fs::create_symlink(path, folder / "link");
  fs::create_symlink("circle", folder / "circle");
  for (const std::string& name : {path, (folder / "link").string(), (folder / "circle").string()}) try {
      const SetAside aside(name);
      ADD_FAILURE() << name;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 75);
    }
  EXPECT_TRUE(fs::is_fifo(path));
  EXPECT_EQ(files(), 3U);
}

TEST_F(SetAsideTest, AFolderOfThatNameIsAnErrorAndStays) {
  fs::create_directory(path);
  try {
    const SetAside aside(path);
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 75);
  }
  EXPECT_TRUE(fs::is_directory(path));
}

}  // namespace
}  // namespace zel
