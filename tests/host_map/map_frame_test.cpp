#include "map/map_frame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "map/link_lines.h"

namespace zel::host {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

MapFrame frameAt(double latitude, double longitude, double level, double width = 1280, double height = 800) {
  MapFrame frame(width, height);
  frame.setCentre({latitude, longitude});
  frame.setLevel(level);
  return frame;
}

TEST(MapFrame, ProjectsAsThePublishedExampleOfTheSphericalMercator) {
  // J. P. Snyder, Map Projections - A Working Manual (1987), p. 266: radius 1, central meridian 180 W,
  // 35 N 75 W gives x = 1.8325957, y = 0.6528366 (to 7 decimals).
  const MapPoint world = worldOf({35, -75});
  EXPECT_NEAR(world.x * 2 * std::numbers::pi, 1.8325957, 5e-8);
  EXPECT_NEAR((0.5 - world.y) * 2 * std::numbers::pi, 0.6528366, 5e-8);
}

TEST(MapFrame, ProjectsAsThePublishedExampleForTheRadiusOfTheEllipsoidsEquator) {
  // IOGP Guidance Note 373-7-2, popular visualisation pseudo-Mercator: 24-22-54.433 N, 100-20 W gives
  // E = -11169055.58 m, N = 2800000.00 m (to 1 cm).
  constexpr double kAround = 2 * std::numbers::pi * 6378137;  // metres
  const MapPoint world = worldOf({24 + 22 / 60.0 + 54.433 / 3600, -(100 + 20 / 60.0)});
  EXPECT_NEAR((world.x - 0.5) * kAround, -11169055.58, 0.01);
  EXPECT_NEAR((0.5 - world.y) * kAround, 2800000.00, 0.02);
}

TEST(MapFrame, PositionsAndPixelsAreInversesOfEachOther) {
  constexpr unsigned kSeed = 7;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> latitude(-85, 85), longitude(-180, 180), level(0, 19.2), part(0, 1);
  for (int i = 0; i < 2000; ++i) {
    const MapFrame frame = frameAt(latitude(random), longitude(random), level(random));
    const double side = std::min(frame.worldPixels(), 800.0);
    const MapPoint pixel{640 + (part(random) - 0.5) * side, 400 + (part(random) - 0.5) * side};
    const Position position = frame.positionOf(pixel);
    if (std::abs(position.latitude) >= kMapLatitudeLimit) continue;  // off the world
    const MapPoint again = frame.pixelOf(position);
    // Exact but for the digits of a double: the world is up to 1.6e8 pixels wide.
    EXPECT_NEAR(again.x, pixel.x, 1e-6);
    EXPECT_NEAR(again.y, pixel.y, 1e-6);
    EXPECT_GE(position.longitude, -180);
    EXPECT_LT(position.longitude, 180);
  }
}

TEST(MapFrame, WorldSquareEndsWhereItIsASquare) {
  // The latitude at which the projection is as high as half of its width: atan(sinh(pi)).
  EXPECT_NEAR(kMapLatitudeLimit, std::atan(std::sinh(std::numbers::pi)) * 180 / std::numbers::pi, 1e-12);
  EXPECT_EQ(worldOf({kMapLatitudeLimit, 0}).y, 0);
  EXPECT_EQ(worldOf({-kMapLatitudeLimit, 0}).y, 1);
}

TEST(MapFrame, PolesAreAtTheWorldsEdge) {
  EXPECT_EQ(worldOf({90, 10}).y, 0);
  EXPECT_EQ(worldOf({-90, 10}).y, 1);
  EXPECT_EQ(positionOfWorld({0.5, -3}).latitude, kMapLatitudeLimit);
  EXPECT_EQ(positionOfWorld({0.5, 3}).latitude, -kMapLatitudeLimit);
  MapFrame frame(100, 100);
  frame.setCentre({90, 0});
  EXPECT_NEAR(frame.centre().latitude, kMapLatitudeLimit, 1e-12);
}

TEST(MapFrame, LongitudesComeFrom180WestUpTo180East) {
  EXPECT_EQ(positionOfWorld({1, 0.5}).longitude, -180);
  EXPECT_EQ(positionOfWorld({-0.25, 0.5}).longitude, 90);
  EXPECT_EQ(positionOfWorld({-1e-18, 0.5}).longitude, -180);
  MapFrame frame(100, 100);
  frame.setCentre({0, 540});
  EXPECT_EQ(frame.centre().longitude, -180);
}

TEST(MapFrame, PlaceIsShownAtTheTurnNearestToTheCentre) {
  const MapFrame frame = frameAt(0, 179, 5);
  const double perDegree = frame.worldPixels() / 360;
  EXPECT_NEAR(frame.pixelOf({0, -179}).x, 640 + 2 * perDegree, 1e-9);
  EXPECT_NEAR(frame.pixelOf({0, 177}).x, 640 - 2 * perDegree, 1e-9);
  EXPECT_NEAR(frame.pixelOf({0, -181}).x, 640, 1e-9);
}

TEST(MapFrame, MetresPerPixelAreTrueAtTheCentresLatitude) {
  EXPECT_DOUBLE_EQ(frameAt(0, 0, 0).metresPerPixel(), kFarthestMetresPerPixel);
  EXPECT_NEAR(frameAt(60, 0, 3).metresPerPixel(), kFarthestMetresPerPixel / 16, 1e-9);  // cos 60 = 1/2
  // The equator's length in the world square's pixels: 2 pi 6378137 m / 256.
  EXPECT_NEAR(kFarthestMetresPerPixel, 2 * std::numbers::pi * 6378137 / 256, 1e-4);
  MapFrame frame = frameAt(36.3, -84.2, 4);
  frame.setMetresPerPixel(30);
  EXPECT_NEAR(frame.metresPerPixel(), 30, 1e-9);
}

TEST(MapFrame, LevelIsKeptBetweenTheFarthestAndTheClosestView) {
  MapFrame frame(100, 100);
  frame.setLevel(-5);
  EXPECT_EQ(frame.level(), 0);
  frame.setLevel(1000);
  EXPECT_NEAR(frame.metresPerPixel(), kClosestMetresPerPixel, 1e-12);
  frame.setMetresPerPixel(1e12);
  EXPECT_EQ(frame.level(), 0);
}

TEST(MapFrame, ZoomKeepsThePlaceUnderThePointer) {
  MapFrame frame = frameAt(45, 6, 9.3);
  const MapPoint pointer{1000, 100};
  const Position before = frame.positionOf(pointer);
  for (const double levels : {0.5, 3.0, -1.25, 7.0}) {
    frame.zoomBy(levels, pointer);
    EXPECT_NEAR(frame.positionOf(pointer).latitude, before.latitude, 1e-9);
    EXPECT_NEAR(frame.positionOf(pointer).longitude, before.longitude, 1e-9);
  }
}

TEST(MapFrame, ZoomAtItsLimitMovesNothing) {
  MapFrame frame = frameAt(45, 6, 100);
  const MapFrame before = frame;
  frame.zoomBy(2, {3, 4});
  EXPECT_EQ(frame, before);
}

TEST(MapFrame, PanMovesTheContentByThePixels) {
  MapFrame frame = frameAt(45, 179.9, 8);
  const Position place{45.2, -179.8};
  const MapPoint before = frame.pixelOf(place);
  frame.panBy(-300, 40);
  EXPECT_NEAR(frame.pixelOf(place).x, before.x - 300, 1e-6);
  EXPECT_NEAR(frame.pixelOf(place).y, before.y + 40, 1e-6);
}

TEST(MapFrame, PanEndsWhereTheWorldsEdgeIsInTheMiddle) {
  MapFrame frame = frameAt(80, 0, 3);
  frame.panBy(0, 1e9);
  EXPECT_NEAR(frame.centre().latitude, kMapLatitudeLimit, 1e-9);
}

TEST(MapFrame, ResizeKeepsCentreAndScale) {
  MapFrame frame = frameAt(36.3, -84.2, 11);
  const Position centre = frame.centre();
  frame.resize(300, 200);
  EXPECT_EQ(frame.centre(), centre);
  EXPECT_EQ(frame.level(), 11);
  EXPECT_EQ(frame.width(), 300);
  EXPECT_NEAR(frame.pixelOf(centre).x, 150, 1e-9);
}

TEST(MapFrame, ValuesThatAreNotFiniteChangeNothing) {
  MapFrame frame = frameAt(45, 6, 9);
  const MapFrame before = frame;
  for (const double bad : {kNan, kInfinite, -kInfinite}) {
    frame.setCentre({bad, 6});
    frame.setCentre({45, bad});
    frame.panBy(bad, 0);
    frame.panBy(0, bad);
    frame.zoomBy(bad, {0, 0});
    frame.zoomBy(1, {bad, 0});
    frame.fit({bad, 0, 1, 1}, 0);
    frame.fit({0, 0, 1, bad}, 0);
    if (!(bad > 0)) frame.setMetresPerPixel(bad);
  }
  frame.setLevel(kNan);
  // An infinite latitude is beyond the limit as any other is.
  frame.setCentre(before.centre());
  EXPECT_NEAR(frame.centre().latitude, 45, 1e-9);
  EXPECT_NEAR(frame.centre().longitude, 6, 1e-9);
  EXPECT_EQ(frame.level(), before.level());
  EXPECT_TRUE(std::isnan(frame.pixelOf({45, kNan}).x));
  EXPECT_TRUE(std::isnan(frame.positionOf({kNan, 0}).longitude));
}

TEST(MapFrame, SizesAreFromOneToAMillionPixels) {
  for (const double size : {0.0, -5.0, kNan}) EXPECT_EQ(MapFrame(size, size).width(), 1);
  EXPECT_EQ(MapFrame(kInfinite, 10).width(), 1e6);
  EXPECT_TRUE(std::isfinite(MapFrame(0, kInfinite).extent().south));
}

void expectSeen(const MapFrame& frame, const TerrainExtent& extent, double margin) {
  const MapPoint first = frame.pixelOf({extent.north, extent.west});
  const MapPoint last = frame.pixelOf({extent.south, extent.east});
  EXPECT_GE(first.x, margin - 1e-6);
  EXPECT_GE(first.y, margin - 1e-6);
  EXPECT_LE(last.x, frame.width() - margin + 1e-6);
  EXPECT_LE(last.y, frame.height() - margin + 1e-6);
  // One of the directions is filled.
  const double across = last.x - first.x, down = last.y - first.y;
  EXPECT_NEAR(std::max(across - (frame.width() - 2 * margin), down - (frame.height() - 2 * margin)), 0, 1e-6);
}

TEST(MapFrame, FitShowsTheWholeExtentWithItsMargin) {
  MapFrame frame(1280, 800);
  for (const TerrainExtent& extent :
       {TerrainExtent{36, -84.6, 36.5, -84}, {42, 1, 43, 2}, {-60, -20, 70, -10}, {10, 0, 10.001, 30}}) {
    frame.fit(extent, 20);
    expectSeen(frame, extent, 20);
  }
}

TEST(MapFrame, FitCrossesTheMeridianOppositeToGreenwich) {
  MapFrame frame(1280, 800);
  frame.fit({-20, 176, -15, 184}, 10);
  EXPECT_NEAR(frame.centre().longitude, -180, 1e-9);
  expectSeen(frame, {-20, 176, -15, 184}, 10);
  EXPECT_NEAR(frame.pixelOf({-17, -176}).x, frame.pixelOf({-17, 184}).x, 1e-6);
  MapFrame same(1280, 800);
  same.fit({-20, 176, -15, -176}, 10);  // as people write it
  EXPECT_EQ(same, frame);
}

TEST(MapFrame, FitOfAPointHasASensibleScale) {
  MapFrame frame(1280, 800);
  frame.fit({36.3, -84.2, 36.3, -84.2}, 40);
  EXPECT_NEAR(frame.metresPerPixel(), 20, 1e-9);
  EXPECT_NEAR(frame.centre().latitude, 36.3, 1e-9);
}

TEST(MapFrame, FitOfALineIsAsWideAsTheLine) {
  MapFrame frame(1280, 800);
  frame.fit({36.3, -84.6, 36.3, -84}, 40);
  EXPECT_NEAR(frame.pixelOf({36.3, -84.6}).x, 40, 1e-6);
  frame.fit({36, -84.2, 36.5, -84.2}, 40);
  EXPECT_NEAR(frame.pixelOf({36.5, -84.2}).y, 40, 1e-6);
}

TEST(MapFrame, FitOfTheWholeEarthAndWithLargeMarginsStaysWithinItsLimits) {
  MapFrame frame(1280, 800);
  frame.fit({-90, -180, 90, 180}, 0);
  EXPECT_NEAR(frame.worldPixels(), 800, 1e-6);
  frame.fit({-90, -180, 90, 540}, 1e9);
  EXPECT_NEAR(frame.worldPixels(), 400, 1e-6);  // a margin leaves half of the frame
  MapFrame tiny(1, 1);
  tiny.fit({-90, -180, 90, 180}, 50);
  EXPECT_EQ(tiny.level(), 0);
}

TEST(MapFrame, ExtentIsWhatItsCornersSee) {
  const MapFrame frame = frameAt(36.3, -84.2, 11);
  const TerrainExtent extent = frame.extent();
  const Position first = frame.positionOf({0, 0}), last = frame.positionOf({1280, 800});
  EXPECT_NEAR(extent.north, first.latitude, 1e-9);
  EXPECT_NEAR(extent.west, first.longitude, 1e-9);
  EXPECT_NEAR(extent.south, last.latitude, 1e-9);
  EXPECT_NEAR(extent.east, last.longitude, 1e-9);
}

TEST(MapFrame, ExtentGoesOnBeyond180AndAtMostOnceAround) {
  const TerrainExtent crossing = frameAt(0, 179.9, 8).extent();
  EXPECT_GT(crossing.west, 170);
  EXPECT_GT(crossing.east, 180);
  const TerrainExtent all = frameAt(0, 30, 0).extent();
  EXPECT_NEAR(all.west, -150, 1e-9);
  EXPECT_NEAR(all.east, 210, 1e-9);
  EXPECT_NEAR(all.north, kMapLatitudeLimit, 1e-12);
  EXPECT_NEAR(all.south, -kMapLatitudeLimit, 1e-12);
}

// ---- Lines ----

double lengthOf(const PixelLine& line) {
  double length = 0;
  for (std::size_t i = 0; i + 1 < line.points.size(); ++i)
    length += std::hypot(line.points[i + 1].x - line.points[i].x, line.points[i + 1].y - line.points[i].y);
  return length;
}

TEST(LinkLines, SeenLineIsOnePieceThroughItsPlaces) {
  const MapFrame frame = frameAt(36.3, -84.2, 11);
  const std::vector<Position> path{{36.25, -84.3}, {36.3, -84.2}, {36.31, -84.1}};
  const std::vector<PixelLine> lines = pixelLines(frame, path, 0);
  ASSERT_EQ(lines.size(), 1U);
  ASSERT_EQ(lines[0].points.size(), 3U);
  EXPECT_EQ(lines[0].before, 0);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(lines[0].points[i].x, frame.pixelOf(path[i]).x, 1e-6);
    EXPECT_NEAR(lines[0].points[i].y, frame.pixelOf(path[i]).y, 1e-6);
  }
}

