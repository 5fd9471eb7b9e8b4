// Bitmap files are read by the bytes of the format here, not by the toolkit that wrote them.
#include "canvas/qt/bitmap_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QColor>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <string>

#include "foundation/runtime_error.h"
#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

class BitmapFile : public testing::Test {
 protected:
  // The little-endian number of so many bytes.
  static std::int64_t number(const std::string& bytes, std::size_t at, std::size_t size) {
    std::int64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
      value |= std::int64_t{static_cast<unsigned char>(bytes.at(at + i))} << (8 * i);
    return value;
  }
  // Red, green, blue of a pixel, counted from the left top.
  static QRgb pixel(const std::string& bytes, int x, int y) {
    const auto width = number(bytes, 18, 4);
    const auto height = number(bytes, 22, 4);
    const auto row = (width * 3 + 3) / 4 * 4;
    const auto at =
        static_cast<std::size_t>(number(bytes, 10, 4) + (height - 1 - y) * row + std::int64_t{x} * 3);
    return qRgb(static_cast<int>(number(bytes, at + 2, 1)), static_cast<int>(number(bytes, at + 1, 1)),
                static_cast<int>(number(bytes, at, 1)));
  }
  static QImage colourful(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        image.setPixel(x, y, qRgb(x * 7 % 256, y * 11 % 256, (x + y) * 5 % 256));
    return image;
  }
  int errorOf(const std::string& path, const QImage& image = colourful(3, 2)) {
    try {
      writeBitmap(image, path);
    } catch (const RuntimeError& error) {
      text_ = error.description();
      return error.number();
    }
    return 0;
  }
  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
  }

  test::TemporaryFolder folder_;
  std::string text_;
};

TEST_F(BitmapFile, HoldsEveryPixelInTwentyFourBits) {
  const QImage image = colourful(7, 5);  // rows of 21 bytes, filled up to 24
  writeBitmap(image, (folder_ / "plot.bmp").string());
  const std::string bytes = test::fileBytes(folder_ / "plot.bmp");
  ASSERT_EQ(bytes.size(), 54U + 5U * 24U);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  EXPECT_EQ(number(bytes, 2, 4), static_cast<std::int64_t>(bytes.size()));
  EXPECT_EQ(number(bytes, 18, 4), 7) << "width";
  EXPECT_EQ(number(bytes, 22, 4), 5) << "height, from the bottom up";
  EXPECT_EQ(number(bytes, 26, 2), 1) << "planes";
  EXPECT_EQ(number(bytes, 28, 2), 24) << "bits a pixel";
  EXPECT_EQ(number(bytes, 30, 4), 0) << "compression";
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 7; ++x) EXPECT_EQ(pixel(bytes, x, y), image.pixel(x, y)) << x << ", " << y;
}

TEST_F(BitmapFile, SaysHowLargeAPixelIs) {
  QImage image = colourful(4, 4);
  writeBitmap(image, (folder_ / "plot.bmp").string());
  // 96 pixels to 0.0254 m, rounded.
  EXPECT_EQ(number(test::fileBytes(folder_ / "plot.bmp"), 38, 4), 3780);
  EXPECT_EQ(number(test::fileBytes(folder_ / "plot.bmp"), 42, 4), 3780);
  image.setDevicePixelRatio(2);
  writeBitmap(image, (folder_ / "plot.bmp").string());
  EXPECT_EQ(number(test::fileBytes(folder_ / "plot.bmp"), 38, 4), 7559);
  EXPECT_EQ(number(test::fileBytes(folder_ / "plot.bmp"), 18, 4), 4) << "device pixels";
}

TEST_F(BitmapFile, IsOfTwentyFourBitsWhateverThePictureHas) {
  for (const QImage::Format format :
       {QImage::Format_ARGB32, QImage::Format_Grayscale8, QImage::Format_RGB16, QImage::Format_RGBA64}) {
    QImage image(3, 2, format);
    image.fill(Qt::white);
    writeBitmap(image, (folder_ / "plot.bmp").string());
    const std::string bytes = test::fileBytes(folder_ / "plot.bmp");
    EXPECT_EQ(number(bytes, 28, 2), 24) << format;
    EXPECT_EQ(pixel(bytes, 2, 1), qRgb(255, 255, 255)) << format;
  }
}

