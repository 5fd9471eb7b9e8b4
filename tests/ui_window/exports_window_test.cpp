// The menu "Export": what it asks, what it writes, and what may happen to the window while a long export
// runs. The contents of the files are the exports' own tests' business; here they are those of the same
// exports without a window.
#include <QDialog>
#include <QFileInfo>
#include <QImage>

#include "component/services/error_trap.h"
#include "exporting.h"

namespace zel {
namespace {

using test::kRidgeEnd;
using test::kRidgeStart;

constexpr StationProfile_Type kShortEnd{36.30, -84.20, 30.0F};

class ExportsWindowTest : public test::ExportingTest {
 protected:
  ExportProcedures plain() { return plainExports(trapped_, events_, silent_); }
  void runSignalProfile() { item("mnuExportPathLossProfile").trigger(); }

  TrappedModule trapped_{"frmProfile", component_.trap()};
  test::ScriptedEventLoop events_;
  test::ScriptedDialogs silent_;
};

// ---- Dialogs ----

struct FileItem {
  const char* name;
  SaveDialogRequest dialog;
};

std::vector<FileItem> fileItems() {
  const SaveDialogRequest csv{"Save to 'Comma Separated Value' File", ".csv",
                              "Comma Separated Value (*.csv)|*.csv", true, true};
  return {{"mnuExportBMP", {"Save to Bitmap File", ".bmp", "Bitmap File (*.bmp)|*.bmp", true, true}},
          {"mnuExportProfile", csv},
          {"mnuExportPathLoss", csv},
          {"mnuExportPathSignalGraph", {"Save to Bitmap File", ".png", "Bitmap (*.png)|*.png", true, true}},
          {"mnuExportPathLossProfile", csv}};
}

TEST_F(ExportsWindowTest, EachItemAsksForItsFile) {
  open();
  for (const FileItem& file : fileItems()) {
    SCOPED_TRACE(file.name);
    dialogs_->saves.clear();
    item(file.name).trigger();
    ASSERT_EQ(dialogs_->saves.size(), 1U);
    const SaveDialogRequest& asked = dialogs_->saves.front();
    EXPECT_EQ(asked.title, file.dialog.title);
    EXPECT_EQ(asked.defaultExtension, file.dialog.defaultExtension);
    EXPECT_EQ(asked.filter, file.dialog.filter);
    EXPECT_TRUE(asked.overwritePrompt);
    EXPECT_TRUE(asked.pathMustExist);
  }
}

TEST_F(ExportsWindowTest, ACancelledDialogWritesNothingAndSaysNothing) {
  open();
  for (const FileItem& file : fileItems()) item(file.name).trigger();
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(dialogs_->inputs.empty());
  EXPECT_EQ(logged(), "");
  EXPECT_TRUE(exported().empty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ExportsWindowTest, ALongNameIsCutToTwoHundredCharactersAndGetsItsExtension) {
  open();
  answerSignalBoxes();
  for (const FileItem& file : fileItems()) {
    if (std::string(file.name) == "mnuExportPathSignalGraph") continue;  // its files are the graph's business
    SCOPED_TRACE(file.name);
    const std::string chosen = (folder_ / std::string(300, 'n')).string().substr(0, 250);
    dialogs_->savePath = chosen;
    item(file.name).trigger();
    const std::string cut = chosen.substr(0, 200) + file.dialog.defaultExtension;
    EXPECT_TRUE(std::filesystem::exists(cut));
    EXPECT_FALSE(std::filesystem::exists(chosen));
    std::filesystem::remove(cut);
  }
}

TEST_F(ExportsWindowTest, ADialogThatFailsIsTrapped) {
  open();
  dialogs_->onSave = [](const SaveDialogRequest&) { throw RuntimeError::permissionDenied(); };
  item("mnuExportBMP").trigger();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_NE(boxes()[0].find("Permission denied"), std::string::npos);
  EXPECT_NE(boxes()[0].find("frmProfile:GetBMPDialog:0"), std::string::npos) << boxes()[0];
  item("mnuExportProfile").trigger();
  ASSERT_EQ(boxes().size(), 2U);
  EXPECT_NE(boxes()[1].find("modTerPro:GetCSVDialog:0"), std::string::npos) << boxes()[1];
  EXPECT_TRUE(exported().empty());
}

// ---- Bitmap ----

TEST_F(ExportsWindowTest, TheBitmapIsWhatThePlotShows) {
  open();
  clickPlot(5);
  clickPlot(20);
  pointAt(12);
  ASSERT_TRUE(window()->plotView()->strobe.shown);
  const QImage shown = image();
  item("mnuExportBMP").trigger();
  const QString path = QString::fromStdString(save("plot.bmp"));
  item("mnuExportBMP").trigger();
  const QImage written(path);
  EXPECT_EQ(written.size(), window()->picture().size());
  EXPECT_EQ(written.convertToFormat(QImage::Format_RGB32), shown.convertToFormat(QImage::Format_RGB32));
  EXPECT_TRUE(boxes().empty());
}

TEST_F(ExportsWindowTest, ABitmapThatCannotBeSavedIsPassedOverInSilence) {
  open();
  for (const std::string& path : {std::string("/nowhere/plot.bmp"), folder_.path().string(), std::string()}) {
    dialogs_->savePath = path;
    item("mnuExportBMP").trigger();
  }
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(logged(), "");
  EXPECT_TRUE(exported().empty());
}

TEST_F(ExportsWindowTest, ABitmapOfAWindowThatHasDrawnNothingIsNotWritten) {
  FrmProfile* unseen = &open();
  unseen->picture().canvas().resize({}, 1);
  save("plot.bmp");
  item("mnuExportBMP").trigger();
  EXPECT_TRUE(exported().empty());
  EXPECT_TRUE(boxes().empty());
}

// ---- The files ----

TEST_F(ExportsWindowTest, TheHeightProfileIsThatOfTheSameState) {
  open();
  clickPlot(5);
  clickPlot(20);
  save("window.csv");
  item("mnuExportProfile").trigger();
  EXPECT_EQ(plain().lExportDataToCSV((folder_ / "plain.csv").string()), ExportOutcome::kWritten);
  EXPECT_EQ(bytes("window.csv"), bytes("plain.csv"));
  EXPECT_NE(bytes("window.csv").find("'Right Marker'"), std::string::npos);
  EXPECT_TRUE(boxes().empty()) << "nothing is said of a height profile";
}

TEST_F(ExportsWindowTest, TheExpandedViewIsExportedAsItIsShown) {
  open();
  clickPlot(5);
  clickPlot(20);
  item("mnuProfileExpand").trigger();
  save("window.csv");
  item("mnuExportProfile").trigger();
  EXPECT_EQ(plain().lExportDataToCSV((folder_ / "plain.csv").string()), ExportOutcome::kWritten);
  EXPECT_EQ(bytes("window.csv"), bytes("plain.csv"));
  item("mnuProfileExpand").trigger();
  item("mnuExportProfile").trigger();
  EXPECT_GT(bytes("window.csv").size(), bytes("plain.csv").size()) << "the whole path has more samples";
}

TEST_F(ExportsWindowTest, TheLossTableIsThatOfTheSameState) {
  open();
  save("window.csv");
  item("mnuExportPathLoss").trigger();
  EXPECT_EQ(plain().lExportITMToCSV((folder_ / "plain.csv").string()), ExportOutcome::kWritten);
  EXPECT_EQ(bytes("window.csv"), bytes("plain.csv"));
  EXPECT_NE(bytes("window.csv").find("'Reliability', 1, 2"), std::string::npos);
}

TEST_F(ExportsWindowTest, TheSignalProfileIsThatOfTheSameStateAndSaysDone) {
  open();
  answerSignalBoxes();
  save("window.csv");
  runSignalProfile();
  ASSERT_EQ(dialogs_->inputs.size(), 3U);
  EXPECT_EQ(dialogs_->inputs[0].prompt, "Enter transmit power along this path (in kiloWatts)");
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"});
  SignalRequest request;
  request.erp = 2;
  request.longleyRiceClutter = 3;
  request.pointToPointClutter = 4;
  EXPECT_EQ(plain().lExportSignalProfileToCSV((folder_ / "plain.csv").string(), request),
            ExportOutcome::kWritten);
  EXPECT_EQ(bytes("window.csv"), bytes("plain.csv"));
  EXPECT_EQ(bytes("window.csv.terrain.txt"), bytes("plain.csv.terrain.txt"));
  EXPECT_FALSE(bytes("window.csv").empty());
  EXPECT_FALSE(isExporting());
  EXPECT_EQ(logged(), "");
}

TEST_F(ExportsWindowTest, NumbersAreTheUsersAtTheMomentOfTheExport) {
  open();
  save("window.csv");
  item("mnuExportProfile").trigger();
  EXPECT_NE(bytes("window.csv").find("\r\n, 36.4, -84.35, "), std::string::npos);
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  item("mnuExportProfile").trigger();
  EXPECT_NE(bytes("window.csv").find("\r\n, 36,4, -84,35, "), std::string::npos);
}

TEST_F(ExportsWindowTest, WhatWasTypedIsExportedAndDrawnFirst) {
  open();
  save("window.csv");
  type("tbxFreq", "2400");
  item("mnuExportProfile").trigger();
  EXPECT_EQ(state().inputs.frequency, 2400.0F);
  EXPECT_EQ(plain().lExportDataToCSV((folder_ / "plain.csv").string()), ExportOutcome::kWritten);
  EXPECT_EQ(bytes("window.csv"), bytes("plain.csv"));
  const std::string written = bytes("window.csv");
  window()->drawLine();
  item("mnuExportProfile").trigger();
  EXPECT_EQ(bytes("window.csv"), written) << "the Fresnel line was that of the old frequency";
}

TEST_F(ExportsWindowTest, AnExportThatFailsIsTrappedUnderItsName) {
  open();
  answerSignalBoxes();
  dialogs_->savePath = (folder_ / "gone" / "a.csv").string();
  item("mnuExportProfile").trigger();
  item("mnuExportPathLoss").trigger();
  runSignalProfile();
  ASSERT_EQ(boxes().size(), 3U);
  EXPECT_NE(boxes()[0].find("frmProfile:lExportDataToCSV:"), std::string::npos) << boxes()[0];
  EXPECT_NE(boxes()[1].find("frmProfile:lExportITMToCSV:"), std::string::npos) << boxes()[1];
  EXPECT_NE(boxes()[2].find("frmProfile:lExportSignalProfileToCSV:"), std::string::npos) << boxes()[2];
  EXPECT_FALSE(isExporting());
  EXPECT_TRUE(item("mnuExportBMP").isEnabled());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ExportsWindowTest, ThePathLossGraphHasNoAction) {
  open();
  save("graph.csv");
  EXPECT_TRUE(item("mnuExportPathLossGraph").isEnabled());
  item("mnuExportPathLossGraph").trigger();
  EXPECT_TRUE(dialogs_->saves.empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(exported().empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(ExportsWindowTest, TheSignalGraphAsksForItsValuesAndPassesOverNoPower) {
  open();
  save("graph.png");
  item("mnuExportPathSignalGraph").trigger();
  ASSERT_GE(dialogs_->inputs.size(), 1U);
  EXPECT_EQ(dialogs_->inputs[0].prompt, "Enter transmit power along this path (in kW)");
  EXPECT_EQ(dialogs_->inputs[0].title, "Power in kW");
  EXPECT_EQ(dialogs_->inputs[0].defaultText, "0");
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(exported().empty());
}

TEST_F(ExportsWindowTest, AProfileThatCouldNotBeSampledIsNotExported) {
  open();
  set("Terrain", "Source3", (folder_ / "nothing-here").string());
  component_.refreshTerrainSources();
  window()->reload();
  dialogs_->messages.clear();
  answerSignalBoxes();
  save("a.csv");
  for (const char* name : {"mnuExportProfile", "mnuExportPathLoss", "mnuExportPathLossProfile"})
    item(name).trigger();
  EXPECT_TRUE(exported().empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(dialogs_->inputs.empty());
}

// ---- A long export ----

TEST_F(ExportsWindowTest, ProgressStandsInTheSlidersPlaceWhileItRuns) {
  open();
  answerSignalBoxes();
  save("a.csv");
  const QRect slider = control("Slider1").geometry();
  atSample(100, [&] {
    EXPECT_FALSE(control("Slider1").isVisible());
    EXPECT_FALSE(control("lblZoom").isVisible());
    EXPECT_FALSE(control("clearanceRow").isVisible());
    EXPECT_TRUE(control("progressRow").isVisible());
    EXPECT_EQ(control("progressRow").geometry(),
              QRect(0, slider.top(), window()->centralWidget()->width(), slider.height()));
    EXPECT_EQ(text("lblProgress"), "Signal profile");
    EXPECT_TRUE(control("cmdCancel").isVisible() && control("cmdCancel").isEnabled());
    EXPECT_GT(control<QProgressBar>("prgExport").maximum(), 200);
  });
  dialogs_->onMessage = [this](const MessageBoxRequest&) {
    EXPECT_EQ(control<QProgressBar>("prgExport").value(), control<QProgressBar>("prgExport").maximum());
    EXPECT_FALSE(control("cmdCancel").isEnabled()) << "there is nothing left to cancel";
  };
  runSignalProfile();
  EXPECT_TRUE(reached());
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"});
  EXPECT_TRUE(control("Slider1").isVisible() && control("lblZoom").isVisible());
  EXPECT_TRUE(control("clearanceRow").isVisible());
  EXPECT_FALSE(control("progressRow").isVisible());
  EXPECT_EQ(control("Slider1").geometry(), slider);
}

TEST_F(ExportsWindowTest, CancelLeavesTheFilesThatWereThereAndSaysNothing) {
  open();
  answerSignalBoxes();
  save("a.csv");
  test::writeBytes(folder_ / "a.csv", "old");
  atSample(50, [&] { click("cmdCancel"); });
  runSignalProfile();
  EXPECT_TRUE(reached());
  EXPECT_EQ(bytes("a.csv"), "old");
  EXPECT_EQ(exported(), std::vector<std::string>{"a.csv"});
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(logged(), "");
  EXPECT_FALSE(isExporting());
  EXPECT_TRUE(item("mnuExportPathLossProfile").isEnabled());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  runSignalProfile();
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"}) << "the next one is not cancelled";
  EXPECT_NE(bytes("a.csv"), "old");
}

TEST_F(ExportsWindowTest, EscapeCancelsFromWhereverTheKeyboardIs) {
  for (const char* focused : {"Picture1", "Slider1", "tbxFreq", "cmdExit"}) {
    SCOPED_TRACE(focused);
    open();
    clickPlot(5);
    clickPlot(20);
    item("mnuProfileExpand").trigger();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    control(focused).setFocus();
    answerSignalBoxes();
    save("a.csv");
    atSample(20, [&] { QTest::keyClick(window()->focusWidget(), Qt::Key_Escape); });
    runSignalProfile();
    EXPECT_TRUE(reached());
    EXPECT_TRUE(exported().empty());
    EXPECT_TRUE(boxes().empty());
    EXPECT_TRUE(state().expanded) << "the key was the export's";
    EXPECT_EQ(window()->focusWidget(), &control(focused)) << "and the keyboard is where it was";
    QTest::keyClick(&window()->picture(), Qt::Key_Escape);
    EXPECT_FALSE(state().expanded) << "afterwards it is the plot's again";
  }
}

TEST_F(ExportsWindowTest, ThePointerIsTheHourglassButOverTheButtonThatCancels) {
  open();
  answerSignalBoxes();
  save("a.csv");
  const auto shape = [] {
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor == nullptr ? Qt::BlankCursor : cursor->shape();
  };
  atSample(20, [&] {
    EXPECT_EQ(shape(), Qt::WaitCursor);
    QEnterEvent enter({2, 2}, {2, 2}, {2, 2});
    QCoreApplication::sendEvent(&control("cmdCancel"), &enter);
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&control("cmdCancel"), &leave);
    EXPECT_EQ(shape(), Qt::WaitCursor);
    // A drawing takes the hourglass away at its end.
    window()->drawLine();
    atSample(2, [&] {
      EXPECT_EQ(shape(), Qt::WaitCursor);
      QEnterEvent again({2, 2}, {2, 2}, {2, 2});
      QCoreApplication::sendEvent(&control("cmdCancel"), &again);
    });
  });
  runSignalProfile();
  EXPECT_TRUE(reached());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "also when it ends under the button";
}

TEST_F(ExportsWindowTest, NoOtherExportIsBegunMeanwhile) {
  open();
  answerSignalBoxes();
  save("a.csv");
  atSample(20, [&] {
    for (const char* name :
         {"mnuExportBMP", "mnuExportProfile", "mnuExportPathLoss", "mnuExportPathLossGraph",
          "mnuExportPathSignalGraph", "mnuExportPathLossProfile"})
      EXPECT_FALSE(item(name).isEnabled()) << name;
    EXPECT_TRUE(item("mnuProfileExpand").isEnabled());
    window()->lExportSignalProfileToCSV((folder_ / "b.csv").string());
    window()->lMakeGNUSignalPlot((folder_ / "b.png").string());
  });
  runSignalProfile();
  EXPECT_TRUE(reached());
  ASSERT_EQ(boxes().size(), 3U);
  EXPECT_NE(boxes()[0].find("Another export of this window is still running"), std::string::npos);
  EXPECT_NE(boxes()[0].find("Error Number: 1102"), std::string::npos);
  EXPECT_NE(boxes()[1].find("frmProfile:lMakeGNUSignalPlot:"), std::string::npos);
  EXPECT_EQ(boxes()[2], "Done");
  EXPECT_EQ(exported(), (std::vector<std::string>{"a.csv", "a.csv.terrain.txt"}));
  for (const char* name : {"mnuExportBMP", "mnuExportPathLossProfile"}) EXPECT_TRUE(item(name).isEnabled());
}

TEST_F(ExportsWindowTest, AHostsHeightProfileMeanwhileIsWritten) {
  open();
  answerSignalBoxes();
  save("a.csv");
  atSample(20, [&] { window()->lExportDataToCSV((folder_ / "b.csv").string()); });
  runSignalProfile();
  EXPECT_TRUE(reached());
  EXPECT_EQ(exported(), (std::vector<std::string>{"a.csv", "a.csv.terrain.txt", "b.csv"}));
  EXPECT_EQ(logged(), "");
}

TEST_F(ExportsWindowTest, WhatIsDoneInTheWindowMeanwhileReachesNoLineOfTheFile) {
  open();
  answerSignalBoxes();
  save("a.csv");
  runSignalProfile();
  const std::string undisturbed = bytes("a.csv");
  ASSERT_FALSE(undisturbed.empty());
  dialogs_->messages.clear();
  save("b.csv");
  atSample(20, [&] {
    clickPlot(5);
    clickPlot(20);
    item("mnuProfileExpand").trigger();
    type("tbxFreq", "2400");
    type("tbxAnt1AGL", "200");
    window()->Timer1_Timer();
    window()->resize(900, 700);
    settle();
    pointAt(12);
    item("mnuProfileLinkBudget").trigger();
    set("Settings", "DispUnits", "1");
    window()->reload();
    item("mnuEditCopyValues").trigger();
  });
  runSignalProfile();
  EXPECT_TRUE(reached());
  EXPECT_EQ(bytes("b.csv"), undisturbed);
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"});
  EXPECT_EQ(logged(), "");
  EXPECT_EQ(text("lblDist").substr(0, 4), "17.9") << "the window is in miles by now";
}

TEST_F(ExportsWindowTest, TheSettingsDialogMayBeOpenedMeanwhile) {
  open();
  answerSignalBoxes();
  save("a.csv");
  bool shown = false;
  atSample(20, [&] {
    onModal<QDialog>([&](QDialog& dialog) {
      shown = true;
      QTest::keyClick(&dialog, Qt::Key_Escape);
      if (dialog.isVisible()) dialog.reject();
    });
    item("mnuProfileOptions").trigger();
  });
  runSignalProfile();
  EXPECT_TRUE(shown);
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"}) << "Escape in the dialog is the dialog's";
}

TEST_F(ExportsWindowTest, ClosingTheWindowCancels) {
  const std::function<void()> ways[] = {
      [&] { window()->close(); },
      [&] { click("cmdExit"); },
      [&] { control_.UnloadMainForm(); },
      [&] { control_.ShowMainForm(kRidgeStart, kShortEnd); },
  };
  for (const auto& way : ways) {
    open();
    answerSignalBoxes();
    save("a.csv");
    test::writeBytes(folder_ / "a.csv", "old");
    const QPointer<FrmProfile> exporting(window());
    atSample(50, [&] {
      way();
      settle();
      EXPECT_FALSE(exporting.isNull()) << "it is not deleted under its export";
    });
    runSignalProfile();
    EXPECT_TRUE(reached());
    settle();
    EXPECT_TRUE(exporting.isNull());
    EXPECT_EQ(bytes("a.csv"), "old");
    EXPECT_EQ(exported(), std::vector<std::string>{"a.csv"});
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(logged(), "");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    control_.UnloadMainForm();
    settle();
  }
}

TEST_F(ExportsWindowTest, TheHostMayReleaseTheProfilerMeanwhile) {
  open();
  auto other = std::make_unique<ProfileControl>();
  answerSignalBoxes();
  save("a.csv");
  atSample(50, [&] {
    other.reset();
    settle();
  });
  runSignalProfile();
  EXPECT_TRUE(reached());
  settle();
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_TRUE(exported().empty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ExportsWindowTest, UnloadedUnderADialogItWritesNothing) {
  for (const char* name : {"mnuExportBMP", "mnuExportProfile", "mnuExportPathLoss",
                           "mnuExportPathLossProfile", "mnuExportPathSignalGraph"}) {
    SCOPED_TRACE(name);
    open();
    save("a.csv");
    dialogs_->onSave = [this](const SaveDialogRequest&) {
      control_.UnloadMainForm();
      settle();
    };
    item(name).trigger();
    settle();
    EXPECT_TRUE(exported().empty());
    dialogs_->onSave = nullptr;
  }
  open();
  answerSignalBoxes();
  const auto answers = dialogs_->onInput;
  dialogs_->onInput = [&](const InputBoxRequest& request) {
    control_.UnloadMainForm();
    settle();
    answers(request);
  };
  runSignalProfile();
  settle();
  EXPECT_TRUE(exported().empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(logged(), "");
}

// ---- The signal graph ----

// Over programs that do nothing: there is no result of the point-to-point program then.
class SignalGraphWindowTest : public test::ExportingTest {
 protected:
  SignalGraphWindowTest() { graphControl_.SetClientApp(component_.host().client()); }
  void SetUp() override {
    ExportingTest::SetUp();
    graphControl_.ShowMainForm(kRidgeStart, kRidgeEnd);
    settle();
    answerSignalBoxes();
    save("a.png");
  }
  ComponentServices graphServices() {
    ComponentServices all = services();
    all.programs = programs_;
    return all;
  }
  // One level for every sample.
  void answerAsTheProgram() {
    programs_->onRun = [](const ProgramCall& call) {
      std::string rows = "sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm\n";
      for (int i = 1; i <= 2000; ++i) rows += std::to_string(i) + ",1,6,0,50\n";
      test::writeBytes(call.arguments.at(1), rows);
      return ProgramOutcome{true, false, 0, {}};
    };
  }

  std::shared_ptr<test::ScriptedPrograms> programs_ = std::make_shared<test::ScriptedPrograms>();
  Component graphComponent_{graphServices()};
  ComponentSubstitute graphSubstitute_{graphComponent_};
  ProfileControl graphControl_;
};

TEST_F(SignalGraphWindowTest, AsksSixTimesWritesItsFilesAndSaysDone) {
  answerAsTheProgram();
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_EQ(dialogs_->inputs.size(), 6U) << "power, two clutters, start, end, title";
  EXPECT_EQ(boxes(), std::vector<std::string>{"Done"});
  EXPECT_EQ(exported(), (std::vector<std::string>{"a.dat", "a.plt", "a_PTP.txt"}));
  EXPECT_EQ(logged(), "");
  EXPECT_FALSE(isExporting());
  // What was entered is offered at the next.
  dialogs_->inputs.clear();
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_EQ(dialogs_->inputs.at(0).defaultText, "2");
  EXPECT_EQ(dialogs_->inputs.at(1).defaultText, "3");
  EXPECT_EQ(dialogs_->inputs.at(2).defaultText, "4");
}

TEST_F(SignalGraphWindowTest, ProgressIsSeenWhileTheOtherProgramIsWaitedFor) {
  bool seen = false;
  programs_->onRun = [&](const ProgramCall&) {
    seen = isExporting() && control("progressRow").isVisible();
    EXPECT_EQ(text("lblProgress"), "Signal graph");
    return ProgramOutcome{};
  };
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_TRUE(seen);
  EXPECT_FALSE(isExporting());
}

TEST_F(SignalGraphWindowTest, AFailureGoesToTheLogAndIntoNoBox) {
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_TRUE(boxes().empty());
  EXPECT_NE(logged().find("in procedure lMakeGNUSignalPlot of Form frmProfile"), std::string::npos);
  EXPECT_TRUE(exported().empty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  const auto* line = window()->findChild<QLabel*>(QStringLiteral("lblPointerClearance"));
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->text(), QStringLiteral("No signal graph: File not found (see the error log)"));
}

TEST_F(SignalGraphWindowTest, CancelledItLeavesNoFile) {
  answerAsTheProgram();
  atSample(20, [&] { click("cmdCancel"); });
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_TRUE(reached());
  EXPECT_TRUE(exported().empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(SignalGraphWindowTest, ClosedInItsMidstItLeavesNoFile) {
  answerAsTheProgram();
  const QPointer<FrmProfile> exporting(window());
  atSample(20, [&] {
    graphControl_.UnloadMainForm();
    settle();
  });
  item("mnuExportPathSignalGraph").trigger();
  EXPECT_TRUE(reached());
  settle();
  EXPECT_TRUE(exporting.isNull());
  EXPECT_TRUE(exported().empty());
  EXPECT_EQ(logged(), "");
}

// ---- A window of a host's own ----

class FormExportsTest : public ExportsWindowTest {
 protected:
  DispatchPtr form() {
    control_.GetPathLoss(kRidgeStart, kRidgeEnd);
    return control_.get_PForm();
  }
  static void exportTo(const DispatchPtr& form, const char* member, const AutomationValue& file) {
    form->invoke(form->dispatchId(member), Access::kMethod, {&file, 1});
  }
};

TEST_F(FormExportsTest, ExportsWithoutBeingShownWriteWhatTheWindowWrites) {
  open();
  answerSignalBoxes();
  window()->lExportDataToCSV((folder_ / "1.csv").string());
  window()->lExportITMToCSV((folder_ / "2.csv").string());
  window()->lExportSignalProfileToCSV((folder_ / "3.csv").string());
  control_.UnloadMainForm();
  settle();
  const DispatchPtr window = form();
  exportTo(window, "lExportDataToCSV", (folder_ / "f1.csv").string());
  exportTo(window, "LEXPORTITMTOCSV", (folder_ / "f2.csv").string());
  exportTo(window, "lExportSignalProfileToCSV", (folder_ / "f3.csv").string());
  for (const char* name : {"1.csv", "2.csv", "3.csv", "3.csv.terrain.txt"}) {
    EXPECT_FALSE(bytes(name).empty()) << name;
    EXPECT_EQ(bytes(name), bytes(std::string("f") + name)) << name;
  }
  EXPECT_FALSE(control_.get_PFrmLoaded());
  EXPECT_EQ(control_.get_hWnd(), 0);
  EXPECT_EQ(logged(), "");
}

TEST_F(FormExportsTest, AnEmptyNameWritesNothing) {
  const DispatchPtr window = form();
  for (const char* member :
       {"lExportDataToCSV", "lExportITMToCSV", "lExportSignalProfileToCSV", "lMakeGNUSignalPlot"})
    exportTo(window, member, std::string());
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(dialogs_->inputs.empty());
  EXPECT_EQ(logged(), "");
}

TEST_F(FormExportsTest, AnExportTakesOnePath) {
  const DispatchPtr window = form();
  for (const char* member :
       {"lExportDataToCSV", "lExportITMToCSV", "lExportSignalProfileToCSV", "lMakeGNUSignalPlot"}) {
    SCOPED_TRACE(member);
    EXPECT_THROW(window->call(member), AutomationError);
    const AutomationValue two[] = {std::string("a.csv"), std::string("b.csv")};
    EXPECT_THROW(window->invoke(window->dispatchId(member), Access::kMethod, two), AutomationError);
    EXPECT_THROW(window->get(member), AutomationError);
  }
  EXPECT_TRUE(exported().empty());
}

TEST_F(FormExportsTest, EveryMenuProcedureCanBeCalled) {
  const DispatchPtr window = form();
  window->call("Show");
  answerSignalBoxes();
  save("a.csv");
  window->call("mnuExportProfile_Click");
  EXPECT_EQ(exported(), std::vector<std::string>{"a.csv"});
  save("b.csv");
  window->call("mnuExportPathLoss_Click");
  save("c.csv");
  window->call("mnuExportPathLossProfile_Click");
  save("d.bmp");
  window->call("mnuExportBMP_Click");
  window->call("mnuExportPathLossGraph_Click");
  EXPECT_EQ(exported(), (std::vector<std::string>{"a.csv", "b.csv", "c.csv", "c.csv.terrain.txt", "d.bmp"}));
  dialogs_->savePath.reset();
  window->call("mnuExportPathSignalGraph_Click");
  EXPECT_EQ(dialogs_->saves.back().defaultExtension, ".png");
  window->call("mnuEditCopyPicture_Click");
  window->call("mnuEditCopyValues_Click");
  EXPECT_EQ(logged(), "");
}

TEST_F(FormExportsTest, WhatAHostTypesIsExportedAlsoFromAWindowThatIsNotShown) {
  const DispatchPtr window = form();
  exportTo(window, "lExportDataToCSV", (folder_ / "a.csv").string());
  window->get("tbxFreq").toObject()->let("Text", "2400");
  exportTo(window, "lExportDataToCSV", (folder_ / "b.csv").string());
  window->call("drawLine");
  exportTo(window, "lExportDataToCSV", (folder_ / "c.csv").string());
  EXPECT_NE(bytes("a.csv"), bytes("b.csv"));
  EXPECT_EQ(bytes("b.csv"), bytes("c.csv"));
}

TEST_F(FormExportsTest, ReleasedInTheMidstOfItsExportItIsCancelled) {
  open();  // whose row tells that an export runs is another window's: the form's is asked by its own events
  DispatchPtr window = form();
  answerSignalBoxes();
  QTimer::singleShot(0, qApp, [&] {
    window->call("Unload");
    settle();
  });
  exportTo(window, "lExportSignalProfileToCSV", (folder_ / "a.csv").string());
  EXPECT_TRUE(exported().empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_TRUE(control_.get_PFrmLoaded()) << "the component's own window stands";
}

}  // namespace
}  // namespace zel
