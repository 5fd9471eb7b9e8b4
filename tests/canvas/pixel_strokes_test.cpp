#include "canvas/pixel_strokes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace zel {
namespace {

constexpr std::uint32_t kPaper = 0xFFFFFFFF;
constexpr std::uint32_t kGuard = 0xFF5A5A5A;
constexpr PixelPen kBlackPen{DrawMode::kCopyPen, kBlack};

// A picture within a frame of guard pixels, which no stroke may touch.
class Picture {
 public:
  Picture(int width, int height) : width_(width), height_(height), pitch_(width + 2 * kFrame) {
    pixels_.assign(static_cast<std::size_t>(pitch_ * (height + 2 * kFrame)), kGuard);
    forEach([](int, int, std::uint32_t& pixel) { pixel = kPaper; });
  }

  PixelRows rows() { return {&at(0, 0), width_, height_, pitch_}; }
  std::uint32_t& at(int x, int y) {
    return pixels_[static_cast<std::size_t>((y + kFrame) * pitch_ + x + kFrame)];
  }
  template <typename Body>
  void forEach(Body body) {
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x) body(x, y, at(x, y));
  }
  void fillWithNoise(std::mt19937& random) {
    forEach([&](int, int, std::uint32_t& pixel) {
      pixel = 0xFF000000U | (static_cast<std::uint32_t>(random()) & 0xFFFFFFU);
    });
  }
  std::size_t guards() const {
    return static_cast<std::size_t>(std::count(pixels_.begin(), pixels_.end(), kGuard));
  }
  // "#" black, "." white, "o" any other colour.
  std::vector<std::string> art() {
    std::vector<std::string> lines(static_cast<std::size_t>(height_),
                                   std::string(static_cast<std::size_t>(width_), '.'));
    forEach([&](int x, int y, std::uint32_t pixel) {
      char& sign = lines[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
      if (pixel == 0xFF000000U) sign = '#';
      if (pixel != 0xFF000000U && pixel != kPaper) sign = 'o';
    });
    return lines;
  }
  friend bool operator==(const Picture&, const Picture&) = default;

 private:
  static constexpr std::ptrdiff_t kFrame = 3;

  int width_;
  int height_;
  std::ptrdiff_t pitch_;
  std::vector<std::uint32_t> pixels_;
};

using Art = std::vector<std::string>;

Art lineArt(int width, int height, PixelPoint from, PixelPoint to, int penWidth = 1) {
  Picture picture(width, height);
  strokeLine(picture.rows(), from, to, penWidth, kBlackPen);
  return picture.art();
}

// Another each time when ZEL_SEED says so.
unsigned seed() {
  const char* text = std::getenv("ZEL_SEED");
  return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 20240611U;
}

class RandomStrokes : public testing::Test {
 protected:
  RandomStrokes() : random(seed()) { RecordProperty("seed", std::to_string(seed())); }

  double whole(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random); }
  PixelPoint point(int least, int most) { return {whole(least, most), whole(least, most)}; }

  std::mt19937 random;
};

// Lines.

TEST(PixelLine, TakesBothEnds) {
  EXPECT_EQ(lineArt(6, 3, {1, 1}, {4, 1}), (Art{"......", ".####.", "......"}));
  EXPECT_EQ(lineArt(3, 4, {1, 0}, {1, 2}), (Art{".#.", ".#.", ".#.", "..."}));
  EXPECT_EQ(lineArt(4, 3, {0, 2}, {2, 0}), (Art{"..#.", ".#..", "#..."}));
}

// A slope of 1/3: the exact heights 0, 1/3, 2/3, 1 round to 0, 0, 1, 1.
TEST(PixelLine, TakesTheNearestPixelOfEachColumn) {
  EXPECT_EQ(lineArt(4, 2, {0, 0}, {3, 1}), (Art{"##..", "..##"}));
}

