#include "component/data_folder.h"

#include <gtest/gtest.h>

#include "support/environment_variable.h"

namespace zel {
namespace {

using test::EnvironmentVariable;

TEST(DataFolder, IsWhereTheEnvironmentSays) {
  const EnvironmentVariable variable("ZEL_DATA_DIR", "/opt/data");
  EXPECT_EQ(dataFolder(), "/opt/data");
  EXPECT_EQ(bundledTerrainFolder(), "/opt/data/terrain");
}

TEST(DataFolder, BelongsToTheFolderOfTheLibraryOtherwise) {
  for (const std::optional<std::string>& value :
       {std::optional<std::string>(), std::optional<std::string>("")}) {
    const EnvironmentVariable variable("ZEL_DATA_DIR", value);
    const std::filesystem::path folder = dataFolder();
    EXPECT_TRUE(folder.is_absolute()) << folder;
    EXPECT_EQ(folder.filename(), "terrain-profiler");
    EXPECT_EQ(folder, folder.lexically_normal());
  }
}

TEST(HelperProgramFolder, IsThatOfTheInstalledPrograms) {
  EXPECT_TRUE(helperProgramFolder().is_absolute());
  EXPECT_EQ(helperProgramFolder().filename(), "bin");
}

}  // namespace
}  // namespace zel
