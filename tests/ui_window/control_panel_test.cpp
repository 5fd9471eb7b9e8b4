#include "ui/profile_window/control_panel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFrame>
#include <QTest>
#include <memory>
#include <set>
#include <vector>

#include "support/offscreen.h"

namespace zel {
namespace {

// The least room that the window gives to the panel: 9135 x 2970 twips, fifteen to a pixel.
constexpr QSize kLeastSize(609, 198);

const ControlPanel::UnitTexts kMetric{QStringLiteral("meters"), QStringLiteral("m"), QStringLiteral("km")};
const ControlPanel::UnitTexts kImperial{QStringLiteral("feet"), QStringLiteral("ft"), QStringLiteral("mi")};

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

std::string nameOf(const QObject* object) { return object->objectName().toStdString(); }

QString withoutMnemonic(QString shown) { return shown.remove(u'&'); }

class ControlPanelTest : public test::OffscreenTest<QApplication> {
 protected:
  void SetUp() override {
    test::OffscreenTest<QApplication>::SetUp();
    window_ = std::make_unique<QWidget>();
    panel_ = new ControlPanel(window_.get());
    resizePanel(kLeastSize);
  }
  void TearDown() override {
    window_.reset();
    test::OffscreenTest<QApplication>::TearDown();
  }

  ControlPanel& panel() { return *panel_; }

  void resizePanel(QSize size) {
    window_->resize(size);
    panel_->setGeometry(QRect(QPoint(0, 0), size));
  }

  // Shown and active, so that key events find their way.
  void show() {
    window_->show();
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
  }

  // The widest texts in every read-out and box.
  void fill() {
    const std::vector<std::pair<std::vector<QLabel*>, const char*>> texts{
        {{panel_->lblSLat, panel_->lblMkLat[0], panel_->lblMkLat[1]}, "36-32-11.4 N"},
        {{panel_->lblSLon, panel_->lblMkLon[0], panel_->lblMkLon[1]}, "117-15-30.1 W"},
        {{panel_->lblELat}, "-36.536521"},
        {{panel_->lblELon}, "-117.258361"},
        {{panel_->lblSAMSL, panel_->lblEAMSL, panel_->lblMaxHt, panel_->lblMinHt, panel_->lblAvHt,
          panel_->lblMkHt[0], panel_->lblMkHt[1], panel_->lblCurHt},
         "12,345.6"},
        {{panel_->lblmbelowmouse}, "-12,345.6"},
        {{panel_->lblFSLoss, panel_->lblMLoss}, "200.55"},
        {{panel_->lblDist}, "1,234.5"},
        {{panel_->lblAzd}, "359"},
        {{panel_->lblLambda}, "14.634"},
        {{panel_->lblMkPosn[0], panel_->lblMkPosn[1], panel_->lblCurPosn}, "1,123.45"}};
    for (const auto& [labels, shown] : texts)
      for (QLabel* label : labels) label->setText(text(shown));
    panel_->tbxAnt1AGL->setText(text("750"));
    panel_->tbxAnt2AGL->setText(text("2461"));
    panel_->tbxCurve->setText(text("1.333"));
    panel_->tbxpctFresnel->setText(text("100"));
    panel_->tbxFreq->setText(text("20000"));
  }

  std::vector<QWidget*> inputs() {
    std::vector<QWidget*> found;
    for (QWidget* child : panel_->findChildren<QWidget*>())
      if (qobject_cast<QLineEdit*>(child) != nullptr || qobject_cast<QAbstractButton*>(child) != nullptr)
        found.push_back(child);
    return found;
  }

