// What tests ask of the profile window's picture: colours at positions of the plot, and how often they occur.
// And a host that does something whenever the component asks it for a property.
#pragma once

#include <QColor>
#include <QImage>
#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "canvas/canvas.h"
#include "window_fixture.h"

namespace zel::test {

// Of a picture's pixel; settings hold colours as blue, green, red.
inline QRgb rgb(Colour colour) { return qRgb(colour % 256, colour / 256 % 256, colour / 65536 % 256); }

inline int count(const QImage& image, Colour colour) {
  int found = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) == rgb(colour)) ++found;
  return found;
}

// How many pixels of a column, or of a row, have the colour.
inline int countInColumn(const QImage& image, int x, Colour colour) {
  return count(image.copy(x, 0, 1, image.height()), colour);
}
inline int countInRow(const QImage& image, int y, Colour colour) {
  return count(image.copy(0, y, image.width(), 1), colour);
}

// A host's application object that calls back while the component reads it.
class CallingHost final : public Dispatch {
 public:
  explicit CallingHost(DispatchPtr properties) : properties_(std::move(properties)) {}
  std::int32_t dispatchId(std::string_view name) const override { return properties_->dispatchId(name); }
  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    // Not again from within.
    if (const std::function<void()> calling = std::exchange(onAsked, nullptr)) {
      calling();
      if (!onAsked && keepCalling) onAsked = calling;
    }
    return properties_->invoke(id, access, arguments);
  }

  std::function<void()> onAsked;
  bool keepCalling = false;

 private:
  DispatchPtr properties_;
};

class PlotWindowTest : public WindowTest {
 protected:
  const QImage& image() const { return window()->picture().canvas().image(); }
  // Device pixels of the picture at ratio 1.
  QPoint pixel(double x, double height) const { return window()->picture().pixelAt({x, height}).toPoint(); }
  int count(Colour colour) const { return test::count(image(), colour); }
  const ProfileViewState& state() const { return window()->state(); }
  double xOf(double km) const { return state().plotIndex().xAtDistance(km); }

  // Rebinds the component to a host that can call back.
  std::shared_ptr<CallingHost> callingHost() {
    auto host = std::make_shared<CallingHost>(
        makePropertyBag({{"Title", "Host Planner"}, {"Path", folder_.path().string()}}));
    control_.SetClientApp(host);
    return host;
  }
  // Calls once in the midst of the next drawing, when it reads its colours.
  void duringDrawing(CallingHost& host, std::function<void()> body) {
    host.onAsked = [this, &host, body = std::move(body)] {
      if (window() != nullptr && window()->state().flags.drawing) {
        body();
      } else {
        duringDrawing(host, body);
      }
    };
  }
};

}  // namespace zel::test
