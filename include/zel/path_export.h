// The files of the profile window's "Export" menu, made without the window.
//
// They are the files that the window would write for the same path, settings and locale, to the byte: the
// samples and index rules of the plot, numbers of CSV files in the user's locale. What the window passes in
// silence - nothing to export, a frequency without levels, no power - is an error with its reason here.
//
// A file is written whole or not at all, and one that is there is replaced, with one exception: an export
// that fails midway leaves its lines up to there, as in the window. The function belongs to the thread of the
// ProfileControl objects, handles no events, shows no box and writes to no log. Without a bound host it uses
// the settings of the component's own application object, "zelProfiler01".
#ifndef ZEL_PATH_EXPORT_H_
#define ZEL_PATH_EXPORT_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "zel/coordinates.h"
#include "zel/export.h"
#include "zel/path_loss.h"
#include "zel/path_view.h"
#include "zel/terrain.h"

namespace zel {

enum class PathExportKind : std::uint8_t {
  kHeightProfile,  // CSV: summary, markers, a row for each sample
  kLossTable,      // CSV: the model's loss over the whole path by 99 confidences and 99 reliabilities
  kSignalProfile,  // CSV: signal levels at each sample by three methods; "<file>.terrain.txt": the heights
  // "<base>.dat": signal levels at each sample; "<base>.plt": the script by which the program of the setting
  // Settings/gnuPlotEXE draws "<base>.png"; "<base>_PTP.txt": the point-to-point program's results. <base> is
  // the file without its extension.
  kSignalGraph,
  kBitmap,  // the plot as a Windows bitmap
};

struct PathExportRequest : PathViewRequest {
  PathExportKind kind = PathExportKind::kHeightProfile;
  std::string file;

  // Of signal profile and graph. kW above 0; the transmitter stands at the start of the view, for the graph
  // at the start of the path.
  std::optional<double> erpKw;                  // 1 unless given
  std::optional<double> longleyRiceClutterDb;   // taken off the levels; 0 unless given
  std::optional<double> pointToPointClutterDb;  // the same
  // Of the graph. Metres from the start, between which the curves are drawn: the whole path unless given.
  std::optional<double> startM;
  std::optional<double> endM;
  std::string title;

  // Of the bitmap, logical pixels as PlotImageRequest has them: those of the window when it opens, unless
  // given.
  std::int32_t width = 621;
  std::int32_t height = 164;

  // Called for each sample of signal profile and graph; false cancels the export, which then leaves what was
  // there. What it throws cancels the export too, and is thrown by exportPath when that is done. May be
  // empty.
  std::function<bool(std::int32_t done, std::int32_t all)> progress;
};

// The parameters of the point-to-point model, section "PTP" of the settings.
struct PathExportPointToPoint {
  Polarization polarization = Polarization::kHorizontal;
  double permittivity = 0;  // dimensionless
  double conductivity = 0;  // S/m
  int clutterCategory = 0;  // 0 none
  double clutterHeightM = 0;
};

struct PathExportMarker {
  bool right = false;     // the second of the two
  double distanceKm = 0;  // from the start, as used
};

inline constexpr int kPathExportFailed = 6;     // on its way, or because of a file
inline constexpr int kPathExportCancelled = 7;  // by the progress

struct PathExport {
  // 0 good; 1 to 5 as PathProfile::status in zel/path_profile.h; or one of those above. Other members are set
  // only with 0.
  int status = 0;
  std::string error;
  // Those written, in the order of the kind's description; with kPathExportFailed those that were written or
  // begun before the failure.
  std::vector<std::string> files;

  Position from, to;  // as used
  std::int16_t startHeightM = 0, endHeightM = 0;
  double distanceKm = 0;
  double bearingDeg = 0;
  std::int32_t samples = 0;  // exported: of the stretch, or from station to station
  double spacingKm = 0;
  bool expanded = false;
  std::vector<PathExportMarker> markers;
  double k = 0;
  double frequencyMhz = 0;
  int fresnelPercent = 0;
  PlotUnits units = PlotUnits::kMetric;
  std::string decimalPoint;  // of the numbers in the files
  // Of signal profile and graph.
  double erpKw = 0;
  double longleyRiceClutterDb = 0, pointToPointClutterDb = 0;
  double startM = 0, endM = 0;  // of the graph
  // Where the models take part. The loss table has levels of its own in the place of the settings'.
  std::optional<PathLossModelInputs> model;
  std::optional<PathExportPointToPoint> pointToPoint;
  std::int32_t width = 0, height = 0;  // of the bitmap

  TerrainProvenance terrain;
  std::vector<std::string> notes;     // defaults taken, roundings, voids, in words
  std::vector<std::string> warnings;  // of settings misread and the terrain, in words
};

// Never throws for bad input or files that cannot be written: the status and the error say what was wrong.
// Throws SettingsError (zel/settings.h) when the settings cannot be read.
ZEL_API PathExport exportPath(const PathExportRequest& request);

}  // namespace zel

#endif  // ZEL_PATH_EXPORT_H_
