#include "zeltool/settings_store/ini_settings_store.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "foundation/runtime_error.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

using test::fileBytes;
using test::TemporaryFolder;
using test::writeBytes;

IniSettingsStore quietStore(const std::filesystem::path& folder) {
  return IniSettingsStore(folder, [](const std::string& message) { ADD_FAILURE() << message; });
}

template <typename Call>
RuntimeError errorOf(Call call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error;
  }
  return RuntimeError(0, "nothing was raised");
}

TEST(IniSettingsStore, GivesTheDefaultWhenNothingIsStored) {
  const TemporaryFolder folder;
  const IniSettingsStore store = quietStore(folder.path() / "none");
  EXPECT_EQ(store.ReadSetting("Planner", "Profile", "Prf_Per", "50"), "50");
  EXPECT_TRUE(store.AllSettings("Planner").empty());
  EXPECT_FALSE(std::filesystem::exists(folder / "none")) << "reading makes no folder";
}

TEST(IniSettingsStore, ReadsBackWhatWasWritten) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "Profile", "Prf_Per", "50");
  EXPECT_EQ(store.ReadSetting("Planner", "Profile", "Prf_Per", "100"), "50");
  store.WriteSetting("Planner", "Profile", "Prf_Per", "60");
  EXPECT_EQ(store.ReadSetting("Planner", "Profile", "Prf_Per", "100"), "60");
  EXPECT_EQ(quietStore(folder.path()).ReadSetting("Planner", "Profile", "Prf_Per", "100"), "60");
}

// A mark that was left in the text became the file's own at the next writing, and the key lost it.
TEST(IniSettingsStore, KeepsAKeyThatBeginsWithAByteOrderMark) {
  const TemporaryFolder folder;
  const std::string key = "\xEF\xBB\xBF-";
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "", key, "1");
  store.WriteSetting("Planner", "", "other", "2");
  EXPECT_EQ(quietStore(folder.path()).ReadSetting("Planner", "", key, "none"), "1");
}

TEST(IniSettingsStore, TellsAStoredEmptyTextFromNone) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "Terrain", "Source1", "");
  EXPECT_EQ(store.ReadSetting("Planner", "Terrain", "Source1", "default"), "");
  EXPECT_EQ(quietStore(folder.path()).ReadSetting("Planner", "Terrain", "Source1", "default"), "");
}

TEST(IniSettingsStore, KeepsEachApplicationInAFileOfItsOwn) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  store.WriteSetting("planner", "S", "k", "2");
  store.WriteSetting("", "S", "k", "3");
  store.WriteSetting("../a/b", "S", "k", "4");
  store.WriteSetting("%", "S", "k", "5");
  EXPECT_EQ(fileBytes(folder / "Planner.ini"), "[S]\nk=1\n");
  EXPECT_EQ(fileBytes(folder / "%2e%2e%2fa%2fb.ini"), "[S]\nk=4\n");
  EXPECT_EQ(store.ReadSetting("planner", "S", "k", ""), "2");
  EXPECT_EQ(store.ReadSetting("", "S", "k", ""), "3");
  EXPECT_EQ(store.ReadSetting("%", "S", "k", ""), "5");
}

TEST(IniSettingsStore, TellsLongApplicationTitlesApart) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  const std::string title(1000, '\xE4');
  store.WriteSetting(title + "a", "S", "k", "1");
  store.WriteSetting(title + "b", "S", "k", "2");
  EXPECT_EQ(store.ReadSetting(title + "a", "S", "k", ""), "1");
  EXPECT_EQ(store.ReadSetting(title + "b", "S", "k", ""), "2");
}

TEST(IniSettingsStore, ReadsBackAnyTextInSectionKeyAndValue) {
  const TemporaryFolder folder;
  const std::vector<std::string> texts = {"plain",
                                          "",
                                          " ",
                                          " both ends ",
                                          "a/b",
                                          "a\\b\\",
                                          "100%",
                                          "%41",
                                          "a=b",
                                          "=",
                                          "[a]",
                                          "]",
                                          ";c",
                                          "#c",
                                          "line\r\nline",
                                          "\t",
                                          "\xC3\x84\xE2\x82\xAC\xF0\x9F\x97\xBB",
                                          "\"quoted\"",
                                          "a,b;c",
                                          "\xFF\xFE",
                                          "@Invalid()",
                                          std::string("nul\0inside", 10)};
  IniSettingsStore store = quietStore(folder.path());
  std::vector<StoredSetting> expected;
  for (const std::string& section : texts)
    for (const std::string& key : {texts[expected.size() % texts.size()], section + "k"})
      expected.push_back({section, key, texts[(expected.size() * 7) % texts.size()]});
  for (const StoredSetting& setting : expected)
    store.WriteSetting("Any", setting.section, setting.key, setting.value);
  const IniSettingsStore other = quietStore(folder.path());
  for (const StoredSetting& setting : expected) {
    EXPECT_EQ(store.ReadSetting("Any", setting.section, setting.key, "none"), setting.value);
    EXPECT_EQ(other.ReadSetting("Any", setting.section, setting.key, "none"), setting.value);
  }
}

