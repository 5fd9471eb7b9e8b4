#include "models/longrice/input_limits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace zel::longrice {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string refusal(const InputLimit& limit, double value) {
  try {
    requireWithin(limit, value);
  } catch (const ParameterError& error) {
    EXPECT_EQ(error.parameter(), limit.parameter);
    EXPECT_EQ(error.number(), 5);
    return error.description();
  }
  return {};
}

TEST(InputLimits, TakeBothLimitsAndNothingBeyondThem) {
  for (const InputLimit& limit :
       {limits::kElevation, limits::kSpacing, limits::kDistance, limits::kTransmitterHeight,
        limits::kReceiverHeight, limits::kFrequency, limits::kPermittivity, limits::kConductivity,
        limits::kSurfaceRefractivity, limits::kSeaLevelRefractivity, limits::kConfidenceDeviate,
        limits::kReliabilityDeviate}) {
    EXPECT_EQ(refusal(limit, limit.low), "") << limit.name;
    EXPECT_EQ(refusal(limit, limit.high), "") << limit.name;
    for (const double bad : {std::nextafter(limit.low, -kInfinity), std::nextafter(limit.high, kInfinity),
                             kInfinity, -kInfinity, std::nan("")})
      EXPECT_NE(refusal(limit, bad).find(limit.name), std::string::npos) << limit.name << " " << bad;
  }
}

TEST(InputLimits, SayTheValueAndWhatWouldDo) {
  EXPECT_EQ(refusal(limits::kFrequency, 0.5), "the frequency is 0.5 MHz; it must be 1 to 1000000 MHz");
  EXPECT_EQ(refusal(limits::kTransmitterHeight, -3),
            "the transmitter's antenna height is -3 m; it must be 0 to 100000 m");
  EXPECT_EQ(refusal(limits::kReceiverHeight, std::nan("")),
            "the receiver's antenna height is not a number; it must be 0 to 100000 m");
  EXPECT_EQ(refusal(limits::kPermittivity, kInfinity),
            "the ground's relative permittivity is infinite; it must be 1 to 100000");
  EXPECT_EQ(refusal(limits::kSurfaceRefractivity, 541),
            "the surface refractivity is 541 N-units; it must be 0 to 540 N-units");
  EXPECT_EQ(refusal(limits::kConfidenceDeviate, 41),
            "the confidence's normal deviate is 41; it must be -40 to 40");
}

TEST(InputLimits, SayWhichOfManyValuesItIs) {
  try {
    requireWithin(limits::kElevation, -20000, "elevation of sample 7");
    ADD_FAILURE();
  } catch (const ParameterError& error) {
    EXPECT_EQ(error.description(), "the elevation of sample 7 is -20000 m; it must be -9000 to 30000 m");
  }
}

TEST(InputLimits, TakeFractionsAboveZeroAndBelowOneOnly) {
  EXPECT_NO_THROW(requireFraction(Parameter::kConfidence, 5e-324));
  EXPECT_NO_THROW(requireFraction(Parameter::kReliability, std::nextafter(1.0, 0.0)));
  for (const double bad : {0.0, 1.0, -0.5, 50.0, kInfinity, std::nan("")})
    EXPECT_THROW(requireFraction(Parameter::kConfidence, bad), ParameterError) << bad;
  try {
    requireFraction(Parameter::kReliability, 50);
    ADD_FAILURE();
  } catch (const ParameterError& error) {
    EXPECT_EQ(error.parameter(), Parameter::kReliability);
    EXPECT_EQ(error.description(), "the reliability is 50; it must be a fraction above 0 and below 1");
  }
}

TEST(InputLimits, RefuseTheMarksOfMissingHeights) {
  for (const double mark : {-9999.0, -32768.0, 32767.0, -32767.0})
    EXPECT_NE(refusal(limits::kElevation, mark), "") << mark;
  for (const double place : {-430.0, 8849.0}) EXPECT_EQ(refusal(limits::kElevation, place), "") << place;
}

}  // namespace
}  // namespace zel::longrice
