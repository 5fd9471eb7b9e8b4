#include "zeltool/host_tools/component_version_info.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(ComponentVersionInfo, NamesTheVersionAndTheProduct) {
  ComponentVersionInfo info("1.2.3");
  info.SetClientApp(nullptr);
  EXPECT_EQ(info.Query("Planner"), "1.2.3 (Planner)");
  EXPECT_EQ(info.Query(""), "1.2.3");
}

}  // namespace
}  // namespace zel
