// What every export does around its work.
#pragma once

#include "component/services/error_trap.h"
#include "component/services/hourglass.h"
#include "export/export_texts.h"
#include "export/text_file.h"
#include "foundation/runtime_error.h"

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

}  // namespace zel
