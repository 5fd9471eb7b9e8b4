/* An application object whose properties are asked for when they are needed. */
#include <stdio.h>
#include <string.h>
#include <zel/c_api.h>

typedef struct Planner {
  const char* title;
} Planner;

/* The component may keep an application object for the rest of the process: what its functions read stays. */
static Planner host = {"Host Planner"};

static const char* readProperty(void* context, const char* property) {
  const Planner* planner = context;
  if (strcmp(property, "Title") == 0) return planner->title;
  if (strcmp(property, "Path") == 0) return ".";
  if (strcmp(property, "Major") == 0) return "4"; /* numbers as texts */
  return NULL;                                    /* there is no such property */
}

int main(void) {
  const StationProfile_Type ridge = {36.40, -84.35, 30};
  const StationProfile_Type valley = {36.22, -84.12, 30};
  zelApplicationCallbacks callbacks = {0};
  zelObject* application = NULL;
  zelProfiler* profiler = NULL;
  float loss = 0;

  callbacks.context = &host;
  callbacks.read = readProperty;
  if (zelProfilerCreate(&profiler) != ZEL_OK ||
      zelApplicationCreateFromCallbacks(&callbacks, &application) != ZEL_OK ||
      zelProfilerSetClientApp(profiler, application) != ZEL_OK) {
    fprintf(stderr, "%s\n", zelProfilerLastError());
    return 1;
  }
  zelObjectRelease(application);

  zelProfilerGetPathLoss(profiler, &ridge, &valley, &loss);
  printf("%s: %.1f dB\n", host.title, (double)loss);
  zelProfilerRelease(profiler);
  return 0;
}
