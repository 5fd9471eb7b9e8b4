// The profile window that a host makes for itself through PForm, worked by the names of its members.
#include <thread>

#include "plot_probe.h"
#include "ui/profile_window/profile_form_object.h"

namespace zel {
namespace {

using test::kRidgeEnd;
using test::kRidgeStart;

class ProfileFormTest : public test::PlotWindowTest {
 protected:
  // For stored stations, as after a windowless loss.
  DispatchPtr form() {
    control_.GetPathLoss(kRidgeStart, kRidgeEnd);
    return control_.get_PForm();
  }
  static DispatchPtr child(const DispatchPtr& form, const char* name) { return form->get(name).toObject(); }
  static DispatchPtr child(const DispatchPtr& form, const char* name, std::int32_t index) {
    const AutomationValue value(index);
    return form->invoke(form->dispatchId(name), Access::kGet, {&value, 1}).toObject();
  }
  static std::string textOf(const DispatchPtr& form, const char* name) {
    return child(form, name)->get("Text").toText();
  }
  // The window behind a PForm, which is none of the component's.
  static FrmProfile* behind(const DispatchPtr& form) {
    const AutomationValue caption = form->get("Caption");
    form->let("Caption", "marked by the test");
    FrmProfile* found = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->windowTitle() == QLatin1String("marked by the test"))
        found = dynamic_cast<FrmProfile*>(widget);
    form->let("Caption", caption);
    return found;
  }
  static int shownWindows() {
    int shown = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) shown += widget->isVisible() ? 1 : 0;
    return shown;
  }
  template <typename Body>
  static AutomationErrorCode errorOf(Body&& body) {
    try {
      body();
    } catch (const AutomationError& error) {
      EXPECT_STRNE(error.what(), "");
      return error.code();
    }
    ADD_FAILURE() << "nothing was thrown";
    return AutomationErrorCode::kFailed;
  }
};

// ---- Life ----

TEST_F(ProfileFormTest, IsNotSeenUntilItIsShown) {
  const DispatchPtr window = form();
  EXPECT_EQ(shownWindows(), 0);
  EXPECT_FALSE(window->get("Visible").toBoolean());
  EXPECT_EQ(window->get("caption").toText(), "Terrain Profile");
  window->call("SHOW");
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_TRUE(window->get("Visible").toBoolean());
  EXPECT_EQ(textOf(window, "lblDist"), "28.7");
  window->call("Hide");
  EXPECT_EQ(shownWindows(), 0);
  EXPECT_EQ(textOf(window, "lblDist"), "28.7") << "hidden is not unloaded";
  window->let("Visible", true);
  EXPECT_EQ(shownWindows(), 1);
  window->let("Visible", false);
  EXPECT_EQ(shownWindows(), 0);
}

TEST_F(ProfileFormTest, IsMadeAnewAfterItWasUnloaded) {
  const DispatchPtr window = form();
  window->call("Show");
  child(window, "tbxFreq")->let("Text", "2400");
  window->let("Caption", "Mine");
  window->call("Unload");
  settle();
  EXPECT_EQ(shownWindows(), 0);
  window->call("Unload");  // again is harmless
  window->call("Show");
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_EQ(textOf(window, "tbxFreq"), "950");
  EXPECT_EQ(window->get("Caption").toText(), "Terrain Profile");
}

TEST_F(ProfileFormTest, IsMadeAnewAfterThePersonClosedIt) {
  const DispatchPtr window = form();
  window->call("Show");
  child(window, "cmdExit")->call("Click");
  settle();
  EXPECT_EQ(shownWindows(), 0);
  window->call("Show");
  EXPECT_EQ(shownWindows(), 1);
}

