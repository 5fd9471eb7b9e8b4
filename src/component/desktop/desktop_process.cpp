#include "component/desktop/desktop_process.h"

#include <QApplication>
#include <QCursor>
#include <QMetaObject>
#include <QThread>
#include <QVariant>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "component/desktop/desktop_dialogs.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr const char* kQuitRequest = "_zel_quitRequest";  // a property of the application

void quit(int exitCode) {
  QCoreApplication* application = QCoreApplication::instance();
  application->setProperty(kQuitRequest, exitCode);
  // With no loop running the toolkit would only refuse to run any other, such as a box's.
  if (QThread::currentThread()->loopLevel() == 0) return;
  QObject::connect(
      application, &QCoreApplication::aboutToQuit, application, [] { forgetQuitRequest(); },
      Qt::SingleShotConnection);
  QCoreApplication::exit(exitCode);
}

}  // namespace

void DesktopPointer::set(PointerShape shape) {
  if (!canShowWidgets()) return;
  const bool wanted = shape == PointerShape::kHourglass;
  if (wanted == hourglass_) return;
  if (wanted) {
    QApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
  } else {
    QApplication::restoreOverrideCursor();
  }
  hourglass_ = wanted;
}

std::optional<int> keptQuitRequest() {
  if (QCoreApplication::instance() == nullptr) return std::nullopt;
  const QVariant request = QCoreApplication::instance()->property(kQuitRequest);
  return request.isValid() ? std::optional<int>(request.toInt()) : std::nullopt;
}

void forgetQuitRequest() {
  if (QCoreApplication::instance() != nullptr)
    QCoreApplication::instance()->setProperty(kQuitRequest, QVariant());
}

void DesktopEventLoop::postQuit(int exitCode) {
  QCoreApplication* application = QCoreApplication::instance();
  if (application == nullptr) return;
  // Posted, so that the procedure that failed is left first and a loop that has yet to start ends as well.
  QMetaObject::invokeMethod(
      application, [exitCode] { quit(exitCode); }, Qt::QueuedConnection);
}

void DesktopEventLoop::processPending() {
  if (canShowWidgets()) QCoreApplication::processEvents();
}

LocalTime SystemClock::now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  if (::localtime_r(&seconds, &local) == nullptr) throw RuntimeError::internalError("no local time");
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

std::string SystemProcess::moduleFileName() const {
  return std::filesystem::read_symlink("/proc/self/exe").string();
}

void SystemProcess::endRun() {
  std::fflush(nullptr);
  std::_Exit(0);
}

void AbortingHardStop::stop(std::string_view reason) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(reason.size()), reason.data());
  std::fflush(nullptr);
  std::abort();
}

}  // namespace zel
