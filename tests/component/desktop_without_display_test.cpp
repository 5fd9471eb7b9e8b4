// The desktop's services in a process without a graphical application.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <ctime>
#include <filesystem>
#include <optional>

#include "component/desktop/desktop_dialogs.h"
#include "component/desktop/desktop_printing.h"
#include "component/desktop/desktop_process.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

TEST(DesktopWithoutDisplay, WritesAMessageAsOneLineAndAnswersContinue) {
  ASSERT_EQ(QCoreApplication::instance(), nullptr);
  DesktopDialogs dialogs;
  testing::internal::CaptureStderr();
  EXPECT_EQ(dialogs.message({"Overflow\r\nIn Host::zelProfiler01\r\nAttempt to Continue?", "",
                             MessageIcon::kNone, MessageButtons::kYesNo}),
            MessageAnswer::kYes);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Overflow; In Host::zelProfiler01; Attempt to Continue?\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(
      dialogs.message({"Under\nRange\rError.", "Profile Error", MessageIcon::kCritical, MessageButtons::kOk}),
      MessageAnswer::kOk);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Profile Error: Under; Range; Error.\n");
}

TEST(DesktopWithoutDisplay, GivesTheDefaultTextOfAnInputBox) {
  EXPECT_EQ(DesktopDialogs().input({"Height?", "", "30"}), "30");
}

TEST(DesktopWithoutDisplay, CancelsASaveDialog) {
  try {
    DesktopDialogs().save({"Save", ".csv", "Text (*.csv)|*.csv", true, true});
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 32755);
  }
}

TEST(DesktopWithoutDisplay, CancelsThePrinterDialogAndNamesAFileAllTheSame) {
  DesktopPrinting printing;
  EXPECT_EQ(printing.choose(PageOrientation::kPortrait, std::nullopt), std::nullopt);
  const PrintRequest request = printing.request("page.pdf", 2, PageOrientation::kLandscape);
  EXPECT_EQ(request.file, "page.pdf");
  EXPECT_EQ(request.paper.width, printing.paper(PageOrientation::kPortrait).height);
  EXPECT_EQ(QCoreApplication::instance(), nullptr);
}

TEST(DesktopWithoutDisplay, LeavesPointerAndEventLoopAlone) {
  DesktopPointer pointer;
  pointer.set(PointerShape::kHourglass);
  pointer.set(PointerShape::kDefault);
  DesktopEventLoop loop;
  loop.postQuit(9);
  loop.processPending();
  EXPECT_EQ(QCoreApplication::instance(), nullptr);
}

TEST(SystemClock, GivesTheLocalTimeOfNow) {
  const auto asSeconds = [](const LocalTime& time) {
    std::tm parts{};
    parts.tm_year = time.year - 1900;
    parts.tm_mon = time.month - 1;
    parts.tm_mday = time.day;
    parts.tm_hour = time.hour;
    parts.tm_min = time.minute;
    parts.tm_sec = time.second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
  };
  const std::time_t before = std::time(nullptr);
  const std::time_t now = asSeconds(SystemClock().now());
  EXPECT_GE(now, before);
  EXPECT_LE(now, std::time(nullptr));
}

TEST(SystemProcess, NamesTheRunningProgramByItsFullPath) {
  const std::filesystem::path program = SystemProcess().moduleFileName();
  EXPECT_TRUE(program.is_absolute());
  EXPECT_EQ(program.filename(), "test_component");
}

TEST(SystemProcessDeathTest, EndsTheRunAtOnce) {
  EXPECT_EXIT(SystemProcess().endRun(), testing::ExitedWithCode(0), "");
}

TEST(AbortingHardStopDeathTest, WritesTheReasonAndAborts) {
  EXPECT_EXIT(AbortingHardStop().stop("height of -300 m at sample 4"), testing::KilledBySignal(SIGABRT),
              "height of -300 m at sample 4");
}

}  // namespace
}  // namespace zel
