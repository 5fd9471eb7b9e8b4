// What pointer, wheel and keyboard do on the map.
#include <QContextMenuEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <cmath>

#include "map_fixture.h"
#include "zel/profile_control.h"

namespace zel::host {
namespace {

using MapInput = MapTest;

constexpr QPoint kGround(700, 80);  // no station, no link

void expectNear(Position given, Position expected, double degrees) {
  EXPECT_NEAR(given.latitude, expected.latitude, degrees);
  EXPECT_NEAR(given.longitude, expected.longitude, degrees);
}

TEST_F(MapInput, APlanIsShownWholeAndTheStationsAreWithinTheMap) {
  const MapView& map = showBundled();
  for (const StationId id : {1U, 2U})
    EXPECT_TRUE(map.rect().adjusted(20, 20, -20, -20).contains(pixelOf(id)));
}

TEST_F(MapInput, AFitHoldsInAnotherSizeUntilTheMapIsMoved) {
  MapView& map = showBlank();
  const double level = map.frame().level();
  map.resize(400, 300);
  settle();
  EXPECT_LT(map.frame().level(), level - 0.5);
  map.panBy(1, 0);
  const double moved = map.frame().level();
  map.resize(800, 600);
  settle();
  EXPECT_EQ(map.frame().level(), moved);
}

TEST_F(MapInput, AnEmptyPlanShowsTheWholeTerrain) {
  plan_ = {};
  const MapView& map = showBundled();
  // The bundled raster covers about a third of a degree each way.
  const TerrainExtent seen = map.frame().extent();
  EXPECT_LT(seen.south, 36.17);
  EXPECT_GT(seen.north, 36.44);
  EXPECT_LT(seen.north - seen.south, 2);
}

TEST_F(MapInput, TheWheelZoomsAboutThePointerHalfALevelANotch) {
  const MapView& map = showBlank();
  const Position under = map.frame().positionOf({200, 150});
  const double level = map.frame().level();
  wheel({200, 150}, {0, 120});
  EXPECT_NEAR(map.frame().level(), level + 0.5, 1e-9);
  expectNear(map.frame().positionOf({200, 150}), under, 1e-9);
}

TEST_F(MapInput, AWheelOfHighResolutionZoomsByPartsOfANotch) {
  const MapView& map = showBlank();
  const double level = map.frame().level();
  for (int i = 0; i < 8; ++i) wheel({400, 300}, {0, -15});
  EXPECT_NEAR(map.frame().level(), level - 0.5, 1e-9);
}

TEST_F(MapInput, TwoFingersOnATouchpadPan) {
  const MapView& map = showBlank();
  const double level = map.frame().level();
  const QPoint before = pixelOf(StationId{1});
  wheel({400, 300}, {0, 45}, {12, 30}, {}, Qt::ScrollUpdate);
  EXPECT_EQ(map.frame().level(), level);
  EXPECT_EQ(pixelOf(StationId{1}), before + QPoint(12, 30));
}

TEST_F(MapInput, TwoFingersWithControlZoom) {
  const MapView& map = showBlank();
  const double level = map.frame().level();
  wheel({400, 300}, {0, 45}, {0, 40}, Qt::ControlModifier, Qt::ScrollUpdate);
  EXPECT_NEAR(map.frame().level(), level + 0.25, 1e-9);
}

TEST_F(MapInput, NotchesThatComeWithPixelsStillZoom) {
  const MapView& map = showBlank();
  const double level = map.frame().level();
  wheel({400, 300}, {0, 120}, {0, 120});
  EXPECT_NEAR(map.frame().level(), level + 0.5, 1e-9);
}

TEST_F(MapInput, APinchZoomsAboutTheFingers) {
  MapView& map = showBlank();
  const double level = map.frame().level();
  const Position under = map.frame().positionOf({300, 200});
  QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, {300, 200},
                            {300, 200}, map.mapToGlobal(QPointF(300, 200)), 1.0, {});
  QCoreApplication::sendEvent(&map, &event);
  EXPECT_NEAR(map.frame().level(), level + 1, 1e-9);  // log2(1 + 1)
  expectNear(map.frame().positionOf({300, 200}), under, 1e-9);
}

TEST_F(MapInput, ADragOnTheGroundMovesTheGround) {
  const MapView& map = showBlank();
  const Position held = map.frame().positionOf({700, 80});
  drag(kGround, {620, 170});
  const MapPoint now = map.frame().pixelOf(held);
  EXPECT_NEAR(now.x, 620, 1e-6);
  EXPECT_NEAR(now.y, 170, 1e-6);
}

TEST_F(MapInput, TheMiddleButtonPansFromAStationToo) {
  MapView& map = showBlank();
  map.onMoveStation = [](StationId, Position) { ADD_FAILURE() << "the station was moved"; };
  const QPoint before = pixelOf(StationId{1});
  drag(before, before + QPoint(60, 40), Qt::MiddleButton);
  EXPECT_EQ(pixelOf(StationId{1}), before + QPoint(60, 40));
}

TEST_F(MapInput, AClickChoosesAStationAndOneOnTheGroundNothing) {
  MapView& map = showBlank();
  std::vector<MapSelection> told;
  map.onSelectionChanged = [&told](const MapSelection& selection) { told.push_back(selection); };
  click(pixelOf(StationId{1}) + QPoint(3, 3));
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
  click(kGround);
  EXPECT_EQ(map.selection(), MapSelection());
  EXPECT_EQ(told.size(), 2U);
  click(kGround);
  EXPECT_EQ(told.size(), 2U);  // nothing has changed
}

TEST_F(MapInput, AClickOnALineChoosesTheLink) {
  MapView& map = showBlank();
  click((pixelOf(StationId{1}) + pixelOf(StationId{2})) / 2 + QPoint(2, 0));
  EXPECT_EQ(map.selection().links, std::vector<LinkId>{1});
  EXPECT_TRUE(map.selection().stations.empty());
}

TEST_F(MapInput, ShiftAndControlAddToTheSelectionAndTakeOutOfIt) {
  MapView& map = showBlank();
  click(pixelOf(StationId{1}));
  click(pixelOf(StationId{2}), Qt::ShiftModifier);
  EXPECT_EQ(map.selection().stations, (std::vector<StationId>{1, 2}));
  click(pixelOf(StationId{1}), Qt::ControlModifier);
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{2});
}

