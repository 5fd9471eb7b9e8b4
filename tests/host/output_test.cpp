#include "command_line/output.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "command_line/command_error.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;

class OutputFile : public testing::Test {
 protected:
  OutputFile() { fs::create_directories(folder_); }
  ~OutputFile() override { fs::remove_all(folder_); }

  static std::string read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_ = fs::temp_directory_path() / ("output_test_" + std::to_string(getpid()));
  fs::path file_ = folder_ / "out.csv";
};

TEST(FixedText, RoundsToItsDecimals) {
  EXPECT_EQ(fixed(1.23456, 3), "1.235");
  EXPECT_EQ(fixed(-1.5, 1), "-1.5");
  EXPECT_EQ(fixed(12, 0), "12");
}

TEST(FixedText, HasNoMinusBeforeAZero) {
  EXPECT_EQ(fixed(-0.0004, 3), "0.000");
  EXPECT_EQ(fixed(-0.0, 0), "0");
}

TEST(FixedText, IsEmptyForWhatIsNoNumber) {
  EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 3), "");
}

TEST(ShortestText, ReadsBackAsTheSameValue) {
  EXPECT_EQ(shortest(1.333), "1.333");
  EXPECT_EQ(shortest(950), "950");
  EXPECT_EQ(std::stod(shortest(1.0 / 3)), 1.0 / 3);
}

TEST_F(OutputFile, IsWrittenWholeAndLeavesNothingBesideIt) {
  writeFile(file_, [](std::ostream& out) { out << "new"; });
  EXPECT_EQ(read(file_), "new");
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(OutputFile, KeepsWhatWasThereWhenTheContentCannotBeMade) {
  writeFile(file_, [](std::ostream& out) { out << "old"; });
  EXPECT_THROW(writeFile(file_, [](std::ostream&) { throw std::runtime_error("no content"); }),
               std::runtime_error);
  EXPECT_EQ(read(file_), "old");
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(OutputFile, ReplacesTheFileThatALinkNames) {
  writeFile(file_, [](std::ostream& out) { out << "old"; });
  fs::create_symlink(file_, folder_ / "link.csv");
  writeFile(folder_ / "link.csv", [](std::ostream& out) { out << "new"; });
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.csv"));
  EXPECT_EQ(read(file_), "new");
}

TEST_F(OutputFile, IsReadableAsTheUsersMaskSays) {
  const mode_t before = umask(022);
  writeFile(file_, [](std::ostream& out) { out << "x"; });
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(OutputFile, KeepsTheRightsOfTheFileThatItReplaces) {
  writeFile(file_, [](std::ostream& out) { out << "old"; });
  fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write);
  writeFile(file_, [](std::ostream& out) { out << "new"; });
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OutputFile, IsMadeWhereALinkWithoutAFileLeads) {
  fs::create_symlink("out.csv", folder_ / "link.csv");
  writeFile(folder_ / "link.csv", [](std::ostream& out) { out << "new"; });
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.csv"));
  EXPECT_EQ(read(file_), "new");
}

TEST_F(OutputFile, RefusesARingOfLinksAndANameThatIsTooLong) {
  fs::create_symlink("b", folder_ / "a");
  fs::create_symlink("a", folder_ / "b");
  EXPECT_THROW(writeFile(folder_ / "a", [](std::ostream&) {}), CommandFailure);
  EXPECT_THROW(writeFile(folder_ / std::string(300, 'x'), [](std::ostream&) {}), CommandFailure);
}

TEST_F(OutputFile, SaysWhatIsWrongWithAPathThatCannotBeWritten) {
  EXPECT_THROW(writeFile(folder_, [](std::ostream&) {}), CommandFailure);
  EXPECT_THROW(writeFile(folder_ / "none" / "out.csv", [](std::ostream&) {}), CommandFailure);
  EXPECT_THROW(writeFile("/dev/full", [](std::ostream& out) { out << "x"; }), CommandFailure);
}

TEST_F(OutputFile, LeavesTheOldOneWhereAnotherThatBelongsToItCannotBeWritten) {
  writeFile(file_, [](std::ostream& out) { out << "old"; });
  const auto content = [](std::ostream& out) { out << "new"; };
  EXPECT_THROW(writeFiles({{file_, content}, {folder_ / "none" / "out.json", content}}), CommandFailure);
  EXPECT_THROW(writeFiles({{file_, content}, {folder_, content}}), CommandFailure);
  EXPECT_THROW(writeFiles({{file_, content}, {"/dev/full", content}}), CommandFailure);
  EXPECT_THROW(writeFiles({{file_, content},
                           {folder_ / "b", [](std::ostream&) { throw std::runtime_error("no content"); }}}),
               std::runtime_error);
  EXPECT_EQ(read(file_), "old");
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(OutputFile, IsOneOfTwoThatAreWrittenTogether) {
  writeFiles({{file_, [](std::ostream& out) { out << "a"; }},
              {folder_ / "out.json", [](std::ostream& out) { out << "b"; }}});
  EXPECT_EQ(read(file_), "a");
  EXPECT_EQ(read(folder_ / "out.json"), "b");
  EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(OutputFile, IsTheSameByAnotherNameAlsoBeforeItExists) {
  EXPECT_TRUE(isSameFile(file_, folder_ / "." / "out.csv"));
  fs::create_symlink("out.csv", folder_ / "link.csv");
  EXPECT_TRUE(isSameFile(folder_ / "link.csv", file_));
  EXPECT_FALSE(isSameFile(file_, folder_ / "out.json"));
  writeFile(file_, [](std::ostream& out) { out << "x"; });
  fs::create_hard_link(file_, folder_ / "hard.csv");
  EXPECT_TRUE(isSameFile(folder_ / "hard.csv", file_));
  EXPECT_FALSE(isSameFile(file_, folder_ / "out.json"));
}

}  // namespace
}  // namespace zel::host
