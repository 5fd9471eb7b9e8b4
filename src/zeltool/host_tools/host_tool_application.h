// The two strings that the component reads anew after every SetClientApp.
#pragma once

#include <memory>
#include <string>

#include "platform/host_tools.h"
#include "platform/settings_store.h"

namespace zel {

class HostToolApplication : public ToolApplication {
 public:
  HostToolApplication(std::shared_ptr<const SettingsStore> settings, std::string helperProgramFolder);

  void SetClientApp(const DispatchPtr& client) override { client_ = client; }
  std::string HelperProgramFolder() const override { return helperProgramFolder_; }
  // Setting "CoordFormat" in section "Settings" under the client's Title, "DMS" by default. Throws
  // RuntimeError as clientTitle and the store do.
  std::string CoordinateFormat() const override;

 private:
  std::shared_ptr<const SettingsStore> settings_;
  std::string helperProgramFolder_;
  DispatchPtr client_;
};

}  // namespace zel
