#include "ui/page/wrap_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

namespace zel {
namespace {

using Lines = std::vector<std::string>;

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// Every character is 1 wide.
double characters(std::string_view text) {
  return static_cast<double>(std::count_if(text.begin(), text.end(), [](char c) { return !continues(c); }));
}

Lines wrapped(std::string_view text, double width) { return WrapTextInColumn(text, width, characters); }

TEST(WrapTextInColumn, BreaksAtBlanksAsLateAsTheWidthAllows) {
  EXPECT_EQ(wrapped("the quick brown fox", 9), (Lines{"the quick", "brown fox"}));
  EXPECT_EQ(wrapped("the quick brown fox", 8), (Lines{"the", "quick", "brown", "fox"}));
  EXPECT_EQ(wrapped("the quick brown fox", 19), (Lines{"the quick brown fox"}));
}

TEST(WrapTextInColumn, GivesNoLineForATextOfNothingButBlanks) {
  EXPECT_EQ(wrapped("", 10), Lines{});
  EXPECT_EQ(wrapped(" \t \r\n \n", 10), Lines{});
}

TEST(WrapTextInColumn, GivesNoLineForATextOfNothingButBlanksOfAnyKind) {
  for (const std::string text :
       {"\u00A0", "\v", "\x7F", " \u00A0\n\u2007 \u202F", "\u2003\u3000", "\u200B\uFEFF"})
    EXPECT_EQ(wrapped(text, 10), Lines{}) << text;
  EXPECT_EQ(wrapped("\xA0", 10), Lines{"\xA0"}) << "a byte that is no character is no blank";
}

TEST(WrapTextInColumn, EndsNoLineAtANoBreakSpace) {
  EXPECT_EQ(wrapped("mast 30\u00A0m", 8), (Lines{"mast", "30\u00A0m"}));
  EXPECT_EQ(wrapped("\u00A0mast\u00A0", 9), (Lines{"mast"}));
}

// Up to an eighth of the width.
TEST(WrapTextInColumn, LeavesNoShortWordAloneOnAParagraphsLastLine) {
  EXPECT_EQ(wrapped("the quick brown 3", 16), (Lines{"the quick", "brown 3"}));
  EXPECT_EQ(wrapped("the quick brown 33", 16), (Lines{"the quick", "brown 33"}));
  EXPECT_EQ(wrapped("the quick brown 333", 16), (Lines{"the quick brown", "333"}));
  EXPECT_EQ(wrapped("the quick brown 3\n4", 16), (Lines{"the quick", "brown 3", "4"}));
}

TEST(WrapTextInColumn, LeavesAShortWordAloneWhereTheWordBeforeItHasNoRoomOrALineOfItsOwn) {
  EXPECT_EQ(wrapped("thequickbrownfox 3", 16), (Lines{"thequickbrownfox", "3"}));
  EXPECT_EQ(wrapped("a tawnybrownfoxx 33", 16), (Lines{"a tawnybrownfoxx", "33"}));
  EXPECT_EQ(wrapped("thequickbrownfox3", 16), (Lines{"thequickbrownfox", "3"}));
}

TEST(WrapTextInColumn, LeavesOutBlanksAroundALineAndKeepsThoseWithinIt) {
  EXPECT_EQ(wrapped("   two  blanks   ", 20), (Lines{"two  blanks"}));
  EXPECT_EQ(wrapped("one    two", 4), (Lines{"one", "two"}));
}

TEST(WrapTextInColumn, TakesTabsAndControlCharactersForBlanks) {
  EXPECT_EQ(wrapped("one\ttwo\vthree\x7F"
                    "four",
                    7),
            (Lines{"one two", "three", "four"}));
  EXPECT_EQ(wrapped(std::string_view("a\0b", 3), 9), (Lines{"a b"}));
}

TEST(WrapTextInColumn, KeepsTheTextsOwnLineEnds) {
  EXPECT_EQ(wrapped("one\r\ntwo\nthree\rfour", 20), (Lines{"one", "two", "three", "four"}));
  EXPECT_EQ(wrapped("\n\none \n\n two\n\n", 20), (Lines{"one", "", "two"}));
}

TEST(WrapTextInColumn, BreaksAWordThatIsWiderThanTheColumn) {
  EXPECT_EQ(wrapped("a abcdefghij b", 4), (Lines{"a", "abcd", "efgh", "ij b"}));
}

TEST(WrapTextInColumn, BreaksBetweenCharactersAndNeverWithinOne) {
  EXPECT_EQ(wrapped("äöüßéñ", 2), (Lines{"äö", "üß", "éñ"}));
  EXPECT_EQ(wrapped("😀😀😀", 2), (Lines{"😀😀", "😀"}));
}

TEST(WrapTextInColumn, GivesOneCharacterALineWhereNothingFits) {
  const Lines each{"a", "ä", "c"};
  for (const double width :
       {0.0, -5.0, -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
    EXPECT_EQ(wrapped("aä c", width), each) << width;
}

TEST(WrapTextInColumn, GivesOneLineWhereNoTextHasAWidth) {
  const std::string words(1000, 'x');
  EXPECT_EQ(WrapTextInColumn(words + " " + words, 0, [](std::string_view) { return 0.0; }),
            (Lines{words + " " + words}));
}

TEST(WrapTextInColumn, EndsWithBytesThatAreNoUtf8) {
  const Lines lines = wrapped("\x80\x80 \xC3 \xFF\xFE a\xE2\x82", 1);
  EXPECT_GE(lines.size(), 3U);
  EXPECT_EQ(wrapped(std::string(500, '\x80'), 1).size(), 1U);
}

// Seed 20: against the plain rule, word by word. The last word is long enough to stand alone.
TEST(WrapTextInColumn, PutsAsManyWordsOnALineAsFit) {
  std::mt19937 random(20);
  for (int round = 0; round < 200; ++round) {
    Lines words;
    std::string text;
    for (int i = 0; i < 60; ++i) {
      words.emplace_back((i == 59 ? 12 : 1) + random() % 12, 'w');
      text += (i == 0 ? "" : " ") + words.back();
    }
    const std::size_t width = 24 + random() % 64;
    Lines expected{words[0]};
    for (std::size_t i = 1; i < words.size(); ++i) {
      if (expected.back().size() + 1 + words[i].size() <= width) {
        expected.back() += " " + words[i];
      } else {
        expected.push_back(words[i]);
      }
    }
    ASSERT_EQ(wrapped(text, static_cast<double>(width)), expected) << "round " << round;
  }
}

TEST(FitTextInColumn, CutsWhatIsLeftAndSaysSoByAnEllipsis) {
  const FittedText all = fitTextInColumn("one two three", 5, 3, characters);
  EXPECT_EQ(all.lines, (Lines{"one", "two", "three"}));
  EXPECT_FALSE(all.cut);
  const FittedText some = fitTextInColumn("one two three", 5, 2, characters);
  EXPECT_EQ(some.lines, (Lines{"one", "two…"}));
  EXPECT_TRUE(some.cut);
}

TEST(FitTextInColumn, GivesTheEllipsisRoomInPlaceOfWholeWordsOrElseOfCharacters) {
  EXPECT_EQ(fitTextInColumn("number 87 and on", 9, 1, characters).lines, (Lines{"number…"}));
  EXPECT_EQ(fitTextInColumn("abcdefgh", 4, 1, characters).lines, (Lines{"abc…"}));
  EXPECT_EQ(fitTextInColumn("äöüß", 2, 1, characters).lines, (Lines{"ä…"}));
  EXPECT_EQ(fitTextInColumn("abcdefgh", 0, 1, characters).lines, (Lines{"…"}));
}

TEST(FitTextInColumn, HasNoPauseBeforeTheEllipsis) {
  EXPECT_EQ(fitTextInColumn("One end.\nTwo.", 20, 1, characters).lines, (Lines{"One end…"}));
  EXPECT_EQ(fitTextInColumn("one, two", 5, 1, characters).lines, (Lines{"one…"}));
  EXPECT_EQ(fitTextInColumn("... two", 5, 1, characters).lines, (Lines{"…"}));
  EXPECT_EQ(fitTextInColumn("One end.", 20, 1, characters).lines, (Lines{"One end."}));
}

TEST(FitTextInColumn, HasNoLineWhereThereIsNoRoomForOne) {
  EXPECT_TRUE(fitTextInColumn("one", 5, 0, characters).cut);
  EXPECT_EQ(fitTextInColumn("one", 5, 0, characters).lines, Lines{});
  EXPECT_FALSE(fitTextInColumn("", 5, 0, characters).cut);
}

// Measured in characters that are looked at, so that no clock is needed.
TEST(FitTextInColumn, LooksNoFurtherIntoALongTextThanItsLinesReach) {
  for (const std::string piece : {"word ", "word", "a\n"}) {
    std::string text;
    while (text.size() < 1000000) text += piece;
    std::size_t measured = 0;
    const FittedText fitted = fitTextInColumn(text, 80, 20, [&measured](std::string_view part) {
      measured += part.size();
      return characters(part);
    });
    EXPECT_TRUE(fitted.cut);
    EXPECT_EQ(fitted.lines.size(), 20U);
    EXPECT_LT(measured, 20U * 80 * 16) << piece;
  }
}

}  // namespace
}  // namespace zel
