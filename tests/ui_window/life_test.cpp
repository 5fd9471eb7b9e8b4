// The window's life on the desktop: menus and keys, focus, closing, and where it comes up.
#include <QDialog>
#include <QGroupBox>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <set>

#include "window_fixture.h"

namespace zel {
namespace {

std::string plainText(QString text) { return text.remove(u'&').toStdString(); }

class LifeTest : public test::WindowTest {
 protected:
  std::string caption(const char* name) const { return plainText(item(name).text()); }
  std::string stored(const char* key) const {
    return store_->ReadSetting("Host Planner", "Windows", key, "none");
  }
  // Another window of the same program comes to the front and goes.
  void leaveAndReturn() const {
    QWidget other;
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    returnTo();
  }
  void returnTo() const {
    window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    settle();
  }
};

// ---- Menus ----

struct MenuItem {
  const char* menu;
  const char* name;
  const char* caption;
  bool enabled;
};

TEST_F(LifeTest, MenusHaveTheirItemsInOrder) {
  open();
  const MenuItem items[] = {
      {"mnuProfile", "mnuProfileLinkBudget", "Link Budget", true},
      {"mnuProfile", "mnuProfileExpand", "Expand", true},
      {"mnuProfile", "mnuPrint", "Print", true},
      {"mnuProfile", "mnuPrintPreview", "Print Preview", true},
      {"mnuProfile", "mnuProfileOptions", "Options", true},
      {"mnuProfile", "mnuProfileClose", "Close", true},
      {"mnuEdit", "mnuEditCopyPicture", "Copy Picture", true},
      {"mnuEdit", "mnuEditCopyValues", "Copy Values", true},
      {"mnuExport", "mnuExportBMP", "Path to BMP...", true},
      {"mnuExport", "mnuExportProfile", "Height Profile", true},
      {"mnuExport", "mnuExportPathLoss", "End-of-Path Loss", true},
      {"mnuExport", "mnuExportPathLossGraph", "Path Loss Graph", true},
      {"mnuExport", "mnuExportPathSignalGraph", "Path Signal Graph", true},
      {"mnuExport", "mnuExportPathLossProfile", "Path Loss Profile", true},
  };
  std::vector<std::string> expected;
  for (const MenuItem& expectedItem : items) {
    SCOPED_TRACE(expectedItem.name);
    EXPECT_EQ(caption(expectedItem.name), expectedItem.caption);
    EXPECT_EQ(item(expectedItem.name).isEnabled(), expectedItem.enabled);
    EXPECT_FALSE(item(expectedItem.name).toolTip().isEmpty());
    expected.emplace_back(std::string(expectedItem.menu) + "/" + expectedItem.name);
  }
  std::vector<std::string> found;
  for (const char* menu : {"mnuProfile", "mnuEdit", "mnuExport"})
    for (const QAction* action : control<QMenu>(menu).actions())
      if (!action->isSeparator())
        found.push_back(std::string(menu) + "/" + action->objectName().toStdString());
  EXPECT_EQ(found, expected);
  EXPECT_EQ(plainText(control<QMenu>("mnuProfile").title()), "Profile");
  EXPECT_EQ(plainText(control<QMenu>("mnuEdit").title()), "Edit");
  EXPECT_EQ(plainText(control<QMenu>("mnuExport").title()), "Export");
  std::vector<std::string> menus;
  for (const QAction* menu : window()->menuBar()->actions()) menus.push_back(plainText(menu->text()));
  EXPECT_EQ(menus, (std::vector<std::string>{"Profile", "Edit", "Export", "Help"}));
}

TEST_F(LifeTest, NoMnemonicStandsTwiceInOneMenuOrInTheWindow) {
  open();
  const auto expectUnique = [](const QStringList& texts, const char* where) {
    std::set<QChar> seen;
    for (const QString& text : texts) {
      const qsizetype at = text.indexOf(u'&');
      if (at < 0 || at + 1 >= text.size()) continue;
      EXPECT_TRUE(seen.insert(text[at + 1].toLower()).second) << where << ": " << text.toStdString();
    }
    EXPECT_GE(seen.size(), 2U) << where;
  };
  QStringList window;
  for (const QAction* menu : this->window()->menuBar()->actions()) window << menu->text();
  for (const auto* button : this->window()->findChildren<QAbstractButton*>()) window << button->text();
  for (const auto* label : this->window()->findChildren<QLabel*>())
    if (label->buddy() != nullptr) window << label->text();
  for (const auto* group : this->window()->findChildren<QGroupBox*>()) window << group->title();
  expectUnique(window, "window");
  for (const char* name : {"mnuProfile", "mnuEdit", "mnuExport"}) {
    QStringList texts;
    for (const QAction* action : control<QMenu>(name).actions()) texts << action->text();
    expectUnique(texts, name);
  }
}

TEST_F(LifeTest, NoShortcutStandsTwice) {
  open();
  std::set<std::string> seen;
  for (const QAction* action : window()->findChildren<QAction*>())
    if (!action->shortcut().isEmpty()) {
      EXPECT_TRUE(seen.insert(action->shortcut().toString().toStdString()).second)
          << action->text().toStdString();
    }
  for (const char* keys : {"Ctrl+L", "Ctrl+E", "Ctrl+P", "Ctrl+Shift+P", "Ctrl+,", "Ctrl+W", "Ctrl+C",
                           "Ctrl+Shift+C", "Ctrl+S", "Ctrl+Shift+S"})
    EXPECT_EQ(seen.count(keys), 1U) << keys;
}

TEST_F(LifeTest, ExpandsByItsKeysAndNamesTheWayBack) {
  open();
  clickPlot(5, Qt::LeftButton);
  clickPlot(20, Qt::LeftButton);
  if (!window()->state().rightMarker.shown) clickPlot(20, Qt::RightButton);
  QTest::keyClick(window(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(window()->state().expanded);
  EXPECT_EQ(caption("mnuProfileExpand"), "Normal");
  QTest::keyClick(window(), Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(caption("mnuProfileExpand"), "Expand");
}

TEST_F(LifeTest, LinkBudgetKeepsTheModeledLossThatIsShown) {
  open();
  EXPECT_EQ(component_.state().linkBudgetLoss, "");
  item("mnuProfileLinkBudget").trigger();
  EXPECT_EQ(component_.state().linkBudgetLoss, text("lblMLoss"));
  const std::string first = component_.state().linkBudgetLoss;
  type("tbxAnt1AGL", "300");
  window()->Timer1_Timer();
  EXPECT_EQ(component_.state().linkBudgetLoss, first) << "until it is taken again";
  QTest::keyClick(window(), Qt::Key_L, Qt::ControlModifier);
  EXPECT_EQ(component_.state().linkBudgetLoss, text("lblMLoss"));
  EXPECT_NE(component_.state().linkBudgetLoss, first);
  EXPECT_EQ(logged(), "");
}

TEST_F(LifeTest, OptionsOpensTheSettingsDialog) {
  open();
  bool shown = false;
  onModal<QDialog>([&](QDialog& dialog) {
    shown = control_.get_OFrmLoaded() && &dialog == windows_->settingsDialog();
    EXPECT_TRUE(dialog.isModal());
    dialog.reject();
  });
  QTest::keyClick(window(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_TRUE(shown);
  EXPECT_FALSE(control_.get_OFrmLoaded());
}

// ---- Reaching everything ----

TEST_F(LifeTest, TabGoesFromThePlotOverTheSliderToThePanelAndRound) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  EXPECT_EQ(window()->focusWidget(), &window()->picture()) << "the plot has the keys first";
  std::vector<std::string> stops;
  for (int i = 0; i < 30; ++i) {
    stops.push_back(window()->focusWidget()->objectName().toStdString());
    QTest::keyClick(window()->focusWidget(), Qt::Key_Tab);
    if (window()->focusWidget() == &window()->picture()) break;
  }
  const std::vector<std::string> expected{"Picture1",    "Slider1",       "tbxAnt1AGL",    "tbxAnt2AGL",
                                          "optCurve(0)", "optFresnel(0)", "tbxpctFresnel", "tbxFreq",
                                          "cmdClear1",   "cmdClear2",     "cmdExit"};
  EXPECT_EQ(stops, expected);
}

TEST_F(LifeTest, EveryInputIsNamedAndExplained) {
  open();
  int inputs = 0;
  for (const QWidget* widget : window()->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || qobject_cast<const QMenu*>(widget) != nullptr ||
        qobject_cast<const QMenuBar*>(widget) != nullptr || qobject_cast<const QLabel*>(widget) != nullptr)
      continue;
    ++inputs;
    const std::string name = widget->objectName().toStdString();
    EXPECT_FALSE(name.empty()) << widget->metaObject()->className();
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
    // Over the plot it would hide what is being read.
    if (widget != &window()->picture()) {
      EXPECT_FALSE(widget->toolTip().isEmpty()) << name;
    }
  }
  EXPECT_GE(inputs, 17);
  EXPECT_EQ(control<QLabel>("lblZoom").buddy(), &control("Slider1"));
}

// ---- Focus ----

TEST_F(LifeTest, ComingBackToTheWindowRedrawsIt) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  const QImage before = picture();
  set("Colors", "cElevation", "255");
  leaveAndReturn();
  EXPECT_NE(picture(), before);
}

TEST_F(LifeTest, ComingBackFromABoxOfItsOwnDrawsNothing) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  const QImage before = picture();
  set("Colors", "cElevation", "255");
  onModal<QDialog>([](QDialog& box) {
    EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
    box.accept();
  });
  QDialog box(window());
  box.exec();
  returnTo();
  EXPECT_EQ(picture(), before);
}

// A failing drawing shows its box, whose end activates the window again.
TEST_F(LifeTest, ADrawingThatFailsShowsItsBoxOnceAndNotRoundAndRound) {
  open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
  int boxes = 0;
  dialogs_->onMessage = [&](const MessageBoxRequest&) {
    if (++boxes > 5) return;
    onModal<QDialog>([](QDialog& box) {
      EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
      box.accept();
    });
    QDialog box(window());
    box.exec();
  };
  set("Profile", "Prf_Ele", "99999");  // beyond 16 bits
  control<QSlider>("Slider1").setValue(200);
  returnTo();
  test::serveEvents(50);
  EXPECT_EQ(boxes, 1);
  QWidget other;
  other.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  window()->activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&] { return boxes == 2; })) << "the drawing of the return fails";
  returnTo();
  test::serveEvents(50);
  EXPECT_EQ(boxes, 2);
  EXPECT_NE(logged().find("\r\nfrmProfile:drawRangeAndHeight:0\r\n"), std::string::npos) << logged();
}

