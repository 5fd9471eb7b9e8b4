// The exports: each part of the signal profile apart (the two model columns, levels and texts, the file), all
// of it but the file, and what the columns would cost by a run of its own for each sample. The argument is
// the number of samples from station to station; the growth with it is the point.

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <random>
#include <string>

#include "export/height_profile.h"
#include "export/loss_table.h"
#include "export/path_models.h"
#include "export/profile_columns.h"
#include "export/signal_levels.h"
#include "export/signal_profile.h"
#include "export/text_file.h"
#include "profile/calculation/earth_curvature.h"
#include "profile/calculation/fresnel_line.h"
#include "profile/calculation/height_statistics.h"
#include "profile/path_loss/modeled_loss.h"
#include "support/scripted_terrain.h"

namespace zel {
namespace {

constexpr float kFrequency = 950;  // MHz
constexpr SignalRequest kRequest{1, 3, 2};

float hill(std::int32_t sample, std::int32_t samples) {
  const double along = static_cast<double>(sample) / samples;
  return static_cast<float>(400 + 150 * std::sin(along * 40) + 20 * std::sin(along * 400));
}

// 50 km of hills with as many samples from station to station as asked for.
ExportProfile hillyProfile(std::int64_t samples) {
  const test::PlaneGeodesy plane;
  ProfileViewState state;
  state.inputs.start = {36.5, -84.5};
  state.inputs.end = {36.9, -84.2};
  state.path = computePathGeometry(plane, state.inputs.start, state.inputs.end, 1000,
                                   static_cast<std::int16_t>(samples - 1));
  state.inputs.antennaHeights = {30, 10};
  state.inputs.k = 1.33333F;
  state.inputs.frequency = kFrequency;
  state.inputs.fresnelFraction = 0.6F;
  state.inputs.units = unitsFor(Init_GUC(), 1);
  const std::int32_t all = state.path.samples;
  state.elevation = SampleArray<float>(static_cast<std::size_t>(all));
  for (std::int32_t i = 1; i <= all; ++i) state.elevation[i] = hill(i, all);
  state.curve = curvatureRise(state.inputs.k, all, state.path.extendedLength);
  state.lineOfSight = lineOfSight(state.path, state.elevation, state.curve, state.inputs.antennaHeights);
  state.wavelength = wavelengthOf(kFrequency);
  state.fresnel = fresnelLine(state.path, state.lineOfSight, state.wavelength, state.inputs.fresnelFraction);
  state.statistics = heightStatistics(state.path, state.elevation, state.curve);
  state.model = ModelParameters{0, 5, 15, 0.005, 301, 0, 0};
  state.flags.resample = false;
  return exportProfile(state, plane, "NAD-83", {});
}

PathStretch wholePath(const ExportProfile& profile) {
  return pathStretch(profile.state, exportedSamples(profile.state));
}

void countSamples(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

std::size_t samplesOf(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

void BM_ModelColumn(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    LongleyRiceAlongPath model(wholePath(profile), *profile.state.model);
    double sum = 0;
    for (std::size_t n = 2; n <= samplesOf(state); ++n) sum += model.lossOver(n);
    benchmark::DoNotOptimize(sum);
  }
  countSamples(state);
}

void BM_ModelColumnBySeparateRuns(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  const PathStretch whole = wholePath(profile);
  for ([[maybe_unused]] auto _ : state) {
    double sum = 0;
    for (std::size_t n = 2; n <= samplesOf(state); ++n) {
      const ModelPath path{whole.elevations.first(n), whole.spacingMetres, whole.antennaHeights, kFrequency};
      sum += double{modeledLoss(path, *profile.state.model)};
    }
    benchmark::DoNotOptimize(sum);
  }
  countSamples(state);
}

void BM_PointToPointColumn(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    PointToPointAlongPath model(wholePath(profile), {});
    double sum = 0;
    for (std::size_t n = 2; n <= samplesOf(state); ++n) sum += model.lossesOver(n)->diffraction;
    benchmark::DoNotOptimize(sum);
  }
  countSamples(state);
}

void BM_PointToPointColumnBySeparateRuns(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  const PathStretch whole = wholePath(profile);
  for ([[maybe_unused]] auto _ : state) {
    double sum = 0;
    for (std::size_t n = 2; n <= samplesOf(state); ++n)
      sum += PointToPointAlongPath(whole, {}).lossesOver(n)->diffraction;
    benchmark::DoNotOptimize(sum);
  }
  countSamples(state);
}

// What is left of a line where the models' losses are there already.
void BM_LevelsAndTexts(benchmark::State& state) {
  constexpr std::string_view kPattern = "##0.0##";
  constexpr double kLoss = 123.456789012345, kDiffraction = 23.456789012345;  // dB
  const ExportProfile profile = hillyProfile(state.range(0));
  const ProfileColumns columns(profile);
  const SignalLevels levels(kRequest, kFrequency);
  for ([[maybe_unused]] auto _ : state) {
    std::size_t bytes = 0;
    for (std::int32_t i = columns.samples().first + 1; i <= columns.samples().last; ++i) {
      const double distance = columns.distance(i);
      const double loss = kLoss + distance;
      const float freeSpaceLoss = levels.freeSpaceLoss(distance);
      ExportLine line(profile.numbers);
      line.text(pointLine(profile, columns, i))
          .field(loss)
          .field(levels.longleyRice(loss), kPattern)
          .field(kDiffraction + distance)
          .field(0.0)
          .field(levels.pointToPoint(distance, kDiffraction + distance, 0), kPattern)
          .field(freeSpaceLoss)
          .number(levels.freeSpace(double{freeSpaceLoss}), kPattern);
      bytes += line.str().size();
    }
    benchmark::DoNotOptimize(bytes);
  }
  countSamples(state);
}

void BM_WritingTheFile(benchmark::State& state) {
  const std::string path = (std::filesystem::temp_directory_path() /
                            ("export_bench_" + std::to_string(std::random_device()()) + ".csv"))
                               .string();
  const std::string line(180, '5');
  for ([[maybe_unused]] auto _ : state) {
    TextFile file(path);
    for (std::size_t n = 0; n < samplesOf(state); ++n) file.line(line);
    file.write();
  }
  std::filesystem::remove(path);
  countSamples(state);
}

void BM_SignalProfile(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    std::size_t bytes = 0;
    const auto count = [&bytes](std::string_view text) { bytes += text.size(); };
    writeSignalProfile(profile, kRequest, {}, count, [](std::int32_t, std::int32_t) {});
    writeTerrainBlock(profile, count);
    benchmark::DoNotOptimize(bytes);
  }
  countSamples(state);
}

void BM_HeightProfile(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    std::size_t bytes = 0;
    writeHeightProfile(profile, [&bytes](std::string_view line) { bytes += line.size(); });
    benchmark::DoNotOptimize(bytes);
  }
  countSamples(state);
}

