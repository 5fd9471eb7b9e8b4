#include "zeltool/link_budget/link_budget_calculation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "zeltool/link_budget/link_budget_settings.h"

namespace zel {
namespace {

using Term = LinkBudgetTerm;

LinkBudgetInputs inputs(double power, double txGain, double txLosses, double pathLoss, double rxGain,
                        double rxLosses, double threshold) {
  LinkBudgetInputs budget;
  budget[Term::kTransmitterPower] = power;
  budget[Term::kTransmitterGain] = txGain;
  budget[Term::kTransmitterLosses] = txLosses;
  budget[Term::kPathLoss] = pathLoss;
  budget[Term::kReceiverGain] = rxGain;
  budget[Term::kReceiverLosses] = rxLosses;
  budget[Term::kThreshold] = threshold;
  return budget;
}

TEST(LinkBudgetCalculation, AddsGainsAndTakesLossesOff) {
  // By hand: 43 + 12 - 3 = 52; 52 - 140 + 2.15 - 1.5 = -87.35; -87.35 + 104 = 16.65.
  const LinkBudgetResult result = computeLinkBudget(inputs(43, 12, 3, 140, 2.15, 1.5, -104));
  EXPECT_NEAR(result.radiatedPowerDbm, 52, 1e-12);
  EXPECT_NEAR(result.receivedPowerDbm, -87.35, 1e-12);
  EXPECT_NEAR(result.marginDb, 16.65, 1e-12);
}

TEST(LinkBudgetCalculation, AgreesWithThePowersMultipliedInWatts) {
  std::mt19937 random(20261121);
  std::uniform_real_distribution<double> decibels(0, 60);
  for (int i = 0; i < 1000; ++i) {
    const LinkBudgetInputs budget =
        inputs(decibels(random) - 30, decibels(random) - 20, decibels(random), 100 + decibels(random),
               decibels(random) - 20, decibels(random), -120 + decibels(random));
    const auto ratio = [&budget](Term term) { return std::pow(10.0, budget[term] / 10); };
    const double milliwatts = ratio(Term::kTransmitterPower) * ratio(Term::kTransmitterGain) *
                              ratio(Term::kReceiverGain) / ratio(Term::kTransmitterLosses) /
                              ratio(Term::kPathLoss) / ratio(Term::kReceiverLosses);
    const LinkBudgetResult result = computeLinkBudget(budget);
    // 64-bit arithmetic over seven factors: well within a billionth of a decibel.
    EXPECT_NEAR(result.receivedPowerDbm, 10 * std::log10(milliwatts), 1e-9);
    EXPECT_NEAR(result.marginDb, 10 * std::log10(milliwatts / ratio(Term::kThreshold)), 1e-9);
  }
}

TEST(LinkBudgetCalculation, EntriesStandInTheOrderOfTheirTerms) {
  std::size_t index = 0;
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    EXPECT_EQ(static_cast<std::size_t>(entry.term), index++);
    EXPECT_EQ(linkBudgetEntry(entry.term).name, entry.name);
    EXPECT_LE(entry.low, entry.defaultValue) << entry.name;
    EXPECT_GE(entry.high, entry.defaultValue) << entry.name;
  }
  EXPECT_EQ(index, kLinkBudgetTerms);
}

TEST(LinkBudgetCalculation, ReadsNumbersWithAPointOrAComma) {
  EXPECT_EQ(linkBudgetNumber("137.65"), 137.65);
  EXPECT_EQ(linkBudgetNumber("137,65"), 137.65);
  EXPECT_EQ(linkBudgetNumber(" -3 "), -3.0);
  EXPECT_EQ(linkBudgetNumber("+2"), 2.0);
  EXPECT_EQ(linkBudgetNumber("1e2"), 100.0);
  EXPECT_EQ(linkBudgetNumber(".5"), .5);
}

TEST(LinkBudgetCalculation, TakesNothingElseForANumber) {
  for (const char* text :
       {"", " ", "-", "abc", "12 dB", "1,000.5", "1,2,3", "1.2.3", "nan", "inf", "1e400", "0x10"})
    EXPECT_EQ(linkBudgetNumber(text), std::nullopt) << text;
}

TEST(LinkBudgetCalculation, AcceptsBothEndsOfARangeAndNothingBeyond) {
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    EXPECT_EQ(acceptedValue(entry, std::to_string(entry.low)), entry.low) << entry.name;
    EXPECT_EQ(acceptedValue(entry, std::to_string(entry.high)), entry.high) << entry.name;
    EXPECT_EQ(acceptedValue(entry, std::to_string(entry.low - 0.01)), std::nullopt) << entry.name;
    EXPECT_EQ(acceptedValue(entry, std::to_string(entry.high + 0.01)), std::nullopt) << entry.name;
  }
}