// ---- Closing ----

TEST_F(LifeTest, EveryWayOfClosingUnloadsIt) {
  const std::function<void()> ways[] = {
      [this] { click("cmdExit"); },
      [this] { QTest::keyClick(&control<QPushButton>("cmdExit"), Qt::Key_Space); },
      [this] { QTest::keyClick(window(), Qt::Key_W, Qt::ControlModifier); },
      [this] { QTest::keyClick(window(), Qt::Key_C, Qt::AltModifier); },
      [this] { item("mnuProfileClose").trigger(); },
      [this] { window()->close(); },
      [this] { window()->cmdExit_Click(); },
      [this] { control_.UnloadMainForm(); },
  };
  int way = 0;
  for (const auto& close : ways) {
    SCOPED_TRACE(way++);
    open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    type("tbxFreq", "2");  // both timers run
    close();
    // A button that is reached by its mnemonic shows for a moment that it is pressed.
    EXPECT_TRUE(QTest::qWaitFor([this] { return !control_.get_PFrmLoaded(); }, 1000));
    EXPECT_EQ(control_.get_hWnd(), 0);
    settle();
    EXPECT_EQ(window(), nullptr);
  }
  EXPECT_TRUE(dialogs_->messages.empty());
}

TEST_F(LifeTest, NothingRunsInAWindowThatIsUnloaded) {
  FrmProfile& window = open();
  type("tbxFreq", "2");
  const QImage before = picture();
  window.unload();
  for (const char* name : {"Timer1", "Timer2"})
    EXPECT_FALSE(window.findChild<QTimer*>(QLatin1String(name))->isActive()) << name;
  set("Colors", "cElevation", "255");
  window.Timer1_Timer();
  window.Timer2_Timer();
  window.Form_GotFocus();
  window.optCurve_Click(1);
  window.cmdClear_Click(0);
  window.unload();
  EXPECT_EQ(boxText("tbxFreq"), "2");
  EXPECT_EQ(picture(), before);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(logged(), "");
}

