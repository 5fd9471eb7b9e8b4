// Whether the texts of a window can be read: none is cut off, and each stands out from what is behind it.
//
// The contrast is that of the Web Content Accessibility Guidelines (2.1, success criterion 1.4.3): the ratio
// of the relative luminances, 1 to 21, of which small text needs 4.5.
#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QColor>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QString>
#include <QStringList>
#include <QToolButton>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace zel::test {

inline double relativeLuminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(static_cast<double>(colour.redF())) +
         0.7152 * linear(static_cast<double>(colour.greenF())) +
         0.0722 * linear(static_cast<double>(colour.blueF()));
}

inline double contrast(const QColor& a, const QColor& b) {
  const double one = relativeLuminance(a), other = relativeLuminance(b);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

// How many pixels have which colour.
inline std::unordered_map<QRgb, int> colourCounts(const QImage& picture) {
  std::unordered_map<QRgb, int> counts;
  const QImage plain = picture.convertToFormat(QImage::Format_RGB32);
  for (int y = 0; y < plain.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(plain.constScanLine(y));
    for (int x = 0; x < plain.width(); ++x) ++counts[row[x]];
  }
  return counts;
}

// The colour of most pixels: what is behind a text.
inline QColor groundColour(const QImage& picture) {
  const auto counts = colourCounts(picture);
  const auto most = std::max_element(counts.begin(), counts.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  return most == counts.end() ? QColor() : QColor(most->first);
}

// Of the colour that stands out most.
inline double bestContrast(const QImage& picture) {
  const QColor ground = groundColour(picture);
  double best = 1;
  for (const auto& entry : colourCounts(picture))
    best = std::max(best, contrast(QColor(entry.first), ground));
  return best;
}

// What cannot be read in the window as it is shown, each with its reason; disabled texts need no contrast.
inline QStringList illegibleTexts(QWidget& window) {
  constexpr double kLeastContrast = 4.5;
  QStringList faults;
  const QImage picture = window.grab().toImage();
  const qreal ratio = picture.devicePixelRatio();
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &window || widget->visibleRegion().isEmpty()) continue;
    QString text;
    bool cut = false;
    if (const auto* label = qobject_cast<QLabel*>(widget)) {
      text = label->text();
      cut = label->wordWrap() ? label->height() < label->heightForWidth(label->width())
                              : label->width() < label->minimumSizeHint().width() ||
                                    label->height() < label->minimumSizeHint().height();
    } else if (const auto* button = qobject_cast<QAbstractButton*>(widget)) {
      text = button->text();
      cut = button->width() < button->minimumSizeHint().width() ||
            button->height() < button->minimumSizeHint().height();
    }
    if (text.isEmpty()) continue;
    const QString name = widget->objectName() + QStringLiteral(" \"") + text + u'"';
    const QRect place(widget->mapTo(&window, QPoint()), widget->size());
    cut = cut || !window.rect().contains(place);
    if (cut) faults += name + QStringLiteral(" is cut off");
    if (!widget->isEnabled()) continue;
    const QRect pixels(place.topLeft() * ratio, place.size() * ratio);
    const QColor ground = groundColour(picture.copy(pixels.intersected(picture.rect())));
    const double found = contrast(widget->palette().color(widget->foregroundRole()), ground);
    if (found < kLeastContrast)
      faults += name + QStringLiteral(" has a contrast of %1 against %2").arg(found).arg(ground.name());
  }
  return faults;
}

}  // namespace zel::test
