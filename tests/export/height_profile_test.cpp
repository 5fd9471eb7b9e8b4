#include "export/height_profile.h"

#include <gtest/gtest.h>

#include "export_state.h"

namespace zel {
namespace {

using test::exportableState;
using Lines = std::vector<std::string>;

Lines linesOf(const ProfileViewState& state, const NumberStyle& numbers = {}) {
  test::KeptLines kept;
  writeHeightProfile(test::exportOf(state, numbers), kept.sink());
  return kept.lines;
}

std::vector<std::string> fieldsOfPoint(const ProfileViewState& state, std::size_t point) {
  return test::fieldsOf(linesOf(state).at(5 + point));
}

TEST(HeightProfile, HasSummaryMarkersAndALineForEachSample) {
  const Lines lines = linesOf(exportableState());
  ASSERT_EQ(lines.size(), 17U);
  const DisplayUnits units = unitsFor(Init_GUC(), 0);
  EXPECT_EQ(lines[0], summaryTitles(units));
  EXPECT_EQ(lines[1], ", 36.5, -84.25, 36.6, -84.25, 10, 0, 111, 101, 116, 1.33, 100, 950, NAD-83");
  EXPECT_EQ(lines[2], markerTitles(units));
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4], "");
  EXPECT_EQ(lines[5], pointTitles(units));
  EXPECT_EQ(lines[6], "1, 0, 36.49, -84.25, 101, 121, 130, 0");
  EXPECT_EQ(lines[7], "2, 1, 36.50091, -84.25, 102, 122, 132, 0.5");
  EXPECT_EQ(lines[16], "11, 10, 36.59909, -84.25, 111, 131, 150, 5");
}

TEST(HeightProfile, LeavesTheDatumEmptyBeforeTheHostHasSetIt) {
  ExportProfile profile = test::exportOf(exportableState());
  profile.datum.clear();
  test::KeptLines kept;
  writeHeightProfile(profile, kept.sink());
  EXPECT_TRUE(kept.lines[1].ends_with(", 950, ")) << kept.lines[1];
}

// The factors of feet and miles, from their definition: 1 / 0.3048 and 1000 / (0.3048 x 5280).
TEST(HeightProfile, UnitsChangeTitlesHeightsAndDistancesOnly) {
  ProfileViewState state = exportableState();
  test::placeMarker(state.leftMarker, 4.5F, {36.535, -84.25}, 77.25F);
  const Lines metric = linesOf(state);
  test::useFeetAndMiles(state);
  const Lines imperial = linesOf(state);
  ASSERT_EQ(imperial.size(), metric.size());
  EXPECT_EQ(imperial[1],
            ", 36.5, -84.25, 36.6, -84.25, 6.21371192237334, 0, 364.173228346457, 331.364829396325, "
            "380.577427821522, 1.33, 100, 950, NAD-83");
  EXPECT_EQ(imperial[3],
            "'Left Marker', 36.535, -84.25, 2.17479917283067, 253.444881889764, 3266.07611548556, "
            "449.475065616798");
  EXPECT_EQ(imperial[7],
            "2, 0.621371192237334, 36.50091, -84.25, 334.645669291339, 400.262467191601, 433.070866141732, "
            "1.64041994750656");
  EXPECT_EQ(imperial[5], pointTitles(unitsFor(Init_GUC(), 1)));
}

TEST(HeightProfile, TakesTheUsersDecimalSeparator) {
  const Lines lines = linesOf(exportableState(), test::commaStyle());
  EXPECT_EQ(lines[1], ", 36,5, -84,25, 36,6, -84,25, 10, 0, 111, 101, 116, 1,33, 100, 950, NAD-83");
  EXPECT_EQ(lines[7], "2, 1, 36,50091, -84,25, 102, 122, 132, 0,5");
}

TEST(HeightProfile, NumbersAreWrittenByTheirTypes) {
  ProfileViewState state = exportableState();
  state.path.azimuth = 1.0 / 3;
  state.inputs.k = 4.0F / 3;
  state.elevation[1] = 101.1F;
  const Lines lines = linesOf(state);
  EXPECT_NE(lines[1].find(", 0.333333333333333, "), std::string::npos) << lines[1];
  EXPECT_NE(lines[1].find(", 1.333333, "), std::string::npos) << lines[1];
  EXPECT_EQ(fieldsOfPoint(state, 1)[4], "101.099998474121") << "a single times the factor is a double";
}

TEST(HeightProfile, ThePercentageIsThatOfThePanel) {
  for (int percent = 0; percent <= 100; ++percent) {
    ProfileViewState state = exportableState();
    state.inputs.fresnelFraction = static_cast<float>(percent) / 100.0F;
    EXPECT_EQ(test::fieldsOf(linesOf(state)[1])[11], std::to_string(percent));
  }
}

TEST(HeightProfile, WithoutAFresnelLineItsColumnIsTheLineOfSight) {
  ProfileViewState state = exportableState();
  state.fresnel = {};
  const Lines lines = linesOf(state);
  EXPECT_EQ(lines[6], "1, 0, 36.49, -84.25, 101, 130, 130, 0");
  EXPECT_EQ(lines[16], "11, 10, 36.59909, -84.25, 111, 150, 150, 5");
}

// --- markers ---

