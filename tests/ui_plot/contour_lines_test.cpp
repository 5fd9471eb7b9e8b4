#include "ui/plot/contour_lines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace zel {
namespace {

TEST(ContourLine, PassesWhereTheValueBetweenTwoCornersMeetsTheLevel) {
  // Grows by 1 a column.
  const std::vector<double> values{0, 1, 2, 0, 1, 2, 0, 1, 2};
  const auto pieces = contourLine({values, 3}, 1.25);
  ASSERT_EQ(pieces.size(), 2U);
  for (const ContourPiece& piece : pieces) {
    EXPECT_DOUBLE_EQ(piece.from.x, 1.25);
    EXPECT_DOUBLE_EQ(piece.to.x, 1.25);
    EXPECT_DOUBLE_EQ(std::abs(piece.from.y - piece.to.y), 1);
  }
}

TEST(ContourLine, IsThereOnlyWhereTheLevelIs) {
  const std::vector<double> values{0, 1, 2, 3};
  EXPECT_TRUE(contourLine({values, 2}, -1).empty());
  EXPECT_TRUE(contourLine({values, 2}, 4).empty());
  EXPECT_EQ(contourLine({values, 2}, 1.5).size(), 1U);
  // Nothing is below the lowest value.
  EXPECT_TRUE(contourLine({values, 2}, 0).empty());
  EXPECT_EQ(contourLine({values, 2}, 3).size(), 1U);
}

TEST(ContourLine, OfAFlatTableIsNone) {
  EXPECT_TRUE(contourLine({std::vector<double>(16, 5.0), 4}, 5).empty());
  EXPECT_TRUE(contourLine({{}, 0}, 5).empty());
}

TEST(ContourLine, InASaddleKeepsTheLowCornersApart) {
  // Low at the corners (0, 0) and (1, 1).
  const std::vector<double> values{0, 1, 1, 0};
  const auto pieces = contourLine({values, 2}, 0.5);
  ASSERT_EQ(pieces.size(), 2U);
  for (const ContourPiece& piece : pieces) {
    const double x = (piece.from.x + piece.to.x) / 2, y = (piece.from.y + piece.to.y) / 2;
    EXPECT_NEAR(std::abs(x + y - 1), 0.5, 1e-12);
  }
}

// On a plane every point of the line lies on the level exactly.
TEST(ContourLine, FollowsAPlane) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> slope(-2, 2);
  for (int round = 0; round < 50; ++round) {
    const double a = slope(random), b = slope(random);
    std::vector<double> values;
    for (int row = 0; row < 9; ++row)
      for (int column = 0; column < 9; ++column) values.push_back(a * column + b * row);
    const double level = a * 4.3 + b * 3.6;
    const auto pieces = contourLine({values, 9}, level);
    EXPECT_FALSE(pieces.empty());
    for (const ContourPiece& piece : pieces)
      for (const CanvasPoint end : {piece.from, piece.to})
        EXPECT_NEAR(a * end.x + b * end.y, level, 1e-9) << round;
  }
}

TEST(ContourLevels, AreTheMultiplesOfTheStep) {
  EXPECT_EQ(contourLevels(122.8, 141, 5), (std::vector<double>{125, 130, 135, 140}));
  EXPECT_EQ(contourLevels(-4, 4, 2), (std::vector<double>{-4, -2, 0, 2, 4}));
  EXPECT_TRUE(contourLevels(120.2, 120.8, 1).empty());
}

TEST(ContourStep, IsTheFinestOfOneTwoAndFiveThatKeepsTheNumber) {
  EXPECT_EQ(contourStep(120.2, 120.8, 12), 1);
  EXPECT_EQ(contourStep(120, 131, 12), 1);
  EXPECT_EQ(contourStep(120, 132, 12), 2);
  EXPECT_EQ(contourStep(122.8, 183.6, 12), 5);
  EXPECT_EQ(contourStep(120, 240, 12), 20);
  EXPECT_EQ(contourStep(100, 200, 1), 200);
  EXPECT_EQ(contourStep(150, 150, 1), 1);
  EXPECT_EQ(contourStep(-50, 50, 1), 100) << "0 is a multiple of every step";
}

}  // namespace
}  // namespace zel
