// The component as the public functions use it: with a host bound, or else with its own application object.
#pragma once

#include "component/component.h"

namespace zel {

inline Component& readyComponent() {
  Component& component = Component::instance();
  component.bindOwnApplication();
  component.ensureSetUp();
  return component;
}

}  // namespace zel
