// sample: heights at evenly spaced points, as CSV.
#include <iostream>
#include <memory>
#include <string>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

struct SampleOptions {
  std::string from, to;
  std::int32_t points = 0;
  std::string method;
  int source = 0;
  std::string output = "-";
};

void writeSamples(std::ostream& out, const SampledTerrain& sampled) {
  out << "distance_km,latitude,longitude,elevation_m\n";
  for (std::size_t i = 0; i < sampled.elevations.size(); ++i)
    out << fixed(sampled.distancesKm[i], 6) << ',' << fixed(sampled.positions[i].latitude, 9) << ','
        << fixed(sampled.positions[i].longitude, 9) << ','
        << fixed(static_cast<double>(sampled.elevations[i]), 3) << '\n';
}

void runSample(const SampleOptions& options) {
  const StationInput from = positionOption("--from", options.from);
  const StationInput to = positionOption("--to", options.to);
  const std::int32_t method = options.method == "bivariate" ? 1 : 0;
  const SampledTerrain sampled =
      sampleTerrain(from.position, to.position, options.points, method, options.source);
  if (sampled.status != 0) throw CommandFailure(sampled.error);
  writeFile(options.output, [&sampled](std::ostream& out) { writeSamples(out, sampled); });
  for (const std::string& warning : sampled.provenance.warnings) note(warning);
  note("computed from " + terrainSentence(sampled.provenance) + "; " + sampled.provenance.method +
       "; WGS 84 geodesic of " + fixed(sampled.distanceKm, 3) + " km" +
       (sampled.provenance.voids == 0
            ? std::string()
            : "; " + std::to_string(sampled.provenance.voids) + " samples without a height read -9999"));
}

}  // namespace

void addSampleCommand(CLI::App& program) {
  auto options = std::make_shared<SampleOptions>();
  CLI::App* command =
      program.add_subcommand("sample", "Terrain heights at evenly spaced points of a path, as CSV");
  command->add_option("--from", options->from, "Position of the first sample")
      ->type_name("LAT,LON")
      ->check(valueProblem)
      ->required();
  command->add_option("--to", options->to, "Position of the last sample")
      ->type_name("LAT,LON")
      ->check(valueProblem)
      ->required();
  command->add_option("--points", options->points, "Number of samples, both ends included (2 to 32767)")
      ->check(CLI::Range(2, 32767))
      ->type_name("N")
      ->required();
  options->method = "4point";
  command->add_option("--method", options->method, "4point (bilinear) or bivariate (cubic convolution)")
      ->check(CLI::IsMember({"4point", "bivariate"}))
      ->capture_default_str();
  options->source = 3;
  command->add_option("--source", options->source, "Terrain source code")
      ->check(valueProblem)
      ->check(CLI::IsMember({1, 2, 3, 7, 9}))
      ->capture_default_str();
  command->add_option("-o,--output", options->output, "File for the CSV; - is standard output")
      ->check(valueProblem)
      ->type_name("FILE")
      ->capture_default_str();
  command->footer(
      "Columns: distance_km from the first sample, latitude, longitude, elevation_m; -9999 stands for a "
      "void.\n"
      "Example:\n  terrain-profiler sample --from 36.40,-84.35 --to 36.22,-84.12 --points 11");
  command->callback([options] { runSample(*options); });
}

}  // namespace zel::host
