#include "component/data_folder.h"

#include <dlfcn.h>

#include <cstdlib>
#include <system_error>

namespace zel {

namespace {

// The folder that holds this library, or the program that it is linked into.
std::filesystem::path libraryFolder() {
  Dl_info library{};
  std::filesystem::path own;
  if (::dladdr(reinterpret_cast<const void*>(&libraryFolder), &library) != 0 && library.dli_fname != nullptr)
    own = library.dli_fname;
  std::error_code ignored;
  const std::filesystem::path real = std::filesystem::canonical(own, ignored);  // a link may lead there
  return (real.empty() ? own : real).parent_path();
}

}  // namespace

std::filesystem::path dataFolder() {
  const char* given = std::getenv("ZEL_DATA_DIR");
  if (given != nullptr && *given != '\0') return given;
  return (libraryFolder() / ZEL_DATA_FROM_LIBRARY).lexically_normal();
}

std::filesystem::path helperProgramFolder() {
  return (libraryFolder() / ZEL_PROGRAMS_FROM_LIBRARY).lexically_normal();
}

std::filesystem::path bundledTerrainFolder() { return dataFolder() / "terrain"; }

}  // namespace zel
