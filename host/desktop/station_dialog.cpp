#include "desktop/station_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zel::host {
namespace {

QLineEdit* addBox(QFormLayout* form, const QString& caption, const char* name, const QString& tip,
                  const QString& text) {
  auto* box = new QLineEdit(text);
  box->setObjectName(QLatin1String(name));
  box->setToolTip(tip);
  QString plain = caption;
  box->setAccessibleName(plain.remove(u'&').remove(u':'));
  form->addRow(caption, box);  // makes the label its buddy
  return box;
}

}  // namespace

StationDialog::StationDialog(const QString& title, const Station& station, bool hasPosition,
                             const ShownUnits& units, QWidget* parent)
    : QDialog(parent), units_(units), station_(station), problem_(new QLabel(this)) {
  setObjectName(QStringLiteral("stationDialog"));
  setWindowTitle(title);
  if (hasPosition) shownPosition_ = shownPosition(station.position, units);
  shownAntenna_ = heightNumber(station.antennaM, units, -2);

  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  name_ = addBox(form, QStringLiteral("&Name:"), "stationName", QStringLiteral("Name of the station"),
                 QString::fromStdString(station.name));
  name_->setMaxLength(static_cast<int>(kLongestName));
  position_ = addBox(form, QStringLiteral("&Position:"), "stationPosition",
                     QStringLiteral("Latitude and longitude: 36.4, -84.35 or 36-24-00 N, 84-21-00 W"),
                     shownPosition_);
  position_->setPlaceholderText(QStringLiteral("36-24-00 N, 84-21-00 W"));
  antenna_ = addBox(form, QStringLiteral("&Antenna (%1):").arg(heightUnit(units)), "stationAntenna",
                    QStringLiteral("Antenna height above ground"), shownAntenna_);

  problem_->setObjectName(QStringLiteral("stationProblem"));
  problem_->setWordWrap(true);
  problem_->setTextFormat(Qt::PlainText);
  problem_->hide();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("stationOk"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("stationCancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
  connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(problem_);
  layout->addStretch();
  layout->addWidget(buttons);
  // A position in degrees, minutes and seconds is seen whole.
  position_->setMinimumWidth(
      position_->fontMetrics().horizontalAdvance(QStringLiteral("00-00-00.0 N, 000-00-00.0 W000")));
  name_->selectAll();
  (hasPosition ? name_ : position_)->setFocus();
}

void StationDialog::refuse(QLineEdit* box, const QString& problem) {
  problem_->setText(problem);
  problem_->show();
  box->setFocus();
  box->selectAll();
}

void StationDialog::accept() {
  Station typed = station_;
  typed.name = tidyName(name_->text().toStdString());
  // What was left as it was filled in is not rounded to what is shown.
  if (shownPosition_.isEmpty() || position_->text() != shownPosition_) {
    const auto position = typedPosition(position_->text());
    if (!position.value) return refuse(position_, position.problem);
    typed.position = *position.value;
  }
  if (antenna_->text() != shownAntenna_) {
    const auto antenna = typedAntenna(antenna_->text(), units_);
    if (!antenna.value) return refuse(antenna_, antenna.problem);
    typed.antennaM = *antenna.value;
  }
  if (const std::string problem = stationProblem(typed); !problem.empty())
    return refuse(name_, QString::fromStdString(problem));
  station_ = typed;
  QDialog::accept();
}

}  // namespace zel::host
