// Whole reports, read back by other programs.
#include "report/report_job.h"

#include <QPainter>
#include <QPalette>
#include <QRect>
#include <algorithm>
#include <set>

#include "report/link_plot.h"
#include "report/page_drawing.h"
#include "report/report_document.h"
#include "report_fixture.h"
#include "support/pdf_tools.h"
#include "zel/settings.h"

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

// Takes what a full disk would: the first bytes of the write that does not fit, and no others.
class FullDevice final : public QIODevice {
 public:
  explicit FullDevice(qint64 room) : room_(room) { open(WriteOnly | Unbuffered); }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char*, qint64 length) override {
    const qint64 taken = std::min(length, room_);
    room_ -= taken;
    return taken;
  }

 private:
  qint64 room_;
};

TEST_F(ReportJobTest, ADeviceThatTakesOnlyAPartFailsTheReportWhereverItEnds) {
  for (const qint64 room : {qint64{0}, qint64{50'000}}) {
    FullDevice device(room);
    ReportRequest plain = request();
    plain.terrain.reset();  // the map's ground takes the longest
    ReportJob job(std::move(plain), device);
    int ends = 0;
    job.onEnd = [&] { ++ends; };
    job.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return ends > 0; }, 60'000));
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(job.report().finished);
    EXPECT_EQ(job.report().error, "not all of it can be written: the disk may be full");
  }
}

TEST_F(ReportJobTest, TerrainThatGoesAfterTheTableIsToldWithTheLink) {
  ReportRequest plain = request();
  plain.terrain.reset();
  const Made made = make(std::move(plain), [&](ReportJob& job) {
    job.onProgress = [&](int now, int all) {
      if (now == all / 2) storeSetting("Terrain", "Source3", (folder_ / "gone").string());
    };
  });
  ASSERT_TRUE(made.report.finished) << made.report.error;
  const LinkRow& row = made.report.rows.at(0);
  EXPECT_TRUE(has(row.error, "gone")) << row.error;
  EXPECT_TRUE(row.error.ends_with("; when the table in front was made, there were figures")) << row.error;
  EXPECT_EQ(row.page, 2);
  const test::PdfFile pdf(made.bytes);
  EXPECT_TRUE(has(pdf.text(1), "blocked"));
  EXPECT_TRUE(has(pdf.text(2), "No figures: "));
}

TEST_F(ReportJobTest, EveryVerdictHasRoomInTheTableOfNarrowPaper) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  std::vector<LinkRow> rows(4);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].verdict = static_cast<PathVerdict>(i);
    rows[i].frequencyMhz = 10'000.125;
    rows[i].distanceKm = 1234.56;
    rows[i].freeSpaceDb = rows[i].modeledDb = 278.9;
    rows[i].clearancePercent = -12'345;
    rows[i].page = 100'200;
  }
  {
    ReportDocument document(buffer, kSheetA4, QStringLiteral("t"), QStringLiteral("c"));
    drawTablePage(document.page(), {"t", "d", "p", kSheetA4, 1, 1}, rows, rows, {});
    ASSERT_TRUE(document.finish());
  }
  const std::string text = test::PdfFile(bytes.toStdString()).text(1);
  for (const char* words : {"clear", "marginal", "blocked", "unknown", "10000.125", "1234.56", "-12345",
                            "100200", "Frequency", "Clearance", "Free space"})
    EXPECT_TRUE(has(text, words)) << words << " in\n" << text;
  EXPECT_FALSE(has(text, "\xE2\x80\xA6")) << text;  // nothing is cut
}

TEST_F(ReportJobTest, NamesOnTheMapKeepClearOfTheirLink) {
  plan_.stations[1].position = {36.30, -84.35};
  plan_.stations[2].position = {36.30, -84.15};
  LinkMap map(nullptr);
  const PageFigures figures = pageFigures(plan_, plan_.links.at(1));
  const auto picture = [&](const std::string& name) {
    plan_.stations[1].name = plan_.stations[2].name = name;
    map.begin(plan_, 1, figures, lookOnPaper({0, 0, 180, 85}, false, AngleFormat::kDecimalDegrees));
    EXPECT_TRUE(map.ready());
    return map.picture();
  };
  const QImage small = picture("I"), wide = picture("WWWWWWWWWWWWWWW");
  ASSERT_NE(small, wide);
  // From one station's symbol to the other's a strip along the link is the same in both.
  const auto isSymbol = [&](int x, int y) { return small.pixel(x, y) == 0xff12355b; };
  QRect strip;
  for (int y = 0; y < small.height(); ++y)
    for (int x = 0; x < small.width(); ++x)
      if (isSymbol(x, y)) strip = strip.united(QRect(x, y, 1, 1));
  ASSERT_GT(strip.width(), small.width() / 2);
  EXPECT_LT(strip.height(), 30);
  EXPECT_EQ(small.copy(strip), wide.copy(strip));
  // One that finds no place beside it is shown all the same.
  EXPECT_NE(small.copy(strip), picture(std::string(40, 'W')).copy(strip));
}

TEST_F(ReportJobTest, PaperIsWhiteOnADarkDesktop) {
  const PageFigures figures = pageFigures(plan_, plan_.links.at(1));
  const auto page = [&] {
    constexpr double kDotsPerMm = 3;
    QImage paper(630, 891, QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    PageText text(painter, kDotsPerMm);
    const LinkPage shown = linkPage(plan_, plan_.links.at(1), figures, {});
    const LinkPageLayout layout = measureLinkPage(text, kSheetA4, shown);
    LinkMap map(nullptr);
    map.begin(plan_, 1, figures, lookOnPaper(layout.map, false, AngleFormat::kDecimalDegrees));
    EXPECT_TRUE(map.ready());
    drawLinkPage(text, {"plan", "date", "program", kSheetA4, 2, 2}, layout, shown,
                 {map.picture(), linkPlot(plan_, plan_.links.at(1), figures.result, layout.plot, false)});
    painter.end();
    return paper;
  };
  const QImage light = page();
  const QPalette usual = QGuiApplication::palette();
  QPalette dark(QColor(53, 53, 53), QColor(45, 45, 48));
  QGuiApplication::setPalette(dark);
  const QImage other = page();
  QGuiApplication::setPalette(usual);
  EXPECT_EQ(light, other);
  EXPECT_EQ(light.pixelColor(5, 5), QColor(Qt::white));
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
