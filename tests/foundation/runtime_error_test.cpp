#include "foundation/runtime_error.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace zel {
namespace {

TEST(RuntimeError, CarriesTheClassicNumbersAndTexts) {
  const std::vector<std::pair<RuntimeError, std::pair<int, std::string>>> cases = {
      {RuntimeError::overflow(), {6, "Overflow"}},
      {RuntimeError::outOfMemory(), {7, "Out of memory"}},
      {RuntimeError::subscriptOutOfRange(), {9, "Subscript out of range"}},
      {RuntimeError::divisionByZero(), {11, "Division by zero"}},
      {RuntimeError::typeMismatch(), {13, "Type mismatch"}},
      {RuntimeError::errorInLoadingLibrary(), {48, "Error in loading DLL"}},
      {RuntimeError::internalError("why"), {51, "Internal error: why"}},
      {RuntimeError::fileNotFound(), {53, "File not found"}},
      {RuntimeError::diskFull(), {61, "Disk full"}},
      {RuntimeError::permissionDenied(), {70, "Permission denied"}},
      {RuntimeError::pathFileAccessError(), {75, "Path/File access error"}},
      {RuntimeError::pathNotFound(), {76, "Path not found"}},
      {RuntimeError::objectVariableNotSet(), {91, "Object variable or With block variable not set"}},
      {RuntimeError::propertyNotFound(), {438, "Object doesn't support this property or method"}},
      {RuntimeError::actionNotSupported(), {445, "Object doesn't support this action"}},
      {RuntimeError::dialogCancelled(), {32755, "Cancel was selected."}},
  };
  for (const auto& [error, expected] : cases) {
    EXPECT_EQ(error.number(), expected.first);
    EXPECT_EQ(error.description(), expected.second);
    EXPECT_STREQ(error.what(), expected.second.c_str());
  }
}

}  // namespace
}  // namespace zel