TEST(IniSettingsStore, ListsAllSettingsBySectionAndKey) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "Settings", "DispUnits", "1");
  store.WriteSetting("Planner", "Profile", "Prf_Per", "50");
  store.WriteSetting("Planner", "Profile", "Prf_Max", "1000");
  store.WriteSetting("Other", "Profile", "Prf_Max", "7");
  const std::vector<StoredSetting> all = store.AllSettings("Planner");
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].section + "/" + all[0].key + "=" + all[0].value, "Profile/Prf_Max=1000");
  EXPECT_EQ(all[1].section + "/" + all[1].key + "=" + all[1].value, "Profile/Prf_Per=50");
  EXPECT_EQ(all[2].section + "/" + all[2].key + "=" + all[2].value, "Settings/DispUnits=1");
}

TEST(IniSettingsStore, SeesAtOnceWhatAnotherStoreWrote) {
  const TemporaryFolder folder;
  IniSettingsStore writer = quietStore(folder.path());
  const IniSettingsStore reader = quietStore(folder.path());
  for (int i = 0; i < 200; ++i) {
    // Values of one length within one tick of the file system's clock.
    const std::string value = std::to_string(100 + i);
    writer.WriteSetting("Planner", "S", "k", value);
    ASSERT_EQ(reader.ReadSetting("Planner", "S", "k", ""), value);
  }
}

TEST(IniSettingsStore, NeverGivesTwoStatesOfAFileTheSameStamp) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  const std::string file = store.fileOf("Planner").string();
  store.WriteSetting("Planner", "S", "k", "start");
  // Behind the file's time, where a coarse or corrected clock may be, only the order of the writes counts.
  timespec last{std::time(nullptr) + 3600, 999999998};
  const timespec times[2] = {last, last};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  for (int i = 0; i < 5; ++i) {
    store.WriteSetting("Planner", "S", "k", std::to_string(i));
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    const timespec now = status.st_mtim;
    EXPECT_TRUE(now.tv_sec > last.tv_sec || (now.tv_sec == last.tv_sec && now.tv_nsec > last.tv_nsec)) << i;
    last = now;
  }
}

TEST(IniSettingsStore, SeesAFileThatWasChangedOrRemovedByHand) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  writeBytes(store.fileOf("Planner"), "[S]\nk = 25\n");
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "25");
  std::filesystem::remove(store.fileOf("Planner"));
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "d");
  store.WriteSetting("Planner", "S", "j", "2");
  EXPECT_EQ(fileBytes(store.fileOf("Planner")), "[S]\nj=2\n");
}

TEST(IniSettingsStore, LeavesAloneAFileThatHoldsTheValueAlready) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  const auto before = std::filesystem::last_write_time(store.fileOf("Planner"));
  store.WriteSetting("Planner", "S", "k", "1");
  EXPECT_EQ(std::filesystem::last_write_time(store.fileOf("Planner")), before);
}

