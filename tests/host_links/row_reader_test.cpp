// Rows out of delimited text, whole and in pieces of every size.
#include "links/row_reader.h"

#include "list_checks.h"

namespace zel::host {
namespace {

using Texts = std::vector<std::string>;

std::string many(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(RowReader, TakesFieldsAsTheyStandBetweenTheirDelimiters) {
  EXPECT_EQ(rowTexts(rowsOf("a, b ,c\n,,x\n")), (Texts{"1: a| b |c", "2: ||x"}));
  EXPECT_EQ(rowTexts(rowsOf("a;b,c\n", ';')), (Texts{"1: a|b,c"}));
}

TEST(RowReader, TakesQuotedFieldsWithDelimitersQuotesAndLineBreaks) {
  EXPECT_EQ(rowTexts(rowsOf("\"a,b\",\"say \"\"hi\"\"\", \"x\" ,\"y\"z\n")),
            (Texts{"1: a,b|say \"hi\"|x|yz"}));
}

TEST(RowReader, CountsLinesInsideQuotedFields) {
  EXPECT_EQ(rowTexts(rowsOf("\"a\nb\r\nc\",1\nd,2\n")), (Texts{"1: a\nb\r\nc|1", "4: d|2"}));
}

TEST(RowReader, EndsLinesWithEveryKindOfBreak) {
  EXPECT_EQ(rowTexts(rowsOf("a,1\rb,2\r\nc,3\nd,4")), (Texts{"1: a|1", "2: b|2", "3: c|3", "4: d|4"}));
}

TEST(RowReader, PassesOverBlankLinesAndCountsThoseWithANumberSign) {
  RowReader reader([done = false](std::string& buffer) mutable {
    if (std::exchange(done, true)) return false;
    buffer = "# head\n\n,,\na,1\n#b,2\n\"#c\",3\n";
    return true;
  });
  Texts texts;
  for (Row row; reader.next(row);)
    texts.push_back(std::to_string(row.line) + " " + std::string(row.field(0)));
  EXPECT_EQ(texts, (Texts{"4 a", "6 #c"}));
  EXPECT_EQ(reader.comments(), 2U);
}

TEST(RowReader, TellsAQuoteThatDoesNotEndAndGoesOnWithTheNextLine) {
  const std::string text = "a,\"open\nb,2\n" + many("c,3\n", 20000);
  const auto rows = rowsOf(text);
  ASSERT_EQ(rows.size(), 20002U);
  EXPECT_EQ(rows[0].problem, "a quote begins here and does not end");
  EXPECT_EQ(rows[1].line, 2U);
  EXPECT_EQ(rows[1].field(0), "b");
  EXPECT_EQ(rows.back().line, 20002U);
}

TEST(RowReader, TakesAQuoteThatOnlyTheNextQuotedFieldEndsForOneThatDoesNotEnd) {
  EXPECT_EQ(rowTexts(rowsOf("a,\"open\nb,2\n\"c\",\"x,y\"\nd,\"z\nz\" \n")),
            (Texts{"1: ! a quote begins here and does not end", "2: b|2", "3: c|x,y", "4: d|z\nz"}));
}

TEST(RowReader, RefusesOneRowThatIsTooLongAndOneWithTooManyFields) {
  const auto rows = rowsOf("a\n" + std::string(RowReader::kLongestRow + 10, 'x') + "\n" +
                           many("y,", RowReader::kMostFields) + "\n" +
                           many("\"" + std::string(60000, 'z') + "\",", 40) + "\nb\n");
  EXPECT_EQ(rowTexts(rows), (Texts{"1: a", "2: ! the row is longer than 1048576 bytes",
                                   "3: ! the row has more than 4096 fields",
                                   "4: ! the row is longer than 1048576 bytes", "5: b"}));
}

TEST(RowReader, GivesTheSameRowsWhateverPiecesTheTextComesIn) {
  const std::string text =
      "name,x\r\n\"a\r\nb\",\"q\"\"q\" \r\n# no\r\n\r\n  \"blank\" ,2\rlast,\"open\r\nafter,3";
  const Texts whole = rowTexts(rowsOf(text));
  EXPECT_EQ(whole.size(), 5U);
  for (std::size_t piece = 1; piece < 12; ++piece)
    EXPECT_EQ(rowTexts(rowsOf(text, ',', piece)), whole) << piece;
}

TEST(RowReader, HoldsBlanksBeforeAQuoteInBounds) {
  const auto rows = rowsOf(std::string(5000, ' ') + "\"a\",b\n");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].field(1), "b");
}

}  // namespace
}  // namespace zel::host
