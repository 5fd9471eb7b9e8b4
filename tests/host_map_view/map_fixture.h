// A map over the bundled terrain, or over tiles that the test writes.
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
#include "zel/terrain.h"

namespace zel::host {

inline constexpr int kLocalSource = 9, kBundledSource = 3;
inline constexpr int kPatienceMs = 20'000;  // until what is made in the background is there

// A tile of 1201 x 1201 posts as SRTM lays them out: 16 bits, the high byte first, from the north-west.
inline std::filesystem::path writeTile(const test::TemporaryFolder& folder, const std::string& name,
                                       const std::function<int(int row, int column)>& height) {
  constexpr int kSide = 1201;
  std::string bytes;
  bytes.reserve(std::size_t{2} * kSide * kSide);
  for (int row = 0; row < kSide; ++row) {
    for (int column = 0; column < kSide; ++column) {
      const auto value = static_cast<std::uint16_t>(height(row, column));
      bytes.push_back(static_cast<char>(value >> 8U));
      bytes.push_back(static_cast<char>(value & 0xffU));
    }
  }
  const std::filesystem::path path = folder / name;
  test::writeBytes(path, bytes);
  return path;
}

class MapTest : public test::OffscreenTest<QApplication> {
 protected:
  // The terrain of source "Local" for the rest of the test.
  std::shared_ptr<const TerrainMap> terrainOf(const std::vector<std::string>& paths) {
    setTerrainSource(kLocalSource, paths);
    localSet_ = true;
    return TerrainMap::open(kLocalSource);
  }
  void TearDown() override {
    map_.reset();
    if (localSet_) setTerrainSource(kLocalSource, {});
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

  MapView& showMap(std::shared_ptr<const TerrainMap> terrain, int width = 800, int height = 600) {
    analysis_ = std::make_unique<LinkAnalysis>(plan_);
    map_ = std::make_unique<MapView>();
    map_->resize(width, height);
    map_->setPlan(&plan_, analysis_.get());
    map_->setTerrain(std::move(terrain));
    map_->fitPlan();
    map_->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(map_.get()));
    settle();
    return *map_;
  }
  MapView& showBundled(int width = 800, int height = 600) {
    return showMap(TerrainMap::open(kBundledSource), width, height);
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

 private:
  bool localSet_ = false;
};

}  // namespace zel::host
