// A failure inside the component, with the classic number and text that the error log shows.
#pragma once

#include <stdexcept>
#include <string>

namespace zel {

class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  // Dimensionless code: below 1000 the classic ones, above 1000 the component's own.
  int number() const noexcept { return number_; }
  std::string description() const { return what(); }

  static RuntimeError overflow() { return {6, "Overflow"}; }
  static RuntimeError outOfMemory() { return {7, "Out of memory"}; }
  static RuntimeError subscriptOutOfRange() { return {9, "Subscript out of range"}; }
  static RuntimeError divisionByZero() { return {11, "Division by zero"}; }
  static RuntimeError typeMismatch() { return {13, "Type mismatch"}; }
  static RuntimeError errorInLoadingLibrary() { return {48, "Error in loading DLL"}; }
  static RuntimeError internalError(const std::string& what) { return {51, "Internal error: " + what}; }
  static RuntimeError badFileName() { return {52, "Bad file name"}; }
  static RuntimeError fileNotFound() { return {53, "File not found"}; }
  static RuntimeError diskFull() { return {61, "Disk full"}; }
  static RuntimeError permissionDenied() { return {70, "Permission denied"}; }
  static RuntimeError pathFileAccessError() { return {75, "Path/File access error"}; }
  static RuntimeError pathNotFound() { return {76, "Path not found"}; }
  static RuntimeError objectVariableNotSet() {
    return {91, "Object variable or With block variable not set"};
  }
  static RuntimeError propertyNotFound() { return {438, "Object doesn't support this property or method"}; }
  static RuntimeError actionNotSupported() { return {445, "Object doesn't support this action"}; }
  static RuntimeError dialogCancelled() { return {32755, "Cancel was selected."}; }

 private:
  int number_;
};

}  // namespace zel
