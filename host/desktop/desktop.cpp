#include "desktop/desktop.h"

#include <QApplication>
#include <stdexcept>
#include <string>

#include "desktop/gnuplot.h"
#include "desktop/main_window.h"
#include "desktop/program_files.h"
#include "desktop/program_icon.h"
#include "zel/c_api.h"
#include "zel/profile_control.h"
#include "zel/windows.h"

namespace zel::host {

int runDesktop(ProfileControl& component, const std::string& file) {
  // Makes the application where a display answers; the toolkit itself would end the process.
  if (const std::string problem = windowsProblem(); !problem.empty()) throw std::runtime_error(problem);
  QApplication::setApplicationDisplayName(QString());
  QApplication::setApplicationName(QStringLiteral("terrain-profiler"));  // X11's window class: StartupWMClass
  QApplication::setDesktopFileName(QStringLiteral("terrain-profiler"));
  QApplication::setWindowIcon(programIcon());
  provideGnuplot();  // for the profile window's signal graph; without one it writes the script alone

  MainWindowServices services;
  services.datum = component.get_StaDatum() == 0 ? PlanDatum::kNad27 : PlanDatum::kNad83;
  if (const std::string folder = stateFolder(); !folder.empty())
    services.recoveryFolder = folder + "/recovery";
  services.guide = guideFile();
  int exitCode = 0;
  {
    MainWindow window(component, services);
    window.show();
    window.start(file);
    if (zelProfilerRun(&exitCode) != ZEL_OK) throw std::runtime_error(zelProfilerLastError());
  }
  return exitCode;
}

}  // namespace zel::host
