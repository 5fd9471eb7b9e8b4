#include "map_view/terrain_reader.h"

#include <QObject>
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
}  // namespace

struct TerrainReader::Self {
  explicit Self(TerrainReader& owner) : reader(owner) {}

  void work();
  void readCoverage(const std::shared_ptr<const TerrainMap>& from, std::uint64_t number);
  void readHeight(const std::shared_ptr<const TerrainMap>& from, std::uint64_t number, Position position);
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
  std::shared_ptr<const TerrainMap> terrain;
  std::uint64_t terrainNumber = 0;
  bool coverageWanted = false, ending = false;
  std::optional<Position> heightWanted;
  std::thread thread;
};

TerrainReader::TerrainReader() : self_(std::make_unique<Self>(*this)) {}

TerrainReader::~TerrainReader() {
  {
    const std::lock_guard lock(self_->guard);
    self_->ending = true;
  }
  self_->wake.notify_all();
  if (self_->thread.joinable()) self_->thread.join();
}

void TerrainReader::Self::wakeThread() {
  if (!thread.joinable()) thread = std::thread([this] { work(); });
  wake.notify_one();
}

void TerrainReader::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  std::shared_ptr<const TerrainMap> before;  // let go of without the lock
  {
    const std::lock_guard lock(self_->guard);
    if (self_->coverageWanted) --self_->unanswered;
    if (self_->heightWanted) --self_->unanswered;
    before = std::exchange(self_->terrain, std::move(terrain));
    ++self_->terrainNumber;
    self_->coverageWanted = self_->terrain != nullptr;
    self_->heightWanted.reset();
    if (self_->terrain == nullptr) return;
    ++self_->unanswered;
  }
  self_->wakeThread();
}

void TerrainReader::askHeight(Position position) {
  {
    const std::lock_guard lock(self_->guard);
    if (self_->terrain == nullptr) return;
    if (!self_->heightWanted) ++self_->unanswered;
    self_->heightWanted = position;
  }
  self_->wakeThread();
}

bool TerrainReader::busy() const { return self_->unanswered > 0; }

void TerrainReader::Self::work() {
  for (;;) {
    std::shared_ptr<const TerrainMap> from;
    std::uint64_t number = 0;
    std::optional<Position> position;
    bool coverage = false;
    {
      std::unique_lock lock(guard);
      wake.wait(lock, [this] { return ending || coverageWanted || heightWanted; });
      if (ending) return;
      from = terrain;
      number = terrainNumber;
      coverage = std::exchange(coverageWanted, false);
      if (!coverage) position = std::exchange(heightWanted, std::nullopt);
    }
    if (coverage) readCoverage(from, number);
    if (position) readHeight(from, number, *position);
  }
}

void TerrainReader::Self::readCoverage(const std::shared_ptr<const TerrainMap>& from, std::uint64_t number) {
  std::vector<TerrainCoverage> coverage;
  try {
    coverage = from->rasters();
  } catch (const std::exception&) {  // out of memory: no outlines
  }
  onUserInterfaceThread([this, number, found = std::move(coverage)] {
    --unanswered;
    if (number == terrainNumber && reader.onCoverage) reader.onCoverage(found);
  });
}

void TerrainReader::Self::readHeight(const std::shared_ptr<const TerrainMap>& from, std::uint64_t number,
                                     Position position) {
  std::vector<float> heights;
  try {
    heights = from->heightsAt({&position, 1}, kPointerMethod);
  } catch (const std::exception&) {  // out of memory: no height is told
  }
  onUserInterfaceThread([this, number, position, found = std::move(heights)] {
    --unanswered;
    if (number == terrainNumber && !found.empty() && reader.onHeight) reader.onHeight(position, found[0]);
  });
}

}  // namespace zel::host