TEST_F(MapInput, ShiftAndADragChooseByRectangle) {
  MapView& map = showBlank();
  const Position centre = map.frame().centre();
  drag({2, 2}, {400, 300}, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});  // the northern one is at the left
  EXPECT_EQ(map.frame().centre(), centre);
}

TEST_F(MapInput, SettingTheSelectionDoesNotCallBack) {
  MapView& map = showBlank();
  map.onSelectionChanged = [](const MapSelection&) { ADD_FAILURE(); };
  map.setSelection({{1}, {}});
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
}

TEST_F(MapInput, AStationIsMovedOnceAtTheEndOfItsDrag) {
  MapView& map = showBlank();
  int dragged = 0;
  std::optional<Position> to;
  map.onDragStation = [&dragged](StationId id, Position) { dragged += id == 1; };
  map.onMoveStation = [&](StationId id, Position position) {
    EXPECT_EQ(id, 1U);
    EXPECT_FALSE(to.has_value());
    to = position;
  };
  const QPoint from = pixelOf(StationId{1});
  const MapPoint exact = map.frame().pixelOf(plan_.stations[1].position);
  // Taken hold of beside its middle, it keeps its distance to the pointer.
  drag(from + QPoint(4, -3), from + QPoint(84, 47));
  EXPECT_EQ(dragged, 2);
  ASSERT_TRUE(to.has_value());
  expectNear(*to, map.frame().positionOf({exact.x + 80, exact.y + 50}), 1e-9);
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
}

TEST_F(MapInput, AHandThatTremblesWhileItClicksMovesNothing) {
  MapView& map = showBlank();
  map.onMoveStation = [](StationId, Position) { ADD_FAILURE(); };
  const QPoint at = pixelOf(StationId{1});
  drag(at, at + QPoint(2, 1));
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
}

TEST_F(MapInput, EscapeTakesADragBack) {
  MapView& map = showBlank();
  std::vector<Position> dragged;
  map.onDragStation = [&dragged](StationId, Position position) { dragged.push_back(position); };
  map.onMoveStation = [](StationId, Position) { ADD_FAILURE() << "moved all the same"; };
  const QPoint at = pixelOf(StationId{1});
  press(at);
  moveTo(at + QPoint(60, 60));
  key(Qt::Key_Escape);
  moveTo(at + QPoint(90, 60));
  release(at + QPoint(90, 60));
  ASSERT_EQ(dragged.size(), 2U);
  EXPECT_EQ(dragged.back(), plan_.stations[1].position);
}

TEST_F(MapInput, AStationThatGoesAwayWhileItIsDraggedEndsTheDrag) {
  MapView& map = showBlank();
  map.onMoveStation = [](StationId, Position) { ADD_FAILURE(); };
  map.setSelection({{1, 2}, {1}});
  const QPoint at = pixelOf(StationId{1});
  press(at);
  moveTo(at + QPoint(60, 60));
  plan_.links.clear();
  plan_.stations.erase(1);
  map.planChanged();
  EXPECT_EQ(map.selection(), (MapSelection{{2}, {}}));
  moveTo(at + QPoint(90, 60));
  release(at + QPoint(90, 60));
  settle();
}

