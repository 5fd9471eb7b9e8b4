#include "profile/path_loss/modeled_loss.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "foundation/runtime_error.h"
#include "models/longrice/calc_itm.h"

namespace zel {
namespace {

constexpr ModelParameters kParameters{0, 5, 15, 0.005, 301, 0, 0};

// Rises towards station 2 with hills on it: the same path backwards is another.
std::vector<float> slope(std::size_t count) {
  std::vector<float> heights(count);
  for (std::size_t i = 0; i < count; ++i)
    heights[i] = 200.0F + 0.4F * static_cast<float>(i) + 60.0F * std::sin(static_cast<float>(i) * 0.07F);
  return heights;
}

int errorOfPoints(const CalculationSettings& density, double distance) {
  try {
    modelPoints(density, distance);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(ModelFrequency, RunsFrom20To20000MegahertzBothIncluded) {
  EXPECT_TRUE(isModelFrequency(20));
  EXPECT_TRUE(isModelFrequency(20000));
  EXPECT_TRUE(isModelFrequency(950));
  EXPECT_FALSE(isModelFrequency(19.9F));
  EXPECT_FALSE(isModelFrequency(std::nextafter(20.0F, 0.0F)));
  EXPECT_FALSE(isModelFrequency(20001));
  EXPECT_FALSE(isModelFrequency(std::nextafter(20000.0F, 30000.0F)));
  EXPECT_FALSE(isModelFrequency(0));
  EXPECT_FALSE(isModelFrequency(-100));
  EXPECT_FALSE(isModelFrequency(std::numeric_limits<float>::quiet_NaN()));
}

TEST(ModelPoints, AreThePointsPerKilometreTimesTheDistanceAndOneMore) {
  EXPECT_EQ(modelPoints({100, 1000}, 5), 501);
  EXPECT_EQ(modelPoints({50, 1000}, 5), 251);
  EXPECT_EQ(modelPoints({100, 1000}, 0.1), 11) << "there is no shortest path";
  EXPECT_EQ(modelPoints({100, 1000}, 0), 1);
}

TEST(ModelPoints, AreRoundedHalfToEven) {
  EXPECT_EQ(modelPoints({1, 1000}, 1.5), 2) << "2.5";
  EXPECT_EQ(modelPoints({1, 1000}, 2.5), 4) << "3.5";
  EXPECT_EQ(modelPoints({1, 1000}, 2.4999), 3);
}

TEST(ModelPoints, AreCountedFromADistanceOf64Bits) {
  EXPECT_EQ(modelPoints({100, 1000}, 5.01500001), 503) << "502.500001; 5.01499987 in 32 bits";
  EXPECT_EQ(modelPoints({100, 1000}, 5.04499999), 505) << "505.499999; 505.5, or 506, with a sum of 32 bits";
}

TEST(ModelPoints, AreCutToTheMaximum) {
  EXPECT_EQ(modelPoints({100, 1000}, 20), 1000);
  EXPECT_EQ(modelPoints({100, 1000}, 9.99), 1000) << "999 + 1, not cut";
  EXPECT_EQ(modelPoints({100, 1000}, 10), 1000) << "1001, cut by one";
  EXPECT_EQ(modelPoints({100, 1000}, 5000), 1000) << "more than 16 bits before the cut";
  EXPECT_EQ(modelPoints({100, 32767}, 400), 32767);
  EXPECT_EQ(modelPoints({100, 0}, 5), 0);
  EXPECT_EQ(modelPoints({100, -7}, 5), -7) << "the sampler refuses it";
}

TEST(ModelPoints, ThatDoNotFit16BitsAreAnOverflow) {
  EXPECT_EQ(errorOfPoints({-100, 1000}, 400), 6);
  EXPECT_EQ(errorOfPoints({-100, 1000}, 300), 0);
  EXPECT_EQ(errorOfPoints({100, 1000}, std::numeric_limits<double>::quiet_NaN()), 6);
  EXPECT_EQ(errorOfPoints({32767, 1000}, 1e9), 6) << "more than 32 bits";
}

TEST(ModelSpacing, DividesByThePointsAndNotByTheIntervals) {
  EXPECT_EQ(modelSpacing(5, 501), static_cast<float>(5.0 / 501 * 1000));  // 9.98 m
  EXPECT_NEAR(modelSpacing(5, 501), 9.98004, 1e-5);
  EXPECT_EQ(modelSpacing(20, 1000), 20);
  EXPECT_NE(modelSpacing(5, 501), 10);
}

// The quotients' spacings in 30 digits are 9.98161764706, 9.98260869565 and 9.98305084746 m.
TEST(ModelSpacing, IsCutTo32BitsOnlyAtItsEnd) {
  struct {
    double distance;  // km
    std::int16_t points;
    double spacing;  // metres
  } const rows[] = {
      {5.43, 544, 9.98161764705882353}, {5.74, 575, 9.98260869565217391}, {5.89, 590, 9.98305084745762712}};
  for (const auto& row : rows) {
    const auto expected = static_cast<float>(row.spacing);
    EXPECT_EQ(modelSpacing(row.distance, row.points), expected) << row.distance;
    const auto kilometres = static_cast<float>(row.distance / row.points);
    EXPECT_NE(static_cast<float>(static_cast<double>(kilometres) * 1000), expected)
        << "the row tells nothing";
    const auto distance = static_cast<double>(static_cast<float>(row.distance));
    EXPECT_NE(static_cast<float>(distance / row.points * 1000), expected) << "the row tells nothing";
  }
}

TEST(ModelSpacing, FailsWithoutPointsAndBeyond32Bits) {
  try {
    modelSpacing(5, 0);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 11);
  }
  EXPECT_THROW(modelSpacing(1e300, 1), RuntimeError);
}

TEST(ModeledLoss, HandsTheModelEveryArgumentInItsPlace) {
  const std::vector<float> heights = slope(300);
  const ModelParameters parameters{1, 6, 25, 0.02, 320, 1.28, -0.84};
  double expected = 0;
  CalcITM(300, 66.6F, heights.data(), 12, 90, 1, 6, 25, 0.02, 450, 320, &parameters.confidence, 1,
          &parameters.reliability, 1, &expected);
  const float loss = modeledLoss({heights, 66.6F, {12, 90}, 450}, parameters);
  EXPECT_EQ(loss, static_cast<float>(expected));
  EXPECT_GT(loss, 100) << "a positive loss";
  // Each input counts, so none can stand in another's place.
  EXPECT_NE(loss, modeledLoss({heights, 66.6F, {90, 12}, 450}, parameters));
  EXPECT_NE(loss, modeledLoss({heights, 66.7F, {12, 90}, 450}, parameters));
  EXPECT_NE(loss, modeledLoss({heights, 66.6F, {12, 90}, 451}, parameters));
  EXPECT_NE(loss, modeledLoss({heights, 66.6F, {12, 90}, 450}, {0, 6, 25, 0.02, 320, 1.28, -0.84}));
  EXPECT_NE(loss, modeledLoss({heights, 66.6F, {12, 90}, 450}, {1, 6, 25, 0.02, 320, -0.84, 1.28}));
}

// A constant of the ground or the air cut to 32 bits moves the loss by less than the last bit of the result,
// which shows it for some values only: most for antennas near a smooth, poor ground.
TEST(ModeledLoss, HandsTheConstantsOfGroundAndAirOverIn64Bits) {
  std::vector<float> heights(300);
  for (std::size_t i = 0; i < heights.size(); ++i)
    heights[i] = 100.0F + 3.0F * std::sin(static_cast<float>(i) * 0.07F);
  const auto directly = [&heights](const ModelParameters& parameters) {
    double loss = 0;
    CalcITM(300, 20, heights.data(), 1, 1, 1, 5, parameters.permittivity, parameters.conductivity, 20,
            parameters.refractivity, &parameters.confidence, 1, &parameters.reliability, 1, &loss);
    return static_cast<float>(loss);
  };
  for (double ModelParameters::*constant :
       {&ModelParameters::permittivity, &ModelParameters::conductivity, &ModelParameters::refractivity}) {
    int telling = 0;
    for (int step = 1; step <= 3000; ++step) {
      ModelParameters parameters{1, 5, 5, 0.005, 301, 0, 0};
      parameters.*constant *= 1 + step * 0.0001;
      const float expected = directly(parameters);
      EXPECT_EQ(modeledLoss({heights, 20, {1, 1}, 20}, parameters), expected);
      parameters.*constant = static_cast<double>(static_cast<float>(parameters.*constant));
      telling += directly(parameters) != expected ? 1 : 0;
    }
    EXPECT_GT(telling, 0) << "32 bits would show nowhere";
  }
}

TEST(ModeledLoss, TakesAnyPolarizationCodeButZeroForVertical) {
  const std::vector<float> heights = slope(300);
  const ModelPath path{heights, 66.6F, {12, 90}, 30};
  ModelParameters parameters = kParameters;
  const float horizontal = modeledLoss(path, parameters);
  parameters.polarization = 1;
  const float vertical = modeledLoss(path, parameters);
  parameters.polarization = -7;
  EXPECT_EQ(modeledLoss(path, parameters), vertical);
  EXPECT_NE(horizontal, vertical);
}

TEST(ModeledLoss, IsAtLeastThatOfFreeSpaceNearlyForAMedian) {
  const std::vector<float> flat(101, 100.0F);
  // 32.45 + 20 log 950 + 20 log 5 = 105.98 dB; two rays over a short path stay within some decibels of it.
  EXPECT_NEAR(modeledLoss({flat, 50, {100, 100}, 950}, kParameters), 105.98, 6);
}

TEST(ModeledLoss, FailsWithTheModelsSentenceForWhatHasNoLoss) {
  const std::vector<float> heights = slope(300);
  try {
    modeledLoss({heights, 66.6F, {-1, 30}, 450}, kParameters);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 5);
    EXPECT_NE(error.description().find("antenna height"), std::string::npos);
  }
  EXPECT_THROW(modeledLoss({std::span(heights).first(1), 66.6F, {30, 30}, 450}, kParameters), RuntimeError);
  EXPECT_THROW(modeledLoss({{}, 66.6F, {30, 30}, 450}, kParameters), RuntimeError);
}

TEST(ModeledLoss, CountsItsSamplesIn16Bits) {
  const std::vector<float> flat(32768, 100.0F);
  try {
    modeledLoss({flat, 10, {30, 30}, 450}, kParameters);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 6);
  }
  EXPECT_GT(modeledLoss({std::span(flat).first(32767), 10, {30, 30}, 450}, kParameters), 100);
}

TEST(ModelPrediction, IsThatOfTheSameRun) {
  const std::vector<float> heights = slope(300);
  for (const float frequency : {40.0F, 950.0F, 9000.0F})
    for (const std::int16_t polarization : {std::int16_t{0}, std::int16_t{2}}) {
      const ModelPath path{heights, 166.6F, {12, 90}, frequency};
      const ModelParameters parameters{polarization, 6, 25, 0.02, 320, 1.28, -0.84};
      const longrice::Prediction prediction = modelPrediction(path, parameters);
      EXPECT_EQ(static_cast<float>(prediction.loss(parameters.reliability, parameters.confidence)),
                modeledLoss(path, parameters));
    }
}

TEST(ModelPrediction, TakesEveryParameterIn64Bits) {
  const std::vector<float> heights = slope(300);
  const ModelParameters parameters{1, 6, 25.3, 0.0213, 320.7, 1.28, -0.84};
  double expected = 0;
  CalcITM(300, 66.6F, heights.data(), 3, 2, 1, 6, 25.3, 0.0213, static_cast<double>(45.1F), 320.7,
          &parameters.confidence, 1, &parameters.reliability, 1, &expected);
  const longrice::Prediction prediction = modelPrediction({heights, 66.6F, {3, 2}, 45.1F}, parameters);
  EXPECT_EQ(prediction.loss(parameters.reliability, parameters.confidence), expected);
}

}  // namespace
}  // namespace zel
