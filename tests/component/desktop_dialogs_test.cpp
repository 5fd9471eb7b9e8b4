#include "component/desktop/desktop_dialogs.h"

#include <QtTest/qtestspontaneevent.h>
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <filesystem>
#include <thread>

#include "desktop_fixture.h"
#include "foundation/runtime_error.h"
#include "support/temporary_folder.h"

namespace zel {
namespace {

class DesktopDialogsTest : public test::DesktopFixture {
 protected:
  DesktopDialogs dialogs_;
};

TEST_F(DesktopDialogsTest, ShowsTextTitleIconAndButtons) {
  onModal<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QStringLiteral("Under Range Error."));
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Profile Error"));
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    box.button(QMessageBox::Ok)->click();
  });
  EXPECT_EQ(
      dialogs_.message({"Under Range Error.", "Profile Error", MessageIcon::kCritical, MessageButtons::kOk}),
      MessageAnswer::kOk);
}

TEST_F(DesktopDialogsTest, HasTheComponentsNameForItsDefaultTitle) {
  onModal<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), QStringLiteral("zelProfiler01"));
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    box.button(QMessageBox::No)->click();
  });
  EXPECT_EQ(dialogs_.message({"a\r\nb", "", MessageIcon::kNone, MessageButtons::kYesNo}), MessageAnswer::kNo);
}

TEST_F(DesktopDialogsTest, AnswersYesByItsDefaultButton) {
  onModal<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
    box.defaultButton()->click();
  });
  EXPECT_EQ(dialogs_.message({"Continue?", "", MessageIcon::kNone, MessageButtons::kYesNo}),
            MessageAnswer::kYes);
}

void pressEscape(QMessageBox& box) {
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QCoreApplication::sendEvent(&box, &escape);
}

// As the window manager does at a click on the close box.
void clickCloseBox(QMessageBox& box) {
  QCloseEvent close;
  QSpontaneKeyEvent::setSpontaneous(&close);
  static_cast<QObject&>(box).event(&close);  // sent, it would no longer count as the system's own
}

// Neither must stand for No: No ends the host.
TEST_F(DesktopDialogsTest, LeavesAQuestionNeitherByTheEscapeKeyNorByTheCloseBox) {
  onModal<QMessageBox>([](QMessageBox& box) {
    pressEscape(box);
    EXPECT_TRUE(box.isVisible());
    clickCloseBox(box);
    EXPECT_TRUE(box.isVisible());
    box.button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(dialogs_.message({"Continue?", "", MessageIcon::kNone, MessageButtons::kYesNo}),
            MessageAnswer::kYes);
}

TEST_F(DesktopDialogsTest, LeavesABoxWithNothingToDecideByTheEscapeKeyOrTheCloseBox) {
  for (const auto leave : {pressEscape, clickCloseBox}) {
    onModal<QMessageBox>([leave](QMessageBox& box) {
      leave(box);
      EXPECT_FALSE(box.isVisible());
      box.accept();
    });
    EXPECT_EQ(dialogs_.message({"Done.", "", MessageIcon::kInformation, MessageButtons::kOk}),
              MessageAnswer::kOk);
  }
}

TEST_F(DesktopDialogsTest, ShowsMarkupAsTheTextThatItIs) {
  onModal<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    box.button(QMessageBox::Ok)->click();
  });
  dialogs_.message({"<b>file</b>", "", MessageIcon::kInformation, MessageButtons::kOk});
}

TEST_F(DesktopDialogsTest, AsksForAnInputWithItsDefault) {
  onModal<QInputDialog>([](QInputDialog& box) {
    EXPECT_EQ(box.labelText(), QStringLiteral("Height?"));
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Signal"));
    EXPECT_EQ(box.textValue(), QStringLiteral("30"));
    box.setTextValue(QStringLiteral("45"));
    box.accept();
  });
  EXPECT_EQ(dialogs_.input({"Height?", "Signal", "30"}), "45");
  onModal<QInputDialog>([](QInputDialog& box) { box.reject(); });
  EXPECT_EQ(dialogs_.input({"Height?", "Signal", "30"}), "") << "cancelled";
}

class SaveDialogTest : public DesktopDialogsTest {
 protected:
  static void choose(QFileDialog& dialog, const std::filesystem::path& path) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QString::fromStdString(path.string()));
    QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
  }

  const SaveDialogRequest request_{"Save to Bitmap File", ".png", "Bitmap (*.png)|*.png", true, true};
  test::TemporaryFolder folder_;
};

TEST_F(SaveDialogTest, ShowsTheTitleAndFilterAndAddsTheExtension) {
  onModal<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Save to Bitmap File"));
    EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("Bitmap (*.png)")});
    EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    choose(dialog, folder_ / "plot");
  });
  EXPECT_EQ(dialogs_.save(request_), (folder_ / "plot.png").string());
}

TEST_F(SaveDialogTest, ReportsCancelAsAnError) {
  onModal<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
  try {
    dialogs_.save(request_);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 32755);
  }
}

TEST_F(SaveDialogTest, AsksBeforeItOverwrites) {
  test::writeBytes(folder_ / "old.png", "x");
  onModal<QFileDialog>([&](QFileDialog& dialog) {
    choose(dialog, folder_ / "old.png");
    onModal<QMessageBox>([](QMessageBox& question) { question.button(QMessageBox::Yes)->click(); });
  });
  EXPECT_EQ(dialogs_.save(request_), (folder_ / "old.png").string());
}

TEST_F(SaveDialogTest, AsksAgainForAPathThatDoesNotExist) {
  onModal<QFileDialog>([&](QFileDialog& dialog) {
    choose(dialog, folder_ / "missing/plot.png");
    onModal<QMessageBox>([&](QMessageBox& box) {
      EXPECT_TRUE(box.text().endsWith(QStringLiteral("Path does not exist.")));
      onModal<QFileDialog>([&](QFileDialog& again) { choose(again, folder_ / "plot.png"); });
      box.button(QMessageBox::Ok)->click();
    });
  });
  EXPECT_EQ(dialogs_.save(request_), (folder_ / "plot.png").string());
}

TEST_F(DesktopDialogsTest, ShowsNoWindowAwayFromTheApplicationsThread) {
  MessageAnswer answer = MessageAnswer::kNo;
  testing::internal::CaptureStderr();
  std::thread([&] {
    answer = dialogs_.message({"Continue?", "", MessageIcon::kNone, MessageButtons::kYesNo});
  }).join();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Continue?\n");
  EXPECT_EQ(answer, MessageAnswer::kYes);
}

}  // namespace
}  // namespace zel
