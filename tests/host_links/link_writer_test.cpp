// Lists with their figures, as CSV, JSON, GeoJSON and KML. What other readers make of them is tested from
// outside.
#include "links/link_writer.h"

#include <nlohmann/json.hpp>
#include <tuple>

#include "links/json_text.h"
#include "links/link_line.h"
#include "list_checks.h"

namespace zel::host {
namespace {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

const std::string kOneLink = kPlainHeader + "A-B,36,-84,30,36.5,-84,20,450\n";

RunOptions as(LinkFormat format) {
  RunOptions options;
  options.format = format;
  return options;
}

TEST(LinkWriter, AddsTheFiguresToTheColumns) {
  EXPECT_EQ(
      linesOf(runList(kOneLink).content),
      (Texts{
          "name,lat1,lon1,h1,lat2,lon2,h2,frequency,distance_km,bearing_deg,free_space_db,modeled_db,mode,"
          "obstacle_km,obstacle_m,clearance_m,clearance_percent,verdict,error",
          "A-B,36,-84,30,36.5,-84,20,450,50.000000,90.0000,120.2500,140.1250,line of sight,25.000000,500.000,"
          "13.330,53.32,marginal,"}));
}

TEST(LinkWriter, AddsColumnsForEachFurtherK) {
  RunOptions options;
  options.figures.factors = {{4.0 / 3, 4.0 / 3, ""}, {2.0 / 3, 2.0 / 3, "_k0.667"}};
  const Texts lines = linesOf(runList(kOneLink, options).content);
  EXPECT_NE(lines[0].find(
                ",verdict,obstacle_km_k0.667,obstacle_m_k0.667,clearance_m_k0.667,clearance_percent_k0.667,"
                "verdict_k0.667,error"),
            std::string::npos);
  EXPECT_NE(lines[1].find("13.333,53.33,marginal,25.000000,500.000,6.667,26.67,marginal,"),
            std::string::npos);
}

TEST(LinkWriter, CarriesOtherColumnsOverUnchanged) {
  const Texts lines = linesOf(runList("Owner,lat1,lon1,lat2,lon2,note,note\n"
                                      "\"a \"\"b\"\", c\",36,-84,36.5,-84,=1+1, padded \n")
                                  .content);
  EXPECT_EQ(lines[0].substr(0, 39), "Owner,lat1,lon1,lat2,lon2,note,note,dis");
  EXPECT_EQ(lines[1].substr(0, 57), "\"a \"\"b\"\", c\",36,-84,36.5,-84,=1+1,\" padded \",50.000000,90");
}

TEST(LinkWriter, RenamesAColumnThatHasTheNameOfAFigure) {
  const Texts lines =
      linesOf(runList("lat1,lon1,lat2,lon2,Verdict,error\n36,-84,36.5,-84,good,none\n").content);
  EXPECT_EQ(lines[0].substr(0, 57), "lat1,lon1,lat2,lon2,Verdict_input,error_input,distance_km");
}

TEST(LinkWriter, WritesWithTheDelimiterAndTheDecimalMarkOfTheList) {
  const Texts lines = linesOf(runList("name;lat1;lon1;lat2;lon2\nx;36,0;-84,0;36,5;-84\n").content);
  EXPECT_EQ(lines[1].substr(0, 51), "x;36,0;-84,0;36,5;-84;50,000000;90,0000;120,2500;14");
  const Texts quoted =
      linesOf(runList("name,lat1,lon1,lat2,lon2\nx,\"36,0\",\"-84,0\",\"36,5\",-84\n").content);
  EXPECT_EQ(quoted[1].substr(0, 48), "x,\"36,0\",\"-84,0\",\"36,5\",-84,\"50,000000\",\"90,0000");
}

TEST(LinkWriter, KeepsTheMarkOfTheList) {
  EXPECT_EQ(runList("\xEF\xBB\xBF" + kOneLink).content.substr(0, 7), "\xEF\xBB\xBFname");
  EXPECT_EQ(runList(kOneLink).content.substr(0, 4), "name");
}

TEST(LinkWriter, WritesNotesIntoAColumnWhereWanted) {
  RunOptions options;
  options.notes = true;
  const Texts lines = linesOf(runList(kOneLink, options).content);
  EXPECT_EQ(lines[0].substr(lines[0].size() - 12), ",error,notes");
  EXPECT_NE(lines[1].find(",,beware of 7 things; a note of 50.000000"), std::string::npos);
}

TEST(LinkWriter, WritesFieldsThatReadersWouldTakeForSomethingElseInQuotes) {
  const auto rows =
      rowsOf(runList("name,lat1,lon1,lat2,lon2\n\"#1\",36,-84,36.5,-84\n\"a\nb\",36,-84,36.5,-84\n").content);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[1].field(0), "#1");
  EXPECT_EQ(rows[2].field(0), "a\nb");
}

TEST(LinkWriter, ReadsItsOwnOutputAgain) {
  const RunResult first = runList(kOneLink);
  const RunResult second = runList(first.content);
  EXPECT_EQ(second.refused, "");
  EXPECT_EQ(second.totals.links, 1U);
  EXPECT_EQ(second.totals.errors, 0U);
}

TEST(LinkWriter, WritesOneJsonObjectWithAllLinks) {
  const RunResult result = runList(kOneLink + "bad,95,-84,30,36.5,-84,20,\n", as(LinkFormat::kJson));
  const Json json = Json::parse(result.content);
  EXPECT_EQ(json["program"], "terrain-profiler");
  EXPECT_EQ(json["version"], "1.2.3");
  ASSERT_EQ(json["links"].size(), 2U);
  const Json& link = json["links"][0];
  EXPECT_EQ(link["line"], 2);
  EXPECT_EQ(link["name"], "A-B");
  EXPECT_EQ(link["from"]["latitude"], 36);
  EXPECT_EQ(link["to"]["antenna_m"], 20);
  EXPECT_EQ(link["frequency_mhz"], 450);
  EXPECT_EQ(link["distance_km"], 50);
  EXPECT_EQ(link["modeled_db"], 140.125);
  EXPECT_EQ(link["verdict"], "marginal");
  EXPECT_TRUE(link["error"].is_null() || link["error"] == "");
  EXPECT_EQ(link["notes"].size(), 1U);
  EXPECT_EQ(link["warnings"][0], "beware of 7 things");
  EXPECT_EQ(json["links"][1]["error"], "lat1: latitude 95 is not from -90 to 90");
  EXPECT_TRUE(json["links"][1]["from"].is_null());
  EXPECT_TRUE(json["links"][1]["modeled_db"].is_null());
  EXPECT_EQ(json["counts"]["errors"], 1);
  EXPECT_EQ(json["counts"]["verdicts"][0]["marginal"], 1);
  EXPECT_EQ(json["terrain_files"][0], "/terrain/flat.tif");
  EXPECT_EQ(json["clear_percent"], 60);
}

TEST(LinkWriter, WritesAnEmptyListThatCanBeRead) {
  EXPECT_EQ(Json::parse(runList(kPlainHeader, as(LinkFormat::kJson)).content)["links"].size(), 0U);
  EXPECT_EQ(Json::parse(runList(kPlainHeader, as(LinkFormat::kGeoJson)).content)["features"].size(), 0U);
  EXPECT_EQ(linesOf(runList(kPlainHeader).content).size(), 1U);
}

TEST(LinkWriter, GivesDoubledColumnsDifferentNamesInJson) {
  const Json json = Json::parse(
      runList("lat1,lon1,lat2,lon2,x,x,\n36,-84,36.5,-84,1,2,3\n", as(LinkFormat::kJson)).content);
  EXPECT_EQ(json["links"][0]["columns"], (Json{{"x", "1"}, {"x (2)", "2"}, {"column", "3"}}));
}

TEST(LinkWriter, WritesFeaturesWithGeodesicLines) {
  const Json json =
      Json::parse(runList(kOneLink + "bad,95,-84,30,36.5,-84,20,\n", as(LinkFormat::kGeoJson)).content);
  EXPECT_EQ(json["type"], "FeatureCollection");
  const Json& geometry = json["features"][0]["geometry"];
  EXPECT_EQ(geometry["type"], "LineString");
  EXPECT_EQ(geometry["coordinates"].size(), 4U) << "55 km, a point every 20 km or so";
  EXPECT_EQ(geometry["coordinates"][0], (Json{-84, 36}));
  EXPECT_EQ(geometry["coordinates"][3], (Json{-84, 36.5}));
  EXPECT_EQ(json["features"][0]["properties"]["name"], "A-B");
  EXPECT_EQ(json["features"][0]["properties"]["verdict"], "marginal");
  EXPECT_TRUE(json["features"][1]["geometry"].is_null());
}

TEST(LinkWriter, WritesPlacemarksWithEscapedNames) {
  const std::string kml =
      runList("name,lat1,lon1,lat2,lon2,own\n\"<A & \"\"B\"\">\",36,-84,36.5,-84,\"\x01>\"\n",
              as(LinkFormat::kKml))
          .content;
  EXPECT_NE(kml.find("<name>&lt;A &amp; &quot;B&quot;&gt;</name><styleUrl>#marginal</styleUrl>"),
            std::string::npos);
  EXPECT_NE(kml.find("<Data name=\"own\"><value>\xEF\xBF\xBD&gt;</value></Data>"), std::string::npos);
  EXPECT_NE(kml.find("<Style id=\"marginal\">"), std::string::npos);
}

TEST(LinkLine, IsAGeodesicWithMorePointsTheLongerItIs) {
  EXPECT_EQ(linkLine({36, -84}, {36.1, -84}).front().size(), 2U);
  const auto line = linkLine({50, 0}, {50, 60});
  ASSERT_EQ(line.size(), 1U);
  EXPECT_GT(line[0].size(), 200U);
  // The middle of the great circle along 50 degrees north: atan(tan 50 / cos 30), 53.99 degrees on the
  // sphere.
  EXPECT_NEAR(line[0][line[0].size() / 2].latitude, 54.0, 0.3);
}

TEST(LinkLine, IsCutAtTheAntimeridian) {
  for (const auto& [from, to] :
       {std::pair(Position{10, 179}, Position{10, -179}), std::pair(Position{10, -179}, Position{10, 179})}) {
    const auto pieces = linkLine(from, to);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].front(), from);
    EXPECT_EQ(pieces[1].back(), to);
    EXPECT_EQ(std::abs(pieces[0].back().longitude), 180);
    EXPECT_EQ(pieces[1].front().longitude, -pieces[0].back().longitude);
    EXPECT_EQ(pieces[1].front().latitude, pieces[0].back().latitude);
    EXPECT_NEAR(pieces[0].back().latitude, 10, 0.01);
    for (const auto& piece : pieces)
      for (std::size_t i = 1; i < piece.size(); ++i)
        EXPECT_LE(std::abs(piece[i].longitude - piece[i - 1].longitude), 180);
  }
}

