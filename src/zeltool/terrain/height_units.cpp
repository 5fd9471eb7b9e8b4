#include "zeltool/terrain/height_units.h"

#include <algorithm>
#include <array>
#include <string>

#include "foundation/text.h"

namespace zel {
namespace {

constexpr double kInternationalFoot = 0.3048;    // metres, by definition since 1959
constexpr double kSurveyFoot = 1200.0 / 3937.0;  // metres, the United States' survey foot of 1893

struct Unit {
  std::string_view name;
  double metres;
};

constexpr std::array kUnits = {
    Unit{"", 1},
    Unit{"m", 1},
    Unit{"metre", 1},
    Unit{"metres", 1},
    Unit{"meter", 1},
    Unit{"meters", 1},
    Unit{"ft", kInternationalFoot},
    Unit{"foot", kInternationalFoot},
    Unit{"feet", kInternationalFoot},
    Unit{"ftinternational", kInternationalFoot},
    Unit{"internationalfoot", kInternationalFoot},
    Unit{"internationalfeet", kInternationalFoot},
    Unit{"footinternational", kInternationalFoot},
    Unit{"ussurveyfoot", kSurveyFoot},
    Unit{"ussurveyfeet", kSurveyFoot},
    Unit{"surveyfoot", kSurveyFoot},
    Unit{"surveyfeet", kSurveyFoot},
    Unit{"footussurvey", kSurveyFoot},
    Unit{"footus", kSurveyFoot},
    Unit{"usfoot", kSurveyFoot},
    Unit{"usfeet", kSurveyFoot},
    Unit{"usft", kSurveyFoot},
    Unit{"ftus", kSurveyFoot},
    Unit{"us-ft", kSurveyFoot},
    Unit{"sft", kSurveyFoot},
    Unit{"mm", 0.001},
    Unit{"millimetre", 0.001},
    Unit{"millimetres", 0.001},
    Unit{"millimeter", 0.001},
    Unit{"millimeters", 0.001},
    Unit{"cm", 0.01},
    Unit{"centimetre", 0.01},
    Unit{"centimetres", 0.01},
    Unit{"centimeter", 0.01},
    Unit{"centimeters", 0.01},
    Unit{"dm", 0.1},
    Unit{"decimetre", 0.1},
    Unit{"decimetres", 0.1},
    Unit{"decimeter", 0.1},
    Unit{"decimeters", 0.1},
    Unit{"km", 1000},
    Unit{"kilometre", 1000},
    Unit{"kilometres", 1000},
    Unit{"kilometer", 1000},
    Unit{"kilometers", 1000},
    Unit{"yd", 0.9144},
    Unit{"yard", 0.9144},
    Unit{"yards", 0.9144},
};

// Lower case without blanks, underscores, points and brackets, which is where the spellings differ.
std::string plainName(std::string_view unit) {
  std::string name = lowerCase(unit);
  std::erase_if(name,
                [](char c) { return c == ' ' || c == '_' || c == '.' || c == '(' || c == ')' || c == '\t'; });
  return name;
}

}  // namespace

std::optional<double> metresPerUnit(std::string_view unit) {
  const std::string name = plainName(unit);
  const auto known =
      std::find_if(kUnits.begin(), kUnits.end(), [&](const Unit& u) { return u.name == name; });
  if (known == kUnits.end()) return std::nullopt;
  return known->metres;
}

}  // namespace zel
