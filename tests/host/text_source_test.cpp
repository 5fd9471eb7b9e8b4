#include "command_line/text_source.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/elevation_file.h"
#include "support/temporary_folder.h"

namespace zel::host {
namespace {

class TextSourceTest : public testing::Test {
 protected:
  std::string fileOf(const std::string& content) {
    std::string path = (folder_.path() / "file.txt").string();
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  // What a text is refused with as elevations.
  static std::string refusal(const std::string& text) {
    try {
      parseElevations(text, "T");
    } catch (const CommandFailure& failure) {
      return failure.what();
    }
    return {};
  }

  // Lines as they are read; "(too long)" for one above the bound.
  std::vector<std::string> linesOf(const std::string& content, std::size_t bound = 1000) {
    TextSource source(fileOf(content));
    LineReader reader(source, bound);
    std::vector<std::string> lines;
    while (reader.next()) {
      EXPECT_EQ(reader.number(), lines.size() + 1);
      lines.emplace_back(reader.tooLong() ? "(too long)" : std::string(reader.line()));
    }
    EXPECT_FALSE(reader.next());
    return lines;
  }

  test::TemporaryFolder folder_;
};

using Lines = std::vector<std::string>;

TEST_F(TextSourceTest, GivesLinesWithoutTheirLineFeeds) {
  EXPECT_EQ(linesOf("a\nbc\n\nd"), (Lines{"a", "bc", "", "d"}));
  EXPECT_EQ(linesOf("a\n"), (Lines{"a"}));
  EXPECT_EQ(linesOf("\n\n"), (Lines{"", ""}));
  EXPECT_EQ(linesOf(""), Lines{});
  EXPECT_EQ(linesOf("a\r\n"), (Lines{"a\r"}));
  EXPECT_EQ(linesOf(std::string("a\0b\n", 4)), (Lines{std::string("a\0b", 3)}));
}

TEST_F(TextSourceTest, PassesOverLinesAboveTheBound) {
  const std::string most(1000, 'x');
  EXPECT_EQ(linesOf(most), Lines{most});
  EXPECT_EQ(linesOf(most + "\nb"), (Lines{most, "b"}));
  EXPECT_EQ(linesOf(most + "x"), Lines{"(too long)"});
  EXPECT_EQ(linesOf("a\n" + most + "x\nb\n"), (Lines{"a", "(too long)", "b"}));
  // Longer than what is read at once.
  const std::string huge(300000, 'x');
  EXPECT_EQ(linesOf(huge), Lines{"(too long)"});
  EXPECT_EQ(linesOf("a\n" + huge + "\nb\n" + huge), (Lines{"a", "(too long)", "b", "(too long)"}));
  EXPECT_EQ(linesOf(huge + "\n\n" + huge + "\n"), (Lines{"(too long)", "", "(too long)"}));
  EXPECT_EQ(linesOf("a\n" + huge + "\nb", 300000), (Lines{"a", huge, "b"}));
}

TEST_F(TextSourceTest, GivesManyLinesAcrossTheBordersOfWhatIsReadAtOnce) {
  std::string content;
  Lines wanted;
  for (int i = 0; i < 30000; ++i) {
    wanted.push_back(std::string(static_cast<std::size_t>(i % 23), 'x') + std::to_string(i));
    content += wanted.back() + "\n";
  }
  EXPECT_EQ(linesOf(content), wanted);
}

TEST_F(TextSourceTest, GivesALineBeforeTheNextOneIsThere) {
  const std::string pipe = (folder_.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::fstream writer(pipe, std::ios::in | std::ios::out);  // both, so that opening does not wait
  TextSource source(pipe);
  LineReader reader(source, 1000);
  for (const std::string line : {"first", "second"}) {
    writer << line << '\n' << std::flush;
    ASSERT_TRUE(reader.next());
    EXPECT_EQ(reader.line(), line);
  }
}

TEST_F(TextSourceTest, NamesTheFileThatCannotBeRead) {
  const auto message = [](const std::string& name) {
    try {
      TextSource source(name);
      std::string text;
      source.read(text);
    } catch (const CommandFailure& failure) {
      return std::string(failure.what());
    }
    return std::string();
  };
  EXPECT_EQ(message("/none/such"),
            "cannot read /none/such: No such file or directory; check its name and folder");
  EXPECT_EQ(message("/etc/passwd/x"),
            "cannot read /etc/passwd/x: Not a directory; check its name and folder");
  EXPECT_EQ(message("/"), "cannot read /: Is a directory; give a file");
  EXPECT_EQ(message(std::string("/etc/passwd\0.txt", 16)), "cannot read /etc/passwd: Invalid argument");
}

TEST_F(TextSourceTest, RefusesAWholeTextAboveTheBound) {
  const std::string path = fileOf(std::string((1 << 20) + 1, '5'));
  TextSource source(path);
  try {
    wholeText(source, 1 << 20);
    FAIL();
  } catch (const CommandFailure& failure) {
    EXPECT_EQ(failure.what(), "cannot read " + path + ": it is larger than 1 MiB");
  }
  TextSource again(path);
  EXPECT_EQ(wholeText(again, (1 << 20) + 1).size(), (1U << 20) + 1);
}

TEST_F(TextSourceTest, RefusesADeviceThatNeverEndsAsElevations) {
  EXPECT_THROW(readElevations("/dev/zero"), CommandFailure);
}

TEST_F(TextSourceTest, EndsWithALineThatDoesNotEnd) {
  TextSource source("/dev/zero");
  LineReader reader(source, 1000, 1 << 20);
  ASSERT_TRUE(reader.next());
  EXPECT_TRUE(reader.tooLong());
  EXPECT_TRUE(reader.endless());
  EXPECT_EQ(reader.number(), 1U);
  EXPECT_FALSE(reader.next());
}

TEST_F(TextSourceTest, GoesOnBehindALongLineThatEnds) {
  TextSource source(fileOf(std::string(900000, 'x') + "\nb\n" + std::string(900000, 'x')));
  LineReader reader(source, 1000, 1 << 20);
  ASSERT_TRUE(reader.next());
  EXPECT_TRUE(reader.tooLong());
  EXPECT_FALSE(reader.endless());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(reader.line(), "b");
  ASSERT_TRUE(reader.next());
  EXPECT_TRUE(reader.tooLong());
  EXPECT_FALSE(reader.endless());
  EXPECT_FALSE(reader.next());
}

TEST_F(TextSourceTest, NamesWhatALineOfElevationsHasInIt) {
  const std::string wanted = "; each line has one elevation in metres";
  EXPECT_EQ(refusal("1\r2\r3"),
            "T, line 1: \"1?2?3\" has a carriage return in it; end each line with a line feed" + wanted);
  EXPECT_EQ(refusal("1\n2;3\n"), "T, line 2: \"2;3\" has a \";\" in it" + wanted);
  EXPECT_EQ(refusal("1,5"), "T, line 1: \"1,5\" has a \",\" in it; the decimal point is \".\"" + wanted);
  EXPECT_EQ(refusal("1\n2 3"), "T, line 2: \"2 3\" is not a number" + wanted);
  EXPECT_EQ(refusal("1\n \n3"), "T, line 2: it is blank, and elevations follow" + wanted);
}

TEST_F(TextSourceTest, ReadsElevationsOfAFile) {
  EXPECT_EQ(readElevations(fileOf("\xEF\xBB\xBF"
                                  "10\r\n-2.5\r\n\r\n")),
            (std::vector<double>{10, -2.5}));
  // Encodings other than UTF-8 have zero bytes.
  EXPECT_THROW(readElevations(fileOf(std::string("\xFF\xFE"
                                                 "1\0\n\0",
                                                 6))),
               CommandFailure);
  EXPECT_THROW(readElevations(fileOf("10\n\xC3\x28\n")), CommandFailure);
}

}  // namespace
}  // namespace zel::host
