// The signal graph's procedure: prompts, the point-to-point program, the files, gnuplot.
//
// What is left on the disk:
//   a check, a prompt or the settings end it   nothing is touched
//   cancelled, or failed before the plot data is written: no result of the point-to-point program, a model
//     that fails, no room or right             data, script and result file stay as they were
//   the script cannot be written               the new data and result file, the old script
//   gnuplot cannot be started, or, where it is waited for, makes none or is ended   the three new files, and
//     the picture that was there
// Scratch file and companion are gone in every case.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>
#include <vector>

#include "component/services/file_beside.h"
#include "component/services/output_file.h"
#include "component/services/scratch_file.h"
#include "export/export_procedures.h"
#include "export/export_run.h"
#include "export/gnuplot_script.h"
#include "export/path_models.h"
#include "export/set_aside.h"
#include "foundation/leading_number.h"
#include "foundation/text.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kLongestRun = 60000;  // milliseconds
constexpr std::string_view kPointToPointProgram = "vexptp.exe";

RuntimeError explained(const RuntimeError& error, const std::string& reason) {
  return {error.number(), error.description() + ": " + reason};
}

// Unlike a leading number: any other text is an error. The decimal separator is the user's or a point.
double strictNumber(std::string text, const NumberStyle& numbers) {
  if (const std::size_t at = text.find(numbers.decimalPoint); at != std::string::npos)
    text.replace(at, numbers.decimalPoint.size(), ".");
  const auto number = wholeNumberText(text);
  if (!number) throw RuntimeError::typeMismatch();
  return *number;
}

std::string contentOf(const std::string& path, const RuntimeError& missing) {
  try {
    return contentOfFile(path);
  } catch (const RuntimeError&) {
    throw missing;
  }
}

// What a program that did not do its work wrote, on one line of the log.
std::string messagesOf(const ProgramOutcome& outcome) {
  std::string messages = onOneLine(std::string(trimmed(outcome.messages)));
  while (messages.ends_with(' ')) messages.pop_back();
  return messages.empty() ? messages : " (" + messages + ")";
}

// Why what a program has written may not be all of it; nothing where it came to a good end.
std::string shortfall(const ProgramOutcome& outcome) {
  if (!outcome.finished) return "did not end within a minute";
  if (outcome.crashed) return "was killed";
  return outcome.exitCode == 0 ? "" : "failed";
}

// Whether a file is a PNG to its last chunk: a program can run out of room without a word.
bool isWholePng(const std::string& path) {
  constexpr std::string_view kBegin = "\x89PNG\r\n\x1A\n", kEnd = "IEND\xAE\x42\x60\x82";
  const std::string content = contentOf(path, RuntimeError::fileNotFound());
  return content.starts_with(kBegin) && content.ends_with(kEnd);
}

void requirePicture(const std::string& picture, const ProgramOutcome& outcome) {
  if (!outcome.finished)
    throw explained(RuntimeError::pathFileAccessError(), "no picture within a minute: " + picture);
  if (outcome.crashed || outcome.exitCode != 0 || !fs::exists(picture))
    throw explained(RuntimeError::fileNotFound(), "no picture " + picture + messagesOf(outcome));
  if (!isWholePng(picture))
    throw explained(RuntimeError::diskFull(), "the picture " + picture + " was not written to its end");
}

// As the programs are to write them: through links the files that they lead to.
SignalGraphFiles behindTheirLinks(SignalGraphFiles files) {
  files.picture = unmistakable(behindLinks(files.picture));
  return files;
}

GraphLabels graphLabels(const ProfileViewState& state, const SignalRequest& signal) {
  return {state.inputs.frequency,
          signal.erp,
          graphTransmitterHeight(state),
          static_cast<double>(state.inputs.antennaHeights[1]),
          signal.longleyRiceClutter,
          signal.pointToPointClutter,
          state.inputs.start,
          heightAboveAverageTerrain(state)};
}

ProgramCall pointToPointCall(const std::string& program, const ScratchFile& scratch,
                             const std::string& results, const ProfileInputs& inputs,
                             const SignalRequest& signal) {
  return {program,
          {scratch.path(), results, generalNumber(inputs.frequency, withPoint()),
           generalNumber(signal.erp, withPoint()), std::to_string(inputs.antennaHeights[1]),
           generalNumber(signal.pointToPointClutter, withPoint()), scratch.name()}};
}

}  // namespace

// How far the procedure has come, and where a failure of it goes.
class ExportProcedures::GraphLog {
 public:
  explicit GraphLog(ErrorLog& log) : log_(log) {}
  void step(int number) { step_ = number; }
  void write(const RuntimeError& error) {
    log_.write("Error " + std::to_string(error.number()) + " (" + error.description() + ") on line " +
               std::to_string(step_) + " in procedure lMakeGNUSignalPlot of Form frmProfile");
  }

 private:
  ErrorLog& log_;
  int step_ = 0;
};

