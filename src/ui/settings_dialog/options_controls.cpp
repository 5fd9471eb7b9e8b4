#include "ui/settings_dialog/options_controls.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <utility>
#include <vector>

namespace zel {
namespace {

// Room for the longest sensible entry: "19999.998", and "5000".
constexpr int kRealCharacters = 9;
constexpr int kWholeCharacters = 6;
// What the base class leaves room for.
constexpr int kUsualCharacters = 17;

// A box for a number, no wider than it needs to be.
class NumberBox final : public QLineEdit {
 public:
  explicit NumberBox(int characters) : characters_(characters) {}

  QSize sizeHint() const override {
    const QFontMetrics metrics = fontMetrics();
    const int frame = QLineEdit::sizeHint().width() - kUsualCharacters * metrics.horizontalAdvance(u'x');
    return {frame + characters_ * metrics.horizontalAdvance(u'0'), QLineEdit::sizeHint().height()};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  int characters_;
};

QString text(std::string_view ascii) {
  return QString::fromUtf8(ascii.data(), static_cast<int>(ascii.size()));
}

QGroupBox* makeFrame(const char* name, const QString& title) {
  auto* frame = new QGroupBox(title);
  frame->setObjectName(QLatin1String(name));
  return frame;
}

QComboBox* makeList(const char* name, const QString& accessibleName, const QString& tip) {
  auto* list = new QComboBox;
  list->setObjectName(QLatin1String(name));
  list->setAccessibleName(accessibleName);
  list->setToolTip(tip);
  // The wheel would give it the focus, and change it, while somebody only scrolls past.
  list->setFocusPolicy(Qt::StrongFocus);
  return list;
}

QGroupBox* frameAround(const char* name, const QString& title, QWidget* only) {
  QGroupBox* frame = makeFrame(name, title);
  auto* row = new QHBoxLayout(frame);
  row->addWidget(only);
  return frame;
}

QRadioButton* makeOption(const char* array, int index, const QString& caption, const QString& accessibleName,
                         const QString& tip) {
  auto* option = new QRadioButton(caption);
  option->setObjectName(QStringLiteral("%1(%2)").arg(QLatin1String(array)).arg(index));
  option->setAccessibleName(accessibleName);
  option->setToolTip(tip);
  return option;
}

QPushButton* makeButton(const char* name, const QString& caption, const QString& tip) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(QString(caption).remove(u'&'));
  button->setToolTip(tip);
  return button;
}

}  // namespace

OptionsControls::OptionsControls(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("surface"));
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(8);

  // What belongs to the path and its terrain on the left, what belongs to the calculation on the right.
  grid->addWidget(makeProjection(), 0, 0);
  grid->addWidget(makeTowerHeight(), 1, 0);
  grid->addWidget(makeDataPoints(), 2, 0);
  grid->addWidget(makeReferenceLines(), 3, 0);
  grid->addWidget(makeTerrainSource(), 4, 0);
  auto* lists = new QHBoxLayout;
  lists->setSpacing(12);
  lists->addWidget(makeMethod(), 3);
  lists->addWidget(makeUnits(), 2);
  grid->addLayout(lists, 0, 1);
  grid->addWidget(makeFrequency(), 1, 1);
  grid->addWidget(makeCurve(), 2, 1);
  grid->addWidget(makeFresnel(), 3, 1);
  grid->addWidget(makeButtons(), 4, 1, Qt::AlignRight | Qt::AlignBottom);
  setTabOrderByReading();
}

QLineEdit* OptionsControls::makeBox(OptionsBox which, const QString& accessibleName, const QString& tip) {
  const bool real = which == OptionsBox::kCurve || which == OptionsBox::kFrequency;
  auto* box = new NumberBox(real ? kRealCharacters : kWholeCharacters);
  box->setObjectName(text(controlName(which)));
  box->setAccessibleName(accessibleName);
  box->setToolTip(tip);
  box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  boxes_.at(static_cast<std::size_t>(which)) = box;
  return box;
}

QGroupBox* OptionsControls::makePair(const char* name, const QString& title, OptionsBox first,
                                     const QString& firstCaption, OptionsBox second,
                                     const QString& secondCaption, const QString& unit) {
  QGroupBox* frame = makeFrame(name, title);
  auto* row = new QHBoxLayout(frame);
  row->setSpacing(18);
  for (const auto& [which, caption] : {std::pair{first, firstCaption}, std::pair{second, secondCaption}}) {
    auto* label = new QLabel(caption);
    label->setBuddy(box(which));
    auto* half = new QHBoxLayout;
    half->setSpacing(6);
    half->addWidget(label);
    half->addWidget(box(which));
    if (!unit.isEmpty()) half->addWidget(new QLabel(unit));
    half->addStretch(1);
    row->addLayout(half, 1);
  }
  return frame;
}

