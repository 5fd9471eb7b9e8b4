// Stations, their limits and names, edits of a plan, and stations as lines of text.
#include "planning/plan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "planning/plan_edit.h"
#include "planning/plan_text.h"
#include "planning/short_number.h"
#include "planning/utf8_text.h"

namespace zel::host {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

Station station(const std::string& name, double latitude = 36.4, double longitude = -84.35,
                double antennaM = 30) {
  return {name, {latitude, longitude}, antennaM};
}

// Stations 1 to 3, links 1 (1 to 2) and 2 (2 to 3, 450 MHz).
Plan smallPlan() {
  Plan plan;
  plan.stations = {{1, station("North")}, {2, station("South", 36.1)}, {3, station("East", 36.2, -84)}};
  plan.links = {{1, Link{1, 2, {}}}, {2, Link{2, 3, 450.0}}};
  return plan;
}

std::string errorOfEdit(const Plan& plan, const PlanEdit& edit) {
  Plan changed = plan;
  try {
    applyEdit(changed, edit);
  } catch (const std::invalid_argument& error) {
    EXPECT_EQ(changed, plan);
    return error.what();
  }
  return "";
}

Plan applied(Plan plan, const PlanEdit& edit) {
  applyEdit(plan, edit);
  return plan;
}

// ---- What a plan can have

TEST(PlanStation, HasALatitudeFromPoleToPole) {
  EXPECT_EQ(stationProblem(station("A", 90)), "");
  EXPECT_EQ(stationProblem(station("A", -90)), "");
  EXPECT_EQ(stationProblem(station("A", 95)), "latitude 95 is not from -90 to 90");
  EXPECT_EQ(stationProblem(station("A", -90.000001)), "latitude -90.000001 is not from -90 to 90");
  EXPECT_EQ(stationProblem(station("A", kNotANumber)), "latitude is not a number");
}

TEST(PlanStation, HasALongitudeUpTo180EitherWay) {
  EXPECT_EQ(stationProblem(station("A", 0, 180)), "");
  EXPECT_EQ(stationProblem(station("A", 0, -180)), "");
  EXPECT_EQ(stationProblem(station("A", 0, 180.5)), "longitude 180.5 is not from -180 to 180");
  EXPECT_EQ(stationProblem(station("A", 0, kInfinite)), "longitude inf is not from -180 to 180");
}

TEST(PlanStation, HasAnAntennaFrom0To750Metres) {
  EXPECT_EQ(stationProblem(station("A", 0, 0, 0)), "");
  EXPECT_EQ(stationProblem(station("A", 0, 0, 750)), "");
  EXPECT_EQ(stationProblem(station("A", 0, 0, 750.5)), "antenna height 750.5 m is not from 0 to 750 m");
  EXPECT_EQ(stationProblem(station("A", 0, 0, -1)), "antenna height -1 m is not from 0 to 750 m");
  EXPECT_EQ(stationProblem(station("A", 0, 0, kNotANumber)), "antenna height is not a number");
}

TEST(PlanStation, HasANameOfOneLine) {
  EXPECT_EQ(stationProblem(station("Größe 山")), "");
  EXPECT_EQ(stationProblem(station("")), "the name is empty");
  EXPECT_EQ(stationProblem(station("  ")), "the name is empty");
  const std::string broken = "the name has a line break or another control character in it";
  EXPECT_EQ(stationProblem(station("a\nb")), broken);
  EXPECT_EQ(stationProblem(station("a\x7F")), broken);
  EXPECT_EQ(stationProblem(station("a\xC2\x85")), broken);      // U+0085, next line
  EXPECT_EQ(stationProblem(station("a\xE2\x80\xA8")), broken);  // U+2028, line separator
  EXPECT_EQ(stationProblem(station("caf\xE9")), "the name is not UTF-8");
}

TEST(PlanStation, HasANameOf200CharactersAtMostWhateverTheirBytes) {
  std::string name;
  for (int i = 0; i < 200; ++i) name += "\xE5\xB1\xB1";
  EXPECT_EQ(stationProblem(station(name)), "");
  EXPECT_EQ(stationProblem(station(name + "x")), "the name has 201 characters; at most 200 are possible");
}

TEST(PlanLink, HasDifferentEndsAndAFrequencyThatTheModelTakes) {
  EXPECT_EQ(linkProblem({1, 2, {}}), "");
  EXPECT_EQ(linkProblem({1, 2, 20.0}), "");
  EXPECT_EQ(linkProblem({1, 2, 20000.0}), "");
  EXPECT_EQ(linkProblem({1, 1, {}}), "the link ends at the station where it starts");
  EXPECT_EQ(linkProblem({1, 2, 19.9}), "frequency 19.9 MHz is not from 20 to 20000 MHz");
  EXPECT_EQ(linkProblem({1, 2, kNotANumber}), "frequency is not a number");
}

TEST(PlanWhole, NamesTheFirstStationOrLinkThatCannotBe) {
  EXPECT_EQ(planProblem(smallPlan()), "");
  Plan plan = smallPlan();
  plan.stations[2].position.latitude = 91;
  EXPECT_EQ(planProblem(plan), "station 2: latitude 91 is not from -90 to 90");
  plan = smallPlan();
  plan.links[2].to = 9;
  EXPECT_EQ(planProblem(plan), "link 2: there is no station 9");
  plan = smallPlan();
  plan.links[0] = Link{1, 3, {}};
  EXPECT_EQ(planProblem(plan), "link 0: 0 is no number of a link");
}

// ---- Names

TEST(TidyName, MakesOneTrimmedLine) {
  EXPECT_EQ(tidyName(" North\r\nridge\t"), "North  ridge");
  EXPECT_EQ(tidyName("a\xE2\x80\xA9z"), "a z");
  EXPECT_EQ(tidyName("\n \x01"), "");
}

TEST(TidyName, ReplacesWhatIsNoUtf8) {
  EXPECT_EQ(tidyName("caf\xE9"), "caf\xEF\xBF\xBD");
  EXPECT_EQ(tidyName("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");            // overlong
  EXPECT_EQ(tidyName("\xED\xA0\x80").size(), 9U);                         // a surrogate: three bad bytes
  EXPECT_EQ(tidyName("\xF4\x90\x80\x80").size(), 12U);                    // above U+10FFFF
  EXPECT_EQ(tidyName("\xF0\x9F\x93\xA1 mast"), "\xF0\x9F\x93\xA1 mast");  // four bytes
}

TEST(TidyName, CutsAt200CharactersNotInsideOne) {
  std::string name;
  for (int i = 0; i < 250; ++i) name += "\xC3\xA9";
  EXPECT_EQ(tidyName(name), name.substr(0, 400));
  EXPECT_EQ(tidyName(std::string(199, 'x') + " y"), std::string(199, 'x'));
}

TEST(TidyName, GivesWhatAStationCanHave) {
  std::string name;
  for (int byte = 0; byte < 256; ++byte) name += static_cast<char>(byte);
  EXPECT_EQ(stationProblem(station(tidyName(name))), "");
}

TEST(FreshName, IsTheFirstNumberThatNoStationHas) {
  Plan plan;
  EXPECT_EQ(freshName(plan), "Station 1");
  plan.stations[1] = station("Station 2");
  plan.stations[2] = station("Station 1");
  EXPECT_EQ(freshName(plan), "Station 3");
}

TEST(ShortNumber, ReadsBackAsTheSameValue) {
  EXPECT_EQ(shortNumber(36.4), "36.4");
  EXPECT_EQ(shortNumber(-84.35), "-84.35");
  EXPECT_EQ(shortNumber(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(shortNumber(-0.0), "0");
  EXPECT_EQ(fixedNumber(-0.0000001, 6), "0.000000");
  EXPECT_EQ(fixedNumber(-84.3500004, 6), "-84.350000");
}

// ---- Edits

TEST(PlanEdit, GivesTheEditThatTakesItBack) {
  const Plan before = smallPlan();
  for (const PlanEdit& edit :
       {addStations(before, 4, {station("West")}), moveStation(before, 1, {36, -84}),
        removeStations(before, {2}), addLink(before, 3, {1, 3, {}}), swapLink(before, 2),
        removeLinks(before, {1, 2}), setDatum(before, PlanDatum::kNad27)}) {
    Plan plan = before;
    const PlanEdit undo = applyEdit(plan, edit);
    EXPECT_NE(plan, before) << edit.text;
    EXPECT_EQ(undo.text, edit.text);
    const Plan after = plan;
    const PlanEdit redo = applyEdit(plan, undo);
    EXPECT_EQ(plan, before) << edit.text;
    applyEdit(plan, redo);
    EXPECT_EQ(plan, after) << edit.text;
  }
}

TEST(PlanEdit, ThatAPlanCannotHaveChangesNothing) {
  const Plan plan = smallPlan();
  PlanEdit edit;
  edit.stations[1] = std::nullopt;
  EXPECT_EQ(errorOfEdit(plan, edit), "link 1: there is no station 1");
  EXPECT_EQ(errorOfEdit(plan, moveStation(plan, 2, {91, 0})), "station 2: latitude 91 is not from -90 to 90");
  EXPECT_EQ(errorOfEdit(plan, addLink(plan, 3, {1, 9, {}})), "link 3: there is no station 9");
  EXPECT_EQ(errorOfEdit(plan, addLink(plan, 3, {3, 3, {}})),
            "link 3: the link ends at the station where it starts");
  EXPECT_EQ(errorOfEdit(plan, addStations(plan, 0, {station("A")})), "0 is no number of a station");
}

TEST(PlanEdit, MayLinkStationsThatItAdds) {
  PlanEdit edit;
  edit.stations[4] = station("West");
  edit.links[3] = Link{1, 4, {}};
  EXPECT_EQ(applied(smallPlan(), edit).links.at(3).to, 4U);
  edit.stations[4] = std::nullopt;
  EXPECT_EQ(errorOfEdit(smallPlan(), edit), "link 3: there is no station 4");
}

TEST(PlanEdit, HoldsToTheMostStationsOfAPlan) {
  const std::vector<Station> most(kMostStations, station("A"));
  Plan plan;
  applyEdit(plan, addStations(plan, 1, most));
  EXPECT_EQ(plan.stations.size(), kMostStations);
  EXPECT_THROW(applyEdit(plan, addStations(plan, kMostStations + 1, {station("B")})), std::invalid_argument);
  // One for another is possible.
  PlanEdit exchange = removeStations(plan, {1});
  exchange.stations[kMostStations + 1] = station("B");
  applyEdit(plan, exchange);
  EXPECT_EQ(plan.stations.size(), kMostStations);
}

TEST(PlanEdit, SaysWhatItDoes) {
  const Plan plan = smallPlan();
  EXPECT_EQ(addStations(plan, 4, {station("West")}).text, "add West");
  EXPECT_EQ(addStations(plan, 4, {station("A"), station("B")}).text, "add 2 stations");
  EXPECT_EQ(moveStation(plan, 1, {36, -84}).text, "move North");
  EXPECT_EQ(changeStation(plan, 1, station("Ridge")).text, "rename North");
  EXPECT_EQ(changeStation(plan, 1, station("North", 36.4, -84.35, 12)).text, "change the antenna of North");
  EXPECT_EQ(changeStation(plan, 1, station("Ridge", 36)).text, "change North");
  EXPECT_EQ(removeStations(plan, {1}).text, "remove North");
  EXPECT_EQ(removeStations(plan, {1, 3}).text, "remove 2 stations");
  EXPECT_EQ(addLink(plan, 3, {1, 3, {}}).text, "link North to East");
  EXPECT_EQ(changeLink(plan, 1, {1, 2, 300.0}).text, "change the frequency of North to South");
  EXPECT_EQ(changeLink(plan, 1, {1, 3, {}}).text, "change the link North to South");
  EXPECT_EQ(swapLink(plan, 2).text, "swap the ends of South to East");
  EXPECT_EQ(removeLinks(plan, {1}).text, "remove the link North to South");
  EXPECT_EQ(removeLinks(plan, {1, 2}).text, "remove 2 links");
  EXPECT_EQ(setDatum(plan, PlanDatum::kNad27).text, "change the datum");
  const std::string longName(31, 'n');
  EXPECT_EQ(addStations(plan, 4, {station(longName)}).text, "add " + std::string(30, 'n') + "...");
}

TEST(PlanEdit, ThatWouldChangeNothingIsEmpty) {
  const Plan plan = smallPlan();
  EXPECT_TRUE(addStations(plan, 4, {}).empty());
  EXPECT_TRUE(changeStation(plan, 1, station(" North ")).empty());
  EXPECT_TRUE(moveStation(plan, 1, {36.4, -84.35}).empty());
  EXPECT_TRUE(removeStations(plan, {9}).empty());
  EXPECT_TRUE(changeLink(plan, 2, {2, 3, 450.0}).empty());
  EXPECT_TRUE(removeLinks(plan, {9}).empty());
  EXPECT_TRUE(setDatum(plan, PlanDatum::kNad83).empty());
  EXPECT_TRUE(addNetwork(plan, 4, 3, {}, {}).empty());
}

TEST(PlanEdit, OfWhatIsNotThereIsRefused) {
  const Plan plan = smallPlan();
  EXPECT_THROW(changeStation(plan, 9, station("A")), std::invalid_argument);
  EXPECT_THROW(moveStation(plan, 9, {}), std::invalid_argument);
  EXPECT_THROW(changeLink(plan, 9, {1, 2, {}}), std::invalid_argument);
  EXPECT_THROW(swapLink(plan, 9), std::invalid_argument);
}

TEST(PlanEdit, NamesStationsThatHaveNoName) {
  Plan plan = smallPlan();
  plan.stations[1].name = "Station 1";
  std::vector<StationId> added;
  const PlanEdit edit =
      addStations(plan, 7, {station(""), station("Station 2"), station("a\nb"), station("\t")}, &added);
  EXPECT_EQ(added, (std::vector<StationId>{7, 8, 9, 10}));
  EXPECT_EQ(edit.stations.at(7)->name, "Station 3");  // another in the list is Station 2
  EXPECT_EQ(edit.stations.at(8)->name, "Station 2");
  EXPECT_EQ(edit.stations.at(9)->name, "a b");
  EXPECT_EQ(edit.stations.at(10)->name, "Station 4");
}

TEST(PlanEdit, RemovesAStationWithItsLinksAndNoOthers) {
  const Plan plan = applied(smallPlan(), removeStations(smallPlan(), {1}));
  EXPECT_EQ(plan.stations.size(), 2U);
  EXPECT_EQ(plan.links, (std::map<LinkId, Link>{{2, Link{2, 3, 450.0}}}));
}

TEST(PlanEdit, BringsAnImportedNetworkInOneStep) {
  const Plan before = smallPlan();
  const PlanEdit edit =
      addNetwork(before, 4, 3, {station("A"), station("B"), station("C")}, {{0, 1}, {1, 2}, {2, 2}, {1, 7}});
  EXPECT_EQ(edit.text, "import of 3 stations and 2 links");
  const Plan plan = applied(before, edit);
  EXPECT_EQ(plan.stations.size(), 6U);
  EXPECT_EQ(plan.links.at(3), (Link{4, 5, {}}));
  EXPECT_EQ(plan.links.at(4), (Link{5, 6, {}}));
  EXPECT_EQ(plan.links.size(), 4U);
  EXPECT_EQ(addNetwork(before, 4, 3, {station("A")}, {}).text, "import of 1 station");
}

TEST(PlanEdit, SwapsTheEndsAndKeepsTheFrequency) {
  EXPECT_EQ(applied(smallPlan(), swapLink(smallPlan(), 2)).links.at(2), (Link{3, 2, 450.0}));
}

// ---- Lines of text

TEST(StationText, IsLatitudeLongitudeHeightName) {
  EXPECT_EQ(stationText(station("North ridge")), "36.400000,-84.350000,30,North ridge");
  EXPECT_EQ(stationText(station("Depot", -0.00000001, 180, 12.5)), "-0.00000001,180.000000,12.5,Depot");
}

TEST(StationText, QuotesANameAsCsvDoes) {
  EXPECT_EQ(stationText(station("Ridge, \"old\"")), "36.400000,-84.350000,30,\"Ridge, \"\"old\"\"\"");
  EXPECT_EQ(stationText(station("Ridge; old")), "36.400000,-84.350000,30,\"Ridge; old\"");
}

TEST(StationText, HasALineForEachStation) {
  EXPECT_EQ(stationsText(smallPlan(), {3, 9, 1}),
            "36.200000,-84.000000,30,East\n36.400000,-84.350000,30,North\n");
}

}  // namespace
}  // namespace zel::host
