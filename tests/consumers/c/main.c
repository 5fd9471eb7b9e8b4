/* Drives the profiler from plain C. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zel/c_api.h"

static void require(int condition, const char* what) {
  if (condition) return;
  fprintf(stderr, "failed: %s (%s)\n", what, zelProfilerLastError());
  exit(1);
}

int main(int argc, char** argv) {
  const StationProfile_Type sta1 = {36.30, -84.30, 30.4F};
  const StationProfile_Type sta2 = {36.35, -84.25, 20.0F};
  zelApplication properties;
  zelProfiler* profiler = NULL;
  zelObject* application = NULL;
  zelObject* control = NULL;
  zelValue value;
  int16_t lines = 0;
  int flag = 0;
  float loss = -1;

  memset(&properties, 0, sizeof properties);
  properties.title = "Consumer";
  properties.path = argc > 1 ? argv[1] : ".";
  require(strlen(zelProfilerVersion()) >= 5, "the version is known");
  require(zelProfilerCreate(&profiler) == ZEL_OK, "a profiler is made");
  require(zelApplicationCreate(&properties, &application) == ZEL_OK, "an application is made");
  require(zelProfilerSetClientApp(profiler, application) == ZEL_OK, "the application is bound");
  require(zelObjectRelease(application) == ZEL_OK, "the profiler keeps the application");
  require(zelProfilerGetOptionButtonVisible(profiler, &flag) == ZEL_OK && flag == 1,
          "the option button is shown");

  require(zelProfilerLetRangeLines(profiler, 6) == ZEL_OK, "the range lines are set");
  require(zelProfilerGetRangeLines(profiler, &lines) == ZEL_OK && lines == 6, "the range lines are kept");
  require(zelProfilerGetRangeLines(profiler, NULL) == ZEL_NULL_POINTER, "a null pointer is refused");
  require(zelProfilerGetPathLoss(profiler, &sta1, &sta2, &loss) == ZEL_OK, "a path loss is given");
  /* 7.2 km at 100 MHz, the frequency when none is stored: free space alone is 89.5 dB. */
  require(loss > 85 && loss < 200, "the loss is that of a path of some kilometres");
  require(zelProfilerUnloadMainForm(profiler) == ZEL_OK, "the windows are unloaded");

  require(zelProfilerObject(profiler, &control) == ZEL_OK, "the profiler is reached by name");
  value.kind = ZEL_INT32;
  value.as.int32 = 70000;
  require(zelObjectInvoke(control, "RangeLines", ZEL_LET, &value, 1, NULL) == ZEL_OVERFLOW,
          "70000 does not fit");
  require(zelObjectInvoke(control, "rangelines", ZEL_GET, NULL, 0, &value) == ZEL_OK &&
              value.kind == ZEL_INT16 && value.as.int16 == 6,
          "the range lines are read by name");
  require(zelObjectRelease(control) == ZEL_OK, "the object is released");

  /* No graphical application: both come back at once. */
  require(zelProfilerProcessEvents(10) == ZEL_NO_EVENT_LOOP, "there are no events to handle");
  require(zelProfilerRun(NULL) == ZEL_NO_EVENT_LOOP, "there is no loop to run");
  require(zelProfilerRelease(profiler) == ZEL_OK, "the profiler is released");
  printf("consumer: loss %g dB\n", (double)loss);
  return 0;
}
