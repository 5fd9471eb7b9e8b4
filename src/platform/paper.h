// Paper: sheets, their margins, and how they lie.
//
// Lengths are twips.
#pragma once

#include <algorithm>
#include <string>
#include <utility>

namespace zel {

inline constexpr double kTwipsPerInch = 1440;
inline constexpr double kTwipsPerPoint = 20;

// Hosts pass these numbers.
enum class PageOrientation { kPortrait = 1, kLandscape = 2 };

// What a printer cannot print on, at each side of the page.
struct PaperMargins {
  double left = 0, top = 0, right = 0, bottom = 0;
};

// A sheet as it lies before the reader: wider than high in landscape. At first A4, upright.
struct PaperFormat {
  std::string name = "A4";
  double width = 11906;
  double height = 16838;
  PaperMargins margins;
};

inline PaperFormat a4Paper() { return {}; }
inline PaperFormat letterPaper() { return {"Letter", 12240, 15840, {}}; }

// A square sheet lies in portrait.
inline PageOrientation orientationOf(const PaperFormat& paper) {
  return paper.width > paper.height ? PageOrientation::kLandscape : PageOrientation::kPortrait;
}

// The sheet turned by a right angle. Which way a printer turns it is not known: the wider margin of two
// counts for both sides.
inline PaperFormat turned(PaperFormat paper) {
  std::swap(paper.width, paper.height);
  const PaperMargins before = paper.margins;
  paper.margins.left = paper.margins.right = std::max(before.top, before.bottom);
  paper.margins.top = paper.margins.bottom = std::max(before.left, before.right);
  return paper;
}

// The sheet in that orientation. A square one stays as it is.
inline PaperFormat lying(const PaperFormat& paper, PageOrientation orientation) {
  const bool square = paper.width == paper.height;
  return square || orientationOf(paper) == orientation ? paper : turned(paper);
}

}  // namespace zel
