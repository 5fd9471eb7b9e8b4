#include "export/gnuplot_script.h"

#include <gtest/gtest.h>

#include <utility>

#include "export_state.h"

namespace zel {
namespace {

const SignalGraphFiles kFiles{"/graphs/north.png", "/graphs/north.dat", "/graphs/north_PTP.txt",
                              "/graphs/north.plt"};
constexpr GraphLabels kLabels{98.7F, 2.5, 329.3, 12, 6, 4.5, {36.5, -84.25}, 47.6};
constexpr GraphRange kRange{2, 22, 40, 110, 40};

std::vector<std::string> script(const std::string& title = "Ridge to valley",
                                const SignalGraphFiles& files = kFiles, const GraphLabels& labels = kLabels,
                                const GraphRange& range = kRange) {
  test::KeptLines lines;
  writeGnuplotScript(files, title, labels, range, lines.sink());
  return lines.lines;
}

// Columns at 2 + 0.2 x 20 = 6 km and 2 + 0.35 x 20 = 9 km; a step is 0.01 x 70 = 0.7 dBu from 40 dBu up.
TEST(GnuplotScript, HasEveryLineInItsOrder) {
  EXPECT_EQ(script(),
            (std::vector<std::string>{
                "set terminal png size 1280,1024",
                "set key right top inside",
                "set xlabel \"Distance from Transmitter (km)\" font \"Tahoma, 11\"",
                "set ylabel \"Field Strength (dBu)\" font \"Tahoma, 11\"",
                "set title  \"Ridge to valley\" font \"Tahoma, 18\"",
                "set label \"Freq: 98.7 MHz\" font \"Tahoma, 10\" at 6.0,41.4",
                "set label \"ERP: 2.5 kW\" font \"Tahoma, 10\" at 6.0,43.2",
                "set label \"Tx Ant: 329 m AMSL\" font \"Tahoma, 10\" at 6.0,44.9",
                "set label \"Rx Ant: 12.0 m AGL\" font \"Tahoma, 10\" at 6.0,46.7",
                "set label \"LR Clutter: 6 dB\" font \"Tahoma, 10\" at 6.0,48.4",
                "set label \"Latitude: 36.5\" font \"Tahoma, 10\" at 9.0,41.4",
                "set label \"Longitude: -84.25\" font \"Tahoma, 10\" at 9.0,43.2",
                "set label \"Tx HAAT: 48 m AMSL\" font \"Tahoma, 10\" at 9.0,44.9",
                "set label \"PTP Clutter: 5 dB\" font \"Tahoma, 10\" at 9.0,48.4",
                "set output  \"/graphs/north.png\"",
                "set grid",
                "plot  \"/graphs/north.dat\" using 2:3 title \"Longley-Rice\" with lines lw 3,\\\r\n"
                "\"/graphs/north.dat\" using 2:4 title \"Point-to-Point\" with lines lw 3,\\\r\n"
                "\"/graphs/north.dat\" using 2:6 title \"Freespace\" with lines lw 2,\\\r\n"
                "\"/graphs/north.dat\" using 2:5 title \"Std Contour\" with lines lw 2,\\\r\n"
                "\"/graphs/north.dat\" using 2:7 notitle with lines lw 1",
            }));
}

// As gnuplot 5.4 draws them.
TEST(GnuplotAxes, ReachToTheNextTics) {
  const auto axes = [](double low, double high) {
    const GraphRange both = graphAxes({low, high, low, high, 0});
    EXPECT_EQ(both.start, both.low);
    EXPECT_EQ(both.end, both.high);
    return std::pair(both.start, both.end);
  };
  EXPECT_EQ(axes(0.1, 28.8), std::pair(0.0, 30.0));
  EXPECT_EQ(axes(9.98, 20.04), std::pair(8.0, 22.0));
  EXPECT_EQ(axes(-22.4, 131), std::pair(-40.0, 140.0));
  EXPECT_EQ(axes(-7.3, 103.9), std::pair(-20.0, 120.0));
  EXPECT_EQ(axes(1, 10), std::pair(1.0, 10.0));
  EXPECT_EQ(axes(5, 5), std::pair(5.0, 5.0));
}

// Of a stretch of 100 km and a range of 100 dBu: labels from 20 to 55 km, 12 dBu high, 1 dBu above their
// level.
constexpr GraphRange kHundred{0, 100, 0, 100, 0};

PlottedSample sampleAt(double distance, double longleyRice, double pointToPoint = kNoLevel,
                       double freeSpace = kNoLevel) {
  return {distance, {longleyRice, pointToPoint, freeSpace}};
}

TEST(GnuplotLabels, StandAtTheBottomWhereNoCurveIs) {
  EXPECT_EQ(labelLevel({sampleAt(1, 100), sampleAt(100, 20)}, kHundred), 0);
  EXPECT_EQ(labelLevel({}, kHundred), 0);
}

TEST(GnuplotLabels, MakeWayForACurve) {
  EXPECT_EQ(labelLevel({sampleAt(1, 5), sampleAt(100, 5)}, kHundred), 5);
  EXPECT_EQ(labelLevel({sampleAt(1, 5, 16, 30), sampleAt(100, 5, 16, 30)}, kHundred), 16);
  EXPECT_EQ(labelLevel({sampleAt(1, 10, 20, 50), sampleAt(100, 10, 20, 50)}, kHundred), 20);
  // At 20 km it has fallen to 37.8.
  EXPECT_EQ(labelLevel({sampleAt(1, 100), sampleAt(30, 5), sampleAt(100, 5)}, kHundred), 38);
}

// Up and down between 0 and a level, from 20 to 60 km.
std::vector<PlottedSample> zigzag(double high) {
  std::vector<PlottedSample> curves;
  for (int km = 20; km <= 60; ++km) curves.push_back(sampleAt(km, km % 2 == 0 ? 0 : high));
  return curves;
}

TEST(GnuplotLabels, MakeWayForTheReferenceLines) { EXPECT_EQ(labelLevel(zigzag(50), kHundred), 70); }

TEST(GnuplotLabels, StandCloserWhereThereIsNoRoomToSpare) {
  EXPECT_EQ(labelLevel(zigzag(87), kHundred), 86) << "from 87 to 99";
}

TEST(GnuplotLabels, ACurveLeftOrRightOfThemIsNotInTheWay) {
  EXPECT_EQ(labelLevel({sampleAt(1, 5), sampleAt(19, 5)}, kHundred), 0);
  EXPECT_EQ(labelLevel({sampleAt(56, 5), sampleAt(100, 5)}, kHundred), 0);
}

TEST(GnuplotLabels, AGapInACurveIsNotInTheWay) {
  EXPECT_EQ(labelLevel({sampleAt(10, 5), sampleAt(30, kNoLevel), sampleAt(60, 5)}, kHundred), 0);
}

TEST(GnuplotLabels, WithoutAFreePlaceTheyHideTheFewestPieces) {
  // One curve is in the way below 40, another falls from 100 to 47.5.
  std::vector<PlottedSample> curves = zigzag(40);
  for (PlottedSample& sample : curves) sample.levels[1] = 130 - 1.5 * sample.distance;
  EXPECT_EQ(labelLevel(curves, kHundred), 39);
}

TEST(GnuplotScript, LabelsOfZeroHaveADigit) {
  GraphLabels labels = kLabels;
  labels.longleyRiceClutter = labels.pointToPointClutter = 0;
  labels.transmitterHeight = 0;
  labels.heightAboveAverage = -12.4;
  labels.frequency = 5;
  const auto lines = script("Ridge", kFiles, labels);
  EXPECT_NE(lines[5].find("\"Freq: 05.0 MHz\""), std::string::npos) << lines[5];
  EXPECT_NE(lines[7].find("\"Tx Ant: 0 m AMSL\""), std::string::npos) << lines[7];
  EXPECT_NE(lines[9].find("\"LR Clutter: 0 dB\""), std::string::npos) << lines[9];
  EXPECT_NE(lines[12].find("\"Tx HAAT: -12 m AMSL\""), std::string::npos) << lines[12];
}

TEST(GnuplotScript, AShortStretchKeepsItsColumnsApart) {
  const auto lines = script("Ridge", kFiles, kLabels, {0.1, 0.2, 40, 110, 40});
  EXPECT_TRUE(lines[5].ends_with(" at 0.12,41.4")) << lines[5];
  EXPECT_TRUE(lines[10].ends_with(" at 0.135,41.4")) << lines[10];
}

TEST(GnuplotScript, ATitleWithAQuoteABacktickOrABackslashIsEscaped) {
  EXPECT_EQ(gnuplotText("say \"hi\" `date` C:\\x"), "say \\\"hi\\\" \\140date\\140 C:\\\\x");
  EXPECT_EQ(script("say \"hi\"")[4], "set title  \"say \\\"hi\\\"\" font \"Tahoma, 18\"");
}

TEST(GnuplotScript, ATitleWithMarksOfGnuplotIsDrawnAsItIs) {
  EXPECT_EQ(script("site_1")[4], "set title  \"site_1\" font \"Tahoma, 18\" noenhanced");
  for (const std::string mark : {"_", "^", "{", "}", "@", "&", "~", "\\"})
    EXPECT_TRUE(script("a" + mark)[4].ends_with(" noenhanced")) << mark;
}

TEST(GnuplotScript, AnEmptyTitleIsNone) { EXPECT_EQ(script("")[4], "set title  \"\" font \"Tahoma, 18\""); }

// "TITLE, 5 60" in the data would be a point at 5 km.
TEST(GnuplotScript, ATitleThatBeginsLikeANumberDoesNotBecomeAPoint) {
  for (const std::string title : {"5 60", " -5 60", ".5 60", "2026 11 survey"}) {
    const auto lines = script(title);
    ASSERT_EQ(lines.size(), 18U) << title;
    EXPECT_EQ(lines[16], "set datafile commentschars \"#T\"");
  }
  EXPECT_EQ(script("Ridge 5 60").size(), 17U);
}

TEST(GnuplotScript, PathsAreEscapedInEveryPlace) {
  const auto lines = script("Ridge", {"/a \"b\"/`n`.png", "/a \"b\"/`n`.dat", "", ""});
  EXPECT_EQ(lines[14], "set output  \"/a \\\"b\\\"/\\140n\\140.png\"");
  EXPECT_TRUE(lines[16].starts_with("plot  \"/a \\\"b\\\"/\\140n\\140.dat\" using 2:3"));
}

TEST(GnuplotScript, ATitleStaysOnItsLine) {
  EXPECT_EQ(script("one\r\ntwo")[4], "set title  \"one  two\" font \"Tahoma, 18\"");
}

}  // namespace
}  // namespace zel
