#include "component/desktop/desktop_printing.h"

#include <dlfcn.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <cmath>

#include "canvas/qt/pdf_document.h"
#include "canvas/qt/printed_page.h"
#include "component/desktop/desktop_dialogs.h"
#include "component/desktop/picture_application.h"
#include "component/desktop/print_dialog.h"
#include "component/desktop/system_printers.h"
#include "component/services/output_file.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

// The page is placed on the whole sheet, margins and all.
void setUp(QPrinter& printer, PageOrientation orientation) {
  printer.setFullPage(true);
  printer.setPageOrientation(layoutOrientation(orientation));
}

// Whether the printer lies as the request has it, within the rounding of the paper's measures.
bool hasPaper(const QPrinter& printer, const PaperFormat& paper) {
  const PaperFormat own = paperOf(printer);
  return std::abs(own.width - paper.width) <= kTwipsPerPoint &&
         std::abs(own.height - paper.height) <= kTwipsPerPoint;
}

// A printer that does not have that paper keeps its own.
void offer(const PaperFormat& paper, QPrinter& printer) {
  const QPageSize size = pageSizeOf(paper);
  const QString name = goesIntoFile(printer) ? QString() : printer.printerName();
  if (takesPaper(name, size)) printer.setPageSize(size);
}

bool isPdfPath(const std::string& name) {
  return QString::fromStdString(name).endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
}

void ensurePrinters() {
  if (!ensurePictureApplication())
    throw RuntimeError(PrintService::kPrinterFailed,
                       "Nothing can be printed: the process's application object is one without graphics");
}

// An empty name is that of the default printer of a system that has none.
void checkPrinter(const std::string& name) {
  if (name.empty())
    throw RuntimeError(PrintService::kNoSuchPrinter,
                       "There is no default printer; a PDF file can be printed to instead");
  if (!isPrinter(QString::fromStdString(name)))
    throw RuntimeError(PrintService::kNoSuchPrinter, "There is no printer \"" + name + "\"");
}

RuntimeError printerFailed(const QPrinter& printer, const std::string& why) {
  return {PrintService::kPrinterFailed,
          "The printer \"" + printer.printerName().toStdString() + "\" has failed: " + why};
}

void checkCopies(int copies) {
  if (copies < 1 || copies > PrintService::kMostCopies)
    throw RuntimeError(PrintService::kInvalidCall,
                       "The number of copies must be 1 to " + std::to_string(PrintService::kMostCopies));
}

// Why the print system did not take the last job, which the toolkit keeps to itself; empty when it did. The
// library is the one that the toolkit has loaded for its printers.
std::string refusalOfPrintSystem() {
  void* library = ::dlopen("libcups.so.2", RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) return {};
  const auto lastStatus = reinterpret_cast<int (*)()>(::dlsym(library, "cupsLastError"));
  const auto lastText = reinterpret_cast<const char* (*)()>(::dlsym(library, "cupsLastErrorString"));
  std::string refusal;
  if (lastStatus != nullptr && lastText != nullptr) refusal = refusalIn(lastStatus(), lastText());
  ::dlclose(library);
  return refusal;
}

// As it lies in the printer in that orientation, also when the printer's upright sheet is wider than high.
PaperFormat paperIn(const QPrinter& printer, PageOrientation orientation) {
  return lying(paperOf(printer), orientation);
}

}  // namespace

std::string refusalIn(int status, const char* text) {
  constexpr int kFirstError = 0x0400;  // client-error-bad-request, RFC 8011 appendix B
  if (status < kFirstError) return {};
  const bool silent = text == nullptr || *text == '\0';
  return silent ? "the print system did not take the page" : text;
}

PrintRequest requestOf(const QPrinter& printer) {
  PrintRequest request;
  if (goesIntoFile(printer)) {
    request.file = QFileInfo(printer.outputFileName()).absoluteFilePath().toStdString();
  } else {
    request.printer = printer.printerName().toStdString();
  }
  request.copies = std::clamp(printer.copyCount(), 1, PrintService::kMostCopies);
  request.paper = paperIn(printer, orientationOf(printer.pageLayout()));
  return request;
}

