// The extension behind the package zelprofiler01, which is what scripts import: it has the classes, the
// exceptions and the shapes of arguments and results. What is here takes arguments that the package has put
// in order.
#include <pybind11/pybind11.h>

#include "extension/calculators.h"
#include "extension/columns.h"
#include "extension/errors.h"
#include "extension/late_binding.h"
#include "extension/paths.h"
#include "extension/radio_model.h"
#include "extension/surroundings.h"

namespace zel::python {
namespace {

void bindAll(pybind11::module_& module) {
  translateErrors();
  rememberHomeThread();
  bindColumn(module);
  bindLateBinding(module);
  bindPaths(module);
  bindRadioModel(module);
  bindSurroundings(module);
}

// As PYBIND11_MODULE has it, but for the refusal: the component is one for the process, and its lock on the
// interpreter that of the first.
PyObject* imported() {
  if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
    PyErr_SetString(PyExc_ImportError, "zelprofiler01 works in the first interpreter of a process alone");
    return nullptr;
  }
  static PyObject* made = nullptr;  // for imports after the first
  if (made != nullptr) return pybind11::handle(made).inc_ref().ptr();
  static pybind11::module_::module_def definition;
  PYBIND11_CHECK_PYTHON_VERSION
  PYBIND11_ENSURE_INTERNALS_READY
  auto module = pybind11::module_::create_extension_module("_zelprofiler01", nullptr, &definition);
  // Else another interpreter would be given a copy without being asked in here.
  definition.m_size = 0;
  try {
    bindAll(module);
    made = module.inc_ref().ptr();
    return module.ptr();
  }
  PYBIND11_CATCH_INIT_EXCEPTIONS
}

}  // namespace
}  // namespace zel::python

// NOLINTBEGIN(bugprone-reserved-identifier): the name that Python looks for.
extern "C" PYBIND11_EXPORT PyObject* PyInit__zelprofiler01();
PyObject* PyInit__zelprofiler01() { return zel::python::imported(); }
// NOLINTEND(bugprone-reserved-identifier)
