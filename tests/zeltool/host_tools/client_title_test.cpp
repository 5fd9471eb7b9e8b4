#include "zeltool/host_tools/client_title.h"

#include <gtest/gtest.h>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

int errorNumberOf(const DispatchPtr& client) {
  try {
    clientTitle(client);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(ClientTitle, IsReadAnewAtEachCall) {
  const DispatchPtr client = makePropertyBag({{"Title", "Planner"}});
  EXPECT_EQ(clientTitle(client), "Planner");
  client->let("Title", "Planner 2");
  EXPECT_EQ(clientTitle(client), "Planner 2");
}

TEST(ClientTitle, IsTheTextOfANumber) { EXPECT_EQ(clientTitle(makePropertyBag({{"Title", 5}})), "5"); }

TEST(ClientTitle, RaisesAnErrorWithoutAClientOrATitle) {
  EXPECT_EQ(errorNumberOf(nullptr), 91);
  EXPECT_EQ(errorNumberOf(makePropertyBag({{"Path", "/var/log"}})), 438);
  EXPECT_EQ(errorNumberOf(makePropertyBag({{"Title", makePropertyBag({})}})), 13);
}

}  // namespace
}  // namespace zel
