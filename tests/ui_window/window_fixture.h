// The profile window over the component's real parts and the bundled terrain, without a display: opened as a
// host opens it, driven by the events of a person.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>

#include "component/real_component.h"
#include "support/controls.h"
#include "support/offscreen.h"
#include "support/serve_events.h"
#include "ui/profile_window/control_panel.h"
#include "ui/profile_window/picture_box.h"

namespace zel::test {

// 28.7 km over the Cumberland ridges, with ground well beyond both ends.
inline constexpr StationProfile_Type kRidgeStart{36.40, -84.35, 30.0F};
inline constexpr StationProfile_Type kRidgeEnd{36.22, -84.12, 30.0F};

class WindowTest : public RealComponentOver<OffscreenTest<QApplication>> {
 protected:
  // Opens the window for a path, and handles what comes with showing it.
  FrmProfile& open(const StationProfile_Type& start = kRidgeStart,
                   const StationProfile_Type& end = kRidgeEnd) {
    control_.ShowMainForm(start, end);
    EXPECT_NE(windows_->profileWindow(), nullptr) << "no window was opened";
    settle();
    waitForActivation();
    return *windows_->profileWindow();
  }
  // A window that was shown has the keyboard a little later.
  void waitForActivation() const {
    (void)QTest::qWaitFor([this] { return window() == nullptr || window()->isActiveWindow(); }, 500);
  }
  FrmProfile* window() const { return windows_->profileWindow(); }

  // Handles the pending events.
  static void settle() {
    for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  }
  // Lets the typing timers run out.
  static void waitForTyping() { test::serveEvents(800); }

  template <typename Control = QWidget>
  Control& control(const char* name) const {
    return controlOf<Control>(*window(), name);
  }
  std::string text(const char* label) const { return control<QLabel>(label).text().toStdString(); }
  QLineEdit& box(const char* name) const { return control<QLineEdit>(name); }
  std::string boxText(const char* name) const { return box(name).text().toStdString(); }
  QAction& item(const char* name) const { return control<QAction>(name); }

  // Replaces a box's text by typing.
  void type(const char* name, const char* keys) const {
    QLineEdit& line = box(name);
    line.setFocus();
    line.selectAll();
    QTest::keyClicks(&line, QLatin1String(keys));
  }
  void click(const char* name) const { QTest::mouseClick(&control<QWidget>(name), Qt::LeftButton); }

  // A click on the plot at a distance from the start, km.
  void clickPlot(double km, Qt::MouseButton button = Qt::LeftButton) const {
    QTest::mouseClick(&window()->picture(), button, {}, plotPixel(km));
  }
  // The pointer's own position is the desktop's, which tells nothing where it has not changed.
  void pointAt(double km) const { moveOver(plotPixel(km)); }
  void moveOver(QPointF at) const {
    PictureBox& picture = window()->picture();
    QMouseEvent move(QEvent::MouseMove, at, picture.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&picture, &move);
  }
  QPoint plotPixel(double km) const {
    const PlotScale& scale = window()->plotView()->scale;
    const double x = window()->state().plotIndex().xAtDistance(km);
    return window()->picture().pixelAt({x, (scale.top + scale.bottom) / 2}).toPoint();
  }
  QImage picture() const { return window()->picture().canvas().image().copy(); }

  // Runs the body on the modal dialog that is shown next, once it has the keyboard.
  template <typename Dialog>
  static void onModal(std::function<void(Dialog&)> body, int tries = 200) {
    QTimer::singleShot(5, qApp, [body, tries] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (dialog != nullptr && (dialog->isActiveWindow() || tries <= 0)) {
        body(*dialog);
      } else if (tries > 0) {
        onModal<Dialog>(body, tries - 1);
      }
    });
  }
};

}  // namespace zel::test
