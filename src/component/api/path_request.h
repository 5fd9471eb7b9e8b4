// What the public functions over a path share: what the caller gives or the settings hold in its place, what
// is noted of it, and what is refused.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/geo_point.h"
#include "foundation/runtime_error.h"
#include "foundation/sample_array.h"
#include "profile/settings/readers.h"
#include "zel/coordinates.h"

namespace zel {

inline constexpr int kRequestRefused = 5;

// Ends a computation: the request cannot be computed.
struct Refusal {
  std::string reason;
  int status = kRequestRefused;
};

// "Profile/Prf_Freq"
std::string nameOf(const Setting& setting);

// The value as the decimal text of a 32-bit float says it, so that a stored "1.333" is 1.333 in 64 bits too.
double decimalValue(float value);

// Degrees; longitudes go on past 180 on some maps and are brought back. Throws Refusal.
GeoPoint checkedPosition(const Position& position, const char* which);

// The inputs of one request. Everything throws Refusal for what cannot be used, notes in words what was taken
// from elsewhere or rounded, and warns of stored texts that are not used as they read.
class PathInputs {
 public:
  // The lists must outlive the object; notes and warnings may be one list.
  PathInputs(SettingsReader settings, std::vector<std::string>& notes, std::vector<std::string>& warnings)
      : settings_(std::move(settings)), notes_(notes), warnings_(warnings) {}

  const SettingsReader& settings() const { return settings_; }
  bool isStored(const Setting& setting) const { return settings_.isStored(setting); }
  // "from the setting Profile/Prf_Freq", or that nothing is stored there.
  std::string originOf(const Setting& setting) const;

  // "the setting ITM/dCond", and where what is stored there is no number: "the setting ITM/dCond (\"abc\")".
  std::string settingInWords(const Setting& setting) const;

  // A number of the settings as it is used, repairs included, with a warning where the stored text says
  // another.
  template <typename Read>
  auto number(const Setting& setting, Read&& read) {
    const auto value = fittingNumber(setting, read);
    warnUnlessAsStored(setting, static_cast<double>(value));
    return value;
  }
  void warnUnlessAsStored(const Setting& setting, double used);
  // One that does not fit its type is refused by name.
  template <typename Read>
  auto fittingNumber(const Setting& setting, Read&& read) const {
    try {
      return read();
    } catch (const RuntimeError& error) {
      refuseOverflow(setting, error);
      throw;
    }
  }

  // Whole metres above ground.
  std::int16_t antennaHeight(const std::optional<double>& given, const Setting& setting, const char* which);
  // The given number or the setting's, above 0 and within what 32-bit floats carry through every formula.
  double positive(const std::optional<double>& given, const Setting& setting, const std::string& what,
                  const std::string& unit);

  CalculationSettings density();
  std::int32_t method();  // of interpolation, 0 or 1
  std::int16_t source();  // of terrain, 1, 2, 3, 7 or 9

  // Runs a laying out that may overflow with these points per kilometre.
  template <typename LayOut>
  auto laidOut(const CalculationSettings& density, LayOut&& layOut) const {
    try {
      return layOut();
    } catch (const RuntimeError& error) {
      refuseLayOut(density, error);
    }
  }
  // When the maximum cut the number of intervals or points, rounded, that the distance in km would have had.
  void noteLimit(const CalculationSettings& density, double distance, std::int32_t count, const char* unit);

 private:
  void refuseOverflow(const Setting& setting, const RuntimeError& error) const;
  [[noreturn]] static void refuseLayOut(const CalculationSettings& density, const RuntimeError& error);

  SettingsReader settings_;
  std::vector<std::string>& notes_;
  std::vector<std::string>& warnings_;
};

// The component halts on such a height; a caller of the public functions is told instead, by Refusal.
void refuseImpossibleHeights(const SampleArray<float>& rawHeights, const std::vector<GeoPoint>& positions);

// Metres; not a number where there is none.
struct GroundSummary {
  double start = 0;
  double end = 0;
  double minimum = 0;
  double maximum = 0;
  double average = 0;
};
// Of ground in metres that is not a number in a void; voids are left out. At least one sample is needed.
GroundSummary summaryOf(std::span<const double> ground);

}  // namespace zel
