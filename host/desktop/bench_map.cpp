#include "desktop/bench_map.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
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
constexpr int kStepFrames = 40;              // of each movement
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

// Moves the map and paints each frame in full, as a window without a graphics card does.
class Measurement {
 public:
  explicit Measurement(MapView& map) : map_(map), picture_(kWidth, kHeight, QImage::Format_RGB32) {}

  void frame() {
    QApplication::processEvents();  // tiles that have come
    QElapsedTimer clock;
    clock.start();
    map_.render(&picture_);
    times_.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
  }
  // A round trip: near, far, and about in between.
  void movements() {
    for (int i = 0; i < kStepFrames; ++i) step([this] { map_.zoomBy(4.0 / kStepFrames); });
    for (int i = 0; i < 2 * kStepFrames; ++i) step([this, i] { panRound(i); });
    for (int i = 0; i < kStepFrames; ++i) step([this] { map_.zoomBy(-2.0 / kStepFrames); });
    for (int i = 0; i < 2 * kStepFrames; ++i) step([this, i] { panRound(i); });
    for (int i = 0; i < kStepFrames; ++i) step([this] { map_.zoomBy(-3.0 / kStepFrames); });
    for (int i = 0; i < kStepFrames; ++i) step([this] { map_.zoomBy(1.0 / kStepFrames); });
  }
  std::vector<double> times() const { return times_; }

 private:
  template <typename Movement>
  void step(Movement movement) {
    movement();
    frame();
  }
  void panRound(int i) {
    constexpr double kStep = 24;  // pixels a frame: a quick hand
    const double angle = 2 * std::numbers::pi * i / (2 * kStepFrames);
    map_.panBy(kStep * std::cos(angle), kStep * std::sin(angle));
  }

  MapView& map_;
  QImage picture_;
  std::vector<double> times_;
};

void settle(MapView& map, Measurement& measurement) {
  QElapsedTimer clock;
  clock.start();
  while (!map.settled() && clock.elapsed() < kSettleMs) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    measurement.frame();
  }
}

}  // namespace

std::string MapBench::text() const {
  return "terrain:         " + terrain + "\nframes:          " + std::to_string(frames) + ", " +
         std::to_string(kWidth) + " x " + std::to_string(kHeight) +
         ", painted by software\nmedian:          " + milliseconds(medianMs) +
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
  Measurement measurement(map);
  measurement.movements();  // while tiles come
  map.fitTerrain();
  settle(map, measurement);
  measurement.movements();
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
