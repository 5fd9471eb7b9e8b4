#include "map/graticule.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <span>

#include "map/round_numbers.h"

namespace zel::host {
namespace {

constexpr double kNearestLines = 100;  // pixels

// Steps in the smallest part that a format shows, so that every line's degrees and text are exact.
struct Steps {
  std::int64_t unitsPerDegree;
  std::span<const std::int64_t> steps;  // from the finest
};

constexpr std::int64_t kTenthsPerDegree = 36'000;  // of a second
constexpr std::int64_t kSexagesimal[] = {
    1,      2,      5,       10,      20,        50,        100,      150,
    300,    600,    1'200,   3'000,   6'000,     9'000,     18'000,      // to 30 minutes
    36'000, 72'000, 180'000, 360'000, 1'080'000, 1'620'000, 3'240'000};  // degrees
constexpr std::int64_t kHundredThousandths = 100'000;
constexpr std::int64_t kDecimal[] = {
    1,     2,      5,      10,     20,      50,      100,     200,       500,       1'000,     2'000,
    5'000, 10'000, 20'000, 50'000, 100'000, 200'000, 500'000, 1'000'000, 2'000'000, 4'500'000, 9'000'000};

Steps stepsOf(AngleFormat format) {
  if (format == AngleFormat::kDecimalDegrees) return {kHundredThousandths, kDecimal};
  return {kTenthsPerDegree, kSexagesimal};
}

// The finest step whose lines are far enough apart, else the coarsest.
std::int64_t stepFor(const Steps& steps, double pixelsPerDegree) {
  const double least = kNearestLines / pixelsPerDegree * static_cast<double>(steps.unitsPerDegree);
  for (const std::int64_t step : steps.steps)
    if (static_cast<double>(step) >= least) return step;
  return steps.steps.back();
}

std::string twoDigits(std::int64_t value) { return (value < 10 ? "0" : "") + std::to_string(value); }

std::string sexagesimalText(std::int64_t tenths, std::int64_t step) {
  std::string text = std::to_string(tenths / kTenthsPerDegree);
  if (step % kTenthsPerDegree != 0) text += "-" + twoDigits(tenths / 600 % 60);
  if (step % 600 != 0) text += "-" + twoDigits(tenths / 10 % 60);
  if (step % 10 != 0) text += "." + std::to_string(tenths % 10);
  return text;
}

std::string decimalText(std::int64_t units, std::int64_t step) {
  int decimals = 0;
  for (std::int64_t part = kHundredThousandths; step % part != 0; part /= 10) ++decimals;
  return plainNumber(static_cast<double>(units) / static_cast<double>(kHundredThousandths), decimals);
}

// As positions are written everywhere: no sign but a letter, which is the positive one's at zero.
std::string lineText(bool meridian, std::int64_t units, std::int64_t step, AngleFormat format) {
  const std::int64_t size = std::abs(units);
  const char* letter = meridian ? (units < 0 ? " W" : " E") : (units < 0 ? " S" : " N");
  return (format == AngleFormat::kDecimalDegrees ? decimalText(size, step) : sexagesimalText(size, step)) +
         letter;
}

void addMeridians(const MapFrame& frame, AngleFormat format, std::vector<GraticuleLine>& lines) {
  const Steps steps = stepsOf(format);
  const double perDegree = frame.worldPixels() / 360;
  const std::int64_t step = stepFor(steps, perDegree);
  const auto units = static_cast<double>(steps.unitsPerDegree);
  const TerrainExtent seen = frame.extent();
  const std::int64_t turn = 360 * steps.unitsPerDegree;
  const auto first = static_cast<std::int64_t>(std::ceil(seen.west * units / static_cast<double>(step)));
  const auto last = static_cast<std::int64_t>(std::floor(seen.east * units / static_cast<double>(step)));
  const double left = std::max(0.0, (frame.width() - frame.worldPixels()) / 2);
  for (std::int64_t i = first; i <= last; ++i) {
    // The whole way round, the last one is the first again.
    if (i * step - first * step >= turn) break;
    const std::int64_t within = (i * step + turn / 2) % turn - turn / 2;
    const double degrees = static_cast<double>(i * step) / units;
    lines.push_back({true, static_cast<double>(within) / units, left + (degrees - seen.west) * perDegree,
                     lineText(true, within, step, format)});
  }
}

void addParallels(const MapFrame& frame, AngleFormat format, std::vector<GraticuleLine>& lines) {
  const Steps steps = stepsOf(format);
  const TerrainExtent seen = frame.extent();
  // Rows are the nearer to each other the nearer they are to the equator.
  const double nearest = std::clamp(0.0, seen.south, seen.north) * (std::numbers::pi / 180);
  const std::int64_t step = stepFor(steps, frame.worldPixels() / 360 / std::cos(nearest));
  const auto units = static_cast<double>(steps.unitsPerDegree);
  const auto first = static_cast<std::int64_t>(std::floor(seen.north * units / static_cast<double>(step)));
  const auto last = static_cast<std::int64_t>(std::ceil(seen.south * units / static_cast<double>(step)));
  for (std::int64_t i = first; i >= last; --i) {
    const double degrees = static_cast<double>(i * step) / units;
    lines.push_back({false, degrees, frame.pixelOf({degrees, 0}).y, lineText(false, i * step, step, format)});
  }
}

// ---- Scale bar ----

constexpr double kMetresPerKilometre = 1000;

struct LengthUnit {
  double metres;
  const char* text;
};

// The sphere's scale is short of the ellipsoid's along a parallel, up to 0.34 %: WGS 84.
double metresPerPixelAcross(const MapFrame& frame) {
  constexpr double kEccentricitySquared = 0.00669437999014;
  const double sine = std::sin(frame.centre().latitude * (std::numbers::pi / 180));
  return frame.metresPerPixel() / std::sqrt(1 - kEccentricitySquared * sine * sine);
}

}  // namespace

std::vector<GraticuleLine> graticule(const MapFrame& frame, AngleFormat format) {
  std::vector<GraticuleLine> lines;
  addMeridians(frame, format, lines);
  addParallels(frame, format, lines);
  return lines;
}

ScaleBar scaleBar(const MapFrame& frame, bool imperial, double mostPixels) {
  const double metresPerPixel = metresPerPixelAcross(frame);
  // No more than the frame, nor than once around.
  const double most = std::min({mostPixels, frame.width(), frame.worldPixels()}) * metresPerPixel;
  if (!(most > 0)) return {};
  const LengthUnit large =
      imperial ? LengthUnit{kMetresPerMile, " mi"} : LengthUnit{kMetresPerKilometre, " km"};
  const LengthUnit small = imperial ? LengthUnit{kMetresPerFoot, " ft"} : LengthUnit{1, " m"};
  const LengthUnit& unit = most >= large.metres ? large : small;
  const RoundNumber length = roundDown(most / unit.metres);
  const double metres = length.value * unit.metres;
  return {metres, metres / metresPerPixel, groupedNumber(length.value, length.decimals) + unit.text};
}

}  // namespace zel::host
