// The values along a path as a spreadsheet takes them from the clipboard.
#include "export/copied_values.h"

#include <gtest/gtest.h>

#include <sstream>

#include "export/height_profile.h"
#include "export_state.h"

namespace zel {
namespace {

using test::exportableState;
using test::exportOf;

std::vector<std::string> copiedLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(CopiedValues, HasTitlesWithoutQuotesAndTabsBetweenTheColumns) {
  const std::string text = copiedValues(exportOf(exportableState()));
  EXPECT_EQ(copiedLines(text).front(),
            "Point\tDistance (km)\tLatitude\tLongitude\tGround AMSL (m)\tFresnel AMSL (m)\tLOS AMSL (m)\t"
            "Earth Rise (m)");
  EXPECT_EQ(text.back(), '\n');
  EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(CopiedValues, HasALineForEachSampleFromStationToStation) {
  const auto lines = copiedLines(copiedValues(exportOf(exportableState())));
  ASSERT_EQ(lines.size(), 12U);
  // Sample 1: ground 101 m, Fresnel line 121 m, line of sight 130 m at the start.
  EXPECT_EQ(lines[1], "1\t0\t36.49\t-84.25\t101\t121\t130\t0");
  // Sample 11: 10 km on, rise 5 m above that of the first.
  EXPECT_EQ(lines[11].substr(0, 6), "11\t10\t");
  EXPECT_EQ(lines[11].substr(lines[11].find("-84.25")), "-84.25\t111\t131\t150\t5");
}

TEST(CopiedValues, IsTheHeightProfilesBlockOfSamples) {
  ProfileViewState state = exportableState();
  test::expandBetween(state, 3, 7);
  test::useFeetAndMiles(state);
  const ExportProfile profile = exportOf(state, test::commaStyle());
  test::KeptLines written;
  writeHeightProfile(profile, written.sink());
  const auto lines = copiedLines(copiedValues(profile));
  ASSERT_EQ(lines.size(), written.lines.size() - 5);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::string joined;
    for (const std::string& field : test::fieldsOf(written.lines[i + 5]))
      joined += (joined.empty() ? "" : "\t") + field;
    EXPECT_EQ(lines[i], joined);
  }
  EXPECT_NE(lines[0].find("Distance (mi)"), std::string::npos);
}

TEST(CopiedValues, HasTitlesAloneForAStretchWithoutSamples) {
  ProfileViewState state = exportableState();
  state.path.firstIndex = state.path.extension = 5;
  test::expandBetween(state, 1, 2);  // both before the start
  EXPECT_EQ(copiedLines(copiedValues(exportOf(state))).size(), 1U);
}

TEST(CopiedValues, FailsWhereAnIndexIsOutsideItsArray) {
  ProfileViewState state = exportableState();
  state.fresnel = SampleArray<float>(5, 120.0F);
  state.curve = SampleArray<float>(5, 0.0F);
  EXPECT_THROW(copiedValues(exportOf(state)), RuntimeError);
}

}  // namespace
}  // namespace zel
