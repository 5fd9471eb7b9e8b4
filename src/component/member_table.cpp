#include "component/member_table.h"

#include <algorithm>
#include <cstddef>

#include "foundation/text.h"

namespace zel {
namespace {

using Arguments = std::span<const AutomationValue>;
using Kind = AutomationValue::Kind;

// The calls of the table, made from the members themselves.
template <auto kMember>
AutomationValue callGet(_ProfileControl& control, Arguments) {
  return (control.*kMember)();
}

template <auto kMember>
AutomationValue callMethod(_ProfileControl& control, Arguments) {
  (control.*kMember)();
  return {};
}

template <auto kMember>
AutomationValue callWithInt16(_ProfileControl& control, Arguments arguments) {
  (control.*kMember)(arguments[0].toInt16());
  return {};
}

template <auto kMember>
AutomationValue callWithInt32(_ProfileControl& control, Arguments arguments) {
  (control.*kMember)(arguments[0].toInt32());
  return {};
}

template <auto kMember>
AutomationValue callWithBoolean(_ProfileControl& control, Arguments arguments) {
  (control.*kMember)(arguments[0].toBoolean());
  return {};
}

template <auto kMember>
AutomationValue callWithText(_ProfileControl& control, Arguments arguments) {
  (control.*kMember)(arguments[0].toText());
  return {};
}

AutomationValue callSetClientApp(_ProfileControl& control, Arguments arguments) {
  control.SetClientApp(arguments[0].toObject());
  return {};
}

AutomationValue callGetPathLoss(_ProfileControl& control, Arguments arguments) {
  return control.GetPathLoss(stationOf(arguments[0]), stationOf(arguments[1]));
}

AutomationValue callShowMainForm(_ProfileControl& control, Arguments arguments) {
  control.ShowMainForm(stationOf(arguments[0]), stationOf(arguments[1]));
  return {};
}

using Control = _ProfileControl;
constexpr auto kGet = Access::kGet;
constexpr auto kLet = Access::kLet;
constexpr auto kMethod = Access::kMethod;
using Type = MemberType;

const std::vector<Member>& members() {
  const MemberArgument newInt16{"vNewValue", Type::kInt16};
  const MemberArgument newInt32{"vNewValue", Type::kInt32};
  const MemberArgument newBoolean{"vNewValue", Type::kBoolean};
  const MemberArgument newText{"vNewValue", Type::kText};
  const MemberArgument outfile{"outfile", Type::kText};
  const std::vector<MemberArgument> stations{{"Sta1", Type::kStation}, {"Sta2", Type::kStation}};
  static const std::vector<Member> table{
      {"ElevLines",
       kGet,
       1,
       {},
       Type::kInt16,
       "Number of horizontal (elevation) reference lines.",
       callGet<&Control::get_ElevLines>},
      {"ElevLines",
       kLet,
       1,
       {newInt16},
       Type::kNone,
       "Sets the number of horizontal reference lines.",
       callWithInt16<&Control::let_ElevLines>},
      {"ExportDataToCSV",
       kMethod,
       3,
       {outfile},
       Type::kNone,
       "Writes the height profile as CSV; nothing for a name under 5 characters.",
       callWithText<&Control::ExportDataToCSV>},
      {"ExportITMToCSV",
       kMethod,
       4,
       {outfile},
       Type::kNone,
       "Writes the end-of-path loss table as CSV; nothing for a name under 5 characters.",
       callWithText<&Control::ExportITMToCSV>},
      {"OFrmLoaded",
       kGet,
       5,
       {},
       Type::kBoolean,
       "Whether the settings dialog is loaded.",
       callGet<&Control::get_OFrmLoaded>},
      {"OptionButtonVisible",
       kGet,
       6,
       {},
       Type::kBoolean,
       "Whether the profile window offers its settings.",
       callGet<&Control::get_OptionButtonVisible>},
      {"OptionButtonVisible",
       kLet,
       6,
       {newBoolean},
       Type::kNone,
       "Sets whether the profile window offers its settings; SetClientApp sets it to true.",
       callWithBoolean<&Control::let_OptionButtonVisible>},
      {"OwnerName",
       kLet,
       8,
       {newText},
       Type::kNone,
       "Stores the owner's name.",
       callWithText<&Control::let_OwnerName>},
      {"PForm", kGet, 9, {}, Type::kObject, "A new profile window of its own.", callGet<&Control::get_PForm>},
      {"PFrmLoaded",
       kGet,
       10,
       {},
       Type::kBoolean,
       "Whether the profile window is loaded.",
       callGet<&Control::get_PFrmLoaded>},
      {"PrintDescription",
       kLet,
       11,
       {newText},
       Type::kNone,
       "Sets the description on the printed page.",
       callWithText<&Control::let_PrintDescription>},
      {"PrintLandscape",
       kLet,
       12,
       {newBoolean},
       Type::kNone,
       "Stored.",
       callWithBoolean<&Control::let_PrintLandscape>},
      {"PrintProfile",
       kMethod,
       13,
       {},
       Type::kBoolean,
       "Does nothing and returns false; printing starts from the window's menu.",
       callGet<&Control::PrintProfile>},
      {"ProgName",
       kLet,
       14,
       {newText},
       Type::kNone,
       "Stores the program's name.",
       callWithText<&Control::let_ProgName>},
      {"RangeLines",
       kGet,
       15,
       {},
       Type::kInt16,
       "Number of vertical (range) reference lines.",
       callGet<&Control::get_RangeLines>},
      {"RangeLines",
       kLet,
       15,
       {newInt16},
       Type::kNone,
       "Sets the number of vertical reference lines.",
       callWithInt16<&Control::let_RangeLines>},
      {"SetClientApp",
       kMethod,
       17,
       {{"ClientApp", Type::kObject}},
       Type::kNone,
       "Binds the component to the host's application object.",
       callSetClientApp},
      {"GetPathLoss", kMethod, 18, stations, Type::kFloat32,
       "Modeled path loss between the stations in dB; 0 when it cannot be computed.", callGetPathLoss},
      {"ShowMainForm", kMethod, 19, stations, Type::kNone,
       "Opens the profile window for the path and returns.", callShowMainForm},
      {"ShowOptionsForm",
       kMethod,
       20,
       {},
       Type::kNone,
       "Shows the settings dialog and returns when it is closed.",
       callMethod<&Control::ShowOptionsForm>},
      {"StaDatum",
       kGet,
       21,
       {},
       Type::kInt32,
       "Datum code of the stations.",
       callGet<&Control::get_StaDatum>},
      {"StaDatum",
       kLet,
       21,
       {newInt32},
       Type::kNone,
       "Sets the datum of the stations: 0 is NAD-27, any other code NAD-83.",
       callWithInt32<&Control::let_StaDatum>},
      {"UnloadMainForm",
       kMethod,
       23,
       {},
       Type::kNone,
       "Unloads the profile window, then the settings dialog, each if it is loaded.",
       callMethod<&Control::UnloadMainForm>},
      {"hWnd",
       kGet,
       24,
       {},
       Type::kInt32,
       "Native handle of the loaded profile window, 0 when there is none.",
       callGet<&Control::get_hWnd>},
  };
  return table;
}

[[noreturn]] void fail(AutomationErrorCode code, const std::string& text) {
  throw AutomationError(code, text);
}

const char* accessText(Access access) {
  switch (access) {
    case Access::kGet:
      return "cannot be read";
    case Access::kLet:
      return "cannot be set";
    case Access::kMethod:
      return "is no method";
  }
  return "cannot be used so";
}

AutomationValue converted(const AutomationValue& value, MemberType type) {
  switch (type) {
    case Type::kNone:
      return value.as(Kind::kEmpty);
    case Type::kBoolean:
      return value.as(Kind::kBoolean);
    case Type::kInt16:
      return value.as(Kind::kInt16);
    case Type::kInt32:
      return value.as(Kind::kInt32);
    case Type::kFloat32:
      return value.as(Kind::kFloat32);
    case Type::kText:
      return value.as(Kind::kText);
    case Type::kObject:
      return value.as(Kind::kObject);
    // A station of our own: the caller's object is read here, once, so that what is wrong with it is an error
    // of the argument.
    case Type::kStation:
      return makeStation(stationOf(value));
  }
  return value;
}

std::vector<AutomationValue> converted(const Member& member, Arguments arguments) {
  if (arguments.size() != member.arguments.size())
    fail(AutomationErrorCode::kWrongArgumentCount, std::string(member.name) + " takes " +
                                                       std::to_string(member.arguments.size()) +
                                                       " arguments, not " + std::to_string(arguments.size()));
  std::vector<AutomationValue> result;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    try {
      result.push_back(converted(arguments[i], member.arguments[i].type));
    } catch (const AutomationError& error) {
      fail(error.code(), std::string(member.name) + ", argument " + std::to_string(i + 1) + " (" +
                             std::string(member.arguments[i].name) + "): " + error.what());
    }
  }
  return result;
}

}  // namespace

