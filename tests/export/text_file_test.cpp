#include "export/text_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "foundation/runtime_error.h"
#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;
using test::exitCodeAsNobody;
using test::exitCodeWithLargestFile;
using test::fileBytes;
using test::TemporaryFolder;
using test::writeBytes;

constexpr int kDiskFull = 61, kPermissionDenied = 70, kAccessError = 75, kPathNotFound = 76;

void writeLine(const fs::path& path, std::string_view text) {
  TextFile file(path.string());
  file.line(text);
  file.write();
}

// The number of the error that writing gives; 0 when there is none.
int errorOf(const std::function<void()>& body) {
  try {
    body();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number();
  }
}

std::size_t entriesOf(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(TextFile, EndsItsLinesWithCrLf) {
  const TemporaryFolder folder;
  TextFile file((folder / "a.csv").string());
  file.line("one");
  file.line("");
  file.piece("t");
  file.piece("wo\r\n");
  file.write();
  EXPECT_EQ(fileBytes(folder / "a.csv"), "one\r\n\r\ntwo\r\n");
  EXPECT_EQ(entriesOf(folder.path()), 1U);
}

TEST(TextFile, KeepsBytesAsTheyAre) {
  const TemporaryFolder folder;
  writeLine(folder / "a.csv", "\xC3\xA9\xFF");
  EXPECT_EQ(fileBytes(folder / "a.csv"), "\xC3\xA9\xFF\r\n");
}

TEST(TextFile, ReplacesAnExistingFileEntirely) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", std::string(10000, 'x'));
  writeLine(folder / "a.csv", "new");
  EXPECT_EQ(fileBytes(folder / "a.csv"), "new\r\n");
}

TEST(TextFile, KeepsTheRightsOfTheFileThatItReplaces) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", "old");
  ASSERT_EQ(::chmod((folder / "a.csv").c_str(), 0640), 0);
  writeLine(folder / "a.csv", "new");
  EXPECT_EQ(fs::status(folder / "a.csv").permissions(), static_cast<fs::perms>(0640));
}

TEST(TextFile, LeavesTheDiskAsItIsUntilItIsWritten) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", "old");
  {
    TextFile file((folder / "a.csv").string());
    TextFile fresh((folder / "b.csv").string());
    file.line("new");
    EXPECT_EQ(fileBytes(folder / "a.csv"), "old");
    EXPECT_EQ(entriesOf(folder.path()), 1U);
  }
  EXPECT_EQ(fileBytes(folder / "a.csv"), "old") << "never written: nothing was changed";
  EXPECT_EQ(entriesOf(folder.path()), 1U);
}

TEST(TextFile, ANameMayBeAsLongAsTheSystemTakesIt) {
  const TemporaryFolder folder;
  const std::string longest = std::string(251, 'n') + ".csv";
  writeLine(folder / longest, "text");
  EXPECT_EQ(fileBytes(folder / longest), "text\r\n");
  EXPECT_EQ(errorOf([&] { writeLine(folder / (longest + "x"), "text"); }), kAccessError);
}

TEST(TextFile, ANameWithoutAFolderLiesInTheCurrentOne) {
  const TemporaryFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  writeLine("plain.csv", "text");
  fs::current_path(before);
  EXPECT_EQ(fileBytes(folder / "plain.csv"), "text\r\n");
}

TEST(TextFile, ANameMayBeBytesThatAreNoText) {
  const TemporaryFolder folder;
  const std::string longest(255, '\xBF');  // would all belong to one character
  writeLine(folder / longest, "text");
  EXPECT_EQ(fileBytes(folder / longest), "text\r\n");
  EXPECT_EQ(entriesOf(folder.path()), 1U);
}

// --- what cannot be written ---

TEST(TextFile, AFolderThatIsMissingIsToldBeforeAnythingIsComputed) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOf([&] { TextFile((folder / "none" / "a.csv").string()); }), kPathNotFound);
  writeBytes(folder / "file", "text");
  EXPECT_EQ(errorOf([&] { TextFile((folder / "file" / "a.csv").string()); }), kPathNotFound);
}

TEST(TextFile, AFolderIsNoFile) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "a.csv");
  EXPECT_EQ(errorOf([&] { TextFile((folder / "a.csv").string()); }), kAccessError);
  EXPECT_TRUE(fs::is_directory(folder / "a.csv"));
}

TEST(TextFile, TheErrorNamesTheFileAndTheSystemsReason) {
  const TemporaryFolder folder;
  try {
    const TextFile file((folder / "none" / "a.csv").string());
    FAIL() << "there is no such folder";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.description(), "Path not found: cannot write " + (folder / "none" / "a.csv").string() +
                                       " (No such file or directory)");
  }
}

TEST(TextFile, AFolderThatVanishesIsToldWhenItIsWritten) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "sub");
  TextFile file((folder / "sub" / "a.csv").string());
  file.line("text");
  fs::remove_all(folder / "sub");
  EXPECT_EQ(errorOf([&] { file.write(); }), kPathNotFound);
  EXPECT_FALSE(fs::exists(folder / "sub"));
}

