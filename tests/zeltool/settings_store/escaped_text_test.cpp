#include "zeltool/settings_store/escaped_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace zel {
namespace {

TEST(EscapedText, LeavesPlainTextAsItIs) {
  EXPECT_EQ(escapedText("36-32-11.4 N, \xC3\x84 \xE2\x80\x9Cq\xE2\x80\x9D /a\\b", ""),
            "36-32-11.4 N, \xC3\x84 \xE2\x80\x9Cq\xE2\x80\x9D /a\\b");
}

TEST(EscapedText, EscapesWhatALineCannotHold) {
  EXPECT_EQ(escapedText("a\r\nb\t\x7F", ""), "a%0D%0Ab%09%7F");
  EXPECT_EQ(escapedText(std::string("\0", 1), ""), "%00");
  EXPECT_EQ(escapedText("100%", ""), "100%25");
  EXPECT_EQ(escapedText(" a b ", ""), "%20a b%20");
  EXPECT_EQ(escapedText(" ", ""), "%20");
  EXPECT_EQ(escapedText("a=[b]", "=[]"), "a%3D%5Bb%5D");
}

TEST(EscapedText, EscapesBytesThatAreNoUtf8) {
  EXPECT_EQ(escapedText("\xFF\xC3", ""), "%FF%C3");
  EXPECT_EQ(escapedText("\xC0\x80", ""), "%C0%80") << "overlong";
  EXPECT_EQ(escapedText("\xED\xA0\x80", ""), "%ED%A0%80") << "surrogate";
  EXPECT_EQ(escapedText("\xF4\x90\x80\x80", ""), "%F4%90%80%80") << "beyond the last code point";
}

TEST(EscapedText, TakesAPercentSignWithoutTwoDigitsAsItself) {
  EXPECT_EQ(unescapedText("50%"), "50%");
  EXPECT_EQ(unescapedText("5%2"), "5%2");
  EXPECT_EQ(unescapedText("%zz%4G"), "%zz%4G");
  EXPECT_EQ(unescapedText("%41%6a"), "Aj");
}

TEST(EscapedText, ComesBackAsItWasForAnyBytes) {
  const unsigned seed = 11;
  std::mt19937 random(seed);
  for (int i = 0; i < 5000; ++i) {
    std::string text(random() % 12, '\0');
    for (char& c : text) c = static_cast<char>(random() & 0xFFU);
    EXPECT_EQ(unescapedText(escapedText(text, "=[];#")), text) << "seed " << seed;
  }
}

}  // namespace
}  // namespace zel