TEST_F(ProfileFormTest, GoesWithItsObjectWhetherShownHiddenOrUnloaded) {
  for (const char* last : {"Show", "Hide", "Unload", "drawLine"}) {
    SCOPED_TRACE(last);
    DispatchPtr window = form();
    window->call("Show");
    window->call(last);
    window.reset();
    settle();
    EXPECT_EQ(shownWindows(), 0);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
  }
  form().reset();  // never shown
  settle();
  EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

TEST_F(ProfileFormTest, StaysWhenTheComponentsWindowIsUnloaded) {
  const DispatchPtr own = form();
  own->call("Show");
  open();
  EXPECT_EQ(shownWindows(), 2);
  control_.UnloadMainForm();
  settle();
  EXPECT_EQ(shownWindows(), 1);
  EXPECT_TRUE(own->get("Visible").toBoolean());
}

TEST_F(ProfileFormTest, TakesTheStationsThatWereStoredWhenItWasMade) {
  const DispatchPtr first = form();
  first->call("Show");
  open(kRidgeStart, {36.30, -84.20, 30.0F});
  EXPECT_EQ(textOf(first, "lblDist"), "28.7");
  const DispatchPtr second = control_.get_PForm();
  second->call("Show");
  EXPECT_EQ(textOf(second, "lblDist"), text("lblDist"));
  EXPECT_NE(textOf(second, "lblDist"), "28.7");
}

// ---- A state of its own ----

TEST_F(ProfileFormTest, LeavesFlagsHandleAndLineCountsOfTheComponentAlone) {
  set("Profile", "Prf_Ele", "7");
  set("Profile", "Prf_Rng", "6");
  control_.let_ElevLines(2);
  control_.let_RangeLines(1);
  const DispatchPtr window = form();
  window->call("Show");
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  EXPECT_NE(window->get("hWnd").toInt32(), 0);
  EXPECT_EQ(control_.get_ElevLines(), 2);
  EXPECT_EQ(control_.get_RangeLines(), 1);
  window->call("Unload");
  EXPECT_FALSE(control_.get_PFrmLoaded());
}

TEST_F(ProfileFormTest, LeavesTheComponentsOpenWindowAlone) {
  open();
  const std::int32_t handle = control_.get_hWnd();
  const QImage before = picture();
  const DispatchPtr window = control_.get_PForm();
  window->call("Show");
  child(window, "tbxAnt1AGL")->let("Text", "100");
  window->call("drawLine");
  window->call("Unload");
  settle();
  EXPECT_TRUE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), handle);
  EXPECT_EQ(picture(), before);
  EXPECT_EQ(boxText("tbxAnt1AGL"), "30");
}

TEST_F(ProfileFormTest, ThatCannotBeProfiledShowsNothingAndLeavesTheFlagOfTheComponent) {
  component_.state().station1 = component_.state().station2 = {kRidgeStart.Lat, kRidgeStart.Lon};
  const DispatchPtr window = control_.get_PForm();
  const std::size_t before = dialogs_->messages.size();
  window->call("Show");
  ASSERT_EQ(dialogs_->messages.size(), before + 1);
  EXPECT_EQ(dialogs_->messages.back().text, "Under Range Error.");
  EXPECT_EQ(shownWindows(), 0);
  EXPECT_FALSE(component_.state().bProfileFailed);
  // It is tried again, and told again, at the next Show.
  window->call("Show");
  EXPECT_EQ(dialogs_->messages.size(), before + 2);
  EXPECT_EQ(shownWindows(), 0);
  EXPECT_EQ(logged(), "");
}

TEST_F(ProfileFormTest, FailedInTheComponentDoesNotKeepItFromBeingShown) {
  control_.ShowMainForm(kRidgeStart, kRidgeStart);
  EXPECT_TRUE(component_.state().bProfileFailed);
  const DispatchPtr window = form();
  window->call("Show");
  EXPECT_EQ(shownWindows(), 1);
}

// ---- Members ----

TEST_F(ProfileFormTest, HasItsNamedProcedures) {
  const DispatchPtr window = form();
  window->call("Show");
  for (const char* name :
       {"InitFromRegistry", "SetDistanceLabels", "SetStartEndPointLabels", "ValidateInfo", "LoadFormSettings",
        "DoPreCalc", "MinMaxAv", "drawLine", "UpdateModeledLoss", "mnuProfileExpand_Click",
        "mnuProfileLinkBudget_Click", "cmdClear1_Click", "cmdClear2_Click"}) {
    SCOPED_TRACE(name);
    EXPECT_TRUE(window->call(name).isEmpty());
    EXPECT_EQ(errorOf([&] { window->get(name); }), AutomationErrorCode::kWrongAccess);
    EXPECT_EQ(errorOf([&] { window->call(name, {1}); }), AutomationErrorCode::kWrongArgumentCount);
  }
  settle();
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (dynamic_cast<FrmProfile*>(widget) == nullptr) widget->close();
  window->call("cmdExit_Click");
  EXPECT_FALSE(window->get("Visible").toBoolean());
  EXPECT_EQ(logged(), "");
}

