// An output file of an export: 8-bit text whose lines end in CR LF.
//
// The text is kept in memory until write(), about a megabyte for 5,000 samples, so that nothing half done is
// ever on the disk. What a failure leaves:
//   the file cannot be made     told when this is made, before anything is computed; what was there stays
//   an export fails midway      its caller writes what there is: the lines before the failure
//   an export is cancelled      its caller does not write: what was there stays
// How the text comes to the disk, what a failure of that leaves, links, devices and locked folders: as
// component/services/output_file.h has it.
#pragma once

#include <string>
#include <string_view>

#include "component/services/output_file.h"

namespace zel {

class TextFile {
 public:
  // Makes sure that the file can be written and leaves it as it is.
  explicit TextFile(const std::string& path) : file_(path) {}

  void line(std::string_view text);  // with its CR LF
  void piece(std::string_view text) { text_ += text; }

  // Once, at the end.
  void write() const { file_.write(text_); }

 private:
  OutputFile file_;
  std::string text_;
};

}  // namespace zel
