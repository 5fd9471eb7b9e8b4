#include <optional>
#include <string>
#include <vector>

#include "import_checks.h"

namespace zel::host {
namespace {

TEST(CsvStations, ReadsNamesPositionsAndHeightsByTheNamesOfTheColumns) {
  const auto result = importText("name,lat,lon,height\nHill,36.4,-84.35,25\nDale,36.1,-84.2,40.5\n");
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.kind, "CSV");
  EXPECT_EQ(stationTexts(result), (Texts{"Hill 36.4 -84.35 25", "Dale 36.1 -84.2 40.5"}));
  EXPECT_TRUE(result.links.empty());
  EXPECT_TRUE(result.problems.empty());
  EXPECT_TRUE(
      hasNote(result, R"(read as name "name", latitude "lat", longitude "lon", antenna height "height")"));
}

TEST(CsvStations, TakesTheNamesOfColumnsInAnyOrderAndCaseAndManyWords) {
  const Texts expected{"Hill 36.4 -84.3 25"};
  for (const char* header :
       {"LAT,LON,NAME,H", "Latitude,Longitude,Station,Antenna", "y,x,Site,ht", "lat_wgs84,lng,id,AGL",
        " Lat. , Long. ,Call Sign,Antenna Height (m)", "Breite,L\xC3\xA4nge,Standort,H\xC3\xB6he",
        "Latitud,Longitud,Nombre,Altura", "Breedtegraad,Lengtegraad,Naam,Hoogte",
        "Latitude,Longitude,Nome,Altura da antena (m)", "Latitude,Longitude,Nom,Hauteur d'antenne",
        "siteLatitude,siteLongitude,siteName,antennaHeightAgl",
        "Latitude (deg),Longitude (deg),Label,Height above ground [m]"}) {
    const auto result = importText(std::string(header) + "\n36.4,-84.3,Hill,25\n");
    EXPECT_EQ(stationTexts(result), expected) << header << ": " << importSummary(result);
  }
}

TEST(CsvStations, PrefersTheNameToTheNumberOfAStation) {
  const auto result = importText("id,name,lat,lon,height\n17,Hill,36.4,-84.3,20\n");
  EXPECT_EQ(stationTexts(result), Texts{"Hill 36.4 -84.3 20"});
  EXPECT_TRUE(hasNote(result, R"(columns that are not used: "id")"));
}

TEST(CsvStations, NamesTheColumnsThatItDoesNotUse) {
  std::string header = "name,lat,lon", row = "Hill,36.4,-84.3";
  for (int i = 1; i <= 14; ++i) header += ",extra " + std::to_string(i), row += ",1";
  const auto result = importText(header + "\n" + row + "\n");
  EXPECT_EQ(result.stations.size(), 1U);
  EXPECT_TRUE(hasNote(result, R"("extra 1", "extra 2")"));
  EXPECT_TRUE(hasNote(result, R"("extra 12" and 2 more)"));
}

TEST(CsvStations, TellsTheDelimiterByTheRows) {
  const Texts expected{"Hill 36.4 -84.3 25.5", "Dale 36.1 -84.2 40"};
  for (const std::string d : {",", ";", "\t", "|"}) {
    std::string text;
    for (const Texts& row : {Texts{"name", "lat", "lon", "h"}, Texts{"Hill", "36.4", "-84.3", "25.5"},
                             Texts{"Dale", "36.1", "-84.2", "40"}})
      text += row[0] + d + row[1] + d + row[2] + d + row[3] + "\n";
    EXPECT_EQ(stationTexts(importText(text)), expected) << d;
  }
}

TEST(CsvStations, ReadsDecimalCommasOfSpreadsheets) {
  const auto result = importText("Standort;Breite;L\xC3\xA4nge;H\xC3\xB6he\r\nNord;36,4;-84,35;30,5\r\n");
  EXPECT_EQ(stationTexts(result), Texts{"Nord 36.4 -84.35 30.5"});
  EXPECT_TRUE(hasNote(result, "delimiter semicolon"));
}

TEST(CsvStations, TakesTheDelimiterThatASpreadsheetNamesInTheFirstLine) {
  const auto result = importText("sep=;\nname;lat;lon\nA, B;36.1;-84.2\nBad;99;-84\n");
  EXPECT_EQ(stationTexts(result), Texts{"A, B 36.1 -84.2 30"});
  EXPECT_EQ(problemTexts(result), Texts{"4: latitude 99 is not from -90 to 90"});
}

TEST(CsvStations, ReadsQuotedFieldsWithDelimitersLineBreaksAndQuotes) {
  const auto result = importText("name,lat,lon\n\"Hill, \"\"the\"\"\r\nhigh\",36.4,-84.3\nBad,x,1\n");
  EXPECT_EQ(stationTexts(result), Texts{"Hill, \"the\"  high 36.4 -84.3 30"});
  EXPECT_EQ(problemTexts(result).at(0).substr(0, 2), "4:");
}

TEST(CsvStations, LosesOneLineOnlyByAQuoteThatDoesNotEnd) {
  const auto result = importText("name,lat,lon\n\"open,36.4,-84.3\nB,36.1,-84.2\nC,36.2,-84.1\n");
  EXPECT_EQ(stationTexts(result), (Texts{"B 36.1 -84.2 30", "C 36.2 -84.1 30"}));
  EXPECT_EQ(problemTexts(result), Texts{"2: a quote begins here and does not end"});
}

TEST(CsvStations, CountsLinesRightBehindAQuoteThatDoesNotEnd) {
  const auto result = importText("name,lat,lon\n\"A\nB\",\"open,1\nC,36.1,x\nD,36,-84\n");
  ASSERT_EQ(result.problems.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(result.problems[i].line, i + 2);
}

TEST(CsvStations, ReadsPositionsInEveryWayThatAStationIsTyped) {
  const auto result = importText(
      "name;lat;lon\nA;36-32-11.4 N;84-10-12 W\nB;36\xC2\xB0"
      "30'00\"N;84 15 00W\nC;N36:30:00;W84.25\nD;36.5N;84.25W\n");
  EXPECT_EQ(stationTexts(result),
            (Texts{"A 36.5365 -84.17 30", "B 36.5 -84.25 30", "C 36.5 -84.25 30", "D 36.5 -84.25 30"}));
}

// 36-24-30 N and 84-21-36 W.
TEST(CsvStations, ReadsDegreesMinutesSecondsAndLettersInColumnsOfTheirOwn) {
  for (const char* text :
       {"name,lat_deg,lat_min,lat_sec,lat_dir,lon_deg,lon_min,lon_sec,lon_dir\nHill,36,24,30,N,84,21,36,W\n",
        "Site,LatD,LatM,LatS,N/S,LonD,LonM,LonS,E/W\nHill,36,24,30,n,84,21,36,w\n",
        "name,Latitude degrees,Latitude minutes,Longitude degrees,Longitude minutes\nHill,36,24.5,-84,21.6\n",
        "name;lat;ns;lon;ew\nHill;36,408333333;N;84,36;W\n",
        "name,latitude,latitude hemisphere,longitude,longitude hemisphere\nHill,36-24-30,N,84-21-36,W\n"}) {
    const auto result = importText(text);
    EXPECT_EQ(stationTexts(result), Texts{"Hill 36.408333 -84.36 30"}) << text << importSummary(result);
    EXPECT_FALSE(hasNote(result, "not used")) << text;
  }
  // The sign of the degrees counts for the rest, also that of a zero.
  EXPECT_EQ(stationTexts(importText("lat_deg,lat_min,lon_deg,lon_min\n-0,30,-0,15\n")),
            Texts{"masts 1 -0.5 -0.25 30"});
}

TEST(CsvStations, LeavesOutAnglesInPartsThatAreNone) {
  const auto result = importText(
      "name,lat_deg,lat_min,lat_dir,lon_deg,lon_min,lon_dir\n"
      "A,36,75,N,84,0,W\nB,-36,1,S,84,0,W\nC,36,1,Q,84,0,W\nD,,1,N,84,0,W\nE,x,1,N,84,0,W\nF,36,,,84,,W\n");
  EXPECT_EQ(stationTexts(result), Texts{"F 36 -84 30"});
  EXPECT_EQ(problemTexts(result), (Texts{"2: \"75\" are no minutes from 0 to below 60",
                                         "3: \"-36\" has a sign, and a letter in a column of its own",
                                         "4: \"Q\" is neither N nor S", "5: there is no latitude",
                                         "6: \"x\" is no number of degrees"}));
}

TEST(CsvStations, ReadsOneColumnWithBothCoordinates) {
  const auto named =
      importText("name;position\nA;36.4, -84.3\nB;36-30-00 N 84-15-00 W\nC;36.1, -84.2, 12 m\n");
  EXPECT_EQ(stationTexts(named), (Texts{"A 36.4 -84.3 30", "B 36.5 -84.25 30", "C 36.1 -84.2 12"}));
  EXPECT_EQ(stationTexts(importText("36.4 -84.3\n36.5 -84.2\n", "p.txt")),
            (Texts{"p 1 36.4 -84.3 30", "p 2 36.5 -84.2 30"}));
  EXPECT_EQ(stationTexts(importText("WKT,name\n\"POINT (-84.3 36.4)\",Hill\nPOINT(7),x\n")),
            Texts{"Hill 36.4 -84.3 30"});
}

TEST(CsvStations, TakesALineOfTwoPointsInAPositionsColumnAsALink) {
  const auto result = importText(
      "WKT,name\n\"POINT Z (-84.3 36.4 250)\",Hill\n\"LINESTRING (-84.3 36.4, -84.1 36.2)\",Hop\n"
      "\"LineString Z (1 1 0,1 2 0,1 3 0)\",Way\nLINESTRING EMPTY,None\n\"LINESTRING (1 2, x 3)\",Bad\n");
  EXPECT_EQ(stationTexts(result), (Texts{"Hill 36.4 -84.3 30", "Hop B 36.2 -84.1 30"}));
  EXPECT_EQ(result.links, (Links{{0, 1}}));
  EXPECT_EQ(problemTexts(result),
            (Texts{"4: a line of 3 points is no link", "5: the ends of the line are no positions",
                   "6: the ends of the line are no positions"}));
}

TEST(CsvStations, SaysThatNamesOfColumnsAreNotUnderstood) {
  // In Russian: name, latitude, longitude.
  const auto result = importText("\xD0\x98\xD0\xBC\xD1\x8F;\xD0\xA8;\xD0\x94\nHill;36.4;-84.3\nBad;99;1\n");
  EXPECT_EQ(stationTexts(result), Texts{"Hill 36.4 -84.3 30"});
  EXPECT_TRUE(hasNote(result, "the names of the columns are not understood; read as name, latitude"));
  EXPECT_EQ(problemTexts(result), Texts{"3: latitude 99 is not from -90 to 90"});
}

TEST(CsvStations, ReadsRowsWithoutNamesOfColumnsByTheirContent) {
  EXPECT_EQ(stationTexts(importText("36.4,-84.3,20,Hill\n36.5,-84.2,25,Dale\n")),
            (Texts{"Hill 36.4 -84.3 20", "Dale 36.5 -84.2 25"}));
  EXPECT_EQ(stationTexts(importText("36.4,-84.3,Hill\n")), Texts{"Hill 36.4 -84.3 30"});
  EXPECT_EQ(stationTexts(importText("36.4,-84.3\n")), Texts{"masts 1 36.4 -84.3 30"});
  EXPECT_EQ(stationTexts(importText("Hill,36.4,-84.3,20\n")), Texts{"Hill 36.4 -84.3 20"});
  const auto named = importText("Hill,36-24-00 N,84-18-00 W\n");
  EXPECT_EQ(stationTexts(named), Texts{"Hill 36.4 -84.3 30"});
  EXPECT_TRUE(hasNote(named, "read as name, latitude, longitude"));
}

TEST(CsvStations, ReadsLinksWithBothEndsInARowAndMergesEqualStations) {
  for (const char* header : {"name,lat1,lon1,h1,lat2,lon2,h2,frequency\n",
                             "Link,TX lat,TX lon,TX height,RX lat,RX lon,RX height,Freq (MHz)\n", ""}) {
    const auto result = importText(std::string(header) +
                                   "L1,36.4,-84.3,20,36.1,-84.1,30,450\nL2,36.4,-84.3,20,36.2,-84.0,35,\n");
    EXPECT_EQ(stationTexts(result), (Texts{"L1 A 36.4 -84.3 20", "L1 B 36.1 -84.1 30", "L2 B 36.2 -84 35"}))
        << header;
    EXPECT_EQ(result.links, (Links{{0, 1}, {0, 2}}));
    EXPECT_EQ(result.frequenciesMhz, (std::vector<std::optional<double>>{450, std::nullopt}));
  }
}

TEST(CsvStations, ReadsTheNamesOfBothEndsAndFrequenciesInGigahertz) {
  const auto result = importText(
      "Site A,Site B,Lat A,Lon A,Lat B,Lon B,Freq (GHz)\n"
      "Hill,Dale,36.4,-84.3,36.1,-84.1,6.4\nHill,Lake,36.4,-84.3,36.15,-84,90\n"
      "Other,Lake,36.4,-84.3,36.15,-84,7\n");
  // Two stations of different names at one place are two.
  EXPECT_EQ(stationTexts(result),
            (Texts{"Hill 36.4 -84.3 30", "Dale 36.1 -84.1 30", "Lake 36.15 -84 30", "Other 36.4 -84.3 30"}));
  EXPECT_EQ(result.links, (Links{{0, 1}, {0, 2}, {3, 2}}));
  EXPECT_EQ(result.frequenciesMhz, (std::vector<std::optional<double>>{6400, std::nullopt, 7000}));
  EXPECT_TRUE(hasNote(result, "1 frequency not from 20 to 20000 MHz not taken"));
  const auto units = importText(
      "lat1,lon1,lat2,lon2,frequency\n36,-84,36.1,-84,6.2 GHz\n36,-84,36.2,-84,450 "
      "MHz\n36,-84,36.3,-84,high\n"
      "36,-84,36.4,-84,\n");
  EXPECT_EQ(units.frequenciesMhz,
            (std::vector<std::optional<double>>{6200, 450, std::nullopt, std::nullopt}));
  EXPECT_TRUE(hasNote(units, "1 frequency not from 20 to 20000 MHz not taken"));
}

TEST(CsvStations, LeavesOutLinksThatAreNoneAndThoseThatStandTwice) {
  const auto result = importText(
      "name,lat1,lon1,lat2,lon2\nA,36,-84,36,-84\nB,36,-84,36.1,-84\nC,36,-84,36.1,-84\n"
      "D,36,-84,x,-84\n");
  EXPECT_EQ(result.links.size(), 1U);
  EXPECT_EQ(result.skipped, 3U);
  const Texts problems = problemTexts(result);
  EXPECT_EQ(problems.at(0), "2: the line begins and ends at the same place");
  EXPECT_EQ(problems.at(1), "4: the same link stands in the file before");
  EXPECT_EQ(problems.at(2).substr(0, 15), "5: second end: ");
}

TEST(CsvStations, PassesOverBlankLinesAndRemarksAndTakesNamesBehindAHash) {
  const auto result = importText("# stations of the county\n#name,lat,lon\n\nA,36.1,-84.2\n ,, \n# end\n");
  EXPECT_EQ(stationTexts(result), Texts{"A 36.1 -84.2 30"});
  EXPECT_EQ(result.skipped, 0U);
}

TEST(CsvStations, FindsTheNamesOfTheColumnsBelowATitle) {
  EXPECT_EQ(stationTexts(importText("Stations and their coordinates\n\nName,Lat,Lng\nA,36.1,-84.2\n")),
            Texts{"A 36.1 -84.2 30"});
}

TEST(CsvStations, TakesEveryEndOfLine) {
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    const auto result = importText("name,lat,lon" + end + "A,36.1,-84.2" + end + "B,99,-84" + end);
    EXPECT_EQ(stationTexts(result), Texts{"A 36.1 -84.2 30"});
    EXPECT_EQ(problemTexts(result), Texts{"3: latitude 99 is not from -90 to 90"});
  }
}

// 100 ft are 30.48 m by definition of the foot.
TEST(CsvStations, ReadsHeightsInFeetByColumnOrByField) {
  EXPECT_EQ(stationTexts(importText("name,lat,lon,Antenna height (ft)\nA,36,-84,100\nB,36,-84,10 m\n")),
            (Texts{"A 36 -84 30.48", "B 36 -84 10"}));
  EXPECT_EQ(stationTexts(importText("name,lat,lon,height_m\nA,36,-84,100 ft\nB,36,-84,10\n")),
            (Texts{"A 36 -84 30.48", "B 36 -84 10"}));
}

// 1,200 ft are 365.76 m by definition of the foot. A decimal comma is one only where the degrees have no
// point.
TEST(CsvStations, ACommaBetweenThousandsAndHundredsIsNoDecimalComma) {
  EXPECT_EQ(stationTexts(importText("name,lat,lon,height (ft)\nA,36.5,-84,\"1,200\"\nB,36,-84,\"1,200 ft\"\n"
                                    "C,36.5,-84,\"1,20\"\nD,36.5,-84,\"1,200,00\"\n")),
            (Texts{"A 36.5 -84 365.76", "B 36 -84 365.76", "C 36.5 -84 0.36576", "D 36.5 -84 30"}));
  EXPECT_EQ(stationTexts(importText("name;lat;lon;height\nA;36,5;-84,5;1,250\n")),
            Texts{"A 36.5 -84.5 1.25"});
  EXPECT_EQ(stationTexts(importText("name,lat,lon,height\nA,\"36,5\",\"-84,5\",\"1,250\"\n")),
            Texts{"A 36.5 -84.5 1.25"});
}

TEST(CsvStations, GivesTheDefaultHeightWhereThereIsNoneOrAWrongOneAndCountsThem) {
  ImportOptions options;
  options.antennaM = 12;
  const auto result = importStationsFrom(
      "name,lat,lon,h\nA,36,-84,\nB,36,-84,-1\nC,36,-84,750.1\nD,36,-84,0\nE,36,-84,750\nF,36,-84,high\n",
      "m.csv", options);
  EXPECT_EQ(stationTexts(result), (Texts{"A 36 -84 12", "B 36 -84 12", "C 36 -84 12", "D 36 -84 0",
                                         "E 36 -84 750", "F 36 -84 12"}));
  EXPECT_TRUE(hasNote(result, "2 stations have no antenna height; they get 12 m"));
  EXPECT_TRUE(
      hasNote(result, "2 stations have an antenna height that is not from 0 to 750 m; they get 12 m"));
  EXPECT_TRUE(hasNote(result, "1 antenna height is no number"));
}

TEST(CsvStations, DoesNotTakeElevationsForAntennaHeights) {
  for (const char* column : {"elevation", "Altitude (m)", "height_amsl", "z", "ele"}) {
    const auto result = importText(std::string("name,lat,lon,") + column + "\nA,36,-84,400\n");
    EXPECT_EQ(stationTexts(result), Texts{"A 36 -84 30"}) << column;
    EXPECT_TRUE(hasNote(result, "heights above sea level are not taken")) << column;
  }
}

TEST(CsvStations, RefusesGridsInMetresWithTheReason) {
  const auto named = importText("name,easting,northing\nA,745000,4030000\n");
  EXPECT_EQ(named.error.substr(0, 71),
            "line 1: its positions are in metres of a map grid (projected): it has n");
  const auto values = importText("name,x,y\nA,745000,4030000\nB,745100,4030100\n");
  EXPECT_NE(values.error.find("(projected); save it in degrees"), std::string::npos);
  EXPECT_NE(values.error.find("line 2: 4030000, 745000"), std::string::npos);
}

TEST(CsvStations, TellsThatLatitudeAndLongitudeSeemExchangedAndDoesNotGuess) {
  const auto all = importText("name,lat,lon\nA,-96.3,36.4\nB,-97.2,36.1\n");
  EXPECT_NE(all.error.find("latitude and longitude seem to be exchanged"), std::string::npos);
  EXPECT_TRUE(all.stations.empty());
  const auto most = importText("name,lat,lon\nA,-96.3,36.4\nB,-97.2,36.1\nC,-84,36\n");
  EXPECT_TRUE(hasNote(most, "latitude and longitude may be exchanged"));
  const auto one = importText("name,lat,lon\nA,-96.3,36.4\nB,-84,36.1\nC,-84,36\n");
  EXPECT_FALSE(hasNote(one, "exchanged")) << "a single wrong latitude is no sign";
}

TEST(CsvStations, WrapsLongitudesUpToAFullCircle) {
  EXPECT_EQ(stationTexts(importText("name,lat,lon\nA,36,275.75\nB,36,-190\nC,90,180\nD,-90,-180\n")),
            (Texts{"A 36 -84.25 30", "B 36 170 30", "C 90 180 30", "D -90 -180 30"}));
}

TEST(CsvStations, NamesTheLineOfEachBadRowAndTakesTheRest) {
  const auto result =
      importText("name,lat,lon\nA,1e999,-84\nB,nan,inf\nC,,-84\nD,36\nE,36.1,-84.2\nF,36;1,2;3\n");
  EXPECT_EQ(stationTexts(result), Texts{"E 36.1 -84.2 30"});
  ASSERT_EQ(result.problems.size(), 5U);
  EXPECT_EQ(result.skipped, 5U);
  const std::vector<std::size_t> lines{2, 3, 4, 5, 7};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(result.problems[i].line, lines[i]);
  EXPECT_EQ(result.problems[2].text, "there is no latitude");
  EXPECT_EQ(result.problems[3].text, "there is no longitude");
}

TEST(CsvStations, TellsWhichColumnIsMissing) {
  EXPECT_EQ(importText("name,lat\nA,36\n").error,
            "line 1: there is a column for the latitude, but none for the longitude");
  EXPECT_EQ(importText("name,longitude\nA,36\n").error,
            "line 1: there is a column for the longitude, but none for the latitude");
  EXPECT_NE(importText("Dear all,\nhere is, as said, the list.\n").error.find("no column for latitude"),
            std::string::npos);
}

TEST(CsvStations, TidiesAndCutsNames) {
  std::string umlauts;
  for (int i = 0; i < 100'000; ++i) umlauts += "\xC3\xA4";
  const auto result = importText("name,lat,lon\n" + umlauts + ",36,-84\n\" A\tB \",36,-84\n");
  ASSERT_EQ(result.stations.size(), 2U);
  EXPECT_EQ(result.stations[0].name, umlauts.substr(0, 2 * kLongestName));
  EXPECT_EQ(result.stations[1].name, "A B");
}

TEST(CsvStations, ReadsOtherEncodingsAndSaysWhich) {
  EXPECT_EQ(stationTexts(importText("\xEF\xBB\xBFname,lat,lon\nS\xC3\xBC"
                                    "d,36,-84\n")),
            Texts{"S\xC3\xBC"
                  "d 36 -84 30"});
  const auto windows = importText(
      "name,lat,lon\nS\xFC"
      "d \x80,36,-84\n");
  EXPECT_EQ(stationTexts(windows), Texts{"S\xC3\xBC"
                                         "d \xE2\x82\xAC 36 -84 30"});
  EXPECT_TRUE(hasNote(windows, "Windows-1252"));

  const std::string plain = "name,lat,lon\nHill,36.4,-84.3\n";
  std::string little, big;
  for (const char c : plain) {
    little += {c, '\0'};
    big += {'\0', c};
  }
  for (const std::string& text : {"\xFF\xFE" + little, "\xFE\xFF" + big, little, big}) {
    const auto result = importText(text);
    EXPECT_EQ(stationTexts(result), Texts{"Hill 36.4 -84.3 30"});
    EXPECT_TRUE(hasNote(result, "UTF-16"));
  }
}

TEST(ImportSummary, CountsAndListsWhatWasLeftOutWithinItsLines) {
  std::string text = "name,lat,lon,h\nA,36,-84,20\n";
  for (int i = 0; i < 150; ++i) text += "B,99,1,20\n";
  const auto result = importText(text);
  EXPECT_EQ(result.skipped, 150U);
  EXPECT_EQ(result.problems.size(), kMostProblems);
  const std::string summary = importSummary(result);
  EXPECT_EQ(std::count(summary.begin(), summary.end(), '\n'), 11);
  EXPECT_EQ(summary.substr(0, 18), "1 station from CSV");
  EXPECT_NE(summary.find("150 entries were left out:\n    line 3: latitude 99"), std::string::npos);
  std::size_t shown = 0;
  for (std::size_t at = summary.find("\n    line "); at != std::string::npos;
       at = summary.find("\n    line ", at + 1))
    ++shown;
  EXPECT_GT(shown, 3U);
  EXPECT_EQ(summary.substr(summary.rfind('\n') + 1), "and " + std::to_string(150 - shown) + " more");
  EXPECT_EQ(importSummary(importText("")), "it is empty");
}

}  // namespace
}  // namespace zel::host