TEST_F(MapInput, ThePlaceToolGivesThePositionOfAClick) {
  MapView& map = showBlank();
  map.setTool(MapTool::kPlaceStation);
  std::vector<Position> placed;
  map.onPlaceStation = [&placed](Position position) { placed.push_back(position); };
  click(kGround);
  ASSERT_EQ(placed.size(), 1U);
  expectNear(placed[0], map.frame().positionOf({700, 80}), 1e-9);
  drag(kGround, {600, 100});  // pans
  EXPECT_EQ(placed.size(), 1U);
}

TEST_F(MapInput, ADoubleClickWithThePlaceToolPlacesOneStation) {
  MapView& map = showBlank();
  map.setTool(MapTool::kPlaceStation);
  int placed = 0;
  map.onPlaceStation = [&placed](Position) { ++placed; };
  click(kGround);
  QTest::mouseDClick(&map, Qt::LeftButton, {}, kGround);
  release(kGround);
  EXPECT_EQ(placed, 1);
}

TEST_F(MapInput, TheLinkToolLinksTheStationsOfTwoClicks) {
  MapView& map = showBundled();
  map.setTool(MapTool::kLink);
  std::vector<std::pair<StationId, StationId>> linked;
  map.onLinkStations = [&linked](StationId from, StationId to) { linked.emplace_back(from, to); };
  click(pixelOf(StationId{2}));
  moveTo({400, 300}, Qt::NoButton);
  settle();
  click(kGround);  // nothing there: the line stays begun
  click(pixelOf(StationId{1}));
  EXPECT_EQ(linked, (std::vector<std::pair<StationId, StationId>>{{2, 1}}));
}

TEST_F(MapInput, TheLinkToolLinksAlongADragToo) {
  MapView& map = showBlank();
  map.setTool(MapTool::kLink);
  int linked = 0;
  map.onLinkStations = [&linked](StationId from, StationId to) { linked += from == 1 && to == 2; };
  drag(pixelOf(StationId{1}), pixelOf(StationId{2}));
  EXPECT_EQ(linked, 1);
}

TEST_F(MapInput, TheSameStationTwiceIsNoLink) {
  MapView& map = showBlank();
  map.setTool(MapTool::kLink);
  map.onLinkStations = [](StationId, StationId) { ADD_FAILURE(); };
  click(pixelOf(StationId{1}));
  click(pixelOf(StationId{1}));
}

TEST_F(MapInput, EscapeEndsALinkThatIsBegunThenTheTool) {
  MapView& map = showBlank();
  map.setTool(MapTool::kLink);
  int done = 0;
  map.onToolDone = [&done] { ++done; };
  click(pixelOf(StationId{1}));
  key(Qt::Key_Escape);
  EXPECT_EQ(done, 0);
  key(Qt::Key_Escape);
  EXPECT_EQ(done, 1);
}

TEST_F(MapInput, ADoubleClickOpensAStationOrALinkAndZoomsIntoTheGround) {
  MapView& map = showBlank();
  std::vector<int> opened;
  map.onStationActivated = [&opened](StationId id) { opened.push_back(static_cast<int>(id)); };
  map.onLinkActivated = [&opened](LinkId id) { opened.push_back(-static_cast<int>(id)); };
  QTest::mouseDClick(&map, Qt::LeftButton, {}, pixelOf(StationId{2}));
  QTest::mouseDClick(&map, Qt::LeftButton, {}, (pixelOf(StationId{1}) + pixelOf(StationId{2})) / 2);
  EXPECT_EQ(opened, (std::vector<int>{2, -1}));
  const double level = map.frame().level();
  const Position under = map.frame().positionOf({700, 80});
  QTest::mouseDClick(&map, Qt::LeftButton, {}, kGround);
  EXPECT_NEAR(map.frame().level(), level + 1, 1e-9);
  expectNear(map.frame().positionOf({700, 80}), under, 1e-9);
}

