// computePathLoss over the real parts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bundled_path.h"
#include "real_component.h"
#include "support/says.h"
#include "zel/longley_rice.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/terrain.h"

namespace zel {
namespace {

using test::kFrom;
using test::kTo;
const PathLossRequest kRequest{kFrom, kTo, 30.0, 12.0, 950.0};

using Texts = std::vector<std::string>;

using test::says;

class PathLossApiTest : public test::RealComponent {
 protected:
  // Both ways are GetPathLoss's numbers to the last bit.
  void expectGetPathLoss(const PathLossRequest& request, const char* frequency) {
    set("Profile", "Prf_Freq", frequency);
    const PathLoss loss = computePathLoss(request);
    ASSERT_EQ(loss.status, 0) << loss.error;
    const StationProfile_Type from{request.from.latitude, request.from.longitude,
                                   static_cast<float>(*request.fromHeight)};
    const StationProfile_Type to{request.to.latitude, request.to.longitude,
                                 static_cast<float>(*request.toHeight)};
    ASSERT_TRUE(loss.modeledDb && loss.reverseModeledDb);
    EXPECT_EQ(*loss.modeledDb, static_cast<double>(control_.GetPathLoss(from, to)));
    EXPECT_EQ(*loss.reverseModeledDb, static_cast<double>(control_.GetPathLoss(to, from)));
  }
};

TEST_F(PathLossApiTest, GivesTheNumbersOfGetPathLossBothWays) {
  expectGetPathLoss(kRequest, "950");
  for (const auto& [section, key, value] : {std::tuple{"Profile", "Prf_Per", "13"},
                                            {"Profile", "Prf_Max", "77"},
                                            {"Settings", "CalcMethod", "1"},
                                            {"Profile", "Prf_TRes", "5"},
                                            {"ITM", "iHor", "1"},
                                            {"ITM", "iRadioClimate", "7"},
                                            {"ITM", "dDielectric", "80"},
                                            {"ITM", "dCond", "5"},
                                            {"ITM", "dSurfRef", "350"},
                                            {"ITM", "dConfidence", "90"},
                                            {"ITM", "dReliability", "0.995e-1"}}) {
    set(section, key, value);
    SCOPED_TRACE(key);
    expectGetPathLoss(kRequest, "950");
  }
  set("ITM", "iHor", "0");
  expectGetPathLoss({{36.30, -84.30}, {36.31, -84.15}, 12.5, 100.0, 20.0}, "20");
  expectGetPathLoss({{36.30, -84.30}, {36.33, -84.30}, 3.0, 3.0, 20000.0}, "20000");
}

// The model is as good as reciprocal, so over one and the same ground both ways agree to the last of their 32
// bits. Here the way south is told as longer, and its ground as higher where it ends.
class OneWayGeodesy final : public Geodesy {
 public:
  explicit OneWayGeodesy(std::shared_ptr<const Geodesy> real) : real_(std::move(real)) {}
  DistanceAzimuth DistanceAndBearing(GeoPoint from, GeoPoint to) const override {
    DistanceAzimuth line = real_->DistanceAndBearing(from, to);
    if (to.latitude < from.latitude) line.distance += southward;
    return line;
  }
  GeoPoint PointAtDistance(GeoPoint from, double distance, double azimuth) const override {
    return real_->PointAtDistance(from, distance, azimuth);
  }
  GeoPoint PointOnPath(GeoPoint start, GeoPoint end, double distance) const override {
    return real_->PointOnPath(start, end, distance);
  }
  double southward = 0;  // km

 private:
  std::shared_ptr<const Geodesy> real_;
};

class OneWaySampler final : public TerrainSampler {
 public:
  OneWaySampler(std::unique_ptr<TerrainSampler> real, const float& southward)
      : real_(std::move(real)), southward_(southward) {}
  void AttachTerrainData(std::shared_ptr<TerrainData> data) override { real_->AttachTerrainData(data); }
  void SetEndPoints(GeoPoint forward, GeoPoint back) override {
    southwards_ = forward.latitude < back.latitude;
    real_->SetEndPoints(forward, back);
  }
  void SetBoundingBox(double east, double west, double north, double south) override {
    real_->SetBoundingBox(east, west, north, south);
  }
  void SetMethod(std::int32_t method) override { real_->SetMethod(method); }
  void SetSampleCount(std::int32_t count) override { real_->SetSampleCount(count); }
  void SetSource(std::int16_t code) override { real_->SetSource(code); }
  void SetOptions(std::int32_t first, std::int32_t second) override { real_->SetOptions(first, second); }
  int Sample(std::span<float> heights, std::int32_t& first, std::int32_t& second) override {
    const int status = real_->Sample(heights, first, second);
    if (southwards_)
      for (float& height : heights.last(heights.size() / 4)) height += southward_;
    return status;
  }
  const SamplingReport& report() const override { return real_->report(); }
  std::vector<GeoPoint> positions() const override { return real_->positions(); }

