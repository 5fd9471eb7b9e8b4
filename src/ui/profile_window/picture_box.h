// Picture1: shows the canvas of the plot and hands on what the pointer and the keys do over it.
//
// The canvas keeps its picture while the box changes its size; until the next drawing it is shown stretched,
// so that nothing flickers while a window is resized. Positions are handed on in world coordinates.
#pragma once

#include <QKeyEvent>
#include <QPointF>
#include <QWidget>
#include <functional>

#include "canvas/qt/raster_canvas.h"

namespace zel {

class PictureBox final : public QWidget {
 public:
  explicit PictureBox(QWidget* parent = nullptr);

  RasterCanvas& canvas() { return canvas_; }
  const RasterCanvas& canvas() const { return canvas_; }

  // Whether the canvas has the size and the pixel ratio of the box.
  bool canvasFits() const;
  // Makes it so: white, when it was not. Returns whether it was made anew.
  bool fitCanvas();

  // From logical pixels of the box to world coordinates, and back.
  QPointF worldAt(QPointF pixel) const;
  QPointF pixelAt(QPointF world) const;

  // Shows anew what a circle of the canvas covers; a whole large picture takes milliseconds. The radius is in
  // units of x.
  void updateCircle(QPointF world, double radius);

  std::function<void(QPointF world)> onPress;
  std::function<void(QPointF world)> onMove;
  std::function<bool(const QKeyEvent& key)> onKey;  // whether the key was taken
  std::function<void()> onMisfit;  // shown with another pixel ratio than the canvas was drawn for

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  RasterCanvas canvas_;
};

}  // namespace zel
