/* The terrain profiler for C, and for any language that calls C.
 *
 *   zelProfiler* profiler = NULL;
 *   zelObject* application = NULL;
 *   zelApplication properties = {0};
 *   properties.title = "Host Planner";
 *   properties.path = "/var/log/planner";
 *   if (zelProfilerCreate(&profiler) != ZEL_OK) puts(zelProfilerLastError());
 *   zelApplicationCreate(&properties, &application);
 *   zelProfilerSetClientApp(profiler, application);
 *   zelProfilerGetPathLoss(profiler, &sta1, &sta2, &loss);
 *   zelObjectRelease(application);
 *   zelProfilerRelease(profiler);
 *
 * Every function returns ZEL_OK or one of the codes below, and never ends otherwise: no C++ exception leaves
 * the library. A pointer must not be NULL unless its description says so; with NULL a function returns
 * ZEL_NULL_POINTER and does nothing. Texts are UTF-8 and end with a zero byte; texts handed over are copied.
 * Booleans are 0 or 1.
 *
 * Functions on a zelProfiler, or on the object of one (zelProfilerObject), are for one thread, the one that
 * made the first zelProfiler that is alive; on another they return ZEL_WRONG_THREAD and do nothing.
 * zelProfilerRun and zelProfilerProcessEvents are for the graphical application's thread in the same way.
 * Applications and stations may be made, used and released on any thread, each on one at a time; once an
 * application is bound it belongs to the profiler's. As in C++, a failure inside a member is shown, logged
 * and not passed on: the function then returns ZEL_OK, and its result is 0.
 *
 * The members are described in zel/profile_control.h, under the names that follow zelProfiler, Get and Let
 * here. */
#ifndef ZEL_C_API_H_
#define ZEL_C_API_H_

#include <stddef.h> /* NOLINT(modernize-deprecated-headers): the header serves C as well. */
#include <stdint.h> /* NOLINT(modernize-deprecated-headers) */

#include "zel/export.h"
#include "zel/station_profile.h"