// 11 x 15/22 is 7.5, and 7.499999999999999 in binary.
TEST(PixelLine, RoundsAnExactHalfUpWhereverItLies) {
  for (const double shift : {0.0, 100.0, 3000.0}) {
    Picture picture(3100, 3100);
    strokeLine(picture.rows(), {shift, shift}, {22 + shift, 15 + shift}, 1, kBlackPen);
    const int origin = static_cast<int>(shift);
    EXPECT_EQ(picture.at(origin + 11, origin + 8), 0xFF000000U) << shift;
    EXPECT_EQ(picture.at(origin + 11, origin + 7), kPaper) << shift;
  }
}

TEST(PixelLine, OfEqualEndsIsADotAsWideAsThePen) {
  EXPECT_EQ(lineArt(5, 5, {2, 2}, {2, 2}, 1), (Art{".....", ".....", "..#..", ".....", "....."}));
  EXPECT_EQ(lineArt(5, 5, {2, 2}, {2, 2}, 2), (Art{".....", ".....", "..##.", "..##.", "....."}));
  EXPECT_EQ(lineArt(5, 5, {2, 2}, {2, 2}, 3), (Art{".....", ".###.", ".###.", ".###.", "....."}));
}

TEST(PixelLine, IsAsWideAsThePenWhenUpright) {
  for (int width = 1; width <= 9; ++width) {
    Picture picture(30, 30);
    strokeLine(picture.rows(), {15, -20}, {15, 50}, width, kBlackPen);
    strokeLine(picture.rows(), {-50, 15}, {50, 15}, width, kBlackPen);
    const Art art = picture.art();
    EXPECT_EQ(std::count(art[2].begin(), art[2].end(), '#'), width);
    EXPECT_EQ(std::count_if(art.begin(), art.end(), [](const std::string& row) { return row[2] == '#'; }),
              width);
  }
}

// So that at a ratio of 2 a line on the border is as wide as one within.
TEST(PixelLine, OfAnEvenWidthLiesRightOfAndBelowItsPosition) {
  EXPECT_EQ(lineArt(4, 2, {0, -9}, {0, 9}, 2), (Art{"##..", "##.."}));
  EXPECT_EQ(lineArt(2, 4, {-9, 0}, {9, 0}, 2), (Art{"##", "##", "..", ".."}));
}

// The distance of every pixel from the line, computed one by one, is the reference.
TEST_F(RandomStrokes, WideLineTakesThePixelsNearerThanHalfItsWidth) {
  for (int run = 0; run < 300; ++run) {
    const PixelPoint from = point(0, 40);
    const PixelPoint to = point(0, 40);
    const int width = static_cast<int>(whole(2, 9));
    Picture picture(41, 41);
    strokeLine(picture.rows(), from, to, width, kBlackPen);
    const double shift = width % 2 == 0 ? 0.5 : 0;
    picture.forEach([&](int x, int y, std::uint32_t pixel) {
      const double px = x - from.x - shift;
      const double py = y - from.y - shift;
      const double dx = to.x - from.x;
      const double dy = to.y - from.y;
      const double square = dx * dx + dy * dy;
      const double t = square > 0 ? std::clamp((px * dx + py * dy) / square, 0.0, 1.0) : 0;
      const double distance = std::hypot(px - t * dx, py - t * dy);
      // A pixel exactly on the edge may fall on either side.
      if (std::abs(distance - width / 2.0) > 1e-9) {
        ASSERT_EQ(pixel == 0xFF000000U, distance < width / 2.0)
            << "pixel " << x << ' ' << y << " width " << width << " line " << from.x << ' ' << from.y << ' '
            << to.x << ' ' << to.y << " seed " << seed();
      }
    });
  }
}

