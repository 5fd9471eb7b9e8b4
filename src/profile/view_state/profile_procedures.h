// The procedures that fill a view's state: each reads its inputs from the state, calls a stage and shows the
// result.
//
// InitITM and DoPreCalc run once when a view is loaded. A drawing then begins with prepareDrawing, which
// brings rise, terrain, statistics and lines up to date. A view without a window is brought up to date by
// refreshProfile.
#pragma once

#include <memory>
#include <string_view>

#include "component/services/error_log.h"
#include "component/services/error_trap.h"
#include "component/services/normal_table.h"
#include "foundation/number_text.h"
#include "platform/dialogs.h"
#include "platform/geodesy.h"
#include "platform/process_services.h"
#include "platform/terrain.h"
#include "profile/view_state/profile_readouts.h"
#include "profile/view_state/profile_view_state.h"

namespace zel {

class ProfileProcedures {
 public:
  // All must outlive the procedures.
  struct Services {
    const Geodesy* geodesy = nullptr;
    TerrainSampler* sampler = nullptr;
    std::shared_ptr<TerrainData> terrain;
    Dialogs* dialogs = nullptr;
    HardStop* hardStop = nullptr;
    ErrorLog* errorLog = nullptr;
    ProfileReadouts* readouts = nullptr;
    ModuleState* module = nullptr;             // for bProfileFailed
    TrappedModule* trapped = nullptr;          // of the window, "frmProfile"
    NumberStyle numbers;                       // of the read-outs
    const NormalTable* normalTable = nullptr;  // for InitITM
  };
  ProfileProcedures(Services services, SettingsReader settings);

  // The irregular terrain model's parameters of the settings, once when a view is loaded. After a failure,
  // which is trapped at ":InitITM:", the state has none; the profile itself is not to blame and is drawn.
  void InitITM(ProfileViewState& state);

  // Distance, bearing and layout of the path, shown in lblDist and lblAzd. A path under 0.2 km is told in a
  // box and sets the under-range and profile-error flags. Location ":DoPreCalc:".
  void DoPreCalc(ProfileViewState& state);
  // Only its read-outs, of a path that is laid out: after a change of units.
  void showPath(const ProfileViewState& state);

  // The height statistics from station to station, shown in their labels. Location ":MinMaxAv:".
  void MinMaxAv(ProfileViewState& state);

  // The parts of a drawing that come before the first stroke; their failures pass through to the procedure
  // that draws.
  void recomputeCurvature(ProfileViewState& state);  // when its flag is set, which it clears
  // When its flag is set. False when the sampling failed: a box has told it, the flags are set, the arrays
  // unchanged. The resample flag stays set until the drawing has succeeded. Impossible heights end the
  // process.
  bool resampleTerrain(ProfileViewState& state);
  void computeLines(ProfileViewState& state);  // line of sight, wavelength, Fresnel line
  // Those three and MinMaxAv, in their order, as the steps 1 to 4 of the drawing. False when there is nothing
  // to draw.
  bool prepareDrawing(ProfileViewState& state);

  // A drawing without strokes: brings the state up to date as ":drawLine:" and clears the resample flag.
  // False, with bProfileFailed set where the path is to blame, when the state is no profile afterwards.
  bool refreshProfile(ProfileViewState& state);

  // Runs a procedure under the trap; a failure sets bProfileFailed and gives false.
  template <typename Body>
  bool runOrFail(std::string_view procedure, Body&& body) {
    const bool done = services_.trapped->run(procedure, [&] {
      body();
      return true;
    });
    if (!done) services_.module->bProfileFailed = true;
    return done;
  }

 private:
  void preCalculate(ProfileViewState& state);
  void refuseProfile(ProfileViewState& state, std::string_view text, MessageIcon icon);
  void showHeight(const ProfileViewState& state, std::string_view control, float height);

  Services services_;
  SettingsReader settings_;
};

}  // namespace zel