TEST(LinkLines, VeryLongLineCostsNoMoreThanWhatIsSeenOfIt) {
  const MapFrame frame = frameAt(36.3, -84.2, 19);
  const std::vector<PixelLine> lines =
      pixelLines(frame, std::vector<Position>{{36.3, -120}, {36.3, -40}}, 15);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NEAR(lines[0].points.front().x, -15, 1e-6);
  EXPECT_NEAR(lines[0].points.back().x, 1295, 1e-6);
  // Dashes begin at the line's own start: 35.8 degrees of longitude away, and half the frame back.
  EXPECT_NEAR(lines[0].before, 35.8 / 360 * frame.worldPixels() - 640 - 15, 1e-3);
}

TEST(LinkLines, LineThatLeavesAndComesBackIsInPiecesWithTheirDashesInStep) {
  const MapFrame frame = frameAt(0, 0, 8, 100, 100);
  const double degree = frame.worldPixels() / 360;
  // Across the frame, far out to the east, and back across.
  const std::vector<Position> path{{0.1, -3}, {0.1, 3}, {-0.1, 3}, {-0.1, -3}};
  const std::vector<PixelLine> lines = pixelLines(frame, path, 0);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NEAR(lengthOf(lines[0]), 100, 1e-6);
  EXPECT_NEAR(lines[0].before, 3 * degree - 50, 1e-6);
  EXPECT_NEAR(lines[1].before, 9 * degree - 50 + frame.pixelOf(path[2]).y - frame.pixelOf(path[1]).y, 1e-6);
}

