// The hourglass of what takes its time.
#pragma once

#include "platform/process_services.h"

namespace zel {

// The pointer is the hourglass as long as this lives, and is set back on every way out.
class Hourglass {
 public:
  explicit Hourglass(Pointer& pointer) : pointer_(pointer) { pointer_.set(PointerShape::kHourglass); }
  ~Hourglass() {
    try {
      pointer_.set(PointerShape::kDefault);
    } catch (...) {
      // A pointer that cannot be set back is no reason to lose the work, or the failure that ended it.
      return;
    }
  }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  Pointer& pointer_;
};

// For work that is done without a screen, or under the hourglass of other work.
class NoPointer final : public Pointer {
 public:
  void set(PointerShape) override {}
};

}  // namespace zel
