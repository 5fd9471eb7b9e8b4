// Rows of numbers between Python and the library, without copies: what Python has is read in its own memory,
// and results lend theirs. Both by the buffer protocol, so that no array package is needed.
#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zel::python {

namespace py = pybind11;

// Memory of a result, kept for as long as Python looks at it.
struct Column {
  std::shared_ptr<const void> owner;
  void* data = nullptr;
  std::string format;  // as of the module struct
  py::ssize_t itemSize = 0;
  std::vector<py::ssize_t> shape;
  std::vector<py::ssize_t> strides;  // bytes
};

void bindColumn(py::module_& module);

// A member of `count` neighbours, each `stride` bytes from the one before.
template <typename Number>
Column lentEvery(std::shared_ptr<const void> owner, const Number* first, std::size_t count,
                 std::size_t stride) {
  // Results are written by nobody else: Python may.
  return {std::move(owner), const_cast<Number*>(first),        py::format_descriptor<Number>::format(),
          sizeof(Number),   {static_cast<py::ssize_t>(count)}, {static_cast<py::ssize_t>(stride)}};
}

template <typename Number>
Column lent(std::shared_ptr<const void> owner, const std::vector<Number>& numbers) {
  return lentEvery(std::move(owner), numbers.data(), numbers.size(), sizeof(Number));
}

// As rows, the last of the extents running fastest.
template <typename Number>
Column lent(std::vector<Number> numbers, const std::vector<std::size_t>& extents) {
  const auto owner = std::make_shared<const std::vector<Number>>(std::move(numbers));
  Column column = lent(owner, *owner);
  column.shape.clear();
  column.strides.assign(extents.size(), 0);
  py::ssize_t stride = sizeof(Number);
  for (std::size_t i = extents.size(); i-- > 0;) {
    column.strides[i] = stride;
    stride *= static_cast<py::ssize_t>(extents[i]);
  }
  for (const std::size_t extent : extents) column.shape.push_back(static_cast<py::ssize_t>(extent));
  return column;
}

// An argument of a call on many paths: nothing (None), one number for all, or a number a path. Made and
// released with the interpreter lock, read without it.
class Numbers {
 public:
  // A buffer must be one of 64-bit floats, of one dimension, and have `count` of them.
  Numbers(const py::object& value, std::size_t count);

  bool given() const { return given_; }
  double operator[](std::size_t i) const;
  std::optional<double> optional(std::size_t i) const;

 private:
  bool given_ = false;
  double number_ = 0;
  std::optional<py::buffer_info> buffer_;
};

// Elevations of one path, or of a path a row. Made and released with the interpreter lock.
class ElevationRows {
 public:
  // A buffer of 64-bit floats in one or two dimensions, or a list of buffers of one.
  explicit ElevationRows(const py::object& value);

  std::size_t count() const { return rows_.size(); }
  // In its own memory; gathered in `scratch` where the elevations are not neighbours there.
  std::span<const double> row(std::size_t i, std::vector<double>& scratch) const;

 private:
  struct Row {
    const char* first;
    std::size_t count;
    py::ssize_t stride;
  };
  void add(const py::object& value);

  std::vector<py::buffer_info> buffers_;
  std::vector<Row> rows_;
};

}  // namespace zel::python
