// The fixture itself: that a warning fails a test, and that it leaves nothing behind.
#include "support/offscreen.h"

#include <gtest/gtest-spi.h>

#include <QGuiApplication>

namespace zel::test {
namespace {

class OffscreenFixture : public OffscreenTest<QGuiApplication> {};

TEST_F(OffscreenFixture, PinsLocaleFontAndPlatform) {
  EXPECT_EQ(QLocale().decimalPoint(), QStringLiteral("."));
  EXPECT_EQ(QGuiApplication::font().family(), pinnedFamily());
  EXPECT_EQ(QGuiApplication::platformName(), QStringLiteral("offscreen"));
}

TEST_F(OffscreenFixture, AcceptsAnAnnouncedWarning) {
  expectWarning(QStringLiteral("as announced"));
  qWarning("happens as announced");
}

// The same fixture, run by hand so that its own failure can be seen.
class FixtureByHand : public OffscreenTest<QGuiApplication> {
 public:
  void begin() { SetUp(); }
  void end() { TearDown(); }
  void announce(const QString& words) { expectWarning(words); }
  void TestBody() override {}
};

TEST_F(OffscreenFixture, FailsATestThatWarns) {
  FixtureByHand fixture;
  fixture.begin();
  qWarning("out of the blue");
  EXPECT_NONFATAL_FAILURE(fixture.end(), "out of the blue");
}

TEST_F(OffscreenFixture, FailsATestWhoseAnnouncedWarningDoesNotCome) {
  FixtureByHand fixture;
  fixture.begin();
  fixture.announce(QStringLiteral("never said"));
  EXPECT_NONFATAL_FAILURE(fixture.end(), "never said");
}

}  // namespace
}  // namespace zel::test
