// What the map looks like.
#include <QElapsedTimer>
#include <QPaintEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "map_fixture.h"
#include "map_view/ground_painter.h"
#include "map_view/map_overlays.h"

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
  const auto path = writeRaster(folder, [](int, int column) { return column <= 30 ? 500 : 700; });
  plan_ = {};
  options_ = bare();
  options_.heightScale = HeightScale{0, 1000};
  showMap(terrainOf(path.string()));
  const QImage shown = picture();
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 10.25})), colourOf(500, {0, 1000}), 2));
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 10.75})), colourOf(700, {0, 1000}), 2));
  EXPECT_TRUE(near(shown.pixel(pixelOf(Position{10.5, 11.05})), kOutsideColour, 2));
}

TEST_F(MapPicture, VoidsAreShownAsVoidsAndTheLegendNamesThem) {
  const test::TemporaryFolder folder;
  const auto path = writeRaster(folder, [](int row, int) { return row < 30 ? kNoHeight : 500; });
  plan_ = {};
  options_ = bare();
  MapView& map = showMap(terrainOf(path.string()));
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
  const auto path = writeRaster(folder, [](int, int column) { return 20 * column; });
  plan_ = {};
  MapView& map = showMap(terrainOf(path.string()), 400, 300);
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
  options_ = bare();
  MapView& map = showBundled();
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
  options_ = bare();
  MapView& map = showBundled(400, 300);
  const QRgb ring = qRgb(0xff, 0xb7, 0x03);
  EXPECT_EQ(count(picture(), around(pixelOf(StationId{1}), 13), ring, 30), 0);
  map.setSelection({{1}, {}});
  settle();
  EXPECT_GT(count(picture(), around(pixelOf(StationId{1}), 13), ring, 30), 30);
}

TEST_F(MapPicture, ALinkRunsBetweenItsStationsAndAChosenOneStandsOut) {
  options_ = bare();
  MapView& map = showBundled(400, 300);
  const QPoint middle = (pixelOf(StationId{1}) + pixelOf(StationId{2})) / 2;
  const int white = count(picture(), around(middle, 8), qRgb(255, 255, 255), 40);
  EXPECT_GT(white, 10);  // the casing
  map.setSelection({{}, {1}});
  settle();
  EXPECT_GT(count(picture(), around(middle, 8), qRgb(20, 26, 32), 30), 20);  // the dark rim
}

TEST_F(MapPicture, NothingIsDrawnOfStationsFarOutside) {
  plan_.stations[3] = {"Far", {-36.4, 95.6}, 30};
  MapView& map = showBundled(400, 300);
  map.fit({36.2, -84.4, 36.4, -84.1});
  settle();
  EXPECT_TRUE(map.settled());
}

