#include "zeltool/terrain/height_encoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "zeltool/terrain/height_units.h"

namespace zel {
namespace {

bool isVoid(const HeightEncoding& encoding, double raw) { return std::isnan(encoding.decode(raw)); }

TEST(HeightEncoding, PlainCellsAreMetres) {
  EXPECT_EQ(HeightEncoding{}.decode(1234.5), 1234.5F);
  EXPECT_EQ(HeightEncoding{}.decode(0), 0.0F);
  EXPECT_EQ(HeightEncoding{}.decode(-430), -430.0F);
}

TEST(HeightEncoding, TheMarkForNoDataIsAVoidWhateverItIs) {
  for (const double mark : {0.0, -1.0, 255.0, 9999.0, -32767.0, 1e20}) {
    const HeightEncoding encoding{mark};
    EXPECT_TRUE(isVoid(encoding, mark)) << mark;
    EXPECT_FALSE(isVoid(encoding, 100));
  }
}

TEST(HeightEncoding, TheMarkIsComparedBeforeScaleAndUnit) {
  const HeightEncoding encoding{0.0, 0.1, 100, 0.3048};
  EXPECT_TRUE(isVoid(encoding, 0));
  EXPECT_FLOAT_EQ(encoding.decode(10), 101 * 0.3048F);
}

TEST(HeightEncoding, UndeclaredMarksAreVoids) {
  EXPECT_TRUE(isVoid({}, -32768));
  EXPECT_TRUE(isVoid({std::nullopt, 1, 0, 0.3048}, -32768));
  EXPECT_TRUE(isVoid({}, -9999));
  EXPECT_FALSE(isVoid({}, -9998));
}

TEST(HeightEncoding, WithAScaleTheLowestIntegerMayBeAHeight) {
  EXPECT_FLOAT_EQ(HeightEncoding({std::nullopt, 0.01, 327.68, 1}).decode(-32768), 0.0F);
}

TEST(HeightEncoding, WhatIsNoHeightIsAVoid) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double raw :
       {double{NAN}, infinity, -infinity, 12000.5, -12000.5, 1e300, -1.7976931348623157e308})
    EXPECT_TRUE(isVoid({}, raw)) << raw;
  EXPECT_FALSE(isVoid({}, 12000));
  EXPECT_FALSE(isVoid({}, -12000));
}

TEST(HeightUnits, FeetAndTheirSpellings) {
  for (const char* name : {"ft", "Foot", "feet", "FEET", "foot (International)"})
    EXPECT_EQ(metresPerUnit(name), 0.3048) << name;
  // 1200/3937 m, Mendenhall order of 1893.
  for (const char* name : {"US survey foot", "us_survey_foot", "ftUS", "us-ft", "Foot_US", "foot US survey"})
    EXPECT_EQ(metresPerUnit(name), 1200.0 / 3937.0) << name;
}

TEST(HeightUnits, MetresAndTheirParts) {
  for (const char* name : {"", " ", "m", "metre", "Meters", "METERS"})
    EXPECT_EQ(metresPerUnit(name), 1) << name;
  EXPECT_EQ(metresPerUnit("dm"), 0.1);
  EXPECT_EQ(metresPerUnit("centimeters"), 0.01);
  EXPECT_EQ(metresPerUnit("mm"), 0.001);
  EXPECT_EQ(metresPerUnit("km"), 1000);
  EXPECT_EQ(metresPerUnit("yard"), 0.9144);
}

TEST(HeightUnits, OthersAreNotKnown) {
  for (const char* name : {"degree", "K", "fathoms?", "dBm", "1"}) EXPECT_FALSE(metresPerUnit(name)) << name;
}

}  // namespace
}  // namespace zel
