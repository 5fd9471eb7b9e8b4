#include "report/page_figures.h"

#include "analysis/link_computation.h"
#include "zel/geodesic.h"

namespace zel::host {
namespace {

void dropSamples(PathProfile& profile) {
  profile.positions = {};
  for (auto* samples : {&profile.distancesKm, &profile.groundM, &profile.riseM, &profile.lineOfSightM,
                        &profile.fresnel1M, &profile.clearanceM})
    *samples = {};
}

}  // namespace

PageFigures pageFigures(const Plan& plan, const Link& link) {
  PageFigures figures;
  const GeodesicLine line = geodesicLine(mapPosition(plan.stations.at(link.from).position).position,
                                         mapPosition(plan.stations.at(link.to).position).position, 2);
  figures.distanceKm = line.distanceKm;
  figures.bearingDeg = line.bearingDeg;
  figures.reverseBearingDeg = line.reverseBearingDeg;
  LinkComputation computation(plan, link);
  while (computation.step()) {
  }
  figures.profile = computation.profiled();
  figures.loss = computation.lost();
  figures.result = computation.take();
  dropSamples(figures.profile);
  if (figures.result.error.empty()) {
    figures.distanceKm = figures.result.distanceKm;
    figures.bearingDeg = figures.result.bearingDeg;
  }
  return figures;
}

}  // namespace zel::host
