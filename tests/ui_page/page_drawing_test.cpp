#include "ui/page/page_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <tuple>

#include "foundation/runtime_error.h"
#include "support/plot_state.h"
#include "support/recording_page.h"
#include "support/recording_settings_store.h"
#include "ui/page/plot_on_page.h"
#include "ui/plot/plot_drawing.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;

constexpr double kRounding = 1e-6;  // twips

const PaperFormat kA4{"A4", 11906, 16838, {}};
const PaperFormat kA4Landscape{"A4", 16838, 11906, {}};
const PaperFormat kLetter{"Letter", 12240, 15840, {}};
const PaperFormat kLetterLandscape{"Letter", 15840, 12240, {}};
const PaperFormat kA5{"A5", 8391, 11906, {}};
const PaperFormat kA5Landscape{"A5", 11906, 8391, {}};
const std::vector<PaperFormat> kUsualPapers{kA4, kA4Landscape, kLetter, kLetterLandscape, kA5, kA5Landscape};

PageContent fullContent() {
  PageContent content;
  content.date = "2026-11-21";
  content.time = "14:03:09";
  content.product = "Host Planner";
  content.version = "2.0.17";
  content.start = {"36-32-11.4 N", "084-12-53.2 W", "1,471.3", "30"};
  content.end = {"36-55-18.9 N", "083-41-08.7 W", "1,512.8", "45"};
  content.left = PageMarker{"36-40-00.0 N", "084-01-00.0 W", "391.5"};
  content.right = PageMarker{"36-50-00.0 N", "083-50-00.0 W", "402.0"};
  content.expanded = true;
  content.heightUnit = "m";
  content.distanceUnit = "km";
  content.range = "58.25";
  content.bearing = "43.21";
  content.averageHeight = "301.2";
  content.minimumHeight = "151.7";
  content.maximumHeight = "688.0";
  content.k = "1.330";
  content.fresnel = "100";
  content.frequency = "950";
  content.freeSpaceLoss = "127.3";
  content.modeledLoss = "143.21";
  content.notes = {"Heights in m.", "Terrain: " + std::string(150, 'x') + " " + std::string(120, 'y'),
                   "Modeled path loss: none.", "The plot reaches 1 km beyond."};
  return content;
}

std::string longText(std::size_t words) {
  std::string text;
  for (std::size_t i = 0; i < words; ++i) text += "word" + std::to_string(i) + " ";
  return text;
}

// The flat profile of plot_state.h, drawn with the default settings.
struct FlatPlot {
  ProfileViewState state = test::flatProfile();
  test::RecordingSettingsStore store;
  SettingsReader reader{store, [] { return std::string("Host Planner"); }};

  PlotScale draw(Canvas& canvas, const PlotStyle& style) {
    PlotView view;
    PlotDrawing drawing(canvas, state, reader, style, view);
    EXPECT_TRUE(drawing.begin(100));
    drawing.elevationLines(5, static_cast<std::int16_t>(view.drawn.first),
                           static_cast<std::int16_t>(view.drawn.last));
    drawing.rangeLines(5);
    drawing.labels();
    drawing.fresnelAndSight();
    drawing.ground();
    return view.scale;
  }
};

// A page that is drawn.
struct Drawn {
  explicit Drawn(const PaperFormat& paper, const PageContent& content = fullContent())
      : page(paper.width, paper.height) {
    result = drawPage(page, paper, content, [](Canvas&) { return true; });
    texts = page.texts();
  }

  Texts strings() const {
    Texts found;
    for (const test::RecordedPageText& text : texts) found.push_back(text.text);
    return found;
  }
  const test::RecordedPageText& text(std::string_view beginning) const {
    for (const test::RecordedPageText& text : texts)
      if (text.text.rfind(beginning, 0) == 0) return text;
    ADD_FAILURE() << "no text " << beginning;
    return texts.front();
  }

  test::RecordingPage page;
  DrawnPage result;
  std::vector<test::RecordedPageText> texts;
};

// ---- Conversion ----

