// Where windows were last, kept in the settings: section "Windows", keys "<window> Left" and "<window> Top"
// (pixels of the desktop, negative ones too), under the client's Title.
#pragma once

#include <memory>

#include "platform/host_tools.h"
#include "platform/settings_store.h"

namespace zel {

class StoredWindowPlacement : public WindowPlacement {
 public:
  explicit StoredWindowPlacement(std::shared_ptr<SettingsStore> settings);

  void SetClientApp(const DispatchPtr& client) override { client_ = client; }
  // Both values change or none: half a position, or one that is no whole number of 32 bits, counts as none.
  // Throw RuntimeError 91 before a client is set, 438 and 13 for one without a Title, and what the store
  // throws.
  void Restore(std::string_view window, std::int32_t& left, std::int32_t& top) override;
  // Reads the two; the references are the interface's.
  void Store(std::string_view window, std::int32_t& left, std::int32_t& top) override;

 private:
  std::shared_ptr<SettingsStore> settings_;
  DispatchPtr client_;
};

}  // namespace zel
