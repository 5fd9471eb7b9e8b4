/* A host in plain C that has no event loop and no toolkit of its own: opens the profile window, handles its
 * events in both ways, and is called back while they are handled. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zel/c_api.h"

static zelProfiler* profiler = NULL;
static const char* logFolder = ".";
static int running = 0;
static int readings = 0;

static void require(int condition, const char* what) {
  if (condition) return;
  fprintf(stderr, "failed: %s (%s)\n", what, zelProfilerLastError());
  exit(1);
}

/* Asked for at every reading of a setting, so also in the midst of a drawing: there the window is unloaded.
 */
static const char* readProperty(void* context, const char* property) {
  (void)context;
  if (strcmp(property, "Path") == 0) return logFolder;
  if (running && ++readings == 3)
    require(zelProfilerUnloadMainForm(profiler) == ZEL_OK, "the window is unloaded within its own drawing");
  return strcmp(property, "Title") == 0 ? "Window Consumer" : "";
}

int main(int argc, char** argv) {
  const StationProfile_Type sta1 = {36.30, -84.30, 30.4F};
  const StationProfile_Type sta2 = {36.35, -84.25, 20.0F};
  zelApplicationCallbacks callbacks;
  zelObject* application = NULL;
  zelObject* form = NULL;
  zelValue value;
  int loaded = 0;
  int exitCode = -1;
  int32_t handle = 0;
  int i;

  logFolder = argc > 1 ? argv[1] : ".";
  memset(&callbacks, 0, sizeof callbacks);
  callbacks.read = readProperty;
  require(zelProfilerCreate(&profiler) == ZEL_OK, "a profiler is made");
  require(zelApplicationCreateFromCallbacks(&callbacks, &application) == ZEL_OK, "an application is made");
  require(zelProfilerSetClientApp(profiler, application) == ZEL_OK, "the application is bound");
  require(zelObjectRelease(application) == ZEL_OK, "the profiler keeps the application");

  /* Events now and then. */
  require(zelProfilerShowMainForm(profiler, &sta1, &sta2) == ZEL_OK, "the window is shown");
  require(zelProfilerGetPFrmLoaded(profiler, &loaded) == ZEL_OK && loaded, "the window is loaded");
  require(zelProfilerGethWnd(profiler, &handle) == ZEL_OK && handle != 0, "the window has a handle");
  for (i = 0; i < 5; ++i) require(zelProfilerProcessEvents(5) == ZEL_OK, "events are handled");
  require(zelProfilerUnloadMainForm(profiler) == ZEL_OK, "the window is unloaded");
  require(zelProfilerGethWnd(profiler, &handle) == ZEL_OK && handle == 0, "no window, no handle");
  require(zelProfilerProcessEvents(5) == ZEL_OK, "events are handled without a window");

  /* A window of the host's own. */
  require(zelProfilerGetPForm(profiler, &form) == ZEL_OK && form != NULL,
          "a window of the host's own is made");
  require(zelObjectInvoke(form, "Show", ZEL_METHOD, NULL, 0, NULL) == ZEL_OK, "it is shown");
  require(zelObjectInvoke(form, "lblDist", ZEL_GET, NULL, 0, &value) == ZEL_OK && value.kind == ZEL_OBJECT,
          "its controls are reached by name");
  {
    zelObject* label = value.as.object;
    require(zelObjectInvoke(label, "Caption", ZEL_GET, NULL, 0, &value) == ZEL_OK && value.kind == ZEL_TEXT &&
                strcmp(value.as.text, "7.1") == 0,
            "the label shows the distance");
    require(zelProfilerGetPFrmLoaded(profiler, &loaded) == ZEL_OK && !loaded, "the flag is the component's");
    require(zelObjectRelease(form) == ZEL_OK, "the window is released");
    require(zelProfilerProcessEvents(5) == ZEL_OK, "events are handled after it");
    require(zelObjectInvoke(label, "Caption", ZEL_GET, NULL, 0, &value) == ZEL_FAILED,
            "a control of a window that is gone says so");
    require(zelObjectRelease(label) == ZEL_OK, "the control is released");
  }

  /* The loop, until the last window is closed. */
  require(zelProfilerShowMainForm(profiler, &sta2, &sta1) == ZEL_OK, "the window is shown again");
  running = 1;
  require(zelProfilerRun(&exitCode) == ZEL_OK && exitCode == 0, "the loop ends with the last window");
  require(readings >= 3, "the host was asked while the loop ran");
  require(zelProfilerGetPFrmLoaded(profiler, &loaded) == ZEL_OK && !loaded, "the window is unloaded");
  require(zelProfilerShowMainForm(profiler, &sta1, &sta2) == ZEL_OK, "the window is shown a third time");
  require(zelProfilerRelease(profiler) == ZEL_OK, "the profiler is released with its window open");
  printf("windows: done\n");
  return 0;
}
