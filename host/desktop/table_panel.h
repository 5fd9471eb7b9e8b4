// A sortable table under a filter box. Rows are those of the model, whatever is shown and in which order.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <QWidget>
#include <functional>
#include <vector>

class QLabel;
class QLineEdit;
class QSortFilterProxyModel;

namespace zel::host {

class TablePanel final : public QWidget {
 public:
  struct Names {
    QString object;      // "stations": the table is "stationsTable", the box "stationsFilter"
    QString accessible;  // "Stations"
    QString filterTip;
  };

  TablePanel(const Names& names, QAbstractTableModel* model, QWidget* parent = nullptr);

  QTableView* table() const { return table_; }
  QLineEdit* filter() const { return filter_; }

  std::vector<int> selectedRows() const;          // in the order shown
  void selectRows(const std::vector<int>& rows);  // does not call back
  int currentRow() const;                         // -1 without one
  void showRow(int row);                          // scrolls there, where the filter lets it be seen
  std::vector<int> shownRows() const;             // in the order shown
  // The current row, or else the first, where none is chosen.
  void chooseCurrent();
  void fitColumns();  // to the texts of the first rows, unless sized by hand
  // The selected rows, or all that are shown, with the headers: cells as they are shown.
  QString tabSeparated() const;
  QString commaSeparated() const;

  std::function<void()> onSelectionChanged;
  std::function<void(int row, int column)> onActivated;  // Enter, double click
  std::function<void(int row, QPoint global)> onContextMenu;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString separated(const std::vector<int>& rows, QChar separator) const;
  void countShown();

  QAbstractTableModel* model_;
  QSortFilterProxyModel* proxy_;
  QLineEdit* filter_;
  QLabel* count_;
  QTableView* table_;
  bool quiet_ = false;
  bool sizedByHand_ = false;
};

}  // namespace zel::host