TEST_F(MapPicture, TheCrossIsShownWhileTheMapHasTheFocusByKeyboard) {
  options_ = bare();
  MapView& map = showBundled();
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

// Three links of some 66 km over a plain with a ridge across it, which leaves the southern one blocked, the
// middle one marginal and the northern one clear.
class LinkedMap : public MapTest {
 protected:
  static constexpr QRgb kRed = qRgb(0xc8, 0x1e, 0x1e), kOrange = qRgb(0xd0, 0x6a, 0x00),
                        kGreen = qRgb(0x00, 0x79, 0x6b);

  MapView& showLinks() {
    const auto path = writeRaster(folder_, [](int row, int column) {
      if (column != kPosts / 2) return 100;
      return row >= 38 ? 400 : row >= 23 ? 200 : 100;
    });
    plan_ = {};
    for (StationId link = 1; link <= 3; ++link) {
      const double latitude = 10 + 0.25 * static_cast<double>(link);
      plan_.stations[2 * link] = {"West", {latitude, 10.2}, 200};
      plan_.stations[2 * link + 1] = {"East", {latitude, 10.8}, 200};
      plan_.links[link] = {2 * link, 2 * link + 1, {}};
    }
    options_ = bare();
    options_.heightScale = HeightScale{0, 1000};
    const auto terrain = terrainOf(path.string());
    MapView& map = showMap(terrain);
    compute(terrain);
    const PathVerdict expected[] = {PathVerdict::kBlocked, PathVerdict::kMarginal, PathVerdict::kClear};
    for (LinkId link = 1; link <= 3; ++link) {
      EXPECT_EQ(analysis_->find(link)->verdict, expected[link - 1]) << analysis_->find(link)->error;
    }
    return map;
  }
  QPoint worst(LinkId link) const { return pixelOf(analysis_->find(link)->worst->position); }
  // A fifth of the way along, where none of the links has an obstacle.
  QPoint faultless(LinkId link) const {
    return pixelOf(Position{10 + 0.25 * static_cast<double>(link), 10.32});
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(LinkedMap, TheVerdictOfALinkIsSeenWhereverOneLooksAtIt) {
  showLinks();
  const QImage shown = picture();
  // Filled, hollow, none: not by the colour alone.
  const auto inTriangle = [this](LinkId link) { return around(worst(link) - QPoint(0, 10), 1); };
  EXPECT_EQ(count(shown, inTriangle(1), kRed, 4), 9);
  EXPECT_EQ(count(shown, inTriangle(2), qRgb(255, 255, 255), 4), 9);
  EXPECT_GT(count(shown, around(worst(2) - QPoint(0, 8), 6), kOrange, 20), 15);
  EXPECT_EQ(count(shown, inTriangle(3), kRed, 40) + count(shown, inTriangle(3), qRgb(255, 255, 255), 40), 0);
  // Far from the obstacle the line is a clear one, with the verdict's tint around it.
  const auto reddish = [&](LinkId link) {
    int found = 0;
    const QRect where = around(faultless(link), 5);
    for (int y = where.top(); y <= where.bottom(); ++y) {
      for (int x = where.left(); x <= where.right(); ++x) {
        found += qRed(shown.pixel(x, y)) > qGreen(shown.pixel(x, y)) + 3;
      }
    }
    return found;
  };
  for (LinkId link = 1; link <= 3; ++link) {
    EXPECT_GT(count(shown, around(faultless(link), 5), kGreen, 20), 10);
    EXPECT_EQ(reddish(link) > 5, link != 3) << "link " << link << ": " << reddish(link);
  }
}

TEST_F(LinkedMap, AnObstructedStretchIsDashedInItsVerdictsColour) {
  MapView& map = showLinks();
  for (const auto& [link, colour] : {std::pair{LinkId{1}, kRed}, std::pair{LinkId{2}, kOrange}}) {
    const auto kind = link == 1 ? LinkStretch::Kind::kBlocked : LinkStretch::Kind::kMarginal;
    const auto& stretches = analysis_->find(link)->stretches;
    const auto stretch = std::find_if(stretches.begin(), stretches.end(),
                                      [kind](const LinkStretch& one) { return one.kind == kind; });
    ASSERT_NE(stretch, stretches.end());
    const Position from = stretch->positions.front(), to = stretch->positions.back();
    map.fit({from.latitude - 0.001, from.longitude, from.latitude + 0.001, to.longitude});
    settle();
    const QImage shown = picture();
    const QPoint start = pixelOf(from), end = pixelOf(to);
    ASSERT_GT(end.x() - start.x(), 100);
    int changes = 0;
    bool before = false;
    for (int x = start.x(); x < end.x(); ++x) {
      const bool coloured = near(shown.pixel(x, start.y()), colour, 30);
      changes += coloured != before;
      before = coloured;
    }
    EXPECT_GT(changes, 10) << "link " << link;
  }
}

TEST_F(LinkedMap, AmongHundredsOfLinksEachIsDrawnAsItsVerdict) {
  MapView& map = showLinks();
  for (LinkId link = 4; link < 304; ++link) plan_.links[link] = {4, 5, {}};  // one over the other
  map.planChanged();
  settle();
  const QImage shown = picture();
  const QPoint from = faultless(1);
  const QRect along(from - QPoint(20, 1), QSize(40, 3));
  EXPECT_GT(count(shown, along, kRed, 30), 10);  // thin, from end to end
  EXPECT_EQ(count(shown, along, kGreen, 30), 0);
  EXPECT_EQ(count(shown, around(worst(1) - QPoint(0, 10), 1), kRed, 4), 9);  // its triangle
}

// Texts as they are handed to a device, in their order.
class TextRecorder final : public QPaintDevice {
 public:
  QStringList texts;

  QPaintEngine* paintEngine() const override { return &engine_; }

 protected:
  int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
      case PdmWidth:
      case PdmHeight:
        return 2000;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return 96;
      case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
      default:
        return 1;
    }
  }

 private:
  class Engine final : public QPaintEngine {
   public:
    explicit Engine(TextRecorder& owner) : QPaintEngine(AllFeatures), owner_(owner) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawPath(const QPainterPath&) override {}
    void drawTextItem(const QPointF&, const QTextItem& item) override { owner_.texts.append(item.text()); }
    Type type() const override { return User; }

   private:
    TextRecorder& owner_;
  };
  mutable Engine engine_{*this};
};

std::string legendTexts(MapFrame frame, const LegendWish& wish, QRectF* place = nullptr) {
  TextRecorder recorder;
  QPainter painter(&recorder);
  painter.setFont(QApplication::font());
  const QRectF taken = paintLegend(painter, frame, wish);
  if (place != nullptr) *place = taken;
  painter.end();
  return recorder.texts.join(u'|').toStdString();
}

TEST_F(MapPicture, TheLegendNamesHeightsWhatHasNoneAndLinks) {
  LegendWish wish{{0, 2000}, false, true, true, true, {true, true, true, true}};
  EXPECT_EQ(legendTexts({800, 600}, wish),
            "0 m|500 m|1,000 m|1,500 m|2,000 m|No height|No terrain|Blocked link|Marginal link|Clear link|No "
            "verdict");
  wish.imperial = true;
  wish.voids = wish.outside = false;
  wish.verdicts = {true, false, false, false};
  EXPECT_EQ(legendTexts({800, 600}, wish),
            "0 ft|1,000 ft|2,000 ft|3,000 ft|4,000 ft|5,000 ft|6,000 ft|Clear link");
  wish.heights = false;
  EXPECT_EQ(legendTexts({800, 600}, wish), "Clear link");
  wish.verdicts = {};
  EXPECT_EQ(legendTexts({800, 600}, wish), "");
}

TEST_F(MapPicture, ALowMapHasAShorterLegendWithinIt) {
  const LegendWish wish{{0, 2000}, false, true, true, true, {true, true, true, true}};
  std::size_t before = 1000;
  for (const double height : {600.0, 240.0, 180.0, 140.0, 100.0}) {
    QRectF place;
    const std::string texts = legendTexts({500, height}, wish, &place);
    EXPECT_TRUE(QRectF(0, 0, 500, height).contains(place)) << height;
    EXPECT_NE(texts.find("2,000 m"), std::string::npos) << height;  // heights to the last
    EXPECT_LE(texts.size(), before) << height;
    before = texts.size();
  }
  EXPECT_EQ(legendTexts({500, 100}, wish).find("link"), std::string::npos);
  EXPECT_EQ(legendTexts({500, 40}, wish), "");
  EXPECT_EQ(legendTexts({150, 600}, wish), "");  // it would take most of the width
}

TEST_F(MapPicture, TheScaleBarsLengthIsGroupedAsTheHeightsAre) {
  MapFrame frame(1000, 600);
  frame.setMetresPerPixel(20'000);
  TextRecorder recorder;
  QPainter painter(&recorder);
  paintScaleBar(painter, frame, true, false, QStringLiteral("No terrain"));
  painter.end();
  EXPECT_EQ(recorder.texts.join(u'|').toStdString(), "2,000 km|No terrain");
}

// Columns of a picture in which something is drawn in a row.
std::vector<int> drawnColumns(const QImage& picture, int row) {
  std::vector<int> columns;
  for (int x = 0; x < picture.width(); ++x) {
    if (picture.pixel(x, row) == qRgb(255, 255, 255)) continue;
    if (columns.empty() || x > columns.back() + 2) columns.push_back(x);
  }
  return columns;
}

TEST_F(MapPicture, OutlinesCrossTheDateLineAndGoAroundTheWorld) {
  MapFrame frame(800, 600);
  frame.setLevel(1);  // the world is 512 pixels wide
  frame.setCentre({0, 180});
  const auto columns = [&frame](const TerrainExtent& extent) {
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    paintCoverage(painter, frame, {{"raster", extent, 0.01}});
    painter.end();
    std::vector<int> all;
    for (int row = 296; row <= 304; ++row) {  // the line has gaps
      for (const int column : drawnColumns(picture, row)) all.push_back(column);
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end(), [](int a, int b) { return b - a <= 2; }), all.end());
    return all;
  };
  for (const double west : {150.0, -210.0}) {  // 60 degrees: 85 pixels
    const std::vector<int> sides = columns({-20, west, 20, west + 60});
    ASSERT_EQ(sides.size(), 2U);
    EXPECT_NEAR(sides[0], 400 - 42.7, 2);
    EXPECT_NEAR(sides[1], 400 + 42.7, 2);
  }
  const std::vector<int> world = columns({-80, -180, 80, 180});
  ASSERT_FALSE(world.empty());
  for (const int column : world) {
    const double fromDateLine = std::abs(column - 400.0);
    EXPECT_TRUE(fromDateLine < 2 || std::abs(fromDateLine - 256) < 3) << column;
  }
}

TEST_F(MapPicture, ARasterTooSmallToBeSeenHasABox) {
  options_ = bare();
  const QRgb outline = qRgb(106, 27, 154);
  plan_ = {};
  MapView& map = showBundled(400, 300);
  EXPECT_EQ(count(picture(), map.rect(), outline), 0);
  map.zoomBy(-8);  // a third of a degree is 2 pixels
  settle();
  EXPECT_GT(count(picture(), around(pixelOf(Position{36.3, -84.25}), 9), outline, 60), 30);
}

// A post of the bundled raster is 15 pixels there: what is finer comes from the lines and texts.
TEST_F(MapPicture, OnAScreenOfTwiceThePixelsEachOfThemIsDrawn) {
  MapView& map = showBundled(400, 300);
  EXPECT_EQ(tilesOf(map.frame(), 2).front().tile.level, tilesOf(map.frame(), 1).front().tile.level + 1);
  QImage fine(800, 600, QImage::Format_RGB32);
  fine.setDevicePixelRatio(2);
  const auto paint = [&] {
    map.render(&fine);
    QCoreApplication::processEvents();
  };
  paint();
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        paint();
        return map.settled();
      },
      kPatienceMs));
  paint();
  // Were it drawn for one pixel and enlarged, the four of each square would be one.
  const auto parted = [&fine](const QRect& where) {
    int squares = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
      for (int x = where.left(); x <= where.right(); ++x) {
        const QRgb first = fine.pixel(2 * x, 2 * y);
        squares += first != fine.pixel(2 * x + 1, 2 * y) || first != fine.pixel(2 * x, 2 * y + 1) ||
                   first != fine.pixel(2 * x + 1, 2 * y + 1);
      }
    }
    return squares;
  };
  const QPoint station = pixelOf(StationId{1});
  EXPECT_GT(parted(around(station, 5)), 20);                                      // the symbol's rim
  EXPECT_GT(parted(QRect(station + QPoint(8, -6), QSize(50, 12))), 100);          // its name
  EXPECT_GT(parted(QRect(pixelOf(Position{36.3, -84.3}), QSize(60, 40))), 1200);  // half of the ground
}