TEST(ConvertPrintCoords, MapsCornersAndMiddleOfThePlotIntoTheBox) {
  const PlotScale scale{2, 260, 14, 90};
  const PageBox box{1000, 9000, 9000, 6000};
  const PagePoint leftTop = ConvertPrintCoords(scale, box, 2, 260);
  EXPECT_DOUBLE_EQ(leftTop.x, 1000);
  EXPECT_DOUBLE_EQ(leftTop.y, 9000);
  const PagePoint rightBottom = ConvertPrintCoords(scale, box, 14, 90);
  EXPECT_DOUBLE_EQ(rightBottom.x, 9000);
  EXPECT_DOUBLE_EQ(rightBottom.y, 6000);
  const PagePoint middle = ConvertPrintCoords(scale, box, 8, 175);
  EXPECT_DOUBLE_EQ(middle.x, 5000);
  EXPECT_DOUBLE_EQ(middle.y, 7500);
}

TEST(ConvertPrintCoords, FollowsAScaleThatIsUpsideDown) {
  const PlotScale scale{0, -20, 10, 10};
  const PageBox box{0, 3000, 1000, 0};
  EXPECT_DOUBLE_EQ(ConvertPrintCoords(scale, box, 5, -20).y, 3000);
  EXPECT_DOUBLE_EQ(ConvertPrintCoords(scale, box, 5, 0).y, 1000);
}

TEST(PlotOnPage, MeasuresTextsAndKeepsPensInThePlotsTerms) {
  test::RecordingPage page(kA4.width, kA4.height);
  page.sheet().setScale(0, kA4.height, kA4.width, 0);
  const PageBox box{1000, 9000, 9000, 6000};
  Canvas& picture = page.box(box.left, box.top, box.right, box.bottom);
  PlotOnPage plot(picture, box);
  plot.setScale(2, 260, 14, 90);
  EXPECT_EQ(plot.scaleWidth(), 12);
  // A twip is 12 / 8000 km and 170 / 3000 m.
  EXPECT_NEAR(plot.textWidth("1,370"), picture.textWidth("1,370") * 12 / 8000, 1e-9);
  EXPECT_NEAR(plot.textHeight(), picture.textHeight() * 170 / 3000, 1e-9);
  plot.setDrawWidth(3);
  EXPECT_EQ(plot.drawWidth(), 3);
  EXPECT_EQ(picture.drawWidth(), 3);
}

// ---- Order and places ----

TEST(DrawPage, SetsAScaleOfTwipsThatGrowsUpwards) {
  const Drawn drawn(kA4);
  EXPECT_EQ(drawn.page.sheet().state().scale, (CanvasScale{0, 16838, 11906, 0}));
}

TEST(DrawPage, PrintsHeaderRowsAndNotesInTheirOrder) {
  PageContent content = fullContent();
  content.description = "A short one";
  content.notes = {"First note.", "Second note."};
  EXPECT_EQ(Drawn(kA4, content).strings(),
            (Texts{"Date: 2026-11-21 14:03:09",
                   "Host Planner Version 2.0.17",
                   "Terrain Profile from 36-32-11.4 N / 084-12-53.2 W to 36-55-18.9 N / 083-41-08.7 W",
                   "Expanded to show between markers",
                   "Description: A short one",
                   "Start Point Latitude: 36-32-11.4 N",
                   "End Point Latitude: 36-55-18.9 N",
                   "Start Point Longitude: 084-12-53.2 W",
                   "End Point Longitude: 083-41-08.7 W",
                   "Start Point AMSL: 1,471.3 m",
                   "End Point AMSL: 1,512.8 m",
                   "Start Antenna AGL: 30 m",
                   "End Antenna AGL: 45 m",
                   "Left Marker Latitude: 36-40-00.0 N",
                   "Right Marker Latitude: 36-50-00.0 N",
                   "Left Marker Longitude: 084-01-00.0 W",
                   "Right Marker Longitude: 083-50-00.0 W",
                   "Left Marker AMSL: 391.5",
                   "Right Marker AMSL: 402.0",
                   "Range: 58.25 km",
                   "E-Curve: 1.330",
                   "Bearing: 43.21 degrees",
                   "% Fresnel: 100",
                   "Average Height: 301.2",
                   "Frequency: 950 MHz",
                   "Minimum Height: 151.7",
                   "Free Space Path Loss: 127.3 dB",
                   "Maximum Height: 688.0",
                   "Modeled Path Loss: 143.21 dB",
                   "First note.",
                   "Second note."}));
}

