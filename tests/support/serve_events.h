// Events for a while, in tests with the toolkit.
#pragma once

#include <QCoreApplication>
#include <QTest>

namespace zel::test {

// For so many milliseconds, and then those that are due: on a busy machine the wait may end before the
// process had a turn, and a timer of less than that has fired nevertheless.
inline void serveEvents(int milliseconds) {
  constexpr int kMostMs = 50;
  QTest::qWait(milliseconds);
  QCoreApplication::processEvents(QEventLoop::AllEvents, kMostMs);
}

}  // namespace zel::test
