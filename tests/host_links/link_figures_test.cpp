// The figures of a link, and what is told when one of them is missing.
#include "links/link_figures.h"

#include "list_checks.h"
#include "support/says.h"

namespace zel::host {
namespace {

LinkInput northLink() {
  LinkInput input;
  input.line = 7;
  input.placed = true;
  input.from = {36, -84};
  input.to = {36.5, -84};
  return input;
}

FigureOptions twoFactors() {
  FigureOptions options;
  options.factors = {{4.0 / 3, 4.0 / 3, ""}, {2.0 / 3, 2.0 / 3, "_k0.667"}};
  return options;
}

TEST(LinkFigures, AreThoseOfProfileAndLoss) {
  const LinkFigures figures = linkFigures(northLink(), flatPaths(), twoFactors());
  EXPECT_EQ(figures.error, "");
  EXPECT_EQ(figures.distanceKm, 50);
  EXPECT_EQ(figures.modeledDb, 140.125);
  ASSERT_EQ(figures.clearances.size(), 2U);
  EXPECT_DOUBLE_EQ(figures.clearances[0].k, 4.0 / 3);
  EXPECT_DOUBLE_EQ(figures.clearances[1].worst->clearancePercent, 40 * 2.0 / 3);
  EXPECT_TRUE(test::says(figures.notes, "a note of 50"));
  EXPECT_TRUE(test::says(figures.warnings, "beware of 7 things"));
}

TEST(LinkFigures, TakeTheFrequencyOfTheRowBeforeThatOfTheOptions) {
  FigureOptions options;
  options.frequencyMhz = 150;
  EXPECT_EQ(linkFigures(northLink(), flatPaths(), options).frequencyMhz, 150);
  LinkInput link = northLink();
  link.frequencyMhz = 7500;
  EXPECT_EQ(linkFigures(link, flatPaths(), options).frequencyMhz, 7500);
}

TEST(LinkFigures, OfABadRowAreItsErrorAndWhatNeedsNoGround) {
  LinkInput link = northLink();
  link.error = "h1: \"tall\" is no height";
  const LinkFigures figures = linkFigures(link, flatPaths(), twoFactors());
  EXPECT_EQ(figures.error, link.error);
  // Along a meridian from 36 to 36.5 degrees on WGS 84 (meridian arc by its series): 55.48 km.
  EXPECT_NEAR(*figures.distanceKm, 55.48, 0.01);
  EXPECT_FALSE(figures.freeSpaceDb || figures.modeledDb);
  EXPECT_EQ(figures.clearances.size(), 2U);
  EXPECT_STREQ(figures.clearances[1].verdict, "");
  link.placed = false;
  EXPECT_FALSE(linkFigures(link, flatPaths(), twoFactors()).distanceKm);
}

TEST(LinkFigures, KeepWhatTheLossHasWhenThereIsNoProfileAndTheOtherWayRound) {
  PathSource source = flatPaths();
  source.profiles = [](const PathProfileRequest&, const std::vector<std::optional<double>>&) {
    PathProfile profile;
    profile.status = 5;
    profile.error = "no ground under the start";
    return std::vector{profile};
  };
  const LinkFigures withoutProfile = linkFigures(northLink(), source, {});
  EXPECT_EQ(withoutProfile.error, "no ground under the start");
  EXPECT_EQ(withoutProfile.modeledDb, 140.125);
  source = flatPaths();
  source.loss = [](const PathLossRequest&) {
    PathLoss loss;
    loss.status = 5;
    loss.error = "the antenna is too low";
    return loss;
  };
  const LinkFigures withoutLoss = linkFigures(northLink(), source, {});
  EXPECT_EQ(withoutLoss.error, "no modeled loss: the antenna is too low");
  EXPECT_STREQ(withoutLoss.clearances[0].verdict, "marginal");
  EXPECT_FALSE(withoutLoss.modeledDb);
}

TEST(LinkFigures, AreCalledClearFromTheBoundThatIsTold) {
  PathProfile profile;
  profile.worst = PathObstacle{1, {}, 0, 1, 45};
  profile.verdict = PathVerdict::kMarginal;
  EXPECT_STREQ(verdictOf(profile, 60), "marginal");
  EXPECT_STREQ(verdictOf(profile, 45), "clear");
  EXPECT_STREQ(verdictOf(profile, 45.1), "marginal");
  EXPECT_STREQ(verdictOf(profile, 0), "clear");
  profile.worst->clearancePercent = 80;
  profile.verdict = PathVerdict::kClear;
  EXPECT_STREQ(verdictOf(profile, 100), "marginal");
}

TEST(LinkFigures, StayBlockedAndUnknownWhateverTheBound) {
  PathProfile profile;
  profile.worst = PathObstacle{1, {}, 0, 1, 80};
  profile.verdict = PathVerdict::kUnknown;
  EXPECT_STREQ(verdictOf(profile, 10), "unknown");
  profile.worst->clearancePercent = -3;
  profile.verdict = PathVerdict::kBlocked;
  EXPECT_STREQ(verdictOf(profile, 0), "blocked");
}

}  // namespace
}  // namespace zel::host
