// The printed page of the profile window, made without the window.
//
// It is the page that the window would print for the same path and settings, as a PDF: vectors, texts
// that can be selected, embedded fonts. The function belongs to the thread of the ProfileControl objects,
// handles no events, shows no box and writes to no log. Without a bound host it uses the settings of the
// component's own application object, "zelProfiler01". Texts need a graphical application: in a process that
// has none one is made and kept, one without a screen where there is no display.
#ifndef ZEL_PATH_PAGE_H_
#define ZEL_PATH_PAGE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/path_export.h"
#include "zel/path_loss.h"
#include "zel/path_view.h"
#include "zel/terrain.h"

namespace zel {

enum class PagePaper : std::uint8_t { kA4, kLetter };

inline constexpr std::int32_t kMostPageCopies = 999;

struct PathPageRequest : PathViewRequest {
  std::string file;  // written whole or not at all; one that is there is replaced
  // UTF-8 of any length; none when empty. Bytes that are none and control characters are replaced and noted.
  // The settings' last one is neither read nor written.
  std::string description;
  PagePaper paper = PagePaper::kA4;
  bool landscape = false;
  std::int32_t copies = 1;  // pages of the document, 1 to kMostPageCopies
};

struct PathPage {
  // 0 good; 1 to 5 as PathProfile::status in zel/path_profile.h; kPathExportFailed (zel/path_export.h)
  // because of the file. Other members are set only with 0.
  int status = 0;
  std::string error;

  bool descriptionCut = false;  // it had no room on the page and ends in an ellipsis there
  double widthMm = 0, heightMm = 0;

  Position from, to;  // as used
  std::int16_t startHeightM = 0, endHeightM = 0;
  double distanceKm = 0;
  double bearingDeg = 0;
  bool expanded = false;
  std::vector<PathExportMarker> markers;
  double k = 0;
  double frequencyMhz = 0;
  int fresnelPercent = 0;
  PlotUnits units = PlotUnits::kMetric;
  std::string freeSpaceLoss;  // dB, as the page has it
  std::string modeledLoss;    // dB; empty when there is none
  std::optional<PathLossModelInputs> model;

  TerrainProvenance terrain;
  std::vector<std::string> notes;     // defaults taken, roundings, voids, in words
  std::vector<std::string> warnings;  // of settings misread and the terrain, in words
};

// Never throws for bad input or files that cannot be written: the status and the error say what was wrong.
// Throws SettingsError (zel/settings.h) when the settings cannot be read.
ZEL_API PathPage printPath(const PathPageRequest& request);

}  // namespace zel

#endif  // ZEL_PATH_PAGE_H_
