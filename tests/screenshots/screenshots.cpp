// Draws the pictures of the documents: the profile window, the settings dialog, the link budget and the print
// preview as a host shows them, and the loss table, without a display, each in a file of its own.
//
//     screenshots FOLDER
//
// The same files come out each time: platform, style, palette, font, scale and the time of day are fixed, and
// the settings are the defaults. It needs the font DejaVu Sans. Exit status 0, or 1 with one line on standard
// error.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QImage>
#include <QLineEdit>
#include <QLocale>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include "component/component.h"
#include "component/desktop/desktop_services.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"
#include "zel/automation.h"
#include "zel/loss_table_image.h"
#include "zel/profile_control.h"

namespace zel {
namespace {

constexpr StationProfile_Type kStart{36.40, -84.35, 30};
constexpr StationProfile_Type kEnd{36.22, -84.12, 30};
// Shares of the plot's width: the foot of the ridge, its top, and what the pointer reads.
constexpr double kLeftMarker = 0.18, kRightMarker = 0.36, kPointer = 0.62;

class ScreenshotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

QWidget& topWindow(const char* name) {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->objectName() == QLatin1String(name) && window->isVisible()) return *window;
  throw ScreenshotError(std::string(name) + " is not shown");
}

template <typename Kind>
Kind& part(const QWidget& window, const char* name) {
  auto* found = window.findChild<Kind*>(QLatin1String(name));
  if (found == nullptr) throw ScreenshotError(std::string(name) + " is not there");
  return *found;
}

void handleEvents() {
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

void save(QWidget& window, const QDir& folder, const char* name) {
  handleEvents();
  const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
  const QString file = folder.filePath(QLatin1String(name));
  if (!picture.save(file, "PNG", 0)) throw ScreenshotError("cannot write " + file.toStdString());
}

void shootProfile(ProfileControl& profiler, const QDir& folder) {
  profiler.ShowMainForm(kStart, kEnd);
  QWidget& window = topWindow("frmProfile");
  handleEvents();
  auto& plot = part<QWidget>(window, "Picture1");
  const auto at = [&plot](double share) {
    return QPoint(static_cast<int>(plot.width() * share), plot.height() / 2);
  };
  QTest::mouseClick(&plot, Qt::LeftButton, {}, at(kLeftMarker));
  QTest::mouseClick(&plot, Qt::LeftButton, {}, at(kRightMarker));
  handleEvents();
  QTest::mouseMove(&plot, at(kPointer));
  save(window, folder, "profile-window.png");
}

void shootLinkBudget(const QDir& folder) {
  part<QAction>(topWindow("frmProfile"), "mnuProfileLinkBudget").trigger();
  QWidget& window = topWindow("frmLinkBudget");
  save(window, folder, "link-budget.png");
  window.close();
}

// Of a dialog, which has an event loop of its own: `show` returns when it is closed.
template <typename Show, typename Prepare>
void shootDialog(const char* name, const QDir& folder, const char* file, const Show& show,
                 const Prepare& prepare) {
  std::string failure = std::string(name) + " is not shown";
  QTimer::singleShot(0, qApp, [&] {
    try {
      QWidget& dialog = topWindow(name);
      prepare(dialog);
      save(dialog, folder, file);
      failure.clear();
      dialog.close();
    } catch (const ScreenshotError& error) {
      failure = error.what();
      if (QWidget* open = QApplication::activeModalWidget()) open->close();
    }
  });
  show();
  if (!failure.empty()) throw ScreenshotError(failure);
}

void shootPreview(const QDir& folder) {
  shootDialog(
      "printPreview", folder, "print-preview.png",
      [] { part<QAction>(topWindow("frmProfile"), "mnuPrintPreview").trigger(); },
      [](QWidget& dialog) {
        part<QLineEdit>(dialog, "txtDescription").setText(QStringLiteral("North ridge, first draft"));
        part<QComboBox>(dialog, "cboPaper").setCurrentText(QStringLiteral("A4"));
      });
}

void drawLossTable(const QDir& folder) {
  LossTableImageRequest request;
  request.from = {kStart.Lat, kStart.Lon};
  request.to = {kEnd.Lat, kEnd.Lon};
  request.fromHeight = double{kStart.AntHt};
  request.toHeight = double{kEnd.AntHt};
  request.width = 700;
  request.height = 420;
  const LossTableImage image = renderLossTableImage(request);
  if (image.status != 0) throw ScreenshotError(image.error);
  QFile file(folder.filePath(QStringLiteral("loss-table.png")));
  const auto size = static_cast<qint64>(image.png.size());
  if (!file.open(QIODevice::WriteOnly) || file.write(image.png.data(), size) != size)
    throw ScreenshotError("cannot write " + file.fileName().toStdString());
}

// The desktop's own, but that the preview's page bears the same time in every picture.
ComponentServices servicesAtAFixedTime() {
  ComponentServices services = makeDesktopServices();
  services.clock = std::make_shared<test::FixedClock>();
  return services;
}

void shootAll(const QDir& folder) {
  const QString family = QStringLiteral("DejaVu Sans");
  if (!QFontDatabase::families().contains(family))
    throw ScreenshotError("the font DejaVu Sans is missing (package fonts-dejavu-core)");
  if (!folder.exists()) throw ScreenshotError("there is no folder " + folder.path().toStdString());
  QFont font(family, 9);
  font.setStyleStrategy(QFont::NoSubpixelAntialias);
  QApplication::setFont(font);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(QApplication::style()->standardPalette());
  QApplication::setCursorFlashTime(0);
  const test::TemporaryFolder logs;
  Component component(servicesAtAFixedTime());
  const ComponentSubstitute substitute(component);
  ProfileControl profiler;
  profiler.SetClientApp(makePropertyBag({{"Title", "Terrain Profiler"},
                                         {"Path", logs.path().string()},
                                         {"ProductName", "Terrain Profiler"},
                                         {"Major", 0},
                                         {"Minor", 1},
                                         {"Revision", 0}}));
  shootProfile(profiler, folder);
  shootLinkBudget(folder);
  shootPreview(folder);
  shootDialog(
      "frmOptionsProfile", folder, "settings-dialog.png", [&profiler] { profiler.ShowOptionsForm(); },
      [](QWidget&) {});
  profiler.UnloadMainForm();
  drawLossTable(folder);
}

}  // namespace
}  // namespace zel

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: screenshots FOLDER\n", stderr);
    return 2;
  }
  // Settings of nobody's, and nothing of the desktop that this runs on.
  const zel::test::TemporaryFolder home;
  qputenv("XDG_CONFIG_HOME", home.path().c_str());
  qputenv("XDG_RUNTIME_DIR", home.path().c_str());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", "1");
  qputenv("QT_FONT_DPI", "96");
  for (const char* variable : {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_SCREEN_SCALE_FACTORS"})
    qunsetenv(variable);
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    // What the platform lacks is no matter here.
    if (type != QtDebugMsg && !text.startsWith(QLatin1String("This plugin does not support")))
      std::fprintf(stderr, "screenshots: %s\n", qUtf8Printable(text));
  });
  try {
    const QApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    zel::shootAll(QDir(QString::fromLocal8Bit(argv[1])));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "screenshots: %s\n", error.what());
    return 1;
  }
  return 0;
}
