// Formatter and datum shift with plain answers.
#pragma once

#include "foundation/number_text.h"
#include "foundation/runtime_error.h"
#include "platform/coordinate_formatter.h"
#include "platform/datum_shift.h"

namespace zel::test {

class PlainFormatter final : public CoordinateFormatter {
 public:
  void SetFormat(std::string_view) override {}
  std::string LatitudeText(double degrees) const override { return "lat " + generalNumber(degrees); }
  std::string LongitudeText(double degrees) const override { return "lon " + generalNumber(degrees); }
};

// Moves a point by 1 degree north and 2 east.
class ScriptedDatumShift final : public DatumShift {
 public:
  GeoPoint toNad83(GeoPoint nad27) const override {
    if (failing) throw RuntimeError::actionNotSupported();
    return {nad27.latitude + 1, nad27.longitude + 2};
  }
  DatumOperation operationAt(GeoPoint) const override { return {}; }
  bool failing = false;
};

}  // namespace zel::test
