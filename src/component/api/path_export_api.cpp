// The public exports: the window's own procedures over a view without a window.
#include <algorithm>
#include <cmath>
#include <exception>
#include <filesystem>
#include <utility>

#include "canvas/qt/bitmap_file.h"
#include "canvas/qt/raster_canvas.h"
#include "canvas/recording_canvas.h"
#include "component/api/model_inputs.h"
#include "component/api/picture_file.h"
#include "component/api/ready_component.h"
#include "component/api/windowless_view.h"
#include "component/desktop/user_numbers.h"
#include "component/services/characters.h"
#include "export/export_limits.h"
#include "export/export_procedures.h"
#include "export/path_models.h"
#include "export/signal_graph.h"
#include "foundation/number_text.h"
#include "foundation/text.h"
#include "profile/path_loss/modeled_loss.h"
#include "zel/path_export.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr double kDefaultErp = 1;         // kW
constexpr double kRoundedMetres = 1;      // a distance that was told in kilometres
constexpr double kHighestPower = 1e6;     // kW
constexpr double kHighestClutter = 1000;  // dB, either way

// The same file under a name that is long enough for the procedures, which count characters.
std::string longEnough(std::string file) {
  const std::string more = fs::path(file).is_absolute() ? "/." : "./";
  while (characterCount(file) < kShortestExportName) file.insert(0, more);
  return file;
}

bool hasSignals(PathExportKind kind) {
  return kind == PathExportKind::kSignalProfile || kind == PathExportKind::kSignalGraph;
}

// Whether lines of sight or Fresnel lines are in it.
bool showsHeights(PathExportKind kind) {
  return kind != PathExportKind::kLossTable && kind != PathExportKind::kSignalGraph;
}

class WindowlessExport {
 public:
  // `thrown` is what the request's progress throws.
  WindowlessExport(Component& component, const PathExportRequest& request, std::exception_ptr& thrown)
      : component_(component),
        request_(request),
        file_(longEnough(request.file)),
        view_(component, request,
              {request.kind == PathExportKind::kBitmap ? "they are drawn in red, at sea level"
                                                       : "they are exported as 0 m above sea level",
               "the path cannot be profiled", showsHeights(request.kind)},
              result_.notes, result_.warnings),
        thrown_(thrown) {}

  PathExport run() {
    try {
      checkRequest();
      view_.load();
      view_.checkPath();
      view_.checkSettingsOfTheDrawing();
      takeSignal();
      takeModels();
      takeGraph();
      if (request_.kind == PathExportKind::kBitmap)
        exportBitmap();
      else
        exportTexts();
      describe();
    } catch (const Refusal& refusal) {
      fail(refusal.status, refusal.reason);
    } catch (const RuntimeError& error) {
      if (error.number() != RuntimeError::outOfMemory().number()) throw;
      fail(kRequestRefused, "there is no memory for the export; ask for fewer samples or a smaller picture");
    }
    return std::move(result_);
  }

 private:
  void fail(int status, const std::string& reason) {
    std::vector<std::string> files = std::move(result_.files);
    result_ = {};
    result_.status = status;
    result_.error = reason;
    result_.files = std::move(files);
  }

  const ProfileViewState& state() const { return view_.state(); }

  // ---- Inputs ----

  void checkRequest() const {
    if (request_.file.empty()) throw Refusal{"no file is named for the export"};
    if (request_.kind != PathExportKind::kBitmap) return;
    const auto fits = [](std::int32_t pixels, std::int32_t least) {
      return pixels >= least && pixels <= kLargestPicture;
    };
    if (!fits(request_.width, kNarrowestPlot) || !fits(request_.height, kLowestPlot))
      throw Refusal{"the bitmap would have " + std::to_string(request_.width) + " x " +
                    std::to_string(request_.height) + " pixels; give 100 x 80 to 8000 x 8000"};
  }

