#include "preferences/field_row.h"

#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QWheelEvent>
#include <utility>

#include "preferences/field_values.h"

namespace zel::host {
namespace {

QString shown(const std::string& utf8) { return QString::fromStdString(utf8); }

QString sentence(QString words) {
  if (!words.isEmpty()) words[0] = words[0].toUpper();
  return words;
}

// A list that changes by the wheel only where it has the focus: pages are scrolled over it.
class QuietList final : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus())
      QComboBox::wheelEvent(event);
    else
      event->ignore();
  }
};

void setLength(QLineEdit& box, int characters) {
  const int frame = 2 * box.fontMetrics().horizontalAdvance(u'x') + 8;
  box.setMinimumWidth(frame + characters * box.fontMetrics().horizontalAdvance(u'0'));
}

// Where the user's language writes decimals with a comma, one is read as the point.
std::string typedNumber(const QLineEdit& box) {
  QString text = box.text().trimmed();
  if (QLocale().decimalPoint() == QLatin1String(",")) text.replace(u',', u'.');
  return text.toStdString();
}

// "0 to 1,000,000": digits in groups of three, but for a fraction's.
QString grouped(QString words) {
  static const QRegularExpression place(QStringLiteral("(?<![.\\d])\\d{5,}"));
  for (QRegularExpressionMatch found = place.match(words); found.hasMatch(); found = place.match(words)) {
    for (qsizetype at = found.capturedEnd() - 3; at > found.capturedStart(); at -= 3) words.insert(at, u',');
  }
  return words;
}

class NumberRow : public FieldRow {
 public:
  using FieldRow::FieldRow;

 protected:
  QWidget* makeEditor(QBoxLayout& row, QWidget* group) override {
    box_ = new QLineEdit(group);
    setLength(*box_, 10);
    box_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    box_->setAlignment(Qt::AlignRight);
    QObject::connect(box_, &QLineEdit::textChanged, box_, [this] { edited(); });
    row.addWidget(box_);
    if (!unit().isEmpty()) row.addWidget(new QLabel(unit(), group));
    row.addStretch(1);
    return box_;
  }
  void display(const std::string& stored) override { box_->setText(shown(stored)); }
  std::string displayed() const override { return typedNumber(*box_); }
  std::optional<std::string> storedForm(const std::string& text) const override { return text; }
  std::string problemOf(const std::string& text) const override {
    if (!settingProblem(field().section, field().key, text)) return {};
    return "this takes " + taken().toStdString();
  }
  QString hint() const override {
    const double value = leadingValue(displayed());
    if (field().sensibleHigh > 0 && (value < field().sensibleLow || value > field().sensibleHigh))
      return QStringLiteral("Beyond what the model is meant for: %1 to %2 %3.")
          .arg(field().sensibleLow)
          .arg(field().sensibleHigh)
          .arg(unit());
    return taken() + QStringLiteral("; default %1.").arg(shown(defaultText()));
  }

  virtual QString unit() const { return shown(known().unit); }
  virtual QString taken() const {
    const bool whole = known().type.find("integer") != std::string::npos;
    return (whole ? QStringLiteral("a whole number from ") : QStringLiteral("a number from ")) +
           grouped(shown(known().range)) + (unit().isEmpty() ? QString() : QStringLiteral(" ") + unit());
  }

  QLineEdit* box_ = nullptr;
};

class PercentRow final : public NumberRow {
 public:
  using NumberRow::NumberRow;

 protected:
  void display(const std::string& stored) override { NumberRow::display(shownPercent(stored)); }
  std::optional<std::string> storedForm(const std::string& text) const override {
    return storedPercent(text);
  }
  std::string problemOf(const std::string& text) const override {
    return storedPercent(text) ? std::string() : "this takes " + taken().toStdString();
  }
  QString hint() const override {
    return taken() + QStringLiteral("; default %1.").arg(shown(shownPercent(defaultText())));
  }
  QString unit() const override { return QStringLiteral("%"); }
  QString taken() const override { return QStringLiteral("a whole number from 1 to 99 %"); }
};

class ChoiceRow final : public FieldRow {
 public:
  using FieldRow::FieldRow;

