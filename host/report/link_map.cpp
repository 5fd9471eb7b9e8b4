#include "report/link_map.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "map/link_lines.h"
#include "map_view/ground_painter.h"
#include "map_view/map_overlays.h"
#include "map_view/map_text.h"
#include "map_view/plan_painter.h"
#include "map_view/plan_places.h"

namespace zel::host {
namespace {

constexpr double kEdgeRoom = 44;      // logical pixels around the link, for names and symbols
constexpr double kLegendWidth = 110;  // logical pixels at the right
constexpr double kBarHeight = 30;     // logical pixels at the bottom, for the scale
constexpr double kLineReach = 4, kMarkReach = 9, kMarkTall = 20;  // logical pixels that no name covers
constexpr double kClosestMetres = 1;  // metres a logical pixel: a short link is not drawn larger

// Of a line that is followed the short way round from position to position.
TerrainExtent extentOfLine(const std::vector<Position>& line) {
  TerrainExtent extent{90, 0, -90, 0};
  double last = 0;
  bool any = false;
  for (const Position& position : line) {
    double longitude = position.longitude;
    if (any) longitude -= 360 * std::round((longitude - last) / 360);
    last = longitude;
    extent.south = std::min(extent.south, position.latitude);
    extent.north = std::max(extent.north, position.latitude);
    extent.west = any ? std::min(extent.west, longitude) : longitude;
    extent.east = any ? std::max(extent.east, longitude) : longitude;
    any = true;
  }
  return extent;
}

}  // namespace

LinkMapLook lookOnPaper(const PageBox& box, bool imperial, AngleFormat angles) {
  constexpr double kDotsPerInch = 216, kLogicalPerInch = 96, kMmPerInch = 25.4;
  LinkMapLook look;
  look.width = std::round(box.width / kMmPerInch * kLogicalPerInch);
  look.height = std::round(box.height / kMmPerInch * kLogicalPerInch);
  look.pixelRatio = kDotsPerInch / kLogicalPerInch;
  look.imperial = imperial;
  look.angles = angles;
  look.font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
  look.font.setStyleHint(QFont::SansSerif);
  look.font.setPixelSize(10);
  return look;
}

struct LinkMap::Self {
  std::shared_ptr<const TerrainMap> terrain;
  Plan plan;  // of the link alone
  LinkResult result;
  LinkId link = 0;
  LinkMapLook look;
  MapFrame frame;
  PlanPlaces places;
  TileService tiles;
  std::vector<PlacedTile> placed;
  bool scaled = false;  // the colours are those of the heights that are seen

  explicit Self(std::size_t mostBytes) : tiles(mostBytes) {}

  void fitFrame() {
    frame = MapFrame(look.width, look.height);
    MapFrame beside(look.width - kLegendWidth, look.height - kBarHeight);
    const LinkPlace* place = places.link(link);
    if (place != nullptr && !place->line.empty()) beside.fit(extentOfLine(place->line), kEdgeRoom);
    beside.setMetresPerPixel(std::max(beside.metresPerPixel(), kClosestMetres));
    frame.setLevel(beside.level());
    frame.setCentre(beside.centre());
    frame.panBy(-kLegendWidth / 2, -kBarHeight / 2);
  }

  void ask() {
    for (const PlacedTile& one : placed) tiles.find(one.tile, true);
  }

  // So that each finds a place at one side of its station. A longer one stands on the link: better than none.
  bool namesAreShort(MapText& text) const {
    constexpr double kWidest = 0.4;     // of the map
    constexpr qsizetype kLongest = 32;  // characters that the map shows
    return std::all_of(plan.stations.begin(), plan.stations.end(), [&](const auto& station) {
      const QString name = QString::fromStdString(station.second.name).left(kLongest);
      return text.size(name, false).width() < kWidest * look.width;
    });
  }

