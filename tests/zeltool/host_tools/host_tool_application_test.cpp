#include "zeltool/host_tools/host_tool_application.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"
#include "support/scripted_platform.h"

namespace zel {
namespace {

using test::MemorySettingsStore;

TEST(HostToolApplication, GivesTheFolderOfTheHelperPrograms) {
  const HostToolApplication application(std::make_shared<MemorySettingsStore>(), "/opt/planner/libexec");
  EXPECT_EQ(application.HelperProgramFolder(), "/opt/planner/libexec");
}

TEST(HostToolApplication, GivesTheCoordinateFormatOfTheClientsSettings) {
  const auto settings = std::make_shared<MemorySettingsStore>();
  HostToolApplication application(settings, "");
  application.SetClientApp(makePropertyBag({{"Title", "Planner"}}));
  EXPECT_EQ(application.CoordinateFormat(), "DMS");
  settings->WriteSetting("Planner", "Settings", "CoordFormat", "DD");
  EXPECT_EQ(application.CoordinateFormat(), "DD") << "it is read anew each time";
  application.SetClientApp(makePropertyBag({{"Title", "Other"}}));
  EXPECT_EQ(application.CoordinateFormat(), "DMS");
}

TEST(HostToolApplication, RaisesAnErrorWithoutAClientOrAStore) {
  const auto settings = std::make_shared<MemorySettingsStore>();
  HostToolApplication application(settings, "");
  EXPECT_THROW(application.CoordinateFormat(), RuntimeError);
  application.SetClientApp(makePropertyBag({{"Title", "Planner"}}));
  settings->failing = true;
  EXPECT_THROW(application.CoordinateFormat(), RuntimeError);
}

}  // namespace
}  // namespace zel
