// A map over the bundled terrain, over a raster that the test writes, or over none.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QTest>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "map_view/map_view.h"
#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "zel/geodesic.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {

inline constexpr int kLocalSource = 9, kBundledSource = 3;
inline constexpr int kPatienceMs = 20'000;  // until what is made in the background is there

// A raster of kPosts x kPosts heights over one degree, from 10 N, 10 E, the first row in the north.
inline constexpr int kPosts = 61;
inline constexpr int kNoHeight = -9999;
inline std::filesystem::path writeRaster(const test::TemporaryFolder& folder,
                                         const std::function<int(int row, int column)>& height) {
  std::string text = "ncols 61\nnrows 61\nxllcenter 10\nyllcenter 10\ncellsize 0.0166666666666667\n";
  text += "NODATA_value -9999\n";
  for (int row = 0; row < kPosts; ++row) {
    for (int column = 0; column < kPosts; ++column) text += std::to_string(height(row, column)) + " ";
    text += "\n";
  }
  const std::filesystem::path path = folder / "degree.asc";
  test::writeBytes(path, text);
  return path;
}

class MapTest : public test::OffscreenTest<QApplication> {
 protected:
  // The terrain of source "Local", which profiles are drawn from, too, for the rest of the test. Nothing is
  // stored: others may run beside this one.
  std::shared_ptr<const TerrainMap> terrainOf(const std::string& path) {
    useLocal(path, kLocalSource);
    localSet_ = true;
    return TerrainMap::open(kLocalSource);
  }
  void TearDown() override {
    map_.reset();
    if (localSet_) useLocal({}, kBundledSource);
    OffscreenTest::TearDown();
  }

  // Two stations some 29 km apart over the bundled terrain, linked.
  static Plan twoStations() {
    Plan plan;
    plan.stations[1] = {"North ridge", {36.40, -84.35}, 30};
    plan.stations[2] = {"South hill", {36.22, -84.12}, 30};
    plan.links[1] = {1, 2, {}};
    return plan;
  }

  MapView& showMap(std::shared_ptr<const TerrainMap> terrain, int width = 800, int height = 600,
                   bool atRest = true) {
    analysis_ = std::make_unique<LinkAnalysis>(plan_);
    map_ = std::make_unique<MapView>();
    map_->resize(width, height);
    map_->setOptions(options_);
    map_->setPlan(&plan_, analysis_.get());
    map_->setTerrain(std::move(terrain));
    map_->fitPlan();
    map_->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(map_.get()));
    if (atRest) settle();
    return *map_;
  }
  MapView& showBundled(int width = 800, int height = 600) {
    return showMap(TerrainMap::open(kBundledSource), width, height);
  }
  // What pointer and keys do needs no terrain, and then no waiting for it.
  MapView& showBlank(int width = 800, int height = 600) { return showMap(nullptr, width, height, false); }
  // Verdicts of all links over that terrain.
  void compute(const std::shared_ptr<const TerrainMap>& terrain) {
    analysis_->setTerrain(terrain);
    analysis_->updateAll();
    EXPECT_TRUE(QTest::qWaitFor([this] { return analysis_->waiting() == 0; }, kPatienceMs));
    map_->planChanged();
    settle();
  }
  void settle() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return map_->settled(); }, kPatienceMs))
        << "the map never comes to rest";
  }
  QImage picture() { return map_->grab().toImage().convertToFormat(QImage::Format_RGB32); }

  QPoint pixelOf(Position position) const {
    const MapPoint at = map_->frame().pixelOf(position);
    return {static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y))};
  }
  QPoint pixelOf(StationId station) const { return pixelOf(plan_.stations.at(station).position); }

  void press(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(map_.get(), button, modifiers, at);
  }
  void moveTo(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
    QMouseEvent event(QEvent::MouseMove, at, map_->mapToGlobal(at), Qt::NoButton, button, modifiers);
    QCoreApplication::sendEvent(map_.get(), &event);
  }
  void release(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseRelease(map_.get(), button, modifiers, at);
  }
  void drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton,
            Qt::KeyboardModifiers modifiers = {}) {
    press(from, button, modifiers);
    moveTo((from + to) / 2, button, modifiers);
    moveTo(to, button, modifiers);
    release(to, button, modifiers);
  }
  void click(QPoint at, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(map_.get(), Qt::LeftButton, modifiers, at);
  }
  void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(map_.get(), which, modifiers);
  }
  // A wheel's event; pixels only from fingers on a touchpad.
  void wheel(QPoint at, QPoint angle, QPoint pixels = {}, Qt::KeyboardModifiers modifiers = {},
             Qt::ScrollPhase phase = Qt::NoScrollPhase) {
    QWheelEvent event(at, map_->mapToGlobal(at), pixels, angle, Qt::NoButton, modifiers, phase, false);
    QCoreApplication::sendEvent(map_.get(), &event);
  }

  Plan plan_ = twoStations();
  std::unique_ptr<LinkAnalysis> analysis_;
  std::unique_ptr<MapView> map_;
  MapOptions options_;  // before it is shown

 private:
  static void useLocal(const std::string& path, int source) {
    overrideSetting("Terrain", "Source9", path);
    overrideSetting("Profile", "Prf_TRes", std::to_string(source));
  }

  bool localSet_ = false;
};

}  // namespace zel::host
