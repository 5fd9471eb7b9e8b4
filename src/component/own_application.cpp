#include "component/own_application.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace zel {
namespace {

std::string homeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const passwd* user = ::getpwuid(::getuid());
  return user == nullptr || user->pw_dir == nullptr ? std::string() : std::string(user->pw_dir);
}

}  // namespace

std::string ownStateFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/zelprofiler";
  const std::string home = homeFolder();
  return home.empty() ? std::string() : home + "/.local/state/zelprofiler";
}

DispatchPtr makeOwnApplication() {
  return makePropertyBag({{"Title", kComponentName},
                          {"Path", ownStateFolder()},
                          {"ProductName", kComponentName},
                          {"HelpFile", ""},
                          {"Major", std::int32_t{ZEL_VERSION_MAJOR}},
                          {"Minor", std::int32_t{ZEL_VERSION_MINOR}},
                          {"Revision", std::int32_t{ZEL_VERSION_PATCH}}});
}

const char* componentVersion() { return ZEL_VERSION; }

}  // namespace zel
