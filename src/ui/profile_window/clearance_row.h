// The clearance read-out in the slider's row: the worst obstacle of the path, and the clearance under the
// pointer. The verdict is a word; its colour only repeats it.
//
// The font is the window's, made smaller down to 8 points where a line would not fit. A line that is too long
// even then loses its middle, not its verdict.
#pragma once

#include <QLabel>
#include <QWidget>

#include "profile/calculation/exact_profile.h"

namespace zel {

class ClearanceRow final : public QWidget {
 public:
  explicit ClearanceRow(QWidget* parent = nullptr);

  void showPath(const QString& text, ClearanceVerdict verdict);
  void showPointer(const QString& text);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void colour();
  void fit();
  QFont fittingFont() const;

  QLabel* lblClearance_;
  QLabel* lblPointerClearance_;
  QString path_;
  QString pointer_;
  ClearanceVerdict verdict_ = ClearanceVerdict::kUnknown;
};

}  // namespace zel
