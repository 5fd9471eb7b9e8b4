// The heights that are calculated with, made from those that a sampler gave.
#pragma once

#include "component/services/error_log.h"
#include "foundation/sample_array.h"
#include "platform/process_services.h"
#include "platform/terrain.h"

namespace zel {

// The cleaned heights of the sampler's last sampling, metres. An impossible one ends the process, with the
// reason in the error log; should the stop return, RuntimeError 51 is thrown, so that nothing is computed
// from such a height.
SampleArray<float> groundHeights(SampleArray<float> raw, const TerrainSampler& sampler, ErrorLog& log,
                                 HardStop& hardStop);

}  // namespace zel
