// A picture as a Windows bitmap file: 24 bits a pixel, not compressed, the rows from the bottom up.
//
// The file says how large a pixel is: 1/96 inch for a picture of pixel ratio 1, half of that at ratio 2
// (3780 and 7559 pixels a metre). The ratio is the picture's own; transparency becomes what is under it.
//
// It is written whole or not at all, as component/services/output_file.h has it.
#pragma once

#include <QImage>
#include <string>

namespace zel {

// Throws RuntimeError: those of OutputFile; 481 for a picture without pixels.
void writeBitmap(const QImage& picture, const std::string& path);

}  // namespace zel
