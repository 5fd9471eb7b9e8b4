#include "zeltool/terrain/terrain_library.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <map>
#include <mutex>
#include <stdexcept>

#include "foundation/runtime_error.h"
#include "zeltool/terrain/block_cache.h"
#include "zeltool/terrain/height_reader.h"
#include "zeltool/terrain/path_positions.h"
#include "zeltool/terrain/sampling_words.h"
#include "zeltool/terrain/source_index.h"
#include "zeltool/terrain/station_shift.h"
#include "zeltool/terrain/terrain_area.h"

namespace zel {
namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr std::size_t kMostOpenFiles = 64;
constexpr std::chrono::seconds kLookAgain{1};  // between two looks at a source's folders
constexpr double kCoincident = 1e-6;           // km: ends nearer than a millimetre are one

bool isPlace(GeoPoint p) {
  return std::isfinite(p.latitude) && std::isfinite(p.longitude) && std::abs(p.latitude) <= 90;
}

void fail(SamplingReport& report, int status, std::string reason) {
  report.status = status;
  report.reason = std::move(reason);
}

}  // namespace

struct TerrainLibrary::Self {
  struct Source {
    std::mutex mutex;
    std::shared_ptr<const SourceIndex> index;
    std::shared_ptr<const SourceIndex>
        unfinished;  // of a look that was cancelled; the next one goes on from it
    Moment lookedAt;
  };

  explicit Self(std::size_t cacheBytes) : caches(std::make_shared<TerrainCaches>(cacheBytes)) {}

  // Folders are looked at again when the last look is older than `age`.
  std::shared_ptr<const SourceIndex> indexOf(int code, const SourceDefinition& definition,
                                             std::chrono::nanoseconds age = kLookAgain,
                                             const std::atomic<bool>* cancelled = nullptr);
  // Reads heights at `positions`, after a shift when there is one; `named` are the positions as the caller
  // knows them.
  void read(const SourceIndex& index, const SampleRequest& request, std::span<const GeoPoint> positions,
            std::span<const GeoPoint> named, std::span<float> heights, SamplingReport& report);
  SamplingReport reportOn(const SourceDefinition& definition, std::int32_t method) const;

  const std::shared_ptr<TerrainCaches> caches;
  const std::shared_ptr<OpenFiles> openFiles = std::make_shared<OpenFiles>(kMostOpenFiles);
  mutable std::mutex mutex;
  std::map<int, Source> sources;
};

struct TerrainLibrary::View {
  explicit View(Definitions asked) : definitions(std::move(asked)) {}

  std::shared_ptr<const DatumShift> stationShift() const {
    const std::lock_guard lock(mutex);
    return shift;
  }

  const Definitions definitions;
  mutable std::mutex mutex;  // guards what follows
  std::shared_ptr<const DatumShift> shift;
};

std::shared_ptr<const SourceIndex> TerrainLibrary::Self::indexOf(int code, const SourceDefinition& definition,
                                                                 std::chrono::nanoseconds age,
                                                                 const std::atomic<bool>* cancelled) {
  Source* source = nullptr;
  {
    const std::lock_guard lock(mutex);
    source = &sources[code];
  }
  const std::lock_guard lock(source->mutex);
  const Moment now = std::chrono::steady_clock::now();
  bool anew = !source->index || source->index->definition() != definition;
  if (!anew && now - source->lookedAt >= age) {
    anew = source->index->outdated();
    source->lookedAt = now;
  }
  if (anew) {
    const SourceIndex* previous = source->unfinished ? source->unfinished.get() : source->index.get();
    auto made = std::make_shared<const SourceIndex>(definition, openFiles, previous, cancelled);
    if (!made->complete()) {
      source->unfinished = std::move(made);
      throw IndexCancelled{};
    }
    source->unfinished.reset();
    source->index = std::move(made);
    source->lookedAt = std::chrono::steady_clock::now();
  }
  return source->index;
}

SamplingReport TerrainLibrary::Self::reportOn(const SourceDefinition& definition, std::int32_t method) const {
  SamplingReport report;
  report.sourceCode = definition.code;
  report.sourceName = definition.name;
  report.bundledSample = definition.bundledSample;
  report.method = methodText(method);
  return report;
}

void TerrainLibrary::Self::read(const SourceIndex& index, const SampleRequest& request,
                                std::span<const GeoPoint> positions, std::span<const GeoPoint> named,
                                std::span<float> heights, SamplingReport& report) {
  HeightReader reader(index, caches->blocks, request.method == 1);
  reader.read(positions, heights);
  report.voids = reader.voids();
  for (const RasterFile* file : reader.used()) report.files.push_back(file->path());

  std::vector<std::string> problems = index.problems();
  for (const RasterFile* file : reader.asked())
    if (const std::string problem = file->problem(); !problem.empty())
      problems.push_back(file->path() + ": " + problem);
  report.warnings = shortened(problems);

  const auto failed = [](const RasterFilePtr& file) { return file->failed(); };
  if (std::all_of(index.files().begin(), index.files().end(), failed))
    return fail(report, kSamplerConfiguration, noUsableRaster(index.definition(), problems));
  if (const auto outside = reader.firstOutside())
    fail(report, kSamplerInvalidData,
         outsideData(index.definition(), named[*outside], *outside, named.size()));
}

