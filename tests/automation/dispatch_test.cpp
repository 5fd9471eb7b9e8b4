#include <gtest/gtest.h>

#include <array>

#include "zel/automation.h"

namespace zel {
namespace {

template <typename Body>
AutomationErrorCode codeOf(Body&& body) {
  try {
    body();
  } catch (const AutomationError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.code();
  }
  ADD_FAILURE() << "nothing was thrown";
  return AutomationErrorCode::kFailed;
}

TEST(PropertyBag, ReadsAPropertyByNameWithoutRegardToCase) {
  const DispatchPtr bag = makePropertyBag({{"Title", "Host Planner"}, {"Major", 3}});
  EXPECT_EQ(bag->get("Title").toText(), "Host Planner");
  EXPECT_EQ(bag->get("TITLE").toText(), "Host Planner");
  EXPECT_EQ(bag->get("major").toInt32(), 3);
}

TEST(PropertyBag, NumbersItsPropertiesFromOneInTheGivenOrder) {
  const DispatchPtr bag = makePropertyBag({{"Lat", 1.0}, {"Lon", 2.0}, {"AntHt", 3.0F}});
  EXPECT_EQ(bag->dispatchId("Lat"), 1);
  EXPECT_EQ(bag->dispatchId("lon"), 2);
  EXPECT_EQ(bag->dispatchId("AntHt"), 3);
  EXPECT_EQ(bag->invoke(2, Access::kGet, {}).toFloat64(), 2.0);
}

TEST(PropertyBag, KeepsWhatIsWrittenIncludingAnotherKind) {
  const DispatchPtr bag = makePropertyBag({{"Title", "one"}});
  bag->let("title", 2);
  EXPECT_EQ(bag->get("Title"), AutomationValue(2));
}

TEST(PropertyBag, HasTheLaterValueOfANameGivenTwice) {
  const DispatchPtr bag = makePropertyBag({{"Title", "one"}, {"Path", "p"}, {"TITLE", "two"}});
  EXPECT_EQ(bag->get("Title").toText(), "two");
  EXPECT_EQ(bag->dispatchId("Path"), 2);
}

TEST(PropertyBag, RefusesAMissingNameOrId) {
  const DispatchPtr bag = makePropertyBag({{"Title", "one"}});
  EXPECT_EQ(codeOf([&] { bag->get("Titl"); }), AutomationErrorCode::kMemberNotFound);
  EXPECT_EQ(codeOf([&] { bag->get(""); }), AutomationErrorCode::kMemberNotFound);
  for (const std::int32_t id : {-1, 0, 2})
    EXPECT_EQ(codeOf([&] { bag->invoke(id, Access::kGet, {}); }), AutomationErrorCode::kMemberNotFound) << id;
}

TEST(PropertyBag, RefusesACallAndAWrongNumberOfArguments) {
  const DispatchPtr bag = makePropertyBag({{"Title", "one"}});
  const std::array<AutomationValue, 2> two{1, 2};
  EXPECT_EQ(codeOf([&] { bag->call("Title"); }), AutomationErrorCode::kWrongAccess);
  EXPECT_EQ(codeOf([&] { bag->invoke(1, Access::kGet, two); }), AutomationErrorCode::kWrongArgumentCount);
  EXPECT_EQ(codeOf([&] { bag->invoke(1, Access::kLet, two); }), AutomationErrorCode::kWrongArgumentCount);
  EXPECT_EQ(codeOf([&] { bag->invoke(1, Access::kLet, {}); }), AutomationErrorCode::kWrongArgumentCount);
}

TEST(PropertyBag, NamesTheMissingProperty) {
  try {
    makePropertyBag({})->get("Path");
    FAIL();
  } catch (const AutomationError& error) {
    EXPECT_STREQ(error.what(), "there is no property Path");
  }
}

}  // namespace
}  // namespace zel
