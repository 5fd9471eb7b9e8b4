// What every export does around its work.
#pragma once

#include "component/services/error_trap.h"
#include "export/export_texts.h"
#include "export/text_file.h"
#include "foundation/runtime_error.h"
#include "platform/process_services.h"

namespace zel {

// Thrown between two samples, and no failure.
struct ExportCancelled {};

// Call it inside a catch block.
inline RuntimeError failureBeingHandled() {
  const ErrorInformation error = currentError();
  return {error.number, error.description};
}

inline LineSink linesInto(TextFile& file) {
  return [&file](std::string_view line) { file.line(line); };
}

// The pointer's shape while an export runs, taken back on every way out.
class Hourglass {
 public:
  explicit Hourglass(Pointer& pointer) : pointer_(pointer) { pointer_.set(PointerShape::kHourglass); }
  ~Hourglass() {
    try {
      pointer_.set(PointerShape::kDefault);
    } catch (...) {
      // A pointer that cannot be set back is no reason to lose an export, or the failure that ended it.
      return;
    }
  }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  Pointer& pointer_;
};

}  // namespace zel
