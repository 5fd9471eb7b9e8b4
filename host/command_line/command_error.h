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

// The user has given up: exit code 130, as shells have it for Ctrl+C.
class CommandInterrupted : public std::runtime_error {
 public:
  explicit CommandInterrupted(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace zel::host
