#include "ui/page/page_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "component/services/normal_table.h"
#include "platform/terrain.h"
#include "profile/path_loss/level_deviate.h"
#include "profile/view_state/clearance_readout.h"
#include "support/plot_state.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;

struct PageContentTest : testing::Test {
  ProfileViewState state = test::flatProfile();
  std::map<std::string, std::string, std::less<>> texts{
      {"lblSLat", "36-32-11.4 N"},  {"lblSLon", "084-12-53.2 W"}, {"lblELat", "36-55-18.9 N"},
      {"lblELon", "083-41-08.7 W"}, {"lblSAMSL", "471.3"},        {"lblEAMSL", "1,512.8"},
      {"tbxAnt1AGL", "30"},         {"tbxAnt2AGL", " 45 "},       {"tbxFreq", " 950.5"},
      {"lblMk1Lat", "36-40 N"},     {"lblMk1Lon", "084-01 W"},    {"lblMk1Ht", "391.5"},
      {"lblMk2Lat", "36-50 N"},     {"lblMk2Lon", "083-50 W"},    {"lblMk2Ht", "402.0"},
      {"lblDist", "58.25"},         {"lblAzd", "43.21"},          {"lblAvHt", "301.2"},
      {"lblMinHt", "151.7"},        {"lblMaxHt", "688.0"},        {"lblFSLoss", "127.3"},
      {"lblMLoss", "143.21"}};
  PageOrigin origin{{2026, 11, 21, 14, 3, 9}, "Host Planner", "2.0.17", {}};
  std::string description;

  PageContentTest() { state.model = ModelParameters{0, 5, 15, 0.005, 301, 0, -1.28}; }

  PageContent content() const {
    const ShownText shown = [this](std::string_view control) {
      const auto found = texts.find(control);
      return found == texts.end() ? std::string() : found->second;
    };
    return pageContent(state, shown, origin, description);
  }
  Texts column(std::string PageRow::*side) const {
    Texts found;
    for (const PageRow& row : pageRows(content())) found.push_back(row.*side);
    return found;
  }
  Texts left() const { return column(&PageRow::left); }
  Texts right() const { return column(&PageRow::right); }
  // The note with such a beginning; empty when there is none.
  std::string note(std::string_view beginning) const {
    for (const std::string& note : content().notes)
      if (note.rfind(beginning, 0) == 0) return note;
    return {};
  }
};

TEST_F(PageContentTest, HeaderHasDateProductAndEndPoints) {
  EXPECT_EQ(pageHeader(content()),
            (Texts{"Date: 2026-11-21 14:03:09", "Host Planner Version 2.0.17",
                   "Terrain Profile from 36-32-11.4 N / 084-12-53.2 W to 36-55-18.9 N / 083-41-08.7 W"}));
}

TEST_F(PageContentTest, HeaderNamesTheProductAloneWhenTheHostHasNoVersion) {
  origin.version.clear();
  EXPECT_EQ(pageHeader(content())[1], "Host Planner");
}

TEST_F(PageContentTest, DateAndTimeHaveAllTheirDigits) {
  origin.now = {2027, 1, 2, 3, 4, 5};
  EXPECT_EQ(pageHeader(content())[0], "Date: 2027-01-02 03:04:05");
}

TEST_F(PageContentTest, HeaderTellsAnExpandedView) {
  test::expandBetween(state, 3, 7);
  const Texts header = pageHeader(content());
  ASSERT_EQ(header.size(), 4U);
  EXPECT_EQ(header[3], "Expanded to show between markers");
}

TEST_F(PageContentTest, DescriptionIsTakenAsItIs) {
  description = " one\ntwo ";
  EXPECT_EQ(content().description, " one\ntwo ");
  EXPECT_EQ(pageHeader(content()).size(), 3U);
}

TEST_F(PageContentTest, LeftColumnIsTheStartAndThePath) {
  EXPECT_EQ(left(), (Texts{"Start Point Latitude: 36-32-11.4 N", "Start Point Longitude: 084-12-53.2 W",
                           "Start Point AMSL: 471.3 m", "Start Antenna AGL: 30 m", "Range: 58.25 km",
                           "Bearing: 43.21 degrees", "Average Height: 301.2", "Minimum Height: 151.7",
                           "Maximum Height: 688.0"}));
}

TEST_F(PageContentTest, RightColumnIsTheEndAndTheRadioPath) {
  EXPECT_EQ(right(), (Texts{"End Point Latitude: 36-55-18.9 N", "End Point Longitude: 083-41-08.7 W",
                            "End Point AMSL: 1,512.8 m", "End Antenna AGL: 45 m", "E-Curve: 1.330",
                            "% Fresnel: 100", "Frequency: 950.5 MHz", "Free Space Path Loss: 127.3 dB",
                            "Modeled Path Loss: 143.21 dB"}));
}