 private:
  std::unique_ptr<QWidget> window_;
  ControlPanel* panel_ = nullptr;
};

template <typename Kind>
void expectKind(QWidget& panel, const std::vector<const char*>& names) {
  for (const char* name : names) {
    QObject* found = panel.findChild<QObject*>(QLatin1String(name));
    ASSERT_NE(found, nullptr) << name;
    EXPECT_NE(qobject_cast<Kind*>(found), nullptr) << name << " is a " << found->metaObject()->className();
  }
}

TEST_F(ControlPanelTest, HasEveryControlUnderItsNameAndOfItsKind) {
  EXPECT_EQ(panel().objectName(), text("fraControl"));
  expectKind<QGroupBox>(panel(), {"fraStart", "fraEnd"});
  expectKind<QLabel>(
      panel(), {"lblSLat",      "lblSLon",   "lblSAMSL",      "lblAMSLStart",   "lblAGLStart",  "lblELat",
                "lblELon",      "lblEAMSL",  "lblAMSLEnd",    "lblAGLEnd",      "lblLambda",    "lblFSLoss",
                "lblMLoss",     "lblHeight", "lblMaxHt",      "lblMinHt",       "lblAvHt",      "lblRange",
                "lblDist",      "lblAzd",    "lblMk1Lat",     "lblMk1Lon",      "lblMk1Ht",     "lblMk1Posn",
                "lblMk2Lat",    "lblMk2Lon", "lblMk2Ht",      "lblMk2Posn",     "lblToCursor",  "lblCurPosn",
                "lblFromStart", "lblCurHt",  "lblCursorAMSL", "lblmbelowmouse", "lblBelowMouse"});
  expectKind<QLineEdit>(panel(), {"tbxAnt1AGL", "tbxAnt2AGL", "tbxCurve", "tbxpctFresnel", "tbxFreq"});
  expectKind<QRadioButton>(panel(), {"optCurve(0)", "optCurve(1)", "optCurve(2)", "optFresnel(0)",
                                     "optFresnel(1)", "optFresnel(2)", "optFresnel(3)"});
  expectKind<QPushButton>(panel(), {"cmdClear1", "cmdClear2", "cmdExit"});
}

TEST_F(ControlPanelTest, GivesEveryNameOnceAndNoControlNone) {
  std::set<QString> names;
  for (const QWidget* child : panel().findChildren<QWidget*>()) {
    EXPECT_FALSE(child->objectName().isEmpty()) << child->metaObject()->className();
    EXPECT_TRUE(names.insert(child->objectName()).second) << nameOf(child);
  }
}

TEST_F(ControlPanelTest, ItsMembersAreTheControlsOfTheirNames) {
  EXPECT_EQ(panel().findChild<QLabel*>(text("lblELon")), panel().lblELon);
  EXPECT_EQ(panel().findChild<QLabel*>(text("lblMk2Posn")), panel().lblMkPosn[1]);
  EXPECT_EQ(panel().findChild<QLabel*>(text("lblMk1Ht")), panel().lblMkHt[0]);
  EXPECT_EQ(panel().findChild<QRadioButton*>(text("optFresnel(3)")), panel().optFresnel[3]);
  EXPECT_EQ(panel().findChild<QPushButton*>(text("cmdClear2")), panel().cmdClear[1]);
  EXPECT_EQ(panel().findChild<QGroupBox*>(text("fraEnd")), panel().fraEnd);
}

TEST_F(ControlPanelTest, CaptionsFollowMetricUnits) {
  panel().showUnits(kMetric);
  EXPECT_EQ(panel().lblAMSLStart->text(), text("AMSL (m)"));
  EXPECT_EQ(panel().lblAMSLEnd->text(), text("AMSL (m)"));
  EXPECT_EQ(panel().lblAGLStart->text(), text("Ant AGL (m)"));
  EXPECT_EQ(panel().lblAGLEnd->text(), text("Ant AGL (m)"));
  EXPECT_EQ(panel().lblHeight->text(), text("Height(m)"));
  EXPECT_EQ(panel().lblRange->text(), text("Range km"));
  EXPECT_EQ(panel().lblToCursor->text(), text("km to Cursor"));
  EXPECT_EQ(panel().lblFromStart->text(), text("km from start"));
  EXPECT_EQ(panel().lblCursorAMSL->text(), text("meters AMSL"));
  EXPECT_EQ(panel().lblBelowMouse->text(), text("meters below mouse"));
}

TEST_F(ControlPanelTest, CaptionsFollowImperialUnits) {
  panel().showUnits(kImperial);
  EXPECT_EQ(panel().lblAMSLStart->text(), text("AMSL (ft)"));
  EXPECT_EQ(panel().lblAMSLEnd->text(), text("AMSL (ft)"));
  EXPECT_EQ(panel().lblAGLStart->text(), text("Ant AGL (ft)"));
  EXPECT_EQ(panel().lblAGLEnd->text(), text("Ant AGL (ft)"));
  EXPECT_EQ(panel().lblHeight->text(), text("Height(ft)"));
  EXPECT_EQ(panel().lblRange->text(), text("Range mi"));
  EXPECT_EQ(panel().lblToCursor->text(), text("mi to Cursor"));
  EXPECT_EQ(panel().lblFromStart->text(), text("mi from start"));
  EXPECT_EQ(panel().lblCursorAMSL->text(), text("feet AMSL"));
  EXPECT_EQ(panel().lblBelowMouse->text(), text("feet below mouse"));
  EXPECT_EQ(panel().findChild<QLabel*>(text("lblMkHeight"))->text(), text("Height(ft)"));
}

TEST_F(ControlPanelTest, WavelengthStaysInMetersInBothUnits) {
  panel().showUnits(kImperial);
  EXPECT_EQ(panel().findChild<QLabel*>(text("lblLambdaUnit"))->text(), text("m"));
  EXPECT_EQ(panel().lblLambda->toolTip(), text("Wavelength, meters"));
}

TEST_F(ControlPanelTest, NamesItsFramesAndOptions) {
  std::set<QString> titles;
  for (const QGroupBox* frame : panel().findChildren<QGroupBox*>())
    titles.insert(withoutMnemonic(frame->title()));
  for (const char* title : {"Start Point", "End Point", "E-Curve", "% Fresnel", "Freq", "Path Loss"})
    EXPECT_TRUE(titles.contains(text(title))) << title;

  EXPECT_EQ(panel().optCurve[0]->text(), text("1.333"));
  EXPECT_EQ(panel().optCurve[1]->text(), text("1.000"));
  EXPECT_EQ(panel().optFresnel[0]->text(), text("100"));
  EXPECT_EQ(panel().optFresnel[1]->text(), text("60"));
  EXPECT_EQ(panel().optFresnel[3]->text(), text("None"));
  EXPECT_EQ(withoutMnemonic(panel().cmdExit->text()), text("Close"));
  for (const QPushButton* clear : panel().cmdClear) EXPECT_EQ(withoutMnemonic(clear->text()), text("Clear"));

  std::set<QString> captions;
  for (const QLabel* label : panel().findChildren<QLabel*>()) captions.insert(label->text());
  for (const char* caption : {"MHz", "Free Space", "Modeled", "dB", "Maximum", "Minimum", "Average",
                              "Bearing", "Marker 1", "Marker 2"})
    EXPECT_TRUE(captions.contains(text(caption))) << caption;
}

TEST_F(ControlPanelTest, DatumStandsBesideTheStationsOnlyWhenThereIsOne) {
  EXPECT_EQ(withoutMnemonic(panel().fraStart->title()), text("Start Point"));
  panel().showDatum(text("NAD-27"));
  EXPECT_EQ(withoutMnemonic(panel().fraStart->title()), text("Start Point (NAD-27)"));
  EXPECT_EQ(withoutMnemonic(panel().fraEnd->title()), text("End Point (NAD-27)"));
  panel().showDatum(text("NAD-83"));
  EXPECT_EQ(withoutMnemonic(panel().fraEnd->title()), text("End Point (NAD-83)"));
  panel().showDatum({});
  EXPECT_EQ(withoutMnemonic(panel().fraEnd->title()), text("End Point"));
}

TEST_F(ControlPanelTest, CaptionsAreTheBuddiesOfWhatStandsBesideThem) {
  const std::vector<std::pair<const char*, QWidget*>> buddies{
      {"lblLatStart", panel().lblSLat},    {"lblLonStart", panel().lblSLon},
      {"lblAMSLStart", panel().lblSAMSL},  {"lblAGLStart", panel().tbxAnt1AGL},
      {"lblLatEnd", panel().lblELat},      {"lblLonEnd", panel().lblELon},
      {"lblAMSLEnd", panel().lblEAMSL},    {"lblAGLEnd", panel().tbxAnt2AGL},
      {"lblMHz", panel().tbxFreq},         {"lblLambdaSign", panel().lblLambda},
      {"lblFreeSpace", panel().lblFSLoss}, {"lblModeled", panel().lblMLoss},
      {"lblMaximum", panel().lblMaxHt},    {"lblMinimum", panel().lblMinHt},
      {"lblAverage", panel().lblAvHt},     {"lblRange", panel().lblDist},
      {"lblBearing", panel().lblAzd},      {"lblFromStart", panel().lblCurPosn},
      {"lblCursorAMSL", panel().lblCurHt}, {"lblBelowMouse", panel().lblmbelowmouse}};
  for (const auto& [name, buddy] : buddies) {
    const auto* caption = panel().findChild<QLabel*>(QLatin1String(name));
    ASSERT_NE(caption, nullptr) << name;
    EXPECT_EQ(caption->buddy(), buddy) << name;
  }
}

TEST_F(ControlPanelTest, EveryInputHasAToolTipAndAnAccessibleNameOfItsOwn) {
  std::set<QString> names;
  EXPECT_EQ(inputs().size(), 15U);
  for (const QWidget* input : inputs()) {
    EXPECT_FALSE(input->toolTip().isEmpty()) << nameOf(input);
    EXPECT_FALSE(input->accessibleName().isEmpty()) << nameOf(input);
    EXPECT_TRUE(names.insert(input->accessibleName()).second) << nameOf(input);
  }
}

TEST_F(ControlPanelTest, AntennaBoxesNameTheUnitThatTheyTake) {
  panel().showUnits(kImperial);
  EXPECT_EQ(panel().tbxAnt1AGL->accessibleName(), text("Start antenna height above ground, feet"));
  EXPECT_EQ(panel().tbxAnt2AGL->toolTip(),
            text("Antenna height above ground, feet; limits: 1 to 750 meters"));
  panel().showUnits(kMetric);
  EXPECT_EQ(panel().tbxAnt2AGL->accessibleName(), text("End antenna height above ground, meters"));
}

TEST_F(ControlPanelTest, ReadoutsAreDescribedAndTheirNameIsTheValue) {
  int readouts = 0;
  for (const QLabel* label : panel().findChildren<QLabel*>()) {
    if (!label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse)) continue;
    ++readouts;
    EXPECT_FALSE(label->toolTip().isEmpty()) << nameOf(label);
    EXPECT_EQ(label->accessibleDescription(), label->toolTip()) << nameOf(label);
    EXPECT_TRUE(label->accessibleName().isEmpty()) << nameOf(label);
    EXPECT_TRUE(label->alignment().testFlag(Qt::AlignRight)) << nameOf(label);
    EXPECT_FALSE(label->focusPolicy() & Qt::TabFocus) << nameOf(label);
    EXPECT_EQ(label->textFormat(), Qt::PlainText) << nameOf(label);
  }
  EXPECT_EQ(readouts, 25);
}

TEST_F(ControlPanelTest, TextOfAReadoutIsCopiedWithTheMouse) {
  show();
  panel().lblFSLoss->setText(text("112.25"));
  QTest::mouseDClick(panel().lblFSLoss, Qt::LeftButton, {},
                     panel().lblFSLoss->rect().center() + QPoint(panel().lblFSLoss->width() / 4, 0));
  EXPECT_TRUE(panel().lblFSLoss->hasSelectedText());
}

TEST_F(ControlPanelTest, TabGoesFromTheAntennasToClose) {
  panel().optCurve[2]->setChecked(true);
  panel().optFresnel[2]->setChecked(true);
  show();
  panel().tbxAnt1AGL->setFocus();
  // Of a set of options the chosen one takes part; the arrow keys reach the others.
  for (QWidget* next : std::vector<QWidget*>{panel().tbxAnt2AGL, panel().optCurve[2], panel().tbxCurve,
                                             panel().optFresnel[2], panel().tbxpctFresnel, panel().tbxFreq,
                                             panel().cmdClear[0], panel().cmdClear[1], panel().cmdExit}) {
    const std::string from = nameOf(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), next)
        << "from " << from << " to " << nameOf(QApplication::focusWidget());
  }
}