TEST(LinkLine, CrossesTheAntimeridianWhereTheGeodesicDoes) {
  // On the sphere the great circle through both has tan(latitude) = (tan 10 + tan 20) sin 1 / sin 2 there,
  // all in degrees: 15.121.
  const auto pieces = linkLine({10, 179}, {20, -179});
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_NEAR(pieces[0].back().latitude, 15.121, 0.01);
}

TEST(LinkLine, ThatEndsOnTheAntimeridianIsOnePiece) {
  const auto line = linkLine({10, 179}, {10, 180});
  ASSERT_EQ(line.size(), 1U);
  EXPECT_EQ(line[0].back(), (Position{10, 180}));
  const auto other = linkLine({10, 179}, {10, -180});
  ASSERT_EQ(other.size(), 1U);
  EXPECT_EQ(other[0].back().longitude, 180);
}

TEST(LinkLine, AlongTheAntimeridianAndOverAPoleIsWhole) {
  // Two degrees of a meridian are 221 to 223 km on WGS 84; 0.2 degrees 22.3 km.
  for (const auto& [from, to, points] : {std::tuple(Position{51, 180}, Position{53, -180}, 13U),
                                         std::tuple(Position{51, -180}, Position{53, 180}, 13U),
                                         std::tuple(Position{89.9, 0}, Position{89.9, 180}, 3U),
                                         std::tuple(Position{89.9, 0}, Position{89.9, -180}, 3U)}) {
    const auto line = linkLine(from, to);
    ASSERT_EQ(line.size(), 1U);
    EXPECT_EQ(line[0].size(), points);
    EXPECT_EQ(line[0].front(), from);
    EXPECT_EQ(line[0].back().latitude, to.latitude);
  }
}

TEST(JsonText, EscapesWhatJsonCannotHave) {
  EXPECT_EQ(jsonText("a\"\\\n\t\x01 ö \xFF"), "\"a\\\"\\\\\\n\\t\\u0001 ö \xEF\xBF\xBD\"");
  EXPECT_EQ(jsonNumber(1e300 * 1e300), "null");
  std::string out;
  appendJsonNumber(out, 12.500000, 6);
  EXPECT_EQ(out, "12.5");
  out.clear();
  appendJsonNumber(out, 1000, 2);
  EXPECT_EQ(out, "1000");
  out.clear();
  appendJsonNumber(out, -0.0001, 2);
  EXPECT_EQ(out, "0");
}

TEST(LinkFormats, AreToldByTheirEndings) {
  EXPECT_EQ(linkFormat(".CSV"), LinkFormat::kCsv);
  EXPECT_EQ(linkFormat("geojson"), LinkFormat::kGeoJson);
  EXPECT_EQ(linkFormat(".kml"), LinkFormat::kKml);
  EXPECT_EQ(linkFormat(".json"), LinkFormat::kJson);
  EXPECT_FALSE(linkFormat(".txt"));
  EXPECT_FALSE(linkFormat(""));
}

}  // namespace
}  // namespace zel::host
