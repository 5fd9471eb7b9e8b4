// A public picture: the canvas it is drawn on, and the bytes of its file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "canvas/qt/picture_canvas.h"
#include "zel/plot_image.h"

namespace zel {

// Sides in logical pixels.
inline constexpr std::int32_t kNarrowestPlot = 100, kLowestPlot = 80, kLargestPicture = 8000;

// Throws Refusal for a size, a ratio or a combination that no picture can have.
void checkPictureShape(const PictureShape& shape, std::int32_t leastWidth, std::int32_t leastHeight);

class PictureFile {
 public:
  // Throws Refusal without a graphical application, which texts need, and without memory.
  explicit PictureFile(const PictureShape& shape);

  PictureCanvas& canvas() { return *canvas_; }

  // Title and description go into the file where its format has a place for them. Throws Refusal.
  std::string bytes(const std::string& title, const std::string& description) const;
  std::int32_t deviceWidth() const;
  std::int32_t deviceHeight() const;

 private:
  PictureShape shape_;
  std::unique_ptr<PictureCanvas> canvas_;
};

// "36.400000, -84.350000, antenna 30 m above ground"
std::string stationInWords(const Position& position, std::int16_t antennaHeight);

}  // namespace zel
