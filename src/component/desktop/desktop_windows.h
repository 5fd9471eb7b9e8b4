// The windows of the component on the desktop: the one profile window, those that hosts have made for
// themselves, and the settings dialog, whose changes it hands to the windows.
//
// A window is deleted when none of its procedures runs any more, after the events that are being handled. At
// the latest all of them go when the graphical application does.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "component/profile_windows.h"
#include "ui/profile_window/frm_profile.h"
#include "ui/settings_dialog/frm_options_profile.h"

namespace zel {

class Component;

class DesktopWindows final : public ProfileWindows {
 public:
  // The component is asked for at each use.
  explicit DesktopWindows(std::function<Component&()> component);
  ~DesktopWindows() override;

  void showProfile() override;
  void unloadProfile() override;
  void showSettings() override;
  void unloadSettings() override;
  DispatchPtr newProfileForm() override;
  void exportData(const std::string& outfile) override;
  void exportPathLoss(const std::string& outfile) override;

  // Deletes every window, shown or not: the application goes.
  void deleteAll();

  FrmProfile* profileWindow() const { return profile_.data(); }
  FrmOptionsProfile* settingsDialog() const { return settings_.data(); }

 private:
  ProfileWindowServices windowServices(bool shared);
  FrmOptionsProfile::Services settingsServices();
  FrmProfile* makeWindow(bool shared, const std::optional<FrmProfile::Path>& path = std::nullopt);
  void open(const std::optional<FrmProfile::Path>& path, const std::optional<FrmProfile::Place>& place);
  void takeSettings(const DialogSettings& values);
  FrmProfile* loadedProfile() const;  // null without one
  void deleteLater();
  void deleteUnloaded();

  std::function<Component&()> component_;
  std::vector<std::unique_ptr<FrmProfile>> windows_;  // unloaded ones too, until they can be deleted
  QPointer<FrmProfile> profile_;
  QPointer<FrmOptionsProfile> settings_;
};

}  // namespace zel
