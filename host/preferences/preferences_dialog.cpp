#include "preferences/preferences_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <utility>

#include "preferences/coverage_view.h"
#include "preferences/field_row.h"
#include "preferences/field_values.h"
#include "preferences/preference_fields.h"
#include "preferences/terrain_lists.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

struct PageWords {
  PreferencesPage page;
  const char* name;   // of its widgets
  const char* title;  // in the list
  const char* note;   // at the page's foot
  const char* help;
};

constexpr std::array<PageWords, 5> kPages{{
    {PreferencesPage::kTerrain, "pageTerrain", "Terrain", "",
     "Terrain heights are read from sources. Each source is a list of rasters and of folders with rasters; "
     "an "
     "empty list stands for the sample terrain that comes with the program.\n\nThe small map shows what the "
     "source's rasters cover. What cannot be used is listed over it, with the reason."},
    {PreferencesPage::kModel, "pageModel", "Loss model",
     "Frequency and the earth radius factor k are in the profiler's own settings: Tools, Profiler Settings.",
     "Parameters of the irregular terrain model, with which the modeled loss is computed. A kind of ground "
     "sets "
     "permittivity and conductivity together."},
    {PreferencesPage::kPointToPoint, "pagePointToPoint", "Point to point", "",
     "Parameters of the point-to-point model, which signal profiles and signal graphs show beside the "
     "irregular "
     "terrain model."},
    {PreferencesPage::kColours, "pageColors", "Colors", "",
     "Colors of the lines in the profile's plot, as red, green and blue. The plot is white in any theme."},
    {PreferencesPage::kPrograms, "pagePrograms", "Programs", "",
     "The program that draws signal graphs, how positions are written, and where the settings are kept."},
}};

struct GroundRow {
  PreferencesPage page;
  const char* section;
  const char* permittivity;
  const char* conductivity;
};

constexpr std::array<GroundRow, 2> kGroundRows{{
    {PreferencesPage::kModel, "ITM", "dDielectric", "dCond"},
    {PreferencesPage::kPointToPoint, "PTP", "Permittivity", "Conductivity"},
}};

constexpr const char* kGroundGroup = "Ground";
constexpr double kScreenPart = 0.98;  // of the screen that the dialog takes at most

const PageWords& wordsOf(PreferencesPage page) { return kPages.at(static_cast<std::size_t>(page)); }

QString ascii(const char* text) { return QString::fromUtf8(text); }

// A page as large as it likes to be, and scrolled where there is less room.
class PageArea final : public QScrollArea {
 public:
  explicit PageArea(QWidget* content) {
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
  }
  QSize sizeHint() const override {
    // Wrapped words would rather have a square: the width is what the rest needs.
    const int width = widget()->minimumSizeHint().width();
    const int height =
        widget()->hasHeightForWidth() ? widget()->heightForWidth(width) : widget()->sizeHint().height();
    return QSize(width, height) + QSize(verticalScrollBar()->sizeHint().width(), 2);
  }
  QSize minimumSizeHint() const override {
    return {24 * fontMetrics().averageCharWidth(), 12 * fontMetrics().height()};
  }
};

// Shows what is stored of every setting, or nothing of any where the store cannot be read.
class StoredTexts {
 public:
  StoredTexts() {
    try {
      for (SettingValue& value : storedSettings())
        texts_[value.section + "/" + value.key] = {std::move(value.value), value.forThisRun};
    } catch (const std::exception& failure) {
      problem = failure.what();
    }
  }
  StoredText of(const std::string& name) const {
    const auto found = texts_.find(name);
    return found == texts_.end() ? StoredText{} : found->second;
  }

  std::string problem;

 private:
  std::map<std::string, StoredText> texts_;
};

// Terrain given for this run gives all sources one name and the same paths.
std::string runTerrainWords() {
  try {
    const std::vector<TerrainSource> sources = terrainSources();
    if (sources.size() < 2 || sources.front().name != sources.back().name) return {};
    std::string words = "For this run every source reads what was given at the start: ";
    for (const std::string& path : sources.front().paths)
      words += (&path == &sources.front().paths.front() ? "" : ", ") + path;
    return words + ". What is set here counts from the next start.";
  } catch (const std::exception&) {
    return {};
  }
}

}  // namespace

struct PreferencesDialog::Self {
  explicit Self(PreferencesDialog& owner) : dialog(owner) {}

  // ---- Building ----

