// Grounds and paths to run the point-to-point model over, the same at every run and on every machine.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "models/ptp/growing_ptp_path.h"

namespace zel::ptp {

using Elevations = std::vector<float>;  // metres above sea level

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

// Flat, sloping, waves, noise, walks, walks in whole metres with many ties, a ridge, a bowl.
inline Elevations anyGround(Random& random, std::size_t samples) {
  const double relief = random.decades(1, 1500);
  const std::size_t kind = random.below(8);
  const double waves = random.uniform(1, 20);
  const double middle = random.uniform(0.1, 0.9);
  double height = random.uniform(0, 1000);
  Elevations ground;
  for (std::size_t i = 0; i < samples; ++i) {
    const double t = static_cast<double>(i) / static_cast<double>(samples);
    switch (kind) {
      case 0:
        ground.push_back(static_cast<float>(relief));
        break;
      case 1:
        ground.push_back(static_cast<float>(relief * t));
        break;
      case 2:
        ground.push_back(static_cast<float>(500 + relief * std::sin(6.3 * waves * t)));
        break;
      case 3:
        ground.push_back(static_cast<float>(random.uniform(0, relief)));
        break;
      case 4:
        ground.push_back(static_cast<float>(height));
        height += random.uniform(-1, 1) * relief / 20;
        break;
      case 5:
        ground.push_back(static_cast<float>(std::round(height)));
        height += random.uniform(-3, 3);
        break;
      case 6:
        ground.push_back(static_cast<float>(relief * std::exp(-std::abs(t - middle) * 30)));
        break;
      default:
        ground.push_back(static_cast<float>(relief * (2 * t - 1) * (2 * t - 1)));
    }
  }
  return ground;
}

inline GrowingPtpPath pathOver(const Elevations& ground, double spacing, double transmitterHeight,
                               double effectiveRadius = 8500) {
  GrowingPtpPath path(spacing, effectiveRadius, static_cast<double>(ground.front()) + transmitterHeight);
  path.append(ground);
  return path;
}

}  // namespace zel::ptp
