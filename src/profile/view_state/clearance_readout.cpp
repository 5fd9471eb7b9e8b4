#include "profile/view_state/clearance_readout.h"

#include <array>
#include <cmath>
#include <span>

#include "profile/sampling/height_cleanup.h"

namespace zel {
namespace {

// After a failed sampling the arrays are those of an older path.
bool terrainStands(const ProfileViewState& state) {
  const PathGeometry& path = state.path;
  return !state.flags.resample && path.intervals >= 1 && path.firstIndex >= 1 &&
         state.rawElevation.size() >= path.lastIndex && path.lastIndex == path.firstIndex + path.intervals;
}

ExactProfileRequest requestFor(const ProfileViewState& state, std::span<const float> heights) {
  ExactProfileRequest request;
  request.distance = state.path.distance;
  request.heights = heights;
  request.startAntenna = state.inputs.antennaHeights[0];
  request.endAntenna = state.inputs.antennaHeights[1];
  request.k = double{state.riseK};
  request.frequency = double{state.inputs.frequency};
  return request;
}

// The ground where the plot draws it; nothing beside a void.
std::optional<double> drawnGround(const ProfileViewState& state, double x) {
  const std::optional<PointerPosition> pointer = state.plotIndex().pointerAt(x);
  if (!pointer || pointer->sample < 2 || pointer->sample > state.rawElevation.size()) return std::nullopt;
  const float before = state.rawElevation[pointer->sample - 1];
  const float after = state.rawElevation[pointer->sample];
  if (isMissingHeight(before) || isMissingHeight(after)) return std::nullopt;
  return before + (double{after} - before) * pointer->fraction;
}

bool isBetweenStations(const ProfileViewState& state, double x) {
  const PlotIndex index = state.plotIndex();
  return x >= index.startX() && x <= index.endX();
}

std::string verdictWord(ClearanceVerdict verdict) {
  switch (verdict) {
    case ClearanceVerdict::kClear:
      return "clear";
    case ClearanceVerdict::kMarginal:
      return "marginal";
    case ClearanceVerdict::kBlocked:
      return "blocked";
    case ClearanceVerdict::kUnknown:
      break;
  }
  return "unknown";
}

// "1 void", "12 voids".
std::string voidCount(std::int32_t voids) {
  return std::to_string(voids) + (voids == 1 ? " void" : " voids");
}

// Numbers of one read-out in the state's units.
class Wording {
 public:
  Wording(const ProfileViewState& state, const NumberStyle& numbers)
      : units_(state.inputs.units), numbers_(numbers) {}

  std::string distance(double km) const {
    return formatNumber(km * units_.distance.factor, "##0.00", numbers_) + " " + units_.distance.abbreviation;
  }
  std::string clearance(double metres) const {
    return formatNumber(metres * units_.height.factor, "#,##0.0", numbers_) + " " +
           units_.height.abbreviation;
  }
  std::string zone(double fraction) const {
    return formatNumber(fraction * 100, "#,##0", numbers_) + " % of zone 1";
  }
  std::string factor(float k) const { return generalNumber(k, numbers_); }
  std::string frequency(float megahertz) const { return generalNumber(megahertz, numbers_) + " MHz"; }

