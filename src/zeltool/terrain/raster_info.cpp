#include "zeltool/terrain/raster_info.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <proj.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <string_view>

#include "foundation/text.h"
#include "zeltool/terrain/bare_tile.h"
#include "zeltool/terrain/gdal_session.h"
#include "zeltool/terrain/raster_access.h"
#include "zeltool/terrain/raster_listing.h"

namespace zel {
namespace {

constexpr std::int32_t kStep = 512;  // cells read at once, each way
constexpr std::int64_t kMostSteps =
    8192;  // two thousand million cells, some seconds; larger rasters are read in part
constexpr std::int64_t kMostUnreadable = 64;  // parts, after which no more of the raster is read
constexpr const char* kUnknown = "unknown";

struct ObjectCloser {
  void operator()(PJ* object) const { proj_destroy(object); }
};
using ProjObject = std::unique_ptr<PJ, ObjectCloser>;
struct ContextCloser {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
using ProjContext = std::unique_ptr<PJ_CONTEXT, ContextCloser>;

std::string datumName(PJ_CONTEXT* context, const PJ* crs) {
  const ProjObject datum(crs ? proj_crs_get_datum_forced(context, crs) : nullptr);
  const char* name = datum ? proj_get_name(datum.get()) : nullptr;
  if (!name || lowerCase(name).starts_with("unknown") || lowerCase(name).starts_with("unnamed") ||
      lowerCase(name).starts_with("not specified"))
    return kUnknown;
  std::string text = name;
  constexpr std::string_view kEnsemble = " ensemble";
  if (text.ends_with(kEnsemble)) text.resize(text.size() - kEnsemble.size());
  return text;
}

// Datum names out of the coordinate system, as the registry writes them.
void nameDatums(const OGRSpatialReference* crs, RasterInfo& info) {
  if (!crs || crs->IsEmpty()) return;
  char* text = nullptr;
  const char* const options[] = {"FORMAT=WKT2_2019", nullptr};
  crs->exportToWkt(&text, options);
  const std::string wkt = text ? text : "";
  CPLFree(text);
  const ProjContext context(proj_context_create());
  proj_log_level(context.get(), PJ_LOG_NONE);
  proj_context_set_enable_network(context.get(), 0);
  const ProjObject whole(proj_create_from_wkt(context.get(), wkt.c_str(), nullptr, nullptr, nullptr));
  if (!whole) return;
  if (proj_get_type(whole.get()) != PJ_TYPE_COMPOUND_CRS) {
    info.horizontalDatum = datumName(context.get(), whole.get());
    return;
  }
  const ProjObject horizontal(proj_crs_get_sub_crs(context.get(), whole.get(), 0));
  const ProjObject vertical(proj_crs_get_sub_crs(context.get(), whole.get(), 1));
  info.horizontalDatum = datumName(context.get(), horizontal.get());
  info.verticalDatum = datumName(context.get(), vertical.get());
}

// What a DTED header says of its heights: mean sea level, by the geoid EGM96 where it names that.
void nameDtedDatum(GDALDataset& dataset, RasterInfo& info) {
  const char* datum = dataset.GetMetadataItem("DTED_VerticalDatum");
  if (!datum || info.verticalDatum != kUnknown) return;
  if (equalIgnoringCase(trimmed(datum), "E96")) info.verticalDatum = "MSL (EGM96)";
  if (equalIgnoringCase(trimmed(datum), "MSL")) info.verticalDatum = "MSL";
}

std::string cellUnitOf(const OGRSpatialReference* crs) {
  if (!crs || crs->IsEmpty()) return "degree";
  const char* name = nullptr;
  if (crs->IsGeographic())
    crs->GetAngularUnits(&name);
  else
    crs->GetLinearUnits(&name);
  return name ? name : kUnknown;
}

void addRemark(RasterInfo& info, const std::string& remark) {
  if (remark.empty()) return;
  info.remark += (info.remark.empty() ? "" : "; ") + remark;
}

// The range and voids of what is read, block by block.
class HeightMeasure {
 public:
  explicit HeightMeasure(RasterInfo& info) : info_(info) {}
  void add(const HeightBlock& block) {
    for (const float height : block.heights) {
      if (std::isnan(height)) {
        ++info_.voids;
        continue;
      }
      const double metres = static_cast<double>(height);
      info_.lowest = found_ ? std::min(info_.lowest, metres) : metres;
      info_.highest = found_ ? std::max(info_.highest, metres) : metres;
      found_ = true;
    }
  }
  bool found() const { return found_; }

