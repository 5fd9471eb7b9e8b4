// Late binding between Python and the component: Python objects that the component reaches by the names of
// their members, and objects of the component that Python does.
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "zel/automation.h"

namespace zel::python {

namespace py = pybind11;

// With the interpreter lock. None, bool, int, float and str as they are; any other number by what Python
// makes of it; anything else as an object, the same one each time. Throws AutomationError.
AutomationValue valueOf(const py::handle& value);
// An object that came from Python is that object again.
py::object objectOf(const AutomationValue& value);

// An object of the component.
class ObjectHandle {
 public:
  explicit ObjectHandle(DispatchPtr object) : object_(std::move(object)) {}

  const DispatchPtr& object() const { return object_; }
  // Any member, in any case of its letters. Without the interpreter lock while the component works.
  py::object invoke(const std::string& name, Access access, const py::tuple& arguments) const;
  bool has(const std::string& name) const;

 private:
  DispatchPtr object_;
};

void bindLateBinding(py::module_& module);

}  // namespace zel::python