TEST_F(ControlPanelTest, BacktabGoesTheOtherWay) {
  panel().optFresnel[0]->setChecked(true);
  show();
  panel().tbxFreq->setFocus();
  QTest::keyClick(panel().tbxFreq, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), panel().tbxpctFresnel);
}

TEST_F(ControlPanelTest, TabStopsAtTheOptionThatIsChosen) {
  show();
  for (QRadioButton* chosen : panel().optFresnel) {
    chosen->setChecked(true);
    panel().tbxCurve->setFocus();
    QTest::keyClick(panel().tbxCurve, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), chosen) << nameOf(QApplication::focusWidget());
    QTest::keyClick(chosen, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), panel().tbxpctFresnel) << nameOf(QApplication::focusWidget());
  }
}

TEST_F(ControlPanelTest, ArrowKeysChooseWithinOneSetOfOptions) {
  panel().optCurve[0]->setChecked(true);
  panel().optFresnel[1]->setChecked(true);
  show();
  panel().optCurve[0]->setFocus();
  QSignalSpy clicked(panel().optCurve[1], &QRadioButton::clicked);
  QTest::keyClick(panel().optCurve[0], Qt::Key_Down);
  EXPECT_TRUE(panel().optCurve[1]->isChecked());
  EXPECT_FALSE(panel().optCurve[0]->isChecked());
  EXPECT_EQ(clicked.count(), 1);
  EXPECT_TRUE(panel().optFresnel[1]->isChecked());
}

