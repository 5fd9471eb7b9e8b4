// Lists of links: the first byte chooses in what pieces the text comes, the rest is the list. Whatever it
// holds, the list is refused with a reason, or each row is a link or says why it is none, and what is written
// is a list again.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <string>
#include <string_view>

#include "links/link_input.h"
#include "links/link_layout.h"
#include "links/link_writer.h"
#include "links/row_reader.h"
#include "links/text_decoder.h"
#include "planning/utf8_text.h"

namespace {

using namespace zel::host;

void require(bool condition) {
  if (!condition) std::abort();
}

// A reader of bytes that come in pieces.
class PiecewiseRows {
 public:
  PiecewiseRows(std::string_view bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {}

  RowReader reader() {
    return RowReader([this](std::string& text) {
      if (ended_) return false;
      const std::string_view next = bytes_.substr(0, piece_);
      bytes_.remove_prefix(next.size());
      ended_ = next.empty();
      if (ended_)
        decoder_.finish(text);
      else
        decoder_.take(next, text);
      return true;
    });
  }
  bool isText() const { return decoder_.problem().empty(); }

 private:
  std::string_view bytes_;
  std::size_t piece_;
  TextDecoder decoder_;
  bool ended_ = false;
};

void checkInput(const LinkInput& input) {
  if (!input.error.empty()) return;
  require(input.placed && input.line > 0);
  for (const auto& position : {input.from, input.to})
    require(std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 180);
  for (const auto& height : {input.fromHeight, input.toHeight})
    require(!height || (*height >= 0 && *height <= 32767));
  require(!input.frequencyMhz || (*input.frequencyMhz > 0 && *input.frequencyMhz <= 1e6));
}

// What is written has as many fields in each row, and those of the list unchanged.
void checkWritten(const LinkLayout& layout, const std::string& content, const std::string& firstField) {
  bool given = false;
  RowReader reader([&](std::string& buffer) {
    if (given) return false;
    given = true;
    buffer = content;
    return true;
  });
  reader.setDelimiter(layout.delimiter);
  Row header, row;
  if (!reader.next(header)) return;
  if (!reader.next(row) || !row.problem.empty() || !header.problem.empty()) return;
  require(row.size() == header.size());
  require(firstField.find('\0') != std::string::npos || row.field(0) == firstField);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  PiecewiseRows rows(bytes, std::size_t{1} + data[0] * std::size_t{37});
  RowReader reader = rows.reader();
  std::deque<Row> ahead;
  const LayoutResult result = readLayout(reader, {}, ahead);
  require(result.layout.has_value() == result.error.empty());
  if (!result.layout || !rows.isText()) return 0;
  WriterOptions options;
  options.layout = *result.layout;
  const auto csv = makeCsvWriter(options), json = makeJsonWriter(options), kml = makeKmlWriter(options);
  std::size_t line = 0;
  Row row;
  while (!ahead.empty() || reader.next(row)) {
    if (!ahead.empty()) {
      row = ahead.front();
      ahead.pop_front();
    }
    require(row.line > line);
    require(row.problem.empty() == (row.size() > 0));
    line = row.line;
    const LinkInput input = linkInput(row, options.layout);
    checkInput(input);
    LinkFigures figures;
    figures.error = input.error;
    figures.clearances.resize(1);
    std::string written = csv->head();
    csv->row(written, row, input, figures);
    checkWritten(options.layout, written, std::string(row.field(0)));
    std::string other;
    json->row(other, row, input, figures);
    require(!firstBadUtf8(other));
    kml->row(other, row, input, figures);
    require(!firstBadUtf8(other));
  }
  return 0;
}
