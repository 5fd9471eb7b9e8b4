// What paths are computed from, and what is around them: settings, terrain sources, geodesics, windows,
// pictures.
#pragma once

#include <pybind11/pybind11.h>

namespace zel::python {

void bindSurroundings(pybind11::module_& module);

}  // namespace zel::python
