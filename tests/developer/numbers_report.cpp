// Measures what docs/numbers.md says of positions, interpolation and the rules of the plot, and prints it as
// the tables of that page; scripts/validation.py puts them there.
//
//   numbers_report FILE    FILE is the bundled terrain; each table is led in by a line "== name"
//
// Paths and grounds are the same at every run. Differences are absolute values: mean, 95th percentile, worst.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "profile/calculation/earth_curvature.h"
#include "profile/calculation/line_of_sight.h"
#include "profile/path/path_geometry.h"
#include "profile/path_loss/modeled_loss.h"
#include "zeltool/geodesy/wgs84_geodesy.h"
#include "zeltool/terrain/interpolation.h"
#include "zeltool/terrain/path_positions.h"
#include "zeltool/terrain/terrain_library.h"

namespace zel {
namespace {

constexpr double kFactor = 1.333;
constexpr double kFrequency = 950;     // MHz
constexpr std::int16_t kAntenna = 30;  // metres above ground, both
constexpr std::size_t kPaths = 100;    // of each class
constexpr double kMeanRadius = 6371;   // km, of the exact geometry

using Ground = std::function<std::vector<float>(const std::vector<GeoPoint>&)>;

// ---- Numbers ----

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  double between(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }

 private:
  std::mt19937 engine_;
};

struct Differences {
  std::vector<double> values;

  void add(double difference) { values.push_back(std::abs(difference)); }
  // "mean | 95th percentile | worst".
  std::string row(const char* format) {
    std::sort(values.begin(), values.end());
    double sum = 0;
    for (const double value : values) sum += value;
    const double numbers[] = {sum / static_cast<double>(values.size()), values[values.size() * 95 / 100],
                              values.back()};
    std::string text;
    for (const double number : numbers) {
      std::array<char, 32> buffer{};
      std::snprintf(buffer.data(), buffer.size(), format, number);
      text += std::string(text.empty() ? "" : " | ") + buffer.data();
    }
    return text;
  }
};

// ---- Grounds and paths ----

struct PathClass {
  const char* name;
  double shortest, longest;  // km
  Ground ground;
  double south, west, north, east;  // where both ends lie, degrees
};

std::vector<float> madeUpGround(const std::vector<GeoPoint>& positions) {
  std::vector<float> heights;
  for (const GeoPoint& p : positions) {
    double height = 700;
    double wave = 0.6, relief = 300;  // degrees, metres
    for (int i = 0; i < 7; ++i, wave *= 0.55, relief *= 0.6)
      height += relief * std::sin(2 * std::numbers::pi * p.latitude / wave + i) *
                std::cos(2 * std::numbers::pi * p.longitude / wave - 2 * i);
    heights.push_back(static_cast<float>(height));
  }
  return heights;
}

std::vector<float> positionsOf(const Ground& ground, GeoPoint from, GeoPoint to, std::int32_t count) {
  std::vector<GeoPoint> positions(static_cast<std::size_t>(count));
  GeodesicPath(from, to).fill(positions);
  return ground(positions);
}

PathGeometry randomPath(const PathClass& wanted, Random& random) {
  const Wgs84Geodesy geodesy;
  for (;;) {
    const GeoPoint start{random.between(wanted.south, wanted.north),
                         random.between(wanted.west, wanted.east)};
    const double distance = random.between(wanted.shortest, wanted.longest);
    const GeoPoint end = geodesy.PointAtDistance(start, distance, random.between(0, 360));
    const PathGeometry path = computePathGeometry(geodesy, start, end, 100, 1000);
    const auto inside = [&wanted](GeoPoint p) {
      return p.latitude > wanted.south && p.latitude < wanted.north && p.longitude > wanted.west &&
             p.longitude < wanted.east;
    };
    if (!path.underRange && inside(end) && inside(path.back) && inside(path.forward)) return path;
  }
}

// ---- Clearance ----

// From station to station, N + 1 samples: ground, and its rise over any chord.
struct Samples {
  std::vector<double> ground, rise;
};

struct Obstacle {
  double clearance = 0;  // metres
  double loss = 0;       // of a knife edge there, dB (ITU-R P.526, 4.1)
};

double knifeEdge(double nu) {
  if (nu <= -0.78) return 0;
  return 6.9 + 20 * std::log10(std::sqrt((nu - 0.1) * (nu - 0.1) + 1) + nu - 0.1);
}

Obstacle worstObstacle(const Samples& samples, double distance) {
  const std::size_t last = samples.ground.size() - 1;
  const double start = samples.ground[0] + samples.rise[0] + kAntenna;
  const double end = samples.ground[last] + samples.rise[last] + kAntenna;
  Obstacle worst;
  double least = 1e9;
  for (std::size_t i = 1; i < last; ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(last);
    const double clearance = start + (end - start) * share - samples.ground[i] - samples.rise[i];
    const double radius =
        std::sqrt(300 / kFrequency * 1000 * distance * share * (1 - share));  // first zone, metres
    if (clearance / radius >= least) continue;
    least = clearance / radius;
    worst = {clearance, knifeEdge(-std::numbers::sqrt2 * least)};
  }
  return worst;
}

double parabola(double distance, double share, double radius) {
  return 1000 * distance * share * distance * (1 - share) / (2 * radius);
}

// Height over the chord of the extended path, at an angle from its beginning; radius in km.
double circle(double radius, double extended, double share) {
  const double angle = 2 * std::asin(extended / (2 * radius));
  return 1000 * radius * (std::cos(angle / 2 - share * angle) - std::cos(angle / 2));
}

// ---- The rules of the plot against exact geometry ----

class Rules {
 public:
  explicit Rules(const PathClass& paths) : paths_(paths) {
    Random random(1926);
    for (std::size_t i = 0; i < kPaths; ++i) measure(randomPath(paths, random));
  }

