// Bytes of any usual encoding as UTF-8, piece by piece.
//
// UTF-8 with or without byte order mark; UTF-16 by its mark, or by zeros in every other byte of the start. A
// byte that is no UTF-8 is read as the character that it is in Windows-1252, so that nothing has to be known
// of the bytes behind it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "import/text_encoding.h"

namespace zel::host {

class TextDecoder {
 public:
  static constexpr std::size_t kStart =
      4096;  // bytes by which encodings, and files that are no text, are told

  static constexpr std::size_t kShortestStart = 16;  // bytes that with a line break among them will do

  // Appends to the text what the bytes mean. The first ones wait for as many as the encoding is told by, or
  // for a line: a producer that waits for an answer sends no more. The last of a piece wait for the rest of
  // their character.
  void take(std::string_view bytes, std::string& text);
  // Nothing comes behind them.
  void finish(std::string& text);

  bool marked() const { return started_ && start_.markBytes > 0; }  // a byte order mark stood at the start
  // What was assumed of the encoding; empty for UTF-8.
  std::string note() const;
  // Why the bytes are no text; nothing is appended then.
  const std::string& problem() const { return problem_; }

 private:
  void begin(std::string& text);
  void convert(bool last, std::string& text);
  void convertBytes(bool last, std::string& text);
  void convertUtf16(bool last, std::string& text);

  EncodingStart start_;
  bool started_ = false;
  std::string waiting_;  // bytes
  std::size_t windowsBytes_ = 0;
  std::string problem_;
};

}  // namespace zel::host
