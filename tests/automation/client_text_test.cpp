#include "automation/client_text.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

// An object of which every member fails in the given way.
class FailingClient final : public Dispatch {
 public:
  explicit FailingClient(AutomationErrorCode code) : code_(code) {}
  std::int32_t dispatchId(std::string_view) const override { return 1; }
  AutomationValue invoke(std::int32_t, Access, std::span<const AutomationValue>) override {
    throw AutomationError(code_, "why");
  }

 private:
  AutomationErrorCode code_;
};

int errorNumberOf(const DispatchPtr& client) {
  try {
    clientText(client, "Title");
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(ClientText, IsTheTextOfAnyValueButAnObject) {
  const auto titleOf = [](const AutomationValue& title) {
    return clientText(makePropertyBag({{"Title", title}}), "title");
  };
  EXPECT_EQ(titleOf("Planner"), "Planner");
  EXPECT_EQ(titleOf(5), "5");
  EXPECT_EQ(titleOf(0.5), "0.5");
  EXPECT_EQ(titleOf(true), "True");
  EXPECT_EQ(titleOf(AutomationValue()), "");
}

TEST(ClientText, IsAnErrorWithoutAClientOrAPropertyAndForAnObject) {
  EXPECT_EQ(errorNumberOf(nullptr), 91);
  EXPECT_EQ(errorNumberOf(makePropertyBag({{"Path", "/var/log"}})), 438);
  EXPECT_EQ(errorNumberOf(makePropertyBag({{"Title", makePropertyBag({})}})), 13);
  EXPECT_EQ(errorNumberOf(makePropertyBag({{"Title", nullptr}})), 13);
  EXPECT_EQ(errorNumberOf(std::make_shared<FailingClient>(AutomationErrorCode::kMemberNotFound)), 438);
}

TEST(ClientText, PassesTheClientsOwnFailureOn) {
  for (const AutomationErrorCode code : {AutomationErrorCode::kFailed, AutomationErrorCode::kWrongAccess,
                                         AutomationErrorCode::kTypeMismatch}) {
    try {
      clientText(std::make_shared<FailingClient>(code), "Title");
      FAIL();
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.code(), code);
    }
  }
}

}  // namespace
}  // namespace zel
