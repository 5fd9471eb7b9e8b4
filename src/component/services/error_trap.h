// The one way of reporting a failure: message box, error log, and the user's choice to go on or to quit.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/dialogs.h"
#include "platform/process_services.h"

namespace zel {

class ErrorLog;

struct ErrorInformation {
  int number = 0;
  std::string description;
};

// The failure that is being handled, as the trap reports it. Call it inside a catch block.
ErrorInformation currentError();

class ErrorTrap {
 public:
  struct Services {
    std::function<std::string()> clientTitle;  // the bound application's Title; may throw
    std::string componentName;
    Pointer* pointer = nullptr;
    Dialogs* dialogs = nullptr;
    EventLoop* eventLoop = nullptr;
    ProcessControl* process = nullptr;
    ErrorLog* log = nullptr;
  };
  explicit ErrorTrap(Services services) : services_(std::move(services)) {}

  // Never throws. A null error is "nothing": the message then carries no description and the exit code is 0.
  void ErrTrap(const std::string& location, bool prompt, const ErrorInformation* error) noexcept;
  // Whether the program that loaded the component is the design environment. A program whose name cannot be
  // told is not, so that the user's "No" still ends it in good order.
  bool InDesignEnvironment() const;

 private:
  Services services_;
};

// A module, form or class as the trap names it: its name and the step of its running procedure. Every
// procedure with a location runs through run(), which begins at step "0", catches everything and hands it to
// the trap.
class TrappedModule {
 public:
  TrappedModule(std::string name, ErrorTrap& trap) : name_(std::move(name)), trap_(trap) {}

  // The next stage begins.
  void step(int number) { step_ = std::to_string(number); }

  // Runs a procedure, such as ":ShowMainForm:". After a failure the result is the value-initialised one.
  template <typename Body>
  auto run(std::string_view procedure, Body&& body) -> std::invoke_result_t<Body> {
    using Result = std::invoke_result_t<Body>;
    step(0);
    try {
      return std::forward<Body>(body)();
    } catch (...) {
      report(procedure);
    }
    if constexpr (!std::is_void_v<Result>) return Result{};
  }

 private:
  void report(std::string_view procedure) noexcept;

  std::string name_;
  std::string step_ = "0";
  ErrorTrap& trap_;
};

}  // namespace zel
