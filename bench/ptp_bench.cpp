// The point-to-point model: one loss from the elevations, and every prefix of a path with a fresh calculator
// for each, as a signal profile has them. The arguments are the number of samples and the shape of the
// ground.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "models/ptp/ptp_calculator.h"

namespace zel::ptp {
namespace {

enum Shape : std::int64_t { kHills, kFlat, kRough, kBowl };

std::vector<float> groundOf(std::int64_t samples, std::int64_t shape) {
  std::vector<float> elevations;
  for (std::int64_t i = 0; i < samples; ++i) {
    const auto x = static_cast<double>(i);
    double height = 100;
    if (shape == kHills)
      height = 300 + 120 * std::sin(x * 0.0131) + 45 * std::sin(x * 0.097 + 1) + 12 * std::sin(x * 0.71 + 2);
    if (shape == kRough) height = 50 * std::fmod(x * x * 0.6180339887, 1);
    // Ever in sight of the transmitter on its rim, next to grazing.
    if (shape == kBowl) height = 500 * x * x * 0.0036 / 8500 + 0.5 * std::sin(x);
    elevations.push_back(static_cast<float>(height));
  }
  return elevations;
}

double lossOver(PtpCalculator& calculator, std::span<const float> elevations) {
  calculator.setElevations(elevations);
  calculator.setSpacing(0.06);
  calculator.setReceiverHeight(10);
  calculator.setSampleCount(static_cast<double>(elevations.size()));
  calculator.setFrequency(450);
  calculator.setTransmitterHeight(static_cast<double>(elevations.front()) + 30);
  return calculator.diffractionLoss() + calculator.clutterLoss();
}

void BM_OneLoss(benchmark::State& state) {
  const std::vector<float> elevations = groundOf(state.range(0), state.range(1));
  for ([[maybe_unused]] auto _ : state) {
    PtpCalculator calculator;
    benchmark::DoNotOptimize(lossOver(calculator, elevations));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_AllPrefixes(benchmark::State& state) {
  const std::vector<float> elevations = groundOf(state.range(0), state.range(1));
  for ([[maybe_unused]] auto _ : state) {
    SharedPtpPath shared;
    for (std::size_t count = 2; count <= elevations.size(); ++count) {
      PtpCalculator calculator({}, shared);
      benchmark::DoNotOptimize(lossOver(calculator, std::span(elevations).first(count)));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// What sharing saves.
void BM_AllPrefixesApart(benchmark::State& state) {
  const std::vector<float> elevations = groundOf(state.range(0), state.range(1));
  for ([[maybe_unused]] auto _ : state) {
    for (std::size_t count = 2; count <= elevations.size(); ++count) {
      PtpCalculator calculator;
      benchmark::DoNotOptimize(lossOver(calculator, std::span(elevations).first(count)));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_OneLoss)->ArgsProduct({{1000, 5000}, {kHills}})->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AllPrefixes)
    ->ArgsProduct({{250, 1000, 2500, 5000}, {kHills}})
    ->ArgsProduct({{5000, 10000}, {kFlat, kRough, kBowl}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AllPrefixesApart)->ArgsProduct({{1000}, {kHills}})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zel::ptp
