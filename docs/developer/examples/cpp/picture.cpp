// The plot of a path as a picture for the host's own window or report, and where things stand in it.
#include <zel/plot_image.h>
#include <zel/profile_control.h>

#include <cstdio>
#include <fstream>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  zel::PlotImageRequest request;
  request.from = {36.40, -84.35};
  request.to = {36.22, -84.12};
  request.fromHeight = 30;
  request.toHeight = 30;
  request.width = 800;  // logical pixels
  request.height = 300;
  request.pixelRatio = 2;  // 1600 x 600 device pixels
  request.markersKm = {10};
  const zel::PlotImage image = zel::renderPlotImage(request);
  if (image.status != 0) return std::printf("%s\n", image.error.c_str()), 1;
  std::ofstream("profile.png", std::ios::binary) << image.png;

  std::printf("%d x %d device pixels\n", image.deviceWidth, image.deviceHeight);
  const auto distanceAt = [&image](double pixelX) {  // logical pixels from the left
    const double share = (pixelX - image.rectangle.x) / image.rectangle.width;
    return image.scale.left + share * (image.scale.right - image.scale.left) - image.distanceShiftKm;
  };
  std::printf("start antenna at pixel %.0f = %.2f km\n", image.start.pixelX, distanceAt(image.start.pixelX));
  for (const zel::PlotImageMarker& marker : image.markers)
    std::printf("marker at pixel %.0f = %.2f km\n", marker.pixelX, distanceAt(marker.pixelX));
}
