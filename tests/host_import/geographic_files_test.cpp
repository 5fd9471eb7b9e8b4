// GeoJSON, KML, KMZ and GPX as usual programs write them.
#include <zip.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "import_checks.h"
#include "packed_files.h"

namespace zel::host {
namespace {

const char* const kCollection = R"({"type": "FeatureCollection", "name": "sites",
"crs": {"type": "name", "properties": {"name": "urn:ogc:def:crs:OGC:1.3:CRS84"}},
"features": [
{"type": "Feature", "properties": {"fid": 7, "name": "Hill", "antenna_m": 25, "elev": 300, "more": {"name": "no"}},
 "geometry": {"type": "Point", "coordinates": [-84.3, 36.4, 412.5]}},
{"geometry": {"coordinates": [-84.1, 36.2], "type": "Point"}, "properties": {"name": "Dale", "height": "98 ft"},
 "type": "Feature"},
{"type": "Feature", "properties": {"name": "L", "frequency": "7 GHz"},
 "geometry": {"type": "LineString", "coordinates": [[-84.3, 36.4], [-84.1, 36.2]]}},
{"type": "Feature", "properties": {},
 "geometry": {"type": "Polygon", "coordinates": [[[-84, 36], [-85, 36], [-85, 37], [-84, 36]]]}},
{"type": "Feature", "properties": {"name": "nowhere"}, "geometry": null}
]})";

const char* const kKml = R"kml(<?xml version="1.0" encoding="UTF-8"?>
<kml xmlns="http://www.opengis.net/kml/2.2" xmlns:gx="http://www.google.com/kml/ext/2.2">
<Document><name>Sites</name><Style id="s"><IconStyle><scale>1.1</scale></IconStyle></Style>
<Folder><name>West</name>
<Placemark><name>Hill &amp; Dale</name><ExtendedData><Data name="Antenna height (m)"><value>45</value></Data>
</ExtendedData><Point><coordinates>-84.3,36.4,0</coordinates></Point></Placemark>
<Placemark><name><![CDATA[Lake <1>]]></name><Point><altitudeMode>relativeToGround</altitudeMode>
<coordinates> -84.1, 36.2, 25 </coordinates></Point></Placemark>
<Placemark><name>Sea</name><Point><coordinates>-84.1,36.25,350.5</coordinates></Point></Placemark>
<Placemark><ExtendedData><SchemaData schemaUrl="#x"><SimpleData name="site_name">Moor</SimpleData>
<SimpleData name="AGL_ft">100</SimpleData></SchemaData></ExtendedData>
<Point><coordinates>-84.5,36.1</coordinates></Point></Placemark>
<Placemark><name>Path</name><ExtendedData><Data name="freq"><value>450 MHz</value></Data></ExtendedData><LineString><coordinates>
-84.3,36.4,0 -84.1,36.2,0
</coordinates></LineString></Placemark>
<Placemark><name>Area</name><Polygon><outerBoundaryIs><LinearRing><coordinates>1,2 3,4 5,6 1,2</coordinates>
</LinearRing></outerBoundaryIs></Polygon></Placemark>
<Placemark><name>Walk</name><gx:Track><gx:coord>1 2 3</gx:coord></gx:Track></Placemark>
<Placemark><name>Bad</name><Point><coordinates>east,36</coordinates></Point></Placemark>
<NetworkLink><Link><href>http://example.com/more.kml</href></Link></NetworkLink>
</Folder></Document></kml>
)kml";

const char* const kGpx = R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>
<gpx xmlns="http://www.topografix.com/GPX/1/1" creator="Handheld 64" version="1.1"
 xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
 xsi:schemaLocation="http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd">
<metadata><name>Trip</name><link href="http://www.example.com"><text>Maker</text></link></metadata>
<wpt lat="36.4" lon="-84.3"><ele>412.0</ele><time>2020-01-01T00:00:00Z</time><name>Hill</name></wpt>
<wpt lat="91" lon="-84.3"><name>Pole</name></wpt>
<rte><name>R</name>
<rtept lat="36.4" lon="-84.3"/><rtept lat="36.1" lon="-84.2"><name>Mid</name></rtept><rtept lat="36.0" lon="-84.1"/>
</rte>
<trk><name>T</name><trkseg><trkpt lat="1" lon="2"/><trkpt lat="1" lon="3"/></trkseg></trk>
<wpt lon="1"><name>Half</name></wpt>
</gpx>)";

