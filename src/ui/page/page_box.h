// Places on the page: twips (1/1440 inch), x to the right from the paper's left edge, y upwards from its
// lower one.
#pragma once

namespace zel {

// Top lies above bottom.
struct PageBox {
  double left = 0, top = 0, right = 0, bottom = 0;

  double width() const { return right - left; }
  double height() const { return top - bottom; }
};

struct PagePoint {
  double x = 0, y = 0;
};

}  // namespace zel
