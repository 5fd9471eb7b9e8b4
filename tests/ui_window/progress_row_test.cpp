// The row that tells of a long export, by itself and in windows of every kind.
#include "ui/profile_window/progress_row.h"

#include <QElapsedTimer>
#include <QPalette>
#include <QSignalSpy>

#include "exporting.h"

namespace zel {
namespace {

class ProgressRowTest : public test::OffscreenTest<QApplication> {
 protected:
  template <typename Control>
  Control& part(const char* name) {
    return *row_.findChild<Control*>(QLatin1String(name));
  }
  void begin() {
    row_.begin(QStringLiteral("Signal profile"));
    row_.resize(621, 36);
    row_.show();
    row_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&row_));
  }
  ProgressRow row_;
};

TEST_F(ProgressRowTest, IsHiddenUntilItIsShown) {
  EXPECT_TRUE(row_.isHidden());
  begin();
  EXPECT_EQ(part<QLabel>("lblProgress").text(), QStringLiteral("Signal profile"));
  EXPECT_EQ(part<QProgressBar>("prgExport").value(), 0);
  EXPECT_FALSE(row_.isCancelled());
}

TEST_F(ProgressRowTest, ShowsTheFirstAndTheLastStep) {
  begin();
  row_.showStep(1, 500);
  EXPECT_EQ(part<QProgressBar>("prgExport").maximum(), 500);
  EXPECT_EQ(part<QProgressBar>("prgExport").value(), 1);
  row_.showStep(2, 500);
  EXPECT_EQ(part<QProgressBar>("prgExport").value(), 1) << "too soon after the one before";
  row_.showStep(500, 500);
  EXPECT_EQ(part<QProgressBar>("prgExport").value(), 500);
}

TEST_F(ProgressRowTest, IsDrawnTwentyFiveTimesASecondAtMost) {
  begin();
  QSignalSpy drawn(&part<QProgressBar>("prgExport"), &QProgressBar::valueChanged);
  QElapsedTimer time;
  time.start();
  constexpr int kSteps = 200000;
  for (int i = 1; i <= kSteps; ++i) {
    row_.showStep(i, kSteps);
    QCoreApplication::processEvents();
  }
  // One at once, one at the end, and one in each whole interval between.
  EXPECT_LE(drawn.size(), 2 + time.elapsed() / ProgressRow::kInterval);
  EXPECT_GE(drawn.size(), 2);
  std::printf("%.2f us a step\n", static_cast<double>(time.nsecsElapsed()) / 1000.0 / kSteps);
}

TEST_F(ProgressRowTest, TheButtonAndEscapeCancel) {
  begin();
  QTest::mouseClick(&part<QPushButton>("cmdCancel"), Qt::LeftButton);
  EXPECT_TRUE(row_.isCancelled());
  row_.begin(QStringLiteral("Signal graph"));
  EXPECT_FALSE(row_.isCancelled()) << "begun anew";
  QTest::keyClick(&row_, Qt::Key_Escape);
  EXPECT_TRUE(row_.isCancelled());
}

TEST_F(ProgressRowTest, AfterTheLastStepThereIsNothingToCancel) {
  begin();
  row_.showStep(7, 7);
  QTest::mouseClick(&part<QPushButton>("cmdCancel"), Qt::LeftButton);
  QTest::keyClick(&row_, Qt::Key_Escape);
  EXPECT_FALSE(row_.isCancelled());
}

TEST_F(ProgressRowTest, AClickLeavesTheKeyboardWhereItIs) {
  begin();
  EXPECT_EQ(part<QPushButton>("cmdCancel").focusPolicy(), Qt::TabFocus);
}

// ---- In the window ----

class ProgressInWindowTest : public test::ExportingTest {
 protected:
  // The window in the midst of an export; also kept as a picture where ZEL_TEST_PICTURES says.
  QImage grabExporting(const char* name) {
    QImage grabbed;
    answerSignalBoxes();
    save("a.csv");
    const int samples = state().path.intervals + 1;
    atSample(samples * 2 / 3, [&] {
      control<ProgressRow>("progressRow").showStep(samples, samples + 1);
      // The bar shows about two thirds, whatever the time since it was drawn.
      control<QProgressBar>("prgExport").setValue(samples * 2 / 3);
      grabbed = window()->grab().toImage();
      expectAllVisible();
      click("cmdCancel");
    });
    item("mnuExportPathLossProfile").trigger();
    EXPECT_TRUE(reached()) << name;
    if (const char* folder = std::getenv("ZEL_TEST_PICTURES"))
      grabbed.save(QString::fromUtf8(folder) + QLatin1Char('/') + QLatin1String(name) +
                   QStringLiteral(".png"));
    return grabbed;
  }
  void expectAllVisible() const {
    const QWidget& row = control("progressRow");
    for (const char* name : {"lblProgress", "prgExport", "cmdCancel"}) {
      SCOPED_TRACE(name);
      const QWidget& part = control(name);
      EXPECT_TRUE(row.rect().contains(part.geometry()));
      EXPECT_GE(part.width(), part.minimumSizeHint().width());
      EXPECT_GE(part.height(), std::min(part.minimumSizeHint().height(), row.height()));
    }
    EXPECT_LT(control("lblProgress").geometry().right(), control("prgExport").geometry().left());
    EXPECT_LT(control("prgExport").geometry().right(), control("cmdCancel").geometry().left());
    EXPECT_GT(control("prgExport").width(), 200);
  }
};

TEST_F(ProgressInWindowTest, AtTheSizeItComesUpWith) {
  open();
  const QImage before = window()->grab().toImage();
  EXPECT_NE(grabExporting("progress-default"), before);
  settle();
  EXPECT_EQ(window()->grab().toImage(), before) << "afterwards everything is as it was";
}

TEST_F(ProgressInWindowTest, AtTheSmallestSize) {
  open();
  window()->resize(621, 432);
  settle();
  grabExporting("progress-smallest");
}

TEST_F(ProgressInWindowTest, ResizedMeanwhile) {
  open();
  answerSignalBoxes();
  save("a.csv");
  atSample(20, [&] {
    window()->resize(1000, 800);
    settle();
    EXPECT_EQ(control("progressRow").width(), window()->centralWidget()->width());
    EXPECT_EQ(control("progressRow").geometry().top(), window()->picture().geometry().bottom() + 1);
    expectAllVisible();
  });
  item("mnuExportPathLossProfile").trigger();
  EXPECT_TRUE(reached());
  EXPECT_EQ(control("Slider1").geometry().top(), window()->picture().geometry().bottom() + 1);
}

TEST_F(ProgressInWindowTest, WithADarkPalette) {
  QPalette dark(QColor(50, 50, 50));
  QApplication::setPalette(dark);
  open();
  grabExporting("progress-dark");
  QApplication::setPalette(QPalette());
}

TEST_F(ProgressInWindowTest, WithALargeFont) {
  QApplication::setFont(QFont(pinnedFamily(), 12));
  open();
  window()->resize(621, 432);
  settle();
  grabExporting("progress-12pt");
}

}  // namespace
}  // namespace zel
