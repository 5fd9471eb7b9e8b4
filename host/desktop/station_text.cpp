#include "desktop/station_text.h"

#include <QString>
#include <QStringList>

#include "zel/coordinates.h"

namespace zel::host {
namespace {

struct ParsedLine {
  std::optional<Station> station;
  std::string problem;
};

// A quoted name stands for what is between its quotes, as in CSV.
std::string unquoted(QString name) {
  name = name.trimmed();
  if (name.size() > 1 && name.startsWith(u'"') && name.endsWith(u'"'))
    name = name.mid(1, name.size() - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
  return name.toStdString();
}

// The first two fields are the position; the third is the height where it is one, else the name begins.
ParsedLine parseLine(const QString& line) {
  QString commas = line;
  if (commas.contains(u'\t')) commas.replace(u'\t', u',');
  const QStringList fields = commas.split(u',');
  const std::string position = fields.mid(0, 2).join(u',').toStdString();
  ParsedStation parsed = parseStationText(position);
  if (!parsed.station) return {{}, parsed.error};
  qsizetype name = 2;
  if (fields.size() > 2 && !fields[2].trimmed().isEmpty()) {
    const ParsedStation withHeight = parseStationText(fields.mid(0, 3).join(u',').toStdString());
    if (withHeight.station && withHeight.station->height) {
      parsed = withHeight;
      name = 3;
    }
  } else if (fields.size() > 2) {
    name = 3;  // an empty height
  }
  Station station;
  station.position = parsed.station->position;
  station.antennaM = parsed.station->height.value_or(kDefaultAntenna);
  station.name = tidyName(unquoted(fields.mid(name).join(u',')));
  return {station, {}};
}

}  // namespace

StationLines parseStationLines(const std::string& text, const Plan& plan) {
  StationLines result;
  FreshNames names(plan);
  const QStringList lines = QString::fromStdString(text).split(u'\n');
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const QString line = lines[i].trimmed();
    if (line.isEmpty()) continue;
    ParsedLine parsed = parseLine(line);
    if (parsed.station) {
      if (parsed.station->name.empty()) parsed.station->name = names.next();
      parsed.problem = stationProblem(*parsed.station);
    }
    if (parsed.station && parsed.problem.empty()) {
      result.stations.push_back(*parsed.station);
      continue;
    }
    ++result.refused;
    if (result.firstProblem.empty())
      result.firstProblem = "line " + std::to_string(i + 1) + ": " + parsed.problem;
  }
  return result;
}

}  // namespace zel::host
