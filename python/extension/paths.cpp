#include "extension/paths.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "extension/calculators.h"
#include "extension/columns.h"
#include "extension/dictionaries.h"
#include "extension/errors.h"
#include "extension/interpreter_lock.h"
#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/terrain.h"

namespace zel::python {
namespace {

using py::object;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// Both ends of each path of a call.
struct Ends {
  Numbers latitude1, longitude1, latitude2, longitude2;

  Position from(std::size_t i) const { return {latitude1[i], longitude1[i]}; }
  Position to(std::size_t i) const { return {latitude2[i], longitude2[i]}; }
};

// ---- Losses ----

struct LossArguments {
  Ends ends;
  Numbers height1, height2, frequency;

  // What stands in for a frequency that is not given, MHz.
  std::optional<double> defaultFrequency(const PathCalculator& calculator) const {
    if (frequency.given()) return std::nullopt;
    return calculator.windowlessFrequencyMhz();
  }

  PathLossRequest request(std::size_t i, std::optional<double> defaultFrequency) const {
    PathLossRequest request;
    request.from = ends.from(i);
    request.to = ends.to(i);
    request.fromHeight = height1.optional(i);
    request.toHeight = height2.optional(i);
    request.frequencyMhz = frequency.given() ? frequency.optional(i) : defaultFrequency;
    request.wantReverse = false;
    return request;
  }
};

std::string shortNumber(double number) { return py::str(py::float_(number)); }

// The loss, or the fault in its place.
double modeledLoss(const PathLoss& loss, const PathLossRequest& request, std::optional<std::size_t> index) {
  if (loss.status != kStatusOk) throw PathFault(loss.status, loss.error, index);
  if (loss.modeledDb) return *loss.modeledDb;
  const LockHeld lock;
  throw PathFault(kStatusRequest,
                  "at " + shortNumber(*request.frequencyMhz) +
                      " MHz the radio model is not asked: it computes 20 to 20000 MHz",
                  index, "frequency");
}

void warnOfVoids(std::size_t paths, std::size_t ofPaths) {
  if (paths == 0) return;
  const std::string which = ofPaths == 1
                                ? "the path lies"
                                : std::to_string(paths) + " of " + std::to_string(ofPaths) + " paths lie";
  warnOfTerrain(which + " over voids, places without a height; the modeled loss counts them as 0 m");
}

double pathLossOfOne(const LossArguments& arguments) {
  double decibels = 0;
  bool voids = false;
  {
    const LockReleased released;
    const auto calculator = python::calculator();
    const PathLossRequest request = arguments.request(0, arguments.defaultFrequency(*calculator));
    const PathLoss loss = calculator->loss(request);
    decibels = modeledLoss(loss, request, {});
    voids = loss.terrain.voids > 0;
  }
  warnOfVoids(voids ? 1 : 0, 1);
  return decibels;
}

Column pathLossOfMany(const LossArguments& arguments, std::size_t count, bool raise) {
  std::vector<double> decibels(count, kNoNumber);
  std::size_t voids = 0;
  if (count > 0) {
    const LockReleased released;
    const auto calculator = python::calculator();
    const std::optional<double> frequency = arguments.defaultFrequency(*calculator);
    InterruptCheck interrupts;
    for (std::size_t i = 0; i < count; ++i, interrupts()) {
      const PathLossRequest request = arguments.request(i, frequency);
      const PathLoss loss = calculator->loss(request);
      if (raise)
        decibels[i] = modeledLoss(loss, request, i);
      else if (loss.status == kStatusOk)
        decibels[i] = loss.modeledDb.value_or(kNoNumber);
      if (loss.status == kStatusOk && loss.terrain.voids > 0) ++voids;
    }
  }
  warnOfVoids(voids, count);
  return lent(std::move(decibels), {count});
}

py::dict pathLossInFull(const LossArguments& arguments, bool reverse) {
  PathLoss loss;
  {
    const LockReleased released;
    const auto calculator = python::calculator();
    PathLossRequest request = arguments.request(0, arguments.defaultFrequency(*calculator));
    request.wantReverse = reverse;
    loss = calculator->loss(request);
    if (loss.status != kStatusOk) throw PathFault(loss.status, loss.error);
  }
  return dictionaryOf(loss);
}

// ---- Heights ----

// Of many paths: a row of samples each.
struct SampledRows {
  std::vector<double> elevations, latitudes, longitudes, distances;
  std::vector<double> lengths;
  std::vector<std::int32_t> statuses;
  std::vector<std::string> errors;
  std::vector<TerrainProvenance> provenances;

