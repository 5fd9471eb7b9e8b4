#include "canvas/qt/pdf_document.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "foundation/runtime_error.h"
#include "support/offscreen.h"
#include "support/pdf_tools.h"

namespace zel {
namespace {

constexpr QSizeF kA4(11906, 16838);  // twips
constexpr QSizeF kLetter(12240, 15840);
const PrintedDocument kDocument{"Terrain Profile Königsstuhl", "Terrain Profiler 0.1.0"};

// Lines of text from the top of the page on.
void print(PrintedPage& page, const std::vector<std::string>& lines) {
  VectorCanvas& sheet = page.sheet();
  sheet.setScale(0, page.size().height(), page.size().width(), 0);
  double y = page.size().height() - 700;
  for (const std::string& line : lines) {
    sheet.setTextPosition(1400, y);
    sheet.print(line);
    y -= sheet.textHeight();
  }
}

std::string pdfOf(QSizeF size, const std::vector<std::string>& lines, int copies = 1) {
  PrintedPage page(size.width(), size.height());
  print(page, lines);
  return pdfDocument(page, copies, kDocument);
}

// A hilly ground in a box of the usual shape.
void drawGround(PrintedPage& page, int segments) {
  page.sheet().setScale(0, page.size().height(), page.size().width(), 0);
  VectorCanvas& box = page.box(1191, 12000, 10716, 8825);
  box.setScale(0, 1000, segments, 0);
  const auto height = [](int i) { return 400 + 200 * std::sin(i * 0.005) + 9 * std::sin(i * 0.9); };
  for (int i = 0; i < segments; ++i) box.line(i, height(i), i + 1, height(i + 1), kBlack);
}

TEST(PdfDocumentWithoutApplication, IsNotMade) {
  const PrintedPage page(kA4.width(), kA4.height());
  EXPECT_THROW(pdfDocument(page, 1, kDocument), RuntimeError);
}

class PdfDocumentTest : public test::OffscreenTest<QGuiApplication> {
 protected:
  void SetUp() override {
    OffscreenTest::SetUp();
    if (const std::string missing = test::missingPdfTool(); !missing.empty()) GTEST_SKIP() << missing;
  }
};

TEST_F(PdfDocumentTest, HasTheSizeOfTheSheet) {
  const std::vector<std::pair<QSizeF, std::string>> sizes{{kA4, "595 x 842 pts (A4)"},
                                                          {kA4.transposed(), "842 x 595 pts (A4)"},
                                                          {kLetter, "612 x 792 pts (letter)"},
                                                          {kLetter.transposed(), "792 x 612 pts (letter)"},
                                                          {QSizeF(10000, 10000), "500 x 500 pts"}};
  for (const auto& [size, text] : sizes) {
    const test::PdfFile file(pdfOf(size, {"Date: 2026-11-21 14:03:09"}));
    EXPECT_EQ(file.info("Page size"), text);
    EXPECT_EQ(file.info("Page rot"), "0");
  }
}

TEST_F(PdfDocumentTest, HasAPageForEachCopy) {
  for (const int copies : {1, 3}) {
    const test::PdfFile file(pdfOf(kA4, {"Range: 24.3 km"}, copies));
    EXPECT_EQ(file.info("Pages"), std::to_string(copies));
    for (int page = 1; page <= copies; ++page)
      EXPECT_NE(file.text(page).find("Range: 24.3 km"), std::string::npos) << page;
    EXPECT_EQ(file.picture(50, copies), file.picture(50, 1));
  }
}

TEST_F(PdfDocumentTest, TellsItsTitleAndWhatMadeIt) {
  const test::PdfFile file(pdfOf(kA4, {"Range"}));
  EXPECT_EQ(file.info("Title"), kDocument.title);
  EXPECT_EQ(file.info("Creator"), kDocument.creator);
}

TEST_F(PdfDocumentTest, RefusesWhatMakesNoPage) {
  const PrintedPage page(kA4.width(), kA4.height());
  const PrintedPage empty(0, 100);
  const auto numberOf = [](const PrintedPage& sheet, int copies) {
    try {
      pdfDocument(sheet, copies, kDocument);
      return 0;
    } catch (const RuntimeError& error) {
      return error.number();
    }
  };
  EXPECT_EQ(numberOf(page, 0), PrintService::kPrinterFailed);
  EXPECT_EQ(numberOf(page, -1), PrintService::kPrinterFailed);
  EXPECT_EQ(numberOf(empty, 1), PrintService::kPrinterFailed);
  EXPECT_EQ(numberOf(page, 1), 0);
}

TEST_F(PdfDocumentTest, TextsAreWholeLinesInTheirOrder) {
  const std::vector<std::string> lines{
      "Date: 2026-11-21 14:03:09",
      "Terrain Profile from 36-32-11.4 N / 112-08-12.3 W to 36-12-11.4 N / 112-03-12.3 W",
      "Description: fine fluffy offices, WAVE To Yacht, affinity", "% Fresnel: 60"};
  const test::PdfFile file(pdfOf(kA4, lines));
  for (const bool layout : {true, false}) {
    std::vector<std::string> found;
    for (std::string line : test::linesOf(file.text(1, layout))) {
      line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
      if (!line.empty()) found.push_back(line);
    }
    EXPECT_EQ(found, lines) << layout;
  }
}

// Fonts that have ligatures would write "fi" as one sign, which a search for the word does not find.
TEST_F(PdfDocumentTest, LettersStayLettersInFontsWithLigatures) {
  PrintedPage page(kA4.width(), kA4.height());
  QFont font = page.sheet().font();
  font.setFamilies({pinnedFamily()});
  page.sheet().setFont(font);
  print(page, {"Profile of affinity, fluffy offices"});
  const std::string bytes = pdfDocument(page, 1, kDocument);
  EXPECT_NE(test::PdfFile(bytes).text().find("Profile of affinity, fluffy offices"), std::string::npos);
}

TEST_F(PdfDocumentTest, TwoTextsOnOneHeightAreTwoColumns) {
  PrintedPage page(kA4.width(), kA4.height());
  print(page, {"Start Point Latitude: 36-32-11.4 N"});
  page.sheet().setTextPosition(7216, kA4.height() - 700);
  page.sheet().print("End Point Latitude: 36-12-11.4 N");
  const std::string text = test::PdfFile(pdfDocument(page, 1, kDocument)).text();
  const std::size_t right = text.find("End Point Latitude: 36-12-11.4 N");
  ASSERT_NE(right, std::string::npos);
  EXPECT_EQ(text.find('\n'), right + std::string("End Point Latitude: 36-12-11.4 N").size());
  EXPECT_NE(text.find("Start Point Latitude: 36-32-11.4 N   "), std::string::npos);
}

TEST_F(PdfDocumentTest, FontsAreEmbeddedAndOnlyTheirLettersThatAreUsed) {
  PrintedPage page(kA4.width(), kA4.height());
  print(page, {"Date: 2026-11-21 14:03:09", "Profile"});
  const std::string bytes = pdfDocument(page, 1, kDocument);
  const test::PdfFile file(bytes);
  // Columns from the right: object, generation, has a character map, is a subset by name, is embedded.
  ASSERT_EQ(file.fonts().size(), 1U);
  EXPECT_NE(file.fonts()[0].find("TrueType"), std::string::npos) << file.fonts()[0];
  EXPECT_TRUE(file.fonts()[0].find(" yes ") != std::string::npos) << file.fonts()[0];
  EXPECT_LT(bytes.size(), 20000U);  // the whole font has some hundred thousand
}

TEST_F(PdfDocumentTest, TextsOfAnyScriptDoNoHarm) {
  const std::vector<std::string> lines{"Königsstuhl – Straße, Ελλάδα, Москва",
                                       "\xF0\x9F\x97\xBB \xE5\xAF\x8C\xE5\xA3\xAB \xD8\xAC\xD8\xA8\xD9\x84",
                                       "\xFF\xFE broken \xC3",
                                       "tab\tand\nline end \x01",
                                       std::string(3000, 'W'),
                                       "last"};
  const test::PdfFile file(pdfOf(kA4, lines));
  const std::string text = file.text();
  EXPECT_NE(text.find(lines[0]), std::string::npos) << text;
  EXPECT_NE(text.find("broken"), std::string::npos) << text;
  EXPECT_NE(text.find("last"), std::string::npos) << text;
  EXPECT_EQ(file.info("Pages"), "1");
}

TEST_F(PdfDocumentTest, APlotIsVectorsThatStayWithinItsBox) {
  PrintedPage page(kA4.width(), kA4.height());
  drawGround(page, 5500);
  VectorCanvas& box = page.box(1191, 7000, 10716, 3825);
  box.setScale(0, 100, 100, 0);
  box.setFillColour(0x00FFFF);
  box.setDrawWidth(9);
  box.line(-1e6, -1e6, 1e6, 1e6, kRed);
  box.circle(100, 100, 20);
  const std::string bytes = pdfDocument(page, 1, kDocument);
  const test::PdfFile file(bytes);
  EXPECT_TRUE(file.images().empty());
  EXPECT_LT(bytes.size(), 60000U);
  const QImage image = file.picture(144);
  // The boxes' rectangles in tenths of an inch's twips, and a pixel for edges between two.
  const QRect ground(118, 482, 955, 320);
  const QRect other(118, 982, 955, 320);
  bool inkInGround = false;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const bool isWhite = image.pixel(x, y) == 0xFFFFFFFF;
      inkInGround = inkInGround || (!isWhite && ground.contains(x, y));
      if (!ground.contains(x, y) && !other.contains(x, y)) {
        ASSERT_TRUE(isWhite) << x << "," << y;
      }
    }
  EXPECT_TRUE(inkInGround);
  EXPECT_EQ(image.pixelColor(1060, 995), QColor(Qt::yellow));
}

}  // namespace
}  // namespace zel
