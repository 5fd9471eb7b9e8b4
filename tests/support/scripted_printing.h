// The printers of the tests: notes what the dialog was asked, answers as the test has told it, and keeps what
// was printed. Nothing leaves the process.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "canvas/qt/printed_page.h"
#include "foundation/runtime_error.h"
#include "platform/print_service.h"

namespace zel::test {

// The paper as it lies in that orientation.
inline PaperFormat lying(PaperFormat paper, PageOrientation orientation) {
  const bool wide = paper.width > paper.height;
  if (wide == (orientation == PageOrientation::kLandscape)) return paper;
  std::swap(paper.width, paper.height);
  PaperMargins& margins = paper.margins;
  margins = {margins.bottom, margins.left, margins.top, margins.right};
  return paper;
}

inline PaperFormat letterPaper() { return {"Letter", 12240, 15840, {}}; }

// The page as its reader sees it, so many pixels an inch.
inline QImage imageOfPage(const PrintedPage& page, double pixelsPerInch) {
  const QSize size(static_cast<int>(std::lround(page.size().width() * pixelsPerInch / 1440)),
                   static_cast<int>(std::lround(page.size().height() * pixelsPerInch / 1440)));
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
  std::optional<PrintRequest> choose(PageOrientation orientation) override {
    choices.push_back(orientation);
    if (onChoose) onChoose(orientation);
    return answer;
  }

  // The dialog answers with its own orientation, this paper and a PDF of that name.
  void answerWith(PageOrientation orientation, const std::string& file = "page.pdf", int copies = 1) {
    answer = PrintRequest{"", file, copies, orientation, lying(sheet, orientation)};
  }

  PrintRequest request(const std::string& printer, int copies, PageOrientation orientation) override {
    requests.push_back(printer);
    if (requestFailure) throw *requestFailure;
    const bool pdf = printer.size() > 4 && printer.substr(printer.size() - 4) == ".pdf";
    return {pdf ? "" : printer, pdf ? printer : "", copies, orientation, lying(sheet, orientation)};
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
  std::vector<PageOrientation> choices;  // what the dialog began with
  std::vector<std::string> requests;     // the printers asked for
  std::vector<Print> prints;
};

}  // namespace zel::test
