#include "models/longrice/input_limits.h"

#include <cmath>

#include "foundation/number_text.h"

namespace zel::longrice {
namespace {

std::string valueText(double value) {
  if (std::isnan(value)) return "not a number";
  return std::isinf(value) ? "infinite" : generalNumber(value);
}

}  // namespace

void requireWithin(const InputLimit& limit, double value, const std::string& name) {
  if (value >= limit.low && value <= limit.high) return;
  const std::string unit = std::isfinite(value) ? limit.unit : "";
  throw ParameterError(limit.parameter, "the " + name + " is " + valueText(value) + unit + "; it must be " +
                                            generalNumber(limit.low) + " to " + generalNumber(limit.high) +
                                            limit.unit);
}

void requireWithin(const InputLimit& limit, double value) {
  if (!(value >= limit.low && value <= limit.high)) requireWithin(limit, value, limit.name);
}

void requireFraction(Parameter parameter, double value) {
  if (value > 0 && value < 1) return;
  const std::string name = parameter == Parameter::kConfidence ? "confidence" : "reliability";
  throw ParameterError(
      parameter, "the " + name + " is " + valueText(value) + "; it must be a fraction above 0 and below 1");
}

}  // namespace zel::longrice
