// Draws the pictures of the documents: the profile window, the settings dialog, the link budget, the print
// preview and the questions ahead of a print as a host shows them, and the loss table, without a display,
// each in a file of its own.
//
//     screenshots FOLDER
//
// The same files come out each time: platform, style, palette, font, scale and the time of day are fixed, and
// the settings are the defaults. It needs the font DejaVu Sans. Exit status 0, or 1 with one line on standard
// error.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <string>

#include "component/component.h"
#include "component/desktop/desktop_services.h"
#include "screenshots/shooting.h"
#include "support/scripted_platform.h"
#include "support/temporary_folder.h"
#include "zel/automation.h"
#include "zel/loss_table_image.h"
#include "zel/profile_control.h"

namespace zel {
namespace {

using namespace shots;

constexpr StationProfile_Type kStart{36.40, -84.35, 30};
constexpr StationProfile_Type kEnd{36.22, -84.12, 30};
// Shares of the plot's width: the foot of the ridge, its top, and what the pointer reads.
constexpr double kLeftMarker = 0.18, kRightMarker = 0.36, kPointer = 0.62;

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

void shootPreview(const QDir& folder) {
  shootDialog(
      "printPreview", folder, "print-preview.png",
      [] { part<QAction>(topWindow("frmProfile"), "mnuPrintPreview").trigger(); },
      [](QWidget& dialog) {
        part<QLineEdit>(dialog, "txtDescription").setText(QStringLiteral("North ridge, first draft"));
        part<QComboBox>(dialog, "cboPaper").setCurrentText(QStringLiteral("A4"));
      });
}

constexpr const char* kPdfFile = "/home/planner/Documents/Terrain Profile.pdf";

void shootPrinterDialog(const QDir& folder) {
  shootDialog(
      "printDialog", folder, "printer-dialog.png",
      [] { part<QAction>(topWindow("frmProfile"), "mnuPrint").trigger(); },
      [](QWidget& dialog) {
        part<QComboBox>(dialog, "paper").setCurrentText(QStringLiteral("A4"));
        part<QLineEdit>(dialog, "filename").setText(QLatin1String(kPdfFile));
      });
}

// It comes after the printer dialog; closing it prints nothing.
void shootPrintDescription(const QDir& folder) {
  QTimer printer;
  QObject::connect(&printer, &QTimer::timeout, &printer, [&printer] {
    auto* dialog = qobject_cast<QDialog*>(shownWindow("printDialog"));
    if (dialog == nullptr) return;
    printer.stop();
    dialog->accept();
  });
  printer.start(20);
  shootDialog(
      "frmPrtDesc", folder, "print-description.png",
      [] { part<QAction>(topWindow("frmProfile"), "mnuPrint").trigger(); },
      [](QWidget& dialog) {
        part<QLineEdit>(dialog, "txtDescription").setText(QStringLiteral("North ridge, first draft"));
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
  shootPrinterDialog(folder);
  shootPrintDescription(folder);
  shootDialog(
      "frmOptionsProfile", folder, "settings-dialog.png", [&profiler] { profiler.ShowOptionsForm(); },
      [](QWidget&) {});
  profiler.UnloadMainForm();
  drawLossTable(folder);
}

}  // namespace
}  // namespace zel

int main(int argc, char** argv) { return zel::shots::drawInto(argc, argv, "screenshots", zel::shootAll); }
