// Something in the preferences that one setting is edited with: a row, or one of the lists of terrain.
#pragma once

#include <functional>
#include <string>

namespace zel::host {

class SettingEditor {
 public:
  SettingEditor() = default;
  SettingEditor(const SettingEditor&) = delete;
  SettingEditor& operator=(const SettingEditor&) = delete;
  virtual ~SettingEditor() = default;

  virtual std::string name() const = 0;   // "Terrain/Source3"
  virtual std::string words() const = 0;  // as a person calls it
  virtual bool changed() const = 0;       // since it was read or stored
  // Why what is in it cannot be stored, as a sentence without its full stop; empty when it can.
  virtual std::string problem() const = 0;
  virtual void store() = 0;   // throws SettingsError
  virtual void reveal() = 0;  // gives it the focus

  std::function<void()> onEdited;
};

}  // namespace zel::host
