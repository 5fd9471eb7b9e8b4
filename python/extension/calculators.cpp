#include "extension/calculators.h"

#include <atomic>
#include <cstddef>
#include <thread>

#include "zel/automation.h"
#include "zel/settings.h"

namespace zel::python {
namespace {

using CalculatorPtr = std::shared_ptr<const PathCalculator>;

// Never destroyed: threads may be computing when the process ends.
struct State {
  std::recursive_mutex component;

  std::mutex mutex;  // guards what follows, for moments
  CalculatorPtr last;
  std::thread::id importer;
  std::thread::id controlOwner;
  std::size_t controls = 0;

  std::atomic<bool> stale{false};  // the last one has settings of before a change
};

State& state() {
  static State& only = *new State;
  return only;
}

CalculatorPtr lastOpened() {
  const std::lock_guard lock(state().mutex);
  return state().last;
}

bool onComponentsThread() {
  const std::lock_guard lock(state().mutex);
  return std::this_thread::get_id() == (state().controls > 0 ? state().controlOwner : state().importer);
}

// With the component.
CalculatorPtr openNew() {
  // The settings stand under the title of the host's application, and that may be a Python object which asks
  // for a path itself.
  thread_local bool opening = false;
  if (opening) {
    if (CalculatorPtr last = lastOpened()) return last;
    throw SettingsError(
        "the settings are being read: the application object cannot compute a path meanwhile");
  }
  struct Opening {
    Opening() { opening = true; }
    ~Opening() { opening = false; }
  } const guard;
  state().stale = false;
  CalculatorPtr fresh = PathCalculator::open();
  const std::lock_guard lock(state().mutex);
  state().last = fresh;
  return fresh;
}

}  // namespace

std::recursive_mutex& componentMutex() { return state().component; }

void controlMade() {
  const std::lock_guard lock(state().mutex);
  state().controlOwner = std::this_thread::get_id();
  ++state().controls;
}

void controlReleased() {
  const std::lock_guard lock(state().mutex);
  --state().controls;
}

CalculatorPtr calculator() {
  if (!onComponentsThread() && !state().stale)
    if (CalculatorPtr last = lastOpened()) return last;
  const std::lock_guard lock(state().component);
  try {
    return openNew();
  } catch (const AutomationError& error) {
    state().stale = true;
    if (error.code() != AutomationErrorCode::kWrongThread) throw;
    if (CalculatorPtr last = lastOpened()) return last;
    throw AutomationError(
        error.code(),
        "no path has been computed yet on the thread of the ProfileControl, which alone reads the "
        "settings: compute one there first");
  } catch (...) {
    state().stale = true;
    throw;
  }
}

void settingsChanged() {
  state().stale = true;
  const std::lock_guard lock(state().component);
  try {
    openNew();
  } catch (const std::exception&) {
    // The next call that needs them says what is wrong with the settings.
    state().stale = true;
  }
}

void rememberHomeThread() {
  const std::lock_guard lock(state().mutex);
  state().importer = std::this_thread::get_id();
}

}  // namespace zel::python
