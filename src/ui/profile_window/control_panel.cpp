#include "ui/profile_window/control_panel.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace zel {
namespace {

constexpr double kLeastPoints = 8;
constexpr double kPointStep = 0.5;

// Logical pixels.
constexpr int kOuterMargin = 2;
constexpr int kBetweenFrames = 4;
constexpr int kFrameMargin = 3;
constexpr int kBetweenRows = 1;
constexpr int kBetweenColumns = 5;
constexpr int kBesideText = 4;  // between a text and what belongs to it
constexpr int kTitleRoom = 4;   // beside the title of a frame
constexpr int kBoxPadding = 5;  // of a line edit: its own margins and the text cursor

// The widest texts that the read-outs show, in either format of the coordinates.
QStringList latitudeTexts() { return {QStringLiteral("36-32-11.4 N"), QStringLiteral("-36.536521")}; }
QStringList longitudeTexts() { return {QStringLiteral("117-15-30.1 W"), QStringLiteral("-117.258361")}; }
QStringList heightTexts() { return {QStringLiteral("12,345.6"), QStringLiteral("-1,234.5")}; }

QString controlName(const char* name) { return QLatin1String(name); }

QLabel* caption(const char* name, const QString& text, QWidget* of) {
  auto* label = new QLabel(text);
  label->setObjectName(controlName(name));
  label->setTextFormat(Qt::PlainText);
  if (of != nullptr) label->setBuddy(of);
  return label;
}

template <typename Layout>
Layout* compact(Layout* layout) {
  layout->setContentsMargins(kFrameMargin, 0, kFrameMargin, 0);
  layout->setSpacing(kBetweenRows);
  return layout;
}

QHBoxLayout* row(int spacing) {
  auto* layout = new QHBoxLayout;
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  return layout;
}

// The rows of a frame. In a wide panel they stay together at its left.
QVBoxLayout* rowsIn(QGroupBox* group) {
  auto* beside = compact(new QHBoxLayout(group));
  auto* rows = new QVBoxLayout;
  rows->setSpacing(kBetweenRows);
  beside->addLayout(rows, 3);
  beside->addStretch(2);
  return rows;
}

// A caption at the left, its value at the right.
QHBoxLayout* captioned(QLabel* text, QWidget* value, QLabel* unit = nullptr) {
  auto* layout = row(kBesideText);
  layout->addWidget(text);
  layout->addStretch();
  layout->addWidget(value);
  if (unit != nullptr) layout->addWidget(unit);
  return layout;
}

template <typename Button>
Button* button(const char* name, const QString& text, const QString& meaning, const QString& tip) {
  auto* made = new Button(text);
  made->setObjectName(controlName(name));
  made->setAccessibleName(meaning);
  made->setToolTip(tip);
  return made;
}

// Of a layout as its controls are now. Activating it makes the layouts inside forget what they needed before.
QSize needOf(QLayout* layout) {
  layout->invalidate();
  layout->activate();
  return layout->totalMinimumSize();
}

// In pixels, whole ones, with room for a last letter that leans over.
int widestOf(const QFontMetricsF& metrics, const QStringList& texts) {
  double width = 0;
  for (const QString& text : texts) width = std::max(width, metrics.horizontalAdvance(text));
  return static_cast<int>(std::ceil(width)) + 1;
}

// Tab goes to the option that is chosen, and the arrow keys from there to the others.
template <std::size_t kCount>
void shareTabStop(const std::array<QRadioButton*, kCount>& options) {
  for (QRadioButton* option : options)
    QObject::connect(option, &QRadioButton::toggled, option, [options, option](bool chosen) {
      if (!chosen) return;
      for (QRadioButton* other : options)
        other->setFocusPolicy(other == option ? Qt::StrongFocus : Qt::ClickFocus);
    });
}

double pointsOf(const QFont& font) {
  return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();  // set in pixels
}

}  // namespace

