// A host whose process differs from that of the other tests: in when its application object comes and goes,
// in its display, in what else it has loaded. Each case is a run of its own,
//
//     windows_host CASE [FILE]
//
// which says "ok", or what was wrong.
#include <dlfcn.h>

#include <QApplication>
#include <QImage>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "support/temporary_folder.h"
#include "ui/profile_window/frm_profile.h"
#include "ui/profile_window/picture_box.h"
#include "zel/c_api.h"
#include "zel/profile_control.h"
#include "zel/windows.h"

namespace {

using zel::ProfileControl;

constexpr StationProfile_Type kStart{36.40, -84.35, 30.0F};
constexpr StationProfile_Type kEnd{36.22, -84.12, 30.0F};

int failures = 0;

void expect(bool holds, const std::string& what) {
  if (holds) return;
  std::printf("wrong: %s\n", what.c_str());
  ++failures;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class Application {
 public:
  Application() : application_(count_, arguments_) {}

 private:
  char name_[12] = "host";
  char* arguments_[2] = {name_, nullptr};
  int count_ = 1;
  QApplication application_;
};

// A profiler bound to a host that has its log in a folder of its own.
class Profiler {
 public:
  Profiler() {
    control->SetClientApp(
        zel::makePropertyBag({{"Title", "Windows Host"}, {"Path", folder_.path().string()}}));
  }
  std::string log() const { return zel::test::fileBytes(folder_ / "zelErrorLog.txt"); }

  std::unique_ptr<ProfileControl> control = std::make_unique<ProfileControl>();

 private:
  zel::test::TemporaryFolder folder_;
};

int shownWindows() {
  int shown = 0;
  for (const QWidget* widget : QApplication::topLevelWidgets()) shown += widget->isVisible() ? 1 : 0;
  return shown;
}

// The component's window and one of the host's own.
zel::DispatchPtr openBoth(Profiler& profiler) {
  profiler.control->ShowMainForm(kStart, kEnd);
  zel::DispatchPtr own = profiler.control->get_PForm();
  own->call("Show");
  expect(shownWindows() == 2, "two windows are shown");
  expect(profiler.control->get_hWnd() != 0, "there is a handle");
  return own;
}

// That windows are refused with the words, and that the host goes on.
void expectRefused(const std::string& words) {
  Profiler profiler;
  const std::string problem = zel::windowsProblem();
  expect(contains(problem, words), "the problem has \"" + words + "\": " + problem);
  profiler.control->ShowMainForm(kStart, kEnd);
  expect(!profiler.control->get_PFrmLoaded() && profiler.control->get_hWnd() == 0, "there is no window");
  expect(contains(profiler.log(), "Windows cannot be shown: " + words),
         "the log says why: " + profiler.log());
  expect(contains(profiler.log(), "Error Number: 1001\r\n"), "its number is 1001");
  expect(contains(profiler.log(), "ProfileControl:ShowMainForm:"), "its place is ShowMainForm");
  profiler.control->ShowOptionsForm();
  expect(!profiler.control->get_OFrmLoaded(), "there is no dialog");
  expect(contains(profiler.log(), "ProfileControl:ShowOptionsForm:"), "ShowOptionsForm is refused, too");
  expect(profiler.control->get_PForm() == nullptr, "there is no window of the host's own");
  expect(contains(profiler.log(), "ProfileControl:Get PForm:"), "PForm is refused, too");
  // What needs no window works.
  expect(profiler.control->GetPathLoss(kStart, kEnd) > 100, "a loss is computed");
}

void applicationGoesFirst() {
  Profiler profiler;
  auto application = std::make_unique<Application>();
  const zel::DispatchPtr own = openBoth(profiler);
  const zel::DispatchPtr box = own->get("tbxFreq").toObject();
  application.reset();
  expect(!profiler.control->get_PFrmLoaded() && profiler.control->get_hWnd() == 0, "the window has gone");
  profiler.control->UnloadMainForm();
  try {
    box->get("Text");
    expect(false, "a control of a window that has gone fails");
  } catch (const zel::AutomationError& error) {
    expect(error.code() == zel::AutomationErrorCode::kFailed, "it fails as a control of no window");
  }
  expect(profiler.control->GetPathLoss(kStart, kEnd) > 100, "a loss is computed");
  expect(profiler.log().empty(), "nothing is logged: " + profiler.log());
}

void profilerGoesFirst() {
  const auto application = std::make_unique<Application>();
  Profiler profiler;
  zel::DispatchPtr own = openBoth(profiler);
  profiler.control.reset();
  expect(shownWindows() == 1, "the component's window has gone, the host's own stays");
  own.reset();
  expect(shownWindows() == 0, "both have gone");
}

void profilerGoesBeforeWhatIsPending() {
  const auto application = std::make_unique<Application>();
  Profiler profiler;
  profiler.control->ShowMainForm(kStart, kEnd);
  profiler.control.reset();  // its deletion is pending when the application goes
}

void anotherApplicationFollows() {
  Profiler profiler;
  for (int i = 0; i < 3; ++i) {
    const Application application;
    const zel::DispatchPtr own = openBoth(profiler);
    QCoreApplication::processEvents();
  }
  expect(!profiler.control->get_PFrmLoaded(), "the last has gone, too");
  expect(profiler.log().empty(), "nothing is logged: " + profiler.log());
}

// The host has none: one is made, and kept until the process ends. The profiler is made before it and goes
// after parts of it have gone, with its windows open.
void noApplication() {
  static Profiler profiler;
  static zel::DispatchPtr early;
  static const zel::DispatchPtr own = openBoth(profiler);
  early = profiler.control->get_PForm();
  early->call("Show");
  expect(QCoreApplication::instance() != nullptr, "an application was made");
  expect(zelProfilerProcessEvents(0) == ZEL_OK, "its events are handled");
  expect(profiler.log().empty(), "nothing is logged: " + profiler.log());
}

// The same under an application of the host's that is never deleted.
void applicationThatStays() {
  static Profiler profiler;
  static zel::DispatchPtr early;
  static auto* const application = new Application;
  expect(application != nullptr, "there is an application");
  early = openBoth(profiler);
}

// The process ends from within the settings dialog.
void exitInTheDialog() {
  static Profiler profiler;
  profiler.control->ShowMainForm(kStart, kEnd);
  QTimer::singleShot(0, qApp, [] {
    std::puts("ok");
    std::exit(0);  // NOLINT(concurrency-mt-unsafe)
  });
  profiler.control->ShowOptionsForm();
  expect(false, "the dialog has come back");
}

void noWidgets() {
  int count = 1;
  char name[] = "host";
  char* arguments[] = {name, nullptr};
  const QCoreApplication application(count, arguments);
  expectRefused("the process's application object is no QApplication");
}

void foreignThread() {
  const Application application;
  std::thread([] { expectRefused("they belong to the thread of the process's application object"); }).join();
}

void foreignToolkit(const char* library) {
  void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  expect(handle != nullptr, "the library is loaded");
  expectRefused("the process has loaded another version of the toolkit, libQt5Core.so.5");
  dlclose(handle);
  // Without it windows are shown.
  Profiler profiler;
  openBoth(profiler);
}

void foreignToolkitBesideAnApplication(const char* library) {
  const Application application;
  void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  const std::string problem = zel::windowsProblem();
  expect(contains(problem, "libQt5Core.so.5"), "windows are refused: " + problem);
  dlclose(handle);
}

void withoutDisplay() {
  unsetenv("QT_QPA_PLATFORM");
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  expectRefused("there is no display (neither DISPLAY nor WAYLAND_DISPLAY is set)");
}

void displayThatDoesNotAnswer() {
  unsetenv("QT_QPA_PLATFORM");
  unsetenv("WAYLAND_DISPLAY");
  setenv("DISPLAY", ":987", 1);
  expectRefused("the display does not answer (DISPLAY is \":987\"");
}

void waylandThatDoesNotAnswer() {
  unsetenv("QT_QPA_PLATFORM");
  unsetenv("DISPLAY");
  for (const std::string& name :
       {std::string("wayland-nobody"), std::string("/nowhere/wayland-0"), std::string(500, 'w')}) {
    setenv("WAYLAND_DISPLAY", name.c_str(), 1);
    expectRefused("the display does not answer");
  }
}

const QImage& picture(const zel::FrmProfile& window) {
  return const_cast<zel::FrmProfile&>(window).picture().canvas().image();
}

// Two device pixels to a logical one.
void ratioTwo() {
  setenv("QT_SCALE_FACTOR", "2", 1);
  const Application application;
  Profiler profiler;
  profiler.control->ShowMainForm(kStart, kEnd);
  QCoreApplication::processEvents();
  zel::FrmProfile* window = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (widget->isVisible()) window = dynamic_cast<zel::FrmProfile*>(widget);
  expect(window != nullptr, "there is a window");
  if (window == nullptr) return;
  zel::PictureBox& box = window->picture();
  expect(picture(*window).size() == box.size() * 2, "the picture has two pixels for one");
  const QImage fresh = picture(*window).copy();
  // Every second row would do for a stretched picture: the ground is as fine as the pixels.
  bool fine = false;
  for (int y = 0; y + 1 < fresh.height() && !fine; y += 2)
    for (int x = 0; x + 1 < fresh.width() && !fine; x += 2)
      fine = fresh.pixel(x, y) != fresh.pixel(x + 1, y + 1);
  expect(fine, "it is no enlarged one");
  const double x0 = window->state().plotIndex().startX();
  window->Picture1_MouseDown(static_cast<float>(x0 + 8.03), 0);
  window->Picture1_MouseDown(static_cast<float>(x0 + 15.01), 0);
  for (int i = 0; i < 50; ++i) window->Picture1_MouseMove(static_cast<float>(x0 + 0.37 * i), 300);
  expect(picture(*window) != fresh, "markers and strobe are seen");
  const zel::Strobe strobe = window->plotView()->strobe;
  window->cmdClear_Click(0);
  window->cmdClear_Click(1);
  expect(!window->plotView()->strobe.shown || strobe.shown, "the strobe is what it was");
  window->drawLine();
  expect(picture(*window) == fresh, "they leave no trace");
  window->Picture1_MouseDown(static_cast<float>(x0 + 8.03), 0);
  window->cmdClear_Click(0);
  expect(picture(*window) == fresh, "a marker alone leaves no trace");
}

const std::map<std::string, std::function<void(const char*)>> kCases{
    {"application-goes-first", [](const char*) { applicationGoesFirst(); }},
    {"profiler-goes-first", [](const char*) { profilerGoesFirst(); }},
    {"profiler-goes-before-what-is-pending", [](const char*) { profilerGoesBeforeWhatIsPending(); }},
    {"another-application-follows", [](const char*) { anotherApplicationFollows(); }},
    {"no-application", [](const char*) { noApplication(); }},
    {"application-that-stays", [](const char*) { applicationThatStays(); }},
    {"exit-in-the-dialog", [](const char*) { exitInTheDialog(); }},
    {"no-widgets", [](const char*) { noWidgets(); }},
    {"foreign-thread", [](const char*) { foreignThread(); }},
    {"foreign-toolkit", [](const char* file) { foreignToolkit(file); }},
    {"foreign-toolkit-beside-an-application",
     [](const char* file) { foreignToolkitBesideAnApplication(file); }},
    {"without-display", [](const char*) { withoutDisplay(); }},
    {"display-that-does-not-answer", [](const char*) { displayThatDoesNotAnswer(); }},
    {"wayland-that-does-not-answer", [](const char*) { waylandThatDoesNotAnswer(); }},
    {"ratio-two", [](const char*) { ratioTwo(); }},
};

}  // namespace

int main(int count, char** arguments) {
  const auto found = count > 1 ? kCases.find(arguments[1]) : kCases.end();
  if (found == kCases.end()) {
    std::puts("usage: windows_host CASE [FILE]");
    return 2;
  }
  found->second(count > 2 ? arguments[2] : "");
  if (failures == 0) std::puts("ok");
  return failures == 0 ? 0 : 1;
}
