// profile: the ground between two stations in exact geometry, as a summary, as JSON and as CSV.
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/output.h"
#include "command_line/path_options.h"
#include "command_line/path_output.h"
#include "command_line/provenance.h"
#include "command_line/stations.h"
#include "zel/path_profile.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

struct ProfileOptions {
  std::string from, to;
  std::optional<double> k, frequency;
  bool json = false;
  std::string output;
};

void writeCsv(std::ostream& out, const PathProfile& profile) {
  out << "distance_km,latitude,longitude,ground_m,rise_m,los_m,fresnel1_m,clearance_m\n";
  for (std::size_t i = 0; i < profile.distancesKm.size(); ++i)
    out << fixed(profile.distancesKm[i], 6) << ',' << fixed(profile.positions[i].latitude, 9) << ','
        << fixed(profile.positions[i].longitude, 9) << ',' << fixed(profile.groundM[i], 3) << ','
        << fixed(profile.riseM[i], 3) << ',' << fixed(profile.lineOfSightM[i], 3) << ','
        << fixed(profile.fresnel1M[i], 3) << ',' << fixed(profile.clearanceM[i], 3) << '\n';
}

GroundFigures groundOf(const PathProfile& profile) {
  return {profile.startGroundM, profile.endGroundM, profile.minimumM, profile.maximumM, profile.averageM};
}

Json profileJson(const PathProfile& profile, const std::string& csv) {
  Json json;
  json["distance_km"] = rounded(profile.distanceKm, 6);
  json["bearing_deg"] = rounded(profile.bearingDeg, 4);
  json["points"] = profile.points;
  json["spacing_m"] = rounded(profile.spacingM, 3);
  json["ground_m"] = groundJson(groundOf(profile));
  json["free_space_db"] = rounded(profile.freeSpaceDb, 2);
  if (profile.worst) {
    const PathObstacle& worst = *profile.worst;
    json["worst_obstacle"] = {{"distance_km", rounded(worst.distanceKm, 6)},
                              {"latitude", rounded(worst.position.latitude, 9)},
                              {"longitude", rounded(worst.position.longitude, 9)},
                              {"ground_m", rounded(worst.groundM, 3)},
                              {"clearance_m", rounded(worst.clearanceM, 3)},
                              {"clearance_percent", rounded(worst.clearancePercent, 2)}};
  } else {
    json["worst_obstacle"] = nullptr;
  }
  json["verdict"] = verdictText(profile.verdict);
  json["inputs"] = {{"from", stationJson(profile.positions.front(), profile.startHeightM)},
                    {"to", stationJson(profile.positions.back(), profile.endHeightM)},
                    {"k", rounded(profile.k, 7)},
                    {"frequency_mhz", rounded(profile.frequencyMhz, 6)},
                    {"wavelength_m", rounded(profile.wavelengthM, 6)},
                    {"geometry", "exact, station to station along the WGS 84 geodesic"},
                    {"terrain", terrainJson(profile.terrain)}};
  json["notes"] = profile.notes;
  json["warnings"] = profile.terrain.warnings;
  if (!csv.empty()) json["csv"] = csv;
  return json;
}

std::string verdictSentence(PathVerdict verdict) {
  switch (verdict) {
    case PathVerdict::kClear:
      return "clear: at least 60 % of the first Fresnel zone is free everywhere";
    case PathVerdict::kMarginal:
      return "marginal: the line of sight is free, but less than 60 % of the first Fresnel zone";
    case PathVerdict::kBlocked:
      return "blocked: the ground reaches above the line of sight";
    case PathVerdict::kUnknown:
      break;
  }
  return "unknown: ground between the stations has no height; the clearance holds where it has one";
}

