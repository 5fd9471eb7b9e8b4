#include "command_line/wrapped_text.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "command_line/path_output.h"

namespace zel::host {
namespace {

TEST(WrappedText, StaysAsItIsWhileItFits) {
  EXPECT_EQ(wrapped("", 20, 4), "");
  EXPECT_EQ(wrapped("one two", 20, 4), "one two");
  EXPECT_EQ(wrapped("seven c one  two", 20, 4), "seven c one  two") << "16 columns from the fifth on";
}

TEST(WrappedText, BreaksAtTheLastBlankBeforeTheWidthAndHangsUnderItsColumn) {
  EXPECT_EQ(wrapped("seven c one  twos", 20, 4), "seven c one\n    twos");
  EXPECT_EQ(wrapped("one two three four five", 12, 3), "one two\n   three\n   four five");
}

TEST(WrappedText, KeepsAWordThatFitsNoLineWhole) {
  EXPECT_EQ(wrapped("/a/folder/with/a/long/name x", 12, 4), "/a/folder/with/a/long/name\n    x");
  EXPECT_EQ(wrapped("x /a/folder/with/a/long/name", 12, 4), "x\n    /a/folder/with/a/long/name");
}

TEST(WrappedText, KeepsTheLineBreaksOfTheText) {
  EXPECT_EQ(wrapped("one\ntwo three", 9, 3), "one\n   two\n   three");
  EXPECT_EQ(wrapped("one \n two", 60, 3), "one\n    two");
}

TEST(WrappedText, CountsCharactersAndNotBytes) {
  EXPECT_EQ(wrapped("\u00e9\u00e9\u00e9\u00e9 \u00e9\u00e9\u00e9", 10, 2),
            "\u00e9\u00e9\u00e9\u00e9 \u00e9\u00e9\u00e9");
  EXPECT_EQ(wrapped("\u00e9\u00e9\u00e9\u00e9 \u00e9\u00e9\u00e9", 9, 2),
            "\u00e9\u00e9\u00e9\u00e9\n  \u00e9\u00e9\u00e9");
}

TEST(TerminalWidth, IsTheTerminalsElseColumnsElseAHundred) {
  EXPECT_EQ(usableWidth(132, "80"), 132U);
  EXPECT_EQ(usableWidth(0, "80"), 80U);
  EXPECT_EQ(usableWidth(0, nullptr), 100U);
  for (const char* nothing : {"", "wide", "-5", "0", "99999999999999999999999"})
    EXPECT_EQ(usableWidth(0, nothing), 100U) << nothing;
}

TEST(TerminalWidth, IsAskedOfStandardOutputAndSummariesAreBrokenToIt) {
  int terminal = -1;
  int inner = -1;
  winsize size{};
  size.ws_col = 70;
  ASSERT_EQ(openpty(&terminal, &inner, nullptr, nullptr, &size), 0);
  std::fflush(stdout);
  const int before = dup(STDOUT_FILENO);
  ASSERT_EQ(dup2(inner, STDOUT_FILENO), STDOUT_FILENO);
  const auto width = terminalWidth();
  const std::string line = summaryText("Note", "from here there are fifty-two columns to the right of it");
  dup2(before, STDOUT_FILENO);
  for (const int file : {before, inner, terminal}) close(file);
  EXPECT_EQ(width, 70U);
  EXPECT_EQ(line,
            "Note              from here there are fifty-two columns to the right\n"
            "                  of it\n");
}

TEST(TerminalWidth, IsNeverBelowSixty) {
  EXPECT_EQ(usableWidth(60, nullptr), 60U);
  EXPECT_EQ(usableWidth(20, nullptr), 60U);
  EXPECT_EQ(usableWidth(0, "1"), 60U);
}

}  // namespace
}  // namespace zel::host
