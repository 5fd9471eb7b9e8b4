// A graphical application for the tests that need one: made before the first test of the program, gone before
// its end.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <functional>
#include <memory>

namespace zel::test {

class DesktopEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    application_ = std::make_unique<QApplication>(count_, arguments_);
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[5] = "test";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

class DesktopFixture : public testing::Test {
 protected:
  // Runs the body on the modal box that is shown next.
  template <typename Box>
  void onModal(std::function<void(Box&)> body) {
    QTimer::singleShot(0, qApp, [this, body] {
      auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
      if (box == nullptr) {
        onModal<Box>(body);
      } else {
        body(*box);
      }
    });
  }
};

}  // namespace zel::test