 protected:
  QWidget* makeEditor(QBoxLayout& row, QWidget* group) override {
    list_ = new QuietList(group);
    list_->setFocusPolicy(Qt::StrongFocus);
    QObject::connect(list_, &QComboBox::currentIndexChanged, list_, [this] { edited(); });
    row.addWidget(list_);
    row.addStretch(1);
    try {
      for (const FieldChoice& choice : field().choices())
        list_->addItem(shown(choice.words), shown(choice.code));
    } catch (const SettingsError&) {
      // Told where the settings are read; what is stored is then shown as it is.
    }
    return list_;
  }
  void display(const std::string& stored) override {
    int index = indexOf(stored);
    if (index < 0 && field().othersReadAs != nullptr) index = indexOf(field().othersReadAs);
    if (index < 0) {
      list_->addItem(QStringLiteral("\"%1\" (not a choice)").arg(shown(stored)), shown(stored));
      index = list_->count() - 1;
    }
    list_->setCurrentIndex(index);
  }
  std::string displayed() const override { return list_->currentData().toString().toStdString(); }
  std::optional<std::string> storedForm(const std::string& text) const override { return text; }
  std::string problemOf(const std::string& text) const override {
    return settingProblem(field().section, field().key, text) ? "this is not one of the choices"
                                                              : std::string();
  }
  QString hint() const override {
    const int index = indexOf(defaultText());
    return index < 0 ? QString() : QStringLiteral("Default: %1.").arg(list_->itemText(index).simplified());
  }

 private:
  int indexOf(const std::string& code) const {
    for (int i = 0; i < list_->count(); ++i) {
      const std::string listed = list_->itemData(i).toString().toStdString();
      if (sameValue(listed, code) || QString::compare(shown(listed), shown(code), Qt::CaseInsensitive) == 0)
        return i;
    }
    return -1;
  }

  QComboBox* list_ = nullptr;
};

// A line of the plot in its colour, on the plot's white.
class LineSample final : public QWidget {
 public:
  explicit LineSample(QWidget* parent) : QWidget(parent) {
    setFixedSize(4 * fontMetrics().horizontalAdvance(u'x') + 16, fontMetrics().height() + 8);
  }
  void setColour(const QColor& colour) {
    colour_ = colour;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setPen(colour_);
    painter.drawLine(4, height() - 6, width() / 2, 6);
    painter.drawLine(width() / 2, 6, width() - 5, height() / 2);
  }

 private:
  QColor colour_;
};

class ColourRow final : public FieldRow {
 public:
  using FieldRow::FieldRow;

 protected:
  QWidget* makeEditor(QBoxLayout& row, QWidget* group) override {
    box_ = new QLineEdit(group);
    setLength(*box_, 8);
    box_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    sample_ = new LineSample(group);
    sample_->setObjectName(objectName("sample"));
    sample_->setToolTip(QStringLiteral("The line as the plot shows it"));
    choose_ = new QPushButton(QStringLiteral("Choose..."), group);
    choose_->setObjectName(objectName("choose"));
    choose_->setAutoDefault(false);
    choose_->setToolTip(QStringLiteral("Choose the color from a palette"));
    choose_->setAccessibleName(QStringLiteral("Choose ") + shown(words()));
    QObject::connect(box_, &QLineEdit::textChanged, box_, [this] {
      sample_->setColour(QColor(shown(shownColour(storedColour(displayed()).value_or("16777215")))));
      edited();
    });
    QObject::connect(choose_, &QPushButton::clicked, box_, [this] { choose(); });
    row.addWidget(box_);
    row.addWidget(sample_);
    row.addWidget(choose_);
    row.addStretch(1);
    return box_;
  }
  void display(const std::string& stored) override { box_->setText(shown(shownColour(stored))); }
  std::string displayed() const override { return box_->text().trimmed().toLower().toStdString(); }
  std::optional<std::string> storedForm(const std::string& text) const override { return storedColour(text); }
  std::string problemOf(const std::string& text) const override {
    return storedColour(text) ? std::string() : "this takes red, green and blue as in #ff8000";
  }
  QString hint() const override {
    if (contrastWithWhite(displayed()) < kLeastContrast)
      return QStringLiteral("Hard to see on the white plot.");
    return QStringLiteral("Default: %1.").arg(shown(shownColour(defaultText())));
  }
  void enableEditor(bool enabled) override {
    FieldRow::enableEditor(enabled);
    choose_->setEnabled(enabled);
  }

