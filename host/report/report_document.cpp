#include "report/report_document.h"

#include <QFontDatabase>
#include <QIODevice>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <optional>

namespace zel::host {
namespace {

constexpr int kDotsPerInch = 1200;
constexpr double kMmOfInch = 25.4;

// Without margins: the pages have their own.
QPageLayout pageLayout(const Sheet& sheet) {
  const bool lying = sheet.width > sheet.height;
  const QSizeF upright = lying ? QSizeF(sheet.height, sheet.width) : QSizeF(sheet.width, sheet.height);
  return {QPageSize(upright, QPageSize::Millimeter, QString(), QPageSize::FuzzyMatch),
          lying ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)};
}

// The toolkit lists some families whatever there is.
bool hasFont() {
  const QStringList families = QFontDatabase::families();
  return std::any_of(families.begin(), families.end(), [](const QString& family) {
    return family != QLatin1String("Monospace") && family != QLatin1String("Sans Serif") &&
           family != QLatin1String("Serif");
  });
}

}  // namespace

struct ReportDocument::Self {
  explicit Self(QIODevice& device) : writer(&device) {}
  ~Self() {
    if (painter.isActive()) painter.end();
  }

  QPdfWriter writer;
  QPainter painter;
  std::optional<PageText> text;
  QString problem;
  bool good = true;
};

ReportDocument::ReportDocument(QIODevice& device, const Sheet& sheet, const QString& title,
                               const QString& creator)
    : self_(std::make_unique<Self>(device)) {
  Self& self = *self_;
  self.writer.setResolution(kDotsPerInch);
  self.writer.setTitle(title);
  self.writer.setCreator(creator);
  if (!hasFont())
    self.problem =
        QStringLiteral("there is no font for the pages; install one, such as the package fonts-liberation");
  else if (!self.writer.setPageLayout(pageLayout(sheet)) || !self.painter.begin(&self.writer))
    self.problem = QStringLiteral("the document cannot be begun");
  self.text.emplace(self.painter, kDotsPerInch / kMmOfInch);
}

ReportDocument::~ReportDocument() = default;

const QString& ReportDocument::problem() const { return self_->problem; }

PageText& ReportDocument::page() { return *self_->text; }

void ReportDocument::nextPage() { self_->good = self_->writer.newPage() && self_->good; }

bool ReportDocument::finish() { return self_->painter.end() && self_->good; }

}  // namespace zel::host
