// The script that makes gnuplot draw a signal graph.
//
// Texts that people chose (title, paths) show as they are typed and run nothing: gnuplot would carry out
// commands between backticks and marks of its own such as "_". See signalGraphFiles for names that it would
// take for commands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/export_texts.h"
#include "export/signal_graph.h"
#include "foundation/geo_point.h"

namespace zel {

// What stands on the graph.
struct GraphLabels {
  float frequency = 0;             // MHz
  double erp = 0;                  // kW
  double transmitterHeight = 0;    // metres above sea level
  double receiverHeight = 0;       // metres above ground
  double longleyRiceClutter = 0;   // dB
  double pointToPointClutter = 0;  // dB
  GeoPoint transmitter;            // degrees
  double heightAboveAverage = 0;   // metres
};

// What the axes cover, and the level from which the labels rise.
struct GraphRange {
  double start = 0, end = 0;  // km
  double low = 0, high = 0;   // dBu
  double labels = 0;          // dBu
};

// The axes of curves that cover so much: gnuplot lengthens both, at both ends, to the next tic, of about five
// to ten steps of 1, 2 or 5 times a power of ten.
GraphRange graphAxes(const GraphRange& curves);

// The labels stand in two columns, which begin at 0.2 and 0.35 of the distance axis, and their lines rise in
// steps of 0.01 of the level axis.
double labelStep(const GraphRange& range);  // dBu

// The lowest level from which the labels rise without a curve through them; where there is none, one with the
// fewest. The key is out of their way: it stands at the right.
double labelLevel(const std::vector<PlottedSample>& curves, const GraphRange& range);

void writeGnuplotScript(const SignalGraphFiles& files, const std::string& title, const GraphLabels& labels,
                        const GraphRange& range, const LineSink& write);

// A text for between the double quotes of a script.
std::string gnuplotText(std::string_view text);

}  // namespace zel
