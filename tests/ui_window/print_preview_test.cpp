// The preview: the page as it will be printed, redrawn at every choice, and the ways out of it.
#include "ui/profile_window/print_preview.h"

#include <QComboBox>
#include <QWheelEvent>

#include "printing.h"
#include "ui/profile_window/page_view.h"

namespace zel {
namespace {

class PrintPreviewTest : public test::PrintingTest {
 protected:
  // Opens the preview and works it; it is closed afterwards.
  void preview(std::function<void()> body) {
    onModal<QDialog>([this, body = std::move(body)](QDialog& dialog) {
      EXPECT_EQ(dialog.objectName(), QStringLiteral("printPreview"));
      ++shown_;
      dialog_ = &dialog;
      settle();
      body();
      if (!dialog_.isNull() && dialog_->isVisible()) dialog_->reject();
    });
    item("mnuPrintPreview").trigger();
  }
  template <typename Control>
  Control& part(const char* name) const {
    return *dialog_->findChild<Control*>(QLatin1String(name));
  }
  PageView& view() const { return static_cast<PrintPreview&>(*dialog_).view(); }
  void choose(const char* list, int index) const {
    auto& box = part<QComboBox>(list);
    box.setCurrentIndex(index);
    box.activated(index);
  }
  void typeOn(const char* text) const {
    auto& line = part<QLineEdit>("txtDescription");
    QTest::keyClick(&line, Qt::Key_End);
    QTest::keyClicks(&line, QLatin1String(text));
  }
  QImage page() const { return test::imageOfPage(*view().page(), 72); }
  void pressIn(const char* button) const { test::PrintingTest::press(*dialog_, button); }
  std::string status() const { return part<QLabel>("lblStatus").text().toStdString(); }

