#include "extension/surroundings.h"

#include <pybind11/stl.h>

#include <cmath>
#include <string>
#include <vector>

#include "extension/calculators.h"
#include "extension/columns.h"
#include "extension/dictionaries.h"
#include "extension/errors.h"
#include "extension/interpreter_lock.h"
#include "zel/c_api.h"
#include "zel/coordinates.h"
#include "zel/geodesic.h"
#include "zel/plot_image.h"
#include "zel/settings.h"
#include "zel/terrain.h"
#include "zel/windows.h"

namespace zel::python {
namespace {

// ---- Settings ----

py::dict settingDictionary(const SettingDescription& setting) {
  py::dict fields;
  fields["section"] = textOf(setting.section);
  fields["key"] = textOf(setting.key);
  fields["type"] = textOf(setting.type);
  fields["default"] = textOf(setting.defaultText);
  fields["other_default"] = textOf(setting.otherDefault);
  fields["other_reader"] = textOf(setting.otherReader);
  fields["unit"] = textOf(setting.unit);
  fields["range"] = textOf(setting.range);
  fields["meaning"] = textOf(setting.meaning);
  return fields;
}

py::object optionalText(const std::optional<std::string>& text) {
  return text ? py::object(textOf(*text)) : py::object(py::none());
}

void bindSettings(py::module_& module) {
  module.def("known_settings", [] {
    py::list list;
    for (const SettingDescription& setting : knownSettings()) list.append(settingDictionary(setting));
    return list;
  });
  module.def("stored_setting", [](const std::string& section, const std::string& key) {
    return optionalText(withComponent([&] { return storedSetting(section, key); }));
  });
  module.def("stored_settings", [] {
    py::list list;
    for (const SettingValue& value : withComponent([] { return storedSettings(); }))
      list.append(
          py::make_tuple(textOf(value.section), textOf(value.key), textOf(value.value), value.forThisRun));
    return list;
  });
  module.def("setting_problem",
             [](const std::string& section, const std::string& key, const std::string& value) {
               return optionalText(settingProblem(section, key, value));
             });
  module.def("store_setting",
             [](const std::string& section, const std::string& key, const std::string& value) {
               withComponent([&] { storeSetting(section, key, value), settingsChanged(); });
             });
  module.def("override_setting",
             [](const std::string& section, const std::string& key, const std::string& value) {
               withComponent([&] { overrideSetting(section, key, value), settingsChanged(); });
             });
  module.def("settings_file", [] { return pathOf(withComponent([] { return settingsFile(); })); });
}

// ---- Terrain ----

py::dict rasterDictionary(const TerrainRaster& raster) {
  py::dict fields;
  fields["path"] = pathOf(raster.path);
  fields["problem"] = textOf(raster.problem);
  fields["remark"] = textOf(raster.remark);
  fields["format"] = textOf(raster.format);
  fields["south"] = raster.south;
  fields["west"] = raster.west;
  fields["north"] = raster.north;
  fields["east"] = raster.east;
  fields["columns"] = raster.columns;
  fields["rows"] = raster.rows;
  fields["cell_width"] = raster.cellWidth;
  fields["cell_height"] = raster.cellHeight;
  fields["cell_unit"] = textOf(raster.cellUnit);
  fields["posts_on_corners"] = raster.postsOnCorners;
  fields["data_type"] = textOf(raster.dataType);
  fields["height_unit"] = textOf(raster.heightUnit);
  fields["lowest"] = raster.lowest;
  fields["highest"] = raster.highest;
  fields["voids"] = raster.voids;
  fields["horizontal_datum"] = textOf(raster.horizontalDatum);
  fields["vertical_datum"] = textOf(raster.verticalDatum);
  return fields;
}

void bindTerrain(py::module_& module) {
  module.def("use_terrain_for_this_run", [](const std::vector<std::string>& paths) {
    withComponent([&] { useTerrainForThisRun(paths), settingsChanged(); });
  });
  module.def("set_terrain_source", [](int code, const std::vector<std::string>& paths) {
    withComponent([&] { setTerrainSource(code, paths), settingsChanged(); });
  });
  module.def("terrain_sources", [] {
    py::list list;
    for (const TerrainSource& source : withComponent([] { return terrainSources(); }))
      list.append(
          py::make_tuple(source.code, textOf(source.name), paths(source.paths), source.bundledSample));
    return list;
  });
  module.def("terrain_rasters", [](const std::string& path) {
    py::list list;
    for (const TerrainRaster& raster : withComponent([&] { return terrainRasters(path); }))
      list.append(rasterDictionary(raster));
    return list;
  });
}

// ---- Geodesics and positions ----

void bindPositions(py::module_& module) {
  module.def("geodesic_line", [](double lat1, double lon1, double lat2, double lon2, std::int32_t points) {
    std::shared_ptr<GeodesicLine> line;
    {
      const LockReleased released;
      line = std::make_shared<GeodesicLine>(geodesicLine({lat1, lon1}, {lat2, lon2}, points));
    }
    const auto coordinate = [&line](double Position::*member) {
      const double* first = line->positions.empty() ? nullptr : &(line->positions.front().*member);
      return lentEvery(line, first, line->positions.size(), sizeof(Position));
    };
    py::dict fields;
    fields["distance_km"] = line->distanceKm;
    fields["bearing_deg"] = line->bearingDeg;
    fields["reverse_bearing_deg"] = line->reverseBearingDeg;
    fields["latitudes"] = coordinate(&Position::latitude);
    fields["longitudes"] = coordinate(&Position::longitude);
    return fields;
  });
  module.def("geodesic_destination", [](double lat, double lon, double bearing, double distance) {
    return pair(geodesicDestination({lat, lon}, bearing, distance));
  });
  module.def("parse_station", [](const std::string& text) {
    const ParsedStation parsed = parseStationText(text);
    if (!parsed.station) throw PathFault(kStatusRequest, parsed.error);
    const std::optional<double> height = parsed.station->height;
    return py::make_tuple(parsed.station->position.latitude, parsed.station->position.longitude,
                          height ? py::object(py::float_(*height)) : py::object(py::none()));
  });
}

// ---- Windows ----

[[noreturn]] void raiseLastError() {
  PyErr_SetString(PyExc_RuntimeError, zelProfilerLastError());
  throw py::error_already_set();
}

// The user chose not to go on after a failure: the process is to end with the failure's number.
[[noreturn]] void quit() {
  int code = 0;
  zelProfilerRun(&code);
  PyErr_SetObject(PyExc_SystemExit, py::int_(code).ptr());
  throw py::error_already_set();
}

void processEvents(int milliseconds) {
  int result = ZEL_OK;
  {
    const LockReleased released;
    result = zelProfilerProcessEvents(milliseconds);
    settingsChanged();
  }
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  if (result == ZEL_QUIT) quit();
  if (result == ZEL_OUT_OF_RANGE) throw py::value_error(zelProfilerLastError());
  if (result != ZEL_OK) raiseLastError();
}

int run() {
  int code = 0;
  int result = ZEL_OK;
  {
    const LockReleased released;
    result = zelProfilerRun(&code);
    settingsChanged();
  }
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  if (result != ZEL_OK) raiseLastError();
  return code;
}

void bindWindows(py::module_& module) {
  module.def("process_events", &processEvents);
  module.def("run", &run);
  module.def("windows_problem", [] { return textOf(withComponent([] { return windowsProblem(); })); });
  module.def("version", [] { return zelProfilerVersion(); });
}

// ---- Pictures ----

PlotImageRequest plotRequest(const py::dict& options) {
  PlotImageRequest request;
  const auto take = [&options](const char* name, auto& value) {
    if (options.contains(name)) value = options[name].cast<std::remove_reference_t<decltype(value)>>();
  };
  take("lat1", request.from.latitude);
  take("lon1", request.from.longitude);
  take("lat2", request.to.latitude);
  take("lon2", request.to.longitude);
  take("h1", request.fromHeight);
  take("h2", request.toHeight);
  take("k", request.k);
  take("frequency", request.frequencyMhz);
  take("fresnel_percent", request.fresnelPercent);
  take("markers_km", request.markersKm);
  take("width", request.width);
  take("height", request.height);
  take("scale", request.pixelRatio);
  bool flag = false;
  take("svg", flag);
  request.format = flag ? PictureFormat::kSvg : PictureFormat::kPng;
  if (options.contains("imperial"))
    request.units = options["imperial"].cast<bool>() ? PlotUnits::kImperial : PlotUnits::kMetric;
  if (options.contains("expand_km")) {
    const auto stretch = options["expand_km"].cast<std::pair<double, double>>();
    request.expanded = PlotStretch{stretch.first, stretch.second};
  }
  return request;
}

py::tuple plot(const py::dict& options) {
  const PlotImageRequest request = plotRequest(options);
  const PlotImage image = withComponent([&] { return renderPlotImage(request); });
  if (image.status != kStatusOk) throw PathFault(image.status, image.error);
  return py::make_tuple(py::bytes(request.format == PictureFormat::kSvg ? image.svg : image.png),
                        texts(image.notes));
}

}  // namespace

void bindSurroundings(py::module_& module) {
  bindSettings(module);
  bindTerrain(module);
  bindPositions(module);
  bindWindows(module);
  module.def("plot", &plot);
}

}  // namespace zel::python
