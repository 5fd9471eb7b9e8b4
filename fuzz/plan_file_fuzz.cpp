// Plans as JSON texts: what is read is a plan that can be, and is written and read again the same; what is
// refused has a reason of a readable length.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "planning/plan_file.h"
#include "planning/utf8_text.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zel::host;
  constexpr std::size_t kLongestReason = 1000;  // bytes; names of 200 characters may be in it
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    const PlanFile file = readPlanText(text);
    require(planProblem(file.plan).empty());
    const std::string written = planText(file);
    const PlanFile again = readPlanText(written);
    require(again.plan == file.plan && again.view == file.view);
    require(planText(again) == written);
  } catch (const PlanFileError& error) {
    const std::string reason = error.what();
    require(!reason.empty() && reason.size() <= kLongestReason);
    require(!firstBadUtf8(reason));
    require(reason.find('\n') == std::string::npos);
  }
  return 0;
}
