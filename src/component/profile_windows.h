// The windows of the component, as the public class asks for them. They keep the loaded flags and the window
// handle of the module state themselves.
#pragma once

#include <string>

#include "zel/automation.h"

namespace zel {

// Everything throws RuntimeError when it fails.
class ProfileWindows {
 public:
  virtual ~ProfileWindows() = default;
  // Shows the profile window, modeless, for the stored stations; sets bProfileFailed when they cannot be
  // profiled.
  virtual void showProfile() = 0;
  virtual void unloadProfile() = 0;  // nothing without a window
  // Shows the settings dialog and returns when it is closed.
  virtual void showSettings() = 0;
  virtual void unloadSettings() = 0;  // nothing without a dialog
  // A profile window of its own, apart from the one that showProfile shows.
  virtual DispatchPtr newProfileForm() = 0;
  // Exports of the one profile window, or of the stored stations without one.
  virtual void exportData(const std::string& outfile) = 0;
  virtual void exportPathLoss(const std::string& outfile) = 0;
};

}  // namespace zel