TEST(IniSettingsStore, MakesItsFolderForTheUserAlone) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path() / "a" / "b");
  store.WriteSetting("Planner", "S", "k", "1");
  struct stat status {};
  ASSERT_EQ(::stat((folder.path() / "a" / "b").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  ASSERT_EQ(::stat(store.fileOf("Planner").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(IniSettingsStore, KeepsTheRightsAndTheLinkOfAFile) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "kept");
  writeBytes(folder / "kept/settings", "[S]\nk=1\n");
  ::chmod((folder / "kept/settings").c_str(), 0644);
  IniSettingsStore store = quietStore(folder.path());
  std::filesystem::create_symlink(folder / "kept/settings", store.fileOf("Planner"));
  store.WriteSetting("Planner", "S", "k", "2");
  EXPECT_TRUE(std::filesystem::is_symlink(store.fileOf("Planner")));
  EXPECT_EQ(fileBytes(folder / "kept/settings"), "[S]\nk=2\n");
  struct stat status {};
  ASSERT_EQ(::stat((folder / "kept/settings").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST(IniSettingsStore, RaisesAccessErrorWhereAFileStandsInTheFoldersPlace) {
  const TemporaryFolder folder;
  writeBytes(folder / "file", "mine");
  IniSettingsStore store = quietStore(folder / "file");
  const RuntimeError writing = errorOf([&] { store.WriteSetting("Planner", "S", "k", "1"); });
  EXPECT_EQ(writing.number(), 75);
  EXPECT_NE(writing.description().find((folder / "file").string()), std::string::npos)
      << writing.description();
  EXPECT_EQ(errorOf([&] { store.ReadSetting("Planner", "S", "k", ""); }).number(), 75);
  EXPECT_EQ(errorOf([&] { store.AllSettings("Planner"); }).number(), 75);
  EXPECT_EQ(fileBytes(folder / "file"), "mine");
}

TEST(IniSettingsStore, RaisesAccessErrorWhereTheNewFileCannotBeMade) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  // A folder with something in it, where the new file is written first.
  std::filesystem::create_directories(folder / "Planner.ini.new/inside");
  EXPECT_EQ(errorOf([&] { store.WriteSetting("Planner", "S", "k", "2"); }).number(), 75);
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", ""), "1");
  EXPECT_EQ(fileBytes(store.fileOf("Planner")), "[S]\nk=1\n");
}

TEST(IniSettingsStore, RaisesPathNotFoundWithoutAnyFolder) {
  IniSettingsStore store = quietStore({});
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", "d"), "d");
  EXPECT_EQ(errorOf([&] { store.WriteSetting("Planner", "S", "k", "2"); }).number(), 76);
}

// In a process of its own, since a limit on file sizes would hit the test's own report too.
int exitCodeOf(void (*work)(const std::filesystem::path&), const std::filesystem::path& folder) {
  const pid_t child = ::fork();
  if (child == 0) {
    work(folder);
    ::_exit(99);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(IniSettingsStore, RaisesPermissionDeniedWhereTheUserMayNotWrite) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  ::chmod(store.fileOf("Planner").c_str(), 0444);
  ::chmod(folder.path().c_str(), 0555);
  const int code = exitCodeOf(
      [](const std::filesystem::path& path) {
        // The superuser may write everywhere, another user may not.
        constexpr uid_t kNobody = 65534;
        if (::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(97);
        IniSettingsStore refused(path, {});
        try {
          refused.WriteSetting("Planner", "S", "k", "2");
        } catch (const RuntimeError& error) {
          ::_exit(refused.ReadSetting("Planner", "S", "k", "") == "1" ? error.number() : 98);
        }
      },
      folder.path());
  EXPECT_EQ(code, 70);
  ::chmod(folder.path().c_str(), 0755);
}

TEST(IniSettingsStore, RaisesPermissionDeniedWhereTheUserMayNotRead) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  ::chmod(store.fileOf("Planner").c_str(), 0000);
  ::chmod(folder.path().c_str(), 0777);
  const int code = exitCodeOf(
      [](const std::filesystem::path& path) {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(97);
        const IniSettingsStore refused(path, {});
        try {
          refused.ReadSetting("Planner", "S", "k", "default");
        } catch (const RuntimeError& error) {
          ::_exit(error.number());
        }
      },
      folder.path());
  EXPECT_EQ(code, 70);
}

TEST(IniSettingsStore, RaisesDiskFullAndKeepsWhatWasStored) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  const std::string before = fileBytes(store.fileOf("Planner"));
  const int code = exitCodeOf(
      [](const std::filesystem::path& path) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{2000, 2000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        IniSettingsStore full(path, {});
        try {
          full.WriteSetting("Planner", "S", "large", std::string(5000, 'x'));
        } catch (const RuntimeError& error) {
          const bool kept = full.ReadSetting("Planner", "S", "k", "") == "1" &&
                            full.ReadSetting("Planner", "S", "large", "none") == "none";
          ::_exit(kept ? error.number() : 98);
        }
      },
      folder.path());
  EXPECT_EQ(code, 61);
  EXPECT_EQ(fileBytes(store.fileOf("Planner")), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "Planner.ini.new"));
}

TEST(IniSettingsStore, RefusesToGrowBeyondWhatItWouldReadBack) {
  const TemporaryFolder folder;
  IniSettingsStore store = quietStore(folder.path());
  store.WriteSetting("Planner", "S", "k", "1");
  const std::string tooLong(std::size_t{17} << 20U, 'x');
  EXPECT_EQ(errorOf([&] { store.WriteSetting("Planner", "S", "large", tooLong); }).number(), 61);
  EXPECT_EQ(store.ReadSetting("Planner", "S", "k", ""), "1");
}

TEST(IniSettingsStore, StandsInTheConfigurationFolderOfTheUser) {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  const std::string configBefore = config == nullptr ? "" : config;
  const char* home = std::getenv("HOME");
  const std::string homeBefore = home == nullptr ? "" : home;
  ::setenv("XDG_CONFIG_HOME", "/somewhere/config", 1);
  EXPECT_EQ(IniSettingsStore::defaultFolder(), "/somewhere/config/zelprofiler");
  ::setenv("XDG_CONFIG_HOME", "relative", 1);
  ::setenv("HOME", "/home/someone", 1);
  EXPECT_EQ(IniSettingsStore::defaultFolder(), "/home/someone/.config/zelprofiler");
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(IniSettingsStore::defaultFolder(), "/home/someone/.config/zelprofiler");
  if (config != nullptr) ::setenv("XDG_CONFIG_HOME", configBefore.c_str(), 1);
  if (home != nullptr) ::setenv("HOME", homeBefore.c_str(), 1);
}

}  // namespace
}  // namespace zel
