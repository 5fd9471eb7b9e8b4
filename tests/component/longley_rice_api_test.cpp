#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <fstream>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "zel/longley_rice.h"

namespace zel {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The worked example printed with the model, see the file's own "about".
nlohmann::json publishedPath() {
  std::ifstream file(std::string(ZEL_SOURCE_DIR) + "/tests/models/longrice/data/path2200.json");
  return nlohmann::json::parse(file);
}

LongleyRiceRequest publishedRequest() {
  const nlohmann::json path = publishedPath();
  LongleyRiceRequest request;
  request.elevationsM = path["elevations_m"].get<std::vector<double>>();
  request.spacingM = 1000 * path["distance_km"].get<double>() / path["intervals"].get<double>();
  request.transmitterHeightM = path["tx_agl_m"];
  request.receiverHeightM = path["rx_agl_m"];
  request.frequencyMhz = path["freq_mhz"];
  request.surfaceRefractivity = path["surface_refractivity_n_units"];
  request.confidence = path["confidence"].get<std::vector<double>>();
  request.reliability = path["reliability"].get<std::vector<double>>();
  return request;
}

// A path of 30 km over rolling ground, computable as it is.
LongleyRiceRequest rollingRequest() {
  LongleyRiceRequest request;
  for (int i = 0; i <= 300; ++i) request.elevationsM.push_back(200 + 60 * std::sin(i / 17.0));
  request.spacingM = 100;
  request.transmitterHeightM = 30;
  request.receiverHeightM = 10;
  request.frequencyMhz = 450;
  return request;
}

TEST(LongleyRiceFunction, ReadsElevationsWhereTheyLie) {
  LongleyRiceRequest request = rollingRequest();
  const std::vector<double> elevations = std::move(request.elevationsM);
  request.elevationsM = {kNotANumber};  // is not looked at
  EXPECT_EQ(computeLongleyRice(request, elevations).lossDb, computeLongleyRice(rollingRequest()).lossDb);
}

TEST(LongleyRiceFunction, GivesThePublishedLossesOfTheWorkedExample) {
  const nlohmann::json path = publishedPath();
  const LongleyRiceResult result = computeLongleyRice(publishedRequest());
  ASSERT_EQ(result.error, "");
  // Losses are printed to 0.1 dB.
  constexpr double kTolerance = 0.05 + 0.05;
  ASSERT_EQ(result.lossDb.size(), 5U);
  for (std::size_t row = 0; row < 5; ++row) {
    ASSERT_EQ(result.lossDb[row].size(), 3U);
    for (std::size_t column = 0; column < 3; ++column)
      EXPECT_NEAR(result.lossDb[row][column], path["loss_db"][row][column].get<double>(), kTolerance)
          << row << ", " << column;
  }
  EXPECT_NEAR(result.freeSpaceDb, 102.6, 0.05);
  EXPECT_NEAR(result.effectiveHeightsM[0], 240.5, 0.05);
  EXPECT_NEAR(result.effectiveHeightsM[1], 18.4, 0.05);
  EXPECT_NEAR(result.terrainIrregularityM, 89, 0.5);
  EXPECT_NEAR(result.distanceKm, 77.8, 1e-9);
  EXPECT_EQ(result.surfaceRefractivity, 314);
  EXPECT_EQ(result.mode, PathMode::kDoubleHorizon);
  EXPECT_STREQ(pathModeText(result.mode, result.method), "double horizon, diffraction dominant");
  EXPECT_TRUE(result.warnings.empty());
  EXPECT_EQ(result.parameter, "");
}

TEST(LongleyRiceFunction, TellsTheHorizonsOfBothAntennasFromTheTransmitterOn) {
  const LongleyRiceResult result = computeLongleyRice(publishedRequest());
  const double spacing = publishedRequest().spacingM;
  // Every horizon is a sample of the path.
  for (const double distance : result.horizonDistancesM)
    EXPECT_NEAR(distance / spacing, std::round(distance / spacing), 1e-9);
  EXPECT_GT(result.horizonDistancesM[0], result.horizonDistancesM[1]);
  EXPECT_LT(result.horizonAnglesRad[0], 0);
  EXPECT_GT(result.referenceAttenuationDb, 0);
}

TEST(LongleyRiceFunction, HasARowForEachReliabilityAndAColumnForEachConfidence) {
  LongleyRiceRequest request = rollingRequest();
  request.reliability = {0.1, 0.5, 0.9, 0.99};
  request.confidence = {0.5, 0.95};
  const LongleyRiceResult result = computeLongleyRice(request);
  ASSERT_EQ(result.lossDb.size(), 4U);
  for (const auto& row : result.lossDb) {
    ASSERT_EQ(row.size(), 2U);
    EXPECT_LT(row[0], row[1]);  // more confidence, more loss
  }
  for (std::size_t row = 1; row < 4; ++row) EXPECT_LT(result.lossDb[row - 1][0], result.lossDb[row][0]);
}

TEST(LongleyRiceFunction, ComputesEachLevelAsItWouldAlone) {
  LongleyRiceRequest request = rollingRequest();
  request.reliability = {0.01, 0.3, 0.99};
  request.confidence = {0.05, 0.5, 0.9};
  const LongleyRiceResult together = computeLongleyRice(request);
  for (std::size_t r = 0; r < 3; ++r)
    for (std::size_t c = 0; c < 3; ++c) {
      LongleyRiceRequest alone = request;
      alone.reliability = {request.reliability[r]};
      alone.confidence = {request.confidence[c]};
      EXPECT_EQ(computeLongleyRice(alone).lossDb.at(0).at(0), together.lossDb[r][c]);
    }
}

// 1.6448536 is the deviate of 5 %, 1.64 that of a two-decimal table: some hundredths of a dB.
TEST(LongleyRiceFunction, TakesExactDeviatesRatherThanThoseOfATable) {
  LongleyRiceRequest request = rollingRequest();
  request.confidence = {0.95, 0.949497};  // deviates -1.644854 and -1.640000
  const LongleyRiceResult result = computeLongleyRice(request);
  EXPECT_GT(result.lossDb[0][0] - result.lossDb[0][1], 0.02);
}

TEST(LongleyRiceFunction, TakesHalfOfTimeAndSituationsUnlessToldOtherwise) {
  LongleyRiceRequest request = rollingRequest();
  const LongleyRiceResult plain = computeLongleyRice(request);
  request.confidence = {0.5};
  request.reliability = {0.5};
  request.climate = 5;
  request.permittivity = 15;
  request.conductivity = 0.005;
  request.surfaceRefractivity = 301;
  request.polarization = Polarization::kHorizontal;
  EXPECT_EQ(computeLongleyRice(request).lossDb, plain.lossDb);
  EXPECT_EQ(plain.lossDb.size(), 1U);
}

TEST(LongleyRiceFunction, LosesAnotherAmountWithVerticalPolarization) {
  LongleyRiceRequest request = rollingRequest();
  request.frequencyMhz = 30;
  const double horizontal = computeLongleyRice(request).lossDb[0][0];
  request.polarization = Polarization::kVertical;
  EXPECT_NE(computeLongleyRice(request).lossDb[0][0], horizontal);
}

TEST(LongleyRiceFunction, LosesAnotherAmountInEachClimate) {
  std::vector<double> losses;
  for (int climate = 1; climate <= 7; ++climate) {
    LongleyRiceRequest request = publishedRequest();
    request.climate = climate;
    request.confidence = {0.5};
    request.reliability = {0.99};
    const LongleyRiceResult result = computeLongleyRice(request);
    ASSERT_EQ(result.error, "");
    EXPECT_TRUE(result.warnings.empty());
    for (const double other : losses) EXPECT_NE(result.lossDb[0][0], other) << climate;
    losses.push_back(result.lossDb[0][0]);
  }
}

// Closed form: Ns = N0 exp(-z / 9460 m), z the mean from sample int(0.1 n) to n - int(0.1 n), n intervals.
TEST(LongleyRiceFunction, BringsTheSeaLevelRefractivityToTheMiddleOfThePath) {
  LongleyRiceRequest request = rollingRequest();
  request.elevationsM.assign(26, 5000.0);                              // 25 intervals: samples 2 to 23
  for (std::size_t i = 2; i <= 23; ++i) request.elevationsM[i] = 946;  // a tenth of the scale height
  request.spacingM = 1000;
  request.surfaceRefractivity = kNotANumber;  // not looked at
  request.seaLevelRefractivity = 360;
  const LongleyRiceResult result = computeLongleyRice(request);
  ASSERT_EQ(result.error, "");
  EXPECT_NEAR(result.surfaceRefractivity, 360 * std::exp(-0.1), 1e-9);

  request.seaLevelRefractivity.reset();
  request.surfaceRefractivity = result.surfaceRefractivity;
  EXPECT_EQ(computeLongleyRice(request).lossDb, result.lossDb);
}

TEST(LongleyRiceFunction, ComputesTheShortestPathThereIs) {
  LongleyRiceRequest request = rollingRequest();
  request.elevationsM = {100, 100};
  request.spacingM = 5000;
  const LongleyRiceResult result = computeLongleyRice(request);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.distanceKm, 5);
  EXPECT_TRUE(std::isfinite(result.lossDb.at(0).at(0)));
}

