#include "models/ptp/input_limits.h"

#include <cmath>

#include "foundation/number_text.h"

namespace zel::ptp {

void requireWithin(const InputLimit& limit, double value, const std::string& name) {
  if (value >= limit.low && value <= limit.high) return;
  std::string text;
  if (std::isnan(value))
    text = "not a number";
  else if (std::isinf(value))
    text = "infinite";
  else
    text = generalNumber(value) + limit.unit;
  throw ParameterError("the " + name + " is " + text + "; it must be " + generalNumber(limit.low) + " to " +
                       generalNumber(limit.high) + limit.unit);
}

void requireWithin(const InputLimit& limit, double value) {
  if (!(value >= limit.low && value <= limit.high)) requireWithin(limit, value, limit.name);
}

}  // namespace zel::ptp
