#include "component/desktop/window_application.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QThread>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "component/desktop/picture_application.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr int kNoWindows = 1001;  // the component's own number: windows cannot be shown

[[noreturn]] void refuse(const std::string& why) {
  throw RuntimeError(kNoWindows, "Windows cannot be shown: " + why);
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// The toolkit ends the process when it cannot reach the display that the environment names, so it is tried
// before. The library is the one that the toolkit itself uses.
bool xServerAnswers() {
  if (environment("DISPLAY").empty()) return false;
  void* library = ::dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(::dlsym(library, "xcb_connect"));
  const auto hasError = reinterpret_cast<int (*)(void*)>(::dlsym(library, "xcb_connection_has_error"));
  const auto disconnect = reinterpret_cast<void (*)(void*)>(::dlsym(library, "xcb_disconnect"));
  bool answers = false;
  if (connect != nullptr && hasError != nullptr && disconnect != nullptr) {
    void* connection = connect(nullptr, nullptr);
    answers = connection != nullptr && hasError(connection) == 0;
    if (connection != nullptr) disconnect(connection);
  }
  ::dlclose(library);
  return answers;
}

bool waylandAnswers() {
  std::string name = environment("WAYLAND_DISPLAY");
  if (name.empty()) return false;
  if (name.front() != '/') name = environment("XDG_RUNTIME_DIR") + "/" + name;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.size() >= sizeof(address.sun_path)) return false;
  std::memcpy(address.sun_path, name.c_str(), name.size() + 1);
  const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (handle < 0) return false;
  const bool answers = ::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  ::close(handle);
  return answers;
}

// Whether there is a plugin of such a name; without one the toolkit ends the process, too.
bool hasPlatform(const QString& pattern) {
  QStringList folders = QCoreApplication::libraryPaths();
  for (QString& folder : folders) folder += QLatin1String("/platforms");
  folders += qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
  return std::any_of(folders.begin(), folders.end(), [&pattern](const QString& folder) {
    return !QDir(folder).entryList({QStringLiteral("libq%1.so").arg(pattern)}, QDir::Files).isEmpty();
  });
}

bool isXcb(const QString& platform) { return platform.startsWith(QLatin1String("xcb")); }
bool isWayland(const QString& platform) { return platform.startsWith(QLatin1String("wayland")); }

// Whether one of the platforms, tried in their order as the toolkit does, can be had.
bool somePlatformServes(const QStringList& platforms) {
  return std::any_of(platforms.begin(), platforms.end(), [](const QString& platform) {
    if (isXcb(platform)) return hasPlatform(QStringLiteral("xcb")) && xServerAnswers();
    if (isWayland(platform)) return hasPlatform(QStringLiteral("wayland*")) && waylandAnswers();
    // A platform that somebody has chosen is theirs to answer for, such as one without a screen.
    return hasPlatform(platform.section(QLatin1Char(':'), 0, 0));
  });
}

void checkDisplay() {
  const QStringList chosen =
      qEnvironmentVariable("QT_QPA_PLATFORM").split(QLatin1Char(';'), Qt::SkipEmptyParts);
  const QStringList platforms =
      chosen.isEmpty() ? QStringList{QStringLiteral("xcb"), QStringLiteral("wayland")} : chosen;
  if (somePlatformServes(platforms)) return;
  const std::string choice =
      chosen.isEmpty() ? std::string() : ", QT_QPA_PLATFORM is \"" + environment("QT_QPA_PLATFORM") + "\"";
  const bool wayland = std::any_of(platforms.begin(), platforms.end(), isWayland) && waylandAnswers();
  if (wayland && !hasPlatform(QStringLiteral("wayland*")))
    refuse(
        "the display speaks Wayland, and the toolkit's plugin for it is not installed (package qt6-wayland)" +
        choice);
  if (std::none_of(platforms.begin(), platforms.end(),
                   [](const QString& name) { return isXcb(name) || isWayland(name); }))
    refuse("the toolkit has no such platform" + choice);
  if (environment("DISPLAY").empty() && environment("WAYLAND_DISPLAY").empty())
    refuse("there is no display (neither DISPLAY nor WAYLAND_DISPLAY is set)" + choice);
  refuse("the display does not answer (DISPLAY is \"" + environment("DISPLAY") + "\", WAYLAND_DISPLAY is \"" +
         environment("WAYLAND_DISPLAY") + "\")" + choice);
}

// "libQt5Core.so.5" out of a path, where the file is the core library of the toolkit.
const char* coreLibraryName(const char* path) {
  const char* slash = std::strrchr(path, '/');
  const char* name = slash == nullptr ? path : slash + 1;
  const bool core = std::strncmp(name, "libQt", 5) == 0 && std::strstr(name, "Core.so") != nullptr;
  return core ? name : nullptr;
}

struct ToolkitSearch {
  const void* own = nullptr;  // an address in the library that is used here
  std::array<char, 256> foreign{};
};

int lookAtLibrary(dl_phdr_info* info, std::size_t, void* data) {
  auto* search = static_cast<ToolkitSearch*>(data);
  const char* name = info->dlpi_name == nullptr ? nullptr : coreLibraryName(info->dlpi_name);
  if (name == nullptr) return 0;
  const auto address = reinterpret_cast<ElfW(Addr)>(search->own);
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& part = info->dlpi_phdr[i];
    const ElfW(Addr) begin = info->dlpi_addr + part.p_vaddr;
    if (part.p_type == PT_LOAD && address >= begin && address < begin + part.p_memsz) return 0;
  }
  std::strncpy(search->foreign.data(), name, search->foreign.size() - 1);
  return 1;
}

}  // namespace

const char* foreignToolkit() {
  static thread_local ToolkitSearch search;
  search = {};
  search.own = reinterpret_cast<const void*>(&qVersion);
  ::dl_iterate_phdr(lookAtLibrary, &search);
  return search.foreign.data();
}

void ensureWindowApplication() {
  const std::string foreign = foreignToolkit();
  if (!foreign.empty())
    refuse("the process has loaded another version of the toolkit, " + foreign + ", and this library uses " +
           qVersion());
  if (QCoreApplication::instance() == nullptr) {
    checkDisplay();
    ensurePictureApplication();
  }
  const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (application == nullptr) refuse("the process's application object is no QApplication");
  if (application->thread() != QThread::currentThread())
    refuse("they belong to the thread of the process's application object, and this is another");
  if (!allowWindows()) refuse("the process draws its pictures without a display since before");
}

}  // namespace zel
