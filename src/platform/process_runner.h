// Programs that the component starts.
//
// A program is named with its arguments apart from each other, so that blanks and quotes in paths need no
// care. Programs read nothing from the terminal of the host.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zel {

struct ProgramCall {
  std::string program;  // a path, or a name to be looked for along PATH
  std::vector<std::string> arguments;
};

// How a program that was waited for stands. In a host that ignores SIGCHLD, or waits for all of its children
// itself, the system keeps no status: a program that has ended is then finished, not crashed, with exit code
// 0, whatever it did.
struct ProgramOutcome {
  bool finished = false;  // within the time
  bool crashed = false;   // ended by a signal
  int exitCode = 0;
  std::string messages;  // what it wrote to standard error, the beginning of it
};

// Asked every few milliseconds while a program is waited for: false ends it. May be empty.
using KeepWaiting = std::function<bool()>;

// Starting throws RuntimeError 53 "File not found" with the program's name when there is no such program, 70
// when it may not be run, 75 when it cannot be started for another reason.
class ProcessRunner {
 public:
  virtual ~ProcessRunner() = default;
  // Starts the program and waits for its end, so many milliseconds at most. One that has not ended by then,
  // or is no longer waited for, is ended with what it has started. What it has started lives on when it ends
  // by itself.
  virtual ProgramOutcome run(const ProgramCall& call, std::int32_t milliseconds,
                             const KeepWaiting& keepWaiting) = 0;
  // Starts the program and leaves it to itself. Nothing of it comes to a terminal.
  virtual void start(const ProgramCall& call) = 0;
};

}  // namespace zel
