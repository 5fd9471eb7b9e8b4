#include "ui/profile_window/page_view.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/paper.h"

namespace zel {
namespace {

constexpr double kStep = 1.25;    // from one zoom to the next
constexpr int kSheetMargin = 12;  // logical pixels around the sheet
constexpr int kShadow = 3;        // logical pixels
constexpr int kFocusFrame = 2;    // logical pixels
constexpr int kNotch = 120;       // of the wheel, eighths of a degree

}  // namespace

PageView::PageView(QWidget* parent) : QAbstractScrollArea(parent) {
  setFocusPolicy(Qt::StrongFocus);
  for (QScrollBar* bar : {horizontalScrollBar(), verticalScrollBar()}) bar->setSingleStep(24);
}

void PageView::setPage(std::unique_ptr<PrintedPage> page) {
  page_ = std::move(page);
  layOut();
}

QSizeF PageView::sizeAt(double zoom) const {
  if (!page_) return {0, 0};
  const QSizeF twips = page_->size();
  return {twips.width() / kTwipsPerInch * logicalDpiX() * zoom,
          twips.height() / kTwipsPerInch * logicalDpiY() * zoom};
}

// In the room without scroll bars, so that they do not come and go by turns.
double PageView::fittingZoom() const {
  const QSizeF whole = sizeAt(1);
  if (whole.isEmpty()) return zoom_;
  const QSize room = maximumViewportSize() - QSize(2 * kSheetMargin, 2 * kSheetMargin);
  return std::clamp(std::min(room.width() / whole.width(), room.height() / whole.height()), kSmallest,
                    kLargest);
}

void PageView::fit() {
  fitted_ = true;
  layOut();
}

void PageView::setZoom(double zoom) { zoomAbout(zoom, QRectF(viewport()->rect()).center()); }
void PageView::zoomIn() { setZoom(zoom_ * kStep); }
void PageView::zoomOut() { setZoom(zoom_ / kStep); }

// What lies at that place of the viewport stays there, as far as the scroll bars allow it.
void PageView::zoomAbout(double zoom, QPointF kept) {
  const QRectF before = sheetRectangle();
  fitted_ = false;
  takeZoom(zoom);
  if (before.isEmpty()) return;
  const QSizeF now = sizeAt(zoom_);
  const double x = (kept.x() - before.x()) / before.width() * now.width();
  const double y = (kept.y() - before.y()) / before.height() * now.height();
  horizontalScrollBar()->setValue(static_cast<int>(std::lround(x + kSheetMargin - kept.x())));
  verticalScrollBar()->setValue(static_cast<int>(std::lround(y + kSheetMargin - kept.y())));
}

void PageView::layOut() { takeZoom(fitted_ ? fittingZoom() : zoom_); }

void PageView::takeZoom(double zoom) {
  zoom_ = std::clamp(zoom, kSmallest, kLargest);
  const QSizeF sheet = sizeAt(zoom_);
  // A fitted sheet needs none, whatever its last pixel is rounded to.
  const auto range = [this](double length, int room) {
    return fitted_ ? 0 : std::max(0, static_cast<int>(std::ceil(length)) + 2 * kSheetMargin - room);
  };
  // The first bar may take room from the other.
  for (int i = 0; i < 2; ++i) {
    horizontalScrollBar()->setRange(0, range(sheet.width(), viewport()->width()));
    verticalScrollBar()->setRange(0, range(sheet.height(), viewport()->height()));
  }
  horizontalScrollBar()->setPageStep(viewport()->width());
  verticalScrollBar()->setPageStep(viewport()->height());
  viewport()->update();
  if (onZoom) onZoom();
}

QRectF PageView::sheetRectangle() const {
  const QSizeF sheet = sizeAt(zoom_);
  const auto start = [](double length, int room, const QScrollBar& bar) {
    return bar.maximum() > 0 ? double{kSheetMargin} - bar.value() : std::floor((room - length) / 2);
  };
  return {QPointF(start(sheet.width(), viewport()->width(), *horizontalScrollBar()),
                  start(sheet.height(), viewport()->height(), *verticalScrollBar())),
          sheet};
}

void PageView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setClipRegion(event->region());
  painter.fillRect(event->rect(), palette().color(QPalette::Mid));
  if (page_) paintSheet(painter);
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), kFocusFrame));
  painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
}

void PageView::paintSheet(QPainter& painter) {
  const QRectF sheet = sheetRectangle();
  painter.fillRect(sheet.translated(kShadow, kShadow), palette().color(QPalette::Shadow));
  painter.fillRect(sheet, Qt::white);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  page_->paint(painter, sheet);
}

void PageView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  layOut();
}

void PageView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void PageView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

void PageView::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  if (event->key() == Qt::Key_Home) return bar.setValue(bar.minimum());
  if (event->key() == Qt::Key_End) return bar.setValue(bar.maximum());
  QAbstractScrollArea::keyPressEvent(event);
}

void PageView::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) {
    QAbstractScrollArea::wheelEvent(event);
    return;
  }
  event->accept();
  const double notches = double(event->angleDelta().y()) / kNotch;
  if (notches != 0) zoomAbout(zoom_ * std::pow(kStep, notches), event->position());
}

QSize PageView::sizeHint() const { return {560, 420}; }

}  // namespace zel