#ifdef __cplusplus
extern "C" {
#endif

/* NOLINTBEGIN(modernize-use-using): the header serves C as well. */

/* What the functions return. */
enum {
  ZEL_OK = 0,
  ZEL_NULL_POINTER = 1,         /* an argument that must not be NULL is */
  ZEL_WRONG_THREAD = 2,         /* the class belongs to another thread */
  ZEL_NO_EVENT_LOOP = 3,        /* the process has no graphical application whose events could be handled */
  ZEL_EVENT_LOOP_RUNNING = 4,   /* the host runs the event loop already */
  ZEL_OUT_OF_RANGE = 5,         /* an argument is outside its range */
  ZEL_MEMBER_NOT_FOUND = 6,     /* late binding: no member of that name */
  ZEL_WRONG_ACCESS = 7,         /* late binding: the member cannot be read, set or called so */
  ZEL_WRONG_ARGUMENT_COUNT = 8, /* late binding: more or fewer arguments than the member takes */
  ZEL_TYPE_MISMATCH = 9,        /* late binding: a value of another kind is wanted */
  ZEL_OVERFLOW = 10,            /* late binding: the value does not fit */
  ZEL_OUT_OF_MEMORY = 11,
  ZEL_FAILED = 12, /* anything else; zelProfilerLastError says what */
  ZEL_QUIT = 13    /* the user chose not to continue after a failure; zelProfilerRun gives the exit code */
};

/* Why the calling thread's last function that did not return ZEL_OK failed. Never NULL; valid until the
 * thread's next call. */
ZEL_API const char* zelProfilerLastError(void);

/* "1.2.3"; valid for as long as the library is loaded. */
ZEL_API const char* zelProfilerVersion(void);

/* One ProfileControl. All of them share one state. */
typedef struct zelProfiler zelProfiler;
/* An object that is reached by the names of its members: a host's application, a profile window, the class
 * itself. */
typedef struct zelObject zelObject;

ZEL_API int zelProfilerCreate(zelProfiler** profiler);
/* Unloads both windows, even while an object of the profiler is alive, and frees the profiler. NULL is
 * allowed. */
ZEL_API int zelProfilerRelease(zelProfiler* profiler);

/* The graphical application's event loop, for hosts that have none of their own. Windows exist only with such
 * an application; without one both return ZEL_NO_EVENT_LOOP at once. */

/* Runs the loop until the application quits and gives its exit code, which may be NULL: after a failure that
 * the user chose not to continue from, it is the error's number. Returns at once with that code, and forgets
 * it, when zelProfilerProcessEvents has returned ZEL_QUIT. */
ZEL_API int zelProfilerRun(int* exitCode);
/* Handles the events that are pending, for at most the given time in milliseconds (0 or more). ZEL_QUIT when
 * the user chose not to continue after a failure: end the program, with the exit code that zelProfilerRun
 * gives. */
ZEL_API int zelProfilerProcessEvents(int milliseconds);

/* ---- Members, in their published order ---- */

ZEL_API int zelProfilerGetElevLines(zelProfiler* profiler, int16_t* value);
ZEL_API int zelProfilerLetElevLines(zelProfiler* profiler, int16_t vNewValue);
ZEL_API int zelProfilerExportDataToCSV(zelProfiler* profiler, const char* outfile);
ZEL_API int zelProfilerExportITMToCSV(zelProfiler* profiler, const char* outfile);
ZEL_API int zelProfilerGetOFrmLoaded(zelProfiler* profiler, int* value);
ZEL_API int zelProfilerGetOptionButtonVisible(zelProfiler* profiler, int* value);
ZEL_API int zelProfilerLetOptionButtonVisible(zelProfiler* profiler, int vNewValue);
ZEL_API int zelProfilerLetOwnerName(zelProfiler* profiler, const char* vNewValue);
/* The window is NULL when it could not be made; release it otherwise. */
ZEL_API int zelProfilerGetPForm(zelProfiler* profiler, zelObject** window);
ZEL_API int zelProfilerGetPFrmLoaded(zelProfiler* profiler, int* value);
ZEL_API int zelProfilerLetPrintDescription(zelProfiler* profiler, const char* vNewValue);
ZEL_API int zelProfilerLetPrintLandscape(zelProfiler* profiler, int vNewValue);
ZEL_API int zelProfilerPrintProfile(zelProfiler* profiler, int* value);
ZEL_API int zelProfilerLetProgName(zelProfiler* profiler, const char* vNewValue);
ZEL_API int zelProfilerGetRangeLines(zelProfiler* profiler, int16_t* value);
ZEL_API int zelProfilerLetRangeLines(zelProfiler* profiler, int16_t vNewValue);
/* NULL is allowed, as "nothing". The caller may release its own handle: the component keeps the object at
 * least until another is bound, and may keep it for the rest of the process, even when every zelProfiler is
 * released. An object that is kept until the process ends is not released then. */
ZEL_API int zelProfilerSetClientApp(zelProfiler* profiler, zelObject* ClientApp);
ZEL_API int zelProfilerGetPathLoss(zelProfiler* profiler, const StationProfile_Type* Sta1,
                                   const StationProfile_Type* Sta2, float* value);
ZEL_API int zelProfilerShowMainForm(zelProfiler* profiler, const StationProfile_Type* Sta1,
                                    const StationProfile_Type* Sta2);
ZEL_API int zelProfilerShowOptionsForm(zelProfiler* profiler);
ZEL_API int zelProfilerGetStaDatum(zelProfiler* profiler, int32_t* value);
ZEL_API int zelProfilerLetStaDatum(zelProfiler* profiler, int32_t vNewValue);
ZEL_API int zelProfilerUnloadMainForm(zelProfiler* profiler);
ZEL_API int zelProfilerGethWnd(zelProfiler* profiler, int32_t* value);

/* ---- The host's application object ---- */

/* Fixed properties; a text that is NULL is empty. */
typedef struct zelApplication {
  const char* title; /* names the settings and heads captions and error messages */
  const char* path;  /* the folder of the error log */
  const char* productName;
  const char* helpFile;
  int32_t major;
  int32_t minor;
  int32_t revision;
} zelApplication;
ZEL_API int zelApplicationCreate(const zelApplication* properties, zelObject** application);

/* Properties that are asked for each time they are needed. */
typedef struct zelApplicationCallbacks {
  void* context; /* handed to the functions; may be NULL */
  /* The value of "Title", "Path", "ProductName", "HelpFile", "Major", "Minor", "Revision" (numbers as decimal
   * texts); NULL when there is no such property. The text is copied before the next call. */
  const char* (*read)(void* context, const char* property);
  void (*release)(void* context); /* called when the object is no longer used; may be NULL */
} zelApplicationCallbacks;
ZEL_API int zelApplicationCreateFromCallbacks(const zelApplicationCallbacks* callbacks,
                                              zelObject** application);

/* ---- Late binding ---- */

enum { ZEL_EMPTY = 0, ZEL_BOOLEAN, ZEL_INT16, ZEL_INT32, ZEL_FLOAT32, ZEL_FLOAT64, ZEL_TEXT, ZEL_OBJECT };
enum { ZEL_GET = 0, ZEL_LET = 1, ZEL_METHOD = 2 };

typedef struct zelValue {
  int32_t kind; /* ZEL_EMPTY to ZEL_OBJECT */
  union {
    int32_t boolean;
    int16_t int16;
    int32_t int32;
    float float32;
    double float64;
    const char* text;  /* of a result: valid until the object's next call or release */
    zelObject* object; /* may be NULL; of a result: release it */
  } as;
} zelValue;

/* The profiler itself, by the names of its members. A station is an object with Lat, Lon and AntHt. The
 * object keeps the profiler's class alive; release it, too. */
ZEL_API int zelProfilerObject(zelProfiler* profiler, zelObject** object);
ZEL_API int zelStationCreate(const StationProfile_Type* station, zelObject** object);
/* Reads, sets or calls a member. `arguments` may be NULL when `count` is 0, and `result` when it is not
 * wanted. */
ZEL_API int zelObjectInvoke(zelObject* object, const char* member, int access, const zelValue* arguments,
                            size_t count, zelValue* result);
/* NULL is allowed. The object of a zelProfiler is released on the profiler's thread alone. */
ZEL_API int zelObjectRelease(zelObject* object);

/* NOLINTEND(modernize-use-using) */

#ifdef __cplusplus
}
#endif

#endif /* ZEL_C_API_H_ */