TEST_F(ProfileFormTest, ProceduresInAnyOrderNeverDrawTerrainThatWasNotSampled) {
  const DispatchPtr window = form();
  window->call("Show");
  const FrmProfile* frame = behind(window);
  const std::string lowest = textOf(window, "lblMinHt");
  const QImage before = behind(window)->picture().canvas().image().copy();
  window->call("DoPreCalc");
  window->call("MinMaxAv");
  window->call("UpdateModeledLoss");
  EXPECT_EQ(textOf(window, "lblMinHt"), lowest);
  window->call("drawLine");
  EXPECT_EQ(textOf(window, "lblMinHt"), lowest);
  EXPECT_EQ(behind(window)->picture().canvas().image(), before);
  // A density of its own is a path of its own.
  set("Profile", "Prf_Per", "20");
  window->call("DoPreCalc");
  window->call("drawLine");
  EXPECT_LT(frame->state().path.samples, 700);
  EXPECT_EQ(frame->state().curve.size(), frame->state().path.samples);
  EXPECT_GT(frame->state().statistics.minimum, 200.0F);
  EXPECT_EQ(logged(), "");
}

TEST_F(ProfileFormTest, ReadingTheSettingsAnewKeepsPathTerrainAndMarkers) {
  const DispatchPtr window = form();
  window->call("Show");
  FrmProfile* frame = behind(window);
  frame->Picture1_MouseDown(9, 0);
  const auto heights = frame->state().elevation;
  child(window, "tbxFreq")->let("Text", "2400");
  set("Profile", "Prf_Crv", "1");
  window->call("InitFromRegistry");
  EXPECT_EQ(textOf(window, "tbxFreq"), "950");
  EXPECT_TRUE(child(window, "optCurve", 1)->get("Value").toBoolean());
  EXPECT_TRUE(frame->state().leftMarker.shown);
  window->call("drawLine");
  EXPECT_EQ(frame->state().elevation, heights);
  EXPECT_EQ(frame->state().riseK, 1.0F);
  EXPECT_TRUE(frame->state().leftMarker.shown);
  EXPECT_TRUE(dialogs_->messages.empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(ProfileFormTest, ItsOptionsAreTheSettingsDialog) {
  const DispatchPtr window = form();
  window->call("Show");
  bool seen = false;
  onModal<QDialog>([&](QDialog& dialog) {
    seen = dialog.objectName() == QLatin1String("frmOptionsProfile");
    dialog.reject();
  });
  window->call("mnuProfileOptions_Click");
  EXPECT_TRUE(seen);
}

TEST_F(ProfileFormTest, ItsPlaceAndSizeAreTwips) {
  const DispatchPtr window = form();
  window->call("Show");
  window->let("Left", 1500);
  window->let("Top", 750);
  window->let("Width", 10500);
  window->let("Height", 9000);
  settle();
  EXPECT_EQ(window->get("Left").toInt32(), 1500);
  EXPECT_EQ(window->get("Top").toInt32(), 750);
  EXPECT_EQ(window->get("Width").toInt32(), 10500);
  EXPECT_EQ(window->get("Height").toInt32(), 9000);
  EXPECT_EQ(behind(window)->size(), QSize(700, 600));
  window->let("Width", 15);  // the least size of the window holds
  EXPECT_EQ(window->get("Width").toInt32(), 9315);
  const auto height = window->call("MenuHeight").toInt32();
  EXPECT_GT(height, 15 * 10);
  EXPECT_EQ(height % 15, 0);
  EXPECT_GT(window->call("WindowTitleHeight").toInt32(), 0);
}

TEST_F(ProfileFormTest, AHostsTextRunsTheBoxesHandler) {
  const DispatchPtr window = form();
  window->call("Show");
  FrmProfile* frame = behind(window);
  child(window, "tbxFreq")->let("Text", "2400");
  EXPECT_EQ(frame->state().inputs.frequency, 2400.0F);
  EXPECT_EQ(textOf(window, "lblLambda"), ".125");
  child(window, "tbxAnt1AGL")->let("Text", "900");
  EXPECT_EQ(textOf(window, "tbxAnt1AGL"), "750");
  child(window, "tbxFreq")->let("Text", "5");
  EXPECT_EQ(textOf(window, "tbxFreq"), "20") << "a host has typed to the end";
  child(window, "tbxpctFresnel")->let("Text", "30");
  EXPECT_FLOAT_EQ(frame->state().inputs.fresnelFraction, 0.3F);
  EXPECT_TRUE(child(window, "optFresnel", 2)->get("Value").toBoolean());
  child(window, "optCurve", 2)->let("Value", true);
  child(window, "tbxCurve")->let("Text", "1.2");
  EXPECT_FLOAT_EQ(frame->state().inputs.k, 1.2F);
}

TEST_F(ProfileFormTest, AHostMayFillInBoxesBeforeShow) {
  const DispatchPtr window = form();
  child(window, "tbxAnt1AGL")->let("Text", "100");
  window->call("Show");
  EXPECT_EQ(textOf(window, "tbxAnt1AGL"), "100");
  EXPECT_EQ(behind(window)->state().inputs.antennaHeights[0], 100);
}

TEST_F(ProfileFormTest, ControlArraysAreReachedByIndex) {
  const DispatchPtr window = form();
  window->call("Show");
  FrmProfile* frame = behind(window);
  EXPECT_TRUE(child(window, "optCurve", 0)->get("Value").toBoolean());
  child(window, "optCurve", 1)->let("Value", true);
  EXPECT_EQ(frame->state().inputs.k, 1.0F);
  EXPECT_FALSE(child(window, "optCurve", 0)->get("Value").toBoolean());
  child(window, "OPTFRESNEL", 1)->call("Click");
  EXPECT_FLOAT_EQ(frame->state().inputs.fresnelFraction, 0.6F);
  EXPECT_EQ(child(window, "optFresnel", 1)->get("Name").toText(), "optFresnel(1)");
  EXPECT_EQ(errorOf([&] { child(window, "optCurve", 3); }), AutomationErrorCode::kFailed);
  EXPECT_EQ(errorOf([&] { child(window, "optCurve", -1); }), AutomationErrorCode::kFailed);
  EXPECT_EQ(errorOf([&] { child(window, "optCurve"); }), AutomationErrorCode::kWrongArgumentCount);
  EXPECT_EQ(errorOf([&] { child(window, "lblDist", 0); }), AutomationErrorCode::kFailed);
  const AutomationValue text("first");
  EXPECT_EQ(errorOf([&] {
              window->invoke(window->dispatchId("optCurve"), Access::kGet, {&text, 1});
            }),
            AutomationErrorCode::kTypeMismatch);
  const AutomationValue two[] = {AutomationValue(0), AutomationValue(1)};
  EXPECT_EQ(errorOf([&] { window->invoke(window->dispatchId("optCurve"), Access::kGet, two); }),
            AutomationErrorCode::kWrongArgumentCount);
}

TEST_F(ProfileFormTest, ControlsHaveWhatTheyAre) {
  const DispatchPtr window = form();
  window->call("Show");
  // A box has a text, a button a caption, a frame a caption, a slider a value, an item a caption.
  EXPECT_EQ(child(window, "cmdExit")->get("Caption").toText(), "Close");
  EXPECT_EQ(child(window, "mnuProfileOptions")->get("Caption").toText(), "Options");
  EXPECT_EQ(child(window, "fraStart")->get("Caption").toText(), "Start Point");
  EXPECT_EQ(child(window, "Slider1")->get("Value").toInt32(), 100);
  EXPECT_EQ(child(window, "lblDist")->get("Caption").toText(), "28.7");
  child(window, "Slider1")->let("Value", 250);
  EXPECT_EQ(child(window, "Slider1")->get("Value").toInt32(), 250);
  child(window, "Slider1")->let("Value", 9999);
  EXPECT_EQ(child(window, "Slider1")->get("Value").toInt32(), 500);
  child(window, "lblFSLoss")->let("Caption", "n/a");
  EXPECT_EQ(textOf(window, "lblFSLoss"), "n/a");
  child(window, "cmdClear1")->let("Enabled", false);
  EXPECT_FALSE(child(window, "cmdClear1")->get("Enabled").toBoolean());
  child(window, "Slider1")->let("Visible", false);
  EXPECT_FALSE(child(window, "Slider1")->get("Visible").toBoolean());
  child(window, "mnuProfileOptions")->let("Visible", false);
  EXPECT_FALSE(child(window, "mnuProfileOptions")->get("Visible").toBoolean());
  child(window, "mnuProfileExpand")->let("Caption", "Wider");
  EXPECT_EQ(child(window, "mnuProfileExpand")->get("Caption").toText(), "Wider");
  settle();
  child(window, "tbxFreq")->call("SetFocus");
  EXPECT_TRUE(QTest::qWaitFor([&] { return behind(window)->panel().tbxFreq->hasFocus(); }));
}

TEST_F(ProfileFormTest, WhatAControlDoesNotHaveIsAnErrorThatNamesIt) {
  const DispatchPtr window = form();
  const DispatchPtr box = child(window, "tbxFreq");
  EXPECT_EQ(errorOf([&] { box->get("Colour"); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { box->get("Value"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { box->let("Name", "other"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { box->call("Click"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { box->call("Text"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { box->get("Click"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { box->let("Text", 5); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(errorOf([&] { box->call("SetFocus", {1}); }), AutomationErrorCode::kWrongArgumentCount);
  EXPECT_EQ(errorOf([&] { box->invoke(99, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { box->invoke(0, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { child(window, "Slider1")->let("Value", "much"); }),
            AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(errorOf([&] { child(window, "cmdExit")->get("Value"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { child(window, "Slider1")->get("Text"); }), AutomationErrorCode::kWrongAccess);
  try {
    box->get("Value");
  } catch (const AutomationError& error) {
    EXPECT_NE(std::string(error.what()).find("tbxFreq"), std::string::npos);
  }
}

TEST_F(ProfileFormTest, WhatTheWindowDoesNotHaveIsAnErrorThatNamesIt) {
  const DispatchPtr window = form();
  EXPECT_EQ(errorOf([&] { window->get("Colour"); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { window->let("hWnd", 1); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { window->get("Show"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { window->call("Caption"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { window->let("tbxFreq", "1"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(errorOf([&] { window->call("Show", {1}); }), AutomationErrorCode::kWrongArgumentCount);
  EXPECT_EQ(errorOf([&] { window->let("Left", "far"); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(errorOf([&] { window->let("Visible", "yes"); }), AutomationErrorCode::kTypeMismatch);
  EXPECT_EQ(errorOf([&] { window->invoke(-1, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { window->invoke(9999, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(errorOf([&] { window->invoke(window->dispatchId("Caption"), Access::kLet, {}); }),
            AutomationErrorCode::kWrongArgumentCount);
}

TEST_F(ProfileFormTest, EveryControlOfThePanelCanBeReached) {
  const DispatchPtr window = form();
  for (const char* name : {"Picture1",
                           "Slider1",
                           "fraControl",
                           "lblSLat",
                           "lblSLon",
                           "lblSAMSL",
                           "tbxAnt1AGL",
                           "lblAMSLStart",
                           "lblAGLStart",
                           "lblELat",
                           "lblELon",
                           "lblEAMSL",
                           "tbxAnt2AGL",
                           "lblAMSLEnd",
                           "lblAGLEnd",
                           "tbxCurve",
                           "tbxpctFresnel",
                           "tbxFreq",
                           "lblLambda",
                           "lblFSLoss",
                           "lblMLoss",
                           "lblMaxHt",
                           "lblMinHt",
                           "lblAvHt",
                           "lblDist",
                           "lblAzd",
                           "lblMk1Lat",
                           "lblMk1Lon",
                           "lblMk1Ht",
                           "lblMk1Posn",
                           "lblMk2Lat",
                           "lblMk2Lon",
                           "lblMk2Ht",
                           "lblMk2Posn",
                           "lblCurPosn",
                           "lblCurHt",
                           "lblmbelowmouse",
                           "cmdClear1",
                           "cmdClear2",
                           "cmdExit",
                           "mnuProfileLinkBudget",
                           "mnuProfileExpand",
                           "mnuPrint",
                           "mnuProfileOptions",
                           "mnuEditCopyPicture",
                           "mnuEditCopyValues",
                           "mnuExportBMP",
                           "mnuExportProfile",
                           "mnuExportPathLoss",
                           "mnuExportPathLossGraph",
                           "mnuExportPathSignalGraph",
                           "mnuExportPathLossProfile"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(child(window, name)->get("Name").toText(), name);
  }
  for (std::int32_t i = 0; i < 3; ++i) EXPECT_NE(child(window, "optCurve", i), nullptr);
  for (std::int32_t i = 0; i < 4; ++i) EXPECT_NE(child(window, "optFresnel", i), nullptr);
}

TEST_F(ProfileFormTest, AControlOfAWindowThatWasUnloadedSaysSo) {
  const DispatchPtr window = form();
  window->call("Show");
  const DispatchPtr box = child(window, "tbxFreq");
  window->call("Unload");
  settle();
  EXPECT_EQ(errorOf([&] { box->get("Text"); }), AutomationErrorCode::kFailed);
  EXPECT_EQ(errorOf([&] { box->let("Text", "5"); }), AutomationErrorCode::kFailed);
  EXPECT_EQ(errorOf([&] { box->call("SetFocus"); }), AutomationErrorCode::kFailed);
}

TEST_F(ProfileFormTest, AControlOutlivesItsWindowsObject) {
  DispatchPtr window = form();
  const DispatchPtr box = child(window, "tbxFreq");
  window.reset();
  settle();
  EXPECT_EQ(errorOf([&] { box->get("Text"); }), AutomationErrorCode::kFailed);
}

// ---- Contour ----

TEST_F(ProfileFormTest, TheContourFlagTakesTheTerrainSourceOfTheContour) {
  set("Profile", "Prf_TRes", "3");
  set("Contour", "Con_TRes", "2");
  const DispatchPtr window = form();
  EXPECT_FALSE(window->get("Contour").toBoolean());
  window->let("Contour", true);
  window->call("Show");
  EXPECT_TRUE(window->get("Contour").toBoolean());
  EXPECT_EQ(behind(window)->state().inputs.source, 2);
  EXPECT_TRUE(behind(window)->state().inputs.contour);
  window->call("Unload");
  window->call("Show");
  EXPECT_EQ(behind(window)->state().inputs.source, 2) << "the flag is the object's, not the window's";
  const DispatchPtr other = control_.get_PForm();
  other->call("Show");
  EXPECT_EQ(behind(other)->state().inputs.source, 3);
}

// ---- Threads ----

TEST_F(ProfileFormTest, AnotherThreadIsRefused) {
  const DispatchPtr window = form();
  window->call("Show");
  const DispatchPtr box = child(window, "tbxFreq");
  AutomationErrorCode first{};
  AutomationErrorCode second{};
  std::thread([&] {
    first = errorOf([&] { window->call("drawLine"); });
    second = errorOf([&] { box->let("Text", "5"); });
  }).join();
  EXPECT_EQ(first, AutomationErrorCode::kWrongThread);
  EXPECT_EQ(second, AutomationErrorCode::kWrongThread);
  EXPECT_EQ(textOf(window, "tbxFreq"), "950");
}

TEST_F(ProfileFormTest, ReleasedOnAnotherThreadItsWindowStaysUntilTheWindowsGo) {
  DispatchPtr window = form();
  window->call("Show");
  std::thread([moved = std::move(window)]() mutable { moved.reset(); }).join();
  settle();
  EXPECT_EQ(shownWindows(), 1);
  windows_->deleteAll();
  EXPECT_EQ(shownWindows(), 0);
}

}  // namespace
}  // namespace zel
