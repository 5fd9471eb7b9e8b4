// Modal boxes. Without a graphical application a message is a line on standard error and is answered
// "continue" (Yes or OK), an input box gives its default text and a save dialog is cancelled, so that
// windowless use never blocks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zel {

enum class MessageIcon { kNone, kCritical, kInformation, kQuestion };
enum class MessageButtons { kOk, kYesNo };
enum class MessageAnswer { kOk, kYes, kNo };

struct MessageBoxRequest {
  std::string text;
  std::string title;  // empty: the default title
  MessageIcon icon = MessageIcon::kNone;
  MessageButtons buttons = MessageButtons::kOk;
};

struct InputBoxRequest {
  std::string prompt;
  std::string title;
  std::string defaultText;
};

struct SaveDialogRequest {
  std::string title;
  std::string defaultExtension;  // ".csv"
  std::string filter;            // "Comma Separated Value (*.csv)|*.csv"
  bool overwritePrompt = true;
  bool pathMustExist = true;
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual MessageAnswer message(const MessageBoxRequest& request) = 0;
  virtual std::string input(const InputBoxRequest& request) = 0;  // empty when cancelled
  // The chosen path. Cancelling throws RuntimeError 32755.
  virtual std::string save(const SaveDialogRequest& request) = 0;
};

}  // namespace zel