template <typename Body>
ExportOutcome ExportProcedures::runGraph(const Body& body) {
  failure_.reset();
  warnings_.clear();
  written_.clear();
  GraphLog log(*services_.errorLog);
  try {
    return body(log);
  } catch (const ExportCancelled&) {
    return ExportOutcome::kCancelled;
  } catch (...) {
    failure_ = failureBeingHandled();
  }
  try {
    log.write(*failure_);
  } catch (...) {
    return ExportOutcome::kFailed;  // no memory for the entry
  }
  return ExportOutcome::kFailed;
}

ExportOutcome ExportProcedures::lMakeGNUSignalPlot(const std::string& outfile) {
  return runGraph([&](GraphLog& log) {
    if (!hasModelPath(outfile, kFewestGraphSamples)) return ExportOutcome::kNothing;
    const ExportProfile exported = profile();
    log.step(1);
    const auto plan = askForGraph(exported);
    if (!plan) return ExportOutcome::kNothing;
    exportGraph(outfile, exported, *plan, false, log);
    log.step(8);
    services_.dialogs->message({"Done", {}, MessageIcon::kNone, MessageButtons::kOk});
    return ExportOutcome::kWritten;
  });
}

ExportOutcome ExportProcedures::lMakeGNUSignalPlot(const std::string& outfile,
                                                   const SignalGraphRequest& request) {
  return runGraph([&](GraphLog& log) {
    if (!hasModelPath(outfile, kFewestGraphSamples) || !(request.signal.erp > 0))
      return ExportOutcome::kNothing;
    const ExportProfile exported = profile();
    log.step(1);
    const double end = request.end.value_or(exported.state.path.distance * kMetresPerKm);
    const SignalGraphPlan plan{request.signal, graphSample(exported.state, request.start),
                               graphSample(exported.state, end), request.title};
    if (plan.end <= plan.start)
      throw RuntimeError(5, "The plotted stretch must begin on the path, and end beyond its beginning");
    exportGraph(outfile, exported, plan, request.waitForPicture, log);
    return ExportOutcome::kWritten;
  });
}

// With a point, since it is read as a leading number if it is taken as it is.
double ExportProcedures::askForGraphNumber(const std::string& prompt, const std::string& title,
                                           double& lastEntered) {
  const std::string offered = generalNumber(lastEntered, withPoint());
  lastEntered = leadingNumber(services_.dialogs->input({prompt, title, offered}));
  return lastEntered;
}

double ExportProcedures::askForMetres(const std::string& prompt, const std::string& defaultText) {
  return strictNumber(services_.dialogs->input({prompt, {}, defaultText}), services_.numbers);
}

std::optional<SignalGraphPlan> ExportProcedures::askForGraph(const ExportProfile& profile) {
  ModuleState& last = *services_.module;
  SignalGraphPlan plan;
  plan.signal.erp =
      askForGraphNumber("Enter transmit power along this path (in kW)", "Power in kW", last.graphErp);
  if (!(plan.signal.erp > 0)) return std::nullopt;
  plan.signal.longleyRiceClutter =
      askForGraphNumber("Enter Longley-Rice Clutter Value (in dB)", {}, last.graphLongleyRiceClutter);
  plan.signal.pointToPointClutter =
      askForGraphNumber("Enter Point-to-Point Clutter Value (in dB)", {}, last.graphPointToPointClutter);
  const std::string length = generalNumber(profile.state.path.distance * kMetresPerKm, services_.numbers);
  while (true) {
    plan.start = graphSample(profile.state,
                             askForMetres("Distance from Transmitter to Start of Plot? (in meters)", "0"));
    plan.end = graphSample(profile.state,
                           askForMetres("Distance from Transmitter to End of Plot? (in meters)", length));
    if (plan.end > plan.start) break;
    services_.dialogs->message({"!End of Path must be beyond Start of Path!\r\n  Try Again.", "Path Error.",
                                MessageIcon::kNone, MessageButtons::kOk});
  }
  plan.title = services_.dialogs->input({"Enter Title for the Plot", {}, {}});
  return plan;
}

void ExportProcedures::exportGraph(const std::string& outfile, const ExportProfile& profile,
                                   const SignalGraphPlan& plan, bool waitForPicture, GraphLog& log) {
  const Hourglass hourglass(*services_.pointer);
  const SignalGraphFiles files = signalGraphFiles(outfile);
  writeGraph(files, profile, plan, log);
  log.step(7);
  drawGraph(files, profile.state, waitForPicture);
}

