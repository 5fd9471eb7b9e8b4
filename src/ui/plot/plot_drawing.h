// The drawing of the profile on a canvas. Window, printed page and picture file share it: they differ in the
// canvas and in a PlotStyle.
//
// The parts are called in their order: begin, elevationLines, rangeLines, labels, fresnelAndSight, ground.
// Each reads its colours from the settings when it draws with them, and writes what later events need into
// the view as it goes, so that the view tells the truth about the picture after a failure too.
//
// Errors: RuntimeError 6 for a number that is beyond its integer or no number, 9 for arrays that do not reach
// the samples that are drawn; those of the settings pass through.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "canvas/canvas.h"
#include "foundation/number_text.h"
#include "profile/settings/readers.h"
#include "profile/view_state/profile_view_state.h"
#include "ui/plot/plot_view.h"

namespace zel {

// What differs between the canvases.
struct PlotStyle {
  NumberStyle numbers;
  // Markers are drawn with the XOR pen, so that a second stroke erases them. Without it they are drawn in
  // their final colour, for a canvas that is written once.
  bool erasableMarkers = true;
  // Labels are drawn before the line that they belong to, so that every stroke runs over them. Otherwise
  // after all reference lines, those of the range first: these keep their places when labels make way.
  bool labelsUnderLines = true;
  std::string_view elevationPattern = "###0";
  std::string_view rangePattern = "#,##0";  // of whole units; decimals follow it on short spans
};

// Of the printed page: written once, thousands grouped.
inline PlotStyle pageStyle() { return {{}, false, false, "##,##0", "##,##0"}; }

class PlotDrawing {
 public:
  // All but the style must outlive the drawing.
  PlotDrawing(Canvas& canvas, const ProfileViewState& state, const SettingsReader& settings, PlotStyle style,
              PlotView& view)
      : canvas_(canvas),
        state_(state),
        settings_(settings),
        style_(std::move(style)),
        view_(view),
        index_(state.plotIndex()) {}

  // Scale, clean picture, markers. The exaggeration is the slider's percentage. False, with nothing touched,
  // for an expanded view whose markers are too near to each other.
  bool begin(double exaggeration);

  // `count` intervals of height, hence one line more, each at a constant height above the curved datum. All
  // of them stand on multiples of 10 display units at the first sample. None for a count below 1. Of more
  // than 20 intervals, those lines and labels are left out that a picture has no room for, so that a stored
  // count in the thousands takes no longer than it can show.
  void elevationLines(std::int16_t count, std::int16_t firstIndex, std::int16_t lastIndex);

  // `count` lines of equal distance from the start and one at the start itself. A short path gets fewer of
  // them. None, not even the one at the start, for a count below 1. Of more than 20, labels that a picture
  // has no room for are left out.
  void rangeLines(std::int16_t count);

  // The labels that the lines have left, when they do not lie under them.
  void labels();

  // The Fresnel line when there is one, antenna masts in the view of the whole path, line of sight.
  void fresnelAndSight();

  // Black, and red where the sampler had no ground to give: there it is drawn at sea level.
  void ground();

 private:
  void elevationLabel(std::int32_t sample, double level);  // level in display units
  void markerLine(const ProfileMarker& marker, MarkerStroke& stroke);
  void fresnelLine(Colour colour);
  void antennaMasts(Colour colour);
  void verticalLine(double x, Colour colour);
  void label(PlotLabelKind kind, double x, double y, std::string text);
  void printLabel(const PlotLabel& label);

  Canvas& canvas_;
  const ProfileViewState& state_;
  const SettingsReader& settings_;
  PlotStyle style_;
  PlotView& view_;
  PlotIndex index_;
  std::vector<PlotLabel> waiting_;
};

// The pen that shows a colour over white when it is used once and restores the white when it is used twice.
inline Colour erasablePen(Colour colour) { return colour ^ kWhite; }

// A height below it is drawn as a void. The margin to the void's -500 m is meant.
inline constexpr float kLowestDrawnHeight = -499.0F;  // metres

}  // namespace zel
