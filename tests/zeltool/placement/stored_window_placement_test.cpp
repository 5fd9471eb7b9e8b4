#include "zeltool/placement/stored_window_placement.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/runtime_error.h"
#include "support/scripted_platform.h"

namespace zel {
namespace {

using test::MemorySettingsStore;

class WindowPlacementTest : public ::testing::Test {
 protected:
  WindowPlacementTest() { placement_.SetClientApp(makePropertyBag({{"Title", "Planner"}})); }

  std::shared_ptr<MemorySettingsStore> settings_ = std::make_shared<MemorySettingsStore>();
  StoredWindowPlacement placement_{settings_};
  std::int32_t left_ = 11;
  std::int32_t top_ = 22;
};

TEST_F(WindowPlacementTest, LeavesThePositionOfAWindowThatWasNeverStored) {
  placement_.Restore("frmProfile", left_, top_);
  EXPECT_EQ(left_, 11);
  EXPECT_EQ(top_, 22);
}

TEST_F(WindowPlacementTest, RestoresWhatWasStored) {
  std::int32_t left = -1200;
  std::int32_t top = 40;
  placement_.Store("frmProfile", left, top);
  EXPECT_EQ(left, -1200);
  EXPECT_EQ(top, 40);
  placement_.Restore("frmProfile", left_, top_);
  EXPECT_EQ(left_, -1200);
  EXPECT_EQ(top_, 40);
}

TEST_F(WindowPlacementTest, KeepsTheWindowsApartInTheSettings) {
  std::int32_t left = 1;
  std::int32_t top = 2;
  placement_.Store("frmProfile", left, top);
  left = 3;
  top = 4;
  placement_.Store("frmOptionsProfile", left, top);
  EXPECT_EQ(settings_->ReadSetting("Planner", "Windows", "frmProfile Left", ""), "1");
  EXPECT_EQ(settings_->ReadSetting("Planner", "Windows", "frmProfile Top", ""), "2");
  EXPECT_EQ(settings_->ReadSetting("Planner", "Windows", "frmOptionsProfile Left", ""), "3");
  EXPECT_EQ(settings_->ReadSetting("Planner", "Windows", "frmOptionsProfile Top", ""), "4");
}

TEST_F(WindowPlacementTest, TakesHalfAPositionOrOneThatIsNoNumberAsNone) {
  settings_->WriteSetting("Planner", "Windows", "frmProfile Left", "5");
  placement_.Restore("frmProfile", left_, top_);
  EXPECT_EQ(left_, 11);
  for (const std::string text : {"", "x", "5x", "99999999999", "1.5", "nan"}) {
    settings_->WriteSetting("Planner", "Windows", "frmProfile Top", text);
    placement_.Restore("frmProfile", left_, top_);
    EXPECT_EQ(left_, 11) << text;
    EXPECT_EQ(top_, 22) << text;
  }
  settings_->WriteSetting("Planner", "Windows", "frmProfile Top", " 7 ");
  placement_.Restore("frmProfile", left_, top_);
  EXPECT_EQ(left_, 5);
  EXPECT_EQ(top_, 7);
}

TEST_F(WindowPlacementTest, StoresUnderTheTitleThatTheClientHasNow) {
  const DispatchPtr client = makePropertyBag({{"Title", "One"}});
  placement_.SetClientApp(client);
  client->let("Title", "Two");
  placement_.Store("frmProfile", left_, top_);
  EXPECT_EQ(settings_->ReadSetting("Two", "Windows", "frmProfile Left", ""), "11");
}

TEST_F(WindowPlacementTest, RaisesAnErrorWithoutAClientOrAStore) {
  StoredWindowPlacement unbound(settings_);
  EXPECT_THROW(unbound.Restore("frmProfile", left_, top_), RuntimeError);
  EXPECT_THROW(unbound.Store("frmProfile", left_, top_), RuntimeError);
  settings_->failing = true;
  EXPECT_THROW(placement_.Restore("frmProfile", left_, top_), RuntimeError);
  EXPECT_THROW(placement_.Store("frmProfile", left_, top_), RuntimeError);
}

}  // namespace
}  // namespace zel
