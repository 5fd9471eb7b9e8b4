#include "zeltool/link_budget/link_budget_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>
#include <exception>
#include <utility>

#include "foundation/number_text.h"
#include "zeltool/link_budget/link_budget_report.h"
#include "zeltool/link_budget/link_budget_settings.h"

namespace zel {
namespace {

using Term = LinkBudgetTerm;

QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

struct RowWords {
  const char* objectName;
  const char* caption;
  const char* tip;
};

RowWords wordsOf(Term term) {
  switch (term) {
    case Term::kTransmitterPower:
      return {"tbxTxPower", "&Power", "Power that the transmitter delivers, in decibels above one milliwatt"};
    case Term::kTransmitterGain:
      return {"tbxTxGain", "Antenna &gain",
              "Gain of the transmitting antenna towards the receiver, over an isotropic antenna"};
    case Term::kTransmitterLosses:
      return {"tbxTxLosses", "&Losses", "Losses of cables, connectors and filters at the transmitter"};
    case Term::kPathLoss:
      return {"tbxPathLoss", "L&oss", "Loss between isotropic antennas; the profile's modeled loss at first"};
    case Term::kReceiverGain:
      return {"tbxRxGain", "A&ntenna gain",
              "Gain of the receiving antenna towards the transmitter, over an isotropic antenna"};
    case Term::kReceiverLosses:
      return {"tbxRxLosses", "Lo&sses", "Losses of cables, connectors and filters at the receiver"};
    case Term::kThreshold:
      return {"tbxThreshold", "&Threshold", "Least power at the receiver's input with which the link works"};
  }
  return {"", "", ""};
}

// A label that is read out together with its value.
void showValue(QLabel& label, const QString& name, const QString& value) {
  label.setText(value);
  label.setAccessibleName(value.isEmpty() ? name : name + QStringLiteral(": ") + value);
}

// Room for two lines, so that the window keeps its size while the words change.
void reserveTwoLines(QLabel& label) {
  label.setWordWrap(true);
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label.setText(QStringLiteral("X\nX"));
  label.setMinimumHeight(label.heightForWidth(1000));
  label.clear();
}

}  // namespace

LinkBudgetDialog::LinkBudgetDialog(std::shared_ptr<SettingsStore> settings) : settings_(std::move(settings)) {
  setObjectName(QStringLiteral("frmLinkBudget"));
  setWindowTitle(tr("Link Budget"));
  setModal(false);
  // A helper beside the host's windows: closing it must not end the host.
  setAttribute(Qt::WA_QuitOnClose, false);
  build();
}

LinkBudgetDialog::~LinkBudgetDialog() {
  remember();
  // A box that has the focus reports its end once more while the base classes are taken down.
  for (const Row& each : rows_) each.box->disconnect(this);
}

// ---- Building ----

void LinkBudgetDialog::build() {
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(inputGroup(tr("Transmitter"),
                               {Term::kTransmitterPower, Term::kTransmitterGain, Term::kTransmitterLosses}));
  layout->addWidget(inputGroup(tr("Path"), {Term::kPathLoss}));
  layout->addWidget(
      inputGroup(tr("Receiver"), {Term::kReceiverGain, Term::kReceiverLosses, Term::kThreshold}));
  layout->addWidget(resultGroup());
  notice_ = new QLabel(this);
  notice_->setObjectName(QStringLiteral("lblNotice"));
  notice_->setWordWrap(true);
  notice_->setVisible(false);
  layout->addWidget(notice_);
  layout->addWidget(buttons());
  row(Term::kTransmitterPower).box->setFocus();
}

QWidget* LinkBudgetDialog::inputGroup(const QString& caption, std::initializer_list<LinkBudgetTerm> terms) {
  auto* group = new QGroupBox(caption, this);
  auto* grid = new QGridLayout(group);
  for (const Term term : terms) addRow(*grid, term);
  return group;
}

void LinkBudgetDialog::addRow(QGridLayout& grid, LinkBudgetTerm term) {
  QWidget* group = grid.parentWidget();
  const LinkBudgetEntry& entry = linkBudgetEntry(term);
  const RowWords words = wordsOf(term);
  const int line = grid.rowCount();

  auto* box = new QLineEdit(group);
  box->setObjectName(QLatin1String(words.objectName));
  box->setAccessibleName(tr("%1 in %2").arg(text(entry.name), text(entry.unit)));
  box->setToolTip(
      tr(words.tip) + QStringLiteral(", ") +
      tr("%1 to %2 %3")
          .arg(text(generalNumber(entry.low)), text(generalNumber(entry.high)), text(entry.unit)));
  box->setAlignment(Qt::AlignRight);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-10000.000000000")));
  connect(box, &QLineEdit::textChanged, this, [this] { refresh(); });
  connect(box, &QLineEdit::editingFinished, this, [this] { remember(); });

  auto* caption = new QLabel(tr(words.caption), group);
  caption->setMinimumWidth(caption->fontMetrics().horizontalAdvance(QStringLiteral("Antenna gain  ")));
  caption->setBuddy(box);
  auto* mark = new QLabel(group);
  mark->setObjectName(QLatin1String(words.objectName) + QStringLiteral("_mark"));
  mark->setFixedWidth(mark->fontMetrics().horizontalAdvance(QStringLiteral(" ! ")));
  mark->setAlignment(Qt::AlignCenter);
  QFont bold = mark->font();
  bold.setBold(true);
  mark->setFont(bold);
  row(term) = {box, mark};

  auto* unit = new QLabel(text(entry.unit), group);
  unit->setMinimumWidth(unit->fontMetrics().horizontalAdvance(QStringLiteral("dBm ")));
  grid.addWidget(caption, line, 0);
  grid.addWidget(box, line, 1);
  grid.addWidget(mark, line, 2);
  grid.addWidget(unit, line, 3);
  grid.setColumnStretch(4, 1);
  if (term == Term::kTransmitterPower) {
    watts_ = new QLabel(group);
    watts_->setObjectName(QStringLiteral("lblWatts"));
    watts_->setToolTip(tr("The same power in watts"));
    watts_->setMinimumWidth(watts_->fontMetrics().horizontalAdvance(QStringLiteral("= 99.99 mW  ")));
    grid.addWidget(watts_, line, 4);
  }
  if (term == Term::kPathLoss) addPathLossTools(grid);
}

void LinkBudgetDialog::addPathLossTools(QGridLayout& grid) {
  modeled_ =
      addButton(grid.parentWidget(), "cmdModeled", tr("&Modeled"),
                tr("Put the profile's modeled loss back into the box"), &LinkBudgetDialog::showModeledLoss);
  source_ = new QLabel(grid.parentWidget());
  source_->setObjectName(QStringLiteral("lblSource"));
  source_->setToolTip(tr("Where the path loss comes from"));
  reserveTwoLines(*source_);
  const int line = grid.rowCount();
  grid.addWidget(modeled_, line - 1, 4, Qt::AlignLeft);
  grid.addWidget(source_, line, 0, 1, 5);
}

QWidget* LinkBudgetDialog::resultGroup() {
  auto* group = new QGroupBox(tr("Result"), this);
  auto* grid = new QGridLayout(group);
  radiated_ = addResult(*grid, "lblRadiated", tr("Radiated power (EIRP)"),
                        tr("Transmitter power and antenna gain without the transmitter's losses"));
  received_ = addResult(*grid, "lblReceived", tr("Received power"), tr("Power at the receiver's input"));
  margin_ = addResult(*grid, "lblMargin", tr("Margin"), tr("Received power above the receiver's threshold"));
  QFont strong = margin_->font();
  strong.setBold(true);
  margin_->setFont(strong);
  verdict_ = new QLabel(group);
  verdict_->setObjectName(QStringLiteral("lblVerdict"));
  verdict_->setToolTip(tr("Whether the link holds, or which input is needed"));
  verdict_->setFont(strong);
  reserveTwoLines(*verdict_);
  grid->addWidget(verdict_, grid->rowCount(), 0, 1, 3);
  grid->setColumnStretch(2, 1);
  return group;
}

QLabel* LinkBudgetDialog::addResult(QGridLayout& grid, const char* name, const QString& caption,
                                    const QString& tip) {
  auto* value = new QLabel(grid.parentWidget());
  value->setObjectName(QLatin1String(name));
  value->setToolTip(tip);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("-1000.00 dBm  ")));
  const int line = grid.rowCount();
  grid.addWidget(new QLabel(caption, grid.parentWidget()), line, 0);
  grid.addWidget(value, line, 1);
  return value;
}

