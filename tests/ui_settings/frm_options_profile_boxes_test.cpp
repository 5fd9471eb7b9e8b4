// The boxes of the settings dialog under a person's hands: typing, leaving, and what is refused.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "ui_settings/settings_dialog_fixture.h"

namespace zel {
namespace {

struct OptionsBoxesTest : test::SettingsDialogTest {
  void store_(const char* key, const char* value) { store.set("Profile", key, value); }
  bool hasFocus(const char* name) { return control<QWidget>(name).hasFocus(); }
};

// The k box and the Fresnel box take entries under their custom option only.
const std::vector<const char*> kBoxes{"tbxLeft", "tbxRight", "tbxEle",        "tbxRng",  "tbxMax",
                                      "tbxPer",  "tbxFreq",  "tbxpctFresnel", "tbxCurve"};

// ---- Typing ----

TEST_F(OptionsBoxesTest, PointsPerKilometreAreClampedFromTheSecondCharacter) {
  open();
  type("tbxPer", "1");
  EXPECT_EQ(shown("tbxPer"), "1");
  EXPECT_EQ(dialog().fields().pointsPerKm, 50);
  QTest::keyClicks(&box("tbxPer"), QStringLiteral("5"));
  EXPECT_EQ(shown("tbxPer"), "15");
  EXPECT_EQ(dialog().fields().pointsPerKm, 15);
  QTest::keyClicks(&box("tbxPer"), QStringLiteral("0"));
  EXPECT_EQ(shown("tbxPer"), "99");
  EXPECT_EQ(dialog().fields().pointsPerKm, 99);
}

TEST_F(OptionsBoxesTest, TheMaximumIsClampedFromTheFourthCharacter) {
  open();
  type("tbxMax", "999");
  EXPECT_EQ(shown("tbxMax"), "999");
  EXPECT_EQ(dialog().fields().maxPoints, 1000);
  QTest::keyClicks(&box("tbxMax"), QStringLiteral("9"));
  EXPECT_EQ(shown("tbxMax"), "5000");
  EXPECT_EQ(dialog().fields().maxPoints, 5000);
}

TEST_F(OptionsBoxesTest, EachBoxIsClampedOnceItsTextIsLongEnough) {
  store_("Prf_Max", "2000");
  store_("Prf_Crv", "2");
  store_("Prf_Frez", "45");
  for (const auto& [name, shortText, key, clamped] :
       {std::tuple{"tbxLeft", "99", "9", "750"}, std::tuple{"tbxRight", "00", "0", "1"},
        std::tuple{"tbxEle", "9", "9", "20"}, std::tuple{"tbxRng", "2", "1", "20"},
        std::tuple{"tbxMax", "099", "9", "1000"}, std::tuple{"tbxPer", "0", "1", "10"},
        std::tuple{"tbxpctFresnel", "99", "9", "100"}, std::tuple{"tbxCurve", "99.", "9", "50"}}) {
    open();
    const DialogSettings before = dialog().fields();
    type(name, shortText);
    EXPECT_EQ(shown(name), shortText);
    EXPECT_EQ(dialog().fields(), before) << name;
    QTest::keyClicks(&box(name), QLatin1String(key));
    EXPECT_EQ(shown(name), clamped);
    EXPECT_NE(dialog().fields(), before) << name;
  }
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OptionsBoxesTest, TheCursorStandsBehindAClampedText) {
  open();
  type("tbxMax", "99");
  press(Qt::Key_Home);
  QTest::keyClicks(&box("tbxMax"), QStringLiteral("99"));
  EXPECT_EQ(shown("tbxMax"), "5000");
  EXPECT_EQ(box("tbxMax").cursorPosition(), 4);
}

TEST_F(OptionsBoxesTest, TheCursorStaysInATextThatNeedsNoClamp) {
  open();
  type("tbxMax", "400");
  press(Qt::Key_Home);
  press(Qt::Key_Right);
  QTest::keyClicks(&box("tbxMax"), QStringLiteral("5"));
  EXPECT_EQ(shown("tbxMax"), "4500");
  EXPECT_EQ(box("tbxMax").cursorPosition(), 2);
}

TEST_F(OptionsBoxesTest, AnyCustomCurveCanBeTyped) {
  store_("Prf_Crv", "2");
  open();
  for (const char* text : {"1.005", "1.50", "0.05", "12.125"}) {
    type("tbxCurve", text);
    EXPECT_EQ(shown("tbxCurve"), text);
    EXPECT_EQ(dialog().fields().k, std::stof(text));
  }
}

TEST_F(OptionsBoxesTest, ANumberOfAnySizeIsClampedWhereItIsPasted) {
  open();
  type("tbxMax", "");
  box("tbxMax").insert(QStringLiteral("99999999999"));
  EXPECT_EQ(shown("tbxMax"), "5000");
  EXPECT_EQ(dialog().fields().maxPoints, 5000);
}

TEST_F(OptionsBoxesTest, ATextThatTheCodeWritesRunsNoHandler) {
  open();
  box("tbxPer").setText(QStringLiteral("1234"));
  EXPECT_EQ(shown("tbxPer"), "1234");
  EXPECT_EQ(dialog().fields().pointsPerKm, 50);
}

TEST_F(OptionsBoxesTest, TheFrequencyIsFreeWhileTyping) {
  open();
  type("tbxFreq", "10");
  EXPECT_EQ(shown("tbxFreq"), "10");
  EXPECT_EQ(label("lblLambda"), ".316");
  QTest::keyClicks(&box("tbxFreq"), QStringLiteral("00000000"));
  EXPECT_EQ(shown("tbxFreq"), "1000000000");
  EXPECT_EQ(dialog().fields().frequency, 950.0F);
}

TEST_F(OptionsBoxesTest, AFailingCheckIsReportedUnderItsBoxAndKeepsTheFocus) {
  // Whatever the failure, the entry is not taken for a valid one.
  open();
  bool first = true;
  dialogs.onMessage = [&first](const MessageBoxRequest&) {
    if (std::exchange(first, false)) throw RuntimeError::actionNotSupported();
  };
  type("tbxPer", "5");
  press(Qt::Key_Tab);
  ASSERT_EQ(dialogs.messages.size(), 2U);
  EXPECT_NE(dialogs.messages.back().text.find("frmOptionsProfile:tbxPer_Validate:2"), std::string::npos);
  EXPECT_TRUE(hasFocus("tbxPer"));
}

// ---- A decimal comma ----

TEST_F(OptionsBoxesTest, ACommaIsADecimalPointWhereTheLanguageWritesOne) {
  QLocale::setDefault(QLocale(QLocale::German));
  open();
  type("tbxFreq", "145,5");
  press(Qt::Key_Tab);
  EXPECT_EQ(dialog().fields().frequency, 145.5F);
  EXPECT_EQ(label("lblLambda"), "2.062");  // a point all the same
  click(option("optCurve(2)"));
  type("tbxCurve", "1,25");
  EXPECT_EQ(dialog().fields().k, 1.25F);
  EXPECT_EQ(shown("tbxCurve"), "1,25");
}

TEST_F(OptionsBoxesTest, ACommaEndsANumberElsewhere) {
  open();
  type("tbxFreq", "145,5");
  press(Qt::Key_Tab);
  EXPECT_EQ(dialog().fields().frequency, 145.0F);
  EXPECT_EQ(shown("tbxFreq"), "145");
}

// ---- Leaving ----

struct Refusal {
  const char* box;
  const char* text;
  const char* message;
};

const std::vector<Refusal> kRefusals{
    {"tbxLeft", "0", "Valid Range is 1 to 750 meters."}, {"tbxRight", "", "Valid Range is 1 to 750 meters."},
    {"tbxMax", "999", "Minimum Value is 1000."},         {"tbxMax", "9e3", "Maximum Value is 5000."},
    {"tbxMax", "1e9", "Valid Range is 1000 to 5000."},   {"tbxPer", "9", "Minimum Value is 10."},
    {"tbxFreq", "10", "Minimum value is 20MHz."},        {"tbxFreq", "20001", "Maximum value is 20GHz."},
    {"tbxFreq", "1e39", "Valid Range is 20 to 20000."},  {"tbxpctFresnel", "-1", "Valid Range is 0 to 100."},
    {"tbxCurve", "0", "Valid Range is 0.01 to 50.0"},    {"tbxCurve", "51", "Valid Range is 0.01 to 50.0"}};

TEST_F(OptionsBoxesTest, TabLeavesNoInvalidBox) {
  store_("Prf_Crv", "2");
  store_("Prf_Frez", "45");
  for (const Refusal& refusal : kRefusals) {
    for (const auto key : {Qt::Key_Tab, Qt::Key_Backtab}) {
      SCOPED_TRACE(std::string(refusal.box) + " " + refusal.text);
      open();
      const DialogSettings before = dialog().fields();
      dialogs.messages.clear();
      type(refusal.box, refusal.text);
      press(key);
      ASSERT_EQ(messages(), (Texts{refusal.message}));
      EXPECT_EQ(dialogs.messages.front().title, "");
      EXPECT_EQ(dialogs.messages.front().icon, MessageIcon::kNone);
      EXPECT_EQ(dialogs.messages.front().buttons, MessageButtons::kOk);
      EXPECT_TRUE(hasFocus(refusal.box));
      EXPECT_EQ(shown(refusal.box), refusal.text);
      EXPECT_EQ(dialog().fields(), before);
    }
  }
}

TEST_F(OptionsBoxesTest, AStoredValueOutOfItsRangeIsRefusedTheSameWay) {
  for (const auto& [key, value, name, message] :
       {std::tuple{"Prf_Ele", "-3", "tbxEle", "Valid Range is 0 to 20."},
        std::tuple{"Prf_Ele", "30", "tbxEle", "Value above maximum range."},
        std::tuple{"Prf_Rng", "-3", "tbxRng", "Valid Range is 0 to 20."},
        std::tuple{"Prf_Rng", "30", "tbxRng", "Maximum Value is 20."},
        std::tuple{"Prf_Per", "100", "tbxPer", "Maximum Value is 99."},
        std::tuple{"Prf_Frez", "150", "tbxpctFresnel", "Valid Range is 0 to 100."}}) {
    store_(key, value);
    open();
    dialogs.messages.clear();
    click(box(name));
    press(Qt::Key_Tab);
    EXPECT_EQ(messages(), (Texts{message})) << key << value;
    EXPECT_TRUE(hasFocus(name));
    store.memory.values.clear();
  }
}

TEST_F(OptionsBoxesTest, ClickingAnotherControlLeavesNoInvalidBoxAndIsNoClick) {
  store_("Prf_Crv", "2");
  store_("Prf_Frez", "45");
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(std::string(refusal.box) + " " + refusal.text);
    open();
    dialogs.messages.clear();
    type(refusal.box, refusal.text);
    click(option("optEarthModel(1)"));
    QCoreApplication::processEvents();
    EXPECT_EQ(messages(), (Texts{refusal.message}));
    EXPECT_TRUE(hasFocus(refusal.box));
    EXPECT_TRUE(option("optEarthModel(0)").isChecked());
    EXPECT_TRUE(dialog().fields().flatEarth);
  }
}

TEST_F(OptionsBoxesTest, ClickingIntoAnotherBoxOrListLeavesNoInvalidBox) {
  open();
  type("tbxPer", "5");
  for (const char* name : {"tbxMax", "cboUnits", "tbxFreq"}) {
    dialogs.messages.clear();
    click(control<QWidget>(name));
    QCoreApplication::processEvents();
    EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."})) << name;
    EXPECT_TRUE(hasFocus("tbxPer"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  }
}

TEST_F(OptionsBoxesTest, AMnemonicLeavesNoInvalidBoxAndDoesNothing) {
  open();
  type("tbxPer", "5");
  for (const Qt::Key key :
       {Qt::Key_L /*a label*/, Qt::Key_U /*a frame*/, Qt::Key_S /*an option*/, Qt::Key_O}) {
    dialogs.messages.clear();
    press(key, Qt::AltModifier);
    test::serveEvents(150);  // a button shows its press before it acts
    EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."})) << char(key);
    EXPECT_TRUE(hasFocus("tbxPer"));
  }
  EXPECT_TRUE(dialog().fields().flatEarth);
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(OptionsBoxesTest, MnemonicsMoveFromAValidBox) {
  open();
  type("tbxPer", "15");
  press(Qt::Key_L, Qt::AltModifier);
  EXPECT_TRUE(hasFocus("tbxLeft"));
  press(Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !dialog().fields().flatEarth; }));
  press(Qt::Key_O, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !dialog().isVisible(); }));
  EXPECT_EQ(store.writes.front(), "Profile/Prf_Per=15");
}

