#include "analysis/terrain_warmer.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "zel/geodesic.h"

namespace zel::host {
namespace {

constexpr double kFarthestKm = 2000;  // the component profiles nothing longer

std::optional<Position> readPath(const TerrainMap& terrain, const WarmPath& path) {
  const double distance = geodesicLine(path.from, path.to, 2).distanceKm;
  if (!(distance > 0 && distance <= kFarthestKm)) return std::nullopt;
  const double wanted = std::min(std::round(distance * path.pointsPerKm), double{1} * path.mostPoints);
  const auto points = static_cast<std::int32_t>(std::max(2.0, wanted + 1));
  const std::vector<Position> positions = geodesicLine(path.from, path.to, points).positions;
  const std::vector<float> heights = terrain.heightsAt(positions, path.method);
  const auto outside = std::find(heights.begin(), heights.end(), kTerrainOutside);
  if (outside == heights.end()) return std::nullopt;
  return positions[static_cast<std::size_t>(outside - heights.begin())];
}

}  // namespace

struct TerrainWarmer::Self {
  struct Job {
    std::shared_ptr<const TerrainMap> terrain;
    WarmPath path;
    std::shared_ptr<const std::atomic<bool>> cancelled;
  };

  Done done;
  std::mutex mutex;
  std::condition_variable wake;
  std::deque<Job> jobs;
  std::shared_ptr<std::atomic<bool>> cancelled = std::make_shared<std::atomic<bool>>(false);  // of the jobs
  bool ending = false;
  std::thread thread;

  void run() {
    while (const auto job = next()) {
      std::optional<Position> outside;
      try {
        if (!job->terrain->prepare(job->cancelled.get())) continue;
        outside = readPath(*job->terrain, job->path);
      } catch (const std::exception&) {
        // Memory ran out: the computation itself finds and tells what is wrong.
      }
      if (!*job->cancelled) done(job->path.ticket, outside);
    }
  }

  std::optional<Job> next() {
    std::unique_lock lock(mutex);
    wake.wait(lock, [this] { return ending || !jobs.empty(); });
    if (ending) return std::nullopt;
    Job job = std::move(jobs.front());
    jobs.pop_front();
    return job;
  }

  void forget() {
    jobs.clear();
    *cancelled = true;
    cancelled = std::make_shared<std::atomic<bool>>(false);
  }
};

TerrainWarmer::TerrainWarmer(Done done) : self_(std::make_unique<Self>()) {
  self_->done = std::move(done);
  self_->thread = std::thread([self = self_.get()] { self->run(); });
}

TerrainWarmer::~TerrainWarmer() {
  end();
  self_->thread.join();
}

void TerrainWarmer::forget() {
  const std::lock_guard lock(self_->mutex);
  self_->forget();
}

void TerrainWarmer::end() {
  {
    const std::lock_guard lock(self_->mutex);
    self_->ending = true;
    self_->forget();
  }
  self_->wake.notify_all();
}

void TerrainWarmer::read(const std::shared_ptr<const TerrainMap>& terrain, const WarmPath& path) {
  {
    const std::lock_guard lock(self_->mutex);
    self_->jobs.push_back({terrain, path, self_->cancelled});
  }
  self_->wake.notify_one();
}

}  // namespace zel::host
