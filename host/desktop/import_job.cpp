#include "desktop/import_job.h"

#include <QFileInfo>
#include <QLabel>
#include <QProgressDialog>
#include <QTimer>
#include <atomic>
#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <thread>

namespace zel::host {
namespace {

constexpr int kProgressSteps = 1000;
constexpr int kPatienceMs = 400;  // before a window is worth while

}  // namespace

struct ImportJob::Self {
  std::atomic<bool> cancelled = false;
  std::atomic<int> progress = 0;
  std::atomic<bool> finished = false;
  ImportedStations result;  // the thread's until it is finished
  std::unique_ptr<QProgressDialog> window;
  QTimer look;
  std::thread thread;
  std::function<void(const ImportedStations&)> done;
  std::function<void()> onCancelled;

  void read(const std::string& path) {
    try {
      ImportOptions options;
      options.cancelled = &cancelled;
      options.progress = [this](double fraction) { progress = static_cast<int>(fraction * kProgressSteps); };
      result = importStations(path, options);
    } catch (const std::bad_alloc&) {
      result = {};
      result.error = "there is not enough memory for this file";
    } catch (const std::exception& error) {
      result = {};
      result.error = error.what();
    }
    finished = true;
  }

  // The callbacks may end this job, so nothing of it is touched after them.
  void lookOnce() {
    if (cancelled) {
      look.stop();
      window->hide();
      const auto tell = onCancelled;
      tell();
      return;
    }
    if (!finished) {
      window->setValue(progress);
      return;
    }
    look.stop();
    window->hide();
    const ImportedStations taken = std::move(result);
    const auto tell = done;
    tell(taken);
  }
};

ImportJob::ImportJob(const std::string& path, QWidget* parent,
                     std::function<void(const ImportedStations&)> done, std::function<void()> cancelled)
    : self_(std::make_unique<Self>()) {
  self_->done = std::move(done);
  self_->onCancelled = std::move(cancelled);
  self_->window =
      std::make_unique<QProgressDialog>(QString(), QStringLiteral("Cancel"), 0, kProgressSteps, parent);
  QProgressDialog& window = *self_->window;
  auto* label = new QLabel(&window);
  label->setTextFormat(Qt::PlainText);
  label->setText(QStringLiteral("Reading ") + QFileInfo(QString::fromStdString(path)).fileName());
  window.setLabel(label);
  window.setObjectName(QStringLiteral("importProgress"));
  window.setWindowTitle(QStringLiteral("Import Stations"));
  window.setAutoReset(false);
  window.setAutoClose(false);
  window.setMinimumDuration(kPatienceMs);
  window.setValue(0);
  QObject::connect(&window, &QProgressDialog::canceled, &window,
                   [self = self_.get()] { self->cancelled = true; });
  QObject::connect(&self_->look, &QTimer::timeout, &self_->look, [self = self_.get()] { self->lookOnce(); });
  try {
    self_->thread = std::thread([self = self_.get(), path] { self->read(path); });
  } catch (const std::system_error& error) {
    self_->result.error = std::string("no thread can be started: ") + error.what();
    self_->finished = true;
  }
  self_->look.start(20);
}

ImportJob::~ImportJob() {
  self_->cancelled = true;
  if (self_->thread.joinable()) self_->thread.join();
}

}  // namespace zel::host
