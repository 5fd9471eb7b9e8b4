#include "zeltool/user_folders/user_folders.h"

#include <gtest/gtest.h>

#include "support/environment_variable.h"

namespace zel {
namespace {

using test::EnvironmentVariable;

TEST(HomeFolder, IsTheOneOfTheEnvironment) {
  const EnvironmentVariable home("HOME", "/home/planner");
  EXPECT_EQ(homeFolder(), "/home/planner");
}

TEST(HomeFolder, IsTheAccountsOneWhenTheEnvironmentNamesNoAbsolutePath) {
  std::string ofAccount;
  {
    const EnvironmentVariable home("HOME", std::nullopt);
    ofAccount = homeFolder();
  }
  EXPECT_TRUE(ofAccount.empty() || ofAccount.front() == '/');
  const EnvironmentVariable home("HOME", "relative/folder");
  EXPECT_EQ(homeFolder(), ofAccount);
}

TEST(UserFolder, IsTheVariablesOneOnlyWhenThatIsAbsolute) {
  const EnvironmentVariable home("HOME", "/home/planner");
  {
    const EnvironmentVariable config("XDG_CONFIG_HOME", "/etc/planner");
    EXPECT_EQ(userFolder("XDG_CONFIG_HOME", ".config"), "/etc/planner");
  }
  const EnvironmentVariable config("XDG_CONFIG_HOME", "config");
  EXPECT_EQ(userFolder("XDG_CONFIG_HOME", ".config"), "/home/planner/.config");
}

}  // namespace
}  // namespace zel