ControlPanel::ControlPanel(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("fraControl"));
  setAccessibleName(tr("Control panel"));
  makeStationControls();
  makeInputs();
  makePathReadouts();
  makeMarkerControls();

  fraStart = station("fraStart", {lblSLat, lblSLon, lblSAMSL}, {lblAMSLStart, lblAGLStart}, tbxAnt1AGL);
  fraEnd = station("fraEnd", {lblELat, lblELon, lblEAMSL}, {lblAMSLEnd, lblAGLEnd}, tbxAnt2AGL);

  auto* frequencyAndLosses = new QVBoxLayout;
  frequencyAndLosses->setSpacing(kBetweenFrames);
  frequencyAndLosses->addWidget(frequency());
  frequencyAndLosses->addWidget(losses(), 1);

  auto* top = row(kBetweenFrames);
  top->addWidget(fraStart, 3);
  top->addWidget(fraEnd, 3);
  top->addWidget(curve(), 1);
  top->addWidget(fresnel(), 1);
  top->addLayout(frequencyAndLosses, 3);

  auto* middle = row(kBetweenFrames);
  middle->addWidget(markers(), 2);
  middle->addWidget(pathFacts(), 1);

  auto* bottom = row(kBetweenFrames);
  bottom->addWidget(cursor(), 1);
  bottom->addWidget(cmdExit);

  auto* rows = new QVBoxLayout(this);
  // A panel that is too small squeezes its controls; it does not push the window apart.
  rows->setSizeConstraint(QLayout::SetNoConstraint);
  rows->setContentsMargins(kOuterMargin, 0, kOuterMargin, kOuterMargin);
  rows->setSpacing(kBetweenRows);
  rows->addLayout(top, 1);
  rows->addLayout(middle);
  rows->addLayout(bottom);

  orderTabs();
  showDatum({});
  showUnits({tr("meters"), tr("m"), tr("km")});
}

// ---- Controls ----

QLabel* ControlPanel::readout(const QString& name, const QString& tip, const QStringList& widest) {
  auto* label = new QLabel;
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setToolTip(tip);
  // An accessible name would be read instead of the value.
  label->setAccessibleDescription(tip);
  readouts_.push_back({label, widest});
  return label;
}

QLineEdit* ControlPanel::box(const char* name, const QString& meaning, const QString& tip,
                             const QString& widest) {
  auto* edit = new QLineEdit;
  edit->setObjectName(controlName(name));
  edit->setAccessibleName(meaning);
  edit->setToolTip(tip);
  edit->setAlignment(Qt::AlignRight);
  boxes_.push_back({edit, {widest}});
  return edit;
}

void ControlPanel::makeStationControls() {
  const QString antenna = QStringLiteral("2461");
  lblSLat = readout(QStringLiteral("lblSLat"), tr("Latitude of the start point"), latitudeTexts());
  lblSLon = readout(QStringLiteral("lblSLon"), tr("Longitude of the start point"), longitudeTexts());
  lblSAMSL = readout(QStringLiteral("lblSAMSL"), tr("Ground at the start point, above mean sea level"),
                     heightTexts());
  lblAMSLStart = caption("lblAMSLStart", {}, lblSAMSL);
  tbxAnt1AGL = box("tbxAnt1AGL", {}, {}, antenna);
  lblAGLStart = caption("lblAGLStart", {}, tbxAnt1AGL);
  lblELat = readout(QStringLiteral("lblELat"), tr("Latitude of the end point"), latitudeTexts());
  lblELon = readout(QStringLiteral("lblELon"), tr("Longitude of the end point"), longitudeTexts());
  lblEAMSL =
      readout(QStringLiteral("lblEAMSL"), tr("Ground at the end point, above mean sea level"), heightTexts());
  lblAMSLEnd = caption("lblAMSLEnd", {}, lblEAMSL);
  tbxAnt2AGL = box("tbxAnt2AGL", {}, {}, antenna);
  lblAGLEnd = caption("lblAGLEnd", {}, tbxAnt2AGL);
}

