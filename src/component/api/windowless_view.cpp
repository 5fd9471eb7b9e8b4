#include "component/api/windowless_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "canvas/qt/fonts.h"
#include "component/api/terrain_provenance.h"
#include "component/desktop/picture_application.h"
#include "component/own_application.h"
#include "foundation/number_text.h"
#include "profile/sampling/height_cleanup.h"
#include "ui/plot/plot_scale.h"
#include "ui/profile_window/panel_inputs.h"

namespace zel {
namespace {

// A distance that was told in metres may lie this far beyond the end that it means.
constexpr double kRoundedKm = 0.001;

}  // namespace

MessageAnswer KeptMessages::message(const MessageBoxRequest& request) {
  texts.push_back(request.text.substr(0, request.text.find('\r')));
  return request.buttons == MessageButtons::kYesNo ? MessageAnswer::kYes : MessageAnswer::kOk;
}

std::string KeptMessages::save(const SaveDialogRequest&) { throw RuntimeError::dialogCancelled(); }

void FailingStop::stop(std::string_view reason) { throw RuntimeError::internalError(std::string(reason)); }

QuietTrap::QuietTrap(Component& component)
    : log([] { return std::string(); }, clock, unlogged),
      trap({[&component] { return component.host().clientTitle(); }, kComponentName, &pointer, &messages,
            &eventLoop, nullptr, &log}),
      module("frmProfile", trap) {}

void requirePictureApplication() {
  if (!ensurePictureApplication())
    throw Refusal{
        "the process has an application object without graphics, so texts cannot be drawn; make it a "
        "QGuiApplication or a QApplication"};
  if (!fontsAreThere())
    throw Refusal{
        "the system has no font, so texts cannot be drawn; install one, such as the package "
        "fonts-liberation"};
}

WindowlessView::WindowlessView(Component& component, const PathViewRequest& request, Wording wording,
                               std::vector<std::string>& notes, std::vector<std::string>& warnings)
    : component_(component),
      request_(request),
      wording_(std::move(wording)),
      notes_(notes),
      inputs_(component.settingsReader(), notes, warnings),
      trap_(component) {}

// ---- Inputs ----

template <typename Number>
void WindowlessView::noteDefault(const std::string& what, Number value, const std::string& unit,
                                 const Setting& setting) {
  notes_.push_back("the " + what + " is not given: " + generalNumber(static_cast<double>(value)) + unit +
                   ", " + inputs_.originOf(setting));
}

float WindowlessView::positive(const std::optional<double>& given, const Setting& setting,
                               const std::string& what, const std::string& unit) {
  if (given) return static_cast<float>(inputs_.positive(given, setting, what, unit));
  // The window's reader, whose default of k is its own.
  const float value =
      inputs_.number(setting, [&] { return inputs_.settings().real32(setting, SettingsUser::kWindow); });
  if (&setting != &settings::kPrfCrv || wording_.notesK)
    noteDefault(what, decimalValue(value), unit, setting);
  return static_cast<float>(inputs_.positive(decimalValue(value), setting, what, unit));
}

int WindowlessView::checkedFresnelPercent() {
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
  return static_cast<int>(percent);
}

void WindowlessView::checkMarkerCount() const {
  if (request_.markersKm.size() > 2)
    throw Refusal{"there are " + std::to_string(request_.markersKm.size()) +
                  " markers; the plot has room for two"};
  if (request_.expanded && !request_.markersKm.empty())
    throw Refusal{
        "the expanded view lies between the two markers; give the stretch or the markers, not both"};
}

void WindowlessView::load() {
  checkMarkerCount();
  module_ = component_.state();
  module_.bProfileFailed = false;
  module_.station1 = checkedPosition(request_.from, "start");
  module_.station2 = checkedPosition(request_.to, "end");
  module_.antennaHeights = {inputs_.antennaHeight(request_.fromHeight, settings::kPrfHtL, "start"),
                            inputs_.antennaHeight(request_.toHeight, settings::kPrfHtR, "end")};
  const float k = positive(request_.k, settings::kPrfCrv, "effective-earth factor k", "");
  const float frequency = positive(request_.frequencyMhz, settings::kPrfFreq, "frequency", " MHz");
  fresnelPercent_ = checkedFresnelPercent();
  inputs_.method();
  inputs_.source();
  inputs_.number(settings::kDispUnits, [this] {
    return repairedChoice(inputs_.settings().int32(settings::kDispUnits, SettingsUser::kWindow));
  });

  state_ = loadedViewState(module_, inputs_.settings(), component_.units(), false);
  state_.inputs.k = k;
  state_.inputs.frequency = frequency;
  state_.inputs.fresnelFraction = static_cast<float>(fresnelPercent_) / 100.0F;
  if (request_.units) state_.inputs.dispUnits = *request_.units == PlotUnits::kImperial ? 1 : 0;
  state_.inputs.units = unitsFor(component_.units(), state_.inputs.dispUnits);
}

// ---- Checks ----

void WindowlessView::checkPath() {
  const CalculationSettings density = inputs_.density();
  path_ = inputs_.laidOut(density, [&] {
    return computePathGeometry(component_.geodesy(), module_.station1, module_.station2, density.pointsPerKm,
                               density.maxPoints);
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
  terrain_ = terrainProvenance(terrain.report, component_.state().datumText);
  noteVoids(terrain.heights);
}

void WindowlessView::noteVoids(const std::vector<float>& heights) {
  const auto voids = std::count_if(heights.begin(), heights.end(), isMissingHeight);
  if (voids == 0) return;
  const auto isVoid = [&heights](std::int16_t sample) {
    return isMissingHeight(heights[static_cast<std::size_t>(sample - 1)]);
  };
  notes_.push_back(std::to_string(voids) + " samples have no height; " + wording_.voids);
  for (const auto& [sample, which] : {std::pair(path_.firstIndex, "start"), {path_.lastIndex, "end"}})
    if (isVoid(sample))
      notes_.push_back("the terrain has no height under the " + std::string(which) +
                       ": its antenna and the line of sight stand on sea level there");
}

double WindowlessView::onPath(double km, const char* what) const {
  if (km >= -kRoundedKm && km <= path_.distance + kRoundedKm) return std::clamp(km, 0.0, path_.distance);
  throw Refusal{std::string(what) + (std::isfinite(km) ? " at " + generalNumber(km) + " km" : "") +
                " is not on the path, which is " + formatNumber(path_.distance, "0.000") +
                " km long; give kilometres from the start"};
}

void WindowlessView::checkMarkers() {
  const bool stretch = request_.expanded.has_value();
  std::vector<double> places = request_.markersKm;
  if (stretch) places = {request_.expanded->fromKm, request_.expanded->toKm};
  for (double& km : places) km = onPath(km, stretch ? "an end of the expanded view" : "a marker");
  if (!std::is_sorted(places.begin(), places.end())) {
    std::sort(places.begin(), places.end());
    notes_.push_back(stretch ? "the ends of the expanded view are taken in the order of the path"
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

void WindowlessView::checkSettingsOfTheDrawing() {
  const SettingsReader& reader = inputs_.settings();
  inputs_.number(settings::kPrfEle, [&] { return readElevationLines(reader); });
  inputs_.number(settings::kPrfRng, [&] { return readRangeLines(reader); });
  for (const Setting* colour : {&settings::kColourFresnel, &settings::kColourLos, &settings::kColourMarker,
                                &settings::kColourElevation, &settings::kColourRangeLines})
    inputs_.number(*colour, [&] { return readColour(reader, *colour); });
}

// ---- Drawing ----

// It takes long to make; only markers on positions of the older datum need it.
std::shared_ptr<const DatumShift> WindowlessView::shiftForMarkers() const {
  return markers_.empty() || module_.datumText != "NAD-27" ? nullptr : component_.datumShift();
}

void WindowlessView::makeProcedures(Canvas& canvas) {
  sampler_ = component_.makeSampler();
  formatter_ = component_.makeCoordinateFormatter();
  shift_ = shiftForMarkers();

  ProfileProcedures::Services calculation;
  calculation.geodesy = &component_.geodesy();
  calculation.sampler = sampler_.get();
  calculation.terrain = component_.terrain();
  calculation.dialogs = &trap_.messages;
  calculation.hardStop = &trap_.hardStop;
  calculation.errorLog = &trap_.log;
  calculation.readouts = &readouts_;
  calculation.module = &module_;
  calculation.trapped = &trap_.module;
  calculation.normalTable = &component_.normalTable();
  profile_ = std::make_unique<ProfileProcedures>(std::move(calculation), inputs_.settings());

  plot_ = std::make_unique<PlotProcedures>(drawingServices(canvas), inputs_.settings(), state_);
}

PlotProcedures::Services WindowlessView::drawingServices(Canvas& canvas) {
  PlotProcedures::Services drawing;
  drawing.canvas = &canvas;
  drawing.profile = profile_.get();
  drawing.panel = [this] { return panel(); };
  drawing.readouts = &readouts_;
  drawing.pointer = &trap_.pointer;
  drawing.dialogs = &trap_.messages;
  drawing.geodesy = &component_.geodesy();
  drawing.datumShift = shift_.get();
  drawing.formatter = formatter_.get();
  drawing.module = &module_;
  drawing.trapped = &trap_.module;
  return drawing;
}

PlotPanel WindowlessView::panel() const {
  return {shownText("tbxAnt1AGL"), shownText("tbxAnt2AGL"), shownText("tbxFreq")};
}

std::string WindowlessView::shownText(std::string_view control) const {
  const ProfileInputs& inputs = state_.inputs;
  if (control == "lblSLat") return formatter_->LatitudeText(inputs.start.latitude);
  if (control == "lblSLon") return formatter_->LongitudeText(inputs.start.longitude);
  if (control == "lblELat") return formatter_->LatitudeText(inputs.end.latitude);
  if (control == "lblELon") return formatter_->LongitudeText(inputs.end.longitude);
  if (control == "tbxAnt1AGL") return antennaHeightText(inputs.antennaHeights[0], inputs.units.height);
  if (control == "tbxAnt2AGL") return antennaHeightText(inputs.antennaHeights[1], inputs.units.height);
  if (control == "tbxFreq") return frequencyText(inputs.frequency);
  return readouts_.text(control);
}

void WindowlessView::draw(Canvas& canvas) {
  makeProcedures(canvas);
  profile_->InitITM(state_);
  profile_->DoPreCalc(state_);
  plot_->drawLine();
  placeMarkers();
  requireDrawing(!state_.flags.resample && state_.expanded == request_.expanded.has_value());
}

void WindowlessView::drawForPage(Canvas& canvas) {
  PlotProcedures::Services services = drawingServices(canvas);
  services.style = pageStyle();
  services.names = kPrintProcedures;
  PlotProcedures page(std::move(services), inputs_.settings(), state_);
  page.drawLine();
  requireDrawing(page.hasDrawn());
}

void WindowlessView::requireDrawing(bool drawn) const {
  if (drawn && !module_.bProfileFailed && !state_.flags.profileError) return;
  throw Refusal{wording_.failure +
                (trap_.messages.texts.empty() ? std::string() : ": " + trap_.messages.texts.front())};
}

void WindowlessView::requirePlotHeight() const {
  if (plotView().scale.top == plotView().scale.bottom)
    throw Refusal{"all heights of the path are 0 m, so the plot has no height; give an antenna height"};
}

// As clicks do it. The redraw that follows puts the lines behind everything else, as every redraw does.
void WindowlessView::placeMarkers() {
  if (markers_.empty()) return;
  for (const float x : markers_) plot_->Picture1_MouseDown(x, 0);
  if (request_.expanded)
    plot_->mnuProfileExpand_Click();
  else
    plot_->drawLine();
}

}  // namespace zel
