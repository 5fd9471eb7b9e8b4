// The public picture of the plot: the window's own procedures over a canvas in memory.
#include <QBuffer>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "canvas/qt/raster_canvas.h"
#include "component/api/path_request.h"
#include "component/api/ready_component.h"
#include "component/api/terrain_provenance.h"
#include "component/desktop/desktop_process.h"
#include "component/desktop/picture_application.h"
#include "component/own_application.h"
#include "foundation/number_text.h"
#include "profile/sampling/height_cleanup.h"
#include "profile/view_state/profile_procedures.h"
#include "ui/plot/plot_procedures.h"
#include "ui/plot/plot_scale.h"
#include "zel/plot_image.h"

namespace zel {
namespace {

constexpr std::int32_t kNarrowest = 100, kLowest = 80, kLargest = 8000;  // logical pixels
constexpr double kSmallestRatio = 0.5, kLargestRatio = 4;
constexpr double kMostDevicePixels = 16000;  // of a side
// A distance that was told in metres may lie this far beyond the end that it means.
constexpr double kRoundedKm = 0.001;

// What boxes would say.
class KeptMessages final : public Dialogs {
 public:
  MessageAnswer message(const MessageBoxRequest& request) override {
    texts.push_back(request.text.substr(0, request.text.find('\r')));
    return request.buttons == MessageButtons::kYesNo ? MessageAnswer::kYes : MessageAnswer::kOk;
  }
  std::string input(const InputBoxRequest& request) override { return request.defaultText; }
  std::string save(const SaveDialogRequest&) override { throw RuntimeError::dialogCancelled(); }

  std::vector<std::string> texts;  // their first lines
};

class NoPointer final : public Pointer {
 public:
  void set(PointerShape) override {}
};

// Impossible heights are refused before anything is drawn. Should the terrain change in between, the drawing
// fails instead of ending the process.
class FailingStop final : public HardStop {
 public:
  void stop(std::string_view reason) override { throw RuntimeError::internalError(std::string(reason)); }
};

// The trap of one picture: failures are handed to the caller, in no log and no box.
struct PictureTrap {
  explicit PictureTrap(Component& component)
      : trap({[&component] { return component.host().clientTitle(); }, kComponentName, &pointer, &messages,
              &component.eventLoop(), nullptr, &log}) {}

  NoPointer pointer;
  KeptMessages messages;
  FailingStop hardStop;
  SystemClock clock;
  KeptMessages unlogged;  // a log without a folder says so at each entry
  ErrorLog log{[] { return std::string(); }, clock, unlogged};
  ErrorTrap trap;
  TrappedModule module{"frmProfile", trap};
};

class PlotPicture {
 public:
  PlotPicture(Component& component, const PlotImageRequest& request)
      : component_(component), request_(request), inputs_(component, image_.notes, image_.notes) {}

  PlotImage run(bool drawn) {
    try {
      checkPicture();
      load();
      checkPath();
      checkSettingsOfTheDrawing();
      if (!drawn) return std::move(image_);
      if (!ensurePictureApplication())
        throw Refusal{
            "the process has an application object without graphics, so texts cannot be drawn; make it a "
            "QGuiApplication or a QApplication"};
      draw();
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    } catch (const RuntimeError& error) {
      if (error.number() != RuntimeError::outOfMemory().number()) throw;
      fail(kRequestRefused, "there is no memory for the picture; ask for a smaller one");
    }
    return std::move(image_);
  }

 private:
  void fail(int status, const std::string& reason) {
    image_ = {};
    image_.status = status;
    image_.error = reason;
  }

  void checkPicture() const {
    if (request_.width < kNarrowest || request_.width > kLargest || request_.height < kLowest ||
        request_.height > kLargest)
      throw Refusal{"the picture would have " + std::to_string(request_.width) + " x " +
                    std::to_string(request_.height) + " pixels; give 100 x 80 to 8000 x 8000"};
    const double ratio = request_.pixelRatio;
    if (!(ratio >= kSmallestRatio && ratio <= kLargestRatio))
      throw Refusal{"the pixel ratio is not from 0.5 to 4"};
    if (std::max(request_.width, request_.height) * ratio > kMostDevicePixels)
      throw Refusal{"the picture would have " + generalNumber(request_.width * ratio) + " x " +
                    generalNumber(request_.height * ratio) +
                    " device pixels; give a size and a pixel ratio that come to at most 16000 a side"};
    if (request_.markersKm.size() > 2)
      throw Refusal{"there are " + std::to_string(request_.markersKm.size()) +
                    " markers; the plot has room for two"};
    if (request_.expanded && !request_.markersKm.empty())
      throw Refusal{
          "the expanded view lies between the two markers; give the stretch or the markers, not both"};
  }

