#include "import/csv_records.h"

#include <algorithm>

#include "import/station_collector.h"

namespace zel::host {
namespace {

// The blanks around a field that do not end its line.
bool isInnerBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

bool CsvRecords::atLineEnd() const {
  return position_ >= text_.size() || text_[position_] == '\n' || text_[position_] == '\r';
}

void CsvRecords::endLine() {
  if (position_ < text_.size() && text_[position_] == '\r') {
    ++position_;
    if (position_ < text_.size() && text_[position_] == '\n') ++position_;
    ++nextLine_;
  } else if (position_ < text_.size()) {
    ++position_;
    ++nextLine_;
  }
}

void CsvRecords::skipLine() { position_ = std::min(text_.find_first_of("\r\n", position_), text_.size()); }

std::string_view CsvRecords::readPlain() {
  const std::size_t begin = position_;
  while (position_ < text_.size() && text_[position_] != delimiter_ && text_[position_] != '\n' &&
         text_[position_] != '\r')
    ++position_;
  return text_.substr(begin, position_ - begin);
}

// What stands behind the closing quote belongs to the field, as spreadsheets take it. False when the quote
// does not end.
bool CsvRecords::readQuoted(std::string_view& field) {
  const std::size_t begin = ++position_;
  std::string* unquoted = nullptr;
  std::size_t from = begin;
  for (;;) {
    const std::size_t quote =
        text_.substr(0, std::min(text_.size(), begin + kLongestQuoted)).find('"', position_);
    if (quote == std::string_view::npos) return false;
    position_ = quote + 1;
    const bool doubled = position_ < text_.size() && text_[position_] == '"';
    if (!doubled) {
      const std::string_view rest = readPlain();
      if (unquoted == nullptr && withoutBlanks(rest).empty()) {
        field = text_.substr(begin, quote - begin);
        return true;
      }
      if (unquoted == nullptr) unquoted = &unquoted_.emplace_back();
      unquoted->append(text_.substr(from, quote - from)).append(rest);
      field = *unquoted;
      return true;
    }
    if (unquoted == nullptr) unquoted = &unquoted_.emplace_back();
    unquoted->append(text_.substr(from, position_ - from));
    from = ++position_;
  }
}

bool CsvRecords::readRecord() {
  fields_.clear();
  unquoted_.clear();
  openQuote_ = false;
  line_ = nextLine_;
  const std::size_t begin = position_;
  for (;;) {
    while (position_ < text_.size() && isInnerBlank(text_[position_]) && text_[position_] != delimiter_)
      ++position_;
    std::string_view field;
    const std::size_t fieldBegin = position_;
    if (position_ < text_.size() && text_[position_] == '"') {
      if (!readQuoted(field)) {
        fields_.clear();
        openQuote_ = true;
        position_ = begin;
        nextLine_ = line_;
        skipLine();
        return true;
      }
      std::string_view breaks = text_.substr(fieldBegin, position_ - fieldBegin);
      for (std::size_t at = breaks.find_first_of("\r\n"); at != std::string_view::npos;
           at = breaks.find_first_of("\r\n", at)) {
        at += breaks.substr(at, 2) == "\r\n" ? 2U : 1U;
        ++nextLine_;
      }
    } else {
      field = readPlain();
    }
    if (fields_.size() < kMostFields) fields_.push_back(withoutBlanks(field));
    if (atLineEnd()) return true;
    ++position_;
  }
}

bool CsvRecords::next() {
  while (position_ < text_.size()) {
    const std::size_t begin = position_;
    if (atLineEnd()) {
      endLine();
      continue;
    }
    if (text_[position_] == '#') {
      skipLine();
      comment_ = text_.substr(begin + 1, position_ - begin - 1);
      endLine();
      continue;
    }
    readRecord();
    endLine();
    const bool blank = std::all_of(fields_.begin(), fields_.end(), [](auto field) { return field.empty(); });
    if (!blank || openQuote_) return true;
  }
  return false;
}

}  // namespace zel::host
