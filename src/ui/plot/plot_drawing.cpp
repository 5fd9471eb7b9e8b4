#include "ui/plot/plot_drawing.h"

#include <algorithm>
#include <cmath>

#include "foundation/rounding.h"
#include "ui/plot/plot_scale.h"

namespace zel {
namespace {

constexpr int kMastWidth = 3;  // logical pixels

// Settings may hold thousands of reference lines. Up to as many as the dialog offers, each is drawn with its
// label; beyond them a line, or a label, only where it can be told apart from the one before: these parts of
// the picture's extent further on.
constexpr std::int32_t kLinesAlwaysDrawn = 20;
constexpr double kFinestLines = 1.0 / 2000;
constexpr double kFinestLabels = 1.0 / 200;

class Thinning {
 public:
  Thinning(double extent, double finestPart) : finest_(std::abs(extent) * finestPart) {}

  // Lines count from 0, positions grow with them.
  bool takes(std::int32_t line, double position) {
    if (line > kLinesAlwaysDrawn && position - last_ < finest_) return false;
    last_ = position;
    return true;
  }

 private:
  double finest_;
  double last_ = 0;
};

// A draw width for as long as the object lives.
class DrawWidth {
 public:
  DrawWidth(Canvas& canvas, int pixels) : canvas_(canvas), before_(canvas.drawWidth()) {
    canvas_.setDrawWidth(pixels);
  }
  ~DrawWidth() { canvas_.setDrawWidth(before_); }
  DrawWidth(const DrawWidth&) = delete;
  DrawWidth& operator=(const DrawWidth&) = delete;

 private:
  Canvas& canvas_;
  int before_;
};

// The elevation lines of one drawing: how high each stands, in display units.
class ElevationLevels {
 public:
  // 16 bits would do for the step in metres, not in feet over high mountains at a steep exaggeration: 32 it
  // is. Throws RuntimeError 6 beyond them.
  ElevationLevels(const ProfileViewState& state, const PlotScale& scale, std::int16_t count)
      : rise_(state.curve),
        bottom_(scale.bottom),
        factor_(state.inputs.units.height.factor),
        step_(toInt32(std::abs(scale.top - scale.bottom) * factor_ / count)) {}

  void select(std::int32_t line) { line_ = line; }
  double at(std::int32_t sample) const {
    return (double{rise_[sample]} + bottom_) * factor_ + offset_ + static_cast<double>(line_) * step_;
  }
  double metresAt(std::int32_t sample) const { return at(sample) / factor_; }

  // Lifts this line and those that follow until it stands on a multiple of 10 at the sample. Whole steps
  // rounded half to even meet every even number, so 9 of them are enough. Where a step changes the last
  // binary digit of a level that lies on a half, a multiple may be passed by, and then the next one is met.
  void liftToMultipleOfTen(std::int32_t sample) {
    constexpr int kMostSteps = 1000;
    for (int steps = 0; toInt32(at(sample)) % 10 != 0; ++steps) {
      if (steps == kMostSteps) throw RuntimeError::overflow();
      offset_ += 1;
    }
  }

