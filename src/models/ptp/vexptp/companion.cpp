#include "models/ptp/vexptp/companion.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "foundation/leading_number.h"
#include "foundation/text.h"
#include "models/ptp/clutter_loss.h"
#include "models/ptp/input_limits.h"
#include "models/ptp/vexptp/input_text.h"
#include "models/ptp/vexptp/scratch_input.h"

namespace zel::ptp {
namespace {

struct Key {
  const char* name;
  InputLimit limit;
  bool whole;  // a number without decimals
  void (*set)(Companion& companion, double value);
};

const std::array<Key, 8>& keys() {
  static const std::array<Key, 8> all{{
      {"spacing_km", limits::kSpacing, false, [](Companion& to, double value) { to.spacing = value; }},
      {"tx_amsl_m", limits::kTransmitterTop, false,
       [](Companion& to, double value) { to.transmitter = value; }},
      {"samples",
       {"number of samples", "", 2, kMostSamples},
       true,
       [](Companion& to, double value) { to.samples = static_cast<std::size_t>(value); }},
      {"polarization",
       {"polarization", "", 0, 1},
       true,
       [](Companion& to, double value) {
         to.model.ground.polarization = value == 0 ? Polarization::kHorizontal : Polarization::kVertical;
       }},
      {"permittivity", limits::kPermittivity, false,
       [](Companion& to, double value) { to.model.ground.permittivity = value; }},
      {"conductivity", limits::kConductivity, false,
       [](Companion& to, double value) { to.model.ground.conductivity = value; }},
      {"clutter_category",
       {"clutter category", "", 0, static_cast<double>(ClutterCategory::kDenseUrban)},
       true,
       [](Companion& to, double value) {
         to.model.clutter.category = static_cast<ClutterCategory>(static_cast<int>(value));
       }},
      {"clutter_height_m", limits::kClutterHeight, false,
       [](Companion& to, double value) { to.model.clutter.height = value; }},
  }};
  return all;
}

double valueOf(const Key& key, std::string_view text) {
  const auto value = fieldNumberText(text);
  if (!value) throw InputError("the " + std::string(key.limit.name) + " is not a number: " + inQuotes(text));
  requireWithin(key.limit, *value);
  if (key.whole && *value != std::floor(*value))
    throw InputError("the " + std::string(key.limit.name) + " is not a whole number: " + inQuotes(text));
  return *value;
}

void take(Companion& companion, std::string_view name, std::string_view text) {
  const auto key =
      std::find_if(keys().begin(), keys().end(), [name](const Key& known) { return name == known.name; });
  if (key != keys().end())
    key->set(companion, valueOf(*key, text));
  else
    companion.unknownKeys.emplace_back(name);
}

}  // namespace

Companion parseCompanion(std::string_view text) {
  Companion companion;
  std::vector<std::string_view> seen;
  const auto lines = linesOf(text);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (trimmed(lines[i]).empty()) continue;
    const std::size_t equals = lines[i].find('=');
    const std::string_view name = trimmed(lines[i].substr(0, equals));
    if (equals == std::string_view::npos || name.empty())
      throw InputError(lineName(i) + " is no key=value: " + inQuotes(lines[i]));
    if (std::find(seen.begin(), seen.end(), name) != seen.end())
      throw InputError(lineName(i) + ": " + inQuotes(name) + " stands there twice");
    seen.push_back(name);
    try {
      take(companion, name, lines[i].substr(equals + 1));
    } catch (const std::runtime_error& error) {
      throw InputError(lineName(i) + ": " + error.what());
    }
  }
  return companion;
}

}  // namespace zel::ptp
