// A batch of the model: one JSON object a line in, one object a line out, in order.
//
// Memory is bounded by the longest line, not by the number of lines. Each answer is handed on before the next
// line is awaited.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "command_line/longley_rice_inputs.h"
#include "command_line/text_source.h"

namespace zel::host {

inline constexpr std::size_t kLongestBatchLine = std::size_t{64} << 20;  // bytes

struct BatchAnswer {
  std::string json;  // an object in one line, without a line feed
  bool failed = false;
};

// The answer to one line. `defaults` hold for what it does not say.
BatchAnswer answerBatchLine(std::string_view line, std::size_t number, const LongleyRiceInputs& defaults);

struct BatchCount {
  std::size_t lines = 0;   // that were answered
  std::size_t errors = 0;  // of them, those answered with an error
};

// Answers line by line; blank lines are counted and passed over, and a line above the bound is an error,
// the last one when no line feed comes within mostSkipped bytes. Throws CommandFailure when the source cannot
// be read.
BatchCount answerBatch(TextSource& source, const LongleyRiceInputs& defaults,
                       const std::function<void(const std::string& json)>& answer,
                       std::size_t longestLine = kLongestBatchLine,
                       std::size_t mostSkipped = LineReader::kMostSkipped);

}  // namespace zel::host
