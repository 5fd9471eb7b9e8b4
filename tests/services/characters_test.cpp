#include "component/services/characters.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(CharacterCount, CountsCharactersNotBytes) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("a.csv"), 5U);
  EXPECT_EQ(characterCount("\u00e9.cs"), 4U);
  EXPECT_EQ(characterCount("\u5c71\U0001F5FB"), 2U);
}

TEST(FirstCharacters, NeverCutsWithinACharacter) {
  EXPECT_EQ(firstCharacters("\u00e9\u00e9\u00e9", 2), "\u00e9\u00e9");
  EXPECT_EQ(firstCharacters("abc", 3), "abc");
  EXPECT_EQ(firstCharacters("abc", 9), "abc");
  EXPECT_EQ(firstCharacters("abc", 0), "");
}

}  // namespace
}  // namespace zel
