// A table whose rows are the entries of a plan's map, in the order of their ids.
#pragma once

#include <QAbstractTableModel>
#include <algorithm>
#include <map>
#include <vector>

namespace zel::host {

// Beside what a cell shows: its value to sort by.
inline constexpr int kSortRole = Qt::UserRole;
// Of a row: the texts that the filter looks at.
inline constexpr int kFilterRole = Qt::UserRole + 1;

template <typename Id, typename Value>
class IdTableModel : public QAbstractTableModel {
 public:
  using Entries = std::map<Id, Value>;

  explicit IdTableModel(const Entries& entries, QObject* parent) : QAbstractTableModel(parent) {
    takeAll(entries);
  }

  const std::vector<Id>& ids() const { return ids_; }
  Id idAt(int row) const { return ids_[static_cast<std::size_t>(row)]; }
  // -1 when there is none.
  int rowOf(Id id) const {
    const auto found = std::lower_bound(ids_.begin(), ids_.end(), id);
    return found != ids_.end() && *found == id ? static_cast<int>(found - ids_.begin()) : -1;
  }

  void reset(const Entries& entries) {
    beginResetModel();
    takeAll(entries);
    endResetModel();
  }

  // These are new, different or gone. Many at once reset the table, which is cheaper than row by row.
  void update(const Entries& entries, const std::vector<Id>& touched) {
    std::size_t comeOrGone = 0;
    for (const Id id : touched)
      if (entries.contains(id) != (rowOf(id) >= 0)) ++comeOrGone;
    if (comeOrGone > kMostSingleRows) {
      reset(entries);
      return;
    }
    for (const Id id : touched) updateOne(entries, id);
  }

  void changed(Id id) {
    const int row = rowOf(id);
    if (row >= 0) Q_EMIT dataChanged(index(row, 0), index(row, columnCount({}) - 1));
  }
  void allChanged() {
    if (ids_.empty()) return;
    Q_EMIT dataChanged(index(0, 0), index(rowCount({}) - 1, columnCount({}) - 1));
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount({}) - 1);
  }

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(ids_.size());
  }

 private:
  static constexpr std::size_t kMostSingleRows = 50;

  void takeAll(const Entries& entries) {
    ids_.clear();
    for (const auto& entry : entries) ids_.push_back(entry.first);
  }

  void updateOne(const Entries& entries, Id id) {
    const int row = rowOf(id);
    if (row >= 0 && entries.contains(id)) {
      changed(id);
    } else if (row >= 0) {
      beginRemoveRows({}, row, row);
      ids_.erase(ids_.begin() + row);
      endRemoveRows();
    } else if (entries.contains(id)) {
      const auto place = std::lower_bound(ids_.begin(), ids_.end(), id);
      const int at = static_cast<int>(place - ids_.begin());
      beginInsertRows({}, at, at);
      ids_.insert(place, id);
      endInsertRows();
    }
  }

  std::vector<Id> ids_;
};

}  // namespace zel::host
