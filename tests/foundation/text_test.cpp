#include "foundation/text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/utf8.h"

namespace zel {
namespace {

using Parts = std::vector<std::string>;

TEST(Text, TrimsBlanksAndTabsAtBothEnds) {
  EXPECT_EQ(trimmed("  a b\t "), "a b");
  EXPECT_EQ(trimmed(" \t "), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("a\n"), "a\n") << "a line end is no blank";
}

TEST(Text, ComparesWithoutCaseInAsciiOnly) {
  EXPECT_TRUE(equalIgnoringCase("Title", "tITLE"));
  EXPECT_TRUE(equalIgnoringCase("", ""));
  EXPECT_FALSE(equalIgnoringCase("Title", "Titles"));
  EXPECT_FALSE(equalIgnoringCase("Titles", "Title"));
  EXPECT_FALSE(equalIgnoringCase("[", "{")) << "only letters have a case";
  EXPECT_FALSE(equalIgnoringCase("\xC3\x84", "\xC3\xA4"));
}

TEST(Text, ChangesTheCaseOfAsciiLettersOnly) {
  EXPECT_EQ(lowerCase("AbZ@[1\xC3\x84"), "abz@[1\xC3\x84");
  EXPECT_EQ(upperCase("aBz`{1\xC3\xA4"), "ABZ`{1\xC3\xA4");
}

TEST(Text, SplitsAListIntoItsTrimmedParts) {
  EXPECT_EQ(splitList("a;b;c", ';'), (Parts{"a", "b", "c"}));
  EXPECT_EQ(splitList(" /data/one ;\t/data/two 2 ", ';'), (Parts{"/data/one", "/data/two 2"}));
  EXPECT_EQ(splitList("one", ';'), (Parts{"one"}));
}

TEST(Text, LeavesOutEmptyPartsOfAList) {
  EXPECT_EQ(splitList("", ';'), Parts{});
  EXPECT_EQ(splitList(";", ';'), Parts{});
  EXPECT_EQ(splitList(" ; \t;", ';'), Parts{});
  EXPECT_EQ(splitList(";a;;b;", ';'), (Parts{"a", "b"}));
}

// The bounds are those of the table of well-formed sequences in the Unicode standard (3-7).
TEST(Utf8, KnowsTheLengthOfAValidSequence) {
  for (const std::string one : {"\x01", "a", "\x7F"}) EXPECT_EQ(utf8SequenceLength(one + "z"), 1U);
  for (const std::string two : {"\xC2\x80", "\xDF\xBF"}) EXPECT_EQ(utf8SequenceLength(two + "z"), 2U);
  for (const std::string three : {"\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBF"})
    EXPECT_EQ(utf8SequenceLength(three + "z"), 3U);
  for (const std::string four : {"\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    EXPECT_EQ(utf8SequenceLength(four + "z"), 4U);
}

TEST(Utf8, KnowsOverlongCutAndForeignSequences) {
  for (const std::string text :
       {"", "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2z", "\xE0\x9F\xBF", "\xE2\x82",
        "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98z", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
    EXPECT_EQ(utf8SequenceLength(text), 0U) << text.size();
}

TEST(Utf8, BeginsACharacterAtEveryByteThatContinuesNone) {
  for (const char byte : {'\0', 'a', '\x7F', '\xC2', '\xFF'}) EXPECT_TRUE(beginsCharacter(byte));
  for (const char byte : {'\x80', '\xBF'}) EXPECT_FALSE(beginsCharacter(byte));
}

}  // namespace
}  // namespace zel