TEST(LinkLines, PieceEndsWhereTheLineLeavesThoughTheNextStretchComesBack) {
  const MapFrame frame = frameAt(0, 0, 8, 100, 100);
  const std::vector<PixelLine> lines =
      pixelLines(frame, std::vector<Position>{{0.1, 0}, {0, 3}, {-0.1, 0}}, 0);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NEAR(lines[0].points.back().x, 100, 1e-9);
  EXPECT_NEAR(lines[1].points.front().x, 100, 1e-9);
}

TEST(LinkLines, LineOverTheMeridianOppositeToTheCentreGoesOnAtTheOtherSide) {
  const MapFrame frame = frameAt(0, 0, 0, 1280, 800);  // the world is 256 pixels in the middle
  const std::vector<PixelLine> lines = pixelLines(frame, std::vector<Position>{{10, 170}, {10, -170}}, 0);
  ASSERT_EQ(lines.size(), 2U);
  for (const PixelLine& line : lines) EXPECT_NEAR(lengthOf(line), 10 / 360.0 * 256, 1e-6);
  EXPECT_NEAR(std::max(lines[0].points.back().x, lines[1].points.back().x), 640 + 128, 1e-6);
  EXPECT_NEAR(std::min(lines[0].points.front().x, lines[1].points.front().x), 640 - 128, 1e-6);
}

