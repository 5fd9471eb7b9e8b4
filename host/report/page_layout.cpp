#include "report/page_layout.h"

#include <algorithm>
#include <cmath>

namespace zel::host {
namespace {

// Of the pictures, millimetres.
constexpr double kLowestMap = 45, kTallestMap = 110;
constexpr double kLowestPlot = 35, kTallestPlot = 75;
constexpr double kMapShare = 0.6;    // of the room for both, one above the other
constexpr double kNotesSeen = 24;    // that the notes get in any case, when they want as much
constexpr double kBesideTall = 100;  // the tallest pictures beside each other
constexpr double kCaptionGap = 0.8;  // between a picture and its caption

}  // namespace

PageBox contentOf(const Sheet& sheet) {
  return {kPageMargin, kPageMargin, sheet.width - 2 * kPageMargin,
          sheet.height - 2 * kPageMargin - kFootHeight};
}

PageBox footOf(const Sheet& sheet) {
  return {kPageMargin, sheet.height - kPageMargin - kFootHeight, sheet.width - 2 * kPageMargin, kFootHeight};
}

LinkPageLayout linkPageLayout(const Sheet& sheet, const PartHeights& heights) {
  const PageBox content = contentOf(sheet);
  const bool beside = sheet.width > sheet.height;
  const double pictures = beside ? 1 : 2;
  const double texts = heights.head + heights.values + pictures * (kCaptionGap + heights.captions);
  const double gaps = (pictures + 3) * kBlockGap;
  const double room = content.height - texts - gaps - std::min(heights.notes, kNotesSeen);
  double map = 0, plot = 0;
  if (beside) {
    map = plot = std::clamp(room, kLowestMap, kBesideTall);
  } else {
    map = std::clamp(room * kMapShare, kLowestMap, kTallestMap);
    plot = std::clamp(room - map, kLowestPlot, kTallestPlot);
  }

  LinkPageLayout layout;
  double y = content.top;
  const auto take = [&](double height) {
    const PageBox box{content.left, y, content.width, height};
    y += height;
    return box;
  };
  layout.head = take(heights.head);
  y += kBlockGap;
  layout.map = take(map);
  y += kCaptionGap;
  layout.mapCaption = take(heights.captions);
  if (beside) {
    const double half = (content.width - kBlockGap) / 2;
    layout.map.width = layout.mapCaption.width = half;
    layout.plot = layout.map;
    layout.plotCaption = layout.mapCaption;
    layout.plot.left = layout.plotCaption.left = content.left + half + kBlockGap;
  } else {
    y += kBlockGap;
    layout.plot = take(plot);
    y += kCaptionGap;
    layout.plotCaption = take(heights.captions);
  }
  y += kBlockGap;
  layout.values = take(std::min(heights.values, std::max(content.bottom() - y, 0.0)));
  y += kBlockGap;
  layout.notes = take(std::max(content.bottom() - y, 0.0));
  return layout;
}

std::size_t notesThatFit(std::span<const double> heights, double room, double line) {
  double all = 0;
  for (const double height : heights) all += height;
  if (all <= room) return heights.size();
  std::size_t count = 0;
  double used = line;
  while (count < heights.size() && used + heights[count] <= room) used += heights[count++];
  return count;
}

std::size_t rowsThatFit(double room, double row) {
  if (!(row > 0) || !(room > row)) return 1;
  return static_cast<std::size_t>(std::floor(room / row + 1e-9));
}

}  // namespace zel::host
