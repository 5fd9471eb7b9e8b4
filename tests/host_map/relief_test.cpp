#include "map/relief.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include "map/height_colours.h"
#include "map/map_frame.h"
#include "map/round_numbers.h"
#include "zel/terrain_map.h"

namespace zel::host {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinite = std::numeric_limits<float>::infinity();

int red(Rgb colour) { return static_cast<int>(colour >> 16U & 0xffU); }
int green(Rgb colour) { return static_cast<int>(colour >> 8U & 0xffU); }
int blue(Rgb colour) { return static_cast<int>(colour & 0xffU); }

double linear(int component) {  // IEC 61966-2-1
  const double value = component / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double lightness(double luminance) { return 116 * std::cbrt(luminance) - 16; }  // CIE L*, light colours

double lightness(Rgb colour) {
  return lightness(0.2126 * linear(red(colour)) + 0.7152 * linear(green(colour)) +
                   0.0722 * linear(blue(colour)));
}

TEST(HeightColours, LightnessRisesSteadilyFromTheLowestToTheHighest) {
  const std::array<Rgb, kShades>& colours = heightColours();
  const double first = lightness(colours.front()), last = lightness(colours.back());
  EXPECT_GT(first, 35);  // black lines and texts can be read on the darkest
  EXPECT_GT(last - first, 45);
  for (std::size_t i = 0; i < colours.size(); ++i) {
    EXPECT_EQ(colours[i] >> 24U, 0xffU);
    // Straight, but for the rounding to 8 bits.
    const double expected = first + (last - first) * static_cast<double>(i) / (kShades - 1);
    EXPECT_NEAR(lightness(colours[i]), expected, 1.0) << i;
    if (i >= 16) {
      EXPECT_GT(lightness(colours[i]), lightness(colours[i - 16])) << i;
    }
  }
}

TEST(HeightColours, CanBeToldApartWithoutRedAndGreen) {
  // Deuteranopia and protanopia as F. Vienot, H. Brettel and J. D. Mollon, Color Res. Appl. 24 (1999)
  // simulate them, in linear components: red and green become one.
  for (const std::array<double, 2> mix : {std::array{0.29275, 0.70725}, std::array{0.11238, 0.88762}}) {
    double before = -10;
    for (std::size_t i = 0; i < kShades; i += 93) {  // twelve colours
      const Rgb colour = heightColours()[i];
      const double yellow = mix[0] * linear(red(colour)) + mix[1] * linear(green(colour));
      const double seen = lightness(0.9278 * yellow + 0.0722 * linear(blue(colour)));
      EXPECT_GT(seen, before + 2.5) << i;  // of 100: a just noticeable difference is about 1
      before = seen;
    }
  }
}

TEST(HeightColours, ColourlessGroundIsNoHeightsColour) {
  for (const Rgb none : {kVoidColour, kVoidHatch})
    for (const Rgb colour : heightColours())
      EXPECT_GT(std::abs(red(none) - red(colour)) + std::abs(green(none) - green(colour)) +
                    std::abs(blue(none) - blue(colour)),
                60);
}

TEST(HeightColours, WhatLiesOutsideTheScaleHasItsEndsColour) {
  const HeightScale scale{100, 300};
  EXPECT_EQ(colourOf(100, scale), heightColours().front());
  EXPECT_EQ(colourOf(-1e30, scale), heightColours().front());
  EXPECT_EQ(colourOf(300, scale), heightColours().back());
  EXPECT_EQ(colourOf(1e30, scale), heightColours().back());
  EXPECT_EQ(colourOf(200, scale), heightColours()[512]);
  EXPECT_EQ(colourOf(kNan, scale), kVoidColour);
  EXPECT_EQ(colourOf(1e308, {-1e308, 1e308}), heightColours().back());
  // A scale without a width parts what is below from what is above.
  EXPECT_EQ(colourOf(5, {5, 5}), heightColours().front());
  EXPECT_EQ(colourOf(5.1, {5, 5}), heightColours().back());
}

TEST(HeightScale, BeginsAndEndsOnRoundNumbersOfTheUnit) {
  EXPECT_EQ(niceScale(588, 3089, false), (HeightScale{500, 3500}));
  EXPECT_EQ(niceScale(256, 1037, false), (HeightScale{200, 1100}));
  const HeightScale feet = niceScale(256, 1037, true);  // 840 to 3402 ft
  EXPECT_NEAR(feet.lowest / 0.3048, 500, 1e-9);
  EXPECT_NEAR(feet.highest / 0.3048, 3500, 1e-9);
  EXPECT_EQ(niceScale(200, 1100, false), (HeightScale{200, 1100}));
}

TEST(HeightScale, AFewMetresBelowTheSeaDoNotBeginAStepOfTheirOwn) {
  EXPECT_EQ(niceScale(-1.3, 1658, false), (HeightScale{0, 1800}));
  EXPECT_EQ(niceScale(-30, 1658, false), (HeightScale{-200, 1800}));
}

TEST(HeightScale, IsNeverNarrowerThanTwentyMetres) {
  for (const double height : {0.0, 812.3, -400.0, 8848.0})
    for (const double range : {0.0, 0.5, 19.0, 21.0})
      for (const bool feet : {false, true}) {
        const HeightScale scale = niceScale(height, height + range, feet);
        EXPECT_GE(scale.highest - scale.lowest, 20 - 1e-9) << height << ' ' << range;
        EXPECT_LE(scale.highest - scale.lowest, 30) << height << ' ' << range;
        EXPECT_LE(scale.lowest, height + 0.5);
        EXPECT_GE(scale.highest, height + range - 0.5);
      }
}

TEST(HeightScale, StaysSensibleForAnyNumbers) {
  EXPECT_EQ(niceScale(3089, 588, false), niceScale(588, 3089, false));
  EXPECT_EQ(niceScale(kNan, 5, false), HeightScale{});
  EXPECT_EQ(niceScale(0, kInfinite, true), HeightScale{});
  const HeightScale huge = niceScale(-1e300, 1e300, false);
  EXPECT_TRUE(std::isfinite(huge.lowest) && huge.lowest < huge.highest);
}

std::vector<std::string> texts(const HeightScale& scale, bool feet, int most) {
  std::vector<std::string> found;
  for (const LegendEntry& entry : legendEntries(scale, feet, most)) found.push_back(entry.text);
  return found;
}

TEST(HeightLegend, HasRoundNumbersFromTheLowestUpwards) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(texts({200, 1100}, false, 6), (Texts{"200 m", "400 m", "600 m", "800 m", "1,000 m"}));
  EXPECT_EQ(texts({500 * 0.3048, 3500 * 0.3048}, true, 8),
            (Texts{"500 ft", "1,000 ft", "1,500 ft", "2,000 ft", "2,500 ft", "3,000 ft", "3,500 ft"}));
  EXPECT_EQ(texts({-20, 20}, false, 5), (Texts{"-20 m", "-10 m", "0 m", "10 m", "20 m"}));
  EXPECT_EQ(texts({0, 1}, false, 3), (Texts{"0.0 m", "0.5 m", "1.0 m"}));
}

TEST(HeightLegend, PlacesItsEntriesAlongTheScale) {
  const std::vector<LegendEntry> entries = legendEntries({200, 1100}, false, 6);
  ASSERT_EQ(entries.size(), 5U);
  EXPECT_NEAR(entries[0].fraction, 0, 1e-12);
  EXPECT_NEAR(entries[1].fraction, 200.0 / 900, 1e-12);
  EXPECT_NEAR(entries[1].height, 400, 1e-9);
}

TEST(HeightLegend, HasAtMostSoManyEntries) {
  for (int most = 1; most < 40; ++most)
    for (const HeightScale& scale : {HeightScale{0, 1000}, {-430, 8848}, {12.5, 33.1}, {0, 0.001}}) {
      const std::vector<LegendEntry> entries = legendEntries(scale, most % 2 == 0, most);
      EXPECT_LE(entries.size(), static_cast<std::size_t>(most));
      if (most >= 3) {
        EXPECT_GE(entries.size(), static_cast<std::size_t>(most) / 3) << most;
      }
    }
  EXPECT_TRUE(legendEntries({0, 1000}, false, 0).empty());
  EXPECT_TRUE(legendEntries({5, 5}, false, 6).empty());
  EXPECT_TRUE(legendEntries({0, kInfinite}, false, 6).empty());
  EXPECT_TRUE(legendEntries({-1e308, 1e308}, false, 6).empty());
  EXPECT_TRUE(legendEntries({0, 1e300}, true, 6).empty());
  EXPECT_LE(legendEntries({0, 1e-300}, true, 6).size(), 1U);
}

TEST(RoundNumber, IsOneTwoOrFiveTimesAPowerOfTen) {
  EXPECT_EQ(roundUp(1.01).value, 2);
  EXPECT_EQ(roundUp(2).value, 2);
  EXPECT_EQ(roundUp(2001).value, 5000);
  EXPECT_EQ(roundUp(0.03).value, 0.05);
  EXPECT_EQ(roundUp(0.03).decimals, 2);
  EXPECT_EQ(roundDown(0.03).value, 0.02);
  EXPECT_EQ(roundDown(9.99).value, 5);
  EXPECT_EQ(roundDown(10).value, 10);
  for (const double none : {0.0, -1.0, static_cast<double>(kNan), static_cast<double>(kInfinite)}) {
    EXPECT_EQ(roundUp(none).value, 1);
    EXPECT_EQ(roundDown(none).value, 1);
  }
}

TEST(RoundNumber, IsWrittenWithPointAndCommasInAnyLocale) {
  EXPECT_EQ(groupedNumber(1234567.25, 1), "1,234,567.2");  // ties to even
  EXPECT_EQ(groupedNumber(-1300, 0), "-1,300");
  EXPECT_EQ(groupedNumber(-130, 0), "-130");
  EXPECT_EQ(groupedNumber(999, 0), "999");
  EXPECT_EQ(plainNumber(1300, 0), "1300");
}

// ---- Squares ----

// Heights where the grid's x goes to the east and y to the south, 0 at the first pixel.
std::vector<float> ground(const std::function<double(int x, int y)>& height) {
  std::vector<float> heights;
  for (int y = -kTileMargin; y < kTileSide + kTileMargin; ++y)
    for (int x = -kTileMargin; x < kTileSide + kTileMargin; ++x)
      heights.push_back(static_cast<float>(height(x, y)));
  return heights;
}

float& at(std::vector<float>& heights, int x, int y) {
  return heights[static_cast<std::size_t>((y + kTileMargin) * kTileGrid + x + kTileMargin)];
}
Rgb pixel(const std::vector<Rgb>& pixels, int x, int y) {
  return pixels[static_cast<std::size_t>(y * kTileSide + x)];
}

// Below all heights used here, so that each has the last colour and what is left is the light.
constexpr HeightScale kAllLight{-1e5, -1e5 + 1};
constexpr double kMetresPerPixel = 10;  // close enough for slopes as they are

std::vector<Rgb> plane(double eastward, double northward) {
  return shadeTile(ground([=](int x, int y) { return kMetresPerPixel * (eastward * x - northward * y); }),
                   kMetresPerPixel, kAllLight);
}

TEST(Relief, LevelGroundKeepsItsColour) {
  const HeightScale scale{0, 1000};
  for (const bool relief : {true, false})
    for (const double height : {0.0, 17.0, 512.0, 999.0})
      for (const Rgb colour :
           shadeTile(ground([=](int, int) { return height; }), kMetresPerPixel, scale, relief))
        ASSERT_EQ(colour, colourOf(height, scale)) << height;
}

TEST(Relief, LightOnAPlaneIsThatOfLambertsLawFromTheNorthWestAt45Degrees) {
  const Rgb flat = heightColours().back();
  constexpr double kFlat = std::numbers::sqrt2 / 2;
  for (const auto& [eastward, northward] : {std::pair{1.0, 0.0},
                                            {0.0, -1.0},
                                            {-1.0, 0.0},
                                            {0.0, 1.0},
                                            {0.3, -0.2},
                                            {-0.1, 0.05},
                                            {3.0, 4.0},
                                            {-kFlat, kFlat},
                                            {kFlat, -kFlat}}) {
    // Closed form: the ground's normal (-eastward, -northward, 1) times the light's direction (-1, 1, sqrt 2)
    // / 2.
    const double light =
        std::max(0.0, (0.5 * (eastward - northward) + kFlat) / std::hypot(1, eastward, northward));
    const double expected = light < kFlat
                                ? green(flat) * (1 - 0.55 * (1 - light / kFlat))
                                : green(flat) + (255 - green(flat)) * 0.45 * (light - kFlat) / (1 - kFlat);
    // One of 255: rounding. The same everywhere, the square's edges too.
    for (const Rgb colour : plane(eastward, northward))
      ASSERT_NEAR(green(colour), expected, 1.0) << eastward << ' ' << northward;
  }
}

TEST(Relief, SlopesAwayFromTheLightAreNotBlack) {
  for (const Rgb colour : plane(-3, 3)) {
    ASSERT_GE(green(colour), green(heightColours().back()) * 0.44);
    ASSERT_GT(blue(colour), green(colour));  // shade is cool
  }
}

TEST(Relief, ConeIsBrightToTheNorthWestAndDarkToTheSouthEast) {
  const std::vector<Rgb> pixels =
      shadeTile(ground([](int x, int y) { return 500 - 5 * std::hypot(x - 128, y - 128); }), kMetresPerPixel,
                kAllLight);
  EXPECT_GT(green(pixel(pixels, 90, 90)), green(heightColours().back()));
  EXPECT_LT(green(pixel(pixels, 166, 166)), green(heightColours().back()) - 40);
  // North-east and south-west are alike.
  EXPECT_NEAR(green(pixel(pixels, 166, 90)), green(pixel(pixels, 90, 166)), 1);
}

double hills(int x, int y) { return 400 + 90 * std::sin(x * 0.11) * std::cos(y * 0.07) + 0.3 * x; }

TEST(Relief, SquaresFitTogetherWithoutASeam) {
  const HeightScale scale{200, 700};
  const std::vector<Rgb> one = shadeTile(ground(hills), 30, scale);
  const std::vector<Rgb> shifted =
      shadeTile(ground([](int x, int y) { return hills(x + 100, y + 60); }), 30, scale);
  for (int y = 0; y < kTileSide - 60; ++y)
    for (int x = 0; x < kTileSide - 100; ++x)
      ASSERT_EQ(pixel(shifted, x, y), pixel(one, x + 100, y + 60)) << x << ' ' << y;
}

TEST(Relief, FarViewsOfGentlerSlopesHaveMoreThanTheirOwnContrast) {
  const auto contrast = [](double metresPerPixel) {
    // Averages over coarse cells: slopes of a tenth.
    const std::vector<Rgb> pixels =
        shadeTile(ground([=](int x, int) { return -0.1 * metresPerPixel * x; }), metresPerPixel, kAllLight);
    return green(heightColours().back()) - green(pixels[1000]);
  };
  EXPECT_EQ(contrast(1), contrast(20));
  EXPECT_GT(contrast(100), contrast(20) + 5);
  EXPECT_GT(contrast(1000), contrast(100) + 5);
}

TEST(Relief, VoidsAreHatchedAndTheHatchGoesOnOverTheNextSquare) {
  const std::vector<Rgb> pixels =
      shadeTile(ground([](int, int) { return kTerrainVoid; }), kMetresPerPixel, {0, 1000});
  int hatched = 0;
  for (int y = 0; y < kTileSide; ++y)
    for (int x = 0; x < kTileSide; ++x) {
      const Rgb colour = pixel(pixels, x, y);
      ASSERT_TRUE(colour == kVoidColour || colour == kVoidHatch);
      hatched += colour == kVoidHatch ? 1 : 0;
      // Repeats in eight pixels, of which a square has a whole number.
      ASSERT_EQ(colour, pixel(pixels, (x + 8) % kTileSide, y));
      ASSERT_EQ(colour, pixel(pixels, x, (y + 8) % kTileSide));
      if (x > 0 && y + 1 < kTileSide) {
        ASSERT_EQ(colour, pixel(pixels, x - 1, y + 1));  // diagonal
      }
    }
  EXPECT_EQ(hatched, kTileSide * kTileSide / 4);
}

TEST(Relief, PlacesWithoutARasterArePlain) {
  for (const bool relief : {true, false})
    for (const Rgb colour :
         shadeTile(ground([](int, int) { return kTerrainOutside; }), kMetresPerPixel, {0, 1000}, relief))
      ASSERT_EQ(colour, kOutsideColour);
}

TEST(Relief, SlopesBesideGapsAreThoseOfTheGround) {
  for (const float gap : {kTerrainVoid, kTerrainOutside, kNan, kInfinite, -kInfinite}) {
    std::vector<float> heights = ground([](int x, int y) { return 3.0 * x - 2.0 * y; });
    for (int y = 20; y < 30; ++y)
      for (int x = 40; x < 47; ++x) at(heights, x, y) = gap;
    at(heights, 100, 100) = gap;
    for (int x = -1; x <= kTileSide; ++x) at(heights, x, kTileSide) = gap;  // nothing to the south
    const std::vector<Rgb> pixels = shadeTile(heights, kMetresPerPixel, kAllLight);
    const Rgb expected = pixel(pixels, 200, 200);
    for (int y = 0; y < kTileSide; ++y)
      for (int x = 0; x < kTileSide; ++x) {
        const bool missing = (x >= 40 && x < 47 && y >= 20 && y < 30) || (x == 100 && y == 100);
        const Rgb found = pixel(pixels, x, y);
        const Rgb hatch = (x + y) % 8 < 2 ? kVoidHatch : kVoidColour;
        ASSERT_EQ(found, !missing                 ? expected
                         : gap == kTerrainOutside ? kOutsideColour
                                                  : hatch)
            << gap << ' ' << x << ' ' << y;
      }
  }
}

TEST(Relief, HeightAllAloneIsLevelGround) {
  std::vector<float> heights = ground([](int, int) { return kTerrainVoid; });
  at(heights, 50, 60) = 500;
  EXPECT_EQ(pixel(shadeTile(heights, kMetresPerPixel, {0, 1000}), 50, 60), colourOf(500, {0, 1000}));
}

TEST(Relief, AnyNumbersGiveAPicture) {
  for (const double metresPerPixel : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), 1e-300, 1e300})
    for (const HeightScale& scale : {HeightScale{0, 0}, {500, -500}, {-1e308, 1e308}, {kNan, kNan}}) {
      const std::vector<Rgb> pixels = shadeTile(
          ground([](int x, int y) { return (x + y) % 3 == 0 ? 3e38 : -3e38; }), metresPerPixel, scale);
      for (const Rgb colour : pixels) ASSERT_EQ(colour >> 24U, 0xffU);
    }
}