TEST(DrawPage, CentresTheHeaderBeginningAtTheFirstLine) {
  PageContent content = fullContent();
  content.description = longText(40);
  const Drawn drawn(kA4, content);
  double y = 16838 - 700;
  double step = 0;
  for (std::size_t i = 0; drawn.texts[i].text.rfind("Start Point", 0) != 0; ++i) {
    const test::RecordedPageText& line = drawn.texts[i];
    EXPECT_NEAR(line.position.x, (11906 - line.width) / 2, kRounding) << line.text;
    if (i == 1) step = y - line.position.y;
    y -= i == 0 ? 0 : step;
    EXPECT_NEAR(line.position.y, y, kRounding) << line.text;
    EXPECT_EQ(line.points, 10);
  }
  EXPECT_GE(step, drawn.texts[0].height);
}

TEST(DrawPage, PutsThePlotIntoABoxOfSixteenBitIntegers) {
  for (const PaperFormat& paper : kUsualPapers) {
    const Drawn drawn(paper);
    const PageBox& box = drawn.result.plot;
    EXPECT_EQ(box.left, std::nearbyint(paper.width * 0.1)) << paper.width;
    EXPECT_EQ(box.width(), std::nearbyint(paper.width * 0.8)) << paper.width;
    EXPECT_NEAR(box.height(), std::nearbyint(box.width() / 3), kRounding) << paper.width;
    ASSERT_EQ(drawn.page.boxes().size(), 1U);
    const test::RecordedBox& recorded = drawn.page.boxes()[0];
    EXPECT_EQ(recorded.left, box.left);
    EXPECT_EQ(recorded.top, box.top);
    EXPECT_EQ(recorded.right, box.right);
    EXPECT_EQ(recorded.bottom, box.bottom);
  }
}

TEST(DrawPage, OutlinesTheBoxFromOutsideBeforeThePlot) {
  constexpr double kHalfPen = 5;  // twips: a quarter of a point
  const Drawn drawn(kA4);
  const PageBox& box = drawn.result.plot;
  const RecordingCanvas& sheet = drawn.page.sheet();
  const std::vector<RecordedLine> lines = sheet.linesIn(kBlack);
  ASSERT_EQ(lines.size(), 4U);
  double left = 1e9, right = -1e9, top = -1e9, bottom = 1e9, length = 0;
  for (const RecordedLine& line : lines) {
    left = std::min({left, line.from.x, line.to.x});
    right = std::max({right, line.from.x, line.to.x});
    top = std::max({top, line.from.y, line.to.y});
    bottom = std::min({bottom, line.from.y, line.to.y});
    length += std::hypot(line.to.x - line.from.x, line.to.y - line.from.y);
  }
  EXPECT_NEAR(left, box.left - kHalfPen, kRounding);
  EXPECT_NEAR(right, box.right + kHalfPen, kRounding);
  EXPECT_NEAR(top, box.top + kHalfPen, kRounding);
  EXPECT_NEAR(bottom, box.bottom - kHalfPen, kRounding);
  EXPECT_NEAR(length, 2 * (box.width() + box.height()) + 8 * kHalfPen, kRounding);
  const auto first = std::find_if(sheet.operations().begin(), sheet.operations().end(),
                                  [](const auto& one) { return std::holds_alternative<RecordedLine>(one); });
  EXPECT_LT(static_cast<std::size_t>(first - sheet.operations().begin()), drawn.page.boxes()[0].after);
}

TEST(DrawPage, PrintsPairsOnOneLineInTwoColumns) {
  const Drawn drawn(kA4);
  EXPECT_EQ(drawn.text("Start Point Latitude").position.x, 1400);
  EXPECT_EQ(drawn.text("Range").position.x, 1400);
  EXPECT_EQ(drawn.text("End Point Latitude").position.x, drawn.result.plot.right - 3500);
  EXPECT_EQ(drawn.text("Modeled").position.x, drawn.result.plot.right - 3500);
  const std::vector<std::pair<std::string, std::string>> pairs{{"Start Point Latitude", "End Point Latitude"},
                                                               {"Start Antenna", "End Antenna"},
                                                               {"Left Marker AMSL", "Right Marker AMSL"},
                                                               {"Range", "E-Curve"},
                                                               {"Bearing", "% Fresnel"},
                                                               {"Maximum", "Modeled"}};
  for (const auto& [left, right] : pairs)
    EXPECT_EQ(drawn.text(left).position.y, drawn.text(right).position.y) << left;
}

