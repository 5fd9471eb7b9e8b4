#include "export/signal_graph.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>

#include "export/longley_rice_column.h"
#include "export/path_models.h"
#include "foundation/leading_number.h"
#include "foundation/rounding.h"
#include "profile/real32.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPictureEnd = ".png";

SampleRange wholePath(const ProfileViewState& state) { return state.plotIndex().stationToStation(); }

// Single precision, as the ground is: a whole height above it adds no digits.
float transmitterHeightText(const ProfileViewState& state) { return toReal32(graphTransmitterHeight(state)); }

ExportLine& level(ExportLine& line, double value) {
  return std::isnan(value) ? line.text("NaN") : line.number(value, kLevelPattern);
}

void writeGraphHead(const ProfileViewState& state, const SignalGraphPlan& plan, const LineSink& write) {
  const auto numbered = [&write](std::string_view name, auto value) {
    write(ExportLine(withPoint()).text(name).text(kFieldEnd).number(value).str());
  };
  write("OUTFILE, ' '");
  numbered("FREQ", state.inputs.frequency);
  numbered("POWER", plan.signal.erp);
  numbered("TX_AMSL", transmitterHeightText(state));
  numbered("RX_AGL", std::int32_t{state.inputs.antennaHeights[1]});
  write(ExportLine(withPoint())
            .text("CLU_LOSS, LR:")
            .number(plan.signal.longleyRiceClutter)
            .text(" PTP:")
            .number(plan.signal.pointToPointClutter)
            .str());
  write("TITLE, " + onOneLine(plan.title));
  write({});
  // One quote is missing, as is meant.
  write(
      "'Terrain Height', 'Distance from Transmitter', 'Longley Rice', 'PTP', Std Contour', 'Freespace', "
      "'Reference'");
  write("START DATA");
}

std::string sampleLine(double ground, const PlottedSample& sample, bool plotted) {
  const auto [longleyRice, pointToPoint, freeSpace] = sample.levels;
  ExportLine line(withPoint());
  if (!plotted) line.text("#");
  line.field(ground, "##0.0").field(sample.distance, "##0.000");
  level(line, longleyRice).text(kFieldEnd);
  level(line, pointToPoint).text(kFieldEnd).field(kReferenceLines[0]);
  level(line, freeSpace).text(kFieldEnd).number(kReferenceLines[1]);
  return line.str();
}

// sample, distance, diffraction loss, clutter loss, level
constexpr std::size_t kResultFields = 5;
using ResultRow = std::array<double, kResultFields>;

std::optional<ResultRow> resultRow(std::string_view line) {
  ResultRow row{};
  for (std::size_t i = 0; i < kResultFields; ++i) {
    const std::size_t comma = line.find(',');
    const bool last = i + 1 == kResultFields;
    if ((comma == std::string_view::npos) != last) return std::nullopt;
    const auto number = fieldNumberText(line.substr(0, comma));
    if (!number) return std::nullopt;
    row[i] = *number;
    if (!last) line.remove_prefix(comma + 1);
  }
  return row;
}

}  // namespace

std::string unmistakable(std::string path) {
  constexpr std::string_view kMistakable = "<|~-+$@!";
  if (!path.empty() && kMistakable.find(path.front()) != std::string_view::npos) path.insert(0, "./");
  return path;
}

SignalGraphFiles signalGraphFiles(const std::string& outfile) {
  const fs::path path = outfile;
  const std::string name = path.filename().string();
  if (name.empty() || name == "." || name == ".." || name == kPictureEnd) {
    const RuntimeError error = RuntimeError::pathFileAccessError();
    throw RuntimeError(error.number(), error.description() + ": not the name of a picture: " + outfile);
  }
  const std::string base = unmistakable((path.parent_path() / path.stem()).string());
  return {base + std::string(kPictureEnd), base + ".dat", base + "_PTP.txt", base + ".plt"};
}

std::int32_t graphSample(const ProfileViewState& state, double metres) {
  return toInt32(metres / kMetresPerKm / state.path.spacing);
}

