// A file whose new content is on the disk whole or not at all. What a failure leaves:
//   the file cannot be made     told when this is made; what was there stays
//   the disk is full, the folder is gone, the rights have changed   told by write(); what was there stays
//   the process is killed       what was there stays; in the instant of writing the new content may be left
//                               over beside the file, under a name that ends in ".part"
// An existing file is replaced without asking, with the rights that it had. Through links the file that they
// lead to is replaced, not the link. Where the folder does not let a file be made beside it, an existing file
// is written in its place, and gets its old content back when that fails. A device or a pipe is written to.
//
// A path is the bytes that the system knows it by, in whatever encoding.
//
// Errors are RuntimeErrors with the path and the system's reason: 52 no name of a file, 61 no room, 70 no
// right to write, 75 no file can be there, 76 no such folder.
#pragma once

#include <string>
#include <string_view>

namespace zel {

class OutputFile {
 public:
  // Makes sure that the file can be written and leaves it as it is.
  explicit OutputFile(const std::string& path);

  // Once.
  void write(std::string_view content) const;

 private:
  enum class Way { kReplace, kInPlace, kStream };

  void replace(std::string_view content) const;
  void writeInPlace(std::string_view content) const;

  std::string target_;
  Way way_ = Way::kReplace;
};

// All of a file. Throws fileError for one that cannot be read to its end.
std::string contentOfFile(const std::string& path);

}  // namespace zel
