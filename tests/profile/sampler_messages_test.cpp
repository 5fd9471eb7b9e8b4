#include "profile/sampling/sampler_messages.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(SamplerMessages, StatusesOneToFourHaveTheirTextIconAndFlag) {
  struct {
    int status;
    const char* text;
    MessageIcon icon;
    bool terrainError;
  } const rows[] = {
      {1, "Configuration Error.", MessageIcon::kCritical, false},
      {2, "Some or all of the terrain data is invalid!", MessageIcon::kInformation, true},
      {3, "Over Range Error.", MessageIcon::kCritical, false},
      {4, "Under Range Error.", MessageIcon::kCritical, false},
  };
  for (const auto& row : rows) {
    const SamplerMessage* message = samplerMessage(row.status);
    ASSERT_NE(message, nullptr) << row.status;
    EXPECT_EQ(message->text, row.text);
    EXPECT_EQ(message->icon, row.icon);
    EXPECT_EQ(message->terrainError, row.terrainError);
  }
}

TEST(SamplerMessages, EveryOtherStatusHasNone) {
  for (const int status : {0, 5, 6, 100, -1}) EXPECT_EQ(samplerMessage(status), nullptr) << status;
}

TEST(SamplerMessages, AreFailuresWithNumbersOfTheirOwnWhereThereIsNoWindow) {
  for (const int status : {1, 2, 3, 4}) {
    const RuntimeError error = samplerFailure(*samplerMessage(status));
    EXPECT_EQ(error.number(), 1000 + status);
    EXPECT_EQ(error.description(), samplerMessage(status)->text);
  }
}

TEST(SamplerMessages, BoxesStandUnderProfileErrorWithOneButton) {
  const MessageBoxRequest box = profileErrorBox(kUnderRangeText, MessageIcon::kCritical);
  EXPECT_EQ(box.text, "Under Range Error.");
  EXPECT_EQ(box.title, "Profile Error");
  EXPECT_EQ(box.icon, MessageIcon::kCritical);
  EXPECT_EQ(box.buttons, MessageButtons::kOk);
}

}  // namespace
}  // namespace zel
