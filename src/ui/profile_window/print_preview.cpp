#include "ui/profile_window/print_preview.h"

#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/profile_window/frm_prt_desc.h"
#include "ui/profile_window/page_view.h"

namespace zel {
namespace {

constexpr QSize kFirstSize(660, 760);  // logical pixels, as the next
constexpr QSize kLeastView(240, 240);  // so that a fitted page can be told

QSize& lastSize() {
  static QSize size = kFirstSize;
  return size;
}

QPushButton* makeButton(const char* name, const QString& caption, const QString& accessibleName,
                        const QString& tip) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(accessibleName);
  button->setToolTip(tip);
  // Enter in the description is no order to print.
  button->setAutoDefault(false);
  return button;
}

QComboBox* makeList(const char* name, const QString& accessibleName, const QString& tip) {
  auto* list = new QComboBox;
  list->setObjectName(QLatin1String(name));
  list->setAccessibleName(accessibleName);
  list->setToolTip(tip);
  list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  return list;
}

QLabel* labelOf(const char* name, const QString& caption, QWidget* control) {
  auto* label = new QLabel(caption);
  label->setObjectName(QLatin1String(name));
  label->setBuddy(control);
  return label;
}

// Of one character: as wide as high.
void makeSquare(QPushButton& button) { button.setFixedWidth(button.sizeHint().height()); }

}  // namespace

