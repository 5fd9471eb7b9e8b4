// The profile's plot of one link on a page, as vectors: the strokes of the component's own picture
// (zel/plot_image.h) and its labels as texts.
#pragma once

#include <string>

#include "analysis/link_analysis.h"
#include "planning/plan.h"
#include "report/page_text.h"
#include "zel/plot_image.h"

namespace zel::host {

// The plot for a box of that size, with the k and the frequency of the figures. On the component's thread;
// status and error as renderPlotImage has them.
PlotImage linkPlot(const Plan& plan, const Link& link, const LinkResult& result, const PageBox& box,
                   bool imperial);

// False when it cannot be drawn.
bool drawLinkPlot(PageText& text, const PageBox& box, const PlotImage& plot);

// "Ground over the curved earth (k 1.33), line of sight and first Fresnel zone (100 %) at 950 MHz; heights
// in m above sea level, distances in km"
std::string plotCaption(const PlotImage& plot);

}  // namespace zel::host
