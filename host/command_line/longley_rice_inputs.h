// What longley-rice is asked for, by options or by a line of a batch: the same names, values and rules.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "zel/longley_rice.h"

namespace zel::host {

// Levels of confidence or reliability.
struct Levels {
  std::vector<double> fractions;
  std::vector<std::string> notes;  // how values were taken
};

// As given: what has no value was not given.
struct LongleyRiceInputs {
  std::string profile;  // name of the elevations' file, empty when they were given themselves
  std::optional<std::vector<double>> elevations;     // metres
  std::optional<double> spacing;                     // metres
  std::optional<double> transmitterHeight;           // metres
  std::optional<double> receiverHeight;              // metres
  std::optional<double> frequency;                   // MHz
  std::optional<double> climate;                     // a whole number
  std::optional<double> permittivity, conductivity;  // dimensionless, S/m
  std::optional<double> surfaceRefractivity;         // N-units
  std::optional<double> seaLevelRefractivity;        // N-units
  std::optional<Polarization> polarization;
  std::optional<Levels> confidence, reliability;
};

// What is computed, complete.
struct LongleyRiceTask {
  LongleyRiceRequest request;
  std::string profile;             // as LongleyRiceInputs::profile
  std::vector<std::string> notes;  // how values were taken, in words
};

// A value or a set of values that cannot be used. `key` is what it is about, a batch's name for it.
class InputProblem : public std::runtime_error {
 public:
  InputProblem(std::string key, const std::string& text) : std::runtime_error(text), key_(std::move(key)) {}
  const std::string& key() const { return key_; }

 private:
  std::string key_;
};

// A value that is one number.
struct NumberInput {
  const char* key;  // in a batch; the option has "-" for "_"
  std::optional<double> LongleyRiceInputs::*member;
  const char* requestMember;  // of LongleyRiceRequest
  bool required;
  const char* unit;  // as help writes it
  const char* help;
};
extern const std::array<NumberInput, 9> kNumberInputs;

// A value that is a list of levels.
struct LevelsInput {
  const char* key;
  std::optional<Levels> LongleyRiceInputs::*member;
  const char* help;
};
extern const std::array<LevelsInput, 2> kLevelsInputs;

// "--sea-level-refractivity" for "sea_level_refractivity".
std::string optionName(std::string_view key);

// The batch's name for a member of LongleyRiceRequest ("spacing" for "spacingM").
std::string keyOfRequestMember(std::string_view member);

// Throws InputProblem, as do all that follow.
Polarization polarizationOf(std::string_view text);

// The levels of confidence or reliability that a list means: fractions above 0 and below 1, or percent from 1
// to below 100 when one of them is above 1, which is noted. A list with values on both sides of 1, and a 1
// that no other value explains, could mean either and are refused.
Levels levelsOf(const char* key, std::span<const double> values);

// The levels of an option: "0.1,0.5,0.9".
Levels parseLevels(const char* key, std::string_view text);

// Throws when both refractivities are given.
void requireOneRefractivity(const LongleyRiceInputs& inputs);

// Throws for the first required number that is given by neither.
void requireNumbers(const LongleyRiceInputs& inputs, const LongleyRiceInputs& defaults);

// The task of the inputs, with `defaults` for what they do not say, and the model's own defaults for what
// those do not say either. The elevations leave `inputs`. One refractivity of the inputs puts both of the
// defaults aside.
LongleyRiceTask completeTask(LongleyRiceInputs& inputs, const LongleyRiceInputs& defaults);

}  // namespace zel::host
