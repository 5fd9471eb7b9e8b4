#include "command_line/longley_rice_inputs.h"

#include <algorithm>
#include <cmath>

#include "command_line/output.h"
#include "command_line/plain_number.h"

namespace zel::host {
namespace {

using Inputs = LongleyRiceInputs;

// Losses are a table of both lists; this keeps the largest one at some megabytes.
constexpr std::size_t kMostLevels = 1000;

int wholeClimate(double code) {
  if (!(code >= 1 && code <= 7 && code == std::floor(code)))
    throw InputProblem("climate", "the climate code is " + shortest(code) + "; it must be 1 to 7");
  return static_cast<int>(code);
}

template <typename Value>
Value chosen(const std::optional<Value>& value, const std::optional<Value>& otherwise, Value standard) {
  return value ? *value : otherwise.value_or(standard);
}

}  // namespace

const std::array<NumberInput, 9> kNumberInputs{{
    {"spacing", &Inputs::spacing, "spacingM", true, "METRES", "Distance between neighbouring elevations"},
    {"tx", &Inputs::transmitterHeight, "transmitterHeightM", true, "METRES",
     "Transmitter's antenna above ground"},
    {"rx", &Inputs::receiverHeight, "receiverHeightM", true, "METRES", "Receiver's antenna above ground"},
    {"frequency", &Inputs::frequency, "frequencyMhz", true, "MHZ", "Frequency"},
    {"climate", &Inputs::climate, "climate", false, "1..7", "Radio climate, see below [5]"},
    {"permittivity", &Inputs::permittivity, "permittivity", false, "E",
     "Relative permittivity of the ground [15]"},
    {"conductivity", &Inputs::conductivity, "conductivity", false, "S/M",
     "Conductivity of the ground [0.005]"},
    {"surface_refractivity", &Inputs::surfaceRefractivity, "surfaceRefractivity", false, "NS",
     "Refractivity at the height of the path, N-units [301]"},
    {"sea_level_refractivity", &Inputs::seaLevelRefractivity, "seaLevelRefractivity", false, "N0",
     "Refractivity at sea level in its place, N-units"},
}};

const std::array<LevelsInput, 2> kLevelsInputs{{
    {"confidence", &Inputs::confidence, "Levels of confidence, the columns of the table [0.5]"},
    {"reliability", &Inputs::reliability, "Levels of reliability (of time), its rows [0.5]"},
}};

std::string optionName(std::string_view key) {
  std::string name = "--" + std::string(key);
  std::replace(name.begin(), name.end(), '_', '-');
  return name;
}

std::string keyOfRequestMember(std::string_view member) {
  for (const NumberInput& input : kNumberInputs)
    if (member == input.requestMember) return input.key;
  if (member == "elevationsM") return "elevations_m";
  return std::string(member);
}

Polarization polarizationOf(std::string_view text) {
  if (text == "horizontal") return Polarization::kHorizontal;
  if (text == "vertical") return Polarization::kVertical;
  throw InputProblem("polarization", quotedText(text) + " is neither horizontal nor vertical");
}

Levels levelsOf(const char* key, std::span<const double> values) {
  if (values.empty()) throw InputProblem(key, "there is no level in the list");
  if (values.size() > kMostLevels)
    throw InputProblem(key, "there are more than " + std::to_string(kMostLevels) + " levels");
  for (const double value : values)
    if (!(value > 0 && value < 100))
      throw InputProblem(key, shortest(value) +
                                  " is no level; give a fraction above 0 and below 1, or a percentage above "
                                  "1 and below 100");
  const double least = *std::min_element(values.begin(), values.end());
  const double most = *std::max_element(values.begin(), values.end());
  if (most == 1) throw InputProblem(key, "1 could be 1 % or the whole; write 0.01 for 1 %");
  if (most < 1) return {{values.begin(), values.end()}, {}};
  if (least < 1)
    throw InputProblem(key, shortest(least) + " beside " + shortest(most) +
                                " could be a fraction or percent; write all levels as fractions, " +
                                significant(most / 100, 12) + " for " + shortest(most) + " %");
  Levels levels{{}, {std::string(key) + ": the levels are taken as percent"}};
  for (const double value : values) levels.fractions.push_back(value / 100);
  return levels;
}

Levels parseLevels(const char* key, std::string_view text) {
  std::vector<double> values;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    const std::string_view part = trimmedText(text.substr(begin, end - begin));
    if (part.empty())
      throw InputProblem(key, quotedText(text) + " has an empty level; put one comma between two levels");
    const auto value = plainNumber(part);
    if (!value) throw InputProblem(key, quotedText(part) + " is not a number");
    values.push_back(*value);
    begin = end + 1;
  }
  return levelsOf(key, values);
}

void requireOneRefractivity(const Inputs& inputs) {
  if (inputs.surfaceRefractivity && inputs.seaLevelRefractivity)
    throw InputProblem("surface_refractivity",
                       "the refractivity is given at the surface and at sea level; give one of them");
}

void requireNumbers(const LongleyRiceInputs& inputs, const LongleyRiceInputs& defaults) {
  for (const NumberInput& input : kNumberInputs)
    if (input.required && !(inputs.*input.member) && !(defaults.*input.member))
      throw InputProblem(input.key, "it is missing");
}

LongleyRiceTask completeTask(LongleyRiceInputs& inputs, const LongleyRiceInputs& defaults) {
  requireNumbers(inputs, defaults);
  requireOneRefractivity(inputs);
  LongleyRiceTask task;
  LongleyRiceRequest& request = task.request;
  if (inputs.elevations) {
    request.elevationsM = std::move(*inputs.elevations);
    task.profile = inputs.profile;
  } else if (defaults.elevations) {
    request.elevationsM = *defaults.elevations;
    task.profile = defaults.profile;
  } else {
    throw InputProblem("profile", "no elevations are given");
  }
  request.spacingM = chosen(inputs.spacing, defaults.spacing, 0.0);
  request.transmitterHeightM = chosen(inputs.transmitterHeight, defaults.transmitterHeight, 0.0);
  request.receiverHeightM = chosen(inputs.receiverHeight, defaults.receiverHeight, 0.0);
  request.frequencyMhz = chosen(inputs.frequency, defaults.frequency, 0.0);
  request.polarization = chosen(inputs.polarization, defaults.polarization, request.polarization);
  request.climate =
      wholeClimate(chosen(inputs.climate, defaults.climate, static_cast<double>(request.climate)));
  request.permittivity = chosen(inputs.permittivity, defaults.permittivity, request.permittivity);
  request.conductivity = chosen(inputs.conductivity, defaults.conductivity, request.conductivity);
  const Inputs& air = inputs.surfaceRefractivity || inputs.seaLevelRefractivity ? inputs : defaults;
  request.surfaceRefractivity = air.surfaceRefractivity.value_or(request.surfaceRefractivity);
  request.seaLevelRefractivity = air.seaLevelRefractivity;
  const auto takeLevels = [&task](const std::optional<Levels>& levels, std::vector<double>& fractions) {
    if (!levels) return;
    fractions = levels->fractions;
    task.notes.insert(task.notes.end(), levels->notes.begin(), levels->notes.end());
  };
  takeLevels(inputs.confidence ? inputs.confidence : defaults.confidence, request.confidence);
  takeLevels(inputs.reliability ? inputs.reliability : defaults.reliability, request.reliability);
  return task;
}

}  // namespace zel::host