std::string_view typeName(MemberType type) {
  switch (type) {
    case Type::kNone:
      return "";
    case Type::kBoolean:
      return "boolean";
    case Type::kInt16:
      return "16-bit integer";
    case Type::kInt32:
      return "32-bit integer";
    case Type::kFloat32:
      return "32-bit float";
    case Type::kText:
      return "text";
    case Type::kObject:
      return "object";
    case Type::kStation:
      return "StationProfile_Type";
  }
  return "";
}

std::span<const Member> profileControlMembers() { return members(); }

std::int32_t memberId(std::string_view name) {
  for (const Member& member : members())
    if (equalIgnoringCase(member.name, name)) return member.id;
  fail(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member " + std::string(name));
}

AutomationValue callMember(_ProfileControl& control, std::int32_t id, Access access, Arguments arguments) {
  const auto& table = members();
  const auto hasId = [id](const Member& member) { return member.id == id; };
  const auto named = std::find_if(table.begin(), table.end(), hasId);
  if (named == table.end())
    fail(AutomationErrorCode::kMemberNotFound, "ProfileControl has no member " + std::to_string(id));
  const auto found = std::find_if(
      named, table.end(), [&](const Member& member) { return hasId(member) && member.access == access; });
  if (found == table.end())
    fail(AutomationErrorCode::kWrongAccess, std::string(named->name) + " " + accessText(access));
  return found->call(control, converted(*found, arguments));
}

StationProfile_Type stationOf(const AutomationValue& value) {
  const DispatchPtr object = value.toObject();
  if (object == nullptr)
    fail(AutomationErrorCode::kTypeMismatch,
         "nothing cannot stand for a station (an object with Lat, Lon and AntHt)");
  const auto property = [&object](const char* name, auto read) {
    try {
      return read(object->get(name));
    } catch (const AutomationError& error) {
      fail(error.code(), std::string(name) + ": " + error.what());
    }
  };
  const auto asFloat64 = [](const AutomationValue& number) { return number.toFloat64(); };
  return {property("Lat", asFloat64), property("Lon", asFloat64),
          property("AntHt", [](const AutomationValue& number) { return number.toFloat32(); })};
}

DispatchPtr makeStation(const StationProfile_Type& station) {
  return makePropertyBag({{"Lat", station.Lat}, {"Lon", station.Lon}, {"AntHt", station.AntHt}});
}

}  // namespace zel
