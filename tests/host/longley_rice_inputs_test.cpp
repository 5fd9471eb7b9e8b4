#include "command_line/longley_rice_inputs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zel::host {
namespace {

Levels levels(std::vector<double> values) { return levelsOf("confidence", values); }

std::string refusal(const std::vector<double>& values) {
  try {
    levels(values);
  } catch (const InputProblem& problem) {
    EXPECT_EQ(problem.key(), "confidence");
    return problem.what();
  }
  return {};
}

TEST(Levels, BelowOneAreFractionsWithoutANote) {
  EXPECT_EQ(levels({0.5, 0.01, 0.999}).fractions, (std::vector<double>{0.5, 0.01, 0.999}));
  EXPECT_TRUE(levels({0.5}).notes.empty());
}

TEST(Levels, AreAllPercentWhenOneIsAboveOne) {
  const std::vector<std::string> note{"confidence: the levels are taken as percent"};
  EXPECT_EQ(levels({50}).fractions, (std::vector<double>{0.5}));
  EXPECT_EQ(levels({1, 50, 99, 50}).fractions, (std::vector<double>{0.01, 0.5, 0.99, 0.5}));
  EXPECT_EQ(levels({1, 50, 99, 50}).notes, note);
  EXPECT_EQ(levels({1.5}).notes, note);
}

TEST(Levels, OnBothSidesOfOneAreRefused) {
  EXPECT_EQ(refusal({0.5, 5, 50}),
            "0.5 beside 50 could be a fraction or percent; write all levels as fractions, 0.5 for 50 %");
  EXPECT_EQ(refusal({50, 1, 0.1}),
            "0.1 beside 50 could be a fraction or percent; write all levels as fractions, 0.5 for 50 %");
}

TEST(Levels, OfOneAreRefusedUnlessAnotherSaysThatItIsPercent) {
  const std::string wanted = "1 could be 1 % or the whole; write 0.01 for 1 %";
  EXPECT_EQ(refusal({1}), wanted);
  EXPECT_EQ(refusal({1, 1}), wanted);
  EXPECT_EQ(refusal({0.5, 1}), wanted);
}

TEST(Levels, OfNoFractionAreRefusedFirst) {
  EXPECT_EQ(refusal({}), "there is no level in the list");
  EXPECT_EQ(refusal({0.5, 50, 0}).find("0 is no level; give a fraction"), 0U);
  EXPECT_EQ(refusal({1, 100}).find("100 is no level"), 0U);
  EXPECT_EQ(refusal({-0.5}).find("-0.5 is no level"), 0U);
  EXPECT_EQ(refusal(std::vector<double>(1001, 0.5)), "there are more than 1000 levels");
  EXPECT_EQ(levels(std::vector<double>(1000, 0.5)).fractions.size(), 1000U);
}

TEST(Levels, OfATextAreSeparatedByOneComma) {
  EXPECT_EQ(parseLevels("reliability", " 0.5 ,+0.9").fractions, (std::vector<double>{0.5, 0.9}));
  for (const char* text : {"0.5,,0.9", ",0.5", "0.5,", "0.5, ,0.9"}) {
    try {
      parseLevels("reliability", text);
      FAIL() << text;
    } catch (const InputProblem& problem) {
      EXPECT_EQ(problem.what(),
                '"' + std::string(text) + "\" has an empty level; put one comma between two levels");
    }
  }
}

}  // namespace
}  // namespace zel::host
