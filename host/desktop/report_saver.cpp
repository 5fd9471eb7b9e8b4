#include "desktop/report_saver.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QTimer>
#include <QVBoxLayout>
#include <optional>
#include <utility>

namespace zel::host {
namespace {

// Escape and the window's cross cancel, too. The toolkit's own would handle events within each step.
class ProgressWindow final : public QDialog {
 public:
  ProgressWindow(int steps, QWidget* parent) : QDialog(parent), bar_(new QProgressBar) {
    setObjectName(QStringLiteral("reportProgress"));
    setWindowTitle(QStringLiteral("Report"));
    // What the report is made from must stay as it is: the datum, the settings.
    setWindowModality(Qt::WindowModal);
    bar_->setObjectName(QStringLiteral("reportProgressBar"));
    bar_->setAccessibleName(QStringLiteral("Progress of the report"));
    bar_->setRange(0, steps);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("reportProgressCancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Making the report")));
    layout->addWidget(bar_);
    layout->addWidget(buttons);
  }
  void reject() override {
    if (onCancel) onCancel();
  }
  void setDone(int steps) { bar_->setValue(steps); }

  std::function<void()> onCancel;

 private:
  QProgressBar* bar_;
};

}  // namespace

struct ReportSaver::Self {
  QSaveFile file;
  std::optional<ReportJob> job;
  std::unique_ptr<ProgressWindow> progress;
  QTimer later;  // the end, when nothing of the job is under way any more
  Ended ended;

  void finish() {
    progress->hide();
    const Report report = job ? job->report() : Report();
    QString problem = QString::fromStdString(report.error);
    if (!report.finished)
      file.cancelWriting();
    else if (!file.commit())
      problem = file.errorString();
    if (!job) problem = file.errorString();
    const Ended tell = std::move(ended);
    tell(problem, report);
  }
};

ReportSaver::ReportSaver(ReportRequest request, const QString& path, QWidget* parent, Ended ended)
    : self_(std::make_unique<Self>()) {
  Self& self = *self_;
  self.ended = std::move(ended);
  self.file.setFileName(path);
  self.progress = std::make_unique<ProgressWindow>(static_cast<int>(2 * request.links.size()), parent);
  self.later.setSingleShot(true);
  self.later.setInterval(0);
  QObject::connect(&self.later, &QTimer::timeout, &self.later, [&self] { self.finish(); });
  if (!self.file.open(QIODevice::WriteOnly)) {
    self.later.start();
    return;
  }
  self.job.emplace(std::move(request), self.file);
  self.job->onProgress = [&self](int done, int) { self.progress->setDone(done); };
  self.job->onEnd = [&self] { self.later.start(); };
  self.progress->onCancel = [&self] { self.job->cancel(); };
  self.progress->show();
  self.job->start();
}

ReportSaver::~ReportSaver() = default;

}  // namespace zel::host
