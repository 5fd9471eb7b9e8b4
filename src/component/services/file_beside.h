// A fresh file beside another one, under a name that no other file has: what a file is written to before it
// takes the other's place, and what a file is set aside to.
//
// The name is as much of the other's as leaves room for the rest of it, and ends in ".part".
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace zel {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

// Null, with errno set, when it cannot be opened.
OpenFile openFile(const std::string& path, const char* mode);

// The file that links lead to; it need not exist. Throws RuntimeError 75 for links in a circle, and with the
// system's reason for a link that cannot be read.
std::string behindLinks(const std::string& path);

// Gone again unless it is released.
class FileBeside {
 public:
  explicit FileBeside(const std::string& path);
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside();

  // Why it could not be made, the system's error; 0 when it was.
  int error() const { return error_; }
  const std::string& name() const { return name_; }
  // Once.
  OpenFile takeFile() { return std::move(file_); }
  // It stays, or is something else by now.
  void release() { present_ = false; }

 private:
  std::string name_;
  OpenFile file_;
  int error_ = 0;
  bool present_ = false;
};

}  // namespace zel
