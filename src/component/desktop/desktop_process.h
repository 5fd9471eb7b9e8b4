// The process and the desktop around the component. Without a QApplication the pointer and the event loop do
// nothing.
#pragma once

#include <optional>

#include "platform/process_services.h"

namespace zel {

class DesktopPointer final : public Pointer {
 public:
  void set(PointerShape shape) override;

 private:
  bool hourglass_ = false;  // the shape laid over the host's own is ours
};

class DesktopEventLoop final : public EventLoop {
 public:
  // Ends the running event loop, or the next, with the code. For hosts that have none and handle events now
  // and then, the request is kept with the application until its event loop ends or it is taken.
  void postQuit(int exitCode) override;
  void processPending() override;
};

// The exit code of a quit that was asked for and that no event loop has carried out.
std::optional<int> keptQuitRequest();
void forgetQuitRequest();

class SystemClock final : public Clock {
 public:
  LocalTime now() const override;  // RuntimeError 51 when the system has no local time
};

class SystemProcess final : public ProcessControl {
 public:
  std::string moduleFileName() const override;  // of the running program; throws filesystem_error
  void endRun() override;                       // at once, with status 0
};

// Writes the reason to standard error and aborts (status 134).
class AbortingHardStop final : public HardStop {
 public:
  [[noreturn]] void stop(std::string_view reason) override;
};

}  // namespace zel
