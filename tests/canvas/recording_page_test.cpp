#include "support/recording_page.h"

#include <gtest/gtest.h>

namespace zel {
namespace {

TEST(RecordingPage, CharactersAreHalfAsWideAsTheFontIsHigh) {
  test::RecordingPage page(11906, 16838);
  page.sheet().setScale(0, 16838, 11906, 0);
  EXPECT_EQ(page.fontSize(), 10);
  // 10 points are 200 twips; 1e-9 of arithmetic.
  EXPECT_NEAR(page.sheet().textWidth("Range"), 500, 1e-9);
  EXPECT_NEAR(page.sheet().textHeight(), 240, 1e-9);
  page.setFontSize(7);
  EXPECT_NEAR(page.sheet().textWidth("Range"), 350, 1e-9);
  // 595.3 points in 100 units of the sheet.
  page.sheet().setScale(0, 100, 100, 0);
  EXPECT_NEAR(page.sheet().textWidth("\xE2\x80\xA6"), 3.5 * 100 / 595.3, 1e-9);
}

TEST(RecordingPage, TellsWhichTextWasPrintedInWhichFont) {
  test::RecordingPage page(11906, 16838);
  page.sheet().setScale(0, 16838, 11906, 0);
  page.sheet().setTextPosition(1400, 16138);
  page.sheet().print("Date");
  page.setFontSize(8);
  page.sheet().setTextPosition(1400, 15000);
  page.setFontSize(7);
  page.sheet().print("note");
  ASSERT_EQ(page.texts().size(), 2U);
  EXPECT_EQ(page.texts()[0].text, "Date");
  EXPECT_EQ(page.texts()[0].position, (CanvasPoint{1400, 16138}));
  EXPECT_EQ(page.texts()[0].points, 10);
  EXPECT_NEAR(page.texts()[0].width, 400, 1e-9);
  EXPECT_EQ(page.texts()[1].points, 7);
  EXPECT_NEAR(page.texts()[1].height, 168, 1e-9);
}

TEST(RecordingPage, KeepsItsBoxesWithWhatLiesUnderThem) {
  test::RecordingPage page(11906, 16838);
  page.sheet().setScale(0, 16838, 11906, 0);
  page.sheet().line(0, 0, 1, 1, kBlack);
  Canvas& first = page.box(1191, 10000, 10716, 6825);
  page.box(0, 1000, 1000, 0);
  first.setScale(0, 1, 10, 0);
  first.line(0, 0, 10, 1, kRed);
  ASSERT_EQ(page.boxes().size(), 2U);
  const test::RecordedBox& box = page.boxes()[0];
  EXPECT_EQ(box.left, 1191);
  EXPECT_EQ(box.top, 10000);
  EXPECT_EQ(box.right, 10716);
  EXPECT_EQ(box.bottom, 6825);
  EXPECT_EQ(box.after, 2U);
  EXPECT_EQ(box.canvas->linesIn(kRed).size(), 1U);
  // 8 points: 80 twips a character, of 9525 in 10 units.
  EXPECT_NEAR(first.textWidth("1,250"), 5 * 80 * 10 / 9525.0, 1e-9);
}

}  // namespace
}  // namespace zel
