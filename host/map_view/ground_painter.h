// The terrain's tiles on the map.
#pragma once

#include <QPainter>
#include <vector>

#include "map/map_frame.h"
#include "map_view/tile_service.h"

namespace zel::host {

// A tile, and at which turn of longitude it is seen.
struct PlacedTile {
  TileId tile;
  std::int32_t turn = 0;
};

// The tiles that fill the frame on a screen of that pixel ratio, those in the middle last. Their pixels are
// drawn 0.62 to 1.23 times as large.
std::vector<PlacedTile> tilesOf(const MapFrame& frame, double pixelRatio);
std::vector<TileId> tileIds(const std::vector<PlacedTile>& tiles);

// What is not there yet is asked for; parts of coarser and finer tiles stand in meanwhile. `smooth` costs
// about three times as much where tiles are drawn larger or smaller.
void paintGround(QPainter& painter, const MapFrame& frame, double pixelRatio, TileService& tiles,
                 const std::vector<PlacedTile>& wanted, bool smooth);

}  // namespace zel::host
