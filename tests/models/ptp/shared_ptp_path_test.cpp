#include "models/ptp/shared_ptp_path.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <span>

#include "grounds.h"
#include "models/ptp/parameter_error.h"

namespace zel::ptp {
namespace {

constexpr double kWavelength = 0.5;  // metres

void expectFresh(SharedPtpPath& shared, std::span<const float> elevations, double spacing = 0.1,
                 double radius = 8500, double top = 2000) {
  const GrowingPtpPath& path = shared.over(elevations, spacing, radius, top);
  GrowingPtpPath fresh(spacing, radius, top);
  fresh.append(elevations);
  ASSERT_EQ(path.samples(), elevations.size());
  EXPECT_EQ(path.distance(), fresh.distance());
  EXPECT_EQ(path.effectiveRadius(), radius);
  const double receiver = static_cast<double>(elevations.back()) + 10;
  EXPECT_EQ(path.bullingtonNu(receiver, kWavelength), fresh.bullingtonNu(receiver, kWavelength));
  EXPECT_EQ(path.effectiveHeights(receiver).transmitter, fresh.effectiveHeights(receiver).transmitter);
  EXPECT_EQ(path.effectiveHeights(receiver).receiver, fresh.effectiveHeights(receiver).receiver);
}

TEST(SharedPtpPath, GoesOnWithAPathThatBecomesLonger) {
  Random random(81);
  const Elevations ground = anyGround(random, 200);
  SharedPtpPath shared;
  const GrowingPtpPath* const path = &shared.over(std::span(ground).first(50), 0.1, 8500, 2000);
  for (std::size_t count = 50; count <= ground.size(); count += 25)
    expectFresh(shared, std::span(ground).first(count));
  EXPECT_EQ(&shared.over(ground, 0.1, 8500, 2000), path);
}

TEST(SharedPtpPath, StartsAnewForWhateverIsNotThePathBeforeMadeLonger) {
  Random random(82);
  const Elevations ground = anyGround(random, 200);
  SharedPtpPath shared;
  expectFresh(shared, ground);
  expectFresh(shared, std::span(ground).first(100));  // shorter
  expectFresh(shared, std::span(ground).subspan(1));  // begins elsewhere
  expectFresh(shared, std::span(ground).subspan(1), 0.2);
  expectFresh(shared, std::span(ground).subspan(1), 0.2, 6371);
  expectFresh(shared, std::span(ground).subspan(1), 0.2, 6371, 2500);
}

TEST(SharedPtpPath, SeesAHeightThatWasChangedInPlace) {
  Random random(83);
  Elevations ground = anyGround(random, 200);
  SharedPtpPath shared;
  expectFresh(shared, std::span(ground).first(150));
  ground[70] += 300;
  expectFresh(shared, ground);
}

TEST(SharedPtpPath, IsOfUseAfterAPathThatWasRefused) {
  SharedPtpPath shared;
  Elevations ground{10, 20, 30, 40};
  expectFresh(shared, std::span(ground).first(3));
  ground[3] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_THROW(shared.over(ground, 0.1, 8500, 2000), ParameterError);
  EXPECT_THROW(shared.over(ground, 0, 8500, 2000), ParameterError);
  EXPECT_THROW(shared.over(ground, 0.1, 8500, 5), ParameterError);
  ground[3] = 50;
  expectFresh(shared, ground);
}

}  // namespace
}  // namespace zel::ptp
