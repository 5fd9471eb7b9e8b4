// Where the names of stations stand on a map, so that none covers another name or a station.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "map/map_frame.h"

namespace zel::host {

struct PixelBox {
  double left = 0, top = 0, width = 0, height = 0;

  friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

struct LabelWish {
  MapPoint at;                   // the station, or whatever the label belongs to
  double width = 0, height = 0;  // of the label, pixels
  double gap = 0;                // pixels between the place and the label: the symbol's radius and some air
  int priority = 0;              // a higher one is placed first
  bool always = false;           // placed even where it covers others: what is selected
};

// A box for each wish in its order, nothing where there is no room. Tried: right, left, above, below, then
// the corners; within `area`, free of `taken`, of earlier labels and of the symbols (squares of `gap` around
// every `at`). Among equal priorities the earlier wish comes first, so that names stay when later ones are
// added. Wishes outside the area or without a size get nothing. Cost: about 1 us a wish.
std::vector<std::optional<PixelBox>> placeLabels(std::span<const LabelWish> wishes, const PixelBox& area,
                                                 std::span<const PixelBox> taken = {});

}  // namespace zel::host
