// The table of stations: name, latitude, longitude and antenna, each changed in place.
#pragma once

#include <functional>

#include "desktop/id_table_model.h"
#include "desktop/shown_values.h"
#include "planning/plan.h"

namespace zel::host {

class StationModel final : public IdTableModel<StationId, Station> {
 public:
  enum Column { kName, kLatitude, kLongitude, kAntenna, kColumns };

  // The plan must outlive the model.
  explicit StationModel(const Plan& plan, QObject* parent = nullptr)
      : IdTableModel(plan.stations, parent), plan_(plan) {}

  void setUnits(const ShownUnits& units);

  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  // Asks for the change; the table follows the plan.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  std::function<void(StationId, const Station&)> onEdited;
  std::function<void(const QString&)> onProblem;  // what was typed cannot be

 private:
  QString textOf(const Station& station, int column) const;

  const Plan& plan_;
  ShownUnits units_;
};

}  // namespace zel::host