TEST(LinkLines, LineOver180IsWholeWhereTheFrameIsThere) {
  const MapFrame frame = frameAt(0, 180, 5);
  const std::vector<PixelLine> lines = pixelLines(frame, std::vector<Position>{{0, 179}, {0, -179}}, 0);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NEAR(lengthOf(lines[0]), 2 / 360.0 * frame.worldPixels(), 1e-6);
}

TEST(LinkLines, NothingIsSeenOfLinesElsewhereAndOfPlacesThatAreNone) {
  const MapFrame frame = frameAt(36.3, -84.2, 11);
  EXPECT_TRUE(pixelLines(frame, std::vector<Position>{{50, 3}, {51, 4}}, 10).empty());
  EXPECT_TRUE(pixelLines(frame, std::vector<Position>{{36.3, -84.2}}, 10).empty());
  EXPECT_TRUE(pixelLines(frame, std::vector<Position>{{36.3, -84.2}, {36.3, -84.2}}, 10).empty());
  EXPECT_TRUE(pixelLines(frame, {}, 10).empty());
  // A place that is none parts the line.
  const std::vector<Position> parted{{36.3, -84.2},   {36.31, -84.2}, {kNan, -84.2},
                                     {36.32, -84.19}, {36.33, -84.2}, {36.33, kInfinite}};
  EXPECT_EQ(pixelLines(frame, parted, 0).size(), 2U);
}

