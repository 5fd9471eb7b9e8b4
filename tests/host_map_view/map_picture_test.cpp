// What the map looks like.
#include <QElapsedTimer>
#include <cmath>
#include <set>

#include "map_fixture.h"

namespace zel::host {
namespace {

using MapPicture = MapTest;

bool near(QRgb a, QRgb b, int steps = 12) {
  return std::abs(qRed(a) - qRed(b)) <= steps && std::abs(qGreen(a) - qGreen(b)) <= steps &&
         std::abs(qBlue(a) - qBlue(b)) <= steps;
}
int count(const QImage& picture, const QRect& where, QRgb colour, int steps = 12) {
  int found = 0;
  const QRect within = where.intersected(picture.rect());
  for (int y = within.top(); y <= within.bottom(); ++y) {
    for (int x = within.left(); x <= within.right(); ++x) found += near(picture.pixel(x, y), colour, steps);
  }
  return found;
}
QRect around(QPoint at, int reach) { return {at.x() - reach, at.y() - reach, 2 * reach + 1, 2 * reach + 1}; }

MapOptions bare() {
  MapOptions options;
  options.relief = options.graticule = options.legend = options.scaleBar = options.names = false;
  return options;
}

TEST_F(MapPicture, TheGroundHasTheColoursOfItsHeights) {
  const test::TemporaryFolder folder;
  // 500 m in the west half, 700 m in the east.
  const auto path =
      writeTile(folder, "N10E010.hgt", [](int, int column) { return column <= 600 ? 500 : 700; });
  plan_ = {};
  MapView& map = showMap(terrainOf({path.string()}));
  MapOptions options = bare();
  options.heightScale = HeightScale{0, 1000};
  map.setOptions(options);
  settle();
  const QImage shown = picture();
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 10.25})), colourOf(500, {0, 1000}), 2));
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 10.75})), colourOf(700, {0, 1000}), 2));
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 11.05})), kOutsideColour, 2));
}

TEST_F(MapPicture, VoidsAreShownAsVoidsAndTheLegendNamesThem) {
  const test::TemporaryFolder folder;
  const auto path = writeTile(folder, "N10E010.hgt", [](int row, int) { return row < 600 ? -32768 : 500; });
  plan_ = {};
  MapView& map = showMap(terrainOf({path.string()}));
  map.setOptions(bare());
  MapFrame frame = map.frame();
  frame.setLevel(std::floor(frame.level()));  // where a tile's pixels are the screen's
  map.setFrame(frame);
  settle();
  const QRect north = around(pixelOf(Position{10.75, 10.5}), 30),
              south = around(pixelOf(Position{10.25, 10.5}), 30);
  const QImage shown = picture();
  EXPECT_EQ(count(shown, north, kVoidColour, 2) + count(shown, north, kVoidHatch, 2), 61 * 61);
  EXPECT_GT(count(shown, north, kVoidHatch, 2), 200);
  EXPECT_EQ(count(shown, south, kVoidColour, 2) + count(shown, south, kVoidHatch, 2), 0);
  MapOptions options = bare();
  options.legend = true;
  map.setOptions(options);
  settle();
  const QImage legend = picture();
  EXPECT_GT(count(legend, QRect(650, 400, 150, 200), kVoidColour, 8), 20);
}

TEST_F(MapPicture, TheColourScaleFollowsWhatIsSeenOnceTheMapIsAtRest) {
  const test::TemporaryFolder folder;
  // A plane from 0 m in the west to 1200 m in the east.
  const auto path = writeTile(folder, "N10E010.hgt", [](int, int column) { return column; });
  plan_ = {};
  MapView& map = showMap(terrainOf({path.string()}));
  EXPECT_EQ(map.shownScale(), niceScale(0, 1200, false));
  map.fit({10.45, 10.90, 10.55, 10.98});
  EXPECT_EQ(map.shownScale(), niceScale(0, 1200, false));  // not yet
  settle();
  EXPECT_GT(map.shownScale().lowest, 800);
  const HeightScale close = map.shownScale();
  map.panBy(-30, 0);  // a little further: the scale holds
  settle();
  EXPECT_EQ(map.shownScale(), close);
  MapOptions options;
  options.heightScale = HeightScale{100, 300};
  map.setOptions(options);
  EXPECT_EQ(map.shownScale(), (HeightScale{100, 300}));
  map.fitTerrain();
  settle();
  EXPECT_EQ(map.shownScale(), (HeightScale{100, 300}));
}

TEST_F(MapPicture, CoarserTilesStandInWhileFinerOnesAreOnTheirWay) {
  MapView& map = showBundled();
  map.setOptions(bare());
  settle();
  map.fit({36.29, -84.25, 36.31, -84.22});
  const QImage moving = picture();  // painted before any of the new tiles can have come
  EXPECT_FALSE(map.settled());
  // A few pixels of a light mountain or of a line's casing have that colour, too.
  EXPECT_LT(count(moving, map.rect(), kOutsideColour, 2), 800 * 600 / 100);
}

TEST_F(MapPicture, AMapWithoutTerrainIsBlankAndSaysSo) {
  MapView& map = showMap(nullptr);
  EXPECT_TRUE(near(picture().pixel(20, 300), kOutsideColour, 2));
  EXPECT_TRUE(map.settled());
  map.setTerrain(TerrainMap::open(kBundledSource));
  settle();
  EXPECT_FALSE(near(picture().pixel(pixelOf(Position{36.3, -84.3})), kOutsideColour, 2));
  map.setTerrain(nullptr);
  settle();
  EXPECT_TRUE(near(picture().pixel(20, 300), kOutsideColour, 2));
}

