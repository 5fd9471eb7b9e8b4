// Words on the map, dark with a light rim, readable on any ground. Each is drawn once and kept as a picture,
// for the rim takes ten times as long as the word.
#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>
#include <unordered_map>

namespace zel::host {

class MapText {
 public:
  // Forgets what was drawn in another font or for another screen.
  void begin(const QFont& font, double pixelRatio);

  QSizeF size(const QString& text, bool bold = false);  // logical pixels, with the rim
  void draw(QPainter& painter, QPointF leftTop, const QString& text, bool bold = false);
  int drawnAnew() const { return drawnAnew_; }  // pictures made since begin()

 private:
  const QImage& picture(const QString& text, bool bold);

  QFont font_;
  double pixelRatio_ = 0;
  int drawnAnew_ = 0;
  std::unordered_map<QString, QSizeF> sizes_[2];
  std::unordered_map<QString, QImage> pictures_[2];  // plain, bold
};

}  // namespace zel::host
