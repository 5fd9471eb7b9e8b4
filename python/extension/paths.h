// Losses, heights and profiles of paths over the terrain: one, or many in one call.
#pragma once

#include <pybind11/pybind11.h>

namespace zel::python {

void bindPaths(pybind11::module_& module);

}  // namespace zel::python
