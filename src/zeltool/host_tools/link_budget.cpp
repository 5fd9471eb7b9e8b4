#include "zeltool/host_tools/link_budget.h"

#include "foundation/runtime_error.h"

namespace zel {

void LinkBudget::Open(std::string_view modeledLossText) {
  modeledLossText_ = modeledLossText;
  throw RuntimeError::actionNotSupported();
}

}  // namespace zel
