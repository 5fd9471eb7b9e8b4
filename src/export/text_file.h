// An output file of an export: 8-bit text whose lines end in CR LF.
//
// The text is kept in memory until write(), about a megabyte for 5,000 samples, so that nothing half done is
// ever on the disk. What a failure leaves:
//   the file cannot be made     told when this is made, before anything is computed; what was there stays
//   an export fails midway      its caller writes what there is: the lines before the failure
//   an export is cancelled      its caller does not write: what was there stays
//   the disk is full, the folder is gone, the rights have changed   told by write(); what was there stays
//   the process is killed       what was there stays; in the instant of writing the new text may be left over
//                               beside the file, under a name that ends in ".part"
// An existing file is replaced without asking, with the rights that it had. Through links the file that they
// lead to is replaced, not the link. Where the folder does not let a file be made beside it, an existing file
// is written in its place, and gets its old text back when that fails. A device or a pipe is written to.
//
// Errors are RuntimeErrors with the system's reason: 61 no room, 70 no right to write, 75 no file can be
// there, 76 no such folder.
#pragma once

#include <string>
#include <string_view>

namespace zel {

class TextFile {
 public:
  // Makes sure that the file can be written and leaves it as it is.
  explicit TextFile(const std::string& path);

  void line(std::string_view text);  // with its CR LF
  void piece(std::string_view text);

  // Once, at the end.
  void write() const;

 private:
  enum class Way { kReplace, kInPlace, kStream };

  void replace() const;
  void writeInPlace() const;

  std::string target_;
  Way way_ = Way::kReplace;
  std::string text_;
};

}  // namespace zel
