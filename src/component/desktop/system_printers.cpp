#include "component/desktop/system_printers.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>

namespace zel {
namespace {

constexpr double kTwipsPerMillimetre = kTwipsPerInch / 25.4;

// Millimetres are exact for both families of papers; points are whole numbers in the toolkit.
PaperFormat paperOf(const QPageSize& size) {
  const QSizeF sheet = size.size(QPageSize::Millimeter);
  const QString name = size.id() == QPageSize::Custom ? size.name() : QPageSize::key(size.id());
  return {name.toStdString(),
          std::round(sheet.width() * kTwipsPerMillimetre),
          std::round(sheet.height() * kTwipsPerMillimetre),
          {}};
}

bool usesLetter(QLocale::Territory territory) {
  // Those for which the Unicode CLDR names "US-Letter" (supplemental data, measurementData/paperSize).
  static constexpr std::array kTerritories{QLocale::Belize,       QLocale::Canada,      QLocale::Chile,
                                           QLocale::Colombia,     QLocale::CostaRica,   QLocale::ElSalvador,
                                           QLocale::Guatemala,    QLocale::Mexico,      QLocale::Nicaragua,
                                           QLocale::Panama,       QLocale::Philippines, QLocale::PuertoRico,
                                           QLocale::UnitedStates, QLocale::Venezuela};
  return std::find(kTerritories.begin(), kTerritories.end(), territory) != kTerritories.end();
}

// The system lets the paper have a locale of its own.
QLocale paperLocale() {
  const bool ofTheUser = QLocale() == QLocale::system() && qEnvironmentVariableIsEmpty("LC_ALL");
  if (ofTheUser && !qEnvironmentVariableIsEmpty("LC_PAPER")) return QLocale(qEnvironmentVariable("LC_PAPER"));
  return {};
}

// The toolkit knows no printer before there is an application.
QStringList printers() {
  const bool graphics = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
  return graphics ? QPrinterInfo::availablePrinterNames() : QStringList();
}

}  // namespace

QPageLayout::Orientation layoutOrientation(PageOrientation orientation) {
  return orientation == PageOrientation::kLandscape ? QPageLayout::Landscape : QPageLayout::Portrait;
}

PageOrientation orientationOf(const QPageLayout& layout) {
  return layout.orientation() == QPageLayout::Landscape ? PageOrientation::kLandscape
                                                        : PageOrientation::kPortrait;
}

bool goesIntoFile(const QPrinter& printer) { return !printer.outputFileName().isEmpty(); }

bool isPrinter(const QString& name) { return printers().contains(name); }

PaperFormat paperOf(const QPrinter& printer) {
  QPageLayout layout = printer.pageLayout();
  PaperFormat paper = paperOf(layout.pageSize());
  if (!goesIntoFile(printer)) {
    layout.setUnits(QPageLayout::Point);
    // The toolkit has the margins of the upright sheet for either orientation.
    const QMarginsF upright = layout.minimumMargins();
    paper.margins = {upright.left() * kTwipsPerPoint, upright.top() * kTwipsPerPoint,
                     upright.right() * kTwipsPerPoint, upright.bottom() * kTwipsPerPoint};
  }
  return layout.orientation() == QPageLayout::Landscape ? turned(paper) : paper;
}

QPageSize pageSizeOf(const PaperFormat& paper) {
  const QSizeF points(std::min(paper.width, paper.height) / kTwipsPerPoint,
                      std::max(paper.width, paper.height) / kTwipsPerPoint);
  return QPageSize(points, QPageSize::Point, QString::fromStdString(paper.name));
}

QPageSize usualSize(const QString& printer) {
  const QPageSize own = QPrinterInfo::printerInfo(printer).defaultPageSize();
  return own.isValid() ? own : pageSizeOf(localPaper(PageOrientation::kPortrait));
}

QList<QPageSize> sizesOf(const QString& printer) {
  QList<QPageSize> own = QPrinterInfo::printerInfo(printer).supportedPageSizes();
  if (!own.isEmpty()) return own;
  QList<QPageSize> sizes;
  for (const auto id : {QPageSize::A3, QPageSize::A4, QPageSize::A5, QPageSize::B4, QPageSize::B5,
                        QPageSize::Letter, QPageSize::Legal, QPageSize::Executive, QPageSize::Tabloid})
    sizes += QPageSize(id);
  return sizes;
}

bool takesPaper(const QString& printer, const QPageSize& size) {
  const QList<QPageSize> sizes = sizesOf(printer);
  return std::any_of(sizes.begin(), sizes.end(),
                     [&size](const QPageSize& own) { return own.isEquivalentTo(size); });
}

PaperFormat localPaper(PageOrientation orientation) {
  const bool letter = usesLetter(paperLocale().territory());
  return lying(letter ? letterPaper() : a4Paper(), orientation);
}

}  // namespace zel
