// The settings dialog over scripted services, on an offscreen desktop, with a person's keys and clicks.
#pragma once

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "component/services/error_log.h"
#include "support/controls.h"
#include "support/offscreen.h"
#include "support/recording_settings_store.h"
#include "support/scripted_platform.h"
#include "support/serve_events.h"
#include "support/temporary_folder.h"
#include "ui/settings_dialog/frm_options_profile.h"

namespace zel::test {

inline QString qtext(const std::string& text) { return QString::fromStdString(text); }

// A store that fails at the n-th writing, counted from 0.
class FailingWrites final : public SettingsStore {
 public:
  explicit FailingWrites(RecordingSettingsStore& store) : store_(store) {}
  std::string ReadSetting(std::string_view application, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override {
    return store_.ReadSetting(application, section, key, defaultText);
  }
  void WriteSetting(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) override {
    if (failAt-- == 0) throw RuntimeError::diskFull();
    store_.WriteSetting(application, section, key, value);
  }
  std::vector<StoredSetting> AllSettings(std::string_view application) const override {
    return store_.AllSettings(application);
  }
  int failAt = -1;

 private:
  RecordingSettingsStore& store_;
};

class SettingsDialogTest : public OffscreenTest<QApplication> {
 protected:
  using Texts = std::vector<std::string>;

  FrmOptionsProfile::Services services() {
    FrmOptionsProfile::Services result;
    result.trap = &trap;
    result.dialogs = &dialogs;
    result.pointer = &pointer;
    result.module = &module;
    result.sourceName = [this](std::int16_t code) {
      askedSources.push_back(code);
      return sourceNames.at(static_cast<std::size_t>(code));
    };
    result.helpFile = [] { return std::string("/usr/share/planner/help.html"); };
    result.restorePlace = [this](QWidget& window, std::string_view name) {
      journal.push_back("restore " + std::string(name));
      window.move(50, 60);
    };
    result.storePlace = [this](const QWidget& window, std::string_view name) {
      journal.push_back("store " + std::string(name) + " " + std::to_string(window.pos().x()) + "," +
                        std::to_string(window.pos().y()));
      if (storePlaceFails) throw RuntimeError::permissionDenied();
    };
    result.openHelp = [this] { journal.push_back("help"); };
    return result;
  }

  // A loaded dialog; not shown.
  FrmOptionsProfile& make() { return make(services()); }
  FrmOptionsProfile& make(FrmOptionsProfile::Services given) {
    const auto title = [] { return std::string("Host Planner"); };
    dialog_ = std::make_unique<FrmOptionsProfile>(std::move(given), SettingsReader(writes, title),
                                                  SettingsWriter(writes, title));
    return *dialog_;
  }
  // The same on the screen, with the keyboard.
  FrmOptionsProfile& open() {
    make().show();
    activate();
    return *dialog_;
  }
  void activate() {
    dialog_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }
  FrmOptionsProfile& dialog() { return *dialog_; }
  void forgetDialog() { dialog_.reset(); }

  template <typename Control>
  Control& control(const char* name) {
    return controlOf<Control>(*dialog_, name);
  }
  QLineEdit& box(const char* name) { return control<QLineEdit>(name); }
  QComboBox& list(const char* name) { return control<QComboBox>(name); }
  QRadioButton& option(const char* name) { return control<QRadioButton>(name); }
  QPushButton& button(const char* name) { return control<QPushButton>(name); }
  std::string shown(const char* boxName) { return box(boxName).text().toStdString(); }
  std::string label(const char* name) { return control<QLabel>(name).text().toStdString(); }

  void click(QWidget& widget) {
    // An option is clicked at its mark: beside its caption there is nothing to hit.
    const bool isOption = qobject_cast<QRadioButton*>(&widget) != nullptr;
    QTest::mouseClick(&widget, Qt::LeftButton, {},
                      isOption ? QPoint(8, widget.height() / 2) : widget.rect().center());
  }
  // Into an empty box, one key after the other.
  void type(const char* boxName, const char* keys) {
    QLineEdit& target = box(boxName);
    click(target);
    QTest::keyClick(&target, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&target, Qt::Key_Delete);
    QTest::keyClicks(&target, QLatin1String(keys));
  }
  // Keys go to whatever has the focus, as a desktop sends them.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* target = QApplication::focusWidget();
    QTest::keyClick(target != nullptr ? target : static_cast<QWidget*>(dialog_.get()), key, modifiers);
    QCoreApplication::processEvents();
  }
  Texts messages() const {
    Texts texts;
    for (const MessageBoxRequest& request : dialogs.messages) texts.push_back(request.text);
    return texts;
  }

  Journal journal;
  RecordingSettingsStore store;
  FailingWrites writes{store};
  ScriptedDialogs dialogs;
  ScriptedPointer pointer;
  ScriptedEventLoop eventLoop;
  ScriptedProcess process;
  FixedClock clock;
  TemporaryFolder folder;
  ErrorLog log{[this] { return folder.path().string(); }, clock, dialogs};
  ErrorTrap trap{{[] { return std::string("Host Planner"); }, "zelProfiler01", &pointer, &dialogs, &eventLoop,
                  &process, &log}};
  ModuleState module;
  std::vector<std::string> sourceNames{"", "30 second", " 3 second ", "1 second", "",
                                       "", "",          "1/3 second", "",         "Local"};
  std::vector<std::int16_t> askedSources;
  bool storePlaceFails = false;

 private:
  std::unique_ptr<FrmOptionsProfile> dialog_;
};

}  // namespace zel::test
