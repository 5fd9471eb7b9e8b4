// The plot of the profile window as a picture, made without a window.
//
// The picture is the one that the window would show for the path: samples a little past both ends, the index
// rules of the plot, colours, reference lines and units of the settings. Its world coordinates are the
// plot's: x in kilometres from the back point, which lies somewhat behind the start, and y in metres above
// sea level with the curvature rise. A distance from the start is x - distanceShiftKm. World coordinates go
// to logical pixels from the left top corner by
//     x = (world x - left) / (right - left) * width        y = (world y - top) / (bottom - top) * height
// and on to the nearest device pixel, pixelRatio of them to a logical one; what lies on the right or bottom
// border is drawn on the last pixel.
//
// The function belongs to the thread of the ProfileControl objects. Without a bound host it uses the settings
// of the component's own application object, "zelProfiler01". Texts need a graphical application: in a
// process that has none a graphical application is made and kept, one without a screen where there is no
// display.
#ifndef ZEL_PLOT_IMAGE_H_
#define ZEL_PLOT_IMAGE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/path_view.h"
#include "zel/terrain.h"

namespace zel {

enum class PictureFormat : std::uint8_t {
  kPng,
  kSvg,  // SVG 1.1: the same strokes in the same places, to be shown at any size; texts are texts
};

// The same for every picture; each has a smallest size of its own.
struct PictureShape {
  PictureFormat format = PictureFormat::kPng;
  std::int32_t width = 1000;  // logical pixels, at most 8000
  std::int32_t height = 500;  // logical pixels, at most 8000
  // 0.5 to 4; neither side may come to more than 16000 device pixels. An SVG has none: 1.
  double pixelRatio = 1;
};

// Of a path with markers or an expanded view. At least 100 x 80 logical pixels.
struct PlotImageRequest : PathViewRequest, PictureShape {};

struct PlotImageScale {
  double left = 0, right = 0;  // km
  double top = 0, bottom = 0;  // metres
};

// Logical pixels from the left top corner.
struct PlotImageRectangle {
  double x = 0, y = 0, width = 0, height = 0;
};

enum class PlotImageLabelKind : std::uint8_t { kElevation, kRange };

struct PlotImageLabel {
  PlotImageLabelKind kind = PlotImageLabelKind::kElevation;
  std::string text;       // in the units shown
  double x = 0;           // km; where its left top corner was asked for
  double y = 0;           // metres
  double distanceKm = 0;  // of x, from the start
  // Where it is: moved by as little as keeps it whole, in the picture and off the texts before it.
  PlotImageRectangle rectangle;
};

struct PlotImageMarker {
  bool right = false;     // the second of the two
  double distanceKm = 0;  // from the start, as used
  double x = 0;           // km
  double pixelX = 0;      // logical pixels
  Position position;
  double groundM = 0;  // above sea level, as the pointer reads it there
};

struct PlotImageAntenna {
  double x = 0;  // km
  std::int16_t heightM = 0;
  double topM = 0;                // above sea level, curvature rise included
  double pixelX = 0, pixelY = 0;  // of the top, logical pixels
};

struct PlotImage {
  // As PathProfile::status in zel/path_profile.h. Other members are set only with 0.
  int status = 0;
  std::string error;

  std::string png, svg;  // the bytes of the file, of the format that was asked for
  std::int32_t deviceWidth = 0, deviceHeight = 0;

  PlotImageScale scale;
  PlotImageRectangle rectangle;  // of the plot in the picture: all of it
  double pixelRatio = 1;
  std::vector<PlotImageLabel> labels;  // those that are seen, in the order in which they are drawn
  std::vector<PlotImageMarker> markers;
  bool expanded = false;
  // The ground is drawn through these samples, counted from 1, sample i at x = i spacings and, in the
  // expanded view, at (i + 1) spacings.
  std::int32_t firstSample = 0, lastSample = 0;
  std::int32_t samples = 0;  // of the whole plot
  double spacingKm = 0;      // of the plot's x
  double distanceShiftKm = 0;
  PlotImageAntenna start, end;

  double distanceKm = 0;  // from station to station
  double bearingDeg = 0;
  double extendedKm = 0;  // of the whole plot
  // Where the first and the last sample were taken; those between lie evenly on the geodesic.
  Position back, forward;
  double k = 0;
  double frequencyMhz = 0;
  int fresnelPercent = 0;
  PlotUnits units = PlotUnits::kMetric;
  std::string freeSpaceLoss;  // dB, as the window shows it
  std::string modeledLoss;    // dB; empty when there is none

  TerrainProvenance terrain;
  // Defaults taken, roundings and repairs made, voids, in words.
  std::vector<std::string> notes;
};

// Never throws for bad input: the status and the error say what was wrong, and no message box is shown.
// Throws SettingsError (zel/settings.h) when the settings cannot be read.
ZEL_API PlotImage renderPlotImage(const PlotImageRequest& request);

// The same up to the drawing: whether the path of the request has a plot, and if not, why (status and error).
// Everything else that it gives is what is known before a stroke is drawn: terrain, notes. Ground that the
// profile window refuses to carry, at the price of the process, is refused here with its place.
ZEL_API PlotImage checkPlotPath(const PlotImageRequest& request);

}  // namespace zel

#endif  // ZEL_PLOT_IMAGE_H_
