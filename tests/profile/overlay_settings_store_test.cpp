#include "profile/settings/overlay_settings_store.h"

#include <gtest/gtest.h>

#include "support/scripted_platform.h"

namespace zel {
namespace {

struct OverlayedStore : testing::Test {
  test::MemorySettingsStore stored;
  OverlaySettingsStore store{stored};
};

TEST_F(OverlayedStore, ValuesForOneRunWinOverTheStoredAndTheDefault) {
  stored.WriteSetting("Host", "Profile", "Prf_Per", "20");
  store.overlay("Profile", "Prf_Per", "80");
  store.overlay("Profile", "Prf_Max", "2000");
  EXPECT_EQ(store.ReadSetting("Host", "Profile", "Prf_Per", "100"), "80");
  EXPECT_EQ(store.ReadSetting("Other", "Profile", "Prf_Max", "1000"), "2000");
  EXPECT_EQ(store.ReadSetting("Host", "Profile", "Prf_Ele", "3"), "3");
}

TEST_F(OverlayedStore, AnEmptyValueForOneRunWinsToo) {
  stored.WriteSetting("Host", "Terrain", "Source3", "/maps");
  store.overlay("Terrain", "Source3", "");
  EXPECT_EQ(store.ReadSetting("Host", "Terrain", "Source3", "x"), "");
}

TEST_F(OverlayedStore, KnownNamesAreTakenInAnyCase) {
  store.overlay("profile", "prf_per", "80");
  store.overlay("mine", "own", "1");
  EXPECT_EQ(store.ReadSetting("Host", "Profile", "Prf_Per", "100"), "80");
  EXPECT_EQ(store.ReadSetting("Host", "mine", "own", ""), "1");
  EXPECT_EQ(store.ReadSetting("Host", "Mine", "Own", ""), "");
}

TEST_F(OverlayedStore, WritingAnOverlaidKeyLastsButLeavesTheRunAsItIs) {
  store.overlay("Profile", "Prf_Per", "80");
  store.WriteSetting("Host", "Profile", "Prf_Per", "33");
  EXPECT_EQ(stored.ReadSetting("Host", "Profile", "Prf_Per", ""), "33");
  EXPECT_EQ(store.ReadSetting("Host", "Profile", "Prf_Per", ""), "80");
}

TEST_F(OverlayedStore, OverlayingChangesNothingThatIsStored) {
  store.overlay("Profile", "Prf_Per", "80");
  EXPECT_TRUE(stored.values.empty());
}

TEST_F(OverlayedStore, ListsEverySettingOnceAndInOrder) {
  stored.WriteSetting("Host", "Settings", "DispUnits", "1");
  stored.WriteSetting("Host", "Profile", "Prf_Per", "20");
  store.overlay("Profile", "Prf_Per", "80");
  store.overlay("ITM", "iHor", "1");
  const std::vector<StoredSetting> all = store.AllSettings("Host");
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].section + "/" + all[0].key + "=" + all[0].value, "ITM/iHor=1");
  EXPECT_EQ(all[1].section + "/" + all[1].key + "=" + all[1].value, "Profile/Prf_Per=80");
  EXPECT_EQ(all[2].section + "/" + all[2].key + "=" + all[2].value, "Settings/DispUnits=1");
}

TEST_F(OverlayedStore, PassesOnWhatTheStoreThrows) {
  stored.failing = true;
  store.overlay("Profile", "Prf_Per", "80");
  EXPECT_EQ(store.ReadSetting("Host", "Profile", "Prf_Per", ""), "80");
  EXPECT_THROW(store.ReadSetting("Host", "Profile", "Prf_Max", ""), RuntimeError);
  EXPECT_THROW(store.WriteSetting("Host", "Profile", "Prf_Per", "1"), RuntimeError);
}

}  // namespace
}  // namespace zel
