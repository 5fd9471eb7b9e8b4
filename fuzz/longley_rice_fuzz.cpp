// The irregular terrain model: whatever the profile and the parameters, either an error that names a
// parameter or a finite loss for every level; and a profile that grows gives the same numbers to the last bit
// as one that is there at once.
//
// The first byte of an input chooses. Bit 0: numbers are raw doubles, not-a-number among them, rather than
// spread over what a planner would give. Bit 1: the same for the elevations. Bits 2 and 3: the ground is a
// walk, flat, a walk of large steps, or the walk mirrored. The numbers follow, then the elevations to the
// end.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "models/longrice/calc_itm.h"
#include "models/longrice/input_limits.h"
#include "models/longrice/longley_rice.h"
#include "models/longrice/normal_deviate.h"
#include "models/longrice/parameter_error.h"

namespace {

namespace limits = zel::longrice::limits;
using zel::longrice::GrowingPath;
using zel::longrice::InputLimit;
using zel::longrice::Model;
using zel::longrice::normalDeviate;
using zel::longrice::ParameterError;
using zel::longrice::Parameters;
using zel::longrice::PathTerrain;
using zel::longrice::Polarization;
using zel::longrice::Prediction;

void require(bool condition) {
  if (!condition) std::abort();
}

class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool empty() const { return bytes_.empty(); }

  template <typename T>
  T take() {
    T value{};
    const std::size_t size = std::min(sizeof(T), bytes_.size());
    if (size > 0) std::memcpy(&value, bytes_.data(), size);
    bytes_ = bytes_.subspan(size);
    return value;
  }

  double between(double low, double high) { return low + (high - low) * take<std::uint16_t>() / 65535; }
  // Evenly in the logarithm, for what spans several decades.
  double decades(double low, double high) { return low * std::pow(high / low, between(0, 1)); }

 private:
  std::span<const std::uint8_t> bytes_;
};

struct Case {
  Parameters parameters;
  double spacing = 0;
  double transmitterHeight = 0;
  double receiverHeight = 0;
  std::vector<double> elevations;
  std::vector<double> deviates{0, -1.2816, 1.2816, 3.1, -40, 40};
};

void takeRawNumbers(Reader& reader, Case& made) {
  made.parameters.frequency = reader.take<double>();
  made.parameters.permittivity = reader.take<double>();
  made.parameters.conductivity = reader.take<double>();
  made.parameters.surfaceRefractivity = reader.take<double>();
  made.spacing = reader.take<double>();
  made.transmitterHeight = reader.take<double>();
  made.receiverHeight = reader.take<double>();
  made.deviates.push_back(reader.take<double>());
}

void takePlausibleNumbers(Reader& reader, Case& made) {
  made.parameters.frequency = reader.decades(10, 40000);
  made.parameters.permittivity = reader.decades(1, 100);
  made.parameters.conductivity = reader.decades(1e-4, 10);
  made.parameters.surfaceRefractivity = reader.between(200, 540);
  made.spacing = reader.decades(1, 20000);
  made.transmitterHeight = reader.decades(0.1, 10000);
  made.receiverHeight = reader.decades(0.1, 10000);
  made.deviates.push_back(reader.between(-5, 5));
}

// From the lower limit, or the least above 0, to the upper.
double withinLimit(Reader& reader, const InputLimit& limit) {
  const double least = limit.low > 0 ? limit.low : 1e-300;
  return std::clamp(reader.decades(least, limit.high), limit.low, limit.high);
}

void takeAllowedNumbers(Reader& reader, Case& made) {
  made.parameters.frequency = withinLimit(reader, limits::kFrequency);
  made.parameters.permittivity = withinLimit(reader, limits::kPermittivity);
  made.parameters.conductivity = withinLimit(reader, limits::kConductivity);
  made.parameters.surfaceRefractivity =
      reader.between(limits::kSurfaceRefractivity.low, limits::kSurfaceRefractivity.high);
  made.spacing = withinLimit(reader, limits::kSpacing);
  made.transmitterHeight = withinLimit(reader, limits::kTransmitterHeight);
  made.receiverHeight = withinLimit(reader, limits::kReceiverHeight);
  made.deviates.push_back(reader.between(-40, 40));
}

void takeGround(Reader& reader, std::uint8_t shape, std::vector<double>& elevations) {
  const double scale = shape == 1 ? 0 : shape == 2 ? 10 : shape == 3 ? -1 : 1;
  double height = reader.between(-100, 3000);
  while (!reader.empty()) {
    elevations.push_back(height);
    height = std::clamp(height + scale * reader.take<std::int8_t>(), -9000.0, 30000.0);
  }
}

Case caseOf(std::span<const std::uint8_t> bytes) {
  Reader reader(bytes);
  Case made;
  const auto choice = reader.take<std::uint8_t>();
  const auto second = reader.take<std::uint8_t>();
  made.parameters.polarization = (second & 1) != 0 ? Polarization::kVertical : Polarization::kHorizontal;
  made.parameters.climate = (second >> 1) % 10 - 1;
  if ((choice & 1) != 0)
    takeRawNumbers(reader, made);
  else if ((choice & 16) != 0)
    takeAllowedNumbers(reader, made);
  else
    takePlausibleNumbers(reader, made);
  if ((choice & 2) != 0)
    while (!reader.empty()) made.elevations.push_back(reader.take<double>());
  else
    takeGround(reader, (choice >> 2) & 3, made.elevations);
  return made;
}

