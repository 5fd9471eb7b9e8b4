// The smallest host: a modeled loss between two stations, without a window.
#include <zel/profile_control.h>

#include <cstdio>

int main() {
  zel::ProfileControl profiler;
  profiler.SetClientApp(zel::makePropertyBag({{"Title", "Host Planner"}, {"Path", "."}}));
  profiler.let_StaDatum(1);  // positions are NAD-83, which stands for WGS 84, too

  const StationProfile_Type ridge{36.40, -84.35, 30};   // latitude, longitude, antenna above ground in metres
  const StationProfile_Type valley{36.22, -84.12, 30};  // south and west are negative
  const float loss = profiler.GetPathLoss(ridge, valley);
  if (loss == 0) return 1;  // why stands on standard error and in ./zelErrorLog.txt
  std::printf("Modeled loss: %.1f dB\n", static_cast<double>(loss));
}
