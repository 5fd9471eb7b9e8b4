// The public picture of the plot: the window's own procedures over a canvas in memory.
#include <utility>

#include "component/api/picture_file.h"
#include "component/api/ready_component.h"
#include "component/api/windowless_view.h"
#include "foundation/number_text.h"
#include "zel/plot_image.h"

namespace zel {
namespace {

class PlotPicture {
 public:
  PlotPicture(Component& component, const PlotImageRequest& request)
      : request_(request),
        view_(component, request, {"they are drawn in red, at sea level", "the plot cannot be drawn"},
              image_.notes, image_.notes) {}

  PlotImage run(bool drawn) {
    try {
      checkPictureShape(request_, kNarrowestPlot, kLowestPlot);
      view_.load();
      view_.checkPath();
      image_.terrain = view_.terrain();
      image_.fresnelPercent = view_.fresnelPercent();
      view_.checkSettingsOfTheDrawing();
      if (!drawn) return std::move(image_);
      draw();
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    }
    return std::move(image_);
  }

 private:
  const ProfileViewState& state() const { return view_.state(); }

  void fail(int status, const std::string& reason) {
    image_ = {};
    image_.status = status;
    image_.error = reason;
  }

  void draw() {
    PictureFile file(request_);
    const PictureCanvas& canvas = file.canvas();
    view_.draw(file.canvas());
    const PlotView& plot = view_.plotView();
    view_.requirePlotHeight();
    for (const std::string& text : view_.trap().messages.texts)
      image_.notes.push_back("the modeled loss is left out: " + text);

    describeView(plot, canvas);
    image_.freeSpaceLoss = view_.readouts().text(readout::kFreeSpaceLoss);
    image_.modeledLoss = view_.readouts().text(readout::kModeledLoss);
    describeText(plot, canvas);
    take(file);
  }

  PlotImageAntenna antenna(const PictureCanvas& canvas, double x, float top, std::int16_t height) const {
    const QPointF pixel = canvas.worldToPixel({x, static_cast<double>(top)});
    return {x, height, static_cast<double>(top), pixel.x(), pixel.y()};
  }

  void describeView(const PlotView& view, const PictureCanvas& canvas) {
    const PlotIndex index = state().plotIndex();
    image_.scale = {view.scale.left, view.scale.right, view.scale.top, view.scale.bottom};
    image_.rectangle = {0, 0, static_cast<double>(request_.width), static_cast<double>(request_.height)};
    image_.pixelRatio = request_.pixelRatio;
    image_.expanded = state().expanded;
    image_.firstSample = view.drawn.first;
    image_.lastSample = view.drawn.last;
    image_.samples = state().path.samples;
    image_.spacingKm = state().path.spacing;
    image_.distanceShiftKm = index.startX();
    image_.start =
        antenna(canvas, index.startX(), state().lineOfSight.startTop, state().inputs.antennaHeights[0]);
    image_.end = antenna(canvas, index.endX(), state().lineOfSight.endTop, state().inputs.antennaHeights[1]);
    image_.distanceKm = state().path.distance;
    image_.bearingDeg = state().path.azimuth;
    image_.extendedKm = state().path.extendedLength;
    image_.back = {state().path.back.latitude, state().path.back.longitude};
    image_.forward = {state().path.forward.latitude, state().path.forward.longitude};
    image_.k = decimalValue(state().inputs.k);
    image_.frequencyMhz = decimalValue(state().inputs.frequency);
    image_.units = state().inputs.dispUnits == 1 ? PlotUnits::kImperial : PlotUnits::kMetric;
    for (const bool right : {false, true}) {
      const ProfileMarker& marker = right ? state().rightMarker : state().leftMarker;
      if (!marker.shown) continue;
      const double x = static_cast<double>(marker.x);
      image_.markers.push_back({right,
                                index.distanceFromStart(x),
                                x,
                                canvas.worldToPixel({x, view.scale.top}).x(),
                                {marker.position.latitude, marker.position.longitude},
                                static_cast<double>(marker.groundHeight)});
    }
  }

  // The canvas leaves out the texts beyond the picture and keeps the order.
  void describeText(const PlotView& view, const PictureCanvas& canvas) {
    const PlotIndex index = state().plotIndex();
    auto shown = canvas.textRectangles().begin();
    for (const PlotLabel& label : view.labels) {
      if (shown == canvas.textRectangles().end()) return;
      if (shown->text != label.text || shown->position != CanvasPoint{label.x, label.y}) continue;
      const QRectF& place = shown->rectangle;
      image_.labels.push_back({label.kind == PlotLabelKind::kElevation ? PlotImageLabelKind::kElevation
                                                                       : PlotImageLabelKind::kRange,
                               label.text,
                               label.x,
                               label.y,
                               index.distanceFromStart(label.x),
                               {place.x(), place.y(), place.width(), place.height()}});
      ++shown;
    }
  }

  std::string title() const { return "Terrain profile, " + formatNumber(image_.distanceKm, "0.000") + " km"; }
  std::string description() const {
    const auto& heights = state().inputs.antennaHeights;
    return "From " + stationInWords(request_.from, heights[0]) + ", to " +
           stationInWords(request_.to, heights[1]) + "; " + generalNumber(image_.frequencyMhz) +
           " MHz, effective-earth factor " + generalNumber(image_.k) + ".";
  }

  void take(const PictureFile& file) {
    image_.deviceWidth = file.deviceWidth();
    image_.deviceHeight = file.deviceHeight();
    (request_.format == PictureFormat::kSvg ? image_.svg : image_.png) = file.bytes(title(), description());
  }

  const PlotImageRequest& request_;
  PlotImage image_;
  WindowlessView view_;
};

}  // namespace

PlotImage renderPlotImage(const PlotImageRequest& request) {
  return accessing([&](Component& component) { return PlotPicture(component, request).run(true); });
}

PlotImage checkPlotPath(const PlotImageRequest& request) {
  return accessing([&](Component& component) { return PlotPicture(component, request).run(false); });
}

}  // namespace zel