void BM_LossTableNumbers(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  const NormalTable deviates = InitNormalDist();
  for ([[maybe_unused]] auto _ : state) {
    const LossTable table = lossTable(profile.state, deviates);
    benchmark::DoNotOptimize(table.at(50, 50));
  }
}

void BM_LossTableFile(benchmark::State& state) {
  const ExportProfile profile = hillyProfile(state.range(0));
  const NormalTable deviates = InitNormalDist();
  for ([[maybe_unused]] auto _ : state) {
    std::size_t bytes = 0;
    writeLossTable(profile, deviates, [&bytes](std::string_view line) { bytes += line.size(); });
    benchmark::DoNotOptimize(bytes);
  }
}

constexpr std::int64_t kFewest = 250, kMost = 5000;

void sizes(benchmark::internal::Benchmark* cases) {
  for (const std::int64_t samples :
       {kFewest, std::int64_t{500}, std::int64_t{1000}, std::int64_t{2500}, kMost})
    cases->Arg(samples);
  cases->Unit(benchmark::kMicrosecond);
}

// Each size costs four times the one before.
void fewSizes(benchmark::internal::Benchmark* cases) {
  for (const std::int64_t samples : {kFewest, std::int64_t{500}, std::int64_t{1000}}) cases->Arg(samples);
  cases->Unit(benchmark::kMicrosecond);
}

BENCHMARK(BM_ModelColumn)->Apply(sizes);
BENCHMARK(BM_PointToPointColumn)->Apply(sizes);
BENCHMARK(BM_LevelsAndTexts)->Apply(sizes);
BENCHMARK(BM_WritingTheFile)->Apply(sizes);
BENCHMARK(BM_SignalProfile)->Apply(sizes);
BENCHMARK(BM_HeightProfile)->Apply(sizes);
BENCHMARK(BM_LossTableNumbers)->Apply(sizes);
BENCHMARK(BM_LossTableFile)->Apply(sizes);
BENCHMARK(BM_ModelColumnBySeparateRuns)->Apply(fewSizes);
BENCHMARK(BM_PointToPointColumnBySeparateRuns)->Apply(fewSizes);

}  // namespace
}  // namespace zel
