#include "component/services/save_path.h"

#include <cstddef>

#include "component/services/characters.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr std::size_t kLongestFileName = 200;  // characters

}  // namespace

std::string chosenSavePath(Dialogs& dialogs, const SaveDialogRequest& request) {
  std::string path;
  try {
    path = dialogs.save(request);
  } catch (const RuntimeError& error) {
    if (error.number() != RuntimeError::dialogCancelled().number()) throw;
    return {};
  }
  if (characterCount(path) > kLongestFileName)
    path = std::string(firstCharacters(path, kLongestFileName)) + request.defaultExtension;
  return path;
}

}  // namespace zel
