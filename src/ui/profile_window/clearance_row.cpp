#include "ui/profile_window/clearance_row.h"

#include <QEvent>
#include <QFontMetrics>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

namespace zel {
namespace {

constexpr double kSmallestFont = 8;  // points

// Dark enough on a light window and light enough on a dark one.
std::optional<QColor> colourOf(ClearanceVerdict verdict, bool dark) {
  switch (verdict) {
    case ClearanceVerdict::kClear:
      return dark ? QColor(0x6f, 0xd0, 0x8c) : QColor(0x14, 0x6c, 0x2e);
    case ClearanceVerdict::kMarginal:
      return dark ? QColor(0xe8, 0xb3, 0x39) : QColor(0x8a, 0x5a, 0x00);
    case ClearanceVerdict::kBlocked:
      return dark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb3, 0x1d, 0x28);
    case ClearanceVerdict::kUnknown:
      break;
  }
  return std::nullopt;
}

// Described rather than named: the name would be spoken in the value's place.
QLabel* readout(const char* name, const QString& description, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setAccessibleDescription(description);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return label;
}

}  // namespace

ClearanceRow::ClearanceRow(QWidget* parent)
    : QWidget(parent),
      lblClearance_(readout("lblClearance", tr("Worst obstacle"), this)),
      lblPointerClearance_(readout("lblPointerClearance", tr("Clearance under the pointer"), this)) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(lblClearance_);
  rows->addWidget(lblPointerClearance_);
  lblClearance_->setToolTip(
      tr("The point of the path that comes nearest to the line of sight, measured in radii of the first "
         "Fresnel zone.\nExact geometry: clear at 60 % and more, marginal from 0 to 60 %, blocked below 0."));
  lblPointerClearance_->setToolTip(tr("Clearance of the ground under the pointer, in the same geometry."));
}

void ClearanceRow::showPath(const QString& text, ClearanceVerdict verdict) {
  path_ = text;
  verdict_ = verdict;
  fit();
  colour();
}

void ClearanceRow::showPointer(const QString& text) {
  pointer_ = text;
  fit();
}

QFont ClearanceRow::fittingFont() const {
  QFont font = this->font();
  for (; font.pointSizeF() > kSmallestFont;
       font.setPointSizeF(std::max(kSmallestFont, font.pointSizeF() - 0.5))) {
    const QFontMetrics metrics(font);
    if (std::max(metrics.horizontalAdvance(path_), metrics.horizontalAdvance(pointer_)) <= width() &&
        2 * metrics.height() <= height())
      break;
  }
  return font;
}

void ClearanceRow::fit() {
  const QFont font = fittingFont();
  const QFontMetrics metrics(font);
  for (const auto& [label, text] :
       {std::pair(lblClearance_, path_), std::pair(lblPointerClearance_, pointer_)}) {
    label->setFont(font);
    label->setText(metrics.elidedText(text, Qt::ElideMiddle, width()));
  }
}

void ClearanceRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fit();
}

void ClearanceRow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) colour();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) fit();
}

void ClearanceRow::colour() {
  QPalette shown = palette();
  const bool dark = palette().color(QPalette::Window).lightness() < 128;
  if (const std::optional<QColor> colour = colourOf(verdict_, dark))
    shown.setColor(QPalette::WindowText, *colour);
  lblClearance_->setPalette(shown);
}

}  // namespace zel
