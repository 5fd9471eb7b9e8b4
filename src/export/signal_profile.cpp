#include "export/signal_profile.h"

#include "export/longley_rice_column.h"
#include "export/path_models.h"
#include "export/profile_columns.h"

namespace zel {
namespace {

// The rest of the line of the sample so many from the view's first, 2 or more.
class ModelColumns {
 public:
  ModelColumns(const ExportProfile& profile, const ProfileColumns& columns, const SignalRequest& request,
               const ptp::PtpParameters& pointToPoint)
      : columns_(columns),
        levels_(request, profile.state.inputs.frequency),
        longleyRice_(pathStretch(profile.state, columns.samples()), modelParametersOf(profile.state),
                     "signal profile"),
        pointToPoint_(pathStretch(profile.state, columns.samples()), pointToPoint) {}

  void append(ExportLine& line, std::int32_t sample) {
    const std::int32_t point = columns_.point(sample);
    const double distance = columns_.distance(sample);
    // A failure of the point-to-point model, unlike one of this, costs only its columns.
    const double loss = longleyRice_.lossAt(point);
    line.field(loss).field(levels_.longleyRice(loss), kLevelPattern);

    // Without them the free-space columns are left out as well, as is meant.
    const auto losses = pointToPoint_.lossesOver(static_cast<std::size_t>(point));
    if (!losses) return;
    const float freeSpaceLoss = levels_.freeSpaceLoss(distance);
    line.field(losses->diffraction)
        .field(losses->clutter)
        .field(levels_.pointToPoint(distance, losses->diffraction, losses->clutter), kLevelPattern)
        .field(freeSpaceLoss)
        .number(levels_.freeSpace(double{freeSpaceLoss}), kLevelPattern);
  }

 private:
  const ProfileColumns& columns_;
  SignalLevels levels_;
  LongleyRiceColumn longleyRice_;
  PointToPointAlongPath pointToPoint_;
};

std::string summaryLine(const ExportProfile& profile, const ProfileColumns& columns, double erp) {
  const auto& antennas = profile.state.inputs.antennaHeights;
  ExportLine line(profile.numbers);
  columns.appendSummary(line);
  line.text(kFieldEnd)
      .field(columns.shownHeight(antennas[0]))
      .field(columns.shownHeight(antennas[1]))
      .number(erp);
  return line.str();
}

// Up to the earth's rise, each column followed by ", ".
void appendSample(ExportLine& line, const ExportProfile& profile, const ProfileColumns& columns,
                  std::int32_t sample) {
  // Five decimals of the single-precision value, also where seven digits would not reach them.
  const auto degrees = [](double value) { return double{static_cast<float>(value)}; };
  const GeoPoint& position = profile.positions[sample];
  line.field(columns.point(sample))
      .field(columns.shownDistance(columns.distance(sample)))
      .field(degrees(position.latitude), "##.00000")
      .field(degrees(position.longitude), "###.00000");
  columns.appendHeights(line, sample);
  line.field(columns.shownHeight(columns.relativeRise(sample)));
}

}  // namespace

void writeSignalProfile(const ExportProfile& profile, const SignalRequest& request,
                        const ptp::PtpParameters& pointToPoint, const LineSink& write,
                        const EachSample& eachSample) {
  const DisplayUnits& units = profile.state.inputs.units;
  const ProfileColumns columns(profile);
  const SampleRange samples = columns.samples();
  ModelColumns models(profile, columns, request, pointToPoint);

  write(signalSummaryTitles(units));
  write(summaryLine(profile, columns, request.erp));
  write({});
  write(signalPointTitles(units));
  for (std::int32_t i = samples.first; i <= samples.last; ++i) {
    ExportLine line(profile.numbers);
    appendSample(line, profile, columns, i);
    if (i > samples.first) models.append(line, i);
    eachSample(columns.point(i), columns.point(samples.last));
    write(line.str());
  }
}

void writeTerrainBlock(const ExportProfile& profile, const PieceSink& write) {
  constexpr std::int32_t kHeightsPerLine = 12;
  const SampleRange samples = exportedSamples(profile.state);
  for (std::int32_t before = samples.first; before <= samples.last; before += kHeightsPerLine) {
    write("     &");  // a continuation mark in column 6
    for (std::int32_t i = before + 1; i <= before + kHeightsPerLine; ++i)
      write(formatNumber(double{profile.state.elevation[i]}, "###", profile.numbers) + ",");
    write("\r\n");
  }
}

}  // namespace zel
