// The texts of the signal graph but for its script: the plot data, and what the point-to-point program is
// given and gives back.
//
// All numbers have a point, whatever the user's locale: programs read them. Samples are counted from the
// transmitter, 0 under it, N under the end antenna; the whole path is written, whatever the view shows.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "export/export_profile.h"
#include "export/export_texts.h"
#include "export/signal_levels.h"
#include "export/signal_profile.h"
#include "models/ptp/parameters.h"

namespace zel {

// What is beside the chosen name: in its folder, with its base name.
struct SignalGraphFiles {
  std::string picture;  // .png
  std::string data;     // .dat
  std::string results;  // _PTP.txt
  std::string script;   // .plt
};
// The names are unmistakable. Throws RuntimeError 75 for a name without a base name: "dir/", "..", ".png".
SignalGraphFiles signalGraphFiles(const std::string& outfile);

// A relative name that gnuplot would take for a command or an option ("|mail.png", "-x.png"), led in by
// "./".
std::string unmistakable(std::string path);

// What is asked for, as samples of a path.
struct SignalGraphPlan {
  SignalRequest signal;
  std::int32_t start = 0;
  std::int32_t end = 0;  // included
  std::string title;
};

// The sample nearest to a distance in metres, halves to the even one, also where it lies before the path or
// beyond it. Throws RuntimeError 6 for one beyond 32 bits.
std::int32_t graphSample(const ProfileViewState& state, double metres);

// Metres above sea level: the ground under the transmitter and its height above it.
double graphTransmitterHeight(const ProfileViewState& state);

// Metres. The mean is taken from the 30th to the 161st sample, 132 heights whose sum is divided by 131, as is
// meant; 30 where the path has no more than 161 samples after its first.
double heightAboveAverageTerrain(const ProfileViewState& state);

// --- the point-to-point program ---

// "START", and the ground of every sample.
void writeTerrainInput(const ProfileViewState& state, const LineSink& write);
// What the program computes the same with as this one does: spacing, transmitter, ground and cover.
void writeTerrainCompanion(const ProfileViewState& state, const ptp::PtpParameters& parameters,
                           const LineSink& write);

// Levels in dBuV/m by sample; a level that there is none of is not a number.
using PointToPointLevels = std::vector<double>;
inline constexpr double kNoLevel = std::numeric_limits<double>::quiet_NaN();
// Of a result file's text. A line that is no row of the path is passed over, and so is a last one that is not
// ended: its writer did not finish it.
PointToPointLevels readPointToPointLevels(std::string_view text, std::int32_t samples);

// --- the plot data ---

// Columns 5 and 7, dBu: the standard contour, and a line to compare with.
inline constexpr std::array<double, 2> kReferenceLines{70, 60};

// A sample of the stretch, as the curves go through it.
struct PlottedSample {
  double distance = 0;             // km
  std::array<double, 3> levels{};  // dBuV/m: irregular terrain model, point-to-point, free space; kNoLevel
};
using EachPlotted = std::function<void(const PlottedSample& sample)>;

// A sample outside the stretch is a comment of gnuplot, and so is the first, at distance 0. Where there is no
// level the column is "NaN": gnuplot interrupts the curve there, while it joins the neighbours of a column
// that is empty or "?". Failures are those of writeSignalProfile.
void writeGraphData(const ExportProfile& profile, const SignalGraphPlan& plan,
                    const PointToPointLevels& pointToPoint, const LineSink& write,
                    const EachSample& eachSample, const EachPlotted& eachPlotted);

// A text that may come in several lines, such as a title.
std::string onOneLine(const std::string& title);

}  // namespace zel
