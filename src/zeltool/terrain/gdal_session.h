// A guarded stretch of work with the raster library: its drivers are there, its errors are collected instead
// of printed, and it neither lists whole folders at every open, nor writes beside files, nor reaches for the
// network. The library's own cache of decoded blocks is kept to 128 MiB in the process. Sessions may be
// nested and run on several threads at once. Cost: below a microsecond once the drivers are registered (2 to
// 3 ms, once in a process).
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace zel {

class GdalSession {
 public:
  static constexpr std::size_t kOptions = 4;  // of the library, set for the thread

  GdalSession();
  ~GdalSession();
  GdalSession(const GdalSession&) = delete;
  GdalSession& operator=(const GdalSession&) = delete;

  // The last error since the session began or since the last call, on one line; empty when there was none.
  std::string takeError();

 private:
  std::string error_;
  std::array<std::optional<std::string>, kOptions> previous_;
};

// The names of the registered raster drivers that read local files of heights only, ended by a null pointer.
const char* const* localRasterDrivers();

// The format that a file shows itself to be when that is none of those ("MRF"); else empty. Within a session.
std::string foreignFormat(const std::string& path);

}  // namespace zel