TEST_F(OptionsBoxesTest, AMnemonicToTheBoxItselfDoesNotPutOffTheCheck) {
  open();
  type("tbxPer", "15");
  press(Qt::Key_K, Qt::AltModifier);
  type("tbxPer", "5");
  click(box("tbxMax"));
  QCoreApplication::processEvents();
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
}

TEST_F(OptionsBoxesTest, TheFocusThatTheCodeMovesIsCheckedToo) {
  open();
  type("tbxPer", "5");
  box("tbxMax").setFocus();
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
  EXPECT_TRUE(hasFocus("tbxPer"));
}

TEST_F(OptionsBoxesTest, AValidBoxIsStoredWhenItIsLeft) {
  open();
  type("tbxLeft", "5");
  EXPECT_EQ(dialog().fields().startHeight, 30);
  press(Qt::Key_Tab);
  EXPECT_EQ(dialog().fields().startHeight, 5);
  type("tbxRight", "6");
  click(box("tbxEle"));
  EXPECT_EQ(dialog().fields().endHeight, 6);
  type("tbxEle", "7");
  click(option("optEarthModel(1)"));
  EXPECT_EQ(dialog().fields().elevationLines, 7);
  EXPECT_FALSE(dialog().fields().flatEarth);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OptionsBoxesTest, TheFrequencyShowsItsWavelengthWhenItIsLeft) {
  open();
  type("tbxFreq", "100");
  EXPECT_EQ(label("lblLambda"), ".316");
  press(Qt::Key_Tab);
  EXPECT_EQ(label("lblLambda"), "3");
  EXPECT_EQ(dialog().fields().frequency, 100.0F);
}

