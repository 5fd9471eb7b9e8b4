// Programs as processes of the system. Works with and without an application of the toolkit.
#pragma once

#include "platform/process_runner.h"

namespace zel {

// A program reads nothing, and what it writes to standard output is dropped. The one that run() waits for
// stands in a process group of its own, so that what it has started ends with it; the one that start() leaves
// is in a session of its own and no child of this process.
class DesktopPrograms final : public ProcessRunner {
 public:
  ProgramOutcome run(const ProgramCall& call, std::int32_t milliseconds,
                     const KeepWaiting& keepWaiting) override;
  void start(const ProgramCall& call) override;
};

}  // namespace zel
