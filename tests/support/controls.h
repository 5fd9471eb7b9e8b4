// What a window has, by its object name; throws when it has no such thing.
#pragma once

#include <QLatin1String>
#include <QObject>
#include <stdexcept>
#include <string>

namespace zel::test {

template <typename Control>
Control& controlOf(const QObject& window, const char* name) {
  auto* found = window.findChild<Control*>(QLatin1String(name));
  if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
  return *found;
}

}  // namespace zel::test