  const char* name() const { return paths_.name; }
  Differences radius, index, shift, all;                        // of the clearance, metres
  Differences shiftDb, allDb;                                   // of a knife edge's loss
  Differences spacingLoss, pointsLoss, windowLoss, bothLosses;  // of the modeled loss, dB

 private:
  void measure(const PathGeometry& path) {
    const std::vector<float> exact = positionsOf(paths_.ground, path.start, path.end, path.intervals + 1);
    const std::vector<float> plot = plotted(path);
    measureClearance(path, exact, plot);
    measureLosses(path, exact, plot);
  }

  // The plot's samples under its two masts and between them.
  std::vector<float> plotted(const PathGeometry& path) const {
    const std::vector<float> whole = positionsOf(paths_.ground, path.back, path.forward, path.samples);
    return {whole.begin() + path.firstIndex - 1, whole.begin() + path.lastIndex};
  }

  void measureClearance(const PathGeometry& path, const std::vector<float>& exact,
                        const std::vector<float>& plot) {
    const std::int32_t whole = effectiveRadius(static_cast<float>(kFactor));
    const SampleArray<float> given =
        curvatureRise(static_cast<float>(kFactor), path.samples, path.extendedLength);
    Samples true_, rounded, indexed;
    for (std::int32_t i = 0; i <= path.intervals; ++i) {
      const double share = static_cast<double>(i) / path.intervals;
      true_.rise.push_back(parabola(path.distance, share, kFactor * kMeanRadius));
      rounded.rise.push_back(parabola(path.distance, share, whole));
      indexed.rise.push_back(static_cast<double>(given[path.firstIndex + i]));
    }
    true_.ground.assign(exact.begin(), exact.end());
    rounded.ground = indexed.ground = true_.ground;
    Samples shifted{std::vector<double>(plot.begin(), plot.end()), true_.rise};
    Samples together{shifted.ground, indexed.rise};
    const Obstacle right = worstObstacle(true_, path.distance);
    radius.add(worstObstacle(rounded, path.distance).clearance - right.clearance);
    index.add(worstObstacle(indexed, path.distance).clearance -
              worstObstacle(rounded, path.distance).clearance);
    const Obstacle moved = worstObstacle(shifted, path.distance);
    shift.add(moved.clearance - right.clearance);
    shiftDb.add(moved.loss - right.loss);
    const Obstacle shown = worstObstacle(together, path.distance);
    all.add(shown.clearance - right.clearance);
    allDb.add(shown.loss - right.loss);
  }

  static double loss(const std::vector<float>& ground, double spacing) {
    const ModelParameters parameters{0, 5, 15, 0.005, 301, 0, 0};
    return static_cast<double>(
        modeledLoss({ground, static_cast<float>(spacing), {kAntenna, kAntenna}, kFrequency}, parameters));
  }