TEST(DrawPage, LeavesASideOfTheMarkersEmpty) {
  PageContent content = fullContent();
  content.left.reset();
  const Drawn drawn(kA4, content);
  EXPECT_EQ(drawn.text("Right Marker Latitude").position.x, drawn.result.plot.right - 3500);
  for (const std::string& text : drawn.strings()) {
    EXPECT_EQ(text.find("Left Marker"), std::string::npos);
    EXPECT_FALSE(text.empty());
  }
}

TEST(DrawPage, PrintsTheNotesSmallAtTheFoot) {
  const Drawn drawn(kA4);
  const test::RecordedPageText& last = drawn.texts.back();
  EXPECT_EQ(last.text, "The plot reaches 1 km beyond.");
  EXPECT_EQ(last.points, 7);
  EXPECT_EQ(last.position.x, drawn.result.plot.left);
  EXPECT_NEAR(last.position.y - last.height, 560, kRounding);
  EXPECT_GT(drawn.text("Modeled Path Loss").position.y - 300, drawn.text("Heights in m").position.y);
}

TEST(DrawPage, HasNoFootWithoutNotes) {
  PageContent content = fullContent();
  content.notes.clear();
  const Drawn drawn(kA4, content);
  EXPECT_EQ(drawn.texts.back().text, "Modeled Path Loss: 143.21 dB");
  EXPECT_EQ(drawn.page.sheet().lines().size(), 4U);
}

// ---- Paper ----

TEST(DrawPage, KeepsEverythingWithinThePrintersMarginsAndOffEachOther) {
  for (PaperFormat paper : kUsualPapers)
    for (const PaperMargins& margins :
         {PaperMargins{}, PaperMargins{240, 240, 240, 240}, PaperMargins{700, 1100, 700, 900}})
      for (const std::size_t words : {0U, 30U, 3000U}) {
        paper.margins = margins;
        PageContent content = fullContent();
        content.description = longText(words);
        const Drawn drawn(paper, content);
        ASSERT_TRUE(drawn.result.drawn);
        EXPECT_EQ(drawn.result.descriptionCut, words == 3000) << paper.name << paper.width << margins.top;
        const PageBox& plot = drawn.result.plot;
        for (std::size_t i = 0; i < drawn.texts.size(); ++i) {
          const test::RecordedPageText& text = drawn.texts[i];
          SCOPED_TRACE(paper.name + " " + std::to_string(paper.width) + " " + text.text);
          EXPECT_GE(text.position.x, margins.left);
          EXPECT_LE(text.position.x + text.width, paper.width - margins.right);
          EXPECT_LE(text.position.y, paper.height - margins.top);
          EXPECT_GE(text.position.y - text.height, margins.bottom - kRounding);
          EXPECT_TRUE(text.position.y - text.height >= plot.top || text.position.y <= plot.bottom);
          for (std::size_t j = 0; j < i; ++j) {
            const test::RecordedPageText& other = drawn.texts[j];
            const bool apart = other.position.x + other.width <= text.position.x ||
                               text.position.x + text.width <= other.position.x ||
                               other.position.y - other.height >= text.position.y - kRounding ||
                               text.position.y - text.height >= other.position.y - kRounding;
            EXPECT_TRUE(apart) << other.text;
          }
        }
      }
}

TEST(DrawPage, BeginsLowerWhereThePrinterNeedsItsMargin) {
  PaperFormat paper = kA4;
  paper.margins.top = 900;
  EXPECT_EQ(Drawn(paper).texts[0].position.y, 16838 - 900);
  paper.margins.top = 300;
  EXPECT_EQ(Drawn(paper).texts[0].position.y, 16838 - 700);
}

TEST(DrawPage, UsesASmallerFontWhereATextWouldLeaveItsColumn) {
  PageContent content = fullContent();
  EXPECT_EQ(Drawn(kA4, content).text("Range").points, 10);
  content.left->longitude =
      std::string(40, 'x');  // 63 characters of 5 points less the gap: not with 10 points
  const Drawn smaller(kA4, content);
  EXPECT_EQ(smaller.text("Range").points, 8.5);
  EXPECT_EQ(smaller.text("Date").points, 8.5);
  EXPECT_EQ(smaller.text("End Point Latitude").position.x, smaller.result.plot.right - 3500);
}

