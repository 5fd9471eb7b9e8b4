// Programs as processes of the system. Works with and without an application of the toolkit.
#pragma once

#include "platform/process_runner.h"

namespace zel {

// A program reads nothing, and what it writes to standard output is dropped; no signal is ignored or held
// back when it begins. The one that run() waits for stands in a process group of its own: when run() ends it,
// all of the group is ended with it. What is left of the group when the program ends by itself lives on. The
// one that start() leaves is in a session of its own and no child of this process.
//
// Both may be called while other threads of the host run, lock and fork. start() waits until the program has
// taken over or has failed to, some seconds at most; a failure later than that is not told.
class DesktopPrograms final : public ProcessRunner {
 public:
  ProgramOutcome run(const ProgramCall& call, std::int32_t milliseconds,
                     const KeepWaiting& keepWaiting) override;
  void start(const ProgramCall& call) override;
};

}  // namespace zel