double graphTransmitterHeight(const ProfileViewState& state) {
  return double{state.elevation[wholePath(state).first]} + state.inputs.antennaHeights[0];
}

double heightAboveAverageTerrain(const ProfileViewState& state) {
  constexpr std::int32_t kFirst = 30, kLast = 161;
  constexpr double kDivisor = 131;  // one less than there are heights
  constexpr double kOfShortPath = 30;
  const SampleRange path = wholePath(state);
  if (path.last - path.first <= kLast) return kOfShortPath;
  double sum = 0;
  for (std::int32_t i = kFirst; i <= kLast; ++i) sum += double{state.elevation[path.first + i]};
  return graphTransmitterHeight(state) - sum / kDivisor;
}

void writeTerrainInput(const ProfileViewState& state, const LineSink& write) {
  write("START");
  const SampleRange path = wholePath(state);
  for (std::int32_t i = path.first; i <= path.last; ++i)
    write(formatNumber(double{state.elevation[i]}, "##0.00", withPoint()));
}

void writeTerrainCompanion(const ProfileViewState& state, const ptp::PtpParameters& parameters,
                           const LineSink& write) {
  const auto entry = [&write](std::string_view key, auto value) {
    write(ExportLine(withPoint()).text(key).text("=").number(value).str());
  };
  entry("spacing_km", state.path.spacing);
  entry("tx_amsl_m", graphTransmitterHeight(state));
  entry("samples", wholePathSamples(state));
  entry("polarization", parameters.ground.polarization == ptp::Polarization::kHorizontal ? 0 : 1);
  entry("permittivity", parameters.ground.permittivity);
  entry("conductivity", parameters.ground.conductivity);
  entry("clutter_category", static_cast<std::int32_t>(parameters.clutter.category));
  entry("clutter_height_m", parameters.clutter.height);
}

PointToPointLevels readPointToPointLevels(std::string_view text, std::int32_t samples) {
  constexpr double kNoLoss = -999;  // or less; a level may be as low
  PointToPointLevels levels(static_cast<std::size_t>(samples), kNoLevel);
  for (std::size_t end; (end = text.find('\n')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto row = resultRow(line);
    if (!row) continue;
    const auto [sample, distance, diffraction, clutter, value] = *row;
    const bool ofThePath = sample >= 1 && sample <= samples && sample == std::floor(sample);
    if (!ofThePath || diffraction <= kNoLoss || clutter <= kNoLoss) continue;
    levels[static_cast<std::size_t>(sample) - 1] = value;
  }
  return levels;
}

void writeGraphData(const ExportProfile& profile, const SignalGraphPlan& plan,
                    const PointToPointLevels& pointToPoint, const LineSink& write,
                    const EachSample& eachSample, const EachPlotted& eachPlotted) {
  const ProfileViewState& state = profile.state;
  const SampleRange path = wholePath(state);
  const SignalLevels levels(plan.signal, state.inputs.frequency);
  LongleyRiceColumn longleyRice(pathStretch(state, path), modelParametersOf(state), "signal graph");

  writeGraphHead(state, plan, write);
  const std::int32_t last = path.last - path.first;
  for (std::int32_t i = 0; i <= last; ++i) {
    PlottedSample sample{i * state.path.spacing, {kNoLevel, kNoLevel, kNoLevel}};
    if (i >= 1)
      sample.levels = {levels.longleyRice(longleyRice.lossAt(i + 1)),
                       pointToPoint[static_cast<std::size_t>(i)],
                       levels.freeSpace(double{levels.freeSpaceLoss(sample.distance)})};
    const bool plotted = i >= 1 && i >= plan.start && i <= plan.end;
    if (plotted) eachPlotted(sample);
    eachSample(i + 1, last + 1);
    write(sampleLine(double{state.elevation[path.first + i]}, sample, plotted));
  }
}

std::string onOneLine(const std::string& title) {
  std::string line = title;
  std::replace_if(
      line.begin(), line.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, ' ');
  return line;
}

}  // namespace zel
