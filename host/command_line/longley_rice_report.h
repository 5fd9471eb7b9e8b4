// The model's result and everything that it was computed from, for a person and for a program.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>

#include "command_line/longley_rice_inputs.h"
#include "zel/longley_rice.h"

namespace zel::host {

// Numbers as computed, not rounded.
nlohmann::ordered_json longleyRiceJson(const LongleyRiceTask& task, const LongleyRiceResult& result);

void printLongleyRice(std::ostream& out, const LongleyRiceTask& task, const LongleyRiceResult& result);

}  // namespace zel::host
