// An environment variable with another value, or none, for as long as the object lives.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace zel::test {

class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str())) before_ = before;
    set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { set(before_); }

 private:
  void set(const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace zel::test
