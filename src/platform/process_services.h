// What the component asks of the process and the desktop around it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zel {

enum class PointerShape { kDefault, kHourglass };

// The screen's mouse pointer. Does nothing without a display.
class Pointer {
 public:
  virtual ~Pointer() = default;
  virtual void set(PointerShape shape) = 0;
};

// The host's event loop. Does nothing when the process has none.
class EventLoop {
 public:
  virtual ~EventLoop() = default;
  virtual void postQuit(int exitCode) = 0;
  virtual void processPending() = 0;
};

// A moment of local time.
struct LocalTime {
  int year = 1970, month = 1, day = 1;   // 1 to 12, 1 to 31
  int hour = 0, minute = 0, second = 0;  // 24 hours
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime now() const = 0;
};

class ProcessControl {
 public:
  virtual ~ProcessControl() = default;
  virtual std::string moduleFileName() const = 0;  // full path of the program that loaded the component
  virtual void endRun() = 0;  // ends the process as a stop in the design environment does
};

// Ends the process at once, with the reason on standard error (and in the error log, which the caller
// writes).
class HardStop {
 public:
  virtual ~HardStop() = default;
  // Does not return, except for the scripted one of the tests, which throws.
  virtual void stop(std::string_view reason) = 0;
};

}  // namespace zel
