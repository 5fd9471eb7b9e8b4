#include "component/desktop/desktop_printing.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPageLayout>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPrintDialog>
#include <QPrintEngine>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <thread>

#include "canvas/qt/printed_page.h"
#include "desktop_fixture.h"
#include "foundation/runtime_error.h"
#include "support/controls.h"
#include "support/environment_variable.h"
#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr PageOrientation kPortrait = PageOrientation::kPortrait;
constexpr PageOrientation kLandscape = PageOrientation::kLandscape;

void pressPrint(QWidget& dialog) {
  for (QPushButton* button : dialog.findChildren<QPushButton*>())
    if (button->text() == QStringLiteral("&Print")) return button->click();
  FAIL() << "the dialog has no button to print";
}

void nameFile(QWidget& dialog, const fs::path& path) {
  test::controlOf<QLineEdit>(dialog, "filename").setText(QString::fromStdString(path.string()));
}

QString textOf(const fs::path& path) { return QString::fromStdString(path.string()); }

template <typename Body>
std::optional<RuntimeError> failureOf(Body body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error;
  }
  return std::nullopt;
}

template <typename Body>
int numberOf(Body body) {
  const std::optional<RuntimeError> failure = failureOf(body);
  return failure ? failure->number() : 0;
}

// Without a print server, whatever the machine has.
class DesktopPrintingTest : public test::DesktopFixture {
 protected:
  DesktopPrintingTest() {
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    page_.sheet().setScale(0, 16838, 11906, 0);
    page_.sheet().line(1000, 1000, 10906, 15838, kBlack);
  }
  ~DesktopPrintingTest() override { QLocale::setDefault(localeBefore_); }

  // The dialog's answer to the body.
  std::optional<PrintRequest> choose(PageOrientation orientation,
                                     const std::function<void(QPrintDialog&)>& body,
                                     const std::optional<PaperFormat>& paper = std::nullopt) {
    onModal<QPrintDialog>([&body](QPrintDialog& dialog) { body(dialog); });
    return printing_.choose(orientation, paper);
  }
  // Chosen without further ado.
  std::optional<PrintRequest> chooseFile(const fs::path& path, PageOrientation orientation = kPortrait) {
    return choose(orientation, [&path](QPrintDialog& dialog) {
      nameFile(dialog, path);
      pressPrint(dialog);
    });
  }
  static void choosePaper(QPrintDialog& dialog, const QString& name) {
    auto& papers = test::controlOf<QComboBox>(dialog, "paper");
    ASSERT_GE(papers.findText(name), 0) << name.toStdString();
    papers.setCurrentIndex(papers.findText(name));
  }
  PrintRequest toFile(const fs::path& path, int copies = 1) const { return {"", path.string(), copies, {}}; }
  void print(const PrintRequest& request) {
    printing_.print(request, page_, {"Terrain Profile", "Tester 1"});
  }

  const QLocale localeBefore_;
  test::EnvironmentVariable noPrintServer_{"CUPS_SERVER", "/nowhere/cups.sock"};
  test::TemporaryFolder folder_;
  DesktopPrinting printing_;
  PrintedPage page_{11906, 16838};
};

// ---- the dialog

TEST_F(DesktopPrintingTest, OffersAFileInTheDocumentsFolderWhenThereIsNoPrinter) {
  const auto answer = choose(kPortrait, [](QPrintDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Print"));
    EXPECT_EQ(test::controlOf<QComboBox>(dialog, "printers").count(), 1);
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QFileInfo(documents).isDir() ? documents : QDir::homePath();
    EXPECT_EQ(test::controlOf<QLineEdit>(dialog, "filename").text(),
              folder + QStringLiteral("/Terrain Profile.pdf"));
    dialog.reject();
  });
  EXPECT_EQ(answer, std::nullopt) << "cancelled";
}

