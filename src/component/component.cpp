#include "component/component.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "component/desktop/desktop_services.h"
#include "component/own_application.h"
#include "foundation/runtime_error.h"
#include "profile/settings/readers.h"

namespace zel {
namespace {

constexpr std::size_t kBytesPerMiB = std::size_t{1024} * 1024;
// A block of terrain takes about 1 MiB: a smaller cache would keep none of those that one path needs at once.
constexpr std::size_t kSmallestCacheMiB = 8;

Component* substitute = nullptr;

template <typename Function>
const Function& needed(const Function& function) {
  if (!function) throw RuntimeError::objectVariableNotSet();
  return function;
}

}  // namespace

void OwnerThread::enter() {
  const std::lock_guard lock(mutex_);
  if (users_ == 0) owner_ = std::this_thread::get_id();
  if (owner_ != std::this_thread::get_id())
    throw AutomationError(AutomationErrorCode::kWrongThread,
                          "ProfileControl belongs to the thread that made the first");
  ++users_;
}

bool OwnerThread::leave() noexcept {
  const std::lock_guard lock(mutex_);
  --users_;
  return owner_ == std::this_thread::get_id();
}

void OwnerThread::check() const {
  const std::lock_guard lock(mutex_);
  if (owner_ != std::this_thread::get_id())
    throw AutomationError(AutomationErrorCode::kWrongThread,
                          "ProfileControl was called from a thread that is not its own");
}

void OwnerThread::checkIfOwned() const {
  const std::lock_guard lock(mutex_);
  if (users_ > 0 && owner_ != std::this_thread::get_id())
    throw AutomationError(AutomationErrorCode::kWrongThread,
                          "the component belongs to the thread that made the first ProfileControl");
}

Component::Component(ComponentServices services)
    : services_(std::move(services)),
      settings_(std::make_shared<OverlaySettingsStore>(*services_.settings)),
      log_([this] { return logFolder(); }, *services_.clock, *services_.dialogs),
      trap_({[this] { return host_.clientTitle(); }, kComponentName, services_.pointer.get(),
             services_.dialogs.get(), services_.eventLoop.get(), services_.process.get(), &log_}),
      host_(state_, trap_, *services_.dialogs, *settings_, services_.tools(settings_)),
      constants_("modConstants", trap_),
      terrainSources_(
          [this](int code) { return readTerrainPaths(settingsReader(), code); },
          services_.terrainSourceName ? services_.terrainSourceName : [](int) { return std::string(); },
          services_.bundledTerrain) {}

Component::~Component() = default;

Component& Component::instance() {
  if (substitute != nullptr) return *substitute;
  // Never destroyed: a host's global ProfileControl may be released after any static object here, and rasters
  // may not be closed once the libraries that read them have taken down their own static objects.
  static Component& real = *new Component(makeDesktopServices());
  return real;
}

SettingsReader Component::settingsReader() {
  return {*settings_, [this] { return host_.clientTitle(); }};
}

std::string Component::settingsFile(const std::string& title) const {
  return services_.settingsFile ? services_.settingsFile(title) : std::string();
}

const Geodesy& Component::geodesy() const { return *needed(services_.geodesy); }

std::shared_ptr<const DatumShift> Component::datumShift() {
  const std::lock_guard lock(firstUse_);
  if (datumShift_ == nullptr) datumShift_ = needed(services_.makeDatumShift)();
  return datumShift_;
}

std::shared_ptr<TerrainLibrary> Component::terrain() {
  const std::lock_guard lock(firstUse_);
  if (terrain_ == nullptr) {
    terrainSources_.refresh();
    const auto cacheMB =
        std::max(static_cast<std::size_t>(readTerrainCacheMB(settingsReader())), kSmallestCacheMiB);
    auto terrain = needed(services_.makeTerrain)(
        [this](int code) { return terrainSources_.definition(code); }, cacheMB * kBytesPerMiB);
    if (stationsAreNad27()) terrain->setStationShift(datumShift());
    terrain_ = std::move(terrain);
  }
  return terrain_;
}

const std::function<std::unique_ptr<TerrainSampler>()>& Component::samplerMaker() const {
  return needed(services_.makeSampler);
}

std::unique_ptr<TerrainSampler> Component::makeSampler() {
  auto sampler = samplerMaker()();
  sampler->AttachTerrainData(terrain());
  return sampler;
}

std::unique_ptr<CoordinateFormatter> Component::makeCoordinateFormatter() {
  auto formatter = needed(services_.makeCoordinateFormatter)();
  formatter->SetFormat(state_.coordinateFormat);
  return formatter;
}

void Component::bindOwnApplication() {
  const std::lock_guard lock(firstUse_);
  if (host_.client() == nullptr) host_.bind(services_.ownApplication);
}

void Component::bindClient(const DispatchPtr& client) {
  const std::lock_guard lock(firstUse_);
  if (client != nullptr) {
    if (host_.client() == services_.ownApplication) host_.discardSetUp();
    host_.bind(client);
  }
  // A failed set-up is tried again at each binding; without a host it waits for the first need.
  if (host_.client() != services_.ownApplication) host_.Init();
}

void Component::refreshTerrainSources() {
  const std::lock_guard lock(firstUse_);
  if (terrain_ != nullptr) terrainSources_.refresh();
}

void Component::ensureSetUp() {
  const std::lock_guard lock(firstUse_);
  if (host_.client() != services_.ownApplication || host_.setUp()) return;
  host_.Init();
  host_.RefreshTexts();
  buildTables();
}

void Component::buildTables() {
  constants_.run(":Init:", [this] {
    units_ = Init_GUC();
    normalTable_ = InitNormalDist();
  });
}

void Component::setStationDatum(std::int32_t code) {
  const std::lock_guard lock(firstUse_);
  state_.datumCode = code;
  state_.datumText = code == 0 ? "NAD-27" : "NAD-83";
  if (terrain_ != nullptr) terrain_->setStationShift(stationsAreNad27() ? datumShift() : nullptr);
}

// Only once the host has said so: before StaDatum is set nothing is shifted.
bool Component::stationsAreNad27() const { return !state_.datumText.empty() && state_.datumCode == 0; }

float Component::pathLoss() { return needed(services_.pathLoss)(*this); }

WindowlessLoss& Component::windowlessLoss() {
  const std::lock_guard lock(firstUse_);
  if (windowlessLoss_ == nullptr) {
    WindowlessLoss::Services parts;
    parts.module = &state_;
    parts.normalTable = &normalTable_;
    parts.geodesy = &geodesy();
    parts.makeSampler = [this] { return makeSampler(); };
    parts.terrain = [this] { return terrain(); };
    parts.hardStop = services_.hardStop.get();
    parts.errorLog = &log_;
    parts.trap = &trap_;
    windowlessLoss_ = std::make_unique<WindowlessLoss>(std::move(parts), settingsReader());
  }
  return *windowlessLoss_;
}

// The component's own folder is made when an entry is written; a host's folder is the host's to make.
std::string Component::logFolder() {
  std::string folder = host_.clientPath();
  if (host_.client() == services_.ownApplication && !folder.empty())
    std::filesystem::create_directories(folder);
  return folder;
}

ComponentSubstitute::ComponentSubstitute(Component& component) : before_(substitute) {
  substitute = &component;
}
ComponentSubstitute::~ComponentSubstitute() { substitute = before_; }

}  // namespace zel
