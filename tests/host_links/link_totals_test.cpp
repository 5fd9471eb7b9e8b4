// What all links have together, written down and read again.
#include "links/link_totals.h"

#include "list_checks.h"

namespace zel::host {
namespace {

LinkTotals someTotals() {
  LinkTotals totals;
  FigureOptions options;
  options.factors = {{1.333, 1.333, ""}, {2.0 / 3, 2.0 / 3, "_k0.667"}};
  for (std::size_t line = 2; line < 10; ++line) {
    LinkInput link;
    link.line = line;
    link.placed = true;
    link.from = {line == 5 ? -36.0 : 36.0, -84};
    link.to = {36.0 + static_cast<double>(line) / 100, -84};
    totals.add(link, linkFigures(link, flatPaths(), options));
  }
  return totals;
}

TEST(LinkTotals, CountLinksErrorsVerdictsAndKindsOfTexts) {
  const LinkTotals totals = someTotals();
  EXPECT_EQ(totals.links, 8U);
  EXPECT_EQ(totals.errors, 1U);
  ASSERT_EQ(totals.verdicts.size(), 2U);
  EXPECT_EQ(totals.verdicts[0], (std::array<std::size_t, 4>{0, 7, 0, 0}));
  EXPECT_EQ(totals.files, (std::set<std::string>{"/terrain/flat.tif"}));
  ASSERT_EQ(totals.notes.count("a note of #"), 1U);
  EXPECT_EQ(totals.notes.at("a note of #").links, 7U);
  EXPECT_EQ(totals.notes.at("a note of #").line, 2U);
  EXPECT_EQ(totals.warnings.at("beware of # things").example, "beware of 7 things");
  EXPECT_FALSE(totals.model.empty());
}

TEST(LinkTotals, AreReadAsTheyWereWritten) {
  LinkTotals totals = someTotals();
  totals.files.insert("/a\tb\\c\nd.tif");
  LinkTotals read;
  ASSERT_TRUE(read.read(totals.text()));
  EXPECT_EQ(read, totals);
}

TEST(LinkTotals, AreNotReadFromAnythingElse) {
  LinkTotals read;
  const std::string text = someTotals().text();
  for (const std::string& bad :
       {text + "more", text + "odd\t1\n", std::string("links\tx\n"), std::string("verdicts\t1\n")})
    EXPECT_FALSE(read.read(bad)) << bad;
  EXPECT_TRUE(read.read(""));
}

TEST(LinkTotals, HoldTheKindsOfTextsInBounds) {
  LinkTotals totals;
  LinkFigures figures;
  for (char c = 'A'; c <= 'z'; ++c) figures.notes.push_back(std::string("kind ") + c);
  totals.add({}, figures);
  EXPECT_EQ(totals.notes.size(), LinkTotals::kMostKinds);
  EXPECT_EQ(totals.otherTexts, figures.notes.size() - LinkTotals::kMostKinds);
}

TEST(LinkTotals, TakeTextsThatDifferInNumbersForOneKind) {
  EXPECT_EQ(textKind("12 of 1000 samples, 3.25 m"), "# of # samples, # m");
  EXPECT_EQ(textKind("the end is 5."), "the end is #.");
  EXPECT_EQ(textKind(""), "");
}

}  // namespace
}  // namespace zel::host
