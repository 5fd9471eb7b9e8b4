// What the program is told on its command line, seven items in a fixed order.
#pragma once

#include <span>
#include <stdexcept>
#include <string>

namespace zel::ptp {

// A command line that cannot be meant, as a sentence without its full stop.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Arguments {
  std::string scratchPath;    // heights along the path
  std::string resultPath;     // where the losses are written
  float frequency = 0;        // MHz, in single precision as the component holds it
  double erp = 0;             // effective radiated power, kW
  double receiverHeight = 0;  // metres above ground
  double clutter = 0;         // dB, taken off every level
};

// The items are: scratch file, result file, frequency, power, receiver's height, clutter, and the scratch
// file's name without its folder. Numbers have a point, whatever the locale. The name says nothing new; one
// that is not the scratch file's shows that the items are out of order. Throws UsageError for a wrong number
// of items, for what is no number, and for one outside its limits.
Arguments readArguments(std::span<const std::string> items);

}  // namespace zel::ptp
