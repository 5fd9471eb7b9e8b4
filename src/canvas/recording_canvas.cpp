#include "canvas/recording_canvas.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <iterator>
#include <ostream>
#include <sstream>

namespace zel {
namespace {

const char* modeName(DrawMode mode) {
  switch (mode) {
    case DrawMode::kBlackness:
      return "blackness";
    case DrawMode::kXorPen:
      return "XOR pen";
    case DrawMode::kCopyPen:
      return "copy pen";
  }
  return "unknown pen";
}

std::string colourText(Colour colour) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(6)
       << static_cast<std::uint32_t>(colour);
  return text.str();
}

std::ostream& operator<<(std::ostream& stream, const CanvasPoint& point) {
  return stream << '(' << point.x << ", " << point.y << ')';
}

// Says an operation in words.
class Describer {
 public:
  Describer() { text_ << std::setprecision(12); }

  void operator()(const RecordedScale& operation) {
    const CanvasScale& scale = operation.scale;
    text_ << "scale " << CanvasPoint{scale.left, scale.top} << '-' << CanvasPoint{scale.right, scale.bottom};
  }
  void operator()(const RecordedClear&) { text_ << "clear"; }
  void operator()(const RecordedDrawMode& operation) { text_ << "draw mode " << modeName(operation.mode); }
  void operator()(const RecordedFillStyle& operation) {
    text_ << (operation.style == FillStyle::kSolid ? "fill style solid" : "fill style unknown");
  }
  void operator()(const RecordedFillColour& operation) {
    text_ << "fill colour " << colourText(operation.colour);
  }
  void operator()(const RecordedDrawWidth& operation) { text_ << "draw width " << operation.pixels; }
  void operator()(const RecordedLine& line) {
    text_ << "line " << line.from << '-' << line.to << " colour " << colourText(line.colour) << ' '
          << modeName(line.mode) << " width " << line.width;
  }
  void operator()(const RecordedCircle& circle) {
    text_ << "circle " << circle.centre << " radius " << circle.radius << " fill "
          << colourText(circle.fillColour) << ' ' << modeName(circle.mode) << " width " << circle.width;
  }
  void operator()(const RecordedRectangle& rectangle) {
    text_ << "rectangle " << rectangle.corner << '-' << rectangle.opposite << " colour "
          << colourText(rectangle.colour) << ' ' << modeName(rectangle.mode);
  }
  void operator()(const RecordedTextPosition& operation) { text_ << "text position " << operation.position; }
  void operator()(const RecordedText& text) {
    text_ << "text " << text.position << " \"" << text.text << "\" " << modeName(text.mode);
  }

  std::string text() const { return text_.str(); }

 private:
  std::ostringstream text_;
};

class Replayer {
 public:
  explicit Replayer(Canvas& target) : target_(target) {}

  void operator()(const RecordedScale& operation) {
    const CanvasScale& scale = operation.scale;
    target_.setScale(scale.left, scale.top, scale.right, scale.bottom);
  }
  void operator()(const RecordedClear&) { target_.clear(); }
  void operator()(const RecordedDrawMode& operation) { target_.setDrawMode(operation.mode); }
  void operator()(const RecordedFillStyle& operation) { target_.setFillStyle(operation.style); }
  void operator()(const RecordedFillColour& operation) { target_.setFillColour(operation.colour); }
  void operator()(const RecordedDrawWidth& operation) { target_.setDrawWidth(operation.pixels); }
  void operator()(const RecordedLine& line) {
    target_.line(line.from.x, line.from.y, line.to.x, line.to.y, line.colour);
  }
  void operator()(const RecordedCircle& circle) {
    target_.circle(circle.centre.x, circle.centre.y, circle.radius);
  }
  void operator()(const RecordedRectangle& rectangle) {
    target_.fillRectangle(rectangle.corner.x, rectangle.corner.y, rectangle.opposite.x, rectangle.opposite.y,
                          rectangle.colour);
  }
  void operator()(const RecordedTextPosition& operation) {
    target_.setTextPosition(operation.position.x, operation.position.y);
  }
  void operator()(const RecordedText& text) { target_.print(text.text); }

 private:
  Canvas& target_;
};

bool isClear(const RecordedOperation& operation) { return std::holds_alternative<RecordedClear>(operation); }

}  // namespace

std::string describe(const RecordedOperation& operation) {
  Describer describer;
  std::visit([&](const auto& value) { describer(value); }, operation);
  return describer.text();
}

