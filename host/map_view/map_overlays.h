// What a map has besides its ground and its plan: graticule, outlines of the rasters, scale bar, legend and
// the mark in its middle. Their colours are the map's own, whatever the palette.
#pragma once

#include <QPainter>
#include <QRectF>
#include <vector>

#include "map/graticule.h"
#include "map/height_colours.h"
#include "map/map_frame.h"
#include "map_view/map_text.h"
#include "zel/terrain_map.h"

namespace zel::host {

// Its texts keep clear of the panels.
void paintGraticule(QPainter& painter, MapText& text, const MapFrame& frame, AngleFormat format,
                    const std::vector<QRectF>& panels);
void paintCoverage(QPainter& painter, const MapFrame& frame, const std::vector<TerrainCoverage>& rasters);

struct LegendWish {
  HeightScale scale;
  bool imperial = false;
  bool heights = false, voids = false, outside = false;  // what of it is seen
};
// At the right bottom; as tall as there is room, and none on a small map. Gives the place that it took, empty
// when it was left away.
QRectF paintLegend(QPainter& painter, const MapFrame& frame, const LegendWish& wish);

// At the left bottom: the scale bar, and a line below it that says what the terrain is (empty: none). Gives
// the place that it took.
QRectF paintScaleBar(QPainter& painter, const MapFrame& frame, bool bar, bool imperial, const QString& line);

void paintCrosshair(QPainter& painter, const MapFrame& frame);

}  // namespace zel::host