TEST(TextFile, AFolderThatMayNotBeWrittenToTakesNoNewFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
  EXPECT_EQ(exitCodeAsNobody([&] { return errorOf([&] { TextFile((folder / "a.csv").string()); }); }),
            kPermissionDenied);
  EXPECT_EQ(entriesOf(folder.path()), 0U);
  ::chmod(folder.path().c_str(), 0755);
}

TEST(TextFile, AReadOnlyFileStaysAsItIs) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", "old");
  ASSERT_EQ(::chmod((folder / "a.csv").c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
  EXPECT_EQ(exitCodeAsNobody([&] { return errorOf([&] { writeLine(folder / "a.csv", "new"); }); }),
            kPermissionDenied);
  EXPECT_EQ(fileBytes(folder / "a.csv"), "old");
  EXPECT_EQ(entriesOf(folder.path()), 1U);
}

TEST(TextFile, AFullDiskLeavesWhatWasThereAndNothingBeside) {
  const TemporaryFolder folder;
  ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
  writeBytes(folder / "a.csv", "old");
  ASSERT_EQ(::chmod((folder / "a.csv").c_str(), 0666), 0);
  for (const char* name : {"a.csv", "fresh.csv"}) {
    EXPECT_EQ(exitCodeWithLargestFile(
                  1000, [&] { return errorOf([&] { writeLine(folder / name, std::string(5000, 'n')); }); }),
              kDiskFull)
        << name;
  }
  EXPECT_EQ(fileBytes(folder / "a.csv"), "old");
  EXPECT_EQ(entriesOf(folder.path()), 1U);
}

// --- where no file can be made beside ---

TEST(TextFile, AFileInALockedFolderIsWrittenInItsPlace) {
  const TemporaryFolder folder;
  for (const std::string& before : {std::string("old"), std::string(10000, 'o')}) {
    writeBytes(folder / "a.csv", before);
    ASSERT_EQ(::chmod((folder / "a.csv").c_str(), 0666), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    EXPECT_EQ(exitCodeAsNobody([&] { return errorOf([&] { writeLine(folder / "a.csv", "new text"); }); }), 0);
    EXPECT_EQ(fileBytes(folder / "a.csv"), "new text\r\n");
    ::chmod(folder.path().c_str(), 0755);
  }
}

TEST(TextFile, AFullDiskGivesAFileInALockedFolderItsOldTextBack) {
  const TemporaryFolder folder;
  writeBytes(folder / "a.csv", "old");
  ASSERT_EQ(::chmod((folder / "a.csv").c_str(), 0666), 0);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
  EXPECT_EQ(exitCodeWithLargestFile(
                1000, [&] { return errorOf([&] { writeLine(folder / "a.csv", std::string(5000, 'n')); }); }),
            kDiskFull);
  EXPECT_EQ(fileBytes(folder / "a.csv"), "old");
  ::chmod(folder.path().c_str(), 0755);
}

// Else an old text that could not be read would be given back as an empty one.
TEST(ContentOfFile, AnErrorInReadingIsNoEnd) {
  EXPECT_EQ(errorOf([] { contentOfFile("/proc/self/mem"); }), kAccessError) << "opens, and cannot be read";
}

// --- links, devices ---

TEST(TextFile, ALinkStaysAndTheFileBehindItIsReplaced) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "data");
  writeBytes(folder / "data" / "real.csv", "old");
  fs::create_symlink("data/real.csv", folder / "link.csv");
  fs::create_symlink("link.csv", folder / "link2.csv");
  writeLine(folder / "link2.csv", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link.csv"));
  EXPECT_TRUE(fs::is_symlink(folder / "link2.csv"));
  EXPECT_EQ(fileBytes(folder / "data" / "real.csv"), "new\r\n");
}

TEST(TextFile, ALinkToNoFileYetMakesThatFile) {
  const TemporaryFolder folder;
  fs::create_symlink(folder / "later.csv", folder / "link.csv");
  writeLine(folder / "link.csv", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link.csv"));
  EXPECT_EQ(fileBytes(folder / "later.csv"), "new\r\n");
}

TEST(TextFile, LinksInACircleAreNoFile) {
  const TemporaryFolder folder;
  fs::create_symlink("b.csv", folder / "a.csv");
  fs::create_symlink("a.csv", folder / "b.csv");
  EXPECT_EQ(errorOf([&] { TextFile((folder / "a.csv").string()); }), kAccessError);
}

TEST(TextFile, ADeviceIsWrittenToAndStaysADevice) {
  writeLine("/dev/null", "text");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(TextFile, ADeviceWithoutRoomIsAFullDisk) {
  EXPECT_EQ(errorOf([] { writeLine("/dev/full", "text"); }), kDiskFull);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(TextFile, StandardOutputThatIsAPipeIsWrittenTo) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  writeLine("/proc/self/fd/" + std::to_string(ends[1]), "text");
  char bytes[16] = {};
  EXPECT_EQ(::read(ends[0], bytes, sizeof bytes), 6);
  EXPECT_STREQ(bytes, "text\r\n");
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace zel