// One pixel a column or row, at most half a pixel off the exact line.
TEST_F(RandomStrokes, ThinLineFollowsTheExactLine) {
  for (int run = 0; run < 300; ++run) {
    const PixelPoint from = point(0, 40);
    const PixelPoint to = point(0, 40);
    Picture picture(41, 41);
    strokeLine(picture.rows(), from, to, 1, kBlackPen);
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double longest = std::max(std::abs(dx), std::abs(dy));
    int taken = 0;
    picture.forEach([&](int x, int y, std::uint32_t pixel) {
      if (pixel != 0xFF000000U) return;
      ++taken;
      if (longest > 0) {
        ASSERT_LE(std::abs((x - from.x) * dy - (y - from.y) * dx) / longest, 0.5 + 1e-9) << "seed " << seed();
      }
    });
    ASSERT_EQ(taken, static_cast<int>(longest) + 1);
  }
}

TEST_F(RandomStrokes, LineIsTheSameInBothDirections) {
  for (int run = 0; run < 500; ++run) {
    const PixelPoint a = point(-30, 70);
    const PixelPoint b = point(-30, 70);
    const int width = static_cast<int>(whole(1, 6));
    ASSERT_EQ(lineArt(40, 40, a, b, width), lineArt(40, 40, b, a, width)) << "seed " << seed();
  }
}

// What is outside.

// A picture that holds the whole stroke, and one that shows a part of it.
constexpr int kAll = 400;
constexpr int kPart = 50;
constexpr int kPartAt = 170;

void expectSamePart(Picture& all, Picture& part) {
  part.forEach([&](int x, int y, std::uint32_t pixel) {
    ASSERT_EQ(pixel, all.at(x + kPartAt, y + kPartAt)) << x << ' ' << y << " seed " << seed();
  });
}

PixelPoint inPart(PixelPoint point) { return {point.x - kPartAt, point.y - kPartAt}; }

TEST_F(RandomStrokes, CutLineHasThePixelsOfTheWholeOne) {
  for (int run = 0; run < 400; ++run) {
    const PixelPoint from = point(10, kAll - 10);
    const PixelPoint to = point(10, kAll - 10);
    const int width = static_cast<int>(whole(1, 7));
    Picture all(kAll, kAll);
    Picture part(kPart, kPart);
    const std::size_t guards = part.guards();
    strokeLine(all.rows(), from, to, width, kBlackPen);
    strokeLine(part.rows(), inPart(from), inPart(to), width, kBlackPen);
    expectSamePart(all, part);
    ASSERT_EQ(part.guards(), guards);
  }
}

TEST_F(RandomStrokes, CutCircleHasThePixelsOfTheWholeOne) {
  const PixelPen filling{DrawMode::kCopyPen, kRed};
  for (int run = 0; run < 200; ++run) {
    const PixelPoint centre = point(140, 260);
    const double radius = whole(0, 120);
    const int width = static_cast<int>(whole(1, 7));
    Picture all(kAll, kAll);
    Picture part(kPart, kPart);
    const std::size_t guards = part.guards();
    strokeCircle(all.rows(), centre, radius, width, kBlackPen, filling);
    strokeCircle(part.rows(), inPart(centre), radius, width, kBlackPen, filling);
    expectSamePart(all, part);
    ASSERT_EQ(part.guards(), guards);
  }
}

TEST(PixelLine, OutsideLeavesNothing) {
  const Art empty(5, ".....");
  for (int width = 1; width <= 4; ++width) {
    EXPECT_EQ(lineArt(5, 5, {-9, -9}, {-4, 20}, width), empty);
    EXPECT_EQ(lineArt(5, 5, {9, -9}, {10, 20}, width), empty);
    EXPECT_EQ(lineArt(5, 5, {-9, 9}, {20, 9}, width), empty);
    EXPECT_EQ(lineArt(5, 5, {-9, 4}, {4, -9}, width), empty);
  }
}