void printSummary(const PathProfile& profile, const std::string& csv) {
  const auto& line = summaryLine;
  line("From", stationSentence(profile.positions.front(), profile.startHeightM));
  line("To", stationSentence(profile.positions.back(), profile.endHeightM));
  line("Distance", fixed(profile.distanceKm, 3) + " km");
  line("Bearing", fixed(profile.bearingDeg, 2) + " degrees");
  line("Points", std::to_string(profile.points) + ", " + fixed(profile.spacingM, 2) + " m apart");
  line("Ground", groundSentence(groundOf(profile)));
  line("Free-space loss", fixed(profile.freeSpaceDb, 2) + " dB");
  if (profile.worst) {
    const PathObstacle& worst = *profile.worst;
    line("Worst obstacle",
         fixed(worst.distanceKm, 3) + " km from the start, " + latitudeText(worst.position.latitude) + ", " +
             longitudeText(worst.position.longitude) + ", ground " + fixed(worst.groundM, 1) + " m");
    line("Clearance", fixed(worst.clearanceM, 1) + " m, " + fixed(worst.clearancePercent, 0) +
                          " % of the first Fresnel zone");
  }
  line("Verdict", verdictSentence(profile.verdict));
  line("Computed with", "k " + shortest(profile.k) + ", " + shortest(profile.frequencyMhz) +
                            " MHz (wavelength " + fixed(profile.wavelengthM, 3) + " m), " +
                            profile.terrain.method + ", exact geometry station to station");
  line("Terrain", terrainSentence(profile.terrain));
  for (const std::string& text : profile.notes) line("Note", text);
  for (const std::string& text : profile.terrain.warnings) line("Warning", text);
  if (!csv.empty()) line("CSV", csv + " (" + std::to_string(profile.points) + " rows)");
}

void runProfile(const ProfileOptions& options) {
  const StationInput from = stationOption("--from", options.from);
  const StationInput to = stationOption("--to", options.to);
  if (options.json && options.output == "-")
    throw UsageError("--json and -o - both want standard output; give the CSV a file");
  const PathProfile profile =
      computePathProfile({from.position, to.position, from.height, to.height, options.k, options.frequency});
  if (profile.status != 0) throw CommandFailure(profile.error);
  if (!options.output.empty())
    writeFile(options.output, [&profile](std::ostream& out) { writeCsv(out, profile); });
  if (options.output == "-") return;  // standard output is the CSV's
  if (options.json)
    std::cout << profileJson(profile, options.output).dump(2, ' ', false, Json::error_handler_t::replace)
              << '\n';
  else
    printSummary(profile, options.output);
}

}  // namespace

void addProfileCommand(CLI::App& program) {
  auto options = std::make_shared<ProfileOptions>();
  CLI::App* command =
      program.add_subcommand("profile", "Profile of a path: summary, clearance and verdict, CSV");
  addStationOptions(*command, options->from, options->to);
  command->add_option("--k", options->k, "Effective-earth factor; by default the setting Profile/Prf_Crv")
      ->check(positiveNumberProblem)
      ->type_name("K");
  command->add_option("--frequency", options->frequency, "Frequency; by default the setting Profile/Prf_Freq")
      ->check(positiveNumberProblem)
      ->type_name("MHZ");
  command->add_flag("--json", options->json, "Print the summary as JSON");
  command
      ->add_option("-o,--output", options->output,
                   "Write the profile as CSV to this file; - is standard output")
      ->check(valueProblem)
      ->type_name("FILE");
  command->footer(
      "Heights are metres above ground; without one the settings Profile/Prf_HtL and Profile/Prf_HtR hold.\n"
      "CSV columns: distance_km from the start, latitude, longitude, ground_m above sea level (empty in a "
      "void),\n"
      "rise_m of the curved earth, los_m line of sight above sea level, fresnel1_m radius of the first "
      "Fresnel zone,\n"
      "clearance_m of the line of sight above ground and rise.\n"
      "Examples:\n"
      "  terrain-profiler profile --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o profile.csv\n"
      "  terrain-profiler profile --from \"36-24-00 N,84-21-00 W\" --to \"36-13-12 N,84-07-12 W\" --k 0.667 "
      "--json");
  command->callback([options] { runProfile(*options); });
}

}  // namespace zel::host