struct WrongRequest {
  const char* description;
  std::function<void(LongleyRiceRequest&)> change;
  const char* parameter;
  const char* error;  // part of it
};

TEST(LongleyRiceFunction, NamesTheMemberThatNoLossCanBeComputedFrom) {
  const std::vector<WrongRequest> cases{
      {"no elevation", [](auto& r) { r.elevationsM.clear(); }, "elevationsM",
       "there are no elevations; a path has at least 2"},
      {"one elevation", [](auto& r) { r.elevationsM.resize(1); }, "elevationsM",
       "there is 1 elevation; a path has at least 2"},
      {"an elevation that is no number", [](auto& r) { r.elevationsM[6] = kNotANumber; }, "elevationsM",
       "the elevation of sample 7 is not a number"},
      {"an infinite elevation", [](auto& r) { r.elevationsM[0] = -kInfinity; }, "elevationsM",
       "the elevation of sample 1 is infinite"},
      {"an elevation beyond the earth", [](auto& r) { r.elevationsM[300] = 1e300; }, "elevationsM",
       "sample 301"},
      {"a void", [](auto& r) { r.elevationsM[3] = -32768; }, "elevationsM", "sample 4 is -32768 m"},
      {"no spacing", [](auto& r) { r.spacingM = 0; }, "spacingM", "the spacing is 0 m"},
      {"a spacing below 0", [](auto& r) { r.spacingM = -90; }, "spacingM", "-90 m"},
      {"a path around the earth", [](auto& r) { r.spacingM = 1e6; }, "spacingM",
       "the path's length is 300000000 m; it must be"},
      {"a buried transmitter", [](auto& r) { r.transmitterHeightM = -1; }, "transmitterHeightM", "-1 m"},
      {"a receiver nowhere", [](auto& r) { r.receiverHeightM = kNotANumber; }, "receiverHeightM",
       "not a number"},
      {"no frequency", [](auto& r) { r.frequencyMhz = 0; }, "frequencyMhz", "0 MHz"},
      {"light", [](auto& r) { r.frequencyMhz = 5e8; }, "frequencyMhz", "1 to 1000000 MHz"},
      {"climate 0", [](auto& r) { r.climate = 0; }, "climate", "the climate code is 0; it must be 1 to 7"},
      {"climate 8", [](auto& r) { r.climate = 8; }, "climate", "the climate code is 8"},
      {"no polarization", [](auto& r) { r.polarization = static_cast<Polarization>(7); }, "polarization",
       "neither horizontal nor vertical"},
      {"permittivity below that of free space", [](auto& r) { r.permittivity = 0.5; }, "permittivity", "0.5"},
      {"conductivity below 0", [](auto& r) { r.conductivity = -0.1; }, "conductivity", "-0.1 S/m"},
      {"refractivity below 0", [](auto& r) { r.surfaceRefractivity = -1; }, "surfaceRefractivity", "-1"},
      {"refractivity of a flat earth", [](auto& r) { r.surfaceRefractivity = 550; }, "surfaceRefractivity",
       "0 to 540 N-units"},
      {"sea-level refractivity that is no number", [](auto& r) { r.seaLevelRefractivity = kNotANumber; },
       "seaLevelRefractivity", "not a number"},
      {"sea-level refractivity below 0", [](auto& r) { r.seaLevelRefractivity = -1; }, "seaLevelRefractivity",
       "-1 N-units"},
      {"sea-level refractivity that is too great at the path", [](auto& r) { r.seaLevelRefractivity = 900; },
       "seaLevelRefractivity", "900 N-units makes a surface refractivity of 8"},
      // The elevations are looked at first: their mean is what the refractivity is taken at.
      {"both sea-level refractivity and an elevation",
       [](auto& r) {
         r.seaLevelRefractivity = 330;
         r.elevationsM[100] = -1e300;
       },
       "elevationsM", "sample 101"},
      {"no confidence", [](auto& r) { r.confidence.clear(); }, "confidence", "no confidence is given"},
      {"no reliability", [](auto& r) { r.reliability.clear(); }, "reliability", "no reliability is given"},
      {"confidence 0",
       [](auto& r) {
         r.confidence = {0.5, 0};
       },
       "confidence", "the confidence is 0"},
      {"reliability 1", [](auto& r) { r.reliability = {1}; }, "reliability",
       "the reliability is 1; it must be a fraction above 0 and below 1"},
      {"a percentage", [](auto& r) { r.reliability = {50}; }, "reliability", "50"},
      {"confidence that is no number", [](auto& r) { r.confidence = {kNotANumber}; }, "confidence",
       "not a number"},
  };
  for (const WrongRequest& wrong : cases) {
    LongleyRiceRequest request = rollingRequest();
    wrong.change(request);
    const LongleyRiceResult result = computeLongleyRice(request);
    EXPECT_EQ(result.parameter, wrong.parameter) << wrong.description << ": " << result.error;
    EXPECT_NE(result.error.find(wrong.error), std::string::npos) << wrong.description << ": " << result.error;
    EXPECT_TRUE(result.lossDb.empty()) << wrong.description;
    EXPECT_EQ(result.freeSpaceDb, 0) << wrong.description;
  }
  EXPECT_EQ(computeLongleyRice(rollingRequest()).error, "");
}