QGroupBox* OptionsControls::makeProjection() {
  QGroupBox* frame = makeFrame("fraProjection", tr("&Projection:"));
  optEarthModel[0] = makeOption("optEarthModel", 0, tr("Flat E&arth (73.206)"), tr("Flat Earth (73.206)"),
                                tr("Distances on the map by the flat earth formula of rule 73.206"));
  optEarthModel[1] = makeOption("optEarthModel", 1, tr("&Spherical Earth"), tr("Spherical Earth"),
                                tr("Distances on the map on a sphere"));
  auto* column = new QVBoxLayout(frame);
  for (QRadioButton* option : optEarthModel) column->addWidget(option);
  return frame;
}

QGroupBox* OptionsControls::makeTowerHeight() {
  makeBox(OptionsBox::kLeft, tr("Tower height, left"),
          tr("Antenna above ground at the start point when the host gives no height: 1 to 750 meters"));
  makeBox(OptionsBox::kRight, tr("Tower height, right"),
          tr("Antenna above ground at the end point when the host gives no height: 1 to 750 meters"));
  return makePair("fraTowerHeight", tr("Tower Height"), OptionsBox::kLeft, tr("&Left"), OptionsBox::kRight,
                  tr("Ri&ght"), tr("m"));
}

QGroupBox* OptionsControls::makeDataPoints() {
  makeBox(OptionsBox::kMaximum, tr("Data points, maximum"),
          tr("Most data points on a path: 1000 to 5000. A longer path is sampled more coarsely"));
  makeBox(OptionsBox::kPerKilometre, tr("Data points per kilometer"),
          tr("Data points per kilometer of path: 10 to 99"));
  return makePair("fraDataPoints", tr("Number of Data Points"), OptionsBox::kMaximum, tr("Ma&ximum"),
                  OptionsBox::kPerKilometre, tr("Per &kilometer"), {});
}

QGroupBox* OptionsControls::makeReferenceLines() {
  makeBox(OptionsBox::kRange, tr("Reference lines, range"),
          tr("Number of upright reference lines in the plot: 0 to 20"));
  makeBox(OptionsBox::kElevation, tr("Reference lines, elevation"),
          tr("Number of level reference lines in the plot: 0 to 20"));
  return makePair("fraRefLines", tr("Number of Ref. Lines"), OptionsBox::kRange, tr("&Range"),
                  OptionsBox::kElevation, tr("&Elevation"), {});
}

QGroupBox* OptionsControls::makeTerrainSource() {
  cboTRes = makeList("cboTRes", tr("Terrain source"), tr("The terrain data that paths are sampled from"));
  return frameAround("fraTerrainSource", tr("&Terrain Source"), cboTRes);
}

QGroupBox* OptionsControls::makeMethod() {
  cboMethod =
      makeList("cboMethod", tr("Method"), tr("How heights between the posts of the terrain are found"));
  // Two blanks: the name of the method as every list and report shows it.
  cboMethod->addItems({QStringLiteral("FCC 4-Point"), QStringLiteral("Bivariate  Interpolation")});
  return frameAround("fraMethod", tr("&Method"), cboMethod);
}

QGroupBox* OptionsControls::makeUnits() {
  cboUnits = makeList("cboUnits", tr("Units"), tr("The units of the profile window and the exports"));
  cboUnits->addItems({QStringLiteral("meters/kilometers"), QStringLiteral("feet/miles")});
  return frameAround("fraUnits", tr("&Units"), cboUnits);
}

QGroupBox* OptionsControls::makeFrequency() {
  QLineEdit* box = makeBox(OptionsBox::kFrequency, tr("Frequency in MHz"), tr("Frequency: 20 to 20000 MHz"));
  lblLambda = new QLabel;
  lblLambda->setObjectName(QStringLiteral("lblLambda"));
  lblLambda->setAccessibleDescription(tr("Wavelength in meters"));
  lblLambda->setToolTip(tr("Wavelength in meters"));
  lblLambda->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lblLambda->setMinimumWidth(lblLambda->fontMetrics().horizontalAdvance(QStringLiteral("00.000")));
  lblLambda->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* unit = new QLabel(tr("MHz"));
  unit->setBuddy(box);

  QGroupBox* frame = makeFrame("fraFreq", tr("&Freq"));
  auto* row = new QHBoxLayout(frame);
  row->addWidget(box);
  row->addWidget(unit);
  row->addStretch(1);
  row->addWidget(new QLabel(tr("Wavelength")));
  row->addWidget(lblLambda);
  row->addWidget(new QLabel(tr("m")));
  return frame;
}

