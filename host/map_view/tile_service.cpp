#include "map_view/tile_service.h"

#include <unistd.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <list>
#include <mutex>
#include <set>
#include <thread>
#include <unordered_map>
#include <utility>

namespace zel::host {

struct TileHash {
  std::size_t operator()(const TileId& tile) const {
    const auto level = static_cast<std::uint64_t>(tile.level),
               column = static_cast<std::uint64_t>(tile.column), row = static_cast<std::uint64_t>(tile.row);
    return std::hash<std::uint64_t>()((level << 58U) ^ (column << 29U) ^ row);
  }
};

using TileHeights = std::shared_ptr<const std::vector<float>>;
// Of one asking: true once the tile is no longer wanted.
using TileTicket = std::shared_ptr<std::atomic<bool>>;

// How heights become colours; counted, so that it is seen which pictures are of before.
struct TileStyle {
  HeightScale scale;
  bool relief = true;
  std::uint64_t number = 1;
};

struct TileJob {
  TileId tile;
  std::uint64_t terrainNumber = 0;
  std::shared_ptr<const TerrainMap> terrain;
  TileHeights heights;  // there already: only the colours are wanted
  TileTicket cancelled;
};

struct MadeTile {
  TileId tile;
  TileTicket ticket;
  std::uint64_t terrainNumber = 0, styleNumber = 0;
  TileHeights heights;  // none: it could not be made
  TileContents contents;
  QImage picture;
};

struct KeptTile {
  TileHeights heights;
  TileContents contents;
  QImage picture;
  std::uint64_t styleNumber = 0;
  std::list<TileId>::iterator use;
};

namespace {

constexpr int kFrameMs = 16;  // between two calls of onTile, at least
constexpr int kNiceness = 5;  // of the threads: painting a frame comes first

std::size_t bytesOf(const KeptTile& tile) {
  return static_cast<std::size_t>(tile.picture.sizeInBytes()) + tile.heights->size() * sizeof(float);
}

TileContents contentsOf(const std::vector<float>& heights) {
  TileContents contents;
  contents.range = heightRange(heights);
  for (const float height : heights) {
    contents.voids = contents.voids || height == kTerrainVoid;
    contents.outside = contents.outside || height == kTerrainOutside;
  }
  return contents;
}

MadeTile makeTile(const TileJob& job, const TileStyle& style) {
  MadeTile made;
  made.tile = job.tile;
  made.ticket = job.cancelled;
  made.terrainNumber = job.terrainNumber;
  made.styleNumber = style.number;
  TileHeights heights = job.heights;
  if (heights == nullptr) {
    std::vector<float> read =
        job.terrain->grid(tileLatitudes(job.tile), tileLongitudes(job.tile), job.cancelled.get());
    if (read.size() != static_cast<std::size_t>(kTileGrid) * kTileGrid) return made;
    heights = std::make_shared<const std::vector<float>>(std::move(read));
  }
  made.contents = contentsOf(*heights);
  const std::vector<Rgb> pixels =
      shadeTile(*heights, tileMetresPerPixel(job.tile), style.scale, style.relief);
  if (pixels.size() != static_cast<std::size_t>(kTileSide) * kTileSide) return made;
  QImage picture(kTileSide, kTileSide, QImage::Format_RGB32);
  if (picture.isNull()) return made;
  for (int row = 0; row < kTileSide; ++row) {
    std::memcpy(picture.scanLine(row), pixels.data() + static_cast<std::ptrdiff_t>(row) * kTileSide,
                kTileSide * sizeof(Rgb));
  }
  made.picture = std::move(picture);
  made.heights = std::move(heights);
  return made;
}

}  // namespace

struct TileService::Self {
  explicit Self(TileService& owner, std::size_t most) : service(owner), mostBytes(most) {
    delivery.setSingleShot(true);
    QObject::connect(&delivery, &QTimer::timeout, &delivery, [this] { deliver(); });
  }

  // --- The user-interface thread ---
  void ask(TileId tile, TileHeights heights);
  void forget(const std::function<bool(const TileId&)>& unwanted);
  void deliver();
  void keep(MadeTile made);
  void dropOldest();
  void restyle();
  void startThreads();