  QPointer<QDialog> dialog_;
  int shown_ = 0;
};

TEST_F(PrintPreviewTest, ItShowsThePageThatIsPrinted) {
  open();
  clickPlot(5);
  describe("Ridge link");
  choosePrinter();
  QImage seen;
  preview([&] {
    EXPECT_EQ(dialog_->windowTitle(), QStringLiteral("Print Preview"));
    EXPECT_EQ(view().page()->size(), QSizeF(11906, 16838));
    EXPECT_TRUE(view().isFitted());
    EXPECT_EQ(part<QLineEdit>("txtDescription").text(), QStringLiteral("Ridge link"));
    seen = page();
  });
  EXPECT_EQ(shown_, 1);
  item("mnuPrint").trigger();
  ASSERT_EQ(prints().size(), 1U);
  EXPECT_EQ(withoutDate(seen), withoutDate(prints()[0].image));
  EXPECT_TRUE(boxes().empty());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PrintPreviewTest, OrientationAndPaperRedrawAtOnce) {
  open();
  describe();
  preview([&] {
    EXPECT_EQ(part<QComboBox>("cboPaper").currentText(), QStringLiteral("A4"));
    choose("cboOrientation", 1);
    EXPECT_EQ(view().page()->size(), QSizeF(16838, 11906));
    choose("cboPaper", 1);
    EXPECT_EQ(part<QComboBox>("cboPaper").currentText(), QStringLiteral("Letter"));
    EXPECT_EQ(view().page()->size(), QSizeF(15840, 12240));
    choose("cboOrientation", 0);
    EXPECT_EQ(view().page()->size(), QSizeF(12240, 15840));
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, ThePrintersOwnPaperIsOfferedAndComesFirstToMind) {
  open();
  describe();
  printing_->sheet = {"Legal", 12240, 20160, {360, 360, 360, 360}};
  preview([&] {
    EXPECT_EQ(part<QComboBox>("cboPaper").currentText(), QStringLiteral("Legal"));
    EXPECT_EQ(part<QComboBox>("cboPaper").count(), 3);
    EXPECT_EQ(view().page()->size(), QSizeF(12240, 20160));
  });
  // Of a usual size it stands for the usual one.
  printing_->sheet = {"Letter 8.5 x 11 in", 12240, 15840, {360, 360, 360, 360}};
  preview([&] {
    EXPECT_EQ(part<QComboBox>("cboPaper").currentText(), QStringLiteral("Letter"));
    EXPECT_EQ(part<QComboBox>("cboPaper").count(), 2);
  });
  EXPECT_EQ(shown_, 2);
}

TEST_F(PrintPreviewTest, ItBeginsAcrossWhenTheHostWantsIt) {
  open();
  describe();
  control_.let_PrintLandscape(true);
  preview([&] { EXPECT_EQ(view().page()->size(), QSizeF(16838, 11906)); });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, TheDescriptionIsRedrawnAsOneTypesAndStoredOnlyWhenPrinted) {
  open();
  set("Profile", "PrintDescription", "Site 12");
  preview([&] {
    EXPECT_EQ(part<QLineEdit>("txtDescription").text(), QStringLiteral("Site 12"));
    const QImage before = page();
    typeOn(" north");
    EXPECT_NE(withoutDate(page()), withoutDate(before));
  });
  EXPECT_EQ(storedDescription(), "Site 12") << "closed without printing";
  choosePrinter();
  preview([&] {
    typeOn(" south");
    pressIn("cmdPrint");
    EXPECT_EQ(status(), "Printed.");
    EXPECT_TRUE(dialog_->isVisible());
  });
  EXPECT_EQ(storedDescription(), "Site 12 south");
  EXPECT_EQ(prints().size(), 1U);
  EXPECT_EQ(asked_, 0) << "frmPrtDesc asks nothing that the preview has";
}

TEST_F(PrintPreviewTest, TheHostsDescriptionIsStoredOnlyWhenItWasChanged) {
  open();
  set("Profile", "PrintDescription", "mine");
  describe("the host's");
  choosePrinter();
  preview([&] { pressIn("cmdPrint"); });
  EXPECT_EQ(storedDescription(), "mine");
  preview([&] {
    typeOn(", changed");
    pressIn("cmdPrint");
  });
  EXPECT_EQ(storedDescription(), "the host's, changed");
  EXPECT_EQ(prints().size(), 2U);
}

TEST_F(PrintPreviewTest, PrintBeginsWithTheOrientationAndThePaperThatAreShown) {
  open();
  describe();
  preview([&] {
    choose("cboOrientation", 1);
    pressIn("cmdPrint");
    EXPECT_EQ(status(), "") << "cancelled";
    choose("cboPaper", 1);
    pressIn("cmdPrint");
  });
  item("mnuPrint").trigger();
  EXPECT_EQ(printing_->choices,
            (std::vector<PageOrientation>{PageOrientation::kLandscape, PageOrientation::kLandscape,
                                          PageOrientation::kPortrait}));
  EXPECT_EQ(printing_->papersOfChoices, (std::vector<std::string>{"A4", "Letter", ""}))
      << "the window itself leaves the paper to the dialog";
  EXPECT_TRUE(prints().empty());
}

TEST_F(PrintPreviewTest, SaveAsPdfWritesThePaperThatIsShown) {
  open();
  describe("x");
  preview([&] {
    choose("cboPaper", 1);
    pressIn("cmdSavePdf");
    EXPECT_EQ(status(), "") << "cancelled";
    EXPECT_TRUE(prints().empty());
    dialogs_->savePath = (folder_ / "page.pdf").string();
    pressIn("cmdSavePdf");
    EXPECT_EQ(status(), "Saved as page.pdf");
  });
  ASSERT_EQ(prints().size(), 1U);
  EXPECT_EQ(prints()[0].request.file, (folder_ / "page.pdf").string());
  EXPECT_EQ(prints()[0].request.printer, "");
  EXPECT_EQ(prints()[0].request.copies, 1);
  EXPECT_EQ(prints()[0].size, QSizeF(12240, 15840));
  EXPECT_TRUE(printing_->choices.empty());
  ASSERT_EQ(dialogs_->saves.size(), 2U);
  EXPECT_EQ(dialogs_->saves[0].defaultExtension, ".pdf");
  EXPECT_EQ(dialogs_->saves[0].filter, "PDF Document (*.pdf)|*.pdf");
  EXPECT_TRUE(dialogs_->saves[0].overwritePrompt);
}

TEST_F(PrintPreviewTest, AFileThatCannotBeWrittenIsToldAndThePreviewStays) {
  open();
  describe("x");
  dialogs_->savePath = (folder_ / "page.pdf").string();
  printing_->printFailure = RuntimeError::permissionDenied();
  preview([&] {
    pressIn("cmdSavePdf");
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_EQ(status(), "");
  });
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: Permission denied", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("frmProfile:PrintProfile:7"), std::string::npos) << boxes()[0];
}

TEST_F(PrintPreviewTest, APageThatCannotBeDrawnIsToldOnceHoweverMuchIsTyped) {
  open();
  describe();
  preview([&] {
    set("Colors", "cFresnel", "99999999999");
    typeOn("abc");
    EXPECT_EQ(boxes().size(), 1U);
    EXPECT_EQ(status(), "The page could not be drawn; choose a paper to try again.");
    set("Colors", "cFresnel", "255");
    choose("cboPaper", 1);
    EXPECT_EQ(status(), "");
    EXPECT_TRUE(view().hasPage());
  });
  EXPECT_EQ(boxes().size(), 1U);
}

TEST_F(PrintPreviewTest, ADescriptionWithoutRoomIsSaidToBeCut) {
  open();
  describe();
  preview([&] {
    EXPECT_EQ(status(), "");
    part<QLineEdit>("txtDescription").setText(QStringLiteral("word ").repeated(780));
    choose("cboOrientation", 1);
    EXPECT_EQ(status(), "The description has no room on the page and is cut.");
    part<QLineEdit>("txtDescription").setText(QStringLiteral("word"));
    EXPECT_EQ(status(), "");
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, KeysAndWheelZoom) {
  open();
  describe();
  preview([&] {
    const double fitted = view().zoom();
    const QRectF sheet = view().sheetRectangle();
    EXPECT_TRUE(QRectF(view().viewport()->rect()).contains(sheet)) << "all of it is seen";
    QWidget& focus = part<QLineEdit>("txtDescription");
    QTest::keyClick(&focus, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), 1.0);
    EXPECT_NEAR(view().sheetRectangle().width(), 11906 / 1440.0 * view().logicalDpiX(), 0.01);
    EXPECT_EQ(part<QLabel>("lblZoomValue").text(), QStringLiteral("100 %"));
    EXPECT_FALSE(view().isFitted());
    QTest::keyClick(&focus, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), 1.25);
    QTest::keyClick(&focus, Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), 1.0);
    QTest::keyClick(&focus, Qt::Key_9, Qt::ControlModifier);
    EXPECT_EQ(view().zoom(), fitted);
    EXPECT_TRUE(view().isFitted());

    const QPointF at(view().viewport()->rect().center());
    QWheelEvent wheel(at, view().viewport()->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view().viewport(), &wheel);
    EXPECT_NEAR(view().zoom(), fitted * 1.25, 1e-9);
    for (int i = 0; i < 40; ++i) pressIn("cmdZoomIn");
    EXPECT_EQ(view().zoom(), PageView::kLargest);
    for (int i = 0; i < 40; ++i) pressIn("cmdZoomOut");
    EXPECT_EQ(view().zoom(), PageView::kSmallest);
    pressIn("cmdActualSize");
    EXPECT_EQ(view().zoom(), 1.0);
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, ZoomingKeepsTheMiddleWhereItIs) {
  open();
  describe();
  preview([&] {
    view().setZoom(2);
    const auto middle = [this] {
      const QRectF sheet = view().sheetRectangle();
      const QPointF at = QRectF(view().viewport()->rect()).center() - sheet.topLeft();
      return QPointF(at.x() / sheet.width(), at.y() / sheet.height());
    };
    const QPointF before = middle();
    view().zoomIn();
    EXPECT_NEAR(middle().x(), before.x(), 0.002) << "of the sheet's width: the bars count whole pixels";
    EXPECT_NEAR(middle().y(), before.y(), 0.002);
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, ThePageIsMadeOncePerChangeAndNotWhenItIsPainted) {
  open();
  describe();
  preview([&] {
    const PrintedPage* made = view().page();
    view().zoomIn();
    view().viewport()->repaint();
    dialog_->resize(700, 800);
    settle();
    EXPECT_EQ(view().page(), made);
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, ItIsFittedAnewWhenItsSizeChangesAndKeepsThatSize) {
  open();
  describe();
  preview([&] {
    dialog_->resize(620, 560);
    settle();
    const double zoom = view().zoom();
    dialog_->resize(900, 900);
    settle();
    EXPECT_GT(view().zoom(), zoom);
    EXPECT_TRUE(QRectF(view().viewport()->rect()).contains(view().sheetRectangle()));
  });
  preview([&] { EXPECT_EQ(dialog_->size(), QSize(900, 900)); });
  EXPECT_EQ(shown_, 2);
}

TEST_F(PrintPreviewTest, EveryControlIsNamedReachedByTabAndWhole) {
  open();
  describe();
  preview([&] {
    const char* const order[] = {"txtDescription", "cboPaper",      "cboOrientation", "cmdZoomOut",
                                 "cmdZoomIn",      "cmdActualSize", "cmdFit",         "pageView",
                                 "cmdPrint",       "cmdSavePdf",    "cmdClose"};
    EXPECT_TRUE(part<QWidget>(order[0]).hasFocus());
    for (const char* name : order) {
      EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), name);
      EXPECT_FALSE(part<QWidget>(name).toolTip().isEmpty()) << name;
      EXPECT_FALSE(part<QWidget>(name).accessibleName().isEmpty()) << name;
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (const int points : {9, 14}) {
      QApplication::setFont(QFont(pinnedFamily(), points));
      dialog_->resize(1, 1);
      settle();
      for (const char* name : order) {
        const auto& control = part<QWidget>(name);
        EXPECT_TRUE(dialog_->rect().contains(control.geometry())) << name;
        EXPECT_GE(control.height(), control.minimumSizeHint().height()) << name;
        if (const auto* button = qobject_cast<const QPushButton*>(&control)) {
          EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text().remove(u'&')))
              << name;
        }
      }
    }
  });
  EXPECT_EQ(shown_, 1);
}

TEST_F(PrintPreviewTest, EscapeAndCloseLeaveIt) {
  open();
  describe();
  preview([&] {
    QTest::keyClick(&part<QLineEdit>("txtDescription"), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
  });
  preview([&] {
    pressIn("cmdClose");
    EXPECT_FALSE(dialog_->isVisible());
  });
  preview([&] {
    QTest::keyClick(&part<QLineEdit>("txtDescription"), Qt::Key_Return);
    EXPECT_TRUE(dialog_->isVisible()) << "Enter prints nothing by accident";
  });
  EXPECT_EQ(shown_, 3);
  EXPECT_TRUE(printing_->choices.empty());
}

TEST_F(PrintPreviewTest, ItGoesWithItsWindow) {
  open();
  describe();
  preview([&] {
    control_.UnloadMainForm();
    EXPECT_FALSE(dialog_->isVisible());
  });
  settle();
  open();
  printing_->onChoose = [this](PageOrientation) { control_.UnloadMainForm(); };
  choosePrinter();
  preview([&] { pressIn("cmdPrint"); });
  settle();
  EXPECT_EQ(shown_, 2);
  EXPECT_TRUE(prints().empty());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(PrintPreviewTest, WithoutAProfileItIsNotShown) {
  open();
  describe();
  box("tbxFreq").clear();
  item("mnuPrintPreview").trigger();
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].rfind("Printing Error: ", 0), 0U) << boxes()[0];
  EXPECT_NE(boxes()[0].find("frmProfile:mnuPrintPreview_Click:"), std::string::npos) << boxes()[0];
}

TEST_F(PrintPreviewTest, TheWindowStaysAsItIs) {
  open();
  clickPlot(5);
  clickPlot(20);
  pointAt(12);
  describe();
  const QImage before = picture();
  preview([&] { choose("cboOrientation", 1); });
  EXPECT_EQ(picture(), before);
  EXPECT_TRUE(window()->plotView()->strobe.shown);
}

}  // namespace
}  // namespace zel
