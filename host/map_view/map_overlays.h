// What a map has besides its ground and its plan: graticule, outlines of the rasters, scale bar, legend and
// the mark in its middle. Their colours are the map's own, whatever the palette.
#pragma once

#include <QPainter>
#include <QRectF>
#include <vector>

#include "map/coverage_marks.h"
#include "map/graticule.h"
#include "map/height_colours.h"
#include "map/map_frame.h"
#include "map_view/map_text.h"
#include "map_view/plan_painter.h"
#include "zel/terrain_map.h"

namespace zel::host {

// Its texts keep clear of the panels.
void paintGraticule(QPainter& painter, MapText& text, const MapFrame& frame, AngleFormat format,
                    const std::vector<QRectF>& panels);
void paintCoverage(QPainter& painter, const MapFrame& frame, const std::vector<TerrainCoverage>& rasters);
// Boxes around rasters that are too small to be found, whether outlines are wanted or not.
void paintCoverageMarks(QPainter& painter, const MapFrame& frame, const std::vector<WorldArea>& rasters);

struct LegendWish {
  HeightScale scale;
  bool imperial = false;
  bool heights = false, voids = false, outside = false;  // what of it is seen
  VerdictSet verdicts{};                                 // of links
};
// At the right bottom, as tall as there is room. On a low map the heights have a shorter bar, and what does
// not fit is left away: the links' looks first, then the bar. Gives the place that it took, empty when there
// is none.
QRectF paintLegend(QPainter& painter, const MapFrame& frame, const LegendWish& wish);

// At the left bottom: the scale bar, and a line below it that says what the terrain is (empty: none). Gives
// the place that it took.
QRectF paintScaleBar(QPainter& painter, const MapFrame& frame, bool bar, bool imperial, const QString& line);

void paintCrosshair(QPainter& painter, const MapFrame& frame);

}  // namespace zel::host
