#include "desktop/link_text.h"

#include <cmath>

#include "zel/geodesic.h"

namespace zel::host {
namespace {

QString worstText(const LinkResult& result, const ShownUnits& units) {
  QString verdict = verdictWord(&result);
  if (!result.worst) return verdict;
  const QString place = QStringLiteral(" at ") + distanceText(result.worst->distanceKm, units, 1);
  if (result.worst->clearanceM < 0)
    return verdict + QStringLiteral(": ground ") + heightText(-result.worst->clearanceM, units) +
           QStringLiteral(" over the line") + place;
  return verdict + QStringLiteral(": %1 % of zone 1").arg(std::round(result.worst->clearancePercent)) + place;
}

QString originText(const LinkResult& result) {
  QString terrain = QString::fromStdString(result.terrain);
  terrain.replace(QLatin1String(" ("), QLatin1String(", ")).remove(u')');
  return QStringLiteral(" (%1 MHz, k %2; %3)")
      .arg(plainNumber(result.frequencyMhz, 6), plainNumber(result.k, 3), terrain);
}

QString shownTitle(const Plan& plan, StationId from, StationId to) {
  return shownName(stationName(plan, from)) + QStringLiteral(" - ") + shownName(stationName(plan, to)) +
         QStringLiteral(": ");
}

}  // namespace

QString shownName(const QString& name) {
  constexpr qsizetype kLongest = 40;
  if (name.size() <= kLongest) return name;
  QString cut = name.left(kLongest - 1);
  if (cut.back().isHighSurrogate()) cut.chop(1);
  return cut.trimmed() + QChar(0x2026);
}

QString stationName(const Plan& plan, StationId id) {
  const auto found = plan.stations.find(id);
  return found == plan.stations.end() ? QString() : QString::fromStdString(found->second.name);
}

QString linkTitle(const Plan& plan, const Link& link) {
  return stationName(plan, link.from) + QStringLiteral(" - ") + stationName(plan, link.to);
}

QString verdictWord(const LinkResult* result) {
  if (result == nullptr || !result->done) return QStringLiteral("computing");
  if (result->noTerrain) return QStringLiteral("no terrain");
  if (!result->error.empty()) return QStringLiteral("refused");
  return QString::fromLatin1(verdictText(result->verdict));
}

QString linkOrigin(const LinkResult& result) {
  QString text = QStringLiteral("Computed with %1 MHz, k %2, terrain: %3")
                     .arg(plainNumber(result.frequencyMhz, 6), plainNumber(result.k, 3),
                          QString::fromStdString(result.terrain));
  for (const std::string& note : result.notes) text += u'\n' + QString::fromStdString(note);
  return text;
}

QString noTerrainText(const LinkResult& result, const ShownUnits& units) {
  const QString place =
      result.outside ? QStringLiteral(" at ") + shownPosition(*result.outside, units) : QString();
  return QStringLiteral("no terrain%1; add some in Preferences, Terrain").arg(place);
}

QString linkTip(const LinkResult& result) {
  return result.error.empty() ? linkOrigin(result) : QString::fromStdString(result.error);
}

QString pairSummary(const Plan& plan, StationId from, StationId to, const ShownUnits& units) {
  const GeodesicLine line = geodesicLine(mapPosition(plan.stations.at(from).position).position,
                                         mapPosition(plan.stations.at(to).position).position, 2);
  return shownTitle(plan, from, to) + distanceText(line.distanceKm, units) +
         QStringLiteral(", %1°; Ctrl+L links them").arg(line.bearingDeg, 0, 'f', 1);
}

QString linkSummary(const Plan& plan, const Link& link, const LinkResult* result, const ShownUnits& units) {
  const QString name = shownTitle(plan, link.from, link.to);
  if (result == nullptr || !result->done) return name + QStringLiteral("computing");
  if (!result->error.empty()) {
    const QString path = result->distanceKm > 0
                             ? distanceText(result->distanceKm, units) +
                                   QStringLiteral(", %1°; ").arg(result->bearingDeg, 0, 'f', 1)
                             : QString();
    return name + path +
           (result->noTerrain && result->outside ? noTerrainText(*result, units)
                                                 : QString::fromStdString(result->error));
  }
  const QString modeled = result->modeledDb
                              ? QStringLiteral("modeled %1 dB").arg(*result->modeledDb, 0, 'f', 1)
                              : QStringLiteral("no modeled loss");
  const QString refused = result->profileProblem.empty() ? QString()
                                                         : QStringLiteral("; no profile: ") +
                                                               QString::fromStdString(result->profileProblem);
  return name + distanceText(result->distanceKm, units) +
         QStringLiteral(", %1°, free space %2 dB, ")
             .arg(result->bearingDeg, 0, 'f', 1)
             .arg(result->freeSpaceDb, 0, 'f', 1) +
         modeled + QStringLiteral(", ") + worstText(*result, units) + originText(*result) + refused;
}

}  // namespace zel::host
