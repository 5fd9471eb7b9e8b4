// The Longley-Rice irregular terrain model, version 1.2.2, point-to-point: from a path's ground and its
// parameters to the basic transmission loss.
//
// The way through this folder:
//     elevations -> GrowingPath -> PathTerrain            horizons, effective heights, delta h
//     Parameters -> Environment                           wave number, curvature, ground
//     both       -> Link -> referenceAttenuation -> A_ref line of sight, diffraction, troposcatter
//                        -> Variability                   quantiles in time and situation
//     loss = free space + A(reliability, confidence)
// Nothing here keeps state between calls; every function may be called from several threads at once.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "models/longrice/link.h"
#include "models/longrice/model_warnings.h"
#include "models/longrice/reference_attenuation.h"
#include "models/longrice/variability.h"

namespace zel::longrice {

// Free-space loss between isotropic antennas, dB, with the model's constant of 32.45; MHz and metres.
double freeSpaceLoss(double frequency, double distance);

// Everything about one path. The loss for a pair of levels is an evaluation of some nanoseconds.
class Prediction {
 public:
  // Throws ParameterError when the model has no finite loss for the link.
  Prediction(const Parameters& parameters, const Environment& environment, const PathTerrain& terrain);

  const Link& link() const { return link_; }
  const PathTerrain& terrain() const { return link_.terrain; }
  double freeSpace() const { return freeSpace_; }  // dB
  const ReferenceAttenuation& reference() const { return reference_; }
  const Variability& variability() const { return variability_; }
  const WarningSet& warnings() const { return warnings_; }
  std::vector<std::string> warningTexts() const { return describe(warnings_, link_, climate_); }

  // Basic transmission loss, dB. The deviates are standard normal, see variability.h. Throws ParameterError
  // for a deviate that is none.
  double loss(double reliabilityDeviate, double confidenceDeviate) const;
  // The losses of all pairs, the confidence running fastest, each equal to the last bit to that of its pair
  // alone: what depends on one deviate only is computed once for it.
  std::vector<double> losses(std::span<const double> reliabilityDeviates,
                             std::span<const double> confidenceDeviates) const;

 private:
  int climate_;
  Link link_;
  double freeSpace_;
  ReferenceAttenuation reference_;
  Variability variability_;
  WarningSet warnings_;
};

// One set of parameters for any number of paths.
class Model {
 public:
  // Throws ParameterError for what no loss can be computed from.
  explicit Model(const Parameters& parameters);

  const Environment& environment() const { return environment_; }

  // An empty path for this model's earth; metres, metres above ground.
  GrowingPath path(double spacing, double transmitterHeight) const;
  // The path so far, with the receiver on its last sample, metres above ground. Throws ParameterError as
  // GrowingPath::describe and Prediction do.
  Prediction predict(const GrowingPath& path, double receiverHeight) const;

 private:
  Parameters parameters_;
  Environment environment_;
};

}  // namespace zel::longrice
