// What a drawing of the profile leaves behind for the events that come after it: the picture's world
// coordinates, what can be erased from it, and where its labels stand.
//
// World coordinates are the plot's: x in kilometres from the back point, y in metres above sea level with the
// curvature rise.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "canvas/canvas.h"
#include "profile/plot_index/plot_index.h"

namespace zel {

// The corners of the picture. Top lies below bottom when a steep exaggeration meets ground below the sea; it
// is drawn upside down then.
struct PlotScale {
  double left = 0;    // km
  double top = 1;     // metres
  double right = 1;   // km
  double bottom = 0;  // metres

  friend bool operator==(const PlotScale&, const PlotScale&) = default;
};

enum class PlotLabelKind : std::uint8_t { kElevation, kRange };

// A text of the picture; x and y are the position of its top left corner.
struct PlotLabel {
  PlotLabelKind kind = PlotLabelKind::kElevation;
  std::string text;
  double x = 0;  // km
  double y = 0;  // metres

  friend bool operator==(const PlotLabel&, const PlotLabel&) = default;
};

// A marker's line as it stands in the picture.
struct MarkerStroke {
  bool drawn = false;
  bool covered = false;  // other strokes crossed it since: a second stroke would leave a trace there
  Colour colour = 0;     // of the pen, XOR 0xFFFFFF included
};

// The small circle that rides on the ground under the pointer. It is erased with the numbers it was drawn
// with.
struct Strobe {
  bool shown = false;
  float x = 0;        // km
  float height = 0;   // metres
  Colour colour = 0;  // of the pen, XOR 0xFFFFFF included
};

// The texts in a marker's labels.
struct MarkerTexts {
  std::string latitude;
  std::string longitude;
  std::string height;
  std::string distanceToCursor;
};

struct PlotView {
  PlotScale scale;
  SampleRange drawn;        // of the ground and the elevation lines
  double circleRadius = 0;  // km, a two-hundredth of the visible width
  Colour markerColour = 0;  // of the pen, XOR 0xFFFFFF included
  std::string freeSpaceLoss;
  std::vector<PlotLabel> labels;

  MarkerStroke leftStroke;
  MarkerStroke rightStroke;
  Strobe strobe;
  MarkerTexts leftTexts;
  MarkerTexts rightTexts;

  // The picture was wiped, by a drawing or because it was made anew: nothing on it is left to erase.
  void forgetStrokes() {
    labels.clear();
    leftStroke = {};
    rightStroke = {};
    strobe = {};
  }
};

}  // namespace zel
