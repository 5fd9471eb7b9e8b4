#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "foundation/runtime_error.h"
#include "support/temporary_folder.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel {
namespace {

using test::fileBytes;
using test::TemporaryFolder;
using test::writeBytes;

class DamagedSettings : public ::testing::Test {
 protected:
  IniSettingsStore makeStore() {
    return IniSettingsStore(folder_.path(),
                            [this](const std::string& message) { messages_.push_back(message); });
  }
  std::filesystem::path file() const { return folder_ / "Planner.ini"; }
  std::vector<std::filesystem::path> keptFiles() const {
    const std::regex name(R"(Planner\.ini\.damaged-\d{8}-\d{6}(-\d+)?)");
    std::vector<std::filesystem::path> kept;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      if (std::regex_match(entry.path().filename().string(), name)) kept.push_back(entry.path());
    return kept;
  }

  TemporaryFolder folder_;
  std::vector<std::string> messages_;
};

TEST_F(DamagedSettings, AreKeptBesideReportedOnceAndUsedAsFarAsTheyCanBeRead) {
  const std::string damaged = "[Profile]\nPrf_Per=50\nrubbish\nPrf_Max=1500\n";
  writeBytes(file(), damaged);
  IniSettingsStore store = makeStore();
  EXPECT_EQ(store.ReadSetting("Planner", "Profile", "Prf_Per", "d"), "50");
  EXPECT_EQ(store.ReadSetting("Planner", "Profile", "Prf_Max", "d"), "1500");
  const auto kept = keptFiles();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_EQ(fileBytes(kept[0]), damaged);
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_EQ(messages_[0],
            "The settings file " + file().string() +
                " is damaged: 1 line could not be read, the first is line 3 (it is no key=value). "
                "It was kept as " +
                kept[0].string() + ". 2 settings could be read and stay in use.");
  EXPECT_EQ(fileBytes(file()), "[Profile]\nPrf_Per=50\nPrf_Max=1500\n");
}

TEST_F(DamagedSettings, AreReportedToOneOfSeveralStoresOnly) {
  writeBytes(file(), "rubbish\n");
  EXPECT_EQ(makeStore().ReadSetting("Planner", "S", "k", "d"), "d");
  EXPECT_EQ(makeStore().ReadSetting("Planner", "S", "k", "d"), "d");
  EXPECT_EQ(messages_.size(), 1U);
  EXPECT_EQ(keptFiles().size(), 1U);
}

TEST_F(DamagedSettings, AreKeptBeforeAWriteChangesAnything) {
  const std::string damaged = "[S]\na=1\n\xFF\xFE\n";
  writeBytes(file(), damaged);
  IniSettingsStore store = makeStore();
  store.WriteSetting("Planner", "S", "b", "2");
  ASSERT_EQ(keptFiles().size(), 1U);
  EXPECT_EQ(fileBytes(keptFiles()[0]), damaged);
  EXPECT_EQ(fileBytes(file()), "[S]\na=1\nb=2\n");
  EXPECT_EQ(messages_.size(), 1U);
}

TEST_F(DamagedSettings, OfEveryKindAreKeptWhole) {
  const std::vector<std::string> kinds = {
      std::string(4096, '\0'),                // what some file systems leave after a power failure
      "\x89PNG\r\n\x1A\n",                    // another file altogether
      "[S]\nk=\xC3\n",                        // no UTF-8
      "{\"S\": {\"k\": 1}}\n",                // no INI text
      "[S]\nk=1\nj=12",                       // cut within a line
      "[S]\nk=1\n[Oth",                       // cut within a section name
      std::string("[S]\nk=1\n\0\0\0\n", 12),  // NUL bytes behind sound lines
      std::string(100000, 'x') + "\n",        // a line without end
  };
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    writeBytes(file(), kinds[i]);
    messages_.clear();
    IniSettingsStore store = makeStore();
    store.AllSettings("Planner");
    EXPECT_EQ(messages_.size(), 1U) << i;
    store.WriteSetting("Planner", "S", "new", "1");
    EXPECT_EQ(makeStore().ReadSetting("Planner", "S", "new", "d"), "1") << i;
    bool found = false;
    for (const auto& kept : keptFiles()) found = found || fileBytes(kept) == kinds[i];
    EXPECT_TRUE(found) << i;
    EXPECT_EQ(keptFiles().size(), i + 1) << "several within a second get names of their own";
  }
}

TEST_F(DamagedSettings, SaysSoWhenNothingCouldBeRead) {
  writeBytes(file(), "rubbish\n");
  makeStore().AllSettings("Planner");
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_NE(messages_[0].find("None of its settings could be read; the defaults take their place."),
            std::string::npos);
}

TEST_F(DamagedSettings, MovesAFolderOutOfTheFilesPlace) {
  std::filesystem::create_directories(file() / "inside");
  IniSettingsStore store = makeStore();
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "d");
  ASSERT_EQ(keptFiles().size(), 1U);
  EXPECT_TRUE(std::filesystem::exists(keptFiles()[0] / "inside"));
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_NE(messages_[0].find(keptFiles()[0].string()), std::string::npos);
  store.WriteSetting("Planner", "S", "k", "1");
  EXPECT_EQ(makeStore().ReadSetting("Planner", "S", "k", "d"), "1");
}

TEST_F(DamagedSettings, MovesAPipeOutOfTheFilesPlaceWithoutWaitingForIt) {
  ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
  IniSettingsStore store = makeStore();
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "d");
  EXPECT_EQ(keptFiles().size(), 1U);
}

TEST_F(DamagedSettings, MovesAFileOfSenselessSizeWithoutReadingIt) {
  writeBytes(file(), "[S]\nk=1\n");
  std::filesystem::resize_file(file(), std::uintmax_t{1} << 40U);
  IniSettingsStore store = makeStore();
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "d");
  ASSERT_EQ(keptFiles().size(), 1U);
  EXPECT_EQ(std::filesystem::file_size(keptFiles()[0]), std::uintmax_t{1} << 40U);
}

TEST_F(DamagedSettings, StayAsTheyAreWhileTheyCannotBeKeptBeside) {
  const std::string damaged = "[S]\nk=1\nrubbish\n";
  writeBytes(file(), damaged);
  // Without its lock, nothing in the folder is changed.
  std::filesystem::create_directory(folder_ / ".lock");
  IniSettingsStore store = makeStore();
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "1");
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "1");
  ASSERT_EQ(messages_.size(), 1U) << "once, not at each read";
  EXPECT_NE(messages_[0].find("It could not be kept under another name: Path/File access error"),
            std::string::npos)
      << messages_[0];
  EXPECT_THROW(store.WriteSetting("Planner", "S", "k", "2"), RuntimeError);
  EXPECT_EQ(fileBytes(file()), damaged);

  std::filesystem::remove(folder_ / ".lock");
  store.WriteSetting("Planner", "S", "k", "2");
  EXPECT_EQ(fileBytes(file()), "[S]\nk=2\n");
  ASSERT_EQ(keptFiles().size(), 1U);
  EXPECT_EQ(fileBytes(keptFiles()[0]), damaged);
}

TEST_F(DamagedSettings, LetTheReporterUseTheStore) {
  writeBytes(file(), "[S]\nk=1\nrubbish\n");
  std::string seen;
  IniSettingsStore* used = nullptr;
  IniSettingsStore store(folder_.path(),
                         [&](const std::string&) { seen = used->ReadSetting("Planner", "S", "k", "d"); });
  used = &store;
  store.ReadSetting("Planner", "S", "k", "d");
  EXPECT_EQ(seen, "1");
}

}  // namespace
}  // namespace zel