TEST(Relief, AnotherNumberOfHeightsThanATilesIsRefused) {
  EXPECT_THROW(shadeTile({}, 30, {0, 1000}), std::invalid_argument);
  EXPECT_THROW(shadeTile(std::vector<float>(256 * 256), 30, {0, 1000}), std::invalid_argument);
}

TEST(HeightRange, LeavesOutWhatIsNoHeight) {
  std::vector<float> heights(1000, kTerrainVoid);
  EXPECT_FALSE(heightRange(heights).any);
  EXPECT_FALSE(heightRange({}).any);
  heights[3] = kTerrainOutside;
  heights[4] = kNan;
  heights[5] = kInfinite;
  heights[700] = 12;
  heights[999] = -430;  // behind the last whole group
  const HeightRange range = heightRange(heights);
  EXPECT_TRUE(range.any);
  EXPECT_EQ(range.lowest, -430);
  EXPECT_EQ(range.highest, 12);
}

TEST(Tile, GridIsAtTheCentresOfItsPixelsAndOneMoreEachWay) {
  const TileId tile{3, 2, 5};
  const std::vector<double> latitudes = tileLatitudes(tile), longitudes = tileLongitudes(tile);
  ASSERT_EQ(latitudes.size(), static_cast<std::size_t>(kTileGrid));
  ASSERT_EQ(longitudes.size(), static_cast<std::size_t>(kTileGrid));
  for (const int pixel : {0, 100, 255}) {
    const Position expected = positionOfWorld({(2 + (pixel + 0.5) / 256) / 8, (5 + (pixel + 0.5) / 256) / 8});
    EXPECT_NEAR(longitudes[static_cast<std::size_t>(pixel + kTileMargin)], expected.longitude, 1e-10);
    EXPECT_NEAR(latitudes[static_cast<std::size_t>(pixel + kTileMargin)], expected.latitude, 1e-10);
  }
  EXPECT_TRUE(std::is_sorted(longitudes.begin(), longitudes.end()));
  EXPECT_TRUE(std::is_sorted(latitudes.rbegin(), latitudes.rend()));
}