 private:
  void choose() {
    QColorDialog dialog(QColor(shown(shownColour(text()))), box_->window());
    dialog.setObjectName(QStringLiteral("dlgColor"));
    dialog.setWindowTitle(QStringLiteral("Color of: ") + shown(words()));
    if (dialog.exec() == QDialog::Accepted) box_->setText(dialog.selectedColor().name());
  }

  QLineEdit* box_ = nullptr;
  LineSample* sample_ = nullptr;
  QPushButton* choose_ = nullptr;
};

class ProgramRow final : public FieldRow {
 public:
  using FieldRow::FieldRow;

 protected:
  QWidget* makeEditor(QBoxLayout& row, QWidget* group) override {
    box_ = new QLineEdit(group);
    setLength(*box_, 10);  // it grows with the window
    find_ =
        makeButton("find", QStringLiteral("F&ind"), QStringLiteral("Take the one found along PATH"), group);
    browse_ = makeButton("browse", QStringLiteral("&Browse..."), QStringLiteral("Choose the program's file"),
                         group);
    QObject::connect(box_, &QLineEdit::textChanged, box_, [this] { edited(); });
    QObject::connect(find_, &QPushButton::clicked, box_, [this] { find(); });
    QObject::connect(browse_, &QPushButton::clicked, box_, [this] { browse(); });
    row.addWidget(box_, 1);
    row.addWidget(find_);
    row.addWidget(browse_);
    return box_;
  }
  void display(const std::string& stored) override { box_->setText(shown(stored)); }
  std::string displayed() const override { return box_->text().trimmed().toStdString(); }
  std::optional<std::string> storedForm(const std::string& text) const override { return text; }
  std::string problemOf(const std::string& text) const override {
    return text.empty() ? std::string() : programProblem(text);
  }
  QString hint() const override {
    const std::string text = displayed();
    if (searchedInVain_)
      return QStringLiteral("No gnuplot was found along PATH; install it, or browse for it.");
    if (!text.empty())
      return text == defaultText() ? QStringLiteral("Found along PATH; draws the signal graphs.")
                                   : QStringLiteral("Draws the signal graphs.");
    if (isStored() || changed()) return QStringLiteral("None wanted: signal graphs are not drawn.");
    return QStringLiteral("None found along PATH: install gnuplot, or name it here.");
  }
  // What is used while nothing is stored is the one found.
  std::string defaultText() const override { return programFound("gnuplot").value_or(std::string()); }
  bool editsRunValue(const StoredText& stored) const override {
    return stored.text && *stored.text == defaultText();
  }
  void enableEditor(bool enabled) override {
    FieldRow::enableEditor(enabled);
    find_->setEnabled(enabled);
    browse_->setEnabled(enabled);
  }
  // The one that was found stands in for this run; what is stored now is to count at once.
  void wasStored(const std::string& text) override {
    if (isForThisRun()) overrideSetting(field().section, field().key, text);
  }

 private:
  QPushButton* makeButton(const char* part, const QString& caption, const QString& tip,
                          QWidget* group) const {
    auto* button = new QPushButton(caption, group);
    button->setObjectName(objectName(part));
    button->setAutoDefault(false);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    return button;
  }
  void find() {
    const auto found = programFound("gnuplot");
    if (found) box_->setText(shown(*found));
    searchedInVain_ = !found;
    edited();
    searchedInVain_ = false;  // until the next edit
  }
  void browse() {
    QFileDialog dialog(box_->window(), QStringLiteral("The gnuplot Program"), QStringLiteral("/usr/bin"));
    if (!box_->text().isEmpty()) dialog.selectFile(box_->text());
    dialog.setObjectName(QStringLiteral("dlgProgram"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() == QDialog::Accepted) box_->setText(dialog.selectedFiles().constFirst());
  }

  QLineEdit* box_ = nullptr;
  QPushButton* find_ = nullptr;
  QPushButton* browse_ = nullptr;
  bool searchedInVain_ = false;
};

}  // namespace

FieldRow::FieldRow(const PreferenceField& field, SettingDescription known)
    : field_(field), known_(std::move(known)) {}

