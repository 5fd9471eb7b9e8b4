// The interpreter lock: given up while something is computed, taken when the component calls Python.
//
// When the interpreter ends, a thread that wants its lock is never given it. Such a thread sleeps here until
// the process is gone: it is not unwound, because what lies on its stack would then be released without the
// lock.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>

namespace zel::python {

namespace py = pybind11;

// Whether Python code can no longer be run: the interpreter ends or has ended.
bool interpreterEnds() noexcept;

// Without the lock for as long as it lives. The lock must be held before.
class LockReleased {
 public:
  LockReleased();
  ~LockReleased();
  LockReleased(const LockReleased&) = delete;
  LockReleased& operator=(const LockReleased&) = delete;

 private:
  PyThreadState* state_;
};

// With the lock for as long as it lives, whether it was held before or not. Throws AutomationError kFailed
// when the interpreter has ended.
class LockHeld {
 public:
  LockHeld();
  ~LockHeld();
  LockHeld(const LockHeld&) = delete;
  LockHeld& operator=(const LockHeld&) = delete;

 private:
  PyGILState_STATE state_;
};

// Lets Ctrl+C end a long call: asked after each step of it, without the lock, it looks twenty times a second
// whether Python has a signal to handle.
class InterruptCheck {
 public:
  // Throws the exception of the signal's handler.
  void operator()();

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point last_ = Clock::now();
};

}  // namespace zel::python
