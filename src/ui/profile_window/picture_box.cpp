#include "ui/profile_window/picture_box.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace zel {

PictureBox::PictureBox(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("Picture1"));
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::CrossCursor);
}

bool PictureBox::canvasFits() const {
  return canvas_.size() == size() && canvas_.pixelRatio() == devicePixelRatioF();
}

bool PictureBox::fitCanvas() {
  if (canvasFits()) return false;
  canvas_.resize(size(), devicePixelRatioF());
  return true;
}

QPointF PictureBox::worldAt(QPointF pixel) const {
  if (canvas_.size() != size() && width() > 0 && height() > 0)
    pixel = {pixel.x() * canvas_.size().width() / width(), pixel.y() * canvas_.size().height() / height()};
  const CanvasPoint world = canvas_.pixelToWorld(pixel);
  return {world.x, world.y};
}

QPointF PictureBox::pixelAt(QPointF world) const {
  QPointF pixel = canvas_.worldToPixel({world.x(), world.y()});
  if (canvas_.size() != size() && !canvas_.size().isEmpty())
    pixel = {pixel.x() * width() / canvas_.size().width(), pixel.y() * height() / canvas_.size().height()};
  return pixel;
}

void PictureBox::updateCircle(QPointF world, double radius) {
  const QPointF centre = pixelAt(world);
  const double pixels = std::abs(pixelAt({world.x() + radius, world.y()}).x() - centre.x());
  // The outline lies half on either side of the radius, and positions are rounded to device pixels.
  const double reach = pixels + canvas_.drawWidth() + 2;
  if (!std::isfinite(centre.y()) || !std::isfinite(reach)) return update();
  const QRectF covered(centre.x() - reach, centre.y() - reach, 2 * reach, 2 * reach);
  update(covered.intersected(QRectF(rect())).toAlignedRect());
}

void PictureBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (canvas_.image().isNull()) {
    painter.fillRect(rect(), Qt::white);
  } else if (canvasFits()) {
    painter.drawImage(QPointF(0, 0), canvas_.image());
  } else {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(rect()), canvas_.image(), QRectF(canvas_.image().rect()));
    if (canvas_.pixelRatio() != devicePixelRatioF() && onMisfit) onMisfit();
  }
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
  }
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
  setFocus(Qt::MouseFocusReason);
  if (onPress) onPress(worldAt(event->position()));
}

// The second press of a double click is none of its own: it would put both markers in one place.
void PictureBox::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
  if (onMove) onMove(worldAt(event->position()));
}

void PictureBox::keyPressEvent(QKeyEvent* event) {
  if (onKey && onKey(*event)) return;
  QWidget::keyPressEvent(event);
}

void PictureBox::focusInEvent(QFocusEvent*) { update(); }
void PictureBox::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace zel
