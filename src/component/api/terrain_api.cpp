// Public terrain functions over the component's terrain library.
#include <filesystem>
#include <system_error>
#include <utility>

#include "component/api/path_context.h"
#include "component/api/ready_component.h"
#include "component/api/terrain_provenance.h"
#include "profile/settings/settings_table.h"
#include "zel/settings.h"
#include "zel/terrain.h"
#include "zeltool/terrain/raster_info.h"

namespace zel {

static_assert(kTerrainVoid == kVoidHeight);

SampledTerrain sampleTerrain(const PathContext& context, Position from, Position to, std::int32_t points,
                             std::int32_t method, int source) {
  SampleRequest request;
  request.from = {from.latitude, from.longitude};
  request.to = {to.latitude, to.longitude};
  request.count = points;
  request.method = method;
  request.source = source;
  SampleResult result = context.terrain->sample(request);

  SampledTerrain terrain;
  terrain.status = result.report.status;
  terrain.error = result.report.reason;
  terrain.provenance = terrainProvenance(result.report, context.datum);
  if (terrain.status != kSamplerOk) return terrain;
  terrain.distanceKm = result.length;
  terrain.elevations = std::move(result.heights);
  for (std::size_t i = 0; i < terrain.elevations.size(); ++i) {
    terrain.distancesKm.push_back(result.length * static_cast<double>(i) / (points - 1));
    terrain.positions.push_back({result.positions[i].latitude, result.positions[i].longitude});
  }
  return terrain;
}

SampledTerrain sampleTerrain(Position from, Position to, std::int32_t points, std::int32_t method,
                             int source) {
  return accessing([&](Component& component) {
    return sampleTerrain(presentContext(component), from, to, points, method, source);
  });
}

std::vector<TerrainSource> terrainSources() {
  return accessing([](Component& component) {
    std::vector<TerrainSource> sources;
    for (const int code : kTerrainSourceCodes) {
      SourceDefinition definition = component.terrainSources().definition(code);
      sources.push_back({code, definition.name, std::move(definition.paths), definition.bundledSample});
    }
    return sources;
  });
}

void setTerrainSource(int code, const std::vector<std::string>& paths) {
  const Setting* setting = terrainSourceSetting(code);
  if (setting == nullptr)
    throw SettingsError("there is no terrain source " + std::to_string(code) +
                        "; the codes are 1, 2, 3, 7 and 9");
  std::string joined;
  for (const std::string& path : paths) {
    if (path.empty() || path.find(';') != std::string::npos)
      throw SettingsError("\"" + path +
                          "\" cannot be a terrain path: it is empty or has a \";\", which separates paths");
    joined += (joined.empty() ? "" : ";") + path;
  }
  storeSetting(setting->section, setting->key, joined);
}

void useTerrainForThisRun(const std::vector<std::string>& paths) {
  readyComponent().terrainSources().useForThisRun(paths);
}

std::vector<TerrainRaster> terrainRasters(const std::string& path) {
  std::vector<TerrainRaster> rasters;
  std::error_code ignored;
  const bool folder = std::filesystem::is_directory(path, ignored);
  const std::vector<std::string> files = folder ? rasterFiles(path) : std::vector<std::string>{path};
  if (files.empty()) {
    TerrainRaster nothing;
    nothing.path = path;
    nothing.problem = "the folder holds no raster";
    rasters.push_back(std::move(nothing));
  }
  for (const std::string& file : files) {
    RasterInfo info = describeRaster(file);
    TerrainRaster raster;
    raster.path = std::move(info.path);
    raster.problem = std::move(info.problem);
    raster.remark = std::move(info.remark);
    raster.format = std::move(info.driver);
    raster.south = info.south;
    raster.west = info.west;
    raster.north = info.north;
    raster.east = info.east;
    raster.columns = info.columns;
    raster.rows = info.rows;
    raster.cellWidth = info.cellWidth;
    raster.cellHeight = info.cellHeight;
    raster.cellUnit = std::move(info.cellUnit);
    raster.postsOnCorners = info.postsOnCorners;
    raster.dataType = std::move(info.dataType);
    raster.heightUnit = std::move(info.heightUnit);
    raster.lowest = info.lowest;
    raster.highest = info.highest;
    raster.voids = info.voids;
    raster.horizontalDatum = std::move(info.horizontalDatum);
    raster.verticalDatum = std::move(info.verticalDatum);
    rasters.push_back(std::move(raster));
  }
  return rasters;
}

}  // namespace zel
