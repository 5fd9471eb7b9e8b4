#include "analysis/link_analysis.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <deque>
#include <exception>

#include "analysis/link_computation.h"
#include "analysis/terrain_warmer.h"
#include "zel/geodesic.h"
#include "zel/settings.h"

namespace zel::host {
namespace {

// So many paths are read ahead of the computation: enough to keep the thread busy, few enough that a link
// that is suddenly wanted first does not wait for them.
constexpr std::size_t kReadAhead = 4;
constexpr int kStepsMs = 8;  // half of what a screen takes for a picture

double storedNumber(const char* section, const char* key, double otherwise, double lowest, double highest) {
  const auto text = storedSetting(section, key);
  if (!text) return otherwise;
  // Not by strtod, which reads in the user's language.
  double value = 0;
  const char* begin = text->data() + std::min(text->find_first_not_of(" +"), text->size());
  if (std::from_chars(begin, text->data() + text->size(), value).ec != std::errc() || !std::isfinite(value))
    return otherwise;
  return value >= lowest && value <= highest ? value : std::clamp(value, lowest, highest);
}

}  // namespace

// A link that waits goes through: wanted (in the queue), being read by the thread, ready, under way. Each
// change gives it a new ticket; whatever belongs to an older one is dropped where it is met.
struct LinkAnalysis::Self {
  struct Turn {
    LinkId link = 0;
    std::uint64_t ticket = 0;
    std::optional<Position> outside;  // WGS 84, as LinkResult::outside
  };

  explicit Self(const Plan& thePlan)
      : plan(thePlan), warmer([this](std::uint64_t ticket, std::optional<Position> outside) {
          QMetaObject::invokeMethod(
              &timer, [this, ticket, outside] { read(ticket, outside); }, Qt::QueuedConnection);
        }) {
    timer.setSingleShot(true);
    timer.setInterval(0);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { stepForAWhile(); });
  }

  const Plan& plan;
  std::shared_ptr<const TerrainMap> terrain;
  std::map<LinkId, LinkResult> results;
  std::map<LinkId, std::uint64_t> waiting;  // with their latest tickets
  std::deque<Turn> wanted, reading, ready;
  std::optional<LinkComputation> computation;
  Turn underWay;
  std::uint64_t lastTicket = 0;
  bool paused = false;
  WarmPath density;
  LinkAnalysis* owner = nullptr;
  QTimer timer;
  TerrainWarmer warmer;  // last: its thread ends before what it calls is gone

  bool current(const Turn& turn) const {
    const auto found = waiting.find(turn.link);
    return found != waiting.end() && found->second == turn.ticket;
  }

  void want(LinkId link) {
    const std::uint64_t ticket = ++lastTicket;
    waiting[link] = ticket;
    wanted.push_back({link, ticket, std::nullopt});
    results[link].done = false;
  }

  void forget(LinkId link) {
    waiting.erase(link);
    results.erase(link);
  }

  void goOn() {
    if (!paused && !waiting.empty()) timer.start();
  }

  void readSettings() {
    try {
      // As the component lays the samples; a number that is not quite the same reads the same ground.
      density.pointsPerKm = storedNumber("Profile", "Prf_Per", 100, 10, 99);
      density.mostPoints = static_cast<std::int32_t>(storedNumber("Profile", "Prf_Max", 1000, 1000, 5000));
      density.method = static_cast<std::int32_t>(storedNumber("Settings", "CalcMethod", 0, 0, 1));
    } catch (const std::exception&) {
      density = {};  // every computation will tell that the settings cannot be read
    }
  }

  void readAhead() {
    while (!wanted.empty() && reading.size() + ready.size() < kReadAhead) {
      const Turn turn = wanted.front();
      wanted.pop_front();
      if (!current(turn)) continue;
      const auto link = plan.links.find(turn.link);
      if (link == plan.links.end()) {
        forget(turn.link);
        continue;
      }
      const auto from = plan.stations.find(link->second.from);
      const auto to = plan.stations.find(link->second.to);
      if (!terrain || from == plan.stations.end() || to == plan.stations.end()) {
        ready.push_back(turn);
        continue;
      }
      WarmPath path = density;
      path.ticket = turn.ticket;
      path.from = mapPosition(from->second.position).position;
      path.to = mapPosition(to->second.position).position;
      reading.push_back(turn);
      warmer.read(terrain, path);
    }
  }

