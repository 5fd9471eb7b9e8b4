/* What the functions return, and what they do not. */
#include <stdio.h>
#include <zel/c_api.h>

int main(void) {
  const StationProfile_Type here = {50.0, 10.0, 30};
  const StationProfile_Type there = {50.1, 10.0, 30};
  zelApplication properties = {"Host Planner", ".", "Planner 4", "", 4, 0, 0};
  zelObject* application = NULL;
  zelProfiler* profiler = NULL;
  float loss = -1;
  int code;

  if (zelProfilerCreate(&profiler) != ZEL_OK) return 1;
  zelApplicationCreate(&properties, &application);
  zelProfilerSetClientApp(profiler, application);
  zelObjectRelease(application);

  /* A wrong use of the interface is the caller's: a code and a text. */
  code = zelProfilerGetPathLoss(profiler, &here, NULL, &loss);
  printf("%d: %s\n", code, zelProfilerLastError());

  /* A failure inside the member is told and logged; the code is ZEL_OK and the result 0. */
  code = zelProfilerGetPathLoss(profiler, &here, &there, &loss);
  printf("%d, %g dB\n", code, (double)loss);

  zelProfilerRelease(profiler);
  return 0;
}
