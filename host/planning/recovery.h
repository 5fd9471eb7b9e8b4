// Copies of unsaved work, so that a crash costs the last seconds only.
//
// Each running program has a copy of its own in a folder, "plan-<process>-<number>.json", and holds a lock on
// "plan-<process>-<number>.lock" beside it: the copy is replaced as a whole each time, which a lock on itself
// would not outlive. A copy whose lock nobody holds was left by a program that ended without its user's
// decision, and is offered at the next start; the one who was offered it holds its lock until it is taken
// away, so that of two programs one offers it. Beside the plan the copy remembers which file the plan came
// from and how that stood. Copies are readable by their owner only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "planning/plan_file.h"

namespace zel::host {

struct LeftPlan {
  std::string recoveryPath;
  std::string originalPath;  // the file the plan came from; empty when it had none
  std::int64_t savedAt = 0;  // seconds since 1970
  // What became of that file since the first copy was made, told by its time and size.
  bool originalChanged = false;
  bool originalMissing = false;
  PlanFile file;
};

class Recovery {
 public:
  // `folder` is made when it is first needed.
  explicit Recovery(std::string folder);
  ~Recovery();  // releases the locks; keeps the copy unless discard() came before
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;

  // True when the copy is written. When it cannot be, what was kept before stays, and PlanFileError is
  // thrown: once for a reason, then false is given until it has worked again or the reason is another one. A
  // relative `originalPath` is counted from the current folder.
  bool keep(const PlanFile& file, const std::string& originalPath);
  // The work is saved, or not wanted.
  void discard() noexcept;

  // Plans left by others that are gone, the latest first. Unreadable ones are renamed to "*.unreadable" and
  // named in `problems`. Asked again, those that were not taken away are among them again.
  std::vector<LeftPlan> left(std::vector<std::string>& problems);
  // Takes a left copy away.
  void remove(const LeftPlan& left) noexcept;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
