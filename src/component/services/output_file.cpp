#include "component/services/output_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "component/services/file_beside.h"
#include "component/services/file_error.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

// Writes and closes; the system's error, or 0.
int writeAndClose(OpenFile file, std::string_view content) {
  errno = 0;
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  const int writeError = written ? 0 : errno;
  const bool closed = std::fclose(file.release()) == 0;
  if (!written) return writeError != 0 ? writeError : EIO;
  if (closed) return 0;
  return errno != 0 ? errno : EIO;
}

// Over what is there; the system's error, or 0.
int overwrite(const std::string& path, std::string_view content) {
  OpenFile file = openFile(path, "r+b");
  if (!file) return errno;
  if (const int error = writeAndClose(std::move(file), content); error != 0) return error;
  std::error_code failure;
  fs::resize_file(path, content.size(), failure);
  return failure.value();
}

}  // namespace

std::string contentOfFile(const std::string& path) {
  const OpenFile file = openFile(path, "rb");
  if (!file) throw fileError(path, errno);
  std::string content;
  std::array<char, 65536> piece;
  errno = 0;
  while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file.get()))
    content.append(piece.data(), size);
  if (std::ferror(file.get()) != 0) throw fileError(path, errno != 0 ? errno : EIO);
  return content;
}

OutputFile::OutputFile(const std::string& path) : target_(path) {
  // The system would take the part before it.
  if (path.find('\0') != std::string::npos) throw RuntimeError::badFileName();
  std::error_code none;
  const fs::file_status status = fs::status(path, none);
  if (fs::is_directory(status)) throw fileError(path, EISDIR);
  const bool exists = fs::exists(status);
  if (exists && !fs::is_regular_file(status)) {
    way_ = Way::kStream;
    return;
  }
  target_ = behindLinks(path);
  if (exists && !openFile(target_, "r+b")) throw fileError(target_, errno);
  const FileBeside probe(target_);
  if (probe.error() == 0) return;
  const bool mayNot = fileError(target_, probe.error()).number() == RuntimeError::permissionDenied().number();
  if (!exists || !mayNot) throw fileError(target_, probe.error());
  way_ = Way::kInPlace;
}

void OutputFile::write(std::string_view content) const {
  switch (way_) {
    case Way::kReplace:
      return replace(content);
    case Way::kInPlace:
      return writeInPlace(content);
    case Way::kStream:
      OpenFile stream = openFile(target_, "wb");
      const int error = stream ? writeAndClose(std::move(stream), content) : errno;
      if (error != 0) throw fileError(target_, error);
  }
}

void OutputFile::replace(std::string_view content) const {
  FileBeside beside(target_);
  if (beside.error() != 0) throw fileError(target_, beside.error());
  if (const int error = writeAndClose(beside.takeFile(), content); error != 0)
    throw fileError(target_, error);
  std::error_code failure;
  const fs::file_status before = fs::status(target_, failure);
  if (fs::exists(before)) fs::permissions(beside.name(), before.permissions(), failure);
  fs::rename(beside.name(), target_, failure);
  if (failure) throw fileError(target_, failure.value());
  beside.release();
}

void OutputFile::writeInPlace(std::string_view content) const {
  const std::string before = contentOfFile(target_);
  const int error = overwrite(target_, content);
  if (error == 0) return;
  overwrite(target_, before);
  throw fileError(target_, error);
}

}  // namespace zel
