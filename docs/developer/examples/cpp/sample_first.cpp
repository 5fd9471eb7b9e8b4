// Guards a host against the hard stop: ground from -500 m up to -100 m ends the process in GetPathLoss and
// ShowMainForm. The functions beside the class refuse such a path instead.
#include <zel/path_loss.h>
#include <zel/plot_image.h>
#include <zel/profile_control.h>
#include <zel/terrain.h>

#include <cstdio>

// Whether the class may be asked for the path; if not, says why.
static bool isSafe(const StationProfile_Type& from, const StationProfile_Type& to) {
  const zel::Position start{from.Lat, from.Lon};
  const zel::Position end{to.Lat, to.Lon};
  // GetPathLoss samples from station to station ...
  const zel::PathLoss loss = zel::computePathLoss({start, end, from.AntHt, to.AntHt, {}});
  if (loss.status != 0) return std::printf("%s\n", loss.error.c_str()), false;
  // ... and the window a little beyond both.
  zel::PlotImageRequest plot;
  plot.from = start;
  plot.to = end;
  const zel::PlotImage checked = zel::checkPlotPath(plot);
  if (checked.status != 0) return std::printf("%s\n", checked.error.c_str()), false;
  return true;
}

int main(int argc, char** argv) {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  if (argc > 1) zel::useTerrainForThisRun({argv[1]});

  const StationProfile_Type from{36.40, -84.35, 30};
  const StationProfile_Type to{36.22, -84.12, 30};
  if (!isSafe(from, to)) return 1;
  std::printf("Modeled loss: %.1f dB\n", static_cast<double>(profiler.GetPathLoss(from, to)));
}
