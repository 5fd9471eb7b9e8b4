#include "extension/columns.h"

#include <cstring>

#include "extension/errors.h"

namespace zel::python {
namespace {

double numberAt(const char* place) {
  double number = 0;
  std::memcpy(&number, place, sizeof number);
  return number;
}

// As of the module struct. Where numbers are not aligned numpy marks their order of bytes; another one than
// the machine's has been turned before.
bool isDouble(const std::string& format) { return format == "d" || format == "=d" || format == "@d"; }

py::buffer_info requested(const py::object& value) {
  py::buffer_info buffer = py::reinterpret_borrow<py::buffer>(value).request();
  if (!isDouble(buffer.format)) throw py::type_error("64-bit floats are wanted, not " + buffer.format);
  return buffer;
}

}  // namespace

void bindColumn(py::module_& module) {
  py::class_<Column>(module, "Column", py::buffer_protocol(),
                     "Memory of a result, lent by the buffer protocol.")
      .def("__reduce_ex__", &refuseToPickle)
      .def_buffer([](Column& column) {
        return py::buffer_info(column.data, column.itemSize, column.format,
                               static_cast<py::ssize_t>(column.shape.size()), column.shape, column.strides);
      });
}

Numbers::Numbers(const py::object& value, std::size_t count) {
  if (value.is_none()) return;
  given_ = true;
  if (PyFloat_Check(value.ptr())) {
    number_ = PyFloat_AS_DOUBLE(value.ptr());
    return;
  }
  buffer_ = requested(value);
  if (buffer_->ndim != 1 || static_cast<std::size_t>(buffer_->shape[0]) != count)
    throw py::value_error("an argument does not have " + std::to_string(count) + " numbers");
}

double Numbers::operator[](std::size_t i) const {
  if (!buffer_) return number_;
  return numberAt(static_cast<const char*>(buffer_->ptr) + static_cast<py::ssize_t>(i) * buffer_->strides[0]);
}

std::optional<double> Numbers::optional(std::size_t i) const {
  if (!given_) return std::nullopt;
  return (*this)[i];
}

ElevationRows::ElevationRows(const py::object& value) {
  if (PyList_Check(value.ptr()) == 0) {
    add(value);
    return;
  }
  for (const py::handle row : py::reinterpret_borrow<py::list>(value))
    add(py::reinterpret_borrow<py::object>(row));
}

void ElevationRows::add(const py::object& value) {
  buffers_.push_back(requested(value));
  const py::buffer_info& buffer = buffers_.back();
  if (buffer.ndim != 1 && buffer.ndim != 2)
    throw py::value_error("elevations have one dimension, or two for many paths");
  const bool many = buffer.ndim == 2;
  const py::ssize_t rows = many ? buffer.shape[0] : 1;
  const std::size_t last = many ? 1 : 0;
  for (py::ssize_t i = 0; i < rows; ++i)
    rows_.push_back({static_cast<const char*>(buffer.ptr) + (many ? i * buffer.strides[0] : 0),
                     static_cast<std::size_t>(buffer.shape[last]), buffer.strides[last]});
}

std::span<const double> ElevationRows::row(std::size_t i, std::vector<double>& scratch) const {
  const Row& row = rows_[i];
  const bool aligned = reinterpret_cast<std::uintptr_t>(row.first) % alignof(double) == 0;
  const bool neighbours = row.stride == static_cast<py::ssize_t>(sizeof(double)) || row.count < 2;
  if (aligned && neighbours) return {reinterpret_cast<const double*>(row.first), row.count};
  scratch.resize(row.count);
  for (std::size_t k = 0; k < row.count; ++k)
    scratch[k] = numberAt(row.first + static_cast<py::ssize_t>(k) * row.stride);
  return scratch;
}

}  // namespace zel::python
