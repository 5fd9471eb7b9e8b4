// One row of a list as a link, or why it is none.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "links/link_layout.h"
#include "links/row_reader.h"
#include "zel/coordinates.h"

namespace zel::host {

struct LinkInput {
  std::size_t line = 0;
  std::string name;  // as the field has it
  // What is wrong, headed by the file's name for the column; empty when the link can be computed.
  std::string error;
  bool placed = false;      // both positions are known
  Position from, to;        // degrees, in the datum of the list
  Position mapFrom, mapTo;  // the same on WGS 84, for maps
  // Metres above ground and MHz; nothing where the row says nothing.
  std::optional<double> fromHeight, toHeight, frequencyMhz;
};

// Positions are decimal degrees or whatever can be typed as a position; heights and frequencies may have a
// unit behind them ("98 ft", "6.2 GHz"). A number with the other decimal mark than the list's is refused: it
// might have been meant to part thousands.
LinkInput linkInput(const Row& row, const LinkLayout& layout);

}  // namespace zel::host
