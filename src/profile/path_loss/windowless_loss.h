// NVCalcPathLoss: the modeled loss between the stored stations, without any window.
#pragma once

#include <functional>
#include <memory>

#include "component/services/error_log.h"
#include "component/services/error_trap.h"
#include "component/services/module_state.h"
#include "component/services/normal_table.h"
#include "foundation/sample_array.h"
#include "platform/geodesy.h"
#include "platform/process_services.h"
#include "platform/terrain.h"
#include "profile/settings/readers.h"

namespace zel {

class WindowlessLoss {
 public:
  // All must outlive the calculation. The two functions are called when terrain is first needed.
  struct Services {
    const ModuleState* module = nullptr;
    const NormalTable* normalTable = nullptr;
    const Geodesy* geodesy = nullptr;
    std::function<std::unique_ptr<TerrainSampler>()> makeSampler;
    std::function<std::shared_ptr<TerrainData>()> terrain;
    HardStop* hardStop = nullptr;
    ErrorLog* errorLog = nullptr;
    ErrorTrap* trap = nullptr;
  };
  WindowlessLoss(Services services, SettingsReader settings);

  // dB, positive; 0 for a frequency outside 20 to 20000 MHz, silently, and 0 after a failure, which is
  // trapped at "modTerPro:NVCalcPathLoss:" and its step. An impossible height ends the process. A path of any
  // length will do, however short.
  float NVCalcPathLoss();

 private:
  float calculate();
  SampleArray<float> sampledGround(const WindowlessSettings& settings, std::int16_t points);

  Services services_;
  SettingsReader settings_;
  TrappedModule trapped_;
  std::unique_ptr<TerrainSampler> sampler_;  // kept from call to call
};

}  // namespace zel
