#include "map_view/plan_painter.h"

#include <QLineF>
#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

#include "map/relief.h"
#include "zel/geodesic.h"

namespace zel::host {

namespace {

constexpr double kKilometresPerMile = 1.609344;
constexpr double kClipMargin = 12;            // pixels around the map in which lines are still drawn
constexpr std::size_t kMostCased = 250;       // strands of links that are drawn with casing, at rest
constexpr double kLongestDashed = 300'000;    // pixels of all thin lines that are drawn with dashes and a rim
constexpr std::size_t kMostObstacles = 250;   // links whose obstacles are shown
constexpr std::size_t kMostCasedMoving = 40;  // and while the map moves
constexpr std::size_t kMostChosenTexts = 20;  // links with their length beside them
constexpr int kLongestLabel = 32;             // characters
constexpr std::size_t kMostNames = 2500;      // stations whose names are looked for room for
constexpr double kSymbolRadius = 5;           // pixels
constexpr double kCrowded = 4;  // pixels: of stations that are nearer to each other one is drawn

// How a stretch of a link is drawn. The number of looks is LinkStretch::Kind's, and one for what is not
// computed yet.
struct LineLook {
  QRgb colour;
  double width;
  std::array<double, 4> dashes;  // pixels: stroke, gap, stroke, gap; 0 for a solid line
};
constexpr std::array<LineLook, 5> kLooks = {{
    {0xff00796b, 2.5, {0, 0, 0, 0}},      // clear: blue-green
    {0xffd06a00, 2.5, {11, 4, 2.5, 4}},   // marginal: orange
    {0xffc81e1e, 2.5, {7, 5, 7, 5}},      // blocked: red
    {0xff5a5f66, 2.5, {2.5, 4, 2.5, 4}},  // unknown: grey
    {0xff5a5f66, 1.25, {0, 0, 0, 0}},     // waiting for its figures
}};
constexpr std::size_t kWaiting = 4;
constexpr LineLook kPlain{0xff000000, 1, {0, 0, 0, 0}};  // without dashes
// The casing, by the same numbers: wider where it has something to say.
struct Casing {
  QRgb colour;
  double wider;  // pixels, than the line
};
constexpr std::array<Casing, 5> kCasings = {
    {{0xdcffffff, 2.5}, {0xf0ffc04d, 4}, {0xf0ff9a8c, 4}, {0xdcffffff, 2.5}, {0xdcffffff, 2.5}}};
constexpr double kSymbolHeight = 12, kSymbolHalf = 6.5;  // of an obstacle's triangle
constexpr double kObstaclesApart = 12;  // pixels: of obstacles that are nearer to each other one is drawn

std::size_t lookOf(const LinkPlace& link, const LinkStrand& strand) {
  return link.computed ? static_cast<std::size_t>(strand.kind) : kWaiting;
}

std::size_t verdictOf(const LinkPlace& link) {
  return link.computed ? static_cast<std::size_t>(link.verdict) : kWaiting;
}

bool solid(const LineLook& look) { return look.dashes[0] <= 0; }

QPen penOf(const LineLook& look, double wider, double before) {
  QPen pen(QColor::fromRgb(look.colour), look.width + wider, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
  if (solid(look)) return pen;
  QList<qreal> pattern;  // in widths of the pen
  for (const double dash : look.dashes) pattern.append(dash / pen.widthF());
  pen.setDashPattern(pattern);
  pen.setDashOffset(before / pen.widthF());
  return pen;
}

QPolygonF polygonOf(const PixelLine& line) {
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(line.points.size()));
  for (const MapPoint& point : line.points) polygon.append(QPointF(point.x, point.y));
  return polygon;
}

// A piece of a link on the map.
struct Piece {
  std::size_t look = 0;
  double before = 0;
  QPolygonF line;
  std::size_t verdict = kWaiting;  // of the whole link, as a look
};

std::vector<Piece> piecesOf(const MapFrame& frame, const LinkPlace& link) {
  std::vector<Piece> pieces;
  for (const LinkStrand& strand : link.strands) {
    for (const PixelLine& line : pixelLines(frame, strand.positions, kClipMargin)) {
      pieces.push_back({lookOf(link, strand), line.before, polygonOf(line), verdictOf(link)});
    }
  }
  return pieces;
}

// In the verdict's look from end to end.
std::vector<Piece> wholeOf(const MapFrame& frame, const LinkPlace& link) {
  std::vector<Piece> pieces;
  const std::size_t verdict = verdictOf(link);
  for (const PixelLine& line : pixelLines(frame, link.line, kClipMargin)) {
    pieces.push_back({verdict, line.before, polygonOf(line), verdict});
  }
  return pieces;
}

void paintCased(QPainter& painter, const std::vector<Piece>& pieces, double wider) {
  painter.setRenderHint(QPainter::Antialiasing);
  QPen casing(Qt::white, 0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  for (const Piece& piece : pieces) {
    casing.setColor(QColor::fromRgba(kCasings[piece.verdict].colour));
    casing.setWidthF(kLooks[piece.look].width + wider + kCasings[piece.verdict].wider);
    painter.setPen(casing);
    painter.drawPolyline(piece.line);
  }
  for (const Piece& piece : pieces) {
    painter.setPen(penOf(kLooks[piece.look], wider, piece.before));
    painter.drawPolyline(piece.line);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

// The strokes of a dashed line, as lines of their own: many of them are drawn at once, in a tenth of the time
// that a dashed pen takes.
void addStrokes(const Piece& piece, const LineLook& look, QList<QLineF>& strokes) {
  if (solid(look)) {
    for (qsizetype i = 1; i < piece.line.size(); ++i)
      strokes.append(QLineF(piece.line[i - 1], piece.line[i]));
    return;
  }
  const double period = look.dashes[0] + look.dashes[1] + look.dashes[2] + look.dashes[3];
  const std::array<double, 4> ends = {look.dashes[0], look.dashes[0] + look.dashes[1],
                                      look.dashes[0] + look.dashes[1] + look.dashes[2], period};
  double along = std::fmod(std::max(0.0, piece.before), period);  // within the period
  for (qsizetype i = 1; i < piece.line.size(); ++i) {
    const QLineF segment(piece.line[i - 1], piece.line[i]);
    const double length = segment.length();
    double done = 0;
    while (done < length) {
      std::size_t part = 0;
      while (part < 3 && along >= ends[part]) ++part;
      const double step = std::min(std::max(ends[part] - along, 0.01), length - done);
      if (part % 2 == 0) {
        strokes.append(QLineF(segment.pointAt(done / length), segment.pointAt((done + step) / length)));
      }
      done += step;
      along += step;
      if (along >= period) along = 0;
    }
  }
}

double lengthOf(const std::vector<Piece>& pieces) {
  double length = 0;
  for (const Piece& piece : pieces) {
    for (qsizetype i = 1; i < piece.line.size(); ++i) {
      length += QLineF(piece.line[i - 1], piece.line[i]).length();
    }
  }
  return length;
}

// Dashes and a light rim, where they cost less than a frame.
void paintThin(QPainter& painter, const std::vector<Piece>& pieces, bool moving) {
  const bool plain = moving || lengthOf(pieces) > kLongestDashed;
  std::array<QList<QLineF>, kLooks.size()> strokes;
  for (const Piece& piece : pieces)
    addStrokes(piece, plain ? kPlain : kLooks[piece.verdict], strokes[piece.verdict]);
  if (!plain) {
    painter.setPen(QPen(QColor(255, 255, 255), 3));
    for (const QList<QLineF>& of : strokes) painter.drawLines(of);
  }
  for (std::size_t look = 0; look < kLooks.size(); ++look) {
    painter.setPen(QPen(QColor::fromRgb(kLooks[look].colour), 1));
    painter.drawLines(strokes[look]);
  }
}

template <typename Id>
bool among(const std::vector<Id>& ids, Id id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// Beside the middle of the line, so that it does not cover it.
void paintLineText(QPainter& painter, MapText& text, const MapFrame& frame,
                   const std::vector<PixelLine>& lines, const QString& words) {
  const LineMiddle middle = middleOf(lines);
  const QSizeF size = text.size(words, true);
  if (middle.pixels < 24) return;
  constexpr double kAir = 6;
  const double angle = middle.angleDeg * std::numbers::pi / 180;
  const double away =
      size.height() / 2 * std::abs(std::cos(angle)) + size.width() / 2 * std::abs(std::sin(angle)) + kAir;
  double x = middle.at.x + std::sin(angle) * away - size.width() / 2;
  double y = middle.at.y - std::cos(angle) * away - size.height() / 2;
  x = std::clamp(x, 2.0, std::max(2.0, frame.width() - size.width() - 2));
  y = std::clamp(y, 2.0, std::max(2.0, frame.height() - size.height() - 2));
  text.draw(painter, QPointF(x, y), words, true);
}

// Its point is at the place.
void paintObstacle(QPainter& painter, QPointF at, std::size_t verdict) {
  const QColor colour = QColor::fromRgb(kLooks[verdict].colour);
  const bool hollow = verdict == static_cast<std::size_t>(PathVerdict::kMarginal);
  const QPointF tip = at - QPointF(0, 1), top = tip - QPointF(0, kSymbolHeight), side(kSymbolHalf, 0);
  const QPolygonF triangle({tip, top - side, top + side});
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolygon(triangle);
  painter.setPen(QPen(colour, hollow ? 2 : 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(hollow ? QColor(Qt::white) : colour);
  painter.drawPolygon(triangle);
  painter.setBrush(Qt::NoBrush);
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void paintObstacle(QPainter& painter, const MapFrame& frame, const LinkPlace& link) {
  if (!link.worst || !link.computed) return;
  const MapPoint at = frame.pixelOf(*link.worst);
  paintObstacle(painter, QPointF(at.x, at.y), verdictOf(link));
}

// Turns a place in the world into pixels without the functions that a position needs.
class WorldPixels {
 public:
  explicit WorldPixels(const MapFrame& frame)
      : centre_(worldOf(frame.centre())),
        side_(std::exp2(frame.level()) * kTileSide),
        middleX_(frame.width() / 2),
        middleY_(frame.height() / 2) {}
  MapPoint of(MapPoint world) const {
    const double x = world.x - centre_.x;
    return {(x - std::round(x)) * side_ + middleX_, (world.y - centre_.y) * side_ + middleY_};
  }

 private:
  MapPoint centre_;
  double side_, middleX_, middleY_;
};

bool inside(const MapFrame& frame, MapPoint at, double margin) {
  return at.x >= -margin && at.y >= -margin && at.x <= frame.width() + margin &&
         at.y <= frame.height() + margin;
}

QImage symbolOf(double pixelRatio, QColor ring, double ringWidth, double radius) {
  constexpr double kSide = 26;
  const int pixels = static_cast<int>(std::ceil(kSide * pixelRatio));
  QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(pixelRatio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF middle(kSide / 2, kSide / 2);
  if (ringWidth > 0) {
    painter.setPen(QPen(QColor(20, 26, 32), ringWidth + 2));
    painter.drawEllipse(middle, radius + 3.5, radius + 3.5);
    painter.setPen(QPen(ring, ringWidth));
    painter.drawEllipse(middle, radius + 3.5, radius + 3.5);
  }
  painter.setPen(QPen(Qt::white, 1.75));
  painter.setBrush(QColor(0x12, 0x35, 0x5b));
  painter.drawEllipse(middle, radius, radius);
  return picture;
}

// Its middle is the place.
QImage obstacleSymbol(double pixelRatio, PathVerdict verdict) {
  constexpr double kSide = 2 * (kSymbolHeight + 4);
  const int pixels = static_cast<int>(std::ceil(kSide * pixelRatio));
  QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(pixelRatio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  paintObstacle(painter, QPointF(kSide / 2, kSide / 2), static_cast<std::size_t>(verdict));
  return picture;
}

QString labelOf(const std::string& name) {
  const QString text = QString::fromStdString(name);
  return text.size() <= kLongestLabel ? text : text.left(kLongestLabel - 1) + QChar(0x2026);
}

struct SeenStation {
  const StationPlace* place = nullptr;
  MapPoint at;
  bool chosen = false, hovered = false;
};

std::vector<SeenStation> seenStations(const PlanScene& scene) {
  const WorldPixels pixels(scene.frame);
  const std::unordered_set<StationId> chosen(scene.selection.stations.begin(),
                                             scene.selection.stations.end());
  std::unordered_set<std::int64_t> crowded;
  std::vector<SeenStation> seen;
  for (const StationPlace& place : scene.places.stations()) {
    const bool dragged = scene.dragged && scene.dragged->id == place.id;
    const MapPoint at = pixels.of(dragged ? worldOf(scene.dragged->map) : place.world);
    if (!inside(scene.frame, at, 200)) continue;
    const SeenStation station{&place, at, chosen.contains(place.id), scene.hoveredStation == place.id};
    if (!station.chosen && !station.hovered && !dragged) {
      const std::int64_t cell = static_cast<std::int64_t>(std::floor(at.x / kCrowded)) * 1'000'003 +
                                static_cast<std::int64_t>(std::floor(at.y / kCrowded));
      if (!crowded.insert(cell).second) continue;
    }
    seen.push_back(station);
  }
  return seen;
}

}  // namespace

QString lineText(double distanceKm, double bearingDeg, bool imperial) {
  const double distance = imperial ? distanceKm / kKilometresPerMile : distanceKm;
  double bearing = std::round(bearingDeg * 10) / 10;
  if (bearing >= 360) bearing = 0;
  return QStringLiteral("%1 %2, %3%4")
      .arg(distance, 0, 'f', distance < 10 ? 2 : 1)
      .arg(imperial ? QStringLiteral("mi") : QStringLiteral("km"))
      .arg(bearing, 0, 'f', 1)
      .arg(QChar(0xb0));
}

void paintVerdictSample(QPainter& painter, const QRectF& place, PathVerdict verdict) {
  const auto look = static_cast<std::size_t>(verdict);
  const bool obstructed = verdict == PathVerdict::kMarginal || verdict == PathVerdict::kBlocked;
  const double y = std::floor(obstructed ? place.bottom() - 3 : place.center().y());  // room for the triangle
  const QPolygonF line({QPointF(place.left() + 2, y), QPointF(place.right() - 2, y)});
  paintCased(painter, {{look, 0, line, look}}, 0);
  if (obstructed) paintObstacle(painter, QPointF(place.center().x(), y), look);
}

void PlanPainter::paint(QPainter& painter, MapText& text, const PlanScene& scene) {
  paintLinks(painter, text, scene);
  paintStations(painter, text, scene);
}

void PlanPainter::paintLinks(QPainter& painter, MapText& text, const PlanScene& scene) {
  const WorldBox seen = seenBox(scene.frame, kClipMargin);
  std::vector<const LinkPlace*> plain, chosen, obstructed;
  std::size_t strands = 0;
  seenVerdicts_ = {};
  const std::unordered_set<LinkId> selected(scene.selection.links.begin(), scene.selection.links.end());
  for (const LinkPlace& link : scene.places.links()) {
    if (!link.box.meets(seen)) continue;
    if (scene.dragged && (link.from == scene.dragged->id || link.to == scene.dragged->id)) continue;
    if (link.computed) seenVerdicts_.at(verdictOf(link)) = true;
    if (link.worst && (link.verdict == PathVerdict::kBlocked || link.verdict == PathVerdict::kMarginal)) {
      obstructed.push_back(&link);
    }
    if (selected.contains(link.id) || scene.hoveredLink == link.id) {
      chosen.push_back(&link);
      continue;
    }
    plain.push_back(&link);
    strands += link.strands.size();
  }
  const bool cased = strands <= (scene.moving ? kMostCasedMoving : kMostCased);
  std::vector<Piece> pieces;
  for (const LinkPlace* link : plain) {
    for (Piece& piece : cased ? piecesOf(scene.frame, *link) : wholeOf(scene.frame, *link)) {
      pieces.push_back(std::move(piece));
    }
  }
  if (cased) {
    paintCased(painter, pieces, 0);
  } else {
    paintThin(painter, pieces, scene.moving);
  }
  for (const LinkPlace* link : chosen) paintChosenLink(painter, text, scene, *link);
  // Among more links triangles would hide the lines, which then have the verdict's own look.
  if (obstructed.size() <= kMostObstacles) paintObstacles(painter, scene.frame, obstructed);
  if (scene.dragged) paintDraggedLinks(painter, text, scene);
}

// Blocked links first: where there is room for one, it is theirs.
void PlanPainter::paintObstacles(QPainter& painter, const MapFrame& frame,
                                 const std::vector<const LinkPlace*>& links) {
  makeSymbols(painter.device()->devicePixelRatioF());
  const double half = blocked_.width() / blocked_.devicePixelRatio() / 2;
  std::vector<MapPoint> drawn;
  for (const PathVerdict verdict : {PathVerdict::kBlocked, PathVerdict::kMarginal}) {
    for (const LinkPlace* link : links) {
      if (link->verdict != verdict) continue;
      const MapPoint at = frame.pixelOf(*link->worst);
      const bool crowded = std::any_of(drawn.begin(), drawn.end(), [&at](const MapPoint& other) {
        return std::hypot(other.x - at.x, other.y - at.y) < kObstaclesApart;
      });
      if (crowded || !inside(frame, at, kClipMargin + kSymbolHeight)) continue;
      drawn.push_back(at);
      painter.drawImage(QPointF(std::round(at.x - half), std::round(at.y - half)),
                        verdict == PathVerdict::kBlocked ? blocked_ : marginal_);
    }
  }
}

void PlanPainter::paintChosenLink(QPainter& painter, MapText& text, const PlanScene& scene,
                                  const LinkPlace& link) {
  const bool selected = among(scene.selection.links, link.id);
  const std::vector<Piece> pieces = piecesOf(scene.frame, link);
  if (selected) {  // a dark rim around the casing
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(20, 26, 32), 10, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const Piece& piece : pieces) painter.drawPolyline(piece.line);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  paintCased(painter, pieces, 1.25);
  if (!selected || scene.selection.links.size() > kMostChosenTexts) return;
  paintObstacle(painter, scene.frame, link);
  std::vector<PixelLine> lines;
  for (const LinkStrand& strand : link.strands) {
    for (PixelLine& line : pixelLines(scene.frame, strand.positions, 0)) {
      const bool goesOn = !lines.empty() &&
                          std::abs(lines.back().points.back().x - line.points.front().x) < 1 &&
                          std::abs(lines.back().points.back().y - line.points.front().y) < 1;
      if (goesOn) {
        lines.back().points.insert(lines.back().points.end(), line.points.begin() + 1, line.points.end());
      } else {
        lines.push_back(std::move(line));
      }
    }
  }
  paintLineText(painter, text, scene.frame, lines,
                lineText(link.distanceKm, link.bearingDeg, scene.imperial));
}

void PlanPainter::paintDraggedLinks(QPainter& painter, MapText& text, const PlanScene& scene) {
  std::size_t texts = 0;
  for (const LinkPlace& link : scene.places.links()) {
    if (link.from != scene.dragged->id && link.to != scene.dragged->id) continue;
    const StationPlace* other = scene.places.station(link.from == scene.dragged->id ? link.to : link.from);
    if (other == nullptr) continue;
    const bool starts = link.from == scene.dragged->id;
    const GeodesicLine line =
        starts ? bentLine(scene.dragged->map, other->map) : bentLine(other->map, scene.dragged->map);
    const std::vector<PixelLine> lines = pixelLines(scene.frame, line.positions, kClipMargin);
    std::vector<Piece> pieces;
    pieces.reserve(lines.size());
    for (const PixelLine& piece : lines)
      pieces.push_back({kWaiting, piece.before, polygonOf(piece), kWaiting});
    paintCased(painter, pieces, 0.5);
    if (++texts <= kMostChosenTexts) {
      paintLineText(painter, text, scene.frame, lines,
                    lineText(line.distanceKm, line.bearingDeg, scene.imperial));
    }
  }
}

void PlanPainter::paintRubberBand(QPainter& painter, MapText& text, const MapFrame& frame, Position from,
                                  Position to, bool imperial) {
  const GeodesicLine line = bentLine(from, to);
  const std::vector<PixelLine> lines = pixelLines(frame, line.positions, kClipMargin);
  std::vector<Piece> pieces;
  pieces.reserve(lines.size());
  for (const PixelLine& piece : lines) pieces.push_back({kWaiting, piece.before, polygonOf(piece), kWaiting});
  paintCased(painter, pieces, 0.75);
  if (line.distanceKm > 0) {
    paintLineText(painter, text, frame, lines, lineText(line.distanceKm, line.bearingDeg, imperial));
  }
}

void PlanPainter::makeSymbols(double pixelRatio) {
  if (symbolRatio_ == pixelRatio) return;
  symbolRatio_ = pixelRatio;
  plain_ = symbolOf(pixelRatio, {}, 0, kSymbolRadius);
  hovered_ = symbolOf(pixelRatio, {}, 0, kSymbolRadius + 2);
  chosen_ = symbolOf(pixelRatio, QColor(0xff, 0xb7, 0x03), 2.5, kSymbolRadius);
  blocked_ = obstacleSymbol(pixelRatio, PathVerdict::kBlocked);
  marginal_ = obstacleSymbol(pixelRatio, PathVerdict::kMarginal);
}

void PlanPainter::paintStations(QPainter& painter, MapText& text, const PlanScene& scene) {
  makeSymbols(painter.device()->devicePixelRatioF());
  const std::vector<SeenStation> seen = seenStations(scene);
  const double half = plain_.width() / plain_.devicePixelRatio() / 2;
  const auto drawSymbol = [&](const SeenStation& station, const QImage& symbol) {
    painter.drawImage(QPointF(std::round(station.at.x - half), std::round(station.at.y - half)), symbol);
  };
  for (const SeenStation& station : seen) {
    if (!station.chosen && !station.hovered) drawSymbol(station, plain_);
  }
  for (const SeenStation& station : seen) {
    if (station.hovered && !station.chosen) drawSymbol(station, hovered_);
    if (station.chosen) drawSymbol(station, chosen_);
  }
  if (!scene.names) return;
  const bool fewChosen = scene.selection.stations.size() <= kMostChosenTexts;
  std::vector<LabelWish> wishes;
  std::vector<QString> words;
  for (const SeenStation& station : seen) {
    const bool first = station.hovered || (station.chosen && fewChosen);
    if (!first && wishes.size() >= kMostNames) continue;
    const QString name = labelOf(station.place->name);
    const QSizeF size = text.size(name, station.chosen);
    LabelWish wish;
    wish.at = station.at;
    wish.width = size.width();
    wish.height = size.height();
    wish.gap = kSymbolRadius + (station.chosen ? 6 : 2);
    wish.priority = station.hovered ? 2 : station.chosen ? 1 : 0;
    wish.always = first;
    wishes.push_back(wish);
    words.push_back(name);
  }
  const PixelBox area{0, 0, scene.frame.width(), scene.frame.height()};
  const auto places = placeLabels(wishes, area, scene.taken);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool bold = wishes[i].gap > kSymbolRadius + 2;
    if (places[i]) text.draw(painter, QPointF(places[i]->left, places[i]->top), words[i], bold);
  }
}

std::optional<StationId> stationAt(PlanPlaces& places, const MapFrame& frame, MapPoint at) {
  const WorldPixels pixels(frame);
  std::optional<StationId> nearest;
  double least = kStationReach;
  for (const StationPlace& place : places.stations()) {
    const MapPoint there = pixels.of(place.world);
    const double apart = std::hypot(there.x - at.x, there.y - at.y);
    if (apart > least) continue;
    least = apart;
    nearest = place.id;
  }
  return nearest;
}

std::optional<LinkId> linkAt(PlanPlaces& places, const MapFrame& frame, MapPoint at) {
  const MapPoint world = worldOf(frame.positionOf(at));
  const double reach = kLinkReach * std::exp2(-frame.level()) / kTileSide;
  const WorldBox around{world.x - reach, world.y - reach, world.x + reach, world.y + reach};
  std::optional<LinkId> nearest;
  double least = kLinkReach;
  for (const LinkPlace& link : places.links()) {
    if (!link.box.meets(around)) continue;
    for (const LinkStrand& strand : link.strands) {
      const double apart = distanceToLines(pixelLines(frame, strand.positions, kClipMargin), at);
      if (apart > least) continue;
      least = apart;
      nearest = link.id;
    }
  }
  return nearest;
}

}  // namespace zel::host