void ControlPanel::makeInputs() {
  using Option = QRadioButton;
  optCurve = {button<Option>("optCurve(0)", tr("1.333"), tr("E-Curve 1.333"),
                             tr("Standard atmosphere: an effective earth radius of 4/3")),
              button<Option>("optCurve(1)", tr("1.000"), tr("E-Curve 1.000"), tr("The true earth radius")),
              button<Option>("optCurve(2)", {}, tr("Custom E-Curve"), tr("The factor in the box beside"))};
  tbxCurve = box("tbxCurve", tr("Custom E-Curve factor"), tr("Effective-earth factor k, 0.5 to 1.75"),
                 QStringLiteral("1.333"));
  optFresnel = {
      button<Option>("optFresnel(0)", tr("100"), tr("100 % Fresnel"), tr("The whole first Fresnel zone")),
      button<Option>("optFresnel(1)", tr("60"), tr("60 % Fresnel"), tr("60 % of the first Fresnel zone")),
      button<Option>("optFresnel(2)", {}, tr("Custom % Fresnel"), tr("The percentage in the box beside")),
      button<Option>("optFresnel(3)", tr("None"), tr("No Fresnel line"), tr("No Fresnel line"))};
  tbxpctFresnel = box("tbxpctFresnel", tr("Custom Fresnel percentage"),
                      tr("Percentage of the first Fresnel zone, 1 to 100"), QStringLiteral("62.5"));
  tbxFreq = box("tbxFreq", tr("Frequency, MHz"), tr("Frequency, 20 to 20000 MHz"), QStringLiteral("20000"));
  lblLambda = readout(QStringLiteral("lblLambda"), tr("Wavelength, meters"), {QStringLiteral("14.999")});
}

void ControlPanel::makePathReadouts() {
  const QStringList loss{QStringLiteral("200.55")};
  lblFSLoss = readout(QStringLiteral("lblFSLoss"), tr("Loss in free space, dB"), loss);
  lblMLoss = readout(QStringLiteral("lblMLoss"), tr("Loss by the terrain model, dB"), loss);
  lblHeight = caption("lblHeight", {}, nullptr);
  lblMaxHt = readout(QStringLiteral("lblMaxHt"), tr("Highest ground between the stations"), heightTexts());
  lblMinHt = readout(QStringLiteral("lblMinHt"), tr("Lowest ground between the stations"), heightTexts());
  lblAvHt = readout(QStringLiteral("lblAvHt"), tr("Average ground between the stations"), heightTexts());
  lblDist =
      readout(QStringLiteral("lblDist"), tr("Distance between the stations"), {QStringLiteral("1,234.5")});
  lblRange = caption("lblRange", {}, lblDist);
  lblAzd = readout(QStringLiteral("lblAzd"),
                   tr("Bearing from the start point to the end point, degrees from north"),
                   {QStringLiteral("359.9")});
}

void ControlPanel::makeMarkerControls() {
  const QStringList distance{QStringLiteral("1,234.56")};
  for (std::size_t i = 0; i < 2; ++i) {
    const QString number = QString::number(i + 1);
    const QString name = QStringLiteral("lblMk") + number;
    lblMkLat.at(i) =
        readout(name + QStringLiteral("Lat"), tr("Latitude of marker %1").arg(number), latitudeTexts());
    lblMkLon.at(i) =
        readout(name + QStringLiteral("Lon"), tr("Longitude of marker %1").arg(number), longitudeTexts());
    lblMkHt.at(i) = readout(name + QStringLiteral("Ht"), tr("Height of the ground at marker %1").arg(number),
                            heightTexts());
    lblMkPosn.at(i) = readout(name + QStringLiteral("Posn"),
                              tr("Distance from marker %1 to the cursor").arg(number), distance);
  }
  lblMkHeight_ = caption("lblMkHeight", {}, nullptr);
  lblToCursor = caption("lblToCursor", {}, nullptr);
  cmdClear = {button<QPushButton>("cmdClear1", tr("C&lear"), tr("Clear marker 1"), tr("Remove marker 1")),
              button<QPushButton>("cmdClear2", tr("Cle&ar"), tr("Clear marker 2"), tr("Remove marker 2"))};
  lblCurPosn =
      readout(QStringLiteral("lblCurPosn"), tr("Distance from the start point to the cursor"), distance);
  lblFromStart = caption("lblFromStart", {}, lblCurPosn);
  lblCurHt =
      readout(QStringLiteral("lblCurHt"), tr("Ground under the cursor, above mean sea level"), heightTexts());
  lblCursorAMSL = caption("lblCursorAMSL", {}, lblCurHt);
  lblmbelowmouse = readout(QStringLiteral("lblmbelowmouse"),
                           tr("How far the ground lies below the mouse; negative: above it"),
                           {QStringLiteral("-12,345.6")});
  lblBelowMouse = caption("lblBelowMouse", {}, lblmbelowmouse);
  cmdExit = button<QPushButton>("cmdExit", tr("&Close"), tr("Close"), tr("Close this window"));
}

