// How the posts along one axis of a raster are gathered into cells of an overview: 2 to the level posts a
// cell, counted from the first post. A rest of at least half a cell is a cell of its own; a smaller one goes
// to the last cell. So the cells of a level are made of whole cells of the level before. Level 0 is the
// posts.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zel {

class LevelAxis {
 public:
  // `around`: after the last post comes the first one again.
  LevelAxis(std::int32_t posts, int level, bool around = false)
      : posts_(posts), level_(level), around_(around), step_(std::int32_t{1} << level) {
    count_ = static_cast<std::int32_t>((std::int64_t{posts} + step_ / 2) >> level);
    count_ = std::max(count_, 1);
  }

  std::int32_t count() const { return count_; }
  double step() const { return step_; }  // posts
  bool around() const { return around_; }

  // Posts of a cell: the first, and the one after the last.
  std::int32_t first(std::int32_t cell) const { return cell << level_; }
  std::int32_t end(std::int32_t cell) const { return cell + 1 < count_ ? first(cell + 1) : posts_; }

  // The middle of a cell, in posts. Cells beyond the axis continue it in whole steps, or on the other side.
  double place(std::int64_t cell) const {
    if (around_) {
      const std::int64_t turn = floorDivide(cell, count_);
      return middle(static_cast<std::int32_t>(cell - turn * count_)) + static_cast<double>(turn) * posts_;
    }
    if (cell < 0) return middle(0) + static_cast<double>(cell) * step_;
    if (cell >= count_) return middle(count_ - 1) + static_cast<double>(cell - count_ + 1) * step_;
    return middle(static_cast<std::int32_t>(cell));
  }

  // The other way: between two middles in proportion.
  double cellAt(double place) const {
    if (!around_) return within(place);
    const double turn = std::floor((place - middle(0)) / posts_), rest = place - turn * posts_;
    const double last = middle(count_ - 1);
    const double cell =
        rest <= last ? within(rest) : count_ - 1 + (rest - last) / (middle(0) + posts_ - last);
    return cell + turn * count_;
  }

  // The cell of this axis that one beyond it stands for, when it goes around.
  std::int32_t wrapped(std::int64_t cell) const {
    return static_cast<std::int32_t>(cell - floorDivide(cell, count_) * count_);
  }

 private:
  static std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
    return a >= 0 ? a / b : -((-a + b - 1) / b);
  }
  double middle(std::int32_t cell) const { return 0.5 * (first(cell) + (end(cell) - 1.0)); }
  double within(double place) const {
    const double last = middle(count_ - 1);
    if (place >= last) return count_ - 1 + (place - last) / step_;
    const double before = count_ > 1 ? middle(count_ - 2) : last - step_;
    if (place > before) return count_ - 2 + (place - before) / (last - before);
    return (place - 0.5 * (step_ - 1)) / step_ + (count_ > 1 ? 0 : (0.5 * (step_ - 1) - middle(0)) / step_);
  }

  std::int32_t posts_, count_;
  int level_;
  bool around_;
  std::int32_t step_;
};

}  // namespace zel
