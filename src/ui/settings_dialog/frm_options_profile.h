// The settings dialog, frmOptionsProfile, "Profiler Settings": edits the persisted settings and writes them
// on OK alone.
//
// Making it loads it: loaded flag, settings, help file, place on the screen. It is unloaded once, however it
// closes (OK, Cancel, Escape, close box, done(), hiding, deletion), and does not come up again after that.
// Settings that cannot be read are reported by the trap; the dialog is then unloaded before it was ever
// shown, and exec() returns at once, so that half of the values never get written over the others. A failing
// write is reported and leaves the dialog open with everything in it.
//
// A box is checked when the focus leaves it, before a mnemonic or Tab moves on, and by OK; a refused entry
// shows its message once and keeps the focus. Cancel and Escape check nothing, and another window may always
// be turned to.
//
// It is not to be deleted while one of its message boxes is open: reject() it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "component/services/error_trap.h"
#include "component/services/module_state.h"
#include "platform/dialogs.h"
#include "platform/process_services.h"
#include "profile/settings/dialog_settings.h"
#include "ui/dialog/unloaded_dialog.h"
#include "ui/settings_dialog/options_fields.h"

class QLineEdit;

namespace zel {

class OptionsControls;

struct SettingsDialogResult {
  DialogSettings before;  // as they were read when the dialog opened
  DialogSettings after;   // as they were written
};

class FrmOptionsProfile final : public UnloadedDialog {
 public:
  static constexpr std::string_view kName = "frmOptionsProfile";

  struct Services {
    ErrorTrap* trap = nullptr;
    Dialogs* dialogs = nullptr;
    Pointer* pointer = nullptr;
    ModuleState* module = nullptr;  // keeps settingsDialogLoaded
    // The name of a terrain source by its code. May throw.
    std::function<std::string(std::int16_t)> sourceName;
    // The host's help file; may be empty.
    std::function<std::string()> helpFile;
    // Where the window of that name was last; may be empty. They may throw.
    std::function<void(QWidget&, std::string_view)> restorePlace;
    std::function<void(const QWidget&, std::string_view)> storePlace;
    std::function<void()> openHelp;  // F1; may be empty
  };

  FrmOptionsProfile(Services services, const SettingsReader& reader, const SettingsWriter& writer,
                    QWidget* parent = nullptr);
  ~FrmOptionsProfile() override;

  // Fills the dialog from the store. Nothing changes when a setting cannot be read.
  void InitMe();
  // Writes the dialog's fields to the store.
  void UpdateMe();

  // What OK has written; nothing before it and without it.
  const std::optional<SettingsDialogResult>& outcome() const { return outcome_; }
  const DialogSettings& fields() const { return fields_; }
  // The application's help file as the host names it.
  const std::string& helpFile() const { return helpFile_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // Runs a procedure under the trap; whether it went through.
  template <typename Body>
  bool procedure(std::string_view name, Body&& body) {
    return trapped_.run(name, [&] {
      body();
      return true;
    });
  }

  void connectControls();
  void watchControls();
  void load();
  void Form_Unload() override;
  bool readFields();
  bool writeFields();
  void showFields();

  // ---- Boxes ----
  void change(OptionsBox box);
  // Checks a box and stores its entry: the message when it is refused, nothing when the focus may leave.
  std::optional<std::string> refusalOf(OptionsBox box);
  // The same; shows the message and keeps the focus in the box.
  bool mayLeave(OptionsBox box);
  bool mayLeaveOpenBox();
  void refuse(OptionsBox box, const std::string& message);
  std::optional<OptionsBox> openBox() const;
  std::optional<OptionsBox> boxOf(const QObject* control) const;
  void write(OptionsBox box, const std::string& text);
  void forget(OptionsBox box);
  void focusIsLeaving(const QObject* control, Qt::FocusReason reason);
  void showPendingRefusal();

  // ---- Options, lists and buttons ----
  void optEarthModel_Click(int index);
  void optCurve_Click(int index);
  void optFresnel_Click(int index);
  void cboTRes_Click();
  void cmdOK_Click();
  void cmdCancel_Click();

  Services services_;
  SettingsReader reader_;
  SettingsWriter writer_;
  TrappedModule trapped_;
  OptionsControls* controls_;

  DialogSettings before_;
  DialogSettings fields_;
  SourceNames sourceNames_;
  std::string helpFile_;
  std::optional<SettingsDialogResult> outcome_;

  std::optional<OptionsBox> entered_;  // has had the focus and has not been left with a valid entry since
  bool checking_ = false;              // a check or its message is on the stack
  std::optional<std::string> pendingRefusal_;  // of a mouse press that is still on its way
};

}  // namespace zel
