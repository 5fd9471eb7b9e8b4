// The public picture of the loss table: the model's run of the window's view, and its picture.
#include <utility>

#include "canvas/recording_canvas.h"
#include "component/api/model_inputs.h"
#include "component/api/picture_file.h"
#include "component/api/ready_component.h"
#include "component/api/windowless_view.h"
#include "export/export_profile.h"
#include "export/loss_table.h"
#include "foundation/number_text.h"
#include "models/longrice/parameter_error.h"
#include "models/longrice/radio_climate.h"
#include "profile/path_loss/modeled_loss.h"
#include "ui/plot/loss_table_plot.h"
#include "zel/loss_table_image.h"

namespace zel {
namespace {

static_assert(LossTableImage::kPercentages == kLossTablePercentages &&
              kLossTableSide == kLossTablePercentages);

// What has no influence on the losses is neither read from the settings nor noted as a default.
PathViewRequest wholePath(const PathViewRequest& request) {
  PathViewRequest view = request;
  view.k = 1.333;
  view.fresnelPercent = 0;
  return view;
}

PlotImageRectangle rectangleOf(const LossTableRectangle& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.width(), rectangle.height()};
}

class LossTablePicture {
 public:
  LossTablePicture(Component& component, const LossTableImageRequest& request)
      : component_(component),
        request_(request),
        viewRequest_(wholePath(request)),
        view_(component, viewRequest_,
              {"the model takes them as 0 m above sea level", "the path cannot be profiled"}, image_.notes,
              image_.warnings) {}

  LossTableImage run() {
    try {
      checkRequest();
      view_.load();
      view_.checkPath();
      view_.checkSettingsOfTheDrawing();
      checkFrequency();
      image_.model = takeModelInputs(view_.inputs(), SettingsUser::kWindow, image_.notes, image_.warnings);
      compute();
      describe();
      draw();
    } catch (const Refusal& refusal) {
      image_ = {};
      image_.status = refusal.status;
      image_.error = refusal.reason;
    }
    return std::move(image_);
  }

 private:
  const ProfileViewState& state() const { return view_.state(); }

  void checkRequest() const {
    checkPictureShape(request_, kNarrowestLossTable, kLowestLossTable);
    if (request_.expanded || !request_.markersKm.empty())
      throw Refusal{"the loss table is of the whole path; leave markers and stretch out"};
  }

  void checkFrequency() const {
    const float frequency = state().inputs.frequency;
    if (!isModelFrequency(frequency))
      throw Refusal{"the frequency of " + generalNumber(decimalValue(frequency)) +
                    " MHz is outside 20 to 20000 MHz, where the model has no losses"};
  }

  void compute() {
    RecordingCanvas unseen;
    view_.draw(unseen);
    const ModelParameters& parameters = modelParametersOf(state());
    image_.model.confidenceDeviate = parameters.confidence;
    image_.model.reliabilityDeviate = parameters.reliability;
    try {
      const LossTable table = lossTable(state(), component_.normalTable());
      for (std::int32_t confidence = 1; confidence <= kLossTablePercentages; ++confidence)
        for (std::int32_t reliability = 1; reliability <= kLossTablePercentages; ++reliability)
          image_.lossesDb.push_back(table.at(confidence, reliability));
    } catch (const longrice::ParameterError& error) {
      throw Refusal{error.description()};
    }
  }

  void describe() {
    image_.from = request_.from;
    image_.to = request_.to;
    image_.startHeightM = state().inputs.antennaHeights[0];
    image_.endHeightM = state().inputs.antennaHeights[1];
    image_.distanceKm = state().path.distance;
    image_.bearingDeg = state().path.azimuth;
    image_.samples = wholePathSamples(state());
    image_.frequencyMhz = decimalValue(state().inputs.frequency);
    image_.units = state().inputs.dispUnits == 1 ? PlotUnits::kImperial : PlotUnits::kMetric;
    image_.terrain = view_.terrain();
  }

  std::vector<std::string> title() const {
    const DisplayUnit& unit = state().inputs.units.distance;
    return {"End-of-path loss",
            formatNumber(image_.distanceKm * unit.factor, "0.000") + " " + unit.abbreviation,
            generalNumber(image_.frequencyMhz) + " MHz",
            std::string(longrice::radioClimateName(image_.model.climate)),
            image_.model.polarization == Polarization::kHorizontal ? "horizontal polarization"
                                                                   : "vertical polarization"};
  }

  void draw() {
    PictureFile file(request_);
    const LossTableLayout layout =
        drawLossTable(file.canvas(), {image_.lossesDb, title(), {}}, request_.width, request_.height);
    image_.pixelRatio = request_.pixelRatio;
    image_.cells = rectangleOf(layout.cells);
    image_.colourBar = rectangleOf(layout.colourBar);
    image_.lowestDb = layout.lowest;
    image_.highestDb = layout.highest;
    image_.contoursDb = layout.contours;
    image_.deviceWidth = file.deviceWidth();
    image_.deviceHeight = file.deviceHeight();
    std::string name;
    for (const std::string& part : title()) name += (name.empty() ? "" : ", ") + part;
    (request_.format == PictureFormat::kSvg ? image_.svg : image_.png) = file.bytes(name, description());
  }

  std::string description() const {
    return "Losses in dB for confidence and reliability from 1 to 99 %, from " +
           stationInWords(image_.from, image_.startHeightM) + ", to " +
           stationInWords(image_.to, image_.endHeightM) + ".";
  }

  Component& component_;
  const LossTableImageRequest& request_;
  PathViewRequest viewRequest_;
  LossTableImage image_;
  WindowlessView view_;
};

}  // namespace

LossTableImage renderLossTableImage(const LossTableImageRequest& request) {
  return accessing([&](Component& component) { return LossTablePicture(component, request).run(); });
}

}  // namespace zel
