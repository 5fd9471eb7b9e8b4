// The open plan with its history and its file: what the windows show and change.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "planning/plan.h"
#include "planning/plan_edit.h"

namespace zel::host {

// What an edit, undo or redo touched; a new plan touches everything.
struct PlanChange {
  bool everything = false;
  std::vector<StationId> stations;
  std::vector<LinkId> links;  // also those whose stations changed
  bool datum = false;
};

class PlanDocument {
 public:
  // The history is bounded in its steps and in the stations and links that they hold together, which are some
  // hundred bytes each; the oldest steps go first, the last one stays.
  static constexpr std::size_t kMostSteps = 1000;
  static constexpr std::size_t kMostHeld = 1'000'000;

  explicit PlanDocument(std::size_t mostHeld = kMostHeld) : mostHeld_(mostHeld) {}

  const Plan& plan() const { return plan_; }

  // Does nothing for an empty edit. Throws as applyEdit does.
  void apply(const PlanEdit& edit);
  bool canUndo() const { return position_ > 0; }
  bool canRedo() const { return position_ < steps_.size(); }
  std::string undoText() const;  // "move Station 3"; empty when there is nothing to undo
  std::string redoText() const;
  void undo();
  void redo();

  // Ids that were never in use.
  StationId nextStation() const { return nextStation_; }
  LinkId nextLink() const { return nextLink_; }

  // Another plan in the place of this one, without history. `path` is its file; empty for none. `unsaved` for
  // a plan that was recovered, or made for the user. A plan that has a problem (planProblem) changes nothing
  // and throws std::invalid_argument.
  void open(Plan plan, std::string path, bool unsaved = false);
  const std::string& path() const { return path_; }
  // The plan as it is now was written to `path`.
  void saved(std::string path);
  // Whether it differs from its file; undoing back to the saved state makes it the same again.
  bool modified() const { return savedPosition_ != static_cast<long>(position_); }

  // Called after each change; several may listen, in the order in which they asked.
  void onChanged(std::function<void(const PlanChange&)> listener) {
    listeners_.push_back(std::move(listener));
  }
  // Called when path or modified() may have changed.
  void onFileStateChanged(std::function<void()> listener) { fileListeners_.push_back(std::move(listener)); }

 private:
  struct Step {
    PlanEdit undo, redo;
    std::size_t held() const {
      return undo.stations.size() + undo.links.size() + redo.stations.size() + redo.links.size();
    }
  };
  void forgetUndone();
  void forgetOldest();
  void tell(const PlanChange& change);
  PlanChange touched(const PlanEdit& edit) const;

  Plan plan_;
  std::deque<Step> steps_;
  std::size_t held_ = 0;  // stations and links in all steps
  std::size_t mostHeld_;
  std::size_t position_ = 0;  // steps done
  long savedPosition_ = 0;    // -1 when no undo or redo leads there
  StationId nextStation_ = 1;
  LinkId nextLink_ = 1;
  std::string path_;
  std::vector<std::function<void(const PlanChange&)>> listeners_;
  std::vector<std::function<void()>> fileListeners_;
};

}  // namespace zel::host
