#include "desktop/shown_values.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "zel/terrain_map.h"

namespace zel::host {
namespace {

constexpr double kMetresPerFoot = 0.3048;
constexpr double kKmPerMile = 1.609344;

QString fixedNumber(double value, int decimals) {
  QString text = QString::number(value, 'f', decimals);
  // "-0" and "-0.00" are zero.
  const bool zero = std::none_of(text.begin(), text.end(), [](QChar c) { return c >= u'1' && c <= u'9'; });
  if (zero && text.startsWith(u'-')) text.remove(0, 1);
  return text;
}

QString number(double value, int decimals) {
  return decimals < 0 ? plainNumber(value, -decimals) : fixedNumber(value, decimals);
}

// "36-24-00.0": tenths of a second, carried so that no part reaches sixty.
QString sexagesimal(double degrees) {
  const auto tenths = static_cast<long long>(std::llround(std::abs(degrees) * 36'000));
  return QStringLiteral("%1-%2-%3.%4")
      .arg(tenths / 36'000)
      .arg(tenths / 600 % 60, 2, 10, QLatin1Char('0'))
      .arg(tenths / 10 % 60, 2, 10, QLatin1Char('0'))
      .arg(tenths % 10);
}

Typed<double> typedAngle(const QString& text, bool latitude) {
  if (text.trimmed().isEmpty())
    return {{},
            latitude ? QStringLiteral("A latitude is missing") : QStringLiteral("A longitude is missing")};
  const std::string angle = text.trimmed().toStdString();
  const ParsedStation parsed = parseStationText(latitude ? angle + ",0" : "0," + angle);
  if (!parsed.station) return {{}, QString::fromStdString(parsed.error)};
  if (parsed.station->height) return {{}, QStringLiteral("\"%1\" is not one angle").arg(text)};
  return {latitude ? parsed.station->position.latitude : parsed.station->position.longitude, {}};
}

// A number of this text, with a comma where the user's language has one; nothing when it is none.
std::optional<double> numberOf(QString text) {
  text = text.trimmed();
  if (QLocale().decimalPoint() == QLatin1String(",")) text.replace(u',', u'.');
  bool good = false;
  const double value = QLocale::c().toDouble(text, &good);
  return good && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

QString heightUnit(const ShownUnits& units) {
  return units.imperial ? QStringLiteral("ft") : QStringLiteral("m");
}

QString distanceUnit(const ShownUnits& units) {
  return units.imperial ? QStringLiteral("mi") : QStringLiteral("km");
}

QString heightNumber(double metres, const ShownUnits& units, int decimals) {
  return number(units.imperial ? metres / kMetresPerFoot : metres, decimals);
}

QString distanceNumber(double km, const ShownUnits& units, int decimals) {
  return number(units.imperial ? km / kKmPerMile : km, decimals);
}

QString heightText(double metres, const ShownUnits& units, int decimals) {
  return heightNumber(metres, units, decimals) + u' ' + heightUnit(units);
}

QString distanceText(double km, const ShownUnits& units, int decimals) {
  return distanceNumber(km, units, decimals) + u' ' + distanceUnit(units);
}

QString plainNumber(double value, int mostDecimals) {
  QString text = fixedNumber(value, mostDecimals);
  if (!text.contains(u'.')) return text;
  while (text.endsWith(u'0')) text.chop(1);
  if (text.endsWith(u'.')) text.chop(1);
  return text;
}

QString shownLatitude(double degrees, const ShownUnits& units) {
  if (units.angles == AngleFormat::kDecimalDegrees) return fixedNumber(degrees, 6);
  return sexagesimal(degrees) + (degrees < 0 ? QStringLiteral(" S") : QStringLiteral(" N"));
}

QString shownLongitude(double degrees, const ShownUnits& units) {
  if (units.angles == AngleFormat::kDecimalDegrees) return fixedNumber(degrees, 6);
  return sexagesimal(degrees) + (degrees < 0 ? QStringLiteral(" W") : QStringLiteral(" E"));
}

QString shownPosition(const Position& position, const ShownUnits& units) {
  return shownLatitude(position.latitude, units) + QStringLiteral(", ") +
         shownLongitude(position.longitude, units);
}

QString counted(std::size_t count, const char* one) {
  return QString::number(count) + u' ' + QString::fromLatin1(one) +
         (count == 1 ? QString() : QStringLiteral("s"));
}

QString heightOrNone(float metres, const ShownUnits& units) {
  if (metres == kTerrainOutside) return QStringLiteral("no terrain");
  if (metres == kTerrainVoid) return QStringLiteral("no height");
  return heightText(static_cast<double>(metres), units);
}

QString plainTip(const QString& text) {
  if (text.isEmpty()) return text;
  return QStringLiteral("<span style='white-space:pre-wrap'>") + text.toHtmlEscaped() +
         QStringLiteral("</span>");
}

Typed<double> typedLatitude(const QString& text) { return typedAngle(text, true); }

Typed<double> typedLongitude(const QString& text) { return typedAngle(text, false); }

Typed<Position> typedPosition(const QString& text) {
  if (text.trimmed().isEmpty()) return {{}, QStringLiteral("A position is missing")};
  const ParsedStation parsed = parseStationText(text.trimmed().toStdString());
  if (!parsed.station) return {{}, QString::fromStdString(parsed.error)};
  if (parsed.station->height)
    return {{}, QStringLiteral("A position has no height; type latitude and longitude")};
  return {parsed.station->position, {}};
}

Typed<double> typedAntenna(const QString& text, const ShownUnits& units) {
  QString digits = text.trimmed();
  bool feet = units.imperial;
  if (digits.endsWith(QLatin1String("ft"), Qt::CaseInsensitive)) {
    feet = true;
    digits.chop(2);
  } else if (digits.endsWith(u'm', Qt::CaseInsensitive)) {
    feet = false;
    digits.chop(1);
  }
  const auto value = numberOf(digits);
  if (!value) return {{}, QStringLiteral("\"%1\" is not an antenna height").arg(text)};
  const double metres = feet ? *value * kMetresPerFoot : *value;
  if (metres < kLowestAntenna || metres > kHighestAntenna) {
    const ShownUnits shown{feet, units.angles};
    return {{},
            QStringLiteral("The antenna height %1 is not from %2 to %3")
                .arg(heightText(metres, shown, -2), heightNumber(kLowestAntenna, shown, -2),
                     heightText(kHighestAntenna, shown, -2))};
  }
  return {metres, {}};
}

Typed<std::optional<double>> typedFrequency(const QString& text) {
  QString digits = text.trimmed();
  if (digits.isEmpty()) return {std::optional<double>(), {}};
  if (digits.endsWith(QLatin1String("MHz"), Qt::CaseInsensitive)) digits.chop(3);
  const auto value = numberOf(digits);
  if (!value) return {{}, QStringLiteral("\"%1\" is not a frequency in MHz").arg(text)};
  if (*value < kLowestFrequency || *value > kHighestFrequency)
    return {{},
            QStringLiteral("The frequency %1 MHz is not from %2 to %3 MHz")
                .arg(plainNumber(*value, 6), plainNumber(kLowestFrequency, 0),
                     plainNumber(kHighestFrequency, 0))};
  return {std::optional<double>(*value), {}};
}

}  // namespace zel::host
