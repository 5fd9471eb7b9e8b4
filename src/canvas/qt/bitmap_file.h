// A picture as a Windows bitmap file: 24 bits a pixel, not compressed, the rows from the bottom up.
//
// The file says how large a pixel is: 1/96 inch for a picture of pixel ratio 1, half of that at ratio 2
// (3780 and 7559 pixels a metre). The ratio is the picture's own; transparency becomes what is under it.
//
// What a failure leaves: the file that was there before. The new one is written beside it and takes its place
// when it is complete; through links the file that they lead to is replaced. A device or a pipe is written
// to.
#pragma once

#include <QImage>
#include <string>

namespace zel {

// Throws RuntimeError: 61 no room, 70 no right to write, 75 no file can be there, 76 no such folder, each
// with the path and the system's reason; 481 for a picture without pixels.
void writeBitmap(const QImage& picture, const std::string& path);

}  // namespace zel
