// A host that is a Qt program: the profile window is one of its windows, in its own event loop.
#include <zel/profile_control.h>
#include <zel/qobject.h>

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  QApplication application(argc, argv);

  // The application object can be any QObject with these properties, declared or dynamic.
  QObject planner;
  planner.setProperty("Title", "Host Planner");
  planner.setProperty("Path", ".");

  zel::ProfileControl profiler;  // made after the QApplication, on its thread
  profiler.SetClientApp(zel::dispatchFromQObject(&planner));

  QPushButton button("Profile");
  QObject::connect(&button, &QPushButton::clicked, [&profiler] {
    profiler.ShowMainForm({36.40, -84.35, 30}, {36.22, -84.12, 30});
    std::printf("The window is %s.\n", profiler.get_PFrmLoaded() ? "open" : "not open");
  });
  button.show();

  // With an argument the host plays its user: it clicks, and ends after so many milliseconds.
  if (argc > 1) {
    QTimer::singleShot(0, &button, &QPushButton::click);
    QTimer::singleShot(std::atoi(argv[1]), &application, &QApplication::quit);
  }
  const int code = QApplication::exec();
  profiler.UnloadMainForm();
  return code;  // the profiler goes before the application object and the QApplication
}