 private:
  std::unique_ptr<TerrainSampler> real_;
  const float& southward_;  // metres
  bool southwards_ = false;
};

TEST_F(PathLossApiTest, MeasuresSamplesAndComputesTheOtherWayForItself) {
  ComponentServices uneven = services();
  const auto geodesy = std::make_shared<OneWayGeodesy>(uneven.geodesy);
  uneven.geodesy = geodesy;
  float southward = 0;  // metres
  uneven.makeSampler = [make = uneven.makeSampler, &southward] {
    return std::make_unique<OneWaySampler>(make(), southward);
  };
  Component component(uneven);
  const ComponentSubstitute substitute(component);
  ProfileControl control;
  control.SetClientApp(makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
  set("Profile", "Prf_Freq", "950");
  set("Profile", "Prf_Max", "5000");
  const StationProfile_Type north{kFrom.latitude, kFrom.longitude, 30};
  const StationProfile_Type south{kTo.latitude, kTo.longitude, 12};
  const PathLossRequest northwards{kTo, kFrom, 12.0, 30.0, 950.0};
  for (const auto& [kilometres, metres] : {std::pair{0.0, 150.0F}, {0.5, 0.0F}, {0.5, 150.0F}}) {
    SCOPED_TRACE(std::to_string(kilometres) + " km and " + std::to_string(metres) + " m");
    geodesy->southward = kilometres;
    southward = metres;
    const PathLoss down = computePathLoss(kRequest);
    const PathLoss up = computePathLoss(northwards);
    ASSERT_TRUE(down.modeledDb && down.reverseModeledDb) << down.error;
    ASSERT_TRUE(up.modeledDb && up.reverseModeledDb) << up.error;
    EXPECT_NE(*down.modeledDb, *down.reverseModeledDb);
    EXPECT_EQ(*down.modeledDb, static_cast<double>(control.GetPathLoss(north, south)));
    EXPECT_EQ(*down.reverseModeledDb, static_cast<double>(control.GetPathLoss(south, north)));
    EXPECT_EQ(*up.modeledDb, *down.reverseModeledDb);
    EXPECT_EQ(*up.reverseModeledDb, *down.modeledDb);
    EXPECT_NEAR(down.distanceKm, up.distanceKm + kilometres, 1e-9) << "told of the way from the start";
  }
}

TEST_F(PathLossApiTest, TellsWhatItWasComputedFrom) {
  set("ITM", "iHor", "1");
  set("ITM", "iRadioClimate", "6");
  set("ITM", "dReliability", "90");
  const PathLoss loss = computePathLoss(kRequest);
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_EQ(loss.from.latitude, 36.40);
  EXPECT_EQ(loss.to.longitude, -84.12);
  EXPECT_NEAR(loss.distanceKm, 28.733669, 1e-5);  // as the profile's, an independent evaluation
  EXPECT_EQ(loss.points, 1000);
  EXPECT_NEAR(loss.modelSpacingM, 28.7337, 1e-4);  // distance / 1000
  EXPECT_NEAR(loss.spacingM, 28.7624, 1e-4);       // distance / 999
  EXPECT_EQ(loss.startHeightM, 30);
  EXPECT_EQ(loss.endHeightM, 12);
  EXPECT_EQ(loss.frequencyMhz, 950);
  EXPECT_NEAR(loss.freeSpaceDb, 32.4 + 20 * std::log10(950) + 20 * std::log10(28.733669), 1e-4);
  EXPECT_EQ(loss.model.polarization, Polarization::kVertical);
  EXPECT_EQ(loss.model.climate, 6);
  EXPECT_EQ(loss.model.permittivity, 15);
  EXPECT_EQ(loss.model.conductivity, 0.005);
  EXPECT_EQ(loss.model.surfaceRefractivity, 301);
  EXPECT_EQ(loss.model.confidence, 0.5);
  EXPECT_EQ(loss.model.confidenceDeviate, 0);
  EXPECT_EQ(loss.model.reliability, 0.9);
  EXPECT_EQ(loss.model.reliabilityDeviate, -1.28);
  EXPECT_EQ(loss.mode, PathMode::kDoubleHorizon);
  EXPECT_GT(loss.terrainIrregularityM, 50);
  EXPECT_TRUE(loss.terrain.bundledSample);
  EXPECT_EQ(loss.terrain.method, "FCC 4-Point");

  const PathProfile profile = computePathProfile({kFrom, kTo, 30.0, 12.0, {}, 950.0});
  EXPECT_EQ(loss.bearingDeg, profile.bearingDeg);
  EXPECT_EQ(loss.freeSpaceDb, profile.freeSpaceDb);
  EXPECT_EQ(loss.startGroundM, profile.startGroundM);
  EXPECT_EQ(loss.endGroundM, profile.endGroundM);
  EXPECT_NEAR(loss.averageM, profile.averageM, 0.1) << "one sample less";
}

// Heights as sampled at the same points, spacing as the model is told: the same analysis of the ground.
TEST_F(PathLossApiTest, TellsWhatTheModelMadeOfTheGround) {
  const PathLoss loss = computePathLoss(kRequest);
  ASSERT_EQ(loss.status, 0) << loss.error;
  const SampledTerrain terrain = sampleTerrain(kFrom, kTo, loss.points, 0, 3);
  LongleyRiceRequest request;
  request.elevationsM.assign(terrain.elevations.begin(), terrain.elevations.end());
  request.spacingM = loss.modelSpacingM;
  request.transmitterHeightM = 30;
  request.receiverHeightM = 12;
  request.frequencyMhz = 950;
  const LongleyRiceResult result = computeLongleyRice(request);
  ASSERT_EQ(result.error, "");
  EXPECT_EQ(loss.terrainIrregularityM, result.terrainIrregularityM);
  EXPECT_EQ(loss.effectiveHeightsM, result.effectiveHeightsM);
  EXPECT_EQ(loss.horizonDistancesM, result.horizonDistancesM);
  EXPECT_EQ(loss.horizonAnglesRad, result.horizonAnglesRad);
  EXPECT_NE(loss.horizonDistancesM[0], loss.horizonDistancesM[1]);
  EXPECT_EQ(loss.referenceAttenuationDb, result.referenceAttenuationDb);
  EXPECT_EQ(*loss.modeledDb, static_cast<double>(static_cast<float>(result.lossDb[0][0])));
}

TEST_F(PathLossApiTest, NotesRoundingsAndDefaultsInWords) {
  PathLossRequest request = kRequest;
  request.fromHeight = 10.5;
  request.toHeight.reset();
  request.frequencyMhz.reset();
  set("ITM", "iHor", "0");
  set("ITM", "dReliability", "0.9");
  set("ITM", "dConfidence", "0.504");
  const PathLoss loss = computePathLoss(request);
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_TRUE(says(loss.notes, "the antenna height of the start, 10.5 m, is used as 10 m"));
  EXPECT_TRUE(says(loss.notes, "no antenna height is given for the end: 30 m, the default"));
  EXPECT_TRUE(says(loss.notes,
                   "the frequency is not given: 950 MHz, the default, since nothing is stored in "
                   "Profile/Prf_Freq"));
  EXPECT_TRUE(says(loss.notes, "GetPathLoss takes 100 MHz when no frequency is stored"));
  EXPECT_TRUE(says(loss.notes, "Profile/Prf_Max limits the path to 1000 points"));
  EXPECT_TRUE(says(loss.notes,
                   "the samples lie 28.762 m apart; the model is told 28.734 m, the distance "
                   "divided by the number of points, and so sees a path of 28.705 km, shorter by one part "
                   "in 1000"));
  EXPECT_TRUE(says(loss.notes,
                   "reliability of 90 % is used as the two-decimal normal deviate -1.28 (exactly "
                   "-1.2816)"));
  EXPECT_TRUE(says(loss.notes, "ITM/dConfidence, 0.504, is used as 0.50"));
  EXPECT_TRUE(says(loss.notes,
                   "where nothing is stored: ITM/iRadioClimate, ITM/dDielectric, ITM/dCond, "
                   "ITM/dSurfRef"));
}

TEST_F(PathLossApiTest, NotesTheDeviateOfEachLevelThatIsNotTheExactOne) {
  const std::string confidence =
      "the confidence of 90 % is used as the two-decimal normal deviate -1.28 (exactly -1.2816)";
  const std::string reliability =
      "the reliability of 10 % is used as the two-decimal normal deviate 1.28 (exactly 1.2816)";
  set("ITM", "dConfidence", "90");
  PathLoss loss = computePathLoss(kRequest);
  EXPECT_TRUE(says(loss.notes, confidence));
  EXPECT_FALSE(says(loss.notes, "the reliability of")) << "that of 50 % is 0 exactly";
  set("ITM", "dReliability", "10");
  loss = computePathLoss(kRequest);
  EXPECT_TRUE(says(loss.notes, confidence));
  EXPECT_TRUE(says(loss.notes, reliability));
  set("ITM", "dConfidence", "50");
  loss = computePathLoss(kRequest);
  EXPECT_FALSE(says(loss.notes, "the confidence of"));
  EXPECT_TRUE(says(loss.notes, reliability));
}

// At 100 points a kilometre and at most 1000; the number of points is rounded before it is cut.
TEST_F(PathLossApiTest, NotesTheMaximumOnlyWhereItCutsTheRoundedNumberOfPoints) {
  struct {
    double south;     // degrees on the meridian of the start
    double distance;  // km
    bool limited;
  } const rows[] = {{36.219930, 9.9945, false},   // 1000.45 is 1000 points
                    {36.21994370, 9.993, false},  // 1000.30
                    {36.2199266, 9.9949, false},  // 1000.49
                    {36.2199248, 9.9951, true},   // 1000.51 is 1001
                    {36.2197905, 10.01, true}};   // 1002.00
  PathLossRequest request = kRequest;
  request.from = {36.31, -84.30};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.south);
    request.to = {row.south, -84.30};
    const PathLoss loss = computePathLoss(request);
    ASSERT_EQ(loss.status, 0) << loss.error;
    ASSERT_NEAR(loss.distanceKm, row.distance, 5e-5);
    EXPECT_EQ(loss.points, 1000);
    EXPECT_EQ(says(loss.notes, "Profile/Prf_Max limits the path to 1000 points"), row.limited);
  }
}

TEST_F(PathLossApiTest, NotesNothingThatMakesNoDifference) {
  set("Profile", "Prf_Freq", "450");
  set("Profile", "Prf_Per", "10");
  for (const char* key : {"iHor", "iRadioClimate"}) set("ITM", key, "5");
  for (const char* key : {"dDielectric", "dCond", "dSurfRef"}) set("ITM", key, "300");
  set("ITM", "dConfidence", "50");
  set("ITM", "dReliability", "0.5");
  PathLossRequest request = kRequest;
  request.frequencyMhz.reset();
  const PathLoss loss = computePathLoss(request);
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_EQ(loss.frequencyMhz, 450);
  ASSERT_EQ(loss.notes.size(), 2U);
  EXPECT_EQ(loss.notes[0], "the frequency is not given: 450 MHz, from the setting Profile/Prf_Freq");
  EXPECT_TRUE(says(loss.notes, "the model is told"));
}

TEST_F(PathLossApiTest, TakesTheGivenFrequencyInPlaceOfTheSetting) {
  set("Profile", "Prf_Freq", "100");
  const PathLoss loss = computePathLoss(kRequest);
  EXPECT_EQ(loss.frequencyMhz, 950);
  set("Profile", "Prf_Freq", "950");
  EXPECT_EQ(*loss.modeledDb,
            static_cast<double>(control_.GetPathLoss({36.40, -84.35, 30}, {36.22, -84.12, 12})));
}

TEST_F(PathLossApiTest, TellsTheFrequencyInDecimalsAndComputesWithIt32BitsWide) {
  PathLossRequest request = kRequest;
  request.frequencyMhz = 145.3;
  EXPECT_EQ(computePathLoss(request).frequencyMhz, 145.3) << "in 32 bits it is 145.30000305";
  expectGetPathLoss(request, "145.3");
  set("Profile", "Prf_Freq", "145.3");
  request.frequencyMhz.reset();
  EXPECT_EQ(computePathLoss(request).frequencyMhz, 145.3);
}

TEST_F(PathLossApiTest, GivesFreeSpaceAloneWhereTheModelIsNotAsked) {
  for (const double frequency : {19.9, 20001.0}) {
    PathLossRequest request = kRequest;
    request.frequencyMhz = frequency;
    const PathLoss loss = computePathLoss(request);
    EXPECT_EQ(loss.status, 0);
    EXPECT_GT(loss.freeSpaceDb, 80);
    EXPECT_FALSE(loss.modeledDb);
    EXPECT_FALSE(loss.reverseModeledDb);
    EXPECT_TRUE(says(loss.warnings, "outside 20 to 20000 MHz"));
  }
}

TEST_F(PathLossApiTest, TakesPathsThatAreTooShortForAProfile) {
  PathLossRequest request = kRequest;
  request.to = {36.4005, -84.35};  // 55 m
  const PathLoss loss = computePathLoss(request);
  EXPECT_EQ(loss.status, 0) << loss.error;
  EXPECT_EQ(loss.points, 7);  // round(100 x 0.0555 + 1)
  EXPECT_TRUE(loss.modeledDb);
  EXPECT_TRUE(says(loss.warnings, "shorter than the model's 1 km"));
  EXPECT_EQ(computePathProfile({request.from, request.to, 30.0, 12.0, {}, 950.0}).status, 5);
}

TEST_F(PathLossApiTest, PassesTheModelsWarningsOn) {
  set("ITM", "iRadioClimate", "9");
  PathLossRequest request = kRequest;
  request.fromHeight = 0;
  request.frequencyMhz = 30;
  const PathLoss loss = computePathLoss(request);
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_TRUE(says(loss.warnings, "the climate code 9 is none of 1 to 7"));
  EXPECT_EQ(loss.model.climate, 5) << "as used";
  EXPECT_TRUE(says(loss.warnings, "transmitter's antenna height of 0 m"));
  EXPECT_TRUE(says(loss.warnings, "30 MHz is outside 40 to 10000 MHz"));
}

TEST_F(PathLossApiTest, TakesVoidsForSeaLevelAsGetPathLossDoesAndSaysSo) {
  useTile([](int row, int) { return row >= 590 && row <= 610 ? -32768 : 100 + row % 40; });
  set("Profile", "Prf_Freq", "950");
  const PathLossRequest request{{36.6, -84.5}, {36.4, -84.5}, 30.0, 30.0, {}};
  const PathLoss loss = computePathLoss(request);
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_GT(loss.terrain.voids, 50);
  EXPECT_TRUE(says(loss.warnings, std::to_string(loss.terrain.voids) +
                                      " of 1000 samples have no height and were taken as 0 m"));
  EXPECT_GE(loss.minimumM, 100) << "voids are left out of the statistics";
  EXPECT_EQ(*loss.modeledDb, static_cast<double>(control_.GetPathLoss({36.6, -84.5, 30}, {36.4, -84.5, 30})));
}

TEST_F(PathLossApiTest, WarnsOfAnEndOverAVoid) {
  useTile([](int row, int) { return row <= 500 ? -32768 : 100; });
  const PathLoss loss = computePathLoss({{36.6, -84.5}, {36.4, -84.5}, 30.0, 30.0, 950.0});
  ASSERT_EQ(loss.status, 0) << loss.error;
  EXPECT_TRUE(std::isnan(loss.startGroundM));
  EXPECT_EQ(loss.endGroundM, 100);
  EXPECT_TRUE(says(loss.warnings, "no height under the start"));
  EXPECT_FALSE(says(loss.warnings, "no height under the end"));
  EXPECT_TRUE(says(computePathLoss({{36.4, -84.5}, {36.6, -84.5}, 30.0, 30.0, 950.0}).warnings,
                   "no height under the end"));
}

TEST_F(PathLossApiTest, RefusesAPathOfNothingButVoidsWhichGetPathLossTakesForSeaLevel) {
  useTile([](int, int) { return -32768; });
  set("Profile", "Prf_Freq", "950");
  const PathLoss loss = computePathLoss({{36.6, -84.5}, {36.4, -84.5}, 30.0, 30.0, 950.0});
  EXPECT_EQ(loss.status, 5);
  EXPECT_EQ(loss.error.find("the terrain has no height under the whole path"), 0U) << loss.error;
  EXPECT_FALSE(loss.modeledDb);
  EXPECT_EQ(computePathProfile({{36.6, -84.5}, {36.4, -84.5}, 30.0, 30.0, {}, 950.0}).status, 5);
  EXPECT_GT(control_.GetPathLoss({36.6, -84.5, 30}, {36.4, -84.5, 30}), 100);
}

TEST_F(PathLossApiTest, RefusesAnImpossibleHeightWithPlaceAndHeight) {
  useTile([](int row, int) { return row == 600 ? -300 : 100; });
  const PathLoss loss = computePathLoss({{36.6, -84.5}, {36.4, -84.5}, 30.0, 30.0, 950.0});
  EXPECT_EQ(loss.status, 5);
  EXPECT_NE(loss.error.find("at 36.5"), std::string::npos) << loss.error;
  EXPECT_NE(loss.error.find("choose another path or other terrain"), std::string::npos);
  EXPECT_FALSE(loss.modeledDb);
  EXPECT_EQ(logged(), "") << "the component's own stop was not met";
}

TEST_F(PathLossApiTest, RefusesWhatCannotBeComputedByItsName) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const auto refusal = [](const PathLossRequest& request) {
    const PathLoss loss = computePathLoss(request);
    EXPECT_EQ(loss.status, 5);
    EXPECT_TRUE(loss.notes.empty() && loss.warnings.empty() && !loss.modeledDb);
    return loss.error;
  };
  PathLossRequest request = kRequest;
  request.from.latitude = 91;
  EXPECT_NE(refusal(request).find("the start is not on the earth"), std::string::npos);
  request = kRequest;
  request.to.longitude = kNaN;
  EXPECT_NE(refusal(request).find("the end is not on the earth"), std::string::npos);
  request = kRequest;
  request.fromHeight = -1;
  EXPECT_NE(refusal(request).find("the antenna height of the start is -1 m"), std::string::npos);
  request = kRequest;
  for (const double frequency : {0.0, -5.0, kNaN, 1e7}) {
    request.frequencyMhz = frequency;
    EXPECT_NE(refusal(request).find("the frequency is "), std::string::npos);
  }
  set("ITM", "dDielectric", "0");
  EXPECT_NE(refusal(kRequest).find("relative permittivity is 0"), std::string::npos);
  set("ITM", "dDielectric", "15");
  set("ITM", "dConfidence", "100");
  EXPECT_NE(refusal(kRequest).find("the setting ITM/dConfidence is 100, which is read as 100 %"),
            std::string::npos);
  set("ITM", "dConfidence", "1e400");
  EXPECT_NE(refusal(kRequest).find("the setting ITM/dConfidence is too large a number"), std::string::npos);
  set("ITM", "dConfidence", "50");
  set("ITM", "iHor", "40000");
  EXPECT_NE(refusal(kRequest).find("the setting ITM/iHor is too large a number"), std::string::npos);
  set("ITM", "iHor", "0");
  set("Profile", "Prf_Per", "0");
  EXPECT_NE(refusal(kRequest).find("Profile/Prf_Per"), std::string::npos);
}

