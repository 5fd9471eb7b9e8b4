#include <gtest/gtest.h>

#include <thread>

#include "component/desktop/desktop_process.h"
#include "desktop_fixture.h"
#include "zel/c_api.h"

namespace zel {
namespace {

class CApiEventLoop : public test::DesktopFixture {};

TEST_F(CApiEventLoop, RunsUntilTheApplicationQuitsAndGivesItsExitCode) {
  DesktopEventLoop().postQuit(445);
  int exitCode = 0;
  EXPECT_EQ(zelProfilerRun(&exitCode), ZEL_OK);
  EXPECT_EQ(exitCode, 445);
  DesktopEventLoop().postQuit(1);
  EXPECT_EQ(zelProfilerRun(nullptr), ZEL_OK);
}

TEST_F(CApiEventLoop, RefusesToRunALoopWithinALoop) {
  int inner = ZEL_OK;
  QTimer::singleShot(0, qApp, [&] {
    inner = zelProfilerRun(nullptr);
    QCoreApplication::exit(0);
  });
  EXPECT_EQ(zelProfilerRun(nullptr), ZEL_OK);
  EXPECT_EQ(inner, ZEL_EVENT_LOOP_RUNNING);
}

TEST_F(CApiEventLoop, HandlesPendingEvents) {
  bool handled = false;
  QTimer::singleShot(0, qApp, [&] { handled = true; });
  EXPECT_EQ(zelProfilerProcessEvents(100), ZEL_OK);
  EXPECT_TRUE(handled);
  EXPECT_EQ(zelProfilerProcessEvents(-1), ZEL_OUT_OF_RANGE);
}

TEST_F(CApiEventLoop, TellsAHostThatHandlesEventsItselfToQuitAndKeepsTheExitCode) {
  DesktopEventLoop().postQuit(445);
  EXPECT_EQ(zelProfilerProcessEvents(0), ZEL_QUIT);
  EXPECT_STRNE(zelProfilerLastError(), "");
  EXPECT_EQ(zelProfilerProcessEvents(0), ZEL_QUIT) << "until it is taken";
  int exitCode = 0;
  EXPECT_EQ(zelProfilerRun(&exitCode), ZEL_OK) << "without a loop, at once";
  EXPECT_EQ(exitCode, 445);
  EXPECT_EQ(zelProfilerProcessEvents(0), ZEL_OK) << "it is taken";
}

TEST_F(CApiEventLoop, KeepsTheQuitThatIsAskedForUnderABoxOfAnEvent) {
  QTimer::singleShot(0, qApp, [&] {
    QEventLoop box;
    DesktopEventLoop().postQuit(6);
    box.exec();
  });
  EXPECT_EQ(zelProfilerProcessEvents(100), ZEL_QUIT);
  int exitCode = 0;
  EXPECT_EQ(zelProfilerRun(&exitCode), ZEL_OK);
  EXPECT_EQ(exitCode, 6);
  QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(3); });
  EXPECT_EQ(zelProfilerRun(&exitCode), ZEL_OK);
  EXPECT_EQ(exitCode, 3) << "the next run is a run again";
}

TEST_F(CApiEventLoop, StillShowsBoxesAfterAQuitThatTheHostHasNotCarriedOut) {
  DesktopEventLoop().postQuit(6);
  EXPECT_EQ(zelProfilerProcessEvents(0), ZEL_QUIT);
  QEventLoop box;
  QTimer::singleShot(0, &box, [&] { box.exit(8); });
  EXPECT_EQ(box.exec(), 8);
  EXPECT_EQ(zelProfilerRun(nullptr), ZEL_OK);
}

TEST_F(CApiEventLoop, ForgetsAQuitThatALoopHasCarriedOut) {
  DesktopEventLoop().postQuit(445);
  EXPECT_EQ(QApplication::exec(), 445);
  EXPECT_EQ(zelProfilerProcessEvents(0), ZEL_OK);
}

TEST_F(CApiEventLoop, RefusesAnotherThread) {
  int code = ZEL_OK;
  std::thread([&] { code = zelProfilerRun(nullptr); }).join();
  EXPECT_EQ(code, ZEL_WRONG_THREAD);
}

}  // namespace
}  // namespace zel
