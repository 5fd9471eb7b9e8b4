// Results of the library as dictionaries, from which the package makes its classes
// (zelprofiler01/_results.py): a key a member, under the names that the classes have.
#pragma once

#include <pybind11/pybind11.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "zel/path_loss.h"
#include "zel/path_profile.h"
#include "zel/terrain.h"

namespace zel::python {

namespace py = pybind11;

py::dict dictionaryOf(const TerrainProvenance& terrain);
py::dict dictionaryOf(const PathLoss& loss);
// The rows of numbers are lent out of the profile.
py::dict dictionaryOf(const std::shared_ptr<const PathProfile>& profile);

py::tuple pair(const Position& position);
py::tuple pair(const std::array<double, 2>& values);
py::tuple texts(const std::vector<std::string>& texts);
py::tuple paths(const std::vector<std::string>& paths);

}  // namespace zel::python
