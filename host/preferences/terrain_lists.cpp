#include "preferences/terrain_lists.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <filesystem>
#include <system_error>
#include <utility>

#include "preferences/field_values.h"
#include "preferences/preference_fields.h"
#include "zel/settings.h"
#include "zel/terrain.h"

namespace zel::host {
namespace {

constexpr int kLeastRows = 6;  // of the list of files and folders

constexpr int kPathRole = Qt::UserRole;          // as bytes: a file's name need not be UTF-8
constexpr int kPathTextRole = Qt::UserRole + 1;  // as it is shown while nobody has typed

std::string pathOf(const QListWidgetItem& item) {
  if (item.text() == item.data(kPathTextRole).toString())
    return item.data(kPathRole).toByteArray().toStdString();
  return QFile::encodeName(item.text()).toStdString();
}

QListWidgetItem* makeItem(const std::string& path) {
  const QByteArray bytes = QByteArray::fromStdString(path);
  auto* item = new QListWidgetItem(QFile::decodeName(bytes));
  item->setData(kPathRole, bytes);
  item->setData(kPathTextRole, item->text());
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  return item;
}

bool isThere(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

constexpr int kListedLines = 3;

// As many lines as fit a page; more are scrolled.
class PathList final : public QListWidget {
 public:
  using QListWidget::QListWidget;
  QSize sizeHint() const override {
    return {30 * fontMetrics().horizontalAdvance(u'x'), kListedLines * (fontMetrics().height() + 4) + 4};
  }
  QSize minimumSizeHint() const override {
    return {20 * fontMetrics().horizontalAdvance(u'x'), sizeHint().height()};
  }
};

}  // namespace

class TerrainLists::List final : public SettingEditor {
 public:
  List(TerrainLists& owner, int code) : owner_(owner), code_(code) {}

  std::string name() const override { return "Terrain/Source" + std::to_string(code_); }
  std::string words() const override { return "terrain of source " + std::to_string(code_); }
  bool changed() const override { return paths != before_; }
  std::string problem() const override {
    for (const std::string& path : paths)
      if (std::string wrong = pathProblem(path); !wrong.empty()) return wrong;
    return {};
  }
  void store() override {
    setTerrainSource(code_, paths);
    before_ = paths;
  }
  void reveal() override {
    owner_.showSource(code_);
    owner_.paths_->setFocus(Qt::OtherFocusReason);
  }
  void load(const StoredText& stored) {
    before_ = paths = pathsOf(stored.text.value_or(std::string()));
    forThisRun = stored.forThisRun;
  }

  std::vector<std::string> paths;
  bool forThisRun = false;

 private:
  TerrainLists& owner_;
  int code_;
  std::vector<std::string> before_;
};

TerrainLists::TerrainLists(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("terrainLists"));
  source_ = new QComboBox(this);
  source_->setObjectName(QStringLiteral("cboSource"));
  source_->setAccessibleName(QStringLiteral("Source"));
  source_->setToolTip(QStringLiteral("The terrain source whose files and coverage are shown"));
  try {
    for (const FieldChoice& choice : terrainSourceChoices()) {
      const int code = std::stoi(choice.code);
      source_->addItem(QString::fromStdString(choice.words), code);
      lists_.emplace(code, std::make_unique<List>(*this, code));
    }
  } catch (const SettingsError&) {
    // Told where the settings are read; there is then no list.
  }
  paths_ = new PathList(this);
  paths_->setObjectName(QStringLiteral("lstPaths"));
  paths_->setAccessibleName(QStringLiteral("Files and folders"));
  paths_->setToolTip(
      QStringLiteral("Rasters and folders of rasters; where they overlap, the upper ones count first"));
  paths_->setTextElideMode(Qt::ElideMiddle);
  paths_->setMinimumHeight(kLeastRows * fontMetrics().lineSpacing() + 2 * paths_->frameWidth());
  auto* sourceLabel = new QLabel(QStringLiteral("&Source"), this);
  sourceLabel->setBuddy(source_);
  auto* pathsLabel = new QLabel(QStringLiteral("&Files and folders"), this);
  pathsLabel->setBuddy(paths_);
  note_ = new QLabel(this);
  note_->setObjectName(QStringLiteral("lblPathsNote"));
  note_->setWordWrap(true);
  note_->setTextFormat(Qt::PlainText);
  runNote_ = new QLabel(this);
  runNote_->setObjectName(QStringLiteral("lblRunTerrain"));
  runNote_->setWordWrap(true);
  runNote_->setTextFormat(Qt::PlainText);
  runNote_->hide();

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins({});
  grid->addWidget(runNote_, 0, 0, 1, 2);
  grid->addWidget(sourceLabel, 1, 0);
  grid->addWidget(source_, 1, 1, Qt::AlignLeft);
  grid->addWidget(pathsLabel, 2, 0, 1, 2);
  grid->addWidget(paths_, 3, 0, 1, 2);
  grid->addWidget(makeButtons(), 4, 0, 1, 2);
  grid->addWidget(note_, 5, 0, 1, 2);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(3, 1);