  // The thread has read a path.
  void read(std::uint64_t ticket, std::optional<Position> outside) {
    const auto found = std::find_if(reading.begin(), reading.end(),
                                    [ticket](const Turn& turn) { return turn.ticket == ticket; });
    if (found == reading.end()) return;
    found->outside = outside;
    ready.push_back(*found);
    reading.erase(found);
    goOn();
  }

  // Steps of a millisecond or two for a few milliseconds; the events that have come meanwhile are handled
  // before the next.
  void stepForAWhile() {
    QElapsedTimer clock;
    clock.start();
    while (!paused && step())
      if (clock.elapsed() >= kStepsMs) {
        goOn();
        return;
      }
  }

  // False when nothing is to be done, or ready: read() comes back to it.
  bool step() {
    if (computation && !current(underWay)) computation.reset();
    if (!computation && !begin()) return false;
    if (!computation->step()) finish();
    return true;
  }

  // False when nothing is ready: read() comes back to it.
  bool begin() {
    readAhead();
    while (!ready.empty()) {
      underWay = ready.front();
      ready.pop_front();
      readAhead();
      if (!current(underWay)) continue;
      const auto link = plan.links.find(underWay.link);
      if (link == plan.links.end()) {
        forget(underWay.link);
        continue;
      }
      computation.emplace(plan, link->second);
      return true;
    }
    return false;
  }

  void finish() {
    const LinkId link = underWay.link;
    LinkResult& result = results[link];
    result = computation->take();
    if (result.noTerrain && underWay.outside) result.outside = stationPosition(*underWay.outside).position;
    computation.reset();
    waiting.erase(link);
    if (owner->onResult) owner->onResult(link);
    if (owner->onProgress) owner->onProgress();
  }
};

LinkAnalysis::LinkAnalysis(const Plan& plan) : self_(std::make_unique<Self>(plan)) {
  self_->owner = this;
  self_->readSettings();
}

LinkAnalysis::~LinkAnalysis() = default;

void LinkAnalysis::setTerrain(std::shared_ptr<const TerrainMap> terrain) {
  self_->terrain = std::move(terrain);
  self_->warmer.forget();
  self_->wanted.insert(self_->wanted.begin(), self_->reading.begin(), self_->reading.end());
  self_->reading.clear();
  self_->goOn();
}

void LinkAnalysis::update(const std::vector<LinkId>& links) {
  if (links.empty()) return;
  self_->readSettings();
  for (const LinkId link : links) {
    if (self_->plan.links.contains(link)) {
      self_->want(link);
    } else {
      self_->forget(link);
    }
  }
  self_->goOn();
  if (onProgress) onProgress();
}

void LinkAnalysis::updateAll() {
  std::vector<LinkId> links;
  for (const auto& entry : self_->results) links.push_back(entry.first);
  for (const auto& entry : self_->plan.links)
    if (!self_->results.contains(entry.first)) links.push_back(entry.first);
  std::sort(links.begin(), links.end());
  update(links);
}

void LinkAnalysis::forgetAll() {
  self_->results.clear();
  self_->waiting.clear();
  self_->wanted.clear();
  if (onProgress) onProgress();
}

void LinkAnalysis::first(LinkId link) {
  const auto waiting = self_->waiting.find(link);
  if (waiting == self_->waiting.end()) return;
  const auto found = std::find_if(self_->wanted.begin(), self_->wanted.end(), [&](const Self::Turn& turn) {
    return turn.link == link && turn.ticket == waiting->second;
  });
  if (found == self_->wanted.end()) return;  // under way or next
  const Self::Turn turn = *found;
  self_->wanted.erase(found);
  self_->wanted.push_front(turn);
}

void LinkAnalysis::pause(bool paused) {
  self_->paused = paused;
  self_->goOn();
}

void LinkAnalysis::end() {
  self_->paused = true;
  self_->warmer.end();
}

const LinkResult* LinkAnalysis::find(LinkId link) const {
  const auto found = self_->results.find(link);
  return found == self_->results.end() ? nullptr : &found->second;
}

std::size_t LinkAnalysis::waiting() const { return self_->waiting.size(); }

}  // namespace zel::host
