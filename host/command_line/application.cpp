#include "command_line/application.h"

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "desktop/program_files.h"

namespace zel::host {

void withoutDisplay() { setenv("QT_QPA_PLATFORM", "offscreen", 1); }

std::unique_ptr<ProfileControl> bindComponent() {
  const std::string folder = stateFolder();
  std::error_code ignored;  // a log that cannot be written is reported when there is something to log
  std::filesystem::create_directories(folder, ignored);
  const std::string version = ZEL_VERSION;
  const auto part = [&version](int wanted) {
    std::size_t begin = 0;
    for (int i = 0; i < wanted; ++i) begin = version.find('.', begin) + 1;
    return std::int32_t{std::atoi(version.c_str() + begin)};
  };
  auto control = std::make_unique<ProfileControl>();
  control->SetClientApp(makePropertyBag({{"Title", kApplicationTitle},
                                         {"Path", folder},
                                         {"ProductName", "Terrain Profiler"},
                                         {"HelpFile", guideFile()},
                                         {"Major", part(0)},
                                         {"Minor", part(1)},
                                         {"Revision", part(2)}}));
  return control;
}

}  // namespace zel::host