void ExportProcedures::writeGraph(const SignalGraphFiles& files, const ExportProfile& profile,
                                  const SignalGraphPlan& plan, GraphLog& log) {
  const ProfileViewState& state = profile.state;
  log.step(2);
  modelParametersOf(state);
  const ptp::PtpParameters pointToPoint = pointToPointParameters(readPtpSettings(settings_));
  // Before a minute may be spent on what they are to hold.
  TextFile data(files.data);
  TextFile script(files.script);

  log.step(3);
  SetAside results(files.results);
  const PointToPointLevels levels =
      runPointToPointProgram(unmistakable(results.path()), state, plan.signal, pointToPoint, log);

  log.step(5);
  const auto onPath = [&state](std::int32_t sample) {
    return std::clamp(sample, 1, std::int32_t{state.path.intervals}) * state.path.spacing;
  };
  GraphRange range{onPath(plan.start), onPath(plan.end), kReferenceLines[0], kReferenceLines[0], 0};
  HostServices& host = *services_.host;
  const auto widen = [&](double level) {
    if (std::isnan(level)) return;
    range.low = host.Min(range.low, level);
    range.high = host.Max(range.high, level);
  };
  for (const double line : kReferenceLines) widen(line);
  std::vector<PlottedSample> curves;
  writeGraphData(
      profile, plan, levels, linesInto(data),
      [this](std::int32_t sample, std::int32_t samples) { tellProgress(sample, samples); },
      [&](const PlottedSample& sample) {
        for (const double level : sample.levels) widen(level);
        curves.push_back(sample);
      });
  range = graphAxes(range);
  range.labels = labelLevel(curves, range);
  writeGnuplotScript(behindTheirLinks(files), plan.title, graphLabels(state, plan.signal), range,
                     linesInto(script));

  log.step(6);
  write(data, files.data);
  results.keepNew();
  written_.push_back(files.results);
  write(script, files.script);
}

PointToPointLevels ExportProcedures::runPointToPointProgram(const std::string& results,
                                                            const ProfileViewState& state,
                                                            const SignalRequest& signal,
                                                            const ptp::PtpParameters& parameters,
                                                            GraphLog& log) {
  const ScratchFile scratch(services_.host->optionalClientText("ProductName"));
  TextFile input(scratch.path());
  writeTerrainInput(state, linesInto(input));
  input.write();
  TextFile companion(scratch.companion());
  writeTerrainCompanion(state, parameters, linesInto(companion));
  companion.write();

  log.step(4);
  const std::string& folder = services_.module->helperProgramFolder;
  // A bare name would be searched for along PATH.
  if (folder.empty())
    throw explained(RuntimeError::pathNotFound(),
                    "the folder of " + std::string(kPointToPointProgram) + " is not known");
  const std::string program = (fs::path(folder) / kPointToPointProgram).string();
  tellProgress(0, wholePathSamples(state));
  // Whether it came to its end or not, what it has written by then is taken.
  const ProgramOutcome outcome = runProgram(pointToPointCall(program, scratch, results, state.inputs, signal),
                                            0, wholePathSamples(state));
  const std::string text = contentOf(
      results, explained(RuntimeError::fileNotFound(), "no results of " + program + messagesOf(outcome)));
  PointToPointLevels levels = readPointToPointLevels(text, wholePathSamples(state));
  std::string how = shortfall(outcome);
  if (how.empty() &&
      std::all_of(levels.begin(), levels.end(), [](double level) { return std::isnan(level); }))
    how = "gives no level";
  if (!how.empty()) {
    const auto read =
        std::count_if(levels.begin(), levels.end(), [](double level) { return !std::isnan(level); });
    warnings_.push_back(std::string(kPointToPointProgram) + " " + how + messagesOf(outcome) +
                        ": the point-to-point curve has " + std::to_string(read) + " of " +
                        std::to_string(levels.size() - 1) + " samples beyond the first");
  }
  return levels;
}

// Events are handled meanwhile, so that it can be cancelled.
ProgramOutcome ExportProcedures::runProgram(const ProgramCall& call, std::int32_t done,
                                            std::int32_t samples) {
  bool cancelled = false;
  const ProgramOutcome outcome = programs().run(call, kLongestRun, [&] {
    services_.eventLoop->processPending();
    cancelled = services_.progress && !services_.progress(done, samples);
    return !cancelled;
  });
  if (cancelled) throw ExportCancelled{};
  return outcome;
}

ProcessRunner& ExportProcedures::programs() const {
  if (services_.programs == nullptr)
    throw explained(RuntimeError::actionNotSupported(), "no program can be started from here");
  return *services_.programs;
}

void ExportProcedures::drawGraph(const SignalGraphFiles& files, const ProfileViewState& state,
                                 bool waitForPicture) {
  const Setting& setting = settings::kGnuPlotExe;
  const std::string gnuplot{trimmed(settings_.text(setting, SettingsUser::kExport))};
  if (gnuplot.empty()) return;
  const ProgramCall call{gnuplot, {files.script}};
  try {
    if (waitForPicture) {
      SetAside picture(files.picture);
      const std::int32_t samples = wholePathSamples(state);
      requirePicture(picture.path(), runProgram(call, samples, samples));
      picture.keepNew();
      written_.push_back(files.picture);
    } else {
      programs().start(call);
    }
  } catch (const RuntimeError& error) {
    throw explained(error, "gnuplot as the setting \"" + std::string(setting.key) + "\" (section \"" +
                               std::string(setting.section) + "\") names it: " + gnuplot);
  }
}

}  // namespace zel