TEST(LinkLines, ClippedPiecesStayWithinTheFrameAndTheirLengthIsWhatSamplesOfTheLineFind) {
  constexpr unsigned kSeed = 11;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> around(-0.6, 0.6);
  const MapFrame frame = frameAt(45, 6, 10, 400, 300);
  for (int i = 0; i < 200; ++i) {
    const std::vector<Position> path{{45 + around(random), 6 + around(random)},
                                     {45 + around(random), 6 + around(random)}};
    double seen = 0;
    for (const PixelLine& line : pixelLines(frame, path, 0)) {
      seen += lengthOf(line);
      for (const MapPoint point : line.points) {
        EXPECT_GE(point.x, -1e-6);
        EXPECT_LE(point.x, 400 + 1e-6);
        EXPECT_GE(point.y, -1e-6);
        EXPECT_LE(point.y, 300 + 1e-6);
      }
    }
    const MapPoint from = frame.pixelOf(path[0]), to = frame.pixelOf(path[1]);
    constexpr int kSamples = 1000;
    int inside = 0;
    for (int s = 0; s < kSamples; ++s) {
      const double part = (s + 0.5) / kSamples;
      const double x = from.x + (to.x - from.x) * part, y = from.y + (to.y - from.y) * part;
      inside += x >= 0 && x <= 400 && y >= 0 && y <= 300 ? 1 : 0;
    }
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    EXPECT_NEAR(seen, length * inside / kSamples, length / kSamples + 1e-6);  // a sample more or less
  }
}

