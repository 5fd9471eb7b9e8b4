#include "models/ptp/spherical_earth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "models/ptp/parameter_error.h"

namespace zel::ptp {
namespace {

double squared(double value) { return value * value; }

// beta, dimensionless: what the ground's nature does to the scales of length and height (16).
double groundFactor(double admittance) {
  const double k2 = squared(admittance);
  const double k4 = squared(k2);
  return (1 + 1.6 * k2 + 0.67 * k4) / (1 + 4.5 * k2 + 1.53 * k4);
}

// F(X), dB (17).
double distanceTerm(double x) {
  if (x >= 1.6) return 11 + 10 * std::log10(x) - 17.6 * x;
  return -20 * std::log10(x) - 5.6488 * std::pow(x, 1.425);
}

// G(Y), dB (18), for B = beta Y. An antenna on the ground has the gain that the ground leaves it.
double heightGain(double b, double admittance) {
  const double least = 2 + 20 * std::log10(admittance);
  if (b > 2) return std::max(17.6 * std::sqrt(b - 1.1) - 5 * std::log10(b - 1.1) - 8, least);
  return b > 0 ? std::max(20 * std::log10(b + 0.1 * b * b * b), least) : least;
}

// Where the ray passes the curved earth with the least clearance for its place, and that clearance.
struct Clearance {
  double first = 0;   // d1, km from the first antenna
  double second = 0;  // d2, km from the second
  double height = 0;  // h, metres
};

// For antennas within each other's smooth-earth horizon (22); metres, kilometres.
Clearance leastClearance(double distance, double h1, double h2, double radius) {
  const double m = 250 * squared(distance) / (radius * (h1 + h2));  // (22e)
  const double c = (h1 - h2) / (h1 + h2);                           // (22d)
  // Exactly 1 at its greatest, where rounding may go past it.
  const double cosine = std::clamp(1.5 * c * std::sqrt(3 * m / ((m + 1) * squared(m + 1))), -1.0, 1.0);
  const double b =
      2 * std::sqrt((m + 1) / (3 * m)) * std::cos(std::numbers::pi / 3 + std::acos(cosine) / 3);  // (22c)
  Clearance result;
  result.first = std::clamp(distance / 2 * (1 + b), 0.0, distance);  // (22a)
  result.second = distance - result.first;                           // (22b)
  result.height = ((h1 - 500 * squared(result.first) / radius) * result.second +
                   (h2 - 500 * squared(result.second) / radius) * result.first) /
                  distance;  // (22)
  return result;
}

}  // namespace

SphericalEarth::SphericalEarth(const Ground& ground, double frequency, double effectiveRadius)
    : ground_(ground), frequency_(frequency), wavelength_(wavelengthOf(frequency)), radius_(effectiveRadius) {
  if (ground.permittivity == 1 && ground.conductivity == 0)
    throw ParameterError(
        "the ground's relative permittivity is 1 and its conductivity 0 S/m, as of empty space; one of them "
        "must be greater");
}

double SphericalEarth::surfaceAdmittance(double radius) const {
  const double loss = 18000 * ground_.conductivity / frequency_;
  const double horizontal =
      0.36 / std::cbrt(radius * frequency_) / std::sqrt(std::hypot(ground_.permittivity - 1, loss));
  return ground_.polarization == Polarization::kHorizontal
             ? horizontal
             : horizontal * std::hypot(ground_.permittivity, loss);
}

double SphericalEarth::firstTermLoss(double distance, double firstHeight, double secondHeight,
                                     double radius) const {
  const double admittance = surfaceAdmittance(radius);
  const double beta = groundFactor(admittance);
  const double x = 2.188 * beta * std::cbrt(frequency_ / squared(radius)) * distance;  // (14)
  const double yPerMetre = 9.575e-3 * beta * std::cbrt(squared(frequency_) / radius);  // (15)
  return -distanceTerm(x) - heightGain(beta * yPerMetre * firstHeight, admittance) -   // (13)
         heightGain(beta * yPerMetre * secondHeight, admittance);
}

double SphericalEarth::loss(double distance, double firstHeight, double secondHeight) const {
  const double roots = std::sqrt(firstHeight) + std::sqrt(secondHeight);
  const double lineOfSight = std::sqrt(0.002 * radius_) * roots;  // d_los, km (21)
  if (distance >= lineOfSight)
    return std::max(firstTermLoss(distance, firstHeight, secondHeight, radius_), 0.0);

  const Clearance clearance = leastClearance(distance, firstHeight, secondHeight, radius_);
  // h_req, metres (23): the clearance that a path without loss has.
  const double required =
      0.552 * std::sqrt(1000 * clearance.first * clearance.second * wavelength_ / distance);
  if (clearance.height > required) return 0;
  // An antenna on the ground passes it there with nothing to spare and nothing required.
  const double share = required > 0 ? clearance.height / required : 0;
  const double marginalRadius = 500 * squared(distance / roots);  // a_em, km (24)
  const double marginal = firstTermLoss(distance, firstHeight, secondHeight, marginalRadius);  // A_h, dB
  return std::max((1 - share) * marginal, 0.0);  // (25); a gain counts as no loss
}

}  // namespace zel::ptp
