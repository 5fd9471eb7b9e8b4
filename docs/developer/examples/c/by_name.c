/* The same members by name, as a scripting language would call them. */
#include <stdio.h>
#include <zel/c_api.h>

int main(void) {
  const StationProfile_Type ridge = {36.40, -84.35, 30};
  const StationProfile_Type valley = {36.22, -84.12, 30};
  zelProfiler* profiler = NULL;
  zelObject* control = NULL;
  zelValue stations[2];
  zelValue value;
  int code;

  if (zelProfilerCreate(&profiler) != ZEL_OK || zelProfilerObject(profiler, &control) != ZEL_OK) return 1;

  stations[0].kind = stations[1].kind = ZEL_OBJECT;
  zelStationCreate(&ridge, &stations[0].as.object);
  zelStationCreate(&valley, &stations[1].as.object);
  code = zelObjectInvoke(control, "GetPathLoss", ZEL_METHOD, stations, 2, &value);
  if (code == ZEL_OK) printf("%.1f dB, of kind %d\n", (double)value.as.float32, value.kind);
  zelObjectRelease(stations[0].as.object);
  zelObjectRelease(stations[1].as.object);

  value.kind = ZEL_INT32;
  value.as.int32 = 70000;
  code = zelObjectInvoke(control, "RangeLines", ZEL_LET, &value, 1, NULL);
  printf("%d: %s\n", code, zelProfilerLastError());

  zelObjectRelease(control);
  zelProfilerRelease(profiler);
  return 0;
}
