#include "component/own_application.h"

#include <cstdint>

#include "zeltool/user_folders/user_folders.h"

namespace zel {
std::string ownStateFolder() {
  const std::string state = userFolder("XDG_STATE_HOME", ".local/state");
  return state.empty() ? state : state + "/zelprofiler";
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