  SampledRows(std::size_t paths, std::size_t points) : statuses(paths), errors(paths), provenances(paths) {
    for (std::vector<double>* samples : {&elevations, &latitudes, &longitudes, &distances})
      samples->assign(paths * points, kNoNumber);
    lengths.assign(paths, kNoNumber);
  }

  void take(std::size_t row, std::size_t points, SampledTerrain&& terrain) {
    statuses[row] = terrain.status;
    errors[row] = std::move(terrain.error);
    provenances[row] = std::move(terrain.provenance);
    if (terrain.status != kStatusOk) return;
    lengths[row] = terrain.distanceKm;
    for (std::size_t i = 0; i < terrain.elevations.size(); ++i) {
      const std::size_t at = row * points + i;
      const float height = terrain.elevations[i];
      elevations[at] = height == kTerrainVoid ? kNoNumber : static_cast<double>(height);
      latitudes[at] = terrain.positions[i].latitude;
      longitudes[at] = terrain.positions[i].longitude;
      distances[at] = terrain.distancesKm[i];
    }
  }
};

// `extents`: of the samples, {points} of one path and {paths, points} of many.
py::dict fieldsOf(SampledRows&& rows, std::size_t paths, const std::vector<std::size_t>& extents) {
  py::dict fields;
  fields["elevations_m"] = lent(std::move(rows.elevations), extents);
  fields["distances_km"] = lent(std::move(rows.distances), extents);
  fields["latitudes"] = lent(std::move(rows.latitudes), extents);
  fields["longitudes"] = lent(std::move(rows.longitudes), extents);
  if (extents.size() == 1) {
    fields["distance_km"] = rows.lengths[0];
    fields["status"] = rows.statuses[0];
    fields["error"] = textOf(rows.errors[0]);
    fields["terrain"] = dictionaryOf(rows.provenances[0]);
    return fields;
  }
  py::list errors, provenances;
  for (const std::string& error : rows.errors) errors.append(textOf(error));
  for (const TerrainProvenance& terrain : rows.provenances) provenances.append(dictionaryOf(terrain));
  fields["distance_km"] = lent(std::move(rows.lengths), {paths});
  fields["status"] = lent(std::move(rows.statuses), {paths});
  fields["error"] = errors;
  fields["terrain"] = provenances;
  return fields;
}

py::dict sample(const Ends& ends, std::optional<std::size_t> count, std::int32_t points,
                std::optional<std::int32_t> method, std::optional<int> source, bool raise) {
  const std::size_t paths = count.value_or(1);
  // What has too few or too many samples is refused with a reason, path by path.
  const bool possible = points >= 2 && points <= std::numeric_limits<std::int16_t>::max();
  const std::size_t rowLength = possible ? static_cast<std::size_t>(points) : 0;
  SampledRows rows(paths, rowLength);
  if (paths > 0) {
    const LockReleased released;
    const auto calculator = python::calculator();
    const std::int32_t usedMethod = method ? *method : calculator->method();
    const int usedSource = source ? *source : calculator->source();
    InterruptCheck interrupts;
    for (std::size_t i = 0; i < paths; ++i, interrupts()) {
      rows.take(i, rowLength, calculator->sample(ends.from(i), ends.to(i), points, usedMethod, usedSource));
      if (raise && rows.statuses[i] != kStatusOk)
        throw PathFault(rows.statuses[i], rows.errors[i], count ? std::optional(i) : std::nullopt);
    }
  }
  return fieldsOf(std::move(rows), paths, count ? std::vector{paths, rowLength} : std::vector{rowLength});
}

// ---- Profiles ----

py::list profiles(const LossArguments& arguments, const Numbers& k, std::size_t count, bool raise,
                  bool many) {
  std::vector<std::shared_ptr<PathProfile>> computed;
  if (count > 0) {
    const LockReleased released;
    const auto calculator = python::calculator();
    InterruptCheck interrupts;
    for (std::size_t i = 0; i < count; ++i, interrupts()) {
      PathProfileRequest request;
      request.from = arguments.ends.from(i);
      request.to = arguments.ends.to(i);
      request.fromHeight = arguments.height1.optional(i);
      request.toHeight = arguments.height2.optional(i);
      request.k = k.optional(i);
      request.frequencyMhz = arguments.frequency.optional(i);
      computed.push_back(std::make_shared<PathProfile>(calculator->profile(request)));
      if (raise && computed.back()->status != kStatusOk)
        throw PathFault(computed.back()->status, computed.back()->error,
                        many ? std::optional(i) : std::nullopt);
    }
  }
  py::list list;
  for (const std::shared_ptr<PathProfile>& profile : computed) list.append(dictionaryOf(profile));
  return list;
}

}  // namespace

void bindPaths(py::module_& module) {
  const auto ends = [](const object& lat1, const object& lon1, const object& lat2, const object& lon2,
                       std::size_t count) {
    return Ends{Numbers(lat1, count), Numbers(lon1, count), Numbers(lat2, count), Numbers(lon2, count)};
  };
  const auto lossArguments = [ends](const object& lat1, const object& lon1, const object& h1,
                                    const object& lat2, const object& lon2, const object& h2,
                                    const object& frequency, std::size_t count) {
    return LossArguments{ends(lat1, lon1, lat2, lon2, count), Numbers(h1, count), Numbers(h2, count),
                         Numbers(frequency, count)};
  };
  module.def("path_loss", [=](const object& lat1, const object& lon1, const object& h1, const object& lat2,
                              const object& lon2, const object& h2, const object& frequency) {
    return pathLossOfOne(lossArguments(lat1, lon1, h1, lat2, lon2, h2, frequency, 1));
  });
  module.def("path_losses", [=](std::size_t count, bool raise, const object& lat1, const object& lon1,
                                const object& h1, const object& lat2, const object& lon2, const object& h2,
                                const object& frequency) {
    return pathLossOfMany(lossArguments(lat1, lon1, h1, lat2, lon2, h2, frequency, count), count, raise);
  });
  module.def("path_loss_in_full",
             [=](bool reverse, const object& lat1, const object& lon1, const object& h1, const object& lat2,
                 const object& lon2, const object& h2, const object& frequency) {
               return pathLossInFull(lossArguments(lat1, lon1, h1, lat2, lon2, h2, frequency, 1), reverse);
             });
  module.def("sample", [=](std::optional<std::size_t> count, bool raise, const object& lat1,
                           const object& lon1, const object& lat2, const object& lon2, std::int32_t points,
                           std::optional<std::int32_t> method, std::optional<int> source) {
    return sample(ends(lat1, lon1, lat2, lon2, count.value_or(1)), count, points, method, source, raise);
  });
  module.def("profiles", [=](std::optional<std::size_t> count, bool raise, const object& lat1,
                             const object& lon1, const object& h1, const object& lat2, const object& lon2,
                             const object& h2, const object& k, const object& frequency) {
    const std::size_t paths = count.value_or(1);
    return profiles(lossArguments(lat1, lon1, h1, lat2, lon2, h2, frequency, paths), Numbers(k, paths), paths,
                    raise, count.has_value());
  });
}

}  // namespace zel::python
