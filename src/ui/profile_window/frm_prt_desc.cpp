#include "ui/profile_window/frm_prt_desc.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace zel {
namespace {

constexpr int kLineLength = 60;  // characters, of the prompt and of the box

// Has the height for all of its text at the least width of the dialog.
class Prompt final : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override {
    const int width = fontMetrics().averageCharWidth() * kLineLength;
    return {width, heightForWidth(width)};
  }
};

QPushButton* makeButton(const char* name, const QString& caption, const QString& tip) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  button->setAccessibleName(QString(caption).remove(u'&'));
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

FrmPrtDesc::FrmPrtDesc(Services services, QWidget* parent)
    : UnloadedDialog(parent), services_(std::move(services)), trapped_(std::string(kName), *services_.trap) {
  setObjectName(QString::fromUtf8(kName.data(), static_cast<int>(kName.size())));
  setWindowTitle(tr("Print Description"));
  makeControls();
  Form_Load();
}

FrmPrtDesc::~FrmPrtDesc() { unload(); }

void FrmPrtDesc::makeControls() {
  auto* prompt = new Prompt(
      tr("What description would you like on this printout? Click None to have no description printed."));
  prompt->setObjectName(QStringLiteral("lblPrompt"));
  prompt->setWordWrap(true);
  txtDescription_ = new QLineEdit;
  txtDescription_->setObjectName(QStringLiteral("txtDescription"));
  txtDescription_->setAccessibleName(tr("Description"));
  txtDescription_->setAccessibleDescription(prompt->text());
  txtDescription_->setToolTip(tr("This text is printed above the profile"));
  txtDescription_->setMaxLength(kLongestDescription);
  auto* cmdOK = makeButton("cmdOK", tr("&OK"), tr("Print this description"));
  cmdOK->setDefault(true);
  auto* cmdNone = makeButton("cmdNone", tr("&None"), tr("Print no description"));
  connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
  connect(cmdNone, &QPushButton::clicked, this, [this] { cmdNone_Click(); });

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdNone);
  auto* column = new QVBoxLayout(this);
  column->setSpacing(10);
  column->addWidget(prompt);
  column->addWidget(txtDescription_);
  column->addStretch(1);
  column->addLayout(buttons);
  QWidget::setTabOrder(txtDescription_, cmdOK);
  QWidget::setTabOrder(cmdOK, cmdNone);
}

void FrmPrtDesc::Form_Load() {
  bool read = false;
  procedure(":Form_Load:", [&] {
    stored_ = services_.storedDescription();
    const QString stored = QString::fromStdString(stored_);
    txtDescription_->setMaxLength(std::max(kLongestDescription, static_cast<int>(stored.size())));
    txtDescription_->setText(stored);
    txtDescription_->selectAll();
    txtDescription_->setFocus(Qt::OtherFocusReason);
    read = true;
    trapped_.step(1);
    adjustSize();
    if (services_.restorePlace) services_.restorePlace(*this, kName);
  });
  if (!read) unload();
}

void FrmPrtDesc::cmdOK_Click() {
  procedure(":cmdOK_Click:", [this] {
    // Left as it is, it stays as it was stored, also where the box could not show it.
    const QString text = txtDescription_->text();
    outcome_ = text == QString::fromStdString(stored_) ? stored_ : text.toStdString();
    accept();
  });
}

void FrmPrtDesc::cmdNone_Click() {
  procedure(":cmdNone_Click:", [this] {
    outcome_ = std::string();
    accept();
  });
}

void FrmPrtDesc::Form_Unload() {
  procedure(":Form_Unload:", [this] {
    if (hasBeenShown() && services_.storePlace) services_.storePlace(*this, kName);
  });
}

}  // namespace zel
