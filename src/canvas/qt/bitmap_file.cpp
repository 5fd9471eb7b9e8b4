#include "canvas/qt/bitmap_file.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

constexpr double kPixelsPerMetre = 96 / 0.0254;  // at ratio 1

RuntimeError classicError(const QFileDevice& file, const QFileInfo& target) {
  // The toolkit's word for a full disk.
  if (file.error() == QFileDevice::ResourceError) return RuntimeError::diskFull();
  if (target.isDir()) return RuntimeError::pathFileAccessError();
  const QFileInfo folder(target.absolutePath());
  if (!folder.isDir()) return RuntimeError::pathNotFound();
  if (!folder.isWritable() || (target.exists() && !target.isWritable()))
    return RuntimeError::permissionDenied();
  return RuntimeError::pathFileAccessError();
}

[[noreturn]] void fail(const QFileDevice& file, const std::string& path) {
  const RuntimeError classic = classicError(file, QFileInfo(QString::fromStdString(path)));
  throw RuntimeError(classic.number(), classic.description() + ": cannot write " + path + " (" +
                                           file.errorString().toStdString() + ")");
}

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

bool isWritten(QFileDevice& file, const QByteArray& bytes) {
  return file.write(bytes) == bytes.size() && file.flush();
}

}  // namespace

void writeBitmap(const QImage& picture, const std::string& path) {
  if (picture.isNull()) throw RuntimeError(481, "Invalid picture");
  // Relative to no folder at all, which would be taken for the folder itself.
  if (path.empty()) throw RuntimeError::pathNotFound();
  const QByteArray bytes = bitmapOf(picture);
  const QString name = QString::fromStdString(path);
  const QFileInfo target(name);
  if (target.exists() && !target.isFile() && !target.isDir()) {
    // A device is written to, never replaced by a file.
    QFile device(name);
    if (!device.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !isWritten(device, bytes))
      fail(device, path);
    return;
  }
  QSaveFile file(name);
  if (!file.open(QIODevice::WriteOnly) || !isWritten(file, bytes) || !file.commit()) fail(file, path);
}

}  // namespace zel
