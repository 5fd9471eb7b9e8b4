// A picture of strokes as an SVG 1.1 document.
//
// Its size is the picture's, in pixels, and so are its coordinates, to a hundredth. Texts are text elements
// in the picture's font with sans-serif behind it, each told the width that it was placed with, so that they
// keep off one another whatever font a reader has. Rectangles have sharp edges, so that none shows a seam.
#pragma once

#include <string>
#include <string_view>

#include "canvas/qt/vector_canvas.h"

namespace zel {

// UTF-8, as is what is given. The title names the picture, the description says what is in it; an empty one
// is left out. Characters that no XML document may hold become U+FFFD.
std::string svgPicture(const VectorCanvas& canvas, std::string_view title, std::string_view description);

}  // namespace zel
