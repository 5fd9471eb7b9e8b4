#include "zeltool/link_budget/link_budget_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QSet>
#include <QTest>

#include "support/controls.h"
#include "support/offscreen.h"
#include "support/recording_settings_store.h"
#include "zeltool/link_budget/link_budget_report.h"
#include "zeltool/link_budget/link_budget_settings.h"

namespace zel {
namespace {

constexpr const char* kTitle = "Host Planner";

class LinkBudgetDialogTest : public test::OffscreenTest<QApplication> {
 protected:
  void SetUp() override {
    test::OffscreenTest<QApplication>::SetUp();
    store_ = std::make_shared<test::RecordingSettingsStore>();
    dialog_ = std::make_unique<LinkBudgetDialog>(store_);
  }
  void TearDown() override {
    dialog_.reset();
    test::OffscreenTest<QApplication>::TearDown();
  }

  void open(const char* loss = "137.65") {
    dialog_->openFor(kTitle, loss);
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
  }
  QLineEdit& box(const char* name) { return child<QLineEdit>(name); }
  QPushButton& button(const char* name) { return child<QPushButton>(name); }
  std::string shown(const char* name) { return child<QLabel>(name).text().toStdString(); }
  // As a user does it: into the box, over what is there.
  void type(const char* name, const char* text) {
    box(name).setFocus();
    box(name).selectAll();
    QTest::keyClick(&box(name), Qt::Key_Delete);
    QTest::keyClicks(&box(name), QString::fromUtf8(text));
  }

  std::shared_ptr<test::RecordingSettingsStore> store_;
  std::unique_ptr<LinkBudgetDialog> dialog_;

 private:
  template <typename Widget>
  Widget& child(const char* name) {
    return test::controlOf<Widget>(*dialog_, name);
  }
};

TEST_F(LinkBudgetDialogTest, StartsWithTheModeledLossAndTheDefaults) {
  open();
  EXPECT_EQ(dialog_->objectName(), QStringLiteral("frmLinkBudget"));
  EXPECT_EQ(dialog_->windowTitle(), QStringLiteral("Link Budget"));
  EXPECT_FALSE(dialog_->isModal());
  EXPECT_EQ(box("tbxTxPower").text(), QStringLiteral("40"));
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("137.65"));
  EXPECT_EQ(box("tbxThreshold").text(), QStringLiteral("-100"));
  EXPECT_EQ(shown("lblWatts"), "= 10 W");
  EXPECT_EQ(shown("lblReceived"), "-97.65 dBm");
  EXPECT_EQ(shown("lblMargin"), "2.35 dB");
  EXPECT_EQ(shown("lblVerdict"), "The link holds: 2.35 dB above the threshold.");
  EXPECT_EQ(shown("lblSource"), "Modeled loss of the profile, 137.65 dB.");
}

TEST_F(LinkBudgetDialogTest, TheMarginFollowsEveryKey) {
  open();
  box("tbxRxGain").setFocus();
  box("tbxRxGain").selectAll();
  QTest::keyClicks(&box("tbxRxGain"), QStringLiteral("1"));
  EXPECT_EQ(shown("lblMargin"), "3.35 dB");
  QTest::keyClicks(&box("tbxRxGain"), QStringLiteral("2"));
  EXPECT_EQ(shown("lblMargin"), "14.35 dB");
  QTest::keyClicks(&box("tbxRxGain"), QStringLiteral(",5"));
  EXPECT_EQ(shown("lblMargin"), "14.85 dB");
}

TEST_F(LinkBudgetDialogTest, EveryInputCountsWithItsSign) {
  const struct {
    const char* box;
    const char* text;
    const char* margin;
  } cases[] = {{"tbxTxPower", "41", "3.35 dB"},   {"tbxTxGain", "1", "3.35 dB"},
               {"tbxTxLosses", "1", "1.35 dB"},   {"tbxPathLoss", "138.65", "1.35 dB"},
               {"tbxRxGain", "1", "3.35 dB"},     {"tbxRxLosses", "1", "1.35 dB"},
               {"tbxThreshold", "-99", "1.35 dB"}};
  for (const auto& example : cases) {
    open();
    QTest::mouseClick(&button("cmdDefaults"), Qt::LeftButton);
    type(example.box, example.text);
    EXPECT_EQ(shown("lblMargin"), example.margin) << example.box;
  }
}

TEST_F(LinkBudgetDialogTest, TheVerdictIsInWords) {
  open();
  type("tbxPathLoss", "150");
  EXPECT_EQ(shown("lblVerdict"), "The link fails: 10.00 dB below the threshold.");
  EXPECT_EQ(shown("lblSource"), "Typed in; the modeled loss of the profile is 137.65 dB.");
  type("tbxPathLoss", "140");
  EXPECT_EQ(shown("lblVerdict"), "The link is on the edge: exactly at the threshold.");
}

TEST_F(LinkBudgetDialogTest, WithoutAModeledLossTheBoxIsEmptyAndTheWindowSaysSo) {
  for (const char* loss : {"", " ", "none", "137.65 dB"}) {
    open(loss);
    EXPECT_EQ(box("tbxPathLoss").text(), QString()) << loss;
    EXPECT_EQ(shown("lblSource"), "There is no modeled loss: type a path loss in.") << loss;
    EXPECT_EQ(shown("lblVerdict"), "Path loss: enter a number from -100 to 1000 dB.") << loss;
    EXPECT_EQ(shown("lblMargin"), "") << loss;
    EXPECT_FALSE(button("cmdModeled").isEnabled()) << loss;
    EXPECT_TRUE(box("tbxPathLoss").hasFocus()) << loss;
  }
  QTest::keyClicks(&box("tbxPathLoss"), QStringLiteral("120"));
  EXPECT_EQ(shown("lblSource"), "Typed in; there is no modeled loss.");
  EXPECT_EQ(shown("lblMargin"), "20.00 dB");
}

TEST_F(LinkBudgetDialogTest, ALossBeyondTheRangeIsShownAndRefused) {
  open("1200");
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("1200"));
  EXPECT_EQ(shown("lblVerdict"), "Path loss: enter a number from -100 to 1000 dB.");
}