TEST_F(ControlPanelTest, OnlyPeopleMakeTheBoxesAndOptionsSpeak) {
  show();
  QSignalSpy edited(panel().tbxFreq, &QLineEdit::textEdited);
  QSignalSpy clicked(panel().optFresnel[3], &QRadioButton::clicked);
  panel().tbxFreq->setText(text("950"));
  panel().optFresnel[3]->setChecked(true);
  EXPECT_EQ(edited.count(), 0);
  EXPECT_EQ(clicked.count(), 0);
  QTest::keyClicks(panel().tbxFreq, text("1"));
  panel().optFresnel[0]->setChecked(true);
  QTest::mouseClick(panel().optFresnel[3], Qt::LeftButton);
  EXPECT_EQ(edited.count(), 1);
  EXPECT_EQ(clicked.count(), 1);
}

TEST_F(ControlPanelTest, MnemonicsCollideNeitherWithEachOtherNorWithTheWindows) {
  std::set<QString> taken;
  // Of the menus and the slider.
  for (const char* key : {"Alt+P", "Alt+E", "Alt+X", "Alt+H", "Alt+Z"}) taken.insert(text(key));
  int found = 0;
  const auto take = [&](const QString& shown) {
    const QString key = QKeySequence::mnemonic(shown).toString(QKeySequence::PortableText);
    if (key.isEmpty()) return;
    ++found;
    EXPECT_TRUE(taken.insert(key).second) << shown.toStdString();
  };
  for (const QGroupBox* frame : panel().findChildren<QGroupBox*>()) take(frame->title());
  for (const QAbstractButton* button : panel().findChildren<QAbstractButton*>()) take(button->text());
  for (const QLabel* label : panel().findChildren<QLabel*>()) take(label->text());
  EXPECT_EQ(found, 8);
}

