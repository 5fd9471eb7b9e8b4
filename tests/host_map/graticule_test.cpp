#include "map/graticule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace zel::host {
namespace {

constexpr AngleFormat kSexagesimal = AngleFormat::kDegreesMinutesSeconds;
constexpr AngleFormat kDecimal = AngleFormat::kDecimalDegrees;

MapFrame frameAt(double latitude, double longitude, double level, double width = 1280, double height = 800) {
  MapFrame frame(width, height);
  frame.setCentre({latitude, longitude});
  frame.setLevel(level);
  return frame;
}

std::vector<std::string> texts(const std::vector<GraticuleLine>& lines, bool meridians) {
  std::vector<std::string> found;
  for (const GraticuleLine& line : lines)
    if (line.meridian == meridians) found.push_back(line.text);
  return found;
}

// Degrees that a text of either format says.
double degreesIn(const std::string& text) {
  double degrees = 0, unit = 1;
  std::size_t start = 0;
  const std::size_t end = text.size() - 2;
  while (start < end) {
    const std::size_t dash = std::min(text.find('-', start), end);
    degrees += std::stod(text.substr(start, dash - start)) * unit;
    unit /= 60;
    start = dash + 1;
  }
  return text.back() == 'W' || text.back() == 'S' ? -degrees : degrees;
}

TEST(Graticule, LinesAreWrittenWithAsManyPartsAsTheirStepNeeds) {
  using Texts = std::vector<std::string>;
  // 100 pixels are 5.4 minutes of longitude there, and 4.4 of latitude: 10 and 5 minutes.
  const std::vector<GraticuleLine> near = graticule(frameAt(36.3, -84.2, 10.7, 400, 300), kSexagesimal);
  EXPECT_EQ(texts(near, true), (Texts{"84-20 W", "84-10 W"}));
  EXPECT_EQ(texts(near, false), (Texts{"36-20 N", "36-15 N"}));
  EXPECT_EQ(texts(graticule(frameAt(36.3, -84.2, 10.7, 400, 300), kDecimal), true),
            (Texts{"84.3 W", "84.2 W", "84.1 W"}));
  EXPECT_EQ(texts(graticule(frameAt(0, 0, 17.2, 500, 10), kSexagesimal), true),
            (Texts{"0-00-05 W", "0-00-00 E", "0-00-05 E"}));
  EXPECT_EQ(texts(graticule(frameAt(0, 0, 5, 500, 10), kSexagesimal), true),
            (Texts{"10 W", "5 W", "0 E", "5 E", "10 E"}));
  EXPECT_EQ(texts(graticule(frameAt(0, 0, 17.2, 500, 10), kDecimal), true),
            (Texts{"0.002 W", "0.001 W", "0.000 E", "0.001 E", "0.002 E"}));
}

TEST(Graticule, StepsShorterThanASecondShowItsTenths) {
  const std::vector<std::string> parallels =
      texts(graticule(frameAt(80, 10, 19.2, 400, 1500), kSexagesimal), false);
  ASSERT_GE(parallels.size(), 2U);
  EXPECT_NE(parallels[0].find('.'), std::string::npos);
}

TEST(Graticule, ZeroHasTheLetterOfThePositiveSideAndNoSign) {
  for (const AngleFormat format : {kSexagesimal, kDecimal}) {
    const std::vector<GraticuleLine> lines = graticule(frameAt(0, 0, 3), format);
    for (const GraticuleLine& line : lines)
      if (line.degrees == 0) {
        EXPECT_EQ(line.text, line.meridian ? "0 E" : "0 N");
        EXPECT_FALSE(std::signbit(line.degrees));
      }
  }
}

TEST(Graticule, MeridiansGoOnOver180) {
  const std::vector<GraticuleLine> lines = graticule(frameAt(0, 180, 5, 600, 10), kSexagesimal);
  EXPECT_EQ(texts(lines, true), (std::vector<std::string>{"170 E", "175 E", "180 W", "175 W", "170 W"}));
  for (const GraticuleLine& line : lines) {
    if (!line.meridian) continue;
    EXPECT_GE(line.degrees, -180);
    EXPECT_LT(line.degrees, 180);
  }
}

TEST(Graticule, WorldNarrowerThanTheFrameHasEachMeridianOnce) {
  for (const double longitude : {0.0, 90.0, 17.0, -180.0}) {
    const std::vector<GraticuleLine> lines = graticule(frameAt(0, longitude, 1), kSexagesimal);
    const std::vector<std::string> meridians = texts(lines, true);
    EXPECT_EQ(meridians.size(), 4U);
    EXPECT_EQ(std::set<std::string>(meridians.begin(), meridians.end()).size(), meridians.size());
    for (const GraticuleLine& line : lines)
      if (line.meridian) {
        EXPECT_LE(std::abs(line.pixel - 640), 256 + 1e-6);
      }
  }
}

void expectSound(const MapFrame& frame, AngleFormat format) {
  const std::vector<GraticuleLine> lines = graticule(frame, format);
  std::set<std::string> seen;
  const GraticuleLine* before = nullptr;
  for (const GraticuleLine& line : lines) {
    EXPECT_TRUE(seen.insert(line.text).second) << line.text;
    // What the text says is what the line is, to the tenth of a second or the fifth decimal that it can show.
    EXPECT_NEAR(degreesIn(line.text), line.degrees, 1e-9) << line.text;
    const MapPoint pixel = frame.pixelOf(line.meridian ? Position{frame.centre().latitude, line.degrees}
                                                       : Position{line.degrees, 0});
    const double offset = line.pixel - (line.meridian ? pixel.x : pixel.y);
    EXPECT_NEAR(std::remainder(offset, frame.worldPixels()), 0, 1e-6) << line.text;
    EXPECT_GE(line.pixel, -1e-6);
    EXPECT_LE(line.pixel, (line.meridian ? frame.width() : frame.height()) + 1e-6);
    if (before != nullptr && before->meridian == line.meridian) {
      const double gap = line.pixel - before->pixel;
      // The coarsest step, 90 degrees, may be nearer; between 10 and 30 degrees there is no other.
      EXPECT_GE(gap, std::min(100.0, frame.worldPixels() / 4) - 1e-6) << line.text;
      if (line.meridian) {
        EXPECT_LE(gap, 300 + 1e-6) << line.text;
      }
    } else if (before != nullptr) {
      EXPECT_TRUE(before->meridian) << "meridians first";
    }
    before = &line;
  }
}

TEST(Graticule, LinesAreRoundUniqueInOrderAndFarEnoughApartAtEveryScaleAndPlace) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> latitude(-86, 86), longitude(-180, 180), level(0, 19.3),
      side(1, 2000);
  for (int i = 0; i < 400; ++i) {
    const MapFrame frame =
        frameAt(latitude(random), longitude(random), level(random), side(random), side(random));
    SCOPED_TRACE(testing::Message() << frame.centre().latitude << ' ' << frame.centre().longitude << ' '
                                    << frame.level() << ' ' << frame.width() << ' ' << frame.height());
    expectSound(frame, kSexagesimal);
    expectSound(frame, kDecimal);
  }
}

