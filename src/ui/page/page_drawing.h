// The page of a profile: header, plot in a box, two columns of values, small print.
//
// The page has a scale of its own in twips (1/1440 inch), x to the right from the paper's left edge, y
// upwards from its lower one.
//
// It is one page whatever there is to say. Texts have 10 points, down to 7 where one would leave its column
// or the paper, down to 6 on paper that is too low, where the plot becomes lower next. A long description
// takes the room of all but two lines of the notes, and ends in an ellipsis beyond it.
#pragma once

#include <functional>

#include "canvas/page.h"
#include "platform/paper.h"
#include "ui/page/page_box.h"
#include "ui/page/page_content.h"

namespace zel {

// What came of it.
struct DrawnPage {
  bool drawn = false;           // false: the plot failed, and the page is not to be printed
  bool descriptionCut = false;  // the description had no room on the page; it ends in an ellipsis
  PageBox plot;
};

// Draws the plot, in its own world coordinates, on a canvas that is the box; false when it failed.
using DrawPlotOnPage = std::function<bool(Canvas& box)>;

// All of it, in the order from the top of the page. `paper` is the page's own.
DrawnPage drawPage(Page& page, const PaperFormat& paper, const PageContent& content,
                   const DrawPlotOnPage& drawPlot);

}  // namespace zel
