// Tests that need a graphical application: without a display, in a fixed locale, with a pinned font. A
// warning of the toolkit that the test did not announce fails it.
//
//     using PictureTest = test::OffscreenTest<QGuiApplication>;
//     TEST_F(PictureTest, ...)
//
// The application is made before the first case of a suite and gone after the last, so that other suites of
// the same program can see what happens without one.
#pragma once

#include <gtest/gtest.h>

#include <QFont>
#include <QFontDatabase>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <algorithm>
#include <memory>
#include <mutex>

namespace zel::test {

// Keeps the warnings and worse that come while it lives. One at a time.
class WarningCatcher {
 public:
  WarningCatcher() {
    warnings() = {};
    previous_ = qInstallMessageHandler(&WarningCatcher::take);
  }
  WarningCatcher(const WarningCatcher&) = delete;
  WarningCatcher& operator=(const WarningCatcher&) = delete;
  ~WarningCatcher() { qInstallMessageHandler(previous_); }

  // Those so far; they are forgotten with that.
  QStringList takeWarnings() {
    const std::lock_guard lock(mutex());
    return std::exchange(warnings(), {});
  }

 private:
  static void take(QtMsgType type, const QMessageLogContext&, const QString& text) {
    // What the offscreen platform lacks is no fault of what is tested.
    const bool ofThePlatform = text.startsWith(QStringLiteral("This plugin does not support "));
    if (type == QtDebugMsg || type == QtInfoMsg || ofThePlatform) return;
    const std::lock_guard lock(mutex());
    warnings().append(text);
  }
  static QStringList& warnings() {
    static QStringList list;
    return list;
  }
  static std::mutex& mutex() {
    static std::mutex guard;
    return guard;
  }

  QtMessageHandler previous_ = nullptr;
};

template <typename Application>
class OffscreenTest : public testing::Test {
 public:
  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    application_ = std::make_unique<Application>(count, arguments);
  }
  static void TearDownTestSuite() { application_.reset(); }

 protected:
  void SetUp() override {
    catcher_ = std::make_unique<WarningCatcher>();
    localeBefore_ = QLocale();
    fontBefore_ = Application::font();
    QLocale::setDefault(QLocale::c());
    Application::setFont(QFont(pinnedFamily(), 9));
    ASSERT_TRUE(QFontDatabase::families().contains(pinnedFamily()))
        << "the tests need the font " << pinnedFamily().toStdString() << " (package fonts-dejavu-core)";
  }
  void TearDown() override {
    Application::setFont(fontBefore_);
    QLocale::setDefault(localeBefore_);
    QStringList unexpected = catcher_->takeWarnings();
    for (const QString& announced : announced_) {
      const qsizetype before = unexpected.size();
      unexpected.removeIf([&announced](const QString& text) { return text.contains(announced); });
      EXPECT_LT(unexpected.size(), before) << "no warning said: " << announced.toStdString();
    }
    EXPECT_TRUE(unexpected.isEmpty()) << "warned: " << unexpected.join(u'\n').toStdString();
    catcher_.reset();
  }

  // A warning with these words must come before the end of the test, once or more.
  void expectWarning(const QString& words) { announced_.append(words); }

  static QString pinnedFamily() { return QStringLiteral("DejaVu Sans"); }

 private:
  inline static std::unique_ptr<Application> application_;

  std::unique_ptr<WarningCatcher> catcher_;
  QLocale localeBefore_;
  QFont fontBefore_;
  QStringList announced_;
};

}  // namespace zel::test
