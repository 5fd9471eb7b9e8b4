// Finished squares of the map, made by threads in the background and kept in memory.
//
// Used from the user-interface thread alone; heights are read and shaded elsewhere. A tile that is not there
// yet is asked for, and the callback says when one has come. Cost of find(): under 1 us.
#pragma once

#include <QImage>
#include <functional>
#include <memory>
#include <vector>

#include "map/height_colours.h"
#include "map/relief.h"
#include "zel/terrain_map.h"

namespace zel::host {

// What the heights of some tiles are.
struct TileContents {
  HeightRange range;
  bool voids = false, outside = false;
};

class TileService {
 public:
  explicit TileService(std::size_t bytes = 192U << 20);
  ~TileService();  // waits for the tiles that are being made, at most some 100 ms: they are cancelled
  TileService(const TileService&) = delete;
  TileService& operator=(const TileService&) = delete;

  // Another terrain, colour scale or relief: tiles of before are shown by find() until the new ones have
  // come, except those of another terrain.
  void setTerrain(std::shared_ptr<const TerrainMap> terrain);
  void setScale(const HeightScale& scale);
  void setRelief(bool relief);
  const HeightScale& scale() const;

  // Nothing is made any more. Does not wait, since others' threads may be kept waiting by those of this.
  void end();

  // The tile, null while it is not there; with `ask` it is then wanted, the latest wanted first.
  const QImage* find(TileId tile, bool ask);
  // Those asked for and not among `wanted` are forgotten, so that a quick pan does not leave a queue behind.
  void keepAsked(const std::vector<TileId>& wanted);

  // Lowest and highest height of the tiles that are there among these.
  HeightRange range(const std::vector<TileId>& tiles);
  TileContents contents(const std::vector<TileId>& tiles);
  int waiting() const;        // tiles asked for and not there
  std::size_t bytes() const;  // of the tiles that are kept

  std::function<void()> onTile;  // after one or more have come, on the user-interface thread

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
