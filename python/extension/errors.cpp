#include "extension/errors.h"

#include <utility>

#include "zel/automation.h"
#include "zel/settings.h"

namespace zel::python {
namespace {

py::str decoded(const std::string& text, const char* bad) {
  PyObject* result = PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), bad);
  if (result == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(result);
}

py::object member(const char* name) { return py::module_::import("zelprofiler01._errors").attr(name); }

const char* codeName(AutomationErrorCode code) {
  switch (code) {
    case AutomationErrorCode::kMemberNotFound:
      return "MemberNotFoundError";
    case AutomationErrorCode::kWrongAccess:
      return "WrongAccessError";
    case AutomationErrorCode::kWrongArgumentCount:
      return "WrongArgumentCountError";
    case AutomationErrorCode::kTypeMismatch:
      return "TypeMismatchError";
    case AutomationErrorCode::kOverflow:
      return "ValueOverflowError";
    case AutomationErrorCode::kWrongThread:
      return "WrongThreadError";
    case AutomationErrorCode::kFailed:
      return "MemberFailedError";
  }
  return "AutomationError";
}

void raise(const py::object& exception) {
  PyErr_SetObject(py::type::handle_of(exception).ptr(), exception.ptr());
}

void raisePathFault(const PathFault& fault) {
  const py::object index = fault.index() ? py::object(py::int_(*fault.index())) : py::object(py::none());
  raise(member("path_fault")(fault.status(), textOf(fault.what()), index, textOf(fault.parameter())));
}

}  // namespace

void translateErrors() {
  py::register_local_exception_translator([](std::exception_ptr pointer) {
    try {
      if (pointer) std::rethrow_exception(std::move(pointer));
    } catch (const AutomationError& error) {
      raise(member(codeName(error.code()))(textOf(error.what())));
    } catch (const SettingsError& error) {
      raise(member("SettingsError")(textOf(error.what())));
    } catch (const PathFault& fault) {
      raisePathFault(fault);
    }
  });
}

void warnOfTerrain(const std::string& text) {
  constexpr py::ssize_t kCallerOfThePackage = 2;
  if (PyErr_WarnEx(member("TerrainWarning").ptr(), text.c_str(), kCallerOfThePackage) != 0)
    throw py::error_already_set();
}

py::object refuseToPickle(const py::object& self, int) {
  throw py::type_error(std::string(Py_TYPE(self.ptr())->tp_name) + " cannot be pickled or copied");
}

py::str textOf(const std::string& text) { return decoded(text, "replace"); }
py::str pathOf(const std::string& path) { return decoded(path, "surrogateescape"); }

}  // namespace zel::python
