#include "models/longrice/calc_itm.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "links.h"
#include "models/longrice/normal_deviate.h"
#include "models/longrice/parameter_error.h"
#include "published_example.h"

namespace zel::longrice {
namespace {

// The arguments of one call, by name.
struct Call {
  std::vector<float> elevations{published::ground().begin(), published::ground().end()};
  int points = -1;  // as many as there are
  float spacing = static_cast<float>(published::spacing());
  double transmitterHeight = published::kTransmitterHeight;
  double receiverHeight = published::kReceiverHeight;
  std::int16_t polarization = 0;
  std::int16_t climate = 5;
  double permittivity = 15;
  double conductivity = 0.005;
  double frequency = 41.5;
  double refractivity = 314;
  std::vector<double> confidence{0};
  std::vector<double> reliability{0};

  std::vector<double> losses() const {
    std::vector<double> result(confidence.size() * reliability.size(), -1);
    run(result.data());
    return result;
  }
  double loss() const { return losses().at(0); }

  void run(double* result) const {
    CalcITM(static_cast<std::int16_t>(points < 0 ? static_cast<int>(elevations.size()) : points), spacing,
            elevations.data(), transmitterHeight, receiverHeight, polarization, climate, permittivity,
            conductivity, frequency, refractivity, confidence.data(),
            static_cast<std::int32_t>(confidence.size()), reliability.data(),
            static_cast<std::int32_t>(reliability.size()), result);
  }
};

// Tolerance: the table's rounding and 0.05 dB.
TEST(CalcITM, GivesThePublishedTableTheConfidenceRunningFastest) {
  Call call;
  call.confidence.clear();
  call.reliability.clear();
  for (const double fraction : published::kConfidence) call.confidence.push_back(normalDeviate(fraction));
  for (const double fraction : published::kReliability) call.reliability.push_back(normalDeviate(fraction));
  const std::vector<double> losses = call.losses();
  for (std::size_t r = 0; r < published::kReliability.size(); ++r)
    for (std::size_t c = 0; c < published::kConfidence.size(); ++c)
      EXPECT_NEAR(losses[c + r * published::kConfidence.size()], published::kLoss[r][c], 0.1)
          << r << " " << c;
}

TEST(CalcITM, IsTheModelWithEachArgumentInItsPlace) {
  Call call;
  call.spacing = 250;
  call.transmitterHeight = 33;
  call.receiverHeight = 7;
  call.polarization = 1;
  call.climate = 3;
  call.permittivity = 25;
  call.conductivity = 0.02;
  call.frequency = 150;
  call.refractivity = 360;
  call.confidence = {0.7};
  call.reliability = {-1.1};
  Parameters parameters;
  parameters.frequency = 150;
  parameters.polarization = Polarization::kVertical;
  parameters.climate = 3;
  parameters.permittivity = 25;
  parameters.conductivity = 0.02;
  parameters.surfaceRefractivity = 360;
  EXPECT_EQ(call.loss(), predicted(parameters, published::ground(), 250, 33, 7).loss(-1.1, 0.7));
}

TEST(CalcITM, TakesAClimateThatIsNoneForContinentalTemperate) {
  Call call;
  call.reliability = {1.5};
  const double temperate = call.loss();
  for (const int climate : {0, 8, -1, 32767}) {
    call.climate = static_cast<std::int16_t>(climate);
    EXPECT_EQ(call.loss(), temperate) << climate;
  }
  call.climate = 1;
  EXPECT_NE(call.loss(), temperate);
}

// 0 is horizontal; whatever else a caller has is vertical.
TEST(CalcITM, TakesEveryPolarizationButZeroForVertical) {
  Call call;
  const double horizontal = call.loss();
  call.polarization = 1;
  const double vertical = call.loss();
  EXPECT_NE(vertical, horizontal);
  for (const int polarization : {7, -1, 2}) {
    call.polarization = static_cast<std::int16_t>(polarization);
    EXPECT_EQ(call.loss(), vertical) << polarization;
  }
}

TEST(CalcITM, ReadsAsManyElevationsAsItIsTold) {
  Call call;
  const double whole = call.loss();
  call.points = 100;
  const double part = call.loss();
  EXPECT_NE(part, whole);
  call.elevations.resize(100);
  call.points = -1;
  EXPECT_EQ(call.loss(), part);
}

TEST(CalcITM, WritesNothingForNoLevels) {
  Call call;
  call.confidence.clear();
  double untouched = 17;
  call.run(&untouched);
  EXPECT_EQ(untouched, 17);
}

TEST(CalcITM, NamesTheArgumentThatIsWrongAndLeavesTheLossesAsTheyWere) {
  struct Row {
    std::function<void(Call&)> spoil;
    Parameter parameter;
    std::string word;
  };
  const double nan = std::nan("");
  const std::vector<Row> rows = {
      {[](Call& call) { call.points = 0; }, Parameter::kElevations, "elevations"},
      {[](Call& call) { call.points = 1; }, Parameter::kElevations, "elevations"},
      {[](Call& call) { call.points = 40000; }, Parameter::kElevations, "elevations"},  // negative as 16 bits
      {[](Call& call) { call.elevations[4] = NAN; }, Parameter::kElevations, "sample 5"},
      {[](Call& call) { call.elevations[0] = INFINITY; }, Parameter::kElevations, "sample 1"},
      {[](Call& call) { call.spacing = 0; }, Parameter::kSpacing, "spacing"},
      {[](Call& call) { call.spacing = NAN; }, Parameter::kSpacing, "spacing"},
      {[](Call& call) { call.spacing = 1e6F; }, Parameter::kSpacing, "length"},
      {[](Call& call) { call.transmitterHeight = -1; }, Parameter::kTransmitterHeight, "transmitter"},
      {[](Call& call) { call.receiverHeight = -1; }, Parameter::kReceiverHeight, "receiver"},
      {[nan](Call& call) { call.receiverHeight = nan; }, Parameter::kReceiverHeight, "receiver"},
      {[](Call& call) { call.permittivity = 0; }, Parameter::kPermittivity, "permittivity"},
      {[](Call& call) { call.conductivity = -1; }, Parameter::kConductivity, "conductivity"},
      {[](Call& call) { call.frequency = 0; }, Parameter::kFrequency, "frequency"},
      {[](Call& call) { call.refractivity = 1000; }, Parameter::kSurfaceRefractivity, "refractivity"},
      {[nan](Call& call) {
         call.confidence = {0, nan};
       },
       Parameter::kConfidence, "confidence"},
      {[](Call& call) {
         call.reliability = {0, 99};
       },
       Parameter::kReliability, "reliability"},
  };
  for (std::size_t row = 0; row < rows.size(); ++row) {
    Call call;
    rows[row].spoil(call);
    std::array<double, 4> losses{17, 18, 19, 20};
    try {
      call.run(losses.data());
      ADD_FAILURE() << row;
    } catch (const ParameterError& error) {
      EXPECT_EQ(error.parameter(), rows[row].parameter) << row << " " << error.description();
      EXPECT_EQ(error.number(), 5);
      EXPECT_NE(error.description().find(rows[row].word), std::string::npos) << error.description();
    }
    EXPECT_EQ(losses, (std::array<double, 4>{17, 18, 19, 20})) << row;
  }
}

TEST(CalcITM, GivesTheSameFromEightThreadsAtOnce) {
  std::vector<Call> calls;
  std::vector<std::vector<double>> expected;
  for (int i = 0; i < 40; ++i) {
    Call call;
    call.frequency = 40 + 100 * i;
    call.climate = static_cast<std::int16_t>(i % 7 + 1);
    call.receiverHeight = 2 + i;
    call.points = 40 + 2 * i;
    call.reliability = {-1, 0, 1};
    calls.push_back(call);
    expected.push_back(call.losses());
  }
  std::atomic<int> different = 0;
  constexpr std::size_t kThreads = 8;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (std::size_t thread = 0; thread < kThreads; ++thread)
    threads.emplace_back([&, thread] {
      for (std::size_t round = 0; round < 20; ++round)
        for (std::size_t i = 0; i < calls.size(); ++i) {
          const std::size_t chosen = (i * 7 + thread) % calls.size();
          if (calls[chosen].losses() != expected[chosen]) ++different;
        }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(different, 0);
}

}  // namespace
}  // namespace zel::longrice
