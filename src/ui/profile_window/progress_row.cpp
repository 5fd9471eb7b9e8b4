#include "ui/profile_window/progress_row.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QShortcut>
#include <utility>

namespace zel {
namespace {

constexpr int kRowMargin = 8;  // logical pixels, as of the slider's caption

}  // namespace

// Changed rather than laid over: who has laid the hourglass over takes the topmost shape away.
void CancelButton::enterEvent(QEnterEvent* event) {
  QPushButton::enterEvent(event);
  const QCursor* shown = QGuiApplication::overrideCursor();
  if (shown == nullptr || shown->shape() == Qt::ArrowCursor) return;
  before_ = *shown;
  QGuiApplication::changeOverrideCursor(Qt::ArrowCursor);
}

void CancelButton::leaveEvent(QEvent* event) {
  putShapeBack();
  QPushButton::leaveEvent(event);
}

void CancelButton::hideEvent(QHideEvent* event) {
  putShapeBack();
  QPushButton::hideEvent(event);
}

void CancelButton::putShapeBack() {
  const std::optional<QCursor> before = std::exchange(before_, std::nullopt);
  const QCursor* shown = QGuiApplication::overrideCursor();
  // The hourglass may be gone by now.
  if (before && shown != nullptr && shown->shape() == Qt::ArrowCursor)
    QGuiApplication::changeOverrideCursor(*before);
}

ProgressRow::ProgressRow(QWidget* parent)
    : QWidget(parent),
      lblProgress_(new QLabel(this)),
      prgExport_(new QProgressBar(this)),
      cmdCancel_(new CancelButton(tr("Cancel"), this)) {
  lblProgress_->setObjectName(QStringLiteral("lblProgress"));
  lblProgress_->setTextFormat(Qt::PlainText);
  prgExport_->setObjectName(QStringLiteral("prgExport"));
  prgExport_->setAccessibleName(tr("Progress of the export"));
  prgExport_->setToolTip(tr("How much of the path has been worked through"));
  // Without a mnemonic: every letter of it stands for another control, and Escape is nearer.
  cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
  cmdCancel_->setAccessibleName(tr("Cancel the export"));
  cmdCancel_->setToolTip(tr("Stop the export and leave the files as they were (Esc)"));

  cmdCancel_->setFocusPolicy(Qt::TabFocus);  // a click leaves the keyboard where it is
  setFocusProxy(cmdCancel_);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kRowMargin, 0, kRowMargin, 0);
  row->addWidget(lblProgress_);
  row->addWidget(prgExport_, 1);
  row->addWidget(cmdCancel_);

  connect(cmdCancel_, &QPushButton::clicked, this, [this] { cancel(); });
  // Of the whole window, while the row is seen.
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] { cancel(); });
  hide();
}

void ProgressRow::begin(const QString& what) {
  cancelled_ = false;
  lblProgress_->setText(what);
  cmdCancel_->setEnabled(true);
  prgExport_->setRange(0, 1);
  prgExport_->setValue(0);
  sinceDrawn_.invalidate();
}

void ProgressRow::showStep(std::int32_t done, std::int32_t all) {
  const bool last = done >= all;
  if (sinceDrawn_.isValid() && sinceDrawn_.elapsed() < kInterval && !last) return;
  sinceDrawn_.start();
  prgExport_->setRange(0, all);
  prgExport_->setValue(done);
  cmdCancel_->setEnabled(!last);
}

void ProgressRow::cancel() {
  if (!cmdCancel_->isEnabled()) return;
  cancelled_ = true;
}

}  // namespace zel
