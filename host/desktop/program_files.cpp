#include "desktop/program_files.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace zel::host {

std::string stateFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/terrain-profiler";
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/terrain-profiler"
                                         : std::string();
}

std::string guideFile() {
  std::error_code error;
  std::filesystem::path file;
  const char* data = std::getenv("ZEL_DATA_DIR");  // the component finds its data there, too
  if (data != nullptr && *data != '\0') {
    file = std::filesystem::path(data) / "guide" / "index.html";
  } else {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    file = (program.parent_path() / ZEL_GUIDE_FROM_PROGRAM).lexically_normal();
  }
  return std::filesystem::is_regular_file(file, error) ? file.string() : std::string();
}

}  // namespace zel::host
