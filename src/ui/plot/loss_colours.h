// The colours of losses: from a pale yellow for the lowest over teal to a dark blue for the highest.
//
// The lightness falls evenly, so that equal steps of loss look equal, a print in grey keeps their order, and
// eyes that do not tell red from green lose nothing. Colour space: Oklab (B. Ottosson, "A perceptual color
// space for image processing", 2020); lightness 0 (black) to 1 (white), dimensionless.
#pragma once

#include "canvas/canvas.h"

namespace zel {

// 0 is the lowest loss, 1 the highest; what lies beyond takes the colour of the end, and NaN that of 0.
Colour lossColour(double part);

// Whether black shows better on the colour than white does.
bool isLight(double part);

}  // namespace zel
