#include "desktop/host_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr int kUsualSource = 3;
constexpr const char* kGeometryKey = "Window";
constexpr const char* kLayoutKey = "Layout";
constexpr std::array kSourceCodes{1, 2, 3, 7, 9};

std::optional<std::string> stored(const char* section, const std::string& key) noexcept {
  try {
    return storedSetting(section, key);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

// False, with the reason in `problem`, when it cannot be written.
bool store(const std::string& key, const std::string& value, std::string* problem) noexcept {
  try {
    storeSetting(kMapSection, key, value);
    return true;
  } catch (const std::exception& error) {
    if (problem != nullptr) *problem = error.what();
    return false;
  }
}

// What each switch of the map is called in the settings.
struct Switch {
  const char* key;
  bool MapOptions::*value;
};
constexpr std::array kSwitches{
    Switch{"Relief", &MapOptions::relief},     Switch{"Graticule", &MapOptions::graticule},
    Switch{"Legend", &MapOptions::legend},     Switch{"ScaleBar", &MapOptions::scaleBar},
    Switch{"Coverage", &MapOptions::coverage}, Switch{"Names", &MapOptions::names}};

// "200 1400"; anything else is no scale, and the scale follows what is seen. Not by strtod, which reads in
// the user's language.
std::optional<HeightScale> storedScale() {
  const auto text = stored(kMapSection, "HeightScale");
  if (!text) return std::nullopt;
  HeightScale scale;
  const char* end = text->data() + text->size();
  const auto lowest = std::from_chars(text->data(), end, scale.lowest);
  if (lowest.ec != std::errc() || lowest.ptr == end || *lowest.ptr != ' ') return std::nullopt;
  const auto highest = std::from_chars(lowest.ptr + 1, end, scale.highest);
  if (highest.ec != std::errc() || highest.ptr != end) return std::nullopt;
  if (!std::isfinite(scale.lowest) || !std::isfinite(scale.highest) || !(scale.lowest < scale.highest))
    return std::nullopt;
  return scale;
}

std::string scaleText(const HeightScale& scale) {
  std::array<char, 64> text{};
  char* end = text.data() + text.size();
  char* next = std::to_chars(text.data(), end, scale.lowest).ptr;
  *next++ = ' ';
  next = std::to_chars(next, end, scale.highest).ptr;
  return {text.data(), next};
}

std::string recentKey(std::size_t i) { return "Recent" + std::to_string(i + 1); }

void storeRecent(const std::vector<std::string>& files, std::string* problem) {
  for (std::size_t i = 0; i < kMostRecentFiles; ++i) {
    const std::string value = i < files.size() ? files[i] : std::string();
    if (stored(kMapSection, recentKey(i)).value_or(std::string()) == value) continue;
    if (!store(recentKey(i), value, problem)) return;
  }
}

}  // namespace

MapOptions storedMapOptions() {
  MapOptions options;
  for (const Switch& each : kSwitches) {
    const auto text = stored(kMapSection, each.key);
    if (text && (*text == "0" || *text == "1")) options.*each.value = *text == "1";
  }
  options.heightScale = storedScale();
  options.imperial = imperialUnits();
  options.angles = angleFormat();
  return options;
}

void storeMapOptions(const MapOptions& options, std::string* problem) {
  const MapOptions before = storedMapOptions();
  for (const Switch& each : kSwitches)
    if (options.*each.value != before.*each.value &&
        !store(each.key, options.*each.value ? "1" : "0", problem))
      return;
  if (options.heightScale == before.heightScale) return;
  const std::string scale = options.heightScale ? scaleText(*options.heightScale) : std::string();
  store("HeightScale", scale, problem);
}

std::vector<std::string> recentFiles() {
  std::vector<std::string> files;
  for (std::size_t i = 0; i < kMostRecentFiles; ++i) {
    const auto file = stored(kMapSection, recentKey(i));
    if (file && !file->empty() && std::find(files.begin(), files.end(), *file) == files.end())
      files.push_back(*file);
  }
  return files;
}

void rememberFile(const std::string& path, std::string* problem) {
  std::vector<std::string> files = recentFiles();
  std::erase(files, path);
  files.insert(files.begin(), path);
  storeRecent(files, problem);
}

void forgetFile(const std::string& path) {
  std::vector<std::string> files = recentFiles();
  if (std::erase(files, path) > 0) storeRecent(files, nullptr);
}

StoredWindow storedWindow() {
  return {stored(kMapSection, kGeometryKey).value_or(std::string()),
          stored(kMapSection, kLayoutKey).value_or(std::string())};
}

void storeWindow(const StoredWindow& window) {
  const StoredWindow before = storedWindow();
  if (window.geometry != before.geometry) store(kGeometryKey, window.geometry, nullptr);
  if (window.layout != before.layout) store(kLayoutKey, window.layout, nullptr);
}

int chosenSource() {
  const auto text = stored("Profile", "Prf_TRes");
  if (!text) return kUsualSource;
  double code = 0;
  const char* begin = text->data() + std::min(text->find_first_not_of(" +"), text->size());
  if (std::from_chars(begin, text->data() + text->size(), code).ec != std::errc()) return kUsualSource;
  const bool known = std::any_of(kSourceCodes.begin(), kSourceCodes.end(),
                                 [code](int each) { return std::abs(code - each) < 0.5; });
  return known ? static_cast<int>(std::lround(code)) : kUsualSource;
}

bool imperialUnits() {
  const auto text = stored("Settings", "DispUnits");
  return text && std::atoi(text->c_str()) == 1;
}

AngleFormat angleFormat() {
  const auto text = stored("Settings", "CoordFormat");
  return text && (*text == "DD" || *text == "dd") ? AngleFormat::kDecimalDegrees
                                                  : AngleFormat::kDegreesMinutesSeconds;
}

}  // namespace zel::host
