#include "component/own_application.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "support/environment_variable.h"

namespace zel {
namespace {

using test::EnvironmentVariable;

TEST(OwnApplication, HasEveryPropertyOfAHostsApplication) {
  const EnvironmentVariable state("XDG_STATE_HOME", "/state");
  const DispatchPtr application = makeOwnApplication();
  EXPECT_EQ(application->get("Title").toText(), "zelProfiler01");
  EXPECT_EQ(application->get("ProductName").toText(), "zelProfiler01");
  EXPECT_EQ(application->get("Path").toText(), "/state/zelprofiler");
  EXPECT_EQ(application->get("HelpFile").toText(), "");
  EXPECT_EQ(std::to_string(application->get("Major").toInt32()) + "." +
                std::to_string(application->get("Minor").toInt32()) + "." +
                std::to_string(application->get("Revision").toInt32()),
            componentVersion());
}

TEST(OwnApplication, KeepsItsLogBelowTheHomeFolderWithoutAStateFolder) {
  const EnvironmentVariable home("HOME", "/home/me");
  for (const char* state : {"", "relative/folder"}) {
    const EnvironmentVariable variable("XDG_STATE_HOME", state);
    EXPECT_EQ(ownStateFolder(), "/home/me/.local/state/zelprofiler") << state;
  }
  const EnvironmentVariable unset("XDG_STATE_HOME", std::nullopt);
  EXPECT_EQ(ownStateFolder(), "/home/me/.local/state/zelprofiler");
}

TEST(OwnApplication, FindsTheHomeOfAUserWhoseEnvironmentHasNone) {
  const EnvironmentVariable home("HOME", std::nullopt);
  const EnvironmentVariable state("XDG_STATE_HOME", std::nullopt);
  EXPECT_TRUE(std::regex_match(ownStateFolder(), std::regex("(/.*/.local/state/zelprofiler)?")))
      << ownStateFolder();
}

}  // namespace
}  // namespace zel