TEST_F(MapPicture, StationsStandWhereTheyAreWithTheirNamesBeside) {
  MapView& map = showBundled();
  MapOptions options = bare();
  map.setOptions(options);
  settle();
  const QImage without = picture();
  EXPECT_TRUE(near(without.pixel(pixelOf(StationId{1})), qRgb(0x12, 0x35, 0x5b), 4));
  options.names = true;
  map.setOptions(options);
  settle();
  const QRect beside(pixelOf(StationId{1}) + QPoint(8, -8), QSize(70, 16));
  EXPECT_NE(picture().copy(beside), without.copy(beside));
}

TEST_F(MapPicture, AChosenStationHasARing) {
  MapView& map = showBundled();
  map.setOptions(bare());
  settle();
  const QRgb ring = qRgb(0xff, 0xb7, 0x03);
  EXPECT_EQ(count(picture(), around(pixelOf(StationId{1}), 13), ring, 30), 0);
  map.setSelection({{1}, {}});
  settle();
  EXPECT_GT(count(picture(), around(pixelOf(StationId{1}), 13), ring, 30), 30);
}

TEST_F(MapPicture, ALinkRunsBetweenItsStationsAndAChosenOneStandsOut) {
  MapView& map = showBundled();
  map.setOptions(bare());
  settle();
  const QPoint middle = (pixelOf(StationId{1}) + pixelOf(StationId{2})) / 2;
  const int white = count(picture(), around(middle, 8), qRgb(255, 255, 255), 40);
  EXPECT_GT(white, 10);  // the casing
  map.setSelection({{}, {1}});
  settle();
  EXPECT_GT(count(picture(), around(middle, 8), qRgb(20, 26, 32), 30), 20);  // the dark rim
}

TEST_F(MapPicture, NothingIsDrawnOfStationsFarOutside) {
  plan_.stations[3] = {"Far", {-36.4, 95.6}, 30};
  MapView& map = showBundled();
  map.fit({36.2, -84.4, 36.4, -84.1});
  settle();
  EXPECT_TRUE(map.settled());
}

TEST_F(MapPicture, TheCrossIsShownWhileTheMapHasTheFocusByKeyboard) {
  MapView& map = showBundled();
  map.setOptions(bare());
  settle();
  const QImage before = picture();
  map.setFocus(Qt::TabFocusReason);
  map.clearFocus();
  map.setFocus(Qt::TabFocusReason);
  settle();
  EXPECT_NE(picture().copy(QRect(380, 280, 40, 40)), before.copy(QRect(380, 280, 40, 40)));
  click({700, 80});
  settle();
  EXPECT_EQ(picture().copy(QRect(380, 280, 40, 40)), before.copy(QRect(380, 280, 40, 40)));
}

TEST_F(MapPicture, TheMapsColoursDoNotFollowADarkPalette) {
  MapView& map = showBundled();
  map.clearFocus();
  settle();
  const QImage light = picture();
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(30, 30, 30));
  dark.setColor(QPalette::WindowText, QColor(230, 230, 230));
  dark.setColor(QPalette::Base, QColor(20, 20, 20));
  dark.setColor(QPalette::Text, QColor(230, 230, 230));
  map.setPalette(dark);
  settle();
  EXPECT_EQ(picture(), light);
}

TEST_F(MapPicture, InTheSmallestSizeTheMapIsStillThere) {
  const MapView& map = showBundled(300, 200);
  EXPECT_EQ(map.minimumSize(), QSize(300, 200));
  EXPECT_TRUE(near(picture().pixel(pixelOf(StationId{1})), qRgb(0x12, 0x35, 0x5b), 4));
}

TEST_F(MapPicture, ALineOverTheDateLineRunsTheShortWay) {
  plan_ = {};
  plan_.stations[1] = {"West", {10, 179.5}, 30};
  plan_.stations[2] = {"East", {10, -179.5}, 30};
  plan_.links[1] = {1, 2, {}};
  MapView& map = showMap(nullptr);
  const QPoint from = pixelOf(StationId{1}), to = pixelOf(StationId{2});
  EXPECT_GT(to.x() - from.x(), 100);  // both are seen, side by side
  EXPECT_LT(to.x() - from.x(), 800);
  click((from + to) / 2);
  EXPECT_EQ(map.selection().links, std::vector<LinkId>{1});
}

TEST_F(MapPicture, TenThousandStationsAndLinksAreDrawnWithinAFrame) {
  plan_ = {};
  for (StationId i = 0; i < 10'000; ++i) {
    plan_.stations[i + 1] = {
        "Site " + std::to_string(i), {36.17 + 0.0027 * (i / 100), -84.41 + 0.0033 * (i % 100)}, 30};
    if (i > 0) plan_.links[i] = {i, i + 1, {}};
  }
  MapView& map = showBundled(1280, 800);
  QImage frame(1280, 800, QImage::Format_RGB32);
  QElapsedTimer clock;
  std::vector<double> times;
  for (int i = 0; i < 20; ++i) {
    map.panBy(5, 3);
    clock.start();
    map.render(&frame);
    times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
  }
  std::sort(times.begin(), times.end());
  RecordProperty("median_ms", std::to_string(times[10]));
  // 20 to 30 ms on a machine with nothing else to do; what matters here is the order of magnitude.
  EXPECT_LT(times[10], 300);
  settle();
}

TEST_F(MapPicture, ManyTerrainsOneAfterTheOtherDoNoHarm) {
  MapView& map = showBundled();
  for (int i = 0; i < 10; ++i) {
    map.setTerrain(i % 3 == 2 ? nullptr : TerrainMap::open(kBundledSource));
    map.zoomBy(i % 2 == 0 ? 1 : -1);
    picture();
  }
  settle();
}

}  // namespace
}  // namespace zel::host