QString FieldRow::objectName(const char* part) const {
  const QString base = QStringLiteral("%1_%2").arg(QLatin1String(field_.section), QLatin1String(field_.key));
  return *part == 0 ? base : base + QStringLiteral("_") + QLatin1String(part);
}

void FieldRow::addTo(QGridLayout& grid, QWidget* group) {
  const int line = grid.rowCount();
  auto* label = new QLabel(QString::fromUtf8(field_.label), group);
  label->setObjectName(objectName("label"));
  hint_ = new QLabel(group);
  hint_->setObjectName(objectName("hint"));
  hint_->setWordWrap(true);
  hint_->setTextFormat(Qt::PlainText);
  auto* row = new QHBoxLayout;
  editor_ = makeEditor(*row, group);
  editor_->setObjectName(objectName(""));
  editor_->setToolTip(QString::fromUtf8(field_.tip));
  editor_->setAccessibleName(shown(words()));
  label->setBuddy(editor_);
  default_ = new QPushButton(QStringLiteral("Default"), group);
  default_->setObjectName(objectName("default"));
  default_->setAutoDefault(false);
  default_->setToolTip(QStringLiteral("Back to the default"));
  default_->setAccessibleName(QStringLiteral("Default of ") + shown(words()));
  QObject::connect(default_, &QPushButton::clicked, editor_, [this] { setText(defaultText()); });
  grid.addWidget(label, line, 0);
  grid.addLayout(row, line, 1);
  grid.addWidget(default_, line, 2);
  grid.addWidget(hint_, line + 1, 1, 1, 2);
  grid.setColumnStretch(1, 1);
}

void FieldRow::load(const StoredText& stored) {
  stored_ = stored;
  before_ = stored.text.value_or(defaultText());
  display(before_);
  beforeShown_ = displayed();
  const bool editable = !stored_.forThisRun || editsRunValue(stored_);
  enableEditor(editable);
  refresh();
}

std::string FieldRow::text() const {
  const std::string now = displayed();
  return now == beforeShown_ ? before_ : storedForm(now).value_or(now);
}

void FieldRow::setText(const std::string& text) {
  display(text);
  edited();
}

std::string FieldRow::name() const { return std::string(field_.section) + "/" + field_.key; }

std::string FieldRow::words() const { return QString::fromUtf8(field_.label).remove(u'&').toStdString(); }

bool FieldRow::changed() const { return displayed() != beforeShown_; }

std::string FieldRow::problem() const { return problemOf(displayed()); }

void FieldRow::store() {
  const std::string now = text();
  storeSetting(field_.section, field_.key, now);
  wasStored(now);
  stored_.text = now;
  before_ = now;
  beforeShown_ = displayed();
  refresh();
}

void FieldRow::reveal() { editor_->setFocus(Qt::OtherFocusReason); }

void FieldRow::enableEditor(bool enabled) { editor_->setEnabled(enabled); }

void FieldRow::edited() {
  if (default_ == nullptr) return;  // still being built
  refresh();
  if (onEdited) onEdited();
}

void FieldRow::refresh() {
  const std::string wrong = problem();
  const bool locked = !editor_->isEnabled();
  QFont font;
  font.setBold(!wrong.empty());
  hint_->setFont(font);
  if (locked)
    hint_->setText(QStringLiteral("Given for this run only; not changed here."));
  else
    hint_->setText(sentence(wrong.empty() ? hint() : shown(wrong) + QStringLiteral(".")));
  editor_->setAccessibleDescription(hint_->text());
  default_->setEnabled(!locked && !sameValue(text(), defaultText()));
}

std::unique_ptr<FieldRow> makeFieldRow(const PreferenceField& field, const SettingDescription& known) {
  switch (field.kind) {
    case FieldKind::kNumber:
      return std::make_unique<NumberRow>(field, known);
    case FieldKind::kPercent:
      return std::make_unique<PercentRow>(field, known);
    case FieldKind::kChoice:
      return std::make_unique<ChoiceRow>(field, known);
    case FieldKind::kColour:
      return std::make_unique<ColourRow>(field, known);
    case FieldKind::kProgram:
      break;
  }
  return std::make_unique<ProgramRow>(field, known);
}

}  // namespace zel::host