void printOn(QPrinter& printer, const PrintRequest& request, const PrintedPage& page,
             const PrintedDocument& document) {
  setUp(printer, orientationOf(request.paper));
  if (!hasPaper(printer, request.paper)) printer.setPageSize(pageSizeOf(request.paper));
  printer.setDocName(QString::fromStdString(document.title));
  printer.setCreator(QString::fromStdString(document.creator));
  const bool repeats = printer.supportsMultipleCopies();
  printer.setCopyCount(repeats ? request.copies : 1);
  QPainter painter;
  if (!painter.begin(&printer)) throw printerFailed(printer, "it does not take the page");
  const double dots = printer.resolution() / kTwipsPerInch;
  const QRectF sheet(0, 0, page.size().width() * dots, page.size().height() * dots);
  for (int copy = 0; copy < (repeats ? 1 : request.copies); ++copy) {
    if (copy > 0 && !printer.newPage()) {
      printer.abort();
      throw printerFailed(printer, "it does not take another page");
    }
    page.paint(painter, sheet);
  }
  const bool ended = painter.end();
  const QPrinter::PrinterState state = printer.printerState();
  if (!ended || state == QPrinter::Error || state == QPrinter::Aborted)
    throw printerFailed(printer, "the page was not printed");
  if (printer.outputFormat() != QPrinter::NativeFormat) return;
  if (const std::string refusal = refusalOfPrintSystem(); !refusal.empty())
    throw printerFailed(printer, refusal);
}

// Null when it was a file, or when the printer has gone.
const PrintRequest* DesktopPrinting::chosenPrinter() const {
  const bool there = chosen_ && isPrinter(QString::fromStdString(chosen_->printer));
  return there ? &*chosen_ : nullptr;
}

// As the dialog begins.
std::unique_ptr<QPrinter> DesktopPrinting::startingPrinter(PageOrientation orientation) const {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  if (const PrintRequest* last = chosenPrinter()) {
    printer->setPrinterName(QString::fromStdString(last->printer));
    printer->setPageSize(pageSizeOf(last->paper));
  } else if (chosen_ && !chosen_->file.empty()) {
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(QString::fromStdString(chosen_->file));
    printer->setPageSize(pageSizeOf(chosen_->paper));
  } else {
    if (printer->printerName().isEmpty()) printer->setOutputFileName(defaultPdfFile());
    printer->setPageSize(usualSize(printer->printerName()));
  }
  setUp(*printer, orientation);
  return printer;
}

std::optional<PrintRequest> DesktopPrinting::choose(PageOrientation orientation,
                                                    const std::optional<PaperFormat>& paper) {
  if (!canShowWidgets()) return std::nullopt;
  // A printer of its own: a dialog that is cancelled changes nothing.
  std::unique_ptr<QPrinter> printer = startingPrinter(orientation);
  if (paper) offer(*paper, *printer);
  if (!runPrintDialog(*printer)) return std::nullopt;
  chosen_ = requestOf(*printer);
  return chosen_;
}

PaperFormat DesktopPrinting::paper(PageOrientation orientation) {
  if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) return localPaper(orientation);
  return paperIn(*startingPrinter(orientation), orientation);
}

PrintRequest DesktopPrinting::request(const std::string& printer, int copies, PageOrientation orientation) {
  checkCopies(copies);
  if (isPdfPath(printer)) {
    PrintRequest request{"", printer, copies, paper(orientation)};
    request.paper.margins = {};
    return request;
  }
  ensurePrinters();
  const PrintRequest* last = chosenPrinter();
  const std::string usual =
      last != nullptr ? last->printer : QPrinterInfo::defaultPrinterName().toStdString();
  const std::string name = printer.empty() ? usual : printer;
  checkPrinter(name);
  if (last != nullptr && last->printer == name) return {name, "", copies, paper(orientation)};
  QPrinter other(QPrinterInfo::printerInfo(QString::fromStdString(name)), QPrinter::HighResolution);
  other.setPageSize(usualSize(other.printerName()));
  setUp(other, orientation);
  return {name, "", copies, paperIn(other, orientation)};
}

void DesktopPrinting::print(const PrintRequest& request, const PrintedPage& page,
                            const PrintedDocument& document) {
  checkCopies(request.copies);
  if (!request.file.empty()) {
    // First whether it can be written at all.
    const OutputFile file(request.file);
    file.write(pdfDocument(page, request.copies, document));
    return;
  }
  ensurePrinters();
  checkPrinter(request.printer);
  QPrinter printer(QPrinterInfo::printerInfo(QString::fromStdString(request.printer)),
                   QPrinter::HighResolution);
  printOn(printer, request, page, document);
}

}  // namespace zel
