// Which settings a path is computed with, and who has the component to himself.
//
// Paths are computed by a PathCalculator, which has the settings as they were when it was opened. A call on
// the component's thread opens a new one; calls on other threads use the one opened last. The component's
// thread is that of the ProfileControl objects while there is one, and otherwise the thread that imported the
// module. What changes the settings through this module opens a new one at once, so that other threads have
// the change, too.
#pragma once

#include <memory>
#include <mutex>

#include "zel/path_calculator.h"

namespace zel::python {

// Held by whoever makes or releases a ProfileControl, opens a calculator or uses a function for one thread.
// Never waited for with the interpreter lock: its owner may want that.
std::recursive_mutex& componentMutex();

// Whether ProfileControl objects are alive, and where. With the mutex.
void controlMade();
void controlReleased();

// Without the interpreter lock. Throws SettingsError; AutomationError kWrongThread when none was opened yet
// and another thread owns the component.
std::shared_ptr<const PathCalculator> calculator();

// Without the interpreter lock, after a change.
void settingsChanged();

// The calling thread is the one that imports the module.
void rememberHomeThread();

// Runs `use` on the component, one thread at a time, without the interpreter lock.
template <typename Use>
auto withComponent(Use&& use);

}  // namespace zel::python

#include "extension/interpreter_lock.h"

namespace zel::python {

template <typename Use>
auto withComponent(Use&& use) {
  const LockReleased released;
  const std::lock_guard lock(componentMutex());
  return use();
}

}  // namespace zel::python