TEST_F(LinkBudgetDialogTest, AnInputThatIsNotAcceptedIsMarkedAndNamedAndLeavesNoResult) {
  open();
  type("tbxTxLosses", "-1");
  EXPECT_EQ(shown("tbxTxLosses_mark"), "!");
  EXPECT_EQ(shown("tbxRxLosses_mark"), "");
  EXPECT_EQ(shown("lblVerdict"), "Transmitter losses: enter a number from 0 to 200 dB.");
  EXPECT_EQ(box("tbxTxLosses").accessibleDescription(),
            QStringLiteral("Transmitter losses: enter a number from 0 to 200 dB."));
  EXPECT_EQ(shown("lblMargin"), "");
  EXPECT_EQ(shown("lblReceived"), "");
  EXPECT_EQ(shown("lblRadiated"), "");
  EXPECT_FALSE(button("cmdCopy").isEnabled());
  type("tbxTxPower", "");
  EXPECT_EQ(shown("lblWatts"), "");
  EXPECT_EQ(shown("lblVerdict"), "Transmitter power: enter a number from -60 to 100 dBm.");
  type("tbxTxPower", "40");
  type("tbxTxLosses", "1");
  EXPECT_EQ(shown("tbxTxLosses_mark"), "");
  EXPECT_EQ(shown("lblMargin"), "1.35 dB");
  EXPECT_TRUE(button("cmdCopy").isEnabled());
}

TEST_F(LinkBudgetDialogTest, ModeledPutsTheModeledLossBack) {
  open();
  type("tbxPathLoss", "99");
  QTest::mouseClick(&button("cmdModeled"), Qt::LeftButton);
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("137.65"));
}

TEST_F(LinkBudgetDialogTest, CopyPutsTheWholeBudgetOnTheClipboard) {
  open();
  type("tbxRxGain", "2.15");
  QTest::mouseClick(&button("cmdCopy"), Qt::LeftButton);
  LinkBudgetInputs inputs = defaultLinkBudget();
  inputs[LinkBudgetTerm::kPathLoss] = 137.65;
  inputs[LinkBudgetTerm::kReceiverGain] = 2.15;
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), linkBudgetReport(inputs, 137.65));
}

TEST_F(LinkBudgetDialogTest, AnInputIsStoredWhenItsBoxIsLeft) {
  open();
  type("tbxTxPower", "33");
  EXPECT_TRUE(store_->writes.empty());
  QTest::keyClick(&box("tbxTxPower"), Qt::Key_Tab);
  EXPECT_EQ(store_->writes, std::vector<std::string>{"LinkBudget/TxPower=33"});
  EXPECT_EQ(store_->applications.back(), kTitle);
}

