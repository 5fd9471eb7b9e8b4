#include "planning/plan_document.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zel::host {
namespace {

template <typename Listeners, typename... Arguments>
void callAll(const Listeners& listeners, const Arguments&... arguments) {
  // A listener may add another.
  for (std::size_t i = 0; i < listeners.size(); ++i) {
    const auto listener = listeners[i];
    listener(arguments...);
  }
}

template <typename Map>
auto idBehind(const Map& map) {
  using Id = typename Map::key_type;
  return map.empty() ? Id{1} : static_cast<Id>(map.rbegin()->first + 1);
}

}  // namespace

void PlanDocument::apply(const PlanEdit& edit) {
  if (edit.empty()) return;
  PlanEdit redo = edit;  // a listener may change what `edit` refers to
  PlanEdit undo = applyEdit(plan_, redo);
  forgetUndone();
  nextStation_ = std::max(nextStation_, idBehind(redo.stations));
  nextLink_ = std::max(nextLink_, idBehind(redo.links));
  const PlanChange change = touched(redo);
  steps_.push_back({std::move(undo), std::move(redo)});
  held_ += steps_.back().held();
  ++position_;
  forgetOldest();
  tell(change);
}

void PlanDocument::forgetUndone() {
  if (savedPosition_ > static_cast<long>(position_)) savedPosition_ = -1;
  while (steps_.size() > position_) {
    held_ -= steps_.back().held();
    steps_.pop_back();
  }
}

void PlanDocument::forgetOldest() {
  while (steps_.size() > kMostSteps || (held_ > mostHeld_ && steps_.size() > 1)) {
    held_ -= steps_.front().held();
    steps_.pop_front();
    --position_;
    if (savedPosition_ >= 0) --savedPosition_;
  }
}

std::string PlanDocument::undoText() const {
  return canUndo() ? steps_[position_ - 1].undo.text : std::string();
}

std::string PlanDocument::redoText() const { return canRedo() ? steps_[position_].redo.text : std::string(); }

void PlanDocument::undo() {
  if (!canUndo()) return;
  const PlanEdit& edit = steps_[position_ - 1].undo;
  applyEdit(plan_, edit);
  --position_;
  tell(touched(edit));
}

void PlanDocument::redo() {
  if (!canRedo()) return;
  const PlanEdit& edit = steps_[position_].redo;
  applyEdit(plan_, edit);
  ++position_;
  tell(touched(edit));
}

void PlanDocument::open(Plan plan, std::string path, bool unsaved) {
  if (const std::string problem = planProblem(plan); !problem.empty()) throw std::invalid_argument(problem);
  plan_ = std::move(plan);
  path_ = std::move(path);
  steps_.clear();
  held_ = 0;
  position_ = 0;
  savedPosition_ = unsaved ? -1 : 0;
  nextStation_ = idBehind(plan_.stations);
  nextLink_ = idBehind(plan_.links);
  PlanChange change;
  change.everything = true;
  tell(change);
}

void PlanDocument::saved(std::string path) {
  path_ = std::move(path);
  savedPosition_ = static_cast<long>(position_);
  callAll(fileListeners_);
}

void PlanDocument::tell(const PlanChange& change) {
  callAll(listeners_, change);
  callAll(fileListeners_);
}

PlanChange PlanDocument::touched(const PlanEdit& edit) const {
  PlanChange change;
  change.datum = edit.datum.has_value();
  for (const auto& [id, station] : edit.stations) change.stations.push_back(id);
  for (const auto& [id, link] : edit.links) change.links.push_back(id);
  if (edit.stations.empty()) return change;
  for (const auto& [id, link] : plan_.links) {
    const bool touches = edit.stations.count(link.from) != 0 || edit.stations.count(link.to) != 0;
    if (touches && edit.links.count(id) == 0) change.links.push_back(id);
  }
  std::sort(change.links.begin(), change.links.end());
  return change;
}

}  // namespace zel::host
