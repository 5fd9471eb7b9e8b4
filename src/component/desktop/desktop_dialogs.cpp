#include "component/desktop/desktop_dialogs.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPointer>
#include <QThread>
#include <cstdio>

#include "component/desktop/picture_application.h"
#include "component/own_application.h"
#include "foundation/runtime_error.h"

namespace zel {
namespace {

QString titleOf(const std::string& title) {
  return QString::fromStdString(title.empty() ? std::string(kComponentName) : title);
}

QMessageBox::Icon iconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kNone:
      return QMessageBox::NoIcon;
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kQuestion:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

// A question is left by its buttons alone: Escape and the close box would count as No, and No can end the
// host. A box with nothing to decide goes by either.
class AnsweredBox final : public QMessageBox {
 public:
  AnsweredBox(bool question, QWidget* parent) : QMessageBox(parent), question_(question) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (question_ && event->matches(QKeySequence::Cancel)) return;
    QMessageBox::keyPressEvent(event);
  }
  void closeEvent(QCloseEvent* event) override {
    if (question_ && event->spontaneous()) {
      event->ignore();
    } else {
      QMessageBox::closeEvent(event);
    }
  }

 private:
  bool question_;
};

std::string oneLine(const std::string& text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\n' || text[i] == '\r') {
      line += "; ";
    } else {
      line += text[i];
    }
  }
  return line;
}

// "Bitmap (*.png)|*.png" in the file dialog's own form. The pattern stands in the description's brackets
// already.
QStringList nameFilters(const std::string& filter) {
  QStringList filters;
  const QStringList parts = QString::fromStdString(filter).split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString description = parts[i].section(QStringLiteral(" ("), 0, 0);
    QString patterns = parts[i + 1];
    filters << description + QStringLiteral(" (") + patterns.replace(QLatin1Char(';'), QLatin1Char(' ')) +
                   QLatin1Char(')');
  }
  return filters;
}

void prepare(QFileDialog& dialog, const SaveDialogRequest& request) {
  dialog.setObjectName(QStringLiteral("saveDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setNameFilters(nameFilters(request.filter));
  dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
}

// Deletes a dialog that is still there on every way out.
struct Deleted {
  QPointer<QFileDialog> dialog;
  ~Deleted() { delete dialog.data(); }
};

}  // namespace

bool canShowWidgets() {
  const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  return !isScreenlessPictureApplication() && application != nullptr &&
         application->thread() == QThread::currentThread();
}

MessageAnswer DesktopDialogs::message(const MessageBoxRequest& request) {
  const bool yesNo = request.buttons == MessageButtons::kYesNo;
  if (!canShowWidgets()) {
    const std::string line =
        (request.title.empty() ? "" : request.title + ": ") + oneLine(request.text) + "\n";
    std::fputs(line.c_str(), stderr);
    return yesNo ? MessageAnswer::kYes : MessageAnswer::kOk;
  }
  // On the heap: its window may be unloaded and deleted while it is shown, and takes the box with it. The
  // box then counts as answered "continue".
  const QPointer<AnsweredBox> box = new AnsweredBox(yesNo, QApplication::activeWindow());
  box->setObjectName(QStringLiteral("messageBox"));
  box->setTextFormat(Qt::PlainText);
  box->setWindowTitle(titleOf(request.title));
  box->setText(QString::fromStdString(request.text));
  box->setIcon(iconOf(request.icon));
  box->setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No
                                : QMessageBox::StandardButtons(QMessageBox::Ok));
  box->setDefaultButton(yesNo ? QMessageBox::Yes : QMessageBox::Ok);
  const int answer = box->exec();
  delete box.data();
  if (!yesNo) return MessageAnswer::kOk;
  return answer == QMessageBox::No ? MessageAnswer::kNo : MessageAnswer::kYes;
}

std::string DesktopDialogs::input(const InputBoxRequest& request) {
  if (!canShowWidgets()) return request.defaultText;
  const QPointer<QInputDialog> dialog = new QInputDialog(QApplication::activeWindow());
  dialog->setObjectName(QStringLiteral("inputBox"));
  dialog->setWindowTitle(titleOf(request.title));
  dialog->setLabelText(QString::fromStdString(request.prompt));
  dialog->setTextValue(QString::fromStdString(request.defaultText));
  const bool accepted = dialog->exec() == QDialog::Accepted && !dialog.isNull();
  const std::string text = accepted ? dialog->textValue().toStdString() : std::string();
  delete dialog.data();
  return text;
}

std::string DesktopDialogs::save(const SaveDialogRequest& request) {
  if (!canShowWidgets()) throw RuntimeError::dialogCancelled();
  const QPointer<QFileDialog> dialog = new QFileDialog(QApplication::activeWindow(), titleOf(request.title));
  const Deleted deleted{dialog};
  prepare(*dialog, request);
  while (dialog->exec() == QDialog::Accepted && !dialog.isNull()) {
    const QString path = dialog->selectedFiles().value(0);
    if (!request.pathMustExist || QFileInfo(path).absoluteDir().exists()) return path.toStdString();
    message({path.toStdString() + "\r\nPath does not exist.", request.title, MessageIcon::kCritical,
             MessageButtons::kOk});
    if (dialog.isNull()) break;
  }
  throw RuntimeError::dialogCancelled();
}

}  // namespace zel