TEST_F(OptionsBoxesTest, AnEmptyCountOfLinesIsZeroAndShowsIt) {
  open();
  type("tbxRng", "");
  press(Qt::Key_Tab);
  EXPECT_EQ(shown("tbxRng"), "0");
  EXPECT_EQ(dialog().fields().rangeLines, 0);
}

TEST_F(OptionsBoxesTest, ABoxIsFreeAgainOnceItsEntryIsValid) {
  open();
  type("tbxPer", "5");
  press(Qt::Key_Tab);
  QTest::keyClicks(&box("tbxPer"), QStringLiteral("0"));
  press(Qt::Key_Tab);
  EXPECT_FALSE(hasFocus("tbxPer"));
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialog().fields().pointsPerKm, 50);
}

TEST_F(OptionsBoxesTest, LockedBoxesAreNotChecked) {
  store_("Prf_Frez", "150");
  open();
  click(option("optFresnel(0)"));
  click(box("tbxpctFresnel"));
  press(Qt::Key_Tab);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(dialog().fields().fresnelPercent, 100);
}

TEST_F(OptionsBoxesTest, AnInvalidCustomCurveHoldsThePresetsBack) {
  store_("Prf_Crv", "2");
  open();
  type("tbxCurve", "0");
  click(option("optCurve(0)"));
  QCoreApplication::processEvents();
  EXPECT_EQ(messages(), (Texts{"Valid Range is 0.01 to 50.0"}));
  EXPECT_TRUE(option("optCurve(2)").isChecked());
  EXPECT_EQ(dialog().fields().k, 2.0F);
}