TEST_F(DesktopPrintingTest, ShowsCopiesAndPageAtOnceAndNothingThatOnePageHasNoUseFor) {
  choose(kPortrait, [](QPrintDialog& dialog) {
    EXPECT_TRUE(test::controlOf<QSpinBox>(dialog, "copies").isVisible());
    EXPECT_TRUE(test::controlOf<QComboBox>(dialog, "paper").isVisible());
    EXPECT_TRUE(test::controlOf<QComboBox>(dialog, "orientation").isVisible());
    EXPECT_EQ(test::controlOf<QSpinBox>(dialog, "copies").minimum(), 1);
    EXPECT_EQ(test::controlOf<QSpinBox>(dialog, "copies").maximum(), 999);
    for (const char* idle : {"gbPrintRange", "collate", "reverse", "colorMode", "duplex", "properties"})
      EXPECT_FALSE(test::controlOf<QWidget>(dialog, idle).isVisible()) << idle;
    dialog.reject();
  });
}

TEST_F(DesktopPrintingTest, TheTabKeyReachesEveryControlBothWays) {
  choose(kPortrait, [](QPrintDialog& dialog) {
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
      std::set<const QWidget*> reached;
      test::controlOf<QSpinBox>(dialog, "copies").setFocus();
      for (int step = 0; step < 60 && dialog.focusWidget() != nullptr; ++step) {
        reached.insert(dialog.focusWidget());
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(dialog.focusWidget(), &press);
      }
      for (const char* name : {"filename", "copies", "paper", "orientation"})
        EXPECT_EQ(reached.count(&test::controlOf<QWidget>(dialog, name)), 1U) << name;
      for (const QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->isVisible() && button->isEnabled()) {
          EXPECT_EQ(reached.count(button), 1U) << button->text().toStdString();
        }
      }
    }
    dialog.reject();
  });
}

TEST_F(DesktopPrintingTest, TakesFileCopiesPaperAndOrientationFromTheDialog) {
  const auto answer = choose(kPortrait, [this](QPrintDialog& dialog) {
    nameFile(dialog, folder_ / "page.pdf");
    test::controlOf<QSpinBox>(dialog, "copies").setValue(3);
    EXPECT_EQ(test::controlOf<QComboBox>(dialog, "paper").currentText(), QStringLiteral("A4"));
    choosePaper(dialog, QStringLiteral("Letter / ANSI A"));
    test::controlOf<QComboBox>(dialog, "orientation").setCurrentText(QStringLiteral("Landscape"));
    pressPrint(dialog);
  });
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->printer, "");
  EXPECT_EQ(answer->file, (folder_ / "page.pdf").string());
  EXPECT_FALSE(fs::exists(folder_ / "page.pdf")) << "choosing writes nothing";
  EXPECT_EQ(answer->copies, 3);
  EXPECT_EQ(orientationOf(answer->paper), kLandscape);
  EXPECT_EQ(answer->paper.name, "Letter");
  EXPECT_EQ(answer->paper.width, 15840) << "11 inches";
  EXPECT_EQ(answer->paper.height, 12240) << "8.5 inches";
  EXPECT_EQ(answer->paper.margins.left, 0) << "a file has none";
}

TEST_F(DesktopPrintingTest, BeginsWithTheOrientationThatIsPassed) {
  EXPECT_EQ(orientationOf(chooseFile(folder_ / "a.pdf", kLandscape)->paper), kLandscape);
  EXPECT_EQ(orientationOf(chooseFile(folder_ / "a.pdf", kPortrait)->paper), kPortrait);
}

