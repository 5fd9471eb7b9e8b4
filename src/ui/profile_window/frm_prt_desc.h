// The print description dialog, frmPrtDesc, "Print Description": asks for the text that a printed page bears,
// and offers the one that is stored.
//
// Making it loads it. It is unloaded once, however it closes, and does not come up again after that. A stored
// text that cannot be read is reported by the trap; the dialog is then unloaded before it was ever shown, and
// exec() returns at once, so that the text is never replaced by one that was typed without sight of it.
//
// It stores nothing itself: the page routine takes the outcome and writes it back.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "component/services/error_trap.h"
#include "ui/dialog/unloaded_dialog.h"

class QLineEdit;

namespace zel {

// Characters of a description that can be typed. A longer one that is stored is offered whole.
inline constexpr int kLongestDescription = 4000;

class FrmPrtDesc final : public UnloadedDialog {
 public:
  static constexpr std::string_view kName = "frmPrtDesc";

  struct Services {
    ErrorTrap* trap = nullptr;
    std::function<std::string()> storedDescription;  // may throw
    // Where the window of that name was last; may be empty. They may throw.
    std::function<void(QWidget&, std::string_view)> restorePlace;
    std::function<void(const QWidget&, std::string_view)> storePlace;
  };

  explicit FrmPrtDesc(Services services, QWidget* parent = nullptr);
  ~FrmPrtDesc() override;

  // The text of OK, empty for None. Nothing as long as neither was clicked: the print is not wanted.
  const std::optional<std::string>& outcome() const { return outcome_; }

 private:
  template <typename Body>
  bool procedure(std::string_view name, Body&& body) {
    return trapped_.run(name, [&] {
      body();
      return true;
    });
  }

  void makeControls();
  void Form_Load();
  void cmdOK_Click();
  void cmdNone_Click();
  void Form_Unload() override;

  Services services_;
  TrappedModule trapped_;
  QLineEdit* txtDescription_ = nullptr;
  std::string stored_;
  std::optional<std::string> outcome_;
};

}  // namespace zel
