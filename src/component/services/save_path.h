// The rule for names from save dialogs.
#pragma once

#include <string>

#include "platform/dialogs.h"

namespace zel {

// The path that was chosen; empty when the dialog was cancelled. A name over 200 characters is cut to its
// first 200 and gets the dialog's extension. Any other failure of the dialog is passed on.
std::string chosenSavePath(Dialogs& dialogs, const SaveDialogRequest& request);

}  // namespace zel
