// The exports of the profile window under their given names: each runs under the trap, checks what it was
// given without a word, and writes its file while the pointer is the hourglass.
//
// Nothing here is a widget: a view without a window is exported in the same way. An export reads the view's
// state once, when it begins, and is not disturbed by what pending events change; one may also be begun while
// another runs.
//
// What is left on the disk: a file that cannot be made, or not be written in full, leaves what was there; an
// export that fails on its way leaves its lines up to there; a cancelled one leaves what was there. See
// text_file.h.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "component/services/error_log.h"
#include "component/services/error_trap.h"
#include "component/services/host_services.h"
#include "component/services/module_state.h"
#include "component/services/normal_table.h"
#include "export/export_limits.h"
#include "export/export_profile.h"
#include "export/signal_graph.h"
#include "export/signal_graph_request.h"
#include "export/signal_levels.h"
#include "export/text_file.h"
#include "foundation/number_text.h"
#include "models/ptp/parameters.h"
#include "platform/dialogs.h"
#include "platform/geodesy.h"
#include "platform/process_runner.h"
#include "platform/process_services.h"
#include "profile/settings/settings_access.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

enum class ExportOutcome {
  kFailed,     // trapped and told
  kNothing,    // a check ended it without a word
  kCancelled,  // by the progress
  kWritten,
};

// How far an export has come, in samples. Returns false to cancel it.
using ExportProgress = std::function<bool(std::int32_t done, std::int32_t all)>;

class ExportProcedures {
 public:
  // All must outlive the procedures.
  struct Services {
    const Geodesy* geodesy = nullptr;
    Dialogs* dialogs = nullptr;
    Pointer* pointer = nullptr;
    EventLoop* eventLoop = nullptr;
    ModuleState* module = nullptr;
    TrappedModule* trapped = nullptr;  // of the window, "frmProfile"
    const NormalTable* normalTable = nullptr;
    // Of the signal graph alone.
    HostServices* host = nullptr;
    ErrorLog* errorLog = nullptr;
    ProcessRunner* programs = nullptr;  // null: no program can be started
    NumberStyle numbers;                // of the user's locale
    ExportProgress progress;  // of long exports, after the pending events of each sample; may be empty
  };
  // The state is the view's, read at each export anew.
  ExportProcedures(Services services, SettingsReader settings, const ProfileViewState& state);

  // The height profile. Location ":lExportDataToCSV:".
  ExportOutcome lExportDataToCSV(const std::string& outfile);
  // The table of end-of-path losses. Location ":lExportITMToCSV:".
  ExportOutcome lExportITMToCSV(const std::string& outfile);
  // The signal profile, and its terrain block in "<outfile>.terrain.txt"; asks for power and clutter, and
  // says "Done". Location ":lExportSignalProfileToCSV:".
  ExportOutcome lExportSignalProfileToCSV(const std::string& outfile);
  // The same with the answers given: no box is shown.
  ExportOutcome lExportSignalProfileToCSV(const std::string& outfile, const SignalRequest& request);
  // The signal graph: plot data and a gnuplot script beside the picture that gnuplot is told to make. Asks
  // for power, clutter, stretch and title, and says "Done". A failure goes to the error log and into no box.
  ExportOutcome lMakeGNUSignalPlot(const std::string& outfile);
  // The same with the answers given: no box is shown.
  ExportOutcome lMakeGNUSignalPlot(const std::string& outfile, const SignalGraphRequest& request);

  // What the last export failed with; nothing after one that did not fail.
  const std::optional<RuntimeError>& failure() const { return failure_; }
  // The files that the last export wrote, by their names and in their order; also those with the lines before
  // a failure. A picture is one of them where its program is waited for.
  const std::vector<std::string>& written() const { return written_; }
  // What is to be known of its files though it did not fail, as sentences without a full stop.
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  bool isExportable(const std::string& outfile) const;
  bool hasModelPath(const std::string& outfile, std::int32_t fewestSamples) const;
  // Under the trap, and the failure is kept.
  template <typename Body>
  ExportOutcome run(std::string_view procedure, const Body& body);
  ExportProfile profile() const;
  SignalRequest askForSignal();
  double askForNumber(const std::string& prompt);
  // Writes what `fill` puts into the file, also the part of it before a failure, but not when it is
  // cancelled.
  template <typename Fill>
  void writeFile(const std::string& path, const Fill& fill);
  void write(const TextFile& file, const std::string& path);
  void writeWhatThereIs(const TextFile& file, const std::string& path) noexcept;
  ExportOutcome exportSignal(const std::string& outfile, const ExportProfile& profile,
                             const SignalRequest& request);
  void writeSignal(const std::string& outfile, const ExportProfile& profile, const SignalRequest& request);
  // Throws ExportCancelled.
  void tellProgress(std::int32_t sample, std::int32_t samples);

  // Of the signal graph, in signal_graph_procedure.cpp.
  class GraphLog;
  template <typename Body>
  ExportOutcome runGraph(const Body& body);
  std::optional<SignalGraphPlan> askForGraph(const ExportProfile& profile);
  double askForGraphNumber(const std::string& prompt, const std::string& title, double& lastEntered);
  double askForMetres(const std::string& prompt, const std::string& defaultText);
  void exportGraph(const std::string& outfile, const ExportProfile& profile, const SignalGraphPlan& plan,
                   bool waitForPicture, GraphLog& log);
  void writeGraph(const SignalGraphFiles& files, const ExportProfile& profile, const SignalGraphPlan& plan,
                  GraphLog& log);
  PointToPointLevels runPointToPointProgram(const std::string& results, const ProfileViewState& state,
                                            const SignalRequest& signal, const ptp::PtpParameters& parameters,
                                            GraphLog& log);
  void drawGraph(const SignalGraphFiles& files, const ProfileViewState& state, bool waitForPicture);
  ProgramOutcome runProgram(const ProgramCall& call, std::int32_t done, std::int32_t samples);
  ProcessRunner& programs() const;  // throws RuntimeError 445 where there is none

  Services services_;
  SettingsReader settings_;
  const ProfileViewState& state_;
  std::optional<RuntimeError> failure_;
  std::vector<std::string> written_, warnings_;
};

}  // namespace zel
