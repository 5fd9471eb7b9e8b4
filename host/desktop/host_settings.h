// What the desktop program keeps in the settings besides what the component reads: section "Map".
#pragma once

#include <string>
#include <vector>

#include "map_view/map_view.h"

namespace zel::host {

inline constexpr const char* kMapSection = "Map";
inline constexpr std::size_t kMostRecentFiles = 8;

// None of these throws: a store that cannot be read gives the defaults, one that cannot be written leaves a
// text in `problem`.
MapOptions storedMapOptions();
void storeMapOptions(const MapOptions& options, std::string* problem = nullptr);

std::vector<std::string> recentFiles();  // the latest first
void rememberFile(const std::string& path, std::string* problem = nullptr);
void forgetFile(const std::string& path);

// Where the window was and how it was divided, as the toolkit packs them, in base64; empty when not stored.
struct StoredWindow {
  std::string geometry, layout;
};
StoredWindow storedWindow();
void storeWindow(const StoredWindow& window);

// The terrain source of the profile (Profile/Prf_TRes, repaired as the component repairs it), which the map
// shows too.
int chosenSource();
bool imperialUnits();       // Settings/DispUnits
AngleFormat angleFormat();  // Settings/CoordFormat

}  // namespace zel::host
