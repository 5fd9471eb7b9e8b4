#include "models/longrice/calc_itm.h"

#include <algorithm>
#include <span>
#include <vector>

#include "models/longrice/longley_rice.h"
#include "models/longrice/parameter_error.h"

namespace zel {
namespace {

std::span<const double> levels(const double* values, std::int32_t count) {
  return {values, static_cast<std::size_t>(std::max(count, 0))};
}

}  // namespace

void CalcITM(std::int16_t points, float spacing, const float* elevations, double transmitterHeight,
             double receiverHeight, std::int16_t polarization, std::int16_t climate, double permittivity,
             double conductivity, double frequency, double refractivity, const double* confidence,
             std::int32_t confidences, const double* reliability, std::int32_t reliabilities,
             double* losses) {
  longrice::Parameters parameters;
  parameters.frequency = frequency;
  parameters.polarization =
      polarization == 0 ? longrice::Polarization::kHorizontal : longrice::Polarization::kVertical;
  parameters.climate = climate;
  parameters.permittivity = permittivity;
  parameters.conductivity = conductivity;
  parameters.surfaceRefractivity = refractivity;
  const longrice::Model model(parameters);

  const auto samples = static_cast<std::size_t>(std::max<std::int16_t>(points, 0));
  longrice::GrowingPath path = model.path(spacing, transmitterHeight);
  path.reserve(samples);
  path.append(std::vector<double>(elevations, elevations + samples));
  const longrice::Prediction prediction = model.predict(path, receiverHeight);

  const std::vector<double> result =
      prediction.losses(levels(reliability, reliabilities), levels(confidence, confidences));
  std::copy(result.begin(), result.end(), losses);
}

}  // namespace zel
