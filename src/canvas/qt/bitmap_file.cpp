#include "canvas/qt/bitmap_file.h"

#include <QBuffer>
#include <QByteArray>
#include <cmath>
#include <string_view>

#include "component/services/output_file.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kPixelsPerMetre = 96 / 0.0254;  // at ratio 1

QByteArray bitmapOf(const QImage& picture) {
  QImage opaque = picture.convertToFormat(QImage::Format_RGB32);
  const int density = static_cast<int>(std::lround(kPixelsPerMetre * picture.devicePixelRatio()));
  opaque.setDotsPerMeterX(density);
  opaque.setDotsPerMeterY(density);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly) || !opaque.save(&buffer, "BMP")) throw RuntimeError::outOfMemory();
  return bytes;
}

}  // namespace

void writeBitmap(const QImage& picture, const std::string& path) {
  if (picture.isNull()) throw RuntimeError(481, "Invalid picture");
  // Relative to no folder at all, which would be taken for the folder itself.
  if (path.empty()) throw RuntimeError::pathNotFound();
  // Not by the toolkit's files, which know a path as text: bytes that are none would name another file.
  const OutputFile file(path);
  const QByteArray bytes = bitmapOf(picture);
  file.write(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace zel
