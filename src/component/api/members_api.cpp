// The member table as installed data.
#include "component/member_table.h"
#include "zel/members.h"

namespace zel {

std::vector<DescribedMember> describedMembers() {
  std::vector<DescribedMember> all;
  for (const Member& member : profileControlMembers()) {
    DescribedMember described;
    described.name = member.name;
    described.access = member.access;
    described.id = member.id;
    for (const MemberArgument& argument : member.arguments)
      described.arguments.push_back({std::string(argument.name), std::string(typeName(argument.type))});
    described.resultType = typeName(member.result);
    described.description = member.description;
    all.push_back(std::move(described));
  }
  return all;
}

}  // namespace zel
