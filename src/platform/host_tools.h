// Small services of the tool library that are bound to the host's application object.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "zel/automation.h"

namespace zel {

// Two strings, read anew after every SetClientApp.
class ToolApplication {
 public:
  virtual ~ToolApplication() = default;
  virtual void SetClientApp(const DispatchPtr& client) = 0;
  virtual std::string HelperProgramFolder() const = 0;  // where vexptp.exe stands
  virtual std::string CoordinateFormat() const = 0;     // handed to the CoordinateFormatter
};

// Where a window was last, in pixels of the desktop.
class WindowPlacement {
 public:
  virtual ~WindowPlacement() = default;
  virtual void SetClientApp(const DispatchPtr& client) = 0;
  // Changes left and top to the stored position; leaves them when there is none.
  virtual void Restore(std::string_view window, std::int32_t& left, std::int32_t& top) = 0;
  virtual void Store(std::string_view window, std::int32_t& left, std::int32_t& top) = 0;
};

// The link-budget calculation for a modeled loss.
class LinkBudgetTool {
 public:
  virtual ~LinkBudgetTool() = default;
  virtual void SetClientApp(const DispatchPtr& client) = 0;
  virtual void Open(std::string_view modeledLossText) = 0;  // dB, as the profile window shows it
};

// Names of the terrain sources by their codes 1, 2, 3, 7 and 9.
class SourceLists {
 public:
  virtual ~SourceLists() = default;
  virtual void SetClientApp(const DispatchPtr& client) = 0;
  virtual std::string SourceName(std::int16_t code) const = 0;  // empty for any other code
};

class VersionInfo {
 public:
  virtual ~VersionInfo() = default;
  virtual void SetClientApp(const DispatchPtr& client) = 0;
  // The component's version as a text for the product's title line, "1.2.3 (Product)".
  virtual std::string Query(std::string_view productName) const = 0;
};

}  // namespace zel
