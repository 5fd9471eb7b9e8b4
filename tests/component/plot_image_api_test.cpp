// renderPlotImage over the real parts: the picture is opened again and held against an independent sampling
// of the terrain, by the geometry that came with it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <algorithm>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "component/desktop/desktop_dialogs.h"
#include "real_component.h"
#include "support/says.h"
#include "zel/path_profile.h"
#include "zel/plot_image.h"
#include "zel/terrain.h"

namespace zel {
namespace {

constexpr QRgb kBlackPixel = 0xFF000000;
constexpr QRgb kRedPixel = 0xFFFF0000;

using test::says;

class PlotImageApiTest : public test::RealComponent {
 protected:
  static PlotImageRequest request() {
    PlotImageRequest request;
    request.from = {36.40, -84.35};
    request.to = {36.22, -84.12};
    request.fromHeight = 30;
    request.toHeight = 12;
    request.frequencyMhz = 950;
    request.k = 1.333;
    request.fresnelPercent = 100;
    return request;
  }
  static PlotImage drawn(const PlotImageRequest& request) {
    PlotImage image = renderPlotImage(request);
    EXPECT_EQ(image.status, 0) << image.error;
    return image;
  }
  static QImage opened(const PlotImage& image) {
    return QImage::fromData(reinterpret_cast<const uchar*>(image.png.data()),
                            static_cast<int>(image.png.size()), "PNG")
        .convertToFormat(QImage::Format_RGB32);
  }
  static double pixelX(const PlotImage& image, double x) {
    return (x - image.scale.left) / (image.scale.right - image.scale.left) * image.rectangle.width;
  }
  static double pixelY(const PlotImage& image, double y) {
    return (y - image.scale.top) / (image.scale.bottom - image.scale.top) * image.rectangle.height;
  }
  // Whether the colour is at a world position, give or take a device pixel.
  static bool has(const PlotImage& image, const QImage& picture, double x, double y, QRgb colour) {
    const int column = static_cast<int>(std::lround(pixelX(image, x) * image.pixelRatio));
    const int row = static_cast<int>(std::lround(pixelY(image, y) * image.pixelRatio));
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        if (picture.valid(column + dx, row + dy) && picture.pixel(column + dx, row + dy) == colour)
          return true;
    return false;
  }
  // The ground of the plot, sampled and curved here once more: 1000 x (L - x) / (2 k R), R = 6371 km, none at
  // the first and the last sample.
  static std::vector<double> ground(const PlotImage& image) {
    const SampledTerrain terrain = sampleTerrain(image.back, image.forward, image.samples, 0, 3);
    EXPECT_EQ(terrain.status, 0) << terrain.error;
    return {terrain.elevations.begin(), terrain.elevations.end()};
  }
  static double rise(const PlotImage& image, int sample) {
    if (sample <= 1 || sample >= image.samples) return 0;
    const double x = sample * image.spacingKm;
    return 1000 * x * (image.extendedKm - x) / (2 * image.k * 6371);
  }
  void expectRefused(const PlotImageRequest& request, const std::string& part) {
    const PlotImage image = renderPlotImage(request);
    EXPECT_NE(image.status, 0) << part;
    EXPECT_NE(image.error.find(part), std::string::npos) << image.error;
    EXPECT_TRUE(image.png.empty());
    EXPECT_TRUE(dialogs_->messages.empty());
  }
};

TEST_F(PlotImageApiTest, HasTheSizeTimesTheRatio) {
  for (const double ratio : {0.5, 1.0, 1.5, 2.0, 4.0}) {
    PlotImageRequest wanted = request();
    wanted.width = 300;
    wanted.height = 200;
    wanted.pixelRatio = ratio;
    const PlotImage image = drawn(wanted);
    const QImage picture = opened(image);
    EXPECT_EQ(picture.width(), static_cast<int>(300 * ratio));
    EXPECT_EQ(picture.height(), static_cast<int>(200 * ratio));
    EXPECT_EQ(image.deviceWidth, picture.width());
    EXPECT_EQ(image.deviceHeight, picture.height());
    EXPECT_EQ(image.rectangle.width, 300);
    EXPECT_EQ(image.rectangle.height, 200);
  }
}

TEST_F(PlotImageApiTest, DrawsTheGroundWhereAnIndependentSamplingHasIt) {
  for (const double ratio : {1.0, 2.0}) {
    PlotImageRequest wanted = request();
    wanted.pixelRatio = ratio;
    const PlotImage image = drawn(wanted);
    const QImage picture = opened(image);
    const std::vector<double> heights = ground(image);
    ASSERT_EQ(image.firstSample, 1);
    ASSERT_EQ(image.lastSample, static_cast<int>(heights.size()));
    for (int i = image.firstSample + 1; i < image.lastSample; ++i)
      EXPECT_TRUE(has(image, picture, i * image.spacingKm,
                      heights[static_cast<std::size_t>(i - 1)] + rise(image, i), kBlackPixel))
          << i;
  }
}

TEST_F(PlotImageApiTest, DrawsTheExpandedGroundASampleFurtherOnAndMarkersOnBothBorders) {
  set("Colors", "cLRMarker", "33023");  // 0x0080FF: blue 0, green 128, red 255
  PlotImageRequest wanted = request();
  wanted.expanded = PlotStretch{12, 4.5};
  const PlotImage image = drawn(wanted);
  EXPECT_TRUE(image.expanded);
  EXPECT_TRUE(says(image.notes, "in the order of the path"));
  EXPECT_NEAR(image.scale.left, 4.5 + image.distanceShiftKm, 1e-5);  // positions are 32-bit floats
  EXPECT_NEAR(image.scale.right, 12 + image.distanceShiftKm, 1e-5);
  const QImage picture = opened(image);
  const std::vector<double> heights = ground(image);
  for (int i = image.firstSample + 1; i < image.lastSample; ++i) {
    const double x = (i + 1) * image.spacingKm;
    if (x <= image.scale.left || x >= image.scale.right) continue;
    EXPECT_TRUE(
        has(image, picture, x, heights[static_cast<std::size_t>(i - 1)] + rise(image, i), kBlackPixel))
        << i;
  }
  ASSERT_EQ(image.markers.size(), 2U);
  EXPECT_EQ(picture.pixel(0, 300), 0xFFFF8000U);
  EXPECT_EQ(picture.pixel(picture.width() - 1, 300), 0xFFFF8000U);
}

TEST_F(PlotImageApiTest, DrawsTheLineOfSightInItsColour) {
  set("Colors", "cLOS", "16711680");  // blue
  const PlotImage image = drawn(request());
  const QImage picture = opened(image);
  int seen = 0;
  constexpr int kSteps = 100;
  for (int step = 1; step < kSteps; ++step) {
    const double part = static_cast<double>(step) / kSteps;
    seen += has(image, picture, image.start.x + part * (image.end.x - image.start.x),
                image.start.topM + part * (image.end.topM - image.start.topM), 0xFF0000FF)
                ? 1
                : 0;
  }
  EXPECT_GT(seen, 90);  // the ground covers some
  EXPECT_EQ(image.start.heightM, 30);
  EXPECT_EQ(image.end.heightM, 12);
  EXPECT_NEAR(image.start.x, image.distanceShiftKm, 1e-12);
  EXPECT_NEAR(image.end.x - image.start.x, image.distanceKm, 1e-9);
  EXPECT_NEAR(image.start.pixelX, pixelX(image, image.start.x), 1e-9);
  EXPECT_NEAR(image.start.pixelY, pixelY(image, image.start.topM), 1e-9);
}

TEST_F(PlotImageApiTest, PlacesMarkersAtTheirDistances) {
  set("Colors", "cLRMarker", "33023");
  set("Profile", "Prf_Rng", "0");  // no range line covers one
  PlotImageRequest wanted = request();
  wanted.markersKm = {20.25, 7.5};
  const PlotImage image = drawn(wanted);
  const QImage picture = opened(image);
  ASSERT_EQ(image.markers.size(), 2U);
  EXPECT_FALSE(image.markers[0].right);
  EXPECT_TRUE(image.markers[1].right);
  EXPECT_NEAR(image.markers[0].distanceKm, 7.5, 1e-5);
  EXPECT_NEAR(image.markers[1].distanceKm, 20.25, 1e-5);
  for (const PlotImageMarker& marker : image.markers) {
    EXPECT_NEAR(marker.pixelX, pixelX(image, marker.x), 1e-9);
    EXPECT_EQ(picture.pixel(static_cast<int>(std::floor(marker.pixelX + 0.5)), 40), 0xFFFF8000U);
    const SampledTerrain here = sampleTerrain(wanted.from, marker.position, 2, 0, 3);
    ASSERT_EQ(here.status, 0);
    EXPECT_NEAR(marker.groundM, static_cast<double>(here.elevations.back()),
                15);  // the pointer reads a sample beside
  }
  wanted.markersKm = {0};
  EXPECT_EQ(drawn(wanted).markers.size(), 1U);
  wanted.markersKm = {28.734};  // the path's length as it is told, to the metre
  EXPECT_NEAR(drawn(wanted).markers.at(0).distanceKm, image.distanceKm, 1e-5);
}

TEST_F(PlotImageApiTest, NoTwoLabelsOverlapAtTheDefaultCounts) {
  for (const int width : {300, 400, 621, 1000})
    for (const double ratio : {1.0, 2.0})
      for (const PlotUnits units : {PlotUnits::kMetric, PlotUnits::kImperial})
        for (const double height : {1.0, 40.0, 90.0, 200.0, 330.0, 600.0}) {
          PlotImageRequest wanted = request();
          wanted.width = width;
          wanted.height = width / 2;
          wanted.pixelRatio = ratio;
          wanted.units = units;
          wanted.toHeight = 12;
          wanted.fromHeight = height;
          const PlotImage image = drawn(wanted);
          EXPECT_EQ(image.units, units);
          for (std::size_t a = 0; a < image.labels.size(); ++a)
            for (std::size_t b = 0; b < a; ++b) {
              const PlotImageRectangle& one = image.labels[a].rectangle;
              const PlotImageRectangle& two = image.labels[b].rectangle;
              EXPECT_FALSE(one.x < two.x + two.width - 1e-6 && two.x < one.x + one.width - 1e-6 &&
                           one.y < two.y + two.height - 1e-6 && two.y < one.y + one.height - 1e-6)
                  << width << ' ' << ratio << ' ' << height << ": " << image.labels[a].text << " and "
                  << image.labels[b].text;
            }
        }
}

TEST_F(PlotImageApiTest, DrawsVoidsInRedAtSeaLevelAndSaysSo) {
  useTile([](int, int column) { return column > 900 && column < 950 ? -32768 : 300; });
  const PlotImage image = drawn(request());
  EXPECT_TRUE(says(image.notes, "samples have no height; they are drawn in red, at sea level"));
  const QImage picture = opened(image);
  const std::vector<double> heights = ground(image);
  int voids = 0;
  for (int i = 2; i < image.samples; ++i) {
    if (heights[static_cast<std::size_t>(i - 1)] != static_cast<double>(kTerrainVoid)) continue;
    ++voids;
    EXPECT_TRUE(has(image, picture, i * image.spacingKm, rise(image, i), kRedPixel)) << i;
  }
  EXPECT_GT(voids, 50);
}

TEST_F(PlotImageApiTest, RefusesImpossibleHeightsInsteadOfHalting) {
  useTile([](int, int column) { return column == 900 ? -200 : 300; });
  expectRefused(request(), "choose another path or other terrain");
}

TEST_F(PlotImageApiTest, RefusesWhatCannotBeDrawnInPlainWords) {
  PlotImageRequest wanted = request();
  wanted.to = wanted.from;
  expectRefused(wanted, "at least 0.2 km");
  wanted = request();
  wanted.from.latitude = 91;
  expectRefused(wanted, "the start is not on the earth");
  wanted = request();
  wanted.to = {10, 10};
  expectRefused(wanted, "");
  wanted = request();
  wanted.frequencyMhz = 0;
  expectRefused(wanted, "frequency");
  wanted = request();
  wanted.k = std::numeric_limits<double>::quiet_NaN();
  expectRefused(wanted, "effective-earth factor");
  for (const double percent : {-1.0, 101.0, 60.5, std::numeric_limits<double>::quiet_NaN()}) {
    wanted = request();
    wanted.fresnelPercent = percent;
    expectRefused(wanted, "Fresnel zone is not a whole number");
  }
  for (const auto& [width, height] : {std::pair{99, 500}, {8001, 500}, {500, 79}, {500, 8001}}) {
    wanted = request();
    wanted.width = width;
    wanted.height = height;
    expectRefused(wanted, "give 100 x 80 to 8000 x 8000");
  }
  for (const double ratio : {0.49, 4.01, std::numeric_limits<double>::quiet_NaN()}) {
    wanted = request();
    wanted.pixelRatio = ratio;
    expectRefused(wanted, "0.5 to 4");
  }
  wanted = request();
  wanted.width = 8000;
  wanted.pixelRatio = 4;
  expectRefused(wanted, "16000");
}

TEST_F(PlotImageApiTest, RefusesMarkersThatThePathHasNoPlaceFor) {
  PlotImageRequest wanted = request();
  for (const double km : {-0.01, 28.75, 1e300, std::numeric_limits<double>::infinity()}) {
    wanted.markersKm = {5, km};
    expectRefused(wanted, "is not on the path, which is 28.734 km long");
  }
  wanted.markersKm = {5, 5};
  expectRefused(wanted, "same place");
  wanted.markersKm = {1, 2, 3};
  expectRefused(wanted, "room for two");
  wanted.markersKm = {1, 2};
  wanted.expanded = PlotStretch{1, 2};
  expectRefused(wanted, "not both");
  wanted.markersKm.clear();
  wanted.expanded = PlotStretch{5, 5.0999};
  expectRefused(wanted, "more than 0.1 km");
  wanted.expanded = PlotStretch{5, 40};
  expectRefused(wanted, "is not on the path");
}

TEST_F(PlotImageApiTest, NamesTheSettingThatDoesNotFit) {
  set("Profile", "Prf_Rng", "99999");
  expectRefused(request(), "Profile/Prf_Rng");
}

TEST_F(PlotImageApiTest, LeavesTheHostsStateAsItWas) {
  component_.state().station1 = {1, 2};
  component_.state().bProfileFailed = true;
  component_.state().rangeLines = 77;
  drawn(request());
  EXPECT_EQ(component_.state().station1.latitude, 1);
  EXPECT_TRUE(component_.state().bProfileFailed);
  EXPECT_EQ(component_.state().rangeLines, 77);
  EXPECT_TRUE(dialogs_->messages.empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(PlotImageApiTest, TellsTheLossesOfThePath) {
  const PlotImage image = drawn(request());
  const PathProfile profile = computePathProfile(
      {request().from, request().to, request().fromHeight, request().toHeight, request().k, 950.0});
  EXPECT_NEAR(std::stod(image.freeSpaceLoss), profile.freeSpaceDb, 0.005);  // two decimals are shown
  EXPECT_NEAR(image.distanceKm, profile.distanceKm, 1e-9);
  EXPECT_GT(std::stod(image.modeledLoss), profile.freeSpaceDb);
  PlotImageRequest low = request();
  low.frequencyMhz = 10;
  EXPECT_EQ(drawn(low).modeledLoss, "") << "the model is not asked below 20 MHz, and a 0 shows no digit";
}

TEST_F(PlotImageApiTest, MakesAnApplicationThatNoBoxWaitsIn) {
  drawn(request());
  ASSERT_NE(qobject_cast<QApplication*>(QCoreApplication::instance()), nullptr);
  EXPECT_FALSE(canShowWidgets());
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

}  // namespace
}  // namespace zel
