#include "desktop/table_panel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/id_table_model.h"

namespace zel::host {
namespace {

constexpr int kWidestColumn = 24;  // average characters

QString cell(const QString& text, QChar separator) {
  if (separator == u'\t') {
    QString plain = text;
    return plain.replace(u'\t', u' ').replace(u'\n', u' ');
  }
  if (!text.contains(separator) && !text.contains(u'"') && !text.contains(u'\n')) return text;
  QString quoted = text;
  return u'"' + quoted.replace(QLatin1String("\""), QLatin1String("\"\"")) + u'"';
}

}  // namespace

TablePanel::TablePanel(const Names& names, QAbstractTableModel* model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      proxy_(new QSortFilterProxyModel(this)),
      filter_(new QLineEdit(this)),
      count_(new QLabel(this)),
      table_(new QTableView(this)) {
  setObjectName(names.object + QStringLiteral("Panel"));
  proxy_->setSourceModel(model_);
  proxy_->setFilterRole(kFilterRole);
  proxy_->setFilterKeyColumn(0);
  proxy_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  proxy_->setSortRole(kSortRole);
  proxy_->setSortCaseSensitivity(Qt::CaseInsensitive);
  proxy_->setSortLocaleAware(true);

  filter_->setObjectName(names.object + QStringLiteral("Filter"));
  filter_->setClearButtonEnabled(true);
  filter_->setPlaceholderText(QStringLiteral("Filter"));
  filter_->setToolTip(names.filterTip);
  filter_->setAccessibleName(QStringLiteral("Filter of ") + names.accessible.toLower());
  auto* label = new QLabel(QStringLiteral("Sho&w:"), this);
  label->setBuddy(filter_);
  count_->setObjectName(names.object + QStringLiteral("Count"));

  table_->setObjectName(names.object + QStringLiteral("Table"));
  table_->setAccessibleName(names.accessible);
  table_->setToolTip(names.accessible);
  table_->setModel(proxy_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  table_->setAlternatingRowColors(true);
  table_->setTabKeyNavigation(false);  // Tab leaves the table, so that all can be reached by keyboard
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  table_->horizontalHeader()->setResizeContentsPrecision(50);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->setSortingEnabled(true);
  // As the plan has them, until a header is clicked.
  table_->horizontalHeader()->setSortIndicatorClearable(true);
  table_->sortByColumn(-1, Qt::AscendingOrder);
  table_->installEventFilter(this);

  auto* line = new QHBoxLayout;
  line->addWidget(label);
  line->addWidget(filter_, 1);
  line->addWidget(count_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addLayout(line);
  layout->addWidget(table_);

  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
    proxy_->setFilterFixedString(text.trimmed());
    countShown();
  });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (!quiet_ && onSelectionChanged) onSelectionChanged();
  });
  connect(table_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    if (onActivated) onActivated(proxy_->mapToSource(index).row(), index.column());
  });
  connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
    if (QApplication::mouseButtons() != Qt::NoButton) sizedByHand_ = true;
  });
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(table_, &QTableView::customContextMenuRequested, this, [this](QPoint at) {
    const QModelIndex index = table_->indexAt(at);
    if (index.isValid() && onContextMenu)
      onContextMenu(proxy_->mapToSource(index).row(), table_->viewport()->mapToGlobal(at));
  });
  for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
    connect(proxy_, signal, this, [this] { countShown(); });
  connect(proxy_, &QAbstractItemModel::modelReset, this, [this] { countShown(); });
  countShown();
}

void TablePanel::countShown() {
  const int shown = proxy_->rowCount();
  const int all = model_->rowCount();
  count_->setText(shown == all ? QString::number(all) : QStringLiteral("%1 of %2").arg(shown).arg(all));
}