// ---- Frames ----

// A frame without a title says to assistive tools what it holds.
QGroupBox* ControlPanel::frame(const char* name, const QString& title, const QString& meaning) {
  auto* group = new QGroupBox(title);
  group->setObjectName(controlName(name));
  group->setAccessibleName(meaning);
  frames_.push_back(group);
  return group;
}

QGroupBox* ControlPanel::station(const char* name, std::array<QLabel*, 3> values,
                                 std::array<QLabel*, 2> heightCaptions, QLineEdit* antenna) {
  QGroupBox* group = frame(name, {}, {});
  auto* rows = rowsIn(group);
  const std::array<const char*, 2> captionNames =
      values[0] == lblSLat ? std::array{"lblLatStart", "lblLonStart"} : std::array{"lblLatEnd", "lblLonEnd"};
  rows->addLayout(captioned(caption(captionNames[0], tr("Lat"), values[0]), values[0]));
  rows->addLayout(captioned(caption(captionNames[1], tr("Lon"), values[1]), values[1]));
  rows->addLayout(captioned(heightCaptions[0], values[2]));
  rows->addLayout(captioned(heightCaptions[1], antenna));
  return group;
}

QGroupBox* ControlPanel::curve() {
  QGroupBox* group = frame("fraCurve", tr("E-C&urve"), tr("E-Curve"));
  auto* rows = rowsIn(group);
  rows->addWidget(optCurve[0]);
  rows->addWidget(optCurve[1]);
  auto* custom = row(kBesideText);
  custom->addWidget(optCurve[2]);
  custom->addWidget(tbxCurve);
  custom->addStretch();
  rows->addLayout(custom);
  return group;
}

QGroupBox* ControlPanel::fresnel() {
  QGroupBox* group = frame("fraFresnel", tr("% &Fresnel"), tr("% Fresnel"));
  auto* rows = rowsIn(group);
  auto* presets = row(kBesideText);
  presets->addWidget(optFresnel[0]);
  presets->addWidget(optFresnel[1]);
  presets->addStretch();
  auto* custom = row(kBesideText);
  custom->addWidget(optFresnel[2]);
  custom->addWidget(tbxpctFresnel);
  custom->addStretch();
  rows->addLayout(presets);
  rows->addWidget(optFresnel[3]);
  rows->addLayout(custom);
  return group;
}

QGroupBox* ControlPanel::frequency() {
  QGroupBox* group = frame("fraFreq", tr("F&req"), tr("Frequency"));
  auto* line = row(kBesideText);
  rowsIn(group)->addLayout(line);
  line->addWidget(tbxFreq);
  line->addWidget(caption("lblMHz", tr("MHz"), tbxFreq));
  line->addStretch();
  line->addWidget(caption("lblLambdaSign", tr("λ"), lblLambda));
  line->addWidget(lblLambda);
  line->addWidget(caption("lblLambdaUnit", tr("m"), nullptr));
  return group;
}

QGroupBox* ControlPanel::losses() {
  QGroupBox* group = frame("fraLoss", tr("Path Loss"), {});
  auto* rows = rowsIn(group);
  rows->addLayout(captioned(caption("lblFreeSpace", tr("Free Space"), lblFSLoss), lblFSLoss,
                            caption("lblFreeSpaceUnit", tr("dB"), nullptr)));
  rows->addLayout(captioned(caption("lblModeled", tr("Modeled"), lblMLoss), lblMLoss,
                            caption("lblModeledUnit", tr("dB"), nullptr)));
  return group;
}

