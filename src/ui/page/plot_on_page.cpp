#include "ui/page/plot_on_page.h"

#include <cmath>

namespace zel {

PagePoint ConvertPrintCoords(const PlotScale& scale, const PageBox& box, double x, double y) {
  return {box.left + (x - scale.left) / (scale.right - scale.left) * box.width(),
          box.bottom + (y - scale.bottom) / (scale.top - scale.bottom) * box.height()};
}

PlotOnPage::PlotOnPage(Canvas& picture, const PageBox& box) : picture_(picture), box_(box) {
  picture_.setScale(box.left, box.top, box.right, box.bottom);
}

void PlotOnPage::setScale(double left, double top, double right, double bottom) {
  scale_ = {left, top, right, bottom};
}

void PlotOnPage::clear() { picture_.clear(); }

void PlotOnPage::line(double x1, double y1, double x2, double y2, Colour colour) {
  const PagePoint from = converted(x1, y1);
  const PagePoint to = converted(x2, y2);
  picture_.line(from.x, from.y, to.x, to.y, colour);
}

// The radius is measured along x.
void PlotOnPage::circle(double x, double y, double radius) {
  const PagePoint centre = converted(x, y);
  picture_.circle(centre.x, centre.y, radius / scaleWidth() * box_.width());
}

void PlotOnPage::fillRectangle(double x1, double y1, double x2, double y2, Colour colour) {
  const PagePoint one = converted(x1, y1);
  const PagePoint other = converted(x2, y2);
  picture_.fillRectangle(one.x, one.y, other.x, other.y, colour);
}

void PlotOnPage::setTextPosition(double x, double y) {
  const PagePoint corner = converted(x, y);
  picture_.setTextPosition(corner.x, corner.y);
}

double PlotOnPage::textWidth(std::string_view text) const {
  return std::abs(picture_.textWidth(text) / box_.width() * scaleWidth());
}

double PlotOnPage::textHeight() const {
  return std::abs(picture_.textHeight() / box_.height() * (scale_.top - scale_.bottom));
}

}  // namespace zel
