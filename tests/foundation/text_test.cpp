#include "foundation/text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

}  // namespace
}  // namespace zel
