#include "canvas/qt/pdf_document.h"

#include <QIODevice>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QString>
#include <exception>
#include <utility>

#include "canvas/qt/fonts.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

RuntimeError printerFailed() { return {PrintService::kPrinterFailed, "Printer error"}; }

// Without margins: the sheet has its own.
QPageLayout layoutOf(QSizeF twips) {
  const bool landscape = twips.width() > twips.height();
  const QSizeF points = (landscape ? twips.transposed() : twips) / kTwipsPerPoint;
  return {QPageSize(points, QPageSize::Point, QString(), QPageSize::FuzzyMatch),
          landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)};
}

// The painter's end writes, too, also the end that an error brings: what is out of memory must not throw.
class GrowingDocument final : public QIODevice {
 public:
  // Throws RuntimeError 7 when it had no room.
  std::string take() {
    if (full_) throw RuntimeError::outOfMemory();
    return std::move(bytes_);
  }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    if (full_) return -1;
    try {
      bytes_.append(data, static_cast<std::size_t>(size));
      return size;
    } catch (const std::exception&) {
      full_ = true;
      std::string().swap(bytes_);
      return -1;
    }
  }

 private:
  std::string bytes_;
  bool full_ = false;
};

void paint(GrowingDocument& bytes, const PrintedPage& page, int copies, const PrintedDocument& document) {
  QPdfWriter writer(&bytes);
  writer.setTitle(QString::fromStdString(document.title));
  writer.setCreator(QString::fromStdString(document.creator));
  QPainter painter;
  if (!writer.setPageLayout(layoutOf(page.size())) || !painter.begin(&writer)) throw printerFailed();
  const QRectF sheet(QPointF(0, 0), page.size() * (writer.resolution() / kTwipsPerInch));
  for (int copy = 1; copy <= copies; ++copy) {
    if (copy > 1 && !writer.newPage()) throw printerFailed();
    page.paint(painter, sheet);
  }
  if (!painter.end()) throw printerFailed();
}

}  // namespace

std::string pdfDocument(const PrintedPage& page, int copies, const PrintedDocument& document) {
  if (copies < 1 || page.size().isEmpty()) throw printerFailed();
  if (!fontsAreThere())
    throw RuntimeError(PrintService::kPrinterFailed,
                       "There is no font for the page; install one, such as the package fonts-liberation");
  GrowingDocument bytes;
  bytes.open(QIODevice::WriteOnly);
  paint(bytes, page, copies, document);
  return bytes.take();
}

}  // namespace zel
