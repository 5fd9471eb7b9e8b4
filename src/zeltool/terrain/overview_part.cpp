#include "zeltool/terrain/overview_part.h"

#include <cmath>
#include <limits>

namespace zel {
namespace {

constexpr int kStripLevel = 7;  // 128 rows are read at once

// Means, and how many heights each is of.
struct MeanCells {
  std::int32_t columns = 0, rows = 0;
  std::vector<float> means;
  std::vector<std::uint32_t> counts;

  void append(const MeanCells& below) {
    rows += below.rows;
    means.insert(means.end(), below.means.begin(), below.means.end());
    counts.insert(counts.end(), below.counts.begin(), below.counts.end());
  }
};

// Sums of the cells that fall into one row of the next level.
class RowSums {
 public:
  explicit RowSums(std::int32_t columns)
      : sums_(static_cast<std::size_t>(columns)), counts_(static_cast<std::size_t>(columns)) {}

  template <typename Height, typename Count>
  void add(std::int32_t columns, Height&& height, Count&& count) {
    const auto last = static_cast<std::int32_t>(sums_.size()) - 1;
    for (std::int32_t i = 0; i < columns; ++i) {
      const std::uint32_t n = count(i);
      if (n == 0) continue;
      // The last cell may have three columns.
      const auto cell = static_cast<std::size_t>(std::min(i / 2, last));
      sums_[cell] += static_cast<double>(height(i)) * n;
      counts_[cell] += n;
    }
  }

  void moveTo(MeanCells& cells) {
    for (std::size_t i = 0; i < sums_.size(); ++i) {
      cells.means.push_back(counts_[i] > 0 ? static_cast<float>(sums_[i] / counts_[i])
                                           : std::numeric_limits<float>::quiet_NaN());
      cells.counts.push_back(counts_[i]);
      sums_[i] = 0;
      counts_[i] = 0;
    }
    ++cells.rows;
  }

 private:
  std::vector<double> sums_;
  std::vector<std::uint32_t> counts_;
};

// One level further. `columns`, `rows` are the sizes it has.
template <typename AddRow>
MeanCells halved(std::int32_t columns, std::int32_t rows, std::int32_t rowsBefore, AddRow&& addRow) {
  MeanCells cells;
  cells.columns = columns;
  const std::size_t size = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  cells.means.reserve(size);
  cells.counts.reserve(size);
  RowSums sums(columns);
  for (std::int32_t row = 0; row < rows; ++row) {
    const std::int32_t end = row + 1 < rows ? 2 * row + 2 : rowsBefore;
    for (std::int32_t before = 2 * row; before < end; ++before) addRow(sums, before);
    sums.moveTo(cells);
  }
  return cells;
}

MeanCells halved(const MeanCells& fine, std::int32_t columns, std::int32_t rows) {
  return halved(columns, rows, fine.rows, [&](RowSums& sums, std::int32_t row) {
    const std::size_t start = static_cast<std::size_t>(row) * static_cast<std::size_t>(fine.columns);
    const float* means = fine.means.data() + start;
    const std::uint32_t* counts = fine.counts.data() + start;
    sums.add(
        fine.columns, [&](std::int32_t i) { return means[i]; }, [&](std::int32_t i) { return counts[i]; });
  });
}

MeanCells halved(const HeightBlock& posts, std::int32_t columns, std::int32_t rows) {
  return halved(columns, rows, posts.window.rows, [&](RowSums& sums, std::int32_t row) {
    const float* heights =
        posts.heights.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(posts.window.columns);
    sums.add(
        posts.window.columns, [&](std::int32_t i) { return heights[i]; },
        [&](std::int32_t i) { return std::isnan(heights[i]) ? 0U : 1U; });
  });
}

}  // namespace

LevelAxis columnAxis(const GridGeometry& grid, int level) {
  return grid.period() > 0 ? LevelAxis(grid.period(), level, true) : LevelAxis(grid.columns(), level);
}

LevelAxis rowAxis(const GridGeometry& grid, int level) { return {grid.rows(), level}; }

int coarsestLevel(const GridGeometry& grid) {
  int level = 0;
  while (level < kPartLevel && (columnAxis(grid, level).count() > 1 || rowAxis(grid, level).count() > 1))
    ++level;
  return level;
}

PartPlace partOf(const GridGeometry& grid, std::int32_t column, std::int32_t row, int level) {
  // The last part may be wider than the others.
  return {std::min(column >> (kPartLevel - level), columnAxis(grid, kPartLevel).count() - 1),
          std::min(row >> (kPartLevel - level), rowAxis(grid, kPartLevel).count() - 1)};
}

PostWindow partWindow(const GridGeometry& grid, PartPlace part, int level) {
  const auto along = [&](std::int32_t place, const LevelAxis& parts, const LevelAxis& cells,
                         std::int32_t& first, std::int32_t& count) {
    first = place << (kPartLevel - level);
    const std::int32_t end = place + 1 < parts.count() ? (place + 1) << (kPartLevel - level) : cells.count();
    count = end - first;
  };
  PostWindow window;
  along(part.column, columnAxis(grid, kPartLevel), columnAxis(grid, level), window.column, window.columns);
  along(part.row, rowAxis(grid, kPartLevel), rowAxis(grid, level), window.row, window.rows);
  return window;
}

std::optional<std::vector<HeightBlock>> makeOverviewPart(const RasterFile& file, PartPlace part, int finest,
                                                         const std::atomic<bool>* cancelled) {
  const GridGeometry& grid = file.placement().grid;
  const PostWindow posts = partWindow(grid, part, 0);
  std::vector<MeanCells> levels(kKeptLevel + 1);
  const LevelAxis strips(posts.rows, kStripLevel);
  for (std::int32_t strip = 0; strip < strips.count(); ++strip) {
    if (cancelled && cancelled->load(std::memory_order_relaxed)) return std::nullopt;
    const std::int32_t rows = strips.end(strip) - strips.first(strip);
    const HeightBlock heights =
        file.readPosts({posts.column, posts.row + strips.first(strip), posts.columns, rows});
    MeanCells cells;
    for (int level = 1; level <= kKeptLevel; ++level) {
      const std::int32_t columns = LevelAxis(posts.columns, level).count(),
                         cellRows = LevelAxis(rows, level).count();
      cells = level == 1 ? halved(heights, columns, cellRows) : halved(cells, columns, cellRows);
      if (level < finest) continue;
      levels[static_cast<std::size_t>(level)].columns = columns;
      levels[static_cast<std::size_t>(level)].append(cells);
    }
  }
  for (int level = kKeptLevel + 1; level <= kPartLevel; ++level)
    levels.push_back(
        halved(levels.back(), LevelAxis(posts.columns, level).count(), LevelAxis(posts.rows, level).count()));

  std::vector<HeightBlock> blocks;
  for (int level = finest; level <= kPartLevel; ++level)
    blocks.push_back(
        {partWindow(grid, part, level), std::move(levels[static_cast<std::size_t>(level)].means)});
  return blocks;
}

}  // namespace zel