TEST_F(PageContentTest, UnitsAreThoseOfTheWindow) {
  test::useFeetAndMiles(state);
  EXPECT_EQ(left()[2], "Start Point AMSL: 471.3 ft");
  EXPECT_EQ(right()[3], "End Antenna AGL: 45 ft");
  EXPECT_EQ(left()[4], "Range: 58.25 mi");
  EXPECT_EQ(note("Heights"),
            "Heights, also those without a unit, in ft above mean sea level (AMSL) or above ground (AGL), "
            "distances in mi.");
}

TEST_F(PageContentTest, MarkerLinesAreThereForShownMarkersOnly) {
  const Texts leftLines{"Left Marker Latitude: 36-40 N", "Left Marker Longitude: 084-01 W",
                        "Left Marker AMSL: 391.5"};
  const Texts rightLines{"Right Marker Latitude: 36-50 N", "Right Marker Longitude: 083-50 W",
                         "Right Marker AMSL: 402.0"};
  const Texts none(3);
  for (const bool leftShown : {false, true})
    for (const bool rightShown : {false, true}) {
      state.leftMarker.shown = leftShown;
      state.rightMarker.shown = rightShown;
      const Texts leftColumn = left();
      const Texts rightColumn = right();
      const bool any = leftShown || rightShown;
      ASSERT_EQ(leftColumn.size(), any ? 12U : 9U);
      if (!any) continue;
      EXPECT_EQ(Texts(leftColumn.begin() + 4, leftColumn.begin() + 7), leftShown ? leftLines : none);
      EXPECT_EQ(Texts(rightColumn.begin() + 4, rightColumn.begin() + 7), rightShown ? rightLines : none);
      EXPECT_EQ(leftColumn[7], "Range: 58.25 km");
    }
}

TEST_F(PageContentTest, FresnelFractionIsPrintedAsAPercentage) {
  const std::vector<std::pair<float, std::string>> cases{{0.0F, "0"},   {0.6F, "60"}, {1.0F, "100"},
                                                         {0.33F, "33"}, {0.07F, "7"}, {0.575F, "57.5"}};
  for (const auto& [fraction, text] : cases) {
    state.inputs.fresnelFraction = fraction;
    EXPECT_EQ(content().fresnel, text);
  }
}

TEST_F(PageContentTest, CurveFactorHasThreeDecimals) {
  state.inputs.k = 1.33333F;
  EXPECT_EQ(content().k, "1.333");
  state.inputs.k = 0.5F;
  EXPECT_EQ(content().k, "0.500");
}

TEST_F(PageContentTest, EmptyTextsLeaveTheirLabelsAndUnits) {
  texts.clear();
  EXPECT_EQ(right()[8], "Modeled Path Loss:  dB");
  EXPECT_EQ(left()[0], "Start Point Latitude: ");
}

// ---- Notes ----

TEST_F(PageContentTest, NotesBeginWithUnitsAndTheDatumThatTheHostHasTold) {
  EXPECT_EQ(content().notes.at(0),
            "Heights, also those without a unit, in m above mean sea level (AMSL) or above ground (AGL), "
            "distances in km.");
  origin.datum = "NAD-27";
  EXPECT_EQ(content().notes.at(0),
            "Heights, also those without a unit, in m above mean sea level (AMSL) or above ground (AGL), "
            "distances in km. Positions in "
            "NAD-27.");
}

TEST_F(PageContentTest, NotesNameTheTerrainByItsRastersWithoutTheirFolders) {
  SamplingReport& report = state.samplingReport;
  report.sourceCode = 7;
  report.sourceName = "1/3 second";
  report.method = "FCC 4-Point";
  report.files = {"/data/dem/N36W085.tif", "N36W084.tif"};
  EXPECT_EQ(note("Terrain"),
            "Terrain: source 7 \"1/3 second\", FCC 4-Point, 12 samples 1.0 km apart; heights from "
            "N36W085.tif, N36W084.tif.");
}

TEST_F(PageContentTest, NotesNameTheFirstRastersOfMany) {
  state.samplingReport.files = Texts(9, "/a/tile.tif");
  EXPECT_NE(note("Terrain").find("tile.tif and 3 more rasters."), std::string::npos);
  state.samplingReport.files.resize(7);
  EXPECT_NE(note("Terrain").find("tile.tif and 1 more raster."), std::string::npos);
  state.samplingReport.files.clear();
  EXPECT_NE(note("Terrain").find("no raster had a height."), std::string::npos);
}

