#include <cstddef>
#include <vector>

#include "foundation/text.h"
#include "zel/automation.h"

namespace zel {

Dispatch::Dispatch() = default;
Dispatch::~Dispatch() = default;

AutomationValue Dispatch::get(std::string_view name) { return invoke(dispatchId(name), Access::kGet, {}); }

void Dispatch::let(std::string_view name, const AutomationValue& value) {
  invoke(dispatchId(name), Access::kLet, std::span(&value, 1));
}

AutomationValue Dispatch::call(std::string_view name, std::initializer_list<AutomationValue> arguments) {
  return invoke(dispatchId(name), Access::kMethod, std::span(arguments.begin(), arguments.size()));
}

namespace {

struct Property {
  std::string name;
  AutomationValue value;
};

class PropertyBag final : public Dispatch {
 public:
  explicit PropertyBag(std::initializer_list<std::pair<std::string_view, AutomationValue>> properties) {
    for (const auto& [name, value] : properties) {
      if (Property* same = find(name)) {
        same->value = value;
      } else {
        properties_.push_back({std::string(name), value});
      }
    }
  }

  std::int32_t dispatchId(std::string_view name) const override {
    for (std::size_t i = 0; i < properties_.size(); ++i)
      if (equalIgnoringCase(properties_[i].name, name)) return static_cast<std::int32_t>(i + 1);
    throw AutomationError(AutomationErrorCode::kMemberNotFound, "there is no property " + std::string(name));
  }

  AutomationValue invoke(std::int32_t id, Access access,
                         std::span<const AutomationValue> arguments) override {
    if (id < 1 || static_cast<std::size_t>(id) > properties_.size())
      throw AutomationError(AutomationErrorCode::kMemberNotFound, "there is no member " + std::to_string(id));
    Property& property = properties_[static_cast<std::size_t>(id - 1)];
    if (access == Access::kMethod)
      throw AutomationError(AutomationErrorCode::kWrongAccess,
                            property.name + " is a property, not a method");
    const std::size_t wanted = access == Access::kLet ? 1 : 0;
    if (arguments.size() != wanted)
      throw AutomationError(AutomationErrorCode::kWrongArgumentCount,
                            property.name + " takes " + std::to_string(wanted) + " arguments, not " +
                                std::to_string(arguments.size()));
    if (access == Access::kGet) return property.value;
    property.value = arguments.front();
    return {};
  }

 private:
  Property* find(std::string_view name) {
    for (Property& property : properties_)
      if (equalIgnoringCase(property.name, name)) return &property;
    return nullptr;
  }

  std::vector<Property> properties_;
};

}  // namespace

DispatchPtr makePropertyBag(std::initializer_list<std::pair<std::string_view, AutomationValue>> properties) {
  return std::make_shared<PropertyBag>(properties);
}

}  // namespace zel
