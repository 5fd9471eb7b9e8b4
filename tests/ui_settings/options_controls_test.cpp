// The controls of the settings dialog: names, captions, help for people who do not see, order, room.
#include "ui/settings_dialog/options_controls.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QGroupBox>
#include <QSet>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <string>
#include <utility>
#include <vector>

#include "ui_settings/settings_dialog_fixture.h"

namespace zel {
namespace {

using Texts = std::vector<std::string>;

std::string plain(const QString& caption) { return QString(caption).remove(u'&').toStdString(); }

struct OptionsControlsTest : test::SettingsDialogTest {
  QGroupBox& frameOf(const char* name) {
    for (QObject* parent = control<QWidget>(name).parent(); parent != nullptr; parent = parent->parent())
      if (auto* frame = qobject_cast<QGroupBox*>(parent)) return *frame;
    throw std::runtime_error(std::string("no frame around ") + name);
  }
};

const std::vector<std::pair<const char*, const char*>> kFrames{{"optEarthModel(0)", "Projection:"},
                                                               {"optEarthModel(1)", "Projection:"},
                                                               {"cboMethod", "Method"},
                                                               {"cboUnits", "Units"},
                                                               {"tbxFreq", "Freq"},
                                                               {"lblLambda", "Freq"},
                                                               {"optFresnel(0)", "% Fresnel"},
                                                               {"optFresnel(1)", "% Fresnel"},
                                                               {"optFresnel(2)", "% Fresnel"},
                                                               {"optFresnel(3)", "% Fresnel"},
                                                               {"tbxpctFresnel", "% Fresnel"},
                                                               {"optCurve(0)", "E-Curve"},
                                                               {"optCurve(1)", "E-Curve"},
                                                               {"optCurve(2)", "E-Curve"},
                                                               {"tbxCurve", "E-Curve"},
                                                               {"tbxRng", "Number of Ref. Lines"},
                                                               {"tbxEle", "Number of Ref. Lines"},
                                                               {"tbxLeft", "Tower Height"},
                                                               {"tbxRight", "Tower Height"},
                                                               {"tbxMax", "Number of Data Points"},
                                                               {"tbxPer", "Number of Data Points"},
                                                               {"cboTRes", "Terrain Source"}};

const std::vector<const char*> kOrder{
    "optEarthModel(0)", "optEarthModel(1)", "cboMethod", "cboUnits",      "tbxLeft",       "tbxRight",
    "tbxFreq",          "tbxMax",           "tbxPer",    "optCurve(0)",   "optCurve(1)",   "optCurve(2)",
    "tbxCurve",         "tbxRng",           "tbxEle",    "optFresnel(0)", "optFresnel(1)", "optFresnel(3)",
    "optFresnel(2)",    "tbxpctFresnel",    "cboTRes",   "cmdOK",         "cmdCancel"};

TEST_F(OptionsControlsTest, EveryControlStandsInItsFrame) {
  make();
  for (const auto& [name, frame] : kFrames) EXPECT_EQ(plain(frameOf(name).title()), frame) << name;
}

TEST_F(OptionsControlsTest, OptionsAndButtonsHaveTheirCaptions) {
  make();
  for (const auto& [name, caption] :
       {std::pair{"optEarthModel(0)", "Flat Earth (73.206)"},
        std::pair{"optEarthModel(1)", "Spherical Earth"}, std::pair{"optFresnel(0)", "100"},
        std::pair{"optFresnel(1)", "60"}, std::pair{"optFresnel(3)", "None"},
        std::pair{"optCurve(0)", "1.333"}, std::pair{"optCurve(1)", "1.000"}, std::pair{"cmdOK", "OK"},
        std::pair{"cmdCancel", "Cancel"}})
    EXPECT_EQ(plain(control<QAbstractButton>(name).text()), caption);
  EXPECT_TRUE(button("cmdOK").isDefault());
}

TEST_F(OptionsControlsTest, ListsHaveTheirEntries) {
  make();
  EXPECT_EQ(list("cboMethod").itemText(0), QStringLiteral("FCC 4-Point"));
  EXPECT_EQ(list("cboMethod").itemText(1), QStringLiteral("Bivariate  Interpolation"));  // two blanks
  EXPECT_EQ(list("cboMethod").count(), 2);
  EXPECT_EQ(list("cboUnits").itemText(0), QStringLiteral("meters/kilometers"));
  EXPECT_EQ(list("cboUnits").itemText(1), QStringLiteral("feet/miles"));
  EXPECT_EQ(list("cboUnits").count(), 2);
}

TEST_F(OptionsControlsTest, BoxesHaveTheirLabelsAsBuddies) {
  make();
  std::map<std::string, std::string> labels;
  for (const QLabel* label : dialog().findChildren<QLabel*>())
    if (label->buddy() != nullptr) labels[label->buddy()->objectName().toStdString()] = plain(label->text());
  EXPECT_EQ(labels, (std::map<std::string, std::string>{{"tbxRng", "Range"},
                                                        {"tbxEle", "Elevation"},
                                                        {"tbxLeft", "Left"},
                                                        {"tbxRight", "Right"},
                                                        {"tbxMax", "Maximum"},
                                                        {"tbxPer", "Per kilometer"},
                                                        {"tbxFreq", "MHz"}}));
}

TEST_F(OptionsControlsTest, EveryControlHasAToolTipAndAnAccessibleName) {
  make();
  QSet<QString> names;
  for (const char* name : kOrder) {
    const QWidget& widget = control<QWidget>(name);
    EXPECT_FALSE(widget.toolTip().isEmpty()) << name;
    EXPECT_FALSE(widget.accessibleName().isEmpty()) << name;
    names.insert(widget.accessibleName());
  }
  EXPECT_EQ(names.size(), static_cast<qsizetype>(kOrder.size())) << "no two are called the same";
}

TEST_F(OptionsControlsTest, TheTabKeyGoesThroughTheControlsAsTheyAreRead) {
  make();
  QStringList order;
  const QWidget* first = &control<QWidget>(kOrder.front());
  const QWidget* widget = first;
  do {
    if ((widget->focusPolicy() & Qt::TabFocus) != 0 || qobject_cast<const QRadioButton*>(widget) != nullptr)
      order << widget->objectName();
    widget = widget->nextInFocusChain();
  } while (widget != first);
  order.removeIf([](const QString& name) { return name.isEmpty() || name.startsWith(QLatin1String("qt_")); });
  QStringList expected;
  for (const char* name : kOrder) expected << QLatin1String(name);
  EXPECT_EQ(order.join(u' ').toStdString(), expected.join(u' ').toStdString());
}

TEST_F(OptionsControlsTest, NoTwoMnemonicsCollide) {
  make();
  Texts captions;
  for (const QLabel* label : dialog().findChildren<QLabel*>())
    captions.push_back(label->text().toStdString());
  for (const QGroupBox* frame : dialog().findChildren<QGroupBox*>())
    captions.push_back(frame->title().toStdString());
  for (const QAbstractButton* one : dialog().findChildren<QAbstractButton*>())
    captions.push_back(one->text().toStdString());
  std::map<char, std::string> taken;
  for (const std::string& caption : captions) {
    const std::size_t mark = caption.find('&');
    if (mark == std::string::npos) continue;
    const char key = static_cast<char>(std::toupper(caption.at(mark + 1)));
    EXPECT_TRUE(taken.emplace(key, caption).second) << caption << " and " << taken[key];
  }
  EXPECT_EQ(taken.size(), 17U);
}

TEST_F(OptionsControlsTest, MnemonicsOfFramesGoToTheirList) {
  open();
  for (const auto& [key, name] : {std::pair{Qt::Key_M, "cboMethod"}, std::pair{Qt::Key_U, "cboUnits"},
                                  std::pair{Qt::Key_T, "cboTRes"}, std::pair{Qt::Key_F, "tbxFreq"}}) {
    press(key, Qt::AltModifier);
    EXPECT_TRUE(control<QWidget>(name).hasFocus()) << name;
  }
}

TEST_F(OptionsControlsTest, ALockedBoxLooksLikeItsSurroundingsInAnyPalette) {
  open();
  const QPalette before = QApplication::palette();
  for (const QColor window : {QColor(240, 240, 240), QColor(40, 40, 44)}) {
    QPalette palette = before;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, Qt::red);
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    EXPECT_EQ(box("tbxpctFresnel").palette().color(QPalette::Base), window);
    EXPECT_EQ(box("tbxCurve").palette().color(QPalette::Base), window);
    EXPECT_EQ(box("tbxPer").palette().color(QPalette::Base), QColor(Qt::red));
  }
  QApplication::setPalette(before);
}

class OptionsControlsRoomTest : public OptionsControlsTest,
                                public testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(OptionsControlsRoomTest, NothingIsClippedAndNothingOverlaps) {
  const auto& [family, points] = GetParam();
  if (!QFontDatabase::families().contains(QLatin1String(family))) GTEST_SKIP() << "no font " << family;
  QApplication::setFont(QFont(QLatin1String(family), points));
  store.set("Profile", "Prf_Freq", "19999.998");
  store.set("Profile", "Prf_Crv", "50");
  open();
  QList<QWidget*> shownWidgets;
  for (QWidget* widget : dialog().findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->objectName().startsWith(QLatin1String("qt_")) ||
        widget->inherits("QComboBoxPrivateContainer"))
      continue;
    shownWidgets << widget;
    EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << plain(widget->objectName());
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << plain(widget->objectName());
    if (qobject_cast<QLabel*>(widget) != nullptr || qobject_cast<QAbstractButton*>(widget) != nullptr) {
      EXPECT_GE(widget->width(), widget->sizeHint().width()) << plain(widget->objectName());
    }
    if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
      EXPECT_GE(edit->width(), edit->fontMetrics().horizontalAdvance(edit->text()) + 4)
          << plain(edit->objectName());
    }
    if (auto* frame = qobject_cast<QGroupBox*>(widget)) {
      EXPECT_GE(frame->width(), frame->fontMetrics().horizontalAdvance(frame->title()))
          << plain(frame->title());
    }
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
      for (int i = 0; i < combo->count(); ++i) {
        EXPECT_GE(combo->width(),
                  combo->fontMetrics().horizontalAdvance(combo->itemText(i)) + combo->height() / 2)
            << plain(combo->itemText(i));
      }
    }
  }
  for (const QWidget* a : shownWidgets)
    for (const QWidget* b : shownWidgets)
      if (a != b && a->parent() == b->parent()) {
        EXPECT_FALSE(a->geometry().intersects(b->geometry()))
            << plain(a->objectName()) << " and " << plain(b->objectName());
      }
  EXPECT_LE(dialog().frameGeometry().width(), 1000);
  EXPECT_LE(dialog().frameGeometry().height(), 560) << "more than a small screen has";
}

INSTANTIATE_TEST_SUITE_P(Fonts, OptionsControlsRoomTest,
                         testing::Values(std::pair{"DejaVu Sans", 8}, std::pair{"DejaVu Sans", 9},
                                         std::pair{"DejaVu Sans", 12}, std::pair{"Liberation Sans", 8},
                                         std::pair{"Liberation Sans", 10}, std::pair{"Liberation Sans", 12}));

}  // namespace
}  // namespace zel
