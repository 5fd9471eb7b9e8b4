// What stands in the slider's row while a long export runs: what is being done, how far it has come, and a
// button that cancels it. Escape in the window does the same.
//
// The bar is drawn anew 25 times a second at most, and for the first and the last step: an export tells of
// every sample, which takes it microseconds. Under the hourglass of the whole screen the button shows the
// arrow, because it can be clicked.
#pragma once

#include <QCursor>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <cstdint>
#include <optional>

namespace zel {

class CancelButton final : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void putShapeBack();

  std::optional<QCursor> before_;  // the screen's shape under the arrow
};

// Hidden until something begins.
class ProgressRow final : public QWidget {
 public:
  static constexpr int kInterval = 40;  // ms, the least between two drawings

  explicit ProgressRow(QWidget* parent = nullptr);

  // What is done, "Signal profile". Nothing is cancelled then.
  void begin(const QString& what);
  // So many of all steps are done. After the last there is nothing left to cancel.
  void showStep(std::int32_t done, std::int32_t all);
  // The button or Escape, since it began.
  bool isCancelled() const { return cancelled_; }

 private:
  void cancel();

  QLabel* lblProgress_;
  QProgressBar* prgExport_;
  CancelButton* cmdCancel_;
  QElapsedTimer sinceDrawn_;
  bool cancelled_ = false;
};

}  // namespace zel
