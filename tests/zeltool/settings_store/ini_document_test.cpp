#include "zeltool/settings_store/ini_document.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zel {
namespace {

std::string valueOf(const IniDocument& document, const std::string& section, const std::string& key) {
  const std::string* found = document.find(section, key);
  return found == nullptr ? "(none)" : *found;
}

TEST(IniDocument, ReadsSectionsAndSettings) {
  const IniDocument document("[Profile]\nPrf_Per=50\nPrf_Max=1000\n\n[Settings]\nDispUnits=1\n");
  EXPECT_EQ(document.damage().lines, 0U);
  EXPECT_EQ(valueOf(document, "Profile", "Prf_Per"), "50");
  EXPECT_EQ(valueOf(document, "Settings", "DispUnits"), "1");
  EXPECT_EQ(valueOf(document, "Settings", "Prf_Per"), "(none)");
  EXPECT_EQ(valueOf(document, "profile", "Prf_Per"), "(none)") << "names are told apart by case";
}

TEST(IniDocument, ReadsWhatAPersonWroteByHand) {
  const IniDocument document(
      "\xEF\xBB\xBF; mine\r\n# too\r\n[ Profile ]\r\n  Prf_Per = 50 \r\nPath=/a;/b # c=50%\r\n");
  EXPECT_EQ(document.damage().lines, 0U);
  EXPECT_EQ(valueOf(document, "Profile", "Prf_Per"), "50");
  EXPECT_EQ(valueOf(document, "Profile", "Path"), "/a;/b # c=50%");
}

TEST(IniDocument, ReadsPastEveryByteOrderMarkAtTheBeginning) {
  IniDocument document("\xEF\xBB\xBF\xEF\xBB\xBF[A]\nk=1\n");
  EXPECT_EQ(document.damage().lines, 0U);
  EXPECT_EQ(valueOf(document, "A", "k"), "1");
}

TEST(IniDocument, TakesTheLaterOfAKeyThatStandsTwice) {
  IniDocument document("[A]\nk=1\n[B]\nk=5\n[A]\nk=2\n");
  EXPECT_EQ(valueOf(document, "A", "k"), "2");
  document.set("A", "k", "3");
  EXPECT_EQ(document.text(), "[A]\nk=1\n[B]\nk=5\n[A]\nk=3\n");
  EXPECT_EQ(valueOf(IniDocument(document.text()), "A", "k"), "3");
}

TEST(IniDocument, WritesANewFile) {
  IniDocument document;
  document.set("Profile", "Prf_Per", "50");
  document.set("Settings", "DispUnits", "0");
  document.set("Profile", "Prf_Max", "1000");
  EXPECT_EQ(document.text(), "[Profile]\nPrf_Per=50\nPrf_Max=1000\n\n[Settings]\nDispUnits=0\n");
}

TEST(IniDocument, KeepsCommentsBlankLinesAndOrderWhenAValueChanges) {
  IniDocument document("; head\n\n[B]\n; about k\nk=1\n\n; about A\n[A]\nz=1\na=2\n");
  document.set("B", "k", "9");
  document.set("B", "new", "x");
  EXPECT_EQ(document.text(), "; head\n\n[B]\n; about k\nk=9\nnew=x\n\n; about A\n[A]\nz=1\na=2\n");
}

TEST(IniDocument, TakesSettingsBeforeAnySectionAsThoseOfTheEmptyOne) {
  IniDocument document("k=1\n[A]\nk=2\n");
  EXPECT_EQ(valueOf(document, "", "k"), "1");
  document.set("", "k", "3");
  EXPECT_EQ(document.text(), "k=3\n[A]\nk=2\n");
}

TEST(IniDocument, NamesTheFirstLineThatCannotBeReadAndWhy) {
  struct Case {
    std::string text;
    std::size_t lines;
    std::size_t firstLine;
    std::string reason;
  };
  const std::vector<Case> cases = {
      {"[A]\nk=1\nrubbish\nmore\n", 2, 3, "it is no key=value"},
      {"[A]\nk=\xFF\n", 1, 2, "it is not text in UTF-8"},
      {std::string("[A]\nk=1\0\n", 9), 1, 2, "it is not text in UTF-8"},
      {"[A\nk=1\n", 2, 1, "its section name has no closing bracket"},
      {"[A]\nk=1", 1, 2, "the last line has no line end, so that it may be cut off"},
      {"[\xFF]\nk=1\n", 2, 1, "it is not text in UTF-8"},
  };
  for (const Case& c : cases) {
    const IniDocument document(c.text);
    EXPECT_EQ(document.damage().lines, c.lines) << c.text;
    EXPECT_EQ(document.damage().firstLine, c.firstLine) << c.text;
    EXPECT_EQ(document.damage().firstReason, c.reason) << c.text;
  }
}

TEST(IniDocument, GivesNoSettingToAnotherSectionWhenItsOwnNameCannotBeRead) {
  const IniDocument document("[A]\nk=1\n[B\nk=2\n[C]\nk=3\n");
  EXPECT_EQ(valueOf(document, "A", "k"), "1");
  EXPECT_EQ(valueOf(document, "C", "k"), "3");
  EXPECT_EQ(document.text(), "[A]\nk=1\n[C]\nk=3\n");
}

TEST(IniDocument, DoesNotUseAValueThatMayBeCutOff) {
  const IniDocument document("[Profile]\nPrf_Per=50\nPrf_Max=10");
  EXPECT_EQ(valueOf(document, "Profile", "Prf_Max"), "(none)") << "1000 cut short would read as 10";
  EXPECT_EQ(valueOf(document, "Profile", "Prf_Per"), "50");
}

TEST(IniDocument, IsSoundWithoutAnyText) {
  EXPECT_EQ(IniDocument("").damage().lines, 0U);
  EXPECT_EQ(IniDocument("\n\n").damage().lines, 0U);
}

}  // namespace
}  // namespace zel