  connect(source_, &QComboBox::currentIndexChanged, this, [this] {
    showCurrent();
    if (onSourceShown) onSourceShown(shownSource());
  });
  connect(paths_, &QListWidget::itemChanged, this, [this] { takeEdits(); });
  connect(paths_, &QListWidget::currentRowChanged, this, [this] { refresh(); });
  showCurrent();
}

TerrainLists::~TerrainLists() {
  // What the boxes report while they are taken down is no edit.
  source_->disconnect(this);
  paths_->disconnect(this);
}

QPushButton* TerrainLists::makeButton(const char* name, const QString& caption, const QString& tip,
                                      std::function<void()> action) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  button->setToolTip(tip);
  button->setAccessibleName(QString(caption).remove(u'&'));
  connect(button, &QPushButton::clicked, this, std::move(action));
  return button;
}

QWidget* TerrainLists::makeButtons() {
  addFiles_ = makeButton("cmdAddFiles", QStringLiteral("Add F&iles..."), QStringLiteral("Add raster files"),
                         [this] { addFiles(); });
  addFolder_ = makeButton("cmdAddFolder", QStringLiteral("Add F&older..."),
                          QStringLiteral("Add a folder of rasters"), [this] { addFolder(); });
  edit_ = makeButton("cmdEditPath", QStringLiteral("&Edit"), QStringLiteral("Edit the chosen path by typing"),
                     [this] { editPath(); });
  remove_ = makeButton("cmdRemove", QStringLiteral("&Remove"),
                       QStringLiteral("Take the chosen path off the list; files stay where they are"),
                       [this] { remove(); });
  up_ = makeButton("cmdUp", QStringLiteral("&Up"), QStringLiteral("Before the path above"),
                   [this] { moveBy(-1); });
  down_ = makeButton("cmdDown", QStringLiteral("&Down"), QStringLiteral("Behind the path below"),
                     [this] { moveBy(1); });
  sample_ =
      makeButton("cmdSample", QStringLiteral("Use the &Bundled Sample"),
                 QStringLiteral("Empty the list: the terrain that comes with the program is used"), [this] {
                   current().paths.clear();
                   showCurrent();
                   if (onEdited) onEdited();
                 });
  auto* box = new QWidget(this);
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins({});
  grid->addWidget(addFiles_, 0, 0);
  grid->addWidget(addFolder_, 0, 1);
  grid->addWidget(edit_, 0, 2);
  grid->addWidget(remove_, 0, 3);
  grid->addWidget(up_, 1, 0);
  grid->addWidget(down_, 1, 1);
  grid->addWidget(sample_, 1, 2, 1, 2);
  auto* removal = new QShortcut(QKeySequence(Qt::Key_Delete), paths_, nullptr, nullptr, Qt::WidgetShortcut);
  connect(removal, &QShortcut::activated, this, [this] { remove(); });
  return box;
}

TerrainLists::List& TerrainLists::current() const { return *lists_.at(shownSource()); }

int TerrainLists::shownSource() const { return source_->currentData().toInt(); }

void TerrainLists::showSource(int code) {
  const int index = source_->findData(code);
  if (index >= 0) source_->setCurrentIndex(index);
}

bool TerrainLists::changed(int code) const {
  const auto found = lists_.find(code);
  return found != lists_.end() && found->second->changed();
}

std::vector<SettingEditor*> TerrainLists::editors() {
  std::vector<SettingEditor*> all;
  for (const auto& [code, list] : lists_) all.push_back(list.get());
  return all;
}

void TerrainLists::load(int code, const StoredText& stored) {
  const auto found = lists_.find(code);
  if (found == lists_.end()) return;
  found->second->load(stored);
  if (code == shownSource()) showCurrent();
}

void TerrainLists::setRunTerrain(const std::string& words) {
  runNote_->setText(QString::fromStdString(words));
  runNote_->setVisible(!words.empty());
}

