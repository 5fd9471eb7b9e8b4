// A plan's JSON with what a copy of unsaved work has besides.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "planning/plan_file.h"

namespace zel::host {

// Where a copy comes from, the member "recovery" of the file.
struct PlanOrigin {
  std::string path;          // of the file, any bytes; empty when the plan had none
  std::int64_t savedAt = 0;  // of the copy, seconds since 1970
  std::string state;         // of the file when the first copy was made (recovery.cpp), compared as it is
};

std::string planText(const PlanFile& file, const std::optional<PlanOrigin>& origin);
PlanFile readPlanText(const std::string& text, std::optional<PlanOrigin>& origin);

}  // namespace zel::host
