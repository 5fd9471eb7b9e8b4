#include "report/report_document.h"

#include <QFileDevice>
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

// Passes on what is written, and remembers when not all of it could be: the toolkit's writer does not look,
// and its files take a write that was cut short for a good one.
class CheckedDevice final : public QIODevice {
 public:
  explicit CheckedDevice(QIODevice& device) : device_(device) { open(WriteOnly | Unbuffered); }

  bool isSequential() const override { return true; }
  bool good() const { return good_; }
  // What a file still holds back is written.
  bool finish() {
    if (auto* file = qobject_cast<QFileDevice*>(&device_)) note(file->flush());
    return good_;
  }
  // Of the first failure.
  QString reason() const { return reason_.isEmpty() ? QStringLiteral("the disk may be full") : reason_; }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 length) override {
    const qint64 written = device_.write(data, length);
    if (written != length) note(false);
    return length;  // the writer goes on to the end of what it has begun; nobody takes the file
  }

 private:
  void note(bool well) {
    if (well) return;
    good_ = false;
    if (const auto* file = qobject_cast<QFileDevice*>(&device_);
        reason_.isEmpty() && file != nullptr && file->error() != QFileDevice::NoError)
      reason_ = file->errorString();
  }

  QIODevice& device_;
  QString reason_;
  bool good_ = true;
};

}  // namespace

struct ReportDocument::Self {
  explicit Self(QIODevice& device) : checked(device), writer(&checked) {}
  ~Self() {
    if (painter.isActive()) painter.end();
  }

  CheckedDevice checked;
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

QString ReportDocument::problem() const {
  if (!self_->problem.isEmpty() || self_->checked.good()) return self_->problem;
  return QStringLiteral("not all of it can be written: ") + self_->checked.reason();
}

PageText& ReportDocument::page() { return *self_->text; }

void ReportDocument::nextPage() { self_->good = self_->writer.newPage() && self_->good; }

bool ReportDocument::finish() {
  const bool ended = self_->painter.end();
  return self_->checked.finish() && ended && self_->good;
}

}  // namespace zel::host