TEST(Tile, NeighboursShareTheirMargins) {
  const std::vector<double> west = tileLongitudes({12, 100, 7}), east = tileLongitudes({12, 101, 7});
  EXPECT_NEAR(west[kTileSide + kTileMargin], east[kTileMargin], 1e-12);
  const std::vector<double> north = tileLatitudes({12, 100, 1500}), south = tileLatitudes({12, 100, 1501});
  EXPECT_NEAR(north[kTileSide + kTileMargin], south[kTileMargin], 1e-12);
}

TEST(Tile, RowsKeepTheirOrderOverTheWorldsEdge) {
  for (const TileId tile : {TileId{0, 0, 0}, {19, 5, 0}, {19, 5, (1 << 19) - 1}}) {
    const std::vector<double> latitudes = tileLatitudes(tile);
    for (std::size_t i = 0; i + 1 < latitudes.size(); ++i) ASSERT_GT(latitudes[i], latitudes[i + 1]);
  }
}

TEST(Tile, MetresPerPixelAreThoseOfAFrameThere) {
  const TileId tile{11, 544, 801};
  MapFrame frame(256, 256);
  frame.setLevel(11);
  frame.setCentre(positionOfWorld({544.5 / 2048, 801.5 / 2048}));
  EXPECT_NEAR(tileMetresPerPixel(tile), frame.metresPerPixel(), 1e-9);
}

}  // namespace
}  // namespace zel::host
