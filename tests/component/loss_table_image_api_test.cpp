// renderLossTableImage over the real parts: its numbers against the exported table and the modeled loss, its
// colours against its own scale, read from the picture.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "real_component.h"
#include "zel/loss_table_image.h"
#include "zel/path_export.h"
#include "zel/plot_image.h"

namespace zel {
namespace {

class LossTableImageApiTest : public test::RealComponent {
 protected:
  static LossTableImageRequest request() {
    LossTableImageRequest request;
    request.from = {36.40, -84.35};
    request.to = {36.22, -84.12};
    request.fromHeight = 30;
    request.toHeight = 12;
    request.frequencyMhz = 950;
    return request;
  }
  static LossTableImage drawn(const LossTableImageRequest& request) {
    LossTableImage image = renderLossTableImage(request);
    EXPECT_EQ(image.status, 0) << image.error;
    return image;
  }
  static QImage opened(const LossTableImage& image) {
    return QImage::fromData(reinterpret_cast<const uchar*>(image.png.data()),
                            static_cast<int>(image.png.size()), "PNG")
        .convertToFormat(QImage::Format_RGB32);
  }
  void expectRefused(const LossTableImageRequest& request, const std::string& part) {
    const LossTableImage image = renderLossTableImage(request);
    EXPECT_NE(image.status, 0) << part;
    EXPECT_NE(image.error.find(part), std::string::npos) << image.error;
    EXPECT_TRUE(image.png.empty());
    EXPECT_TRUE(image.lossesDb.empty());
    EXPECT_TRUE(dialogs_->messages.empty());
  }
};

// The exported table holds 15 digits of each loss.
TEST_F(LossTableImageApiTest, HasTheLossesOfTheExportedTable) {
  const LossTableImage image = drawn(request());
  const std::string file = (std::filesystem::temp_directory_path() / "loss_table_image_test.csv").string();
  PathExportRequest wanted;
  static_cast<PathViewRequest&>(wanted) = request();
  wanted.kind = PathExportKind::kLossTable;
  wanted.file = file;
  const PathExport exported = exportPath(wanted);
  ASSERT_EQ(exported.status, 0) << exported.error;
  std::ifstream in(file);
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(in, line);
  for (int confidence = 1; confidence <= 99; ++confidence) {
    ASSERT_TRUE(std::getline(in, line)) << confidence;
    std::istringstream fields(line);
    std::string field;
    std::getline(fields, field, ',');
    ASSERT_EQ(std::stoi(field), confidence);
    for (int reliability = 1; reliability <= 99; ++reliability) {
      ASSERT_TRUE(std::getline(fields, field, ','));
      EXPECT_NEAR(image.lossDb(confidence, reliability), std::stod(field), 1e-12 * std::stod(field));
    }
  }
  std::filesystem::remove(file);
}

TEST_F(LossTableImageApiTest, HasTheModeledLossOfThePlotInItsMiddle) {
  PlotImageRequest plot;
  static_cast<PathViewRequest&>(plot) = request();
  // The window shows two decimals, of levels that are 50 % where none are set.
  EXPECT_NEAR(drawn(request()).lossDb(50, 50), std::stod(renderPlotImage(plot).modeledLoss), 0.006);
}

TEST_F(LossTableImageApiTest, GrowsWithConfidenceAndReliability) {
  const LossTableImage image = drawn(request());
  for (int level = 2; level <= 99; ++level)
    for (int other = 1; other <= 99; ++other) {
      EXPECT_GE(image.lossDb(level, other), image.lossDb(level - 1, other));
      EXPECT_GE(image.lossDb(other, level), image.lossDb(other, level - 1));
    }
  EXPECT_EQ(image.lowestDb, image.lossDb(1, 1));
  EXPECT_EQ(image.highestDb, image.lossDb(99, 99));
  EXPECT_THROW(image.lossDb(0, 1), std::out_of_range);
  EXPECT_THROW(image.lossDb(1, 100), std::out_of_range);
  EXPECT_THROW(image.lossDb(100, 1), std::out_of_range);
}

// As a reader does it: the colour of a cell is looked up in the scale beside it.
TEST_F(LossTableImageApiTest, ShowsLossesThatItsOwnScaleReadsBack) {
  for (const double ratio : {1.0, 2.0}) {
    LossTableImageRequest wanted = request();
    wanted.width = 1000;
    wanted.height = 700;
    wanted.pixelRatio = ratio;
    const LossTableImage image = drawn(wanted);
    const QImage picture = opened(image);
    ASSERT_EQ(picture.size(), QSize(1000, 700) * ratio);
    const auto pixel = [&](double x, double y) {
      return picture.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    };
    const auto readBack = [&](QRgb colour) -> std::optional<double> {
      const PlotImageRectangle& bar = image.colourBar;
      std::optional<double> best;
      // Lines are black or white, on the scale too; letters are grey.
      if (colour == 0xFF000000 || colour == 0xFFFFFFFF) return best;
      int nearest = 12;  // of 3 x 255
      for (double y = bar.y + 0.5; y < bar.y + bar.height; y += 1) {
        const QRgb there = pixel(bar.x + bar.width / 2, y);
        const int apart = std::abs(qRed(there) - qRed(colour)) + std::abs(qGreen(there) - qGreen(colour)) +
                          std::abs(qBlue(there) - qBlue(colour));
        if (apart >= nearest) continue;
        nearest = apart;
        best = image.lowestDb + (bar.y + bar.height - y) / bar.height * (image.highestDb - image.lowestDb);
      }
      return best;
    };
    int read = 0;
    for (int confidence = 1; confidence <= 99; ++confidence)
      for (int reliability = 1; reliability <= 99; reliability += 2) {
        const PlotImageRectangle& cells = image.cells;
        const auto loss = readBack(pixel(cells.x + (reliability - 0.5) / 99 * cells.width,
                                         cells.y + (99.5 - confidence) / 99 * cells.height));
        if (!loss) continue;
        // A ninetieth of the scale: lines across the scale hide up to two of its rows.
        EXPECT_NEAR(*loss, image.lossDb(confidence, reliability), (image.highestDb - image.lowestDb) / 90)
            << confidence << ", " << reliability;
        ++read;
      }
    EXPECT_GT(read, 4000);
  }
}

TEST_F(LossTableImageApiTest, TellsWhatItWasComputedFrom) {
  const LossTableImage image = drawn(request());
  EXPECT_EQ(image.frequencyMhz, 950);
  EXPECT_EQ(image.startHeightM, 30);
  EXPECT_EQ(image.endHeightM, 12);
  EXPECT_EQ(image.model.climate, 5);
  EXPECT_EQ(image.samples, 1001);  // at most 1000 intervals by default
  EXPECT_NEAR(image.distanceKm, 28.733669, 2e-6);
  EXPECT_FALSE(image.terrain.sourceName.empty());
  EXPECT_FALSE(image.notes.empty());
}

TEST_F(LossTableImageApiTest, NeitherKNorTheFresnelLineHasAnInfluence) {
  LossTableImageRequest other = request();
  other.k = 0.7;
  other.fresnelPercent = 100;
  EXPECT_EQ(drawn(other).lossesDb, drawn(request()).lossesDb);
  for (const std::string& note : drawn(request()).notes) {
    EXPECT_EQ(note.find("Fresnel"), std::string::npos) << note;
    EXPECT_EQ(note.find("effective-earth"), std::string::npos) << note;
  }
}

TEST_F(LossTableImageApiTest, IsAlsoThereAsSvg) {
  LossTableImageRequest wanted = request();
  wanted.format = PictureFormat::kSvg;
  wanted.units = PlotUnits::kImperial;
  const LossTableImage image = drawn(wanted);
  EXPECT_TRUE(image.png.empty());
  // 28.733669 km are 17.854 statute miles.
  EXPECT_NE(image.svg.find(">End-of-path loss, 17.854 mi, 950 MHz, Continental Temperate, horizontal "
                           "polarization</text>"),
            std::string::npos)
      << image.svg.substr(0, 2000);
  EXPECT_NE(image.svg.find("from 36.400000, -84.350000, antenna 30 m above ground"), std::string::npos);
  EXPECT_EQ(image.lossesDb, drawn(request()).lossesDb);
}

TEST_F(LossTableImageApiTest, RefusesWhatHasNoMeaningForIt) {
  LossTableImageRequest wanted = request();
  wanted.markersKm = {5};
  expectRefused(wanted, "the loss table is of the whole path");
  wanted = request();
  wanted.expanded = PlotStretch{2, 9};
  expectRefused(wanted, "the loss table is of the whole path");
  wanted = request();
  wanted.width = 299;
  expectRefused(wanted, "give 300 x 240 to 8000 x 8000");
  wanted = request();
  wanted.frequencyMhz = 10;
  expectRefused(wanted, "the frequency of 10 MHz is outside 20 to 20000 MHz");
  wanted = request();
  wanted.to = wanted.from;
  expectRefused(wanted, "");
}

class SvgPlotApiTest : public LossTableImageApiTest {};

TEST_F(SvgPlotApiTest, LiesWhereThePngDoes) {
  PlotImageRequest wanted;
  static_cast<PathViewRequest&>(wanted) = request();
  wanted.markersKm = {5, 12};
  const PlotImage png = renderPlotImage(wanted);
  wanted.format = PictureFormat::kSvg;
  const PlotImage svg = renderPlotImage(wanted);
  ASSERT_EQ(svg.status, 0) << svg.error;
  EXPECT_TRUE(svg.png.empty());
  EXPECT_TRUE(png.svg.empty());
  EXPECT_EQ(svg.deviceWidth, 1000);
  EXPECT_EQ(svg.deviceHeight, 500);
  EXPECT_EQ(svg.start.pixelY, png.start.pixelY);
  EXPECT_EQ(svg.markers.at(1).pixelX, png.markers.at(1).pixelX);
  ASSERT_EQ(svg.labels.size(), png.labels.size());
  for (std::size_t i = 0; i < png.labels.size(); ++i) {
    EXPECT_EQ(svg.labels[i].text, png.labels[i].text);
    EXPECT_EQ(svg.labels[i].rectangle.x, png.labels[i].rectangle.x);
    EXPECT_EQ(svg.labels[i].rectangle.y, png.labels[i].rectangle.y);
    EXPECT_NE(svg.svg.find(">" + png.labels[i].text + "</text>"), std::string::npos);
  }
  // Drawn by mouse clicks that were forgotten since: each marker is there once.
  EXPECT_NE(svg.svg.find("<title>Terrain profile, 28.734 km</title>"), std::string::npos);
}

TEST_F(SvgPlotApiTest, HasNoDevicePixels) {
  PlotImageRequest wanted;
  static_cast<PathViewRequest&>(wanted) = request();
  wanted.format = PictureFormat::kSvg;
  wanted.pixelRatio = 2;
  const PlotImage image = renderPlotImage(wanted);
  EXPECT_NE(image.status, 0);
  EXPECT_NE(image.error.find("an SVG has no device pixels"), std::string::npos) << image.error;
}

}  // namespace
}  // namespace zel