 private:
  RasterInfo& info_;
  bool found_ = false;
};

// Row by row of windows, since many files keep whole rows; of a larger raster, evenly chosen ones.
void measureHeights(const OpenRaster& raster, RasterInfo& info) {
  const std::int64_t across = (std::int64_t{info.columns} + kStep - 1) / kStep;
  const std::int64_t down = (std::int64_t{info.rows} + kStep - 1) / kStep;
  const std::int64_t chosen = std::clamp<std::int64_t>(kMostSteps / across, 1, down);
  HeightMeasure measure(info);
  std::string firstProblem;
  std::int64_t unreadable = 0, step = 0;
  for (; step < chosen * across && unreadable < kMostUnreadable; ++step) {
    const std::int64_t row = step / across * down / chosen;
    PostWindow window{static_cast<std::int32_t>(step % across) * kStep,
                      static_cast<std::int32_t>(row) * kStep, kStep, kStep};
    window.columns = std::min(kStep, info.columns - window.column);
    window.rows = std::min(kStep, info.rows - window.row);
    std::string problem;
    measure.add(raster.read(window, problem));
    if (problem.empty()) continue;
    ++unreadable;
    if (firstProblem.empty()) firstProblem = problem;
  }
  if (step < chosen * across && !measure.found()) info.lowest = info.highest = NAN;
  addRemark(info, firstProblem);
  if (step < chosen * across)
    addRemark(info, "reading ended after " + std::to_string(kMostUnreadable) + " parts that cannot be read");
  if (const std::int64_t rowsRead = (step + across - 1) / across; rowsRead < down)
    addRemark(info, "heights and voids are of " + std::to_string(rowsRead) + " of " + std::to_string(down) +
                        " rows of blocks");
}

void describe(const std::string& path, RasterInfo& info) {
  GdalSession session;
  const RasterListing listing = listRasters(path);
  if (listing.rasters.empty()) {
    info.problem = listing.problems.empty() ? "it holds no raster" : listing.problems.front();
    if (info.problem.starts_with(path + ": ")) info.problem.erase(0, path.size() + 2);
    return;
  }
  const RasterCandidate& candidate = listing.rasters.front();
  const bool bare = isBareTile(candidate);
  auto placement = bare ? placeBareTile(candidate, info.problem) : std::nullopt;
  if (bare && !placement) return;
  const auto raster = OpenRaster::open(candidate.path, info.problem);
  if (!raster) return;
  GDALDataset& dataset = raster->dataset();
  info.driver = dataset.GetDriver() ? dataset.GetDriver()->GetDescription() : kUnknown;
  info.columns = raster->columns();
  info.rows = raster->rows();
  info.dataType = GDALGetDataTypeName(raster->band().GetRasterDataType());
  info.heightUnit = raster->heightUnit();
  info.cellUnit = cellUnitOf(dataset.GetSpatialRef());
  nameDatums(dataset.GetSpatialRef(), info);
  nameDtedDatum(dataset, info);
  const auto transforms = makeTransformStore();
  if (!placement) placement = raster->placement(*transforms, info.problem);
  if (!placement) return;
  info.postsOnCorners = placement->grid.pointCells();
  info.south = placement->covered.south;
  info.west = placement->covered.west;
  info.north = placement->covered.north;
  info.east = placement->covered.east;
  const GridPoint origin = placement->grid.pointOf({0, 0});
  const GridPoint right = placement->grid.pointOf({1, 0}), down = placement->grid.pointOf({0, 1});
  info.cellWidth = std::hypot(right.x - origin.x, right.y - origin.y);
  info.cellHeight = std::hypot(down.x - origin.x, down.y - origin.y);
  addRemark(info, raster->remark());
  if (info.dataType == "Byte")
    addRemark(info, "its cells have 8 bits: either heights from 0 to 255, or a picture and no heights");
  measureHeights(*raster, info);
}

}  // namespace

RasterInfo describeRaster(const std::string& path) {
  RasterInfo info;
  info.path = path;
  info.horizontalDatum = info.verticalDatum = kUnknown;
  try {
    describe(path, info);
  } catch (const std::exception& error) {
    info.problem = error.what();
  }
  return info;
}

std::vector<std::string> rasterFiles(const std::string& path) {
  std::vector<std::string> files;
  for (const RasterCandidate& raster : listRasters(path).rasters) files.push_back(raster.shownPath);
  std::sort(files.begin(), files.end());
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

}  // namespace zel