TEST_F(DesktopPrintingTest, BeginsWithTheFileAndPaperOfLastTimeButWithOneCopy) {
  choose(kPortrait, [this](QPrintDialog& dialog) {
    nameFile(dialog, folder_ / "first.pdf");
    test::controlOf<QSpinBox>(dialog, "copies").setValue(7);
    choosePaper(dialog, QStringLiteral("A5"));
    pressPrint(dialog);
  });
  EXPECT_EQ(printing_.paper(kLandscape).name, "A5");
  const auto again = choose(kLandscape, [this](QPrintDialog& dialog) {
    EXPECT_EQ(test::controlOf<QLineEdit>(dialog, "filename").text(), textOf(folder_ / "first.pdf"));
    EXPECT_EQ(test::controlOf<QComboBox>(dialog, "paper").currentText(), QStringLiteral("A5"));
    EXPECT_EQ(test::controlOf<QSpinBox>(dialog, "copies").value(), 1);
    pressPrint(dialog);
  });
  ASSERT_TRUE(again);
  EXPECT_EQ(again->paper.name, "A5");
  EXPECT_NEAR(again->paper.width, 210 / 25.4 * 1440, 0.5);
  EXPECT_NEAR(again->paper.height, 148 / 25.4 * 1440, 0.5);
}

TEST_F(DesktopPrintingTest, BeginsWithThePaperThatIsPassed) {
  for (const PageOrientation orientation : {kPortrait, kLandscape}) {
    const auto answer = choose(
        orientation,
        [this](QPrintDialog& dialog) {
          EXPECT_EQ(test::controlOf<QComboBox>(dialog, "paper").currentText(),
                    QStringLiteral("Letter / ANSI A"));
          nameFile(dialog, folder_ / "page.pdf");
          pressPrint(dialog);
        },
        lying(letterPaper(), orientation));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->paper.name, "Letter");
    EXPECT_EQ(orientationOf(answer->paper), orientation);
  }
}

TEST_F(DesktopPrintingTest, BeginsWithItsOwnPaperWhereItDoesNotHaveTheOneThatIsPassed) {
  const PaperFormat card{"Card", 4895, 3118, {}};
  const auto expectPaper = [this, &card](const QString& name) {
    choose(
        kLandscape,
        [&name](QPrintDialog& dialog) {
          EXPECT_EQ(test::controlOf<QComboBox>(dialog, "paper").currentText(), name);
          dialog.reject();
        },
        card);
  };
  expectPaper(QStringLiteral("A4"));
  choose(kPortrait, [this](QPrintDialog& dialog) {
    nameFile(dialog, folder_ / "page.pdf");
    choosePaper(dialog, QStringLiteral("A5"));
    pressPrint(dialog);
  });
  expectPaper(QStringLiteral("A5"));
}

TEST_F(DesktopPrintingTest, ForgetsWhatACancelledDialogHad) {
  chooseFile(folder_ / "first.pdf");
  choose(kPortrait, [this](QPrintDialog& dialog) {
    nameFile(dialog, folder_ / "second.pdf");
    choosePaper(dialog, QStringLiteral("A5"));
    dialog.reject();
  });
  EXPECT_EQ(printing_.paper(kPortrait).name, "A4");
  choose(kPortrait, [this](QPrintDialog& dialog) {
    EXPECT_EQ(test::controlOf<QLineEdit>(dialog, "filename").text(), textOf(folder_ / "first.pdf"));
    dialog.reject();
  });
}

TEST_F(DesktopPrintingTest, AddsTheExtensionUnlessItIsThere) {
  EXPECT_EQ(chooseFile(folder_ / "page")->file, (folder_ / "page.pdf").string());
  EXPECT_EQ(chooseFile(folder_ / "page.of.mine")->file, (folder_ / "page.of.mine.pdf").string());
  EXPECT_EQ(chooseFile(folder_ / "page.PDF")->file, (folder_ / "page.PDF").string());
}

