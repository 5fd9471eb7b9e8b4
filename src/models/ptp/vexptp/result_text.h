// The result file, comma-separated, without blanks:
//
//     sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm
//     1,0,-999,-999,-999
//     2,0.1,0,0,126.92
//
// One line a sample, counted from 1. Numbers have a point and no exponent, and so many digits that they read
// back to the last bit. -999 stands where there is no value.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "models/ptp/vexptp/prefix_levels.h"

namespace zel::ptp {

inline constexpr std::string_view kResultTitles =
    "sample,distance_km,diffraction_loss_db,clutter_loss_db,level_dbuvm";

// Calls it with each line, without its end.
void writeResult(std::span<const PrefixLevel> rows, const std::function<void(std::string_view line)>& write);

}  // namespace zel::ptp
