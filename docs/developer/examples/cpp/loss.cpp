// The loss of a path both ways, with what the model saw.
#include <zel/path_loss.h>
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));

  zel::PathLossRequest request;
  request.from = {36.4408, -84.3433};
  request.to = {36.1842, -84.1283};
  request.fromHeight = 30;  // metres above ground
  request.toHeight = 12.5;  // 12 is used, and a note says so
  request.frequencyMhz = 450;
  const zel::PathLoss loss = zel::computePathLoss(request);
  if (loss.status != 0) return std::printf("%s\n", loss.error.c_str()), 1;

  std::printf("%.3f km, free space %.2f dB\n", loss.distanceKm, loss.freeSpaceDb);
  if (loss.modeledDb)  // none outside 20 to 20000 MHz
    std::printf("Modeled %.2f dB, back %.2f dB\n", *loss.modeledDb, *loss.reverseModeledDb);
  std::printf("%s\n", zel::pathModeText(loss.mode, loss.method));
  std::printf("Reliability %.0f %%, confidence %.0f %%\n", 100 * loss.model.reliability,
              100 * loss.model.confidence);
  for (const std::string& note : loss.notes) std::printf("Note: %s\n", note.c_str());
  for (const std::string& warning : loss.warnings) std::printf("Warning: %s\n", warning.c_str());
}
