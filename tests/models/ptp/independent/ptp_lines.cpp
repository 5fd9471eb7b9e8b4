// Reads a path a line and prints its losses, for compare.py: numbers parted by blanks, in the order of
// Path.line in paths.py; out come diffraction loss, its Bullington part, its spherical part and the clutter
// loss, dB.

#include <cstddef>
#include <exception>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "models/ptp/ptp_calculator.h"

namespace zel::ptp {
namespace {

void answer(const std::string& line) {
  std::istringstream in(line);
  PtpParameters parameters;
  double spacing = 0;
  double transmitter = 0;
  double receiver = 0;
  double frequency = 0;
  int vertical = 0;
  int category = 0;
  std::size_t count = 0;
  in >> spacing >> transmitter >> receiver >> frequency >> parameters.effectiveRadius >> vertical >>
      parameters.ground.permittivity >> parameters.ground.conductivity >> category >>
      parameters.clutter.height >> count;
  parameters.ground.polarization = vertical != 0 ? Polarization::kVertical : Polarization::kHorizontal;
  parameters.clutter.category = static_cast<ClutterCategory>(category);
  std::vector<float> elevations;
  for (double elevation = 0; elevations.size() < count && in >> elevation;)
    elevations.push_back(static_cast<float>(elevation));

  PtpCalculator calculator(parameters);
  calculator.setElevations(elevations);
  calculator.setSpacing(spacing);
  calculator.setReceiverHeight(receiver);
  calculator.setSampleCount(static_cast<double>(count));
  calculator.setFrequency(frequency);
  calculator.setTransmitterHeight(transmitter);
  const DiffractionLoss loss = calculator.diffraction();
  std::cout << loss.total << ' ' << loss.bullington << ' ' << loss.spherical << ' '
            << calculator.clutterLoss() << '\n';
}

}  // namespace
}  // namespace zel::ptp

int main() {
  std::cout << std::setprecision(std::numeric_limits<double>::max_digits10);
  std::string line;
  try {
    while (std::getline(std::cin, line)) zel::ptp::answer(line);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
