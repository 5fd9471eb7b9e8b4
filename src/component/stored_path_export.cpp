#include "component/stored_path_export.h"

#include <memory>
#include <utility>

#include "component/desktop/user_numbers.h"
#include "export/export_procedures.h"
#include "profile/view_state/profile_procedures.h"
#include "profile/view_state/profile_readouts.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {
namespace {

class StoredPathView {
 public:
  explicit StoredPathView(Component& component)
      : component_(component),
        module_(component.state()),
        trapped_("frmProfile", component.trap()),
        sampler_(component.makeSampler()) {}
  StoredPathView(const StoredPathView&) = delete;
  StoredPathView& operator=(const StoredPathView&) = delete;

  // False when the path cannot be profiled, which has been told.
  bool load() {
    state_ = loadedViewState(module_, component_.settingsReader(), component_.units(), false);
    ProfileProcedures::Services services;
    services.geodesy = &component_.geodesy();
    services.sampler = sampler_.get();
    services.terrain = component_.terrain();
    services.dialogs = &component_.dialogs();
    services.hardStop = &component_.hardStop();
    services.errorLog = &component_.log();
    services.readouts = &readouts_;
    services.module = &module_;
    services.trapped = &trapped_;
    services.normalTable = &component_.normalTable();
    ProfileProcedures procedures(std::move(services), component_.settingsReader());
    procedures.InitITM(state_);
    procedures.DoPreCalc(state_);
    return procedures.refreshProfile(state_);
  }

  void write(StoredPathExport kind, const std::string& outfile) {
    ExportProcedures::Services services;
    services.geodesy = &component_.geodesy();
    services.dialogs = &component_.dialogs();
    services.pointer = &component_.pointer();
    services.eventLoop = &component_.eventLoop();
    services.module = &module_;
    services.trapped = &trapped_;
    services.normalTable = &component_.normalTable();
    services.numbers = userNumberStyle();
    ExportProcedures procedures(std::move(services), component_.settingsReader(), state_);
    switch (kind) {
      case StoredPathExport::kHeightProfile:
        procedures.lExportDataToCSV(outfile);
        return;
      case StoredPathExport::kLossTable:
        procedures.lExportITMToCSV(outfile);
        return;
    }
  }

 private:
  Component& component_;
  ModuleState module_;  // a copy: a failed profile is this view's
  TrappedModule trapped_;
  KeptReadouts readouts_;
  std::unique_ptr<TerrainSampler> sampler_;
  ProfileViewState state_;
};

}  // namespace

void exportStoredPath(Component& component, StoredPathExport kind, const std::string& outfile) {
  StoredPathView view(component);
  if (view.load()) view.write(kind, outfile);
}

}  // namespace zel
