#include "extension/radio_model.h"

#include <pybind11/stl.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "extension/columns.h"
#include "extension/dictionaries.h"
#include "extension/errors.h"
#include "extension/interpreter_lock.h"
#include "zel/longley_rice.h"

namespace zel::python {
namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// The name of the argument for a member of the request.
std::string argumentOf(const std::string& member) {
  static constexpr std::pair<const char*, const char*> kNames[] = {
      {"elevationsM", "elevations"},
      {"spacingM", "spacing"},
      {"transmitterHeightM", "tx"},
      {"receiverHeightM", "rx"},
      {"frequencyMhz", "frequency"},
      {"surfaceRefractivity", "surface_refractivity"},
      {"seaLevelRefractivity", "sea_level_refractivity"},
  };
  for (const auto& [of, name] : kNames)
    if (member == of) return name;
  return member;
}

std::string headed(const LongleyRiceResult& result) {
  const std::string argument = argumentOf(result.parameter);
  return argument.empty() ? result.error : argument + ": " + result.error;
}

// A number that is no code at all is one that the model refuses.
int climateCode(double climate) {
  const bool code = std::nearbyint(climate) == climate && std::abs(climate) < std::numeric_limits<int>::max();
  if (!code) {
    const LockHeld lock;
    throw PathFault(
        kStatusRequest,
        "climate: the climate code is " + std::string(py::str(py::float_(climate))) + "; it must be 1 to 7",
        {}, "climate");
  }
  return static_cast<int>(climate);
}

struct ModelArguments {
  ElevationRows elevations;
  Numbers spacing, transmitter, receiver, frequency, vertical, climate, permittivity, conductivity,
      surfaceRefractivity, seaLevelRefractivity;
  LongleyRiceRequest levels;  // the levels alone

  LongleyRiceResult compute(std::size_t i, LongleyRiceRequest& request, std::vector<double>& scratch) const {
    request.spacingM = spacing[i];
    request.transmitterHeightM = transmitter[i];
    request.receiverHeightM = receiver[i];
    request.frequencyMhz = frequency[i];
    request.polarization = vertical[i] != 0 ? Polarization::kVertical : Polarization::kHorizontal;
    request.climate = climateCode(climate[i]);
    request.permittivity = permittivity[i];
    request.conductivity = conductivity[i];
    request.surfaceRefractivity = surfaceRefractivity[i];
    request.seaLevelRefractivity = seaLevelRefractivity.optional(i);
    return computeLongleyRice(request, elevations.row(elevations.count() == 1 ? 0 : i, scratch));
  }
};

// Of the paths of a call; one row a path.
struct Losses {
  std::vector<double> loss;  // [path][reliability][confidence]
  std::vector<double> distances, freeSpace, irregularities, refractivities, references;
  std::vector<double> effectiveHeights, horizonDistances, horizonAngles;  // of both ends
  std::vector<std::string> modes, methods, errors;
  std::vector<std::vector<std::string>> warnings;
  std::size_t levels;
  bool full;

  Losses(std::size_t paths, std::size_t levelsOfEach, bool inFull) : levels(levelsOfEach), full(inFull) {
    loss.assign(paths * levels, kNoNumber);
    if (!full) return;
    for (auto* row : {&distances, &freeSpace, &irregularities, &refractivities, &references})
      row->assign(paths, kNoNumber);
    for (auto* row : {&effectiveHeights, &horizonDistances, &horizonAngles})
      row->assign(2 * paths, kNoNumber);
    for (auto* row : {&modes, &methods, &errors}) row->resize(paths);
    warnings.resize(paths);
  }

