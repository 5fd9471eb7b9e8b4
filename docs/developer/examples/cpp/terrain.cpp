// Terrain sources, what a raster holds, and heights along a line.
#include <zel/profile_control.h>
#include <zel/settings.h>
#include <zel/terrain.h>

#include <cstdio>

int main(int argc, char** argv) {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  // A folder or raster of the user's goes to a source once, and stays there: zel::setTerrainSource(3,
  // {path}). For one run there is this; without an argument the bundled sample serves.
  if (argc > 1) {
    for (const zel::TerrainRaster& raster : zel::terrainRasters(argv[1]))
      std::printf("%s: %s\n", raster.path.c_str(),
                  raster.problem.empty() ? raster.format.c_str() : raster.problem.c_str());
    zel::useTerrainForThisRun({argv[1]});
  }
  for (const zel::TerrainSource& source : zel::terrainSources())
    std::printf("%d %s%s\n", source.code, source.name.c_str(), source.bundledSample ? " (sample)" : "");

  try {
    const zel::SampledTerrain sampled = zel::sampleTerrain({36.40, -84.35}, {36.22, -84.12}, 5, 0, 3);
    if (sampled.status != 0) return std::printf("%s\n", sampled.error.c_str()), 1;
    for (std::size_t i = 0; i < sampled.elevations.size(); ++i) {
      if (sampled.elevations[i] == zel::kTerrainVoid)
        std::printf("%.3f km: void\n", sampled.distancesKm[i]);
      else
        std::printf("%.3f km: %.1f m\n", sampled.distancesKm[i], static_cast<double>(sampled.elevations[i]));
    }
    std::printf("%zu raster(s), %s\n", sampled.provenance.files.size(), sampled.provenance.method.c_str());
  } catch (const zel::SettingsError& error) {
    return std::printf("%s\n", error.what()), 1;
  }
}
