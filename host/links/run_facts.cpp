#include "links/run_facts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

#include "planning/whole_file.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

constexpr std::array<std::string_view, 8> kOfPaths{
    "Profile/Prf_Per", "Profile/Prf_Max", "Profile/Prf_TRes", "Profile/Prf_HtL",
    "Profile/Prf_HtR", "Profile/Prf_Crv", "Profile/Prf_Freq", "Settings/CalcMethod"};

// The command line takes the dialog's default for k, as `profile` does.
std::string standingFor(const SettingDescription& known) {
  return known.key == "Prf_Crv" && !known.otherDefault.empty() ? known.otherDefault : known.defaultText;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> settingsOfPaths() {
  std::vector<std::pair<std::string, std::string>> settings;
  for (const SettingDescription& known : knownSettings()) {
    const std::string name = known.section + "/" + known.key;
    const bool wanted = known.section == "ITM" ||
                        std::find(kOfPaths.begin(), kOfPaths.end(), std::string_view(name)) != kOfPaths.end();
    if (wanted)
      settings.emplace_back(name, storedSetting(known.section, known.key).value_or(standingFor(known)));
  }
  return settings;
}

std::string terrainState(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code none;
  if (!fs::is_directory(path, none)) return fileState(path);
  std::map<std::string, std::string> files;
  for (fs::recursive_directory_iterator at(path, fs::directory_options::skip_permission_denied, none), end;
       !none && at != end; at.increment(none))
    if (at->is_regular_file(none)) files.emplace(at->path().string(), fileState(at->path().string()));
  std::uint64_t sum = 0xCBF29CE484222325U;  // FNV-1a
  for (const auto& [name, state] : files)
    for (const std::string* text : {&name, &state})
      for (const char c : *text + '\n') sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return std::to_string(files.size()) + " files, " + std::to_string(sum);
}

std::string linksProgressText(const LinksProgress& progress) {
  constexpr double kLeastSeconds = 0.5, kMinute = 60, kHour = 3600;
  std::string text = "links: " + std::to_string(progress.links) + " done";
  const bool known = progress.allBytes > 0;
  const double part =
      known ? static_cast<double>(progress.bytes) / static_cast<double>(progress.allBytes) : 0;
  if (known) text += ", " + std::to_string(static_cast<int>(part * 100)) + " %";
  const auto links = static_cast<double>(progress.links - progress.before);
  if (progress.seconds < kLeastSeconds || links <= 0) return text;
  text += ", " + std::to_string(std::llround(links / progress.seconds)) + " links/s";
  if (!known || part <= 0) return text;
  // What a run before has done was read again in no time.
  const double all = static_cast<double>(progress.links) / part;
  const double left = (all - static_cast<double>(progress.links)) * progress.seconds / links;
  const auto two = [](double value) {
    const int whole = static_cast<int>(value);
    return (whole < 10 ? "0" : "") + std::to_string(whole);
  };
  const double seconds = std::ceil(left);
  if (seconds >= kHour)
    text += ", " + std::to_string(static_cast<int>(seconds / kHour)) + ":" +
            two(std::fmod(seconds, kHour) / kMinute);
  else
    text += ", " + std::to_string(static_cast<int>(seconds / kMinute));
  return text + ":" + two(std::fmod(seconds, kMinute)) + " left";
}

}  // namespace zel::host
