// What a page of the report says of its link.
#include "report/link_page.h"

#include <algorithm>

#include "analysis/link_analysis.h"
#include "desktop/link_table.h"
#include "report_fixture.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

class LinkPageTest : public ReportTest {
 protected:
  LinkPage page(LinkId id, const ReportUnits& units = {}) {
    const Link& link = plan_.links.at(id);
    return linkPage(plan_, link, pageFigures(plan_, link), units);
  }
  static std::string value(const LinkPage& page, const std::string& label) {
    for (const auto* column : {&page.left, &page.right})
      for (const LabelledValue& each : *column)
        if (each.label == label) return each.text;
    return "none";
  }
  static bool says(const std::vector<std::string>& notes, const std::string& words) {
    return std::any_of(notes.begin(), notes.end(),
                       [&](const std::string& note) { return note.find(words) != std::string::npos; });
  }
};

TEST_F(LinkPageTest, HasTheFiguresOfTheLinkAndWhatTheyWereComputedWith) {
  const LinkPage shown = page(1);
  EXPECT_EQ(shown.title, "North ridge - South hill");
  EXPECT_EQ(shown.stations[0].name, "North ridge");
  EXPECT_EQ(shown.stations[0].position, "36-24-00.0 N, 84-21-00.0 W");
  EXPECT_EQ(shown.stations[1].antenna, "30 m above ground");
  EXPECT_EQ(shown.stations[0].ground, "546 m above sea level");
  EXPECT_EQ(value(shown, "Distance"), "28.73 km");
  EXPECT_EQ(value(shown, "Bearing"), "134.0\xC2\xB0, back 314.1\xC2\xB0");
  EXPECT_EQ(value(shown, "Free-space loss"), "121.1 dB");
  EXPECT_EQ(value(shown, "Verdict"), "blocked: the ground reaches above the line of sight");
  EXPECT_EQ(value(shown, "Worst obstacle"), "9.71 km from the start, ground 953 m");
  EXPECT_EQ(value(shown, "Obstacle at"), "36-20-21.2 N, 84-16-19.7 W");
  EXPECT_EQ(value(shown, "Frequency"), "950 MHz (of the settings)");
  EXPECT_EQ(value(shown, "Earth factor k"), "1.333");
  EXPECT_EQ(value(shown, "Terrain"), "1 second (bundled sample terrain), FCC 4-Point");
  EXPECT_EQ(value(shown, "Files"), "jacksboro_3s.tif");
  EXPECT_EQ(value(shown, "Model"),
            "Longley-Rice, horizontal polarization, climate 5 (Continental Temperate)");
  EXPECT_EQ(value(shown, "Statistics"), "confidence 50 %, reliability 50 %");
  EXPECT_EQ(value(shown, "Datum"), "NAD-83 (as WGS 84)");
  EXPECT_TRUE(shown.failure.empty());
  EXPECT_TRUE(shown.plotProblem.empty());
}