TEST(Graticule, RowsGrowApartTowardsThePoles) {
  std::vector<double> pixels;
  for (const GraticuleLine& line : graticule(frameAt(60, 0, 4), kSexagesimal))
    if (!line.meridian) pixels.push_back(line.pixel);
  ASSERT_GE(pixels.size(), 3U);
  for (std::size_t i = 0; i + 2 < pixels.size(); ++i)
    EXPECT_GT(pixels[i + 1] - pixels[i], pixels[i + 2] - pixels[i + 1]);
}

TEST(ScaleBar, IsTheLongestRoundLengthThatFits) {
  MapFrame frame(1280, 800);  // at the equator
  struct Case {
    double metresPerPixel;
    bool imperial;
    const char* text;
    double metres;
  };
  for (const Case& one : {Case{30, false, "5 km", 5000},
                          {6, false, "1 km", 1000},
                          {4.9, false, "500 m", 500},
                          {0.25, false, "50 m", 50},
                          {30, true, "2 mi", 2 * 1609.344},
                          {8, true, "5,000 ft", 5000 * 0.3048},
                          {9, true, "1 mi", 1609.344},
                          {2, true, "1,000 ft", 1000 * 0.3048},
                          {10000, false, "2,000 km", 2e6}}) {
    frame.setMetresPerPixel(one.metresPerPixel);
    const ScaleBar bar = scaleBar(frame, one.imperial, 200.01);
    EXPECT_EQ(bar.text, one.text) << one.metresPerPixel;
    EXPECT_NEAR(bar.metres, one.metres, 1e-9);
    EXPECT_NEAR(bar.pixels, one.metres / one.metresPerPixel, 1e-6) << one.text;
    EXPECT_LE(bar.pixels, 200.01);
  }
}

TEST(ScaleBar, IsTrueOnTheEllipsoidAtTheCentresLatitude) {
  // Tables of the ellipsoid give 55.800 km for a degree of longitude at 60 degrees; the sphere of the map
  // says 55.660 km.
  MapFrame frame = frameAt(60, 10, 9);
  const ScaleBar bar = scaleBar(frame, false, 300);
  const double degrees = bar.pixels / frame.worldPixels() * 360;
  EXPECT_NEAR(bar.metres / degrees, 55800, 1);
}

TEST(ScaleBar, HasNoLengthWhereThereIsNoRoom) {
  const MapFrame frame(1280, 800);
  for (const double room : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
    const ScaleBar bar = scaleBar(frame, false, room);
    EXPECT_EQ(bar.pixels, 0) << room;
    EXPECT_TRUE(bar.text.empty());
  }
  MapFrame near = frame;
  near.setMetresPerPixel(0.25);
  EXPECT_EQ(scaleBar(near, false, 3).text, "0.5 m");
}

TEST(ScaleBar, IsNeverLongerThanTheFrameOrTheWorld) {
  EXPECT_LE(scaleBar(frameAt(0, 0, 0), false, 1e6).pixels, 256);
  EXPECT_LE(scaleBar(frameAt(0, 0, 9, 60, 60), true, 1e6).pixels, 60);
}

}  // namespace
}  // namespace zel::host