TEST_F(ControlPanelTest, MnemonicsReachTheirInputs) {
  panel().optCurve[1]->setChecked(true);
  panel().optFresnel[0]->setChecked(true);
  show();
  QSignalSpy cleared(panel().cmdClear[1], &QPushButton::clicked);
  QSignalSpy closed(panel().cmdExit, &QPushButton::clicked);
  const std::vector<std::pair<Qt::Key, QWidget*>> keys{{Qt::Key_N, panel().tbxAnt2AGL},
                                                       {Qt::Key_S, panel().tbxAnt1AGL},
                                                       {Qt::Key_U, panel().optCurve[1]},
                                                       {Qt::Key_F, panel().optFresnel[0]},
                                                       {Qt::Key_R, panel().tbxFreq}};
  for (const auto& [key, input] : keys) {
    QTest::keyClick(panel().window(), key, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget(), input) << nameOf(input);
  }
  // A button is shown pressed for a moment first.
  QTest::keyClick(panel().window(), Qt::Key_A, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return cleared.count() == 1; }));
  QTest::keyClick(panel().window(), Qt::Key_C, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed.count() == 1; }));
}

// Counts how often something asks for a new layout.
class LayoutRequests : public QObject {
 public:
  explicit LayoutRequests(QWidget& panel) {
    panel.installEventFilter(this);
    for (QGroupBox* frame : panel.findChildren<QGroupBox*>()) frame->installEventFilter(this);
  }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest) ++count;
    return false;
  }
};