  // --- The threads ---
  void work();
  bool takeJob(TileJob& job, TileStyle& jobStyle);
  void hand(MadeTile made);

  TileService& service;
  std::size_t mostBytes;
  std::shared_ptr<const TerrainMap> terrain;
  std::uint64_t terrainNumber = 1;
  std::unordered_map<TileId, KeptTile, TileHash> kept;
  std::list<TileId> uses;  // the latest first
  std::size_t keptBytes = 0;
  std::unordered_map<TileId, TileTicket, TileHash> asked;
  std::set<TileId> failed;  // not asked for again over this terrain
  QTimer delivery;          // lives on the user-interface thread; stands for it, too
  QElapsedTimer sinceDelivery;

  std::mutex guard;  // of all below
  std::condition_variable wake;
  std::vector<TileJob> jobs;  // the last one is next
  std::vector<MadeTile> done;
  TileStyle style;
  bool announced = false, ending = false;
  std::vector<std::thread> threads;
};

void TileService::Self::startThreads() {
  if (!threads.empty()) return;
  const unsigned cores = std::thread::hardware_concurrency();
  const unsigned count = std::clamp(cores, 2U, 5U) - 1U;
  for (unsigned i = 0; i < count; ++i) threads.emplace_back([this] { work(); });
}

bool TileService::Self::takeJob(TileJob& job, TileStyle& jobStyle) {
  std::unique_lock lock(guard);
  wake.wait(lock, [this] { return ending || !jobs.empty(); });
  if (ending) return false;
  job = std::move(jobs.back());
  jobs.pop_back();
  jobStyle = style;
  return true;
}

void TileService::Self::work() {
  // On this system it is the thread's own. Refused, all the same.
  [[maybe_unused]] const int niceness = ::nice(kNiceness);
  TileJob job;
  TileStyle jobStyle;
  while (takeJob(job, jobStyle)) {
    MadeTile made;
    try {
      made = makeTile(job, jobStyle);
    } catch (const std::exception&) {  // out of memory: the tile stays away, the program goes on
      made = MadeTile{job.tile, job.cancelled, job.terrainNumber, 0, nullptr, {}, {}};
    }
    if (!*job.cancelled) hand(std::move(made));
    job = {};  // the terrain may be let go of
  }
}

void TileService::Self::hand(MadeTile made) {
  const std::lock_guard lock(guard);
  if (ending) return;
  done.push_back(std::move(made));
  if (announced) return;
  announced = true;
  QMetaObject::invokeMethod(
      &delivery,
      [this] {
        const qint64 since = sinceDelivery.isValid() ? sinceDelivery.elapsed() : kFrameMs;
        delivery.start(static_cast<int>(std::clamp<qint64>(kFrameMs - since, 0, kFrameMs)));
      },
      Qt::QueuedConnection);
}

void TileService::Self::ask(TileId tile, TileHeights heights) {
  if (terrain == nullptr || asked.contains(tile)) return;
  TileJob job;
  job.tile = tile;
  job.terrainNumber = terrainNumber;
  job.terrain = terrain;
  job.heights = std::move(heights);
  job.cancelled = std::make_shared<std::atomic<bool>>(false);
  asked.emplace(tile, job.cancelled);
  startThreads();
  {
    const std::lock_guard lock(guard);
    jobs.push_back(std::move(job));
  }
  wake.notify_one();
}

void TileService::Self::forget(const std::function<bool(const TileId&)>& unwanted) {
  bool any = false;
  for (auto entry = asked.begin(); entry != asked.end();) {
    if (!unwanted(entry->first)) {
      ++entry;
      continue;
    }
    *entry->second = true;
    entry = asked.erase(entry);
    any = true;
  }
  if (!any) return;
  const std::lock_guard lock(guard);
  std::erase_if(jobs, [](const TileJob& job) { return job.cancelled->load(); });
}

void TileService::Self::deliver() {
  std::vector<MadeTile> made;
  {
    const std::lock_guard lock(guard);
    made.swap(done);
    announced = false;
  }
  sinceDelivery.start();
  for (MadeTile& tile : made) {
    if (tile.terrainNumber == terrainNumber) keep(std::move(tile));
  }
  dropOldest();
  if (service.onTile) service.onTile();
}

void TileService::Self::keep(MadeTile made) {
  const auto asking = asked.find(made.tile);
  if (asking != asked.end() && asking->second == made.ticket) asked.erase(asking);
  if (made.heights == nullptr) {
    failed.insert(made.tile);
    return;
  }
  const auto [entry, fresh] = kept.try_emplace(made.tile);
  KeptTile& tile = entry->second;
  if (!fresh && tile.styleNumber > made.styleNumber) return;
  if (fresh) {
    uses.push_front(made.tile);
    tile.use = uses.begin();
  } else {
    keptBytes -= bytesOf(tile);
  }
  tile.heights = std::move(made.heights);
  tile.contents = made.contents;
  tile.picture = std::move(made.picture);
  tile.styleNumber = made.styleNumber;
  keptBytes += bytesOf(tile);
}

void TileService::Self::dropOldest() {
  while (keptBytes > mostBytes && !uses.empty()) {
    const auto entry = kept.find(uses.back());
    keptBytes -= bytesOf(entry->second);
    kept.erase(entry);
    uses.pop_back();
  }
}

// What is being shaded gets the new colours when it is asked for again.
void TileService::Self::restyle() {
  const std::lock_guard lock(guard);
  ++style.number;
}

TileService::TileService(std::size_t bytes) : self_(std::make_unique<Self>(*this, bytes)) {}

TileService::~TileService() {
  end();
  for (std::thread& thread : self_->threads) thread.join();
}

void TileService::end() {
  self_->forget([](const TileId&) { return true; });
  {
    const std::lock_guard lock(self_->guard);
    self_->ending = true;
  }
  self_->wake.notify_all();
}

void TileService::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  if (terrain == self_->terrain) return;
  self_->forget([](const TileId&) { return true; });
  self_->terrain = std::move(terrain);
  ++self_->terrainNumber;
  self_->kept.clear();
  self_->uses.clear();
  self_->keptBytes = 0;
  self_->failed.clear();
}

