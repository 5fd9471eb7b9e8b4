// Modal boxes of the desktop.
//
// Without a QApplication, and away from its thread, a message is one line on standard error (line ends become
// "; ") and is answered Yes or OK, an input box gives its default text and a save dialog is cancelled.
#pragma once

#include "platform/dialogs.h"

namespace zel {

class DesktopDialogs final : public Dialogs {
 public:
  MessageAnswer message(const MessageBoxRequest& request) override;
  std::string input(const InputBoxRequest& request) override;
  std::string save(const SaveDialogRequest& request) override;
};

// Whether boxes can be shown: there is a QApplication, this is its thread, and it was not made for pictures
// alone.
bool canShowWidgets();

}  // namespace zel
