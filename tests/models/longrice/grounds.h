// Grounds to run the irregular terrain model over, the same at every run and on every machine.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel::longrice {

// Numbers that only depend on the seed.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  double uniform(double low, double high) {
    return low + (high - low) * static_cast<double>(next() >> 11) * 0x1p-53;
  }
  // Evenly in the logarithm.
  double decades(double low, double high) { return std::exp(uniform(std::log(low), std::log(high))); }
  // 0 to count - 1.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

 private:
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
  }
  std::uint64_t state_;
};

using Ground = std::vector<double>;  // metres above sea level

// Steps of up to so many metres between neighbours.
inline Ground randomWalk(Random& random, std::size_t samples, double step) {
  Ground ground(samples);
  double height = random.uniform(0, 1000);
  for (double& elevation : ground) {
    elevation = height;
    height += random.uniform(-step, step);
  }
  return ground;
}

inline Ground rounded(Ground ground) {
  for (double& elevation : ground) elevation = std::round(elevation);
  return ground;
}

// One of the shapes that paths are made of, chosen at random: flat, sloping, waves, noise, walks smooth and
// rough, whole metres with many ties, a ridge, a plateau, a bowl, a dome.
inline Ground anyGround(Random& random, std::size_t samples) {
  const double relief = random.decades(1, 1500);
  const auto shaped = [samples](const auto& height) {
    Ground ground(samples);
    for (std::size_t i = 0; i < samples; ++i)
      ground[i] = height(static_cast<double>(i) / static_cast<double>(samples - 1));
    return ground;
  };
  constexpr double kTurn = 6.283185307179586;
  switch (random.below(11)) {
    case 0:
      return Ground(samples, std::round(random.uniform(0, 500)));
    case 1:
      return shaped([relief](double t) { return relief * t; });
    case 2: {
      const double waves = random.uniform(1, 20);
      return shaped([=](double t) { return 500 + relief * std::sin(kTurn * waves * t); });
    }
    case 3:
      return shaped([&random, relief](double) { return random.uniform(0, relief); });
    case 4:
      return randomWalk(random, samples, 2);
    case 5:
      return randomWalk(random, samples, 60);
    case 6:
      return rounded(randomWalk(random, samples, 3));
    case 7: {
      const double middle = random.uniform(0.1, 0.9);
      return shaped([=](double t) { return 100 + relief * std::exp(-std::abs(t - middle) * 30); });
    }
    case 8: {
      const double edge = random.uniform(0.1, 0.5);
      return shaped([=](double t) { return t > edge && t < 1 - edge / 2 ? relief : 0; });
    }
    case 9:
      return shaped([relief](double t) { return relief * (2 * t - 1) * (2 * t - 1); });
    default:
      return shaped([relief](double t) { return relief * (1 - (2 * t - 1) * (2 * t - 1)); });
  }
}

}  // namespace zel::longrice
