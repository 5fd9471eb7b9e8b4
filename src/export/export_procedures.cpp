#include "export/export_procedures.h"

#include <utility>

#include "component/services/characters.h"
#include "export/export_run.h"
#include "export/height_profile.h"
#include "export/loss_table.h"
#include "export/path_models.h"
#include "export/signal_profile.h"
#include "foundation/leading_number.h"
#include "profile/path_loss/modeled_loss.h"

namespace zel {

ExportProcedures::ExportProcedures(Services services, SettingsReader settings, const ProfileViewState& state)
    : services_(std::move(services)), settings_(std::move(settings)), state_(state) {}

void ExportProcedures::write(const TextFile& file, const std::string& path) {
  file.write();
  written_.push_back(path);
}

void ExportProcedures::writeWhatThereIs(const TextFile& file, const std::string& path) noexcept {
  try {
    write(file, path);
  } catch (...) {
    return;  // the failure before is the one that is told
  }
}

template <typename Fill>
void ExportProcedures::writeFile(const std::string& path, const Fill& fill) {
  TextFile file(path);
  try {
    fill(file);
  } catch (const ExportCancelled&) {
    throw;
  } catch (...) {
    writeWhatThereIs(file, path);
    throw;
  }
  write(file, path);
}

template <typename Body>
ExportOutcome ExportProcedures::run(std::string_view procedure, const Body& body) {
  failure_.reset();
  warnings_.clear();
  written_.clear();
  return services_.trapped->run(procedure, [&] {
    try {
      return body();
    } catch (...) {
      failure_ = failureBeingHandled();
      throw;
    }
  });
}

bool ExportProcedures::isExportable(const std::string& outfile) const {
  return characterCount(outfile) >= kShortestExportName && zel::isExportable(state_);
}

ExportProfile ExportProcedures::profile() const {
  return exportProfile(state_, *services_.geodesy, services_.module->datumText, services_.numbers);
}

ExportOutcome ExportProcedures::lExportDataToCSV(const std::string& outfile) {
  return run(":lExportDataToCSV:", [&] {
    if (!isExportable(outfile)) return ExportOutcome::kNothing;
    const Hourglass hourglass(*services_.pointer);
    services_.trapped->step(1);
    const ExportProfile exported = profile();
    services_.trapped->step(2);
    writeFile(outfile, [&](TextFile& file) { writeHeightProfile(exported, linesInto(file)); });
    return ExportOutcome::kWritten;
  });
}

ExportOutcome ExportProcedures::lExportITMToCSV(const std::string& outfile) {
  return run(":lExportITMToCSV:", [&] {
    if (!isExportable(outfile)) return ExportOutcome::kNothing;
    const Hourglass hourglass(*services_.pointer);
    services_.trapped->step(1);
    const ExportProfile exported = profile();
    modelParametersOf(exported.state);  // a file without them would have no second line
    services_.trapped->step(2);
    writeFile(outfile,
              [&](TextFile& file) { writeLossTable(exported, *services_.normalTable, linesInto(file)); });
    return ExportOutcome::kWritten;
  });
}

bool ExportProcedures::hasModelPath(const std::string& outfile, std::int32_t fewestSamples) const {
  return isExportable(outfile) && wholePathSamples(state_) >= fewestSamples && state_.path.spacing > 0 &&
         isModelFrequency(state_.inputs.frequency);
}

double ExportProcedures::askForNumber(const std::string& prompt) {
  return leadingNumber(services_.dialogs->input({prompt, {}, {}}));
}

SignalRequest ExportProcedures::askForSignal() {
  SignalRequest request;
  request.erp = askForNumber("Enter transmit power along this path (in kiloWatts)");
  request.longleyRiceClutter = askForNumber("Enter Longley-Rice Clutter Value (in dB)");
  request.pointToPointClutter = askForNumber("Enter Point-to-Point Clutter Value (in dB)");
  return request;
}

ExportOutcome ExportProcedures::lExportSignalProfileToCSV(const std::string& outfile) {
  return run(":lExportSignalProfileToCSV:", [&] {
    if (!hasModelPath(outfile, kFewestSignalSamples)) return ExportOutcome::kNothing;
    const ExportProfile exported = profile();
    services_.trapped->step(1);
    const SignalRequest request = askForSignal();
    const ExportOutcome outcome = exportSignal(outfile, exported, request);
    if (outcome == ExportOutcome::kWritten)
      services_.dialogs->message({"Done", {}, MessageIcon::kNone, MessageButtons::kOk});
    return outcome;
  });
}

ExportOutcome ExportProcedures::lExportSignalProfileToCSV(const std::string& outfile,
                                                          const SignalRequest& request) {
  return run(":lExportSignalProfileToCSV:", [&] {
    if (!hasModelPath(outfile, kFewestSignalSamples)) return ExportOutcome::kNothing;
    return exportSignal(outfile, profile(), request);
  });
}

ExportOutcome ExportProcedures::exportSignal(const std::string& outfile, const ExportProfile& profile,
                                             const SignalRequest& request) {
  if (!(request.erp > 0)) return ExportOutcome::kNothing;
  const Hourglass hourglass(*services_.pointer);
  try {
    writeSignal(outfile, profile, request);
  } catch (const ExportCancelled&) {
    return ExportOutcome::kCancelled;
  }
  return ExportOutcome::kWritten;
}

void ExportProcedures::writeSignal(const std::string& outfile, const ExportProfile& profile,
                                   const SignalRequest& request) {
  services_.trapped->step(2);
  modelParametersOf(profile.state);
  const ptp::PtpParameters pointToPoint = pointToPointParameters(readPtpSettings(settings_));
  services_.trapped->step(3);
  writeFile(outfile, [&](TextFile& file) {
    writeSignalProfile(profile, request, pointToPoint, linesInto(file),
                       [this](std::int32_t sample, std::int32_t samples) {
                         tellProgress(sample, samples);
                         services_.trapped->step(3);  // events may have run other procedures of the window
                       });
  });
  services_.trapped->step(4);
  writeFile(outfile + std::string(kTerrainFileEnd), [&](TextFile& file) {
    writeTerrainBlock(profile, [&file](std::string_view piece) { file.piece(piece); });
  });
}

void ExportProcedures::tellProgress(std::int32_t sample, std::int32_t samples) {
  services_.eventLoop->processPending();
  if (services_.progress && !services_.progress(sample, samples)) throw ExportCancelled{};
}

}  // namespace zel
