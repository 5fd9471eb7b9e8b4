#include "zeltool/geodesy/proj_datum_shift.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "foundation/runtime_error.h"
#include "support/temporary_folder.h"
#include "zeltool/geodesy/wgs84_geodesy.h"

namespace zel {
namespace {

using test::TemporaryFolder;
using test::writeBytes;

constexpr double kSecond = 1.0 / 3600;  // degrees

double metresBetween(GeoPoint a, GeoPoint b) {
  return Wgs84Geodesy().DistanceAndBearing(a, b).distance * 1000;
}

struct KnownPoint {
  std::string source;
  GeoPoint nad27;
  GeoPoint nad83;
};

TEST(DatumShift, AgreesWithPublishedPointsWithinTheStatedAccuracy) {
  const std::vector<KnownPoint> points = {
      // NADCON values to 0.001 seconds of arc, from the test suite of cs2cs.
      {"39 N 111 W", {39, -111}, {39 - 0.088 * kSecond, -111 - 2.604 * kSecond}},
      {"44 N 111 W", {44, -111}, {44 - 0.275 * kSecond, -111 - 2.788 * kSecond}},
      // Canadian national transformation.
      {"55 N 111 W", {55, -111}, {55 + 0.367 * kSecond, -111 - 3.231 * kSecond}},
  };
  const ProjDatumShift shift;
  for (const KnownPoint& point : points) {
    const DatumOperation operation = shift.operationAt(point.nad27);
    ASSERT_GT(operation.accuracy, 0) << point.source;
    ASSERT_LT(operation.accuracy, 20) << point.source;
    // The registry's accuracy, and 0.02 m for the last published digit.
    EXPECT_LT(metresBetween(shift.toNad83(point.nad27), point.nad83), operation.accuracy + 0.02)
        << point.source;
    // Leaving the position as it is would be some 60 m off.
    EXPECT_GT(metresBetween(point.nad27, point.nad83), 50) << point.source;
    EXPECT_GT(metresBetween(shift.toNad83(point.nad27), point.nad27), 40) << point.source;
  }
}

TEST(DatumShift, NamesTheOperationThatItUses) {
  const DatumOperation operation = ProjDatumShift().operationAt({36.5365, -84.2});
  EXPECT_EQ(operation.name.rfind("NAD27 to ", 0), 0U) << operation.name;
  if (!operation.usesGrid) {
    EXPECT_GE(operation.accuracy, 5) << "a mean shift is never better";
  }
}

TEST(DatumShift, ServesAlaskaAndBothSidesOfTheAntimeridian) {
  const ProjDatumShift shift;
  for (const GeoPoint point : {GeoPoint{64.5, -150}, GeoPoint{52.5, -175}, GeoPoint{52, 175}}) {
    // The datums differ by 80 to 300 m in Alaska.
    const double metres = metresBetween(shift.toNad83(point), point);
    EXPECT_GT(metres, 80) << point.latitude << "," << point.longitude;
    EXPECT_LT(metres, 350) << point.latitude << "," << point.longitude;
  }
  EXPECT_EQ(shift.toNad83({52, 175}), shift.toNad83({52, -185}));
}

TEST(DatumShift, RaisesAnErrorInWordsWhereNoOperationServes) {
  const ProjDatumShift shift;
  for (const GeoPoint point : {GeoPoint{48, 11}, GeoPoint{0, 0}, GeoPoint{-33, 151}}) {
    try {
      shift.toNad83(point);
      ADD_FAILURE() << "raised nothing";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), ProjDatumShift::kErrorNumber);
      EXPECT_NE(error.description().find("No operation from NAD-27 to NAD-83 serves the position"),
                std::string::npos);
    }
    EXPECT_THROW(shift.operationAt(point), RuntimeError);
  }
}

TEST(DatumShift, RaisesAnErrorForWhatIsNoPosition) {
  const ProjDatumShift shift;
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const GeoPoint point : {GeoPoint{kNan, -100}, GeoPoint{40, kNan}, GeoPoint{91, -100}})
    EXPECT_THROW(shift.toNad83(point), RuntimeError);
}

// A grid of one shift everywhere, in the plain "CTABLE V2" form: 5-degree cells from 35 N 115 W to 45 N 105
// W.
std::string gridBytes(double latitudeShift, double westwardShift) {  // seconds of arc
  constexpr double kRadians = M_PI / 180;
  constexpr std::int32_t kCells = 3;
  std::string bytes = "CTABLE V2.0     ";
  bytes.resize(96, '\0');
  const auto append = [&bytes](const auto& value) {
    char raw[sizeof(value)];
    std::memcpy(raw, &value, sizeof(value));
    bytes.append(raw, sizeof(value));
  };
  for (const double degrees : {-115.0, 35.0, 5.0, 5.0}) append(degrees * kRadians);
  append(kCells);
  append(kCells);
  bytes.resize(160, '\0');
  for (int i = 0; i < kCells * kCells; ++i) {
    append(static_cast<float>(westwardShift * kSecond * kRadians));
    append(static_cast<float>(latitudeShift * kSecond * kRadians));
  }
  return bytes;
}

TEST(DatumShift, PrefersAGridOfTheGivenFolder) {
  const TemporaryFolder folder;
  writeBytes(folder / "conus", gridBytes(-0.088, 2.604));
  const ProjDatumShift shift(folder.path());
  const GeoPoint point{39, -111};
  const DatumOperation operation = shift.operationAt(point);
  EXPECT_TRUE(operation.usesGrid);
  EXPECT_EQ(operation.name, "NAD27 to NAD83 (1)");
  EXPECT_DOUBLE_EQ(operation.accuracy, 0.15);
  const GeoPoint shifted = shift.toNad83(point);
  EXPECT_NEAR(shifted.latitude, 39 - 0.088 * kSecond, 1e-9);
  EXPECT_NEAR(shifted.longitude, -111 - 2.604 * kSecond, 1e-9);
}

TEST(DatumShift, FallsBackToTheNextOperationWhereTheGridHasAGap) {
  const TemporaryFolder folder;
  writeBytes(folder / "conus", gridBytes(-0.088, 2.604));
  const ProjDatumShift shift(folder.path());
  const GeoPoint outsideTheGrid{36.5, -84.2};
  EXPECT_FALSE(shift.operationAt(outsideTheGrid).usesGrid);
  EXPECT_LT(metresBetween(shift.toNad83(outsideTheGrid), outsideTheGrid), 50);
}

TEST(DatumShift, FallsBackToTheNextOperationWhenTheGridIsDamaged) {
  const TemporaryFolder folder;
  writeBytes(folder / "conus", "no grid at all");
  const ProjDatumShift shift(folder.path());
  EXPECT_FALSE(shift.operationAt({39, -111}).usesGrid);
}

TEST(DatumShift, WorksWithAFolderThatIsNotThere) {
  const ProjDatumShift shift("/nowhere/at/all");
  EXPECT_GT(shift.operationAt({39, -111}).accuracy, 0);
}

TEST(DatumShift, ServesSeveralThreadsAtOnce) {
  const ProjDatumShift shift;
  const GeoPoint expected = ProjDatumShift().toNad83({39, -111});
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int n = 0; n < 500; ++n) EXPECT_EQ(shift.toNad83({39, -111}), expected);
    });
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace zel
