#include "desktop/report_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <optional>

#include "desktop/shown_values.h"
#include "report/report_job.h"

namespace zel::host {
namespace {

// Of this run of the program.
struct LastReport {
  int paper = 0, orientation = 0;
};
std::optional<LastReport>& lastReport() {
  static std::optional<LastReport> last;
  return last;
}

QComboBox* addChoice(QFormLayout* form, const QString& caption, const char* name, const QString& tip,
                     const QStringList& choices, int current) {
  auto* box = new QComboBox;
  box->setObjectName(QLatin1String(name));
  box->setToolTip(tip);
  QString plain = caption;
  box->setAccessibleName(plain.remove(u'&').remove(u':'));
  box->addItems(choices);
  box->setCurrentIndex(current);
  form->addRow(caption, box);  // makes the label its buddy
  return box;
}

}  // namespace

ReportDialog::ReportDialog(std::size_t all, std::size_t chosen, QWidget* parent)
    : QDialog(parent),
      all_(new QRadioButton(QStringLiteral("&All: ") + counted(all, "link"))),
      chosen_(new QRadioButton(QStringLiteral("&Chosen: ") + counted(chosen, "link"))) {
  setObjectName(QStringLiteral("reportDialog"));
  setWindowTitle(QStringLiteral("Report"));
  all_->setObjectName(QStringLiteral("reportAll"));
  all_->setToolTip(QStringLiteral("A page for each link of the plan"));
  chosen_->setObjectName(QStringLiteral("reportChosen"));
  chosen_->setToolTip(QStringLiteral("A page for each link that is chosen on the map or in the table"));
  chosen_->setEnabled(chosen > 0);
  all_->setChecked(true);

  const bool letter = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
  const LastReport start = lastReport().value_or(LastReport{letter ? 1 : 0, 0});
  auto* form = new QFormLayout;
  paper_ = addChoice(form, QStringLiteral("&Paper:"), "reportPaper", QStringLiteral("Paper of the pages"),
                     {QStringLiteral("A4"), QStringLiteral("Letter")}, start.paper);
  orientation_ = addChoice(form, QStringLiteral("&Orientation:"), "reportOrientation",
                           QStringLiteral("Which side of the paper is the longer one"),
                           {QStringLiteral("Portrait"), QStringLiteral("Landscape")}, start.orientation);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("reportOk"));
  buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("&Save..."));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("reportCancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
  connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("A PDF with a page for each link: map, profile and values.")));
  layout->addWidget(all_);
  layout->addWidget(chosen_);
  layout->addLayout(form);
  layout->addStretch();
  layout->addWidget(buttons);
}

bool ReportDialog::onlyChosen() const { return chosen_->isChecked(); }

Sheet ReportDialog::sheet() const {
  const Sheet upright = paper_->currentIndex() == 1 ? kSheetLetter : kSheetA4;
  return orientation_->currentIndex() == 1 ? lying(upright) : upright;
}

void ReportDialog::accept() {
  lastReport() = {paper_->currentIndex(), orientation_->currentIndex()};
  QDialog::accept();
}

}  // namespace zel::host