TEST_F(PathLossApiTest, PassesTheSamplersRefusalOnWithItsStatus) {
  PathLossRequest request = kRequest;
  request.to = {50, 8};
  EXPECT_EQ(computePathLoss(request).status, 3) << "more than 2000 km";
  request.from = {50.1, 8.1};
  const PathLoss outside = computePathLoss(request);
  EXPECT_EQ(outside.status, 2);
  EXPECT_NE(outside.error.find("50.1"), std::string::npos) << outside.error;
  const PathLoss nowhere = computePathLoss({kFrom, kFrom, 30.0, 30.0, 950.0});
  EXPECT_EQ(nowhere.status, 4);
  EXPECT_NE(nowhere.error.find("the stations are only 0.0000 km apart"), std::string::npos) << nowhere.error;
}

TEST_F(PathLossApiTest, BelongsToTheThreadOfTheObjects) {
  bool refused = false;
  std::thread([&refused] {
    try {
      computePathLoss(kRequest);
    } catch (const AutomationError& error) {
      refused = error.code() == AutomationErrorCode::kWrongThread;
    }
  }).join();
  EXPECT_TRUE(refused);
}

TEST_F(PathLossApiTest, ShiftsStationsInTheOldDatumAsGetPathLossDoes) {
  control_.let_StaDatum(0);
  expectGetPathLoss(kRequest, "950");
  const PathLoss loss = computePathLoss(kRequest);
  EXPECT_EQ(loss.terrain.datum, "NAD-27");
  EXPECT_FALSE(loss.terrain.datumOperation.empty());
}

}  // namespace
}  // namespace zel