QGroupBox* OptionsControls::makeCurve() {
  const QString tip = tr("Effective earth radius factor k: %1");
  optCurve[0] = makeOption("optCurve", 0, QStringLiteral("1.333"), tr("E-Curve 1.333"),
                           tip.arg(tr("1.333, the standard atmosphere")));
  optCurve[1] = makeOption("optCurve", 1, QStringLiteral("1.000"), tr("E-Curve 1.000"),
                           tip.arg(tr("1, the true earth radius")));
  optCurve[2] = makeOption("optCurve", 2, tr("Custom"), tr("E-Curve custom"), tip.arg(tr("as typed beside")));
  QLineEdit* box = makeBox(OptionsBox::kCurve, tr("E-Curve custom value"), tip.arg(tr("0.01 to 50")));

  QGroupBox* frame = makeFrame("fraCurve", tr("E-Cur&ve"));
  auto* row = new QHBoxLayout(frame);
  for (QRadioButton* option : optCurve) row->addWidget(option);
  row->addWidget(box);
  row->addStretch(1);
  return frame;
}

QGroupBox* OptionsControls::makeFresnel() {
  const QString tip = tr("Part of the first Fresnel zone that is drawn and tested: %1");
  optFresnel[0] = makeOption("optFresnel", 0, QStringLiteral("100"), tr("Fresnel 100 percent"),
                             tip.arg(tr("100 percent")));
  optFresnel[1] =
      makeOption("optFresnel", 1, QStringLiteral("60"), tr("Fresnel 60 percent"), tip.arg(tr("60 percent")));
  optFresnel[2] = makeOption("optFresnel", 2, tr("Custom"), tr("Fresnel custom percentage"),
                             tip.arg(tr("the percentage beside")));
  optFresnel[3] =
      makeOption("optFresnel", 3, tr("None"), tr("No Fresnel line"), tr("No Fresnel line is drawn"));
  QLineEdit* box = makeBox(OptionsBox::kFresnel, tr("Fresnel percentage"), tip.arg(tr("0 to 100 percent")));

  QGroupBox* frame = makeFrame("fraFresnel", tr("% Fres&nel"));
  auto* row = new QHBoxLayout(frame);
  row->addWidget(optFresnel[0]);
  row->addWidget(optFresnel[1]);
  row->addWidget(optFresnel[3]);
  row->addWidget(optFresnel[2]);
  row->addWidget(box);
  row->addStretch(1);
  return frame;
}

QWidget* OptionsControls::makeButtons() {
  cmdOK = makeButton("cmdOK", tr("&OK"), tr("Store the settings and close"));
  cmdOK->setDefault(true);
  cmdCancel = makeButton("cmdCancel", tr("&Cancel"), tr("Close and leave the settings as they are"));
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins({});
  row->addWidget(cmdOK);
  row->addWidget(cmdCancel);
  return buttons;
}

void OptionsControls::setTabOrderByReading() {
  const std::vector<QWidget*> order{optEarthModel[0],
                                    optEarthModel[1],
                                    cboMethod,
                                    cboUnits,
                                    box(OptionsBox::kLeft),
                                    box(OptionsBox::kRight),
                                    box(OptionsBox::kFrequency),
                                    box(OptionsBox::kMaximum),
                                    box(OptionsBox::kPerKilometre),
                                    optCurve[0],
                                    optCurve[1],
                                    optCurve[2],
                                    box(OptionsBox::kCurve),
                                    box(OptionsBox::kRange),
                                    box(OptionsBox::kElevation),
                                    optFresnel[0],
                                    optFresnel[1],
                                    optFresnel[3],
                                    optFresnel[2],
                                    box(OptionsBox::kFresnel),
                                    cboTRes,
                                    cmdOK,
                                    cmdCancel};
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void OptionsControls::lock(OptionsBox which, bool locked) {
  box(which)->setReadOnly(locked);
  paintLocks();
}

void OptionsControls::enable(OptionsBox which, bool enabled) {
  box(which)->setEnabled(enabled);
  paintLocks();
}

void OptionsControls::paintLocks() {
  for (QLineEdit* box : boxes_) {
    QPalette colours;  // empty: everything from the surroundings
    if (box->isReadOnly() || !box->isEnabled())
      colours.setColor(QPalette::Base, palette().color(QPalette::Window));
    box->setPalette(colours);
  }
}

void OptionsControls::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && cmdCancel != nullptr) paintLocks();
}

}  // namespace zel
