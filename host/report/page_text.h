// Texts on a page of the report: measured, broken into lines, cut with an ellipsis. Names are drawn as they
// are, never as markup, from left to right whatever their script.
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QString>

#include "report/page_layout.h"

namespace zel::host {

struct TextStyle {
  double points = 8;
  bool bold = false;
  QColor colour{0x18, 0x1e, 0x24};
};

class PageText {
 public:
  // `unitsPerMm` of the painter's coordinates; it draws on nothing but this painter.
  PageText(QPainter& painter, double unitsPerMm) : painter_(painter), units_(unitsPerMm) {}

  double lineHeight(const TextStyle& style) const;  // millimetres
  double width(const QString& text, const TextStyle& style) const;

  // Millimetres that the text takes, broken into at most so many lines of that width.
  double height(const QString& text, const TextStyle& style, double width, int mostLines) const;
  // Draws it from the box's top; the last line ends in an ellipsis where there is more. Gives its height.
  double paragraph(const PageBox& box, const QString& text, const TextStyle& style, int mostLines);
  // One line, cut where it is too wide.
  void line(const PageBox& box, const QString& text, const TextStyle& style,
            Qt::AlignmentFlag align = Qt::AlignLeft);

  QRectF rect(const PageBox& box) const {
    return {box.left * units_, box.top * units_, box.width * units_, box.height * units_};
  }
  double units() const { return units_; }
  QPainter& painter() { return painter_; }
  QFont font(const TextStyle& style) const;

 private:
  double lay(const PageBox& box, const QString& text, const TextStyle& style, int mostLines, bool draw) const;

  QPainter& painter_;
  double units_;
};

}  // namespace zel::host
