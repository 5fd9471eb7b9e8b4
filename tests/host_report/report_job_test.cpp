// Whole reports, read back by other programs.
#include "report/report_job.h"

#include <algorithm>
#include <set>

#include "report_fixture.h"
#include "support/pdf_tools.h"

namespace zel::host {
namespace {

class ReportJobTest : public ReportTest {
 protected:
  void SetUp() override {
    if (const std::string missing = test::missingPdfTool(); !missing.empty()) GTEST_SKIP() << missing;
    ReportTest::SetUp();
  }
  static bool has(const std::string& text, const std::string& words) {
    return text.find(words) != std::string::npos;
  }
};

TEST_F(ReportJobTest, HasATableAndAPageForEachLink) {
  const Made made = make(request());
  ASSERT_TRUE(made.report.finished) << made.report.error;
  EXPECT_EQ(made.report.pages, 2);
  EXPECT_EQ(made.report.rows.at(0).page, 2);
  const test::PdfFile pdf(made.bytes);
  EXPECT_EQ(pdf.info("Pages"), "2");
  EXPECT_EQ(pdf.info("Title"), "Valley network");
  EXPECT_EQ(pdf.info("Creator"), "Terrain Profiler 9.8.7");
  EXPECT_TRUE(has(pdf.info("Page size"), "(A4)")) << pdf.info("Page size");
  const std::string table = pdf.text(1);
  for (const char* words : {"Valley network", "1 link: 1 blocked", "Page 1 of 2", "2026-11-21 20:40",
                            "Terrain Profiler 9.8.7", "North ridge", "South hill", "28.73", "blocked"})
    EXPECT_TRUE(has(table, words)) << words << " in\n" << table;
  const std::string page = pdf.text(2);
  for (const char* words : {"North ridge - South hill", "36-24-00.0 N, 84-21-00.0 W", "546 m above sea level",
                            "121.1 dB", "climate 5", "north is up", "Profile: ground over the curved earth",
                            "25.0",  // a label of the plot, which is text
                            "the plot follows samples of its own", "Page 2 of 2"})
    EXPECT_TRUE(has(page, words)) << words << " in\n" << page;
  for (const std::string& font : pdf.fonts()) EXPECT_TRUE(has(font, " yes ")) << font;  // embedded
}

TEST_F(ReportJobTest, TheMapIsAPictureOf216DotsAnInchWithTheLinkInItsVerdictsColours) {
  const Made made = make(request());
  const test::PdfFile pdf(made.bytes);
  const std::vector<std::string> images = pdf.images();
  ASSERT_EQ(images.size(), 1U);
  EXPECT_TRUE(has(images[0], " 216   216 ") || has(images[0], " 217 ") || has(images[0], " 215 "))
      << images[0];
  // The red of a blocked stretch, the tint around it, and the profile's blue line of sight.
  const QImage picture = pdf.picture(150, 2);
  const auto count = [&picture](const QColor& wanted, int slack) {
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) {
        const QColor at = picture.pixelColor(x, y);
        found += std::abs(at.red() - wanted.red()) <= slack &&
                 std::abs(at.green() - wanted.green()) <= slack &&
                 std::abs(at.blue() - wanted.blue()) <= slack;
      }
    return found;
  };
  EXPECT_GT(count(QColor(0xc8, 0x1e, 0x1e), 24), 100);
  EXPECT_GT(count(QColor(0xff, 0x9a, 0x8c), 24), 100);
  EXPECT_GT(count(Qt::blue, 60), 50);
}

TEST_F(ReportJobTest, ALinkThatCannotBeComputedHasAPageThatSaysWhyAndTheRestGoesOn) {
  plan_.stations[4] = {"Beside", {36.4001, -84.35}, 30};
  plan_.links = {{1, {2, 3, std::nullopt}}, {2, {1, 4, std::nullopt}}, {3, {1, 2, std::nullopt}}};
  const Made made = make(request());
  ASSERT_TRUE(made.report.finished) << made.report.error;
  EXPECT_TRUE(made.report.rows[0].noTerrain);
  EXPECT_FALSE(made.report.rows[1].error.empty());
  EXPECT_TRUE(made.report.rows[2].error.empty());
  const test::PdfFile pdf(made.bytes);
  EXPECT_TRUE(has(pdf.text(1), "3 links: 1 blocked, 2 without figures"));
  EXPECT_TRUE(has(pdf.text(2), "No figures: Sample"));
  EXPECT_TRUE(has(pdf.text(3), "a profile needs at least 0.2 km"));
  EXPECT_TRUE(has(pdf.text(4), "121.1 dB"));
  EXPECT_EQ(pdf.images().size(), 3U);  // each has its map
}

TEST_F(ReportJobTest, NamesAreShownAsTheyAreWhateverTheyLookLike) {
  plan_.stations[1].name = "<b>Mill</b> & Sons";
  plan_.stations[2].name = std::string(200, 'W');
  const Made made = make(request());
  const test::PdfFile pdf(made.bytes);
  EXPECT_TRUE(has(pdf.text(2), "<b>Mill</b> & Sons"));
  EXPECT_TRUE(has(pdf.text(1), "<b>Mill</b> & Sons"));
  EXPECT_TRUE(has(pdf.text(1), "WW\xE2\x80\xA6"));  // cut, and told so
}

TEST_F(ReportJobTest, ATableThatIsLongerThanAPageGoesOnOnTheNext) {
  plan_.links.clear();
  plan_.stations[4] = {"Beside", {36.4001, -84.35}, 30};
  for (LinkId id = 1; id <= 8; ++id) plan_.links[id] = {1, 4, 100.0 + id};
  ReportRequest small = request({150, 75});
  small.terrain.reset();
  const Made made = make(std::move(small));
  ASSERT_TRUE(made.report.finished) << made.report.error;
  const int tables = made.report.pages - 8;
  EXPECT_GT(tables, 1);
  EXPECT_EQ(made.report.rows.front().page, tables + 1);
  const test::PdfFile pdf(made.bytes);
  std::size_t rows = 0;
  for (int page = 1; page <= tables; ++page) {
    const std::string text = pdf.text(page);
    EXPECT_TRUE(has(text, "Verdict"));
    for (std::size_t at = text.find("refused"); at != std::string::npos; at = text.find("refused", at + 1))
      ++rows;
  }
  EXPECT_EQ(rows, 8U);
}

TEST_F(ReportJobTest, PaperAndOrientationAreThoseAskedFor) {
  const Made made = make(request(lying(kSheetLetter)));
  EXPECT_TRUE(has(test::PdfFile(made.bytes).info("Page size"), "792 x 612 pts (letter)"))
      << test::PdfFile(made.bytes).info("Page size");
}

TEST_F(ReportJobTest, ProgressCountsUpToItsEndAndCancelEndsIt) {
  std::vector<int> done;
  int all = 0;
  make(request(), [&](ReportJob& job) {
    job.onProgress = [&](int now, int total) {
      done.push_back(now);
      all = total;
    };
  });
  ASSERT_FALSE(done.empty());
  EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
  EXPECT_EQ(done.back(), all);
  const Made made =
      make(request(), [&](ReportJob& job) { job.onProgress = [&job](int, int) { job.cancel(); }; });
  EXPECT_TRUE(made.report.cancelled);
  EXPECT_FALSE(made.report.finished);
  EXPECT_TRUE(made.report.error.empty());
}

TEST_F(ReportJobTest, AcrossTheDateLineTheMapShowsTheShortWay) {
  plan_.stations[1] = {"Fiji", {-17.5, 179.9}, 30};
  plan_.stations[2] = {"Taveuni", {-16.8, -179.8}, 30};
  LinkMap map(nullptr);
  LinkMapLook look;
  look.font.setPixelSize(10);
  map.begin(plan_, 1, pageFigures(plan_, plan_.links.at(1)), look);
  ASSERT_TRUE(map.ready());
  // Both stations are seen, as dark blue dots, far apart.
  const QImage picture = map.picture();
  std::set<int> rows;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (picture.pixel(x, y) == 0xff12355b) rows.insert(y / 100);
  EXPECT_GE(rows.size(), 2U);
}

}  // namespace
}  // namespace zel::host
