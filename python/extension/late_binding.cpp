#include "extension/late_binding.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "extension/calculators.h"
#include "extension/errors.h"
#include "extension/interpreter_lock.h"
#include "zel/members.h"
#include "zel/profile_control.h"

namespace zel::python {
namespace {

using Kind = AutomationValue::Kind;

[[noreturn]] void fail(AutomationErrorCode code, const std::string& text) {
  throw AutomationError(code, text);
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower(a[i]) != lower(b[i])) return false;
  return true;
}

// What Python raised, as the component knows failures. With the interpreter lock.
[[noreturn]] void failOf(const std::string& member, py::error_already_set& error) {
  AutomationErrorCode code = AutomationErrorCode::kFailed;
  if (error.matches(PyExc_AttributeError)) code = AutomationErrorCode::kMemberNotFound;
  if (error.matches(PyExc_OverflowError)) code = AutomationErrorCode::kOverflow;
  // Not by the attribute __name__: a class of classes may have one that raises.
  std::string text = reinterpret_cast<PyTypeObject*>(error.type().ptr())->tp_name;
  try {
    text += ": " + std::string(py::str(error.value()));
  } catch (const py::error_already_set&) {
    text += " (whose text cannot be had)";
  }
  // The component goes on with an error; the interrupt is raised when it has come back to Python. After the
  // text, whose making would meet it.
  if (error.matches(PyExc_KeyboardInterrupt)) PyErr_SetInterrupt();
  fail(code, member + ": " + text);
}

// A Python object as the component sees it. Its members are the attributes; a name without an attribute of
// just that case stands for the first one, in the order of dir(), that differs from it in case only. They are
// read each time they are asked for.
class PythonObject final : public Dispatch {
 public:
  static DispatchPtr of(const py::handle& object) {
    std::weak_ptr<PythonObject>& known = wrapped()[object.ptr()];
    std::shared_ptr<PythonObject> wrapper = known.lock();
    if (wrapper == nullptr) known = wrapper = std::make_shared<PythonObject>(object);
    return wrapper;
  }

  explicit PythonObject(const py::handle& object) : object_(object.inc_ref().ptr()) {}

  // The component may keep an object longer than the interpreter lives; it is then left as it is.
  ~PythonObject() override {
    if (interpreterEnds() && (Py_IsInitialized() == 0 || PyGILState_Check() == 0)) return;
    const LockHeld lock;
    const auto known = wrapped().find(object_);
    if (known != wrapped().end() && known->second.expired()) wrapped().erase(known);
    Py_DECREF(object_);
  }

  py::object object() const { return py::reinterpret_borrow<py::object>(object_); }

  // Every name has an id: whether there is such an attribute may change from one moment to the next.
  std::int32_t dispatchId(std::string_view name) const override {
    const LockHeld lock;
    for (std::size_t i = 0; i < names_.size(); ++i)
      if (equalIgnoringCase(names_[i], name)) return static_cast<std::int32_t>(i + 1);
    names_.emplace_back(name);
    return static_cast<std::int32_t>(names_.size());
  }

  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    const LockHeld lock;
    if (id < 1 || static_cast<std::size_t>(id) > names_.size())
      fail(AutomationErrorCode::kMemberNotFound, "there is no member " + std::to_string(id));
    const std::string name = names_[static_cast<std::size_t>(id - 1)];
    try {
      return invoked(name, access, arguments);
    } catch (py::error_already_set& error) {
      failOf(name, error);
    }
  }

 private:
  // Lives as long as the process: the component may release an object at its end.
  static std::unordered_map<PyObject*, std::weak_ptr<PythonObject>>& wrapped() {
    static auto& objects = *new std::unordered_map<PyObject*, std::weak_ptr<PythonObject>>();
    return objects;
  }

  AutomationValue invoked(const std::string& name, Access access,
                          std::span<const AutomationValue> arguments) const {
    if (access == Access::kLet) {
      if (arguments.size() != 1)
        fail(AutomationErrorCode::kWrongArgumentCount, name + " takes one new value");
      attribute(name);  // one that is not there is not made
      py::setattr(object_, attributeName(name).c_str(), objectOf(arguments.front()));
      return {};
    }
    const py::object member = attribute(name);
    if (access == Access::kGet) {
      if (!arguments.empty()) fail(AutomationErrorCode::kWrongArgumentCount, name + " takes no arguments");
      return named(name, member);
    }
    if (PyCallable_Check(member.ptr()) == 0) fail(AutomationErrorCode::kWrongAccess, name + " is no method");
    py::tuple values(arguments.size());
    for (std::size_t i = 0; i < arguments.size(); ++i) values[i] = objectOf(arguments[i]);
    return named(name, member(*values));
  }

