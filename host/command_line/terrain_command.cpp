// terrain: the sources and what rasters hold.
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

void listSources() {
  for (const TerrainSource& source : terrainSources()) {
    std::cout << source.code << "  " << source.name << (source.code == 3 ? " (default)" : "") << '\n';
    if (source.bundledSample) std::cout << "     not set: the bundled sample terrain stands in\n";
    for (const std::string& path : source.paths) {
      std::error_code ignored;
      std::cout << "     " << path << (std::filesystem::exists(path, ignored) ? "" : "  (missing)") << '\n';
    }
  }
}

void describe(const TerrainRaster& raster) {
  std::cout << raster.path << '\n';
  if (!raster.problem.empty()) {
    std::cout << "  not usable         " << raster.problem << '\n';
    return;
  }
  const auto range = [](double a, double b, int decimals) {
    return fixed(a, decimals) + " to " + fixed(b, decimals);
  };
  const auto usable = static_cast<std::int64_t>(raster.columns) * raster.rows - raster.voids;
  std::cout << "  format             " << raster.format << ", " << raster.dataType << '\n'
            << "  latitude           " << range(raster.south, raster.north, 6) << '\n'
            << "  longitude          " << range(raster.west, raster.east, 6) << '\n'
            << "  size               " << raster.columns << " x " << raster.rows << " cells"
            << (raster.postsOnCorners ? ", pixel is point" : ", pixel is area") << '\n'
            << "  cell               " << significant(raster.cellWidth, 10) << " x "
            << significant(raster.cellHeight, 10) << ' ' << raster.cellUnit << '\n'
            << "  heights            "
            << (usable > 0 && !std::isnan(raster.lowest) ? range(raster.lowest, raster.highest, 1) + " m"
                                                         : std::string("none"))
            << (raster.heightUnit.empty() || raster.heightUnit == "metre" || raster.heightUnit == "m"
                    ? std::string()
                    : " (file in " + raster.heightUnit + ")")
            << '\n'
            << "  voids              " << raster.voids << '\n'
            << "  horizontal datum   " << raster.horizontalDatum << '\n'
            << "  vertical datum     " << raster.verticalDatum << '\n';
  if (!raster.remark.empty()) std::cout << "  remark             " << raster.remark << '\n';
}

void showRasters(const std::vector<std::string>& paths) {
  std::size_t problems = 0;
  std::string lastProblem;
  for (const std::string& path : paths) {
    for (const TerrainRaster& raster : terrainRasters(path)) {
      describe(raster);
      if (raster.problem.empty()) continue;
      ++problems;
      lastProblem = raster.path + ": " + raster.problem;
    }
  }
  std::cout.flush();
  if (problems == 1) throw CommandFailure(lastProblem + "; give a raster of heights that covers your path");
  if (problems > 1)
    throw CommandFailure(std::to_string(problems) +
                         " rasters cannot be used as terrain; the listing says why");
}

void setSource(int code, const std::vector<std::string>& paths) {
  std::vector<std::string> absolute;
  for (const std::string& path : paths) {
    std::error_code error;
    if (!std::filesystem::exists(path, error))
      throw CommandFailure(path + ": no such file or folder; the source keeps what it had");
    if (path.find(';') != std::string::npos)
      throw CommandFailure(path +
                           ": a name with \";\" cannot be stored, since it separates the paths; rename it");
    absolute.push_back(std::filesystem::weakly_canonical(path).string());
  }
  setTerrainSource(code, absolute);
}

}  // namespace

void addTerrainCommand(CLI::App& program) {
  CLI::App* terrain = program.add_subcommand("terrain", "Terrain sources and rasters");
  terrain->require_subcommand(1);
  terrain->fallthrough();
  terrain->footer(
      "Examples:\n  terrain-profiler terrain list\n  terrain-profiler terrain info ~/tiles/N36W085.hgt\n"
      "  terrain-profiler terrain set 3 ~/tiles");

  terrain->add_subcommand("list", "The sources with their codes and paths")->callback(listSources);

  auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* info = terrain->add_subcommand("info", "Extent, size, cell, range, voids and datums of rasters");
  info->add_option("FILE", *files, "Rasters or folders of rasters")->required();
  info->callback([files] { showRasters(*files); });

  auto code = std::make_shared<int>(3);
  auto paths = std::make_shared<std::vector<std::string>>();
  CLI::App* set = terrain->add_subcommand("set", "Set the rasters and folders of a source");
  set->add_option("CODE", *code, "1, 2, 3, 7 or 9")->required()->check(CLI::IsMember({1, 2, 3, 7, 9}));
  set->add_option("PATH", *paths, "Rasters or folders of rasters, in order of preference")->required();
  set->callback([code, paths] { setSource(*code, *paths); });

  CLI::App* reset = terrain->add_subcommand("reset", "Give a source back to the bundled sample");
  reset->add_option("CODE", *code, "1, 2, 3, 7 or 9")->required()->check(CLI::IsMember({1, 2, 3, 7, 9}));
  reset->callback([code] { setTerrainSource(*code, {}); });
}

}  // namespace zel::host
