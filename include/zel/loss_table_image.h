// The losses at the end of a path as a picture: the irregular terrain model's loss for each percentage of
// confidence and of reliability, 1 to 99, coloured.
//
// Reliability runs to the right, confidence upwards. The lowest loss of the table is a pale yellow, the
// highest a dark blue, with evenly falling lightness between; lines of equal loss stand at whole decibels,
// and the cell of 50 % and 50 % is framed and told. The numbers are those of the loss table that the profile
// window exports for the same path and settings: the whole path, the model's parameters of the settings
// except for its two levels.
//
// The function belongs to the thread of the ProfileControl objects, and makes a graphical application as
// renderPlotImage does.
#ifndef ZEL_LOSS_TABLE_IMAGE_H_
#define ZEL_LOSS_TABLE_IMAGE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "zel/export.h"
#include "zel/path_loss.h"
#include "zel/path_view.h"
#include "zel/plot_image.h"
#include "zel/terrain.h"

namespace zel {

// Markers and an expanded view have no meaning here and are refused; k and the Fresnel line have no
// influence. At least 300 x 240 logical pixels.
struct LossTableImageRequest : PathViewRequest, PictureShape {};

struct LossTableImage {
  static constexpr int kPercentages = 99;

  // As PathProfile::status in zel/path_profile.h. Other members are set only with 0.
  int status = 0;
  std::string error;

  std::string png, svg;  // the bytes of the file, of the format that was asked for
  std::int32_t deviceWidth = 0, deviceHeight = 0;
  double pixelRatio = 1;

  // The cell of reliability r and confidence c, percent, reaches from x + (r - 1) / 99 width to the right and
  // from y + (99 - c) / 99 height downwards, on the nearest device pixels.
  PlotImageRectangle cells;
  PlotImageRectangle colourBar;        // lowest loss at the bottom, highest at the top
  double lowestDb = 0, highestDb = 0;  // of the table
  std::vector<double> contoursDb;      // levels of the lines
  // Basic transmission losses, dB: for confidence 1 % and the reliabilities 1 to 99 %, then for 2 %, ...
  std::vector<double> lossesDb;
  // Both percent, 1 to 99; std::out_of_range for another.
  double lossDb(int confidence, int reliability) const {
    const bool known = confidence >= 1 && reliability >= 1 && reliability <= kPercentages;
    return lossesDb.at(known ? static_cast<std::size_t>((confidence - 1) * kPercentages + reliability - 1)
                             : lossesDb.size());
  }

  Position from, to;  // as used
  std::int16_t startHeightM = 0, endHeightM = 0;
  double distanceKm = 0;
  double bearingDeg = 0;
  std::int32_t samples = 0;  // that the model was given, from station to station
  double frequencyMhz = 0;
  PlotUnits units = PlotUnits::kMetric;
  PathLossModelInputs model;

  TerrainProvenance terrain;
  std::vector<std::string> notes;     // defaults taken, roundings, voids, in words
  std::vector<std::string> warnings;  // of settings misread and the terrain, in words
};

// Never throws for bad input: the status and the error say what was wrong. Throws SettingsError
// (zel/settings.h) when the settings cannot be read.
ZEL_API LossTableImage renderLossTableImage(const LossTableImageRequest& request);

}  // namespace zel

#endif  // ZEL_LOSS_TABLE_IMAGE_H_
