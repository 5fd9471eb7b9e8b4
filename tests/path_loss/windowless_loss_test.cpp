#include "profile/path_loss/windowless_loss.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "models/longrice/calc_itm.h"
#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "support/scripted_terrain.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

using Names = std::vector<std::string>;

const Names kProfileReads{"Settings/CalcMethod=0", "Profile/Prf_TRes=3", "Profile/Prf_Freq=100",
                          "Profile/Prf_Per=100", "Profile/Prf_Max=1000"};
const Names kItmReads{"ITM/iHor=0",       "ITM/iRadioClimate=5", "ITM/dDielectric=15",  "ITM/dCond=0.005",
                      "ITM/dSurfRef=301", "ITM/dConfidence=0.5", "ITM/dReliability=0.5"};

struct ReturningHardStop final : HardStop {
  void stop(std::string_view) override { ++stops; }
  int stops = 0;
};

struct SharedSampler final : TerrainSampler {
  explicit SharedSampler(test::ScriptedTerrainSampler& script) : script_(script) {}
  void AttachTerrainData(std::shared_ptr<TerrainData> data) override { script_.AttachTerrainData(data); }
  void SetEndPoints(GeoPoint forward, GeoPoint back) override { script_.SetEndPoints(forward, back); }
  void SetBoundingBox(double e, double w, double n, double s) override { script_.SetBoundingBox(e, w, n, s); }
  void SetMethod(std::int32_t method) override { script_.SetMethod(method); }
  void SetSampleCount(std::int32_t count) override { script_.SetSampleCount(count); }
  void SetSource(std::int16_t code) override { script_.SetSource(code); }
  void SetOptions(std::int32_t first, std::int32_t second) override { script_.SetOptions(first, second); }
  int Sample(std::span<float> heights, std::int32_t& first, std::int32_t& second) override {
    return script_.Sample(heights, first, second);
  }
  const SamplingReport& report() const override { return script_.report(); }
  std::vector<GeoPoint> positions() const override { return script_.positions(); }

 private:
  test::ScriptedTerrainSampler& script_;
};

struct NVCalcPathLossTest : testing::Test {
  test::TemporaryFolder folder;
  test::ScriptedDialogs dialogs;
  test::ScriptedPointer pointer;
  test::ScriptedEventLoop eventLoop;
  test::ScriptedProcess process;
  test::FixedClock clock;
  ReturningHardStop hardStop;
  test::ScriptedGeodesy geodesy;
  test::ScriptedTerrainSampler sampler;
  test::RecordingSettingsStore store;
  ModuleState module;
  NormalTable table = InitNormalDist();
  ErrorLog log{[this] { return folder.path().string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  std::shared_ptr<TerrainData> terrain = std::make_shared<TerrainData>();
  int samplersMade = 0;
  WindowlessLoss calculation{services(), SettingsReader(store, [] { return std::string("Host Planner"); })};

  NVCalcPathLossTest() {
    module.station1 = {36.25, -84.5};
    module.station2 = {36.5, -84.25};
    module.antennaHeights = {30, 20};
    geodesy.distance = 5;
    sampler.height = hill;
  }

  // Higher towards station 2: the order of the samples counts.
  static float hill(std::size_t i) {
    return 100.0F + static_cast<float>(i) + 50.0F * std::sin(static_cast<float>(i) * 0.05F);
  }

  WindowlessLoss::Services services() {
    WindowlessLoss::Services parts;
    parts.module = &module;
    parts.normalTable = &table;
    parts.geodesy = &geodesy;
    parts.makeSampler = [this] {
      ++samplersMade;
      return std::make_unique<SharedSampler>(sampler);
    };
    parts.terrain = [this] { return terrain; };
    parts.hardStop = &hardStop;
    parts.errorLog = &log;
    parts.trap = &trap;
    return parts;
  }

  // What the model gives for the scripted ground.
  float expected(std::int16_t points, float spacing, float frequency, double confidence = 0,
                 double reliability = 0, double refractivity = 301) const {
    std::vector<float> heights;
    for (std::int16_t i = 1; i <= points; ++i) heights.push_back(sampler.height(static_cast<std::size_t>(i)));
    double loss = 0;
    CalcITM(points, spacing, heights.data(), module.antennaHeights[0], module.antennaHeights[1], 0, 5, 15,
            0.005, static_cast<double>(frequency), refractivity, &confidence, 1, &reliability, 1, &loss);
    return static_cast<float>(loss);
  }

  std::string logged() const { return test::fileBytes(folder / "zelErrorLog.txt"); }
  void expectTrapped(int step, int number, const std::string& text = {}) {
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].buttons, MessageButtons::kYesNo);
    const std::string& message = dialogs.messages[0].text;
    EXPECT_NE(message.find("\r\nmodTerPro:NVCalcPathLoss:" + std::to_string(step) + "\r\n"),
              std::string::npos)
        << message;
    EXPECT_NE(message.find("Error Number: " + std::to_string(number) + "\r\n"), std::string::npos) << message;
    if (!text.empty()) {
      EXPECT_EQ(message.substr(0, message.find("\r\n")), text);
    }
    EXPECT_NE(logged().find("modTerPro:NVCalcPathLoss:" + std::to_string(step)), std::string::npos);
  }
};