const Texts kKmlStations{"Hill & Dale 36.4 -84.3 45", "Lake <1> 36.2 -84.1 25", "Sea 36.25 -84.1 30",
                         "Moor 36.1 -84.5 30.48"};

std::string pointsJson(const std::string& features) {
  return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

std::string pointJson(const std::string& coordinates, const std::string& properties = R"("name":"A")") {
  return R"({"type":"Feature","properties":{)" + properties +
         R"(},"geometry":{"type":"Point","coordinates":)" + coordinates + "}}";
}

std::string damagedAtTheEndOf(const std::string& text, const std::string& kind) {
  return "line " + std::to_string(std::count(text.begin(), text.end(), '\n') + 1) + ": the " + kind +
         " is damaged";
}

TEST(GeoJsonStations, TakesPointsAsStationsAndLinesOfTwoPointsAsLinks) {
  const auto result = importText(kCollection, "sites.geojson");
  EXPECT_EQ(result.kind, "GeoJSON");
  EXPECT_EQ(stationTexts(result), (Texts{"Hill 36.4 -84.3 25", "Dale 36.2 -84.1 29.8704"}));
  EXPECT_EQ(result.links, (Links{{0, 1}}));
  EXPECT_EQ(result.frequenciesMhz, (std::vector<std::optional<double>>{7000}));
  EXPECT_EQ(problemTexts(result), (Texts{R"(10: a geometry "Polygon" is neither a station nor a link)",
                                         "12: the feature has no geometry"}));
  EXPECT_TRUE(hasNote(result, "1 altitude is above sea level and not taken"));
}

TEST(GeoJsonStations, TakesBareGeometriesAndFeaturesAndMultiPoints) {
  EXPECT_EQ(stationTexts(importText(R"({"type":"Point","coordinates":[-84.2,36.1]})", "p.json")),
            Texts{"p 1 36.1 -84.2 30"});
  EXPECT_EQ(stationTexts(importText(pointJson("[-84.2,36.1]"), "p.json")), Texts{"A 36.1 -84.2 30"});
  EXPECT_EQ(stationTexts(importText(R"({"coordinates":[[1,2],[3,4]],"type":"MultiPoint"})", "p.json")),
            (Texts{"p 1 2 1 30", "p 2 4 3 30"}));
  EXPECT_EQ(importText(R"({"type":"LineString","coordinates":[[1,2],[3,4]]})", "p.json").links,
            (Links{{0, 1}}));
}

TEST(GeoJsonStations, LeavesOutWhatIsNoPosition) {
  for (const char* coordinates : {"[]", "[1]", "[[1,2]]", "[\"1\",2]", "[1,2,[3]]", "{\"a\":1}", "null",
                                  "[true,1]", "[1,95]", "[1e300,2]"}) {
    const auto result = importText(pointsJson(pointJson(coordinates) + ",\n" + pointJson("[1,2]")), "p.json");
    EXPECT_EQ(stationTexts(result), Texts{"A 2 1 30"}) << coordinates;
    ASSERT_EQ(result.problems.size(), 1U) << coordinates;
    EXPECT_EQ(result.problems[0].line, 1U);
  }
  EXPECT_EQ(problemTexts(importText(pointsJson("3,\n" + pointJson("[1,2]")), "p.json")),
            Texts{"1: this is no feature"});
  const auto line = importText(
      pointsJson(R"({"type":"Feature","geometry":{"type":"LineString","coordinates":[[1,2],[1,3],[1,4]]}})"),
      "p.json");
  EXPECT_EQ(line.error, "line 1: a line of 3 points is no link");
}

TEST(GeoJsonStations, TellsProjectedCoordinatesAndForeignSystems) {
  const std::string crs =
      R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::3857"}},)";
  const auto far =
      importText(crs + R"("features":[)" + pointJson("[-9380000.5,4350000]") + "]}", "p.geojson");
  EXPECT_NE(far.error.find("projected"), std::string::npos);
  const auto degrees = importText(crs + R"("features":[)" + pointJson("[-84,36]") + "]}", "p.geojson");
  EXPECT_EQ(degrees.stations.size(), 1U);
  EXPECT_TRUE(hasNote(degrees, R"(names the coordinate system "urn:ogc:def:crs:EPSG::3857")"));
}

TEST(GeoJsonStations, ReadsATextALineWithOrWithoutRecordSeparators) {
  for (const std::string separator : {"", "\x1E"})
    for (const char* name : {"p.geojsonl", "p.json", "p"}) {
      const auto result =
          importText(separator + pointJson("[1,2]") + "\n" + separator + pointJson("[3,4]") + "\r\n\n", name);
      EXPECT_EQ(stationTexts(result), (Texts{"A 2 1 30", "A 4 3 30"})) << name << result.error;
      EXPECT_EQ(result.kind, "GeoJSON");
    }
}

TEST(GeoJsonStations, ADamagedTextOfASequenceIsLeftOutAlone) {
  const auto result = importText(pointJson("[1,2]") + "\n{\"type\":\"Feature\",\n" + pointJson("[3,4]") +
                                     "\n17\n{\"a\":[1,\n" + pointJson("[5,6]") + "\n",
                                 "p.geojsonl");
  EXPECT_EQ(stationTexts(result), (Texts{"A 2 1 30", "A 4 3 30", "A 6 5 30"}));
  ASSERT_EQ(result.problems.size(), 3U);
  EXPECT_EQ(result.problems[0].line, 2U);
  EXPECT_EQ(result.problems[1].line, 4U);
  EXPECT_EQ(result.problems[1].text, "the JSON is damaged at \"17\"");
  EXPECT_EQ(result.problems[2].line, 5U);
}

TEST(GeoJsonStations, RefusesWhatStandsBehindTheJson) {
  EXPECT_EQ(importText(pointJson("[1,2]") + "\nrest of it", "p.json").error,
            "line 2: the JSON is damaged at \"rest of it\"");
}

TEST(GeoJsonStations, RefusesDamagedAndForeignJsonWithTheLine) {
  EXPECT_EQ(importText("{\"type\":\"Point\",\n\"coordinates\":[NaN,2]}", "p.json").error.substr(0, 27),
            "line 2: the JSON is damaged");
  EXPECT_EQ(importText("{\"type\":\"Point\",\n\"coordinates\":[1e999,2]}", "p.json").error,
            "line 2: the JSON is damaged: the number \"1e999\" is beyond any number");
  const std::string cut = std::string(kCollection).substr(0, 600);
  const std::string damaged = damagedAtTheEndOf(cut, "JSON");
  EXPECT_EQ(importText(cut, "p.json").error.substr(0, damaged.size()), damaged);
  EXPECT_EQ(importText("{\"a\":1}", "p.json").error, "this is JSON, but no GeoJSON: it has no type");
  EXPECT_EQ(importText("[1,2]", "p.geojson").error, "this is JSON, but no GeoJSON: it has no type");
  EXPECT_EQ(importText(R"({"type":"Topology","objects":{}})", "p.json").error,
            R"(this is JSON, but no GeoJSON with features: its type is "Topology")");
  EXPECT_EQ(importText(pointsJson(""), "p.json").error, "there are no stations in it");
}

TEST(KmlStations, TakesPlacemarksWithTheirHeightsAndLines) {
  const auto result = importText(kKml, "sites.kml");
  EXPECT_EQ(result.kind, "KML");
  EXPECT_EQ(stationTexts(result), kKmlStations);
  EXPECT_EQ(result.links, (Links{{0, 1}}));
  EXPECT_EQ(result.frequenciesMhz, (std::vector<std::optional<double>>{450}));
  EXPECT_EQ(problemTexts(result),
            (Texts{R"(16: "Area" has neither a point nor a line of two points)",
                   R"(18: "Walk" has neither a point nor a line of two points)",
                   R"(19: "east,36" is no position)", "20: a link to another file is not followed"}));
  EXPECT_TRUE(hasNote(result, "1 altitude is above sea level and not taken"));
  EXPECT_TRUE(hasNote(result, "1 altitude relative to the ground taken as antenna height"));
}

TEST(KmlStations, NamesTheEndsOfLinesThatHaveNoStations) {
  const auto result = importText(
      "<kml><Placemark><name>Hop</name><LineString><coordinates>1,2 3,4</coordinates>"
      "</LineString></Placemark></kml>");
  EXPECT_EQ(stationTexts(result), (Texts{"Hop A 2 1 30", "Hop B 4 3 30"}));
  const auto area = importText(
      "<kml><Placemark><LineString><coordinates>1,2 3,4 5,6</coordinates></LineString>"
      "</Placemark></kml>");
  EXPECT_EQ(area.error, "line 1: a line of more than two points is no link");
}

TEST(KmlStations, TakesPrefixesThatNobodyDeclared) {
  EXPECT_EQ(
      stationTexts(importText("<k:kml><Placemark xsi:a=\"1\"><gx:x/><name>A</name><Point><coordinates>1,2"
                              "</coordinates></Point></Placemark></k:kml>")),
      Texts{"A 2 1 30"});
}

TEST(KmlStations, ReadsTheEncodingThatTheTextHasWhateverItsDeclarationSays) {
  const std::string end = "</name><Point><coordinates>1,2</coordinates></Point></Placemark></kml>";
  const Texts expected{
      "S\xC3\xBC"
      "d 2 1 30"};
  EXPECT_EQ(stationTexts(importText("<?xml version='1.0' encoding='ISO-8859-1'?>\n<kml><Placemark><name>S\xFC"
                                    "d" +
                                    end)),
            expected);
  EXPECT_EQ(stationTexts(importText("<?xml version='1.0' encoding='UTF-16'?><kml><Placemark><name>S\xC3\xBC"
                                    "d" +
                                    end)),
            expected);
}

TEST(KmlStations, RefusesDamagedXmlWithTheLine) {
  const std::string cut = std::string(kKml).substr(0, 700);
  EXPECT_EQ(importText(cut, "sites.kml").error,
            damagedAtTheEndOf(cut, "XML") + ": Premature end of document.");
  EXPECT_EQ(importText("<kml>\n<a></b></kml>", "a.kml").error.substr(0, 27), "line 2: the XML is damaged:");
  EXPECT_EQ(importText("<?xml version=\"1.0\"?><!-- x --><svg/>", "a.kml").error,
            "this is XML, but neither KML nor GPX: it begins with <svg>");
  EXPECT_EQ(importText("name,lat,lon\nA,1,2\n", "a.kml").error,
            "this is no KML: it does not begin with \"<\"");
  EXPECT_EQ(importText("<kml/>", "a.kml").error, "there are no stations in it");
}

TEST(KmzStations, TakesTheDocumentOrElseTheFirstKmlWhateverItsName) {
  const auto result =
      importText(packed({{"pictures/x.png", "x"}, {"other.kml", "<kml/>"}, {"doc.kml", kKml}}), "s.kmz");
  EXPECT_EQ(result.kind, "KMZ");
  EXPECT_EQ(stationTexts(result), kKmlStations);
  EXPECT_EQ(stationTexts(importText(packed({{"a.txt", "x"}, {"../../up.KML", kKml}}), "any name")),
            kKmlStations);
}

TEST(GpxStations, TakesWaypointsAndLinksThePointsOfRoutesInOrder) {
  const auto result = importText(kGpx, "trip.gpx");
  EXPECT_EQ(result.kind, "GPX");
  EXPECT_EQ(stationTexts(result), (Texts{"Hill 36.4 -84.3 30", "Mid 36.1 -84.2 30", "R 3 36 -84.1 30"}));
  EXPECT_EQ(result.links, (Links{{0, 1}, {1, 2}}));
  EXPECT_EQ(problemTexts(result), (Texts{"7: latitude 91 is not from -90 to 90",
                                         "11: a track of 2 points is neither stations nor links",
                                         R"(12: lat "" and lon "1" are no position)"}));
  EXPECT_TRUE(hasNote(result, "1 altitude is above sea level and not taken"));
}

TEST(GpxStations, TakesARouteOfOnePointAsAStation) {
  EXPECT_EQ(stationTexts(importText("<gpx><rte><rtept lat='1' lon='2'><name>A</name></rtept></rte></gpx>")),
            Texts{"A 1 2 30"});
}

TEST(ImportKinds, AreToldByContentWhateverTheName) {
  for (const char* name : {"x", "x.csv", "x.txt", "x.kml", "x.dat"}) {
    EXPECT_EQ(importText(kGpx, name).kind, "GPX");
    EXPECT_EQ(importText(kKml, name).kind, "KML");
    EXPECT_EQ(importText(kCollection, name).kind, "GeoJSON");
    EXPECT_EQ(importText(packed({{"doc.kml", kKml}}), name).kind, "KMZ");
  }
}

}  // namespace
}  // namespace zel::host
