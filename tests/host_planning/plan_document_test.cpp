// The history of a plan, its file's state, and what its listeners are told.
#include "planning/plan_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace zel::host {
namespace {

Station station(const std::string& name, double latitude = 36.4) { return {name, {latitude, -84.35}, 30}; }

StationId add(PlanDocument& document, const std::string& name, double latitude = 36.4) {
  std::vector<StationId> added;
  document.apply(addStations(document.plan(), document.nextStation(), {station(name, latitude)}, &added));
  return added.front();
}

LinkId link(PlanDocument& document, StationId from, StationId to) {
  const LinkId id = document.nextLink();
  document.apply(addLink(document.plan(), id, {from, to, {}}));
  return id;
}

// ---- Undo and redo

TEST(PlanDocument, UndoesAndRedoesStepByStep) {
  PlanDocument document;
  EXPECT_FALSE(document.canUndo());
  EXPECT_EQ(document.undoText(), "");
  const StationId id = add(document, "North");
  document.apply(moveStation(document.plan(), id, {36, -84}));
  EXPECT_EQ(document.undoText(), "move North");
  document.undo();
  EXPECT_EQ(document.plan().stations.at(id).position.latitude, 36.4);
  EXPECT_EQ(document.undoText(), "add North");
  EXPECT_EQ(document.redoText(), "move North");
  document.undo();
  EXPECT_TRUE(document.plan().stations.empty());
  EXPECT_FALSE(document.canUndo());
  document.redo();
  document.redo();
  EXPECT_FALSE(document.canRedo());
  EXPECT_EQ(document.redoText(), "");
  EXPECT_EQ(document.plan().stations.at(id).position.latitude, 36);
}

TEST(PlanDocument, DoesNothingAtTheEndsOfTheHistory) {
  PlanDocument document;
  document.undo();
  document.redo();
  document.apply({});
  EXPECT_FALSE(document.canUndo());
  EXPECT_FALSE(document.modified());
}

TEST(PlanDocument, ForgetsWhatWasUndoneOnceSomethingElseIsDone) {
  PlanDocument document;
  add(document, "A");
  add(document, "B");
  document.undo();
  add(document, "C");
  EXPECT_FALSE(document.canRedo());
  EXPECT_EQ(document.plan().stations.size(), 2U);
}

TEST(PlanDocument, RestoresARemovedStationWithItsLinksInTheirOrder) {
  PlanDocument document;
  const StationId a = add(document, "A"), b = add(document, "B"), c = add(document, "C");
  link(document, a, b);
  link(document, b, c);
  link(document, c, a);
  const Plan before = document.plan();
  document.apply(removeStations(document.plan(), {a}));
  EXPECT_EQ(document.plan().links.size(), 1U);
  document.undo();
  EXPECT_EQ(document.plan(), before);
}

TEST(PlanDocument, TakesAnImportOfThousandsBackInOneStep) {
  PlanDocument document;
  add(document, "A");
  const Plan before = document.plan();
  document.apply(addNetwork(before, document.nextStation(), document.nextLink(),
                            std::vector<Station>(5000, station("B")), {{0, 1}}));
  EXPECT_EQ(document.undoText(), "import of 5000 stations and 1 link");
  document.undo();
  EXPECT_EQ(document.plan(), before);
}

TEST(PlanDocument, ChangesNothingWhenAnEditCannotBe) {
  PlanDocument document;
  const StationId id = add(document, "A");
  document.undo();
  EXPECT_THROW(document.apply(addLink(document.plan(), 1, {id, 9, {}})), std::invalid_argument);
  EXPECT_TRUE(document.canRedo());
  EXPECT_EQ(document.nextLink(), 1U);
}

// Edits at random, all of them undone, all redone, the plan compared with what it was at each step.
class PlanHistory : public testing::TestWithParam<unsigned> {
 protected:
  PlanHistory() : random_(GetParam()) {}

  std::size_t below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
  double from(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }

  template <typename Map>
  auto any(const Map& map) {
    return std::next(map.begin(), static_cast<std::ptrdiff_t>(below(map.size())))->first;
  }

  Station anyStation() {
    return {"S " + std::to_string(below(9)), {from(-90, 90), from(-180, 180)}, from(0, 750)};
  }

  PlanEdit stationEdit(const Plan& plan) {
    const StationId id = any(plan.stations);
    switch (below(4)) {
      case 0:
        return moveStation(plan, id, {from(-90, 90), from(-180, 180)});
      case 1:
        return changeStation(plan, id, anyStation());
      case 2:
        return removeStations(plan, {id, any(plan.stations)});
      default:
        return addLink(plan, document_.nextLink(), {id, any(plan.stations), {}});
    }
  }