QGroupBox* ControlPanel::pathFacts() {
  QGroupBox* group = frame("fraHeight", {}, tr("Height, range and bearing"));
  auto* columns = compact(new QHBoxLayout(group));
  columns->setSpacing(2 * kBetweenColumns);
  auto* heights = new QVBoxLayout;
  heights->setSpacing(kBetweenRows);
  heights->addWidget(lblHeight);
  heights->addLayout(captioned(caption("lblMaximum", tr("Maximum"), lblMaxHt), lblMaxHt));
  heights->addLayout(captioned(caption("lblMinimum", tr("Minimum"), lblMinHt), lblMinHt));
  heights->addLayout(captioned(caption("lblAverage", tr("Average"), lblAvHt), lblAvHt));
  auto* path = new QVBoxLayout;
  path->setSpacing(kBetweenRows);
  path->addWidget(lblRange, 0, Qt::AlignRight);
  path->addWidget(lblDist, 0, Qt::AlignRight);
  path->addWidget(caption("lblBearing", tr("Bearing"), lblAzd), 0, Qt::AlignRight);
  path->addWidget(lblAzd, 0, Qt::AlignRight);
  columns->addLayout(heights, 4);
  columns->addLayout(path, 2);
  columns->addStretch(1);
  return group;
}

QGroupBox* ControlPanel::markers() {
  QGroupBox* group = frame("fraMarkers", {}, tr("Markers"));
  auto* grid = compact(new QGridLayout(group));
  grid->setHorizontalSpacing(kBetweenColumns);
  const std::array<QLabel*, 4> headings{caption("lblMkLatitude", tr("Latitude"), nullptr),
                                        caption("lblMkLongitude", tr("Longitude"), nullptr), lblMkHeight_,
                                        lblToCursor};
  for (int column = 0; column < 4; ++column) {
    grid->addWidget(headings.at(static_cast<std::size_t>(column)), 0, column + 1, Qt::AlignRight);
    grid->setColumnStretch(column + 1, 1);
  }
  for (std::size_t i = 0; i < 2; ++i) {
    const int line = static_cast<int>(i) + 1;
    grid->addWidget(
        caption(i == 0 ? "lblMarker1" : "lblMarker2", i == 0 ? tr("Marker 1") : tr("Marker 2"), nullptr),
        line, 0);
    grid->addWidget(lblMkLat.at(i), line, 1, Qt::AlignRight);
    grid->addWidget(lblMkLon.at(i), line, 2, Qt::AlignRight);
    grid->addWidget(lblMkHt.at(i), line, 3, Qt::AlignRight);
    grid->addWidget(lblMkPosn.at(i), line, 4, Qt::AlignRight);
    grid->addWidget(cmdClear.at(i), line, 5);
  }
  return group;
}

QGroupBox* ControlPanel::cursor() {
  QGroupBox* group = frame("fraCursor", {}, tr("Cursor"));
  auto* line = compact(new QHBoxLayout(group));
  line->setSpacing(kBesideText);
  line->addWidget(caption("lblCursor", tr("Cursor"), nullptr));
  const std::array<std::pair<QLabel*, QLabel*>, 3> values{
      {{lblCurPosn, lblFromStart}, {lblCurHt, lblCursorAMSL}, {lblmbelowmouse, lblBelowMouse}}};
  for (const auto& [value, unit] : values) {
    line->addStretch();
    line->addWidget(value);
    line->addWidget(unit);
  }
  return group;
}

void ControlPanel::orderTabs() {
  // As they stand: "None" before the custom percentage.
  const std::array<QWidget*, 15> order{tbxAnt1AGL,    tbxAnt2AGL,    optCurve[0],   optCurve[1],
                                       optCurve[2],   tbxCurve,      optFresnel[0], optFresnel[1],
                                       optFresnel[3], optFresnel[2], tbxpctFresnel, tbxFreq,
                                       cmdClear[0],   cmdClear[1],   cmdExit};
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
  shareTabStop(optCurve);
  shareTabStop(optFresnel);
}

// ---- Texts ----

