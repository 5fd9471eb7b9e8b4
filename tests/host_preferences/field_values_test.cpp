#include "preferences/field_values.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/environment_variable.h"
#include "support/temporary_folder.h"

namespace zel::host {
namespace {

TEST(FieldValues, ANumberIsTheOneThatATextBeginsWith) {
  EXPECT_EQ(leadingValue(" 301 N-units"), 301);
  EXPECT_EQ(leadingValue("+2.5e1x"), 25);
  EXPECT_EQ(leadingValue("-3"), -3);
  EXPECT_EQ(leadingValue("x3"), 0);
  EXPECT_EQ(leadingValue(""), 0);
  EXPECT_EQ(leadingValue("inf"), 0);
  EXPECT_EQ(leadingValue("nan"), 0);
}

TEST(FieldValues, TheSameNumberMayBeWrittenInSeveralWays) {
  EXPECT_TRUE(sameValue("15", "15.0"));
  EXPECT_TRUE(sameValue(" 0.005", "5e-3"));
  EXPECT_TRUE(sameValue("DMS", "DMS "));
  EXPECT_FALSE(sameValue("15", "15x"));
  EXPECT_FALSE(sameValue("", "0"));
}

TEST(FieldValues, AStoredLevelIsShownAsThePercentageThatTheModelTakes) {
  EXPECT_EQ(shownPercent("0.5"), "50");
  EXPECT_EQ(shownPercent("0.29"), "29");
  EXPECT_EQ(shownPercent("0.555"), "55.5");
  EXPECT_EQ(shownPercent("1"), "100");    // a fraction, not one percent
  EXPECT_EQ(shownPercent("90"), "90");    // above 1: a percentage
  EXPECT_EQ(shownPercent("9000"), "90");  // divided until it is a fraction
  EXPECT_EQ(shownPercent("0"), "1");      // what is too low is taken as one percent
  EXPECT_EQ(shownPercent("-4"), "1");
  EXPECT_EQ(shownPercent("none"), "1");
}

TEST(FieldValues, APercentageIsStoredAsAFraction) {
  for (int percent = 1; percent <= 99; ++percent) {
    const auto stored = storedPercent(std::to_string(percent));
    ASSERT_TRUE(stored);
    EXPECT_EQ(shownPercent(*stored), std::to_string(percent));
  }
  EXPECT_EQ(storedPercent("90"), "0.9");
  EXPECT_EQ(storedPercent("7"), "0.07");
}

// The table of deviates ends at 99 %: all of the situations, or of the time, cannot be promised.
TEST(FieldValues, APercentageIsAWholeNumberFromOneToNinetyNine) {
  for (const char* refused : {"0", "100", "50.5", "-5", "", "x", "5x", "1e400"})
    EXPECT_FALSE(storedPercent(refused)) << refused;
}

TEST(FieldValues, ColoursAreStoredWithBlueFirst) {
  EXPECT_EQ(storedColour("#ff0000"), "255");
  EXPECT_EQ(storedColour("0000FF"), "16711680");
  EXPECT_EQ(storedColour("#00ffff"), "16776960");
  EXPECT_EQ(shownColour("255"), "#ff0000");
  EXPECT_EQ(shownColour("16711935"), "#ff00ff");
  EXPECT_EQ(shownColour("65280"), "#00ff00");
  EXPECT_EQ(shownColour("1122867"), "#332211");
}

TEST(FieldValues, AColourThatIsNoneIsTakenAsTheNearestThatIs) {
  EXPECT_EQ(shownColour("-1"), "#000000");
  EXPECT_EQ(shownColour("99999999"), "#ffffff");
  EXPECT_EQ(shownColour("red"), "#000000");
}

TEST(FieldValues, AColourIsSixHexadecimalDigits) {
  for (const char* refused : {"", "#", "#fff", "#ff00000", "#ff00zz", "red", "##ff0000", "-ff000"})
    EXPECT_FALSE(storedColour(refused)) << refused;
}

// Contrast ratios published for these colours with white: 21, 1, 4.00, 8.59, 1.07, 1.25.
TEST(FieldValues, ContrastIsThatOfRelativeLuminances) {
  EXPECT_NEAR(contrastWithWhite("#000000"), 21, 1e-9);
  EXPECT_NEAR(contrastWithWhite("#ffffff"), 1, 1e-9);
  EXPECT_NEAR(contrastWithWhite("#ff0000"), 4.00, 0.005);
  EXPECT_NEAR(contrastWithWhite("#0000ff"), 8.59, 0.005);
  EXPECT_NEAR(contrastWithWhite("#ffff00"), 1.07, 0.005);
  EXPECT_NEAR(contrastWithWhite("#00ffff"), 1.25, 0.005);
}

TEST(FieldValues, PathsHaveSemicolonsBetweenThem) {
  EXPECT_EQ(pathsOf("/a;/b c; ;/d "), (std::vector<std::string>{"/a", "/b c", "/d"}));
  EXPECT_TRUE(pathsOf("").empty());
  EXPECT_EQ(joinedPaths({"/a", "/b c"}), "/a;/b c");
}

TEST(FieldValues, APathThatCouldNotBeReadBackIsRefused) {
  EXPECT_EQ(pathProblem("/srv/terrain"), "");
  EXPECT_NE(pathProblem("/srv/a;b").find("separates"), std::string::npos);
  EXPECT_NE(pathProblem("  "), "");
  EXPECT_NE(pathProblem("/srv/a "), "");
}

TEST(FieldValues, AProgramIsAnExecutableFileWithItsWholePath) {
  const test::TemporaryFolder folder;
  const std::string plain = (folder / "plain").string(), program = (folder / "program").string();
  test::writeBytes(plain, "");
  test::writeBytes(program, "");
  std::filesystem::permissions(plain, std::filesystem::perms::owner_read);
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  EXPECT_EQ(programProblem(program), "");
  EXPECT_EQ(programProblem(plain), "this is not a program that you may run");
  EXPECT_EQ(programProblem(folder.path().string()), "this is a folder, not a program");
  EXPECT_EQ(programProblem((folder / "none").string()), "there is no such file");
  EXPECT_EQ(programProblem("program"), "the whole path is needed, beginning with /");
}

TEST(FieldValues, AProgramIsFoundInTheFirstFolderOfPathThatHasIt) {
  const test::TemporaryFolder first, second;
  const std::string program = (second / "plotter").string();
  test::writeBytes(first / "plotter", "");
  std::filesystem::permissions(first / "plotter", std::filesystem::perms::owner_read);
  test::writeBytes(program, "");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  const test::EnvironmentVariable path("PATH",
                                       "relative::" + first.path().string() + ":" + second.path().string());
  EXPECT_EQ(programFound("plotter"), program);
  EXPECT_FALSE(programFound("drawer"));
  const test::EnvironmentVariable none("PATH", std::nullopt);
  EXPECT_FALSE(programFound("plotter"));
}

}  // namespace
}  // namespace zel::host
