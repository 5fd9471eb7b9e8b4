#include "component/services/error_trap.h"

#include <exception>
#include <filesystem>
#include <new>
#include <system_error>

#include "component/services/error_log.h"
#include "foundation/runtime_error.h"
#include "foundation/text.h"
#include "zel/automation.h"

namespace zel {
namespace {

constexpr const char* kNewLine = "\r\n";
constexpr const char* kDesignEnvironment = "DESIGNER";  // its executable's file name
constexpr std::size_t kModulePathBuffer = 255;  // characters of the module's full path that are looked at

ErrorInformation information(const RuntimeError& error) { return {error.number(), error.description()}; }

ErrorInformation information(const AutomationError& error) {
  switch (error.code()) {
    case AutomationErrorCode::kMemberNotFound:
      return information(RuntimeError::propertyNotFound());
    case AutomationErrorCode::kTypeMismatch:
      return information(RuntimeError::typeMismatch());
    case AutomationErrorCode::kOverflow:
      return information(RuntimeError::overflow());
    case AutomationErrorCode::kWrongAccess:
    case AutomationErrorCode::kWrongArgumentCount:
    case AutomationErrorCode::kWrongThread:
    case AutomationErrorCode::kFailed:
      break;
  }
  return {440, "Automation error: " + std::string(error.what())};
}

RuntimeError fileError(const std::error_code& code) {
  if (code == std::errc::no_such_file_or_directory) return RuntimeError::fileNotFound();
  if (code == std::errc::not_a_directory) return RuntimeError::pathNotFound();
  if (code == std::errc::no_space_on_device) return RuntimeError::diskFull();
  if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted)
    return RuntimeError::permissionDenied();
  if (code == std::errc::not_enough_memory) return RuntimeError::outOfMemory();
  return RuntimeError::pathFileAccessError();
}

ErrorInformation information(const std::filesystem::filesystem_error& error) {
  const std::filesystem::path folder = error.path1().parent_path();
  std::error_code unreadable;
  if (error.code() == std::errc::no_such_file_or_directory && !folder.empty() &&
      !std::filesystem::exists(folder, unreadable))
    return information(RuntimeError::pathNotFound());
  return information(fileError(error.code()));
}

std::string titleOrNothing(const std::function<std::string()>& clientTitle) noexcept {
  try {
    return clientTitle();
  } catch (...) {
    return {};
  }
}

std::string fileNameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

ErrorInformation currentError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return information(error);
  } catch (const AutomationError& error) {
    return information(error);
  } catch (const std::bad_alloc&) {
    return information(RuntimeError::outOfMemory());
  } catch (const std::filesystem::filesystem_error& error) {
    return information(error);
  } catch (const std::exception& error) {
    return information(RuntimeError::internalError(error.what()));
  } catch (...) {
    return information(RuntimeError::internalError("unknown"));
  }
}

void ErrorTrap::ErrTrap(const std::string& location, bool prompt, const ErrorInformation* error) noexcept {
  const int number = error == nullptr ? 0 : error->number;
  std::string message;
  try {
    services_.pointer->set(PointerShape::kDefault);
    const std::string where = services_.clientTitle() + "::" + services_.componentName + kNewLine + location;
    message = error == nullptr ? "Error In " + where
                               : error->description + kNewLine + "In " + where + kNewLine +
                                     "Error Number: " + std::to_string(error->number);
  } catch (...) {
    message = titleOrNothing(services_.clientTitle) + ":modErrorTrap:ErrTrap:0";
  }
  try {
    services_.log->write(message);
    if (!prompt) return;
    const MessageAnswer answer = services_.dialogs->message(
        {message + kNewLine + "Attempt to Continue?", "", MessageIcon::kNone, MessageButtons::kYesNo});
    if (answer != MessageAnswer::kNo) return;
    if (InDesignEnvironment()) {
      services_.process->endRun();
    } else {
      services_.eventLoop->postQuit(number);
    }
  } catch (...) {
    // A failure of the trap itself is not trapped again.
    return;
  }
}

bool ErrorTrap::InDesignEnvironment() const {
  try {
    const std::string path = services_.process->moduleFileName().substr(0, kModulePathBuffer);
    return upperCase(fileNameOf(path)) == kDesignEnvironment;
  } catch (...) {
    return false;
  }
}

void TrappedModule::report(std::string_view procedure) noexcept {
  try {
    const ErrorInformation error = currentError();
    trap_.ErrTrap(name_ + std::string(procedure) + step_, true, &error);
  } catch (...) {
    // Only a lack of memory gets here; the trap without texts is all that is left.
    trap_.ErrTrap({}, true, nullptr);
  }
}

}  // namespace zel
