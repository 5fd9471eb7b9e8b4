// How a command ends when it cannot do its work.
#pragma once

#include <stdexcept>
#include <string>

namespace zel::host {

// The work failed: exit code 1. The text is one line: what, why, and what to do.
class CommandFailure : public std::runtime_error {
 public:
  explicit CommandFailure(const std::string& what) : std::runtime_error(what) {}
};

// The call was wrong: exit code 2.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& what) : std::runtime_error(what) {}
};

// It was asked to stop. The exit code is 128 and the signal's number, as shells have it: 130 for Ctrl+C, 143
// for another program's request to end.
class CommandInterrupted : public std::runtime_error {
 public:
  CommandInterrupted(const std::string& what, int signal)
      : std::runtime_error(what), exitCode_(kFirst + signal) {}
  int exitCode() const { return exitCode_; }

 private:
  static constexpr int kFirst = 128;
  int exitCode_;
};

}  // namespace zel::host
