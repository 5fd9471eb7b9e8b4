// The terrain of a source as an area: what a map is painted from, on a thread of its own.
#include <zel/profile_control.h>
#include <zel/terrain_map.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  const std::shared_ptr<const zel::TerrainMap> map = zel::TerrainMap::open(3);

  std::vector<double> latitudes, longitudes;
  for (int i = 0; i < 200; ++i) {
    latitudes.push_back(36.44 - 0.0013 * i);
    longitudes.push_back(-84.40 + 0.0015 * i);
  }
  std::atomic<bool> cancelled = false;  // set to true when the view moves on
  std::vector<float> heights;
  std::thread painter([&] { heights = map->grid(latitudes, longitudes, &cancelled); });
  painter.join();

  std::erase_if(heights, [](float h) { return h == zel::kTerrainVoid || h == zel::kTerrainOutside; });
  if (heights.empty()) return std::printf("no terrain\n"), 1;
  const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
  std::printf("%zu heights from %.0f to %.0f m\n", heights.size(), static_cast<double>(*lowest),
              static_cast<double>(*highest));
  for (const zel::TerrainCoverage& raster : map->rasters())
    std::printf("%.2f to %.2f N, %.2f to %.2f E\n", raster.extent.south, raster.extent.north,
                raster.extent.west, raster.extent.east);
}
