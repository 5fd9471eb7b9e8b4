#include "desktop/terrain_watch.h"

#include <QObject>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace zel::host {

struct TerrainWatch::Self {
  explicit Self(TerrainWatch& owner) : watch(owner) {}

  // What is to be done next, and of which terrain.
  struct Job {
    std::shared_ptr<const TerrainMap> terrain;
    std::uint64_t number = 0;  // of the terrain
    std::shared_ptr<std::atomic<bool>> cancelled;
    bool look = false;
    bool outdated = false;
    std::optional<Position> height;
  };

  void work();
  std::optional<Job> next();
  void look(const Job& job);
  void readHeight(const Job& job);
  void wakeThread();
  // Unless another terrain has come meanwhile.
  template <typename Call>
  void tell(const Job& job, Call call) {
    QMetaObject::invokeMethod(
        &home,
        [this, number = job.number, call = std::move(call)] {
          if (number == shownNumber) call();
        },
        Qt::QueuedConnection);
  }

  TerrainWatch& watch;
  QObject home;                   // lives on the user-interface thread, and what is called there with it
  std::uint64_t shownNumber = 0;  // of the user-interface thread

  mutable std::mutex guard;  // of all below
  std::condition_variable wake, looked;
  Job wanted;
  bool known = true, ending = false;
  std::thread thread;
};

TerrainWatch::TerrainWatch() : self_(std::make_unique<Self>(*this)) {}

TerrainWatch::~TerrainWatch() {
  end();
  if (self_->thread.joinable()) self_->thread.join();
}

void TerrainWatch::end() {
  {
    const std::lock_guard lock(self_->guard);
    self_->ending = true;
    if (self_->wanted.cancelled) *self_->wanted.cancelled = true;
  }
  self_->wake.notify_all();
}

void TerrainWatch::Self::wakeThread() {
  if (!thread.joinable()) thread = std::thread([this] { work(); });
  wake.notify_one();
}

void TerrainWatch::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  Self& self = *self_;
  std::shared_ptr<const TerrainMap> before;  // let go of without the lock
  {
    const std::lock_guard lock(self.guard);
    before = std::move(self.wanted.terrain);
    if (self.wanted.cancelled) *self.wanted.cancelled = true;
    self.wanted = {};
    self.wanted.number = ++self.shownNumber;
    self.known = terrain == nullptr;
    if (terrain == nullptr || self.ending) return;
    self.wanted.terrain = std::move(terrain);
    self.wanted.cancelled = std::make_shared<std::atomic<bool>>(false);
    self.wanted.look = true;
  }
  self.wakeThread();
}

bool TerrainWatch::known() const {
  const std::lock_guard lock(self_->guard);
  return self_->known;
}

bool TerrainWatch::waitUntilKnown(int ms) {
  std::unique_lock lock(self_->guard);
  return self_->looked.wait_for(lock, std::chrono::milliseconds(ms), [this] { return self_->known; });
}

void TerrainWatch::askHeight(Position position) {
  {
    const std::lock_guard lock(self_->guard);
    if (self_->wanted.terrain == nullptr) return;
    self_->wanted.height = position;
  }
  self_->wakeThread();
}

void TerrainWatch::askOutdated() {
  {
    const std::lock_guard lock(self_->guard);
    if (self_->wanted.terrain == nullptr) return;
    self_->wanted.outdated = true;
  }
  self_->wakeThread();
}

// One thing at a time, so that another terrain is never kept waiting by what was asked of the one before.
std::optional<TerrainWatch::Self::Job> TerrainWatch::Self::next() {
  std::unique_lock lock(guard);
  wake.wait(lock, [this] { return ending || wanted.look || wanted.height || wanted.outdated; });
  if (ending) return std::nullopt;
  Job job = wanted;
  job.look = std::exchange(wanted.look, false);
  job.height.reset();
  job.outdated = false;
  if (job.look) return job;
  job.height = std::exchange(wanted.height, std::nullopt);
  if (!job.height) job.outdated = std::exchange(wanted.outdated, false);
  return job;
}

void TerrainWatch::Self::work() {
  while (const auto job = next()) {
    try {
      if (job->look) look(*job);
      if (job->height) readHeight(*job);
      if (job->outdated && job->terrain->outdated())
        tell(*job, [this] {
          if (watch.onOutdated) watch.onOutdated();
        });
    } catch (const std::exception&) {  // out of memory: nothing is told
    }
  }
}

void TerrainWatch::Self::look(const Job& job) {
  std::vector<TerrainCoverage> rasters;
  std::vector<std::string> problems;
  try {
    if (!job.terrain->prepare(job.cancelled.get())) return;
    rasters = job.terrain->rasters();
    problems = job.terrain->problems();
  } catch (const std::exception& error) {  // out of memory: nobody is to wait for what will never be known
    problems = {error.what()};
  }
  {
    const std::lock_guard lock(guard);
    if (*job.cancelled) return;
    known = true;
  }
  looked.notify_all();
  tell(job, [this, rasters = std::move(rasters), problems = std::move(problems)] {
    if (watch.onKnown) watch.onKnown(rasters, problems);
  });
}

void TerrainWatch::Self::readHeight(const Job& job) {
  constexpr std::int32_t kBilinear = 0;
  const std::vector<float> heights = job.terrain->heightsAt({&*job.height, 1}, kBilinear);
  if (heights.empty()) return;
  tell(job, [this, position = *job.height, height = heights.front()] {
    if (watch.onHeight) watch.onHeight(position, height);
  });
}

}  // namespace zel::host
