// The irregular terrain model's parameters of the settings, section "ITM", as a public result tells them.
#pragma once

#include <string>
#include <vector>

#include "component/api/path_request.h"
#include "profile/path_loss/model_parameters.h"
#include "zel/path_loss.h"

namespace zel {

// Reads them one by one, so that one that does not fit is refused by name; notes the defaults taken and warns
// of what is used otherwise than it is stored. Throws Refusal.
PathLossModelInputs takeModelInputs(PathInputs& inputs, SettingsUser user, std::vector<std::string>& notes,
                                    std::vector<std::string>& warnings);

// Fills in the deviates that the levels have become, and notes them where they are rounded.
void noteDeviates(const ModelParameters& parameters, PathLossModelInputs& inputs,
                  std::vector<std::string>& notes);

}  // namespace zel