TEST(LinkLines, DistanceIsToTheNearestPlaceOfTheLine) {
  const std::vector<MapPoint> corner{{0, 0}, {10, 0}, {10, 10}};
  EXPECT_DOUBLE_EQ(distanceToLine(corner, {5, 3}), 3);
  EXPECT_DOUBLE_EQ(distanceToLine(corner, {13, 14}), 5);  // 3-4-5 beyond the end
  EXPECT_DOUBLE_EQ(distanceToLine(corner, {9, 6}), 1);
  EXPECT_DOUBLE_EQ(distanceToLine(std::vector<MapPoint>{{1, 1}, {1, 1}}, {4, 5}), 5);
  EXPECT_DOUBLE_EQ(distanceToLine(std::vector<MapPoint>{{1, 1}}, {4, 5}), 5);
  EXPECT_EQ(distanceToLine({}, {0, 0}), kInfinite);
  EXPECT_DOUBLE_EQ(distanceToLines(std::vector<PixelLine>{{corner, 0}, {{{20, 0}, {20, 9}}, 0}}, {18, 4}), 2);
  EXPECT_EQ(distanceToLines({}, {0, 0}), kInfinite);
}

TEST(LinkLines, MiddleIsHalfWayAlongTheLongestPieceAndUpright) {
  const std::vector<PixelLine> lines{{{{0, 0}, {1, 0}}, 0}, {{{10, 0}, {4, 0}, {4, -10}}, 0}};
  const LineMiddle middle = middleOf(lines);
  EXPECT_DOUBLE_EQ(middle.at.x, 4);
  EXPECT_DOUBLE_EQ(middle.at.y, -2);
  EXPECT_DOUBLE_EQ(middle.pixels, 16);
  EXPECT_DOUBLE_EQ(middle.angleDeg, 90);  // upwards is turned round
  // From right to left the text still reads from left to right.
  EXPECT_DOUBLE_EQ(middleOf(std::vector<PixelLine>{{{{10, 10}, {0, 0}}, 0}}).angleDeg, 45);
  EXPECT_DOUBLE_EQ(middleOf(std::vector<PixelLine>{{{{10, 0}, {0, 0}}, 0}}).angleDeg, 0);
  EXPECT_EQ(middleOf({}).pixels, 0);
}

}  // namespace
}  // namespace zel::host