std::vector<int> TablePanel::selectedRows() const {
  std::vector<int> shown;
  for (const QItemSelectionRange& range : table_->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) shown.push_back(row);
  std::sort(shown.begin(), shown.end());
  shown.erase(std::unique(shown.begin(), shown.end()), shown.end());
  for (int& row : shown) row = proxy_->mapToSource(proxy_->index(row, 0)).row();
  return shown;
}

void TablePanel::selectRows(const std::vector<int>& rows) {
  std::vector<int> shown;
  for (const int row : rows) {
    const QModelIndex index = proxy_->mapFromSource(model_->index(row, 0));
    if (index.isValid()) shown.push_back(index.row());
  }
  std::sort(shown.begin(), shown.end());
  // Neighbours as one range: thousands of ranges are slow.
  QItemSelection selection;
  for (std::size_t i = 0; i < shown.size();) {
    std::size_t last = i;
    while (last + 1 < shown.size() && shown[last + 1] <= shown[last] + 1) ++last;
    selection.append(QItemSelectionRange(proxy_->index(shown[i], 0),
                                         proxy_->index(shown[last], proxy_->columnCount() - 1)));
    i = last + 1;
  }
  quiet_ = true;
  table_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  if (shown.size() == 1)
    table_->selectionModel()->setCurrentIndex(
        proxy_->index(shown.front(), std::max(0, table_->currentIndex().column())),
        QItemSelectionModel::NoUpdate);
  quiet_ = false;
}

int TablePanel::currentRow() const { return proxy_->mapToSource(table_->currentIndex()).row(); }

void TablePanel::showRow(int row) {
  const QModelIndex index = proxy_->mapFromSource(model_->index(row, 0));
  if (index.isValid()) table_->scrollTo(index);
}

std::vector<int> TablePanel::shownRows() const {
  std::vector<int> rows;
  for (int row = 0; row < proxy_->rowCount(); ++row)
    rows.push_back(proxy_->mapToSource(proxy_->index(row, 0)).row());
  return rows;
}

void TablePanel::chooseCurrent() {
  if (table_->selectionModel()->hasSelection() || proxy_->rowCount() == 0) return;
  const QModelIndex current = table_->currentIndex();
  table_->setCurrentIndex(current.isValid() ? current : proxy_->index(0, 0));
  table_->selectRow(table_->currentIndex().row());
}

void TablePanel::fitColumns() {
  if (sizedByHand_) return;
  table_->resizeColumnsToContents();
  // One long name is not to push all figures out of sight.
  const int widest = kWidestColumn * table_->fontMetrics().averageCharWidth();
  for (int column = 0; column < proxy_->columnCount(); ++column)
    if (table_->columnWidth(column) > widest)
      table_->setColumnWidth(column, std::max(widest, table_->horizontalHeader()->sectionSizeHint(column)));
}

QString TablePanel::separated(const std::vector<int>& rows, QChar separator) const {
  const int columns = model_->columnCount();
  const QString end = separator == u'\t' ? QStringLiteral("\n") : QStringLiteral("\r\n");
  QString text;
  const auto addLine = [&](auto&& textOf) {
    for (int column = 0; column < columns; ++column) {
      if (column > 0) text += separator;
      text += cell(textOf(column), separator);
    }
    text += end;
  };
  addLine([this](int column) { return model_->headerData(column, Qt::Horizontal).toString(); });
  for (const int row : rows)
    addLine([this, row](int column) { return model_->index(row, column).data().toString(); });
  return text;
}

QString TablePanel::tabSeparated() const { return separated(selectedRows(), u'\t'); }

QString TablePanel::commaSeparated() const { return separated(shownRows(), u','); }

bool TablePanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    // One that ends the editing of a cell comes here, too.
    const auto editors = table_->viewport()->findChildren<QLineEdit*>();
    const bool editing = std::any_of(editors.begin(), editors.end(),
                                     [](const QLineEdit* editor) { return !editor->isHidden(); });
    if (enter && !editing && key->modifiers() == Qt::NoModifier && currentRow() >= 0 && onActivated) {
      onActivated(currentRow(), -1);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace zel::host
