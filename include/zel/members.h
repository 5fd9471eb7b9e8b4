// The members of ProfileControl as data, for bindings and reference pages.
//
// The table is the one that late binding itself runs on. Its rows stand in the published order; a property
// with a get and a let has two rows, which share one dispatch id. From any thread.
#ifndef ZEL_MEMBERS_H_
#define ZEL_MEMBERS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "zel/automation.h"
#include "zel/export.h"

namespace zel {

struct DescribedArgument {
  std::string name;  // "outfile"
  std::string type;  // "boolean", "16-bit integer", "32-bit integer", "32-bit float", "text", "object",
                     // "StationProfile_Type"
};

struct DescribedMember {
  std::string name;
  Access access = Access::kMethod;
  std::int32_t id = 0;  // dispatch id
  std::vector<DescribedArgument> arguments;
  std::string resultType;   // as of an argument; empty when there is none
  std::string description;  // a sentence or more
};

ZEL_API std::vector<DescribedMember> describedMembers();

}  // namespace zel

#endif  // ZEL_MEMBERS_H_
