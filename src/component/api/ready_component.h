// The component as the public functions use it: with a host bound, or else with its own application object;
// called on its own thread only; and with no exception leaving it but the public ones.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "component/component.h"
#include "component/services/error_trap.h"
#include "zel/automation.h"
#include "zel/settings.h"

namespace zel {

// Throws AutomationError kWrongThread.
inline Component& readyComponent() {
  Component& component = Component::instance();
  component.thread().checkIfOwned();
  component.bindOwnApplication();
  component.ensureSetUp();
  return component;
}

// Where the bound application's settings stand, for messages; empty when that cannot be told.
std::string settingsPlace(Component& component) noexcept;

// Runs `work`. Whatever fails inside, in the store or in the host's application object, becomes a
// SettingsError; `place` gives where the settings stand.
template <typename Work, typename Place>
auto withPublicErrors(Work&& work, Place&& place) {
  try {
    return std::forward<Work>(work)();
  } catch (const SettingsError&) {
    throw;
  } catch (...) {
    const ErrorInformation error = currentError();
    const std::string file = std::forward<Place>(place)();
    throw SettingsError("the settings" + (file.empty() ? std::string() : " in " + file) +
                        " cannot be used: " + error.description + " (error " + std::to_string(error.number) +
                        "); see that the file and its folder may be read and written");
  }
}

// Runs `access` on the component, with public errors.
template <typename Access>
auto accessing(Access&& access) {
  Component& component = readyComponent();
  return withPublicErrors([&] { return std::forward<Access>(access)(component); },
                          [&] { return settingsPlace(component); });
}

}  // namespace zel
