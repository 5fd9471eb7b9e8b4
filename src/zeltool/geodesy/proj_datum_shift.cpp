#include "zeltool/geodesy/proj_datum_shift.h"

#include <proj.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/runtime_error.h"

namespace zel {

namespace {

constexpr const char* kNad27 = "EPSG:4267";
constexpr const char* kNad83 = "EPSG:4269";

struct ContextDeleter {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
struct ObjectDeleter {
  void operator()(PJ* object) const { proj_destroy(object); }
};
struct ListDeleter {
  void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
};
struct FactoryDeleter {
  void operator()(PJ_OPERATION_FACTORY_CONTEXT* factory) const {
    proj_operation_factory_context_destroy(factory);
  }
};
using Context = std::unique_ptr<PJ_CONTEXT, ContextDeleter>;
using Object = std::unique_ptr<PJ, ObjectDeleter>;
using List = std::unique_ptr<PJ_OBJ_LIST, ListDeleter>;
using Factory = std::unique_ptr<PJ_OPERATION_FACTORY_CONTEXT, FactoryDeleter>;

// Degrees. West is greater than east where the area crosses the antimeridian.
struct Area {
  double west = -180, south = -90, east = 180, north = 90;

  bool contains(GeoPoint point) const {
    if (point.latitude < south || point.latitude > north) return false;
    if (west <= east) return point.longitude >= west && point.longitude <= east;
    return point.longitude >= west || point.longitude <= east;
  }
};

struct Operation {
  Object object;
  DatumOperation description;
  Area area;
};

RuntimeError failure(const std::string& what) { return {ProjDatumShift::kErrorNumber, what}; }

std::string placeOf(GeoPoint point) {
  return formatNumber(point.latitude, "0.000000") + "," + formatNumber(point.longitude, "0.000000");
}

// Smaller first: grids before mean shifts, then by the stated error, an unknown one last.
bool better(const Operation& a, const Operation& b) {
  const auto rank = [](const DatumOperation& operation) {
    return std::pair(!operation.usesGrid, operation.accuracy < 0 ? HUGE_VAL : operation.accuracy);
  };
  return rank(a.description) < rank(b.description);
}

// The direct operations, which are those with a grid, or with `overWgs84` those of two mean shifts.
List listOperations(PJ_CONTEXT* context, const PJ* from, const PJ* to, bool overWgs84) {
  const Factory factory(proj_create_operation_factory_context(context, nullptr));
  if (!factory) return nullptr;
  proj_operation_factory_context_set_spatial_criterion(context, factory.get(),
                                                       PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
  proj_operation_factory_context_set_grid_availability_use(
      context, factory.get(), PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
  // A "ballpark" operation leaves the position as it is, up to 200 m off.
  proj_operation_factory_context_set_allow_ballpark_transformations(context, factory.get(), 0);
  proj_operation_factory_context_set_allow_use_intermediate_crs(
      context, factory.get(), overWgs84 ? PROJ_INTERMEDIATE_CRS_USE_ALWAYS : PROJ_INTERMEDIATE_CRS_USE_NEVER);
  const std::array<const char*, 3> wgs84{"EPSG", "4326", nullptr};
  if (overWgs84)
    proj_operation_factory_context_set_allowed_intermediate_crs(context, factory.get(), wgs84.data());
  return List(proj_create_operations(context, from, to, factory.get()));
}

std::optional<Operation> operationFrom(PJ_CONTEXT* context, Object listed) {
  if (!listed || proj_coordoperation_is_instantiable(context, listed.get()) == 0) return std::nullopt;
  Operation operation;
  const char* name = proj_get_name(listed.get());
  operation.description = {name != nullptr ? name : "",
                           proj_coordoperation_get_accuracy(context, listed.get()),
                           proj_coordoperation_get_grid_used_count(context, listed.get()) > 0};
  Area& area = operation.area;
  proj_get_area_of_use(context, listed.get(), &area.west, &area.south, &area.east, &area.north, nullptr);
  // Degrees with the longitude first, whatever the registry's axes are.
  operation.object.reset(proj_normalize_for_visualization(context, listed.get()));
  if (!operation.object) return std::nullopt;
  return operation;
}

}  // namespace

struct ProjDatumShift::Self {
  std::filesystem::path gridFolder;
  std::mutex mutex;
  Context context;
  std::vector<Operation> operations;  // the better ones first
  pid_t process = 0;                  // that has read them

  // A forked process would share its place in the grid files with the first one. It leaves them open, since
  // closing moves that place, too.
  void leaveToParent() {
    for (Operation& operation : operations) static_cast<void>(operation.object.release());
    operations.clear();
    static_cast<void>(context.release());
  }

  void readRegistry() {
    if (process != getpid()) leaveToParent();
    if (!operations.empty()) return;
    process = getpid();
    Context fresh(proj_context_create());
    if (!fresh) throw RuntimeError::outOfMemory();
    proj_context_set_enable_network(fresh.get(), 0);
    // What fails is told by this class, not on the host's standard error.
    proj_log_func(fresh.get(), nullptr, [](void*, int, const char*) {});
    if (!gridFolder.empty()) searchGridFolderFirst(fresh.get());
    const Object from(proj_create(fresh.get(), kNad27));
    const Object to(proj_create(fresh.get(), kNad83));
    if (!from || !to)
      throw failure(
          "The datum NAD-27 is not known: the registry of coordinate operations (proj.db) cannot be read.");
    std::vector<Operation> found;
    for (const bool overWgs84 : {false, true}) {
      const List list = listOperations(fresh.get(), from.get(), to.get(), overWgs84);
      const int count = list ? proj_list_get_count(list.get()) : 0;
      for (int i = 0; i < count; ++i) {
        auto operation = operationFrom(fresh.get(), Object(proj_list_get(fresh.get(), list.get(), i)));
        if (operation) found.push_back(std::move(*operation));
      }
    }
    if (found.empty())
      throw failure("There is no operation from NAD-27 to NAD-83 in the registry of coordinate operations.");
    std::stable_sort(found.begin(), found.end(), better);
    // The old objects would belong to the old context.
    operations.clear();
    context = std::move(fresh);
    operations = std::move(found);
  }

  // PROJ's own folders are asked for before, since naming folders takes the place of all of them.
  void searchGridFolderFirst(PJ_CONTEXT* target) const {
    const char* database = proj_context_get_database_path(target);
    const std::string registry = database != nullptr ? database : "";
    const PJ_INFO info = proj_info();
    std::vector<std::string> folders{gridFolder.string()};
    if (!registry.empty()) folders.push_back(std::filesystem::path(registry).parent_path().string());
    for (std::size_t i = 0; i < info.path_count; ++i) folders.emplace_back(info.paths[i]);
    std::vector<const char*> names;
    names.reserve(folders.size());
    for (const std::string& folder : folders) names.push_back(folder.c_str());
    proj_context_set_search_paths(target, static_cast<int>(names.size()), names.data());
    if (!registry.empty()) proj_context_set_database_path(target, registry.c_str(), nullptr, nullptr);
  }

  // The shifted point by the first operation that serves it. A grid may have gaps within its area of use.
  std::pair<const Operation*, GeoPoint> shifted(GeoPoint point) {
    if (!std::isfinite(point.longitude) || !(std::abs(point.latitude) <= 90))
      throw failure("There is no position " + std::to_string(point.latitude) + "," +
                    std::to_string(point.longitude) + " to shift from NAD-27 to NAD-83.");
    point.longitude = std::remainder(point.longitude, 360.0);
    readRegistry();
    for (const Operation& operation : operations) {
      if (!operation.area.contains(point)) continue;
      proj_errno_reset(operation.object.get());
      const PJ_COORD to = proj_trans(operation.object.get(), PJ_FWD,
                                     proj_coord(point.longitude, point.latitude, 0, HUGE_VAL));
      if (std::isfinite(to.lp.lam) && std::isfinite(to.lp.phi)) return {&operation, {to.lp.phi, to.lp.lam}};
    }
    throw failure("No operation from NAD-27 to NAD-83 serves the position " + placeOf(point) +
                  ": the registry knows one for the United States, Canada and the north of Mexico.");
  }
};

ProjDatumShift::ProjDatumShift(std::filesystem::path gridFolder) : self_(std::make_unique<Self>()) {
  self_->gridFolder = std::move(gridFolder);
}

ProjDatumShift::~ProjDatumShift() = default;

GeoPoint ProjDatumShift::toNad83(GeoPoint nad27) const {
  const std::lock_guard guard(self_->mutex);
  return self_->shifted(nad27).second;
}

DatumOperation ProjDatumShift::operationAt(GeoPoint nad27) const {
  const std::lock_guard guard(self_->mutex);
  return self_->shifted(nad27).first->description;
}

}  // namespace zel
