#include "component/desktop/picture_application.h"

#include <QApplication>
#include <QVariant>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace zel {
namespace {

// Properties of the application.
constexpr const char* kScreenless = "_zel_screenlessPictures";
constexpr const char* kNobodyChose = "_zel_screenlessByDefault";

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

// Numbers keep the decimal point that they had: an application takes over the user's locale.
class NumericLocale {
 public:
  NumericLocale() : before_(std::setlocale(LC_NUMERIC, nullptr)) {}
  ~NumericLocale() { std::setlocale(LC_NUMERIC, before_.c_str()); }
  NumericLocale(const NumericLocale&) = delete;
  NumericLocale& operator=(const NumericLocale&) = delete;

 private:
  std::string before_;
};

// What the toolkit would say of a session that it finds no folder of, and the like, is of no matter to a
// picture.
class SilentToolkit {
 public:
  SilentToolkit() : before_(qInstallMessageHandler(&SilentToolkit::take)) {}
  ~SilentToolkit() { qInstallMessageHandler(before_); }
  SilentToolkit(const SilentToolkit&) = delete;
  SilentToolkit& operator=(const SilentToolkit&) = delete;

 private:
  static void take(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qUtf8Printable(text));
  }

  QtMessageHandler before_;
};

}  // namespace

bool ensurePictureApplication() {
  if (QCoreApplication::instance() != nullptr)
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
  // Where nobody has chosen and there is nothing to show windows on, the toolkit would end the process.
  const bool nobodyChose = !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM");
  if (nobodyChose) qputenv("QT_QPA_PLATFORM", "offscreen");
  static char name[] = "zelProfiler01";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  const NumericLocale locale;
  const SilentToolkit silence;
  // Never deleted: pictures may be asked for until the end of the process.
  static QApplication* const application = new QApplication(count, arguments);
  application->setProperty(kScreenless, QGuiApplication::platformName() == QLatin1String("offscreen"));
  application->setProperty(kNobodyChose, nobodyChose);
  return true;
}

bool allowWindows() {
  QCoreApplication* application = QCoreApplication::instance();
  if (application == nullptr || application->property(kNobodyChose).toBool()) return false;
  application->setProperty(kScreenless, false);
  return true;
}

bool isScreenlessPictureApplication() {
  return QCoreApplication::instance() != nullptr &&
         QCoreApplication::instance()->property(kScreenless).toBool();
}

}  // namespace zel
