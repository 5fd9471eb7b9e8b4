#include "export/gnuplot_script.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

#include "foundation/number_text.h"

namespace zel {
namespace {

bool contains(std::string_view characters, char c) { return characters.find(c) != std::string_view::npos; }

std::string inQuotes(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string fontOf(int points) { return " font \"Tahoma, " + std::to_string(points) + "\""; }

// Its marks for raised, lowered and overlaid characters are switched off where the title has any of them.
std::string titleLine(const std::string& title) {
  const bool marked = title.find_first_of("_^{}@&~\\") != std::string::npos;
  return "set title  " + inQuotes(gnuplotText(title)) + fontOf(18) + (marked ? " noenhanced" : "");
}

// The data's line of a title that begins with two numbers would be taken for a point of the curves.
bool startsLikeANumber(std::string_view title) {
  const std::size_t first = title.find_first_not_of(' ');
  return first != std::string_view::npos && contains("0123456789+-.", title[first]);
}

// Of the distance axis, and so wide is a column of labels at most.
constexpr double kFirstColumn = 0.2, kSecondColumn = 0.35, kColumnWidth = 0.2;
// Of an axis that its curves cover so much of. The tics that gnuplot sets for itself.
double ticStep(double length) {
  constexpr double kMostTics = 20;
  const double power = std::pow(10, std::floor(std::log10(length)));
  const double tics = kMostTics * power / length;
  return power * (tics > 10 ? 0.2 : tics > 4 ? 0.5 : 1);
}

void lengthenToTics(double& low, double& high) {
  if (!(high > low)) return;
  const double step = ticStep(high - low);
  low = std::floor(low / step) * step;
  high = std::ceil(high / step) * step;
}

// What the labels take from the level they rise from, in steps: their lines stand at 2 to 12, about 1.5 high.
struct LabelRoom {
  double bottom, top;
};
constexpr std::array<LabelRoom, 2> kLabelRooms{{{0, 14}, {1, 13}}};  // with room to spare, and without

struct LevelInterval {
  double low, high;  // dBu
};

// What a piece of a curve covers between two distances; nothing where it is not between them, or is none.
std::optional<LevelInterval> covered(const PlottedSample& a, const PlottedSample& b, std::size_t curve,
                                     double from, double to) {
  const double first = std::max(a.distance, from), last = std::min(b.distance, to);
  if (first > last || std::isnan(a.levels[curve]) || std::isnan(b.levels[curve])) return std::nullopt;
  const auto levelAt = [&](double distance) {
    return a.levels[curve] +
           (b.levels[curve] - a.levels[curve]) * (distance - a.distance) / (b.distance - a.distance);
  };
  const double one = levelAt(first), other = levelAt(last);
  return LevelInterval{std::min(one, other), std::max(one, other)};
}

// What is in the way of the labels.
std::vector<LevelInterval> obstacles(const std::vector<PlottedSample>& curves, const GraphRange& range) {
  const double length = range.end - range.start;
  const double from = range.start + kFirstColumn * length;
  const double to = range.start + (kSecondColumn + kColumnWidth) * length;
  std::vector<LevelInterval> found;
  for (const double line : kReferenceLines) found.push_back({line, line});
  for (std::size_t i = 1; i < curves.size(); ++i)
    for (std::size_t curve = 0; curve < curves[i].levels.size(); ++curve)
      if (const auto piece = covered(curves[i - 1], curves[i], curve, from, to)) found.push_back(*piece);
  return found;
}

class LabelLines {
 public:
  LabelLines(const GraphRange& range, const LineSink& write)
      : range_(range), step_(labelStep(range)), write_(write) {}

  void write(double column, const std::string& text, double factor) const {
    const double x = range_.start + column * (range_.end - range_.start);
    const double y = range_.labels + factor * step_;
    write_("set label " + inQuotes(text) + fontOf(10) + " at " + formatNumber(x, "##0.0##", withPoint()) +
           "," + formatNumber(y, "##0.0", withPoint()));
  }

 private:
  const GraphRange& range_;
  double step_;  // dBu
  const LineSink& write_;
};

void writeLabels(const GraphLabels& labels, const GraphRange& range, const LineSink& write) {
  const LabelLines lines(range, write);
  const auto first = [&](std::string_view name, auto value, std::string_view pattern, double factor) {
    lines.write(kFirstColumn, std::string(name) + formatNumber(value, pattern, withPoint()), factor);
  };
  const auto second = [&](std::string_view name, const std::string& value, double factor) {
    lines.write(kSecondColumn, std::string(name) + value, factor);
  };
  first("Freq: ", labels.frequency, "#00.0 MHz", 2.0);
  first("ERP: ", labels.erp, "##0.0 kW", 4.5);
  first("Tx Ant: ", labels.transmitterHeight, "##0 m AMSL", 7.0);
  first("Rx Ant: ", labels.receiverHeight, "##0.0 m AGL", 9.5);
  first("LR Clutter: ", labels.longleyRiceClutter, "#0 dB", 12.0);
  second("Latitude: ", generalNumber(labels.transmitter.latitude, withPoint()), 2.0);
  second("Longitude: ", generalNumber(labels.transmitter.longitude, withPoint()), 4.5);
  second("Tx HAAT: ", formatNumber(labels.heightAboveAverage, "##0 m AMSL", withPoint()), 7.0);
  second("PTP Clutter: ", formatNumber(labels.pointToPointClutter, "#0 dB", withPoint()), 12.0);
}

struct Curve {
  std::string_view columns;
  std::string_view title;  // none where it is empty
  int width;
};

constexpr std::array<Curve, 5> kCurves{{{"2:3", "Longley-Rice", 3},
                                        {"2:4", "Point-to-Point", 3},
                                        {"2:6", "Freespace", 2},
                                        {"2:5", "Std Contour", 2},
                                        {"2:7", "", 1}}};

std::string plotCommand(const std::string& data) {
  std::string command = "plot  ";
  for (const Curve& curve : kCurves) {
    if (&curve != &kCurves.front()) command += ",\\\r\n";
    command += inQuotes(gnuplotText(data)) + " using " + std::string(curve.columns);
    command += curve.title.empty() ? " notitle" : " title " + inQuotes(curve.title);
    command += " with lines lw " + std::to_string(curve.width);
  }
  return command;
}

}  // namespace

GraphRange graphAxes(const GraphRange& curves) {
  GraphRange axes = curves;
  lengthenToTics(axes.start, axes.end);
  lengthenToTics(axes.low, axes.high);
  return axes;
}

double labelStep(const GraphRange& range) { return 0.01 * (range.high - range.low); }

double labelLevel(const std::vector<PlottedSample>& curves, const GraphRange& range) {
  const double step = labelStep(range);
  const std::vector<LevelInterval> inTheWay = obstacles(curves, range);
  double best = range.low;
  std::ptrdiff_t fewest = std::numeric_limits<std::ptrdiff_t>::max();
  for (const LabelRoom& room : kLabelRooms)
    for (double level = range.low; level + room.top * step <= range.high; level += step) {
      const auto hidden = std::count_if(inTheWay.begin(), inTheWay.end(), [&](const LevelInterval& piece) {
        return piece.low < level + room.top * step && piece.high > level + room.bottom * step;
      });
      if (hidden == 0) return level;
      if (hidden >= fewest) continue;
      fewest = hidden;
      best = level;
    }
  return best;
}

std::string gnuplotText(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '`') {
      escaped += "\\140";  // a backtick by its code is no command
    } else {
      if (c == '"' || c == '\\') escaped += '\\';
      escaped += c;
    }
  }
  return escaped;
}

void writeGnuplotScript(const SignalGraphFiles& files, const std::string& title, const GraphLabels& labels,
                        const GraphRange& range, const LineSink& write) {
  const std::string shownTitle = onOneLine(title);
  write("set terminal png size 1280,1024");
  write("set key right top inside");
  write("set xlabel \"Distance from Transmitter (km)\"" + fontOf(11));
  write("set ylabel \"Field Strength (dBu)\"" + fontOf(11));
  write(titleLine(shownTitle));
  writeLabels(labels, range, write);
  write("set output  " + inQuotes(gnuplotText(files.picture)));
  write("set grid");
  if (startsLikeANumber(shownTitle)) write("set datafile commentschars \"#T\"");
  write(plotCommand(files.data));
}

}  // namespace zel
