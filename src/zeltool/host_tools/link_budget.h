// The link budget of a modeled loss. It takes the client and the loss text that the profile window hands
// over. The component has no such calculation of its own: opening it says so.
#pragma once

#include <string>

#include "platform/host_tools.h"

namespace zel {

class LinkBudget : public LinkBudgetTool {
 public:
  void SetClientApp(const DispatchPtr& client) override { client_ = client; }
  // Keeps the loss text (dB), then throws RuntimeError 445.
  void Open(std::string_view modeledLossText) override;

  const DispatchPtr& client() const { return client_; }
  // Of the last Open; empty before.
  const std::string& modeledLossText() const { return modeledLossText_; }

 private:
  DispatchPtr client_;
  std::string modeledLossText_;
};

}  // namespace zel
