// A printed page as it is looked at: the sheet on a ground of another shade, fitted into the view or at a
// zoom of its own, with scroll bars where it is larger.
//
// 1 is the sheet at its own size by the screen's logical dots per inch. The page's strokes are painted anew
// at every zoom and pixel ratio, so that it is always crisp.
#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <memory>

#include "canvas/qt/printed_page.h"

namespace zel {

class PageView final : public QAbstractScrollArea {
 public:
  static constexpr double kSmallest = 0.1, kLargest = 8;  // of the zoom

  explicit PageView(QWidget* parent = nullptr);

  // Null shows the ground alone. Zoom and place stay.
  void setPage(std::unique_ptr<PrintedPage> page);
  bool hasPage() const { return page_ != nullptr; }
  const PrintedPage* page() const { return page_.get(); }

  double zoom() const { return zoom_; }
  bool isFitted() const { return fitted_; }
  void fit();                 // from now on, at every size of the view
  void setZoom(double zoom);  // what the middle shows stays there
  void zoomIn();
  void zoomOut();

  // Where the sheet lies in the viewport, logical pixels.
  QRectF sheetRectangle() const;

  std::function<void()> onZoom;  // zoom or fitting may have changed

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void paintSheet(QPainter& painter);
  QSizeF sizeAt(double zoom) const;
  double fittingZoom() const;
  void zoomAbout(double zoom, QPointF kept);
  void takeZoom(double zoom);
  void layOut();

  std::unique_ptr<PrintedPage> page_;
  double zoom_ = 1;
  bool fitted_ = true;
};

}  // namespace zel