TEST_F(LinkBudgetDialogTest, AnInputIsStoredWhenTheWindowClosesAndReadAgain) {
  open();
  type("tbxThreshold", "-107.5");
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(store_->writes, std::vector<std::string>{"LinkBudget/Threshold=-107.5"});
  dialog_ = std::make_unique<LinkBudgetDialog>(store_);
  open();
  EXPECT_EQ(box("tbxThreshold").text(), QStringLiteral("-107.5"));
}

TEST_F(LinkBudgetDialogTest, WhatIsNotAcceptedAndThePathLossAreNotStored) {
  open();
  type("tbxTxPower", "400");
  type("tbxRxGain", "x");
  type("tbxPathLoss", "99");
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_TRUE(store_->writes.empty());
  open();
  EXPECT_EQ(box("tbxTxPower").text(), QStringLiteral("40"));
  EXPECT_EQ(box("tbxRxGain").text(), QStringLiteral("0"));
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("137.65"));
}

TEST_F(LinkBudgetDialogTest, DefaultsBringEverythingBackAndAreStored) {
  store_->set("LinkBudget", "TxPower", "20");
  open();
  EXPECT_EQ(box("tbxTxPower").text(), QStringLiteral("20"));
  type("tbxPathLoss", "99");
  type("tbxRxLosses", "nonsense");
  QTest::mouseClick(&button("cmdDefaults"), Qt::LeftButton);
  EXPECT_EQ(shown("lblMargin"), "2.35 dB");
  EXPECT_EQ(store_->writes, std::vector<std::string>{"LinkBudget/TxPower=40"});
}

TEST_F(LinkBudgetDialogTest, OpenedAgainItKeepsWhatIsTypedAndTakesTheNewLoss) {
  open();
  type("tbxTxPower", "30");
  type("tbxPathLoss", "99");
  open("120");
  EXPECT_EQ(box("tbxTxPower").text(), QStringLiteral("30"));
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("120"));
  EXPECT_EQ(shown("lblMargin"), "10.00 dB");
}

TEST_F(LinkBudgetDialogTest, AnotherTitleHasItsOwnInputs) {
  open();
  type("tbxTxPower", "30");
  dialog_->openFor("Another", "120");
  EXPECT_EQ(box("tbxTxPower").text(), QStringLiteral("40"));
  EXPECT_EQ(store_->ReadSetting(kTitle, "LinkBudget", "TxPower", ""), "30");
  EXPECT_EQ(store_->ReadSetting("Another", "LinkBudget", "TxPower", ""), "");
}

TEST_F(LinkBudgetDialogTest, AStoreThatRefusesIsNamedAndHoldsTheWindowOnce) {
  open();
  type("tbxTxPower", "30");
  store_->memory.failing = true;
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_EQ(shown("lblNotice"), "The inputs could not be remembered: Permission denied");
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
  store_->memory.failing = false;
  open();
  EXPECT_FALSE(dialog_->findChild<QLabel*>(QStringLiteral("lblNotice"))->isVisible());
}

TEST_F(LinkBudgetDialogTest, ClosesByItsButtonAndByItsFrame) {
  open();
  QTest::mouseClick(&button("cmdClose"), Qt::LeftButton);
  EXPECT_FALSE(dialog_->isVisible());
  open();
  dialog_->close();
  EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(LinkBudgetDialogTest, EnterInABoxStoresItAndPressesNoButton) {
  open();
  QApplication::clipboard()->setText(QStringLiteral("untouched"));
  type("tbxPathLoss", "99");
  type("tbxTxPower", "31");
  QTest::keyClick(&box("tbxTxPower"), Qt::Key_Return);
  EXPECT_TRUE(dialog_->isVisible());
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("untouched"));
  EXPECT_EQ(box("tbxPathLoss").text(), QStringLiteral("99"));
  EXPECT_EQ(store_->writes, std::vector<std::string>{"LinkBudget/TxPower=31"});
}

TEST_F(LinkBudgetDialogTest, TabGoesThroughEverythingInTheOrderOfTheWindow) {
  open();
  const char* order[] = {"tbxTxPower", "tbxTxGain",   "tbxTxLosses", "tbxPathLoss",
                         "cmdModeled", "tbxRxGain",   "tbxRxLosses", "tbxThreshold",
                         "cmdCopy",    "cmdDefaults", "cmdClose",    "tbxTxPower"};
  for (const char* name : order) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(name));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
}

