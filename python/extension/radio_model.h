// The radio model over heights that Python has.
#pragma once

#include <pybind11/pybind11.h>

namespace zel::python {

void bindRadioModel(pybind11::module_& module);

}  // namespace zel::python
