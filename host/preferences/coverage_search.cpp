#include "preferences/coverage_search.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QVariant>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace zel::host {
namespace {

constexpr const char* kWaitedFor = "zelCoverageSearchesWaitedFor";

using Flag = std::shared_ptr<std::atomic<bool>>;

// Searches that may be under way, also those whose asker has gone; those that have ended are collected at the
// next search.
class Searches {
 public:
  ~Searches() { wait(); }

  // `work` looks at the flag.
  void run(std::function<void()> work, Flag cancelled) {
    const std::lock_guard lock(mutex_);
    collect();
    auto ended = std::make_shared<std::atomic<bool>>(false);
    running_.push_back({std::thread([work = std::move(work), ended] {
                          work();
                          *ended = true;
                        }),
                        ended, std::move(cancelled)});
  }

  void wait() {
    const std::lock_guard lock(mutex_);
    for (const Running& each : running_) *each.cancelled = true;
    for (Running& each : running_) each.thread.join();
    running_.clear();
  }

 private:
  struct Running {
    std::thread thread;
    Flag ended, cancelled;
  };

  void collect() {
    for (auto each = running_.begin(); each != running_.end();) {
      if (!*each->ended) {
        ++each;
        continue;
      }
      each->thread.join();
      each = running_.erase(each);
    }
  }

  std::mutex mutex_;
  std::vector<Running> running_;
};

Searches& searches() {
  static Searches all;
  return all;
}

void waitForSearches() { searches().wait(); }

// The end of the process must find none running. The static object would wait too late: what the libraries
// below make at their first use, within a search, is taken down before an object that is older. An
// application may be deleted without ever having run, or have run and stay.
void waitAtTheEnd() {
  if (qApp == nullptr || qApp->property(kWaitedFor).toBool()) return;
  qApp->setProperty(kWaitedFor, true);
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, &waitForSearches);
  qAddPostRoutine(&waitForSearches);
}

Coverage lookedUp(const TerrainMap& terrain, const std::atomic<bool>& cancelled) {
  Coverage coverage;
  try {
    if (!terrain.prepare(&cancelled)) return coverage;  // nobody waits for it
    coverage.rasters = terrain.rasters();
    coverage.problems = terrain.problems();
  } catch (const std::exception& failure) {
    coverage.problems.push_back(std::string("The search broke off: ") + failure.what());
  }
  return coverage;
}

}  // namespace

// Where the result goes; the object is on the user interface's thread, and null once nobody asks any more.
struct CoverageSearch::Asker {
  std::mutex mutex;
  std::unique_ptr<QObject> object;
  std::function<void(const Coverage&)> found;
  Flag cancelled = std::make_shared<std::atomic<bool>>(false);
};

CoverageSearch::CoverageSearch(std::function<void(const Coverage&)> found) : found_(std::move(found)) {}

CoverageSearch::~CoverageSearch() { forget(); }

void CoverageSearch::forget() {
  if (!asker_) return;
  *asker_->cancelled = true;
  const std::lock_guard lock(asker_->mutex);
  asker_->object.reset();  // with it go results that are on their way
}

void CoverageSearch::start(int source) {
  forget();
  std::shared_ptr<const TerrainMap> terrain = TerrainMap::open(source);
  asker_ = std::make_shared<Asker>();
  asker_->object = std::make_unique<QObject>();
  asker_->found = found_;
  waitAtTheEnd();
  const auto work = [terrain = std::move(terrain), asker = asker_] {
    auto coverage = std::make_shared<const Coverage>(lookedUp(*terrain, *asker->cancelled));
    const std::lock_guard lock(asker->mutex);
    if (!asker->object) return;
    QMetaObject::invokeMethod(
        asker->object.get(), [asker = asker.get(), coverage] { asker->found(*coverage); },
        Qt::QueuedConnection);
  };
  searches().run(work, asker_->cancelled);
}

}  // namespace zel::host