  PlanEdit linkEdit(const Plan& plan) {
    const LinkId id = any(plan.links);
    const Link& was = plan.links.at(id);
    switch (below(3)) {
      case 0:
        return swapLink(plan, id);
      case 1:
        return changeLink(plan, id, {was.from, was.to, from(20, 20000)});
      default:
        return removeLinks(plan, {id});
    }
  }

  PlanEdit anyEdit() {
    const Plan& plan = document_.plan();
    if (below(20) == 0) return setDatum(plan, PlanDatum(below(2)));
    if (!plan.links.empty() && below(3) == 0) return linkEdit(plan);
    if (!plan.stations.empty() && below(3) != 0) return stationEdit(plan);
    return addStations(plan, document_.nextStation(), std::vector<Station>(1 + below(5), anyStation()));
  }

  // False for an edit that changes nothing, or a link from a station to itself.
  bool applyAny() {
    try {
      const PlanEdit edit = anyEdit();
      document_.apply(edit);
      return !edit.empty();
    } catch (const std::invalid_argument&) {
      return false;
    }
  }

  std::mt19937 random_;
  PlanDocument document_;
};

TEST_P(PlanHistory, LeadsBackAndForthThroughTheSamePlans) {
  std::vector<Plan> plans{document_.plan()};
  while (plans.size() < 400) {
    if (applyAny()) plans.push_back(document_.plan());
    ASSERT_EQ(planProblem(document_.plan()), "");
  }
  for (std::size_t i = plans.size(); i-- > 0;) {
    ASSERT_EQ(document_.plan(), plans[i]) << "undone to step " << i;
    ASSERT_EQ(document_.modified(), i != 0);
    document_.undo();
  }
  for (std::size_t i = 0; i < plans.size(); ++i) {
    ASSERT_EQ(document_.plan(), plans[i]) << "redone to step " << i;
    document_.redo();
  }
}

TEST_P(PlanHistory, NeverGivesANumberTwice) {
  std::set<StationId> stations;
  std::set<LinkId> links;
  document_.onChanged([&](const PlanChange&) {
    for (const auto& [id, station] : document_.plan().stations) stations.insert(id);
    for (const auto& [id, link] : document_.plan().links) links.insert(id);
  });
  for (int i = 0; i < 400; ++i) {
    if (below(3) == 0) document_.undo();
    if (below(6) == 0) document_.redo();
    applyAny();
    ASSERT_EQ(stations.count(document_.nextStation()), 0U);
    ASSERT_EQ(links.count(document_.nextLink()), 0U);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlanHistory, testing::Values(1U, 2U, 3U));

// ---- The file's state

TEST(PlanDocument, IsModifiedUnlessItIsAsItWasSaved) {
  PlanDocument document;
  EXPECT_FALSE(document.modified());
  add(document, "A");
  EXPECT_TRUE(document.modified());
  document.saved("/plans/a.json");
  EXPECT_FALSE(document.modified());
  EXPECT_EQ(document.path(), "/plans/a.json");
  document.undo();
  EXPECT_TRUE(document.modified());
  document.redo();
  EXPECT_FALSE(document.modified());
}

TEST(PlanDocument, StaysModifiedWhenTheSavedPlanIsOutOfReach) {
  PlanDocument document;
  add(document, "A");
  add(document, "B");
  document.saved("/plans/a.json");
  document.undo();
  add(document, "C");  // as many steps as were saved, but others
  EXPECT_TRUE(document.modified());
  document.undo();
  document.undo();
  EXPECT_TRUE(document.modified());
}

TEST(PlanDocument, OpensAPlanWithoutHistory) {
  PlanDocument document;
  add(document, "A");
  Plan plan;
  plan.stations = {{4, station("B")}, {7, station("C")}};
  plan.links = {{3, Link{4, 7, {}}}};
  document.open(plan, "/plans/b.json");
  EXPECT_EQ(document.plan(), plan);
  EXPECT_EQ(document.path(), "/plans/b.json");
  EXPECT_FALSE(document.canUndo());
  EXPECT_FALSE(document.modified());
  EXPECT_EQ(document.nextStation(), 8U);
  EXPECT_EQ(document.nextLink(), 4U);
}

TEST(PlanDocument, OfARecoveredPlanIsModifiedUntilItIsSaved) {
  PlanDocument document;
  document.open({}, "/plans/b.json", true);
  EXPECT_TRUE(document.modified());
  add(document, "A");
  document.undo();
  EXPECT_TRUE(document.modified());
  document.saved("/plans/b.json");
  EXPECT_FALSE(document.modified());
}

TEST(PlanDocument, KeepsItsPlanWhenAnotherCannotBe) {
  PlanDocument document;
  add(document, "A");
  Plan broken;
  broken.links = {{1, Link{1, 2, {}}}};
  EXPECT_THROW(document.open(broken, "/plans/b.json"), std::invalid_argument);
  EXPECT_EQ(document.plan().stations.size(), 1U);
  EXPECT_TRUE(document.canUndo());
  EXPECT_EQ(document.path(), "");
}

// ---- Bounds

TEST(PlanDocument, KeepsTheLastThousandSteps) {
  PlanDocument document;
  const StationId id = add(document, "A", 0);
  for (int i = 1; i <= 1000; ++i) document.apply(moveStation(document.plan(), id, {i * 0.01, 0}));
  EXPECT_TRUE(document.modified());
  int undone = 0;
  for (; document.canUndo(); ++undone) document.undo();
  EXPECT_EQ(undone, 1000);
  EXPECT_EQ(document.plan().stations.at(id).position.latitude, 0);  // the first step, adding it, is gone
  EXPECT_TRUE(document.modified());                                 // and with it what was opened
}

TEST(PlanDocument, KnowsTheSavedPlanWhileItIsAmongTheStepsKept) {
  PlanDocument document;
  const StationId id = add(document, "A", 0);
  document.apply(moveStation(document.plan(), id, {1, 1}));
  document.saved("/plans/a.json");
  for (int i = 1; i <= 1000; ++i) document.apply(moveStation(document.plan(), id, {i * 0.01, 0}));
  while (document.canUndo()) document.undo();
  EXPECT_FALSE(document.modified());  // the first of the steps kept begins there
  while (document.canRedo()) document.redo();
  document.apply(moveStation(document.plan(), id, {2, 2}));
  while (document.canUndo()) document.undo();
  EXPECT_TRUE(document.modified());
}

TEST(PlanDocument, ForgetsOldStepsThatHoldTooMuch) {
  constexpr std::size_t kStations = 200, kMostHeld = 1000;
  PlanDocument document(kMostHeld);
  // Each step holds its stations twice: before and after.
  const std::vector<Station> many(kStations, station("A"));
  for (int i = 0; i < 2; ++i) {
    std::vector<StationId> added;
    document.apply(addStations(document.plan(), document.nextStation(), many, &added));
    document.apply(removeStations(document.plan(), added));
  }
  int undone = 0;
  for (; document.canUndo(); ++undone) document.undo();
  EXPECT_EQ(undone, static_cast<int>(kMostHeld / (2 * kStations)));
}

// ---- Listeners

TEST(PlanDocument, TellsWhatAnEditTouched) {
  PlanDocument document;
  const StationId a = add(document, "A"), b = add(document, "B"), c = add(document, "C");
  const LinkId ab = link(document, a, b), bc = link(document, b, c);
  std::vector<PlanChange> changes;
  document.onChanged([&](const PlanChange& change) { changes.push_back(change); });

  document.apply(moveStation(document.plan(), b, {36, -84}));
  EXPECT_EQ(changes.back().stations, std::vector<StationId>{b});
  EXPECT_EQ(changes.back().links, (std::vector<LinkId>{ab, bc}));
  document.apply(removeStations(document.plan(), {c}));
  EXPECT_EQ(changes.back().stations, std::vector<StationId>{c});
  EXPECT_EQ(changes.back().links, std::vector<LinkId>{bc});
  document.undo();
  EXPECT_EQ(changes.back().links, std::vector<LinkId>{bc});
  document.apply(swapLink(document.plan(), ab));
  EXPECT_TRUE(changes.back().stations.empty());
  EXPECT_EQ(changes.back().links, std::vector<LinkId>{ab});
  EXPECT_FALSE(changes.back().datum || changes.back().everything);
  document.apply(setDatum(document.plan(), PlanDatum::kNad27));
  EXPECT_TRUE(changes.back().datum);
  document.open({}, "");
  EXPECT_TRUE(changes.back().everything);
  EXPECT_EQ(changes.size(), 6U);
}

TEST(PlanDocument, TellsItsListenersInTheirOrderOnceThePlanIsChanged) {
  PlanDocument document;
  std::string told;
  document.onChanged(
      [&](const PlanChange&) { told += "1:" + std::to_string(document.plan().stations.size()); });
  document.onChanged([&](const PlanChange&) { told += " 2"; });
  document.onFileStateChanged([&] { told += document.modified() ? " modified" : " same"; });
  add(document, "A");
  document.saved("/plans/a.json");
  document.undo();
  EXPECT_EQ(told, "1:1 2 modified same1:0 2 modified");
}

TEST(PlanDocument, LetsAListenerAddAnother) {
  PlanDocument document;
  int told = 0;
  bool added = false;
  document.onChanged([&](const PlanChange&) {
    if (!added) document.onChanged([&](const PlanChange&) { ++told; });
    added = true;
  });
  add(document, "A");
  add(document, "B");
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace zel::host
