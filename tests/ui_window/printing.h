// A profile window that prints: a printer dialog answered by script, and the dialogs of the window's own that
// a person works.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "plot_probe.h"

namespace zel::test {

class PrintingTest : public PlotWindowTest {
 protected:
  // The printer dialog answers with this; what is asked then is not answered here.
  void choosePrinter(PageOrientation orientation = PageOrientation::kPortrait, int copies = 1) {
    printing_->answerWith(orientation, "page.pdf", copies);
  }
  // The host's text: nothing is asked.
  void describe(const std::string& text = {}) { control_.let_PrintDescription(text); }

  // Works the dialog of the description, which comes up next.
  void onDescription(std::function<void(QDialog&)> body) {
    onModal<QDialog>([this, body = std::move(body)](QDialog& dialog) {
      EXPECT_EQ(dialog.objectName(), QStringLiteral("frmPrtDesc"));
      ++asked_;
      body(dialog);
      if (dialog.isVisible()) {
        ADD_FAILURE() << "the dialog is still open";
        dialog.reject();
      }
    });
  }
  static void press(QDialog& dialog, const char* button) {
    QTest::mouseClick(dialog.findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
  }
  static QLineEdit& descriptionOf(QDialog& dialog) {
    return *dialog.findChild<QLineEdit*>(QStringLiteral("txtDescription"));
  }

  const std::vector<ScriptedPrinting::Print>& prints() const { return printing_->prints; }
  std::vector<std::string> boxes() const {
    std::vector<std::string> texts;
    for (const MessageBoxRequest& message : dialogs_->messages) texts.push_back(message.text);
    return texts;
  }
  std::string storedDescription() const {
    return store_->ReadSetting("Host Planner", "Profile", "PrintDescription", "none");
  }
  // What a page shows beside the time of day.
  static QImage withoutDate(const QImage& page) { return page.copy(0, 60, page.width(), page.height() - 60); }

  int asked_ = 0;  // times that the description was asked for
};

}  // namespace zel::test
