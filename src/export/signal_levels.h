// Signal levels along a path: field strengths in dB above 1 microvolt per metre of a transmitter's effective
// radiated power.
//
// A half-wave dipole with 1 kW gives 106.92 dBuV/m at 1 km in free space; the free-space loss between
// isotropic antennas is 32.4 dB at 1 MHz and 1 km. The power's and the frequency's term are held in single
// precision.
#pragma once

#include <string_view>

namespace zel {

// How a level is written, in dB.
inline constexpr std::string_view kLevelPattern = "##0.0##";

// What an export of signal levels asks for.
struct SignalRequest {
  double erp = 0;                  // effective radiated power, kW
  double longleyRiceClutter = 0;   // dB, taken off the levels of the irregular terrain model
  double pointToPointClutter = 0;  // dB, taken off those of the point-to-point model
};

class SignalLevels {
 public:
  // MHz. Throws RuntimeError 6 for a term beyond single precision.
  SignalLevels(const SignalRequest& request, float frequency);

  float powerTerm() const { return powerTerm_; }          // 10 log P + 106.92
  float frequencyTerm() const { return frequencyTerm_; }  // 20 log f + 32.4
  double reference() const { return reference_; }         // C, their sum: the level without any loss

  float freeSpaceLoss(double distance) const;  // dB over km

  double longleyRice(double loss) const { return reference_ - loss - request_.longleyRiceClutter; }
  double freeSpace(double loss) const { return reference_ - loss; }
  // Of the losses beyond free space over a distance in km.
  double pointToPoint(double distance, double diffractionLoss, double clutterLoss) const;

 private:
  SignalRequest request_;
  float powerTerm_;
  float frequencyTerm_;
  double reference_;
};

}  // namespace zel