void ControlPanel::showUnits(const UnitTexts& units) {
  // " AMSL" and " below mouse" follow the unit's name, everything else its abbreviation.
  const auto inBrackets = [&units](const QString& text) {
    return text + QLatin1Char('(') + units.heightAbbreviation + QLatin1Char(')');
  };
  for (QLabel* label : {lblAMSLStart, lblAMSLEnd}) label->setText(inBrackets(tr("AMSL ")));
  for (QLabel* label : {lblAGLStart, lblAGLEnd}) label->setText(inBrackets(tr("Ant AGL ")));
  for (QLabel* label : {lblHeight, lblMkHeight_}) label->setText(inBrackets(tr("Height")));
  lblRange->setText(tr("Range ") + units.distanceAbbreviation);
  lblToCursor->setText(units.distanceAbbreviation + tr(" to Cursor"));
  lblFromStart->setText(units.distanceAbbreviation + tr(" from start"));
  lblCursorAMSL->setText(units.heightName + tr(" AMSL"));
  lblBelowMouse->setText(units.heightName + tr(" below mouse"));

  const QString tip = tr("Antenna height above ground, %1; limits: 1 to 750 meters").arg(units.heightName);
  tbxAnt1AGL->setAccessibleName(tr("Start antenna height above ground, %1").arg(units.heightName));
  tbxAnt2AGL->setAccessibleName(tr("End antenna height above ground, %1").arg(units.heightName));
  for (QLineEdit* antenna : {tbxAnt1AGL, tbxAnt2AGL}) antenna->setToolTip(tip);
  forgetSizes();
  fitFont();
}

void ControlPanel::showDatum(const QString& datum) {
  const QString brackets = datum.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(datum);
  fraStart->setTitle(tr("&Start Point") + brackets);
  fraEnd->setTitle(tr("E&nd Point") + brackets);
  forgetSizes();
  fitFont();
}

// ---- Size ----

void ControlPanel::fitFont() {
  const QFont wanted = QApplication::font();
  if (wanted != wantedFont_) {
    wantedFont_ = wanted;
    forgetSizes();
  }
  const auto fits = [this](const QSize& needed) {
    return needed.width() <= width() && needed.height() <= height();
  };
  double points = pointsOf(wanted);
  while (points > kLeastPoints && !fits(neededSize(points)))
    points = std::max(kLeastPoints, points - kPointStep);
  showPoints(points);
}

void ControlPanel::forgetSizes() {
  needs_.clear();
  shownPoints_ = 0;
}

QSize ControlPanel::neededSize(double points) {
  for (const Need& need : needs_)
    if (need.points == points) return need.size;
  showPoints(points);
  needs_.push_back({points, needOf(layout())});
  return needs_.back().size;
}

void ControlPanel::showPoints(double points) {
  if (points == shownPoints_) return;
  shownPoints_ = points;
  QFont shown = wantedFont_;
  if (points != pointsOf(wantedFont_)) shown.setPointSizeF(points);
  setFont(shown);
  giveRoom();
}

void ControlPanel::giveRoom() {
  ensurePolished();
  const QFontMetrics metrics = fontMetrics();
  const QFontMetricsF exactly(font(), this);
  const int line = static_cast<int>(std::ceil(exactly.height()));
  for (QLabel* label : findChildren<QLabel*>()) label->setFixedHeight(line);
  // Fixed in both directions, so that numbers that change under the pointer lay nothing out anew.
  for (const Room<QLabel>& room : readouts_) room.control->setFixedWidth(widestOf(exactly, room.widest));
  for (const Room<QLineEdit>& room : boxes_) {
    QStyleOptionFrame option;
    option.initFrom(room.control);
    option.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, room.control);
    const QSize text(widestOf(exactly, room.widest) + kBoxPadding, metrics.height());
    room.control->setFixedWidth(
        style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, room.control).width());
  }
  // Narrower than buttons usually are.
  for (QPushButton* clear : cmdClear) {
    const int text = metrics.size(Qt::TextShowMnemonic, clear->text()).width();
    clear->setFixedWidth(text + style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, clear) +
                         2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, clear));
  }
  // What a frame holds and its title decide; what styles ask for on top is more than there is.
  for (QGroupBox* group : frames_) {
    const int title = metrics.size(Qt::TextShowMnemonic, group->title()).width();
    const QSize contents = needOf(group->layout());
    group->setMinimumSize(std::max(contents.width(), title + kTitleRoom), contents.height());
  }
}

void ControlPanel::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() != QEvent::StyleChange) return;
  forgetSizes();
  fitFont();
}

void ControlPanel::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  fitFont();
}

}  // namespace zel
