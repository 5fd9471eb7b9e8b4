#include "map_view/terrain_reader.h"

#include <QObject>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace zel::host {

namespace {
// As the component's setting of that number: bilinear.
constexpr std::int32_t kPointerMethod = 0;

// A terrain that is asked about, until `cancelled`.
struct AskedTerrain {
  std::shared_ptr<const TerrainMap> map;
  std::uint64_t number = 0;
  std::shared_ptr<std::atomic<bool>> cancelled;
};
}  // namespace

struct TerrainReader::Self {
  explicit Self(TerrainReader& owner) : reader(owner) {}

  void work();
  void readCoverage(const AskedTerrain& from);
  void readHeight(const AskedTerrain& from, Position position);
  void wakeThread();
  template <typename Call>
  void onUserInterfaceThread(Call call) {
    QMetaObject::invokeMethod(&home, std::move(call), Qt::QueuedConnection);
  }

  TerrainReader& reader;
  QObject home;  // lives on the user-interface thread, and what is called there with it
  // Of the user-interface thread.
  int unanswered = 0;

  std::mutex guard;  // of all below
  std::condition_variable wake;
  AskedTerrain terrain;
  bool coverageWanted = false, ending = false;
  std::optional<Position> heightWanted;
  std::thread thread;
};

TerrainReader::TerrainReader() : self_(std::make_unique<Self>(*this)) {}

TerrainReader::~TerrainReader() {
  end();
  if (self_->thread.joinable()) self_->thread.join();
}

void TerrainReader::end() {
  {
    const std::lock_guard lock(self_->guard);
    self_->ending = true;
    if (self_->terrain.cancelled != nullptr) *self_->terrain.cancelled = true;
  }
  self_->wake.notify_all();
}

void TerrainReader::Self::wakeThread() {
  if (!thread.joinable()) thread = std::thread([this] { work(); });
  wake.notify_one();
}

void TerrainReader::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  AskedTerrain before;  // let go of without the lock
  {
    const std::lock_guard lock(self_->guard);
    if (self_->coverageWanted) --self_->unanswered;
    if (self_->heightWanted) --self_->unanswered;
    before = std::move(self_->terrain);
    if (before.cancelled != nullptr) *before.cancelled = true;
    self_->terrain = {std::move(terrain), before.number + 1, std::make_shared<std::atomic<bool>>(false)};
    self_->coverageWanted = self_->terrain.map != nullptr;
    self_->heightWanted.reset();
    if (self_->terrain.map == nullptr) return;
    ++self_->unanswered;
  }
  self_->wakeThread();
}

void TerrainReader::askHeight(Position position) {
  {
    const std::lock_guard lock(self_->guard);
    if (self_->terrain.map == nullptr) return;
    if (!self_->heightWanted) ++self_->unanswered;
    self_->heightWanted = position;
  }
  self_->wakeThread();
}

bool TerrainReader::busy() const { return self_->unanswered > 0; }

void TerrainReader::Self::work() {
  for (;;) {
    AskedTerrain from;
    std::optional<Position> position;
    bool coverage = false;
    {
      std::unique_lock lock(guard);
      wake.wait(lock, [this] { return ending || coverageWanted || heightWanted; });
      if (ending) return;
      from = terrain;
      coverage = std::exchange(coverageWanted, false);
      if (!coverage) position = std::exchange(heightWanted, std::nullopt);
    }
    if (coverage) readCoverage(from);
    if (position) readHeight(from, *position);
  }
}

void TerrainReader::Self::readCoverage(const AskedTerrain& from) {
  std::vector<TerrainCoverage> coverage;
  try {
    if (from.map->prepare(from.cancelled.get())) coverage = from.map->rasters();
  } catch (const std::exception&) {  // out of memory: no outlines
  }
  onUserInterfaceThread([this, number = from.number, found = std::move(coverage)] {
    --unanswered;
    if (number == terrain.number && reader.onCoverage) reader.onCoverage(found);
  });
}

void TerrainReader::Self::readHeight(const AskedTerrain& from, Position position) {
  std::vector<float> heights;
  try {
    if (from.map->prepare(from.cancelled.get()))
      heights = from.map->heightsAt({&position, 1}, kPointerMethod);
  } catch (const std::exception&) {  // out of memory: no height is told
  }
  onUserInterfaceThread([this, number = from.number, position, found = std::move(heights)] {
    --unanswered;
    if (number == terrain.number && !found.empty() && reader.onHeight) reader.onHeight(position, found[0]);
  });
}

}  // namespace zel::host
