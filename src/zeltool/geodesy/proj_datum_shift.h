// NAD-27 to NAD-83 by the operations of the coordinate operation registry (EPSG, as PROJ keeps it).
//
// A correction grid comes first (NADCON in the United States: 0.15 m, NTv2 in Canada: 1.5 m), then the mean
// shift of the smallest stated error whose area of use holds the point (5 to 48 m). Grids are not part of
// every installation; operationAt tells which operation a point gets. Nothing is fetched from the network.
//
// Positions are degrees. The first call reads the registry (about 0.1 s), later ones cost about a
// microsecond. Safe from several threads.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/datum_shift.h"

namespace zel {

class ProjDatumShift : public DatumShift {
 public:
  // `gridFolder` is searched before PROJ's own folders; empty for none.
  explicit ProjDatumShift(std::filesystem::path gridFolder = {});
  ~ProjDatumShift() override;

  // RuntimeError 1027 in words where no operation serves the point (it is outside the United States, Canada
  // and the north of Mexico), and when the registry cannot be read.
  GeoPoint toNad83(GeoPoint nad27) const override;
  DatumOperation operationAt(GeoPoint nad27) const override;

  static constexpr int kErrorNumber = 1027;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace zel
