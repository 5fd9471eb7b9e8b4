#include "links/row_reader.h"

#include <algorithm>

#include "import/station_collector.h"

namespace zel::host {
namespace {

constexpr std::size_t kKept = 64U << 10U;  // bytes that were read, before the buffer is moved
constexpr std::size_t kMostBlanks = 1024;  // before a quote that opens a field

bool isBlankBefore(char c) { return c == ' ' || c == '\t'; }

std::size_t lineBreaks(std::string_view text) {
  std::size_t breaks = 0;
  for (std::size_t at = text.find_first_of("\r\n"); at != std::string_view::npos;
       at = text.find_first_of("\r\n", at)) {
    at += text.substr(at, 2) == "\r\n" ? 2U : 1U;
    ++breaks;
  }
  return breaks;
}

}  // namespace

std::string_view Row::field(std::size_t index) const {
  if (index >= ends.size()) return {};
  const std::size_t begin = index == 0 ? 0 : ends[index - 1];
  return std::string_view(text).substr(begin, ends[index] - begin);
}

bool RowReader::fill() {
  if (!ended_) ended_ = !more_(buffer_);
  return !ended_;
}

bool RowReader::available() {
  while (at_ >= buffer_.size())
    if (!fill()) return false;
  return true;
}

std::string_view RowReader::peek(std::size_t bytes) {
  while (buffer_.size() - at_ < bytes && fill()) {
  }
  return std::string_view(buffer_).substr(at_, bytes);
}

bool RowReader::atLineEnd() { return !available() || buffer_[at_] == '\n' || buffer_[at_] == '\r'; }

void RowReader::endLine() {
  if (!available()) return;
  const bool carriageReturn = buffer_[at_++] == '\r';
  if (carriageReturn && available() && buffer_[at_] == '\n') ++at_;
  ++nextLine_;
}

// What is passed over is not kept.
void RowReader::toLineEnd() {
  for (;;) {
    at_ = std::min(buffer_.find_first_of("\r\n", at_), buffer_.size());
    if (at_ < buffer_.size()) return;
    buffer_.clear();
    at_ = 0;
    if (!fill()) return;
  }
}

void RowReader::skipLine() {
  toLineEnd();
  endLine();
}

void RowReader::refuse(Row& row, const std::string& problem) {
  row.problem = problem;
  row.text.clear();
  row.ends.clear();
  at_ = begin_;
  nextLine_ = row.line;
  toLineEnd();
}

void RowReader::endField(Row& row) { row.ends.push_back(static_cast<std::uint32_t>(row.text.size())); }

// Up to the delimiter or the line's end. False when the row becomes too long.
bool RowReader::readPlain(Row& row) {
  for (;;) {
    const auto begin = buffer_.begin() + static_cast<std::ptrdiff_t>(at_);
    const auto end = std::find_if(begin, buffer_.end(),
                                  [this](char c) { return c == delimiter_ || c == '\n' || c == '\r'; });
    row.text.append(begin, end);
    at_ = static_cast<std::size_t>(end - buffer_.begin());
    if (row.text.size() > kLongestRow) return false;
    if (at_ < buffer_.size() || !available()) return true;
  }
}

// From behind the opening quote. What stands behind the closing one belongs to the field, as spreadsheets
// take it, unless it is blank. False when the quote does not end.
bool RowReader::readQuoted(Row& row) {
  const std::size_t opened = at_;
  for (;;) {
    std::size_t quote = 0;
    while ((quote = buffer_.find('"', at_)) == std::string::npos) {
      if (buffer_.size() - opened > kLongestQuoted || !fill()) return false;
    }
    if (quote - opened > kLongestQuoted) return false;
    row.text.append(buffer_, at_, quote - at_);
    at_ = quote + 1;
    if (!available() || buffer_[at_] != '"') break;
    row.text += '"';
    ++at_;
  }
  const std::size_t breaks = lineBreaks(std::string_view(buffer_).substr(opened, at_ - opened));
  nextLine_ += breaks;
  const std::size_t size = row.text.size();
  if (!readPlain(row)) return false;
  if (!withoutBlanks(std::string_view(row.text).substr(size)).empty()) return breaks == 0;
  row.text.resize(size);
  return true;
}

bool RowReader::readRow(Row& row) {
  for (;;) {
    std::size_t blanks = 0;
    while (blanks < kMostBlanks && peek(blanks + 1).size() > blanks && isBlankBefore(buffer_[at_ + blanks]) &&
           buffer_[at_ + blanks] != delimiter_)
      ++blanks;
    if (peek(blanks + 1).size() > blanks && buffer_[at_ + blanks] == '"') {
      at_ += blanks + 1;
      if (!readQuoted(row)) {
        refuse(row, row.text.size() > kLongestRow
                        ? "the row is longer than " + std::to_string(kLongestRow) + " bytes"
                        : std::string("a quote begins here and does not end"));
        return true;
      }
    } else if (!readPlain(row)) {
      refuse(row, "the row is longer than " + std::to_string(kLongestRow) + " bytes");
      return true;
    }
    endField(row);
    if (row.size() > kMostFields) {
      refuse(row, "the row has more than " + std::to_string(kMostFields) + " fields");
      return true;
    }
    if (atLineEnd()) break;
    ++at_;
  }
  // A row of nothing but blanks is a blank line with delimiters in it.
  return !withoutBlanks(row.text).empty();
}

bool RowReader::next(Row& row) {
  for (;;) {
    if (at_ > kKept) {
      buffer_.erase(0, at_);
      at_ = 0;
    }
    if (!available()) return false;
    if (atLineEnd()) {
      endLine();
      continue;
    }
    if (buffer_[at_] == '#') {
      ++comments_;
      skipLine();
      continue;
    }
    row.line = nextLine_;
    row.problem.clear();
    row.text.clear();
    row.ends.clear();
    begin_ = at_;
    const bool found = readRow(row);
    endLine();
    if (found) return true;
  }
}

}  // namespace zel::host