TEST_F(ControlPanelTest, NumbersThatChangeLayNothingOutAnew) {
  show();
  fill();
  QApplication::processEvents();
  LayoutRequests requests(panel());
  const QRect before = panel().lblCurHt->geometry();
  panel().lblCurHt->setText(text("1.2"));
  panel().lblCurPosn->setText({});
  panel().lblmbelowmouse->setText(text("-3"));
  panel().lblMkPosn[0]->setText(text("0.01"));
  QApplication::processEvents();
  EXPECT_EQ(requests.count, 0);
  EXPECT_EQ(panel().lblCurHt->geometry(), before);
  panel().lblCursorAMSL->setText(text("another caption"));
  QApplication::processEvents();
  EXPECT_GT(requests.count, 0) << "nothing is counted";
}

TEST_F(ControlPanelTest, TakesEveryColourFromThePalette) {
  QPalette dark(QColor(70, 70, 74), QColor(45, 45, 48));
  panel().window()->setPalette(dark);
  for (const QWidget* child : panel().findChildren<QWidget*>()) {
    EXPECT_TRUE(child->styleSheet().isEmpty()) << nameOf(child);
    EXPECT_FALSE(child->testAttribute(Qt::WA_SetPalette)) << nameOf(child);
    EXPECT_EQ(child->palette().color(QPalette::Window), dark.color(QPalette::Window)) << nameOf(child);
  }
}

// ---- Size ----

// A label of the same kind and text that nobody has given a size.
QSize needOf(const QLabel& label) {
  QLabel free;
  free.setTextFormat(label.textFormat());
  free.setTextInteractionFlags(label.textInteractionFlags());
  free.setFont(label.font());
  free.setText(label.text());
  return free.sizeHint();
}

// Room for the text inside a box, as the style leaves it: the box keeps two pixels at each side.
QSize roomIn(const QLineEdit& box) {
  QStyleOptionFrame option;
  option.initFrom(&box);
  option.lineWidth = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &box);
  option.state |= QStyle::State_Sunken;
  return box.style()->subElementRect(QStyle::SE_LineEditContents, &option, &box).size() - QSize(4, 0);
}

