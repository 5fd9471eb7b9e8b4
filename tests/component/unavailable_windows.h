// Windows of which none can be had: what needs one is refused, what closes one has nothing to do.
#pragma once

#include "component/profile_windows.h"
#include "foundation/runtime_error.h"

namespace zel {

class UnavailableWindows final : public ProfileWindows {
 public:
  void showProfile() override { throw RuntimeError::actionNotSupported(); }
  void unloadProfile() override {}
  void showSettings() override { throw RuntimeError::actionNotSupported(); }
  void unloadSettings() override {}
  DispatchPtr newProfileForm() override { throw RuntimeError::actionNotSupported(); }
  void exportData(const std::string&) override { throw RuntimeError::actionNotSupported(); }
  void exportPathLoss(const std::string&) override { throw RuntimeError::actionNotSupported(); }
};

}  // namespace zel
