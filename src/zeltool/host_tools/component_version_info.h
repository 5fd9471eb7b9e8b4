// The component's version for the title line of a product.
#pragma once

#include <string>
#include <utility>

#include "platform/host_tools.h"

namespace zel {

class ComponentVersionInfo : public VersionInfo {
 public:
  // `version` as "1.2.3".
  explicit ComponentVersionInfo(std::string version) : version_(std::move(version)) {}

  // The version is the component's own, whoever asks.
  void SetClientApp(const DispatchPtr&) override {}
  // "1.2.3 (Product)"; "1.2.3" for a product without a name.
  std::string Query(std::string_view productName) const override;

 private:
  std::string version_;
};

}  // namespace zel
