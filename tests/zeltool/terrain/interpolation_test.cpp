#include "zeltool/terrain/interpolation.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zel {
namespace {

constexpr double kParts[] = {0, 0.1, 0.25, 0.3, 0.5, 0.6, 0.75, 0.9, 1};

TEST(Bilinear, GivesEachPostAtItsOwnPlace) {
  EXPECT_EQ(bilinear(1, 2, 3, 4, 0, 0), 1);
  EXPECT_EQ(bilinear(1, 2, 3, 4, 1, 0), 2);
  EXPECT_EQ(bilinear(1, 2, 3, 4, 0, 1), 3);
  EXPECT_EQ(bilinear(1, 2, 3, 4, 1, 1), 4);
}

TEST(Bilinear, GivesTheMeanOfFourInTheMiddle) { EXPECT_EQ(bilinear(10, 20, 30, 60, 0.5, 0.5), 30); }

TEST(Bilinear, ReproducesAPlane) {
  const auto plane = [](double x, double y) { return 100 + 7 * x - 3 * y; };
  for (const double x : kParts)
    for (const double y : kParts)
      EXPECT_NEAR(bilinear(plane(0, 0), plane(1, 0), plane(0, 1), plane(1, 1), x, y), plane(x, y), 1e-12);
}

TEST(CubicWeights, AddUpToOneAndAreOneOnAPost) {
  for (const double t : kParts) {
    const auto w = cubicWeights(t);
    EXPECT_NEAR(w[0] + w[1] + w[2] + w[3], 1, 1e-15);
  }
  EXPECT_EQ(cubicWeights(0)[1], 1);
  EXPECT_EQ(cubicWeights(0)[0], 0);
}

// By Keys' equation with a = -1/2 and t = 1/2: -1/16, 9/16, 9/16, -1/16.
TEST(CubicWeights, HaveThePublishedValuesHalfWay) {
  const auto w = cubicWeights(0.5);
  EXPECT_DOUBLE_EQ(w[0], -0.0625);
  EXPECT_DOUBLE_EQ(w[1], 0.5625);
  EXPECT_DOUBLE_EQ(w[2], 0.5625);
  EXPECT_DOUBLE_EQ(w[3], -0.0625);
}

std::array<double, 16> sixteen(const auto& height) {
  std::array<double, 16> z{};
  for (std::size_t k = 0; k < 16; ++k) {
    const std::size_t row = k / 4, column = k % 4;
    z[k] = height(static_cast<double>(column) - 1, static_cast<double>(row) - 1);
  }
  return z;
}

TEST(Bicubic, ReproducesAPlaneAndAQuadratic) {
  const auto plane = [](double x, double y) { return 5 + 2 * x - 4 * y; };
  const auto bowl = [](double x, double y) { return 100 + x * x - 0.5 * y * y + x * y; };
  for (const double x : kParts)
    for (const double y : kParts) {
      EXPECT_NEAR(bicubicLimited(sixteen(plane), x, y), plane(x, y), 1e-12);
      EXPECT_NEAR(bicubicLimited(sixteen(bowl), x, y), bowl(x, y), 1e-12);
    }
}

TEST(Bicubic, NeverLeavesTheRangeOfItsPosts) {
  std::array<double, 16> plateau{};
  for (const std::size_t post : {5U, 6U, 9U, 10U}) plateau[post] = 100;
  // Without the limit the middle would be (2 x 9/16)^2 x 100 = 126.6.
  EXPECT_EQ(bicubicLimited(plateau, 0.5, 0.5), 100);
  for (double& post : plateau) post = -post;
  EXPECT_EQ(bicubicLimited(plateau, 0.5, 0.5), -100);
}

TEST(Bicubic, AVoidAmongThePostsIsAVoid) {
  for (std::size_t hole = 0; hole < 16; ++hole) {
    std::array<double, 16> z{};
    z[hole] = NAN;
    EXPECT_TRUE(std::isnan(bicubicLimited(z, 0.5, 0.5))) << hole;
  }
}

}  // namespace
}  // namespace zel
