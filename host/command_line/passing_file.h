// A file's content on its way to standard output.
#pragma once

#include <string>
#include <string_view>
#include <thread>

namespace zel::host {

// What is to go to standard output, when all of it is there. It is a pipe and no file: whatever ends the
// program, nothing is left on the disk.
class PassingFile {
 public:
  // Throws CommandFailure.
  PassingFile();
  PassingFile(const PassingFile&) = delete;
  PassingFile& operator=(const PassingFile&) = delete;
  ~PassingFile();

  // Where to write, once.
  std::string path() const { return "/proc/self/fd/" + std::to_string(writeEnd_); }
  // Throws CommandFailure when it does not get there.
  void send();

 private:
  void readAll();  // in the thread
  void append(std::string_view piece);
  void finish();

  int readEnd_ = -1, writeEnd_ = -1;
  std::string content_;
  int readError_ = 0;
  std::thread reader_;
};

}  // namespace zel::host