 private:
  const SampleArray<float>& rise_;
  double bottom_;  // metres
  double factor_;  // display units per metre
  std::int32_t step_;
  double offset_ = 0;  // display units
  std::int32_t line_ = 0;
};

// Range lines in display units.
struct RangeLayout {
  std::int32_t lines = 0;
  std::int16_t interval = 0;
  double first = 0;  // from the start
};

RangeLayout layOutRangeLines(std::int16_t count, double span, double left) {
  RangeLayout layout;
  layout.lines = count;
  // A span that is no number leaves the loop at once and fails as an interval.
  while (layout.lines >= 1 && span <= 2.0 * layout.lines) --layout.lines;
  if (layout.lines < 1) return layout;
  layout.interval = toInt16(span / layout.lines);
  layout.first = left + layout.interval / 2.0;
  return layout;
}

std::string rangePattern(double span, std::int32_t lines, std::string_view whole) {
  std::string pattern(whole);
  if (span > 10.0 * lines) return pattern;
  return pattern + (span > 3.0 * lines ? ".0" : ".00");
}

}  // namespace

bool PlotDrawing::begin(double exaggeration) {
  if (state_.expanded && !canExpandBetweenMarkers(state_)) return false;
  const PlotScale scale = plotScale(state_, exaggeration);
  canvas_.setScale(scale.left, scale.top, scale.right, scale.bottom);
  view_.scale = scale;
  canvas_.clear();
  view_.forgetStrokes();
  view_.drawn = state_.expanded ? index_.expandedPlot(scale.left, scale.right) : index_.wholePlot();
  view_.circleRadius = std::abs(canvas_.scaleWidth() / 200);

  canvas_.setDrawMode(style_.erasableMarkers ? DrawMode::kXorPen : DrawMode::kCopyPen);
  canvas_.setFillStyle(FillStyle::kSolid);
  canvas_.setFillColour(kWhite);
  markerLine(state_.leftMarker, view_.leftStroke);
  markerLine(state_.rightMarker, view_.rightStroke);
  return true;
}

// Everything else is drawn over the markers, so they count as covered from the start.
void PlotDrawing::markerLine(const ProfileMarker& marker, MarkerStroke& stroke) {
  const Colour colour = readColour(settings_, settings::kColourMarker);
  view_.markerColour = erasablePen(colour);
  if (!marker.shown) return;
  verticalLine(marker.x, style_.erasableMarkers ? view_.markerColour : colour);
  stroke = {true, true, view_.markerColour};
}

void PlotDrawing::elevationLines(std::int16_t count, std::int16_t firstIndex, std::int16_t lastIndex) {
  if (count < 1) return;
  ElevationLevels levels(state_, view_.scale, count);
  const double extent = view_.scale.top - view_.scale.bottom;
  const double highest = std::max(view_.scale.top, view_.scale.bottom);
  Thinning lines(extent, kFinestLines);
  Thinning labels(extent, kFinestLabels);
  for (std::int32_t line = 0; line <= count; ++line) {
    levels.select(line);
    levels.liftToMultipleOfTen(firstIndex);
    const double start = levels.metresAt(firstIndex);
    // The rise only lifts a line, so one whose datum is above the picture is not in it anywhere, nor are
    // those that follow.
    if (line > kLinesAlwaysDrawn && start - double{state_.curve[firstIndex]} > highest) break;
    if (!lines.takes(line, start)) continue;
    if (labels.takes(line, start)) elevationLabel(firstIndex, levels.at(firstIndex));

    canvas_.setDrawMode(DrawMode::kCopyPen);
    const Colour colour = readColour(settings_, settings::kColourElevation);
    double x = index_.sampleX(firstIndex - 1);
    double y = start;
    // Each stroke reaches one sample beyond the point where the next one begins; so it is meant.
    for (std::int32_t i = firstIndex; i <= lastIndex; ++i) {
      const double height = levels.metresAt(i);
      canvas_.line(x, y, index_.sampleX(i + 1), height, colour);
      x = index_.sampleX(i);
      y = height;
    }
  }
}

void PlotDrawing::elevationLabel(std::int32_t sample, double level) {
  canvas_.setDrawMode(DrawMode::kBlackness);
  const double spacing = state_.path.spacing;
  // High ground in feet is beyond 16 bits, and is no reason to go without a profile: 32 it is.
  const std::int32_t shown = toInt32(level);
  label(PlotLabelKind::kElevation, index_.sampleX(sample) + spacing / 2 + spacing,
        level / state_.inputs.units.height.factor,
        formatNumber(static_cast<double>(shown), style_.elevationPattern, style_.numbers));
}

void PlotDrawing::rangeLines(std::int16_t count) {
  if (count < 1) return;
  const double factor = state_.inputs.units.distance.factor;
  const double span = (state_.expanded ? markerDistance(state_) : state_.path.distance) * factor;
  const double left = state_.expanded ? state_.leftMarker.x * factor : 0;
  const RangeLayout layout = layOutRangeLines(count, span, left);
  const Colour colour = readColour(settings_, settings::kColourRangeLines);
  // Lines and labels count from the start antenna, in the expanded view too.
  const double start = index_.startX();

  canvas_.setDrawMode(DrawMode::kBlackness);
  label(PlotLabelKind::kRange, start, view_.scale.top, "0");
  canvas_.setDrawMode(DrawMode::kCopyPen);
  verticalLine(start, colour);

  const std::string pattern = rangePattern(span, layout.lines, style_.rangePattern);
  Thinning labels(view_.scale.right - view_.scale.left, kFinestLabels);
  double position = layout.first + start * factor;
  for (std::int32_t line = 1; line <= layout.lines; ++line) {
    if (labels.takes(line, position / factor)) {
      canvas_.setDrawMode(DrawMode::kBlackness);
      label(PlotLabelKind::kRange, position / factor, view_.scale.top,
            formatNumber(position - start * factor, pattern, style_.numbers));
    }
    canvas_.setDrawMode(DrawMode::kCopyPen);
    verticalLine(position / factor, colour);
    position += layout.interval;
  }
}

void PlotDrawing::fresnelAndSight() {
  canvas_.setDrawMode(DrawMode::kCopyPen);
  const Colour fresnelColour = readColour(settings_, settings::kColourFresnel);
  fresnelLine(fresnelColour);
  if (!state_.expanded) antennaMasts(fresnelColour);

  const Colour sightColour = readColour(settings_, settings::kColourLos);
  const LineOfSight& sight = state_.lineOfSight;
  if (state_.expanded) {
    const double left = state_.leftMarker.x;
    const double right = state_.rightMarker.x;
    canvas_.line(left, index_.lineOfSightAt(sight, left), right, index_.lineOfSightAt(sight, right),
                 sightColour);
  } else {
    canvas_.line(index_.startX(), sight.startTop, index_.sampleX(state_.path.lastIndex), sight.endTop,
                 sightColour);
  }
}

void PlotDrawing::fresnelLine(Colour colour) {
  if (state_.fresnel.empty()) return;
  const SampleRange range =
      state_.expanded ? index_.expandedFresnel(double{state_.leftMarker.x}, double{state_.rightMarker.x})
                      : index_.stationToStation();
  for (std::int32_t i = range.first + 1; i <= range.last; ++i)
    canvas_.line(index_.sampleX(i - 1), state_.fresnel[i - 1], index_.sampleX(i), state_.fresnel[i], colour);
}

void PlotDrawing::antennaMasts(Colour colour) {
  const LineOfSight& sight = state_.lineOfSight;
  const double start = index_.startX();
  const double end = index_.endX();
  const DrawWidth width(canvas_, kMastWidth);
  canvas_.line(start, sight.startTop, start, double{sight.startTop} - state_.inputs.antennaHeights[0],
               colour);
  canvas_.line(end, sight.endTop, end, double{sight.endTop} - state_.inputs.antennaHeights[1], colour);
  canvas_.circle(start, sight.startTop, view_.circleRadius);
  canvas_.circle(end, sight.endTop, view_.circleRadius);
}

// The first point carries no curvature rise, and the expanded view draws the samples one spacing further on
// than the whole one; both are meant.
void PlotDrawing::ground() {
  const SampleRange range = view_.drawn;
  double x = state_.expanded ? index_.sampleX(range.first) : 0;
  double y = state_.elevation[range.first];
  for (std::int32_t i = range.first; i <= range.last; ++i) {
    const float raw = state_.rawElevation[i];
    const bool missing = !(raw >= kLowestDrawnHeight);
    canvas_.setDrawMode(missing ? DrawMode::kCopyPen : DrawMode::kBlackness);
    const double nextX = state_.expanded ? index_.expandedGroundX(i) : index_.sampleX(i);
    const double nextY = (missing ? 0.0 : double{raw}) + double{state_.curve[i]};
    canvas_.line(x, y, nextX, nextY, missing ? kRed : kBlack);
    x = nextX;
    y = nextY;
  }
}

void PlotDrawing::verticalLine(double x, Colour colour) {
  canvas_.line(x, view_.scale.bottom, x, view_.scale.top, colour);
}

void PlotDrawing::label(PlotLabelKind kind, double x, double y, std::string text) {
  PlotLabel label{kind, std::move(text), x, y};
  if (style_.labelsUnderLines)
    printLabel(label);
  else
    waiting_.push_back(std::move(label));
}

void PlotDrawing::printLabel(const PlotLabel& label) {
  canvas_.setTextPosition(label.x, label.y);
  canvas_.print(label.text);
  view_.labels.push_back(label);
}

void PlotDrawing::labels() {
  if (waiting_.empty()) return;
  canvas_.setDrawMode(DrawMode::kBlackness);
  for (const PlotLabelKind kind : {PlotLabelKind::kRange, PlotLabelKind::kElevation})
    for (const PlotLabel& label : waiting_)
      if (label.kind == kind) printLabel(label);
  waiting_.clear();
}

}  // namespace zel
