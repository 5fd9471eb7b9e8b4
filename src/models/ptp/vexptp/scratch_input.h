// The scratch file: the ground's heights along a path, as the component hands them to the program.
//
//     START
//     187.40
//     188.12
//
// "START", then one height a line in metres above sea level, the transmitter's sample first. Lines end in
// CR LF or LF. Heights are written to the centimetre, so that they differ from the component's by up to 5 mm.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace zel::ptp {

inline constexpr std::size_t kMostSamples = 32767;
// Of a line without its end; a height has seven or eight.
inline constexpr std::size_t kLongestLine = 64;
inline constexpr std::size_t kMostScratchBytes = (kMostSamples + 1) * (kLongestLine + 2);

// At least two heights, in single precision as the component holds them. Throws InputError with the line's
// number for a line that is no height (a missing height's mark, -9999, among them), and for too few or too
// many.
std::vector<float> parseScratchInput(std::string_view text);

}  // namespace zel::ptp
