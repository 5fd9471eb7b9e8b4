// Settings files: the bytes stand in a settings file. It is read, one value is written, and it is read back:
// nothing of what could be read is lost, and what could not is kept whole beside the file and reported.
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "zeltool/settings_store/ini_document.h"
#include "zeltool/settings_store/ini_settings_store.h"

namespace {

constexpr const char* kApplication = "Fuzzed";
constexpr const char* kSection = "Fuzz";
constexpr const char* kKey = "written";

void require(bool condition) {
  if (!condition) std::abort();
}

std::string bytesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// One folder for the whole run, removed at its end.
class Folder {
 public:
  Folder() {
    // In memory where there is such a folder: each run waits for the disk several times.
    const std::filesystem::path memory = "/dev/shm";
    const auto parent = std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    std::string pattern = (parent / "zel-fuzz-XXXXXX").string();
    require(::mkdtemp(pattern.data()) != nullptr);
    path_ = pattern;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  void clear() const {
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      std::filesystem::remove_all(entry.path());
  }
  std::vector<std::string> keptBeside() const {
    std::vector<std::string> kept;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      if (entry.path().filename().string().find(".damaged-") != std::string::npos)
        kept.push_back(bytesOf(entry.path()));
    return kept;
  }

 private:
  std::filesystem::path path_;
};

bool holds(const std::vector<zel::StoredSetting>& settings, const zel::StoredSetting& wanted) {
  return std::any_of(settings.begin(), settings.end(), [&](const zel::StoredSetting& setting) {
    return setting.section == wanted.section && setting.key == wanted.key && setting.value == wanted.value;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  folder.clear();
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  int reports = 0;
  zel::IniSettingsStore store(folder.path(), [&reports](const std::string&) { ++reports; });
  std::ofstream(store.fileOf(kApplication), std::ios::binary) << bytes;

  const std::vector<zel::StoredSetting> before = store.AllSettings(kApplication);
  const bool damaged = zel::IniDocument(bytes).damage().lines > 0;
  require(reports == (damaged ? 1 : 0));
  require(folder.keptBeside() == (damaged ? std::vector<std::string>{bytes} : std::vector<std::string>{}));

  // Any bytes serve as a value too.
  store.WriteSetting(kApplication, kSection, kKey, bytes);
  const zel::IniSettingsStore fresh(folder.path(), [](const std::string&) { std::abort(); });
  const std::vector<zel::StoredSetting> after = fresh.AllSettings(kApplication);
  require(holds(after, {kSection, kKey, bytes}));
  for (const zel::StoredSetting& setting : before)
    if (setting.section != kSection || setting.key != kKey) require(holds(after, setting));
  const bool replaced = std::any_of(before.begin(), before.end(), [](const zel::StoredSetting& setting) {
    return setting.section == kSection && setting.key == kKey;
  });
  require(after.size() == before.size() + (replaced ? 0 : 1));
  return 0;
}
