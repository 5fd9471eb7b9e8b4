#include "analysis/terrain_warmer.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "zel/geodesic.h"

namespace zel::host {
namespace {

constexpr double kFarthestKm = 2000;  // the component profiles nothing longer

void readPath(const TerrainMap& terrain, const WarmPath& path) {
  const double distance = geodesicLine(path.from, path.to, 2).distanceKm;
  if (!(distance > 0 && distance <= kFarthestKm)) return;
  const double wanted = std::min(std::round(distance * path.pointsPerKm), double{1} * path.mostPoints);
  const auto points = static_cast<std::int32_t>(std::max(2.0, wanted + 1));
  terrain.heightsAt(geodesicLine(path.from, path.to, points).positions, path.method);
}

}  // namespace

struct TerrainWarmer::Self {
  struct Job {
    std::shared_ptr<const TerrainMap> terrain;
    WarmPath path;
  };

  std::function<void(std::uint64_t)> done;
  std::mutex mutex;
  std::condition_variable wake;
  std::deque<Job> jobs;
  bool ending = false;
  std::thread thread;

  void run() {
    while (const auto job = next()) {
      try {
        readPath(*job->terrain, job->path);
      } catch (const std::exception&) {
        // Memory ran out: the computation itself finds and tells what is wrong.
      }
      done(job->path.ticket);
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
};

TerrainWarmer::TerrainWarmer(std::function<void(std::uint64_t)> done) : self_(std::make_unique<Self>()) {
  self_->done = std::move(done);
  self_->thread = std::thread([self = self_.get()] { self->run(); });
}

TerrainWarmer::~TerrainWarmer() {
  {
    const std::lock_guard lock(self_->mutex);
    self_->ending = true;
  }
  self_->wake.notify_all();
  self_->thread.join();
}

void TerrainWarmer::read(const std::shared_ptr<const TerrainMap>& terrain, const WarmPath& path) {
  {
    const std::lock_guard lock(self_->mutex);
    self_->jobs.push_back({terrain, path});
  }
  self_->wake.notify_one();
}

}  // namespace zel::host
