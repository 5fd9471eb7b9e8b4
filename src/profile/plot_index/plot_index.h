// Where the samples of a path stand in the plot, and where they were taken: the given index rules, by name.
//
// The plot's x runs in kilometres from 0 at the back point to L at the forward point. The start antenna
// stands on sample E at x0 = E spacings, the end antenna on sample N + E at x0 + D. A distance from the start
// is d = x - x0; nobody else subtracts.
//
// The plot draws sample i at i spacings and its rise is the rise of just that x, while the sampler took it at
// (i - 1) L / (T - 1), and the pointer reads it at (i - 1) spacings. All of that is meant.
#pragma once

#include <cstdint>
#include <optional>

#include "foundation/sample_array.h"
#include "profile/calculation/line_of_sight.h"
#include "profile/path/path_geometry.h"

namespace zel {

// The first and the last of a run of samples, both included; empty when first is above last.
struct SampleRange {
  std::int32_t first = 1;
  std::int32_t last = 0;

  friend bool operator==(const SampleRange&, const SampleRange&) = default;
};

// The pointer between two samples.
struct PointerPosition {
  std::int32_t sample = 0;  // the one before it, from 1 to T - 1
  double fraction = 0;      // of a spacing beyond that sample, as the pointer reads it

  friend bool operator==(const PointerPosition&, const PointerPosition&) = default;
};

struct PointerHeights {
  double rise = 0;    // metres
  double ground = 0;  // metres above sea level with the rise: the height of the drawn ground
};

class PlotIndex {
 public:
  explicit PlotIndex(const PathGeometry& path) : path_(path) {}

  // --- plot x and distance from the start, km ---
  double startX() const { return path_.firstIndex * path_.spacing; }  // x0
  double endX() const { return startX() + path_.distance; }
  double distanceFromStart(double x) const { return x - startX(); }
  double xAtDistance(double distance) const { return distance + startX(); }

  // --- samples in the plot, km ---
  double sampleX(std::int32_t sample) const { return sample * path_.spacing; }
  // The expanded view draws the ground one spacing further on.
  double expandedGroundX(std::int32_t sample) const { return (sample + 1.0) * path_.spacing; }
  // From the back point; where the exported latitude and longitude of the sample are.
  double takenAt(std::int32_t sample) const {
    return (sample - 1) * path_.extendedLength / (path_.samples - 1);
  }
  // The x whose curvature rise the sample carries; nothing for the first and the last, which carry none.
  std::optional<double> riseX(std::int32_t sample) const;

  // --- runs of samples ---
  SampleRange wholePlot() const { return {1, path_.samples}; }                          // what is drawn
  SampleRange stationToStation() const { return {path_.firstIndex, path_.lastIndex}; }  // what is exported
  // What the expanded view draws of the ground between two marker positions (km in the plot's x).
  SampleRange expandedPlot(double left, double right) const;
  // The stretch of it that lies between the stations.
  SampleRange expandedStationToStation(double left, double right) const;
  // What the expanded view draws of the Fresnel line. Throws RuntimeError 6 when a marker is off 16 bits.
  SampleRange expandedFresnel(double left, double right) const;
  // The sample nearest to a marker at x, halves to the even one. Throws RuntimeError 6 off 32 bits.
  std::int32_t markerSample(double x) const;

  // --- heights ---
  // Nothing for a pointer left of the back point, and for one that would need a sample beyond the last.
  std::optional<PointerPosition> pointerAt(double x) const;
  // Both arrays are indexed 1 to T, metres.
  static PointerHeights heightsAt(const PointerPosition& pointer, const SampleArray<float>& elevation,
                                  const SampleArray<float>& rise);
  // Metres above sea level, curvature rise included, at plot x.
  double lineOfSightAt(const LineOfSight& line, double x) const {
    return line.heightAt(distanceFromStart(x));
  }

 private:
  PathGeometry path_;
};

}  // namespace zel