TEST_F(OptionsBoxesTest, AnotherWindowMayBeTurnedToFromAnInvalidBox) {
  open();
  QLineEdit other;
  type("tbxPer", "5");
  other.show();
  other.setFocus();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_TRUE(dialogs.messages.empty());
  activate();
  EXPECT_TRUE(hasFocus("tbxPer"));
  EXPECT_TRUE(dialogs.messages.empty());
  click(box("tbxMax"));
  QCoreApplication::processEvents();
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
}

TEST_F(OptionsBoxesTest, AContextMenuDoesNotCheck) {
  open();
  type("tbxPer", "5");
  QFocusEvent away(QEvent::FocusOut, Qt::PopupFocusReason);
  QApplication::sendEvent(&box("tbxPer"), &away);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(OptionsBoxesTest, AModalMessageIsShownOnceAndGivesTheKeyboardBack) {
  open();
  dialogs.onMessage = [this](const MessageBoxRequest& request) {
    QMessageBox message(QApplication::activeWindow());
    message.setText(QString::fromStdString(request.text));
    QTimer::singleShot(20, &message, [&message] {
      EXPECT_TRUE(message.isActiveWindow());
      QTest::keyClick(&message, Qt::Key_Return);
    });
    message.exec();
    activate();  // as a desktop does, which the offscreen one does not
  };
  const std::vector<std::function<void()>> ways{[this] { press(Qt::Key_Tab); },
                                                [this] { press(Qt::Key_Return); },
                                                [this] { click(button("cmdOK")); },
                                                [this] { click(box("tbxMax")); },
                                                [this] { click(option("optEarthModel(1)")); },
                                                [this] { box("tbxMax").setFocus(); },
                                                [this] { press(Qt::Key_U, Qt::AltModifier); }};
  type("tbxPer", "5");
  for (std::size_t i = 0; i < ways.size(); ++i) {
    dialogs.messages.clear();
    ways.at(i)();
    test::serveEvents(20);
    EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."})) << i;
    EXPECT_TRUE(hasFocus("tbxPer")) << i;
    EXPECT_TRUE(dialog().isVisible()) << i;
  }
  EXPECT_TRUE(store.writes.empty());
}

// ---- OK and Cancel over an invalid box ----

TEST_F(OptionsBoxesTest, OkChecksTheBoxThatHasTheFocus) {
  store_("Prf_Crv", "2");
  store_("Prf_Frez", "45");
  for (const Refusal& refusal : kRefusals) {
    const std::vector<std::function<void()>> ways{
        [this] { click(button("cmdOK")); }, [this] { press(Qt::Key_Return); },
        [this] { press(Qt::Key_Enter); }, [this] { button("cmdOK").click(); },
        [this] {
          press(Qt::Key_O, Qt::AltModifier);
          test::serveEvents(120);
        }};
    for (std::size_t i = 0; i < ways.size(); ++i) {
      SCOPED_TRACE(std::string(refusal.box) + " " + refusal.text + " way " + std::to_string(i));
      open();
      dialogs.messages.clear();
      type(refusal.box, refusal.text);
      ways.at(i)();
      QCoreApplication::processEvents();
      EXPECT_EQ(messages(), (Texts{refusal.message}));
      EXPECT_TRUE(hasFocus(refusal.box));
      EXPECT_TRUE(dialog().isVisible());
      EXPECT_FALSE(dialog().outcome());
    }
  }
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(OptionsBoxesTest, OkStoresTheBoxThatHasTheFocus) {
  for (const bool byMouse : {true, false}) {
    open();
    type("tbxLeft", "5");
    store.writes.clear();
    if (byMouse) {
      click(button("cmdOK"));
    } else {
      press(Qt::Key_Return);
    }
    EXPECT_EQ(store.writes.at(3), "Profile/Prf_HtL=5");
    EXPECT_EQ(dialog().outcome()->after.startHeight, 5);
    store.memory.values.clear();
  }
}

TEST_F(OptionsBoxesTest, CancelAndEscapeAndTheCloseBoxCheckNothing) {
  const std::vector<std::function<void()>> ways{
      [this] { click(button("cmdCancel")); }, [this] { press(Qt::Key_Escape); }, [this] { dialog().close(); },
      [this] { dialog().done(QDialog::Rejected); },
      [this] {
        press(Qt::Key_C, Qt::AltModifier);
        test::serveEvents(150);
      }};
  for (const char* name : kBoxes) {
    for (std::size_t i = 0; i < ways.size(); ++i) {
      store_("Prf_Crv", "2");
      store_("Prf_Frez", "45");
      open();
      type(name, std::string(name) == "tbxEle" || std::string(name) == "tbxRng" ? "-" : "0");
      ways.at(i)();
      EXPECT_FALSE(dialog().isVisible()) << name << " way " << i;
      EXPECT_FALSE(dialog().outcome());
    }
  }
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(OptionsBoxesTest, ABoxThatWasLeftForCancelIsCheckedAfterAll) {
  open();
  type("tbxPer", "5");
  // Pressed on Cancel, let go beside it.
  QPushButton& cancel = button("cmdCancel");
  QTest::mousePress(&cancel, Qt::LeftButton, {}, cancel.rect().center());
  QTest::mouseRelease(&cancel, Qt::LeftButton, {}, QPoint(-50, -50));
  EXPECT_TRUE(dialog().isVisible());
  EXPECT_TRUE(dialogs.messages.empty());
  click(button("cmdOK"));
  QCoreApplication::processEvents();
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
  EXPECT_TRUE(hasFocus("tbxPer"));
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(OptionsBoxesTest, ABoxThatWasLeftForCancelHoldsKeysAndMnemonicsUp) {
  open();
  type("tbxPer", "5");
  for (const auto& [key, modifiers] : {std::pair{Qt::Key_O, Qt::KeyboardModifiers(Qt::AltModifier)},
                                       std::pair{Qt::Key_Tab, Qt::KeyboardModifiers()}}) {
    QPushButton& cancel = button("cmdCancel");
    QTest::mousePress(&cancel, Qt::LeftButton, {}, cancel.rect().center());
    QTest::mouseRelease(&cancel, Qt::LeftButton, {}, QPoint(-50, -50));
    ASSERT_TRUE(hasFocus("cmdCancel"));
    dialogs.messages.clear();
    press(key, modifiers);
    test::serveEvents(120);
    EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
    EXPECT_TRUE(hasFocus("tbxPer"));
  }
  EXPECT_TRUE(store.writes.empty());
}

TEST_F(OptionsBoxesTest, TheFocusIsBackInTheBoxWhateverHappenedUnderItsMessage) {
  open();
  type("tbxPer", "5");
  for (const Qt::FocusReason reason : {Qt::MouseFocusReason, Qt::OtherFocusReason}) {
    dialogs.messages.clear();
    dialogs.onMessage = [this, reason](const MessageBoxRequest&) { box("tbxMax").setFocus(reason); };
    press(Qt::Key_Tab);
    test::serveEvents(10);
    EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
    EXPECT_TRUE(hasFocus("tbxPer"));
  }
}

TEST_F(OptionsBoxesTest, OkChecksEvenWhereNoWindowIsEverActive) {
  make().show();  // without the keyboard: no control gets focus events
  QLineEdit& points = box("tbxPer");
  points.setFocus();
  points.selectAll();
  QTest::keyClicks(&points, QStringLiteral("5"));
  button("cmdOK").click();
  EXPECT_EQ(messages(), (Texts{"Minimum Value is 10."}));
  EXPECT_TRUE(dialog().isVisible());
}

TEST_F(OptionsBoxesTest, AWholeSessionByKeysAlone) {
  open();
  option("optEarthModel(0)").setFocus();
  press(Qt::Key_Down);  // spherical
  press(Qt::Key_Tab);   // method
  press(Qt::Key_Down);
  press(Qt::Key_Tab);  // units
  press(Qt::Key_Down);
  press(Qt::Key_Tab);  // left
  QTest::keyClicks(&box("tbxLeft"), QStringLiteral("45"));
  press(Qt::Key_Tab);  // right
  QTest::keyClicks(&box("tbxRight"), QStringLiteral("46"));
  press(Qt::Key_Return);
  ASSERT_TRUE(dialog().outcome());
  DialogSettings after;
  after.flatEarth = false;
  after.calcMethod = 1;
  after.dispUnits = 1;
  after.startHeight = 45;
  after.endHeight = 46;
  EXPECT_EQ(dialog().outcome()->after, after);
}

}  // namespace
}  // namespace zel
