#include "command_line/plain_number.h"

#include <gtest/gtest.h>

#include <string>

namespace zel::host {
namespace {

TEST(PlainNumber, IsTheWholeText) {
  EXPECT_EQ(plainNumber("12.5"), 12.5);
  EXPECT_EQ(plainNumber("-3"), -3);
  EXPECT_EQ(plainNumber("+3"), 3);
  EXPECT_EQ(plainNumber(".5"), 0.5);
  EXPECT_EQ(plainNumber("5."), 5);
  EXPECT_EQ(plainNumber("1e3"), 1000);
  EXPECT_EQ(plainNumber(" \t7 \t"), 7);
}

TEST(PlainNumber, IsNothingForAnyOtherText) {
  for (const char* text :
       {"",    " ",   "+",   "-",  ".",   "12 13", "12m", "m12",       "1,5",   "0x10",   "++5",  "+-5",
        "--5", "- 5", "+ 5", "1e", "nan", "NAN",   "inf", "-infinity", "1e400", "-1e400", "1_000"})
    EXPECT_FALSE(plainNumber(text)) << text;
  EXPECT_FALSE(plainNumber(std::string_view("5\0", 2)));
}

TEST(QuotedText, IsCutAndShowsNoControlCharacter) {
  EXPECT_EQ(quotedText("12 m"), "\"12 m\"");
  EXPECT_EQ(quotedText("a\x1b[31m\n\xff"), "\"a?[31m??\"");
  EXPECT_EQ(quotedText(std::string(41, 'x')), "\"" + std::string(40, 'x') + "...\"");
  EXPECT_EQ(quotedText(std::string(40, 'x')), "\"" + std::string(40, 'x') + "\"");
}

}  // namespace
}  // namespace zel::host