TEST_F(MapInput, ArrowsPanShiftPansATenthPlusAndMinusZoomHomeShowsThePlan) {
  const MapView& map = showBlank();
  const MapFrame whole = map.frame();
  const MapPoint before = map.frame().pixelOf(plan_.stations[1].position);
  key(Qt::Key_Left);
  key(Qt::Key_Up, Qt::ShiftModifier);
  const MapPoint after = map.frame().pixelOf(plan_.stations[1].position);
  EXPECT_NEAR(after.x - before.x, 100, 1e-6);
  EXPECT_NEAR(after.y - before.y, 10, 1e-6);
  key(Qt::Key_Plus);
  EXPECT_NEAR(map.frame().level(), whole.level() + 0.5, 1e-9);
  key(Qt::Key_Minus);
  EXPECT_NEAR(map.frame().level(), whole.level(), 1e-9);
  key(Qt::Key_Home);
  expectNear(map.frame().centre(), whole.centre(), 1e-9);
}

TEST_F(MapInput, SpaceAtTheCrossDoesWhatAClickThereDoes) {
  MapView& map = showBlank();
  map.setFocus();
  MapFrame frame = map.frame();
  frame.setCentre(plan_.stations[2].position);
  map.setFrame(frame);
  key(Qt::Key_Space);
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{2});
  map.setTool(MapTool::kPlaceStation);
  std::optional<Position> placed;
  map.onPlaceStation = [&placed](Position position) { placed = position; };
  key(Qt::Key_Return);
  ASSERT_TRUE(placed.has_value());
  expectNear(*placed, plan_.stations[2].position, 1e-9);
}

TEST_F(MapInput, EnterAtTheCrossOpensWhatIsThere) {
  MapView& map = showBlank();
  MapFrame frame = map.frame();
  frame.setCentre(plan_.stations[2].position);
  map.setFrame(frame);
  std::optional<StationId> opened;
  map.onStationActivated = [&opened](StationId id) { opened = id; };
  key(Qt::Key_Return);
  EXPECT_EQ(opened, StationId{2});
}

TEST_F(MapInput, KeysThatTheMapDoesNotKnowGoOnToTheWindow) {
  MapView& map = showBlank();
  QKeyEvent unknown(QEvent::KeyPress, Qt::Key_F5, {});
  QCoreApplication::sendEvent(&map, &unknown);
  EXPECT_FALSE(unknown.isAccepted());
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
  QCoreApplication::sendEvent(&map, &escape);
  EXPECT_FALSE(escape.isAccepted());  // nothing to take back
}

TEST_F(MapInput, TheMenuIsAboutWhatIsUnderIt) {
  MapView& map = showBlank();
  std::optional<StationId> station;
  std::optional<LinkId> link;
  int menus = 0;
  map.onContextMenu = [&](QPoint, std::optional<StationId> ofStation, std::optional<LinkId> ofLink,
                          Position) {
    ++menus;
    station = ofStation;
    link = ofLink;
  };
  const auto menuAt = [&map](QPoint at) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, map.mapToGlobal(at));
    QCoreApplication::sendEvent(&map, &event);
  };
  menuAt(pixelOf(StationId{1}));
  EXPECT_EQ(station, StationId{1});
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
  menuAt((pixelOf(StationId{1}) + pixelOf(StationId{2})) / 2);
  EXPECT_EQ(link, LinkId{1});
  EXPECT_FALSE(station.has_value());
  menuAt(kGround);
  EXPECT_FALSE(station.has_value() || link.has_value());
  EXPECT_EQ(menus, 3);
  EXPECT_EQ(map.selection().links, std::vector<LinkId>{1});  // as it was
}

TEST_F(MapInput, ThePointersPositionIsToldAtOnceAndItsHeightWhenItIsRead) {
  MapView& map = showBundled();
  std::vector<PointerPlace> told;
  map.onPointer = [&told](const PointerPlace& place) { told.push_back(place); };
  moveTo({300, 250}, Qt::NoButton);
  moveTo({302, 250}, Qt::NoButton);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_FALSE(told[1].heightM.has_value());
  settle();
  ASSERT_TRUE(QTest::qWaitFor([&told] { return told.back().heightM.has_value(); }, kPatienceMs));
  expectNear(told.back().position, map.frame().positionOf({302, 250}), 1e-9);
  // The same height as the sampling of a path gives, at its end.
  const SampledTerrain sampled = sampleTerrain(told.back().position, {36.22, -84.12}, 50, 0, kBundledSource);
  ASSERT_EQ(sampled.status, 0);
  EXPECT_NEAR(*told.back().heightM, sampled.elevations.front(), 0.01);
  for (std::size_t i = 2; i < told.size(); ++i)
    EXPECT_EQ(told[i].position, told[1].position);  // the latest only
}

