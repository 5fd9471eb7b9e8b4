// Failures on their way to Python. The exceptions themselves stand in zelprofiler01/_errors.py.
#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace zel::python {

namespace py = pybind11;

// A path that cannot be computed. Status as SampledTerrain::status (1 to 4, TerrainError), or 5 (PathError).
class PathFault : public std::runtime_error {
 public:
  PathFault(int status, const std::string& text, std::optional<std::size_t> index = {},
            std::string parameter = {})
      : std::runtime_error(text), status_(status), index_(index), parameter_(std::move(parameter)) {}
  int status() const { return status_; }
  std::optional<std::size_t> index() const { return index_; }  // of the path among those of the call
  const std::string& parameter() const { return parameter_; }  // the argument that is wrong, or empty

 private:
  int status_;
  std::optional<std::size_t> index_;
  std::string parameter_;
};

constexpr int kStatusOk = 0;
constexpr int kStatusRequest = 5;  // the request itself cannot be computed

// AutomationError, SettingsError and PathFault become the exceptions of the module from here on.
void translateErrors();

// Warns as zelprofiler01.TerrainWarning, in the place of the caller of the package's function. Throws when
// warnings are errors.
void warnOfTerrain(const std::string& text);

// As __reduce_ex__ of a class: Python's oldest ways to pickle would take the object apart, which ends the
// process inside of pybind11.
py::object refuseToPickle(const py::object& self, int protocol);

// A text of the library, UTF-8; bytes that are none are replaced.
py::str textOf(const std::string& text);
// A file name, as os.fsdecode has it.
py::str pathOf(const std::string& path);

}  // namespace zel::python
