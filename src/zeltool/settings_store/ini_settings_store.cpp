#include "zeltool/settings_store/ini_settings_store.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

#include "foundation/runtime_error.h"
#include "zeltool/settings_store/ini_document.h"
#include "zeltool/settings_store/settings_files.h"
#include "zeltool/user_folders/user_folders.h"

namespace zel {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

// FNV-1a, 64 bits: short, and the same in every run.
std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3U;
  }
  return hash;
}

std::string hexText(std::uint64_t value) {
  std::string text;
  for (unsigned shift = 64; shift > 0; shift -= 4) text += kHexDigits[(value >> (shift - 4)) & 0xFU];
  return text;
}

bool standsInFileNames(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
         c == ' ';
}

// A file name in plain ASCII, one for each application. An empty title is "%", which no other one gives; a
// long one is cut and told apart by its hash, since names end at 255 bytes and a damaged file's name is
// longer still.
std::string fileNameOf(std::string_view application) {
  constexpr std::size_t kLongest = 180;
  if (application.empty()) return "%.ini";
  std::string name;
  for (const char c : application) {
    if (standsInFileNames(c)) {
      name += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      name += '%';
      name += kHexDigits[byte >> 4U];
      name += kHexDigits[byte & 0xFU];
    }
  }
  if (name.size() > kLongest) name = name.substr(0, kLongest) + "%-" + hexText(hashOf(application));
  return name + ".ini";
}

std::string plural(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string settingsThatStay(const IniDocument& document) {
  std::size_t count = 0;
  for (const auto& [name, section] : document.sections()) count += section.size();
  if (count == 0) return "None of its settings could be read; the defaults take their place.";
  return plural(count, "setting") + " could be read and " + (count == 1 ? "stays" : "stay") + " in use.";
}

std::string damageText(const std::string& file, const IniDocument& document) {
  const IniDamage& damage = document.damage();
  return "The settings file " + file + " is damaged: " + plural(damage.lines, "line") +
         " could not be read, the first is line " + std::to_string(damage.firstLine) + " (" +
         damage.firstReason + ").";
}

}  // namespace

struct IniSettingsStore::Self {
  // What is known of one application's file.
  struct Application {
    std::string file;
    std::optional<FileStamp> stamp;    // of the state that was read last
    std::optional<FileStamp> refused;  // a damaged state that could not be kept beside, and was reported
    IniDocument document;
    bool sound = false;  // all of that state could be read
  };
  using Messages = std::vector<std::string>;

  std::filesystem::path folder;
  Reporter reporter;
  std::mutex mutex;
  std::map<std::string, Application, std::less<>> applications;

  Application& application(std::string_view name) {
    const auto found = applications.find(name);
    if (found != applications.end()) return found->second;
    Application fresh;
    fresh.file = (folder / fileNameOf(name)).string();
    return applications.emplace(name, std::move(fresh)).first->second;
  }

  // Reads the file. Returns whether all of it could be read.
  static bool load(Application& application, std::optional<std::string>& text) {
    FileContent content = readSettingsFile(application.file);
    application.document = IniDocument(content.text.value_or(""));
    application.stamp = content.stamp;
    text = std::move(content.text);
    application.sound = text.has_value() && application.document.damage().lines == 0;
    return application.sound;
  }

  // With the folder's lock held: the file as it is now, damage kept beside.
  void loadAndMend(Application& application, Messages& messages) const {
    std::optional<std::string> text;
    if (load(application, text)) return;
    if (text.has_value()) {
      const std::string what = damageText(application.file, application.document);
      const std::string copy = copyAside(application.file, *text);
      application.stamp = replaceSettingsFile(application.file, application.document.text());
      messages.push_back(what + " It was kept as " + copy + ". " + settingsThatStay(application.document));
    } else {
      const std::string moved = moveAside(application.file);
      application.stamp = stampOf(application.file);
      messages.push_back("In the place of the settings file " + application.file +
                         " stood something that is no settings file. It was moved to " + moved + ". " +
                         settingsThatStay(application.document));
    }
    application.document = IniDocument(application.document.text());
    application.sound = true;
  }

  // For reading: the application's current values.
  const IniDocument& current(Application& application, Messages& messages) {
    if (folder.empty()) return application.document;
    if (application.stamp == stampOf(application.file)) return application.document;
    std::optional<std::string> text;
    if (load(application, text)) return application.document;
    try {
      const FolderLock lock(folder);
      loadAndMend(application, messages);
    } catch (const RuntimeError& error) {
      if (application.refused != application.stamp)
        messages.push_back((text.has_value() ? damageText(application.file, application.document)
                                             : "In the place of the settings file " + application.file +
                                                   " stands something that is no settings file.") +
                           " It could not be kept under another name: " + error.description() + ". " +
                           settingsThatStay(application.document));
      application.refused = application.stamp;
    }
    return application.document;
  }

  // Does the work under the mutex and reports afterwards, so that the reporter may use the store.
  template <typename Work>
  auto guarded(Work work) {
    struct Report {
      const Reporter& reporter;
      Messages messages;
      ~Report() {
        for (const std::string& message : messages)
          if (reporter) reporter(message);
      }
    } report{reporter, {}};
    const std::lock_guard guard(mutex);
    return work(report.messages);
  }
};

IniSettingsStore::IniSettingsStore(std::filesystem::path folder, Reporter reporter)
    : self_(std::make_unique<Self>()) {
  self_->folder = std::move(folder);
  self_->reporter = std::move(reporter);
}

IniSettingsStore::~IniSettingsStore() = default;

std::filesystem::path IniSettingsStore::defaultFolder() {
  const std::filesystem::path config = userFolder("XDG_CONFIG_HOME", ".config");
  return config.empty() ? config : config / "zelprofiler";
}

std::filesystem::path IniSettingsStore::fileOf(std::string_view application) const {
  return self_->folder / fileNameOf(application);
}

std::string IniSettingsStore::ReadSetting(std::string_view application, std::string_view section,
                                          std::string_view key, std::string_view defaultText) const {
  return self_->guarded([&](Self::Messages& messages) {
    const std::string* found = self_->current(self_->application(application), messages).find(section, key);
    return found != nullptr ? *found : std::string(defaultText);
  });
}

void IniSettingsStore::WriteSetting(std::string_view application, std::string_view section,
                                    std::string_view key, std::string_view value) {
  self_->guarded([&](Self::Messages& messages) {
    Self::Application& target = self_->application(application);
    makeSettingsFolder(self_->folder);
    const FolderLock lock(self_->folder);
    if (!target.sound || *target.stamp != stampOf(target.file)) self_->loadAndMend(target, messages);
    const std::string* found = target.document.find(section, key);
    if (found != nullptr && *found == value) return;
    IniDocument changed = target.document;
    changed.set(section, key, value);
    target.stamp = replaceSettingsFile(target.file, changed.text());
    target.document = std::move(changed);
  });
}

std::vector<StoredSetting> IniSettingsStore::AllSettings(std::string_view application) const {
  return self_->guarded([&](Self::Messages& messages) {
    std::vector<StoredSetting> settings;
    for (const auto& [section, keys] : self_->current(self_->application(application), messages).sections())
      for (const auto& [key, value] : keys) settings.push_back({section, key, value});
    return settings;
  });
}

}  // namespace zel