void TileService::setScale(const HeightScale& scale) {
  if (scale == self_->style.scale) return;
  {
    const std::lock_guard lock(self_->guard);
    self_->style.scale = scale;
  }
  self_->restyle();
}

void TileService::setRelief(bool relief) {
  if (relief == self_->style.relief) return;
  {
    const std::lock_guard lock(self_->guard);
    self_->style.relief = relief;
  }
  self_->restyle();
}

// The style is written on this thread alone, so reading it here needs no lock.
const HeightScale& TileService::scale() const { return self_->style.scale; }

const QImage* TileService::find(TileId tile, bool ask) {
  const auto entry = self_->kept.find(tile);
  if (entry == self_->kept.end()) {
    if (ask && !self_->failed.contains(tile)) self_->ask(tile, nullptr);
    return nullptr;
  }
  KeptTile& found = entry->second;
  self_->uses.splice(self_->uses.begin(), self_->uses, found.use);
  if (ask && found.styleNumber != self_->style.number) self_->ask(tile, found.heights);
  return &found.picture;
}

void TileService::keepAsked(const std::vector<TileId>& wanted) {
  if (self_->asked.empty()) return;
  self_->forget([&wanted](const TileId& tile) {
    return std::find(wanted.begin(), wanted.end(), tile) == wanted.end();
  });
}

TileContents TileService::contents(const std::vector<TileId>& tiles) {
  TileContents all;
  for (const TileId& tile : tiles) {
    const auto entry = self_->kept.find(tile);
    if (entry == self_->kept.end()) continue;
    const TileContents& one = entry->second.contents;
    all.voids = all.voids || one.voids;
    all.outside = all.outside || one.outside;
    if (!one.range.any) continue;
    all.range.lowest = all.range.any ? std::min(all.range.lowest, one.range.lowest) : one.range.lowest;
    all.range.highest = all.range.any ? std::max(all.range.highest, one.range.highest) : one.range.highest;
    all.range.any = true;
  }
  return all;
}

HeightRange TileService::range(const std::vector<TileId>& tiles) { return contents(tiles).range; }

int TileService::waiting() const { return static_cast<int>(self_->asked.size()); }

std::size_t TileService::bytes() const { return self_->keptBytes; }

}  // namespace zel::host
