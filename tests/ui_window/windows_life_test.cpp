// The windows of the component as a host opens, replaces and closes them, also in the middle of what they do.
#include <QDialog>

#include "plot_probe.h"

namespace zel {
namespace {

using test::kRidgeEnd;
using test::kRidgeStart;

constexpr StationProfile_Type kEastEnd{36.30, -84.20, 30.0F};

class WindowsLifeTest : public test::PlotWindowTest {
 protected:
  static int shownWindows() {
    int shown = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) shown += widget->isVisible() ? 1 : 0;
    return shown;
  }
  static void expectNothingLeft() {
    settle();
    for (const QWidget* widget : QApplication::topLevelWidgets())
      ADD_FAILURE() << "left over: " << widget->objectName().toStdString();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }
  // Shows the settings dialog and runs the body on it.
  void withOptions(const std::function<void(QDialog&)>& body) {
    onModal<QDialog>([body](QDialog& dialog) {
      // A person types into a window that has the keyboard.
      EXPECT_TRUE(QTest::qWaitFor([&dialog] { return QApplication::activeWindow() == &dialog; }));
      body(dialog);
      if (dialog.isVisible()) dialog.reject();
    });
    control_.ShowOptionsForm();
  }
  static void typeInto(QDialog& dialog, const char* name, const char* keys) {
    auto* line = dialog.findChild<QLineEdit*>(QLatin1String(name));
    ASSERT_NE(line, nullptr) << name;
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, QLatin1String(keys));
  }
  static void ok(QDialog& dialog) {
    QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
  }
};

// ---- One window ----

TEST_F(WindowsLifeTest, ASecondPathReplacesTheFirst) {
  open();
  const std::string first = text("lblDist");
  open(kRidgeStart, kEastEnd);
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_NE(text("lblDist"), first);
  EXPECT_NE(control_.get_hWnd(), 0);
  EXPECT_TRUE(control_.get_PFrmLoaded());
  control_.UnloadMainForm();
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, TheSamePathAgainIsANewWindowWithFreshInputs) {
  open();
  clickPlot(8);
  type("tbxFreq", "2400");
  open();
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_EQ(shownWindows(), 1);
}

TEST_F(WindowsLifeTest, ABadPathTakesTheOpenWindowAway) {
  open();
  control_.ShowMainForm(kRidgeStart, kRidgeStart);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  expectNothingLeft();
  EXPECT_TRUE(component_.state().bProfileFailed);
  open();
  EXPECT_FALSE(component_.state().bProfileFailed);
}