TEST_F(DesktopPrintingTest, AsksOnceBeforeItOverwrites) {
  test::writeBytes(folder_ / "old.pdf", "old");
  int questions = 0;
  const auto answer = choose(kPortrait, [&](QPrintDialog& dialog) {
    nameFile(dialog, folder_ / "old.pdf");
    onModal<QMessageBox>([&](QMessageBox& question) {
      ++questions;
      question.button(QMessageBox::No)->click();
    });
    pressPrint(dialog);
    EXPECT_TRUE(dialog.isVisible()) << "the answer was no";
    onModal<QMessageBox>([&](QMessageBox& question) {
      ++questions;
      question.button(QMessageBox::Yes)->click();
    });
    pressPrint(dialog);
  });
  EXPECT_EQ(questions, 2);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->file, (folder_ / "old.pdf").string());
  EXPECT_EQ(test::fileBytes(folder_ / "old.pdf"), "old");
}

TEST_F(DesktopPrintingTest, TakesNoFileThatCannotBeWritten) {
  for (const fs::path& path : {folder_ / "missing/page.pdf", folder_.path()}) {
    const auto answer = choose(kPortrait, [&](QPrintDialog& dialog) {
      nameFile(dialog, path);
      onModal<QMessageBox>([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
      pressPrint(dialog);
      EXPECT_TRUE(dialog.isVisible());
      dialog.reject();
    });
    EXPECT_EQ(answer, std::nullopt) << path;
  }
}

TEST_F(DesktopPrintingTest, IsCancelledWhenItsDialogIsDeleted) {
  EXPECT_EQ(choose(kPortrait, [](QPrintDialog& dialog) { delete &dialog; }), std::nullopt);
}

TEST_F(DesktopPrintingTest, ShowsNoDialogAwayFromTheApplicationsThread) {
  std::optional<PrintRequest> answer = PrintRequest{};
  std::thread([&] { answer = printing_.choose(kPortrait, std::nullopt); }).join();
  EXPECT_EQ(answer, std::nullopt);
}

// ---- without the dialog

TEST_F(DesktopPrintingTest, TakesANameThatEndsInPdfForAFile) {
  const PrintRequest request = printing_.request("Somewhere/Page.PDF", 2, kLandscape);
  EXPECT_EQ(request.printer, "");
  EXPECT_EQ(request.file, "Somewhere/Page.PDF");
  EXPECT_EQ(request.copies, 2);
  EXPECT_EQ(orientationOf(request.paper), kLandscape);
  EXPECT_EQ(request.paper.name, "A4");
  EXPECT_EQ(request.paper.width, 16838);
  EXPECT_EQ(request.paper.height, 11906);
}

TEST_F(DesktopPrintingTest, NamesThePrinterThatIsNotThere) {
  const auto failure = failureOf([this] { printing_.request("Plotter 7", 1, kPortrait); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->number(), PrintService::kNoSuchPrinter);
  EXPECT_EQ(failure->description(), "There is no printer \"Plotter 7\"");
}

// A file that was chosen once is not overwritten without asking.
TEST_F(DesktopPrintingTest, HasNoPrinterToFallBackOnEvenAfterAFileWasChosen) {
  const auto withoutName = [this] { printing_.request("", 1, kPortrait); };
  EXPECT_EQ(numberOf(withoutName), PrintService::kNoSuchPrinter);
  chooseFile(folder_ / "page.pdf");
  EXPECT_EQ(numberOf(withoutName), PrintService::kNoSuchPrinter);
  EXPECT_EQ(numberOf([this] { print(PrintRequest{}); }), PrintService::kNoSuchPrinter);
}

TEST_F(DesktopPrintingTest, SaysThatAPrinterHasGoneSinceItWasChosen) {
  PrintRequest request;
  request.printer = "Office";
  const auto failure = failureOf([&] { print(request); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->number(), PrintService::kNoSuchPrinter);
  EXPECT_EQ(failure->description(), "There is no printer \"Office\"");
}

TEST_F(DesktopPrintingTest, MakesOneCopyToNineHundredAndNinetyNine) {
  for (const int copies : {-1, 0, 1000}) {
    EXPECT_EQ(numberOf([&] { printing_.request("a.pdf", copies, kPortrait); }), 5) << copies;
    EXPECT_EQ(numberOf([&] { print(toFile(folder_ / "a.pdf", copies)); }), 5) << copies;
  }
  EXPECT_EQ(printing_.request("a.pdf", 999, kPortrait).copies, 999);
  EXPECT_FALSE(fs::exists(folder_ / "a.pdf"));
}

TEST_F(DesktopPrintingTest, HasThePaperOfTheUsersCountry) {
  // Paper sizes by territory: Unicode CLDR.
  const std::map<QString, std::string> papers = {
      {QStringLiteral("en_US"), "Letter"}, {QStringLiteral("fr_CA"), "Letter"},
      {QStringLiteral("es_MX"), "Letter"}, {QStringLiteral("en_GB"), "A4"},
      {QStringLiteral("de_DE"), "A4"},     {QStringLiteral("es_AR"), "A4"},
      {QStringLiteral("C"), "A4"}};
  for (const auto& [locale, paper] : papers) {
    QLocale::setDefault(QLocale(locale));
    EXPECT_EQ(printing_.paper(kPortrait).name, paper) << locale.toStdString();
  }
}

TEST_F(DesktopPrintingTest, LetsThePaperHaveALocaleOfItsOwnAsTheSystemDoes) {
  QLocale::setDefault(QLocale::system());
  const test::EnvironmentVariable paper("LC_PAPER", "en_US.UTF-8");
  {
    const test::EnvironmentVariable all("LC_ALL", std::nullopt);
    EXPECT_EQ(printing_.paper(kPortrait).name, "Letter");
    EXPECT_EQ(printing_.paper(kPortrait).height, 15840);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(printing_.paper(kPortrait).name, "A4") << "the program has set a locale";
  }
  QLocale::setDefault(QLocale::system());
  const test::EnvironmentVariable all("LC_ALL", "C.UTF-8");
  EXPECT_EQ(printing_.paper(kPortrait).name, "A4") << "one locale for everything";
}

// ---- into a file

bool hasPages(const std::string& pdf, int pages) {
  return pdf.substr(0, 5) == "%PDF-" &&
         pdf.find("/Count " + std::to_string(pages) + "\n") != std::string::npos;
}

TEST_F(DesktopPrintingTest, WritesAPageForEachCopy) {
  for (const int copies : {1, 3}) {
    print(toFile(folder_ / "page.pdf", copies));
    EXPECT_TRUE(hasPages(test::fileBytes(folder_ / "page.pdf"), copies)) << copies;
  }
}

TEST_F(DesktopPrintingTest, TellsWhyAFileCannotBeWritten) {
  fs::create_directory(folder_ / "folder.pdf");
  const std::map<fs::path, int> numbers = {
      {"/dev/full", 61}, {folder_ / "folder.pdf", 75}, {folder_ / "missing/page.pdf", 76}};
  for (const auto& [path, number] : numbers) {
    const auto failure = failureOf([&, name = path] { print(toFile(name)); });
    ASSERT_TRUE(failure) << path;
    EXPECT_EQ(failure->number(), number) << path;
    EXPECT_NE(failure->description().find(path.string()), std::string::npos) << failure->description();
  }
  EXPECT_FALSE(fs::exists(folder_ / "missing"));
}

TEST_F(DesktopPrintingTest, MakesNothingWhereItMayNotWrite) {
  fs::permissions(folder_.path(), fs::perms::owner_read | fs::perms::others_exec | fs::perms::others_read);
  EXPECT_EQ(test::exitCodeAsNobody([&] { return numberOf([&] { print(toFile(folder_ / "page.pdf")); }); }),
            70);
  fs::permissions(folder_.path(), fs::perms::owner_all);
  EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST_F(DesktopPrintingTest, LeavesTheOldFileAndNoHalfOneOnAFullDisk) {
  test::writeBytes(folder_ / "page.pdf", "old");
  fs::permissions(folder_.path(), fs::perms::all);
  fs::permissions(folder_ / "page.pdf", fs::perms::all);
  EXPECT_EQ(test::exitCodeWithLargestFile(
                200, [&] { return numberOf([&] { print(toFile(folder_ / "page.pdf")); }); }),
            61);
  EXPECT_EQ(test::fileBytes(folder_ / "page.pdf"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()), 1);
}

// ---- on a printer

// A printer with an engine that notes what it is asked, 600 dots an inch, and begins with A4 upright.
class NotedPrinter final : public QPrinter {
 public:
  struct Engine final : QPaintEngine, QPrintEngine {
    Engine() : QPaintEngine(QPaintEngine::AllFeatures) {}

    bool begin(QPaintDevice*) override {
      if (begins) state = QPrinter::Active;
      return begins;
    }
    bool end() override {
      state = stateAfter;
      return ends;
    }
    void updateState(const QPaintEngineState& now) override {
      if (now.state().testFlag(QPaintEngine::DirtyTransform)) transform = now.transform();
      if (now.state().testFlag(QPaintEngine::DirtyPen)) inked = now.pen().style() != Qt::NoPen;
    }
    void note(const QRectF& bounds) {
      if (inked) drawn |= transform.mapRect(bounds);
    }
    void drawPath(const QPainterPath& path) override { note(path.boundingRect()); }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode) override {
      note(QPolygonF(QList<QPointF>(points, points + count)).boundingRect());
    }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    Type type() const override { return QPaintEngine::User; }

    void setProperty(PrintEnginePropertyKey key, const QVariant& value) override {
      if (key == PPK_QPageSize) layout.setPageSize(value.value<QPageSize>());
      if (key == PPK_Orientation) layout.setOrientation(QPageLayout::Orientation(value.toInt()));
      if (key == PPK_QPageLayout) layout = value.value<QPageLayout>();
      properties[key] = value;
    }
    QVariant property(PrintEnginePropertyKey key) const override {
      if (key == PPK_QPageLayout) return QVariant::fromValue(layout);
      const auto found = properties.find(key);
      return found == properties.end() ? QVariant() : found->second;
    }
    bool newPage() override {
      ++pages;
      return takesPages;
    }
    bool abort() override {
      aborted = true;
      return true;
    }
    int metric(QPaintDevice::PaintDeviceMetric) const override { return 600; }
    QPrinter::PrinterState printerState() const override { return state; }

    bool begins = true, ends = true, takesPages = true, aborted = false;
    QPrinter::PrinterState state = QPrinter::Idle, stateAfter = QPrinter::Idle;
    int pages = 1;
    bool inked = true;
    QRectF drawn;  // by a pen, dots
    QTransform transform;
    // Points that the printer cannot print on, left, top, right and bottom of the upright sheet.
    QPageLayout layout{QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(), QPageLayout::Point,
                       QMarginsF(18, 36, 24, 30)};
    std::map<int, QVariant> properties = {{PPK_Resolution, 600}, {PPK_PrinterName, QStringLiteral("Office")}};
  };

  NotedPrinter() { setEngines(&engine, &engine); }

  Engine engine;
};

class PrinterTest : public DesktopPrintingTest {
 protected:
  void print(int copies, const PaperFormat& paper = {}) {
    printOn(printer_, {"Office", "", copies, paper}, page_, {"Terrain Profile", "Tester 1"});
  }
  // That a print fails so.
  void expectFailure(const std::string& description) {
    const auto failure = failureOf([this] { print(2); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number(), PrintService::kPrinterFailed);
    EXPECT_EQ(failure->description(), description);
  }

  NotedPrinter printer_;
  NotedPrinter::Engine& engine_ = printer_.engine;
};

TEST_F(PrinterTest, TwipsAreTwipsFromThePapersCorner) {
  print(1);
  // The line from (1000, 1000) to (10906, 15838) twips of an upright page of 11906 x 16838, in dots of 1/600
  // inch. Within the line's own width, 2 pixels of 1/96 inch.
  constexpr double kTolerance = 12.5;
  EXPECT_NEAR(engine_.drawn.left(), 1000 * 600 / 1440.0, kTolerance);
  EXPECT_NEAR(engine_.drawn.right(), 10906 * 600 / 1440.0, kTolerance);
  EXPECT_NEAR(engine_.drawn.top(), 1000 * 600 / 1440.0, kTolerance);
  EXPECT_NEAR(engine_.drawn.bottom(), 15838 * 600 / 1440.0, kTolerance);
  EXPECT_TRUE(engine_.properties[QPrintEngine::PPK_FullPage].toBool());
}

TEST_F(PrinterTest, HasTheDocumentsNameAndCreator) {
  print(1);
  EXPECT_EQ(engine_.properties[QPrintEngine::PPK_DocumentName].toString(), QStringLiteral("Terrain Profile"));
  EXPECT_EQ(engine_.properties[QPrintEngine::PPK_Creator].toString(), QStringLiteral("Tester 1"));
}

TEST_F(PrinterTest, LeavesTheCopiesToAPrinterThatMakesThem) {
  engine_.properties[QPrintEngine::PPK_SupportsMultipleCopies] = true;
  print(3);
  EXPECT_EQ(engine_.pages, 1);
  EXPECT_EQ(engine_.properties[QPrintEngine::PPK_CopyCount].toInt(), 3);
}

TEST_F(PrinterTest, RepeatsThePageOnAPrinterThatDoesNot) {
  engine_.properties[QPrintEngine::PPK_SupportsMultipleCopies] = false;
  print(3);
  EXPECT_EQ(engine_.pages, 3);
  EXPECT_EQ(engine_.properties[QPrintEngine::PPK_CopyCount].toInt(), 1);
}

TEST_F(PrinterTest, TakesThePaperAndOrientationOfTheRequest) {
  print(1, lying(a4Paper(), kLandscape));
  EXPECT_EQ(engine_.layout.orientation(), QPageLayout::Landscape);
  EXPECT_EQ(engine_.layout.pageSize().id(), QPageSize::A4);
  EXPECT_FALSE(engine_.properties.contains(QPrintEngine::PPK_QPageSize)) << "it had that paper";
  print(1, letterPaper());
  EXPECT_EQ(engine_.layout.orientation(), QPageLayout::Portrait);
  EXPECT_EQ(engine_.layout.pageSize().id(), QPageSize::Letter);
}

TEST_F(PrinterTest, HasTheMarginsOfThePageAsItLies) {
  const PaperMargins upright = requestOf(printer_).paper.margins;
  EXPECT_EQ(upright.left, 360);
  EXPECT_EQ(upright.top, 720);
  EXPECT_EQ(upright.right, 480);
  EXPECT_EQ(upright.bottom, 600);
  // Which way the sheet is turned is not known: the wider one counts for both sides.
  printer_.setPageOrientation(QPageLayout::Landscape);
  const PaperFormat turned = requestOf(printer_).paper;
  EXPECT_EQ(turned.width, 16838);
  EXPECT_EQ(turned.margins.left, 720);
  EXPECT_EQ(turned.margins.right, 720);
  EXPECT_EQ(turned.margins.top, 480);
  EXPECT_EQ(turned.margins.bottom, 480);
}

// The toolkit's Ledger is wider than high when it is upright.
TEST_F(PrinterTest, ThePageLiesAsItWasChosenWhateverTheSheetIs) {
  printer_.setPageSize(QPageSize(QPageSize::Ledger));
  const PaperFormat upright = requestOf(printer_).paper;
  EXPECT_EQ(upright.width, 15840);
  EXPECT_EQ(upright.height, 24480);
  print(1, upright);
  EXPECT_LT(engine_.layout.fullRectPoints().width(), engine_.layout.fullRectPoints().height());
  printer_.setPageSize(QPageSize(QPageSize::Ledger));
  printer_.setPageOrientation(QPageLayout::Landscape);
  const PaperFormat across = requestOf(printer_).paper;
  EXPECT_EQ(across.width, 24480);
  EXPECT_EQ(across.height, 15840);
  print(1, across);
  EXPECT_GT(engine_.layout.fullRectPoints().width(), engine_.layout.fullRectPoints().height());
}

TEST_F(PrinterTest, IsNamedByItsRequest) {
  printer_.setCopyCount(4);
  engine_.properties[QPrintEngine::PPK_CopyCount] = 4;
  const PrintRequest request = requestOf(printer_);
  EXPECT_EQ(request.printer, "Office");
  EXPECT_EQ(request.file, "");
  EXPECT_EQ(request.copies, 4);
  EXPECT_EQ(orientationOf(request.paper), kPortrait);
}

TEST_F(PrinterTest, SaysThatItHasNotPrinted) {
  engine_.begins = false;
  expectFailure("The printer \"Office\" has failed: it does not take the page");
  engine_.begins = true;
  engine_.takesPages = false;
  expectFailure("The printer \"Office\" has failed: it does not take another page");
  EXPECT_TRUE(engine_.aborted) << "nothing is to come out";
  engine_.takesPages = true;
  engine_.ends = false;
  expectFailure("The printer \"Office\" has failed: the page was not printed");
  engine_.ends = true;
  for (const auto state : {QPrinter::Error, QPrinter::Aborted}) {
    engine_.stateAfter = state;
    expectFailure("The printer \"Office\" has failed: the page was not printed");
  }
}

// Status values: RFC 8011, appendix B.
TEST(PrintSystem, RefusesByAnErrorStatusInItsOwnWords) {
  EXPECT_EQ(refusalIn(0x0000, "successful-ok"), "");
  EXPECT_EQ(refusalIn(0x0001, "successful-ok-ignored-or-substituted-attributes"), "");
  EXPECT_EQ(refusalIn(0x03FF, "no error yet"), "");
  EXPECT_EQ(refusalIn(0x0400, "Bad request"), "Bad request");
  EXPECT_EQ(refusalIn(0x0506, "The printer takes no jobs"), "The printer takes no jobs");
  for (const char* silent : {static_cast<const char*>(nullptr), ""})
    EXPECT_EQ(refusalIn(0x0507, silent), "the print system did not take the page");
}

// ---- how a sheet lies

TEST(Paper, IsTurnedWithTheWiderMarginOfTwoOnBothSides) {
  PaperFormat paper = letterPaper();
  paper.margins = {1, 2, 3, 4};
  const PaperFormat across = lying(paper, kLandscape);
  EXPECT_EQ(across.name, "Letter");
  EXPECT_EQ(across.width, 15840);
  EXPECT_EQ(across.height, 12240);
  EXPECT_EQ(across.margins.left, 4);
  EXPECT_EQ(across.margins.right, 4);
  EXPECT_EQ(across.margins.top, 3);
  EXPECT_EQ(across.margins.bottom, 3);
  const PaperFormat same = lying(paper, kPortrait);
  EXPECT_EQ(same.width, 12240);
  EXPECT_EQ(same.margins.left, 1);
}

TEST(Paper, ASquareSheetLiesInPortrait) {
  const PaperFormat square{"Square", 10000, 10000, {1, 2, 3, 4}};
  EXPECT_EQ(orientationOf(square), kPortrait);
  EXPECT_EQ(lying(square, kLandscape).margins.top, 2) << "it stays as it is";
  EXPECT_EQ(orientationOf(lying(a4Paper(), kLandscape)), kLandscape);
}

}  // namespace
}  // namespace zel