  void take(std::size_t i, LongleyRiceResult&& result) {
    std::size_t at = i * levels;
    for (const std::vector<double>& row : result.lossDb)
      for (const double decibels : row) loss[at++] = decibels;
    if (!full) return;
    distances[i] = result.distanceKm;
    freeSpace[i] = result.freeSpaceDb;
    irregularities[i] = result.terrainIrregularityM;
    refractivities[i] = result.surfaceRefractivity;
    references[i] = result.referenceAttenuationDb;
    for (std::size_t end = 0; end < 2; ++end) {
      effectiveHeights[2 * i + end] = result.effectiveHeightsM[end];
      horizonDistances[2 * i + end] = result.horizonDistancesM[end];
      horizonAngles[2 * i + end] = result.horizonAnglesRad[end];
    }
    modes[i] = pathModeText(result.mode, result.method);
    methods[i] = propagationMethodText(result.method);
    warnings[i] = std::move(result.warnings);
  }
};

py::dict lossesDictionary(Losses&& losses, std::size_t paths, const std::vector<std::size_t>& extents) {
  py::dict fields;
  fields["loss_db"] = lent(std::move(losses.loss), extents);
  if (!losses.full) return fields;
  fields["distance_km"] = lent(std::move(losses.distances), {paths});
  fields["free_space_db"] = lent(std::move(losses.freeSpace), {paths});
  fields["terrain_irregularity_m"] = lent(std::move(losses.irregularities), {paths});
  fields["surface_refractivity"] = lent(std::move(losses.refractivities), {paths});
  fields["reference_attenuation_db"] = lent(std::move(losses.references), {paths});
  fields["effective_heights_m"] = lent(std::move(losses.effectiveHeights), {paths, 2});
  fields["horizon_distances_m"] = lent(std::move(losses.horizonDistances), {paths, 2});
  fields["horizon_angles_rad"] = lent(std::move(losses.horizonAngles), {paths, 2});
  fields["mode"] = texts(losses.modes);
  fields["method"] = texts(losses.methods);
  fields["error"] = texts(losses.errors);
  py::list warnings;
  for (const std::vector<std::string>& ofPath : losses.warnings) warnings.append(texts(ofPath));
  fields["warnings"] = py::tuple(warnings);
  return fields;
}

// Without a count: one path, whose fault is raised.
py::dict longleyRice(const ModelArguments& arguments, std::optional<std::size_t> count, bool raise,
                     bool full) {
  const std::size_t paths = count.value_or(1);
  const std::size_t reliabilities = arguments.levels.reliability.size();
  const std::size_t confidences = arguments.levels.confidence.size();
  Losses losses(paths, reliabilities * confidences, full);
  {
    const LockReleased released;
    LongleyRiceRequest request = arguments.levels;
    std::vector<double> scratch;
    InterruptCheck interrupts;
    const auto refuse = [&](std::size_t i, const std::string& text, const std::string& parameter) {
      if (raise) throw PathFault(kStatusRequest, text, count ? std::optional(i) : std::nullopt, parameter);
      if (full) losses.errors[i] = text;
    };
    for (std::size_t i = 0; i < paths; ++i, interrupts()) {
      try {
        LongleyRiceResult result = arguments.compute(i, request, scratch);
        if (!result.error.empty())
          refuse(i, headed(result), argumentOf(result.parameter));
        else
          losses.take(i, std::move(result));
      } catch (const PathFault& fault) {
        if (fault.index() || (raise && !count)) throw;
        refuse(i, fault.what(), fault.parameter());
      }
    }
  }
  return lossesDictionary(std::move(losses), paths, {paths, reliabilities, confidences});
}

}  // namespace

void bindRadioModel(py::module_& module) {
  using py::object;
  module.def("longley_rice", [](std::optional<std::size_t> count, bool raise, bool full,
                                const object& elevations, const object& spacing, const object& tx,
                                const object& rx, const object& frequency, const object& vertical,
                                const object& climate, const object& permittivity, const object& conductivity,
                                const object& surfaceRefractivity, const object& seaLevelRefractivity,
                                std::vector<double> confidence, std::vector<double> reliability) {
    const std::size_t paths = count.value_or(1);
    ModelArguments arguments{ElevationRows(elevations),
                             Numbers(spacing, paths),
                             Numbers(tx, paths),
                             Numbers(rx, paths),
                             Numbers(frequency, paths),
                             Numbers(vertical, paths),
                             Numbers(climate, paths),
                             Numbers(permittivity, paths),
                             Numbers(conductivity, paths),
                             Numbers(surfaceRefractivity, paths),
                             Numbers(seaLevelRefractivity, paths),
                             {}};
    if (arguments.elevations.count() != paths && arguments.elevations.count() != 1)
      throw py::value_error("there are not " + std::to_string(paths) + " rows of elevations");
    arguments.levels.confidence = std::move(confidence);
    arguments.levels.reliability = std::move(reliability);
    return longleyRice(arguments, count, raise, full);
  });
}

}  // namespace zel::python