  template <typename Number>
  void noteDefault(const std::string& what, Number value, const std::string& unit, const Setting& setting) {
    image_.notes.push_back("the " + what + " is not given: " + generalNumber(static_cast<double>(value)) +
                           unit + ", " + inputs_.originOf(setting));
  }

  float positive(const std::optional<double>& given, const Setting& setting, const std::string& what,
                 const std::string& unit) {
    if (given) return static_cast<float>(inputs_.positive(given, setting, what, unit));
    // The window's reader, whose default of k is its own.
    const float value =
        inputs_.number(setting, [&] { return inputs_.settings().real32(setting, SettingsUser::kWindow); });
    noteDefault(what, decimalValue(value), unit, setting);
    return static_cast<float>(inputs_.positive(decimalValue(value), setting, what, unit));
  }

  std::int16_t fresnelPercent() {
    if (!request_.fresnelPercent) {
      const auto percent = inputs_.number(settings::kPrfFrez, [this] {
        return inputs_.settings().int16(settings::kPrfFrez, SettingsUser::kWindow);
      });
      if (percent < 0 || percent > 100)
        throw Refusal{inputs_.settingInWords(settings::kPrfFrez) + " is " + std::to_string(percent) +
                      " %; set a part of the first Fresnel zone from 0 to 100 %"};
      return percent;
    }
    const double percent = *request_.fresnelPercent;
    if (!(percent >= 0 && percent <= 100) || percent != std::floor(percent))
      throw Refusal{"the part of the first Fresnel zone is not a whole number from 0 to 100 %"};
    return static_cast<std::int16_t>(percent);
  }

  // The state as the window has it when it is loaded, with what the caller gives in the settings' place.
  void load() {
    module_ = component_.state();
    module_.bProfileFailed = false;
    module_.station1 = checkedPosition(request_.from, "start");
    module_.station2 = checkedPosition(request_.to, "end");
    module_.antennaHeights = {inputs_.antennaHeight(request_.fromHeight, settings::kPrfHtL, "start"),
                              inputs_.antennaHeight(request_.toHeight, settings::kPrfHtR, "end")};
    const float k = positive(request_.k, settings::kPrfCrv, "effective-earth factor k", "");
    const float frequency = positive(request_.frequencyMhz, settings::kPrfFreq, "frequency", " MHz");
    image_.fresnelPercent = fresnelPercent();
    inputs_.method();
    inputs_.source();
    inputs_.number(settings::kDispUnits, [this] {
      return repairedChoice(inputs_.settings().int32(settings::kDispUnits, SettingsUser::kWindow));
    });

    state_ = loadedViewState(module_, inputs_.settings(), component_.units(), false);
    state_.inputs.k = k;
    state_.inputs.frequency = frequency;
    state_.inputs.fresnelFraction = static_cast<float>(image_.fresnelPercent) / 100.0F;
    if (request_.units) state_.inputs.dispUnits = *request_.units == PlotUnits::kImperial ? 1 : 0;
    state_.inputs.units = unitsFor(component_.units(), state_.inputs.dispUnits);
  }

  // Lays out and samples the path first: what would end the process, or be told in a box, is refused.
  void checkPath() {
    const CalculationSettings density = inputs_.density();
    path_ = inputs_.laidOut(density, [&] {
      return computePathGeometry(component_.geodesy(), module_.station1, module_.station2,
                                 density.pointsPerKm, density.maxPoints);
    });
    if (path_.underRange)
      throw Refusal{"the stations are only " + formatNumber(path_.distance, "0.000") +
                    " km apart; a profile needs at least 0.2 km"};
    inputs_.noteLimit(density, path_.distance, path_.intervals, "intervals");
    checkMarkers();

    SampleRequest sampling;
    sampling.from = path_.back;
    sampling.to = path_.forward;
    sampling.count = path_.samples;
    sampling.method = state_.inputs.calcMethod;
    sampling.source = state_.inputs.source;
    const SampleResult terrain = component_.terrain()->sample(sampling);
    if (terrain.report.status != kSamplerOk) throw Refusal{terrain.report.reason, terrain.report.status};
    refuseImpossibleHeights(SampleArray<float>(terrain.heights), terrain.positions);
    image_.terrain = terrainProvenance(terrain.report, component_.state());
    noteVoids(terrain.heights);
  }