  QSize mostSize() const { return dialog.screen()->availableSize() * kScreenPart; }

  void build() {
    pages = new QListWidget(&dialog);
    pages->setObjectName(QStringLiteral("lstPages"));
    pages->setAccessibleName(QStringLiteral("Pages"));
    pages->setToolTip(QStringLiteral("The pages; Ctrl+Tab goes to the next"));
    auto* pagesLabel = new QLabel(QStringLiteral("Pa&ges"), &dialog);
    pagesLabel->setBuddy(pages);
    stack = new QStackedWidget(&dialog);
    for (const PageWords& words : kPages) {
      pages->addItem(ascii(words.title));
      stack->addWidget(makePage(words));
    }
    pages->setFixedWidth(pages->sizeHintForColumn(0) + 4 * pages->frameWidth() + 12);

    notice = new QLabel(&dialog);
    notice->setObjectName(QStringLiteral("lblNotice"));
    notice->setWordWrap(true);
    notice->setTextFormat(Qt::PlainText);
    notice->hide();
    makeButtons();

    auto* left = new QVBoxLayout;
    left->addWidget(pagesLabel);
    left->addWidget(pages, 1);
    auto* middle = new QHBoxLayout;
    middle->addLayout(left);
    middle->addWidget(stack, 1);
    auto* whole = new QVBoxLayout(&dialog);
    whole->addLayout(middle, 1);
    whole->addWidget(notice);
    whole->addWidget(buttons);
    connect(pages, &QListWidget::currentRowChanged, &dialog, [this](int row) { turnTo(row); });
    // No page is scrolled sideways where the screen is wide enough.
    int widest = 0;
    for (int i = 0; i < stack->count(); ++i) widest = std::max(widest, stack->widget(i)->sizeHint().width());
    const int needed = pages->width() + middle->spacing() + widest + whole->contentsMargins().left() +
                       whole->contentsMargins().right();
    dialog.setMinimumWidth(std::min(needed, mostSize().width()));
    addTurning();
  }

  QWidget* makePage(const PageWords& words) {
    auto* content = new QWidget;
    content->setObjectName(ascii(words.name));
    auto* layout = new QVBoxLayout(content);
    QGroupBox* group = nullptr;
    for (const PreferenceField& field : preferenceFields()) {
      if (field.page != words.page) continue;
      if (group == nullptr || group->title() != ascii(field.group)) {
        group = new QGroupBox(ascii(field.group), content);
        group->setLayout(new QGridLayout);
        layout->addWidget(group);
        if (field.group == std::string_view(kGroundGroup)) addGroundKinds(words.page, *group);
      }
      addRow(field, *group);
    }
    alignLabels(*content);
    if (words.page == PreferencesPage::kTerrain) addTerrain(*layout, content);
    if (words.page == PreferencesPage::kColours) addAllDefaults(*layout, content);
    if (words.page == PreferencesPage::kPrograms) addSettingsFile(*layout, content);
    if (*words.note != 0) {
      auto* note = new QLabel(ascii(words.note), content);
      note->setObjectName(ascii(words.name) + QStringLiteral("_note"));
      note->setWordWrap(true);
      layout->addWidget(note);
    }
    if (words.page != PreferencesPage::kTerrain) layout->addStretch(1);
    return new PageArea(content);
  }

  // The boxes of all groups of a page begin at the same place.
  static void alignLabels(QWidget& content) {
    const QList<QGroupBox*> groups = content.findChildren<QGroupBox*>();
    int width = 0;
    for (const QGroupBox* group : groups)
      for (const QLabel* label : group->findChildren<QLabel*>())
        if (label->buddy() != nullptr) width = std::max(width, label->sizeHint().width());
    for (const QGroupBox* group : groups)
      static_cast<QGridLayout*>(group->layout())->setColumnMinimumWidth(0, width);
  }

  void addRow(const PreferenceField& field, QGroupBox& group) {
    const auto known = knownSetting(field.section, field.key);
    if (!known) return;
    rows.push_back(makeFieldRow(field, *known));
    rows.back()->addTo(*static_cast<QGridLayout*>(group.layout()), &group);
  }