std::ostream& operator<<(std::ostream& stream, const RecordedOperation& operation) {
  return stream << describe(operation);
}

void RecordingCanvas::setTextRoom(double columns, double lines) {
  textColumns_ = columns;
  textLines_ = lines;
}

void RecordingCanvas::setScale(double left, double top, double right, double bottom) {
  state_.scale = {left, top, right, bottom};
  operations_.push_back(RecordedScale{state_.scale});
}

double RecordingCanvas::scaleWidth() const { return state_.scale.width(); }

void RecordingCanvas::clear() {
  state_.textPosition = {state_.scale.left, state_.scale.top};
  operations_.push_back(RecordedClear{});
}

void RecordingCanvas::setDrawMode(DrawMode mode) {
  state_.drawMode = mode;
  operations_.push_back(RecordedDrawMode{mode});
}

void RecordingCanvas::setFillStyle(FillStyle style) {
  state_.fillStyle = style;
  operations_.push_back(RecordedFillStyle{style});
}

void RecordingCanvas::setFillColour(Colour colour) {
  state_.fillColour = colour;
  operations_.push_back(RecordedFillColour{colour});
}

void RecordingCanvas::setDrawWidth(int pixels) {
  state_.drawWidth = allowedDrawWidth(pixels);
  operations_.push_back(RecordedDrawWidth{state_.drawWidth});
}

int RecordingCanvas::drawWidth() const { return state_.drawWidth; }

void RecordingCanvas::line(double x1, double y1, double x2, double y2, Colour colour) {
  operations_.push_back(RecordedLine{{x1, y1}, {x2, y2}, colour, state_.drawMode, state_.drawWidth});
}

void RecordingCanvas::circle(double x, double y, double radius) {
  operations_.push_back(RecordedCircle{{x, y}, radius, state_.fillColour, state_.drawMode, state_.drawWidth});
}

void RecordingCanvas::fillRectangle(double x1, double y1, double x2, double y2, Colour colour) {
  operations_.push_back(RecordedRectangle{{x1, y1}, {x2, y2}, colour, state_.drawMode});
}

void RecordingCanvas::setTextPosition(double x, double y) {
  state_.textPosition = {x, y};
  operations_.push_back(RecordedTextPosition{state_.textPosition});
}

void RecordingCanvas::print(std::string_view text) {
  operations_.push_back(RecordedText{state_.textPosition, std::string(text), state_.drawMode});
  state_.textPosition = {state_.scale.left, state_.textPosition.y + state_.scale.height() / textLines_};
}

double RecordingCanvas::textWidth(std::string_view text) const {
  const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
  const auto characters = std::count_if(text.begin(), text.end(), std::not_fn(continues));
  return std::abs(state_.scale.width()) * static_cast<double>(characters) / textColumns_;
}

double RecordingCanvas::textHeight() const { return std::abs(state_.scale.height()) / textLines_; }

std::vector<RecordedLine> RecordingCanvas::lines() const { return strokes<RecordedLine>(); }

std::vector<RecordedLine> RecordingCanvas::linesIn(Colour colour) const {
  std::vector<RecordedLine> found = lines();
  std::erase_if(found, [colour](const RecordedLine& line) { return line.colour != colour; });
  return found;
}

std::vector<RecordedCircle> RecordingCanvas::circles() const { return strokes<RecordedCircle>(); }

std::vector<RecordedRectangle> RecordingCanvas::rectangles() const { return strokes<RecordedRectangle>(); }

std::vector<RecordedText> RecordingCanvas::texts() const { return strokes<RecordedText>(); }

bool RecordingCanvas::wasCleared() const {
  return std::any_of(operations_.begin(), operations_.end(), isClear);
}

void RecordingCanvas::replay(Canvas& target) const {
  Replayer replayer(target);
  for (const RecordedOperation& operation : operations_)
    std::visit([&](const auto& value) { replayer(value); }, operation);
}

std::size_t RecordingCanvas::firstSinceClear() const {
  const auto last = std::find_if(operations_.rbegin(), operations_.rend(), isClear);
  return static_cast<std::size_t>(std::distance(last, operations_.rend()));
}

template <typename Stroke>
std::vector<Stroke> RecordingCanvas::strokes() const {
  std::vector<Stroke> found;
  for (std::size_t i = firstSinceClear(); i < operations_.size(); ++i)
    if (const auto* stroke = std::get_if<Stroke>(&operations_[i])) found.push_back(*stroke);
  return found;
}

}  // namespace zel
