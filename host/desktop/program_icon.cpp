#include "desktop/program_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace zel::host {
namespace {

constexpr double kSide = 64;  // of the drawing; every size is this one scaled

void draw(QPainter& painter) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xdc, 0xea, 0xf5));
  painter.drawRoundedRect(QRectF(2, 2, 60, 60), 10, 10);
  QPainterPath ground(QPointF(2, 52));
  ground.lineTo(2, 44);
  ground.lineTo(14, 36);
  ground.lineTo(24, 42);
  ground.lineTo(36, 26);
  ground.lineTo(48, 40);
  ground.lineTo(62, 34);
  ground.lineTo(62, 52);
  ground.quadTo(62, 62, 52, 62);
  ground.lineTo(12, 62);
  ground.quadTo(2, 62, 2, 52);
  painter.setBrush(QColor(0x5b, 0x7f, 0x4c));
  painter.drawPath(ground);
  painter.setPen(QPen(QColor(0x20, 0x3a, 0x70), 3, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(14, 36), QPointF(14, 16));
  painter.drawLine(QPointF(52, 38), QPointF(52, 16));
  painter.setPen(QPen(QColor(0xc0, 0x30, 0x20), 2.5));
  painter.drawLine(QPointF(14, 16), QPointF(52, 16));
}

}  // namespace

QIcon programIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(side / kSide, side / kSide);
    draw(painter);
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace zel::host
