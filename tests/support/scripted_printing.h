// The printers of the tests: notes what the dialog was asked, answers as the test has told it, and keeps what
// was printed. Nothing leaves the process.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "canvas/qt/printed_page.h"
#include "foundation/runtime_error.h"
#include "platform/print_service.h"

namespace zel::test {

// The page as its reader sees it, so many pixels an inch.
inline QImage imageOfPage(const PrintedPage& page, double pixelsPerInch) {
  const QSize size(static_cast<int>(std::lround(page.size().width() * pixelsPerInch / kTwipsPerInch)),
                   static_cast<int>(std::lround(page.size().height() * pixelsPerInch / kTwipsPerInch)));
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  page.paint(painter, QRectF(QPointF(0, 0), QSizeF(size)));
  return image;
}

class ScriptedPrinting final : public PrintService {
 public:
  struct Print {
    PrintRequest request;
    PrintedDocument document;
    QSizeF size;   // twips
    QImage image;  // 72 pixels an inch
  };

  // Answers with `answer`: cancelled without one. Orientation and paper are those of the answer.
  std::optional<PrintRequest> choose(PageOrientation orientation,
                                     const std::optional<PaperFormat>& paper) override {
    choices.push_back(orientation);
    papersOfChoices.push_back(paper ? paper->name : std::string());
    if (onChoose) onChoose(orientation);
    return answer;
  }

  // The dialog answers with its own orientation, this paper and a PDF of that name.
  void answerWith(PageOrientation orientation, const std::string& file = "page.pdf", int copies = 1) {
    answer = PrintRequest{"", file, copies, lying(sheet, orientation)};
  }

  PrintRequest request(const std::string& printer, int copies, PageOrientation orientation) override {
    requests.push_back(printer);
    if (requestFailure) throw *requestFailure;
    const bool pdf = printer.size() > 4 && printer.substr(printer.size() - 4) == ".pdf";
    return {pdf ? "" : printer, pdf ? printer : "", copies, lying(sheet, orientation)};
  }

  PaperFormat paper(PageOrientation orientation) override { return lying(sheet, orientation); }

  void print(const PrintRequest& request, const PrintedPage& page, const PrintedDocument& document) override {
    if (onPrint) onPrint(request, page, document);
    if (printFailure) throw *printFailure;
    prints.push_back({request, document, page.size(), imageOfPage(page, 72)});
  }

  PaperFormat sheet;                                         // what every printer has, portrait
  std::optional<PrintRequest> answer;                        // nothing: cancelled
  std::function<void(PageOrientation)> onChoose;             // while the dialog is shown
  std::optional<RuntimeError> requestFailure, printFailure;  // thrown
  std::function<void(const PrintRequest&, const PrintedPage&, const PrintedDocument&)> onPrint;
  std::vector<PageOrientation> choices;      // what the dialog began with
  std::vector<std::string> papersOfChoices;  // their names; empty where it was left to the dialog
  std::vector<std::string> requests;         // the printers asked for
  std::vector<Print> prints;
};

}  // namespace zel::test