TEST(PixelLine, OfAnyFiniteLengthIsDrawnWhereItCrosses) {
  for (const double far : {1e5, 3e9, 1e15, 1e200, std::numeric_limits<double>::max()}) {
    EXPECT_EQ(lineArt(3, 2, {1, -far}, {1, far}), (Art{".#.", ".#."})) << far;
    EXPECT_EQ(lineArt(3, 2, {-far, 1}, {far, 1}), (Art{"...", "###"})) << far;
    EXPECT_EQ(lineArt(3, 2, {1, -far}, {1, far}, 2), (Art{".##", ".##"})) << far;
    EXPECT_EQ(lineArt(3, 2, {-far, 0}, {far, 0}, 2), (Art{"###", "###"})) << far;
  }
  EXPECT_EQ(lineArt(3, 3, {-4e9, -4e9}, {4e9, 4e9}), (Art{"#..", ".#.", "..#"}));
}

TEST(PixelStrokes, OfExtremeNumbersEndAtOnceAndTouchNothingBesideThePicture) {
  constexpr double kMost = std::numeric_limits<double>::max();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::vector<double> numbers{0,      -1,    7,      1e6,       -3e9,       1e18,
                                    -1e300, kMost, -kMost, kInfinity, -kInfinity, std::nan("")};
  Picture picture(40, 30);
  const std::size_t guards = picture.guards();
  const auto start = std::chrono::steady_clock::now();
  for (const double a : numbers)
    for (const double b : numbers)
      for (const double c : numbers)
        for (const double d : numbers)
          for (const int width : {1, 3}) {
            strokeLine(picture.rows(), {a, b}, {c, d}, width, kBlackPen);
            strokeCircle(picture.rows(), {a, b}, c, width, kBlackPen, {DrawMode::kXorPen, kRed});
          }
  // 83,000 strokes; the limit is far above what they take even under a sanitizer.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(picture.guards(), guards);
}

TEST(PixelStrokes, OnAnEmptyPictureDoNothing) {
  strokeLine({}, {0, 0}, {5, 5}, 1, kBlackPen);
  strokeLine({}, {0, 0}, {5, 5}, 3, kBlackPen);
  strokeCircle({}, {0, 0}, 5, 1, kBlackPen, kBlackPen);
}

// Circles.

Art circleArt(PixelPoint centre, double radius, int width) {
  Picture picture(9, 9);
  strokeCircle(picture.rows(), centre, radius, width, kBlackPen, {DrawMode::kCopyPen, kRed});
  return picture.art();
}

TEST(PixelCircle, HasAnOutlineAroundItsFilling) {
  EXPECT_EQ(circleArt({4, 4}, 3, 1), (Art{".........",  //
                                          "...###...",  //
                                          "..#ooo#..",  //
                                          ".#ooooo#.",  //
                                          ".#ooooo#.",  //
                                          ".#ooooo#.",  //
                                          "..#ooo#..",  //
                                          "...###...",  //
                                          "........."}));
}

TEST(PixelCircle, OfNoRadiusIsADot) {
  const Art art = circleArt({4, 4}, 0, 1);
  EXPECT_EQ(art[4], "....#....");
  EXPECT_EQ(art[3], ".........");
}

// Distances computed one by one are the reference.
TEST_F(RandomStrokes, CircleTakesOutlineAndFillingByDistance) {
  for (int run = 0; run < 200; ++run) {
    const PixelPoint centre = point(0, 60);
    const double radius = whole(0, 40);
    const int width = static_cast<int>(whole(1, 6));
    Picture picture(61, 61);
    strokeCircle(picture.rows(), centre, radius, width, kBlackPen, {DrawMode::kCopyPen, kRed});
    const double shift = width % 2 == 0 ? 0.5 : 0;
    picture.forEach([&](int x, int y, std::uint32_t pixel) {
      const double distance = std::hypot(x - centre.x - shift, y - centre.y - shift);
      std::uint32_t expected = kPaper;
      if (distance < radius + width / 2.0) expected = 0xFF000000U;
      if (distance < radius - width / 2.0) expected = 0xFFFF0000U;
      ASSERT_EQ(pixel, expected) << x << ' ' << y << " radius " << radius << " seed " << seed();
    });
  }
}

// Modes.

