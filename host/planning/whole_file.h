// Files that are read whole, and written whole or not at all.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zel::host {

// All of a file, at most so many bytes. Throws PlanFileError with the path and the reason for what is no
// file (a folder, a device, a pipe), cannot be read or is larger.
std::string readWholeFile(const std::string& path, std::size_t mostBytes);

enum class NewFileRights { kUsual, kPrivate };  // as the process's mask says; the owner's only

// Writes beside the file, brings it to the disk and renames it. Through links the file that they lead to is
// replaced; it keeps its rights and, where allowed, its group. Throws PlanFileError with the path and the
// reason; what was there then stays, and nothing is left beside it.
void replaceWholeFile(const std::string& path, std::string_view content,
                      NewFileRights rights = NewFileRights::kUsual);

// How a file stands, its time and size: compared only with what this gave at another time, which tells
// whether the file was changed in between. Empty without a file.
std::string fileState(const std::string& path);

// "Permission denied".
std::string systemReason(int error);
// What to do about a file that cannot be read: "; give a file". Empty where there is nothing to say.
const char* readAdvice(int error);

}  // namespace zel::host
