#include "zeltool/terrain/raster_file.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace zel {
namespace {

std::uint64_t nextId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

void OpenFiles::touched(RasterFile& file) {
  const std::lock_guard lock(mutex_);
  const auto place = std::find(files_.begin(), files_.end(), &file);
  if (place != files_.end()) {
    files_.splice(files_.begin(), files_, place);
    return;
  }
  files_.push_front(&file);
  for (auto it = std::prev(files_.end()); files_.size() > most_ && it != files_.begin();) {
    const auto candidate = it--;
    if ((*candidate)->closeUnlessBusy()) files_.erase(candidate);
  }
}

void OpenFiles::forget(RasterFile& file) {
  const std::lock_guard lock(mutex_);
  files_.remove(&file);
}

std::size_t OpenFiles::count() const {
  const std::lock_guard lock(mutex_);
  return files_.size();
}

RasterFile::RasterFile(std::string path, std::string shownPath, RasterPlacement placement,
                       std::shared_ptr<OpenFiles> openFiles)
    : id_(nextId()),
      path_(std::move(path)),
      shownPath_(std::move(shownPath)),
      placement_(std::move(placement)),
      openFiles_(std::move(openFiles)) {}

RasterFile::~RasterFile() { openFiles_->forget(*this); }

PostWindow RasterFile::windowOf(const BlockKey& key) const {
  const std::int32_t left = std::max(key.column * kBlock - 1, 0), top = std::max(key.row * kBlock - 1, 0);
  const std::int32_t right = std::min((key.column + 1) * kBlock + 2, placement_.columns());
  const std::int32_t bottom = std::min((key.row + 1) * kBlock + 2, placement_.rows());
  return {left, top, right - left, bottom - top};
}

HeightBlockPtr RasterFile::block(const BlockKey& key, BlockCache& cache) const {
  if (auto known = cache.find(key)) return known;
  const std::lock_guard lock(mutex_);
  // Another thread may have read it while this one waited.
  if (auto known = cache.find(key)) return known;
  const PostWindow window = windowOf(key);
  openLocked();
  if (!raster_) {
    const std::size_t count =
        static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows);
    return std::make_shared<const HeightBlock>(HeightBlock{window, std::vector<float>(count, NAN)});
  }
  std::string problem;
  auto block = std::make_shared<const HeightBlock>(raster_->read(window, problem));
  if (problem_.empty()) problem_ = problem;
  cache.put(key, block);
  return block;
}

void RasterFile::openLocked() const {
  if (failed_) return;
  if (!raster_) {
    std::string problem;
    raster_ = OpenRaster::open(path_, problem);
    if (raster_ && (raster_->columns() != placement_.columns() || raster_->rows() != placement_.rows())) {
      raster_.reset();
      problem = "its size changed while it was in use";
    }
    if (!raster_) {
      failed_ = true;
      problem_ = problem;
      return;
    }
    if (problem_.empty()) problem_ = raster_->remark();
  }
  openFiles_->touched(const_cast<RasterFile&>(*this));
}

bool RasterFile::closeUnlessBusy() const {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock) return false;
  raster_.reset();
  return true;
}

std::string RasterFile::problem() const {
  const std::lock_guard lock(mutex_);
  return problem_;
}

bool RasterFile::failed() const {
  const std::lock_guard lock(mutex_);
  return failed_;
}

}  // namespace zel
