#include "export/text_file.h"

namespace zel {

void TextFile::line(std::string_view text) {
  text_ += text;
  text_ += "\r\n";
}

}  // namespace zel