  void takeSignal() {
    if (!hasSignals(request_.kind)) return;
    const double power = request_.erpKw.value_or(kDefaultErp);
    if (!(power > 0 && power <= kHighestPower))
      throw Refusal{"the effective radiated power is " + inWords(power) +
                    " kW; give a number above 0, at most " + generalNumber(kHighestPower)};
    if (!request_.erpKw)
      result_.notes.push_back("the effective radiated power is not given: " + generalNumber(power) + " kW");
    signal_ = {power, clutter(request_.longleyRiceClutterDb, "Longley-Rice"),
               clutter(request_.pointToPointClutterDb, "point-to-point")};
    const float frequency = state().inputs.frequency;
    if (!isModelFrequency(frequency))
      throw Refusal{"the frequency of " + generalNumber(decimalValue(frequency)) +
                    " MHz is outside 20 to 20000 MHz, where there are no signal levels"};
  }

  static std::string inWords(double value) {
    return std::isfinite(value) ? generalNumber(value) : std::string("not a number of");
  }

  double clutter(const std::optional<double>& given, const std::string& which) {
    const double value = given.value_or(0);
    if (!(std::abs(value) <= kHighestClutter))
      throw Refusal{"the " + which + " clutter is " + inWords(value) + " dB; give -1000 to 1000"};
    if (!given) result_.notes.push_back("the " + which + " clutter is not given: 0 dB");
    return value;
  }

  void takeModels() {
    if (request_.kind != PathExportKind::kLossTable && !hasSignals(request_.kind)) return;
    result_.model = takeModelInputs(view_.inputs(), SettingsUser::kWindow, result_.notes, result_.warnings);
    if (const float frequency = state().inputs.frequency;
        request_.kind == PathExportKind::kLossTable && !isModelFrequency(frequency))
      result_.warnings.push_back("the frequency of " + generalNumber(decimalValue(frequency)) +
                                 " MHz is outside 20 to 20000 MHz, for which the model is meant");
    if (!hasSignals(request_.kind)) return;
    PathInputs& inputs = view_.inputs();
    const SettingsReader& reader = inputs.settings();
    const auto user = SettingsUser::kExport;
    for (const Setting* setting : {&settings::kPtpPolarization, &settings::kPtpClutterCategory})
      inputs.number(*setting, [&] { return reader.int16(*setting, user); });
    for (const Setting* setting :
         {&settings::kPtpPermittivity, &settings::kPtpConductivity, &settings::kPtpClutterHeight})
      inputs.number(*setting, [&] { return reader.real64(*setting, user); });
    const PtpSettings stored = readPtpSettings(reader);
    result_.pointToPoint = {stored.polarization == 0 ? Polarization::kHorizontal : Polarization::kVertical,
                            stored.permittivity, stored.conductivity, stored.clutterCategory,
                            stored.clutterHeight};
  }

  // Where the curves of the graph begin and end.
  void takeGraph() {
    if (request_.kind != PathExportKind::kSignalGraph) return;
    const double length = view_.path().distance * kMetresPerKm;
    graph_.signal = signal_;
    graph_.start = onPath(request_.startM.value_or(0), length, "starts");
    graph_.end = onPath(request_.endM.value_or(length), length, "ends");
    if (!(*graph_.end > graph_.start))
      throw Refusal{"the graph ends at " + generalNumber(*graph_.end) + " m, not beyond its start at " +
                    generalNumber(graph_.start) + " m"};
    graph_.title = request_.title;
    graph_.waitForPicture = true;
    if (!namesGnuplot())
      result_.notes.push_back("no picture is drawn, because the setting " + nameOf(settings::kGnuPlotExe) +
                              " names no gnuplot; the script makes it");
  }

  bool namesGnuplot() {
    return !trimmed(view_.inputs().settings().text(settings::kGnuPlotExe, SettingsUser::kExport)).empty();
  }

  static double onPath(double metres, double length, const char* what) {
    if (metres >= -kRoundedMetres && metres <= length + kRoundedMetres)
      return std::clamp(metres, 0.0, length);
    throw Refusal{std::string("the graph ") + what + " at " + inWords(metres) +
                  " m, which is not on the path; give 0 to " + formatNumber(length, "0") +
                  " metres from the start"};
  }

  // ---- Exports ----

