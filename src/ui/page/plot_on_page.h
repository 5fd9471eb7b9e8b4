// The plot's way onto the page: a canvas in the plot's world coordinates (km, metres) over one in the page's.
#pragma once

#include "canvas/canvas.h"
#include "ui/page/page_box.h"
#include "ui/plot/plot_view.h"

namespace zel {

// Where a point of the plot (km, metres) lies on the page, when the plot with this scale fills the box.
PagePoint ConvertPrintCoords(const PlotScale& scale, const PageBox& box, double x, double y);

class PlotOnPage final : public Canvas {
 public:
  // `picture` is the box's own canvas and must outlive this one; it gets the page's scale.
  PlotOnPage(Canvas& picture, const PageBox& box);

  void setScale(double left, double top, double right, double bottom) override;
  double scaleWidth() const override { return scale_.right - scale_.left; }
  void clear() override;

  void setDrawMode(DrawMode mode) override { picture_.setDrawMode(mode); }
  void setFillStyle(FillStyle style) override { picture_.setFillStyle(style); }
  void setFillColour(Colour colour) override { picture_.setFillColour(colour); }
  void setDrawWidth(int pixels) override { picture_.setDrawWidth(pixels); }
  int drawWidth() const override { return picture_.drawWidth(); }

  void line(double x1, double y1, double x2, double y2, Colour colour) override;
  void circle(double x, double y, double radius) override;
  void fillRectangle(double x1, double y1, double x2, double y2, Colour colour) override;

  void setTextPosition(double x, double y) override;
  void print(std::string_view text) override { picture_.print(text); }
  double textWidth(std::string_view text) const override;
  double textHeight() const override;

 private:
  PagePoint converted(double x, double y) const { return ConvertPrintCoords(scale_, box_, x, y); }

  Canvas& picture_;
  PageBox box_;
  PlotScale scale_{0, 0, 1, 1};
};

}  // namespace zel
