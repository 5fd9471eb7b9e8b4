#include "desktop/station_table.h"

#include <cmath>

namespace zel::host {

void StationModel::setUnits(const ShownUnits& units) {
  if (units == units_) return;
  units_ = units;
  allChanged();
}

int StationModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QString StationModel::textOf(const Station& station, int column) const {
  switch (column) {
    case kName:
      return QString::fromStdString(station.name);
    case kLatitude:
      return shownLatitude(station.position.latitude, units_);
    case kLongitude:
      return shownLongitude(station.position.longitude, units_);
    default:
      return heightNumber(station.antennaM, units_, -2);
  }
}

QVariant StationModel::data(const QModelIndex& index, int role) const {
  const auto found = plan_.stations.find(idAt(index.row()));
  if (found == plan_.stations.end()) return {};
  const Station& station = found->second;
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return textOf(station, index.column());
    case Qt::TextAlignmentRole:
      return QVariant(index.column() == kName ? Qt::AlignLeft | Qt::AlignVCenter
                                              : Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ToolTipRole:
      return index.column() == kName ? plainTip(QString::fromStdString(station.name)) : QString();
    case kFilterRole:
      return QString::fromStdString(station.name);
    case kSortRole:
      if (index.column() == kLatitude) return station.position.latitude;
      if (index.column() == kLongitude) return station.position.longitude;
      if (index.column() == kAntenna) return station.antennaM;
      return QString::fromStdString(station.name);
    default:
      return {};
  }
}

QVariant StationModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  const bool tip = role == Qt::ToolTipRole;
  switch (section) {
    case kName:
      return tip ? QStringLiteral("Name of the station") : QStringLiteral("Name");
    case kLatitude:
      return tip ? QStringLiteral("Decimal degrees or degrees-minutes-seconds, north positive")
                 : QStringLiteral("Latitude");
    case kLongitude:
      return tip ? QStringLiteral("Decimal degrees or degrees-minutes-seconds, east positive")
                 : QStringLiteral("Longitude");
    default:
      return tip ? QStringLiteral("Antenna height above ground")
                 : QStringLiteral("Antenna (%1)").arg(heightUnit(units_));
  }
}

Qt::ItemFlags StationModel::flags(const QModelIndex& index) const {
  return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool StationModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  const StationId id = idAt(index.row());
  const auto found = plan_.stations.find(id);
  if (found == plan_.stations.end()) return false;
  const QString text = value.toString();
  // What was only looked at is not rounded to what is shown.
  if (text == textOf(found->second, index.column())) return false;
  Station station = found->second;
  QString problem;
  const auto take = [&problem](const Typed<double>& typed, double& into) {
    problem = typed.problem;
    if (typed.value) into = *typed.value;
  };
  switch (index.column()) {
    case kName:
      station.name = tidyName(text.toStdString());
      break;
    case kLatitude:
      take(typedLatitude(text), station.position.latitude);
      break;
    case kLongitude:
      take(typedLongitude(text), station.position.longitude);
      break;
    default:
      take(typedAntenna(text, units_), station.antennaM);
      break;
  }
  if (problem.isEmpty()) problem = QString::fromStdString(stationProblem(station));
  if (!problem.isEmpty()) {
    if (onProblem) onProblem(problem);
    return false;
  }
  if (onEdited) onEdited(id, station);
  return true;
}

}  // namespace zel::host
