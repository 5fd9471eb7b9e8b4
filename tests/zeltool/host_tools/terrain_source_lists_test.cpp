#include "zeltool/host_tools/terrain_source_lists.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(TerrainSourceLists, NameTheFiveSources) {
  TerrainSourceLists lists;
  lists.SetClientApp(nullptr);
  EXPECT_EQ(lists.SourceName(1), "30 second");
  EXPECT_EQ(lists.SourceName(2), "3 second");
  EXPECT_EQ(lists.SourceName(3), "1 second");
  EXPECT_EQ(lists.SourceName(7), "1/3 second");
  EXPECT_EQ(lists.SourceName(9), "Local");
}

TEST(TerrainSourceLists, GiveNoNameToAnyOtherCode) {
  const TerrainSourceLists lists;
  for (int code = -32768; code <= 32767; ++code) {
    const bool known = code == 1 || code == 2 || code == 3 || code == 7 || code == 9;
    ASSERT_EQ(lists.SourceName(static_cast<std::int16_t>(code)).empty(), !known) << code;
  }
}

}  // namespace
}  // namespace zel