  static AutomationValue named(const std::string& name, const py::object& value) {
    try {
      return valueOf(value);
    } catch (const AutomationError& error) {
      fail(error.code(), name + ": " + error.what());
    }
  }

  py::object attribute(const std::string& name) const {
    try {
      return py::getattr(object_, name.c_str());
    } catch (const py::error_already_set& error) {
      const std::string other = error.matches(PyExc_AttributeError) ? attributeName(name) : name;
      if (other == name) throw;
      return py::getattr(object_, other.c_str());
    }
  }

  std::string attributeName(const std::string& name) const {
    std::string found;
    for (const py::handle entry : py::reinterpret_steal<py::list>(PyObject_Dir(object_))) {
      const std::string attribute = py::str(entry);
      if (attribute == name) return name;
      if (found.empty() && equalIgnoringCase(attribute, name)) found = attribute;
    }
    return found.empty() ? name : found;
  }

  PyObject* object_;
  mutable std::vector<std::string> names_;  // by id; guarded by the interpreter lock
};

AutomationValue integerOf(PyObject* integer) {
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(integer, &overflow);
  constexpr long long kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr long long kMost = std::numeric_limits<std::int32_t>::max();
  if (overflow == 0 && value >= kLeast && value <= kMost) return static_cast<std::int32_t>(value);
  // The member says whether that fits.
  const double number = PyLong_AsDouble(integer);
  if (PyErr_Occurred() != nullptr) {
    PyErr_Clear();
    fail(AutomationErrorCode::kOverflow, "the whole number has too many digits");
  }
  return number;
}

std::string utf8Of(PyObject* text) {
  py::ssize_t size = 0;
  const char* bytes = PyUnicode_AsUTF8AndSize(text, &size);
  if (bytes != nullptr) return {bytes, static_cast<std::size_t>(size)};
  PyErr_Clear();
  fail(AutomationErrorCode::kTypeMismatch, "the text has half of a surrogate pair, which is no character");
}

// Of a type that is none of Python's own: a number of numpy, a Decimal; nothing when it is no number.
std::optional<AutomationValue> foreignNumber(PyObject* object) {
  // The booleans of numpy are no integers to Python. They are "numpy.bool_", from numpy 2 on "numpy.bool".
  const std::string_view type = Py_TYPE(object)->tp_name;
  if (type == "numpy.bool_" || type == "numpy.bool") {
    const int truth = PyObject_IsTrue(object);
    if (truth >= 0) return AutomationValue(truth == 1);
    PyErr_Clear();
  }
  if (PyIndex_Check(object) != 0) {
    if (PyObject* integer = PyNumber_Index(object))
      return integerOf(py::reinterpret_steal<py::object>(integer).ptr());
    PyErr_Clear();
  }
  const PyNumberMethods* methods = Py_TYPE(object)->tp_as_number;
  if (methods == nullptr || methods->nb_float == nullptr) return std::nullopt;
  const double number = PyFloat_AsDouble(object);
  if (PyErr_Occurred() == nullptr) return AutomationValue(number);
  PyErr_Clear();
  return std::nullopt;
}

py::object automationObject() {
  return py::module_::import("zelprofiler01._objects").attr("AutomationObject");
}

DispatchPtr dispatchOf(const py::handle& object) {
  if (py::isinstance<ObjectHandle>(object)) return object.cast<const ObjectHandle&>().object();
  if (py::isinstance(object, automationObject()))
    return object.attr("_handle").cast<const ObjectHandle&>().object();
  return PythonObject::of(object);
}

// The class is released as it is made: one at a time with everything else that has the component to itself.
void releaseControl(ProfileControl* control) {
  if (interpreterEnds()) {
    // A thread that holds the component may never run again.
    const std::unique_lock lock(componentMutex(), std::try_to_lock);
    if (lock.owns_lock()) delete control;
    return;
  }
  const LockHeld held;  // whatever lets go of the last reference
  const LockReleased released;
  const std::lock_guard lock(componentMutex());
  delete control;
  controlReleased();
}

