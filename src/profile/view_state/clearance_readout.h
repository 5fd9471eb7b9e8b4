// The clearance read-out of a view: how far the ground stays from the line of sight, for the whole path once
// a drawing, and under the pointer as it moves.
//
// Exact geometry, as profile/calculation/exact_profile.h has it, over samples E to N + E, evenly from station
// to station on the distance D. The effective-earth factor is the one of the rise that the picture shows.
//
// Under the pointer. A sample was taken at (i - 1) L / (T - 1), the plot draws it at i spacings, and the
// pointer's height reads sample k at (k - 1) spacings. Here a sample lies where the plot draws it: for a
// pointer that reads samples k and k + 1, these are k - 1 and k. So the clearance under the pointer is that
// of the worst obstacle when the pointer stands on it, at the distance that the read-out names. The height
// read-out beside it tells the ground one sample further on; so it is meant. Without samples at the pointer's
// reading there is no clearance either.
//
// Distances are kilometres from the start, clearances metres, fractions those of the first-zone radius.
// Nothing is thrown; what makes no profile comes back as a status.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/number_text.h"
#include "profile/calculation/exact_profile.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

struct PathClearance {
  std::optional<ExactProfileStatus> status;  // nothing as long as the state has no terrain
  std::optional<WorstObstacle> worst;        // its sample counts from 0 at the start
  ClearanceVerdict verdict = ClearanceVerdict::kUnknown;
  double k = 0;            // as used: that of the drawn rise
  double frequency = 0;    // MHz, as used
  std::int32_t voids = 0;  // samples from station to station that have no height
};

// In proportion to the samples: to be called once a drawing.
PathClearance pathClearance(const ProfileViewState& state);

struct PointerClearance {
  double distance = 0;             // km from the start
  double clearance = 0;            // metres
  std::optional<double> fraction;  // of the first zone; nothing at a station, and without a frequency
};

// At plot x, km; in constant time. Nothing outside the stations, beside a void, where the pointer reads no
// ground, and without terrain or a line of sight.
std::optional<PointerClearance> clearanceUnder(const ProfileViewState& state, double x);

// Characters: what the 400 pixels of the window's row hold at 8 pt.
inline constexpr std::size_t kClearanceRow = 70;

// One line each, in the state's display units.
//
// "Worst 12.34 km: clearance 35.2 m, 120 % of zone 1: clear (k 1.33)". Where a k was typed that the rise does
// not have yet: "(k 1.33, not yet 1.2)". Lines that would be wider than the widest leave out the word, then
// the metres, and nothing else. Empty without terrain.
std::string pathClearanceText(const ProfileViewState& state, const PathClearance& clearance,
                              const NumberStyle& numbers = {}, std::size_t widestLine = kClearanceRow);
// "Pointer 3.21 km: clearance 12.0 m, 45 % of zone 1"; "Pointer 3.21 km: no ground" beside a void. Empty
// where there is nothing to tell.
std::string pointerClearanceText(const ProfileViewState& state, double x, const NumberStyle& numbers = {});

}  // namespace zel
