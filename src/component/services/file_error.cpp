#include "component/services/file_error.h"

#include <cerrno>
#include <system_error>

namespace zel {
namespace {

RuntimeError classicError(int systemError) {
  switch (systemError) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return RuntimeError::diskFull();
    case EACCES:
    case EPERM:
    case EROFS:
      return RuntimeError::permissionDenied();
    case ENOENT:
    case ENOTDIR:
      return RuntimeError::pathNotFound();
    default:
      return RuntimeError::pathFileAccessError();
  }
}

}  // namespace

RuntimeError fileError(const std::string& path, int systemError) {
  const RuntimeError classic = classicError(systemError);
  return {classic.number(), classic.description() + ": cannot write " + path + " (" +
                                std::generic_category().message(systemError) + ")"};
}

}  // namespace zel
