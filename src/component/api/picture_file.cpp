#include "component/api/picture_file.h"

#include <QBuffer>
#include <QByteArray>
#include <algorithm>

#include "canvas/qt/raster_canvas.h"
#include "canvas/qt/svg_picture.h"
#include "canvas/qt/vector_canvas.h"
#include "component/api/path_request.h"
#include "component/api/windowless_view.h"
#include "foundation/number_text.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kSmallestRatio = 0.5, kLargestRatio = 4;
constexpr double kMostDevicePixels = 16000;  // of a side

std::string sizeText(double width, double height) {
  return generalNumber(width) + " x " + generalNumber(height);
}

std::string pngBytes(const QImage& picture) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG"))
    throw Refusal{"the picture cannot be written as PNG; ask for a smaller one"};
  return bytes.toStdString();
}

std::unique_ptr<PictureCanvas> canvasOf(const PictureShape& shape) {
  const QSize size(shape.width, shape.height);
  if (shape.format == PictureFormat::kSvg) return std::make_unique<VectorCanvas>(size);
  return std::make_unique<RasterCanvas>(size, shape.pixelRatio);
}

}  // namespace

void checkPictureShape(const PictureShape& shape, std::int32_t leastWidth, std::int32_t leastHeight) {
  if (shape.width < leastWidth || shape.width > kLargestPicture || shape.height < leastHeight ||
      shape.height > kLargestPicture)
    throw Refusal{"the picture would have " + sizeText(shape.width, shape.height) + " pixels; give " +
                  sizeText(leastWidth, leastHeight) + " to " + sizeText(kLargestPicture, kLargestPicture)};
  const double ratio = shape.pixelRatio;
  if (!(ratio >= kSmallestRatio && ratio <= kLargestRatio))
    throw Refusal{"the pixel ratio is not from 0.5 to 4"};
  if (shape.format == PictureFormat::kSvg && ratio != 1)
    throw Refusal{"an SVG has no device pixels, so its pixel ratio is 1; give a larger size instead"};
  if (std::max(shape.width, shape.height) * ratio > kMostDevicePixels)
    throw Refusal{"the picture would have " + sizeText(shape.width * ratio, shape.height * ratio) +
                  " device pixels; give a size and a pixel ratio that come to at most 16000 a side"};
}

PictureFile::PictureFile(const PictureShape& shape) : shape_(shape) {
  requirePictureApplication();
  try {
    canvas_ = canvasOf(shape);
  } catch (const RuntimeError& error) {
    if (error.number() != RuntimeError::outOfMemory().number()) throw;
    throw Refusal{"there is no memory for the picture; ask for a smaller one"};
  }
}

std::string PictureFile::bytes(const std::string& title, const std::string& description) const {
  if (shape_.format == PictureFormat::kSvg)
    return svgPicture(dynamic_cast<const VectorCanvas&>(*canvas_), title, description);
  return pngBytes(dynamic_cast<const RasterCanvas&>(*canvas_).image());
}

std::int32_t PictureFile::deviceWidth() const {
  const auto* raster = dynamic_cast<const RasterCanvas*>(canvas_.get());
  return raster ? raster->image().width() : shape_.width;
}

std::int32_t PictureFile::deviceHeight() const {
  const auto* raster = dynamic_cast<const RasterCanvas*>(canvas_.get());
  return raster ? raster->image().height() : shape_.height;
}

std::string stationInWords(const Position& position, std::int16_t antennaHeight) {
  return formatNumber(position.latitude, "0.000000") + ", " + formatNumber(position.longitude, "0.000000") +
         ", antenna " + std::to_string(antennaHeight) + " m above ground";
}

}  // namespace zel
