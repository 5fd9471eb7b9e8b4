// Tiles made in the background.
#include "map_view/tile_service.h"

#include <algorithm>
#include <atomic>
#include <filesystem>

#include "map_fixture.h"

namespace zel::host {
namespace {

using Tiles = MapTest;

// Tiles of the bundled terrain, some 20 km wide: 2^11 x (180 - 84.3) / 360 columns from the west.
constexpr TileId kTile{11, 544, 802};

bool wait(const std::function<bool()>& until) { return QTest::qWaitFor(until, kPatienceMs); }

TEST_F(Tiles, ATileComesAfterItWasAskedForAndTheCallbackSaysSo) {
  TileService tiles;
  int calls = 0;
  tiles.onTile = [&calls] { ++calls; };
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  EXPECT_EQ(tiles.find(kTile, false), nullptr);
  EXPECT_EQ(tiles.waiting(), 0);  // not asked for
  EXPECT_EQ(tiles.find(kTile, true), nullptr);
  EXPECT_EQ(tiles.waiting(), 1);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  const QImage* picture = tiles.find(kTile, true);
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->size(), QSize(kTileSide, kTileSide));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(tiles.waiting(), 0);
  // As the heights and the shading give it.
  const auto heights = TerrainMap::open(kBundledSource)->grid(tileLatitudes(kTile), tileLongitudes(kTile));
  const std::vector<Rgb> pixels = shadeTile(heights, tileMetresPerPixel(kTile), tiles.scale());
  EXPECT_EQ(picture->pixel(7, 100), pixels[100 * kTileSide + 7]);
  const HeightRange range = tiles.range({kTile});
  EXPECT_EQ(range.lowest, heightRange(heights).lowest);
  EXPECT_TRUE(range.any);
}

TEST_F(Tiles, AnotherColourScaleIsShadedFromTheHeightsThatAreThere) {
  TileService tiles;
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  tiles.find(kTile, true);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  const QImage before = *tiles.find(kTile, true);
  tiles.setScale({0, 5000});
  const QImage* standIn = tiles.find(kTile, true);
  ASSERT_NE(standIn, nullptr);  // the one of before is shown meanwhile
  EXPECT_EQ(*standIn, before);
  EXPECT_EQ(tiles.waiting(), 1);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  EXPECT_NE(*tiles.find(kTile, true), before);
  EXPECT_EQ(tiles.waiting(), 0);
  tiles.setRelief(false);
  tiles.find(kTile, true);
  EXPECT_EQ(tiles.waiting(), 1);
  tiles.setRelief(false);  // as it is
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
}

TEST_F(Tiles, TilesOfAnotherTerrainAreNeverShown) {
  TileService tiles;
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  tiles.find(kTile, true);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  const test::TemporaryFolder folder;
  const auto path = writeRaster(folder, [](int, int) { return 100; });
  tiles.find({11, 545, 802}, true);  // under way while the terrain changes
  tiles.setTerrain(terrainOf(path.string()));
  EXPECT_EQ(tiles.find(kTile, true), nullptr);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  EXPECT_TRUE(tiles.contents({kTile}).outside);
  EXPECT_FALSE(tiles.range({kTile}).any);
  EXPECT_EQ(tiles.find({11, 545, 802}, false), nullptr);
}

TEST_F(Tiles, WithoutTerrainNothingIsAskedFor) {
  TileService tiles;
  EXPECT_EQ(tiles.find(kTile, true), nullptr);
  EXPECT_EQ(tiles.waiting(), 0);
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  tiles.find(kTile, true);
  tiles.setTerrain(nullptr);
  EXPECT_EQ(tiles.waiting(), 0);
}

TEST_F(Tiles, WhatIsNoLongerWantedIsForgotten) {
  TileService tiles;
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  for (std::int32_t column = 0; column < 200; ++column) tiles.find({12, 1000 + column, 1604}, true);
  tiles.find(kTile, true);
  tiles.keepAsked({kTile});
  EXPECT_EQ(tiles.waiting(), 1);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  EXPECT_NE(tiles.find(kTile, false), nullptr);
  // A few were made before they were forgotten, no more.
  int made = 0;
  for (std::int32_t column = 0; column < 200; ++column) {
    made += tiles.find({12, 1000 + column, 1604}, false) != nullptr;
  }
  EXPECT_LT(made, 20);
}

TEST_F(Tiles, TheMemoryStaysWithinItsBoundAndTheLatestUsedStay) {
  constexpr std::size_t kBound = 4U << 20;
  TileService tiles(kBound);
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  for (std::int32_t column = 0; column < 14; ++column) {
    tiles.find({13, 2176 + column, 3208}, true);
    ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
    tiles.find({13, 2176, 3208}, true);  // the first one is in use all the time
    ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  }
  EXPECT_LE(tiles.bytes(), kBound);
  EXPECT_GT(tiles.bytes(), kBound / 2);
  EXPECT_NE(tiles.find({13, 2176, 3208}, false), nullptr);
  EXPECT_NE(tiles.find({13, 2189, 3208}, false), nullptr);
  EXPECT_EQ(tiles.find({13, 2177, 3208}, false), nullptr);
}

TEST_F(Tiles, ManyTilesComeInFewCalls) {
  TileService tiles;
  int calls = 0;
  tiles.onTile = [&calls] { ++calls; };
  tiles.setTerrain(TerrainMap::open(kBundledSource));
  constexpr int kTiles = 24;
  QElapsedTimer clock;
  clock.start();
  for (std::int32_t i = 0; i < kTiles; ++i) tiles.find({13, 2176 + i % 8, 3206 + i / 8}, true);
  ASSERT_TRUE(wait([&tiles] { return tiles.waiting() == 0; }));
  EXPECT_LE(calls, clock.elapsed() / 15 + 2);  // one in 16 ms
}

TEST_F(Tiles, AServiceGoesWhileItsTilesAreBeingMade) {
  for (int i = 0; i < 5; ++i) {
    TileService tiles;
    tiles.onTile = [] { ADD_FAILURE() << "called after its end"; };
    tiles.setTerrain(TerrainMap::open(kBundledSource));
    for (std::int32_t column = 0; column < 20; ++column) tiles.find({12, 1080 + column, 1604}, true);
  }
  QCoreApplication::processEvents();
}

TEST_F(Tiles, AMapGoesWithoutLookingThroughItsFoldersToTheEnd) {
  const test::TemporaryFolder folder;
  const auto first = writeRaster(folder, [](int, int) { return 100; });
  for (int i = 0; i < 400; ++i) {
    std::filesystem::create_hard_link(first, folder / ("copy" + std::to_string(i) + ".asc"));
  }
  const std::shared_ptr<const TerrainMap> terrain = terrainOf(folder.path().string());
  {
    MapView map;
    map.resize(400, 300);
    map.setTerrain(terrain);
    map.fit({10, 10, 11, 11});
    map.grab();  // tiles are asked for, too
  }
  const std::atomic<bool> atOnce{true};
  EXPECT_FALSE(terrain->prepare(&atOnce));
}

TEST_F(Tiles, APanWhileAFolderIsLookedThroughLosesNothingOfIt) {
  const test::TemporaryFolder folder;
  const auto first = writeRaster(folder, [](int, int) { return 100; });
  constexpr int kFiles = 100, kLookMs = 300;
  for (int i = 0; i < kFiles; ++i) {
    std::filesystem::create_hard_link(first, folder / ("copy" + std::to_string(i) + ".asc"));
  }
  const std::shared_ptr<const TerrainMap> terrain = terrainOf(folder.path().string());
  TileService tiles;
  tiles.setTerrain(terrain);
  // Ever other tiles: each asking is given up by the next.
  std::int32_t column = 0;
  QElapsedTimer clock;
  clock.start();
  EXPECT_TRUE(wait([&] {
    const TileId tile{12, ++column % 4096, 1604};
    tiles.keepAsked({tile});
    tiles.find(tile, true);
    if (clock.elapsed() < kLookMs) return false;
    clock.start();
    // True once the folder has been looked through. This call takes it on by one file, all of them by fewer
    // than there are.
    static_assert(kPatienceMs / kLookMs < kFiles);
    const std::atomic<bool> atOnce{true};
    return terrain->prepare(&atOnce);
  }));
}

}  // namespace
}  // namespace zel::host