  void noteVoids(const std::vector<float>& heights) {
    const auto voids = std::count_if(heights.begin(), heights.end(), isMissingHeight);
    if (voids == 0) return;
    const auto isVoid = [&heights](std::int16_t sample) {
      return isMissingHeight(heights[static_cast<std::size_t>(sample - 1)]);
    };
    image_.notes.push_back(std::to_string(voids) +
                           " samples have no height; they are drawn in red, at sea level");
    for (const auto& [sample, which] : {std::pair(path_.firstIndex, "start"), {path_.lastIndex, "end"}})
      if (isVoid(sample))
        image_.notes.push_back("the terrain has no height under the " + std::string(which) +
                               ": its antenna and the line of sight stand on sea level there");
  }

  double onPath(double km, const char* what) const {
    if (km >= -kRoundedKm && km <= path_.distance + kRoundedKm) return std::clamp(km, 0.0, path_.distance);
    throw Refusal{std::string(what) + (std::isfinite(km) ? " at " + generalNumber(km) + " km" : "") +
                  " is not on the path, which is " + formatNumber(path_.distance, "0.000") +
                  " km long; give kilometres from the start"};
  }

  void checkMarkers() {
    const bool stretch = request_.expanded.has_value();
    std::vector<double> places = request_.markersKm;
    if (stretch) places = {request_.expanded->fromKm, request_.expanded->toKm};
    for (double& km : places) km = onPath(km, stretch ? "an end of the expanded view" : "a marker");
    if (!std::is_sorted(places.begin(), places.end())) {
      std::sort(places.begin(), places.end());
      image_.notes.push_back(stretch ? "the ends of the expanded view are taken in the order of the path"
                                     : "the markers are taken in the order of the path");
    }
    const PlotIndex index(path_);
    for (const double km : places) markers_.push_back(static_cast<float>(index.xAtDistance(km)));
    if (markers_.size() < 2) return;
    const double apart = static_cast<double>(markers_[1]) - static_cast<double>(markers_[0]);
    if (stretch && !(apart > kNarrowestExpansion))
      throw Refusal{"the expanded view would be " + formatNumber(apart, "0.000") +
                    " km wide; it needs more than 0.1 km"};
    if (markers_[0] == markers_[1]) throw Refusal{"both markers stand at the same place"};
  }

  // A number that does not fit is named here; the drawing could only say that one did not.
  void checkSettingsOfTheDrawing() {
    const SettingsReader& reader = inputs_.settings();
    inputs_.number(settings::kPrfEle, [&] { return readElevationLines(reader); });
    inputs_.number(settings::kPrfRng, [&] { return readRangeLines(reader); });
    for (const Setting* colour : {&settings::kColourFresnel, &settings::kColourLos, &settings::kColourMarker,
                                  &settings::kColourElevation, &settings::kColourRangeLines})
      inputs_.number(*colour, [&] { return readColour(reader, *colour); });
  }

  void draw() {
    const std::unique_ptr<TerrainSampler> sampler = component_.makeSampler();
    const std::unique_ptr<CoordinateFormatter> formatter = component_.makeCoordinateFormatter();
    PictureTrap trap(component_);
    KeptReadouts readouts;
    RasterCanvas canvas(QSize(request_.width, request_.height), request_.pixelRatio);

    ProfileProcedures::Services calculation;
    calculation.geodesy = &component_.geodesy();
    calculation.sampler = sampler.get();
    calculation.terrain = component_.terrain();
    calculation.dialogs = &trap.messages;
    calculation.hardStop = &trap.hardStop;
    calculation.errorLog = &trap.log;
    calculation.readouts = &readouts;
    calculation.module = &module_;
    calculation.trapped = &trap.module;
    calculation.normalTable = &component_.normalTable();
    ProfileProcedures profile(std::move(calculation), inputs_.settings());

    PlotProcedures::Services drawing;
    drawing.canvas = &canvas;
    drawing.profile = &profile;
    drawing.panel = [this] { return panel(); };
    drawing.readouts = &readouts;
    drawing.pointer = &trap.pointer;
    drawing.dialogs = &trap.messages;
    drawing.geodesy = &component_.geodesy();
    const std::shared_ptr<const DatumShift> shift = shiftForMarkers();
    drawing.datumShift = shift.get();
    drawing.formatter = formatter.get();
    drawing.module = &module_;
    drawing.trapped = &trap.module;
    PlotProcedures plot(std::move(drawing), inputs_.settings(), state_);

    profile.InitITM(state_);
    profile.DoPreCalc(state_);
    plot.drawLine();
    placeMarkers(plot);
    const bool drawn = !module_.bProfileFailed && !state_.flags.profileError && !state_.flags.resample;
    if (!drawn || state_.expanded != request_.expanded.has_value())
      throw Refusal{"the plot cannot be drawn" +
                    (trap.messages.texts.empty() ? std::string() : ": " + trap.messages.texts.front())};
    if (plot.view().scale.top == plot.view().scale.bottom)
      throw Refusal{"all heights of the path are 0 m, so the plot has no height; give an antenna height"};
    for (const std::string& text : trap.messages.texts)
      image_.notes.push_back("the modeled loss is left out: " + text);

    describeView(plot.view(), canvas);
    describeLosses(readouts);
    describeText(plot.view(), canvas);
    encode(canvas.image());
  }