TEST_F(WindowsLifeTest, UnloadingTwiceAndWithoutAWindowIsHarmless) {
  control_.UnloadMainForm();
  open();
  control_.UnloadMainForm();
  control_.UnloadMainForm();
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, AnUnloadedWindowsTimersAndEventsDoNothing) {
  FrmProfile& window = open();
  type("tbxAnt1AGL", "40");
  control_.UnloadMainForm();
  // It may still be called by events that are on their way, until it is deleted.
  window.Timer1_Timer();
  window.Timer2_Timer();
  window.drawLine();
  window.Form_GotFocus();
  window.Form_Resize();
  window.mnuProfileOptions_Click();
  window.mnuProfileLinkBudget_Click();
  window.cmdClear_Click(0);
  window.Picture1_MouseDown(5, 0);
  window.Picture1_MouseMove(5, 0);
  window.open();
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(control_.get_PFrmLoaded());
  waitForTyping();
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

// ---- Unloaded in the middle ----

TEST_F(WindowsLifeTest, UnloadedInAMessageBoxOfItsDrawing) {
  dialogs_->onMessage = [this](const MessageBoxRequest&) {
    control_.UnloadMainForm();
    settle();  // the box handles events
  };
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  control_.ShowMainForm(kRidgeStart, kRidgeEnd);
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, UnloadedInTheQuestionOfTheECurve) {
  for (const MessageAnswer answer : {MessageAnswer::kYes, MessageAnswer::kNo}) {
    open();
    clickPlot(8);
    clickPlot(15);
    dialogs_->answer = answer;
    dialogs_->onMessage = [this](const MessageBoxRequest&) {
      control_.UnloadMainForm();
      settle();
    };
    click("optCurve(1)");
    EXPECT_FALSE(control_.get_PFrmLoaded());
    expectNothingLeft();
    dialogs_->onMessage = nullptr;
  }
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, ReplacedInTheQuestionOfTheECurve) {
  open();
  clickPlot(8);
  clickPlot(15);
  dialogs_->onMessage = [this](const MessageBoxRequest&) {
    control_.ShowMainForm(kRidgeStart, kEastEnd);
    settle();
  };
  click("optCurve(1)");
  settle();
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_EQ(state().inputs.end.latitude, kEastEnd.Lat);
  EXPECT_NE(state().inputs.k, 1.0F) << "the answer was the old window's";
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, UnloadedByTheHostInTheMidstOfADrawing) {
  const auto host = callingHost();
  open();
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    control_.UnloadMainForm();
    settle();
  });
  window()->drawLine();
  EXPECT_TRUE(asked);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, UnloadedByTheHostDuringItsFirstDrawing) {
  const auto host = callingHost();
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    control_.UnloadMainForm();
    settle();
  });
  control_.ShowMainForm(kRidgeStart, kRidgeEnd);
  EXPECT_TRUE(asked);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, ReplacedByTheHostInTheMidstOfADrawing) {
  const auto host = callingHost();
  open();
  duringDrawing(*host, [&] {
    control_.ShowMainForm(kRidgeStart, kEastEnd);
    settle();
  });
  window()->drawLine();
  settle();
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_EQ(state().inputs.end.latitude, kEastEnd.Lat);
  EXPECT_FALSE(state().flags.drawing);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(WindowsLifeTest, UnloadedByTheHostAtEachOfItsCallsWhileItLoads) {
  const auto host = callingHost();
  // Every time the host is asked anything during ShowMainForm, once.
  for (int at = 0; at < 400; ++at) {
    int calls = 0;
    std::function<void()> counting = [&] {
      if (calls++ == at) {
        control_.UnloadMainForm();
        settle();
      }
    };
    host->keepCalling = true;
    host->onAsked = counting;
    control_.ShowMainForm(kRidgeStart, kRidgeEnd);
    host->onAsked = nullptr;
    host->keepCalling = false;
    settle();
    const bool stands = control_.get_PFrmLoaded();
    EXPECT_EQ(shownWindows(), stands ? 1 : 0) << "at call " << at;
    EXPECT_EQ(control_.get_hWnd() != 0, stands) << "at call " << at;
    EXPECT_EQ(logged(), "") << "at call " << at;
    if (calls <= at || HasFailure()) break;
  }
  control_.UnloadMainForm();
  expectNothingLeft();
}

// ---- Settings dialog ----

TEST_F(WindowsLifeTest, BothAreUnloadedInTheSettingsDialogsLoop) {
  open();
  bool seen = false;
  withOptions([&](QDialog&) {
    seen = true;
    EXPECT_TRUE(control_.get_OFrmLoaded());
    control_.UnloadMainForm();
    EXPECT_FALSE(control_.get_PFrmLoaded());
    EXPECT_FALSE(control_.get_OFrmLoaded());
  });
  EXPECT_TRUE(seen);
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, BothAreUnloadedInTheLoopOfTheDialogThatTheMenuOpened) {
  open();
  onModal<QDialog>([this](QDialog&) {
    control_.UnloadMainForm();
    settle();
  });
  item("mnuProfileOptions").trigger();
  expectNothingLeft();
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, TheWindowIsReplacedInTheSettingsDialogsLoop) {
  open();
  onModal<QDialog>([this](QDialog&) {
    control_.ShowMainForm(kRidgeStart, kEastEnd);
    settle();
  });
  item("mnuProfileOptions").trigger();
  settle();
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_FALSE(control_.get_OFrmLoaded());
  EXPECT_EQ(state().inputs.end.latitude, kEastEnd.Lat);
}

TEST_F(WindowsLifeTest, TheSettingsDialogIsOneAlsoWhenItIsAskedForInItsOwnLoop) {
  int dialogs = 0;
  withOptions([&](QDialog& dialog) {
    control_.ShowOptionsForm();
    for (const QWidget* widget : QApplication::topLevelWidgets())
      if (widget->objectName() == QLatin1String("frmOptionsProfile")) ++dialogs;
    EXPECT_TRUE(dialog.isVisible());
  });
  EXPECT_EQ(dialogs, 1);
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, OkTakesTheValuesOverIntoTheSameWindow) {
  set("Profile", "Prf_Per", "100");
  FrmProfile& before = open();
  type("tbxAnt1AGL", "77");
  before.Timer1_Timer();
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxFreq", "2400");
    ok(dialog);
  });
  ASSERT_EQ(window(), &before);
  EXPECT_EQ(boxText("tbxFreq"), "2400");
  EXPECT_EQ(state().inputs.frequency, 2400.0F);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "77") << "what was typed stays";
  EXPECT_FALSE(state().flags.modeledLossPending) << "and was drawn";
}

// The dialog's own default of the density is another than the window's, and OK writes it.
TEST_F(WindowsLifeTest, OkWithNothingStoredBeforeShowsThePathInTheDialogsDensity) {
  open(kRidgeStart, {36.35, -84.28, 30.0F});  // short enough for either density
  const std::int32_t samples = state().path.samples;
  withOptions([](QDialog& dialog) { ok(dialog); });
  settle();
  EXPECT_NEAR(state().path.samples, samples / 2, 3);
}

TEST_F(WindowsLifeTest, CancelTakesNothingOver) {
  open();
  const QImage before = picture();
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxFreq", "2400");
    dialog.reject();
  });
  EXPECT_EQ(boxText("tbxFreq"), "950");
  EXPECT_EQ(picture(), before);
}