  void exportBitmap() {
    requirePictureApplication();
    RasterCanvas canvas(QSize(request_.width, request_.height), 1);
    view_.draw(canvas);
    view_.requirePlotHeight();
    try {
      writeBitmap(canvas.image(), file_);
    } catch (const RuntimeError& error) {
      throw Refusal{error.description(), kPathExportFailed};
    }
    result_.files = {request_.file};
  }

  void exportTexts() {
    RecordingCanvas canvas;
    view_.draw(canvas);
    if (result_.model && state().model) noteDeviates(*state().model, *result_.model, result_.notes);
    checkSamples();
    const std::vector<std::string> names = fileNames(request_.file), passed = fileNames(file_);
    ExportProcedures procedures(services(), view_.inputs().settings(), state());
    const ExportOutcome outcome = runExport(procedures);
    const std::vector<std::string>& written = procedures.written();
    for (std::size_t i = 0; i < names.size(); ++i)
      if (std::find(written.begin(), written.end(), passed[i]) != written.end())
        result_.files.push_back(names[i]);
    result_.warnings.insert(result_.warnings.end(), procedures.warnings().begin(),
                            procedures.warnings().end());
    judge(outcome, procedures.failure());
  }

  ExportProcedures::Services services() {
    QuietTrap& trap = view_.trap();
    ExportProcedures::Services services;
    services.geodesy = &component_.geodesy();
    services.dialogs = &trap.messages;
    services.pointer = &trap.pointer;
    services.eventLoop = &trap.eventLoop;
    services.module = &view_.module();
    services.trapped = &trap.module;
    services.normalTable = &component_.normalTable();
    services.host = &component_.host();
    services.errorLog = &trap.log;
    services.programs = component_.programs();
    services.numbers = userNumberStyle();
    if (request_.progress)
      services.progress = [this](std::int32_t done, std::int32_t all) { return goesOn(done, all); };
    return services;
  }

  // What the caller's function throws is no failure of the export: it cancels, and is passed on after that.
  bool goesOn(std::int32_t done, std::int32_t all) {
    if (thrown_) return false;
    try {
      return request_.progress(done, all);
    } catch (...) {
      thrown_ = std::current_exception();
      return false;
    }
  }

  ExportOutcome runExport(ExportProcedures& procedures) {
    switch (request_.kind) {
      case PathExportKind::kHeightProfile:
        return procedures.lExportDataToCSV(file_);
      case PathExportKind::kLossTable:
        return procedures.lExportITMToCSV(file_);
      case PathExportKind::kSignalProfile:
        return procedures.lExportSignalProfileToCSV(file_, signal_);
      case PathExportKind::kSignalGraph:
        return procedures.lMakeGNUSignalPlot(file_, graph_);
      case PathExportKind::kBitmap:
        break;
    }
    return ExportOutcome::kNothing;
  }

  void judge(ExportOutcome outcome, const std::optional<RuntimeError>& failure) const {
    switch (outcome) {
      case ExportOutcome::kWritten:
        return;
      case ExportOutcome::kCancelled:
        throw Refusal{std::string("the export was cancelled") + whenCancelled(), kPathExportCancelled};
      case ExportOutcome::kNothing:
        throw Refusal{"the path has nothing to export"};
      case ExportOutcome::kFailed:
        break;
    }
    const std::string reason = failure ? failure->description() : std::string("the export failed");
    throw Refusal{reason + hint(failure), kPathExportFailed};
  }

  const char* whenCancelled() const {
    if (result_.files.empty()) return "; nothing was written";
    return request_.kind == PathExportKind::kSignalGraph
               ? " while gnuplot drew; its script and data are written"
               : "; some of its files are written";
  }

  // Two rules of the files run past the samples, and are meant.
  std::string hint(const std::optional<RuntimeError>& failure) const {
    if (!failure || failure->number() != RuntimeError::subscriptOutOfRange().number()) return {};
    if (request_.kind == PathExportKind::kSignalProfile)
      return ": the block of heights has twelve to a line, and the path has too few samples beyond its end "
             "to "
             "fill the last one";
    if (request_.kind == PathExportKind::kHeightProfile && state().leftMarker.shown)
      return ": a marker as near to the end as one sample has no row; move it towards the start";
    return {};
  }

