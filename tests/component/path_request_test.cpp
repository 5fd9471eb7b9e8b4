// What the public functions over a path say of their settings: refused, warned of, noted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "bundled_path.h"
#include "real_component.h"
#include "support/says.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/settings.h"

namespace zel {
namespace {

using test::kFrom;
using test::kTo;
const PathLossRequest kAsked{kFrom, kTo, 30.0, 12.0, 950.0};

using Texts = std::vector<std::string>;

using test::says;

std::string all(const Texts& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += text + "\n";
  return joined;
}

class PathRequestTest : public test::RealComponent {
 protected:
  static PathLoss computed(const PathLossRequest& request = kAsked) {
    PathLoss loss = computePathLoss(request);
    EXPECT_EQ(loss.status, 0) << loss.error;
    return loss;
  }
  static std::string refusal(const PathLossRequest& request = kAsked) {
    const PathLoss loss = computePathLoss(request);
    EXPECT_EQ(loss.status, 5);
    return loss.error;
  }
  // Due south of the start, to a metre.
  static PathLossRequest southwards(double km) {
    PathLossRequest request = kAsked;
    double degrees = km / 111;
    for (int i = 0; i < 4; ++i) {
      request.to = {kFrom.latitude - degrees, kFrom.longitude};
      degrees *= km / computed(request).distanceKm;
    }
    EXPECT_NEAR(computed(request).distanceKm, km, 1e-6);
    return request;
  }
};

// 100 points a kilometre and at most 1000: 9.993 km make 1000.3, which rounds to 1000.
TEST_F(PathRequestTest, SaysThatThePathIsLimitedOnlyWhenTheRoundedNumberOfPointsIsCut) {
  const auto limited = [](const PathLossRequest& request) {
    const PathProfile profile =
        computePathProfile({request.from, request.to, request.fromHeight, request.toHeight, 1.333, 950.0});
    EXPECT_EQ(profile.points, 1001) << "1000 intervals";
    const bool said = says(computed(request).notes, "Prf_Max limits the path to 1000 points");
    EXPECT_EQ(says(profile.notes, "Prf_Max limits the path to 1000 intervals"), said);
    return said;
  };
  EXPECT_FALSE(limited(southwards(9.993)));
  EXPECT_TRUE(limited(southwards(9.997)));
  EXPECT_TRUE(limited(southwards(10.01)));
}

TEST_F(PathRequestTest, ARefusalByTheModelNamesTheSettingThatTheValueCameFrom) {
  const struct {
    const char* key;
    const char* refused;
    const char* taken;
    const char* begin;
  } rows[] = {
      {"dDielectric", "0", "15", "the setting ITM/dDielectric: the ground's relative permittivity is 0; "},
      {"dCond", "-1", "0.005", "the setting ITM/dCond: the ground's conductivity is -1 S/m; "},
      {"dSurfRef", "600", "301", "the setting ITM/dSurfRef: the surface refractivity is 600 N-units; "},
      {"dDielectric", "dry", "15",
       "the setting ITM/dDielectric (\"dry\"): the ground's relative permittivity is 0; "}};
  for (const auto& row : rows) {
    set("ITM", row.key, row.refused);
    EXPECT_EQ(refusal().find(row.begin), 0U) << refusal();
    set("ITM", row.key, row.taken);
  }
}

TEST_F(PathRequestTest, AFrequencyOfNothingIsRefusedByItsSettingWhenNoneWasGiven) {
  PathLossRequest request = kAsked;
  request.frequencyMhz = 0;
  EXPECT_EQ(refusal(request).find("the frequency is 0 MHz; give a number above 0"), 0U);
  request.frequencyMhz.reset();
  set("Profile", "Prf_Freq", "0");
  EXPECT_EQ(refusal(request).find("the setting Profile/Prf_Freq: the frequency is 0 MHz; "), 0U);
  set("Profile", "Prf_Freq", "FM");
  EXPECT_EQ(refusal(request).find("the setting Profile/Prf_Freq (\"FM\"): the frequency is 0 MHz; "), 0U);
  EXPECT_EQ(computePathProfile({kFrom, kTo, 30.0, 30.0, 1.333, {}})
                .error.find("the setting Profile/Prf_Freq (\"FM\"): the frequency is 0 MHz; "),
            0U);
}

// Ground that rises from either end, so that only the antenna lifts it above what lies ahead.
TEST_F(PathRequestTest, AnAntennaTooLowForTheModelIsRefusedByItsSetting) {
  useTile([](int row, int) { return 2000 - 4 * std::abs(row - 600); });
  const Position north{36.7, -84.5};
  const Position south{36.3, -84.5};
  PathLossRequest request{north, south, {}, 30.0, 950.0};
  set("Profile", "Prf_HtL", "0");
  EXPECT_EQ(refusal(request).find("the setting Profile/Prf_HtL: the transmitter's antenna"), 0U)
      << refusal(request);
  request.fromHeight = 0;
  EXPECT_EQ(refusal(request).find("the transmitter's antenna"), 0U);
  request = {north, south, 30.0, {}, 950.0};
  set("Profile", "Prf_HtR", "0");
  EXPECT_EQ(refusal(request).find("the setting Profile/Prf_HtR: the receiver's antenna"), 0U);
}

TEST_F(PathRequestTest, WarnsOfALevelThatIsNone) {
  const struct {
    const char* stored;
    double used;
    const char* warning;
  } rows[] = {
      {"101", 0.01, "the setting ITM/dConfidence is 101, which is no level: it is used as 1 %"},
      {"0", 0.01, "the setting ITM/dConfidence is 0, which is no level: it is used as 1 %"},
      {"-1", 0.01, "the setting ITM/dConfidence is -1, which is no level: it is used as 1 %"},
      {"0.009", 0.01, "the setting ITM/dConfidence is 0.009, which is no level: it is used as 1 %"},
      {"5000", 0.5, "the setting ITM/dConfidence is 5000, which is no level: it is used as 50 %"},
      {"abc", 0.01, "the setting ITM/dConfidence (\"abc\") is 0, which is no level: it is used as 1 %"},
      {"50 %", 0.5,
       "the setting ITM/dConfidence, \"50 %\", is used as 50: it takes a number from 0.01 to 100"}};
  for (const auto& row : rows) {
    set("ITM", "dConfidence", row.stored);
    const PathLoss loss = computed();
    EXPECT_EQ(loss.model.confidence, row.used);
    EXPECT_EQ(std::count(loss.warnings.begin(), loss.warnings.end(), row.warning), 1) << row.stored << "\n"
                                                                                      << all(loss.warnings);
    EXPECT_FALSE(says(loss.notes, "ITM/dConfidence")) << all(loss.notes);
  }
  for (const char* level : {"0.01", "99", "0.5"}) {
    set("ITM", "dConfidence", level);
    EXPECT_FALSE(says(computed().warnings, "ITM/dConfidence")) << level;
  }
  set("ITM", "dReliability", "-1");
  EXPECT_TRUE(
      says(computed().warnings, "the setting ITM/dReliability is -1, which is no level: it is used as 1 %"));
}

TEST_F(PathRequestTest, WarnsOnceOfEveryStoredTextThatIsNotUsedAsItReads) {
  const struct {
    const char* section;
    const char* key;
    const char* stored;
    const char* said;
  } rows[] = {{"ITM", "iHor", "vertical", "0: it takes a whole number from -32768 to 32767"},
              {"ITM", "iRadioClimate", "5.4", "5: it takes a whole number from 1 to 7"},
              {"ITM", "dCond", "nan", "0: it takes a number from 0 to 1000000000 (S/m)"},
              {"ITM", "dDielectric", "15,5", "15: it takes a number from 1 to 100000"},
              {"ITM", "dSurfRef", "301 N", "301: it takes a number from 0 to 540 (N-units)"},
              {"Profile", "Prf_Freq", "145,3", "145: it takes a number from 20 to 20000 (MHz)"},
              {"Profile", "Prf_Per", "50.4", "50: it takes a whole number from 10 to 99 (1/km)"},
              {"Profile", "Prf_Max", "1e3x", "1000: it takes a whole number from 1000 to 5000"},
              {"Profile", "Prf_TRes", "5", "3: it takes one of 1,2,3,7,9"},
              {"Profile", "Prf_HtL", "30.5", "30: it takes a whole number from 1 to 750 (m)"},
              {"Settings", "CalcMethod", "2", "0: it takes one of 0,1"}};
  for (const auto& row : rows) set(row.section, row.key, row.stored);
  PathLossRequest request = kAsked;
  request.fromHeight.reset();
  request.frequencyMhz.reset();
  const PathLoss loss = computed(request);
  for (const auto& row : rows) {
    const std::string warning = "the setting " + std::string(row.section) + "/" + row.key + ", \"" +
                                row.stored + "\", is used as " + row.said;
    EXPECT_EQ(std::count(loss.warnings.begin(), loss.warnings.end(), warning), 1) << warning << "\n"
                                                                                  << all(loss.warnings);
  }
  const PathProfile profile = computePathProfile({kFrom, kTo, {}, 30.0, 1.333, {}});
  ASSERT_EQ(profile.status, 0) << profile.error;
  EXPECT_TRUE(says(profile.notes, "the setting Profile/Prf_Per, \"50.4\", is used as 50"));
  EXPECT_TRUE(says(profile.notes, "the setting Profile/Prf_TRes, \"5\", is used as 3"));
  EXPECT_FALSE(says(profile.notes, "ITM/")) << "not used";
}

TEST_F(PathRequestTest, WarnsOfNoTextThatIsUsedAsItReads) {
  for (const auto& [section, key, value] :
       {std::tuple{"ITM", "iHor", " 1 "},
        {"ITM", "iRadioClimate", "5.0"},
        {"ITM", "dCond", "5e-3"},
        {"ITM", "dSurfRef", "301.25"},
        {"ITM", "dReliability", "0.9"},
        {"Profile", "Prf_Freq", "145.30000001"},  // the 32-bit float 145.3
        {"Profile", "Prf_Per", "5"},
        {"Profile", "Prf_Max", "77"},
        {"Profile", "Prf_TRes", "3"},
        {"Settings", "CalcMethod", "1"}})
    set(section, key, value);
  PathLossRequest request = kAsked;
  request.frequencyMhz.reset();
  EXPECT_FALSE(says(computed(request).warnings, "the setting")) << all(computed(request).warnings);
  EXPECT_FALSE(says(computed(request).warnings, "it takes"));
}

TEST_F(PathRequestTest, AGivenFrequencyOrHeightLeavesItsSettingUnread) {
  set("Profile", "Prf_Freq", "FM");
  set("Profile", "Prf_HtL", "high");
  const PathLoss loss = computed();
  EXPECT_FALSE(says(loss.warnings, "Prf_")) << all(loss.warnings);
}

TEST_F(PathRequestTest, AMaximumOfOnePointIsRefusedByItsName) {
  set("Profile", "Prf_Max", "1");
  EXPECT_EQ(refusal(),
            "the setting Profile/Prf_Max is 1 and leaves the path fewer than 2 points; set 1000 to 5000");
  set("Profile", "Prf_Max", "2");
  EXPECT_EQ(computed().points, 2);
}

TEST_F(PathRequestTest, ACoordinateFormatForThisRunIsThatOfThePositions) {
  overrideSetting("Settings", "CoordFormat", "DD");
  EXPECT_EQ(component_.makeCoordinateFormatter()->LatitudeText(36.4), "36.400000");
}

}  // namespace
}  // namespace zel
