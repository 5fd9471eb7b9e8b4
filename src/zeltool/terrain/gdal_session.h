// A guarded stretch of work with the raster library: its drivers are there, its errors are collected instead
// of printed, and it neither lists whole folders at every open nor reaches for the network. Sessions may be
// nested and run on several threads at once. Cost: below a microsecond once the drivers are registered (2 to
// 3 ms, once in a process).
#pragma once

#include <string>

namespace zel {

class GdalSession {
 public:
  GdalSession();
  ~GdalSession();
  GdalSession(const GdalSession&) = delete;
  GdalSession& operator=(const GdalSession&) = delete;

  // The last error since the session began or since the last call, on one line; empty when there was none.
  std::string takeError();

 private:
  std::string error_;
  std::string previousReadDir_, previousSharedSource_;
  bool hadReadDir_ = false, hadSharedSource_ = false;
};

// The names of the registered raster drivers that read local files only, ended by a null pointer.
const char* const* localRasterDrivers();

}  // namespace zel
