#include "desktop_fixture.h"

namespace zel::test {
namespace {

// gtest owns it.
[[maybe_unused]] const testing::Environment* const desktop =
    testing::AddGlobalTestEnvironment(new DesktopEnvironment);

}  // namespace
}  // namespace zel::test
