#include "zeltool/link_budget/link_budget_settings.h"

#include <gtest/gtest.h>

#include "foundation/leading_number.h"
#include "profile/settings/settings_table.h"
#include "support/recording_settings_store.h"

namespace zel {
namespace {

using Term = LinkBudgetTerm;

TEST(LinkBudgetSettings, DefaultsAreTenWattsWithoutGainsAndLosses) {
  const test::MemorySettingsStore store;
  const LinkBudgetInputs inputs = readLinkBudget(store, "Planner");
  EXPECT_EQ(inputs[Term::kTransmitterPower], 40);
  EXPECT_EQ(inputs[Term::kTransmitterGain], 0);
  EXPECT_EQ(inputs[Term::kTransmitterLosses], 0);
  EXPECT_EQ(inputs[Term::kReceiverGain], 0);
  EXPECT_EQ(inputs[Term::kReceiverLosses], 0);
  EXPECT_EQ(inputs[Term::kThreshold], -100);
}

TEST(LinkBudgetSettings, WhatIsWrittenIsReadAgainUnderTheSameTitle) {
  test::MemorySettingsStore store;
  for (const LinkBudgetEntry& entry : linkBudgetEntries())
    writeLinkBudgetTerm(store, "Planner", entry.term, entry.defaultValue + 1.25);
  const LinkBudgetInputs own = readLinkBudget(store, "Planner");
  const LinkBudgetInputs other = readLinkBudget(store, "Another");
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    if (entry.term == Term::kPathLoss) continue;
    EXPECT_EQ(own[entry.term], entry.defaultValue + 1.25) << entry.name;
    EXPECT_EQ(other[entry.term], entry.defaultValue) << entry.name;
  }
}

TEST(LinkBudgetSettings, EachInputHasItsKeyAndThePathLossHasNone) {
  test::RecordingSettingsStore store;
  for (const LinkBudgetEntry& entry : linkBudgetEntries())
    writeLinkBudgetTerm(store, "Planner", entry.term, 1.5);
  EXPECT_EQ(store.writes, (std::vector<std::string>{"LinkBudget/TxPower=1.5", "LinkBudget/TxGain=1.5",
                                                    "LinkBudget/TxLosses=1.5", "LinkBudget/RxGain=1.5",
                                                    "LinkBudget/RxLosses=1.5", "LinkBudget/Threshold=1.5"}));
}

TEST(LinkBudgetSettings, WhatCannotBeUsedReadsAsTheDefaultAndStays) {
  test::MemorySettingsStore store;
  store.WriteSetting("Planner", "LinkBudget", "TxPower", "plenty");
  store.WriteSetting("Planner", "LinkBudget", "TxLosses", "-1");
  store.WriteSetting("Planner", "LinkBudget", "Threshold", "1e999");
  store.WriteSetting("Planner", "LinkBudget", "RxGain", " 3,5 ");
  const auto before = store.values;
  const LinkBudgetInputs inputs = readLinkBudget(store, "Planner");
  EXPECT_EQ(inputs[Term::kTransmitterPower], 40);
  EXPECT_EQ(inputs[Term::kTransmitterLosses], 0);
  EXPECT_EQ(inputs[Term::kThreshold], -100);
  EXPECT_EQ(inputs[Term::kReceiverGain], 3.5);
  EXPECT_EQ(store.values, before);
}

TEST(LinkBudgetSettings, StandInTheTableOfSettingsWithTheSameKeysRangesAndDefaults) {
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    if (entry.key.empty()) continue;  // the path loss, which is not kept
    const Setting* setting = findSetting("LinkBudget", entry.key);
    ASSERT_NE(setting, nullptr) << entry.key;
    EXPECT_EQ(setting->range->low, entry.low) << entry.key;
    EXPECT_EQ(setting->range->high, entry.high) << entry.key;
    EXPECT_EQ(leadingNumber(setting->defaultText), entry.defaultValue) << entry.key;
    EXPECT_EQ(setting->unit, entry.unit) << entry.key;
  }
}

}  // namespace
}  // namespace zel