ObjectHandle makeControl() {
  const LockReleased released;
  const std::lock_guard lock(componentMutex());
  auto control = std::make_unique<ProfileControl>();
  controlMade();
  settingsChanged();  // other threads, which cannot read them from here on, have them
  return ObjectHandle(std::shared_ptr<ProfileControl>(control.release(), releaseControl));
}

bool changesSettings(std::string_view name, Access access) {
  return access == Access::kLet || equalIgnoringCase(name, "SetClientApp") ||
         equalIgnoringCase(name, "ShowOptionsForm");
}

py::tuple argumentsOf(const DescribedMember& member) {
  py::tuple arguments(member.arguments.size());
  for (std::size_t i = 0; i < member.arguments.size(); ++i)
    arguments[i] = py::make_tuple(member.arguments[i].name, member.arguments[i].type);
  return arguments;
}

py::list memberRows() {
  py::list rows;
  for (const DescribedMember& member : describedMembers())
    rows.append(py::make_tuple(member.name, member.access, member.id, argumentsOf(member), member.resultType,
                               member.description));
  return rows;
}

}  // namespace

AutomationValue valueOf(const py::handle& value) {
  PyObject* object = value.ptr();
  if (object == Py_None) return {};
  if (PyBool_Check(object)) return object == Py_True;
  if (PyFloat_Check(object)) return PyFloat_AS_DOUBLE(object);
  if (PyLong_Check(object)) return integerOf(object);
  if (PyUnicode_Check(object)) return utf8Of(object);
  if (std::optional<AutomationValue> number = foreignNumber(object)) return *number;
  return dispatchOf(value);
}

py::object objectOf(const AutomationValue& value) {
  switch (value.kind()) {
    case Kind::kEmpty:
      return py::none();
    case Kind::kBoolean:
      return py::bool_(value.toBoolean());
    case Kind::kInt16:
    case Kind::kInt32:
      return py::int_(value.toInt32());
    case Kind::kFloat32:
    case Kind::kFloat64:
      return py::float_(value.toFloat64());
    case Kind::kText:
      return textOf(value.toText());
    case Kind::kObject:
      break;
  }
  const DispatchPtr object = value.toObject();
  if (object == nullptr) return py::none();
  if (const auto ours = std::dynamic_pointer_cast<PythonObject>(object)) return ours->object();
  return automationObject()(ObjectHandle(object));
}

py::object ObjectHandle::invoke(const std::string& name, Access access, const py::tuple& arguments) const {
  std::vector<AutomationValue> values;
  for (const py::handle argument : arguments) {
    try {
      values.push_back(valueOf(argument));
    } catch (const AutomationError& error) {
      fail(error.code(), name + ", argument " + std::to_string(values.size() + 1) + ": " + error.what());
    }
  }
  const DispatchPtr kept = object_;  // under a box that the call shows Python may release the object
  const bool control = dynamic_cast<const ProfileControl*>(kept.get()) != nullptr;
  AutomationValue result;
  {
    const LockReleased released;
    result = kept->invoke(kept->dispatchId(name), access, values);
    if (control && changesSettings(name, access)) settingsChanged();
  }
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  return objectOf(result);
}

bool ObjectHandle::has(const std::string& name) const {
  try {
    object_->dispatchId(name);
    return true;
  } catch (const AutomationError& error) {
    if (error.code() != AutomationErrorCode::kMemberNotFound) throw;
    return false;
  }
}

void bindLateBinding(py::module_& module) {
  py::enum_<Access>(module, "Access")
      .value("GET", Access::kGet)
      .value("LET", Access::kLet)
      .value("METHOD", Access::kMethod)
      .def("__reduce_ex__", &refuseToPickle);
  py::class_<ObjectHandle>(module, "ObjectHandle", "An object of the component.")
      .def("invoke", &ObjectHandle::invoke, py::arg("name"), py::arg("access"), py::arg("arguments"))
      .def("has", &ObjectHandle::has, py::arg("name"))
      .def("__reduce_ex__", &refuseToPickle)
      .def("identity", [](const ObjectHandle& handle) {
        return reinterpret_cast<std::uintptr_t>(handle.object().get());
      });
  module.def("make_control", &makeControl);
  module.def("make_station",
             [](const py::object& latitude, const py::object& longitude, const py::object& height) {
               return ObjectHandle(makePropertyBag(
                   {{"Lat", valueOf(latitude)}, {"Lon", valueOf(longitude)}, {"AntHt", valueOf(height)}}));
             });
  module.def("member_rows", &memberRows);
}

}  // namespace zel::python