  void addGroundKinds(PreferencesPage page, QGroupBox& group) {
    auto* list = new QComboBox(&group);
    list->setObjectName(QStringLiteral("cboGround_") + ascii(wordsOf(page).name));
    list->setAccessibleName(QStringLiteral("Kind of ground"));
    list->setToolTip(QStringLiteral("Sets permittivity and conductivity together"));
    list->setFocusPolicy(Qt::StrongFocus);
    for (const GroundKind& kind : groundKinds()) list->addItem(ascii(kind.name));
    list->addItem(QStringLiteral("Own values"));
    auto* label = new QLabel(QStringLiteral("Gro&und"), &group);
    label->setBuddy(list);
    auto* grid = static_cast<QGridLayout*>(group.layout());
    grid->addWidget(label, grid->rowCount(), 0);
    grid->addWidget(list, grid->rowCount() - 1, 1, Qt::AlignLeft);
    connect(list, &QComboBox::activated, &dialog, [this, page](int index) { takeGround(page, index); });
    grounds[page] = list;
  }

  void addTerrain(QVBoxLayout& layout, QWidget* content) {
    auto* group = new QGroupBox(QStringLiteral("Sources"), content);
    lists = new TerrainLists(group);
    coverage = new CoverageView(group);
    auto* column = new QVBoxLayout(group);
    column->addWidget(lists, 1);
    column->addWidget(coverage, 2);
    layout.addWidget(group, 1);
    lists->onSourceShown = [this](int code) {
      coverage->setUnstoredEdits(lists->changed(code));
      coverage->showSource(code);
    };
  }

  void addAllDefaults(QVBoxLayout& layout, QWidget* content) {
    allDefaults = makeButton("cmdAllDefaults", QStringLiteral("All &Defaults"),
                             QStringLiteral("Every color back to its default"), content);
    layout.addWidget(allDefaults, 0, Qt::AlignRight);
    connect(allDefaults, &QPushButton::clicked, &dialog, [this] {
      for (const auto& row : rows)
        if (auto* button = defaultOf(*row);
            row->field().page == PreferencesPage::kColours && button->isEnabled())
          button->click();
    });
  }

  void addSettingsFile(QVBoxLayout& layout, QWidget* content) {
    auto* group = new QGroupBox(QStringLiteral("Settings"), content);
    auto* box = new QLineEdit(group);
    box->setObjectName(QStringLiteral("txtSettingsFile"));
    box->setAccessibleName(QStringLiteral("Settings file"));
    box->setToolTip(QStringLiteral("The file that the settings are kept in"));
    box->setReadOnly(true);
    try {
      box->setText(QString::fromStdString(settingsFile()));
    } catch (const std::exception& failure) {
      box->setText(ascii(failure.what()));
    }
    box->setCursorPosition(0);
    auto* label = new QLabel(QStringLiteral("Settings fi&le"), group);
    label->setBuddy(box);
    auto* copy =
        makeButton("cmdCopyFile", QStringLiteral("Cop&y"), QStringLiteral("Copy the file's path"), group);
    connect(copy, &QPushButton::clicked, &dialog, [box] { QApplication::clipboard()->setText(box->text()); });
    auto* row = new QHBoxLayout(group);
    row->addWidget(label);
    row->addWidget(box, 1);
    row->addWidget(copy);
    layout.addWidget(group);
  }

  QPushButton* makeButton(const char* name, const QString& caption, const QString& tip, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    button->setToolTip(tip);
    button->setAccessibleName(QString(caption).remove(u'&'));
    return button;
  }

  void makeButtons() {
    buttons = new QDialogButtonBox(&dialog);
    const auto add = [this](const char* name, const QString& caption, const QString& tip,
                            QDialogButtonBox::ButtonRole role, std::function<void()> action) {
      QPushButton* button = makeButton(name, caption, tip, &dialog);
      buttons->addButton(button, role);
      connect(button, &QPushButton::clicked, &dialog, std::move(action));
      return button;
    };
    QPushButton* ok = add("cmdOK", QStringLiteral("O&K"), QStringLiteral("Store the changes and close"),
                          QDialogButtonBox::AcceptRole, [this] { dialog.accept(); });
    ok->setDefault(true);
    add("cmdCancel", QStringLiteral("Cancel"), QStringLiteral("Close and leave what is not stored yet"),
        QDialogButtonBox::RejectRole, [this] { dialog.reject(); });
    apply = add("cmdApply", QStringLiteral("&Apply"), QStringLiteral("Store the changes"),
                QDialogButtonBox::ApplyRole, [this] { storeChanges(); });
    add("cmdHelp", QStringLiteral("&Help"), QStringLiteral("What this page is for (F1)"),
        QDialogButtonBox::HelpRole, [this] { help(); });
  }

