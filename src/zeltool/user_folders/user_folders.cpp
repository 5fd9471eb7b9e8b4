#include "zeltool/user_folders/user_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace zel {

std::string homeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  std::array<char, 16384> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  const bool known =
      ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr;
  return known && entry.pw_dir != nullptr ? std::string(entry.pw_dir) : std::string();
}

std::string userFolder(const char* variable, const char* belowHome) {
  const char* folder = std::getenv(variable);
  if (folder != nullptr && *folder == '/') return folder;
  const std::string home = homeFolder();
  return home.empty() ? std::string() : home + "/" + belowHome;
}

}  // namespace zel
