#include "extension/dictionaries.h"

#include <limits>

#include "extension/columns.h"
#include "extension/errors.h"

namespace zel::python {
namespace {

// One of the two coordinates of each position.
Column coordinate(const std::shared_ptr<const PathProfile>& profile, double Position::*member) {
  const std::vector<Position>& positions = profile->positions;
  const double* first = positions.empty() ? nullptr : &(positions.front().*member);
  return lentEvery(profile, first, positions.size(), sizeof(Position));
}

py::object obstacle(const std::optional<PathObstacle>& worst) {
  if (!worst) return py::none();
  py::dict fields;
  fields["distance_km"] = worst->distanceKm;
  fields["position"] = pair(worst->position);
  fields["ground_m"] = worst->groundM;
  fields["clearance_m"] = worst->clearanceM;
  fields["clearance_percent"] = worst->clearancePercent;
  return fields;
}

py::dict modelDictionary(const PathLossModelInputs& model) {
  py::dict fields;
  fields["polarization"] = model.polarization == Polarization::kVertical ? "vertical" : "horizontal";
  fields["climate"] = model.climate;
  fields["permittivity"] = model.permittivity;
  fields["conductivity"] = model.conductivity;
  fields["surface_refractivity"] = model.surfaceRefractivity;
  fields["confidence"] = model.confidence;
  fields["reliability"] = model.reliability;
  fields["confidence_deviate"] = model.confidenceDeviate;
  fields["reliability_deviate"] = model.reliabilityDeviate;
  return fields;
}

template <typename Decode>
py::tuple decoded(const std::vector<std::string>& all, Decode&& decode) {
  py::tuple tuple(all.size());
  for (std::size_t i = 0; i < all.size(); ++i) tuple[i] = decode(all[i]);
  return tuple;
}

}  // namespace

py::tuple pair(const Position& position) { return py::make_tuple(position.latitude, position.longitude); }
py::tuple pair(const std::array<double, 2>& values) { return py::make_tuple(values[0], values[1]); }
py::tuple texts(const std::vector<std::string>& texts) { return decoded(texts, textOf); }
py::tuple paths(const std::vector<std::string>& paths) { return decoded(paths, pathOf); }

py::dict dictionaryOf(const TerrainProvenance& terrain) {
  py::dict fields;
  fields["source_code"] = terrain.sourceCode;
  fields["source_name"] = textOf(terrain.sourceName);
  fields["bundled_sample"] = terrain.bundledSample;
  fields["files"] = paths(terrain.files);
  fields["warnings"] = texts(terrain.warnings);
  fields["method"] = textOf(terrain.method);
  fields["voids"] = terrain.voids;
  fields["datum"] = textOf(terrain.datum);
  fields["datum_operation"] = textOf(terrain.datumOperation);
  return fields;
}

py::dict dictionaryOf(const PathLoss& loss) {
  py::dict fields;
  fields["start"] = pair(loss.from);
  fields["end"] = pair(loss.to);
  fields["distance_km"] = loss.distanceKm;
  fields["bearing_deg"] = loss.bearingDeg;
  fields["points"] = loss.points;
  fields["model_spacing_m"] = loss.modelSpacingM;
  fields["spacing_m"] = loss.spacingM;
  fields["start_height_m"] = loss.startHeightM;
  fields["end_height_m"] = loss.endHeightM;
  fields["start_ground_m"] = loss.startGroundM;
  fields["end_ground_m"] = loss.endGroundM;
  fields["minimum_m"] = loss.minimumM;
  fields["maximum_m"] = loss.maximumM;
  fields["average_m"] = loss.averageM;
  fields["frequency_mhz"] = loss.frequencyMhz;
  fields["free_space_db"] = loss.freeSpaceDb;
  fields["modeled_db"] = loss.modeledDb ? py::object(py::float_(*loss.modeledDb)) : py::none();
  fields["reverse_modeled_db"] =
      loss.reverseModeledDb ? py::object(py::float_(*loss.reverseModeledDb)) : py::none();
  const bool modeled = loss.modeledDb.has_value();
  fields["mode"] = modeled ? pathModeText(loss.mode, loss.method) : "";
  fields["method"] = modeled ? propagationMethodText(loss.method) : "";
  fields["terrain_irregularity_m"] = loss.terrainIrregularityM;
  fields["effective_heights_m"] = pair(loss.effectiveHeightsM);
  fields["horizon_distances_m"] = pair(loss.horizonDistancesM);
  fields["horizon_angles_rad"] = pair(loss.horizonAnglesRad);
  fields["reference_attenuation_db"] = loss.referenceAttenuationDb;
  fields["model"] = modelDictionary(loss.model);
  fields["terrain"] = dictionaryOf(loss.terrain);
  fields["notes"] = texts(loss.notes);
  fields["warnings"] = texts(loss.warnings);
  return fields;
}

py::dict dictionaryOf(const std::shared_ptr<const PathProfile>& profile) {
  py::dict fields;
  fields["status"] = profile->status;
  fields["error"] = textOf(profile->error);
  fields["distance_km"] = profile->distanceKm;
  fields["bearing_deg"] = profile->bearingDeg;
  fields["points"] = profile->points;
  fields["spacing_m"] = profile->spacingM;
  fields["start_height_m"] = profile->startHeightM;
  fields["end_height_m"] = profile->endHeightM;
  fields["start_ground_m"] = profile->startGroundM;
  fields["end_ground_m"] = profile->endGroundM;
  fields["minimum_m"] = profile->minimumM;
  fields["maximum_m"] = profile->maximumM;
  fields["average_m"] = profile->averageM;
  fields["k"] = profile->k;
  fields["frequency_mhz"] = profile->frequencyMhz;
  fields["wavelength_m"] = profile->wavelengthM;
  fields["free_space_db"] = profile->freeSpaceDb;
  fields["worst"] = obstacle(profile->worst);
  fields["verdict"] = verdictText(profile->verdict);
  fields["distances_km"] = lent(profile, profile->distancesKm);
  fields["latitudes"] = coordinate(profile, &Position::latitude);
  fields["longitudes"] = coordinate(profile, &Position::longitude);
  fields["ground_m"] = lent(profile, profile->groundM);
  fields["rise_m"] = lent(profile, profile->riseM);
  fields["line_of_sight_m"] = lent(profile, profile->lineOfSightM);
  fields["fresnel1_m"] = lent(profile, profile->fresnel1M);
  fields["clearance_m"] = lent(profile, profile->clearanceM);
  fields["terrain"] = dictionaryOf(profile->terrain);
  fields["notes"] = texts(profile->notes);
  return fields;
}

}  // namespace zel::python