QWidget* LinkBudgetDialog::buttons() {
  auto* bar = new QWidget(this);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  copy_ =
      addButton(bar, "cmdCopy", tr("&Copy"), tr("Copy the whole budget as text"), &LinkBudgetDialog::copy);
  layout->addWidget(copy_);
  layout->addWidget(addButton(bar, "cmdDefaults", tr("&Defaults"),
                              tr("Put the defaults into all boxes, and the modeled loss"),
                              &LinkBudgetDialog::restoreDefaults));
  layout->addStretch(1);
  auto* close = new QPushButton(tr("Clos&e"), bar);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setAccessibleName(tr("Close"));
  close->setToolTip(tr("Close the link budget; what is typed is remembered"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, [this] { reject(); });
  layout->addWidget(close);
  return bar;
}

// No button takes Enter away from the boxes.
QPushButton* LinkBudgetDialog::addButton(QWidget* parent, const char* name, const QString& caption,
                                         const QString& tip, void (LinkBudgetDialog::*clicked)()) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
  button->setToolTip(tip);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, clicked] { (this->*clicked)(); });
  return button;
}

// ---- Opening ----

void LinkBudgetDialog::openFor(const std::string& title, std::string_view modeledLossText) {
  if (!isVisible() || title != title_) {
    const LinkBudgetInputs stored = readLinkBudget(*settings_, title);
    remember();  // what was typed for another title
    title_ = title;
    for (const LinkBudgetEntry& entry : linkBudgetEntries())
      remembered_[static_cast<std::size_t>(entry.term)] = stored[entry.term];
    showInputs(stored);
    notice_->setVisible(false);
  }
  modeledLoss_ = linkBudgetNumber(modeledLossText);
  showModeledLoss();
  stayInFrontOf(QApplication::activeWindow());
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  // Where there is no loss, it is what is to be typed.
  QLineEdit* first = row(modeledLoss_ ? Term::kTransmitterPower : Term::kPathLoss).box;
  first->setFocus(Qt::OtherFocusReason);
  first->selectAll();
}

