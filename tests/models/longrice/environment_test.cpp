#include "models/longrice/environment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "links.h"
#include "models/longrice/parameter_error.h"

namespace zel::longrice {
namespace {

// 301 N-units are the atmosphere in which the earth is a third larger to a ray: 4/3 of 6370 km. Tolerance:
// 301 is rounded to a unit, 0.03 %.
TEST(EffectiveCurvature, IsThreeQuartersOfTheEarthsAt301) {
  EXPECT_NEAR(1e-3 / effectiveEarthCurvature(301), 6370.0 * 4 / 3, 2.5);
}

TEST(EffectiveCurvature, IsNearlyTheEarthsOwnWithoutAnAtmosphereAndFallsWithRefractivity) {
  EXPECT_NEAR(1e-3 / effectiveEarthCurvature(0), 6370 / (1 - 0.04665), 1);
  double before = effectiveEarthCurvature(0);
  for (int refractivity = 10; refractivity <= 540; refractivity += 10) {
    const double now = effectiveEarthCurvature(refractivity);
    EXPECT_LT(now, before);
    EXPECT_GT(now, 0);
    before = now;
  }
  // Flat to a ray at 549.6: less than a thousandth of the earth's own.
  EXPECT_NEAR(effectiveEarthCurvature(549.6), 0, 1e-10);
}

// Ns = N0 exp(-z / 9.46 km); Technical Note 101 writes it exp(-0.1057 z), z in km.
TEST(SurfaceRefractivity, FallsWithHeightAsTheTechnicalNoteHasIt) {
  EXPECT_EQ(surfaceRefractivityAt(0, 350), 350);
  EXPECT_NEAR(surfaceRefractivityAt(1500, 350), 350 * std::exp(-0.1057 * 1.5), 0.01);
  EXPECT_NEAR(surfaceRefractivityAt(9460, 350), 350 / std::numbers::e, 1e-9);
  EXPECT_GT(surfaceRefractivityAt(-100, 350), 350);
}

// k = 2 pi f / c. Tolerance: 47.70 stands for 47.713, 0.03 %.
TEST(Environment, HasTheWaveNumberOfTheFrequency) {
  for (const double frequency : {20.0, 450.0, 20000.0}) {
    const double expected = 2 * std::numbers::pi * frequency * 1e6 / 299792458;
    EXPECT_NEAR(environmentOf(usualParameters(frequency)).waveNumber, expected, 4e-4 * expected);
  }
  EXPECT_DOUBLE_EQ(environmentOf(usualParameters(47.7)).waveNumber, 1);
}

// The square root of a complex number by hand: half the sum and difference of modulus and real part.
TEST(Environment, HasTheGroundsImpedanceOfComplexArithmeticByHand) {
  const double k = 450 / 47.70;
  const double imaginary = 376.62 * 0.005 / k;
  const double modulus = std::hypot(14, imaginary);
  const double real = std::sqrt((modulus + 14) / 2);
  const double imaginaryRoot = std::sqrt((modulus - 14) / 2);
  const std::complex<double> horizontal = surfaceTransferImpedance(k, Polarization::kHorizontal, 15, 0.005);
  EXPECT_NEAR(horizontal.real(), real, 1e-12);
  EXPECT_NEAR(horizontal.imag(), imaginaryRoot, 1e-12);
  // Vertical: divided by 15 + i imaginary.
  const double square = 15 * 15 + imaginary * imaginary;
  const std::complex<double> vertical = surfaceTransferImpedance(k, Polarization::kVertical, 15, 0.005);
  EXPECT_NEAR(vertical.real(), (real * 15 + imaginaryRoot * imaginary) / square, 1e-12);
  EXPECT_NEAR(vertical.imag(), (imaginaryRoot * 15 - real * imaginary) / square, 1e-12);
}

TEST(Environment, HasARealImpedanceOverGroundThatDoesNotConduct) {
  const std::complex<double> impedance = surfaceTransferImpedance(10, Polarization::kHorizontal, 10, 0);
  EXPECT_DOUBLE_EQ(impedance.real(), 3);
  EXPECT_EQ(impedance.imag(), 0);
}

TEST(Environment, IsThatOfItsParameters) {
  Parameters parameters = overSea(150, Polarization::kVertical);
  parameters.surfaceRefractivity = 330;
  const Environment environment = environmentOf(parameters);
  EXPECT_EQ(environment.surfaceRefractivity, 330);
  EXPECT_EQ(environment.effectiveCurvature, effectiveEarthCurvature(330));
  EXPECT_EQ(environment.surfaceImpedance,
            surfaceTransferImpedance(environment.waveNumber, Polarization::kVertical, 80, 5));
}

TEST(Environment, RefusesEachParameterThatNoLossComesFrom) {
  struct Row {
    double Parameters::*member;
    Parameter parameter;
    double low, high;  // the limits themselves, which are fine
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Row& row : {Row{&Parameters::frequency, Parameter::kFrequency, 1, 1e6},
                         {&Parameters::permittivity, Parameter::kPermittivity, 1, 1e5},
                         {&Parameters::conductivity, Parameter::kConductivity, 0, 1e9},
                         {&Parameters::surfaceRefractivity, Parameter::kSurfaceRefractivity, 0, 540}}) {
    Parameters parameters = usualParameters();
    for (const double fine : {row.low, row.high}) {
      parameters.*row.member = fine;
      EXPECT_NO_THROW(environmentOf(parameters)) << fine;
    }
    for (const double bad : {std::nextafter(row.low, -kInfinity), std::nextafter(row.high, kInfinity),
                             kInfinity, -kInfinity, std::nan("")}) {
      parameters.*row.member = bad;
      try {
        environmentOf(parameters);
        ADD_FAILURE() << bad;
      } catch (const ParameterError& error) {
        EXPECT_EQ(error.parameter(), row.parameter) << error.description();
      }
    }
  }
}

}  // namespace
}  // namespace zel::longrice
