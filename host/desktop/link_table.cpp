#include "desktop/link_table.h"

#include <QColor>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QPixmap>
#include <limits>

#include "desktop/link_text.h"

namespace zel::host {
namespace {

// A square beside the word; the same colours as the stretches on the map, told apart without red and green
// by their lightness.
QColor verdictColour(const LinkResult& result) {
  switch (result.verdict) {
    case PathVerdict::kClear:
      return {0x1b, 0x9e, 0x77};
    case PathVerdict::kMarginal:
      return {0xe6, 0xab, 0x02};
    case PathVerdict::kBlocked:
      return {0xd7, 0x30, 0x27};
    case PathVerdict::kUnknown:
      break;
  }
  return {0x80, 0x80, 0x80};
}

// In a chosen row, too, where the toolkit would mix in the highlight's colour.
QIcon colourSample(const QColor& colour) {
  constexpr int kSide = 16;
  QPixmap square(kSide, kSide);
  square.fill(colour);
  QIcon icon;
  for (const auto mode : {QIcon::Normal, QIcon::Active, QIcon::Selected}) icon.addPixmap(square, mode);
  return icon;
}

bool hasFigures(const LinkResult* result) {
  return result != nullptr && result->error.empty() && !result->terrain.empty();
}

bool hasPath(const LinkResult* result) { return result != nullptr && result->distanceKm > 0; }

QString rowTip(const LinkResult* result) {
  if (result == nullptr || !result->done) return QStringLiteral("This link is being computed");
  return plainTip(linkTip(*result));
}

}  // namespace

void LinkModel::setUnits(const ShownUnits& units) {
  if (units == units_) return;
  units_ = units;
  allChanged();
}

int LinkModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QString LinkModel::textOf(const Link& link, const LinkResult* result, int column) const {
  switch (column) {
    case kFrom:
      return stationName(plan_, link.from);
    case kTo:
      return stationName(plan_, link.to);
    case kFrequency:
      return link.frequencyMhz ? plainNumber(*link.frequencyMhz, 6) : QString();
    case kVerdict:
      return verdictWord(result);
    default:
      break;
  }
  // Distance and bearing need no ground.
  if (column == kDistance && hasPath(result)) return distanceNumber(result->distanceKm, units_, 2);
  if (column == kBearing && hasPath(result)) return QString::number(result->bearingDeg, 'f', 1);
  if (!hasFigures(result)) return {};
  switch (column) {
    case kFreeSpace:
      return QString::number(result->freeSpaceDb, 'f', 1);
    case kModeled:
      return result->modeledDb ? QString::number(*result->modeledDb, 'f', 1) : QString();
    default:
      break;
  }
  if (!result->worst) return {};
  if (column == kClearance) return QString::number(result->worst->clearancePercent, 'f', 0);
  if (column == kWorstAt) return distanceNumber(result->worst->distanceKm, units_, 1);
  return heightNumber(result->worst->groundM, units_, 0);
}

// What has no figure yet comes last in ascending order.
QVariant LinkModel::sortKey(const Link& link, const LinkResult* result, int column) const {
  constexpr double kNothing = std::numeric_limits<double>::max();
  switch (column) {
    case kFrom:
    case kTo:
    case kVerdict:
      return textOf(link, result, column);
    case kFrequency:
      return link.frequencyMhz.value_or(kNothing);
    default:
      break;
  }
  if (column == kDistance) return hasPath(result) ? result->distanceKm : kNothing;
  if (column == kBearing) return hasPath(result) ? result->bearingDeg : kNothing;
  if (!hasFigures(result)) return kNothing;
  if (column == kFreeSpace) return result->freeSpaceDb;
  if (column == kModeled) return result->modeledDb.value_or(kNothing);
  if (!result->worst) return kNothing;
  if (column == kClearance) return result->worst->clearancePercent;
  return column == kWorstAt ? result->worst->distanceKm : result->worst->groundM;
}

QVariant LinkModel::data(const QModelIndex& index, int role) const {
  const auto found = plan_.links.find(idAt(index.row()));
  if (found == plan_.links.end()) return {};
  const Link& link = found->second;
  const LinkResult* result = analysis_.find(found->first);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return textOf(link, result, index.column());
    case Qt::ToolTipRole:
      // Names may be longer than their columns.
      if (index.column() <= kTo) return plainTip(textOf(link, result, index.column()));
      return rowTip(result);
    case Qt::DecorationRole:
      if (index.column() == kVerdict && hasFigures(result) && result->done)
        return colourSample(verdictColour(*result));
      return {};
    case Qt::ForegroundRole:
      // Figures of the time before a change are pale until they are computed anew.
      if (hasFigures(result) && !result->done)
        return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
      return {};
    case Qt::TextAlignmentRole:
      return QVariant(index.column() <= kTo || index.column() == kVerdict
                          ? Qt::AlignLeft | Qt::AlignVCenter
                          : Qt::AlignRight | Qt::AlignVCenter);
    case kFilterRole:
      return linkTitle(plan_, link) + u' ' + verdictWord(result);
    case kSortRole:
      return sortKey(link, result, index.column());
    default:
      return {};
  }
}

QVariant LinkModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  const bool tip = role == Qt::ToolTipRole;
  const auto pick = [tip](const char* title, const char* explanation) {
    return QString::fromUtf8(tip ? explanation : title);
  };
  switch (section) {
    case kFrom:
      return pick("From", "Station where the link starts");
    case kTo:
      return pick("To", "Station where the link ends");
    case kDistance:
      return tip ? QStringLiteral("Distance along the earth")
                 : QStringLiteral("Distance (%1)").arg(distanceUnit(units_));
    case kBearing:
      return pick("Bearing (°)", "Bearing at the start, clockwise from north");
    case kFrequency:
      return pick("Frequency (MHz)", "Frequency of this link; empty for that of the settings");
    case kFreeSpace:
      return pick("Free Space (dB)", "Free-space loss");
    case kModeled:
      return pick(
          "Modeled (dB)",
          "Modeled (Longley-Rice) loss from station to station, with the parameters of the "
          "preferences.\nThe profile window's own figure is of its own samples and of the values in its "
          "panel, and may differ a little.");
    case kClearance:
      return pick("Clearance (%)",
                  "Least clearance, in percent of the first Fresnel zone's radius, of the exact geometry; "
                  "the profile "
                  "window's plot follows its own samples");
    case kWorstAt:
      return tip ? QStringLiteral("Distance of the worst obstacle from the start")
                 : QStringLiteral("Obstacle at (%1)").arg(distanceUnit(units_));
    case kWorstGround:
      return tip ? QStringLiteral("Ground at the worst obstacle, above sea level")
                 : QStringLiteral("Ground (%1)").arg(heightUnit(units_));
    default:
      return pick("Verdict",
                  "Clear: 60 % of the first Fresnel zone is free; marginal: less; blocked: ground "
                  "above the line of sight");
  }
}

Qt::ItemFlags LinkModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
  return index.column() == kFrequency ? usual | Qt::ItemIsEditable : usual;
}

bool LinkModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || index.column() != kFrequency) return false;
  const LinkId id = idAt(index.row());
  const auto found = plan_.links.find(id);
  if (found == plan_.links.end()) return false;
  const QString text = value.toString();
  if (text == textOf(found->second, nullptr, kFrequency)) return false;
  const auto typed = typedFrequency(text);
  if (!typed.value) {
    if (onProblem) onProblem(typed.problem);
    return false;
  }
  if (onEdited) onEdited(id, *typed.value);
  return true;
}

}  // namespace zel::host
