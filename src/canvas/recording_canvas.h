// A canvas that shows nothing and remembers everything: each operation as a value, in order.
//
// A stroke carries the pen that was in force when it was drawn, so that one can be judged without a look at
// what came before it. Nothing is cut off: coordinates are recorded as they came, infinities and NaN
// included.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "canvas/canvas.h"
#include "canvas/canvas_state.h"

namespace zel {

struct RecordedScale {
  CanvasScale scale;
  friend bool operator==(const RecordedScale&, const RecordedScale&) = default;
};

struct RecordedClear {
  friend bool operator==(const RecordedClear&, const RecordedClear&) = default;
};

struct RecordedDrawMode {
  DrawMode mode{};
  friend bool operator==(const RecordedDrawMode&, const RecordedDrawMode&) = default;
};

struct RecordedFillStyle {
  FillStyle style{};
  friend bool operator==(const RecordedFillStyle&, const RecordedFillStyle&) = default;
};

struct RecordedFillColour {
  Colour colour{};
  friend bool operator==(const RecordedFillColour&, const RecordedFillColour&) = default;
};

struct RecordedDrawWidth {
  int pixels{};
  friend bool operator==(const RecordedDrawWidth&, const RecordedDrawWidth&) = default;
};

struct RecordedLine {
  CanvasPoint from;
  CanvasPoint to;
  Colour colour = kBlack;
  DrawMode mode = DrawMode::kCopyPen;
  int width = 1;  // logical pixels
  friend bool operator==(const RecordedLine&, const RecordedLine&) = default;
};

struct RecordedCircle {
  CanvasPoint centre;
  double radius = 0;  // world units of x
  Colour fillColour = kWhite;
  DrawMode mode = DrawMode::kCopyPen;
  int width = 1;  // of the outline, logical pixels
  friend bool operator==(const RecordedCircle&, const RecordedCircle&) = default;
};

struct RecordedRectangle {
  CanvasPoint corner;
  CanvasPoint opposite;
  Colour colour = kBlack;
  DrawMode mode = DrawMode::kCopyPen;
  friend bool operator==(const RecordedRectangle&, const RecordedRectangle&) = default;
};

struct RecordedTextPosition {
  CanvasPoint position;
  friend bool operator==(const RecordedTextPosition&, const RecordedTextPosition&) = default;
};

struct RecordedText {
  CanvasPoint position;  // of the top left corner
  std::string text;
  DrawMode mode = DrawMode::kCopyPen;
  friend bool operator==(const RecordedText&, const RecordedText&) = default;
};

using RecordedOperation = std::variant<RecordedScale, RecordedClear, RecordedDrawMode, RecordedFillStyle,
                                       RecordedFillColour, RecordedDrawWidth, RecordedLine, RecordedCircle,
                                       RecordedRectangle, RecordedTextPosition, RecordedText>;

// One line of words, for messages: "line (0, 1)-(2, 3) colour 0x0000FF copy pen width 1".
std::string describe(const RecordedOperation& operation);
std::ostream& operator<<(std::ostream& stream, const RecordedOperation& operation);

class RecordingCanvas final : public Canvas {
 public:
  // The picture has room for this many lines of text: print moves the position down by the height of one.
  static constexpr int kTextLines = 40;
  // A line has room for this many characters, one as wide as the other.
  static constexpr int kTextColumns = 160;
  // Other numbers of them, from now on.
  void setTextRoom(double columns, double lines);

  void setScale(double left, double top, double right, double bottom) override;
  double scaleWidth() const override;
  void clear() override;
  void setDrawMode(DrawMode mode) override;
  void setFillStyle(FillStyle style) override;
  void setFillColour(Colour colour) override;
  void setDrawWidth(int pixels) override;
  int drawWidth() const override;
  void line(double x1, double y1, double x2, double y2, Colour colour) override;
  void circle(double x, double y, double radius) override;
  void fillRectangle(double x1, double y1, double x2, double y2, Colour colour) override;
  void setTextPosition(double x, double y) override;
  void print(std::string_view text) override;
  double textWidth(std::string_view text) const override;
  double textHeight() const override;

  // Everything since the canvas was made or forgetOperations was called, clears and what they wiped included.
  const std::vector<RecordedOperation>& operations() const { return operations_; }
  // Starts a new record. Scale, pen and text position stay.
  void forgetOperations() { operations_.clear(); }

  // What the picture shows: the strokes of one kind since the last clear, in order.
  std::vector<RecordedLine> lines() const;
  std::vector<RecordedLine> linesIn(Colour colour) const;
  std::vector<RecordedCircle> circles() const;
  std::vector<RecordedRectangle> rectangles() const;
  std::vector<RecordedText> texts() const;
  bool wasCleared() const;

  // Scale, pen and text position as they are now.
  const CanvasState& state() const { return state_; }

  // The same operations on another canvas.
  void replay(Canvas& target) const;

 private:
  std::size_t firstSinceClear() const;
  template <typename Stroke>
  std::vector<Stroke> strokes() const;

  std::vector<RecordedOperation> operations_;
  CanvasState state_;
  double textColumns_ = kTextColumns;
  double textLines_ = kTextLines;
};

}  // namespace zel
