#include "zeltool/link_budget/link_budget_report.h"

#include <gtest/gtest.h>

#include "zeltool/link_budget/link_budget_settings.h"

namespace zel {
namespace {

LinkBudgetInputs budget(double pathLoss) {
  LinkBudgetInputs inputs = defaultLinkBudget();
  inputs[LinkBudgetTerm::kPathLoss] = pathLoss;
  inputs[LinkBudgetTerm::kReceiverGain] = 2.15;
  return inputs;
}

TEST(LinkBudgetReport, HasEveryInputTheResultsTheVerdictAndTheSourceOfTheLoss) {
  EXPECT_EQ(linkBudgetReport(budget(137.65), 137.65),
            "Link budget\n"
            "Transmitter power         40 dBm (10 W)\n"
            "Transmitter antenna gain  0 dBi\n"
            "Transmitter losses        0 dB\n"
            "Path loss                 137.65 dB\n"
            "Receiver antenna gain     2.15 dBi\n"
            "Receiver losses           0 dB\n"
            "Receiver threshold        -100 dBm\n"
            "Radiated power (EIRP)     40.00 dBm\n"
            "Received power            -95.50 dBm\n"
            "Margin                    4.50 dB\n"
            "Verdict                   The link holds: 4.50 dB above the threshold.\n"
            "Source of the path loss   Modeled loss of the profile, 137.65 dB.\n");
}

TEST(LinkBudgetReport, TellsATypedLossFromTheModeledOne) {
  const std::string report = linkBudgetReport(budget(150), 137.65);
  EXPECT_NE(report.find("Path loss                 150 dB\n"), std::string::npos) << report;
  EXPECT_NE(report.find("Typed in; the modeled loss of the profile is 137.65 dB.\n"), std::string::npos)
      << report;
}

TEST(LinkBudgetReport, NamesTheSourceOfThePathLoss) {
  EXPECT_EQ(pathLossSource(137.65, 137.65), "Modeled loss of the profile, 137.65 dB.");
  EXPECT_EQ(pathLossSource(140.0, 137.65), "Typed in; the modeled loss of the profile is 137.65 dB.");
  EXPECT_EQ(pathLossSource({}, 137.65), "None; the modeled loss of the profile is 137.65 dB.");
  EXPECT_EQ(pathLossSource(140.0, {}), "Typed in; there is no modeled loss.");
  EXPECT_EQ(pathLossSource({}, {}), "There is no modeled loss: type a path loss in.");
}

}  // namespace
}  // namespace zel