  // A check of the window that ends an export without a word.
  void checkSamples() const {
    const std::int32_t samples = wholePathSamples(state());
    const std::int32_t least = request_.kind == PathExportKind::kSignalProfile ? kFewestSignalSamples
                               : request_.kind == PathExportKind::kSignalGraph ? kFewestGraphSamples
                                                                               : 1;
    if (samples >= least) return;
    throw Refusal{"the path has only " + std::to_string(samples) + " samples from station to station, and " +
                  std::to_string(least) + " are needed; set more points a kilometre (" +
                  nameOf(settings::kPrfPer) + ")"};
  }

  // In the order of the kind's description.
  std::vector<std::string> fileNames(const std::string& file) const {
    if (request_.kind == PathExportKind::kSignalProfile) return {file, file + std::string(kTerrainFileEnd)};
    if (request_.kind != PathExportKind::kSignalGraph) return {file};
    try {
      const SignalGraphFiles files = signalGraphFiles(file);
      return {files.data, files.script, files.picture, files.results};
    } catch (const RuntimeError& error) {
      throw Refusal{error.description() + ": " + file + "; name a file"};
    }
  }

  // ---- Result ----

  void describe() {
    const ProfileInputs& inputs = state().inputs;
    const PlotIndex index = state().plotIndex();
    result_.from = {inputs.start.latitude, inputs.start.longitude};
    result_.to = {inputs.end.latitude, inputs.end.longitude};
    result_.startHeightM = inputs.antennaHeights[0];
    result_.endHeightM = inputs.antennaHeights[1];
    result_.distanceKm = state().path.distance;
    result_.bearingDeg = state().path.azimuth;
    result_.samples = exportedCount();
    result_.spacingKm = state().path.spacing;
    result_.expanded = state().expanded;
    for (const bool right : {false, true}) {
      const ProfileMarker& marker = right ? state().rightMarker : state().leftMarker;
      if (!marker.shown) continue;
      result_.markers.push_back({right, index.distanceFromStart(static_cast<double>(marker.x))});
      noteUnwrittenMarker(result_.markers.back());
    }
    result_.k = decimalValue(inputs.k);
    result_.frequencyMhz = decimalValue(inputs.frequency);
    result_.fresnelPercent = view_.fresnelPercent();
    result_.units = inputs.dispUnits == 1 ? PlotUnits::kImperial : PlotUnits::kMetric;
    const bool forPrograms = request_.kind == PathExportKind::kSignalGraph;
    result_.decimalPoint = forPrograms ? "." : userNumberStyle().decimalPoint;
    result_.erpKw = signal_.erp;
    result_.longleyRiceClutterDb = signal_.longleyRiceClutter;
    result_.pointToPointClutterDb = signal_.pointToPointClutter;
    result_.startM = graph_.start;
    result_.endM = graph_.end.value_or(0);
    if (request_.kind == PathExportKind::kBitmap) {
      result_.width = request_.width;
      result_.height = request_.height;
    }
    result_.terrain = view_.terrain();
  }

  // At the start a marker counts as none: the rule of the file, and meant.
  void noteUnwrittenMarker(const PathExportMarker& marker) {
    if (request_.kind == PathExportKind::kHeightProfile && !(marker.distanceKm > 0))
      result_.notes.push_back(
          "the marker at the start has an empty row: markers are written from beyond it on");
  }

  std::int32_t exportedCount() const {
    const bool wholePath =
        request_.kind == PathExportKind::kLossTable || request_.kind == PathExportKind::kSignalGraph;
    if (wholePath) return wholePathSamples(state());
    const SampleRange range = exportedSamples(state());
    return range.last - range.first + 1;
  }

  Component& component_;
  const PathExportRequest& request_;
  std::string file_;
  PathExport result_;
  WindowlessView view_;
  SignalRequest signal_;
  SignalGraphRequest graph_;
  std::exception_ptr& thrown_;
};

}  // namespace

PathExport exportPath(const PathExportRequest& request) {
  std::exception_ptr thrown;
  PathExport result =
      accessing([&](Component& component) { return WindowlessExport(component, request, thrown).run(); });
  if (thrown) std::rethrow_exception(thrown);
  return result;
}

}  // namespace zel