// --- the given order ---

TEST_F(NVCalcPathLossTest, GivesTheModelsLossForTheStoredStations) {
  // 5 km at 100 points a kilometre: 501 points, 5 / 501 x 1000 m apart, 100 MHz when none is stored.
  EXPECT_EQ(calculation.NVCalcPathLoss(), expected(501, static_cast<float>(5.0 / 501 * 1000), 100));
  EXPECT_GT(calculation.NVCalcPathLoss(), 80) << "positive";
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_FALSE(module.bProfileFailed);
}

TEST_F(NVCalcPathLossTest, DividesByThePointsAndNotByTheIntervals) {
  EXPECT_NE(calculation.NVCalcPathLoss(), expected(501, 10.0F, 100));
}

TEST_F(NVCalcPathLossTest, ReadsTheSettingsInTheirOrder) {
  calculation.NVCalcPathLoss();
  Names reads = kProfileReads;
  reads.insert(reads.end(), kItmReads.begin(), kItmReads.end());
  EXPECT_EQ(store.reads, reads);
  EXPECT_TRUE(store.writes.empty());
  EXPECT_EQ(store.applications.front(), "Host Planner");
}

TEST_F(NVCalcPathLossTest, SamplesFromStation1ToStation2) {
  store.set("Settings", "CalcMethod", "1");
  store.set("Profile", "Prf_TRes", "7");
  calculation.NVCalcPathLoss();
  // The sampler fills from the second point handed over, station 1, to the first.
  EXPECT_EQ(sampler.calls, (Names{"AttachTerrainData", "SetEndPoints 36.5 -84.25 36.25 -84.5",
                                  "SetBoundingBox -84.25 -84.5 36.5 36.25", "SetMethod 1",
                                  "SetSampleCount 501", "SetSource 7", "SetOptions 2 3", "Sample 501"}));
  EXPECT_EQ(sampler.attached, terrain);
  EXPECT_TRUE(geodesy.requests.empty()) << "there are no points beyond the stations";
}

TEST_F(NVCalcPathLossTest, HandsTheFirstStationsSampleToTheModelFirst) {
  const float forward = calculation.NVCalcPathLoss();
  sampler.height = [](std::size_t i) { return hill(502 - i); };
  EXPECT_NE(calculation.NVCalcPathLoss(), forward);
  std::swap(module.antennaHeights[0], module.antennaHeights[1]);
  EXPECT_NE(calculation.NVCalcPathLoss(), 0);
}

TEST_F(NVCalcPathLossTest, CutsThePointsToTheMaximum) {
  geodesy.distance = 20;
  EXPECT_EQ(calculation.NVCalcPathLoss(), expected(1000, 20.0F, 100));
  EXPECT_EQ(sampler.calls[4], "SetSampleCount 1000");
}

TEST_F(NVCalcPathLossTest, TakesDensityFrequencyAndParametersOfTheStore) {
  store.set("Profile", "Prf_Per", "50");
  store.set("Profile", "Prf_Max", "200");
  store.set("Profile", "Prf_Freq", "450.5");
  store.set("ITM", "dConfidence", "90");
  store.set("ITM", "dReliability", "0.1");
  EXPECT_EQ(calculation.NVCalcPathLoss(), expected(200, 25.0F, 450.5F, -1.28, 1.28));
}

TEST_F(NVCalcPathLossTest, TakesPolarizationClimateAndGroundOfTheStore) {
  const float before = calculation.NVCalcPathLoss();
  for (const auto& [key, value] : {std::pair{"iHor", "1"},
                                   {"iRadioClimate", "1"},
                                   {"dDielectric", "80"},
                                   {"dCond", "5"},
                                   {"dSurfRef", "350"}}) {
    store.set("ITM", key, value);
    const float changed = calculation.NVCalcPathLoss();
    EXPECT_NE(changed, before) << key;
    EXPECT_GT(changed, 50) << key;
    store.memory.values.clear();
  }
}

TEST_F(NVCalcPathLossTest, HoldsTheFrequencyIn32Bits) {
  store.set("Profile", "Prf_Freq", "450.123456789");
  EXPECT_EQ(calculation.NVCalcPathLoss(),
            expected(501, static_cast<float>(5.0 / 501 * 1000), 450.123456789F));
}