  PlotPanel panel() const {
    return {std::to_string(state_.inputs.antennaHeights[0]), std::to_string(state_.inputs.antennaHeights[1]),
            shortestNumber(state_.inputs.frequency)};
  }

  // It takes long to make; only markers on positions of the older datum need it.
  std::shared_ptr<const DatumShift> shiftForMarkers() const {
    return markers_.empty() || module_.datumText != "NAD-27" ? nullptr : component_.datumShift();
  }

  // As clicks do it. The redraw that follows puts the lines behind everything else, as every redraw does.
  void placeMarkers(PlotProcedures& plot) {
    if (markers_.empty()) return;
    for (const float x : markers_) plot.Picture1_MouseDown(x, 0);
    if (request_.expanded)
      plot.mnuProfileExpand_Click();
    else
      plot.drawLine();
  }

  PlotImageAntenna antenna(const RasterCanvas& canvas, double x, float top, std::int16_t height) const {
    const QPointF pixel = canvas.worldToPixel({x, static_cast<double>(top)});
    return {x, height, static_cast<double>(top), pixel.x(), pixel.y()};
  }

  void describeView(const PlotView& view, const RasterCanvas& canvas) {
    const PlotIndex index = state_.plotIndex();
    image_.scale = {view.scale.left, view.scale.right, view.scale.top, view.scale.bottom};
    image_.rectangle = {0, 0, static_cast<double>(request_.width), static_cast<double>(request_.height)};
    image_.pixelRatio = request_.pixelRatio;
    image_.expanded = state_.expanded;
    image_.firstSample = view.drawn.first;
    image_.lastSample = view.drawn.last;
    image_.samples = state_.path.samples;
    image_.spacingKm = state_.path.spacing;
    image_.distanceShiftKm = index.startX();
    image_.start =
        antenna(canvas, index.startX(), state_.lineOfSight.startTop, state_.inputs.antennaHeights[0]);
    image_.end = antenna(canvas, index.endX(), state_.lineOfSight.endTop, state_.inputs.antennaHeights[1]);
    image_.distanceKm = state_.path.distance;
    image_.bearingDeg = state_.path.azimuth;
    image_.extendedKm = state_.path.extendedLength;
    image_.back = {state_.path.back.latitude, state_.path.back.longitude};
    image_.forward = {state_.path.forward.latitude, state_.path.forward.longitude};
    image_.k = decimalValue(state_.inputs.k);
    image_.frequencyMhz = decimalValue(state_.inputs.frequency);
    image_.units = state_.inputs.dispUnits == 1 ? PlotUnits::kImperial : PlotUnits::kMetric;
    for (const bool right : {false, true}) {
      const ProfileMarker& marker = right ? state_.rightMarker : state_.leftMarker;
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

  void describeLosses(const KeptReadouts& readouts) {
    image_.freeSpaceLoss = readouts.text(readout::kFreeSpaceLoss);
    image_.modeledLoss = readouts.text(readout::kModeledLoss);
  }

  // The canvas leaves out the texts beyond the picture and keeps the order.
  void describeText(const PlotView& view, const RasterCanvas& canvas) {
    const PlotIndex index = state_.plotIndex();
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

  void encode(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG"))
      throw Refusal{"the picture cannot be written as PNG; ask for a smaller one"};
    image_.deviceWidth = picture.width();
    image_.deviceHeight = picture.height();
    image_.png.assign(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  }

  Component& component_;
  const PlotImageRequest& request_;
  PlotImage image_;
  PathInputs inputs_;
  ModuleState module_;  // of this picture alone: stations and failures are not the host's
  ProfileViewState state_;
  PathGeometry path_;
  std::vector<float> markers_;  // plot x, km
};

}  // namespace

PlotImage renderPlotImage(const PlotImageRequest& request) {
  return accessing([&](Component& component) { return PlotPicture(component, request).run(true); });
}

PlotImage checkPlotPath(const PlotImageRequest& request) {
  return accessing([&](Component& component) { return PlotPicture(component, request).run(false); });
}

}  // namespace zel