TEST(DrawPage, WrapsAHeaderLineThatIsWiderThanThePaper) {
  PageContent content = fullContent();
  content.product = longText(40);
  const Drawn drawn(kA4, content);
  EXPECT_EQ(drawn.texts[0].text, "Date: 2026-11-21 14:03:09");
  EXPECT_EQ(drawn.text("Date").points, 7);
  EXPECT_EQ(drawn.texts[2].text.rfind("word24 ", 0), 0U);  // 159 characters of 70 twips between the margins
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_GE(drawn.texts[i].position.x, 360) << i;
    EXPECT_NEAR(drawn.texts[i].position.x * 2 + drawn.texts[i].width, 11906, kRounding) << i;
  }
}

// 5 x 20 / 10 = 10 twips a character and point: 60 of them at 7 points are 4200 wide.
TEST(DrawPage, MovesTheRightColumnWhereEvenASmallFontDoesNotHelp) {
  PageContent content = fullContent();
  content.right->longitude = std::string(60 - std::string("Right Marker Longitude: ").size(), 'x');
  const Drawn drawn(kA4, content);
  const test::RecordedPageText& text = drawn.text("Right Marker Longitude");
  EXPECT_EQ(text.points, 7);
  EXPECT_NEAR(text.position.x, std::min(drawn.result.plot.right - 3500, 11906 - 360 - 4200.0), kRounding);
  content.left->longitude = std::string(100, 'x');
  const Drawn crowded(kA4, content);
  const test::RecordedPageText& left = crowded.text("Left Marker Longitude");
  EXPECT_GE(crowded.text("Right Marker Longitude").position.x, left.position.x + left.width + 200);
}

TEST(DrawPage, SurvivesPaperThatIsTooSmallForAPage) {
  for (const PaperFormat& paper : {PaperFormat{"Card", 4895, 3118, {}}, PaperFormat{"Stamp", 300, 200, {}},
                                   PaperFormat{"Strip", 800, 30000, {}}, PaperFormat{"Dot", 1, 1, {}},
                                   PaperFormat{"Margins", 4895, 3118, {9999, 9999, 9999, 9999}}}) {
    PageContent content = fullContent();
    content.description = longText(1000);
    const Drawn drawn(paper, content);
    EXPECT_TRUE(drawn.result.drawn) << paper.name;
    EXPECT_TRUE(drawn.result.descriptionCut) << paper.name;
    EXPECT_GE(drawn.result.plot.height(), 0) << paper.name;
  }
}

TEST(DrawPage, GoesUpToTheEdgesAndLowersThePlotOnPaperThatIsTooLow) {
  const Drawn drawn({"Card", 4895, 3118, {}});
  EXPECT_EQ(drawn.texts[0].points, 6);
  EXPECT_EQ(drawn.texts[0].position.y, 3118 - 360);
  EXPECT_LT(drawn.result.plot.height(), drawn.result.plot.width() / 3 - 1);
}

TEST(DrawPage, KeepsTheBoxAsLargeAsSixteenBitsAllowOnALargeSheet) {
  const Drawn drawn({"A0", 47679, 67408, {}});
  EXPECT_EQ(drawn.result.plot.left, 4768);
  EXPECT_EQ(drawn.result.plot.width(), 32767);
  EXPECT_EQ(drawn.result.plot.height(), 10922);
}

TEST(DrawPage, RefusesPaperWithoutASize) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double width : {0.0, -11906.0, nan})
    EXPECT_THROW(Drawn({"None", width, 16838, {}}), RuntimeError) << width;
}

// ---- Description ----

TEST(DrawPage, WrapsTheDescriptionBetweenTheTextLimits) {
  PageContent content = fullContent();
  content.description = longText(60);
  for (const PaperFormat& paper : {kA4, kLetter, kA4Landscape}) {
    const Drawn drawn(paper, content);
    double widest = 0;
    for (std::size_t i = 4; drawn.texts[i].text.rfind("Start", 0) != 0; ++i)
      widest = std::max(widest, drawn.texts[i].width);
    EXPECT_LE(widest, paper.width - 3700 - 1400);
    EXPECT_GT(widest, paper.width - 3700 - 1400 - 900);
  }
}

