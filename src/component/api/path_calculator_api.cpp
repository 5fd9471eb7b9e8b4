// The public calculator: a context whose settings, sources and datum stand still.
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "component/api/path_context.h"
#include "component/api/path_request.h"
#include "component/api/ready_component.h"
#include "foundation/runtime_error.h"
#include "profile/settings/settings_table.h"
#include "zel/path_calculator.h"

namespace zel {
namespace {

// Settings of one application as they were once. Nothing can be stored.
class KeptSettings : public SettingsStore {
 public:
  KeptSettings(const SettingsStore& store, std::string_view application) {
    for (StoredSetting& stored : store.AllSettings(application))
      values_[std::move(stored.section)][std::move(stored.key)] = std::move(stored.value);
  }

  std::string ReadSetting(std::string_view, std::string_view section, std::string_view key,
                          std::string_view defaultText) const override {
    if (const auto keys = values_.find(section); keys != values_.end())
      if (const auto found = keys->second.find(key); found != keys->second.end()) return found->second;
    return std::string(defaultText);
  }
  void WriteSetting(std::string_view, std::string_view, std::string_view, std::string_view) override {
    throw RuntimeError::internalError("settings that are kept cannot be written");
  }
  std::vector<StoredSetting> AllSettings(std::string_view) const override {
    std::vector<StoredSetting> all;
    for (const auto& [section, keys] : values_)
      for (const auto& [key, value] : keys) all.push_back({section, key, value});
    return all;
  }

 private:
  using Keys = std::map<std::string, std::string, std::less<>>;
  std::map<std::string, Keys, std::less<>> values_;
};

TerrainLibrary::Definitions keptDefinitions(Component& component) {
  std::map<int, SourceDefinition> kept;
  for (const int code : kTerrainSourceCodes) kept[code] = component.terrainSources().definition(code);
  return [kept = std::move(kept)](int code) {
    const auto found = kept.find(code);
    SourceDefinition unknown;
    unknown.code = code;
    return found != kept.end() ? found->second : unknown;
  };
}

PathContext keptContext(Component& component, const SettingsStore& settings) {
  PathContext context = presentContext(component);
  context.settings = SettingsReader(settings, [] { return std::string(); });
  component.refreshTerrainSources();
  context.terrain = context.terrain->view(keptDefinitions(component));
  context.makeSampler = component.samplerMaker();
  return context;
}

}  // namespace

struct PathCalculator::Self {
  explicit Self(Component& component)
      : place(settingsPlace(component)),
        settings(component.settings(), component.host().clientTitle()),
        context(keptContext(component, settings)) {}

  template <typename Compute>
  auto computed(Compute&& compute) const {
    return withPublicErrors([&] { return compute(context); }, [this] { return place; });
  }

  const std::string place;  // of the settings
  const KeptSettings settings;
  const PathContext context;
};

PathCalculator::PathCalculator(std::unique_ptr<Self> self) : self_(std::move(self)) {}
PathCalculator::~PathCalculator() = default;

std::shared_ptr<const PathCalculator> PathCalculator::open() {
  return accessing([](Component& component) {
    return std::shared_ptr<const PathCalculator>(new PathCalculator(std::make_unique<Self>(component)));
  });
}

PathProfile PathCalculator::profile(const PathProfileRequest& request) const {
  return self_->computed([&](const PathContext& context) { return computePathProfile(context, request); });
}

std::vector<PathProfile> PathCalculator::profiles(const PathProfileRequest& request,
                                                  const std::vector<std::optional<double>>& factors) const {
  return self_->computed(
      [&](const PathContext& context) { return computePathProfiles(context, request, factors); });
}

PathLoss PathCalculator::loss(const PathLossRequest& request) const {
  return self_->computed([&](const PathContext& context) { return computePathLoss(context, request); });
}

SampledTerrain PathCalculator::sample(Position from, Position to, std::int32_t points, std::int32_t method,
                                      int source) const {
  return self_->computed(
      [&](const PathContext& context) { return sampleTerrain(context, from, to, points, method, source); });
}

std::int32_t PathCalculator::method() const {
  return self_->computed(
      [](const PathContext& context) { return readWindowlessSettings(context.settings).calcMethod; });
}

int PathCalculator::source() const {
  return self_->computed(
      [](const PathContext& context) { return int{readWindowlessSettings(context.settings).source}; });
}

double PathCalculator::windowlessFrequencyMhz() const {
  return self_->computed([](const PathContext& context) {
    return decimalValue(readWindowlessSettings(context.settings).frequency);
  });
}

}  // namespace zel
