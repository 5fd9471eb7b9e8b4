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
       "Number of horizontal (elevation) reference lines: 0 until a profile is drawn or the host sets it; "
       "from then on that of the last drawing, which is the setting Profile/Prf_Ele (3 by default).",
       callGet<&Control::get_ElevLines>},
      {"ElevLines",
       kLet,
       1,
       {newInt16},
       Type::kNone,
       "Sets the number that ElevLines gives, any 16-bit integer. Every drawing of the profile window takes "
       "the number from the setting Profile/Prf_Ele and stores it here, so that this value does not reach "
       "the plot: store the setting to change it.",
       callWithInt16<&Control::let_ElevLines>},
      {"ExportDataToCSV",
       kMethod,
       3,
       {outfile},
       Type::kNone,
       "Writes the height profile to the file outfile, as CSV: of the profile window as it is, or without "
       "one of the stations that ShowMainForm or GetPathLoss was given last. A file that is there is "
       "replaced without a question. Nothing happens for a name under 5 characters. A path that cannot be "
       "profiled, and a file that cannot be written, is told in a box (without a graphical application a "
       "line on standard error), and nothing is written. Ground from -500 m up to -100 m ends the process.",
       callWithText<&Control::ExportDataToCSV>},
      {"ExportITMToCSV",
       kMethod,
       4,
       {outfile},
       Type::kNone,
       "Writes the table of modeled losses at the end of the path, for the confidences and reliabilities 1 "
       "to 99 percent, to the file outfile, as CSV: of the profile window as it is, or without one of the "
       "stations that ShowMainForm or GetPathLoss was given last. A file that is there is replaced without a "
       "question. Nothing happens for a name under 5 characters. A path that cannot be profiled, and a file "
       "that cannot be written, is told in a box (without a graphical application a line on standard error), "
       "and nothing is written. Ground from -500 m up to -100 m ends the process.",
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
       "Whether the profile window offers its settings: true after SetClientApp, false before it.",
       callGet<&Control::get_OptionButtonVisible>},
      {"OptionButtonVisible",
       kLet,
       6,
       {newBoolean},
       Type::kNone,
       "Sets whether the profile window offers its settings. It is read when a window opens; SetClientApp "
       "sets it to true, so set it after that.",
       callWithBoolean<&Control::let_OptionButtonVisible>},
      {"OwnerName",
       kLet,
       8,
       {newText},
       Type::kNone,
       "Stores a name of the owner, any text; nothing reads it.",
       callWithText<&Control::let_OwnerName>},
      {"PForm",
       kGet,
       9,
       {},
       Type::kObject,
       "A new profile window of the host's own, as an object whose controls and procedures are reached by "
       "name, apart from the one that ShowMainForm shows and from its flags. It keeps the stations that "
       "ShowMainForm or GetPathLoss was given last. It is shown by its method Show, and unloaded when the "
       "object is released. Nothing (the null object) where no window can be shown, after a message that "
       "says why. Ground from -500 m up to -100 m ends the process.",
       callGet<&Control::get_PForm>},
      {"PFrmLoaded",
       kGet,
       10,
       {},
       Type::kBoolean,
       "Whether the profile window of ShowMainForm is loaded: true from its opening until it is closed or "
       "unloaded, false when its path could not be profiled.",
       callGet<&Control::get_PFrmLoaded>},
      {"PrintDescription",
       kLet,
       11,
       {newText},
       Type::kNone,
       "Sets the description on the printed page, any text. With one set the window prints without asking "
       "for it; an empty text is one, too.",
       callWithText<&Control::let_PrintDescription>},
      {"PrintLandscape",
       kLet,
       12,
       {newBoolean},
       Type::kNone,
       "Sets whether the print dialog and the print preview begin with a page that lies on its side; the "
       "user can choose otherwise there. False until it is set.",
       callWithBoolean<&Control::let_PrintLandscape>},
      {"PrintProfile",
       kMethod,
       13,
       {},
       Type::kBoolean,
       "Does nothing and returns false, and is meant to: printing starts from the profile window's menu.",
       callGet<&Control::PrintProfile>},
      {"ProgName",
       kLet,
       14,
       {newText},
       Type::kNone,
       "Stores a name of the program, any text; nothing reads it.",
       callWithText<&Control::let_ProgName>},
      {"RangeLines",
       kGet,
       15,
       {},
       Type::kInt16,
       "Number of vertical (range) reference lines: 0 until a profile is drawn or the host sets it; from "
       "then on that of the last drawing, which is the setting Profile/Prf_Rng (3 by default).",
       callGet<&Control::get_RangeLines>},
      {"RangeLines",
       kLet,
       15,
       {newInt16},
       Type::kNone,
       "Sets the number that RangeLines gives, any 16-bit integer. Every drawing of the profile window takes "
       "the number from the setting Profile/Prf_Rng and stores it here, so that this value does not reach "
       "the plot: store the setting to change it.",
       callWithInt16<&Control::let_RangeLines>},
      {"SetClientApp",
       kMethod,
       17,
       {{"ClientApp", Type::kObject}},
       Type::kNone,
       "Binds the component to the host's application object: settings are kept under its Title, the error "
       "log is written to the folder of its Path, and its ProductName, HelpFile, Major, Minor and Revision "
       "are shown. The properties are read by name each time they are needed. Call it first; until then the "
       "component is bound to an application object of its own, \"zelProfiler01\". The null object binds "
       "nothing new. Every call sets OptionButtonVisible to true and reads the host's settings of terrain "
       "sources anew.",
       callSetClientApp},
      {"GetPathLoss", kMethod, 18, stations, Type::kFloat32,
       "The modeled loss (Longley-Rice, point to point) from the first station to the second, dB: basic "
       "transmission loss between isotropic antennas, at the frequency of the setting Profile/Prf_Freq (100 "
       "MHz when none is stored) and with the parameters of section ITM. Latitudes and longitudes are "
       "decimal degrees, north and east positive; antenna heights are whole metres above ground, rounded "
       "half to even. 0 outside 20 to 20000 MHz, and when it cannot be computed, after a message that says "
       "why. Opens and closes no window. Ground from -500 m up to -100 m ends the process.",
       callGetPathLoss},
      {"ShowMainForm", kMethod, 19, stations, Type::kNone,
       "Opens the profile window for the path between the stations and returns as soon as it is drawn; a "
       "profile window or settings dialog that is open is unloaded first. A path that cannot be profiled, of "
       "less than 0.2 km or outside the terrain, is told in a box, and no window stays. Stations as for "
       "GetPathLoss. Ground from -500 m up to -100 m ends the process. Where no window can be shown a "
       "message says why, and the call returns.",
       callShowMainForm},
      {"ShowOptionsForm",
       kMethod,
       20,
       {},
       Type::kNone,
       "Shows the settings dialog, modal, and returns when it is closed; its OK stores the settings and "
       "computes open profiles anew. One that is open already is brought to the front. Where no window can "
       "be shown a message says why, and the call returns.",
       callMethod<&Control::ShowOptionsForm>},
      {"StaDatum",
       kGet,
       21,
       {},
       Type::kInt32,
       "Datum code of the stations, as it was set; 0 before that.",
       callGet<&Control::get_StaDatum>},
      {"StaDatum",
       kLet,
       21,
       {newInt32},
       Type::kNone,
       "Sets the datum of the stations: 0 is NAD-27, any other 32-bit integer NAD-83. With NAD-27 terrain is "
       "read at the shifted positions. Until it is set nothing is shifted and no datum is shown.",
       callWithInt32<&Control::let_StaDatum>},
      {"UnloadMainForm",
       kMethod,
       23,
       {},
       Type::kNone,
       "Unloads the profile window if it is loaded, then the settings dialog if it is loaded. Windows of "
       "PForm stay.",
       callMethod<&Control::UnloadMainForm>},
      {"hWnd",
       kGet,
       24,
       {},
       Type::kInt32,
       "Native handle of the loaded profile window, its low 32 bits; 0 when there is none.",
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
