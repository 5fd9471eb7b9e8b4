// The progress line, and what Ctrl+C does to a long piece of work.
#include "command_line/long_work.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <csignal>

#include "command_line/command_error.h"

namespace zel::host {
namespace {

TEST(ProgressText, SaysHowFarItHasComeAndHowFast) {
  EXPECT_EQ(progressText("Signal profile", 1200, 5000, 0.06),
            "Signal profile: 1200 of 5000 samples, 24 %, 20000 samples/s");
}

TEST(ProgressText, LeavesOutARateThatIsNotKnownYet) {
  EXPECT_EQ(progressText("Signal graph", 1, 32767, 0), "Signal graph: 1 of 32767 samples, 0 %");
  EXPECT_EQ(progressText("Signal graph", 32767, 32767, 0.049), "Signal graph: 32767 of 32767 samples, 100 %");
  EXPECT_EQ(progressText("Nothing", 0, 0, 0), "Nothing: 0 of 0 samples, 100 %");
}

TEST(LongWork, GoesOnUntilItIsAskedToStop) {
  LongWork work("Work");
  EXPECT_TRUE(work.advance(1, 10));
  EXPECT_FALSE(LongWork::interrupted());
  std::raise(SIGINT);
  EXPECT_TRUE(LongWork::interrupted());
  EXPECT_EQ(CommandInterrupted("", LongWork::askedBy()).exitCode(), 130);
  EXPECT_FALSE(work.advance(2, 10));
}

TEST(LongWork, IsAskedByTheRequestToEndToo) {
  LongWork work("Work");
  EXPECT_EQ(LongWork::askedBy(), 0);
  std::raise(SIGTERM);
  EXPECT_FALSE(work.advance(2, 10));
  EXPECT_EQ(LongWork::askedBy(), SIGTERM);
  EXPECT_EQ(CommandInterrupted("", LongWork::askedBy()).exitCode(), 143) << "as shells have it";
}

TEST(LongWork, IsNotStoppedByWhatStoppedTheOneBefore) {
  {
    const LongWork work("Work");
    std::raise(SIGINT);
  }
  LongWork next("Work");
  EXPECT_TRUE(next.advance(1, 10));
}

TEST(LongWork, ASecondRequestEndsTheProgramAtOnce) {
  EXPECT_EXIT(
      {
        const LongWork work("Work");
        std::raise(SIGINT);
        std::raise(SIGINT);
      },
      testing::KilledBySignal(SIGINT), "");
}

TEST(LongWork, GivesBackWhatCtrlCDidBefore) {
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGINT, nullptr, &before), 0);
  { const LongWork work("Work"); }
  struct sigaction after {};
  ASSERT_EQ(sigaction(SIGINT, nullptr, &after), 0);
  EXPECT_EQ(after.sa_handler, before.sa_handler);
}

TEST(LongWork, DoesNotHearWhatTheProgramWasToldToIgnore) {
  void (*const before)(int) = std::signal(SIGINT, SIG_IGN);
  {
    LongWork work("Work");
    std::raise(SIGINT);
    EXPECT_TRUE(work.advance(1, 10));
  }
  std::signal(SIGINT, before);
}

}  // namespace
}  // namespace zel::host
