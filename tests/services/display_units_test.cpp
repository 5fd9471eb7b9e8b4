#include "component/services/display_units.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(UnitsTable, HoldsFourUnitsWithNamesAndAbbreviations) {
  const UnitsTable table = Init_GUC();
  EXPECT_EQ(table[0].name, "meters");
  EXPECT_EQ(table[0].abbreviation, "m");
  EXPECT_EQ(table[1].name, "kilometers");
  EXPECT_EQ(table[1].abbreviation, "km");
  EXPECT_EQ(table[2].name, "feet");
  EXPECT_EQ(table[2].abbreviation, "ft");
  EXPECT_EQ(table[3].name, "miles");
  EXPECT_EQ(table[3].abbreviation, "mi");
}

TEST(UnitsTable, ComputesItsFactorsInTheGivenOrderToTheLastBit) {
  const UnitsTable table = Init_GUC();
  volatile double foot = 0.3048, thousand = 1000, mile = 5280, one = 1;  // at run time, not folded
  const double feet = one / foot;
  const double miles = (feet * thousand) * (one / mile);
  EXPECT_EQ(table[0].factor, 1.0);
  EXPECT_EQ(table[1].factor, 1.0);
  EXPECT_EQ(table[2].factor, feet);
  EXPECT_EQ(table[3].factor, miles);
}

// Definition of the international foot (0.3048 m) and mile (1609.344 m); tolerance half of the last shown
// digit.
TEST(UnitsTable, Shows1000MetresAs3280Point84FeetAnd10KilometresAs6Point2137Miles) {
  const DisplayUnits imperial = unitsFor(Init_GUC(), 1);
  EXPECT_NEAR(1000 * imperial.height.factor, 3280.84, 0.005);
  EXPECT_NEAR(10 * imperial.distance.factor, 6.2137, 0.00005);
}

TEST(UnitsTable, ChoosesImperialForCode1AndMetricForAnythingElse) {
  const UnitsTable table = Init_GUC();
  EXPECT_EQ(unitsFor(table, 1).height.name, "feet");
  EXPECT_EQ(unitsFor(table, 1).distance.name, "miles");
  for (const std::int32_t code : {0, 2, -1, 3, 32767}) {
    EXPECT_EQ(unitsFor(table, code).height.name, "meters") << code;
    EXPECT_EQ(unitsFor(table, code).distance.name, "kilometers") << code;
  }
}

}  // namespace
}  // namespace zel