TEST_F(MapInput, OutsideTheTerrainThePointersHeightSaysSo) {
  MapView& map = showBundled();
  std::optional<float> height;
  map.onPointer = [&height](const PointerPlace& place) { height = place.heightM; };
  MapFrame frame = map.frame();
  frame.setCentre({40, -70});
  map.setFrame(frame);
  moveTo({400, 300}, Qt::NoButton);
  ASSERT_TRUE(QTest::qWaitFor([&height] { return height.has_value(); }, kPatienceMs));
  EXPECT_EQ(*height, kTerrainOutside);
}

TEST_F(MapInput, WithoutAPointerThePlaceAtTheCrossIsTold) {
  MapView& map = showBlank();
  std::optional<Position> told;
  map.onPointer = [&told](const PointerPlace& place) { told = place.position; };
  map.setFocus(Qt::TabFocusReason);
  key(Qt::Key_Left);
  ASSERT_TRUE(told.has_value());
  expectNear(*told, map.frame().centre(), 1e-9);
}

// In NAD-27 the same figures mean a place some metres to 200 m away.
TEST_F(MapInput, InNad27StationsAreDrawnShiftedAndPositionsAreGivenInTheStationsDatum) {
  ProfileControl control;
  control.let_StaDatum(0);
  plan_.datum = PlanDatum::kNad27;
  MapView& map = showBlank();
  const Position shifted = mapPosition(plan_.stations[1].position).position;
  EXPECT_NE(shifted, plan_.stations[1].position);
  MapFrame frame = map.frame();
  frame.setMetresPerPixel(0.5);
  frame.setCentre(shifted);
  map.setFrame(frame);
  std::optional<Position> told;
  map.onPointer = [&told](const PointerPlace& place) { told = place.position; };
  click({400, 300});
  EXPECT_EQ(map.selection().stations, std::vector<StationId>{1});
  moveTo({400, 300}, Qt::NoButton);
  ASSERT_TRUE(told.has_value());
  expectNear(*told, plan_.stations[1].position, 1e-7);  // a centimetre
  control.let_StaDatum(1);
}

TEST_F(MapInput, AltAndAnArrowMovesTheOneChosenStationByAPixel) {
  MapView& map = showBlank();
  std::vector<Position> moved;
  map.onMoveStation = [&moved](StationId id, Position to) {
    EXPECT_EQ(id, 1U);
    moved.push_back(to);
  };
  key(Qt::Key_Right, Qt::AltModifier);  // none is chosen
  EXPECT_TRUE(moved.empty());
  map.setSelection({{1}, {}});
  const MapFrame frame = map.frame();
  const MapPoint before = frame.pixelOf(plan_.stations.at(1).position);
  key(Qt::Key_Right, Qt::AltModifier);
  key(Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier);
  ASSERT_EQ(moved.size(), 2U);
  EXPECT_EQ(map.frame().centre(), frame.centre());
  EXPECT_NEAR(frame.pixelOf(moved[0]).x, before.x + 1, 1e-3);
  EXPECT_NEAR(frame.pixelOf(moved[0]).y, before.y, 1e-3);
  EXPECT_NEAR(frame.pixelOf(moved[1]).y, before.y - 10, 1e-3);
  map.setSelection({{1, 2}, {}});
  key(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(moved.size(), 2U);
}

TEST_F(MapInput, TheEndOfADragIsToldHoweverItComes) {
  MapView& map = showBlank();
  int ended = 0;
  map.onDragStation = [](StationId, Position) {};
  map.onDragEnded = [&ended] { ++ended; };
  const QPoint from = pixelOf(1), to = from + QPoint(60, 40);
  drag(from, to);
  EXPECT_EQ(ended, 1);
  press(from);
  moveTo(to);
  key(Qt::Key_Escape);
  release(to);
  EXPECT_EQ(ended, 2);
  press(from);
  moveTo(to);
  map.hide();
  EXPECT_EQ(ended, 3);
  map.show();
  press(from);
  moveTo(to);
  plan_.links.clear();
  plan_.stations.erase(1);
  map.planChanged();
  EXPECT_EQ(ended, 4);
  release(to);
  EXPECT_EQ(ended, 4);
}

TEST_F(MapInput, ManyResultsArePaintedTogether) {
  MapView& map = showBlank();
  struct Paints final : QObject {
    int count = 0;
    bool eventFilter(QObject*, QEvent* event) override {
      count += event->type() == QEvent::Paint;
      return false;
    }
  } paints;
  map.installEventFilter(&paints);
  for (int i = 0; i < 1000; ++i) {
    map.resultsChanged();
    QCoreApplication::processEvents();
  }
  EXPECT_FALSE(map.settled());
  settle();
  EXPECT_GE(paints.count, 1);
  EXPECT_LT(paints.count, 100);
}

}  // namespace
}  // namespace zel::host
