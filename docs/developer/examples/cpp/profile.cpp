// The profile of a path in exact geometry: clearance, verdict, heights, and what they were computed from.
#include <zel/path_profile.h>
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  zel::PathProfileRequest request;
  request.from = {36.4408, -84.3433};
  request.to = {36.1842, -84.1283};
  request.fromHeight = 30;  // metres above ground
  request.toHeight = 30;
  request.k = 4.0 / 3;
  request.frequencyMhz = 450;
  const zel::PathProfile profile = zel::computePathProfile(request);
  if (profile.status != 0) return std::printf("%s\n", profile.error.c_str()), 1;

  std::printf("%.3f km, bearing %.2f degrees, %d points\n", profile.distanceKm, profile.bearingDeg,
              profile.points);
  std::printf("Free space %.2f dB\n", profile.freeSpaceDb);
  std::printf("Verdict: %s\n", zel::verdictText(profile.verdict));
  if (profile.worst)
    std::printf("Worst at %.3f km: %.1f m, %.0f %% of the first Fresnel zone\n", profile.worst->distanceKm,
                profile.worst->clearanceM, profile.worst->clearancePercent);
  for (std::size_t i = 0; i < profile.groundM.size(); i += 250)
    std::printf("%7.3f km  ground %6.1f m  rise %5.1f m  line %6.1f m  zone %5.1f m  clearance %6.1f m\n",
                profile.distancesKm[i], profile.groundM[i], profile.riseM[i], profile.lineOfSightM[i],
                profile.fresnel1M[i], profile.clearanceM[i]);

  // A result that somebody relies on is shown with this.
  std::printf("Terrain: %s, %s, %d voids%s\n", profile.terrain.sourceName.c_str(),
              profile.terrain.method.c_str(), profile.terrain.voids,
              profile.terrain.bundledSample ? " (the bundled sample)" : "");
  for (const std::string& note : profile.notes) std::printf("Note: %s\n", note.c_str());
  for (const std::string& warning : profile.terrain.warnings) std::printf("Warning: %s\n", warning.c_str());
}
