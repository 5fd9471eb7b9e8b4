/* The smallest host in C: a modeled loss between two stations, without a window. */
#include <stdio.h>
#include <zel/c_api.h>

int main(void) {
  /* Latitude, longitude (south and west are negative), antenna above ground in metres. */
  const StationProfile_Type ridge = {36.40, -84.35, 30};
  const StationProfile_Type valley = {36.22, -84.12, 30};
  zelApplication properties = {0};
  zelObject* application = NULL;
  zelProfiler* profiler = NULL;
  float loss = 0;

  properties.title = "Host Planner";
  properties.path = ".";
  if (zelProfilerCreate(&profiler) != ZEL_OK || zelApplicationCreate(&properties, &application) != ZEL_OK ||
      zelProfilerSetClientApp(profiler, application) != ZEL_OK ||
      zelProfilerLetStaDatum(profiler, 1) != ZEL_OK ||
      zelProfilerGetPathLoss(profiler, &ridge, &valley, &loss) != ZEL_OK)
    fprintf(stderr, "%s\n", zelProfilerLastError());
  zelObjectRelease(application); /* the profiler has a hold of its own */
  zelProfilerRelease(profiler);
  if (loss == 0) return 1; /* why stands on standard error and in ./zelErrorLog.txt */
  printf("Modeled loss: %.1f dB\n", (double)loss);
  return 0;
}