  void measureLosses(const PathGeometry& path, const std::vector<float>& exact,
                     const std::vector<float>& plot) {
    const double metres = 1000 * path.distance;
    const std::vector<float> points = positionsOf(paths_.ground, path.start, path.end, path.intervals);
    const double right = loss(exact, metres / path.intervals);
    const double told = loss(points, metres / path.intervals);
    spacingLoss.add(told - loss(points, metres / (path.intervals - 1)));
    pointsLoss.add(told - right);
    const double window = loss(plot, metres / path.intervals);
    windowLoss.add(window - right);
    bothLosses.add(window - told);
  }

  const PathClass& paths_;
};

void printRules(const std::vector<PathClass>& classes) {
  std::vector<Rules> measured;
  for (const PathClass& paths : classes) measured.emplace_back(paths);

  const auto table = [&measured](const char* rule, Differences Rules::*member, const char* format) {
    for (Rules& rules : measured)
      std::printf("| %s | %s | %s |\n", rule, rules.name(), (rules.*member).row(format).c_str());
  };
  const char* head = "| | paths | mean | 95th percentile | worst |\n|---|---|---|---|---|\n";
  std::printf("== clearance\n%s", head);
  table("radius of 8502 km in the place of 1.333 x 6371, m", &Rules::radius, "%.3f");
  table("rise by index, m", &Rules::index, "%.3f");
  table("samples up to one spacing away, m", &Rules::shift, "%.2f");
  table("all of them, m", &Rules::all, "%.2f");
  table("all of them, dB of a knife edge there", &Rules::allDb, "%.2f");
  std::printf("== losses\n%s", head);
  table("`GetPathLoss`: D / N told, not D / (N - 1)", &Rules::spacingLoss, "%.2f");
  table("`GetPathLoss` against N + 1 samples, D / N", &Rules::pointsLoss, "%.2f");
  table("window against N + 1 samples, D / N", &Rules::windowLoss, "%.2f");
  table("window against `GetPathLoss`", &Rules::bothLosses, "%.2f");
}

// ---- The rise by itself ----

void printRise() {
  std::printf(
      "== rise\n| path | rise in the middle | circle, not parabola | radius 8502 km | by index, where the "
      "sample was taken |"
      " by index, where it is drawn |\n|---|---|---|---|---|---|\n");
  const Wgs84Geodesy geodesy;
  for (const double distance : {1.0, 5.0, 20.0, 50.0, 100.0, 200.0, 400.0}) {
    const GeoPoint start{36, -84};
    const PathGeometry path =
        computePathGeometry(geodesy, start, geodesy.PointAtDistance(start, distance, 90), 100, 1000);
    const double exactRadius = kFactor * kMeanRadius;
    const std::int32_t whole = effectiveRadius(static_cast<float>(kFactor));
    const SampleArray<float> given =
        curvatureRise(static_cast<float>(kFactor), path.samples, path.extendedLength);
    double curve = 0, radius = 0, taken = 0, drawn = 0;
    for (std::int32_t i = path.firstIndex; i <= path.lastIndex; ++i) {
      const double share = static_cast<double>(i - path.firstIndex) / path.intervals;
      curve = std::max(
          curve, std::abs(circle(exactRadius, distance, share) - parabola(distance, share, exactRadius)));
      radius = std::max(radius,
                        std::abs(parabola(distance, share, whole) - parabola(distance, share, exactRadius)));
      const double rise = static_cast<double>(given[i]);
      const double position = static_cast<double>(i - 1) / (path.samples - 1);
      taken = std::max(taken, std::abs(rise - circle(whole, path.extendedLength, position)));
      drawn = std::max(
          drawn, std::abs(rise - circle(whole, path.extendedLength, static_cast<double>(i) / path.samples)));
    }
    std::printf("| %.0f km | %.2f m | %.3f m | %.3f m | %.3f m | %.3f m |\n", distance,
                parabola(distance, 0.5, exactRadius), curve, radius, taken, drawn);
  }
}

// ---- Positions ----

void printPositions() {
  const Wgs84Geodesy geodesy;
  Random random(1985);
  std::printf("== positions\n| samples | paths | mean | 95th percentile | worst |\n|---|---|---|---|---|\n");
  for (const std::size_t count : {100U, 1000U, 10000U}) {
    Differences millimetres;
    for (std::size_t i = 0; i < kPaths; ++i) {
      const GeoPoint from{std::asin(random.between(-1, 1)) * 180 / std::numbers::pi,
                          random.between(-180, 180)};
      const double distance = random.between(0.2, 2000);
      const GeodesicPath path(from, geodesy.PointAtDistance(from, distance, random.between(0, 360)));
      std::vector<GeoPoint> positions(count);
      path.fill(positions);
      double worst = 0;
      for (std::size_t k = 1; k + 1 < count; k += count / 100)
        worst = std::max(worst,
                         1e6 * geodesy
                                   .DistanceAndBearing(positions[k], path.at(static_cast<double>(k) /
                                                                             static_cast<double>(count - 1)))
                                   .distance);
      millimetres.add(worst);
    }
    std::printf("| %zu | %zu, 0.2 to 2,000 km | %s |\n", count, kPaths, millimetres.row("%.2f mm").c_str());
  }
}

// ---- Interpolation ----

double wave(double x, double y, double posts) {
  return 100 * std::sin(2 * std::numbers::pi * x / posts) * std::cos(2 * std::numbers::pi * y / posts);
}

void printInterpolation() {
  std::printf(
      "== interpolation\n| hills from top to top | method | mean | 95th percentile | worst "
      "|\n|---|---|---|---|---|\n");
  Random random(1981);
  for (const double posts : {4.0, 8.0, 16.0, 32.0}) {
    Differences linear, cubic;
    for (int i = 0; i < 4000; ++i) {
      const double x = random.between(0, 64), y = random.between(0, 64);
      const double column = std::floor(x), row = std::floor(y);
      std::array<double, 16> z{};
      for (std::size_t r = 0; r < 4; ++r)
        for (std::size_t c = 0; c < 4; ++c)
          z[r * 4 + c] = wave(column + static_cast<double>(c) - 1, row + static_cast<double>(r) - 1, posts);
      const double exact = wave(x, y, posts);
      linear.add(bilinear(z[5], z[6], z[9], z[10], x - column, y - row) - exact);
      cubic.add(bicubicLimited(z, x - column, y - row) - exact);
    }
    std::printf("| %.0f posts | FCC 4-Point | %s |\n", posts, linear.row("%.2f m").c_str());
    std::printf("| %.0f posts | Bivariate | %s |\n", posts, cubic.row("%.2f m").c_str());
  }
}

void printMethods(const TerrainLibrary& library, const PathClass& area) {
  Random random(1950);
  std::vector<GeoPoint> positions(5000);
  for (GeoPoint& p : positions)
    p = {random.between(area.south, area.north), random.between(area.west, area.east)};
  std::vector<float> linear(positions.size()), cubic(positions.size());
  library.heightsAt(positions, 0, 3, linear);
  library.heightsAt(positions, 1, 3, cubic);
  Differences apart;
  for (std::size_t i = 0; i < positions.size(); ++i) apart.add(static_cast<double>(linear[i] - cubic[i]));
  std::printf("== methods\n| | places | mean | 95th percentile | worst |\n|---|---|---|---|---|\n");
  std::printf("| one method against the other, bundled terrain | %zu | %s |\n", positions.size(),
              apart.row("%.2f m").c_str());
}

int report(const char* terrain) {
  const SourceDefinition definition{3, "1 second", {terrain}, false};
  const TerrainLibrary library([&definition](int) { return definition; }, std::size_t{64} << 20);
  bool failed = false;
  const Ground bundled = [&](const std::vector<GeoPoint>& positions) {
    std::vector<float> heights(positions.size());
    failed = failed || library.heightsAt(positions, 0, 3, heights).status != 0;
    return heights;
  };
  const PathClass area{"", 0, 0, bundled, 36.163, -84.408, 36.445, -84.082};
  std::vector<PathClass> classes(3, area);
  classes[0].name = "bundled terrain, 0.2 to 2 km";
  classes[0].shortest = 0.2;
  classes[0].longest = 2;
  classes[1].name = "bundled terrain, 2 to 10 km";
  classes[1].shortest = 2;
  classes[1].longest = 10;
  classes[2].name = "bundled terrain, 10 to 30 km";
  classes[2].shortest = 10;
  classes[2].longest = 30;
  classes.push_back({"made-up ground, 50 to 400 km", 50, 400, madeUpGround, 30, -90, 40, -80});
  printPositions();
  printInterpolation();
  printMethods(library, area);
  printRise();
  printRules(classes);
  if (failed) std::fprintf(stderr, "%s has no heights for a path\n", terrain);
  return failed ? 1 : 0;
}

}  // namespace
}  // namespace zel

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: numbers_report FILE\n");
    return 2;
  }
  return zel::report(argv[1]);
}
