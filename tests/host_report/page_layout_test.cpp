// Where the parts of a report's page are.
#include "report/page_layout.h"

#include <gtest/gtest.h>

#include <vector>

#include "report/report_job.h"

namespace zel::host {
namespace {

void expectBelow(const PageBox& upper, const PageBox& lower) { EXPECT_LE(upper.bottom(), lower.top + 1e-9); }

void expectInside(const PageBox& box, const PageBox& content) {
  EXPECT_GE(box.left, content.left - 1e-9);
  EXPECT_GE(box.top, content.top - 1e-9);
  EXPECT_LE(box.right(), content.right() + 1e-9);
  EXPECT_LE(box.bottom(), content.bottom() + 1e-9);
}

// Millimetres: texts of few and of many lines.
const std::vector<PartHeights> kTexts = {
    {20, 10, 3.5, 0}, {30, 45, 3.5, 20}, {55, 55, 3.5, 80}, {0, 0, 0, 0}};

TEST(LinkPageLayout, PartsFollowEachOtherWithinTheContentOnEverySheet) {
  for (const Sheet& sheet : {kSheetA4, kSheetLetter, lying(kSheetA4), lying(kSheetLetter)}) {
    for (const PartHeights& texts : kTexts) {
      SCOPED_TRACE(testing::Message() << sheet.width << " x " << sheet.height << ", head " << texts.head);
      const LinkPageLayout layout = linkPageLayout(sheet, texts);
      const PageBox content = contentOf(sheet);
      for (const PageBox& box : {layout.head, layout.map, layout.mapCaption, layout.plot, layout.plotCaption,
                                 layout.values, layout.notes})
        expectInside(box, content);
      expectBelow(layout.head, layout.map);
      expectBelow(layout.map, layout.mapCaption);
      expectBelow(layout.plot, layout.plotCaption);
      expectBelow(layout.mapCaption, layout.values);
      expectBelow(layout.plotCaption, layout.values);
      expectBelow(layout.values, layout.notes);
      EXPECT_DOUBLE_EQ(layout.head.height, texts.head);
      EXPECT_DOUBLE_EQ(layout.values.height, texts.values);  // nothing of them is cut
      EXPECT_LE(content.bottom(), footOf(sheet).top + 1e-9);
    }
  }
}

TEST(LinkPageLayout, MapAndProfileStandAboveEachOtherOnUprightPaper) {
  const LinkPageLayout layout = linkPageLayout(kSheetA4, {30, 45, 3.5, 20});
  EXPECT_DOUBLE_EQ(layout.map.width, 180);
  EXPECT_DOUBLE_EQ(layout.plot.width, 180);
  expectBelow(layout.mapCaption, layout.plot);
  EXPECT_GT(layout.map.height, layout.plot.height);
}

TEST(LinkPageLayout, MapAndProfileStandBesideEachOtherOnLyingPaper) {
  const LinkPageLayout layout = linkPageLayout(lying(kSheetA4), {30, 45, 3.5, 20});
  EXPECT_DOUBLE_EQ(layout.map.top, layout.plot.top);
  EXPECT_DOUBLE_EQ(layout.map.height, layout.plot.height);
  EXPECT_LT(layout.map.right(), layout.plot.left);
  EXPECT_DOUBLE_EQ(layout.plot.right(), contentOf(lying(kSheetA4)).right());
}

TEST(LinkPageLayout, ThePicturesGiveWayToTheTexts) {
  const LinkPageLayout few = linkPageLayout(kSheetA4, {20, 10, 3.5, 0});
  const LinkPageLayout many = linkPageLayout(kSheetA4, {55, 55, 3.5, 80});
  EXPECT_LT(many.map.height, few.map.height);
  EXPECT_LT(many.plot.height, few.plot.height);
  EXPECT_GE(many.map.height, 45);
  EXPECT_GE(many.plot.height, 35);
}

TEST(NotesThatFit, AllWhereThereIsRoomWithoutALineThatCounts) {
  const std::vector<double> heights = {3, 3, 3};
  EXPECT_EQ(notesThatFit(heights, 9, 3), 3U);
  EXPECT_EQ(notesThatFit({}, 0, 3), 0U);
}

TEST(NotesThatFit, LeavesRoomForTheLineThatCountsTheOthers) {
  const std::vector<double> heights = {3, 6, 3};
  EXPECT_EQ(notesThatFit(heights, 11.9, 3), 1U);  // 3 and the line; 9 and the line would be 12
  EXPECT_EQ(notesThatFit(heights, 5, 3), 0U);
}

TEST(RowsThatFit, IsNeverNoneSoThatATableEnds) {
  EXPECT_EQ(rowsThatFit(52, 5.2), 10U);
  EXPECT_EQ(rowsThatFit(51.9, 5.2), 9U);
  EXPECT_EQ(rowsThatFit(3, 5.2), 1U);
  EXPECT_EQ(rowsThatFit(-1, 5.2), 1U);
  EXPECT_EQ(rowsThatFit(50, 0), 1U);
}

}  // namespace
}  // namespace zel::host
