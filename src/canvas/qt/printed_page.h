// A page kept as strokes and texts, to be painted on paper, into a PDF, or in a preview.
//
// A logical pixel of its canvases is 15 twips (1/96 inch); places are not rounded to it. Strokes are as thin
// as paper takes them (vector_canvas.h). Texts are in the classic font of windows, or in the nearest to it
// that is installed, whatever the application's own font, without ligatures: what is copied or searched for
// in a PDF are the letters. Texts need a QGuiApplication; without one they are not seen.
#pragma once

#include <QRectF>
#include <QSizeF>
#include <memory>
#include <vector>

#include "canvas/page.h"
#include "canvas/qt/vector_canvas.h"

class QPainter;

namespace zel {

class PrintedPage final : public Page {
 public:
  // Of the whole sheet, twips (1/1440 inch).
  PrintedPage(double width, double height);
  PrintedPage(const PrintedPage&) = delete;
  PrintedPage& operator=(const PrintedPage&) = delete;

  QSizeF size() const { return {width_, height_}; }  // twips

  // Draws all of it so that the whole sheet takes the rectangle of the painter's coordinates. The painter is
  // left as it was.
  void paint(QPainter& painter, const QRectF& rectangle) const { sheet_.paint(painter, rectangle); }

  VectorCanvas& sheet() override { return sheet_; }
  const VectorCanvas& sheet() const { return sheet_; }
  // Less than a twentieth of a point is a twentieth.
  void setFontSize(double points) override;
  VectorCanvas& box(double left, double top, double right, double bottom) override;

 private:
  double width_;
  double height_;
  VectorCanvas sheet_;
  std::vector<std::shared_ptr<VectorCanvas>> boxes_;  // seen or not, they can be drawn on
};

}  // namespace zel
