#include "zeltool/host_tools/host_tool_application.h"

#include <utility>

#include "zeltool/host_tools/client_title.h"

namespace zel {

HostToolApplication::HostToolApplication(std::shared_ptr<const SettingsStore> settings,
                                         std::string helperProgramFolder)
    : settings_(std::move(settings)), helperProgramFolder_(std::move(helperProgramFolder)) {}

std::string HostToolApplication::CoordinateFormat() const {
  return settings_->ReadSetting(clientTitle(client_), "Settings", "CoordFormat", "DMS");
}

}  // namespace zel