TEST_F(NVCalcPathLossTest, CarriesThePathLengthIn64BitsToTheNumberOfPoints) {
  geodesy.distance = 5.01500001;  // 5.01499987 in 32 bits
  calculation.NVCalcPathLoss();
  EXPECT_EQ(sampler.calls[4], "SetSampleCount 503") << "502.500001";
}

// 32 bits more or less move the spacing by its last bit at most, and the loss for some distances only.
TEST_F(NVCalcPathLossTest, CarriesThePathLengthIn64BitsToTheSpacing) {
  int telling = 0;
  for (std::int16_t hundredths = 500; hundredths < 820; ++hundredths) {
    geodesy.distance = hundredths / 100.0;
    const auto points = static_cast<std::int16_t>(hundredths + 1);
    const auto spacing = static_cast<float>(geodesy.distance / points * 1000);
    const float loss = expected(points, spacing, 100);
    EXPECT_EQ(calculation.NVCalcPathLoss(), loss) << geodesy.distance;
    const auto narrowed = static_cast<double>(static_cast<float>(geodesy.distance));
    telling += expected(points, static_cast<float>(narrowed / points * 1000), 100) != loss ? 1 : 0;
  }
  EXPECT_GT(telling, 0) << "32 bits would show nowhere";
}

TEST_F(NVCalcPathLossTest, CarriesTheRefractivityIn64BitsToTheModel) {
  const auto spacing = static_cast<float>(5.0 / 501 * 1000);
  int telling = 0;
  for (int whole = 300; whole < 400; ++whole) {
    const std::string text = std::to_string(whole) + ".7";
    store.set("ITM", "dSurfRef", text);
    const double refractivity = std::stod(text);
    const float loss = expected(501, spacing, 100, 0, 0, refractivity);
    EXPECT_EQ(calculation.NVCalcPathLoss(), loss) << text;
    const auto narrowed = static_cast<double>(static_cast<float>(refractivity));
    telling += expected(501, spacing, 100, 0, 0, narrowed) != loss ? 1 : 0;
  }
  EXPECT_GT(telling, 0) << "32 bits would show nowhere";
}

TEST_F(NVCalcPathLossTest, RepairsTheSourceAndTheMethodAsTheWindowDoes) {
  store.set("Settings", "CalcMethod", "2");
  store.set("Profile", "Prf_TRes", "5");
  calculation.NVCalcPathLoss();
  EXPECT_EQ(sampler.calls[3], "SetMethod 0");
  EXPECT_EQ(sampler.calls[5], "SetSource 3");
}

TEST_F(NVCalcPathLossTest, ChecksNoShortestPath) {
  geodesy.distance = 0.1;
  EXPECT_EQ(calculation.NVCalcPathLoss(), expected(11, static_cast<float>(0.1 / 11 * 1000), 100));
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(NVCalcPathLossTest, KeepsItsSampler) {
  EXPECT_EQ(samplersMade, 0);
  const float first = calculation.NVCalcPathLoss();
  EXPECT_EQ(calculation.NVCalcPathLoss(), first);
  EXPECT_EQ(samplersMade, 1);
  EXPECT_EQ(sampler.samplings, 2);
}

// --- frequency ---

TEST_F(NVCalcPathLossTest, GivesZeroSilentlyForAFrequencyOutsideTheRange) {
  module.antennaHeights = {-5, -5};  // the model would refuse them
  const Names frequencies{"19.9",  "19.999", "19.99999", "20000.002", "20000.5",
                          "20001", "0",      "-100",     "text",      ""};
  for (const std::string& frequency : frequencies) {
    store.set("Profile", "Prf_Freq", frequency);
    EXPECT_EQ(calculation.NVCalcPathLoss(), 0) << frequency;
  }
  EXPECT_TRUE(dialogs.messages.empty()) << "the model was not called";
  EXPECT_EQ(sampler.samplings, static_cast<int>(frequencies.size())) << "sampled all the same";
  EXPECT_EQ(store.reads.size(), frequencies.size() * (kProfileReads.size() + kItmReads.size()));
}

TEST_F(NVCalcPathLossTest, CallsTheModelAtTheEndsOfTheRange) {
  const auto spacing = static_cast<float>(5.0 / 501 * 1000);
  for (const auto& [text, frequency] : {std::pair{"20", 20.0F},
                                        {"20000", 20000.0F},
                                        {"20.00001", 20.00001F},
                                        {"19999.998", 19999.998F},
                                        // In 32 bits these are the ends themselves.
                                        {"19.9999999", 20.0F},
                                        {"20000.0001", 20000.0F}}) {
    store.set("Profile", "Prf_Freq", text);
    const float loss = calculation.NVCalcPathLoss();
    EXPECT_EQ(loss, expected(501, spacing, frequency)) << text;
    EXPECT_GT(loss, 50) << text;
  }
}

TEST_F(NVCalcPathLossTest, TellsABadParameterEvenWhereTheFrequencyWouldHaveMadeTheLossZero) {
  store.set("Profile", "Prf_Freq", "10");
  store.set("ITM", "dConfidence", "100");
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0);
  expectTrapped(3, 9);
}

