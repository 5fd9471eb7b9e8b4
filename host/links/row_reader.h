// Rows of fields out of delimited text that comes piece by piece, each in bounded memory.
//
// Fields may be quoted, with delimiters, doubled quotes and line breaks inside; lines end with LF, CR LF or
// CR. Blank lines, and lines that begin with "#", are passed over; the latter are counted. A field is what
// stands between its delimiters, blanks included; those around a quoted one are not part of it.
// A quote that does not end within kLongestQuoted is a problem of its line alone, and so is one that ends in
// a later line with more of the field behind it, which is where another field begins; and a row beyond
// kLongestRow or kMostFields. Reading goes on with the next line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

struct Row {
  std::size_t line = 0;  // where it begins, from 1
  std::string problem;   // why it is no row; it has no fields then
  std::string text;      // of all fields, one behind the other
  std::vector<std::uint32_t> ends;

  std::size_t size() const { return ends.size(); }
  // Empty beyond the last one.
  std::string_view field(std::size_t index) const;
};

class RowReader {
 public:
  static constexpr std::size_t kLongestQuoted = 64U << 10U;  // bytes
  static constexpr std::size_t kLongestRow = 1U << 20U;      // bytes
  static constexpr std::size_t kMostFields = 4096;

  // `more` appends text; false when there is none left.
  explicit RowReader(std::function<bool(std::string&)> more) : more_(std::move(more)) {}

  // The text that comes next, so many bytes of it unless there are fewer. Valid until the next call.
  std::string_view peek(std::size_t bytes);
  void setDelimiter(char delimiter) { delimiter_ = delimiter; }
  // Passes over the rest of the line.
  void skipLine();

  // False at the end.
  bool next(Row& row);
  // Whether a whole line was taken and not yet read, or the end.
  bool lineAtHand() const { return ended_ || buffer_.find_first_of("\r\n", at_) != std::string::npos; }
  // Bytes of text that were taken and not yet read.
  std::size_t unread() const { return buffer_.size() - at_; }
  std::size_t comments() const { return comments_; }  // lines that began with "#"

 private:
  bool available();
  bool fill();
  bool atLineEnd();
  void endLine();
  void toLineEnd();
  bool readRow(Row& row);
  bool readQuoted(Row& row);
  bool readPlain(Row& row);
  void refuse(Row& row, const std::string& problem);
  void endField(Row& row);

  std::function<bool(std::string&)> more_;
  char delimiter_ = ',';
  std::string buffer_;
  std::size_t at_ = 0;     // what is read next
  std::size_t begin_ = 0;  // of the row
  std::size_t nextLine_ = 1;
  std::size_t comments_ = 0;
  bool ended_ = false;
};

}  // namespace zel::host