// However few of them already reach beyond the limit.
TEST(LongleyRiceFunction, TellsTheLengthOfAllThePathThatIsTooLong) {
  LongleyRiceRequest request = rollingRequest();
  request.elevationsM.assign(100001, 0.0);
  request.spacingM = 1000;
  EXPECT_NE(computeLongleyRice(request).error.find("the path's length is 100000000 m; it must be"),
            std::string::npos)
      << computeLongleyRice(request).error;
  request.spacingM = 3e8;  // no distance of neighbours at all
  EXPECT_NE(computeLongleyRice(request).error.find("the spacing is 300000000 m; it must be"),
            std::string::npos)
      << computeLongleyRice(request).error;
}

TEST(LongleyRiceFunction, WarnsOfLevelsBeyondAThousandth) {
  const auto warnings = [](double confidence, double reliability) {
    LongleyRiceRequest request = publishedRequest();
    request.confidence = {0.5, confidence};
    request.reliability = {reliability, 0.5};
    return computeLongleyRice(request).warnings;
  };
  EXPECT_TRUE(warnings(0.001, 0.999).empty());
  for (const auto& found : {warnings(0.0009, 0.5), warnings(0.5, 0.9991), warnings(1e-9, 1 - 1e-9)}) {
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NE(found[0].find("beyond 0.1 % or 99.9 %"), std::string::npos);
  }
}

