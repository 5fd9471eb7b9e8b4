#include "export/loss_table.h"

#include <gtest/gtest.h>

#include <random>

#include "export_state.h"
#include "models/longrice/calc_itm.h"

namespace zel {
namespace {

using Lines = std::vector<std::string>;

Lines tableOf(const ProfileViewState& state, const NumberStyle& numbers = {}) {
  test::KeptLines kept;
  writeLossTable(test::exportOf(state, numbers), InitNormalDist(), kept.sink());
  return kept.lines;
}

// The table as the model's fixed argument list gives it: element (c, r) is losses[c + 99 r], both from 0.
std::vector<double> lossesByArgumentList(const ProfileViewState& state) {
  const NormalTable table = InitNormalDist();
  std::vector<double> deviates;
  for (std::int32_t percent = 1; percent <= 99; ++percent) deviates.push_back(table[percent]);
  std::vector<float> ground;
  for (std::int32_t i = state.path.firstIndex; i <= state.path.lastIndex; ++i)
    ground.push_back(state.elevation[i]);
  const ModelParameters& model = *state.model;
  constexpr std::size_t kCells = std::size_t{99} * 99;
  std::vector<double> losses(kCells);
  CalcITM(static_cast<std::int16_t>(ground.size()), static_cast<float>(state.path.spacing * 1000),
          ground.data(), state.inputs.antennaHeights[0], state.inputs.antennaHeights[1], model.polarization,
          model.climate, model.permittivity, model.conductivity, double{state.inputs.frequency},
          model.refractivity, deviates.data(), 99, deviates.data(), 99, losses.data());
  return losses;
}

TEST(LossTable, BeginsWithTheModelsParameters) {
  ProfileViewState state = test::exportableState();
  state.model = ModelParameters{0, 6, 15, 0.005, 301.25, 0, 0};
  const Lines lines = tableOf(state);
  ASSERT_EQ(lines.size(), 103U);
  EXPECT_EQ(lines[0],
            ", 'Ant Polarization', 'Radio Climate', 'Dielectric', 'Conductivity', 'Surf Refractivity'");
  EXPECT_EQ(lines[1], ", 'horizontal',  'Maritime Temperate, Over Land', 15, 0.005, 301.25, ");
  EXPECT_EQ(lines[2], ",'Confidence'");
}

TEST(LossTable, NamesEveryOtherPolarizationVertical) {
  ProfileViewState state = test::exportableState();
  state.model->polarization = 2;
  EXPECT_EQ(tableOf(state)[1], ", 'vertical',  'Continental Temperate', 15, 0.005, 301, ");
}

TEST(LossTable, LeavesAnUnknownClimateOutSoThatWhatFollowsMovesToTheLeft) {
  for (const std::int16_t code : {std::int16_t{0}, std::int16_t{8}}) {
    ProfileViewState state = test::exportableState();
    state.model->climate = code;
    EXPECT_EQ(tableOf(state)[1], ", 'horizontal', 15, 0.005, 301, ");
  }
}

TEST(LossTable, HasAColumnForEachReliabilityAndALineForEachConfidence) {
  const Lines lines = tableOf(test::exportableState());
  EXPECT_TRUE(lines[3].starts_with("'Reliability', 1, 2, 3, ")) << lines[3];
  EXPECT_TRUE(lines[3].ends_with(", 98, 99")) << lines[3];
  for (std::size_t confidence = 1; confidence <= 99; ++confidence) {
    const auto fields = test::fieldsOf(lines[3 + confidence]);
    ASSERT_EQ(fields.size(), 100U);
    EXPECT_EQ(fields[0], std::to_string(confidence));
  }
}

TEST(LossTable, EqualsTheModelsOwnTableToTheLastBit) {
  std::mt19937 random(20261121);
  std::uniform_real_distribution<float> height(0, 900);
  for (int run = 0; run < 20; ++run) {
    ProfileViewState state = test::exportableState();
    for (std::int32_t i = 1; i <= 12; ++i) state.elevation[i] = height(random);
    state.inputs.antennaHeights = {30, 12};
    state.model->climate = static_cast<std::int16_t>(1 + run % 7);
    state.model->polarization = static_cast<std::int16_t>(run % 2);
    const LossTable table = lossTable(state, InitNormalDist());
    const std::vector<double> expected = lossesByArgumentList(state);
    for (std::int32_t c = 1; c <= 99; ++c)
      for (std::int32_t r = 1; r <= 99; ++r)
        ASSERT_EQ(table.at(c, r), expected[static_cast<std::size_t>((c - 1) + 99 * (r - 1))])
            << "run " << run << ", confidence " << c << ", reliability " << r;
  }
}

TEST(LossTable, WritesTheLossOfALinesConfidenceAndAColumnsReliability) {
  ProfileViewState state = test::exportableState();
  state.elevation[6] = 400;
  const Lines lines = tableOf(state);
  const std::vector<double> losses = lossesByArgumentList(state);
  EXPECT_EQ(test::fieldsOf(lines[3 + 10])[90], generalNumber(losses[9 + 99 * 89]));
  EXPECT_EQ(test::fieldsOf(lines[3 + 90])[10], generalNumber(losses[89 + 99 * 9]));
  EXPECT_NE(losses[9 + 99 * 89], losses[89 + 99 * 9]) << "the two axes must differ for this to tell anything";
}

TEST(LossTable, CoversTheWholePathWhateverIsDrawn) {
  ProfileViewState state = test::exportableState();
  const Lines whole = tableOf(state);
  test::expandBetween(state, 3.5F, 6.25F);
  EXPECT_EQ(tableOf(state), whole);
}

TEST(LossTable, DoesNotDependOnTheUnits) {
  ProfileViewState state = test::exportableState();
  const Lines metric = tableOf(state);
  test::useFeetAndMiles(state);
  EXPECT_EQ(tableOf(state), metric);
}

TEST(LossTable, TakesTheUsersDecimalSeparator) {
  const Lines lines = tableOf(test::exportableState(), test::commaStyle());
  EXPECT_EQ(lines[1], ", 'horizontal',  'Continental Temperate', 15, 0,005, 301, ");
  EXPECT_EQ(lines[50].find('.'), std::string::npos);
  EXPECT_EQ(test::fieldsOf(lines[50]).size(), 100U);
}

TEST(LossTable, GrowsWithConfidenceAndReliability) {
  ProfileViewState state = test::exportableState();
  state.elevation[6] = 400;
  const LossTable table = lossTable(state, InitNormalDist());
  for (std::int32_t percent = 2; percent <= 99; ++percent) {
    EXPECT_GE(table.at(percent, 50), table.at(percent - 1, 50));
    EXPECT_GE(table.at(50, percent), table.at(50, percent - 1));
  }
  EXPECT_GT(table.at(99, 50), table.at(1, 50));
}

TEST(LossTable, AFailureOfTheModelComesAfterTheFourthLine) {
  ProfileViewState state = test::exportableState();
  state.model->permittivity = -1;
  test::KeptLines kept;
  EXPECT_THROW(writeLossTable(test::exportOf(state), InitNormalDist(), kept.sink()), RuntimeError);
  EXPECT_EQ(kept.lines.size(), 4U);
}

TEST(LossTable, WithoutParametersThereIsNoFirstLineEither) {
  ProfileViewState state = test::exportableState();
  state.model.reset();
  test::KeptLines kept;
  EXPECT_THROW(writeLossTable(test::exportOf(state), InitNormalDist(), kept.sink()), RuntimeError);
  EXPECT_TRUE(kept.lines.empty());
}

TEST(LossTable, IsMadeOfNoOtherNumberOfLosses) {
  EXPECT_THROW(LossTable(std::vector<double>(9800)), RuntimeError);
  std::vector<double> losses(9801);
  losses[98] = 1;  // confidence 99, reliability 1
  losses[99] = 2;  // confidence 1, reliability 2
  const LossTable table(losses);
  EXPECT_EQ(table.at(99, 1), 1);
  EXPECT_EQ(table.at(1, 2), 2);
}

TEST(LossTable, HasNoCellsBesideItsPercentages) {
  const LossTable table;
  EXPECT_THROW(table.at(0, 1), RuntimeError);
  EXPECT_THROW(table.at(1, 100), RuntimeError);
}

}  // namespace
}  // namespace zel