  // The link alone is on the map, so that its names find a place beside it.
  void keepClear(std::vector<PixelBox>& taken) {
    const LinkPlace* place = places.link(link);
    if (place == nullptr) return;
    const auto square = [&](MapPoint at) {
      taken.push_back({at.x - kLineReach, at.y - kLineReach, 2 * kLineReach, 2 * kLineReach});
    };
    for (const PixelLine& piece : pixelLines(frame, place->line, 0)) {
      for (std::size_t i = 1; i < piece.points.size(); ++i) {
        const MapPoint from = piece.points[i - 1], to = piece.points[i];
        const double steps = std::ceil(std::hypot(to.x - from.x, to.y - from.y) / kLineReach);
        for (double step = 0; step <= steps; ++step) {
          const double part = steps > 0 ? step / steps : 0;
          square({from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)});
        }
      }
    }
    if (!place->worst) return;
    const MapPoint worst = frame.pixelOf(*place->worst);
    taken.push_back({worst.x - kMarkReach, worst.y - kMarkTall, 2 * kMarkReach, kMarkTall});
  }

  void paint(QPainter& painter, const std::vector<QRectF>& panels, std::vector<QRectF>& taken) {
    MapText text;
    text.begin(look.font, look.pixelRatio);
    painter.setFont(look.font);
    paintGround(painter, frame, look.pixelRatio, tiles, placed, true);
    paintGraticule(painter, text, frame, look.angles, panels);
    const MapSelection selection;
    PlanScene scene{frame, places, selection, {}, {}, {}, true, look.imperial, false, {}};
    for (const QRectF& panel : panels)
      scene.taken.push_back({panel.left(), panel.top(), panel.width(), panel.height()});
    if (namesAreShort(text)) keepClear(scene.taken);
    PlanPainter planPainter;
    planPainter.paint(painter, text, scene);
    const TileContents contents = tiles.contents(tileIds(placed));
    const LegendWish legend{tiles.scale(),  look.imperial,    contents.range.any,
                            contents.voids, contents.outside, planPainter.seenVerdicts()};
    taken = {terrain == nullptr ? QRectF() : paintLegend(painter, frame, legend),
             paintScaleBar(painter, frame, true, look.imperial,
                           terrain == nullptr ? QStringLiteral("No terrain") : QString())};
  }
};

LinkMap::LinkMap(std::shared_ptr<const TerrainMap> terrain, std::size_t mostBytes)
    : self_(std::make_unique<Self>(mostBytes)) {
  self_->terrain = std::move(terrain);
  self_->tiles.setTerrain(self_->terrain);
  self_->tiles.onTile = [this] {
    if (onGround) onGround();
  };
}

LinkMap::~LinkMap() = default;

void LinkMap::end() { self_->tiles.end(); }

void LinkMap::begin(const Plan& plan, LinkId link, const PageFigures& figures, const LinkMapLook& look) {
  Self& self = *self_;
  const Link& shown = plan.links.at(link);
  self.plan = {};
  self.plan.datum = plan.datum;
  self.plan.links.emplace(link, shown);
  for (const StationId id : {shown.from, shown.to}) self.plan.stations.emplace(id, plan.stations.at(id));
  self.link = link;
  self.result = figures.result;
  self.look = look;
  self.places.set(&self.plan, [this](LinkId) { return &self_->result; });
  self.fitFrame();
  self.placed = self.terrain == nullptr ? std::vector<PlacedTile>() : tilesOf(self.frame, look.pixelRatio);
  self.scaled = false;
  self.tiles.keepAsked(tileIds(self.placed));
}

bool LinkMap::ready() {
  Self& self = *self_;
  self.ask();
  if (self.tiles.waiting() > 0) return false;
  if (self.scaled) return true;
  self.scaled = true;
  const HeightRange range = self.tiles.range(tileIds(self.placed));
  if (range.any) self.tiles.setScale(niceScale(range.lowest, range.highest, self.look.imperial));
  self.ask();
  return self.tiles.waiting() == 0;
}

QImage LinkMap::picture() {
  Self& self = *self_;
  QImage picture(static_cast<int>(std::lround(self.look.width * self.look.pixelRatio)),
                 static_cast<int>(std::lround(self.look.height * self.look.pixelRatio)),
                 QImage::Format_RGB32);
  if (picture.isNull()) return picture;
  picture.setDevicePixelRatio(self.look.pixelRatio);
  // Twice, because the names keep clear of the panels, and those are as large as what is seen asks for.
  std::vector<QRectF> panels, taken;
  for (int i = 0; i < 2; ++i) {
    QPainter painter(&picture);
    self.paint(painter, panels, taken);
    painter.end();
    panels = taken;
  }
  return picture;
}

}  // namespace zel::host
