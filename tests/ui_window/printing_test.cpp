// Printing from the window: the printer dialog, the description, the page routine, and what may happen
// meanwhile. What stands on the page is the page's own tests' business.
#include "printing.h"

#include <QMenu>
#include <filesystem>

#include "canvas/recording_canvas.h"
#include "component/services/error_trap.h"
#include "ui/profile_window/frm_prt_desc.h"

namespace zel {
namespace {

class PrintingWindowTest : public test::PrintingTest {
 protected:
  void print() { item("mnuPrint").trigger(); }
  void doubleClick() {
    QWidget& surface = control("surface");
    QTest::mouseDClick(&surface, Qt::LeftButton, {}, {2, surface.height() - 2});
  }
  // Everything that a print could change in the window.
  struct Shown {
    QImage picture;
    std::vector<std::string> texts;
    bool strobe;
  };
  Shown shown() const {
    Shown all{image().copy(), {}, window()->plotView()->strobe.shown};
    for (const auto* label : window()->findChildren<QLabel*>())
      all.texts.push_back(label->text().toStdString());
    for (const auto* line : window()->findChildren<QLineEdit*>())
      all.texts.push_back(line->text().toStdString());
    return all;
  }
};

// ---- Order ----

TEST_F(PrintingWindowTest, PrintAsksForPrinterThenDescriptionAndPrintsOnePage) {
  open();
  choosePrinter();
  onDescription([this](QDialog& dialog) {
    EXPECT_EQ(printing_->choices.size(), 1U) << "the printer comes first";
    EXPECT_TRUE(prints().empty());
    QTest::keyClicks(&descriptionOf(dialog), QStringLiteral("Ridge link"));
    press(dialog, "cmdOK");
  });
  print();
  EXPECT_EQ(asked_, 1);
  ASSERT_EQ(prints().size(), 1U);
  EXPECT_EQ(prints()[0].request.file, "page.pdf");
  EXPECT_EQ(prints()[0].request.copies, 1);
  EXPECT_EQ(prints()[0].size, QSizeF(11906, 16838));
  EXPECT_EQ(storedDescription(), "Ridge link");
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(logged(), "");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PrintingWindowTest, PendingEventsRunBetweenThePrinterDialogAndThePage) {
  open();
  choosePrinter();
  describe();
  bool ran = false;
  printing_->onChoose = [&ran, this](PageOrientation) {
    QMetaObject::invokeMethod(
        window(), [&ran] { ran = true; }, Qt::QueuedConnection);
  };
  printing_->onPrint = [&ran](const PrintRequest&, const PrintedPage&, const PrintedDocument&) {
    EXPECT_TRUE(ran);
  };
  print();
  EXPECT_EQ(prints().size(), 1U);
}

TEST_F(PrintingWindowTest, CopiesAndOrientationAreThoseOfTheDialog) {
  open();
  describe();
  choosePrinter(PageOrientation::kLandscape, 3);
  print();
  ASSERT_EQ(prints().size(), 1U) << "the copies are the printer's business";
  EXPECT_EQ(prints()[0].request.copies, 3);
  EXPECT_EQ(orientationOf(prints()[0].request.paper), PageOrientation::kLandscape);
  EXPECT_EQ(prints()[0].size, QSizeF(16838, 11906));
}

TEST_F(PrintingWindowTest, TheDialogBeginsUprightUnlessTheHostWantsItAcross) {
  open();
  print();
  control_.let_PrintLandscape(true);
  print();
  control_.let_PrintLandscape(false);
  print();
  EXPECT_EQ(printing_->choices,
            (std::vector<PageOrientation>{PageOrientation::kPortrait, PageOrientation::kLandscape,
                                          PageOrientation::kPortrait}));
}

TEST_F(PrintingWindowTest, TheDocumentNamesThePathAndTheHost) {
  control_.SetClientApp(makePropertyBag({{"Title", "Host Planner"},
                                         {"Path", folder_.path().string()},
                                         {"ProductName", "Planner"},
                                         {"Major", "2"},
                                         {"Minor", "7"},
                                         {"Revision", "1"}}));
  open();
  describe();
  choosePrinter();
  print();
  ASSERT_EQ(prints().size(), 1U);
  EXPECT_EQ(prints()[0].document.title.rfind("Terrain Profile", 0), 0U) << prints()[0].document.title;
  EXPECT_EQ(prints()[0].document.creator, "Planner 2.7.1");
}

// ---- Cancelling ----

TEST_F(PrintingWindowTest, ACancelledPrinterDialogPrintsNothingAndAsksNothing) {
  open();
  set("Profile", "PrintDescription", "as before");
  print();
  EXPECT_EQ(printing_->choices.size(), 1U);
  EXPECT_EQ(asked_, 0);
  EXPECT_TRUE(prints().empty());
  EXPECT_EQ(storedDescription(), "as before");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintingWindowTest, EscapeInTheDescriptionPrintsNothingAndStoresNothing) {
  open();
  set("Profile", "PrintDescription", "as before");
  choosePrinter();
  onDescription([](QDialog& dialog) {
    QTest::keyClicks(&descriptionOf(dialog), QStringLiteral("other"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  print();
  onDescription([](QDialog& dialog) { dialog.close(); });
  print();
  EXPECT_EQ(asked_, 2);
  EXPECT_TRUE(prints().empty());
  EXPECT_EQ(storedDescription(), "as before");
  EXPECT_TRUE(boxes().empty());
}

// ---- Description ----

TEST_F(PrintingWindowTest, TheLastDescriptionIsOfferedAgainSelectedWhole) {
  open();
  choosePrinter();
  set("Profile", "PrintDescription", "Site 12");
  onDescription([](QDialog& dialog) {
    EXPECT_EQ(descriptionOf(dialog).text(), QStringLiteral("Site 12"));
    EXPECT_EQ(descriptionOf(dialog).selectedText(), QStringLiteral("Site 12"));
    EXPECT_TRUE(descriptionOf(dialog).hasFocus());
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  print();
  EXPECT_EQ(prints().size(), 1U) << "Enter is OK";
  EXPECT_EQ(storedDescription(), "Site 12");
}

TEST_F(PrintingWindowTest, NonePrintsWithoutADescriptionAndStoresTheEmptyText) {
  open();
  choosePrinter();
  set("Profile", "PrintDescription", "Site 12");
  onDescription([](QDialog& dialog) { press(dialog, "cmdNone"); });
  print();
  EXPECT_EQ(storedDescription(), "");
  describe();
  print();
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_EQ(withoutDate(prints()[0].image), withoutDate(prints()[1].image)) << "as with an empty one";
}

TEST_F(PrintingWindowTest, TheHostsDescriptionIsPrintedWithoutAskingAndNotStored) {
  open();
  choosePrinter();
  set("Profile", "PrintDescription", "as before");
  describe("From the host");
  print();
  describe("");
  print();
  EXPECT_EQ(asked_, 0);
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_NE(withoutDate(prints()[0].image), withoutDate(prints()[1].image));
  EXPECT_EQ(storedDescription(), "as before");
}

TEST_F(PrintingWindowTest, ADescriptionThatIsPassedGoesBeforeTheHosts) {
  FrmProfile& window = open();
  describe("From the host");
  choosePrinter();
  EXPECT_TRUE(window.PrintProfile(*printing_->answer, "passed"));
  EXPECT_TRUE(window.PrintProfile(*printing_->answer, ""));
  EXPECT_TRUE(window.PrintProfile(*printing_->answer));
  ASSERT_EQ(prints().size(), 3U);
  EXPECT_NE(withoutDate(prints()[0].image), withoutDate(prints()[1].image));
  EXPECT_NE(withoutDate(prints()[1].image), withoutDate(prints()[2].image));
  EXPECT_EQ(storedDescription(), "none");
}

TEST_F(PrintingWindowTest, TheDescriptionDialogHasItsTextsAndButtons) {
  open();
  choosePrinter();
  onDescription([](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Print Description"));
    EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("lblPrompt"))->text(),
              QStringLiteral("What description would you like on this printout? Click None to have no "
                             "description printed."));
    const auto* ok = dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"));
    const auto* none = dialog.findChild<QPushButton*>(QStringLiteral("cmdNone"));
    EXPECT_EQ(ok->accessibleName(), QStringLiteral("OK"));
    EXPECT_TRUE(ok->isDefault());
    EXPECT_EQ(none->accessibleName(), QStringLiteral("None"));
    for (const QWidget* control : std::initializer_list<const QWidget*>{ok, none, &descriptionOf(dialog)})
      EXPECT_FALSE(control->toolTip().isEmpty() || control->accessibleName().isEmpty());
    EXPECT_EQ(descriptionOf(dialog).nextInFocusChain(), ok);
    EXPECT_EQ(descriptionOf(dialog).maxLength(), kLongestDescription);
    // Nothing is cut off in the smallest size that it can be given.
    dialog.resize(1, 1);
    for (const auto* control : dialog.findChildren<QWidget*>()) {
      EXPECT_TRUE(dialog.rect().contains(control->geometry())) << control->objectName().toStdString();
      EXPECT_GE(control->height(), control->minimumSizeHint().height())
          << control->objectName().toStdString();
    }
    press(dialog, "cmdOK");
  });
  print();
}

TEST_F(PrintingWindowTest, AStoredDescriptionThatIsLongerThanCanBeTypedIsOfferedWhole) {
  open();
  const std::string longText(kLongestDescription + 50, 'x');
  set("Profile", "PrintDescription", longText);
  choosePrinter();
  onDescription([](QDialog& dialog) { press(dialog, "cmdOK"); });
  print();
  EXPECT_EQ(storedDescription(), longText);
  EXPECT_EQ(prints().size(), 1U);
}

TEST_F(PrintingWindowTest, TheDescriptionDialogComesUpWhereItWas) {
  open();
  choosePrinter();
  onDescription([](QDialog& dialog) {
    dialog.move(123, 87);
    press(dialog, "cmdNone");
  });
  print();
  onDescription([](QDialog& dialog) {
    EXPECT_EQ(dialog.pos(), QPoint(123, 87));
    press(dialog, "cmdNone");
  });
  print();
  EXPECT_EQ(asked_, 2);
}

// ---- Double click ----

TEST_F(PrintingWindowTest, ADoubleClickPrintsOnYes) {
  open();
  choosePrinter();
  describe();
  dialogs_->answer = MessageAnswer::kYes;
  doubleClick();
  EXPECT_EQ(boxes(), std::vector<std::string>{"Print Profile?"});
  EXPECT_EQ(printing_->choices.size(), 1U);
  EXPECT_EQ(prints().size(), 1U);
}

TEST_F(PrintingWindowTest, ADoubleClickPrintsNothingOnNo) {
  open();
  choosePrinter();
  describe();
  dialogs_->answer = MessageAnswer::kNo;
  doubleClick();
  EXPECT_EQ(boxes(), std::vector<std::string>{"Print Profile?"});
  EXPECT_TRUE(printing_->choices.empty());
  EXPECT_TRUE(prints().empty());
}

// ---- What is printed ----

TEST_F(PrintingWindowTest, WhatWasTypedIsTakenFirst) {
  open();
  describe();
  choosePrinter();
  const std::string loss = text("lblFSLoss");
  type("tbxFreq", "2400");
  ASSERT_EQ(text("lblFSLoss"), loss) << "not drawn yet";
  print();
  EXPECT_EQ(state().inputs.frequency, 2400.0F);
  EXPECT_NE(text("lblFSLoss"), loss);
  ASSERT_EQ(prints().size(), 1U);
  print();
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_EQ(withoutDate(prints()[0].image), withoutDate(prints()[1].image)) << "plot and texts were complete";
}

TEST_F(PrintingWindowTest, TheExpandedViewIsPrintedExpanded) {
  open();
  describe();
  choosePrinter();
  clickPlot(5);
  clickPlot(20);
  print();
  item("mnuProfileExpand").trigger();
  print();
  EXPECT_TRUE(state().expanded);
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_NE(withoutDate(prints()[0].image), withoutDate(prints()[1].image));
}

TEST_F(PrintingWindowTest, AnExpandedViewWhoseMarkersCameTooNearIsLeftBeforeThePage) {
  open();
  describe();
  choosePrinter();
  clickPlot(8);
  clickPlot(15);
  item("mnuProfileExpand").trigger();
  click("cmdClear2");
  window()->Picture1_MouseDown(state().leftMarker.x + 0.05F, 0);
  ASSERT_TRUE(state().expanded);
  print();
  EXPECT_FALSE(state().expanded);
  print();
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_EQ(withoutDate(prints()[0].image), withoutDate(prints()[1].image))
      << "the header did not say expanded over a plot of the whole path";
}

TEST_F(PrintingWindowTest, ThePlotOnThePageHasTheScaleOfTheWindows) {
  FrmProfile& window = open();
  control<QSlider>("Slider1").setValue(250);
  RecordingCanvas box;
  EXPECT_TRUE(window.PrintLine(box));
  const PlotScale& scale = window.plotView()->scale;
  EXPECT_EQ(box.state().scale, (CanvasScale{scale.left, scale.top, scale.right, scale.bottom}));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PrintingWindowTest, ThePlotOfTheWindowStaysAsItIs) {
  open();
  clickPlot(5);
  clickPlot(20);
  pointAt(12);
  for (const bool expanded : {false, true}) {
    if (expanded) item("mnuProfileExpand").trigger();
    const Shown before = shown();
    describe();
    choosePrinter();
    print();
    const Shown after = shown();
    EXPECT_EQ(after.picture, before.picture);
    EXPECT_EQ(after.texts, before.texts);
    EXPECT_EQ(after.strobe, before.strobe);
    EXPECT_EQ(state().expanded, expanded);
    EXPECT_TRUE(state().leftMarker.shown && state().rightMarker.shown);
  }
  EXPECT_EQ(prints().size(), 2U);
  pointAt(13);
  item("mnuProfileExpand").trigger();
  click("cmdClear1");
  click("cmdClear2");
  pointAt(12);
  const QImage left = picture();
  window()->drawLine();
  pointAt(12);
  EXPECT_EQ(left, picture()) << "its strokes are still its own";
}

TEST_F(PrintingWindowTest, TheHourglassIsShownWhileThePageIsMadeAndSent) {
  open();
  describe();
  choosePrinter();
  bool seen = false;
  printing_->onPrint = [&seen](const PrintRequest&, const PrintedPage&, const PrintedDocument&) {
    seen = QApplication::overrideCursor() != nullptr;
  };
  print();
  EXPECT_TRUE(seen);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

// ---- Nothing to print ----

TEST_F(PrintingWindowTest, TheItemsWaitForAProfile) {
  open();
  EXPECT_TRUE(item("mnuPrint").isEnabled());
  EXPECT_TRUE(item("mnuPrintPreview").isEnabled());
  EXPECT_EQ(item("mnuPrint").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));
  EXPECT_EQ(item("mnuPrintPreview").shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
  window()->Form_Load();
  EXPECT_FALSE(item("mnuPrint").isEnabled()) << "nothing has been sampled yet";
  EXPECT_FALSE(item("mnuPrintPreview").isEnabled());
  window()->drawLine();
  EXPECT_TRUE(item("mnuPrint").isEnabled());
}

TEST_F(PrintingWindowTest, WithoutPrintingTheItemsAreOffAndADoubleClickAsksNothing) {
  ComponentServices bare = services();
  bare.printing = nullptr;
  Component component(bare);
  const ComponentSubstitute substitute(component);
  ProfileControl control;
  control.SetClientApp(makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
  control.ShowMainForm(test::kRidgeStart, test::kRidgeEnd);
  settle();
  EXPECT_FALSE(item("mnuPrint").isEnabled());
  EXPECT_FALSE(item("mnuPrintPreview").isEnabled());
  doubleClick();
  EXPECT_TRUE(boxes().empty());
  EXPECT_FALSE(window()->PrintProfile({}, ""));
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: There is no way to print here", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("Error Number: 482"), std::string::npos) << boxes()[0];
  control.UnloadMainForm();
  settle();
}

TEST_F(PrintingWindowTest, AnEmptyBoxIsToldAndPrintsNothing) {
  open();
  describe();
  choosePrinter();
  for (const char* name : {"tbxAnt1AGL", "tbxAnt2AGL", "tbxFreq"}) {
    const QString before = box(name).text();
    dialogs_->messages.clear();
    box(name).clear();
    print();
    ASSERT_EQ(boxes().size(), 1U) << name;
    EXPECT_EQ(
        boxes()[0].rfind("Printing Error: The box of an antenna height or of the frequency is empty", 0), 0U)
        << boxes()[0];
    EXPECT_NE(boxes()[0].find("frmProfile:mnuPrint_Click:0"), std::string::npos) << boxes()[0];
    EXPECT_NE(boxes()[0].find("Error Number: 1103"), std::string::npos) << boxes()[0];
    box(name).setText(before);
  }
  EXPECT_TRUE(printing_->choices.empty()) << "no printer is asked for in vain";
  EXPECT_TRUE(prints().empty());
}

TEST_F(PrintingWindowTest, AFailedSamplingGivesTheWindowsBoxAndNoPage) {
  FrmProfile& window = open();
  describe();
  choosePrinter();
  window.Form_Load();
  std::filesystem::create_directory(folder_ / "empty");
  set("Terrain", "Source3", (folder_ / "empty").string());
  component_.refreshTerrainSources();
  EXPECT_FALSE(window.PrintProfile(*printing_->answer));
  ASSERT_EQ(boxes().size(), 1U) << "told once";
  EXPECT_EQ(boxes()[0].find("Printing Error"), std::string::npos) << boxes()[0];
  EXPECT_TRUE(component_.state().bProfileFailed);
  EXPECT_TRUE(prints().empty());
  EXPECT_FALSE(window.PrintProfile(*printing_->answer));
  ASSERT_EQ(boxes().size(), 2U);
  EXPECT_EQ(boxes()[1].rfind("Printing Error: There is no profile to print", 0), 0U) << boxes()[1];
  EXPECT_TRUE(prints().empty());
}

// ---- Failures ----

TEST_F(PrintingWindowTest, APrinterThatFailsIsTrappedAsAPrintingError) {
  open();
  describe();
  choosePrinter();
  printing_->printFailure = RuntimeError::diskFull();
  print();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: Disk full\r\n", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("frmProfile:PrintProfile:7"), std::string::npos) << boxes()[0];
  EXPECT_NE(boxes()[0].find("Error Number: 61"), std::string::npos) << boxes()[0];
  EXPECT_NE(logged().find("Printing Error: Disk full"), std::string::npos);
  EXPECT_FALSE(component_.state().bProfileFailed) << "the profile is not to blame";
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_TRUE(item("mnuPrint").isEnabled());
}

TEST_F(PrintingWindowTest, AFailureOfThePlotOnThePagePrintsNothingAndSetsTheFlag) {
  open();
  describe();
  choosePrinter();
  const Shown before = shown();
  printing_->onChoose = [this](PageOrientation) { set("Colors", "cFresnel", "99999999999"); };
  print();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_NE(boxes()[0].find("frmProfile:PrintFresnel1:"), std::string::npos) << boxes()[0];
  EXPECT_TRUE(component_.state().bProfileFailed);
  EXPECT_TRUE(prints().empty());
  EXPECT_EQ(shown().picture, before.picture);
  set("Colors", "cFresnel", "255");
  printing_->onChoose = nullptr;
  print();
  EXPECT_EQ(prints().size(), 1U) << "corrected, it prints";
}

TEST_F(PrintingWindowTest, ADescriptionThatCannotBeReadIsToldAndPrintsNothing) {
  open();
  choosePrinter();
  auto host = callingHost();
  printing_->onChoose = [&host](PageOrientation) {
    host->onAsked = [] { throw RuntimeError::permissionDenied(); };
  };
  print();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_NE(boxes()[0].find("frmPrtDesc:Form_Load:0"), std::string::npos) << boxes()[0];
  EXPECT_EQ(asked_, 0);
  EXPECT_TRUE(prints().empty());
}

TEST_F(PrintingWindowTest, ADescriptionThatCannotBeStoredIsToldAndPrintedAllTheSame) {
  open();
  choosePrinter();
  auto host = callingHost();
  onDescription([&host](QDialog& dialog) {
    QObject::connect(&dialog, &QObject::destroyed, qApp,
                     [&host] { host->onAsked = [] { throw RuntimeError::permissionDenied(); }; });
    press(dialog, "cmdOK");
  });
  print();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: Permission denied", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("frmProfile:PrintProfile:1"), std::string::npos) << boxes()[0];
  EXPECT_EQ(prints().size(), 1U);
}

TEST_F(PrintingWindowTest, APrinterDialogThatFailsIsTrapped) {
  open();
  printing_->onChoose = [](PageOrientation) { throw RuntimeError(483, "Printer error"); };
  print();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: Printer error", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("frmProfile:mnuPrint_Click:1"), std::string::npos) << boxes()[0];
}

// ---- The window goes ----

TEST_F(PrintingWindowTest, AWindowThatIsUnloadedUnderThePrinterDialogPrintsNothing) {
  open();
  choosePrinter();
  describe();
  printing_->onChoose = [this](PageOrientation) { control_.UnloadMainForm(); };
  print();
  settle();
  EXPECT_TRUE(prints().empty());
  EXPECT_TRUE(boxes().empty());
  EXPECT_FALSE(control_.get_PFrmLoaded());
}

TEST_F(PrintingWindowTest, AWindowThatIsUnloadedInThePendingEventsPrintsNothing) {
  open();
  choosePrinter();
  describe();
  printing_->onChoose = [this](PageOrientation) {
    QMetaObject::invokeMethod(
        qApp, [this] { control_.UnloadMainForm(); }, Qt::QueuedConnection);
  };
  print();
  settle();
  EXPECT_TRUE(prints().empty());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintingWindowTest, TheDescriptionDialogGoesWithItsWindow) {
  open();
  choosePrinter();
  onDescription([this](QDialog& dialog) {
    control_.UnloadMainForm();
    EXPECT_FALSE(dialog.isVisible());
  });
  print();
  settle();
  EXPECT_EQ(asked_, 1);
  EXPECT_TRUE(prints().empty());
  EXPECT_EQ(storedDescription(), "none");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintingWindowTest, AWindowThatIsUnloadedUnderTheQuestionOfTheDoubleClickPrintsNothing) {
  open();
  choosePrinter();
  describe();
  dialogs_->onMessage = [this](const MessageBoxRequest&) { control_.UnloadMainForm(); };
  doubleClick();
  settle();
  EXPECT_TRUE(printing_->choices.empty());
  EXPECT_TRUE(prints().empty());
}

TEST_F(PrintingWindowTest, AWindowThatIsUnloadedUnderTheBoxOfAFailedPlotPrintsNothing) {
  open();
  describe();
  choosePrinter();
  printing_->onChoose = [this](PageOrientation) { set("Colors", "cFresnel", "99999999999"); };
  dialogs_->onMessage = [this](const MessageBoxRequest&) { control_.UnloadMainForm(); };
  print();
  settle();
  EXPECT_TRUE(prints().empty());
  EXPECT_EQ(boxes().size(), 1U);
  EXPECT_FALSE(component_.state().bProfileFailed);
}

TEST_F(PrintingWindowTest, ADescriptionThatWasCutIsToldOnceThePageIsPrinted) {
  open();
  std::string text;
  for (int i = 0; i < 1400; ++i) text += "word ";
  describe(text);
  choosePrinter(PageOrientation::kLandscape);
  dialogs_->onMessage = [this](const MessageBoxRequest&) {
    EXPECT_EQ(prints().size(), 1U);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  };
  print();
  ASSERT_EQ(dialogs_->messages.size(), 1U);
  EXPECT_EQ(dialogs_->messages[0].text, "The description had no room on the page; it ends in an ellipsis.");
  EXPECT_EQ(dialogs_->messages[0].title, "");
  EXPECT_EQ(dialogs_->messages[0].icon, MessageIcon::kInformation);
  EXPECT_EQ(dialogs_->messages[0].buttons, MessageButtons::kOk);
  describe("word");
  print();
  EXPECT_EQ(prints().size(), 2U);
  EXPECT_EQ(dialogs_->messages.size(), 1U) << "what has its room is not told of";
}

// ---- A host's own window ----

TEST_F(PrintingWindowTest, AHostsWindowPrintsWithoutTheDialog) {
  open();
  const DispatchPtr form = control_.get_PForm();
  EXPECT_EQ(form->call("PrintProfile", {"", 2, 2, "From a script"}), AutomationValue(true));
  ASSERT_EQ(prints().size(), 1U);
  EXPECT_EQ(prints()[0].request.copies, 2);
  EXPECT_EQ(orientationOf(prints()[0].request.paper), PageOrientation::kLandscape);
  form->call("PrintProfile", {"out.pdf", 1, 1, ""});
  ASSERT_EQ(prints().size(), 2U);
  EXPECT_EQ(prints()[1].request.file, "out.pdf");
  describe("Of the host");
  form->call("PrintProfile", {"Office", 1, 1});
  ASSERT_EQ(prints().size(), 3U) << "what the host has set since the window was made is not asked for";
  EXPECT_EQ(printing_->requests, (std::vector<std::string>{"", "out.pdf", "Office"}));
  EXPECT_EQ(storedDescription(), "none");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintingWindowTest, AHostsWindowRefusesWrongArguments) {
  open();
  const DispatchPtr form = control_.get_PForm();
  EXPECT_THROW(form->call("PrintProfile", {}), AutomationError);
  EXPECT_THROW(form->call("PrintProfile", {"", 1}), AutomationError);
  EXPECT_THROW(form->call("PrintProfile", {"", "two", 1}), AutomationError);
  EXPECT_EQ(form->call("PrintProfile", {"", 1, 3, ""}), AutomationValue(false));
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: The orientation is neither", 0), 0U) << boxes()[0];
  printing_->requestFailure = RuntimeError(PrintService::kNoSuchPrinter, "No printer");
  form->call("PrintProfile", {"gone", 1, 1, ""});
  ASSERT_EQ(boxes().size(), 2U);
  EXPECT_NE(boxes()[1].find("Error Number: 482"), std::string::npos) << boxes()[1];
  EXPECT_TRUE(prints().empty());
}

// ---- During an export ----

TEST_F(PrintingWindowTest, ALongExportDoesNotHoldPrintingUp) {
  open();
  describe();
  choosePrinter();
  dialogs_->savePath = (folder_ / "signal.csv").string();
  dialogs_->onInput = [this](const InputBoxRequest&) { dialogs_->inputAnswer = "2"; };
  item("mnuExportPathLossProfile").trigger();
  const std::string alone = test::fileBytes(folder_ / "signal.csv");
  int printed = 0;
  QTimer timer;
  timer.callOnTimeout([&] {
    if (control("progressRow").isHidden() || printed > 0) return;
    ++printed;
    EXPECT_TRUE(item("mnuPrint").isEnabled());
    print();
  });
  timer.start(0);
  item("mnuExportPathLossProfile").trigger();
  EXPECT_EQ(printed, 1);
  EXPECT_EQ(prints().size(), 1U);
  EXPECT_FALSE(alone.empty());
  EXPECT_EQ(test::fileBytes(folder_ / "signal.csv"), alone);
}

}  // namespace
}  // namespace zel
