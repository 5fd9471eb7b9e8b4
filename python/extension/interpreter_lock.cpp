#include "extension/interpreter_lock.h"

#include <thread>

#include "zel/automation.h"

namespace zel::python {
namespace {

[[noreturn]] void sleepForEver() {
  for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
}

// CPython ends a thread that comes too late by unwinding it.
template <typename Take>
auto takeLock(Take&& take) {
  try {
    return take();
  } catch (abi::__forced_unwind&) {
    sleepForEver();
  }
}

}  // namespace

bool interpreterEnds() noexcept { return Py_IsInitialized() == 0 || _Py_IsFinalizing() != 0; }

LockReleased::LockReleased() : state_(PyEval_SaveThread()) {}

LockReleased::~LockReleased() {
  takeLock([this] { PyEval_RestoreThread(state_); });
}

LockHeld::LockHeld() {
  if (Py_IsInitialized() == 0)
    throw AutomationError(AutomationErrorCode::kFailed, "the Python interpreter has ended");
  state_ = takeLock([] { return PyGILState_Ensure(); });
}

LockHeld::~LockHeld() { PyGILState_Release(state_); }

void InterruptCheck::operator()() {
  constexpr std::chrono::milliseconds kEvery{50};
  const Clock::time_point now = Clock::now();
  if (now - last_ < kEvery) return;
  last_ = now;
  const LockHeld lock;
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

}  // namespace zel::python
