#include "zeltool/terrain/tile_name.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(TileName, StatesTheSouthWestCorner) {
  EXPECT_EQ(tileCornerOf("N36W085.hgt"), (TileCorner{36, -85}));
  EXPECT_EQ(tileCornerOf("S29W072.hgt"), (TileCorner{-29, -72}));
  EXPECT_EQ(tileCornerOf("n00e000.hgt"), (TileCorner{0, 0}));
  EXPECT_EQ(tileCornerOf("N43E007.SRTMGL1.hgt.zip"), (TileCorner{43, 7}));
  EXPECT_EQ(tileCornerOf("S01W180.hgt"), (TileCorner{-1, -180}));
}

TEST(TileName, OtherNamesStateNone) {
  for (const char* name : {"", "hgt", "N36W085", "N36W085hgt", "N3W085.hgt", "N36W08.hgt.", "X36W085.hgt",
                           "N36X085.hgt", "NaaW085.hgt", "N36Wbbb.hgt", "N91E000.hgt", "N90E000.hgt",
                           "S91E000.hgt", "N00E180.hgt", "N00W181.hgt", "N36W085_1.hgt", "N-6W085.hgt"})
    EXPECT_FALSE(tileCornerOf(name)) << name;
}

TEST(TileName, OfAPositionIsTheTileThatItLiesIn) {
  EXPECT_EQ(tileNameFor({36.5, -84.5}), "N36W085.hgt");
  EXPECT_EQ(tileNameFor({-28.5, -71.5}), "S29W072.hgt");
  EXPECT_EQ(tileNameFor({0, 0}), "N00E000.hgt");
  EXPECT_EQ(tileNameFor({-0.1, -0.1}), "S01W001.hgt");
  EXPECT_EQ(tileNameFor({10, 179.5}), "N10E179.hgt");
  EXPECT_EQ(tileNameFor({10, 180}), "N10W180.hgt");
  EXPECT_EQ(tileNameFor({10, 190}), "N10W170.hgt");
  EXPECT_EQ(tileNameFor({90, 0}), "N89E000.hgt");
  EXPECT_EQ(tileNameFor({-90, 0}), "S90E000.hgt");
}

TEST(TileSize, IsToldByTheLength) {
  EXPECT_EQ(tileSizeOf(2884802), (TileSize{1201, 1201}));
  EXPECT_EQ(tileSizeOf(25934402), (TileSize{3601, 3601}));
  EXPECT_EQ(tileSizeOf(12970802), (TileSize{1801, 3601}));
  EXPECT_FALSE(tileSizeOf(0));
  EXPECT_FALSE(tileSizeOf(2884801));
  EXPECT_FALSE(tileSizeOf(2884803));
}

}  // namespace
}  // namespace zel