void check(const ParameterError& error) {
  require(error.number() == ParameterError::kNumber && !error.description().empty());
  // A value that is no number is said so, not printed.
  require(error.description().find("nan") == std::string::npos);
}

bool same(const PathTerrain& a, const PathTerrain& b) {
  return a.distance == b.distance && a.structuralHeights == b.structuralHeights &&
         a.effectiveHeights == b.effectiveHeights && a.horizonDistances == b.horizonDistances &&
         a.horizonAngles == b.horizonAngles && a.deltaH == b.deltaH && a.mode == b.mode;
}

void checkTerrain(const PathTerrain& path) {
  require(std::isfinite(path.distance) && path.distance > 0);
  require(std::isfinite(path.deltaH) && path.deltaH >= 0);
  for (std::size_t j = 0; j < 2; ++j) {
    require(std::isfinite(path.effectiveHeights[j]) && path.effectiveHeights[j] > 0);
    require(std::isfinite(path.horizonDistances[j]) && path.horizonDistances[j] > 0);
    require(std::isfinite(path.horizonAngles[j]));
  }
}

// The losses for all levels, or nothing where the model named a parameter.
std::optional<std::vector<double>> losses(const Case& made, const Model& model, const GrowingPath& path) {
  std::optional<Prediction> prediction;
  try {
    prediction = model.predict(path, made.receiverHeight);
  } catch (const ParameterError& error) {
    check(error);
    return std::nullopt;
  }
  checkTerrain(prediction->terrain());
  require(std::isfinite(prediction->freeSpace()));
  require(prediction->reference().attenuation >= 0);
  for (const std::string& text : prediction->warningTexts()) require(!text.empty());
  std::vector<double> result;
  for (const double reliability : made.deviates)
    for (const double confidence : made.deviates) {
      try {
        result.push_back(prediction->loss(reliability, confidence));
      } catch (const ParameterError& error) {
        check(error);
        require(!(std::abs(reliability) <= 40 && std::abs(confidence) <= 40));
        continue;
      }
      require(std::isfinite(result.back()));
    }
  return result;
}

// Every prefix of a short profile, grown by one sample at a time and given at once.
void checkPrefixes(const Case& made, const Model& model) {
  constexpr std::size_t kShort = 40;
  if (made.elevations.size() > kShort) return;
  GrowingPath grown = model.path(made.spacing, made.transmitterHeight);
  for (std::size_t count = 1; count <= made.elevations.size(); ++count) {
    GrowingPath whole = model.path(made.spacing, made.transmitterHeight);
    grown.append(made.elevations[count - 1]);
    whole.append(std::span(made.elevations).first(count));
    const auto first = losses(made, model, grown);
    require(first == losses(made, model, whole));
    if (first) require(same(grown.describe(made.receiverHeight), whole.describe(made.receiverHeight)));
  }
}

void checkModel(const Case& made) {
  try {
    const Model model(made.parameters);
    GrowingPath path = model.path(made.spacing, made.transmitterHeight);
    path.append(made.elevations);
    const auto once = losses(made, model, path);
    require(once == losses(made, model, path));
    checkPrefixes(made, model);
  } catch (const ParameterError& error) {
    check(error);
  }
}

void checkCalcITM(const Case& made) {
  std::vector<float> elevations;
  for (const double elevation : made.elevations)
    if (elevations.size() < 32767)
      elevations.push_back(std::abs(elevation) <= 1e38 ? static_cast<float>(elevation)
                                                       : std::numeric_limits<float>::quiet_NaN());
  const auto spacing = std::abs(made.spacing) <= 1e38 ? static_cast<float>(made.spacing) : -1.0F;
  const auto levels = static_cast<std::int32_t>(made.deviates.size());
  constexpr double kUntouched = -1e9;
  std::vector<double> result(made.deviates.size() * made.deviates.size(), kUntouched);
  const Parameters& parameters = made.parameters;
  bool failed = false;
  try {
    zel::CalcITM(static_cast<std::int16_t>(elevations.size()), spacing, elevations.data(),
                 made.transmitterHeight, made.receiverHeight,
                 parameters.polarization == Polarization::kHorizontal ? 0 : 1,
                 static_cast<std::int16_t>(parameters.climate), parameters.permittivity,
                 parameters.conductivity, parameters.frequency, parameters.surfaceRefractivity,
                 made.deviates.data(), levels, made.deviates.data(), levels, result.data());
  } catch (const ParameterError& error) {
    check(error);
    failed = true;
  }
  for (const double loss : result) require(failed ? loss == kUntouched : std::isfinite(loss));
}

void checkDeviate(double fraction) {
  if (!(fraction > 0 && fraction < 1)) return;
  require(std::isfinite(normalDeviate(fraction)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Case made = caseOf({data, size});
  checkModel(made);
  checkCalcITM(made);
  checkDeviate(made.deviates.back());
  return 0;
}