// How long a frame takes with so many stations, each linked to the one before: the quickest of several, in
// ms.
class CrowdedMap : public MapTest {
 protected:
  double quickestFrame(StationId stations) {
    map_.reset();
    plan_ = {};
    for (StationId i = 0; i < stations; ++i) {
      plan_.stations[i + 1] = {
          "Site " + std::to_string(i), {36.17 + 0.0027 * (i / 100), -84.41 + 0.0033 * (i % 100)}, 30};
      if (i > 0) plan_.links[i] = {i, i + 1, {}};
    }
    MapView& map = showMap(nullptr, 1280, 800);
    QImage frame(1280, 800, QImage::Format_RGB32);
    double quickest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 8; ++i) {
      map.panBy(5, 3);
      QElapsedTimer clock;
      clock.start();
      map.render(&frame);
      quickest = std::min(quickest, static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    return quickest;
  }
};

TEST_F(CrowdedMap, TheTimeOfAFrameGrowsNoFasterThanStationsAndLinks) {
  const double few = quickestFrame(1'000), many = quickestFrame(10'000);
  RecordProperty("ms_with_10000", std::to_string(many));
  // Ten times, or less, as what is outside costs little. A square would be a hundred. Twice, as the machine
  // may be busy.
  EXPECT_LT(many, 20 * few);
}

TEST_F(MapPicture, ManyTerrainsOneAfterTheOtherDoNoHarm) {
  MapView& map = showBundled(400, 300);
  for (int i = 0; i < 10; ++i) {
    map.setTerrain(i % 3 == 2 ? nullptr : TerrainMap::open(kBundledSource));
    map.zoomBy(i % 2 == 0 ? 1 : -1);
    picture();
  }
  settle();
}

}  // namespace
}  // namespace zel::host