TEST_F(PageContentTest, NotesTellTheBundledSampleVoidsAndAShiftOfDatum) {
  SamplingReport& report = state.samplingReport;
  report.sourceCode = 3;
  report.sourceName = "1 second";
  report.bundledSample = true;
  report.voids = 1;
  EXPECT_NE(note("Terrain").find("bundled sample terrain, as source 3 \"1 second\" is not set"),
            std::string::npos);
  EXPECT_NE(note("Terrain").find(
                " 1 sample without a height, drawn in red at sea level and counted as 0 in the statistics."),
            std::string::npos);
  report.voids = 2;
  report.datumShifted = true;
  report.datumOperation = {"NAD27 to NAD83 (1)", 0.15, true};
  EXPECT_NE(
      note("Terrain").find(" 2 samples without a height, drawn in red at sea level and counted as 0 in the "
                           "statistics. The terrain was "
                           "read at positions shifted to NAD-83 by NAD27 to NAD83 (1) (accuracy 0.15 m)."),
      std::string::npos);
  report.datumOperation.accuracy = -1;
  EXPECT_NE(note("Terrain").find("(accuracy unknown)."), std::string::npos);
}

TEST_F(PageContentTest, NotesHaveTheFirstWarningsOfTheTerrain) {
  state.samplingReport.warnings = {"a is damaged", "b is damaged", "c is damaged"};
  EXPECT_EQ(content().notes.at(4), "Warning: c is damaged");
  state.samplingReport.warnings.insert(state.samplingReport.warnings.end(), 2, "d");
  EXPECT_EQ(content().notes.at(4), "Warning: c is damaged (and 2 more warnings)");
  EXPECT_EQ(note("Warning: d"), "");
}

TEST_F(PageContentTest, NotesTellWhatTheModelWasGiven) {
  EXPECT_EQ(note("Modeled"),
            "Modeled path loss: Longley-Rice irregular terrain model 1.2.2, point-to-point; horizontal "
            "polarization, climate 5 (Continental Temperate), ground permittivity 15, conductivity 0.005 "
            "S/m, surface refractivity 301 N-units, confidence 50 %, reliability 90 %.");
  state.model->polarization = 1;
  state.model->climate = 0;
  EXPECT_NE(note("Modeled").find("vertical polarization, climate 0, ground"), std::string::npos);
}

TEST_F(PageContentTest, NotesTellConfidenceAndReliabilityInThePercentagesThatTheyWereSetIn) {
  const NormalTable table = InitNormalDist();
  for (int percent = 1; percent < 100; ++percent) {
    state.model->confidence = levelDeviate(percent / 100.0, table);
    state.model->reliability = levelDeviate((100 - percent) / 100.0, table);
    const std::string expected =
        "confidence " + std::to_string(percent) + " %, reliability " + std::to_string(100 - percent) + " %.";
    EXPECT_NE(note("Modeled").find(expected), std::string::npos) << percent;
  }
}

TEST_F(PageContentTest, NotesTellWhyThereIsNoModeledLoss) {
  texts["lblMLoss"] = "";
  EXPECT_EQ(note("No modeled"), "No modeled path loss: the radio model has none for this path.");
  state.inputs.frequency = 19;
  EXPECT_EQ(note("No modeled"), "No modeled path loss: the radio model takes 20 to 20000 MHz.");
  state.model.reset();
  EXPECT_EQ(note("No modeled"), "No modeled path loss: the settings of the radio model cannot be used.");
  EXPECT_EQ(note("Modeled"), "");
}

// Flat ground at 100 m, tops at 130 m, k 1.33: halfway 30 m less a bulge of 25 x 1000 / (2 x 1.33 x 6371) =
// 1.48 m.
TEST_F(PageContentTest, NotesHaveTheClearanceOfThePath) {
  state.riseK = state.inputs.k;
  EXPECT_EQ(
      note("Clearance"),
      "Clearance of the first Fresnel zone in exact geometry: Worst 5.00 km: clearance 28.5 m, 102 % of "
      "zone 1: clear (k 1.33).");
  state.flags.resample = true;
  EXPECT_EQ(note("Clearance"), "");
}

// The window's row has no room for its words and metres. Tops at 98.4 ft, halfway less a bulge of 25 x 1000 /
// (2 x 0.667 x 6371) = 2.94 m: 27.06 m or 88.8 ft.
TEST_F(PageContentTest, NotesHaveAllWordsOfALongClearance) {
  test::useFeetAndMiles(state);
  state.riseK = 0.667F;
  state.inputs.k = 1.333F;
  for (const std::int32_t sample : {3, 8}) state.rawElevation[sample] = kVoidHeight;
  ASSERT_EQ(pathClearanceText(state, pathClearance(state)).find("clearance"), std::string::npos);
  EXPECT_EQ(
      note("Clearance"),
      "Clearance of the first Fresnel zone in exact geometry: Worst 3.11 mi: clearance 88.8 ft, 96 % of "
      "zone 1: unknown, 2 voids (k 0.667, not yet 1.333).");
}

TEST_F(PageContentTest, NotesTellWhichStretchThePlotShows) {
  EXPECT_EQ(content().notes.back(),
            "The plot reaches 1.0 km beyond each station; its distances count from the start.");
  test::expandBetween(state, 3, 7);
  EXPECT_EQ(content().notes.back(),
            "The plot shows the stretch between the markers, its distances count from the start; all values "
            "are of the whole path.");
}

}  // namespace
}  // namespace zel
