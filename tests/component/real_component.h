// A component over the desktop's own parts, in the place of the process's own: settings in a file of the
// test's, the bundled terrain, a clock that stands, boxes answered by script.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>

#include "component/component.h"
#include "component/desktop/desktop_services.h"
#include "component/desktop/desktop_windows.h"
#include "support/scripted_platform.h"
#include "support/scripted_printing.h"
#include "support/temporary_folder.h"
#include "zel/profile_control.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace zel::test {

template <typename Base>
class RealComponentOver : public Base {
 protected:
  RealComponentOver() {
    control_.SetClientApp(makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
  }

  ComponentServices services() {
    ComponentServices services = makeDesktopServices();
    services.dialogs = dialogs_;
    services.clock = std::make_shared<FixedClock>();
    services.hardStop = std::make_shared<ScriptedHardStop>();
    services.windows = windows_;
    services.printing = printing_;
    services.settings = store_;
    services.settingsFile = nullptr;
    services.bundledTerrain = ZEL_SOURCE_DIR "/data/terrain";
    return services;
  }

  void set(std::string_view section, std::string_view key, std::string_view value) {
    store_->WriteSetting("Host Planner", section, key, value);
  }
  std::string logged() const { return fileBytes(folder_ / "zelErrorLog.txt"); }

  // A tile of 3 arc-seconds from 36 N, 85 W, heights in metres by row from the north and column from the
  // west; it becomes source 3. -32768 is a void.
  void useTile(const std::function<int(int row, int column)>& height) {
    std::string bytes;
    for (int row = 0; row < 1201; ++row)
      for (int column = 0; column < 1201; ++column) {
        const auto value = static_cast<std::uint16_t>(height(row, column));
        bytes.push_back(static_cast<char>(value >> 8U));
        bytes.push_back(static_cast<char>(value & 0xFFU));
      }
    writeBytes(folder_ / "N36W085.hgt", bytes);
    set("Terrain", "Source3", (folder_ / "N36W085.hgt").string());
  }

  TemporaryFolder folder_;
  std::shared_ptr<ScriptedDialogs> dialogs_ = std::make_shared<ScriptedDialogs>();
  std::shared_ptr<ScriptedPrinting> printing_ = std::make_shared<ScriptedPrinting>();
  std::shared_ptr<IniSettingsStore> store_ =
      std::make_shared<IniSettingsStore>(folder_ / "settings", [](const std::string&) {});
  std::shared_ptr<DesktopWindows> windows_ =
      std::make_shared<DesktopWindows>([]() -> Component& { return Component::instance(); });
  Component component_{services()};
  ComponentSubstitute substitute_{component_};
  ProfileControl control_;
};

class RealComponent : public RealComponentOver<testing::Test> {};

}  // namespace zel::test