TEST_F(LinkBudgetDialogTest, EveryControlHasAToolTipAnAccessibleNameAndAKeyOfItsOwn) {
  open();
  QSet<QChar> keys;
  const auto keyOf = [&keys](const QString& caption) {
    const qsizetype at = caption.indexOf(QLatin1Char('&'));
    ASSERT_GE(at, 0) << caption.toStdString();
    const QChar key = caption[at + 1].toLower();
    EXPECT_FALSE(keys.contains(key)) << caption.toStdString();
    keys.insert(key);
  };
  for (const QPushButton* one : dialog_->findChildren<QPushButton*>()) {
    EXPECT_FALSE(one->toolTip().isEmpty()) << one->objectName().toStdString();
    EXPECT_FALSE(one->accessibleName().isEmpty()) << one->objectName().toStdString();
    keyOf(one->text());
  }
  const auto labels = dialog_->findChildren<QLabel*>();
  for (const QLineEdit* one : dialog_->findChildren<QLineEdit*>()) {
    EXPECT_FALSE(one->toolTip().isEmpty()) << one->objectName().toStdString();
    EXPECT_FALSE(one->accessibleName().isEmpty()) << one->objectName().toStdString();
    const auto caption = std::find_if(labels.begin(), labels.end(),
                                      [one](const QLabel* label) { return label->buddy() == one; });
    ASSERT_NE(caption, labels.end()) << one->objectName().toStdString();
    keyOf((*caption)->text());
  }
}

TEST_F(LinkBudgetDialogTest, ReadOutsAreReadOutWithTheirValues) {
  open();
  EXPECT_EQ(dialog_->findChild<QLabel*>(QStringLiteral("lblMargin"))->accessibleName(),
            QStringLiteral("Margin: 2.35 dB"));
  EXPECT_EQ(dialog_->findChild<QLabel*>(QStringLiteral("lblVerdict"))->accessibleName(),
            QStringLiteral("Verdict: The link holds: 2.35 dB above the threshold."));
}

TEST_F(LinkBudgetDialogTest, NothingIsClippedWhateverTheFontAndTheWindowKeepsItsSize) {
  for (const char* family : {"DejaVu Sans", "Liberation Sans"}) {
    QApplication::setFont(QFont(QLatin1String(family), 11));
    dialog_ = std::make_unique<LinkBudgetDialog>(store_);
    open();
    const QSize size = dialog_->size();
    const auto expectRoom = [this, family] {
      for (const QWidget* widget : dialog_->findChildren<QWidget*>()) {
        if (!widget->isVisible() || qobject_cast<const QGroupBox*>(widget) != nullptr) continue;
        const auto* label = qobject_cast<const QLabel*>(widget);
        const int wanted = label != nullptr && label->wordWrap() ? label->heightForWidth(label->width())
                                                                 : widget->minimumSizeHint().height();
        EXPECT_GE(widget->height(), wanted) << family << ' ' << widget->objectName().toStdString();
        if (label != nullptr && !label->wordWrap()) {
          EXPECT_GE(label->width(), label->sizeHint().width())
              << family << ' ' << label->text().toStdString();
        }
      }
    };
    expectRoom();
    type("tbxTxGain", "-500000");
    expectRoom();
    type("tbxTxGain", "-49.5");
    type("tbxPathLoss", "999.99");
    expectRoom();
    type("tbxTxPower", "-57");
    expectRoom();
    EXPECT_EQ(dialog_->size(), size) << family;
  }
}

// A colour of its own would vanish on one of the two grounds.
TEST_F(LinkBudgetDialogTest, FollowsADarkPalette) {
  const QPalette before = QApplication::palette();
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(32, 32, 32));
  dark.setColor(QPalette::WindowText, Qt::white);
  dark.setColor(QPalette::Base, QColor(16, 16, 16));
  dark.setColor(QPalette::Text, Qt::white);
  QApplication::setPalette(dark);
  open();
  for (const QWidget* widget : dialog_->findChildren<QWidget*>())
    EXPECT_EQ(widget->palette().color(QPalette::WindowText), QColor(Qt::white))
        << widget->objectName().toStdString();
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace zel
