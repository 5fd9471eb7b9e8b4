#include "models/ptp/vexptp/program.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <locale>
#include <sstream>
#include <vector>

#include "support/temporary_folder.h"

namespace zel::ptp {
namespace {

using test::fileBytes;
using test::writeBytes;

class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest() { writeBytes(scratch, "START\r\n100.00\r\n120.50\r\n100.00\r\n"); }

  int run() { return run({scratch, result, "950", "2.5", "10", "4", "scratch.tmp"}); }
  int run(const std::vector<std::string>& items) {
    std::ostringstream out, err;
    const int status = runProgram(items, out, err);
    output = out.str();
    messages = err.str();
    return status;
  }
  void expectFailure(const std::string& message) {
    writeBytes(result, "before");
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(messages, "vexptp.exe: " + message + "\n");
    EXPECT_EQ(output, "");
    EXPECT_EQ(fileBytes(result), "before");
  }
  std::size_t filesInFolder() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path())) ++count;
    return count;
  }

  const test::TemporaryFolder folder;
  const std::string scratch = folder / "scratch.tmp";
  const std::string companion = scratch + ".par";
  const std::string result = folder / "out_PTP.txt";
  std::string output;
  std::string messages;
};

TEST_F(ProgramTest, WritesTheResultOfEverySample) {
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(messages, "");
  EXPECT_EQ(output, "");
  std::istringstream lines(fileBytes(result));
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(line, "sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm\r");
  std::getline(lines, line);
  EXPECT_EQ(line, "1,0,-999,-999,-999\r");
  std::getline(lines, line);
  // 10 log 2.5 + 106.92 + 20 - 4 = 126.8994
  EXPECT_EQ(line.substr(0, 16), "2,0.1,0,0,126.89");
  std::getline(lines, line);
  EXPECT_EQ(line.substr(0, 6), "3,0.2,");
  EXPECT_FALSE(std::getline(lines, line));
  EXPECT_EQ(filesInFolder(), 2U) << "nothing is left beside it";
}

// As where people write "0,1".
class WithComma : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(ProgramTest, NumbersHaveAPointWhateverTheLocale) {
  writeBytes(companion, "spacing_km=1234.5\n");
  run();
  const std::string before = fileBytes(result);
  const std::locale usual = std::locale::global(std::locale(std::locale(), new WithComma));
  const int status = run();
  std::locale::global(usual);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(fileBytes(result), before);
  EXPECT_NE(before.find("\r\n2,1234.5,"), std::string::npos);
}

TEST_F(ProgramTest, TakesWhatTheCompanionSays) {
  run();
  const std::string without = fileBytes(result);
  writeBytes(companion, "spacing_km=0.1\r\ntx_amsl_m=130\r\nsamples=3\r\n");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(fileBytes(result), without);
  writeBytes(companion, "spacing_km=0.25\r\n");
  EXPECT_EQ(run(), 0);
  EXPECT_NE(fileBytes(result).find("\r\n3,0.5,"), std::string::npos);
}

TEST_F(ProgramTest, RefusesACompanionThatSpeaksOfAnotherNumberOfSamples) {
  writeBytes(companion, "samples=4\n");
  expectFailure(companion + ": it says 4 samples, and the scratch file has 3");
}

TEST_F(ProgramTest, TellsOfAKeyThatIsNotKnownAndGoesOn) {
  writeBytes(companion, "Samples=4\n");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(messages,
            "vexptp.exe: note: " + companion + ": \"Samples\" is no key that is known, and is passed over\n");
  EXPECT_NE(fileBytes(result), "");
}

TEST_F(ProgramTest, NamesFileAndLineOfABadInput) {
  writeBytes(companion, "samples=3\nspacing_km=x\n");
  expectFailure(companion + ": line 2: the spacing is not a number: \"x\"");
  std::filesystem::remove(companion);
  writeBytes(scratch, "START\n1\nx\n");
  expectFailure(scratch + ": line 3 is no height: \"x\"");
}

TEST_F(ProgramTest, NamesAnInputThatCannotBeRead) {
  std::filesystem::create_directory(companion);
  expectFailure("cannot read " + companion + ": it is a folder");
  std::filesystem::remove(scratch);
  expectFailure("cannot read " + scratch + ": No such file or directory");
  ASSERT_EQ(::mkfifo(scratch.c_str(), 0600), 0);
  expectFailure("cannot read " + scratch + ": it is not a plain file");
}

TEST_F(ProgramTest, RefusesAnInputThatIsLargerThanAny) {
  writeBytes(scratch, "START\n" + std::string(3000000, '1'));
  expectFailure("cannot read " + scratch + ": it has more than 2162688 bytes");
  writeBytes(scratch, "START\n1\n2\n");
  writeBytes(companion, std::string(65537, '\n'));
  expectFailure("cannot read " + companion + ": it has more than 65536 bytes");
}

TEST_F(ProgramTest, TellsWhatTheModelDoesNotTake) {
  writeBytes(companion, "tx_amsl_m=99\n");
  expectFailure("the transmitter's antenna stands 99 m above sea level, below its ground at 100 m");
}

TEST_F(ProgramTest, AResultThatCannotBeWrittenIsAFailure) {
  const auto write = [this](const std::string& path) {
    return run({scratch, path, "950", "2.5", "10", "4", "scratch.tmp"});
  };
  EXPECT_EQ(write(folder / "none/out"), 1);
  EXPECT_NE(messages.find("cannot write"), std::string::npos);
  EXPECT_EQ(write(folder.path()), 1);
  EXPECT_EQ(write("/dev/full"), 1);
  EXPECT_NE(messages.find("Disk full"), std::string::npos);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ProgramTest, NeverWritesOverItsInputs) {
  const std::string before = fileBytes(scratch);
  EXPECT_EQ(run({scratch, scratch, "950", "2.5", "10", "4", "scratch.tmp"}), 2);
  EXPECT_EQ(fileBytes(scratch), before);
  writeBytes(companion, "samples=3\n");
  std::filesystem::create_symlink(companion, folder / "link");
  EXPECT_EQ(run({scratch, folder / "link", "950", "2.5", "10", "4", "scratch.tmp"}), 2);
  EXPECT_EQ(fileBytes(companion), "samples=3\n");
}

TEST_F(ProgramTest, WrongItemsHaveAnExitStatusOfTheirOwnAndShowTheUsage) {
  EXPECT_EQ(run({scratch}), 2);
  EXPECT_EQ(messages,
            "vexptp.exe: the number of items is 1; it must be 7\n"
            "usage: vexptp.exe SCRATCH RESULT MHZ ERP-KW RECEIVER-M CLUTTER-DB SCRATCH-NAME\n");
  EXPECT_EQ(run({scratch, result, "5", "2.5", "10", "4", "scratch.tmp"}), 2);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ProgramTest, TellsItsUseAndItsVersion) {
  EXPECT_EQ(run({"--help"}), 0);
  EXPECT_EQ(output.rfind("usage: vexptp.exe SCRATCH RESULT MHZ", 0), 0U);
  EXPECT_EQ(messages, "");
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_EQ(output.rfind("vexptp.exe ", 0), 0U);
  EXPECT_EQ(run({"--version", "x"}), 2);
}

TEST_F(ProgramTest, AMessageStaysOnItsLine) {
  EXPECT_EQ(run({folder / "a\nb", result, "950", "2.5", "10", "4", "a\nb"}), 1);
  EXPECT_EQ(messages.find('\n'), messages.size() - 1);
}

}  // namespace
}  // namespace zel::ptp
