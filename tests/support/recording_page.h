// A page that shows nothing and remembers everything, on recording canvases.
//
// Every character is half as wide as the font is high, a line of text is 1.2 times as high as the font. In a
// box the font has 8 points.
#pragma once

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "canvas/page.h"
#include "canvas/recording_canvas.h"

namespace zel::test {

// A text of the sheet with the font that it was printed in.
struct RecordedPageText {
  CanvasPoint position;  // of the top left corner, in the sheet's world coordinates
  std::string text;
  double points = 0;
  double width = 0;   // world units
  double height = 0;  // of the line, world units
};

// A rectangle of the sheet, in its world coordinates, as it was given.
struct RecordedBox {
  double left = 0, top = 0, right = 0, bottom = 0;
  std::unique_ptr<RecordingCanvas> canvas;
  std::size_t after = 0;  // so many operations of the sheet lie under it
};

class RecordingPage final : public Page {
 public:
  // Of the whole sheet, twips (1/1440 inch).
  RecordingPage(double width, double height) : width_(width), height_(height) { setFontSize(10); }

  RecordingCanvas& sheet() override { return sheet_; }

  void setFontSize(double points) override {
    points_ = points;
    setTextRoom(sheet_, points, width_, height_);
    fonts_.push_back({sheet_.operations().size(), points});
  }

  Canvas& box(double left, double top, double right, double bottom) override {
    const CanvasScale& scale = sheet_.state().scale;
    boxes_.push_back(
        {left, top, right, bottom, std::make_unique<RecordingCanvas>(), sheet_.operations().size()});
    setTextRoom(*boxes_.back().canvas, kBoxPoints, std::abs((right - left) / scale.width() * width_),
                std::abs((bottom - top) / scale.height() * height_));
    return *boxes_.back().canvas;
  }

  const RecordingCanvas& sheet() const { return sheet_; }
  double fontSize() const { return points_; }  // points
  const std::vector<RecordedBox>& boxes() const { return boxes_; }

  // Those of the sheet, in the order of printing. Measured in the scale that the sheet has now.
  std::vector<RecordedPageText> texts() const {
    const CanvasScale& scale = sheet_.state().scale;
    std::vector<RecordedPageText> found;
    std::size_t font = 0;
    for (std::size_t i = 0; i < sheet_.operations().size(); ++i) {
      while (font + 1 < fonts_.size() && fonts_[font + 1].firstOperation <= i) ++font;
      const auto* text = std::get_if<RecordedText>(&sheet_.operations()[i]);
      if (!text) continue;
      const double points = fonts_[font].points;
      RecordingCanvas measure;
      measure.setScale(scale.left, scale.top, scale.right, scale.bottom);
      setTextRoom(measure, points, width_, height_);
      found.push_back(
          {text->position, text->text, points, measure.textWidth(text->text), measure.textHeight()});
    }
    return found;
  }

 private:
  struct Font {
    std::size_t firstOperation;
    double points;
  };

  static constexpr double kBoxPoints = 8;
  static constexpr double kTwipsPerPoint = 20;

  static void setTextRoom(RecordingCanvas& canvas, double points, double width, double height) {
    constexpr double kCharacterWidth = 0.5;  // of the font's size
    constexpr double kLineHeight = 1.2;      // of the font's size
    const double size = points * kTwipsPerPoint;
    canvas.setTextRoom(width / (kCharacterWidth * size), height / (kLineHeight * size));
  }

  double width_;
  double height_;
  double points_ = 0;
  RecordingCanvas sheet_;
  std::vector<Font> fonts_;
  std::vector<RecordedBox> boxes_;
};

}  // namespace zel::test