TEST_F(LifeTest, NothingThatWasTypedIsWrittenToTheSettings) {
  open();
  type("tbxAnt1AGL", "77");
  type("tbxFreq", "150");
  type("tbxpctFresnel", "33");
  click("optCurve(1)");
  window()->Timer1_Timer();
  control_.UnloadMainForm();
  for (const StoredSetting& setting : store_->AllSettings("Host Planner"))
    EXPECT_EQ(setting.section, "Windows") << setting.key;
}

// ---- Place ----

TEST_F(LifeTest, ItComesUpWhereItWas) {
  open().move(37, 41);
  control_.UnloadMainForm();
  EXPECT_EQ(stored("frmProfile Left"), "37");
  EXPECT_EQ(stored("frmProfile Top"), "41");
  settle();
  EXPECT_EQ(open().pos(), QPoint(37, 41));
}

TEST_F(LifeTest, APlaceOffTheScreensIsBroughtBack) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  for (const auto& [left, top] :
       {std::pair{9000, 41}, {-5000, 41}, {37, 9000}, {37, -600}, {99999, -99999}}) {
    SCOPED_TRACE(std::to_string(left) + ", " + std::to_string(top));
    set("Windows", "frmProfile Left", std::to_string(left));
    set("Windows", "frmProfile Top", std::to_string(top));
    const QRect place = open().geometry();
    EXPECT_TRUE(screen.intersects(QRect(place.left(), place.top(), place.width(), 24)))
        << place.left() << ", " << place.top();
    EXPECT_GE(place.top(), screen.top());
    control_.UnloadMainForm();
    settle();
  }
}

TEST_F(LifeTest, AMaximisedWindowRemembersWhereItWasBefore) {
  open().move(37, 41);
  settle();
  window()->showMaximized();
  settle();
  control_.UnloadMainForm();
  EXPECT_EQ(stored("frmProfile Left"), "37");
  EXPECT_EQ(stored("frmProfile Top"), "41");
}

TEST_F(LifeTest, AWindowThatNeverCameUpStoresNoPlace) {
  set("Profile", "Prf_Crv", "0");
  control_.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
  EXPECT_EQ(stored("frmProfile Left"), "none");
}

}  // namespace
}  // namespace zel