TEST(DrawPage, HasNoLineForADescriptionOfNothingButBlanks) {
  PageContent content = fullContent();
  for (const std::string blanks : {"", "  ", " \t\r\n", "\v", "\u00A0", " \u00A0\n\u202F\x7F"}) {
    content.description = blanks;
    for (const std::string& text : Drawn(kA4, content).strings())
      EXPECT_EQ(text.find("Description"), std::string::npos);
  }
}

TEST(DrawPage, KeepsTheLineEndsOfTheDescription) {
  PageContent content = fullContent();
  content.description = "First\r\nSecond";
  const Texts texts = Drawn(kA4, content).strings();
  EXPECT_EQ(texts[4], "Description: First");
  EXPECT_EQ(texts[5], "Second");
}

TEST(DrawPage, BeginsTheDescriptionOnItsOwnLineWhateverBlanksItBeginsWith) {
  PageContent content = fullContent();
  content.description = "\n\u00A0\n First ";
  EXPECT_EQ(Drawn(kA4, content).strings()[4], "Description: First");
}

TEST(DrawPage, LeavesNoShortWordOfTheDescriptionAlone) {
  PageContent content = fullContent();
  const double room = (kA4.width - 3700 - 1400) / 100;  // characters of 10 points
  const std::string label = "Description: ";
  content.description = std::string(static_cast<std::size_t>(room) - label.size() - 6, 'x') + " tower 3";
  const Texts texts = Drawn(kA4, content).strings();
  EXPECT_EQ(texts[4].back(), 'x');
  EXPECT_EQ(texts[5], "tower 3");
}

TEST(DrawPage, CutsADescriptionThatIsTooLongForThePage) {
  PageContent content = fullContent();
  content.description = longText(5000);
  for (const PaperFormat& paper : kUsualPapers) {
    const Drawn drawn(paper, content);
    EXPECT_TRUE(drawn.result.descriptionCut);
    EXPECT_NEAR(drawn.result.plot.height(), std::nearbyint(drawn.result.plot.width() / 3), kRounding);
    const Texts texts = drawn.strings();
    const auto rows = std::find(texts.begin(), texts.end(), "Start Point Latitude: 36-32-11.4 N");
    ASSERT_NE(rows, texts.end());
    const std::string& last = *(rows - 1);
    EXPECT_EQ(last.substr(last.size() - 3), "…");
    if (paper.name != "A5") {
      EXPECT_EQ(drawn.text("Date").points, Drawn(paper).text("Date").points);
    }
  }
}

TEST(DrawPage, LetsTheNotesGiveWayToTheDescriptionButForTwoLines) {
  PageContent content = fullContent();
  content.description = longText(5000);
  for (const PaperFormat& paper : kUsualPapers) {
    const Drawn drawn(paper, content);
    const Texts texts = drawn.strings();
    const auto rows = std::find(texts.begin(), texts.end(), "Modeled Path Loss: 143.21 dB");
    const auto notes = static_cast<std::size_t>(texts.end() - rows) - 1;
    EXPECT_GE(notes, 2U) << paper.width;
    EXPECT_LE(notes, 4U) << paper.width;
    EXPECT_EQ(texts.back().substr(texts.back().size() - 3), "…");
  }
}

TEST(DrawPage, PrintsAShortDescriptionInASmallerFontRatherThanCutIt) {
  PageContent content = fullContent();
  content.description = longText(20);
  const Drawn drawn(kA5Landscape, content);
  EXPECT_FALSE(drawn.result.descriptionCut);
  EXPECT_LT(drawn.text("Date").points, Drawn(kA5Landscape).text("Date").points);
}

TEST(DrawPage, AHostWithAnEndlessNameHasTwoLinesForIt) {
  PageContent content = fullContent();
  content.product = longText(5000);
  content.description.clear();
  const Drawn drawn(kA4, content);
  const Texts strings = drawn.strings();
  EXPECT_EQ(std::count_if(strings.begin(), strings.end(),
                          [](const std::string& text) { return text.rfind("word", 0) == 0; }),
            2);
  EXPECT_GT(drawn.text("Modeled Path Loss").position.y, 0);
}

// ---- Plot ----

TEST(DrawPage, PrintsNothingMoreAfterAPlotThatFailed) {
  test::RecordingPage page(kA4.width, kA4.height);
  const DrawnPage drawn = drawPage(page, kA4, fullContent(), [](Canvas&) { return false; });
  EXPECT_FALSE(drawn.drawn);
  EXPECT_EQ(page.sheet().lines().size(), 4U);  // the box
  EXPECT_EQ(page.texts().back().text, "Expanded to show between markers");
}

