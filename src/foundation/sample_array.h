// An array indexed from 1, whose every access is checked: an index outside it is RuntimeError 9.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "foundation/runtime_error.h"

namespace zel {

template <typename T>
class SampleArray {
 public:
  SampleArray() = default;
  explicit SampleArray(std::size_t size, T value = T{}) : values_(size, value) {}
  explicit SampleArray(std::vector<T> values) : values_(std::move(values)) {}

  T& operator[](std::int64_t index) { return values_[checked(index)]; }
  const T& operator[](std::int64_t index) const { return values_[checked(index)]; }

  std::int32_t size() const noexcept { return static_cast<std::int32_t>(values_.size()); }
  bool empty() const noexcept { return values_.empty(); }
  void resize(std::size_t size) { values_.assign(size, T{}); }

  // The values in order; element 0 of the span is the array's element 1.
  std::span<T> span() noexcept { return values_; }
  std::span<const T> span() const noexcept { return values_; }

  friend bool operator==(const SampleArray&, const SampleArray&) = default;

 private:
  std::size_t checked(std::int64_t index) const {
    if (index < 1 || static_cast<std::size_t>(index) > values_.size())
      throw RuntimeError::subscriptOutOfRange();
    return static_cast<std::size_t>(index - 1);
  }

  std::vector<T> values_;
};

}  // namespace zel
