#include "component/desktop/desktop_process.h"

#include <gtest/gtest.h>

#include <QCursor>

#include "desktop_fixture.h"

namespace zel {
namespace {

class DesktopProcessTest : public test::DesktopFixture {};

TEST_F(DesktopProcessTest, LaysTheHourglassOverEveryWindowAndTakesItOff) {
  DesktopPointer pointer;
  pointer.set(PointerShape::kHourglass);
  pointer.set(PointerShape::kHourglass);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  pointer.set(PointerShape::kDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(DesktopProcessTest, LeavesThePointerThatTheHostHasSet) {
  QApplication::setOverrideCursor(QCursor(Qt::CrossCursor));
  DesktopPointer pointer;
  pointer.set(PointerShape::kDefault);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  QApplication::restoreOverrideCursor();
}

TEST_F(DesktopProcessTest, QuitsTheHostsLoopWithTheCode) {
  DesktopEventLoop().postQuit(9);
  EXPECT_EQ(QApplication::exec(), 9);
}

TEST_F(DesktopProcessTest, HandlesPendingEvents) {
  bool handled = false;
  QTimer::singleShot(0, qApp, [&] { handled = true; });
  DesktopEventLoop().processPending();
  EXPECT_TRUE(handled);
}

}  // namespace
}  // namespace zel
