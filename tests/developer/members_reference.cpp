// The reference page of ProfileControl's members, made from the table that late binding runs on.
//
//   members_reference FILE            writes the page
//   members_reference --check FILE    only says whether the file is that page; exit code 1 if it is not
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "zel/members.h"

namespace {

using zel::Access;
using zel::DescribedMember;

constexpr const char* kHead = R"(# Members of ProfileControl

Made from the table that late binding runs on, in the published order: its order is binding for hosts that are bound early. A property that can be read and set
has two rows, which share one dispatch id. The table is there for programs, too: `zel::describedMembers()` in `zel/members.h`.

**Types.** `16-bit integer`, `32-bit integer` and `32-bit float` are `std::int16_t`, `std::int32_t` and `float`; in C a boolean is an `int`, 0 or 1. A text is `std::string`, in C `const char*`, both UTF-8. An object is
`zel::DispatchPtr`, in C `zelObject*`. `StationProfile_Type` is a struct of `Lat`, `Lon` (degrees, north and east positive) and `AntHt` (metres above ground); by name it is any object with these three properties
([stations](stations.md)).

**Errors.** Called from a thread that the class does not belong to, every member throws `AutomationError` `kWrongThread`, in C it returns `ZEL_WRONG_THREAD`. A failure inside a member is told and logged, and the member
returns 0, false or nothing ([errors](errors.md)). Calls by name also throw `kMemberNotFound` for an unknown name, `kWrongAccess` for a member that cannot be read, set or called as asked, `kWrongArgumentCount`, and what the
rows below say.

)";

const char* kindText(Access access) {
  switch (access) {
    case Access::kGet:
      return "property, read";
    case Access::kLet:
      return "property, set";
    case Access::kMethod:
      return "method";
  }
  return "";
}

const char* headingKind(Access access) {
  switch (access) {
    case Access::kGet:
      return ", read";
    case Access::kLet:
      return ", set";
    case Access::kMethod:
      return "";
  }
  return "";
}

std::string cppName(const DescribedMember& member) {
  switch (member.access) {
    case Access::kGet:
      return "get_" + member.name;
    case Access::kLet:
      return "let_" + member.name;
    case Access::kMethod:
      return member.name;
  }
  return member.name;
}

std::string cName(const DescribedMember& member) {
  switch (member.access) {
    case Access::kGet:
      return "zelProfilerGet" + member.name;
    case Access::kLet:
      return "zelProfilerLet" + member.name;
    case Access::kMethod:
      return "zelProfiler" + member.name;
  }
  return member.name;
}

std::string pythonUse(const DescribedMember& member) {
  if (member.access == Access::kGet) return "profiler." + member.name;
  std::string arguments;
  for (const auto& argument : member.arguments)
    arguments += (arguments.empty() ? "" : ", ") + (member.access == Access::kLet ? "value" : argument.name);
  if (member.access == Access::kLet) return "profiler." + member.name + " = " + arguments;
  return "profiler." + member.name + "(" + arguments + ")";
}

std::string argumentErrors(const DescribedMember& member) {
  static const std::map<std::string, std::string> kByType{
      {"boolean", "`kTypeMismatch` for what is neither a boolean nor a number"},
      {"16-bit integer", "`kTypeMismatch` for what is no number, `kOverflow` outside -32768 to 32767"},
      {"32-bit integer", "`kTypeMismatch` for what is no number, `kOverflow` for what does not fit"},
      {"text", "`kTypeMismatch` for what is no text"},
      {"object", "`kTypeMismatch` for what is no object"},
      {"StationProfile_Type",
       "`kTypeMismatch` for what is no station, `kMemberNotFound` for one without `Lat`, `Lon` or `AntHt`, "
       "`kOverflow` for a number that does not fit"}};
  if (member.arguments.empty()) return {};
  const auto found = kByType.find(member.arguments.front().type);
  return found == kByType.end() ? std::string() : found->second;
}

std::string page() {
  std::ostringstream out;
  out << kHead << "| | member | kind | id | result |\n|---|---|---|---|---|\n";
  const std::vector<DescribedMember> members = zel::describedMembers();
  for (std::size_t i = 0; i < members.size(); ++i) {
    const DescribedMember& member = members[i];
    out << "| " << i + 1 << " | `" << member.name << "` | " << kindText(member.access) << " | " << member.id
        << " | " << member.resultType << " |\n";
  }
  for (std::size_t i = 0; i < members.size(); ++i) {
    const DescribedMember& member = members[i];
    out << "\n## " << i + 1 << ". " << member.name << headingKind(member.access) << "\n\n"
        << member.description << "\n\n| | |\n|---|---|\n";
    for (const auto& argument : member.arguments)
      out << "| argument | `" << argument.name << "`: " << argument.type << " |\n";
    if (!member.resultType.empty()) out << "| result | " << member.resultType << " |\n";
    out << "| dispatch id | " << member.id << " |\n";
    out << "| C++ | `" << cppName(member) << "` |\n| C | `" << cName(member) << "` |\n| Python | `"
        << pythonUse(member) << "` |\n";
    const std::string errors = argumentErrors(member);
    if (!errors.empty()) out << "| errors by name | " << errors << " |\n";
  }
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  const bool check = argc == 3 && std::string(argv[1]) == "--check";
  if (!check && argc != 2) {
    std::cerr << "usage: members_reference [--check] FILE\n";
    return 2;
  }
  const std::string file = argv[argc - 1];
  if (!check) {
    std::ofstream out(file, std::ios::binary);
    out << page();
    out.close();
    if (!out) std::cerr << file << " cannot be written\n";
    return out ? 0 : 1;
  }
  std::ifstream in(file, std::ios::binary);
  if (std::string(std::istreambuf_iterator<char>(in), {}) == page()) return 0;
  std::cerr << file << " is out of date: run bin/members_reference " << file << "\n";
  return 1;
}
