// The members of ProfileControl, described once: late binding, the test of their order, scripts and the
// reference page read this table.
//
// The rows stand in the published order, which early-bound hosts rely on. A property's get and let share one
// dispatch id; an id is the number of the first row that has its name.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "zel/automation.h"
#include "zel/profile_control.h"

namespace zel {

enum class MemberType {
  kNone,
  kBoolean,
  kInt16,
  kInt32,
  kFloat32,
  kText,
  kObject,
  kStation,  // an object with the properties Lat, Lon and AntHt
};

// "16-bit integer", "text", "StationProfile_Type" ...; empty for none.
std::string_view typeName(MemberType type);

struct MemberArgument {
  std::string_view name;
  MemberType type;
};

struct Member {
  std::string_view name;
  Access access;
  std::int32_t id;
  std::vector<MemberArgument> arguments;
  MemberType result;
  std::string_view description;
  // Calls the member with arguments of the given types.
  AutomationValue (*call)(_ProfileControl& control, std::span<const AutomationValue> arguments);
};

std::span<const Member> profileControlMembers();

// Throws AutomationError kMemberNotFound.
std::int32_t memberId(std::string_view name);

// Finds the row, brings the arguments to its types and calls it. Throws AutomationError; the text names the
// member and the argument.
AutomationValue callMember(_ProfileControl& control, std::int32_t id, Access access,
                           std::span<const AutomationValue> arguments);

// The station that an object with Lat, Lon and AntHt stands for. Throws AutomationError.
StationProfile_Type stationOf(const AutomationValue& value);

}  // namespace zel