TEST_F(BitmapFile, ReplacesAFileThatIsThere) {
  test::writeBytes(folder_ / "plot.bmp", std::string(100000, 'x'));
  writeBitmap(colourful(3, 2), (folder_ / "plot.bmp").string());
  EXPECT_EQ(test::fileBytes(folder_ / "plot.bmp").size(), 54U + 2U * 12U);
  EXPECT_EQ(filesInFolder(), 1U) << "nothing is left beside it";
}

TEST_F(BitmapFile, IsWrittenThroughALink) {
  test::writeBytes(folder_ / "real.bmp", "old");
  fs::create_symlink(folder_ / "real.bmp", folder_ / "link.bmp");
  writeBitmap(colourful(3, 2), (folder_ / "link.bmp").string());
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.bmp"));
  EXPECT_EQ(test::fileBytes(folder_ / "real.bmp").substr(0, 2), "BM");
}

TEST_F(BitmapFile, TakesNamesThatAreNotAscii) {
  writeBitmap(colourful(3, 2), (folder_ / "Höhenprofil ✓.bmp").string());
  EXPECT_EQ(test::fileBytes(folder_ / "Höhenprofil ✓.bmp").substr(0, 2), "BM");
}

TEST_F(BitmapFile, TakesNamesThatAreNoText) {
  writeBitmap(colourful(3, 2), (folder_ / "lat\xE9.bmp").string());
  EXPECT_EQ(test::fileBytes(folder_ / "lat\xE9.bmp").substr(0, 2), "BM");
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(BitmapFile, RefusesAPictureWithoutPixels) {
  EXPECT_EQ(errorOf((folder_ / "plot.bmp").string(), QImage()), 481);
  EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(BitmapFile, SaysWhatIsWrongWithThePlace) {
  EXPECT_EQ(errorOf(""), 76);
  EXPECT_EQ(errorOf((folder_ / "gone" / "plot.bmp").string()), 76);
  EXPECT_NE(text_.find("Path not found: cannot write "), std::string::npos) << text_;
  EXPECT_NE(text_.find("gone/plot.bmp ("), std::string::npos) << text_;
  EXPECT_EQ(errorOf(folder_.path().string()), 75) << "a folder";
  test::writeBytes(folder_ / "file", "x");
  EXPECT_EQ(errorOf((folder_ / "file" / "plot.bmp").string()), 76) << "below a file";
  EXPECT_EQ(errorOf((folder_ / std::string(300, 'n')).string()), 75) << "a name that is too long";
}

TEST_F(BitmapFile, SaysThatNothingMayBeWritten) {
  test::writeBytes(folder_ / "plot.bmp", "old");
  ASSERT_EQ(::chmod((folder_ / "plot.bmp").c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
  for (const char* name : {"plot.bmp", "new.bmp"})
    EXPECT_EQ(test::exitCodeAsNobody([&] { return errorOf((folder_ / name).string()); }), 70) << name;
  ::chmod(folder_.path().c_str(), 0755);
  EXPECT_EQ(test::fileBytes(folder_ / "plot.bmp"), "old");
}

// Files may not grow beyond so many bytes while it lives: what a full disk does to a writer.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(BitmapFile, LeavesWhatWasThereWhenItDoesNotFit) {
  test::writeBytes(folder_ / "plot.bmp", "old");
  {
    const FileSizeLimit limit(1000);
    EXPECT_NE(errorOf((folder_ / "plot.bmp").string(), colourful(100, 100)), 0);
    EXPECT_NE(errorOf((folder_ / "new.bmp").string(), colourful(100, 100)), 0);
  }
  EXPECT_EQ(test::fileBytes(folder_ / "plot.bmp"), "old");
  EXPECT_EQ(filesInFolder(), 1U) << "nothing half done is left";
}

TEST_F(BitmapFile, TellsOfAFullDisk) {
  // A device of the test's own in place of /dev/full, which a mistake here would replace.
  const std::string device = (folder_ / "full.bmp").string();
  if (::mknod(device.c_str(), S_IFCHR | 0600, static_cast<dev_t>(0x107)) != 0)
    GTEST_SKIP() << "no device can be made here";
  if (::access(device.c_str(), W_OK) != 0) GTEST_SKIP() << "devices cannot be used here";
  EXPECT_EQ(errorOf(device), 61);
  EXPECT_NE(text_.find("Disk full: cannot write "), std::string::npos) << text_;
  EXPECT_TRUE(fs::is_character_file(device)) << "a device is not replaced";
}

}  // namespace
}  // namespace zel
