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

// Runs `access` on the component. Whatever fails inside, in the store or in the host's application object,
// becomes a SettingsError.
template <typename Access>
auto accessing(Access&& access) {
  Component& component = readyComponent();
  try {
    return std::forward<Access>(access)(component);
  } catch (const SettingsError&) {
    throw;
  } catch (...) {
    const ErrorInformation error = currentError();
    const std::string place = settingsPlace(component);
    throw SettingsError("the settings" + (place.empty() ? std::string() : " in " + place) +
                        " cannot be used: " + error.description + " (error " + std::to_string(error.number) +
                        "); see that the file and its folder may be read and written");
  }
}

}  // namespace zel
