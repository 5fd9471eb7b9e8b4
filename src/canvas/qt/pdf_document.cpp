#include "canvas/qt/pdf_document.h"

#include <QBuffer>
#include <QByteArray>
#include <QGuiApplication>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QString>
#include <algorithm>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kTwipsPerPoint = 20;

RuntimeError printerFailed() { return {PrintService::kPrinterFailed, "Printer error"}; }

// Without margins: the sheet has its own.
QPageLayout layoutOf(QSizeF twips) {
  const bool landscape = twips.width() > twips.height();
  const QSizeF points = (landscape ? twips.transposed() : twips) / kTwipsPerPoint;
  return {QPageSize(points, QPageSize::Point, QString(), QPageSize::FuzzyMatch),
          landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)};
}

}  // namespace

std::string pdfDocument(const PrintedPage& page, int copies, const PrintedDocument& document) {
  const bool fontsAreThere = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
  if (copies < 1 || page.size().isEmpty() || !fontsAreThere) throw printerFailed();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QPdfWriter writer(&buffer);
  writer.setTitle(QString::fromStdString(document.title));
  writer.setCreator(QString::fromStdString(document.creator));
  QPainter painter;
  if (!buffer.open(QIODevice::WriteOnly) || !writer.setPageLayout(layoutOf(page.size())) ||
      !painter.begin(&writer))
    throw printerFailed();
  const QRectF sheet(QPointF(0, 0), page.size() * (writer.resolution() / kTwipsPerInch));
  for (int copy = 1; copy <= copies; ++copy) {
    if (copy > 1 && !writer.newPage()) throw printerFailed();
    page.paint(painter, sheet);
  }
  if (!painter.end()) throw printerFailed();
  return bytes.toStdString();
}

}  // namespace zel
