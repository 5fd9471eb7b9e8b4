// Rows of fields out of delimited text, as spreadsheets write it.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

// Fields may be quoted, with line breaks and doubled quotes inside. Lines end with LF, CR LF or CR. Blank
// lines and lines that begin with "#" are passed over. A quote that does not end within kLongestQuoted is an
// error of its line alone: reading goes on behind that line, so that one stray quote does not swallow a file.
class CsvRecords {
 public:
  static constexpr std::size_t kLongestQuoted = 64U << 10;  // bytes
  static constexpr std::size_t kMostFields = 256;           // those behind them are dropped

  CsvRecords(std::string_view text, char delimiter, std::size_t firstLine = 1)
      : text_(text), delimiter_(delimiter), nextLine_(firstLine) {}

  // The next row; false at the end.
  bool next();
  // Blanks around them are gone. Valid until the next row.
  const std::vector<std::string_view>& fields() const { return fields_; }
  std::size_t line() const { return line_; }                    // where the row begins, from 1
  bool openQuote() const { return openQuote_; }                 // the row is no row: a quote does not end
  std::size_t position() const { return position_; }            // bytes read
  const std::string_view& comment() const { return comment_; }  // the last one passed over, without "#"

 private:
  bool readRecord();
  bool readQuoted(std::string_view& field);
  std::string_view readPlain();
  void endLine();
  bool atLineEnd() const;
  void skipLine();

  std::string_view text_;
  char delimiter_;
  std::size_t position_ = 0;
  std::size_t line_ = 0;
  std::size_t nextLine_;
  bool openQuote_ = false;
  std::vector<std::string_view> fields_;
  std::deque<std::string> unquoted_;  // fields that are not in the text as they read
  std::string_view comment_;
};

}  // namespace zel::host
