#include "component/member_table.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace zel {
namespace {

struct PublishedMember {
  std::string name;
  Access access;
  std::string arguments;
  MemberType result;
};

// The published order.
const std::vector<PublishedMember>& published() {
  static const std::vector<PublishedMember> members{
      {"ElevLines", Access::kGet, "", MemberType::kInt16},
      {"ElevLines", Access::kLet, "vNewValue 16-bit integer", MemberType::kNone},
      {"ExportDataToCSV", Access::kMethod, "outfile text", MemberType::kNone},
      {"ExportITMToCSV", Access::kMethod, "outfile text", MemberType::kNone},
      {"OFrmLoaded", Access::kGet, "", MemberType::kBoolean},
      {"OptionButtonVisible", Access::kGet, "", MemberType::kBoolean},
      {"OptionButtonVisible", Access::kLet, "vNewValue boolean", MemberType::kNone},
      {"OwnerName", Access::kLet, "vNewValue text", MemberType::kNone},
      {"PForm", Access::kGet, "", MemberType::kObject},
      {"PFrmLoaded", Access::kGet, "", MemberType::kBoolean},
      {"PrintDescription", Access::kLet, "vNewValue text", MemberType::kNone},
      {"PrintLandscape", Access::kLet, "vNewValue boolean", MemberType::kNone},
      {"PrintProfile", Access::kMethod, "", MemberType::kBoolean},
      {"ProgName", Access::kLet, "vNewValue text", MemberType::kNone},
      {"RangeLines", Access::kGet, "", MemberType::kInt16},
      {"RangeLines", Access::kLet, "vNewValue 16-bit integer", MemberType::kNone},
      {"SetClientApp", Access::kMethod, "ClientApp object", MemberType::kNone},
      {"GetPathLoss", Access::kMethod, "Sta1 StationProfile_Type, Sta2 StationProfile_Type",
       MemberType::kFloat32},
      {"ShowMainForm", Access::kMethod, "Sta1 StationProfile_Type, Sta2 StationProfile_Type",
       MemberType::kNone},
      {"ShowOptionsForm", Access::kMethod, "", MemberType::kNone},
      {"StaDatum", Access::kGet, "", MemberType::kInt32},
      {"StaDatum", Access::kLet, "vNewValue 32-bit integer", MemberType::kNone},
      {"UnloadMainForm", Access::kMethod, "", MemberType::kNone},
      {"hWnd", Access::kGet, "", MemberType::kInt32},
  };
  return members;
}

std::string argumentsOf(const Member& member) {
  std::string text;
  for (const MemberArgument& argument : member.arguments) {
    if (!text.empty()) text += ", ";
    text += std::string(argument.name) + " " + std::string(typeName(argument.type));
  }
  return text;
}

TEST(MemberTable, ListsThe24MembersInThePublishedOrder) {
  const auto table = profileControlMembers();
  ASSERT_EQ(table.size(), 24U);
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].name, published()[i].name) << i + 1;
    EXPECT_EQ(table[i].access, published()[i].access) << table[i].name;
    EXPECT_EQ(argumentsOf(table[i]), published()[i].arguments) << table[i].name;
    EXPECT_EQ(table[i].result, published()[i].result) << table[i].name;
    EXPECT_FALSE(table[i].description.empty()) << table[i].name;
    EXPECT_NE(table[i].call, nullptr) << table[i].name;
  }
}

TEST(MemberTable, SharesOneIdBetweenGetAndLetOfAName) {
  std::map<std::string, std::int32_t> ids;
  std::map<std::int32_t, std::string> names;
  std::int32_t row = 0;
  for (const Member& member : profileControlMembers()) {
    ++row;
    const auto first = ids.emplace(member.name, row).first;
    EXPECT_EQ(member.id, first->second) << member.name;
    EXPECT_EQ(names.emplace(member.id, member.name).first->second, member.name);
    EXPECT_EQ(memberId(member.name), member.id);
  }
}

// The place of a virtual member in the table of its class: the Itanium C++ ABI keeps it, plus one, in the
// member pointer.
template <typename MemberPointer>
std::ptrdiff_t slotOf(MemberPointer member) {
  std::ptrdiff_t parts[2] = {};
  static_assert(sizeof member == sizeof parts);
  std::memcpy(parts, &member, sizeof parts);
  EXPECT_EQ(parts[0] % static_cast<std::ptrdiff_t>(sizeof(void*)), 1);
  return parts[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(ProfileControlInterface, HasItsVirtualMembersInThePublishedOrder) {
  using P = _ProfileControl;
  const std::ptrdiff_t slots[] = {slotOf(&P::get_ElevLines),
                                  slotOf(&P::let_ElevLines),
                                  slotOf(&P::ExportDataToCSV),
                                  slotOf(&P::ExportITMToCSV),
                                  slotOf(&P::get_OFrmLoaded),
                                  slotOf(&P::get_OptionButtonVisible),
                                  slotOf(&P::let_OptionButtonVisible),
                                  slotOf(&P::let_OwnerName),
                                  slotOf(&P::get_PForm),
                                  slotOf(&P::get_PFrmLoaded),
                                  slotOf(&P::let_PrintDescription),
                                  slotOf(&P::let_PrintLandscape),
                                  slotOf(&P::PrintProfile),
                                  slotOf(&P::let_ProgName),
                                  slotOf(&P::get_RangeLines),
                                  slotOf(&P::let_RangeLines),
                                  slotOf(&P::SetClientApp),
                                  slotOf(&P::GetPathLoss),
                                  slotOf(&P::ShowMainForm),
                                  slotOf(&P::ShowOptionsForm),
                                  slotOf(&P::get_StaDatum),
                                  slotOf(&P::let_StaDatum),
                                  slotOf(&P::UnloadMainForm),
                                  slotOf(&P::get_hWnd)};
  ASSERT_EQ(std::size(slots), profileControlMembers().size());
  EXPECT_EQ(slots[0], slotOf(&Dispatch::invoke) + 1) << "they follow those of Dispatch";
  for (std::size_t i = 1; i < std::size(slots); ++i)
    EXPECT_EQ(slots[i], slots[i - 1] + 1) << published()[i].name;
}

TEST(Station, IsAnObjectWithLatLonAndAntHt) {
  const StationProfile_Type station = stationOf(makeStation({36.5, -84.25, 12.5F}));
  EXPECT_EQ(station.Lat, 36.5);
  EXPECT_EQ(station.Lon, -84.25);
  EXPECT_EQ(station.AntHt, 12.5F);
}

}  // namespace
}  // namespace zel