// Without an owner among the widgets, which would take the window along when it is deleted.
void LinkBudgetDialog::stayInFrontOf(const QWidget* window) {
  if (window == nullptr || window == this || window->windowHandle() == nullptr) return;
  winId();  // makes the native window
  windowHandle()->setTransientParent(window->windowHandle());
}

void LinkBudgetDialog::showInputs(const LinkBudgetInputs& inputs) {
  for (const LinkBudgetEntry& entry : linkBudgetEntries())
    if (entry.term != Term::kPathLoss) row(entry.term).box->setText(text(generalNumber(inputs[entry.term])));
}

void LinkBudgetDialog::showModeledLoss() {
  row(Term::kPathLoss).box->setText(modeledLoss_ ? text(generalNumber(*modeledLoss_)) : QString());
  refresh();
}

// ---- The budget ----

std::optional<double> LinkBudgetDialog::value(LinkBudgetTerm term) const {
  return acceptedValue(linkBudgetEntry(term), row(term).box->text().toStdString());
}

std::optional<LinkBudgetInputs> LinkBudgetDialog::inputs() const {
  LinkBudgetInputs inputs;
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    const std::optional<double> accepted = value(entry.term);
    if (!accepted) return std::nullopt;
    inputs[entry.term] = *accepted;
  }
  return inputs;
}

