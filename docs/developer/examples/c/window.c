/* A host without a toolkit: the library's event loop runs until the user closes the window. */
#include <stdio.h>
#include <zel/c_api.h>

int main(void) {
  const StationProfile_Type ridge = {36.40, -84.35, 30};
  const StationProfile_Type valley = {36.22, -84.12, 30};
  zelApplication properties = {"Host Planner", ".", "Planner 4", "", 4, 0, 0};
  zelObject* application = NULL;
  zelProfiler* profiler = NULL;
  int loaded = 0;
  int exitCode = 0;

  if (zelProfilerCreate(&profiler) != ZEL_OK || zelApplicationCreate(&properties, &application) != ZEL_OK ||
      zelProfilerSetClientApp(profiler, application) != ZEL_OK) {
    fprintf(stderr, "%s\n", zelProfilerLastError());
    return 1;
  }
  zelObjectRelease(application);

  zelProfilerShowMainForm(profiler, &ridge, &valley);
  zelProfilerGetPFrmLoaded(profiler, &loaded);
  printf("%s\n", loaded ? "The window is open." : "There is no window.");
  fflush(stdout);
  if (loaded && zelProfilerRun(&exitCode) != ZEL_OK) fprintf(stderr, "%s\n", zelProfilerLastError());
  zelProfilerRelease(profiler);
  return exitCode;
}
