// Distances, bearings and positions without terrain; positions as texts; NAD-27 and WGS 84.
#include <zel/coordinates.h>
#include <zel/geodesic.h>
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  const zel::ParsedStation parsed = zel::parseStationText("36-24-00 N, 84-21-00 W, 100ft");
  if (!parsed.station) return std::printf("%s\n", parsed.error.c_str()), 1;
  const zel::Position ridge = parsed.station->position;
  std::printf("%.4f, %.4f, %.2f m\n", ridge.latitude, ridge.longitude, parsed.station->height.value_or(0));

  const zel::GeodesicLine line = zel::geodesicLine(ridge, {36.22, -84.12}, 3);
  std::printf("%.3f km, bearing %.2f degrees, back %.2f degrees\n", line.distanceKm, line.bearingDeg,
              line.reverseBearingDeg);
  const zel::Position beyond = zel::geodesicDestination(ridge, line.bearingDeg, 100);
  std::printf("100 km on: %.5f, %.5f\n", beyond.latitude, beyond.longitude);

  // These two belong to the component's thread: they know the datum and the format of its settings.
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  std::printf("%s, %s\n", zel::latitudeText(ridge.latitude).c_str(),
              zel::longitudeText(ridge.longitude).c_str());
  profiler.let_StaDatum(0);  // stations are NAD-27 from here on
  const zel::DatumPosition onMap = zel::mapPosition(ridge);
  if (!onMap.problem.empty()) return std::printf("%s\n", onMap.problem.c_str()), 1;
  std::printf("NAD-27 lies elsewhere: %s\n",
              zel::geodesicLine(ridge, onMap.position, 2).distanceKm > 0.001 ? "yes" : "no");
}
