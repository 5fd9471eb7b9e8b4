// Random actions of a person and of a host on the windows, for as many steps as ZEL_SOAK_ACTIONS says (1,000
// without it), from a seed that is logged and can be given as ZEL_SOAK_SEED. Nothing may fail, nothing may
// trap, and memory may not grow.
//
// The same seed gives the same run: the typing timers are held back, except in the actions that wait for
// them.
#include <malloc.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>
#include <filesystem>
#include <vector>

#include "support/chance.h"
#include "window_fixture.h"

namespace zel {
namespace {

constexpr std::size_t kMostForms = 3;
constexpr int kMostWindowsOfTime = 400;  // one action in so many lets the timers run

// Keeps the typing timers from running out by the machine's speed.
class HeldTimers final : public QObject {
 public:
  bool held = true;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    return held && event->type() == QEvent::Timer && watched->objectName().startsWith(QLatin1String("Timer"));
  }
};

class SoakTest : public test::WindowTest, protected test::Chance {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    qApp->installEventFilter(&heldTimers_);
    // The dialogs that come up, in loops of their own, are worked from there.
    watcher_.setInterval(1);
    watcher_.callOnTimeout([this] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr || working_) return;
      working_ = true;
      workDialog(*dialog);
      working_ = false;
    });
    watcher_.start();
  }
  void TearDown() override {
    forms_.clear();
    QApplication::setPalette(QPalette());
    WindowTest::TearDown();
  }

  QWidget* someControl(QWidget& parent) {
    QList<QWidget*> controls;
    for (QWidget* child : parent.findChildren<QWidget*>())
      if (child->isVisible() && child->isEnabled() && qobject_cast<QMenu*>(child) == nullptr &&
          child->objectName() != QLatin1String("cmdExit"))
        controls.append(child);
    return controls.isEmpty() ? nullptr : oneOf(controls);
  }

  // ---- A person's hands ----

  void typeInto(QWidget& widget) {
    static const char* const texts[] = {"1",     "0",     "900", "20", "5",  ".",     "-",      "abc",  "1.5",
                                        "1e999", "99999", "3,5", "-7", "  ", "1.333", "0.0001", "2400", "60"};
    QTest::keyClicks(&widget, QLatin1String(oneOf(texts)));
  }

  void key(QWidget& widget) {
    static const Qt::Key keys[] = {Qt::Key_Left,   Qt::Key_Right,   Qt::Key_Home,     Qt::Key_End,
                                   Qt::Key_Return, Qt::Key_Up,      Qt::Key_Down,     Qt::Key_Delete,
                                   Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space,    Qt::Key_Enter,
                                   Qt::Key_PageUp, Qt::Key_Escape,  Qt::Key_Backspace};
    static const Qt::KeyboardModifiers modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier};
    const Qt::Key pressed = oneOf(keys);
    QTest::keyClick(&widget, pressed, oneOf(modifiers));
  }

  // To the control that has the keyboard, as a desktop sends it.
  void shortcut(QWidget& window) {
    static const Qt::Key letters[] = {Qt::Key_E, Qt::Key_L, Qt::Key_Comma, Qt::Key_Z,
                                      Qt::Key_V, Qt::Key_A, Qt::Key_P,     Qt::Key_0};
    QWidget* target = window.focusWidget() == nullptr ? &window : window.focusWidget();
    if (oneIn(2)) {
      QTest::keyClick(target, oneOf(letters), Qt::ControlModifier);
    } else {
      // Mnemonics: of controls and of menus.
      QTest::keyClick(target, static_cast<Qt::Key>(Qt::Key_A + upTo(25)), Qt::AltModifier);
    }
  }

  // Through a menu that is open, and out of it, by keys or by a click.
  void workPopups() {
    for (int i = 0; i < 20; ++i) {
      QWidget* popup = QApplication::activePopupWidget();
      if (popup == nullptr) return;
      static const Qt::Key ways[] = {Qt::Key_Down,  Qt::Key_Down, Qt::Key_Up,
                                     Qt::Key_Right, Qt::Key_Left, Qt::Key_Return};
      if (i < 8 && !oneIn(6)) {
        QTest::keyClick(popup, oneOf(ways));
      } else {
        QTest::keyClick(popup, Qt::Key_Escape);
      }
    }
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  }

  void contextMenu(QWidget& widget) {
    const QPoint at = somewhereIn(widget);
    QContextMenuEvent event(oneIn(2) ? QContextMenuEvent::Mouse : QContextMenuEvent::Keyboard, at,
                            widget.mapToGlobal(at));
    QCoreApplication::sendEvent(&widget, &event);
    workPopups();
  }

  void workControl(QWidget& control) {
    if (oneIn(12)) {
      contextMenu(control);
    } else if (qobject_cast<QLineEdit*>(&control) != nullptr) {
      control.setFocus();
      if (oneIn(2)) static_cast<QLineEdit&>(control).selectAll();
      typeInto(control);
      if (oneIn(3)) key(control);
    } else if (auto* menus = qobject_cast<QMenuBar*>(&control)) {
      const QList<QAction*> all = menus->actions();
      QTest::mouseClick(menus, Qt::LeftButton, {},
                        menus->actionGeometry(all.at(upTo(static_cast<int>(all.size()) - 1))).center());
      workPopups();
    } else if (oneIn(3)) {
      key(control);
    } else {
      QTest::mouseClick(&control, Qt::LeftButton, {}, somewhereIn(control));
    }
  }

  // A dialog is worked for some steps and then left by one of its ways.
  void workDialog(QDialog& dialog) {
    const QPointer<QDialog> open(&dialog);
    const auto isOpen = [&open] { return !open.isNull() && open->isVisible(); };
    for (int i = upTo(12); i > 0 && isOpen(); --i) {
      QWidget* child = someControl(dialog);
      if (child == nullptr) break;
      if (oneIn(8)) {
        shortcut(dialog);
      } else if (qobject_cast<QPushButton*>(child) == nullptr) {
        workControl(*child);
      } else {
        key(*child);
      }
      workPopups();
      if (oneIn(30)) control_.UnloadMainForm();
      if (oneIn(30) && isOpen()) control_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
    }
    if (!isOpen()) return;
    const int way = upTo(3);
    if (way == 0) QTest::keyClick(&dialog, Qt::Key_Escape);
    if (way == 1) QTest::keyClick(&dialog, Qt::Key_Return);
    if (auto* ok = dialog.findChild<QPushButton*>(QStringLiteral("cmdOK")); way == 2 && ok != nullptr)
      ok->click();
    // A refused entry keeps it open.
    if (isOpen()) dialog.reject();
  }

  // ---- A host's calls ----

  void workForm() {
    if (forms_.size() < kMostForms && (forms_.empty() || oneIn(3))) {
      forms_.push_back(control_.get_PForm());
      return;
    }
    const auto at = static_cast<std::size_t>(upTo(static_cast<int>(forms_.size()) - 1));
    const DispatchPtr form = forms_[at];
    static const char* const methods[] = {"Show",
                                          "Show",
                                          "Hide",
                                          "Unload",
                                          "drawLine",
                                          "DoPreCalc",
                                          "MinMaxAv",
                                          "ValidateInfo",
                                          "InitFromRegistry",
                                          "LoadFormSettings",
                                          "SetDistanceLabels",
                                          "UpdateModeledLoss",
                                          "mnuProfileExpand_Click",
                                          "mnuEditCopyPicture_Click",
                                          "mnuEditCopyValues_Click",
                                          "mnuExportBMP_Click",
                                          "mnuExportProfile_Click",
                                          "mnuExportPathLoss_Click",
                                          "mnuExportPathLossProfile_Click",
                                          "mnuPrint_Click",
                                          "mnuPrintPreview_Click",
                                          "cmdClear1_Click"};
    switch (upTo(5)) {
      case 0:
        forms_.erase(forms_.begin() + static_cast<std::ptrdiff_t>(at));
        break;
      case 1:
        form->get("tbxFreq").toObject()->let("Text", std::to_string(upTo(3000)));
        form->get("tbxAnt2AGL").toObject()->let("Text", std::to_string(upTo(3000) - 100));
        break;
      case 2: {
        form->let("Caption", "form of the soak");
        for (QWidget* widget : QApplication::topLevelWidgets())
          if (widget->isVisible() && widget->windowTitle() == QLatin1String("form of the soak"))
            if (QWidget* child = someControl(*widget); child != nullptr) {
              workControl(*child);
              break;
            }
        if (forms_.size() > at && forms_[at] == form) form->let("Caption", "Terrain Profile");
        break;
      }
      case 3:
        form->let("Contour", oneIn(2));
        form->let("Width", upTo(20000));
        break;
      default:
        form->call(oneOf(methods));
    }
  }

  void changeSettings() {
    static const std::pair<const char*, const char*> numbers[] = {{"Prf_Ele", "Profile"},
                                                                  {"Prf_Rng", "Profile"},
                                                                  {"Prf_Frez", "Profile"},
                                                                  {"cStrobe", "Colors"},
                                                                  {"cLRMarker", "Colors"}};
    const auto& [key, section] = oneOf(numbers);
    set(section, key, std::to_string(upTo(20)));
    set("Settings", "DispUnits", std::to_string(upTo(1)));
  }

  void changeDesktop() {
    switch (upTo(3)) {
      case 0:
        QApplication::setFont(QFont(pinnedFamily(), 6 + upTo(12)));
        break;
      case 1:
        QApplication::setPalette(QPalette(oneIn(2) ? Qt::black : Qt::lightGray));
        break;
      case 2:
        QLocale::setDefault(oneIn(2) ? QLocale(QLocale::German) : QLocale::c());
        break;
      default:
        control_.let_StaDatum(upTo(1));
    }
  }

  void hostActs() {
    switch (upTo(9)) {
      case 0:
        control_.UnloadMainForm();
        break;
      case 1:
        control_.ShowOptionsForm();
        break;
      case 2:
        control_.GetPathLoss(test::kRidgeEnd, test::kRidgeStart);
        break;
      case 3:
      case 4:
      case 5:
        workForm();
        break;
      case 6:
        changeSettings();
        break;
      case 7:
        changeDesktop();
        break;
      case 8:
        // Too short, or outside of the data: a box, and no window.
        control_.ShowMainForm(test::kRidgeStart,
                              oneIn(2) ? test::kRidgeStart : StationProfile_Type{40.0, -84.3, 30.0F});
        break;
      default:
        openSomePath();
    }
  }

  void openSomePath() {
    const auto off = [this] { return upTo(1000) / 10000.0; };
    // The model refuses antennas on the ground.
    const auto height = [this] { return oneIn(10) ? -1.0F : static_cast<float>(1 + upTo(100)); };
    const StationProfile_Type start{36.30 + off(), -84.40 + off(), height()};
    const StationProfile_Type end{36.15 + off(), -84.20 + off(), height()};
    control_.ShowMainForm(start, end);
  }

  void letTimersRun() {
    heldTimers_.held = false;
    test::serveEvents(800);
    heldTimers_.held = true;
  }

  void closeLinkBudget() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (!widget->isVisible() || widget->objectName() != QLatin1String("frmLinkBudget")) continue;
      for (int i = upTo(4); i > 0; --i)
        if (QWidget* child = someControl(*widget);
            child != nullptr && qobject_cast<QPushButton*>(child) == nullptr)
          workControl(*child);
      widget->close();
    }
  }

  // The guide would open in a browser.
  static void doWithoutHelp() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* guide = widget->findChild<QAction*>(QStringLiteral("mnuHelpGuide"))) guide->setEnabled(false);
  }

  // ---- Exports ----

  // Answers for the boxes of an export; some of them end it.
  void answerExports() {
    dialogs_->savePath.reset();
    if (!oneIn(4)) dialogs_->savePath = (folder_ / ("export" + std::to_string(upTo(3)) + ".txt")).string();
    if (oneIn(20)) dialogs_->savePath = std::string();
    static const char* const answers[] = {"1", "0.5", "10 kW", "0", "-3", "", "x"};
    // Of the failures that are meant, below.
    dialogs_->onMessage = [this](const MessageBoxRequest& box) {
      if (isMeant(box.text)) dialogs_->answer = MessageAnswer::kYes;
    };
    dialogs_->onInput = [this](const InputBoxRequest&) { dialogs_->inputAnswer = oneOf(answers); };
  }

  // A marker near the path's end, and a terrain block that would reach beyond it, are index failures. An
  // empty box, and a path that could not be sampled, leave nothing to print.
  static bool isMeant(const std::string& report) {
    if (report.find("Error Number: 1103") != std::string::npos) return true;
    return report.find("Error Number: 9") != std::string::npos &&
           (report.find(":lExportDataToCSV:") != std::string::npos ||
            report.find(":lExportSignalProfileToCSV:") != std::string::npos);
  }
  // Four lines to an entry.
  std::string loggedAndNotMeant() const {
    const QStringList lines = QString::fromStdString(logged()).split(QStringLiteral("\r\n"));
    std::string rest;
    for (qsizetype i = 0; i + 1 < lines.size(); i += 4) {
      const std::string entry = lines.mid(i, 4).join(u'\n').toStdString();
      if (!isMeant(entry)) rest += entry + '\n';
    }
    return rest;
  }

  // Does something in the midst of a long export, perhaps more than once.
  void disturbExport() {
    auto* timer = new QTimer(qApp);
    timer->callOnTimeout([this, timer, left = 1 + upTo(2), wait = upTo(60)]() mutable {
      auto* row =
          window() == nullptr ? nullptr : window()->findChild<QWidget*>(QStringLiteral("progressRow"));
      const bool exporting = row != nullptr && row->isVisible();
      if (exporting && wait-- > 0) return;
      if (!exporting || left-- == 0 || disturbing_) {
        timer->stop();
        timer->deleteLater();
        return;
      }
      wait = upTo(60);
      disturbing_ = true;
      if (oneIn(6)) {
        QTest::keyClick(window(), Qt::Key_Escape);
      } else if (oneIn(6)) {
        QTest::mouseClick(&control("cmdCancel"), Qt::LeftButton);
      } else {
        act();
      }
      disturbing_ = false;
    });
    timer->start(0);
  }

  void exportSomething() {
    static const char* const items[] = {"mnuExportBMP",           "mnuExportProfile",
                                        "mnuExportPathLoss",      "mnuExportPathLossProfile",
                                        "mnuExportPathLossGraph", "mnuExportPathLossProfile",
                                        "mnuEditCopyPicture",     "mnuEditCopyValues"};
    if (oneIn(2) && !disturbing_) disturbExport();
    item(oneOf(items)).trigger();
    settle();
  }

  // ---- Printing ----

  // The printer dialog's answer; what the page asks then is a dialog of the window's own, worked as any
  // other.
  void answerPrinting() {
    printing_->answer.reset();
    if (!oneIn(4))
      printing_->answerWith(oneIn(2) ? PageOrientation::kPortrait : PageOrientation::kLandscape, "page.pdf",
                            1 + upTo(2));
    printing_->onChoose = [this](PageOrientation) {
      if (oneIn(20)) control_.UnloadMainForm();
      if (oneIn(20)) control_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
    };
    if (oneIn(6)) component_.state().printDescriptionSet = oneIn(2);
    printing_->prints.clear();
  }

  // ---- One action ----

  void act() {
    if (window() == nullptr || window()->isUnloaded()) {
      openSomePath();
      return;
    }
    doWithoutHelp();
    dialogs_->answer = oneIn(2) ? MessageAnswer::kYes : MessageAnswer::kNo;
    answerExports();
    answerPrinting();
    if (oneIn(kMostWindowsOfTime)) return letTimersRun();
    PictureBox& picture = window()->picture();
    switch (upTo(26)) {
      case 26:
        item(oneIn(2) ? "mnuPrint" : "mnuPrintPreview").trigger();
        break;
      case 24:
      case 25:
        exportSomething();
        break;
      case 0:
      case 1:
      case 2: {
        static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::MiddleButton};
        QTest::mouseClick(&picture, oneOf(buttons), {}, somewhereIn(picture));
        break;
      }
      case 3:
      case 4:
        moveOver(somewhereIn(picture));
        break;
      case 5:
      case 6:
        key(picture);
        break;
      case 7:
      case 8:
      case 9:
      case 10:
        if (QWidget* child = someControl(*window()); child != nullptr) workControl(*child);
        break;
      case 11:
        window()->resize(300 + upTo(1200), 200 + upTo(900));
        break;
      case 12:
        control<QSlider>("Slider1").setValue(upTo(500));
        break;
      case 13:
        item("mnuProfileExpand").trigger();
        break;
      case 14:
        if (oneIn(4)) item("mnuProfileOptions").trigger();
        break;
      case 15:
        oneIn(2) ? window()->showMaximized() : window()->showNormal();
        break;
      case 16:
        if (oneIn(3)) item("mnuProfileLinkBudget").trigger();
        closeLinkBudget();
        break;
      case 17:
        QTest::mouseDClick(&picture, Qt::LeftButton, {}, somewhereIn(picture));
        break;
      case 18:
        window()->Timer1_Timer();
        break;
      case 19:
        if (oneIn(6)) window()->cmdExit_Click();
        break;
      case 20:
      case 21:
        shortcut(*window());
        workPopups();
        break;
      default:
        hostActs();
    }
  }

  void expectNothingWrong(int action) {
    ASSERT_EQ(QApplication::activeModalWidget(), nullptr) << "after action " << action;
    ASSERT_EQ(QApplication::activePopupWidget(), nullptr) << "after action " << action;
    ASSERT_EQ(loggedAndNotMeant(), "") << "after action " << action;
    for (const MessageBoxRequest& message : dialogs_->messages)
      ASSERT_TRUE(isMeant(message.text) || message.text.find("Attempt to Continue?") == std::string::npos)
          << "after action " << action << ": " << message.text;
    dialogs_->messages.clear();
    const bool stands = window() != nullptr && !window()->isUnloaded();
    ASSERT_EQ(control_.get_PFrmLoaded(), stands) << "after action " << action;
    ASSERT_EQ(control_.get_hWnd() != 0, stands) << "after action " << action;
    ASSERT_FALSE(control_.get_OFrmLoaded()) << "after action " << action;
    ASSERT_EQ(QApplication::overrideCursor(), nullptr) << "after action " << action;
    ASSERT_FALSE(stands && window()->state().flags.drawing) << "after action " << action;
  }

  // With no window left.
  std::size_t heapInUse() {
    forms_.clear();
    control_.UnloadMainForm();
    closeLinkBudget();
    settle();
    return mallinfo2().uordblks;
  }

  std::vector<DispatchPtr> forms_;
  HeldTimers heldTimers_;
  QTimer watcher_;
  bool working_ = false;
  bool disturbing_ = false;  // something is done in the midst of an export
};

TEST_F(SoakTest, SurvivesRandomActionsWithoutTrapsOrGrowth) {
  const auto [actions, seed] = beginSoak(1000);
  SCOPED_TRACE("ZEL_SOAK_SEED=" + std::to_string(seed));

  std::size_t early = 0;
  for (int i = 0; i < actions; ++i) {
    act();
    if (oneIn(5)) settle();
    ASSERT_NO_FATAL_FAILURE(expectNothingWrong(i));
    if (i == actions / 2) early = heapInUse();
  }
  const std::size_t late = heapInUse();
  test::expectLittleGrowth(early, late, 8);
}

}  // namespace
}  // namespace zel
