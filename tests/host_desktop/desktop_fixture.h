// The main window over the bundled terrain, with settings and recovery copies of its own.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <memory>
#include <string>

#include "analysis/link_analysis.h"
#include "desktop/host_settings.h"
#include "desktop/main_window.h"
#include "planning/recovery.h"
#include "support/environment_variable.h"
#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "zel/profile_control.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {

inline constexpr int kPatience = 20'000;  // ms; a machine may be busy

class DesktopTest : public test::OffscreenTest<QApplication> {
 public:
  static void TearDownTestSuite() {
    // The cross of a filter box fades in and out; the toolkit deletes that animation when it has ended.
    QTest::qWait(300);
    OffscreenTest::TearDownTestSuite();
  }

 protected:
  void SetUp() override {
    OffscreenTest::SetUp();
    static int run = 0;  // settings are kept by title, so that each test has a title of its own
    component_ = std::make_unique<ProfileControl>();
    component_->SetClientApp(makePropertyBag({{"Title", "Desktop " + std::to_string(++run)},
                                              {"Path", folder_.path().string()},
                                              {"ProductName", "Terrain Profiler"}}));
    component_->let_StaDatum(1);
  }
  void TearDown() override {
    window_.reset();
    component_.reset();
    OffscreenTest::TearDown();
  }

  MainWindowServices services() const { return {(folder_ / "recovery").string(), {}, keepSeconds_}; }

  MainWindow& window() {
    if (!window_) {
      window_ = std::make_unique<MainWindow>(*component_, services());
      window_->show();
      EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get(), kPatience));
      EXPECT_TRUE(waitFor([this] { return window_->terrainKnown(); }));
    }
    return *window_;
  }
  // With the sample plan, computed.
  MainWindow& started() {
    window().start({});
    EXPECT_TRUE(waitFor([&] { return window().analysis().waiting() == 0; }));
    return window();
  }
  // As a crash leaves it: no question, no discarding.
  void dropWindow() { window_.reset(); }

  static bool waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kPatience);
  }
  QAction* action(const char* name) {
    auto* found = window().findChild<QAction*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QString summary() { return window().findChild<QLabel*>(QStringLiteral("linkSummary"))->text(); }
  QString said() { return window().statusBar()->currentMessage(); }
  QTableView* table(const char* name) { return window().findChild<QTableView*>(QLatin1String(name)); }

  // Does it in the next window of that class and name that asks; fails the test when none comes.
  template <typename Dialog>
  void whenAsked(const QString& name, std::function<void(Dialog&)> answer) {
    auto* look = new QTimer(&window());
    auto tries = std::make_shared<int>(0);
    QObject::connect(look, &QTimer::timeout, look, [=] {
      for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = dynamic_cast<Dialog*>(widget);
        if (dialog == nullptr || !dialog->isVisible() || dialog->objectName() != name) continue;
        look->stop();
        look->deleteLater();
        answer(*dialog);
        return;
      }
      if (++*tries > kPatience / 20) {
        look->stop();
        ADD_FAILURE() << "no window " << name.toStdString();
      }
    });
    look->start(20);
  }
  void answerBox(const QString& name, QMessageBox::StandardButton button, QString* text = nullptr) {
    whenAsked<QMessageBox>(name, [button, text](QMessageBox& box) {
      if (text != nullptr) *text = box.text();
      box.button(button)->click();
    });
  }
  void answerBox(const QString& name, const char* button, QString* text = nullptr) {
    whenAsked<QMessageBox>(name, [button, text](QMessageBox& box) {
      if (text != nullptr) *text = box.text();
      box.findChild<QPushButton*>(QLatin1String(button))->click();
    });
  }

  // As from a file manager, onto the middle of the window.
  void drop(const std::vector<std::string>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths) urls.append(QUrl::fromLocalFile(QString::fromStdString(path)));
    data.setUrls(urls);
    const QPoint place = window().rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent dropped(QPointF(place), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &dropped);
  }
  // Types a name into the file dialog of that name and takes it.
  void chooseFile(const char* dialogName, const std::string& path) {
    whenAsked<QFileDialog>(QLatin1String(dialogName), [path](QFileDialog& dialog) {
      auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
      box->setText(QString::fromStdString(path));
      QTest::keyClick(box, Qt::Key_Return);
    });
  }

  int keepSeconds_ = 1;  // between a change and its copy
  test::TemporaryFolder folder_;
  test::EnvironmentVariable config_{"XDG_CONFIG_HOME", (folder_ / "config").string()};
  std::unique_ptr<ProfileControl> component_;
  std::unique_ptr<MainWindow> window_;
};

}  // namespace zel::host
