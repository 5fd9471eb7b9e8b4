#include "ui/dialog/unloaded_dialog.h"

#include <utility>

namespace zel {

void UnloadedDialog::unload() {
  if (!std::exchange(unloaded_, true)) Form_Unload();
}

int UnloadedDialog::exec() { return unloaded_ ? int{Rejected} : QDialog::exec(); }

void UnloadedDialog::done(int result) {
  unload();
  QDialog::done(result);
}

void UnloadedDialog::setVisible(bool visible) {
  if (visible) {
    if (unloaded_) return;
    shown_ = true;
  } else {
    unload();
  }
  QDialog::setVisible(visible);
}

}  // namespace zel