// What the two drawings have in common: strokes without markers, and where the labels stand, in no order.
struct Strokes {
  std::vector<RecordedLine> lines;
  std::vector<RecordedCircle> circles;
  std::vector<CanvasPoint> labels;

  Strokes(const RecordingCanvas& canvas, const std::function<bool(const RecordedLine&)>& isMarker)
      : lines(canvas.lines()), circles(canvas.circles()) {
    std::erase_if(lines, isMarker);
    for (const RecordedText& text : canvas.texts()) labels.push_back(text.position);
    std::sort(labels.begin(), labels.end(), [](const CanvasPoint& a, const CanvasPoint& b) {
      return std::tie(a.x, a.y) < std::tie(b.x, b.y);
    });
  }

  void convert(const PlotScale& scale, const PageBox& box) {
    const auto move = [&](CanvasPoint& point) {
      const PagePoint there = ConvertPrintCoords(scale, box, point.x, point.y);
      point = {there.x, there.y};
    };
    for (RecordedLine& line : lines) {
      move(line.from);
      move(line.to);
    }
    for (RecordedCircle& circle : circles) {
      move(circle.centre);
      circle.radius *= box.width() / (scale.right - scale.left);
    }
    for (CanvasPoint& label : labels) move(label);
  }
};

TEST(DrawPage, HasThePlotOfTheWindowInTheBox) {
  constexpr Colour kMarker = 0xFFFF00;  // as set by default
  for (const bool expanded : {false, true}) {
    FlatPlot plot;
    test::showMarkersAt(plot.state, 3, 7.5F);
    plot.state.expanded = expanded;
    RecordingCanvas window;
    const PlotScale scale = plot.draw(window, {});
    test::RecordingPage page(kA4.width, kA4.height);
    const DrawnPage drawn = drawPage(page, kA4, fullContent(), [&plot](Canvas& canvas) {
      plot.draw(canvas, pageStyle());
      return true;
    });
    const RecordingCanvas& box = *page.boxes().at(0).canvas;
    // The box has the page's scale, and every point of the plot comes to it converted.
    EXPECT_EQ(box.state().scale,
              (CanvasScale{drawn.plot.left, drawn.plot.top, drawn.plot.right, drawn.plot.bottom}));
    Strokes inWindow(window, [](const RecordedLine& line) { return line.mode == DrawMode::kXorPen; });
    inWindow.convert(scale, drawn.plot);
    const Strokes onPage(box, [](const RecordedLine& line) { return line.colour == kMarker; });
    EXPECT_EQ(onPage.lines, inWindow.lines);
    ASSERT_EQ(onPage.circles.size(), inWindow.circles.size());
    for (std::size_t i = 0; i < onPage.circles.size(); ++i) {
      EXPECT_EQ(onPage.circles[i].centre, inWindow.circles[i].centre);
      EXPECT_NEAR(onPage.circles[i].radius, inWindow.circles[i].radius, kRounding);
    }
    EXPECT_EQ(onPage.labels, inWindow.labels);
    EXPECT_GT(onPage.lines.size(), 10U);
    ASSERT_EQ(box.linesIn(kMarker).size(), 2U);
    for (const RecordedLine& marker : box.linesIn(kMarker)) EXPECT_EQ(marker.mode, DrawMode::kCopyPen);
  }
}

TEST(DrawPage, GroupsTheThousandsOfThePlotsLabels) {
  FlatPlot plot;
  plot.state.rawElevation = plot.state.elevation = SampleArray<float>(12, 2000.0F);
  plot.state.statistics = {2000, 2000, 2000, 2000, 2000, 2000, 2000};
  RecordingCanvas window;
  plot.draw(window, {});
  RecordingCanvas page;
  plot.draw(page, pageStyle());
  const auto texts = [](const RecordingCanvas& canvas) {
    Texts found;
    for (const RecordedText& text : canvas.texts()) found.push_back(text.text);
    return found;
  };
  const Texts inWindow = texts(window);
  const Texts onPage = texts(page);
  EXPECT_NE(std::find(inWindow.begin(), inWindow.end(), "1800"), inWindow.end());
  EXPECT_NE(std::find(onPage.begin(), onPage.end(), "1,800"), onPage.end());
}

}  // namespace
}  // namespace zel