TEST(LinkBudgetCalculation, SaysWhatAnInputNeeds) {
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kTransmitterPower)),
            "Transmitter power: enter a number from -60 to 100 dBm.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kTransmitterGain)),
            "Transmitter antenna gain: enter a number from -50 to 100 dBi.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kTransmitterLosses)),
            "Transmitter losses: enter a number from 0 to 200 dB.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kPathLoss)), "Path loss: enter a number from -100 to 1000 dB.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kReceiverGain)),
            "Receiver antenna gain: enter a number from -50 to 100 dBi.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kReceiverLosses)),
            "Receiver losses: enter a number from 0 to 200 dB.");
  EXPECT_EQ(requirement(linkBudgetEntry(Term::kThreshold)),
            "Receiver threshold: enter a number from -200 to 100 dBm.");
}

// P = 1 mW x 10^(dBm / 10), by definition.
TEST(LinkBudgetCalculation, ShowsPowersInWatts) {
  EXPECT_EQ(wattText(40), "10 W");
  EXPECT_EQ(wattText(30), "1 W");
  EXPECT_EQ(wattText(33), "2 W");  // 1.995 W
  EXPECT_EQ(wattText(36), "3.98 W");
  EXPECT_EQ(wattText(0), "1 mW");
  EXPECT_EQ(wattText(14), "25.1 mW");
  EXPECT_EQ(wattText(24), "251 mW");
  EXPECT_EQ(wattText(60), "1 kW");
  EXPECT_EQ(wattText(100), "10 MW");
  EXPECT_EQ(wattText(-30), "1 \xC2\xB5W");
  EXPECT_EQ(wattText(-60), "1 nW");
}

TEST(LinkBudgetCalculation, RoundsUpToTheNextPrefixAndNotToAThousand) {
  EXPECT_EQ(wattText(29.9999), "1 W");
  EXPECT_EQ(wattText(59.9999), "1 kW");
  EXPECT_EQ(wattText(-0.0001), "1 mW");
}

TEST(LinkBudgetCalculation, TheVerdictFollowsTheMarginAsItIsShown) {
  EXPECT_EQ(verdictText(2.35), "The link holds: 2.35 dB above the threshold.");
  EXPECT_EQ(verdictText(-17.6), "The link fails: 17.60 dB below the threshold.");
  EXPECT_EQ(verdictText(0), "The link is on the edge: exactly at the threshold.");
  EXPECT_EQ(verdictText(0.004), "The link is on the edge: exactly at the threshold.");
  EXPECT_EQ(verdictText(-0.004), "The link is on the edge: exactly at the threshold.");
  EXPECT_EQ(verdictText(0.006), "The link holds: 0.01 dB above the threshold.");
  EXPECT_EQ(verdictText(-0.006), "The link fails: 0.01 dB below the threshold.");
}

TEST(LinkBudgetCalculation, ResultsHaveTwoDecimalsAndNoNegativeZero) {
  EXPECT_EQ(decibelText(-97.654), "-97.65");
  EXPECT_EQ(decibelText(3), "3.00");
  EXPECT_EQ(decibelText(-0.001), "0.00");
}

}  // namespace
}  // namespace zel
