#include "map_view/map_text.h"

#include <QFontMetricsF>
#include <array>
#include <cmath>

namespace zel::host {

namespace {
constexpr double kRim = 1.5;              // logical pixels
constexpr std::size_t kMostWords = 3000;  // kept: some 10 KB each
constexpr QColor kInk(24, 30, 36);
constexpr QColor kRimColour(255, 255, 255, 215);
}  // namespace

void MapText::begin(const QFont& font, double pixelRatio) {
  drawnAnew_ = 0;
  const bool same = font == font_ && pixelRatio == pixelRatio_;
  for (int kind = 0; kind < 2; ++kind) {
    if (!same || pictures_[kind].size() > kMostWords) pictures_[kind].clear();
    if (!same || sizes_[kind].size() > 100 * kMostWords) sizes_[kind].clear();
  }
  font_ = font;
  pixelRatio_ = pixelRatio;
}

QSizeF MapText::size(const QString& text, bool bold) {
  const auto [entry, fresh] = sizes_[bold].try_emplace(text);
  if (fresh) {
    QFont font = font_;
    font.setBold(bold);
    const QFontMetricsF metrics(font);
    entry->second =
        QSizeF(std::ceil(metrics.horizontalAdvance(text)) + 2 * kRim, std::ceil(metrics.height()) + 2 * kRim);
  }
  return entry->second;
}

void MapText::draw(QPainter& painter, QPointF leftTop, const QString& text, bool bold) {
  // On whole pixels of the screen, so that the picture is not smeared.
  const QPointF snapped(std::round(leftTop.x() * pixelRatio_) / pixelRatio_,
                        std::round(leftTop.y() * pixelRatio_) / pixelRatio_);
  painter.drawImage(snapped, picture(text, bold));
}

const QImage& MapText::picture(const QString& text, bool bold) {
  const auto [entry, fresh] = pictures_[bold].try_emplace(text);
  if (!fresh) return entry->second;
  ++drawnAnew_;
  const QSizeF pixels = size(text, bold) * pixelRatio_;
  QImage picture(static_cast<int>(std::ceil(pixels.width())), static_cast<int>(std::ceil(pixels.height())),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(pixelRatio_);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QFont font = font_;
  font.setBold(bold);
  painter.setFont(font);
  const double baseline = QFontMetricsF(font).ascent();
  constexpr std::array<QPointF, 8> kAround = {QPointF(-1, 0),     QPointF(1, 0),       QPointF(0, -1),
                                              QPointF(0, 1),      QPointF(-0.7, -0.7), QPointF(0.7, -0.7),
                                              QPointF(-0.7, 0.7), QPointF(0.7, 0.7)};
  painter.setPen(kRimColour);
  for (const QPointF& offset : kAround) {
    painter.drawText(QPointF(kRim, kRim + baseline) + offset * kRim, text);
  }
  painter.setPen(kInk);
  painter.drawText(QPointF(kRim, kRim + baseline), text);
  painter.end();
  entry->second = std::move(picture);
  return entry->second;
}

}  // namespace zel::host
