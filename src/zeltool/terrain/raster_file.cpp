#include "zeltool/terrain/raster_file.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <vector>

#include "zeltool/terrain/raster_listing.h"

namespace zel {
namespace {

// Path, size and time of change; a path within an archive alone, whose file on disk is another line.
std::string stateOf(const std::string& path) {
  if (path.starts_with("/vsi")) return path;
  std::error_code ignored;
  const std::string absolute = std::filesystem::absolute(path, ignored).string();
  const WatchedPath now = watch(path);
  return absolute + " " + std::to_string(now.bytes) + " " + std::to_string(now.modified);
}

std::uint64_t nextId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

// Every list of open files. Never destroyed: the process may fork while it ends.
struct Lists {
  std::mutex mutex;
  std::vector<OpenFiles*> all;
};

Lists& lists() {
  static Lists& only = *new Lists;
  return only;
}

void beforeFork() {
  const std::lock_guard lock(lists().mutex);
  for (OpenFiles* list : lists().all) list->closeIdle();
}

}  // namespace

OpenFiles::OpenFiles(std::size_t most) : most_(most) {
  static const int registered = pthread_atfork(beforeFork, nullptr, nullptr);
  static_cast<void>(registered);
  const std::lock_guard lock(lists().mutex);
  lists().all.push_back(this);
}

OpenFiles::~OpenFiles() {
  const std::lock_guard lock(lists().mutex);
  std::erase(lists().all, this);
}

void OpenFiles::closeIdle() {
  const std::lock_guard lock(mutex_);
  files_.remove_if([](const RasterFile* file) { return file->closeUnlessBusy(); });
}

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

RasterFile::RasterFile(std::string path, WatchedPath seen, RasterPlacement placement,
                       std::shared_ptr<OpenFiles> openFiles)
    : id_(nextId()),
      path_(std::move(path)),
      seen_(std::move(seen)),
      placement_(std::move(placement)),
      openFiles_(std::move(openFiles)) {}

RasterFile::~RasterFile() {
  openFiles_->forget(*this);
  leaveToParentLocked();
}

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
  auto block = std::make_shared<const HeightBlock>(readLocked(windowOf(key)));
  if (raster_) cache.put(key, block);
  return block;
}

HeightBlock RasterFile::readPosts(const PostWindow& window) const {
  const std::lock_guard lock(mutex_);
  return readLocked(window);
}

HeightBlock RasterFile::readLocked(const PostWindow& window) const {
  openLocked();
  if (raster_) {
    std::string problem;
    HeightBlock block = raster_->read(window, problem);
    // A file that was cut or is being written gives any heights at all, without an error.
    if (!changedOnDisk()) {
      if (problem_.empty()) problem_ = problem;
      return block;
    }
    failLocked("the file was changed while it was in use");
  }
  const std::size_t count = static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows);
  return {window, std::vector<float>(count, NAN)};
}

void RasterFile::failLocked(const std::string& problem) const {
  raster_.reset();
  failed_ = true;
  problem_ = problem;
}

std::string RasterFile::state() const {
  std::vector<std::string> files{path_, seen_.path};
  // A virtual raster is made of other files, and a raster may have a mask beside it.
  if (!path_.ends_with(".hgt")) {
    const std::lock_guard lock(mutex_);
    openLocked();
    if (raster_) {
      const std::vector<std::string> parts = raster_->files();
      files.insert(files.end(), parts.begin(), parts.end());
    }
  }
  std::sort(files.begin(), files.end());
  files.erase(std::unique(files.begin(), files.end()), files.end());
  std::string text;
  for (const std::string& file : files) text += stateOf(file) + "\n";
  return text;
}

void RasterFile::openLocked() const {
  if (failed_) return;
  read_ = true;
  leaveToParentLocked();
  if (!raster_) {
    std::string problem;
    raster_ = OpenRaster::open(path_, problem);
    process_ = getpid();
    if (raster_ && (raster_->columns() != placement_.columns() || raster_->rows() != placement_.rows())) {
      raster_.reset();
      problem = "its size changed while it was in use";
    }
    if (!raster_) return failLocked(problem);
    if (problem_.empty()) problem_ = raster_->remark();
  }
  openFiles_->touched(const_cast<RasterFile&>(*this));
}

void RasterFile::leaveToParentLocked() const {
  // Closing would move the place in the file, too.
  if (raster_ && process_ != getpid()) static_cast<void>(raster_.release());
}

bool RasterFile::closeUnlessBusy() const {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock) return false;
  leaveToParentLocked();
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
