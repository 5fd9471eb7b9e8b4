// The map of one link, as a picture for a page.
//
// What it shows and in which looks is the map's own (map_view): relief, the link by its verdict, the names of
// its stations, scale bar and legend. Its ground is made by threads in the background; the rest on the
// user-interface thread.
#pragma once

#include <QFont>
#include <QImage>
#include <functional>
#include <memory>
#include <vector>

#include "map/graticule.h"
#include "map_view/tile_service.h"
#include "planning/plan.h"
#include "report/page_figures.h"
#include "report/page_layout.h"

namespace zel::host {

struct LinkMapLook {
  double width = 680, height = 360;  // logical pixels
  double pixelRatio = 2.25;          // of the picture's pixels to them
  bool imperial = false;
  AngleFormat angles = AngleFormat::kDegreesMinutesSeconds;
  QFont font;  // of all that is written on it
};

// For a box on paper: 216 dots an inch, and texts of 7.5 points.
LinkMapLook lookOnPaper(const PageBox& box, bool imperial, AngleFormat angles);

class LinkMap {
 public:
  // One map after the other, over one terrain; null: none. `mostBytes` of finished ground are kept.
  explicit LinkMap(std::shared_ptr<const TerrainMap> terrain, std::size_t mostBytes = 48U << 20);
  ~LinkMap();

  // The link of the plan, with its stations.
  void begin(const Plan& plan, LinkId link, const PageFigures& figures, const LinkMapLook& look);
  // Asks for what is missing; true when there is nothing more to be waited for.
  bool ready();
  QImage picture();
  // Nothing is made any more.
  void end();

  std::function<void()> onGround;  // some more of it is there

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel::host