TEST_F(WindowsLifeTest, AnotherDensityShowsTheSamePathAnewAtTheSamePlace) {
  FrmProfile& before = open();
  before.setGeometry(60, 40, 700, 520);
  settle();
  before.Timer1_Timer();
  clickPlot(8);
  const QPointer<FrmProfile> old(&before);
  const std::int32_t samples = state().path.samples;
  set("Profile", "Prf_Frez", "60");
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxPer", "20");
    ok(dialog);
  });
  ASSERT_NE(window(), nullptr);
  settle();
  EXPECT_TRUE(old.isNull()) << "the old window is still there";
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_EQ(window()->geometry(), QRect(60, 40, 700, 520));
  EXPECT_LT(state().path.samples, samples);
  EXPECT_FALSE(state().leftMarker.shown);
  EXPECT_EQ(state().inputs.end.latitude, kRidgeEnd.Lat);
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_NE(control_.get_hWnd(), 0);
  EXPECT_TRUE(window()->picture().canvasFits());
}

TEST_F(WindowsLifeTest, AMaximisedWindowIsShownAnewMaximised) {
  open();
  window()->showMaximized();
  settle();
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxPer", "20");
    ok(dialog);
  });
  settle();
  EXPECT_TRUE(window()->isMaximized());
}

TEST_F(WindowsLifeTest, ADensityThatCannotBeProfiledLeavesNoWindow) {
  useTile([](int, int) { return 400; });
  component_.refreshTerrainSources();
  open({36.50, -84.60, 30.0F}, {36.50, -84.10, 30.0F});
  std::filesystem::remove(folder_ / "N36W085.hgt");
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxPer", "20");
    ok(dialog);
  });
  EXPECT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, AHostsOwnWindowFollowsTheSettingsToo) {
  set("Profile", "Prf_Per", "100");
  open();
  const DispatchPtr own = control_.get_PForm();
  own->call("Show");
  const auto label = [&own](const char* name) { return own->get(name).toObject()->get("Text").toText(); };
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxFreq", "2400");
    ok(dialog);
  });
  EXPECT_EQ(label("tbxFreq"), "2400");
  withOptions([](QDialog& dialog) {
    typeInto(dialog, "tbxPer", "20");
    ok(dialog);
  });
  settle();
  EXPECT_EQ(shownWindows(), 2);
  EXPECT_EQ(label("lblDist"), "28.7");
  EXPECT_EQ(logged(), "");
}

TEST_F(WindowsLifeTest, AWindowThatIsLoadedAnewShowsTheWholePathAndSaysSo) {
  open();
  clickPlot(8);
  clickPlot(15);
  pointAt(10);
  item("mnuProfileExpand").trigger();
  window()->reload();
  EXPECT_FALSE(state().expanded);
  EXPECT_EQ(item("mnuProfileExpand").text().remove(u'&').toStdString(), "Expand");
  EXPECT_EQ(text("lblMk1Lat"), "");
  EXPECT_EQ(text("lblMk2Posn"), "");
}

// ---- Release ----

TEST_F(WindowsLifeTest, AReleasedProfilerUnloadsBothWindows) {
  open();
  withOptions([](QDialog&) { ProfileControl().get_hWnd(); });
  EXPECT_FALSE(control_.get_PFrmLoaded());
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, AReleasedProfilerUnloadsTheWindowWhateverTheFlagsSay) {
  open();
  component_.state().profileWindowLoaded = false;
  { const ProfileControl another; }
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, AReleasedProfilerLeavesAHostsOwnWindow) {
  control_.GetPathLoss(kRidgeStart, kRidgeEnd);
  const DispatchPtr own = control_.get_PForm();
  own->call("Show");
  { const ProfileControl another; }
  settle();
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_EQ(own->get("lblDist").toObject()->get("Text").toText(), "28.7");
}

TEST_F(WindowsLifeTest, AllWindowsGoWithTheApplication) {
  open();
  const DispatchPtr own = control_.get_PForm();
  own->call("Show");
  windows_->deleteAll();  // what the application's end does
  EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  own->call("Unload");
  control_.UnloadMainForm();
  open();
  EXPECT_EQ(shownWindows(), 1);
}

TEST_F(WindowsLifeTest, AllWindowsGoWithTheApplicationInTheSettingsDialogsLoop) {
  open();
  onModal<QDialog>([this](QDialog&) { windows_->deleteAll(); });
  control_.ShowOptionsForm();
  EXPECT_FALSE(control_.get_OFrmLoaded());
  EXPECT_FALSE(control_.get_PFrmLoaded());
  expectNothingLeft();
}

TEST_F(WindowsLifeTest, AHundredWindowsLeaveNothingBehind) {
  open();
  const auto widgets = QApplication::allWidgets().size();
  for (int i = 0; i < 100; ++i) control_.ShowMainForm(kRidgeStart, i % 2 == 0 ? kRidgeEnd : kEastEnd);
  settle();
  EXPECT_EQ(QApplication::allWidgets().size(), widgets);
  control_.UnloadMainForm();
  expectNothingLeft();
}

}  // namespace
}  // namespace zel
