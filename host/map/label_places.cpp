#include "map/label_places.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace zel::host {
namespace {

constexpr double kTouching = 1e-6;  // pixels: boxes side by side do not overlap for the rounding

bool overlap(const PixelBox& one, const PixelBox& other) {
  return one.left < other.left + other.width - kTouching && other.left < one.left + one.width - kTouching &&
         one.top < other.top + other.height - kTouching && other.top < one.top + one.height - kTouching;
}

bool within(const PixelBox& box, const PixelBox& area) {
  return box.left >= area.left - kTouching && box.top >= area.top - kTouching &&
         box.left + box.width <= area.left + area.width + kTouching &&
         box.top + box.height <= area.top + area.height + kTouching;
}

bool within(MapPoint at, const PixelBox& area) {
  return at.x >= area.left && at.x <= area.left + area.width && at.y >= area.top &&
         at.y <= area.top + area.height;
}

bool isBox(const PixelBox& box) {
  return std::isfinite(box.left) && std::isfinite(box.top) && std::isfinite(box.width) &&
         std::isfinite(box.height) && box.width > 0 && box.height > 0;
}

// What is taken already, in cells of the area, so that a box is compared with its neighbours alone.
class Taken {
 public:
  explicit Taken(const PixelBox& area)
      : area_(area), columns_(cells(area.width, kCellWidth)), rows_(cells(area.height, kCellHeight)) {
    heads_.assign(columns_ * rows_, kNone);
  }

  void add(const PixelBox& box) {
    if (!isBox(box) || !overlap(box, area_)) return;
    boxes_.push_back(box);
    const auto index = static_cast<std::int32_t>(boxes_.size() - 1);
    eachCell(box, [&](std::int32_t& head) {
      entries_.push_back({index, head});
      head = static_cast<std::int32_t>(entries_.size() - 1);
      return true;
    });
  }

  bool free(const PixelBox& box) {
    return eachCell(box, [&](std::int32_t head) {
      for (std::int32_t i = head; i != kNone; i = entries_[static_cast<std::size_t>(i)].next)
        if (overlap(boxes_[static_cast<std::size_t>(entries_[static_cast<std::size_t>(i)].box)], box))
          return false;
      return true;
    });
  }

 private:
  static constexpr double kCellWidth = 32, kCellHeight = 16;  // pixels: about half a name
  static constexpr double kMostCells = 1000;                  // each way
  static constexpr std::int32_t kNone = -1;

  struct Entry {
    std::int32_t box, next;
  };

  static std::size_t cells(double length, double cell) {
    return static_cast<std::size_t>(std::clamp(std::ceil(length / cell), 1.0, kMostCells));
  }

  static std::size_t cell(double from, double length, std::size_t count) {
    const double place = std::floor(from / length * static_cast<double>(count));
    return static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(count - 1)));
  }

  template <typename Visit>
  bool eachCell(const PixelBox& box, Visit visit) {
    const double left = box.left - area_.left, top = box.top - area_.top;
    const std::size_t lastColumn = cell(left + box.width, area_.width, columns_);
    const std::size_t lastRow = cell(top + box.height, area_.height, rows_);
    for (std::size_t row = cell(top, area_.height, rows_); row <= lastRow; ++row)
      for (std::size_t column = cell(left, area_.width, columns_); column <= lastColumn; ++column)
        if (!visit(heads_[row * columns_ + column])) return false;
    return true;
  }

  PixelBox area_;
  std::size_t columns_, rows_;
  std::vector<std::int32_t> heads_;
  std::vector<Entry> entries_;
  std::vector<PixelBox> boxes_;
};

bool canBePlaced(const LabelWish& wish, const PixelBox& area) {
  return isBox({wish.at.x, wish.at.y, wish.width, wish.height}) && within(wish.at, area);
}

double gapOf(const LabelWish& wish) { return wish.gap > 0 && std::isfinite(wish.gap) ? wish.gap : 0; }

std::array<PixelBox, 8> candidates(const LabelWish& wish) {
  const double w = wish.width, h = wish.height, gap = gapOf(wish);
  const double right = wish.at.x + gap, left = wish.at.x - gap - w, middle = wish.at.x - w / 2;
  const double above = wish.at.y - gap - h, below = wish.at.y + gap, level = wish.at.y - h / 2;
  return {PixelBox{right, level, w, h}, {left, level, w, h},  {middle, above, w, h}, {middle, below, w, h},
          PixelBox{right, above, w, h}, {right, below, w, h}, {left, above, w, h},   {left, below, w, h}};
}

// For what is shown in any case: the first candidate within the area, else the first one.
PixelBox forced(const std::array<PixelBox, 8>& boxes, const PixelBox& area) {
  const auto inside =
      std::find_if(boxes.begin(), boxes.end(), [&](const PixelBox& box) { return within(box, area); });
  return inside != boxes.end() ? *inside : boxes.front();
}

std::optional<PixelBox> place(const LabelWish& wish, const PixelBox& area, Taken& taken) {
  const std::array<PixelBox, 8> boxes = candidates(wish);
  for (const PixelBox& box : boxes)
    if (within(box, area) && taken.free(box)) return box;
  if (wish.always) return forced(boxes, area);
  return std::nullopt;
}

}  // namespace

std::vector<std::optional<PixelBox>> placeLabels(std::span<const LabelWish> wishes, const PixelBox& area,
                                                 std::span<const PixelBox> taken) {
  std::vector<std::optional<PixelBox>> places(wishes.size());
  if (!isBox(area)) return places;
  Taken occupied(area);
  for (const PixelBox& box : taken) occupied.add(box);
  for (const LabelWish& wish : wishes) {
    const double gap = gapOf(wish);
    occupied.add({wish.at.x - gap, wish.at.y - gap, 2 * gap, 2 * gap});
  }
  std::vector<std::size_t> order(wishes.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t one, std::size_t other) {
    if (wishes[one].always != wishes[other].always) return wishes[one].always;
    return wishes[one].priority > wishes[other].priority;
  });
  for (const std::size_t index : order) {
    if (!canBePlaced(wishes[index], area)) continue;
    places[index] = place(wishes[index], area, occupied);
    if (places[index]) occupied.add(*places[index]);
  }
  return places;
}

}  // namespace zel::host