// Colours are blue-green-red, pixels red-green-blue.
TEST(PixelStrokes, CopyPenLeavesTheColour) {
  Picture picture(1, 1);
  strokeLine(picture.rows(), {0, 0}, {0, 0}, 1, {DrawMode::kCopyPen, 0x112233});
  EXPECT_EQ(picture.at(0, 0), 0xFF332211U);
}

TEST(PixelStrokes, BlacknessIsBlackWhateverTheColour) {
  Picture picture(1, 1);
  strokeLine(picture.rows(), {0, 0}, {0, 0}, 1, {DrawMode::kBlackness, 0x112233});
  EXPECT_EQ(picture.at(0, 0), 0xFF000000U);
}

TEST(PixelStrokes, XorPenShowsTheInvertedColourOnWhiteAndLeavesThePixelOpaque) {
  Picture picture(1, 1);
  strokeLine(picture.rows(), {0, 0}, {0, 0}, 1, {DrawMode::kXorPen, 0x112233 ^ 0xFFFFFF});
  EXPECT_EQ(picture.at(0, 0), 0xFF332211U);
}

TEST(PixelStrokes, BitsAboveTheColourAreNotLookedAt) {
  Picture picture(1, 1);
  strokeLine(picture.rows(), {0, 0}, {0, 0}, 1, {DrawMode::kXorPen, static_cast<Colour>(0xFF000000)});
  EXPECT_EQ(picture.at(0, 0), kPaper);
}

TEST_F(RandomStrokes, XorTwiceRestoresEveryPixel) {
  Picture picture(60, 50);
  picture.fillWithNoise(random);
  const Picture before = picture;
  const PixelPen pen{DrawMode::kXorPen, 0xFF00FF};
  const PixelPen filling{DrawMode::kXorPen, 0x00FFFF};
  for (int run = 0; run < 500; ++run) {
    const PixelPoint from = point(-40, 100);
    const PixelPoint to = run % 10 == 0 ? from : point(-40, 100);
    const double radius = whole(0, 60);
    const int width = static_cast<int>(whole(1, 9));
    strokeLine(picture.rows(), from, to, width, pen);
    strokeCircle(picture.rows(), to, radius, width, pen, filling);
    // In the order of drawing, not the reverse one: strokes that cross must not matter.
    strokeLine(picture.rows(), to, from, width, pen);
    strokeCircle(picture.rows(), to, radius, width, pen, filling);
    ASSERT_EQ(picture, before) << "seed " << seed();
  }
}

// A pixel that a stroke took twice would be left as it was.
TEST_F(RandomStrokes, StrokeTakesEachOfItsPixelsOnce) {
  for (int run = 0; run < 300; ++run) {
    const PixelPoint from = point(-10, 60);
    const PixelPoint to = point(-10, 60);
    const int width = static_cast<int>(whole(1, 7));
    Picture copied(50, 50);
    Picture inverted(50, 50);
    strokeLine(copied.rows(), from, to, width, kBlackPen);
    strokeLine(inverted.rows(), from, to, width, {DrawMode::kXorPen, kWhite});
    ASSERT_EQ(copied, inverted) << "seed " << seed();
  }
}

// The same of a circle: its outline and its filling share none either.
TEST_F(RandomStrokes, CircleTakesEachOfItsPixelsOnce) {
  const PixelPen inverting{DrawMode::kXorPen, kWhite};
  for (int run = 0; run < 300; ++run) {
    const PixelPoint centre = point(-10, 60);
    const double radius = whole(0, 30);
    const int width = static_cast<int>(whole(1, 7));
    Picture copied(50, 50);
    Picture inverted(50, 50);
    strokeCircle(copied.rows(), centre, radius, width, kBlackPen, kBlackPen);
    strokeCircle(inverted.rows(), centre, radius, width, inverting, inverting);
    ASSERT_EQ(copied, inverted) << "seed " << seed();
  }
}

}  // namespace
}  // namespace zel