// --- failures ---

TEST_F(NVCalcPathLossTest, TrapsASamplingThatFailsWithItsText) {
  const std::pair<int, const char*> rows[] = {{1, "Configuration Error."},
                                              {2, "Some or all of the terrain data is invalid!"},
                                              {3, "Over Range Error."},
                                              {4, "Under Range Error."}};
  for (const auto& [status, text] : rows) {
    dialogs.messages.clear();
    sampler.status = status;
    EXPECT_EQ(calculation.NVCalcPathLoss(), 0) << status;
    expectTrapped(2, 1000 + status, text);
  }
  EXPECT_FALSE(module.bProfileFailed) << "that flag is the window's";
  sampler.status = 0;
  EXPECT_GT(calculation.NVCalcPathLoss(), 0) << "the next call is none the worse";
}

TEST_F(NVCalcPathLossTest, TakesAStatusAboveFourForSuccess) {
  sampler.status = 5;
  EXPECT_GT(calculation.NVCalcPathLoss(), 50);
}

TEST_F(NVCalcPathLossTest, TrapsEachStageAtItsStep) {
  struct {
    const char* section;
    const char* key;
    const char* value;
    int step;
    int number;
  } const rows[] = {{"Profile", "Prf_Per", "40000", 0, 6},  {"Profile", "Prf_Freq", "1e39", 0, 6},
                    {"Profile", "Prf_Per", "-32768", 1, 6}, {"ITM", "iHor", "40000", 3, 6},
                    {"ITM", "dConfidence", "1", 3, 9},      {"ITM", "dReliability", "99.5", 3, 9},
                    {"ITM", "dReliability", "1e400", 3, 6}, {"ITM", "dDielectric", "0", 6, 5},
                    {"ITM", "dSurfRef", "nonsense", -1, 0}};
  for (const auto& row : rows) {
    dialogs.messages.clear();
    store.memory.values.clear();
    store.set(row.section, row.key, row.value);
    const float loss = calculation.NVCalcPathLoss();
    if (row.step < 0) {
      EXPECT_NE(loss, 0) << "a refractivity that is no text reads as 0, which the model takes";
      continue;
    }
    EXPECT_EQ(loss, 0) << row.key;
    SCOPED_TRACE(row.key);
    expectTrapped(row.step, row.number);
  }
}

TEST_F(NVCalcPathLossTest, TrapsADistanceThatIsNone) {
  geodesy.distance = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0);
  expectTrapped(1, 6);
}

TEST_F(NVCalcPathLossTest, TrapsAMaximumOfNoPointsWhereTheSamplerTakesIt) {
  store.set("Profile", "Prf_Max", "0");
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0);
  expectTrapped(5, 11);
}

TEST_F(NVCalcPathLossTest, TrapsANegativeAntennaHeightWithTheModelsSentence) {
  module.antennaHeights = {30, -1};
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0);
  expectTrapped(6, 5);
  EXPECT_NE(dialogs.messages[0].text.find("receiver's antenna height is -1 m"), std::string::npos);
}

TEST_F(NVCalcPathLossTest, TrapsAFailingStore) {
  store.memory.failing = true;
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0);
  expectTrapped(0, 70);
}

// --- heights ---

TEST_F(NVCalcPathLossTest, CountsAVoidAsSeaLevel) {
  sampler.height = [](std::size_t i) { return i > 200 && i < 300 ? kVoidHeight : hill(i); };
  const float withVoids = calculation.NVCalcPathLoss();
  sampler.height = [](std::size_t i) { return i > 200 && i < 300 ? 0.0F : hill(i); };
  EXPECT_EQ(withVoids, calculation.NVCalcPathLoss());
}

TEST_F(NVCalcPathLossTest, StopsHardOnAnImpossibleHeight) {
  sampler.height = [](std::size_t i) { return i == 3 ? -300.0F : 100.0F; };
  sampler.places = {{36.25, -84.5}, {36.26, -84.49}, {36.27, -84.48}};
  EXPECT_EQ(calculation.NVCalcPathLoss(), 0) << "nothing is computed should the stop return";
  EXPECT_EQ(hardStop.stops, 1);
  EXPECT_EQ(
      logged().find("11/15/26 19:05:03 The terrain height of sample 3 at 36.270000, -84.480000 is -300 m"),
      0U)
      << logged();
}

TEST_F(NVCalcPathLossTest, TakesHeightsDownToMinus100) {
  sampler.height = [](std::size_t) { return -100.0F; };
  EXPECT_GT(calculation.NVCalcPathLoss(), 50);
  EXPECT_EQ(hardStop.stops, 0);
}

}  // namespace
}  // namespace zel