TEST(LongleyRiceFunction, PassesTheModelsWarningsOnInWords) {
  LongleyRiceRequest request = rollingRequest();
  request.frequencyMhz = 15;
  request.surfaceRefractivity = 200;
  const std::vector<std::string> warnings = computeLongleyRice(request).warnings;
  ASSERT_GE(warnings.size(), 2U);
  EXPECT_NE(warnings[0].find("frequency of 15 MHz"), std::string::npos);
}

TEST(LongleyRiceFunction, GivesEveryThreadTheSameNumbers) {
  std::vector<LongleyRiceRequest> requests;
  for (int i = 0; i < 8; ++i) {
    LongleyRiceRequest request = rollingRequest();
    request.frequencyMhz = 100 + 200 * i;
    request.climate = 1 + i % 7;
    request.confidence = {0.1, 0.5, 0.9};
    requests.push_back(request);
  }
  std::vector<std::vector<std::vector<double>>> alone;
  alone.reserve(requests.size());
  for (const LongleyRiceRequest& request : requests) alone.push_back(computeLongleyRice(request).lossDb);
  std::atomic<int> differences = 0;
  std::vector<std::thread> threads;
  for (std::size_t first = 0; first < 8; ++first)
    threads.emplace_back([&requests, &alone, &differences, first] {
      for (std::size_t i = 0; i < 200; ++i) {
        const std::size_t which = (first + i) % requests.size();
        if (computeLongleyRice(requests[which]).lossDb != alone[which]) ++differences;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(differences, 0);
}

TEST(LongleyRiceTexts, NameModesWithWhatCarriesTheSignal) {
  using Mode = PathMode;
  using Method = PropagationMethod;
  EXPECT_STREQ(pathModeText(Mode::kLineOfSight, Method::kLineOfSight), "line of sight");
  EXPECT_STREQ(pathModeText(Mode::kSingleHorizon, Method::kDiffraction),
               "single horizon, diffraction dominant");
  EXPECT_STREQ(pathModeText(Mode::kSingleHorizon, Method::kTroposcatter),
               "single horizon, troposcatter dominant");
  EXPECT_STREQ(pathModeText(Mode::kDoubleHorizon, Method::kDiffraction),
               "double horizon, diffraction dominant");
  EXPECT_STREQ(pathModeText(Mode::kDoubleHorizon, Method::kTroposcatter),
               "double horizon, troposcatter dominant");
  // Obstructed, and nearer than the smooth-earth horizons: what is beyond sight is diffraction.
  EXPECT_STREQ(pathModeText(Mode::kDoubleHorizon, Method::kLineOfSight),
               "double horizon, diffraction dominant");
  EXPECT_STREQ(propagationMethodText(Method::kLineOfSight), "line of sight");
  EXPECT_STREQ(propagationMethodText(Method::kDiffraction), "diffraction");
  EXPECT_STREQ(propagationMethodText(Method::kTroposcatter), "troposcatter");
}

TEST(LongleyRiceTexts, NameTheSevenClimatesAndNoOther) {
  EXPECT_STREQ(radioClimateName(1), "Equatorial");
  EXPECT_STREQ(radioClimateName(2), "Continental Subtropical");
  EXPECT_STREQ(radioClimateName(3), "Maritime Tropical");
  EXPECT_STREQ(radioClimateName(4), "Desert");
  EXPECT_STREQ(radioClimateName(5), "Continental Temperate");
  EXPECT_STREQ(radioClimateName(6), "Maritime Temperate, Over Land");
  EXPECT_STREQ(radioClimateName(7), "Maritime Temperate, Over Sea");
  for (const int code : {0, 8, -1, 1000}) EXPECT_STREQ(radioClimateName(code), "");
}

TEST(LongleyRiceModes, AreThoseOfTheGroundBetweenTheAntennas) {
  LongleyRiceRequest request = rollingRequest();
  request.elevationsM.assign(101, 0.0);
  request.spacingM = 100;
  EXPECT_EQ(computeLongleyRice(request).mode, PathMode::kLineOfSight);
  request.elevationsM[50] = 200;
  EXPECT_EQ(computeLongleyRice(request).mode, PathMode::kSingleHorizon);
  request.elevationsM[70] = 200;
  EXPECT_EQ(computeLongleyRice(request).mode, PathMode::kDoubleHorizon);
}

TEST(LongleyRiceMethods, AreThoseOfTheDistance) {
  LongleyRiceRequest request = rollingRequest();
  request.elevationsM.assign(1001, 0.0);
  request.spacingM = 10;
  EXPECT_EQ(computeLongleyRice(request).method, PropagationMethod::kLineOfSight);
  request.spacingM = 60;
  EXPECT_EQ(computeLongleyRice(request).method, PropagationMethod::kDiffraction);
  request.spacingM = 400;
  EXPECT_EQ(computeLongleyRice(request).method, PropagationMethod::kTroposcatter);
}

}  // namespace
}  // namespace zel
