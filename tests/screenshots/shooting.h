// What the programs that draw the documents' pictures share: a graphical application that looks the same on
// every machine, and the windows' way into files.
//
// Platform, style, palette, font and scale are fixed, and settings, state and caches are those of nobody. It
// needs the font DejaVu Sans.
#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QImage>
#include <QLocale>
#include <QStyle>
#include <QStyleFactory>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

#include "support/temporary_folder.h"

namespace zel::shots {

inline constexpr int kPatience = 20'000;  // ms until something that does not come is given up

class ScreenshotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Null when no such window is shown.
inline QWidget* shownWindow(const char* name) {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->objectName() == QLatin1String(name) && window->isVisible()) return window;
  return nullptr;
}

inline QWidget& topWindow(const char* name) {
  if (QWidget* window = shownWindow(name)) return *window;
  throw ScreenshotError(std::string(name) + " is not shown");
}

template <typename Kind>
Kind& part(const QWidget& window, const char* name) {
  auto* found = window.findChild<Kind*>(QLatin1String(name));
  if (found == nullptr) throw ScreenshotError(std::string(name) + " is not there");
  return *found;
}

inline void handleEvents() {
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

inline void save(QWidget& window, const QDir& folder, const char* name) {
  handleEvents();
  const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
  const QString file = folder.filePath(QLatin1String(name));
  if (!picture.save(file, "PNG", 0)) throw ScreenshotError("cannot write " + file.toStdString());
}

// Of a dialog, which has an event loop of its own: `show` returns when it is closed.
inline void shootDialog(const char* name, const QDir& folder, const char* file,
                        const std::function<void()>& show, const std::function<void(QWidget&)>& prepare) {
  constexpr int kStep = 20;  // ms
  std::string failure = std::string(name) + " is not shown";
  bool done = false;
  int waited = 0;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    QWidget* dialog = shownWindow(name);
    if (dialog == nullptr && (waited += kStep) < kPatience) return;
    look.stop();
    done = true;
    try {
      QWidget& shown = topWindow(name);
      prepare(shown);
      save(shown, folder, file);
      failure.clear();
    } catch (const ScreenshotError& error) {
      failure = error.what();
    }
    if (dialog == nullptr) dialog = QApplication::activeModalWidget();
    if (dialog != nullptr) dialog->close();
  });
  look.start(kStep);
  show();
  // Where it is shown later, after work in the background.
  while (!done) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  if (!failure.empty()) throw ScreenshotError(failure);
}

inline void dressApplication() {
  const QString family = QStringLiteral("DejaVu Sans");
  if (!QFontDatabase::families().contains(family))
    throw ScreenshotError("the font DejaVu Sans is missing (package fonts-dejavu-core)");
  QFont font(family, 9);
  font.setStyleStrategy(QFont::NoSubpixelAntialias);
  QLocale::setDefault(QLocale::c());
  QApplication::setFont(font);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(QApplication::style()->standardPalette());
  QApplication::setCursorFlashTime(0);
}

inline const char*& programName() {
  static const char* name = "";
  return name;
}

// A program's main(): its only argument is the folder. Exit status 0, 1 with one line on standard error, or 2
// for wrong usage.
inline int drawInto(int argc, char** argv, const char* program,
                    const std::function<void(const QDir&)>& draw) {
  programName() = program;
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", program);
    return 2;
  }
  // Settings of nobody's, and nothing of the desktop that this runs on.
  const test::TemporaryFolder home;
  for (const char* variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
    qputenv(variable, home.path().c_str());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", "1");
  qputenv("QT_FONT_DPI", "96");
  qputenv("CUPS_SERVER", "/nowhere/cups.sock");  // the machine's printers
  for (const char* variable : {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_SCREEN_SCALE_FACTORS"})
    qunsetenv(variable);
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    // What the platform lacks is no matter here.
    if (type != QtDebugMsg && !text.startsWith(QLatin1String("This plugin does not support")))
      std::fprintf(stderr, "%s: %s\n", programName(), qUtf8Printable(text));
  });
  try {
    const QApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.exists()) throw ScreenshotError("there is no folder " + folder.path().toStdString());
    dressApplication();
    draw(folder);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program, error.what());
    return 1;
  }
  return 0;
}

}  // namespace zel::shots
