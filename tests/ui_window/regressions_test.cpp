// Defects that were mended, each with what had broken.
#include <QMenu>

#include "plot_probe.h"

namespace zel {
namespace {

using test::kRidgeEnd;
using test::kRidgeStart;

class RegressionsTest : public test::PlotWindowTest {
 protected:
  const QTimer& timer1() const { return *window()->findChild<QTimer*>(QStringLiteral("Timer1")); }
  static FrmProfile* unshownForm(const DispatchPtr& form) {
    form->let("Caption", "form of the test");
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->windowTitle() == QLatin1String("form of the test"))
        return dynamic_cast<FrmProfile*>(widget);
    return nullptr;
  }
};

// The picture kept the old exaggeration until the next change.
TEST_F(RegressionsTest, ARedrawThatIsWishedDuringADrawingIsMadeUpAfterwards) {
  const auto host = callingHost();
  open();
  const QImage before = picture();
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    control<QSlider>("Slider1").setValue(400);
    EXPECT_TRUE(state().flags.drawing) << "not drawn within the drawing";
  });
  window()->drawLine();
  EXPECT_TRUE(asked);
  EXPECT_EQ(picture(), before) << "the exaggeration was read when the drawing began";
  EXPECT_TRUE(timer1().isActive());
  waitForTyping();
  const QImage after = picture();
  EXPECT_NE(after, before);
  window()->drawLine();
  EXPECT_EQ(after, picture());
}

// The samples were taken away under the drawing that used them.
TEST_F(RegressionsTest, AReloadThatIsWishedDuringADrawingComesAfterIt) {
  const auto host = callingHost();
  open();
  bool asked = false;
  duringDrawing(*host, [&] {
    asked = true;
    set("Settings", "DispUnits", "1");
    window()->reload();
    EXPECT_EQ(state().inputs.dispUnits, 0);
    EXPECT_FALSE(state().flags.resample) << "the drawing's samples stay";
  });
  window()->drawLine();
  EXPECT_TRUE(asked);
  EXPECT_EQ(state().inputs.dispUnits, 1);
  EXPECT_FALSE(state().flags.drawing || state().flags.resample);
  EXPECT_EQ(logged(), "");
}

// They were those of the moment in which the form had been asked for.
TEST_F(RegressionsTest, AFormReadsOptionButtonAndDatumWhenItLoads) {
  control_.GetPathLoss(kRidgeStart, kRidgeEnd);
  const DispatchPtr form = control_.get_PForm();
  control_.let_OptionButtonVisible(false);
  control_.let_StaDatum(0);
  form->call("Show");
  FrmProfile* window = unshownForm(form);
  ASSERT_NE(window, nullptr);
  EXPECT_FALSE(window->findChild<QAction*>(QStringLiteral("mnuProfileOptions"))->isVisible());
  EXPECT_NE(form->get("fraStart").toObject()->get("Caption").toText().find("(NAD-27)"), std::string::npos);
  control_.let_OptionButtonVisible(true);
  EXPECT_FALSE(window->findChild<QAction*>(QStringLiteral("mnuProfileOptions"))->isVisible());
}

// It stayed an icon.
TEST_F(RegressionsTest, ShowRestoresAMinimisedForm) {
  control_.GetPathLoss(kRidgeStart, kRidgeEnd);
  const DispatchPtr form = control_.get_PForm();
  form->call("Show");
  FrmProfile* window = unshownForm(form);
  ASSERT_NE(window, nullptr);
  window->showMinimized();
  settle();
  ASSERT_TRUE(window->isMinimized());
  form->call("Show");
  EXPECT_FALSE(window->isMinimized());
  EXPECT_TRUE(window->isVisible());
}

// Until it was deleted, a control of an unloaded window answered, and its handlers ran.
TEST_F(RegressionsTest, AControlOfAnUnloadedFormFailsAtOnce) {
  control_.GetPathLoss(kRidgeStart, kRidgeEnd);
  const DispatchPtr form = control_.get_PForm();
  form->call("Show");
  const DispatchPtr box = form->get("tbxFreq").toObject();
  const DispatchPtr entry = form->get("mnuExportProfile").toObject();
  form->call("Unload");
  for (const DispatchPtr& control : {box, entry}) {
    try {
      control->get("Enabled");
      ADD_FAILURE() << "it answered";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.code(), AutomationErrorCode::kFailed);
    }
  }
  EXPECT_THROW(entry->call("Click"), AutomationError);
  EXPECT_TRUE(dialogs_->saves.empty());
}

}  // namespace
}  // namespace zel