 private:
  const DisplayUnits& units_;
  const NumberStyle& numbers_;
};

// Why there is no worst obstacle.
std::string reasonFor(const ProfileViewState& state, const PathClearance& clearance, const Wording& say) {
  switch (*clearance.status) {
    case ExactProfileStatus::kBadFrequency:
      return "no Fresnel zone at " + say.frequency(state.inputs.frequency);
    case ExactProfileStatus::kBadEarthFactor:
      return "k is not above 0";
    case ExactProfileStatus::kBadAntennaHeight:
      return "an antenna is below ground";
    case ExactProfileStatus::kBadDistance:
      return "the path has no length";
    case ExactProfileStatus::kVoidEnd:
      return std::string("no ground under the ") +
             (isMissingHeight(state.rawElevation[state.path.firstIndex]) ? "start" : "end") + ", " +
             voidCount(clearance.voids);
    case ExactProfileStatus::kAllVoid:
      return "no ground at all, " + voidCount(clearance.voids);
    case ExactProfileStatus::kTooFewSamples:
    case ExactProfileStatus::kOk:
      break;
  }
  return clearance.voids > 0 ? "no ground between the stations, " + voidCount(clearance.voids)
                             : "no sample between the stations";
}

}  // namespace

PathClearance pathClearance(const ProfileViewState& state) {
  PathClearance clearance;
  clearance.k = double{state.riseK};
  clearance.frequency = double{state.inputs.frequency};
  if (!terrainStands(state)) return clearance;
  const auto heights = state.rawElevation.span().subspan(static_cast<std::size_t>(state.path.firstIndex - 1),
                                                         static_cast<std::size_t>(state.path.intervals) + 1);
  const ExactProfile profile = exactProfile(requestFor(state, heights));
  clearance.status = profile.status;
  clearance.worst = profile.worst;
  clearance.verdict = profile.verdict;
  clearance.voids = profile.voids;
  return clearance;
}

std::optional<PointerClearance> clearanceUnder(const ProfileViewState& state, double x) {
  if (!terrainStands(state) || !isBetweenStations(state, x) || !(state.riseK > 0) ||
      !(state.path.distance > 0))
    return std::nullopt;
  const float startGround = state.rawElevation[state.path.firstIndex];
  const float endGround = state.rawElevation[state.path.lastIndex];
  const std::optional<double> ground = drawnGround(state, x);
  if (!ground || isMissingHeight(startGround) || isMissingHeight(endGround)) return std::nullopt;

  const auto& antennas = state.inputs.antennaHeights;
  const double length = state.path.distance;
  const double d1 = state.plotIndex().distanceFromStart(x);
  const double d2 = length - d1;
  const double startTop = double{startGround} + antennas[0];
  const double endTop = double{endGround} + antennas[1];
  const double sight = (startTop * d2 + endTop * d1) / length;
  PointerClearance pointer;
  pointer.distance = d1;
  pointer.clearance = sight - *ground - 1000.0 * d1 * d2 / (2.0 * double{state.riseK} * kMeanEarthRadius);
  const double wavelength = 300.0 / double{state.inputs.frequency};         // m
  const double radius = std::sqrt(wavelength * 1000.0 * d1 * d2 / length);  // m
  if (std::isfinite(radius) && radius > 0) pointer.fraction = pointer.clearance / radius;
  return pointer;
}

std::string pathClearanceText(const ProfileViewState& state, const PathClearance& clearance,
                              const NumberStyle& numbers, std::size_t widestLine) {
  if (!clearance.status) return {};
  const Wording say(state, numbers);
  if (!clearance.worst) return "Clearance unknown: " + reasonFor(state, clearance, say);
  const WorstObstacle& worst = *clearance.worst;
  const float used = static_cast<float>(clearance.k);
  std::string end = ": " + verdictWord(clearance.verdict);
  if (clearance.voids > 0) end += ", " + voidCount(clearance.voids);
  end += " (k " + say.factor(used);
  if (state.inputs.k != used) end += ", not yet " + say.factor(state.inputs.k);
  end += ")";

  const std::string begin = "Worst " + say.distance(worst.distance) + ": ";
  const std::string metres = say.clearance(worst.clearance) + ", ";
  std::string line;
  for (const std::string& amount : std::array<std::string, 3>{"clearance " + metres, metres, {}}) {
    line = begin + amount + say.zone(worst.fraction) + end;
    if (line.size() <= widestLine) break;
  }
  return line;
}

std::string pointerClearanceText(const ProfileViewState& state, double x, const NumberStyle& numbers) {
  if (!terrainStands(state) || !isBetweenStations(state, x)) return {};
  const Wording say(state, numbers);
  const std::string begin = "Pointer " + say.distance(state.plotIndex().distanceFromStart(x)) + ": ";
  const std::optional<PointerClearance> pointer = clearanceUnder(state, x);
  if (!pointer) return state.plotIndex().pointerAt(x) ? begin + "no ground" : std::string();
  std::string line = begin + "clearance " + say.clearance(pointer->clearance);
  if (pointer->fraction) line += ", " + say.zone(*pointer->fraction);
  return line;
}

}  // namespace zel