PrintPreview::PrintPreview(Services services, const Start& start, QWidget* parent)
    : QDialog(parent), services_(std::move(services)) {
  setObjectName(QStringLiteral("printPreview"));
  setWindowTitle(tr("Print Preview"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setSizeGripEnabled(true);
  makeControls(start);
  layOutControls();
  connectControls();
  resize(lastSize().expandedTo(minimumSizeHint()));
}

void PrintPreview::makeControls(const Start& start) {
  view_ = new PageView;
  view_->setObjectName(QStringLiteral("pageView"));
  view_->setMinimumSize(kLeastView);
  view_->setAccessibleName(tr("The page as it is printed"));
  view_->setToolTip(tr("The page as it is printed; Ctrl and the wheel zoom"));

  const QString stored = QString::fromStdString(start.description);
  txtDescription_ = new QLineEdit;
  txtDescription_->setObjectName(QStringLiteral("txtDescription"));
  txtDescription_->setAccessibleName(tr("Description"));
  txtDescription_->setToolTip(tr("This text is printed above the profile; empty prints none"));
  txtDescription_->setMaxLength(std::max(kLongestDescription, static_cast<int>(stored.size())));
  txtDescription_->setText(stored);

  cboPaper_ = makeList("cboPaper", tr("Paper"), tr("The paper of the page that is shown"));
  cboOrientation_ = makeList("cboOrientation", tr("Orientation"), tr("Upright or across"));
  cboOrientation_->addItem(tr("Portrait"), int(PageOrientation::kPortrait));
  cboOrientation_->addItem(tr("Landscape"), int(PageOrientation::kLandscape));
  cboOrientation_->setCurrentIndex(start.orientation == PageOrientation::kLandscape ? 1 : 0);
  fillPapers(start.paper);

  cmdZoomOut_ =
      makeButton("cmdZoomOut", QString(QChar(0x2212)), tr("Zoom out"), tr("Show it smaller (Ctrl+-)"));
  cmdZoomIn_ = makeButton("cmdZoomIn", QStringLiteral("+"), tr("Zoom in"), tr("Show it larger (Ctrl++)"));
  makeSquare(*cmdZoomOut_);
  makeSquare(*cmdZoomIn_);
  lblZoomValue_ = new QLabel;
  lblZoomValue_->setObjectName(QStringLiteral("lblZoomValue"));
  lblZoomValue_->setAccessibleDescription(tr("Zoom of the page in percent"));
  lblZoomValue_->setToolTip(tr("100 % is the size on paper"));
  lblZoomValue_->setAlignment(Qt::AlignCenter);
  lblZoomValue_->setFixedWidth(lblZoomValue_->fontMetrics().horizontalAdvance(QStringLiteral("8888 %")));
  cmdActualSize_ = makeButton("cmdActualSize", tr("&100 %"), tr("Size on paper"),
                              tr("Show it in its size on paper (Ctrl+0)"));
  cmdFit_ =
      makeButton("cmdFit", tr("&Fit"), tr("Fit the page into the window"), tr("Show all of it (Ctrl+9)"));

  lblStatus_ = new QLabel;
  lblStatus_->setObjectName(QStringLiteral("lblStatus"));
  lblStatus_->setTextFormat(Qt::PlainText);
  lblStatus_->setWordWrap(true);
  lblStatus_->setMinimumHeight(2 * lblStatus_->fontMetrics().lineSpacing());
  cmdPrint_ = makeButton("cmdPrint", tr("&Print..."), tr("Print"),
                         tr("Choose a printer and print the page (Ctrl+P)"));
  cmdSavePdf_ = makeButton("cmdSavePdf", tr("&Save as PDF..."), tr("Save as PDF"),
                           tr("Write the page into a PDF file (Ctrl+S)"));
  cmdClose_ = makeButton("cmdClose", tr("&Close"), tr("Close"), tr("Close the preview (Esc)"));
}

void PrintPreview::layOutControls() {
  auto* text = new QHBoxLayout;
  text->addWidget(labelOf("lblDescription", tr("&Description"), txtDescription_));
  text->addWidget(txtDescription_, 1);

  auto* choices = new QHBoxLayout;
  choices->addWidget(labelOf("lblPaper", tr("P&aper"), cboPaper_));
  choices->addWidget(cboPaper_);
  choices->addSpacing(8);
  choices->addWidget(labelOf("lblOrientation", tr("&Orientation"), cboOrientation_));
  choices->addWidget(cboOrientation_);
  choices->addStretch(1);
  choices->addSpacing(8);
  for (QWidget* zoom :
       std::initializer_list<QWidget*>{cmdZoomOut_, lblZoomValue_, cmdZoomIn_, cmdActualSize_, cmdFit_})
    choices->addWidget(zoom);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(lblStatus_, 1);
  for (QPushButton* button : {cmdPrint_, cmdSavePdf_, cmdClose_}) buttons->addWidget(button);

  auto* column = new QVBoxLayout(this);
  column->addLayout(text);
  column->addLayout(choices);
  column->addWidget(view_, 1);
  column->addLayout(buttons);

  const QList<QWidget*> order{txtDescription_, cboPaper_,      cboOrientation_, cmdZoomOut_,
                              cmdZoomIn_,      cmdActualSize_, cmdFit_,         view_,
                              cmdPrint_,       cmdSavePdf_,    cmdClose_};
  for (qsizetype i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
  txtDescription_->setFocus(Qt::OtherFocusReason);
}

void PrintPreview::connectControls() {
  // A page that failed once would fail, and show its box, at each key.
  connect(txtDescription_, &QLineEdit::textChanged, this, [this] {
    if (view_->hasPage()) showPage();
  });
  connect(cboPaper_, &QComboBox::activated, this, [this] { showPage(); });
  connect(cboOrientation_, &QComboBox::activated, this, [this] {
    fillPapers(static_cast<std::size_t>(std::max(0, cboPaper_->currentIndex())));
    showPage();
  });
  view_->onZoom = [this] { showZoom(); };

  const auto action = [this](QPushButton* button, const QList<QKeySequence>& keys, auto body) {
    connect(button, &QPushButton::clicked, this, body);
    for (const QKeySequence& key : keys)
      connect(new QShortcut(key, this), &QShortcut::activated, button, [button] { button->click(); });
  };
  // The plus of most keyboards is typed with Shift, and its key without.
  action(cmdZoomIn_, {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
         [this] { view_->zoomIn(); });
  action(cmdZoomOut_, {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, [this] { view_->zoomOut(); });
  action(cmdActualSize_, {QKeySequence(Qt::CTRL | Qt::Key_0)}, [this] { view_->setZoom(1); });
  action(cmdFit_, {QKeySequence(Qt::CTRL | Qt::Key_9)}, [this] { view_->fit(); });
  action(cmdPrint_, {QKeySequence(QKeySequence::Print)}, [this] { cmdPrint_Click(); });
  action(cmdSavePdf_, {QKeySequence(QKeySequence::Save)}, [this] { cmdSavePdf_Click(); });
  action(cmdClose_, {}, [this] { reject(); });
}

int PrintPreview::exec() { return showPage() ? QDialog::exec() : int{Rejected}; }

void PrintPreview::done(int result) {
  if (isVisible() && !isMaximized() && !isFullScreen()) lastSize() = size();
  QDialog::done(result);
}

PageOrientation PrintPreview::orientation() const {
  return static_cast<PageOrientation>(cboOrientation_->currentData().toInt());
}

std::string PrintPreview::description() const { return txtDescription_->text().toStdString(); }

PaperFormat PrintPreview::paper() const {
  return papers_.at(static_cast<std::size_t>(std::max(0, cboPaper_->currentIndex())));
}

void PrintPreview::fillPapers(std::size_t chosen) {
  papers_ = services_.papers(orientation());
  cboPaper_->clear();
  for (const PaperFormat& paper : papers_) cboPaper_->addItem(QString::fromStdString(paper.name));
  cboPaper_->setCurrentIndex(static_cast<int>(std::min(chosen, papers_.size() - 1)));
}

bool PrintPreview::showPage() {
  std::optional<PreviewedPage> made = services_.makePage(paper(), description());
  const bool seen = made.has_value();
  descriptionCut_ = seen && made->descriptionCut;
  view_->setPage(seen ? std::move(made->page) : nullptr);
  showStatus(seen ? QString() : tr("The page could not be drawn; choose a paper to try again."));
  for (QPushButton* button : {cmdPrint_, cmdSavePdf_}) button->setEnabled(seen);
  return seen;
}

void PrintPreview::showZoom() { lblZoomValue_->setText(tr("%1 %").arg(std::lround(view_->zoom() * 100))); }

void PrintPreview::showStatus(const QString& what, const QString& tip) {
  const bool cut = what.isEmpty() && descriptionCut_;
  lblStatus_->setText(cut ? tr("The description has no room on the page and is cut.") : what);
  lblStatus_->setToolTip(tip);
}

// It may be gone by the time they return: with the window under it.
void PrintPreview::cmdPrint_Click() {
  const QPointer<PrintPreview> self(this);
  const bool printed = services_.print(paper(), orientation(), description());
  if (self.isNull() || !isVisible()) return;
  showStatus(printed ? tr("Printed.") : QString());
}

void PrintPreview::cmdSavePdf_Click() {
  const QPointer<PrintPreview> self(this);
  const QString path = QString::fromStdString(services_.savePdf(paper(), description()));
  if (self.isNull() || !isVisible()) return;
  showStatus(path.isEmpty() ? QString() : tr("Saved as %1").arg(QFileInfo(path).fileName()), path);
}

}  // namespace zel