TEST(HeightProfile, MarkersHaveTheirLinesAboveThePoints) {
  ProfileViewState state = exportableState();
  test::placeMarker(state.leftMarker, 4.5F, {36.535, -84.25}, 77.25F);
  test::placeMarker(state.rightMarker, 8, {36.57, -84.5}, 88);
  const Lines lines = linesOf(state);
  // d = 3.5, k = 4.5 to the even 4: 124 + 3.5 (124 + 125 / 1); the line of sight goes by x: 128 + 2 x 4.5.
  EXPECT_EQ(lines[3], "'Left Marker', 36.535, -84.25, 3.5, 77.25, 995.5, 137");
  // d = 7, k = 8: 128 + 7 (128 + 129 / 1); 128 + 2 x 8.
  EXPECT_EQ(lines[4], "'Right Marker', 36.57, -84.5, 7, 88, 1927, 144");
  EXPECT_EQ(lines[5], pointTitles(state.inputs.units));
}

TEST(HeightProfile, TheMarkersSampleIsRoundedHalfToEven) {
  ProfileViewState state = exportableState();
  // d = 4.5, k = 5.5 to the even 6: 126 + 4.5 (126 + 127 / 1).
  test::placeMarker(state.rightMarker, 5.5F, {36.545, -84.25}, 77);
  EXPECT_EQ(test::fieldsOf(linesOf(state)[4])[5], "1264.5");
}

TEST(HeightProfile, TheMarkersFresnelRuleDividesOnlyTheSecondHeightByTheSpacing) {
  ProfileViewState state = exportableState();
  state.path.spacing = 0.5;
  // Everything but the rule stands on an x0 of 0.5: d = 1.5, k = 4: 124 + 1.5 (124 + 125 / 0.5).
  test::placeMarker(state.leftMarker, 2, {36.5, -84.25}, 77);
  EXPECT_EQ(test::fieldsOf(linesOf(state)[3])[5], "685");
}

TEST(HeightProfile, AMarkerOnOrBeforeTheStartHasAnEmptyLine) {
  ProfileViewState state = exportableState();
  test::placeMarker(state.leftMarker, 1, {36.5, -84.25}, 77);
  test::placeMarker(state.rightMarker, 0.5F, {36.495, -84.25}, 77);
  const Lines lines = linesOf(state);
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4], "");
  EXPECT_EQ(lines.size(), 17U);
}

TEST(HeightProfile, AClearedMarkerHasAnEmptyLine) {
  ProfileViewState state = exportableState();
  test::placeMarker(state.leftMarker, 4.5F, {36.535, -84.25}, 77.25F);
  state.leftMarker.shown = false;
  state.leftMarker.keptX = 0;
  EXPECT_EQ(linesOf(state)[3], "");
}

TEST(HeightProfile, AMarkerSoNearTheEndThatASampleIsMissingIsAnIndexFailure) {
  for (const bool withFresnelLine : {true, false}) {
    ProfileViewState state = exportableState();
    if (!withFresnelLine) state.fresnel = {};
    test::placeMarker(state.rightMarker, 10.5F, {36.595, -84.25}, 77);  // k = 10
    EXPECT_EQ(linesOf(state).size(), 17U);

    test::placeMarker(state.rightMarker, 10.75F, {36.5975, -84.25}, 77);  // k = 11
    test::KeptLines kept;
    try {
      writeHeightProfile(test::exportOf(state), kept.sink());
      FAIL() << "sample 12 is beyond the line";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 9);
    }
    EXPECT_EQ(kept.lines.size(), 4U) << "what was written before the failure";
  }
}

// --- expanded view ---

TEST(HeightProfile, AnExpandedViewCountsFromItsFirstSample) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  const Lines lines = linesOf(state);
  ASSERT_EQ(lines.size(), 12U);
  EXPECT_EQ(lines[6], "1, 0, 36.50091, -84.25, 102, 122, 132, 0");
  EXPECT_EQ(lines[11], "6, 5, 36.55545, -84.25, 107, 127, 142, 2.5");
  EXPECT_EQ(lines[1], linesOf(exportableState())[1]) << "the summary is that of the whole path";
}

TEST(HeightProfile, AnExpandedViewBeyondTheStationsHasNoPoints) {
  ProfileViewState state = exportableState();
  state.path.lastIndex = 6;
  test::expandBetween(state, 9.5F, 11.5F);
  state.leftMarker.keptX = state.rightMarker.keptX = 0;
  EXPECT_EQ(linesOf(state).size(), 6U);
}

TEST(HeightProfile, TheLineOfSightOfASampleGoesByItsNumberInThePath) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3.5F, 6.25F);
  const std::string expanded = fieldsOfPoint(state, 1)[6];
  state.expanded = false;
  EXPECT_EQ(fieldsOfPoint(state, 2)[6], expanded);
}

TEST(HeightProfile, TheStepOfTheLineOfSightIsHeldInSinglePrecision) {
  ProfileViewState state = exportableState();
  state.path.spacing = 0.37;  // is not a single: the product is rounded, not its factor
  state.lineOfSight = {130, 130.2F, 0.3F};
  const double step = double{static_cast<float>(double{0.3F} * 0.37)};
  const double atStart = double{static_cast<float>(130 - double{0.3F} * 0.37)};
  EXPECT_EQ(fieldsOfPoint(state, 11)[6], generalNumber(11 * step + atStart));
}

// --- failures ---

TEST(HeightProfile, GroundThatDoesNotReachTheEndIsAnIndexFailureAtItsLine) {
  ExportProfile profile = test::exportOf(exportableState());
  profile.state.elevation = SampleArray<float>(8, 100.0F);
  test::KeptLines kept;
  EXPECT_THROW(writeHeightProfile(profile, kept.sink()), RuntimeError);
  EXPECT_EQ(kept.lines.size(), 6U + 8U);
}

}  // namespace
}  // namespace zel