  void addTurning() {
    const auto turn = [this](const QList<QKeySequence>& keys, int by) {
      for (const QKeySequence& key : keys)
        connect(new QShortcut(key, &dialog), &QShortcut::activated, &dialog, [this, by] {
          pages->setCurrentRow((pages->currentRow() + by + pages->count()) % pages->count());
        });
    };
    turn({QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageDown)}, 1);
    turn({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab),
          QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageUp)},
         -1);
  }

  // ---- Contents ----

  void load() {
    const StoredTexts stored;
    for (const auto& row : rows) {
      row->load(stored.of(row->name()));
      row->onEdited = [this] { edited(); };
    }
    for (SettingEditor* list : lists->editors()) {
      const std::string name = list->name();
      lists->load(std::stoi(name.substr(name.find_last_not_of("0123456789") + 1)), stored.of(name));
    }
    lists->onEdited = [this] {
      coverage->setUnstoredEdits(lists->changed(lists->shownSource()));
      edited();
    };
    lists->setRunTerrain(runTerrainWords());
    showUsedSource();
    if (!stored.problem.empty())
      tell("The settings cannot be read, so that their defaults are shown: " + stored.problem);
    edited();
  }

  // The lists begin with the source that is in use.
  void showUsedSource() {
    const int before = lists->shownSource();
    lists->showSource(static_cast<int>(leadingValue(row("Profile/Prf_TRes")->text())));
    if (lists->shownSource() == before) coverage->showSource(before);
  }

  FieldRow* row(const std::string& name) {
    for (const auto& each : rows)
      if (each->name() == name) return each.get();
    return nullptr;
  }

  QPushButton* defaultOf(const FieldRow& of) {
    return dialog.findChild<QPushButton*>(of.editor()->objectName() + QStringLiteral("_default"));
  }

  std::vector<SettingEditor*> editors() {
    std::vector<SettingEditor*> all;
    for (const auto& each : rows) all.push_back(each.get());
    for (SettingEditor* list : lists->editors()) all.push_back(list);
    return all;
  }

  PreferencesPage pageOf(const SettingEditor* editor) {
    for (const auto& each : rows)
      if (each.get() == editor) return each->field().page;
    return PreferencesPage::kTerrain;
  }

  void edited() {
    bool changed = false, colours = false;
    for (const SettingEditor* each : editors()) changed = changed || each->changed();
    for (const auto& each : rows)
      if (each->field().page == PreferencesPage::kColours) colours = colours || defaultOf(*each)->isEnabled();
    apply->setEnabled(changed);
    allDefaults->setEnabled(colours);
    for (const GroundRow& ground : kGroundRows) showGround(ground);
  }

  std::pair<FieldRow*, FieldRow*> groundRows(const GroundRow& ground) {
    const std::string section = std::string(ground.section) + "/";
    return {row(section + ground.permittivity), row(section + ground.conductivity)};
  }

  void showGround(const GroundRow& ground) {
    const auto [permittivity, conductivity] = groundRows(ground);
    QComboBox* list = grounds.at(ground.page);
    int index = list->count() - 1;
    for (std::size_t i = 0; i < groundKinds().size(); ++i)
      if (sameValue(permittivity->text(), groundKinds()[i].permittivity) &&
          sameValue(conductivity->text(), groundKinds()[i].conductivity))
        index = static_cast<int>(i);
    list->setCurrentIndex(index);
    list->setEnabled(permittivity->editor()->isEnabled() && conductivity->editor()->isEnabled());
  }

  void takeGround(PreferencesPage page, int index) {
    for (const GroundRow& ground : kGroundRows) {
      if (ground.page != page) continue;
      if (index < static_cast<int>(groundKinds().size())) {
        const GroundKind& kind = groundKinds()[static_cast<std::size_t>(index)];
        const auto [permittivity, conductivity] = groundRows(ground);
        permittivity->setText(kind.permittivity);
        conductivity->setText(kind.conductivity);
      } else {
        groundRows(ground).first->reveal();  // own values are typed there
      }
    }
  }

  // ---- Storing ----

  // False when something stays unstored, which is told.
  bool storeChanges() {
    std::vector<SettingEditor*> changed;
    for (SettingEditor* each : editors())
      if (each->changed()) changed.push_back(each);
    for (SettingEditor* each : changed)
      if (const std::string wrong = each->problem(); !wrong.empty()) {
        reveal(each);
        tell("Nothing was stored yet. " + each->words() + ": " + wrong + ".");
        return false;
      }
    tell({});
    return store(changed);
  }

  bool store(const std::vector<SettingEditor*>& changed) {
    std::vector<std::string> stored;
    std::string failure, storedWords, leftWords;
    const auto append = [](std::string& list, const std::string& word) {
      list += (list.empty() ? "" : ", ") + word;
    };
    SettingEditor* failed = nullptr;
    for (SettingEditor* each : changed) {
      if (failed == nullptr) {
        try {
          each->store();
          stored.push_back(each->name());
          append(storedWords, each->words());
          continue;
        } catch (const std::exception& problem) {
          failure = problem.what();
          failed = each;
        }
      }
      append(leftWords, each->words());
    }
    edited();
    for (const std::string& name : stored)
      if (name == "Terrain/Source" + std::to_string(lists->shownSource())) {
        coverage->setUnstoredEdits(false);
        coverage->showSource(lists->shownSource());
      }
    if (!stored.empty() && dialog.onStored) dialog.onStored(stored);
    if (failed == nullptr) return true;
    reveal(failed);
    QMessageBox box(QMessageBox::Warning, dialog.windowTitle(),
                    QStringLiteral("Not everything could be stored."), QMessageBox::Ok, &dialog);
    box.setObjectName(QStringLiteral("boxNotStored"));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(
        QString::fromStdString(failure + "\n\nStored: " + (storedWords.empty() ? "nothing" : storedWords) +
                               ".\nNot stored: " + leftWords + ". These are still here as you set them."));
    box.exec();
    return false;
  }

  // ---- Showing ----

  void reveal(SettingEditor* editor) {
    dialog.showPage(pageOf(editor));
    editor->reveal();
  }

  void tell(const std::string& words) {
    notice->setText(QString::fromStdString(words));
    notice->setVisible(!words.empty());
  }

  void turnTo(int index) {
    if (index < 0) return;
    // From a page that goes the keyboard would go to whatever comes next.
    const QWidget* focused = dialog.focusWidget();
    const bool goes = focused != nullptr && stack->isAncestorOf(focused);
    stack->setCurrentIndex(index);
    if (goes) pages->setFocus(Qt::OtherFocusReason);
  }

  void help() {
    if (dialog.onHelp) {
      dialog.onHelp(dialog.page());
      return;
    }
    const PageWords& words = wordsOf(dialog.page());
    QMessageBox box(QMessageBox::Information, ascii(words.title), ascii(words.help), QMessageBox::Ok,
                    &dialog);
    box.setObjectName(QStringLiteral("boxHelp"));
    box.exec();
  }

  PreferencesDialog& dialog;
  std::vector<std::unique_ptr<FieldRow>> rows;
  std::map<PreferencesPage, QComboBox*> grounds;
  QListWidget* pages = nullptr;
  QStackedWidget* stack = nullptr;
  TerrainLists* lists = nullptr;
  CoverageView* coverage = nullptr;
  QLabel* notice = nullptr;
  QDialogButtonBox* buttons = nullptr;
  QPushButton* apply = nullptr;
  QPushButton* allDefaults = nullptr;
};

PreferencesDialog::PreferencesDialog(QWidget* parent, PreferencesPage page)
    : QDialog(parent), self_(std::make_unique<Self>(*this)) {
  setObjectName(QStringLiteral("dlgPreferences"));
  setWindowTitle(tr("Preferences"));
  self_->build();
  self_->load();
  showPage(page);
  self_->pages->setFocus(Qt::OtherFocusReason);
  resize(sizeHint().expandedTo(minimumSize()).boundedTo(self_->mostSize()));
}

PreferencesDialog::~PreferencesDialog() {
  self_->pages->disconnect(this);
  // The widgets call what belongs to self_, so they go first.
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

void PreferencesDialog::showPage(PreferencesPage page) {
  self_->pages->setCurrentRow(static_cast<int>(page));
}

PreferencesPage PreferencesDialog::page() const {
  return static_cast<PreferencesPage>(self_->pages->currentRow());
}

void PreferencesDialog::accept() {
  if (self_->storeChanges()) QDialog::accept();
}

void PreferencesDialog::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::HelpContents))
    self_->help();
  else
    QDialog::keyPressEvent(event);
}

}  // namespace zel::host