void TerrainLists::showCurrent() {
  if (lists_.empty()) {
    setEnabled(false);
    return;
  }
  showing_ = true;
  paths_->clear();
  for (const std::string& path : current().paths) paths_->addItem(makeItem(path));
  if (paths_->count() > 0) paths_->setCurrentRow(0);
  showing_ = false;
  refresh();
}

// What stands in the list becomes the source's paths.
void TerrainLists::takeEdits() {
  if (showing_) return;
  std::vector<std::string> paths;
  paths.reserve(static_cast<std::size_t>(paths_->count()));
  for (int i = 0; i < paths_->count(); ++i) paths.push_back(pathOf(*paths_->item(i)));
  current().paths = std::move(paths);
  refresh();
  if (onEdited) onEdited();
}

void TerrainLists::refresh() {
  if (lists_.empty() || showing_) return;
  const List& list = current();
  const int row = paths_->currentRow();
  const bool editable = !list.forThisRun, chosen = editable && row >= 0;
  for (QWidget* widget : std::initializer_list<QWidget*>{addFiles_, addFolder_, paths_})
    widget->setEnabled(editable);
  edit_->setEnabled(chosen);
  remove_->setEnabled(chosen);
  up_->setEnabled(chosen && row > 0);
  down_->setEnabled(chosen && row + 1 < paths_->count());
  sample_->setEnabled(editable && !list.paths.empty());

  const std::string wrong = list.problem();
  QFont font;
  font.setBold(!wrong.empty());
  note_->setFont(font);
  if (list.forThisRun) {
    note_->setText(QStringLiteral("Given for this run only; not changed here."));
    return;
  }
  if (!wrong.empty()) {
    note_->setText(QStringLiteral("Cannot be stored: %1.").arg(QString::fromStdString(wrong)));
    return;
  }
  if (list.paths.empty()) {
    note_->setText(QStringLiteral("Nothing is set: the bundled sample terrain stands in (the default)."));
    return;
  }
  for (const std::string& path : list.paths)
    if (!isThere(path)) {
      note_->setText(
          QStringLiteral("Not there at present: %1").arg(QFile::decodeName(QByteArray::fromStdString(path))));
      return;
    }
  note_->setText(QStringLiteral("Where rasters overlap, those of the upper paths count first."));
}

void TerrainLists::addPaths(const QStringList& paths) {
  showing_ = true;
  for (const QString& path : paths)
    if (paths_->findItems(path, Qt::MatchExactly).isEmpty())
      paths_->addItem(makeItem(QFile::encodeName(path).toStdString()));
  paths_->setCurrentRow(paths_->count() - 1);
  showing_ = false;
  takeEdits();
}

void TerrainLists::addFiles() {
  QFileDialog dialog(window(), QStringLiteral("Add Raster Files"));
  dialog.setObjectName(QStringLiteral("dlgAddFiles"));
  dialog.setFileMode(QFileDialog::ExistingFiles);
  dialog.setNameFilters(
      {QStringLiteral(
           "Rasters (*.tif *.tiff *.hgt *.zip *.dt0 *.dt1 *.dt2 *.vrt *.asc *.img *.bil *.flt *.dem)"),
       QStringLiteral("All files (*)")});
  if (dialog.exec() == QDialog::Accepted) addPaths(dialog.selectedFiles());
}

void TerrainLists::addFolder() {
  QFileDialog dialog(window(), QStringLiteral("Add a Folder of Rasters"));
  dialog.setObjectName(QStringLiteral("dlgAddFolder"));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  if (dialog.exec() == QDialog::Accepted) addPaths(dialog.selectedFiles());
}

void TerrainLists::remove() {
  const int row = paths_->currentRow();
  if (row < 0 || !remove_->isEnabled()) return;
  showing_ = true;
  delete paths_->takeItem(row);
  showing_ = false;
  takeEdits();
}

void TerrainLists::moveBy(int places) {
  const int row = paths_->currentRow(), to = row + places;
  if (row < 0 || to < 0 || to >= paths_->count()) return;
  showing_ = true;
  paths_->insertItem(to, paths_->takeItem(row));
  paths_->setCurrentRow(to);
  showing_ = false;
  takeEdits();
}

void TerrainLists::editPath() {
  if (QListWidgetItem* item = paths_->currentItem()) {
    paths_->setFocus(Qt::OtherFocusReason);
    paths_->editItem(item);
  }
}

}  // namespace zel::host
