#include "export/loss_table.h"

#include "profile/view_state/window_model_run.h"

namespace zel {
namespace {

constexpr std::size_t kTableLineLength = 2048;  // at least, of 99 numbers with their separators

// The line ends with its last ", ", as is meant.
std::string parameterLine(const ModelParameters& model, const NumberStyle& numbers) {
  ExportLine line(numbers);
  line.text(kFieldEnd)
      .text(polarizationField(model.polarization))
      .text(climateField(model.climate))
      .field(model.permittivity)
      .field(model.conductivity)
      .field(model.refractivity);
  return line.str();
}

std::string reliabilityTitles(const NumberStyle& numbers) {
  ExportLine line(numbers);
  line.text("'Reliability'");
  for (std::int32_t percent = 1; percent <= kLossTablePercentages; ++percent)
    line.text(kFieldEnd).number(percent);
  return line.str();
}

std::string tableLine(const LossTable& table, std::int32_t confidence, const NumberStyle& numbers) {
  ExportLine line(numbers, kTableLineLength);
  line.number(confidence);
  for (std::int32_t reliability = 1; reliability <= kLossTablePercentages; ++reliability)
    line.text(kFieldEnd).number(table.at(confidence, reliability));
  return line.str();
}

}  // namespace

LossTable lossTable(const ProfileViewState& state, const NormalTable& deviates) {
  const longrice::Prediction prediction = modelPrediction(windowModelPath(state), modelParametersOf(state));
  std::array<double, kLossTablePercentages> axis{};
  for (std::int32_t percent = 1; percent <= kLossTablePercentages; ++percent)
    axis[static_cast<std::size_t>(percent - 1)] = deviates[percent];
  return LossTable(prediction.losses(axis, axis));
}

void writeLossTable(const ExportProfile& profile, const NormalTable& deviates, const LineSink& write) {
  const ModelParameters& model = modelParametersOf(profile.state);
  write(kModelTitles);
  write(parameterLine(model, profile.numbers));
  write(",'Confidence'");
  write(reliabilityTitles(profile.numbers));
  const LossTable table = lossTable(profile.state, deviates);
  for (std::int32_t confidence = 1; confidence <= kLossTablePercentages; ++confidence)
    write(tableLine(table, confidence, profile.numbers));
}

}  // namespace zel
