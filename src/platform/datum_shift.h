// Conversion of positions from NAD-27 to NAD-83.
#pragma once

#include <string>

#include "foundation/geo_point.h"

namespace zel {

struct DatumOperation {
  std::string name;       // of the operation used, as the coordinate operation registry names it
  double accuracy = -1;   // metres; negative when it is not known
  bool usesGrid = false;  // a correction grid (centimetres) rather than a mean shift (metres)
};

class DatumShift {
 public:
  virtual ~DatumShift() = default;
  // Throws RuntimeError when no operation serves the point.
  virtual GeoPoint toNad83(GeoPoint nad27) const = 0;
  // The operation that serves this point.
  virtual DatumOperation operationAt(GeoPoint nad27) const = 0;
};

}  // namespace zel
