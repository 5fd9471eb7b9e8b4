#include "zeltool/host_tools/link_budget.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

TEST(LinkBudget, KeepsTheClientAndTheLossAndSaysThatItCannotOpen) {
  LinkBudget tool;
  EXPECT_EQ(tool.modeledLossText(), "");
  const DispatchPtr client = makePropertyBag({{"Title", "Planner"}});
  tool.SetClientApp(client);
  EXPECT_EQ(tool.client(), client);
  try {
    tool.Open("137.65");
    ADD_FAILURE() << "raised nothing";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 445);
    EXPECT_EQ(error.description(), "Object doesn't support this action");
  }
  EXPECT_EQ(tool.modeledLossText(), "137.65");
}

}  // namespace
}  // namespace zel