void expectUnclipped(const QWidget& child) {
  const QFontMetricsF metrics(child.font());
  if (const auto* label = qobject_cast<const QLabel*>(&child)) {
    const QSize need = needOf(*label);
    EXPECT_LE(need.width(), label->width()) << nameOf(label) << " " << label->text().toStdString();
    EXPECT_LE(need.height(), label->height()) << nameOf(label);
    EXPECT_LE(metrics.horizontalAdvance(label->text()), label->width()) << nameOf(label);
    EXPECT_LE(metrics.height(), label->height()) << nameOf(label);
  } else if (const auto* box = qobject_cast<const QLineEdit*>(&child)) {
    EXPECT_LE(metrics.horizontalAdvance(box->text()) + 1, roomIn(*box).width()) << nameOf(box);
    EXPECT_LE(metrics.height(), roomIn(*box).height()) << nameOf(box);
    EXPECT_GE(box->height(), box->minimumSizeHint().height()) << nameOf(box);
  } else if (const auto* option = qobject_cast<const QRadioButton*>(&child)) {
    EXPECT_LE(option->sizeHint().width(), option->width()) << nameOf(option);
    EXPECT_LE(option->sizeHint().height(), option->height()) << nameOf(option);
  } else if (const auto* button = qobject_cast<const QPushButton*>(&child)) {
    QStyleOptionButton style;
    style.initFrom(button);
    const QRect room = button->style()->subElementRect(QStyle::SE_PushButtonContents, &style, button);
    EXPECT_LE(metrics.horizontalAdvance(withoutMnemonic(button->text())), room.width()) << nameOf(button);
    EXPECT_LE(button->sizeHint().height(), button->height()) << nameOf(button);
  } else if (const auto* frame = qobject_cast<const QGroupBox*>(&child)) {
    EXPECT_LE(metrics.horizontalAdvance(withoutMnemonic(frame->title())), frame->width()) << nameOf(frame);
  } else {
    ADD_FAILURE() << nameOf(&child) << " is of a kind that is not checked";
  }
}

void expectApart(const QWidget& parent) {
  const auto children = parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  for (qsizetype i = 0; i < children.size(); ++i) {
    const QWidget* one = children.at(i);
    EXPECT_TRUE(parent.contentsRect().contains(one->geometry()))
        << nameOf(one) << " leaves " << nameOf(&parent);
    for (qsizetype j = i + 1; j < children.size(); ++j)
      EXPECT_FALSE(one->geometry().intersects(children.at(j)->geometry()))
          << nameOf(one) << " overlaps " << nameOf(children.at(j));
  }
}

struct FontCase {
  const char* family;
  int points;
};

class ControlPanelFontTest : public ControlPanelTest, public testing::WithParamInterface<FontCase> {};

TEST_P(ControlPanelFontTest, NothingIsClippedAndNothingOverlaps) {
  const FontCase& font = GetParam();
  if (!QFontDatabase::families().contains(QLatin1String(font.family)))
    GTEST_SKIP() << "the font " << font.family << " is not installed";
  QApplication::setFont(QFont(QLatin1String(font.family), font.points));
  panel().showDatum(text("NAD-27"));
  panel().fitFont();
  show();
  fill();
  // The least size, the window's least width less 40 twips, and wide ones.
  for (const QSize size : {kLeastSize, QSize(618, 198), QSize(800, 198), QSize(1200, 198), QSize(2500, 213)})
    for (const ControlPanel::UnitTexts* units : {&kMetric, &kImperial}) {
      SCOPED_TRACE(std::to_string(size.width()) + " wide, " + units->heightName.toStdString());
      resizePanel(size);
      panel().showUnits(*units);
      QApplication::processEvents();
      EXPECT_EQ(panel().font().family(), QLatin1String(font.family));
      EXPECT_GE(panel().font().pointSizeF(), 8);
      EXPECT_LE(panel().font().pointSizeF(), font.points);
      expectApart(panel());
      for (const QWidget* child : panel().findChildren<QWidget*>()) {
        EXPECT_EQ(child->font().pointSizeF(), panel().font().pointSizeF()) << nameOf(child);
        expectUnclipped(*child);
        if (qobject_cast<const QGroupBox*>(child) != nullptr) expectApart(*child);
      }
    }
}

INSTANTIATE_TEST_SUITE_P(Fonts, ControlPanelFontTest,
                         testing::Values(FontCase{"DejaVu Sans", 8}, FontCase{"DejaVu Sans", 9},
                                         FontCase{"DejaVu Sans", 10}, FontCase{"DejaVu Sans", 12},
                                         FontCase{"Liberation Sans", 8}, FontCase{"Liberation Sans", 9},
                                         FontCase{"Liberation Sans", 10}, FontCase{"Liberation Sans", 12}),
                         [](const auto& tested) {
                           std::string name = tested.param.family + std::to_string(tested.param.points);
                           std::erase(name, ' ');
                           return name;
                         });

