// Which column is which, and how numbers are written.
#include "links/link_layout.h"

#include "list_checks.h"
#include "support/says.h"

namespace zel::host {
namespace {

using Texts = std::vector<std::string>;

// "name lat1=Breite A ...": the fields with their columns.
std::string fieldsOf(const std::string& header, const LayoutOptions& options = {}) {
  const ReadLayout read = layoutOf(header + "\n", options);
  if (!read.result.layout) return "! " + read.result.error;
  std::string text;
  for (std::size_t field = 0; field < kLinkFields; ++field)
    if (const auto column = read.result.layout->columns[field])
      text +=
          (text.empty() ? "" : " ") + std::string(kLinkFieldNames[field]) + "=" + std::to_string(*column + 1);
  return text;
}

TEST(LinkLayout, FindsTheColumnsInAnyOrderAndCase) {
  EXPECT_EQ(fieldsOf("name,lat1,lon1,h1,lat2,lon2,h2"), "name=1 lat1=2 lon1=3 h1=4 lat2=5 lon2=6 h2=7");
  EXPECT_EQ(fieldsOf("FREQUENCY,H2,Lon2,LAT2,h1,LON1,lat1,Owner,Name"),
            "name=9 lat1=7 lon1=6 h1=5 lat2=4 lon2=3 h2=2 frequency=1");
}

TEST(LinkLayout, FindsColumnsByWhatElseTheyAreCalled) {
  EXPECT_EQ(
      fieldsOf(
          "Site A,Latitude A,Longitude A,Antenna height A (ft),Latitude B,Longitude B,Ht B,freq_ghz,Link"),
      "name=9 lat1=2 lon1=3 h1=4 lat2=5 lon2=6 h2=7 frequency=8");
  EXPECT_EQ(fieldsOf("tx lat,tx lon,rx lat,rx lon"), "lat1=1 lon1=2 lat2=3 lon2=4");
  EXPECT_EQ(fieldsOf("Breite von;Länge von;Höhe von;Breite nach;Länge nach;Höhe nach"),
            "lat1=1 lon1=2 h1=3 lat2=4 lon2=5 h2=6");
  EXPECT_EQ(fieldsOf("Latitude départ;Longitude départ;Latitude arrivée;Longitude arrivée"),
            "lat1=1 lon1=2 lat2=3 lon2=4");
  EXPECT_EQ(fieldsOf("Latitud inicio;Longitud inicio;Latitud fin;Longitud fin"),
            "lat1=1 lon1=2 lat2=3 lon2=4");
  EXPECT_EQ(fieldsOf("Position 1;Position 2;Höhe 1;Höhe 2"), "position1=1 h1=3 position2=2 h2=4");
}

TEST(LinkLayout, TakesUnitsFromTheNamesUnlessTheyAreTold) {
  const std::string header = "lat1,lon1,h1 (ft),lat2,lon2,h2,freq GHz\n";
  const auto layout = *layoutOf(header).result.layout;
  EXPECT_DOUBLE_EQ(layout.heightUnits[0], 0.3048);
  EXPECT_DOUBLE_EQ(layout.heightUnits[1], 1);
  EXPECT_DOUBLE_EQ(layout.frequencyUnit, 1000);
  LayoutOptions told;
  told.heightUnit = 1;
  told.frequencyUnit = 1e-3;
  const auto other = *layoutOf(header, told).result.layout;
  EXPECT_DOUBLE_EQ(other.heightUnits[0], 1);
  EXPECT_DOUBLE_EQ(other.frequencyUnit, 1e-3);
}

TEST(LinkLayout, TakesTheColumnsThatItIsTold) {
  LayoutOptions options;
  options.columns = {
      {LinkField::kLatitude1, "Breite"}, {LinkField::kLongitude1, "laenge"}, {LinkField::kName, "lat1"}};
  EXPECT_EQ(fieldsOf("Breite,Laenge,lat1,lat2,lon2", options), "name=3 lat1=1 lon1=2 lat2=4 lon2=5");
  options.columns[LinkField::kHeight1] = "Mast";
  EXPECT_EQ(
      fieldsOf("Breite,Laenge,lat1,lat2,lon2", options),
      "! line 1: --columns h1=Mast: there is no such column; there are \"Breite\", \"Laenge\", \"lat1\", "
      "\"lat2\", \"lon2\"");
}

TEST(LinkLayout, FindsTheDelimiterInTheFirstLine) {
  for (const auto& [delimiter, name] : {std::pair(',', "comma"), std::pair(';', "semicolon"),
                                        std::pair('\t', "tab"), std::pair('|', "vertical bar")}) {
    std::string header = "name,lat1,lon1,lat2,lon2\n";
    std::replace(header.begin(), header.end(), ',', delimiter);
    const auto layout = layoutOf(header).result.layout;
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->delimiter, delimiter);
    EXPECT_EQ(delimiterName(layout->delimiter), name);
  }
  EXPECT_EQ(layoutOf("sep=:\nname:lat1:lon1:lat2:lon2\n").result.layout->delimiter, ':');
}

TEST(LinkLayout, TellsDecimalCommasByTheFirstNumbersThatHaveAMark) {
  EXPECT_EQ(layoutOf("lat1;lon1;lat2;lon2\n36;-84;36;-84\n36,5;-84,2;36;-84\n").result.layout->decimal,
            DecimalMark::kComma);
  EXPECT_EQ(layoutOf("lat1;lon1;lat2;lon2;h1\n36.5;-84.2;36;-84;1,200\n").result.layout->decimal,
            DecimalMark::kPoint);
  EXPECT_EQ(layoutOf("lat1;lon1;lat2;lon2\n").result.layout->decimal, DecimalMark::kPoint);
}

TEST(LinkLayout, GivesTheRowsThatItLookedAt) {
  std::string text = "lat1,lon1,lat2,lon2\n";
  for (int i = 0; i < 50; ++i) text += "36,-84,37,-84\n";
  const ReadLayout read = layoutOf(text);
  ASSERT_EQ(read.rows.size(), 50U);
  EXPECT_EQ(read.rows.front().line, 2U);
  EXPECT_EQ(read.rows.back().line, 51U);
}

TEST(LinkLayout, RefusesAListWithoutTheColumnsOrWithTwoOfThem) {
  EXPECT_EQ(
      fieldsOf("36.4,-84.3,30,36.2,-84.1,30"),
      "! line 1: there is no column lat1, lon1, lat2 and lon2; the first line must name the columns, as in "
      "\"name,lat1,lon1,h1,lat2,lon2,h2,frequency\", or --columns say which is which; it has \"36.4\", "
      "\"-84.3\", \"30\", \"36.2\", \"-84.1\", \"30\"");
  EXPECT_EQ(fieldsOf("lat1,lon1,lat2,lon2,LAT1"),
            "! line 1: columns 1, \"lat1\", and 5, \"LAT1\", may both be lat1; say which with --columns "
            "lat1=NAME, or "
            "rename one");
  EXPECT_EQ(layoutOf("").result.error, "there is nothing in it");
  EXPECT_EQ(layoutOf("\n# only this\n").result.error, "there is nothing in it");
}

TEST(LinkLayout, RefusesPositionsInSeveralColumnsAndTellsHeightsAboveSeaLevel) {
  EXPECT_NE(fieldsOf("lat1,lat1_min,lon1,lat2,lon2").find("is a part of a position"), std::string::npos);
  const auto layout = layoutOf("lat1,lon1,elevation1,lat2,lon2\n").result.layout;
  ASSERT_TRUE(layout);
  EXPECT_TRUE(test::says(layout->notes, "\"elevation1\" is a height above sea level and not taken"));
}

TEST(LinkLayout, PrefersTheVeryNameToOneThatMeansTheSame) {
  EXPECT_EQ(fieldsOf("tx lat,lat1,lon1,lat2,lon2"), "lat1=2 lon1=3 lat2=4 lon2=5");
}

}  // namespace
}  // namespace zel::host