TerrainLibrary::TerrainLibrary(Definitions definitions, std::size_t cacheBytes)
    : TerrainLibrary(std::move(definitions), std::make_shared<Self>(cacheBytes)) {}

TerrainLibrary::TerrainLibrary(Definitions definitions, std::shared_ptr<Self> self)
    : self_(std::move(self)), view_(std::make_shared<View>(std::move(definitions))) {}

TerrainLibrary::~TerrainLibrary() = default;

void TerrainLibrary::setStationShift(std::shared_ptr<const DatumShift> shift) {
  const std::lock_guard lock(view_->mutex);
  view_->shift = std::move(shift);
}

std::shared_ptr<TerrainLibrary> TerrainLibrary::view(Definitions definitions) const {
  std::shared_ptr<TerrainLibrary> view(new TerrainLibrary(std::move(definitions), self_));
  view->setStationShift(view_->stationShift());
  return view;
}

std::shared_ptr<const TerrainArea> TerrainLibrary::area(int source) const {
  const SourceDefinition definition = view_->definitions(source);
  const auto makeIndex = [self = self_, source, definition](const std::atomic<bool>* cancelled) {
    return self->indexOf(source, definition, std::chrono::nanoseconds(0), cancelled);
  };
  return std::make_shared<const TerrainArea>(definition, makeIndex, self_->caches);
}

SampleResult TerrainLibrary::sample(const SampleRequest& request) const {
  const SourceDefinition definition = view_->definitions(request.source);
  SampleResult result;
  SamplingReport& report = result.report;
  report = self_->reportOn(definition, request.method);

  // What is wrong with the request itself is told before what is wrong with the data: under range, over
  // range, source, missing data.
  if (request.count < 2) {
    fail(report, kSamplerUnderRange, tooFewSamples(request.count));
    return result;
  }
  if (!isPlace(request.from) || !isPlace(request.to)) {
    fail(report, kSamplerUnderRange, notAPath(request.from, request.to));
    return result;
  }
  const GeodesicPath path(request.from, request.to);
  result.length = path.length();
  if (result.length < kCoincident) {
    fail(report, kSamplerUnderRange, coincidentEnds(request.from));
    return result;
  }
  if (request.count > kMostSamples) {
    fail(report, kSamplerOverRange, tooManySamples(request.count));
    return result;
  }
  if (result.length > kLongestPath) {
    fail(report, kSamplerOverRange, tooLong(result.length));
    return result;
  }
  const auto index = self_->indexOf(request.source, definition);
  if (index->files().empty()) {
    report.warnings = shortened(index->problems());
    fail(report, kSamplerConfiguration, noUsableRaster(definition, index->problems()));
    return result;
  }

  const auto count = static_cast<std::size_t>(request.count);
  std::vector<GeoPoint> positions(count);
  path.fill(positions);
  std::vector<float> heights(count);
  if (const auto shift = view_->stationShift()) {
    std::vector<GeoPoint> shifted;
    try {
      report.datumOperation = shift->operationAt(request.from);
      shifted = shiftedPath(*shift, positions, result.length);
    } catch (const RuntimeError& error) {
      fail(report, kSamplerInvalidData, cannotShift(request.from, error.description()));
      return result;
    }
    report.datumShifted = true;
    self_->read(*index, request, shifted, positions, heights, report);
  } else {
    self_->read(*index, request, positions, positions, heights, report);
  }
  if (report.status != kSamplerOk) return result;
  result.heights = std::move(heights);
  if (request.wantPositions) result.positions = std::move(positions);
  return result;
}

SamplingReport TerrainLibrary::heightsAt(std::span<const GeoPoint> positions, std::int32_t method, int source,
                                         std::span<float> heights) const {
  if (positions.size() != heights.size())
    throw std::invalid_argument("heightsAt: as many heights as positions are needed");
  const SourceDefinition definition = view_->definitions(source);
  SamplingReport report = self_->reportOn(definition, method);
  std::fill(heights.begin(), heights.end(), kVoidHeight);
  const auto index = self_->indexOf(source, definition);
  if (index->files().empty()) {
    report.warnings = shortened(index->problems());
    fail(report, kSamplerConfiguration, noUsableRaster(definition, index->problems()));
    return report;
  }
  SampleRequest request;
  request.method = method;
  request.source = source;
  self_->read(*index, request, positions, positions, heights, report);
  return report;
}

}  // namespace zel
