#include "desktop/bench_map.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <exception>
#include <numbers>
#include <vector>

#include "map_view/map_view.h"
#include "zel/settings.h"

namespace zel::host {

namespace {

constexpr int kWidth = 1280, kHeight = 800;  // logical pixels
constexpr int kRoundFrames = 50;             // of a drag in a circle
constexpr int kSettleMs = 60'000;            // for the whole terrain to be there, at most

// The source that the profile uses; what is no number is the component's default.
int sourceOfTheSettings() {
  constexpr int kDefaultSource = 3;
  const std::optional<std::string> stored = storedSetting("Profile", "Prf_TRes");
  const int code = stored ? std::atoi(stored->c_str()) : kDefaultSource;
  for (const TerrainSource& source : terrainSources()) {
    if (source.code == code) return code;
  }
  return kDefaultSource;
}

std::string terrainText(const TerrainMap& terrain) {
  const TerrainSource& source = terrain.source();
  const std::size_t count = terrain.rasters().size();
  std::string text = source.name + ", " + std::to_string(count) + (count == 1 ? " raster" : " rasters");
  if (source.bundledSample) text += " (bundled sample terrain)";
  return text;
}

std::string milliseconds(double ms) {
  const QString text = QString::number(ms, 'f', 1);
  return text.toStdString() + " ms";
}

// The value below which that part of the sorted ones lies.
double quantile(const std::vector<double>& sorted, double part) {
  if (sorted.empty()) return 0;
  const double index = std::ceil(part * static_cast<double>(sorted.size())) - 1;
  return sorted[static_cast<std::size_t>(std::clamp(index, 0.0, static_cast<double>(sorted.size() - 1)))];
}

// Moves the map as a hand does and paints each frame in full, as a window without a graphics card does.
class Measurement {
 public:
  explicit Measurement(MapView& map) : map_(map), picture_(kWidth, kHeight, QImage::Format_RGB32) {}

  // From the whole terrain in to its posts and out again, with a drag in a circle now and then.
  void movements(double levelsToPosts) {
    wheel(levelsToPosts);
    dragRound();
    wheel(-levelsToPosts / 2);
    dragRound();
    wheel(-levelsToPosts / 2 - 1);
    dragRound();
    wheel(1);
  }
  std::vector<double> times() const { return times_; }

 private:
  void frame(QEvent& event) {
    QApplication::processEvents();  // tiles that have come
    QElapsedTimer clock;
    clock.start();
    QCoreApplication::sendEvent(&map_, &event);
    map_.render(&picture_);
    times_.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
  }
  void wheel(double levels) {
    constexpr int kAngle = 24;  // eighths of a degree: a fifth of a notch, a tenth of a level
    const QPointF at(0.4 * kWidth, 0.45 * kHeight);
    const int turn = levels > 0 ? kAngle : -kAngle;
    for (int i = 0; i < std::lround(std::abs(levels) * 10); ++i) {
      QWheelEvent event(at, at, {}, {0, turn}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
      frame(event);
    }
  }
  void dragRound() {
    constexpr double kRadius = 190;  // pixels: some 24 a frame, a quick hand
    const QPointF middle(0.5 * kWidth, 0.5 * kHeight);
    const auto at = [&middle](int i) {
      const double angle = 2 * std::numbers::pi * i / kRoundFrames;
      return middle + kRadius * QPointF(std::cos(angle), std::sin(angle));
    };
    mouse(QEvent::MouseButtonPress, at(0), Qt::LeftButton);
    for (int i = 1; i <= kRoundFrames; ++i) mouse(QEvent::MouseMove, at(i), Qt::NoButton);
    mouse(QEvent::MouseButtonRelease, at(0), Qt::LeftButton);
  }
  void mouse(QEvent::Type type, QPointF at, Qt::MouseButton button) {
    QMouseEvent event(type, at, at, button, Qt::LeftButton, {});
    frame(event);
  }

  MapView& map_;
  QImage picture_;
  std::vector<double> times_;
};

// Milliseconds until the map is whole.
double settle(MapView& map) {
  QElapsedTimer clock;
  clock.start();
  while (!map.settled() && clock.elapsed() < kSettleMs) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

// Until a post has a pixel of its own, and some levels at least.
double levelsToPosts(const MapView& map, const TerrainMap& terrain) {
  constexpr double kLeast = 3, kMetresPerDegree = 111'195;
  double cellDegrees = 0;
  for (const TerrainCoverage& raster : terrain.rasters()) {
    if (cellDegrees == 0 || raster.cellDegrees < cellDegrees) cellDegrees = raster.cellDegrees;
  }
  if (cellDegrees <= 0) return kLeast;
  MapFrame posts = map.frame();
  posts.setMetresPerPixel(cellDegrees * kMetresPerDegree);
  return std::max(kLeast, posts.level() - map.frame().level());
}

}  // namespace

std::string MapBench::text() const {
  return "terrain:         " + terrain + "\nframes:          " + std::to_string(frames) + ", " +
         std::to_string(kWidth) + " x " + std::to_string(kHeight) +
         ", painted by software\nwhole terrain:   " + milliseconds(wholeMs) + " after the start" +
         "\nmedian:          " + milliseconds(medianMs) +
         "\n95th percentile: " + milliseconds(percentile95Ms) +
         "\nworst:           " + milliseconds(worstMs) + "\n";
}

MapBench benchMap() {
  MapBench bench;
  const std::shared_ptr<const TerrainMap> terrain = TerrainMap::open(sourceOfTheSettings());
  MapView map;
  map.setAttribute(Qt::WA_DontShowOnScreen);
  map.resize(kWidth, kHeight);
  map.show();
  map.setTerrain(terrain);
  map.fitTerrain();
  bench.wholeMs = settle(map);
  const double levels = levelsToPosts(map, *terrain);
  Measurement measurement(map);
  for (int round = 0; round < 2; ++round) {  // while tiles come, and again
    map.fitTerrain();
    measurement.movements(levels);
  }
  std::vector<double> times = measurement.times();
  std::sort(times.begin(), times.end());
  bench.frames = static_cast<int>(times.size());
  bench.medianMs = quantile(times, 0.5);
  bench.percentile95Ms = quantile(times, 0.95);
  bench.worstMs = times.empty() ? 0 : times.back();
  bench.terrain = terrainText(*terrain);
  return bench;
}

}  // namespace zel::host
