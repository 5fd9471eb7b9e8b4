#include "zeltool/terrain/source_index.h"

#include <algorithm>
#include <exception>

#include "zeltool/terrain/bare_tile.h"

namespace zel {
namespace {

std::optional<RasterPlacement> placeByOpening(const RasterCandidate& candidate, TransformStore& transforms,
                                              std::string& problem) {
  const auto raster = OpenRaster::open(candidate.path, problem);
  if (!raster) return std::nullopt;
  return raster->placement(transforms, problem);
}

}  // namespace

SourceIndex::SourceIndex(const SourceDefinition& definition, std::shared_ptr<OpenFiles> openFiles,
                         const SourceIndex* previous, const std::atomic<bool>* cancelled)
    : definition_(definition), openFiles_(std::move(openFiles)), transforms_(makeTransformStore()) {
  for (const std::string& path : definition.paths) {
    RasterListing listing = listRasters(path);
    watched_.insert(watched_.end(), listing.watched.begin(), listing.watched.end());
    problems_.insert(problems_.end(), listing.problems.begin(), listing.problems.end());
    if (listing.rasters.empty() && listing.problems.empty())
      problems_.push_back(path + ": the folder holds no raster");
    for (const RasterCandidate& candidate : listing.rasters) {
      if (!add(candidate, previous) || !cancelled || !cancelled->load(std::memory_order_relaxed)) continue;
      complete_ = false;
      if (previous) known_.insert(previous->known_.begin(), previous->known_.end());
      return;
    }
  }
}

bool SourceIndex::add(const RasterCandidate& candidate, const SourceIndex* previous) {
  // A path that is named twice counts where it is named first.
  if (known_.count(candidate.path) > 0) return false;
  Known known;
  const auto* before = previous ? &previous->known_ : nullptr;
  const auto old = before ? before->find(candidate.path) : std::map<std::string, Known>::const_iterator();
  const bool unchanged = before && old != before->end() && old->second.bytes == candidate.bytes &&
                         old->second.modified == candidate.modified &&
                         !(old->second.file && old->second.file->failed());
  known = unchanged ? old->second : place(candidate);
  if (known.file) {
    files_.push_back(known.file);
    extents_.add(known.file->placement().reach);
  } else {
    // It may still be on its way to the disk, which the folder's time does not tell.
    watched_.push_back(known.seen);
    problems_.push_back(known.problem);
  }
  known_.emplace(candidate.path, std::move(known));
  return !unchanged;
}

SourceIndex::Known SourceIndex::place(const RasterCandidate& candidate) {
  Known known{candidate.bytes, candidate.modified, nullptr, "", watch(candidate.shownPath)};
  std::string problem;
  std::optional<RasterPlacement> placement;
  try {
    placement = isBareTile(candidate) ? placeBareTile(candidate, problem)
                                      : placeByOpening(candidate, *transforms_, problem);
  } catch (const std::exception& error) {
    problem = error.what();
  }
  if (placement)
    known.file =
        std::make_shared<const RasterFile>(candidate.path, known.seen, std::move(*placement), openFiles_);
  else
    known.problem = candidate.shownPath + ": " + problem;
  return known;
}

std::vector<const RasterFile*> SourceIndex::candidates(int square) const {
  std::vector<const RasterFile*> files;
  for (const std::uint32_t number : extents_.candidates(square)) files.push_back(files_[number].get());
  return files;
}

bool SourceIndex::outdated() const {
  return std::any_of(watched_.begin(), watched_.end(),
                     [](const WatchedPath& before) { return watch(before.path) != before; }) ||
         std::any_of(files_.begin(), files_.end(),
                     [](const RasterFilePtr& file) { return file->outdated(); });
}

}  // namespace zel
