#include "component/desktop/print_dialog.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPageLayout>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTimer>

#include "component/desktop/system_printers.h"

namespace zel {
namespace {

template <typename Widget>
Widget* part(QPrintDialog& dialog, const char* name) {
  return dialog.findChild<Widget*>(QLatin1String(name));
}

// Paper and orientation. The toolkit has them in a box of its own behind the dialog, which begins with the
// printer's paper whatever was chosen before, and does not always tell what was chosen in it.
class PageGroup final : public QGroupBox {
 public:
  PageGroup() : QGroupBox(QStringLiteral("Page")) {
    auto* rows = new QFormLayout(this);
    addRow(*rows, QStringLiteral("Pap&er:"), paper_, "paper", QStringLiteral("Size of the sheet"));
    addRow(*rows, QStringLiteral("O&rientation:"), orientation_, "orientation",
           QStringLiteral("How the page lies: upright, or wider than high"));
    orientation_->addItem(QStringLiteral("Portrait"), QPageLayout::Portrait);
    orientation_->addItem(QStringLiteral("Landscape"), QPageLayout::Landscape);
  }

  void begin(const QPageLayout& layout) {
    select(layout.pageSize());
    orientation_->setCurrentIndex(orientation_->findData(layout.orientation()));
  }
  // What that printer has; an empty name is a file. The size stays where it can.
  void offerPapersOf(const QString& printer) {
    const QPageSize before = paper_->currentData().value<QPageSize>();
    paper_->clear();
    for (const QPageSize& size : sizesOf(printer)) paper_->addItem(size.name(), QVariant::fromValue(size));
    select(usualSize(printer));
    select(before);
  }
  void setUp(QPrinter& printer) const {
    printer.setPageSize(paper_->currentData().value<QPageSize>());
    printer.setPageOrientation(QPageLayout::Orientation(orientation_->currentData().toInt()));
  }

 private:
  static void addRow(QFormLayout& rows, const QString& label, QComboBox* box, const char* name,
                     const QString& tip) {
    box->setObjectName(QLatin1String(name));
    box->setToolTip(tip);
    box->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    rows.addRow(label, box);  // the label is the box's buddy
  }
  void select(const QPageSize& size) {
    for (int i = 0; i < paper_->count(); ++i)
      if (paper_->itemData(i).value<QPageSize>().isEquivalentTo(size)) return paper_->setCurrentIndex(i);
  }

  QComboBox* paper_ = new QComboBox(this);
  QComboBox* orientation_ = new QComboBox(this);
};

// The toolkit's dialog is made for documents of many pages. Parts that another version of it does not have
// are left as they are.
void fitToOnePage(QPrintDialog& dialog, PageGroup* page) {
  // The dialog shows its parts again as it sees fit, but not out of a hidden one.
  auto* hidden = new QWidget(&dialog);
  hidden->hide();
  for (const char* name : {"gbPrintRange", "collate", "reverse", "properties"})
    if (auto* idle = part<QWidget>(dialog, name)) idle->setParent(hidden);
  auto* tabs = part<QTabWidget>(dialog, "tabs");
  auto* copies = part<QWidget>(dialog, "copiesTab");
  if (tabs != nullptr && copies != nullptr && copies->layout() != nullptr) {
    tabs->removeTab(tabs->indexOf(part<QWidget>(dialog, "optionsTab")));  // colours, both sides
    tabs->setTabText(0, QStringLiteral("Page and Copies"));
    copies->layout()->addWidget(page);
  } else {
    page->setWindowTitle(page->title());
    dialog.setOptionTabs({page});
  }
  // They stand behind a button. They are shown from the first, and there is nothing else behind it.
  for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
    if (!button->text().contains(QLatin1String("Options"))) continue;
    button->click();
    // The way of the Tab key ends before a hidden button that would take it.
    button->setFocusPolicy(Qt::NoFocus);
    button->hide();
  }
}

// The papers go with the printer. What the dialog has beside the printers it has last: the file.
void followPrinter(QPrintDialog& dialog, PageGroup* page) {
  auto* names = part<QComboBox>(dialog, "printers");
  const auto offer = [names, page] {
    const QString name = names != nullptr ? names->currentText() : QString();
    page->offerPapersOf(isPrinter(name) ? name : QString());
  };
  if (names != nullptr) {
    // When it is shown, the dialog turns to a printer if there is one.
    if (goesIntoFile(*dialog.printer()))
      QTimer::singleShot(0, names, [names] { names->setCurrentIndex(names->count() - 1); });
    QObject::connect(names, &QComboBox::currentIndexChanged, page, offer);
  }
  offer();
}

// A name that does not end in ".pdf" gets that, before the dialog looks for a file of that name.
void nameFile(QPrintDialog& dialog, const QString& name) {
  auto* file = part<QLineEdit>(dialog, "filename");
  auto* buttons = dialog.findChild<QDialogButtonBox*>();
  if (file == nullptr || buttons == nullptr) return;
  file->setText(name);
  const auto addExtension = [file] {
    const QString typed = file->text().trimmed();
    const QFileInfo named(typed);
    const bool isPdf = named.suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
    const bool wanting = !named.fileName().isEmpty() && !isPdf && !named.isDir();
    file->setText(wanting ? typed + QStringLiteral(".pdf") : typed);
  };
  for (QAbstractButton* button : buttons->buttons())
    if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
      QObject::connect(button, &QAbstractButton::pressed, file, addExtension);
}

// Paper and orientation come after the copies that they stand beside.
void orderTabs(QPrintDialog& dialog, const PageGroup* page) {
  QWidget* last = part<QWidget>(dialog, "copies");
  if (last == nullptr) return;
  for (const char* name : {"paper", "orientation"}) {
    auto* next = page->findChild<QWidget*>(QLatin1String(name));
    QWidget::setTabOrder(last, next);
    last = next;
  }
}

// Sets up the dialog. The group belongs to it then.
void prepare(QPrintDialog& dialog, PageGroup* page) {
  dialog.setObjectName(QStringLiteral("printDialog"));
  dialog.setWindowTitle(QStringLiteral("Print"));
  dialog.setOptions(QAbstractPrintDialog::PrintToFile);
  const QString file = dialog.printer()->outputFileName();
  const QPageLayout layout = dialog.printer()->pageLayout();
  fitToOnePage(dialog, page);
  followPrinter(dialog, page);
  page->begin(layout);
  nameFile(dialog, file.isEmpty() ? defaultPdfFile() : file);
  orderTabs(dialog, page);
  dialog.adjustSize();
}

}  // namespace

QString defaultPdfFile() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QDir folder = QFileInfo(documents).isDir() ? QDir(documents) : QDir::home();
  return folder.filePath(QStringLiteral("Terrain Profile.pdf"));
}

bool runPrintDialog(QPrinter& printer) {
  // On the heap: its window may be unloaded and deleted while it is shown, and takes the dialog with it.
  const QPointer<QPrintDialog> dialog = new QPrintDialog(&printer, QApplication::activeWindow());
  auto* page = new PageGroup;
  prepare(*dialog, page);
  const bool accepted = dialog->exec() == QDialog::Accepted && !dialog.isNull();
  if (accepted) page->setUp(printer);
  delete dialog.data();
  return accepted;
}

}  // namespace zel