TEST_F(ControlPanelTest, TakesTheApplicationsFontWhereThereIsRoom) {
  QApplication::setFont(QFont(pinnedFamily(), 12));
  resizePanel({1200, 300});
  panel().fitFont();
  EXPECT_DOUBLE_EQ(panel().font().pointSizeF(), 12);
}

TEST_F(ControlPanelTest, FontShrinksInASmallPanelAndGrowsBack) {
  show();
  QApplication::setFont(QFont(pinnedFamily(), 12));
  resizePanel({1200, 300});
  panel().fitFont();
  resizePanel(kLeastSize);
  EXPECT_LT(panel().font().pointSizeF(), 9);
  resizePanel({1200, 300});
  EXPECT_DOUBLE_EQ(panel().font().pointSizeF(), 12);
}

TEST_F(ControlPanelTest, FontStopsAtEightPoints) {
  show();
  resizePanel({100, 50});
  EXPECT_DOUBLE_EQ(panel().font().pointSizeF(), 8);
}

TEST_F(ControlPanelTest, AFontBelowEightPointsStaysAsItIs) {
  QApplication::setFont(QFont(pinnedFamily(), 7));
  panel().fitFont();
  EXPECT_DOUBLE_EQ(panel().font().pointSizeF(), 7);
}

TEST_F(ControlPanelTest, AFontThatIsSetInPixelsShrinksToo) {
  QFont large(pinnedFamily());
  large.setPixelSize(20);
  QApplication::setFont(large);
  panel().fitFont();
  EXPECT_GE(panel().font().pointSizeF(), 8);
  EXPECT_LT(panel().font().pointSizeF(), 9);
}

TEST_F(ControlPanelTest, StaysWithinItsLeastRoomWhenTheFontFits) {
  panel().showDatum(text("NAD-27"));
  EXPECT_LE(panel().minimumSizeHint().width(), kLeastSize.width());
  EXPECT_LE(panel().minimumSizeHint().height(), kLeastSize.height());
}

TEST_F(ControlPanelTest, ALongTitleWidensItsFrame) {
  panel().showDatum(text("a datum with a long name"));
  const double title =
      QFontMetricsF(panel().font()).horizontalAdvance(withoutMnemonic(panel().fraStart->title()));
  EXPECT_GE(panel().fraStart->minimumWidth(), title);
}

TEST_F(ControlPanelTest, CaptionAndReadoutStandOnOneLine) {
  show();
  fill();
  QApplication::processEvents();
  for (const QLabel* caption : panel().findChildren<QLabel*>()) {
    const auto* value = qobject_cast<const QLabel*>(caption->buddy());
    const bool above = caption == panel().lblRange || nameOf(caption) == "lblBearing";
    if (value == nullptr || above) continue;
    EXPECT_EQ(caption->y(), value->y()) << nameOf(caption);
    EXPECT_EQ(caption->height(), value->height()) << nameOf(caption);
  }
}

TEST_F(ControlPanelTest, NumbersOfATableEndAtOneEdge) {
  show();
  fill();
  QApplication::processEvents();
  const std::vector<std::vector<QWidget*>> columns{
      {panel().lblSLat, panel().lblSLon, panel().lblSAMSL, panel().tbxAnt1AGL},
      {panel().lblELat, panel().lblELon, panel().lblEAMSL, panel().tbxAnt2AGL},
      {panel().lblFSLoss, panel().lblMLoss},
      {panel().lblMaxHt, panel().lblMinHt, panel().lblAvHt},
      {panel().lblRange, panel().lblDist, panel().lblAzd},
      {panel().lblToCursor, panel().lblMkPosn[0], panel().lblMkPosn[1]}};
  for (const auto& column : columns)
    for (const QWidget* cell : column)
      EXPECT_EQ(cell->geometry().right(), column.front()->geometry().right()) << nameOf(cell);
}

}  // namespace
}  // namespace zel