std::string LinkBudgetDialog::firstRequirement() const {
  for (const LinkBudgetEntry& entry : linkBudgetEntries())
    if (!value(entry.term)) return requirement(entry);
  return {};
}

void LinkBudgetDialog::refresh() {
  showMarks();
  const std::optional<double> power = value(Term::kTransmitterPower);
  showValue(*watts_, tr("Transmitter power in watts"), power ? text("= " + wattText(*power)) : QString());
  const QString source =
      text(pathLossSource(linkBudgetNumber(row(Term::kPathLoss).box->text().toStdString()), modeledLoss_));
  showValue(*source_, tr("Source of the path loss"), source);
  modeled_->setEnabled(modeledLoss_.has_value());
  showResult(inputs());
}

void LinkBudgetDialog::showMarks() {
  for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
    const Row& shown = row(entry.term);
    const QString wrong = value(entry.term) ? QString() : text(requirement(entry));
    shown.mark->setText(wrong.isEmpty() ? QString() : QStringLiteral("!"));
    shown.mark->setToolTip(wrong);
    shown.box->setAccessibleDescription(wrong);
  }
}

void LinkBudgetDialog::showResult(const std::optional<LinkBudgetInputs>& inputs) {
  const LinkBudgetResult result = inputs ? computeLinkBudget(*inputs) : LinkBudgetResult();
  const auto shown = [&inputs](double value, const char* unit) {
    return inputs ? text(decibelText(value) + " " + unit) : QString();
  };
  showValue(*radiated_, tr("Radiated power (EIRP)"), shown(result.radiatedPowerDbm, "dBm"));
  showValue(*received_, tr("Received power"), shown(result.receivedPowerDbm, "dBm"));
  showValue(*margin_, tr("Margin"), shown(result.marginDb, "dB"));
  showValue(*verdict_, tr("Verdict"), text(inputs ? verdictText(result.marginDb) : firstRequirement()));
  copy_->setEnabled(inputs.has_value());
}

// ---- Buttons and memory ----

void LinkBudgetDialog::copy() {
  if (const std::optional<LinkBudgetInputs> complete = inputs())
    QApplication::clipboard()->setText(text(linkBudgetReport(*complete, modeledLoss_)));
}

void LinkBudgetDialog::restoreDefaults() {
  showInputs(defaultLinkBudget());
  showModeledLoss();
  remember();
}

// A window that goes away takes its notice with it, so the first failure keeps it; after that it closes.
void LinkBudgetDialog::reject() {
  const bool told = !notice_->isHidden();
  if (remember() || told) QDialog::reject();
}

void LinkBudgetDialog::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) remember();
  QDialog::hideEvent(event);
}

// Called from the toolkit and from the end of the window: a failure is shown, never thrown.
bool LinkBudgetDialog::remember() {
  try {
    for (const LinkBudgetEntry& entry : linkBudgetEntries()) {
      const std::optional<double> typed = value(entry.term);
      std::optional<double>& stored = remembered_[static_cast<std::size_t>(entry.term)];
      if (entry.key.empty() || !typed || typed == stored) continue;
      writeLinkBudgetTerm(*settings_, title_, entry.term, *typed);
      stored = typed;
    }
    notice_->setVisible(false);
    return true;
  } catch (const std::exception& failure) {
    notice_->setText(tr("The inputs could not be remembered: %1").arg(QString::fromUtf8(failure.what())));
    notice_->setVisible(true);
    return false;
  }
}

}  // namespace zel