TEST_F(LinkPageTest, TheFiguresAreThoseOfTheMapsTable) {
  plan_.links[2] = {2, 1, 2400.0};
  plan_.links[3] = {2, 3, std::nullopt};
  LinkAnalysis analysis(plan_);
  analysis.updateAll();
  ASSERT_TRUE(QTest::qWaitFor([&] { return analysis.waiting() == 0; }, 60'000));
  LinkModel table(plan_, analysis);
  const auto cell = [&](int row, int column) {
    return table.index(row, column).data(Qt::DisplayRole).toString().toStdString();
  };
  for (int i = 0; i < 3; ++i) {
    const auto id = static_cast<LinkId>(i + 1);
    const auto texts = rowTexts(linkRow(plan_, id, pageFigures(plan_, plan_.links.at(id))), {});
    SCOPED_TRACE(texts[0] + " - " + texts[1]);
    EXPECT_EQ(texts[3], cell(i, LinkModel::kDistance));
    EXPECT_EQ(texts[4], cell(i, LinkModel::kBearing));
    EXPECT_EQ(texts[5], cell(i, LinkModel::kFreeSpace));
    EXPECT_EQ(texts[6], cell(i, LinkModel::kModeled));
    EXPECT_EQ(texts[7], cell(i, LinkModel::kClearance));
    EXPECT_EQ(texts[8], cell(i, LinkModel::kVerdict));
  }
}

TEST_F(LinkPageTest, ImperialUnitsAreFeetAndMiles) {
  const LinkPage shown = page(1, {true});
  EXPECT_EQ(value(shown, "Distance"), "17.85 mi");  // 28.734 km
  EXPECT_EQ(shown.stations[0].antenna, "98.43 ft above ground");
  EXPECT_EQ(shown.stations[0].ground, "1791 ft above sea level");
  EXPECT_EQ(rowHeads({true})[3], "Distance (mi)");
}

TEST_F(LinkPageTest, ALinkWithoutFiguresSaysWhyAndHasWhatNeedsNoGround) {
  plan_.links[2] = {2, 3, 450.0};
  const LinkPage shown = page(2);
  EXPECT_NE(shown.failure.find("lies outside the bundled sample terrain"), std::string::npos)
      << shown.failure;
  EXPECT_EQ(shown.plotProblem, shown.failure);
  EXPECT_EQ(value(shown, "Distance"), "11.42 km");
  EXPECT_EQ(value(shown, "Frequency"), "450 MHz (of this link)");
  EXPECT_EQ(value(shown, "Free-space loss"), "none");
  EXPECT_EQ(shown.stations[0].ground, "");
  const LinkRow row = linkRow(plan_, 2, pageFigures(plan_, plan_.links.at(2)));
  EXPECT_EQ(verdictWordOf(row), "no terrain");
  EXPECT_EQ(rowTexts(row, {})[5], "");
}

TEST_F(LinkPageTest, LinksBetweenTheSameStationsDifferInTheTableByTheirFrequency) {
  plan_.links[2] = {1, 2, 5800.125};
  const auto frequency = [&](LinkId id) {
    return rowTexts(linkRow(plan_, id, pageFigures(plan_, plan_.links.at(id))), {})[2];
  };
  EXPECT_EQ(frequency(1), "950");  // the settings'
  EXPECT_EQ(frequency(2), "5800.125");
  plan_.stations[4] = {"Beside", {36.4001, -84.35}, 30};  // too close for figures
  plan_.links[3] = {1, 4, 450.0};
  plan_.links[4] = {1, 4, std::nullopt};
  EXPECT_EQ(frequency(3), "450");
  EXPECT_EQ(frequency(4), "");
}

TEST_F(LinkPageTest, APlotThatReachesBeyondTheTerrainSaysWhyTheFiguresDoNot) {
  plan_.stations[4] = {"Last post", {36.30, -84.0846}, 30};  // the sample terrain ends at 84.0829 W
  plan_.links[2] = {1, 4, std::nullopt};
  const LinkPage shown = page(2);
  EXPECT_TRUE(shown.failure.empty()) << shown.failure;
  EXPECT_TRUE(
      shown.plotProblem.starts_with("the plot reaches a twentieth of the path beyond both stations; Sample "))
      << shown.plotProblem;
  EXPECT_EQ(linkRow(plan_, 2, pageFigures(plan_, plan_.links.at(2))).plotProblem, shown.plotProblem);
}

TEST_F(LinkPageTest, AnAntennaOnTheGroundHasFiguresButNoPlot) {
  plan_.stations[1].antennaM = 0;
  const LinkPage shown = page(1);
  EXPECT_TRUE(shown.failure.empty()) << shown.failure;
  EXPECT_TRUE(shown.plotProblem.starts_with("the antenna of North ridge stands on the ground"))
      << shown.plotProblem;
}

TEST_F(LinkPageTest, AnAntennaThatIsRoundedIsToldWithBothHeights) {
  plan_.stations[1].antennaM = 12.5;
  EXPECT_EQ(page(1).stations[0].antenna, "12.5 m above ground; computed with 12 m");
}

TEST_F(LinkPageTest, PositionsInNad27NameTheirConversion) {
  component_.let_StaDatum(0);
  plan_.datum = PlanDatum::kNad27;
  const std::string datum = value(page(1), "Datum");
  EXPECT_TRUE(datum.starts_with("NAD-27, converted by ")) << datum;
}

TEST_F(LinkPageTest, NotesAreThoseOfTheTableButForTheModelWhichStandsAmongTheValues) {
  const LinkPage shown = page(1);
  const LinkResult result = analyseLink(plan_, plan_.links.at(1));
  for (const std::string& note : result.notes) {
    if (!note.starts_with("modeled loss: ")) {
      EXPECT_TRUE(says(shown.notes, note)) << note;
    }
  }
  EXPECT_FALSE(says(shown.notes, "modeled loss: "));
  EXPECT_TRUE(says(shown.notes, "the plot follows samples of its own"));
}

TEST_F(LinkPageTest, AFrequencyBeyondTheModelHasNoModeledLoss) {
  storeSetting("Profile", "Prf_Freq", "19");
  const LinkPage shown = page(1);
  EXPECT_EQ(value(shown, "Modeled loss"), "none");
  EXPECT_EQ(value(shown, "Mode"), "none");
  EXPECT_EQ(value(shown, "Model"), "none");
}

TEST(LinkNames, KeepTheirOrderWhereNamesRunFromRightToLeft) {
  EXPECT_EQ(shownLinkName("Mill & <b>Depot</b>", "\xC3\x89glise"), "Mill & <b>Depot</b> - \xC3\x89glise");
  const std::string hebrew = "\xD7\xA6\xD7\xA4\xD7\x95\xD7\x9F";
  EXPECT_EQ(shownLinkName(hebrew, "Mill"),
            "\xE2\x81\xA8" + hebrew + "\xE2\x81\xA9 - \xE2\x81\xA8Mill\xE2\x81\xA9");
}

TEST(RowsSentence, CountsVerdictsAndLinksWithoutFigures) {
  std::vector<LinkRow> rows(4);
  rows[0].verdict = rows[1].verdict = PathVerdict::kBlocked;
  rows[2].verdict = PathVerdict::kClear;
  rows[3].error = "no terrain";
  EXPECT_EQ(rowsSentence(rows), "4 links: 1 clear, 2 blocked, 1 without figures");
  EXPECT_EQ(rowsSentence({rows[2]}), "1 link: 1 clear");
}

}  // namespace
}  // namespace zel::host
