// A long list of numbers in a JSON object, read in a fraction of the time that a parser takes for it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

struct NumberList {
  std::vector<double> values;
  std::string rest;  // the text with an empty list in the place of this one
};

// The first `"key": [...]` of a text, when the list is of JSON numbers alone and not empty; its values are
// those of a parser to the last bit. Nothing for whatever is unusual (another value in the list, a number
// beyond the range of doubles): the caller gives that to a parser, which knows what is wrong with it. Where
// the text is JSON, what was found is a member of that name, since inside a text its quotes would have
// backslashes; whether the whole text is JSON shows when the rest is parsed.
std::optional<NumberList> takeNumberList(std::string_view text, std::string_view key);

}  // namespace zel::host
